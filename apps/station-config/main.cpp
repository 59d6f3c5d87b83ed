// station-config: the station's configuration from the command line.
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QMap>
#include <QTranslator>

#include <functional>

#include "arguments.h"
#include "commands.h"
#include "d_zu_configuration.h"
#include "station.h"
#include "toollog.h"
#include "utilities/installpaths.h"

namespace {
// What a command does with the settings document: commands that read or write it refuse an
// unusable one (exit 3); writers hold the document's lock from load to save.
enum EnDocumentUse { CeIgnores, CeReads, CeWrites };

struct Command {
    CommandSpec spec;
    bool loadsFolders;
    EnDocumentUse document;
    std::function<int(CommandContext&)> run;
};

const QList<Command>& commands()
{
    static const QList<Command> table {
        { { "status", "status", "settings loaded from the station's document", 0, 0 }, false, CeReads, cmdStatus },
        { { "folders", "folders [--wait SECONDS]", "every storage folder with its live availability", 0, 0 }, true, CeReads, cmdFolders },
        { { "get", "get KEY", "a value of the document by dotted path (general.sound_volume)", 1, 1 }, true, CeReads, cmdGet },
        { { "set", "set KEY VALUE", "changes a setting (checked against its type and allowed values) and saves the document", 2, 2 }, true, CeWrites, cmdSet },
        { { "unset", "unset KEY", "removes a setting: the station uses its default", 1, 1 }, true, CeWrites, cmdUnset },
        { { "keys", "keys [PREFIX]", "settable keys: type, current value, allowed values", 0, 1 }, false, CeReads, cmdKeys },
        { { "list", "list", "every key=value of the document", 0, 0 }, false, CeReads, cmdList },
        { { "paths", "paths", "local and secured path of every role", 0, 0 }, true, CeReads, cmdPaths },
        { { "sync", "sync [--now | --once | --reset]", "registered mirrors and sync state; run a pass or reset", 0, 0 }, true, CeReads, cmdSync },
        { { "test-share", "test-share ADDRESS SHARE-PATH --user U [--domain D]",
            "tests a network share (password read from standard input)", 2, 2 }, false, CeIgnores, cmdTestShare },
        { { "apply-update", "apply-update ZIP", "checks a configuration update package, then applies it as start-up does", 1, 1 }, false, CeWrites, cmdApplyUpdate },
        { { "timezones", "timezones [REGION]", "time-zone regions, or the cities of one", 0, 1 }, false, CeIgnores, cmdTimezones },
        { { "templates", "templates", "report templates, newest version first", 0, 0 }, true, CeReads, cmdTemplates },
        { { "storage", "storage", "total and available bytes of the internal storage", 0, 0 }, false, CeIgnores, cmdStorage },
        { { "history", "history", "kept versions of the settings document, newest (0) first", 0, 0 }, false, CeIgnores, cmdHistory },
        { { "diff", "diff [N]", "key by key, what differs between version N (default 0) and the document", 0, 1 }, false, CeIgnores, cmdDiff },
        { { "rollback", "rollback N", "restores version N of the document (the current one is kept as a version)", 1, 1 }, false, CeIgnores, cmdRollback },
        { { "export-update", "export-update [--keys PREFIX,...] [--from OTHER_STATION] [--force] OUT.zip",
            "writes an update package of this station's settings (identity keys only when named), or of what differs from another station", 1, 1 },
          false, CeReads, cmdExportUpdate },
        { { "compare", "compare [--keys PREFIX,...] OTHER_STATION", "key by key, what differs from another station (exit 1 when anything does)", 1, 1 },
          false, CeReads, cmdCompare },
        { { "folder-set", "folder-set [--check] FOLDER-JSON | -",
            "creates or changes a storage folder named by its aliasName (JSON object, or '-' to read it from standard input)", 1, 1 },
          true, CeWrites, cmdFolderSet },
        { { "folder-remove", "folder-remove [--check] ALIAS", "removes a storage folder (none there: unchanged)", 1, 1 }, true, CeWrites, cmdFolderRemove },
        { { "relation-set", "relation-set [--check] CODE SEQUENCE", "input code CODE launches SEQUENCE", 2, 2 }, true, CeWrites, cmdRelationSet },
        { { "relation-remove", "relation-remove [--check] CODE", "removes the relation of an input code (none there: unchanged)", 1, 1 },
          true, CeWrites, cmdRelationRemove },
        { { "doctor", "doctor", "checks the station: document, storage, network folders, sync database, targets; changes nothing", 0, 0 }, false, CeIgnores, cmdDoctor },
    };
    return table;
}

QList<OptionSpec> optionSpecs()
{
    return {
        { "station", "DIR", "Station directory (holding preconfiguration.json); default $STATION_DIR, else the demo station.", {} },
        { "json", "", "Print JSON for scripts.", {} },
        { "verbose", "", "Print the library's log lines on standard error too.", {} },
        { "show-secrets", "", "show share passwords instead of masking them.", { "get", "list", "status" } },
        { "wait", "SECONDS", "wait up to this long for network folders to settle.", { "folders" } },
        { "now", "", "run a pass now and wait until it is done.", { "sync" } },
        { "once", "", "run one pass without progress, print its summary and exit (1 when a file failed or a mirror was unreachable).", { "sync" } },
        { "reset", "", "reset the sync database and print the outcome.", { "sync" } },
        { "user", "USER", "login.", { "test-share" } },
        { "domain", "DOMAIN", "domain.", { "test-share" } },
        { "keys", "PREFIX,...", "only the keys under these keys or sections.", { "export-update", "compare" } },
        { "from", "OTHER_STATION", "only what differs from this station directory.", { "export-update" } },
        { "force", "", "replace an existing package.", { "export-update" } },
        { "check", "", "say what would change, change nothing.",
          { "set", "unset", "folder-set", "folder-remove", "relation-set", "relation-remove" } },
    };
}

int usageError(const QString& message)
{
    err() << "station-config: " << message << "\nTry 'station-config --help'.\n";
    return CeExitUsage;
}

// Option values checked before the station is opened.
bool checkValues(const Arguments& arguments, QString& error)
{
    if (arguments.isSet(QStringLiteral("station")) && arguments.value(QStringLiteral("station")).isEmpty()) {
        error = QStringLiteral("option '--station' needs a directory");
        return false;
    }
    int seconds = 0;
    if (arguments.isSet(QStringLiteral("wait")) && !arguments.intValue(QStringLiteral("wait"), 0, seconds, error))
        return false;
    const QStringList passOptions { QStringLiteral("now"), QStringLiteral("once"), QStringLiteral("reset") };
    for (int i = 0; i < passOptions.size(); ++i) {
        for (int j = i + 1; j < passOptions.size(); ++j) {
            if (arguments.isSet(passOptions.at(i)) && arguments.isSet(passOptions.at(j))) {
                error = QStringLiteral("'--%1' and '--%2' exclude each other").arg(passOptions.at(i), passOptions.at(j));
                return false;
            }
        }
    }
    if (arguments.command() == QLatin1String("test-share") && arguments.value(QStringLiteral("user")).isEmpty()) {
        error = QStringLiteral("test-share needs '--user USER'");
        return false;
    }
    return true;
}
}

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("station-config"));

    QTranslator catalogue;
    if (catalogue.load(QStringLiteral("station_en"), InstallPaths::catalogueDirectory()))
        QCoreApplication::installTranslator(&catalogue);

    QList<CommandSpec> specs;
    for (const Command& command : commands())
        specs << command.spec;
    Arguments arguments(optionSpecs(), specs);
    QString error;
    const QStringList argumentList = QCoreApplication::arguments().mid(1);
    if (!arguments.parse(argumentList, error)) {
        if (argumentList.isEmpty()) {
            err() << arguments.helpText(ToolLog::path());
            return CeExitUsage;
        }
        return usageError(error);
    }
    if (arguments.helpRequested()) {
        out() << arguments.helpText(ToolLog::path());
        return CeExitSuccess;
    }
    if (!checkValues(arguments, error))
        return usageError(error);

    const bool verbose = arguments.isSet(QStringLiteral("verbose"));
    ToolLog::install(verbose);
    if (!verbose)
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));

    const QString name = arguments.command();
    const Command* command = nullptr;
    for (const Command& candidate : commands()) {
        if (candidate.spec.name == name)
            command = &candidate;
    }

    // Which station: --station, else STATION_DIR, else the demo copy (said on stderr).
    QString requested = arguments.value(QStringLiteral("station"));
    QString origin = QStringLiteral("--station");
    if (!arguments.isSet(QStringLiteral("station"))) {
        requested = qEnvironmentVariable("STATION_DIR");
        origin = QStringLiteral("STATION_DIR");
    }
    const QString directory = Station::resolveDirectory(requested, error);
    if (directory.isEmpty()) {
        err() << "station-config: " << (requested.isEmpty() ? QString() : origin + QStringLiteral(": ")) << error << "\n";
        return CeExitFailed;
    }
    if (requested.isEmpty())
        err() << "station-config: using the demo station " << directory << " (choose one with --station DIR or STATION_DIR)\n";
    // Reading or editing a station's settings does not change this computer's time zone;
    // choosing a region (set regionalSettings.region) still does.
    DZuConfiguration::setApplySystemSettingsOnLoad(false);
    Station station(directory);
    const bool writes = command->document == CeWrites || name == QLatin1String("rollback");
    // apply-update must place its package before the library starts; doctor never starts it
    // (starting it creates folders, mounts shares and opens the sync database).
    const bool opensItself = name == QLatin1String("apply-update") || name == QLatin1String("doctor");
    if (!opensItself && !station.open(command->loadsFolders, error, writes)) {
        err() << "station-config: " << error << "\n";
        return CeExitFailed;
    }
    if (command->document != CeIgnores && !opensItself && !station.isDocumentUsable()) {
        err() << "station-config: " << station.unusableMessage() << "\n";
        return CeExitUnusable;
    }

    CommandContext context { station, arguments.positional(), arguments, arguments.isSet(QStringLiteral("json")) };
    const int code = command->run(context);
    out().flush();
    return code;
}
