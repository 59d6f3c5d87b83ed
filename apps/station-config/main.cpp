// station-config: the station's configuration from the command line.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QMap>
#include <QTranslator>

#include <functional>

#include "commands.h"
#include "station.h"

namespace {
// What a command does with the settings document: commands that read or write it refuse an
// unusable one (exit 3); writers hold the document's lock from load to save.
enum EnDocumentUse { CeIgnores, CeReads, CeWrites };

struct Command {
    const char* usage;
    const char* description;
    bool loadsFolders;
    EnDocumentUse document;
    std::function<int(CommandContext&)> run;
};

constexpr int C_exitUnusableDocument = 3;

const QMap<QString, Command>& commands()
{
    static const QMap<QString, Command> table {
        { "status", { "status", "settings loaded from the station's document", false, CeReads, cmdStatus } },
        { "folders", { "folders [--wait SECONDS]", "every storage folder with its live availability", true, CeReads, cmdFolders } },
        { "get", { "get KEY", "a value of the document by dotted path (general.sound_volume)", true, CeReads, cmdGet } },
        { "set", { "set KEY VALUE", "changes a setting (JSON-typed value) and saves the document", true, CeWrites, cmdSet } },
        { "paths", { "paths", "local and secured path of every role", true, CeReads, cmdPaths } },
        { "sync", { "sync [--now | --reset]", "registered mirrors and sync state; run a pass or reset", true, CeReads, cmdSync } },
        { "test-share", { "test-share ADDRESS SHARE-PATH --user U [--domain D]",
                          "tests a network share (password read from standard input)", false, CeIgnores, cmdTestShare } },
        { "apply-update", { "apply-update ZIP", "applies a configuration update package as start-up does", false, CeWrites, cmdApplyUpdate } },
        { "timezones", { "timezones [REGION]", "time-zone regions, or the cities of one", false, CeIgnores, cmdTimezones } },
        { "templates", { "templates", "report templates, newest version first", true, CeReads, cmdTemplates } },
        { "storage", { "storage", "total and available bytes of the internal storage", false, CeIgnores, cmdStorage } },
        { "history", { "history", "kept versions of the settings document, newest (0) first", false, CeIgnores, cmdHistory } },
        { "diff", { "diff [N]", "key by key, what differs between version N (default 0) and the document", false, CeIgnores, cmdDiff } },
        { "rollback", { "rollback N", "restores version N of the document (the current one is kept as a version)", false, CeIgnores, cmdRollback } },
    };
    return table;
}

QString commandHelp()
{
    QString text = QStringLiteral("Commands:\n");
    for (auto it = commands().cbegin(); it != commands().cend(); ++it)
        text += QStringLiteral("  %1\n      %2\n").arg(QLatin1String(it->usage), QLatin1String(it->description));
    return text;
}
}

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("station-config"));

    QTranslator catalogue;
    if (catalogue.load(QStringLiteral("station_en"), QStringLiteral(STATION_BUILD_CATALOGUE_DIR))
        || catalogue.load(QStringLiteral("station_en"), QStringLiteral(STATION_INSTALLED_CATALOGUE_DIR)))
        QCoreApplication::installTranslator(&catalogue);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows and changes an assembly station's configuration.\n\n") + commandHelp());
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("One of the commands below."));
    parser.addOptions({
        { QStringLiteral("station"), QStringLiteral("Station directory (holding preconfiguration.json); default: a copy of the demo station."), QStringLiteral("dir") },
        { QStringLiteral("json"), QStringLiteral("Print JSON for scripts.") },
        { QStringLiteral("verbose"), QStringLiteral("Also print the library's debug lines (errors are always printed).") },
        { QStringLiteral("wait"), QStringLiteral("folders: wait up to this long for network folders to settle."), QStringLiteral("seconds") },
        { QStringLiteral("now"), QStringLiteral("sync: run a pass now and wait until it is done.") },
        { QStringLiteral("reset"), QStringLiteral("sync: reset the sync database and print the outcome.") },
        { QStringLiteral("user"), QStringLiteral("test-share: login."), QStringLiteral("user") },
        { QStringLiteral("domain"), QStringLiteral("test-share: domain."), QStringLiteral("domain") },
    });
    parser.process(app);

    if (!parser.isSet(QStringLiteral("verbose")))
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));

    QStringList positional = parser.positionalArguments();
    if (positional.isEmpty()) {
        err() << parser.helpText();
        return 2;
    }
    const QString name = positional.takeFirst();
    const auto command = commands().constFind(name);
    if (command == commands().cend()) {
        err() << "Unknown command: " << name << "\n\n" << commandHelp();
        return 2;
    }

    QString error;
    const QString directory = Station::resolveDirectory(parser.value(QStringLiteral("station")), error);
    if (directory.isEmpty()) {
        err() << "station-config: " << error << "\n";
        return 1;
    }
    Station station(directory);
    const bool writes = command->document == CeWrites || name == QLatin1String("rollback");
    // apply-update must place its package before the library starts.
    if (name != QLatin1String("apply-update") && !station.open(command->loadsFolders, error, writes)) {
        err() << "station-config: " << error << "\n";
        return 1;
    }
    if (command->document != CeIgnores && name != QLatin1String("apply-update") && !station.isDocumentUsable()) {
        err() << "station-config: " << station.unusableMessage() << "\n";
        return C_exitUnusableDocument;
    }

    CommandContext context { station, positional, parser, parser.isSet(QStringLiteral("json")) };
    const int code = command->run(context);
    out().flush();
    return code;
}
