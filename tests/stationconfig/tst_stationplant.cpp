// Settings across the stations of a plant, through the built tool: export-update (with
// apply-update on another station) and compare.
#include <QTemporaryDir>

#include "stationtool.h"
#include "utilities/zip.h"

namespace {
const QString C_tool = QStringLiteral(STATION_CONFIG_BINARY);

void setAt(QJsonObject& root, const QStringList& path, const QJsonValue& value)
{
    if (path.size() == 1) {
        root.insert(path.first(), value);
        return;
    }
    QJsonObject child = root.value(path.first()).toObject();
    setAt(child, path.mid(1), value);
    root.insert(path.first(), child);
}
}

class TestStationPlant : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_here;
    QString m_other;

    static QString document(const QString& station) { return station + "/config/settings.json"; }

    // Writes "key=JSON;..." into the other station's document; "damaged" leaves it torn.
    void changeOther(const QString& changes) const
    {
        QJsonObject root = readJson(document(m_other));
        for (const auto& change : assignments(changes))
            setAt(root, change.first.split('.'), change.second);
        QFile file(document(m_other));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(changes == "damaged" ? QByteArray("{\"general\": {") : QJsonDocument(root).toJson());
    }

    ToolRun run(const QString& station, QStringList arguments) const
    {
        for (QString& argument : arguments) {
            argument.replace("@other", m_other);
            argument.replace("@out", m_dir.path() + "/out.zip");
        }
        return runTool(C_tool, QStringList { "--station", station } + arguments, toolEnvironment(m_dir.path() + "/state"));
    }

    // The settings update inside a package, read with the zip reader start-up uses.
    static QJsonObject packageContent(const QString& zip)
    {
        QTemporaryDir unpacked;
        if (Zip::Unzip(QFile::encodeName(zip), QFile::encodeName(unpacked.path()), QByteArray()).isEmpty())
            return {};
        return readJson(unpacked.path() + "/configuration_update.json");
    }

private slots:
    void init()
    {
        QVERIFY(m_dir.isValid());
        m_here = m_dir.path() + "/here";
        m_other = m_dir.path() + "/other";
        for (const QString& station : { m_here, m_other }) {
            QDir(station).removeRecursively();
            QVERIFY(copyTree(QStringLiteral(STATION_DEMO_DIR), station));
        }
        QFile::remove(m_dir.path() + "/out.zip");
        changeOther("general.workplace_name=\"Station 13\"");
    }

    void exportUpdate_data()
    {
        QTest::addColumn<QString>("otherChanges");  // "key=JSON;..." written into the other station first
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");
        QTest::addColumn<QString>("package");       // "key=JSON;key=" (absent) in the package; empty: no package

        const QString usage = "\nTry 'station-config --help'.\n$";
        QTest::newRow("whole station, identity left out")
            << "" << QStringList { "export-update", "@out" } << 0 << "^package +\\S+/out.zip\nkeys +\\d+\n" << ""
            << "general.sound_volume=70;regionalSettings.city=\"Paris\";general.workplace_name=;general.lastModification=;"
               "system=;directories=";
        QTest::newRow("folders when named")
            << "" << QStringList { "export-update", "--keys", "directories.foldersRoles", "@out" } << 0 << "" << ""
            << "directories.foldersRoles.results=\"{2a9d6c41-7e3b-4f05-8c1a-5b8e0f2d7c36}\";general=";
        QTest::newRow("chosen sections and keys")
            << "" << QStringList { "export-update", "--keys", "regionalSettings.city, sync", "@out" } << 0
            << "^package .*\nkeys +3\n  regionalSettings.city\n  sync.excluded_patterns\n  sync.interval_ms\n$" << ""
            << "regionalSettings.city=\"Paris\";sync.interval_ms=60000;regionalSettings.region=;general=";
        QTest::newRow("identity key named exactly")
            << "" << QStringList { "export-update", "--keys", "general.workplace_name", "@out" } << 0 << "" << ""
            << "general.workplace_name=\"Station 12 - Gearbox housing\";general.sound_volume=";
        QTest::newRow("section does not name its identity key")
            << "" << QStringList { "export-update", "--keys", "general", "@out" } << 0 << "" << ""
            << "general.sound_volume=70;general.workplace_name=";
        QTest::newRow("only what differs from another station")
            << "general.sound_volume=40;validators.extra=\"^x$\";regionalSettings.displayDate=true"
            << QStringList { "export-update", "--from", "@other", "@out" } << 0
            << "\nkeys +1\n  general.sound_volume\nnotCarried +1 \\(only on [^\n]*/other; an update cannot remove keys\\)\n  validators.extra\n"
            << "" << "general.sound_volume=70;validators=;general.workplace_name=;regionalSettings=";
        QTest::newRow("equal stations: an empty package")
            << "" << QStringList { "export-update", "--from", "@other", "--json", "@out" } << 0 << "\"keys\": \\[\\s*\\]" << ""
            << "general=";
        QTest::newRow("other station unusable") << "damaged" << QStringList { "export-update", "--from", "@other", "@out" } << 3 << ""
                                                << "other/config/settings.json: not valid JSON .*nothing was changed\n$" << "";
        QTest::newRow("prefix matching nothing") << "" << QStringList { "export-update", "--keys", "general.volume", "@out" } << 1 << ""
                                                 << "^station-config: this station has no setting under general.volume; nothing was written\n$" << "";
        QTest::newRow("empty prefix") << "" << QStringList { "export-update", "--keys", "general,,sync", "@out" } << 2 << ""
                                      << "'--keys': 'general,,sync' is not a comma-separated list of keys or sections" + usage << "";
        QTest::newRow("--from not a station") << "" << QStringList { "export-update", "--from", "/nonexistent", "@out" } << 2 << ""
                                              << "^station-config: /nonexistent holds no readable preconfiguration.json" + usage << "";
        QTest::newRow("no directory for the package")
            << "" << QStringList { "export-update", "/nonexistent/out.zip" } << 1 << "" << "^station-config: cannot write in /nonexistent" << "";
    }

    void exportUpdate()
    {
        QFETCH(QString, otherChanges);
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QFETCH(QString, package);

        changeOther(otherChanges);
        const ToolRun result = run(m_here, arguments);
        QVERIFY2(result.code == code, qPrintable(QString("exit %1\n%2%3").arg(result.code).arg(result.out, result.err)));
        if (!out.isEmpty())
            verifyMatches(result.out, out, "stdout");
        if (!err.isEmpty())
            verifyMatches(result.err, err, "stderr");
        const QString zip = m_dir.path() + "/out.zip";
        QCOMPARE(QFileInfo::exists(zip), !package.isEmpty());
        // No temporary is left beside it.
        QCOMPARE(QDir(m_dir.path()).entryList({ ".out.zip*" }, QDir::Files | QDir::Hidden), QStringList());
        if (package.isEmpty())
            return;
        const QJsonObject content = packageContent(zip);
        for (const auto& expected : assignments(package))
            QVERIFY2(valueAt(content, expected.first) == expected.second,
                     qPrintable(expected.first + " in " + QJsonDocument(content).toJson()));
    }

    // An existing package is replaced only with --force, never left half written.
    void existingPackage()
    {
        const QString zip = m_dir.path() + "/out.zip";
        QFile file(zip);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("kept") == 4);
        file.close();
        const ToolRun refused = run(m_here, { "export-update", "@out" });
        QCOMPARE(refused.code, 1);
        verifyMatches(refused.err, "^station-config: \\S+/out.zip exists; give --force to replace it\n$", "stderr");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("kept"));
        file.close();
        QCOMPARE(run(m_here, { "export-update", "--force", "--keys", "sync", "@out" }).code, 0);
        QCOMPARE(valueAt(packageContent(zip), "sync.interval_ms"), QJsonValue(60000));
    }

    // A rollout: what differs goes to the other station, its history records it, and the two
    // then compare equal while each keeps its name.
    void rollout()
    {
        changeOther("general.sound_volume=40;regionalSettings.city=\"Berlin\";comments.skip_comments=[\"x\"]");
        QCOMPARE(run(m_here, { "compare", "@other" }).code, 1);
        QCOMPARE(run(m_here, { "export-update", "--from", "@other", "@out" }).code, 0);
        const ToolRun applied = run(m_other, { "apply-update", m_dir.path() + "/out.zip" });
        QVERIFY2(applied.code == 0, qPrintable(applied.err));
        verifyMatches(applied.out, "changedKeys +comments.skip_comments, general.sound_volume, regionalSettings.city\n", "stdout");
        const ToolRun compared = run(m_here, { "compare", "@other" });
        QVERIFY2(compared.code == 0, qPrintable(compared.out + compared.err));
        QCOMPARE(valueAt(readJson(document(m_other)), "general.workplace_name"), QJsonValue("Station 13"));
        verifyMatches(run(m_other, { "history" }).out, "^  0  .* apply-update out.zip  \\[comments.skip_comments, ", "history");
    }

    void compare_data()
    {
        QTest::addColumn<QString>("otherChanges");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");

        const QString stored = "AwKPJgBdZr4feuMZeDEH334cx3QK";
        QTest::newRow("only the names differ") << "general.lastModification=\"2026-01-01T00:00:00\"" << QStringList { "compare", "@other" } << 0
                                               << "^same settings as \\S+/other\n$" << "";
        QTest::newRow("a value differs")
            << "general.sound_volume=40;regionalSettings.customNtp=" << QStringList { "compare", "@other" } << 1
            << "^general.sound_volume: 70 \\| 40\nregionalSettings.customNtp: ntp.plant.local \\| \\(absent\\)\n2 key\\(s\\) differ: this station \\| \\S+/other\n$"
            << "";
        QTest::newRow("passwords masked")
            << "directories.folders=[{\"aliasName\":\"Plant_Share\",\"password\":\"other\"}]" << QStringList { "compare", "--keys", "directories", "@other" } << 1
            << "^(?!.*(" + stored + "|other\")).*directories.folders: .*\"password\":\"\\*{8}\".* \\| .*\"password\":\"\\*{8}\"" << "";
        QTest::newRow("json")
            << "general.sound_volume=40" << QStringList { "compare", "@other", "--json" } << 1
            << "\"differences\": \\[\\s+\\{\\s+\"here\": 70,\\s+\"key\": \"general.sound_volume\",\\s+\"other\": 40\\s+\\}\\s+\\],\\s+\"equal\": false" << "";
        QTest::newRow("other sections left out") << "general.sound_volume=40" << QStringList { "compare", "--keys", "regionalSettings", "@other" }
                                                 << 0 << "^same settings" << "";
        QTest::newRow("identity key named") << "" << QStringList { "compare", "--keys", "general.workplace_name", "@other" } << 1
                                            << "^general.workplace_name: Station 12 - Gearbox housing \\| Station 13\n" << "";
        QTest::newRow("other station unusable") << "damaged" << QStringList { "compare", "@other" } << 3 << ""
                                                << "other/config/settings.json: not valid JSON .*nothing was changed\n$";
        QTest::newRow("other not a station") << "" << QStringList { "compare", "/nonexistent" } << 2 << "" << "holds no readable preconfiguration.json";
    }

    void compare()
    {
        QFETCH(QString, otherChanges);
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        QFETCH(QString, out);
        QFETCH(QString, err);

        changeOther(otherChanges);
        const ToolRun result = run(m_here, arguments);
        QVERIFY2(result.code == code, qPrintable(QString("exit %1\n%2%3").arg(result.code).arg(result.out, result.err)));
        verifyMatches(result.out, out, "stdout");
        verifyMatches(result.err, err, "stderr");
    }

    // Folders and relations brought to a wanted state: a change is saved once, the same
    // command again is "unchanged" and keeps no version; --check changes nothing.
    void wantedState_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("after");      // "key=JSON;..." in the document afterwards
        QTest::addColumn<QStringList>("aliases"); // the operator folders afterwards

        const QStringList demo { "Archive", "Exports", "Plant_Share" };
        const QString share = "{\"aliasName\": \"Cell_Share\", \"type\": \"samba\", \"address\": \"127.0.0.1:1\", "
                              "\"path\": \"cell\", \"identifier\": \"op\", \"password\": \"pw\", \"role\": \"pdfResults\"}";
        QTest::newRow("folder-set: a new share with its role") << QStringList { "folder-set", share } << 0
                                                               << "^folder Cell_Share: changed\n$" << "" << QStringList { "Archive", "Cell_Share", "Exports", "Plant_Share" };
        QTest::newRow("folder-set --check") << QStringList { "--json", "folder-set", "--check", share } << 0
                                            << "\"after\": \\{.*\"password\": \"\\*{8} \\(changed\\)\".*\"before\": null,\\s+\"changed\": true"
                                            << "directories.foldersRoles.pdfResults=" << demo;
        QTest::newRow("folder-set: another path")
            << QStringList { "folder-set", "{\"aliasName\": \"Archive\", \"type\": \"internal\", \"path\": \"archive2\"}" }
            << 0 << "^folder Archive: changed\n$" << "directories.folders.0.path=\"archive2\"" << demo;
        QTest::newRow("folder-set: built-in folder")
            << QStringList { "folder-set", "{\"aliasName\": \"SEQUENCES\", \"type\": \"internal\", \"path\": \"x\"}" }
            << 1 << "" << "" << demo;
        QTest::newRow("folder-set: unknown field")
            << QStringList { "folder-set", "{\"aliasName\": \"X\", \"type\": \"internal\", \"colour\": \"red\"}" }
            << 1 << "" << "" << demo;
        QTest::newRow("folder-remove") << QStringList { "folder-remove", "Exports" } << 0 << "^folder Exports: changed\n$"
                                       << "" << QStringList { "Archive", "Plant_Share" };
        QTest::newRow("folder-remove: releases its role") << QStringList { "folder-remove", "Plant_Share" } << 0 << ""
                                                          << "directories.foldersRoles.results=" << QStringList { "Archive", "Exports" };
        QTest::newRow("folder-remove: none there") << QStringList { "folder-remove", "Nowhere" } << 0
                                                   << "^folder Nowhere: unchanged\n$" << "" << demo;
        QTest::newRow("relation-set: new") << QStringList { "relation-set", "9", "left" } << 0 << "^relation 9: changed\n$"
                                           << "sequencer.sequenceIoRelations.3={\"binaryCode\":9,\"sequenceBaseName\":\"left\"}" << demo;
        QTest::newRow("relation-set: another sequence") << QStringList { "relation-set", "5", "right" } << 0 << ""
                                                        << "sequencer.sequenceIoRelations.2={\"binaryCode\":5,\"sequenceBaseName\":\"right\"}" << demo;
        QTest::newRow("relation-set: code 0") << QStringList { "relation-set", "0", "x" } << 2 << "" << "" << demo;
        QTest::newRow("relation-remove") << QStringList { "relation-remove", "5" } << 0 << "^relation 5: changed\n$"
                                         << "sequencer.sequenceIoRelations.2=" << demo;
        QTest::newRow("set --check") << QStringList { "--json", "set", "--check", "regionalSettings.language", "Deutsch" } << 0
                                     << "\"after\": \"de_DE\",\\s+\"before\": \"en_GB\",\\s+\"changed\": true"
                                     << "regionalSettings.language=\"en_GB\"" << demo;
        QTest::newRow("unset --check: the default comes back")
            << QStringList { "unset", "--check", "regionalSettings.weight_unit" } << 0
            << "^regionalSettings.weight_unit: kg -> g \\(would change\\)\n$" << "regionalSettings.weight_unit=\"kg\"" << demo;
    }

    void wantedState()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        QFETCH(QString, out);
        QFETCH(QString, after);
        QFETCH(QStringList, aliases);

        const auto versions = [this] {
            return QJsonDocument::fromJson(run(m_here, { "history", "--json" }).out.toUtf8()).object().value("versions").toArray().size();
        };
        const ToolRun result = run(m_here, arguments);
        QVERIFY2(result.code == code, qPrintable(QString("exit %1\n%2%3").arg(result.code).arg(result.out, result.err)));
        if (!out.isEmpty())
            verifyMatches(result.out, out, "stdout");
        const QJsonObject document = readJson(this->document(m_here));
        for (const auto& expected : assignments(after))
            QVERIFY2(valueAt(document, expected.first) == expected.second, qPrintable(expected.first));
        QStringList found;
        for (const QJsonValue& folder : document.value("directories").toObject().value("folders").toArray())
            found << folder.toObject().value("aliasName").toString();
        QCOMPARE(found, aliases);
        if (code != 0 || arguments.contains("--check"))
            return;
        const int kept = versions();
        const ToolRun again = run(m_here, arguments);
        QCOMPARE(again.code, 0);
        verifyMatches(again.out, ": unchanged\n$", "stdout of the same command again");
        QCOMPARE(versions(), kept);
    }
};

QTEST_GUILESS_MAIN(TestStationPlant)
#include "tst_stationplant.moc"
