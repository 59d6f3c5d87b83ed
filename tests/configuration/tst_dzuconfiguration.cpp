#include "teststation.h"

#include "logcapture.h"

#include "access/accesscontrolmanager.h"
#include "utilities/jsontools.h"
#include "utilities/keyboardmanagement.h"
#include "utilities/languagesmanagement.h"

#include <QJsonArray>
#include <QSignalSpy>
#include <QUuid>
#include <QtTest>

namespace {
// Lines of the service's own that hold `message` (any source line).
int logged(const LogCapture& log, const char* message)
{
    return log.matching(QString::fromUtf8(message)).filter(QStringLiteral("lib_configuration/source/d_zu_configuration;\t")).size();
}

QJsonValue at(const QJsonObject& object, const char* dottedPath)
{
    return JsonTools::getValue(object, QString::fromLatin1(dottedPath));
}
}

class TestDZuConfiguration : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void loadProperty_data();
    void loadProperty();
    void loadSync_data();
    void loadSync();
    void loadDateTime_data();
    void loadDateTime();
    void pluginDefaults_data();
    void pluginDefaults();
    void unavailableDocumentLogs_data();
    void unavailableDocumentLogs();
    void reloadRebuildsHiddenSectionAndKeepsTheObject();

    void saveWritesSections();
    void saveSections_data();
    void saveSections();
    void saveSkipsNullRelation();
    void saveUsersOnlyWhileAccessControlLives();
    void saveToUnwritableFileFails();

    void restartFindsEverythingBack();
};

void TestDZuConfiguration::initTestCase()
{
    // Applying a region never changes this machine's time zone.
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("true"));
}

void TestDZuConfiguration::loadProperty_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("expected");

    const QByteArray empty = "{}";
    QTest::newRow("missing inactivity_timeout reads 0, not 60") << empty << "inactivityTimeout" << QVariant(0);
    QTest::newRow("missing sound_volume reads 0, not 100") << empty << "soundVolume" << QVariant(0);
    QTest::newRow("missing sequenceWarningThreshold reads 0, not 90") << empty << "sequenceWarningThreshold" << QVariant(0);
    QTest::newRow("storage warning limit is not in the document") << empty << "availableStorageWarningLimit" << QVariant(5);
    QTest::newRow("missing useDefaultNtp is true") << empty << "useDefaultNtp" << QVariant(true);

    const QByteArray general = R"({"general": {"sound_volume": 150}, "regionalSettings": {"dateFormat": "D.M.Y"},
        "comments": {"skip_comments": ["a", 5, "b", "a"], "rework_comments": ["r"]}})";
    QTest::newRow("stored volume 150 reads as 100") << general << "soundVolume" << QVariant(100);
    QTest::newRow("date format read unchecked") << general << "currentDateFormat" << QVariant("D.M.Y");
    QTest::newRow("comments keep order, duplicates and a non-text element as empty")
        << general << "skipComments" << QVariant(QStringList{"a", "", "b", "a"});

    const QByteArray wrong = R"({"general": {"workplace_name": 5, "inactivity_timeout": "60",
        "sequenceWarningThreshold": 12.5, "forceAutoLogoutForAllUsers": "true"},
        "sequencer": {"sequenceAutoLaunch": 1},
        "regionalSettings": {"useDefaultNtp": "yes", "torque_unit": 3},
        "comments": {"skip_comments": "not a list"}})";
    QTest::newRow("number as workplace gives empty text") << wrong << "workplaceName" << QVariant(QString());
    QTest::newRow("text as timeout gives 0") << wrong << "inactivityTimeout" << QVariant(0);
    QTest::newRow("text as boolean gives false") << wrong << "forceAutoLogoutForAllUsers" << QVariant(false);
    QTest::newRow("present useDefaultNtp that is not a boolean is false") << wrong << "useDefaultNtp" << QVariant(false);
    QTest::newRow("number as unit gives the unit default") << wrong << "torqueUnit" << QVariant("Nm");
    QTest::newRow("non-array comments give an empty list") << wrong << "skipComments" << QVariant(QStringList());
}

void TestDZuConfiguration::loadProperty()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, property);
    QFETCH(QVariant, expected);
    TestStation station;
    QVERIFY(station.writeText(document.constData()));
    auto config = station.create();
    const QVariant value = config->property(property.toLatin1().constData());
    QVERIFY2(value.isValid(), qPrintable(property));
    QCOMPARE(value, expected);
}

void TestDZuConfiguration::loadSync_data()
{
    QTest::addColumn<QByteArray>("sync");
    QTest::addColumn<int>("interval");
    QTest::addColumn<QStringList>("patterns");
    const QStringList defaults{"*-journal", "*-shm", "*-wal"};
    QTest::newRow("999 ms is refused") << QByteArray(R"({"interval_ms": 999})") << 30000 << defaults;
    QTest::newRow("1000 ms is accepted") << QByteArray(R"({"interval_ms": 1000})") << 1000 << defaults;
    QTest::newRow("600000 ms is accepted") << QByteArray(R"({"interval_ms": 600000})") << 600000 << defaults;
    QTest::newRow("600001 ms is refused") << QByteArray(R"({"interval_ms": 600001})") << 30000 << defaults;
    QTest::newRow("most negative 32-bit is refused") << QByteArray(R"({"interval_ms": -2147483648})") << 30000 << defaults;
    QTest::newRow("trimmed, empty, number and blanks give one pattern")
        << QByteArray(R"({"excluded_patterns": ["  *.tmp ", "", 5, "   "]})") << 30000 << QStringList{"*.tmp"};
    QTest::newRow("a string instead of an array keeps the defaults")
        << QByteArray(R"({"excluded_patterns": "*.tmp"})") << 30000 << defaults;
}

// The service and the static readers used before it exists agree.
void TestDZuConfiguration::loadSync()
{
    QFETCH(QByteArray, sync);
    QFETCH(int, interval);
    QFETCH(QStringList, patterns);
    TestStation station;
    QVERIFY(station.writeText("{\"sync\": " + sync + '}'));
    auto config = station.create();
    QCOMPARE(config->syncIntervalMs(), interval);
    QCOMPARE(config->syncExcludedPatterns(), patterns);
    const QString dir = station.configDir();
    QCOMPARE(DZuConfiguration::readSyncIntervalMs(dir, TestStation::C_fileName, 30000), interval);
    QCOMPARE(DZuConfiguration::readSyncExcludedPatterns(dir, TestStation::C_fileName, {"*-journal", "*-shm", "*-wal"}),
             patterns);
    // An unreadable or absent file gives the defaults passed in.
    QVERIFY(station.writeBytes("{ not json"));
    QCOMPARE(DZuConfiguration::readSyncIntervalMs(dir, TestStation::C_fileName, 4321), 4321);
    QCOMPARE(DZuConfiguration::readSyncExcludedPatterns(dir, "absent.json", {"x"}), QStringList{"x"});
}

void TestDZuConfiguration::loadDateTime_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("offset");
    QTest::addColumn<bool>("is24h");
    QTest::newRow("1.5 rounds up to 2") << QByteArray(R"({"system": {"utcOffset": 1.5}})") << 2 << true;
    QTest::newRow("-1.5 rounds up to -1") << QByteArray(R"({"system": {"utcOffset": -1.5}})") << -1 << true;
    QTest::newRow("text form of 2 gives 0") << QByteArray(R"({"system": {"utcOffset": "2"}})") << 0 << true;
    QTest::newRow("12 h is 12-hour display") << QByteArray(R"({"regionalSettings": {"hourFormat": "12 h"}})") << 0 << false;
    QTest::newRow("other spelling is not 24 h") << QByteArray(R"({"regionalSettings": {"hourFormat": "24h"}})") << 0 << false;
}

// Starts from offset 7 and 12-hour display, so that every row must change something.
void TestDZuConfiguration::loadDateTime()
{
    QFETCH(QByteArray, document);
    QFETCH(int, offset);
    QFETCH(bool, is24h);
    TestStation station;
    QVERIFY(station.writeText(R"({"system": {"utcOffset": 7}, "regionalSettings": {"hourFormat": "12 h"}})"));
    auto config = station.create();
    QCOMPARE(config->dateTime()->utcOffset(), 7);
    QVERIFY(!config->dateTime()->is24hFormat());
    QVERIFY(station.writeText(document.constData()));
    config->reload();
    QCOMPARE(config->dateTime()->utcOffset(), offset);
    QCOMPARE(config->dateTime()->is24hFormat(), is24h);
    QCOMPARE(config->isCurrent24HoursFormat(), is24h);
}

void TestDZuConfiguration::pluginDefaults_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("files");      // plugin files written below the configuration directory
    QTest::addColumn<QStringList>("expected");
    const QString a = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QString b = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QByteArray none = "{}";
    QTest::newRow("UUID dir with a valid file is kept, ordinary word skipped")
        << none << "plugins/" + a + "/config_plugin.json,plugins/scanner/config_plugin.json" << QStringList{a};
    QTest::newRow("paths.plugins and configuration.pluginConfigFilename are honoured")
        << QByteArray(R"({"paths": {"plugins": "addons"}, "configuration": {"pluginConfigFilename": "defaults.json"}})")
        << "addons/" + a + "/defaults.json,plugins/" + b + "/config_plugin.json" << QStringList{a};
}

void TestDZuConfiguration::pluginDefaults()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, files);
    QFETCH(QStringList, expected);
    TestStation station;
    QVERIFY(station.writeText(document.constData()));
    for (const QString& file : files.split(','))
        QVERIFY(writeFile(station.configDir() + '/' + file, R"({"port": "/dev/ttyUSB0"})"));
    auto config = station.create();
    const QJsonValue defaults = at(config->mainConfiguration(), "_hidden_.pluginsDefConf");
    QVERIFY(defaults.isObject());
    QCOMPARE(defaults.toObject().keys(), expected);
    for (const QString& key : expected)
        QCOMPARE(defaults.toObject().value(key).toObject().value("port").toString(), QString("/dev/ttyUSB0"));
}

void TestDZuConfiguration::unavailableDocumentLogs_data()
{
    QTest::addColumn<bool>("noDirectory");
    QTest::newRow("missing file") << false;
    QTest::newRow("empty directory path: no workspace either") << true;
}

void TestDZuConfiguration::unavailableDocumentLogs()
{
    QFETCH(bool, noDirectory);
    TestStation station;
    QVERIFY(QFile::remove(station.filePath()));
    LogCapture log;
    auto config = noDirectory ? station.createIn(QString()) : station.create();
    QCOMPARE(logged(log, "ERROR: Main configuration is not available!"), 1);
    QCOMPARE(logged(log, "ERROR: No workspace directory available!"), noDirectory ? 1 : 0);
    QCOMPARE(at(config->mainConfiguration(), "_hidden_").toObject().contains("pluginsDefConf"), !noDirectory);
    QCOMPARE(config->mainConfiguration().keys(), QStringList{"_hidden_"});
    QCOMPARE(config->currentRegion(), QString("Europe"));
    QCOMPARE(config->inactivityTimeout(), 0);
}

void TestDZuConfiguration::reloadRebuildsHiddenSectionAndKeepsTheObject()
{
    TestStation station;
    QVERIFY(station.writeText(R"({"_hidden_": {"userName": "from file", "stale": 1}, "logger": {"level": "debug"}})"));
    auto config = station.create();
    const QSharedPointer<QJsonObject> settings = config->settings();
    const QJsonObject hidden = at(config->mainConfiguration(), "_hidden_").toObject();
    QCOMPARE(hidden.keys(), (QStringList{"configurationDirectoryPath", "pluginsDefConf"}));
    QCOMPARE(hidden.value("configurationDirectoryPath").toString(), station.configDir());
    QCOMPARE(config->getLoggerSection(), (QVariantMap{{"level", "debug"}}));
    config->sltUserNameChanged("m.durand");
    QCOMPARE(at(*settings, "_hidden_.userName").toString(), QString("m.durand"));
    config->loadSettings();
    QVERIFY(!at(config->mainConfiguration(), "_hidden_").toObject().contains("userName"));

    QVERIFY(station.writeText(R"({"general": {"workplace_name": "After"}, "paths": {"images": "pictures"}})"));
    QSignalSpy configChanged(config.get(), &DZuConfiguration::sigConfigurationChanged);
    config->reload();
    QCOMPARE(config->workplaceName(), QString("After"));
    QCOMPARE(settings.data(), &config->mainConfiguration());
    QCOMPARE(config->getConfigParameter("paths.images"), QVariant("pictures"));
    QVERIFY(!config->getConfigParameter("paths.sound").isValid());
    QVERIFY(config->getLoggerSection().isEmpty());
    QCOMPARE(configChanged.count(), 0);
}

// What a restart reads back is covered below; here: what the file holds beside that.
void TestDZuConfiguration::saveWritesSections()
{
    TestStation station;
    QVERIFY(station.writeText(R"({
        "general": {"workplace_name": "W", "sound_volume": 150, "unknown": 1, "lastModification": "x"},
        "system": {"name": "Old", "version": "0.1", "utcOffset": 2, "extra": true},
        "sequencer": {"sequenceScriptPath": "a.js", "sequenceScriptData": "b.json",
                      "sequenceIoRelations": [{"binaryCode": 5, "sequenceBaseName": "B"},
                                              {"binaryCode": 3, "sequenceBaseName": "A"}]},
        "sync": {"excluded_patterns": [" *.tmp "]}})"));
    auto config = station.create();
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    QJsonObject root{{"custom", QJsonObject{{"keep", true}}}, {"general", QJsonObject{{"stale", 1}}}};
    QVERIFY(config->saveSettings(root));
    const QJsonObject file = station.readDocument();
    QCOMPARE(file, root);
    // The file gets the time of the save; the getter keeps the loaded text.
    const QString written = at(file, "general.lastModification").toString();
    const QDateTime stamp = QDateTime::fromString(written, Qt::ISODate);
    QVERIFY2(stamp.isValid() && stamp >= before && written == stamp.toString(Qt::ISODate), qPrintable(written));
    QCOMPARE(config->lastModification(), QString("x"));
    QCOMPARE(at(file, "custom.keep"), QJsonValue(true));
    QCOMPARE(at(file, "general.sound_volume"), QJsonValue(150));
    QCOMPARE(at(file, "general.workplace_name"), QJsonValue("W"));
    QCOMPARE(file.value("system").toObject(), (QJsonObject{{"name", "Orvanel Tamsic"}, {"version", "@VERSION@"}}));
    // Stored texts, not the media-prefixed ones the properties show.
    QCOMPARE(at(file, "sequencer.sequenceScriptPath"), QJsonValue("a.js"));
    QCOMPARE(at(file, "sequencer.sequenceScriptData"), QJsonValue("b.json"));
    const QJsonArray relations = at(file, "sequencer.sequenceIoRelations").toArray();
    QCOMPARE(relations.size(), 2);
    QCOMPARE(relations.at(0).toObject().value("sequenceBaseName"), QJsonValue("B"));
    QCOMPARE(relations.at(1).toObject().value("binaryCode"), QJsonValue(3));
    QCOMPARE(at(file, "sync.excluded_patterns"), QJsonValue(QJsonArray{"*.tmp"}));
    // Saving changes neither the members nor the in-memory document.
    QCOMPARE(config->storedSoundVolume(), 150);
    QCOMPARE(at(config->mainConfiguration(), "system.utcOffset"), QJsonValue(2));
}

void TestDZuConfiguration::saveSections_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QJsonObject>("expected");   // sections of the saved file
    const QJsonObject rootLogger{{"level", "root"}};
    QTest::newRow("absent plugin sections gain their defaults, absent logger leaves root's") << QByteArray("{}")
        << QJsonObject{{"logger", rootLogger},
                       {"configuration", QJsonObject{{"pluginConfigFilename", "config_plugin.json"},
                                                     {"pluginBehaviorFilename", "behavior_plugin.js"}}},
                       {"paths", QJsonObject{{"images", "media"}, {"sequences", "sequences"},
                                             {"reports", "reports"}, {"plugins", "plugins"}}}};
    QTest::newRow("present values carried, missing ones defaulted, unknown dropped")
        << QByteArray(R"({"configuration": {"pluginBehaviorFilename": "b.js", "other": 1},
                          "paths": {"images": "pictures", "reports": "pdf", "other": "x"}})")
        << QJsonObject{{"configuration", QJsonObject{{"pluginConfigFilename", "config_plugin.json"},
                                                     {"pluginBehaviorFilename", "b.js"}}},
                       {"paths", QJsonObject{{"images", "pictures"}, {"sequences", "sequences"},
                                             {"reports", "pdf"}, {"plugins", "plugins"}}}};
    QTest::newRow("empty logger leaves root's logger untouched") << QByteArray(R"({"logger": {}})")
                                                                 << QJsonObject{{"logger", rootLogger}};
    QTest::newRow("loaded logger replaces root's logger") << QByteArray(R"({"logger": {"level": "debug", "files": 3}})")
        << QJsonObject{{"logger", QJsonObject{{"level", "debug"}, {"files", 3}}}};
    // Comment lists pass through a save unconverted; a non-text element is saved as the empty
    // text the service read it as.
    QTest::newRow("comments kept as they were") << QByteArray(R"({"comments": {"skip_comments": ["a", "b", "a"]}})")
        << QJsonObject{{"comments", QJsonObject{{"skip_comments", QJsonArray{"a", "b", "a"}}, {"rework_comments", QJsonArray()}}}};
    QTest::newRow("a non-text comment saved as empty text") << QByteArray(R"({"comments": {"rework_comments": ["a", 5]}})")
        << QJsonObject{{"comments", QJsonObject{{"skip_comments", QJsonArray()}, {"rework_comments", QJsonArray{"a", ""}}}}};
}

void TestDZuConfiguration::saveSections()
{
    QFETCH(QByteArray, document);
    QFETCH(QJsonObject, expected);
    TestStation station;
    QVERIFY(station.writeText(document.constData()));
    QJsonObject root{{"logger", QJsonObject{{"level", "root"}}}};
    QVERIFY(station.create()->saveSettings(root));
    const QJsonObject file = station.readDocument();
    for (auto it = expected.constBegin(); it != expected.constEnd(); ++it)
        QCOMPARE(file.value(it.key()), it.value());
}

void TestDZuConfiguration::saveSkipsNullRelation()
{
    TestStation station;
    QVERIFY(station.writeText(R"({"sequencer": {"sequenceIoRelations": [{"binaryCode": 1, "sequenceBaseName": "A"}]}})"));
    auto config = station.create();
    config->sequenceIoRelations()->append(QSharedPointer<SequenceIoRelation>());
    config->sequenceIoRelations()->append(QSharedPointer<SequenceIoRelation>::create(2, "B"));
    LogCapture log;
    QJsonObject root;
    QVERIFY(config->saveSettings(root));
    QCOMPARE(logged(log, "DZuConfiguration::saveSettings: seqIoRl is null"), 1);
    const QJsonArray relations = at(station.readDocument(), "sequencer.sequenceIoRelations").toArray();
    QCOMPARE(relations.size(), 2);
    QCOMPARE(relations.at(1).toObject().value("sequenceBaseName"), QJsonValue("B"));
}

void TestDZuConfiguration::saveUsersOnlyWhileAccessControlLives()
{
    TestStation station;
    QVERIFY(station.writeText(R"({"regionalSettings": {"dateFormat": "YYYY-MM-DD"}})"));
    auto accessControl = std::make_unique<AccessControlManager>();
    auto config = station.create(accessControl.get());
    accessControl->setUsers({{"m.durand", 2, QDate(2030, 6, 1)}});
    QJsonObject root;
    QVERIFY(config->saveSettings(root));
    const QJsonArray users = station.readDocument().value("users").toArray();
    QCOMPARE(users.size(), 1);
    QCOMPARE(users.at(0).toObject().value("name"), QJsonValue("m.durand"));
    QCOMPARE(users.at(0).toObject().value("expiry"), QJsonValue("2030-06-01"));

    accessControl.reset();
    config->loadUsers();   // no-op without access control
    QJsonObject withUsers{{"users", QJsonArray{"kept"}}};
    QVERIFY(config->saveSettings(withUsers));
    QCOMPARE(station.readDocument().value("users"), QJsonValue(QJsonArray{"kept"}));
}

void TestDZuConfiguration::saveToUnwritableFileFails()
{
    TestStation station;
    QVERIFY(station.writeText(R"({"general": {"workplace_name": "W"}})"));
    auto config = station.create();
    // A directory in place of the file cannot be opened for writing, not even by root.
    QVERIFY(QFile::remove(station.filePath()));
    QVERIFY(QDir().mkpath(station.filePath()));
    LogCapture log;
    QJsonObject root;
    QVERIFY(!config->saveSettings(root));
    QCOMPARE(logged(log, "ERROR: Couldn't open save file."), 1);
    QCOMPARE(at(root, "general.workplace_name"), QJsonValue("W"));
}

void TestDZuConfiguration::restartFindsEverythingBack()
{
    TestStation station;
    QVERIFY(station.writeText(R"({"system": {"utcOffset": 3},
        "validators": {"serial": "^[0-9]+$"},
        "comments": {"skip_comments": ["s"], "rework_comments": ["r"]},
        "sequencer": {"sequenceIoRelations": [{"binaryCode": 2, "sequenceBaseName": "front"}]},
        "sync": {"interval_ms": 5000, "excluded_patterns": ["*.tmp"]},
        "logger": {"level": "warning"}, "paths": {"images": "pictures"},
        "users": [{"name": "admin", "level": 3, "expiry": "31/12/2031"}],
        "directories": {"folders": [{"id": "{5c1f7a2e-9b3d-4e86-a0f4-2d7c6b1e8a93}", "type": "internal",
                                     "aliasName": "Archive", "path": "archive", "enabled": true}]}})"));
    const QStringList zone = QString::fromUtf8(QTimeZone::systemTimeZoneId()).split('/');
    const QVariantMap values{
        {"workplaceName", "Station 4"}, {"prodLineName", "Line D"}, {"inactivityTimeout", 240},
        {"soundVolume", 35}, {"sequenceWarningThreshold", 70}, {"forceAutoLogoutForAllUsers", true},
        {"hideProductionTimer", true}, {"operatorCannotSelectSequence", true}, {"torqueUnit", "lbf.ft"},
        {"weightUnit", "lb"}, {"distanceUnit", "in"}, {"temperatureUnit", "\u00B0F"}, {"useDefaultNtp", false},
        {"customNtp", "ntp.plant"}, {"displayDate", true}, {"displaySeconds", true}, {"companyLogo", "logo.png"},
        {"sequenceAutoLaunch", true}, {"sequenceAutoSerialNumber", true}, {"sequenceIoLaunch", true},
        {"sequenceScriptLaunch", true}, {"sequenceStatusOutput", "OUT_2"}};
    {
        AccessControlManager accessControl;
        auto config = station.create(&accessControl);
        config->loadUsers();
        config->loadDirectories();
        QCOMPARE(accessControl.users().size(), 1);
        QCOMPARE(config->dateTime()->utcOffset(), 3);
        for (auto it = values.cbegin(); it != values.cend(); ++it)
            QVERIFY2(config->setProperty(it.key().toLatin1().constData(), it.value()), qPrintable(it.key()));
        config->setRegion(zone.value(0), zone.value(1));
        config->setFormats("12 h", "MM/DD/YYYY");
        config->setSequenceScriptPath("launch.js");
        config->setSequenceScriptData("data.json");
        QVERIFY(KeyboardManagement::instance()->setCurrentKeyboardLayoutCode("it", false));
        QVERIFY(LanguagesManagement::instance()->setCurrentLanguageCode("fr_FR"));
        // A fresh root: every section must come from the service and its collaborators.
        QJsonObject root;
        QVERIFY(config->saveSettings(root));
    }
    // Something else in the process changes the shared singletons; the file must win.
    KeyboardManagement::instance()->setCurrentKeyboardLayoutCode("gb", false);
    LanguagesManagement::instance()->setCurrentLanguageCode("en_GB");

    AccessControlManager accessControl;
    auto config = station.create(&accessControl);
    config->loadUsers();
    config->loadDirectories();
    QCOMPARE(accessControl.users().size(), 1);
    QCOMPARE(accessControl.users().first().expiry, QDate(2031, 12, 31));
    bool found = false;
    QVERIFY(config->directories()->getFolderByName("Archive", found));
    QVERIFY(found);
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        QCOMPARE(config->property(it.key().toLatin1().constData()), it.value());
    QCOMPARE(config->currentRegion(), zone.value(0));
    QCOMPARE(config->currentCity(), zone.value(1));
    QCOMPARE(config->currentHourFormat(), QString("12 h"));
    QCOMPARE(config->currentDateFormat(), QString("MM/DD/YYYY"));
    QVERIFY(!config->dateTime()->is24hFormat());
    QCOMPARE(config->storedSequenceScriptPath(), QString("launch.js"));
    QCOMPARE(config->storedSequenceScriptData(), QString("data.json"));
    QCOMPARE(KeyboardManagement::instance()->getCurrentKeyboardLayoutCode(), QString("it"));
    QCOMPARE(LanguagesManagement::instance()->getCurrentLanguageCode(), QString("fr_FR"));
    QCOMPARE(config->validators(), (QVariantMap{{"serial", "^[0-9]+$"}}));
    QCOMPARE(config->skipComments(), QStringList{"s"});
    QCOMPARE(config->reworkComments(), QStringList{"r"});
    QCOMPARE(relationTexts(*config), QStringList{"2:front"});
    QCOMPARE(config->syncIntervalMs(), 5000);
    QCOMPARE(config->syncExcludedPatterns(), QStringList{"*.tmp"});
    QCOMPARE(config->getLoggerSection(), (QVariantMap{{"level", "warning"}}));
    QCOMPARE(config->getConfigParameter("paths.images"), QVariant("pictures"));
    // Not carried over by the save: the UTC offset.
    QCOMPARE(config->dateTime()->utcOffset(), 0);
    QCOMPARE(config->systemName(), QString("Orvanel Tamsic"));
}

QTEST_GUILESS_MAIN(TestDZuConfiguration)
#include "tst_dzuconfiguration.moc"
