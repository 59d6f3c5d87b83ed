// station-config as a user meets it: for each command, arguments -> exit code, standard
// output, standard error, and what the settings document holds afterwards.
#include <QTemporaryDir>

#include "stationtool.h"

namespace {
const QString C_tool = QStringLiteral(STATION_CONFIG_BINARY);

using Run = ToolRun;
}

class TestStationConfig : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_station;

    QString document() const { return m_station + "/config/settings.json"; }

    // Runs the tool with a private home (cache, demo copy) and, unless `explicitStation` is
    // false, on the test's station; "@station" in an argument is replaced by its directory.
    Run run(QStringList arguments, bool explicitStation = true, const QString& stationEnv = QString(),
            const QByteArray& input = QByteArray()) const
    {
        for (QString& argument : arguments)
            argument.replace("@station", m_station);
        QProcessEnvironment environment = toolEnvironment(m_dir.path() + "/state");
        environment.insert("XDG_DATA_HOME", m_dir.path() + "/data");
        environment.insert("XDG_CACHE_HOME", m_dir.path() + "/cache");
        if (!stationEnv.isEmpty())
            environment.insert("STATION_DIR", QString(stationEnv).replace("@station", m_station));
        return runTool(C_tool, (explicitStation ? QStringList{"--station", m_station} : QStringList()) + arguments,
                       environment, input);
    }

private slots:
    void init()
    {
        QVERIFY(m_dir.isValid());
        m_station = m_dir.path() + "/station";
        QDir(m_station).removeRecursively();
        QVERIFY(copyTree(QStringLiteral(STATION_DEMO_DIR), m_station));
    }

    void command_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out");   // regular expression; empty: nothing printed
        QTest::addColumn<QString>("err");
        // "key=JSON": what the document holds afterwards ("key=": absent); empty: not checked.
        QTest::addColumn<QString>("after");

        const QString any = ".*";
        const QString usage = "^station-config: %1\nTry 'station-config --help'.\n$";

        // Usage errors: exit 2, one reason, nothing on standard output.
        QTest::newRow("usage: no command") << QStringList{"--json"} << 2 << "" << usage.arg("no command given") << "";
        QTest::newRow("usage: help names the program")
            << QStringList{"--help"} << 0 << "^Usage: station-config \\[OPTIONS\\] COMMAND.*Exit codes: 0 success" << "" << "";
        QTest::newRow("usage: unknown option") << QStringList{"--bogus", "status"} << 2 << "" << usage.arg("unknown option '--bogus'") << "";
        QTest::newRow("usage: unknown command") << QStringList{"bogus"} << 2 << "" << usage.arg("unknown command 'bogus'") << "";
        QTest::newRow("usage: extra argument") << QStringList{"status", "extra"} << 2 << ""
                                               << "'status' does not take the argument 'extra'\nusage: station-config status\n" << "";
        QTest::newRow("usage: option of another command")
            << QStringList{"storage", "--now"} << 2 << "" << usage.arg("option '--now' is not an option of 'storage' \\(it belongs to sync\\)") << "";
        QTest::newRow("usage: malformed value") << QStringList{"folders", "--wait", "abc"} << 2 << ""
                                                << "option '--wait': 'abc' is not a whole number" << "";
        QTest::newRow("usage: missing value") << QStringList{"folders", "--wait"} << 2 << ""
                                              << usage.arg("option '--wait' needs a value \\(SECONDS\\)") << "";
        QTest::newRow("usage: missing argument") << QStringList{"get"} << 2 << "" << "'get' needs more arguments\nusage: station-config get KEY" << "";
        QTest::newRow("usage: exclusive options") << QStringList{"sync", "--now", "--reset"} << 2 << "" << "exclude each other" << "";
        QTest::newRow("usage: one pass or a reset") << QStringList{"sync", "--once", "--reset"} << 2 << ""
                                                     << "'--once' and '--reset' exclude each other" << "";
        QTest::newRow("usage: test-share without user") << QStringList{"test-share", "127.0.0.1", "x"} << 2 << "" << "needs '--user USER'" << "";
        QTest::newRow("usage: dash value needs --") << QStringList{"set", "templates.report_footer", "-x"} << 2 << ""
                                                    << usage.arg("unknown option '-x'") << "templates.report_footer=\"Tightening report - keep for 10 years\"";
        QTest::newRow("set: dash value after --") << QStringList{"set", "--", "templates.report_footer", "-x"} << 0 << "^-x\n$" << ""
                                                  << "templates.report_footer=\"-x\"";
        QTest::newRow("usage: flag with a value") << QStringList{"status", "--json=yes"} << 2 << "" << "takes no value" << "";

        // set: a value of the wrong type or outside the allowed set is refused (exit 1, one
        // reason naming what is allowed) and the document keeps its value.
        const QString refused = "^station-config: %1; see `station-config keys %2`\n$";
        QTest::newRow("set: text stays text") << QStringList{"set", "templates.company_address", "42"} << 0 << "^42\n$" << ""
                                              << "templates.company_address=\"42\"";
        QTest::newRow("set: not a city") << QStringList{"set", "regionalSettings.city", "true"} << 1 << ""
                                         << refused.arg("regionalSettings.city: 'true' is not a city of region Europe", "regionalSettings.city")
                                         << "regionalSettings.city=\"Paris\"";
        QTest::newRow("set: unknown city") << QStringList{"set", "regionalSettings.city", "Atlantis"} << 1 << ""
                                           << "'Atlantis' is not a city of region Europe; see `station-config keys regionalSettings.city`"
                                           << "regionalSettings.city=\"Paris\"";
        QTest::newRow("set: city of the region") << QStringList{"set", "regionalSettings.city", "Berlin"} << 0 << "^Berlin\n$" << ""
                                                 << "regionalSettings.city=\"Berlin\"";
        QTest::newRow("set: not a boolean") << QStringList{"set", "general.hideProductionTimer", "maybe"} << 1 << ""
                                            << refused.arg("general.hideProductionTimer: 'maybe' is not a boolean; allowed: true or false",
                                                           "general.hideProductionTimer")
                                            << "general.hideProductionTimer=false";
        QTest::newRow("set: boolean") << QStringList{"set", "general.hideProductionTimer", "yes"} << 0 << "^true\n$" << ""
                                      << "general.hideProductionTimer=true";
        QTest::newRow("set: not a number") << QStringList{"set", "sync.interval_ms", "abc"} << 1 << ""
                                           << "'abc' is not a whole number; allowed: 1000..600000" << "sync.interval_ms=60000";
        QTest::newRow("set: below the interval bounds") << QStringList{"set", "sync.interval_ms", "999"} << 1 << ""
                                                        << "'999' is outside 1000..600000" << "sync.interval_ms=60000";
        // The bounds described are the ones the library keeps when it reads the document again.
        QTest::newRow("set: interval") << QStringList{"set", "sync.interval_ms", "1000"} << 0 << "^1000\n$" << ""
                                       << "sync.interval_ms=1000";
        QTest::newRow("set: interval at the upper bound") << QStringList{"set", "sync.interval_ms", "600000"} << 0 << "^600000\n$" << ""
                                                          << "sync.interval_ms=600000";
        QTest::newRow("set: interval above the bounds") << QStringList{"set", "sync.interval_ms", "600001"} << 1 << ""
                                                        << "'600001' is outside 1000..600000" << "sync.interval_ms=60000";
        QTest::newRow("set: volume at the clamp") << QStringList{"set", "general.sound_volume", "100"} << 0 << "^100\n$" << ""
                                                  << "general.sound_volume=100";
        QTest::newRow("set: scalar over a section") << QStringList{"set", "general", "5"} << 1 << ""
                                                    << "^station-config: general is a section, not a value; its keys: workplace_name, .*sound_volume"
                                                    << "general.sound_volume=70";
        QTest::newRow("set: unknown key") << QStringList{"set", "general.volume", "5"} << 1 << ""
                                          << "general.volume is not a key that can be set; see `station-config keys`" << "";
        QTest::newRow("set: not a torque unit") << QStringList{"set", "regionalSettings.torque_unit", "lbs"} << 1 << ""
                                                << "'lbs' is not a torque unit \\(Nm, cNm, kNm, in.lbf, ft.lbf\\)"
                                                << "regionalSettings.torque_unit=\"Nm\"";
        QTest::newRow("set: negative number without --") << QStringList{"set", "general.sound_volume", "-5"} << 1 << ""
                                                         << refused.arg("general.sound_volume: '-5' is outside 0..100", "general.sound_volume")
                                                         << "general.sound_volume=70";
        QTest::newRow("set: volume") << QStringList{"set", "general.sound_volume", "0"} << 0 << "^0\n$" << "" << "general.sound_volume=0";
        QTest::newRow("set: language by name") << QStringList{"set", "regionalSettings.language", "Deutsch"} << 0 << "^de_DE\n$" << ""
                                               << "regionalSettings.language=\"de_DE\"";
        QTest::newRow("set: language by code") << QStringList{"set", "regionalSettings.language", "es_ES"} << 0 << "^es_ES\n$" << ""
                                               << "regionalSettings.language=\"es_ES\"";
        QTest::newRow("set: unknown language") << QStringList{"set", "regionalSettings.language", "Klingon"} << 1 << ""
                                               << "'Klingon' is not a language \\(de_DE \\(Deutsch\\), en_GB \\(English\\)"
                                               << "regionalSettings.language=\"en_GB\"";
        QTest::newRow("set: keyboard by name") << QStringList{"set", "regionalSettings.keyboard_input", "English (US)"} << 0 << "^us\n$"
                                               << "" << "regionalSettings.keyboard_input=\"us\"";
        QTest::newRow("set: region without its city") << QStringList{"set", "regionalSettings.region", "America"} << 1 << ""
                                                      << "the current city Paris is not in region America; give both"
                                                      << "regionalSettings.region=\"Europe\"";
        QTest::newRow("set: region with its city") << QStringList{"set", "regionalSettings.region", "America/New_York"} << 0
                                                   << "^America\n$" << "" << "regionalSettings.city=\"New_York\"";
        QTest::newRow("set: text list") << QStringList{"set", "comments.skip_comments", "[\"a\", \"b\"]"} << 0 << "\"a\",\\s+\"b\"" << ""
                                        << "comments.skip_comments=[\"a\",\"b\"]";
        QTest::newRow("set: not a text list") << QStringList{"set", "comments.skip_comments", "a,b"} << 1 << ""
                                              << "'a,b' is not a JSON array of texts" << "comments.skip_comments=[\"Part missing\",\"Screw not accessible\",\"Supervisor decision\"]";
        QTest::newRow("set: broken validator") << QStringList{"set", "validators.serialNumber", "(["} << 1 << ""
                                               << "'\\(\\[' is not a valid regular expression" << "validators.serialNumber=\"^[A-Z]{2}[0-9]{8}$\"";
        QTest::newRow("set: validator number") << QStringList{"set", "validators.maxScanLength", "40"} << 0 << "^40\n$" << ""
                                               << "validators.maxScanLength=40";

        // unset: the key goes, the service's default takes its place.
        QTest::newRow("unset: to the default") << QStringList{"unset", "regionalSettings.torque_unit"} << 0
                                               << "^regionalSettings.torque_unit unset; the station uses its default: Nm\n$" << ""
                                               << "regionalSettings.torque_unit=\"Nm\"";
        QTest::newRow("unset: a validator") << QStringList{"unset", "validators.batchNumber"} << 0 << "^validators.batchNumber unset\n$" << ""
                                            << "validators.batchNumber=";
        QTest::newRow("unset: a section") << QStringList{"unset", "regionalSettings"} << 1 << "" << "regionalSettings is a section" << "";

        // keys and list.
        QTest::newRow("keys: a section") << QStringList{"keys", "general"} << 0
                                         << "^general.workplace_name .*\ngeneral.sound_volume +integer +70 +0..100\n" << "" << "";
        QTest::newRow("keys: one choice") << QStringList{"keys", "regionalSettings.keyboard_input"} << 0
                                          << "^key: +regionalSettings.keyboard_input\ntype: +choice\ncurrent: fr\n.*\n  de  \\(Deutsch\\)\n" << "" << "";
        QTest::newRow("keys: cities of the region") << QStringList{"keys", "regionalSettings.city"} << 0 << "\n  Berlin\n.*\n  Paris\n" << "" << "";
        QTest::newRow("keys: json") << QStringList{"keys", "general.sound_volume", "--json"} << 0
                                    << "\"current\": 70,\\s+\"key\": \"general.sound_volume\",\\s+\"maximum\": 100,\\s+\"minimum\": 0" << "" << "";
        QTest::newRow("keys: nothing there") << QStringList{"keys", "nowhere"} << 1 << "" << "no settable key starts with nowhere" << "";
        QTest::newRow("list: key=value") << QStringList{"list"} << 0
                                         << "\ndirectories.folders.0.id=\\{5c1f7a2e-9b3d-4e86-a0f4-2d7c6b1e8a93\\}\n.*\ngeneral.sound_volume=70\n" << "" << "";

        // A wait that runs out: exit 4 and one line naming what did not settle (no server on the demo share).
        QTest::newRow("folders: wait times out") << QStringList{"folders", "--wait", "1"} << 4
                                                 << "^ +0.0 s  Plant_Share: not connected yet; waiting up to 1 s\n.*Plant_Share .* no \\("
                                                 << "^station-config: timed out after 1 s waiting for Plant_Share\n$" << "";

        // Long work says what it does: the share test step by step with the system's reason,
        // the sync pass with a summary per mirror.
        QTest::newRow("test-share: closed port") << QStringList{"test-share", "127.0.0.1:1", "share", "--user", "u"} << 1
                                                 << "^server 127.0.0.1:1 +FAILED: Connection refused\n$" << "" << "";
        QTest::newRow("test-share: json") << QStringList{"test-share", "127.0.0.1:1", "share", "--user", "u", "--json"} << 1
                                          << "\"step\": \"server 127.0.0.1:1\"" << "" << "";
        QTest::newRow("test-share: unknown host") << QStringList{"test-share", "nosuchhost.invalid", "share", "--user", "u"} << 1
                                                  << "^server nosuchhost.invalid +FAILED: \\S" << "" << "";
        QTest::newRow("sync: pass with the share away") << QStringList{"sync", "--now"} << 4
                                                        << "^results -> Plant_Share: unreachable, 0 copied \\(0.0 MB\\), 0 skipped, 0 failed, 0.0 s\n$"
                                                        << "^station-config: Plant_Share not reachable after 15 s; mirrors to it do not run\n$" << "";

        // Quiet by default: the library's log lines go to the tool's log file, to stderr with --verbose.
        const QString logFile = "/state/station-config/station-config.log";
        QTest::newRow("quiet: help names the log file") << QStringList{"--help"} << 0 << "\nLog file: [^\n]*" + logFile << "" << "";
        QTest::newRow("quiet: status names the log file") << QStringList{"status"} << 0 << "\nlog +[^\n]*" + logFile + "\n" << "" << "";
        QTest::newRow("quiet: folders") << QStringList{"folders"} << 0 << "Plant_Share" << "" << "";
        QTest::newRow("quiet: verbose folders") << QStringList{"folders", "--verbose"} << 0 << "Plant_Share"
                                                << "ERROR: Failure to access the alias folder: Plant_Share" << "";

        // Secrets: share passwords masked unless --show-secrets.
        const QString stored = "AwKPJgBdZr4feuMZeDEH334cx3QK";
        QTest::newRow("secrets: get masks") << QStringList{"get", "directories.folders"} << 0
                                            << "^(?!.*" + stored + ").*\"password\": \"\\*{8}\"" << "" << "";
        QTest::newRow("secrets: get shows on request") << QStringList{"get", "directories", "--show-secrets"} << 0
                                                       << "\"password\": \"" + stored + "\"" << "" << "";
        QTest::newRow("secrets: list masks") << QStringList{"list"} << 0 << "^(?!.*" + stored + ").*\\.password=\\*{8}\n" << "" << "";
        QTest::newRow("secrets: list --json masks") << QStringList{"list", "--json"} << 0
                                                    << "^(?!.*" + stored + ").*\\.password\": \"\\*{8}\"" << "" << "";
        QTest::newRow("secrets: list shows on request") << QStringList{"list", "--show-secrets"} << 0 << "\\.password=" + stored + "\n" << "" << "";
        QTest::newRow("secrets: not an option of paths") << QStringList{"paths", "--show-secrets"} << 2 << ""
                                                         << "'--show-secrets' is not an option of 'paths' \\(it belongs to get, list, status\\)" << "";

        // History commands follow the same conventions.
        QTest::newRow("history: extra argument") << QStringList{"history", "1"} << 2 << "" << "does not take the argument '1'" << "";
        QTest::newRow("history: none kept yet") << QStringList{"history"} << 0 << "^no version of .* is kept yet\n$" << "" << "";
        QTest::newRow("rollback: no version") << QStringList{"rollback"} << 2 << "" << "needs more arguments" << "";
        QTest::newRow("rollback: not a number") << QStringList{"rollback", "x"} << 2 << "" << "not a version number: x" << "";
        QTest::newRow("rollback: not kept") << QStringList{"rollback", "99"} << 1 << "" << "^station-config: no version is kept in .*settings.json.history\n$" << "";
        QTest::newRow("history: json, none kept") << QStringList{"history", "--json"} << 0 << "\"versions\": \\[\\s*\\]" << "" << "";
        QTest::newRow("rollback: negative") << QStringList{"rollback", "-1"} << 2 << "" << "not a version number: -1 \\(0 is the newest" << "";
        QTest::newRow("diff: not kept") << QStringList{"diff", "3"} << 1 << "" << "^station-config: no version is kept" << "";
        QTest::newRow("diff: option of another command") << QStringList{"diff", "--wait", "1"} << 2 << "" << "not an option of 'diff'" << "";
        QTest::newRow("diff: two versions") << QStringList{"diff", "0", "1"} << 2 << "" << "does not take the argument '1'" << "";
    }

    // What the library logs lands in the tool's log file, one line per message with the command.
    void logFileKeepsLibraryLines()
    {
        const QString path = m_dir.path() + "/state/station-config/station-config.log";
        QFile::remove(path);
        const Run result = run({"folders"});
        QCOMPARE(result.code, 0);
        QVERIFY2(result.err.isEmpty(), qPrintable(result.err));
        QFile log(path);
        QCOMPARE(log.permissions() & 0x0077, QFile::Permissions());
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(log.readAll());
        QVERIFY2(text.contains(QRegularExpression("\\[\\d+\\] --station \\S+ folders critical: .*Failure to access the alias folder: Plant_Share")),
                 qPrintable(text));
    }

    // Reading or editing a station leaves this computer's time zone alone; choosing a region
    // hands it to the time-zone program (the demo station's stand-in records what it gets).
    void onlyChoosingARegionSetsTheTimeZone()
    {
        const QString log = m_station + "/timedatectl-preview.log";
        QFile::remove(log);
        for (const QStringList& arguments : {QStringList{"status"}, QStringList{"folders"},
                                             QStringList{"set", "general.sound_volume", "20"}})
            QCOMPARE(run(arguments).code, 0);
        QVERIFY2(!QFileInfo::exists(log), "the time-zone program ran on load");
        QCOMPARE(run({"set", "regionalSettings.region", "America/New_York"}).code, 0);
        QFile file(log);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().endsWith(" timedatectl set-timezone America/New_York\n"));
    }

    // Which station a command works on: --station, else STATION_DIR, else the demo copy, said.
    void station_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("stationEnv");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("err");
        QTest::addColumn<int>("volume");   // general.sound_volume of the test's station afterwards

        QTest::newRow("STATION_DIR") << QStringList{"set", "general.sound_volume", "33"} << "@station" << 0 << "" << 33;
        QTest::newRow("--station before STATION_DIR") << QStringList{"--station", "@station", "set", "general.sound_volume", "34"}
                                                      << "/nonexistent" << 0 << "" << 34;
        QTest::newRow("demo copy, said") << QStringList{"set", "general.sound_volume", "35"} << "" << 0
                                         << "^station-config: using the demo station [^\n]*/data/station-config/demo-station "
                                            "\\(choose one with --station DIR or STATION_DIR\\)\n$"
                                         << 70;
        QTest::newRow("STATION_DIR without a station") << QStringList{"status"} << "/nonexistent" << 1
                                                       << "^station-config: STATION_DIR: /nonexistent holds no preconfiguration.json\n$" << 70;
        QTest::newRow("--station without a station") << QStringList{"--station", "/nonexistent", "status"} << "" << 1
                                                      << "^station-config: --station: /nonexistent holds no preconfiguration.json\n$" << 70;
        QTest::newRow("--station empty") << QStringList{"--station", "", "status"} << "" << 2 << "needs a directory" << 70;
    }

    void station()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, stationEnv);
        QFETCH(int, code);
        QFETCH(QString, err);
        QFETCH(int, volume);

        const Run result = run(arguments, false, stationEnv);
        QVERIFY2(result.code == code, qPrintable(result.err));
        verifyMatches(result.err, err, "stderr");
        QCOMPARE(valueAt(readJson(document()), "general.sound_volume").toInt(), volume);
    }

    // apply-update checks the package first: a refused one leaves nothing behind.
    void applyUpdate_data()
    {
        QTest::addColumn<QString>("package");   // "text" (not a zip), or files as name=content separated by '|'
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");
        QTest::addColumn<int>("volume");         // general.sound_volume afterwards

        QTest::newRow("not a zip archive") << "text" << 1 << ""
                                           << "^station-config: .*/package.zip: not a package the station can open .*; nothing was applied\n$" << 70;
        QTest::newRow("no settings update") << "notes.txt=hello" << 1 << ""
                                            << "it holds no settings update \\(configuration_update.json at its top level\\); nothing was applied\n$" << 70;
        QTest::newRow("update not an object") << "configuration_update.json=[1, 2]" << 1 << ""
                                              << "its configuration_update.json is not a JSON object; nothing was applied\n$" << 70;
        QTest::newRow("broken elements") << "configuration_update.json={}|elements.json={broken" << 1 << ""
                                         << "its elements.json is not valid JSON; nothing was applied\n$" << 70;
        QTest::newRow("applied, changed keys named")
            << "configuration_update.json={\"general\": {\"sound_volume\": 12}, \"templates\": {\"report_footer\": \"new\"}}|readme.txt=x"
            << 0 << "^applied +yes\nchangedKeys +general.sound_volume, templates.report_footer\n.*\nignoredFiles +readme.txt\n" << "" << 12;
    }

    void applyUpdate()
    {
        QFETCH(QString, package);
        QFETCH(int, code);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QFETCH(int, volume);

        const QString zip = m_dir.path() + "/package.zip";
        QFile::remove(zip);
        if (package == "text") {
            QFile file(zip);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("plain text") > 0);
        } else {
            if (QStandardPaths::findExecutable("zip").isEmpty())
                QSKIP("needs the zip program");
            QTemporaryDir content;
            QStringList names;
            for (const QString& file : package.split('|')) {
                const QString name = file.section('=', 0, 0);
                QFile entry(content.filePath(name));
                QVERIFY(entry.open(QIODevice::WriteOnly) && entry.write(file.section('=', 1).toUtf8()) > 0);
                names << name;
            }
            QProcess zipper;
            zipper.setWorkingDirectory(content.path());
            zipper.start("zip", QStringList{"-q", zip} + names);
            QVERIFY(zipper.waitForFinished() && zipper.exitCode() == 0);
        }

        const Run result = run({"apply-update", zip});
        QVERIFY2(result.code == code, qPrintable(result.err));
        verifyMatches(result.out, out, "stdout");
        verifyMatches(result.err, err, "stderr");
        QCOMPARE(valueAt(readJson(document()), "general.sound_volume").toInt(), volume);
        // Nothing is left for the next start to find.
        QCOMPARE(QDir(m_station + "/update").entryList(QDir::Files | QDir::NoDotAndDotDot), QStringList());
        QCOMPARE(QDir(m_station + "/config").entryList({"configuration_update.json", "elements.json"}, QDir::Files), QStringList());
    }

    // set and unset keep versions that history lists, diff compares and rollback restores.
    void historyOfSetAndUnset()
    {
        QCOMPARE(run({"set", "general.sound_volume", "20"}).code, 0);
        QCOMPARE(run({"unset", "regionalSettings.torque_unit"}).code, 0);
        const Run history = run({"history"});
        QCOMPARE(history.code, 0);
        QVERIFY2(QRegularExpression("^  0  .* unset regionalSettings.torque_unit\n  1  .* set general.sound_volume  \\[general.sound_volume[],]")
                     .match(history.out).hasMatch(), qPrintable(history.out));
        const Run diff = run({"diff", "1"});
        QCOMPARE(diff.code, 0);
        QVERIFY2(diff.out.contains("general.sound_volume: 70 -> 20\n"), qPrintable(diff.out));
        QVERIFY2(!diff.out.contains("torque_unit"), qPrintable(diff.out));
        const Run rollback = run({"rollback", "1", "--json"});
        QCOMPARE(rollback.code, 0);
        QCOMPARE(QJsonDocument::fromJson(rollback.out.toUtf8()).object().value("restored").toInt(), 1);
        QCOMPARE(valueAt(readJson(document()), "general.sound_volume").toInt(), 70);
    }

    // The bash completion offers commands, options of the command, keys and their values.
    void completion_data()
    {
        QTest::addColumn<QStringList>("words");      // after the program; the last one is being completed
        QTest::addColumn<QStringList>("offered");    // each must be among the completions
        QTest::addColumn<QStringList>("absent");     // none may be

        QTest::newRow("commands") << QStringList{"st"} << QStringList{"status", "storage"} << QStringList{"sync", "set"};
        QTest::newRow("global options") << QStringList{"--"} << QStringList{"--station", "--json", "--verbose"} << QStringList{"--now"};
        QTest::newRow("options of the command") << QStringList{"sync", "--"} << QStringList{"--now", "--once", "--reset", "--json"}
                                                << QStringList{"--wait", "--show-secrets"};
        QTest::newRow("keys") << QStringList{"--station", "@station", "set", "general.so"} << QStringList{"general.sound_volume"}
                              << QStringList{"general.workplace_name"};
        QTest::newRow("choices") << QStringList{"--station", "@station", "set", "regionalSettings.language", ""}
                                 << QStringList{"de_DE", "en_GB", "fr_FR"} << QStringList{"true"};
        QTest::newRow("choices with spaces") << QStringList{"--station", "@station", "set", "regionalSettings.hourFormat", ""}
                                             << QStringList{"24\\ h", "12\\ h"} << QStringList{};
        QTest::newRow("booleans") << QStringList{"--station", "@station", "set", "general.hideProductionTimer", ""}
                                  << QStringList{"true", "false"} << QStringList{};
        QTest::newRow("regions") << QStringList{"--station", "@station", "timezones", "Eu"} << QStringList{"Europe"}
                                 << QStringList{"America"};
    }

    void completion()
    {
        QFETCH(QStringList, words);
        QFETCH(QStringList, offered);
        QFETCH(QStringList, absent);
        if (QStandardPaths::findExecutable("bash").isEmpty())
            QSKIP("needs bash");

        QStringList quoted{"'" + C_tool + "'"};
        for (QString word : words)
            quoted << "'" + word.replace("@station", m_station) + "'";
        const QString script = QString("source '%1'; COMP_WORDS=(%2); COMP_CWORD=%3; _station_config; "
                                       "printf '%s\\n' \"${COMPREPLY[@]}\"")
                                   .arg(QStringLiteral(STATION_COMPLETION_FILE), quoted.join(' '))
                                   .arg(words.size());
        QProcess bash;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_STATE_HOME", m_dir.path() + "/state");
        bash.setProcessEnvironment(environment);
        bash.start("bash", {"-c", script});
        QVERIFY(bash.waitForFinished(60000));
        QCOMPARE(bash.exitCode(), 0);
        const QStringList reply = QString::fromUtf8(bash.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        for (const QString& word : offered)
            QVERIFY2(reply.contains(word), qPrintable(word + " not in " + reply.join(' ')));
        for (const QString& word : absent)
            QVERIFY2(!reply.contains(word), qPrintable(word + " in " + reply.join(' ')));
    }

    void command()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QFETCH(QString, after);

        const Run result = run(arguments);
        QVERIFY2(result.code == code, qPrintable(QString("exit %1, expected %2\nstdout: %3\nstderr: %4")
                                                     .arg(result.code).arg(code).arg(result.out, result.err)));
        verifyMatches(result.out, out, "stdout");
        verifyMatches(result.err, err, "stderr");
        for (const auto& expected : assignments(after))
            QCOMPARE(valueAt(readJson(document()), expected.first), expected.second);
    }
};

QTEST_GUILESS_MAIN(TestStationConfig)
#include "tst_stationconfig.moc"
