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
const char C_sourceTag[] = "lib_configuration/source/d_zu_configuration;\t";

QString logTag(int line, const char* message)
{
    return QString::fromLatin1(C_sourceTag) + QString::number(line) + ";\t" + QString::fromUtf8(message);
}

QJsonValue at(const QJsonObject& object, const char* dottedPath)
{
    return JsonTools::getValue(object, QString::fromLatin1(dottedPath));
}

QStringList relationNames(DZuConfiguration& config)
{
    QStringList names;
    for (const auto& relation : config.sequenceIoRelations()->list())
        names << QString::number(relation->binaryCode()) + ':' + relation->sequenceBaseName();
    return names;
}
}

class TestDZuConfiguration : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void loadProperty_data();
    void loadProperty();
    void loadRelationsUnitsAndValidators();
    void loadHandsRegionalCodesToTheirSingletons();
    void loadSyncInterval_data();
    void loadSyncInterval();
    void loadExcludedPatterns_data();
    void loadExcludedPatterns();
    void readSyncSettingsFromUnreadableFileGivesDefaults();
    void utcOffset_data();
    void utcOffset();
    void hourFormat_data();
    void hourFormat();
    void pluginDefaults_data();
    void pluginDefaults();
    void missingDocumentLogsAndKeepsDefaults();
    void emptyDirectoryLogsNoWorkspace();
    void hiddenSectionIsRebuiltByEveryLoad();
    void reloadReplacesDocumentInPlace();

    void soundVolume_data();
    void soundVolume();
    void configurationSettersEmitEveryTime_data();
    void configurationSettersEmitEveryTime();
    void displayFlagsEmitOnlyOnChange_data();
    void displayFlagsEmitOnlyOnChange();
    void sequenceScriptTextsArePrefixedOnRead();

    void saveWritesSections();
    void saveKeepsOrDefaultsPluginSections_data();
    void saveKeepsOrDefaultsPluginSections();
    void saveLastModificationIsNowButGetterKeepsLoadedValue();
    void saveLogger_data();
    void saveLogger();
    void saveSkipsNullRelation();
    void saveUsersOnlyWhileAccessControlLives();
    void saveToUnwritableFileFails();

    void restartFindsEverythingBack();
    void demoStationDocumentLoads();
};

void TestDZuConfiguration::initTestCase()
{
    // Applying a region never changes this machine's time zone.
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("true"));
}

// --- Load ------------------------------------------------------------------------------------

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
    QTest::newRow("torque unit default") << empty << "torqueUnit" << QVariant("Nm");
    QTest::newRow("temperature unit default") << empty << "temperatureUnit" << QVariant("\u00B0C");
    QTest::newRow("hour format default") << empty << "currentHourFormat" << QVariant("24 h");
    QTest::newRow("date format default") << empty << "currentDateFormat" << QVariant("DD/MM/YYYY");
    QTest::newRow("missing workplace is empty") << empty << "workplaceName" << QVariant(QString());

    const QByteArray general = R"({"general": {"workplace_name": "Station 7", "production_line_name": "Line A",
        "inactivity_timeout": 120, "sound_volume": 150, "sequenceWarningThreshold": 75,
        "forceAutoLogoutForAllUsers": true, "hideProductionTimer": true, "operatorCannotSelectSequence": true}})";
    QTest::newRow("workplace read") << general << "workplaceName" << QVariant("Station 7");
    QTest::newRow("production line read") << general << "prodLineName" << QVariant("Line A");
    QTest::newRow("inactivity read") << general << "inactivityTimeout" << QVariant(120);
    QTest::newRow("stored volume 150 reads as 100") << general << "soundVolume" << QVariant(100);
    QTest::newRow("threshold read") << general << "sequenceWarningThreshold" << QVariant(75);
    QTest::newRow("force logout read") << general << "forceAutoLogoutForAllUsers" << QVariant(true);
    QTest::newRow("hide timer read") << general << "hideProductionTimer" << QVariant(true);
    QTest::newRow("cannot select read") << general << "operatorCannotSelectSequence" << QVariant(true);

    const QByteArray wrong = R"({"general": {"workplace_name": 5, "inactivity_timeout": "60",
        "sequenceWarningThreshold": 12.5, "forceAutoLogoutForAllUsers": "true"},
        "templates": {"company_logo": ["a"]}, "sequencer": {"sequenceAutoLaunch": 1},
        "regionalSettings": {"useDefaultNtp": "yes", "torque_unit": 3, "displayDate": "true"},
        "comments": {"skip_comments": "not a list"}})";
    QTest::newRow("number as workplace gives empty text") << wrong << "workplaceName" << QVariant(QString());
    QTest::newRow("text as timeout gives 0") << wrong << "inactivityTimeout" << QVariant(0);
    QTest::newRow("fraction as threshold gives 0") << wrong << "sequenceWarningThreshold" << QVariant(0);
    QTest::newRow("text as boolean gives false") << wrong << "forceAutoLogoutForAllUsers" << QVariant(false);
    QTest::newRow("array as logo gives empty text") << wrong << "companyLogo" << QVariant(QString());
    QTest::newRow("number as sequencer flag gives false") << wrong << "sequenceAutoLaunch" << QVariant(false);
    QTest::newRow("present useDefaultNtp that is not a boolean is false") << wrong << "useDefaultNtp" << QVariant(false);
    QTest::newRow("number as unit gives the unit default") << wrong << "torqueUnit" << QVariant("Nm");
    QTest::newRow("text as display flag gives false") << wrong << "displayDate" << QVariant(false);
    QTest::newRow("non-array comments give an empty list") << wrong << "skipComments" << QVariant(QStringList());

    const QByteArray full = R"({"templates": {"company_logo": "logo.png", "company_address": "1 Forge St",
        "report_footer": "Keep"}, "comments": {"skip_comments": ["a", 5, "b", "a"], "rework_comments": ["r"]},
        "sequencer": {"sequenceAutoLaunch": true, "sequenceAutoSerialNumber": true, "sequenceIoLaunch": true,
        "sequenceScriptLaunch": true, "sequenceStatusOutput": "OUT_3"},
        "regionalSettings": {"useDefaultNtp": false, "customNtp": "ntp.local", "weight_unit": "kg",
        "distance_unit": "mm", "hourFormat": "12 h", "dateFormat": "YYYY-MM-DD", "displayDate": true,
        "displaySeconds": true}})";
    QTest::newRow("logo read") << full << "companyLogo" << QVariant("logo.png");
    QTest::newRow("address read") << full << "companyAddress" << QVariant("1 Forge St");
    QTest::newRow("footer read") << full << "reportFooter" << QVariant("Keep");
    QTest::newRow("comments keep order, duplicates and a non-text element as empty")
        << full << "skipComments" << QVariant(QStringList{"a", "", "b", "a"});
    QTest::newRow("rework comments read") << full << "reworkComments" << QVariant(QStringList{"r"});
    QTest::newRow("auto launch read") << full << "sequenceAutoLaunch" << QVariant(true);
    QTest::newRow("auto serial read") << full << "sequenceAutoSerialNumber" << QVariant(true);
    QTest::newRow("io launch read") << full << "sequenceIoLaunch" << QVariant(true);
    QTest::newRow("script launch read") << full << "sequenceScriptLaunch" << QVariant(true);
    QTest::newRow("status output read") << full << "sequenceStatusOutput" << QVariant("OUT_3");
    QTest::newRow("useDefaultNtp false read") << full << "useDefaultNtp" << QVariant(false);
    QTest::newRow("custom ntp read") << full << "customNtp" << QVariant("ntp.local");
    QTest::newRow("weight unit read") << full << "weightUnit" << QVariant("kg");
    QTest::newRow("distance unit read") << full << "distanceUnit" << QVariant("mm");
    QTest::newRow("hour format read") << full << "currentHourFormat" << QVariant("12 h");
    QTest::newRow("12 h is not the 24-hour format") << full << "isCurrent24HoursFormat" << QVariant(false);
    QTest::newRow("date format read unchecked") << full << "currentDateFormat" << QVariant("YYYY-MM-DD");
    QTest::newRow("display date read") << full << "displayDate" << QVariant(true);
    QTest::newRow("display seconds read") << full << "displaySeconds" << QVariant(true);
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

void TestDZuConfiguration::loadRelationsUnitsAndValidators()
{
    TestStation station;
    QVERIFY(station.writeText(R"({"sequencer": {"sequenceIoRelations": [
            {"binaryCode": 3, "sequenceBaseName": "front"}, {"binaryCode": 1, "sequenceBaseName": "rear"}]},
        "regionalSettings": {"torque_unit": "lbf.ft", "weight_unit": "kg", "distance_unit": "in"},
        "validators": {"serial": "^[0-9]+$", "max": 12}, "system": {"name": "Other"}})"));
    auto config = station.create();

    QCOMPARE(relationNames(*config), (QStringList{"3:front", "1:rear"}));
    QCOMPARE(config->property("sequenceIoRelations").value<OLM_SequenceIoRelation*>(), config->sequenceIoRelations());
    QCOMPARE(config->validators(), (QVariantMap{{"serial", "^[0-9]+$"}, {"max", 12}}));
    QCOMPARE(config->systemName(), QString("Other"));

    // Torque, weight, distance, temperature; each a one-key map label -> unit.
    QStringList units;
    for (const QVariant& entry : config->unitLabels()) {
        QCOMPARE(entry.toMap().size(), 1);
        units << entry.toMap().first().toString();
    }
    QCOMPARE(units, (QStringList{"lbf.ft", "kg", "in", "\u00B0C"}));

    // A reload of a document without relations empties the model.
    QVERIFY(station.writeText("{}"));
    config->reload();
    QCOMPARE(config->sequenceIoRelations()->count(), 0);
    QVERIFY(config->validators().isEmpty());
}

void TestDZuConfiguration::loadHandsRegionalCodesToTheirSingletons()
{
    TestStation station;
    QVERIFY(station.writeText(R"({"regionalSettings": {"language": "fr_FR", "keyboard_input": "de"}})"));
    auto config = station.create();
    QCOMPARE(LanguagesManagement::instance()->getCurrentLanguageCode(), QString("fr_FR"));
    QCOMPARE(KeyboardManagement::instance()->getCurrentKeyboardLayoutCode(), QString("de"));
    QCOMPARE(config->getKeyboardInput(), KeyboardManagement::instance()->getCurrentKeyboardLayout());

    QVERIFY(station.writeText("{}"));
    config->reload();
    QCOMPARE(LanguagesManagement::instance()->getCurrentLanguageCode(), QString("en_GB"));
    QCOMPARE(KeyboardManagement::instance()->getCurrentKeyboardLayoutCode(), QString("gb"));
}

void TestDZuConfiguration::loadSyncInterval_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("expected");
    QTest::newRow("999 is refused") << QByteArray(R"({"sync": {"interval_ms": 999}})") << 30000;
    QTest::newRow("1000 is accepted") << QByteArray(R"({"sync": {"interval_ms": 1000}})") << 1000;
    QTest::newRow("600000 is accepted") << QByteArray(R"({"sync": {"interval_ms": 600000}})") << 600000;
    QTest::newRow("600001 is refused") << QByteArray(R"({"sync": {"interval_ms": 600001}})") << 30000;
    QTest::newRow("negative is refused") << QByteArray(R"({"sync": {"interval_ms": -5000}})") << 30000;
    QTest::newRow("most negative 32-bit is refused") << QByteArray(R"({"sync": {"interval_ms": -2147483648}})") << 30000;
    QTest::newRow("text is refused") << QByteArray(R"({"sync": {"interval_ms": "5000"}})") << 30000;
    QTest::newRow("missing key keeps 30000") << QByteArray(R"({"sync": {}})") << 30000;
    QTest::newRow("non-object sync keeps 30000") << QByteArray(R"({"sync": 5000})") << 30000;
}

void TestDZuConfiguration::loadSyncInterval()
{
    QFETCH(QByteArray, document);
    QFETCH(int, expected);
    TestStation station;
    QVERIFY(station.writeText(document.constData()));
    auto config = station.create();
    QCOMPARE(config->syncIntervalMs(), expected);
    QCOMPARE(DZuConfiguration::readSyncIntervalMs(station.configDir(), TestStation::C_fileName, 30000), expected);
}

void TestDZuConfiguration::loadExcludedPatterns_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QStringList>("expected");
    const QStringList defaults{"*-journal", "*-shm", "*-wal"};
    QTest::newRow("trimmed, empty, number and blanks give one pattern")
        << QByteArray(R"({"sync": {"excluded_patterns": ["  *.tmp ", "", 5, "   "]}})") << QStringList{"*.tmp"};
    QTest::newRow("array order kept")
        << QByteArray(R"({"sync": {"excluded_patterns": ["*.b", 5, "*.a"]}})") << QStringList{"*.b", "*.a"};
    QTest::newRow("empty array gives an empty list")
        << QByteArray(R"({"sync": {"excluded_patterns": []}})") << QStringList();
    QTest::newRow("a string instead of an array keeps the defaults")
        << QByteArray(R"({"sync": {"excluded_patterns": "*.tmp"}})") << defaults;
    QTest::newRow("missing key keeps the defaults") << QByteArray(R"({"sync": {}})") << defaults;
}

void TestDZuConfiguration::loadExcludedPatterns()
{
    QFETCH(QByteArray, document);
    QFETCH(QStringList, expected);
    TestStation station;
    QVERIFY(station.writeText(document.constData()));
    auto config = station.create();
    QCOMPARE(config->syncExcludedPatterns(), expected);
    QCOMPARE(DZuConfiguration::readSyncExcludedPatterns(station.configDir(), TestStation::C_fileName,
                                                        {"*-journal", "*-shm", "*-wal"}),
             expected);
}

void TestDZuConfiguration::readSyncSettingsFromUnreadableFileGivesDefaults()
{
    TestStation station;
    QVERIFY(station.writeBytes("{ not json"));
    QCOMPARE(DZuConfiguration::readSyncIntervalMs(station.configDir(), TestStation::C_fileName, 4321), 4321);
    QCOMPARE(DZuConfiguration::readSyncExcludedPatterns(station.configDir(), "absent.json", {"x"}), QStringList{"x"});
}

void TestDZuConfiguration::utcOffset_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("expected");
    QTest::newRow("1.5 rounds up to 2") << QByteArray(R"({"system": {"utcOffset": 1.5}})") << 2;
    QTest::newRow("-1.5 rounds up to -1") << QByteArray(R"({"system": {"utcOffset": -1.5}})") << -1;
    QTest::newRow("2.5 rounds up to 3") << QByteArray(R"({"system": {"utcOffset": 2.5}})") << 3;
    QTest::newRow("-2.5 rounds up to -2") << QByteArray(R"({"system": {"utcOffset": -2.5}})") << -2;
    QTest::newRow("1.4 rounds down to 1") << QByteArray(R"({"system": {"utcOffset": 1.4}})") << 1;
    QTest::newRow("whole number kept") << QByteArray(R"({"system": {"utcOffset": -5}})") << -5;
    QTest::newRow("text form of 2 gives 0") << QByteArray(R"({"system": {"utcOffset": "2"}})") << 0;
    QTest::newRow("missing gives 0") << QByteArray("{}") << 0;
}

void TestDZuConfiguration::utcOffset()
{
    QFETCH(QByteArray, document);
    QFETCH(int, expected);
    TestStation station;
    QVERIFY(station.writeText(R"({"system": {"utcOffset": 7}})"));
    auto config = station.create();
    QCOMPARE(config->dateTime()->utcOffset(), 7);
    QVERIFY(station.writeText(document.constData()));
    config->reload();
    QCOMPARE(config->dateTime()->utcOffset(), expected);
}

void TestDZuConfiguration::hourFormat_data()
{
    QTest::addColumn<QString>("hourFormat");
    QTest::addColumn<bool>("is24h");
    QTest::newRow("24 h") << "24 h" << true;
    QTest::newRow("12 h") << "12 h" << false;
    QTest::newRow("other case is not 24 h") << "24 H" << false;
    QTest::newRow("other spelling is not 24 h") << "24h" << false;
}

void TestDZuConfiguration::hourFormat()
{
    QFETCH(QString, hourFormat);
    QFETCH(bool, is24h);
    TestStation station;
    QJsonObject regional{{"hourFormat", hourFormat}};
    QVERIFY(station.writeDocument({{"regionalSettings", regional}}));
    auto config = station.create();
    QCOMPARE(config->dateTime()->is24hFormat(), is24h);
    QCOMPARE(config->isCurrent24HoursFormat(), is24h);
    QCOMPARE(config->currentHourFormat(), hourFormat);
}

void TestDZuConfiguration::pluginDefaults_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("pluginsDir");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QStringList>("directories");   // "name=content"; no "=" means no file
    QTest::addColumn<QStringList>("expected");

    const QString a = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QString b = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QString braced = QUuid::createUuid().toString(QUuid::WithBraces);
    const QByteArray none = "{}";
    const QString valid = R"({"port": "/dev/ttyUSB0"})";
    QTest::newRow("UUID dir with a valid file is kept, ordinary word skipped")
        << none << "plugins" << "config_plugin.json" << QStringList{a + '=' + valid, "scanner=" + valid}
        << QStringList{a};
    QTest::newRow("UUID dir with an invalid file is skipped")
        << none << "plugins" << "config_plugin.json" << QStringList{a + '=' + valid, b + "={ broken"}
        << QStringList{a};
    QTest::newRow("UUID dir without a file is skipped")
        << none << "plugins" << "config_plugin.json" << QStringList{b} << QStringList();
    QTest::newRow("braced UUID name is accepted")
        << none << "plugins" << "config_plugin.json" << QStringList{braced + '=' + valid} << QStringList{braced};
    QTest::newRow("paths.plugins and configuration.pluginConfigFilename are honoured")
        << QByteArray(R"({"paths": {"plugins": "addons"}, "configuration": {"pluginConfigFilename": "defaults.json"}})")
        << "addons" << "defaults.json" << QStringList{a + '=' + valid} << QStringList{a};
    QTest::newRow("no plugins directory gives an empty object")
        << none << "elsewhere" << "config_plugin.json" << QStringList{a + '=' + valid} << QStringList();
}

void TestDZuConfiguration::pluginDefaults()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, pluginsDir);
    QFETCH(QString, fileName);
    QFETCH(QStringList, directories);
    QFETCH(QStringList, expected);
    TestStation station;
    QVERIFY(station.writeText(document.constData()));
    for (const QString& entry : directories) {
        const QString name = entry.section('=', 0, 0);
        const QString dir = station.configDir() + '/' + pluginsDir + '/' + name;
        QVERIFY(QDir().mkpath(dir));
        if (entry.contains('=')) {
            QFile file(dir + '/' + fileName);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(entry.section('=', 1).toUtf8());
        }
    }
    auto config = station.create();
    const QJsonValue defaults = at(config->mainConfiguration(), "_hidden_.pluginsDefConf");
    QVERIFY(defaults.isObject());
    QStringList keys = defaults.toObject().keys();
    keys.sort();
    expected.sort();
    QCOMPARE(keys, expected);
    for (const QString& key : expected)
        QCOMPARE(defaults.toObject().value(key).toObject().value("port").toString(), QString("/dev/ttyUSB0"));
}

void TestDZuConfiguration::missingDocumentLogsAndKeepsDefaults()
{
    TestStation station;
    QVERIFY(QFile::remove(station.filePath()));
    LogCapture log;
    auto config = station.create();
    QCOMPARE(log.count(logTag(855, "ERROR: Main configuration is not available!")), 1);
    QVERIFY(!log.contains("No workspace directory"));
    QCOMPARE(config->objectName(), QString("ZuConfiguration"));
    QCOMPARE(config->currentRegion(), QString("Europe"));
    QCOMPARE(config->currentCity(), QString("Paris"));
    QCOMPARE(config->weightUnit(), QString("g"));
    QCOMPARE(config->distanceUnit(), QString("m"));
    QCOMPARE(config->dateFormats(), (QStringList{"DD/MM/YYYY", "MM/DD/YYYY", "YYYY-MM-DD"}));
    QCOMPARE(config->hourFormats(), (QStringList{"24 h", "12 h"}));
    QCOMPARE(config->getAppName(), QString("Kestrin Editor"));
    QCOMPARE(config->property("version").toString(), QString("@VERSION@"));
    // The in-memory document is empty but for the hidden section.
    QCOMPARE(config->mainConfiguration().keys(), QStringList{"_hidden_"});
}

void TestDZuConfiguration::emptyDirectoryLogsNoWorkspace()
{
    TestStation station;
    LogCapture log;
    auto config = station.createIn(QString());
    QCOMPARE(log.count(logTag(855, "ERROR: Main configuration is not available!")), 1);
    QCOMPARE(log.count(logTag(820, "ERROR: No workspace directory available!")), 1);
    QVERIFY(!at(config->mainConfiguration(), "_hidden_").toObject().contains("pluginsDefConf"));
    QCOMPARE(config->inactivityTimeout(), 0);
}

void TestDZuConfiguration::hiddenSectionIsRebuiltByEveryLoad()
{
    TestStation station;
    QVERIFY(station.writeText(R"({"_hidden_": {"userName": "from file", "stale": 1}})"));
    auto config = station.create();
    QJsonObject hidden = at(config->mainConfiguration(), "_hidden_").toObject();
    QCOMPARE(hidden.keys(), (QStringList{"configurationDirectoryPath", "pluginsDefConf"}));
    QCOMPARE(hidden.value("configurationDirectoryPath").toString(), station.configDir());

    config->sltUserNameChanged("m.durand");
    QCOMPARE(at(config->mainConfiguration(), "_hidden_.userName").toString(), QString("m.durand"));
    // The shared settings pointer and the main configuration are the same object.
    QCOMPARE(at(*config->settings(), "_hidden_.userName").toString(), QString("m.durand"));

    config->loadSettings();
    QVERIFY(!at(config->mainConfiguration(), "_hidden_").toObject().contains("userName"));
}

void TestDZuConfiguration::reloadReplacesDocumentInPlace()
{
    TestStation station;
    QVERIFY(station.writeText(R"({"general": {"workplace_name": "Before"}, "logger": {"level": "debug"}})"));
    auto config = station.create();
    const QSharedPointer<QJsonObject> settings = config->settings();
    QCOMPARE(config->getLoggerSection(), (QVariantMap{{"level", "debug"}}));

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

// --- Setters and signals ---------------------------------------------------------------------

void TestDZuConfiguration::soundVolume_data()
{
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("stored");
    QTest::newRow("150 becomes 100") << 150 << 100;
    QTest::newRow("101 becomes 100") << 101 << 100;
    QTest::newRow("-1 becomes 100 (unsigned test)") << -1 << 100;
    QTest::newRow("0 is kept") << 0 << 0;
    QTest::newRow("100 is kept") << 100 << 100;
    QTest::newRow("42 is kept") << 42 << 42;
}

void TestDZuConfiguration::soundVolume()
{
    QFETCH(int, written);
    QFETCH(int, stored);
    TestStation station;
    auto config = station.create();
    QSignalSpy changed(config.get(), &DZuConfiguration::sigConfigurationChanged);
    QVERIFY(config->setProperty("soundVolume", written));
    QCOMPARE(config->storedSoundVolume(), stored);
    QCOMPARE(config->getSoundVolume(), stored);
    QCOMPARE(changed.count(), 1);
}

void TestDZuConfiguration::configurationSettersEmitEveryTime_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("signal");
    QTest::newRow("workplaceName") << "workplaceName" << QVariant("Station 9") << "config";
    QTest::newRow("prodLineName") << "prodLineName" << QVariant("Line C") << "config";
    QTest::newRow("inactivityTimeout") << "inactivityTimeout" << QVariant(30) << "config";
    QTest::newRow("sequenceWarningThreshold") << "sequenceWarningThreshold" << QVariant(80) << "config";
    QTest::newRow("forceAutoLogoutForAllUsers") << "forceAutoLogoutForAllUsers" << QVariant(true) << "config";
    QTest::newRow("availableStorageWarningLimit") << "availableStorageWarningLimit" << QVariant(10) << "config";
    QTest::newRow("hideProductionTimer") << "hideProductionTimer" << QVariant(true) << "config";
    QTest::newRow("operatorCannotSelectSequence") << "operatorCannotSelectSequence" << QVariant(true) << "config";
    QTest::newRow("companyLogo") << "companyLogo" << QVariant("logo.png") << "config";
    QTest::newRow("torqueUnit") << "torqueUnit" << QVariant("Nm") << "config";
    QTest::newRow("weightUnit") << "weightUnit" << QVariant("kg") << "config";
    QTest::newRow("distanceUnit") << "distanceUnit" << QVariant("mm") << "config";
    QTest::newRow("temperatureUnit") << "temperatureUnit" << QVariant("\u00B0F") << "config";
    QTest::newRow("currentRegion") << "currentRegion" << QVariant("Asia") << "region";
    QTest::newRow("useDefaultNtp") << "useDefaultNtp" << QVariant(false) << "region";
    QTest::newRow("customNtp") << "customNtp" << QVariant("ntp.local") << "region";
}

void TestDZuConfiguration::configurationSettersEmitEveryTime()
{
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    QFETCH(QString, signal);
    TestStation station;
    auto config = station.create();
    QSignalSpy configChanged(config.get(), &DZuConfiguration::sigConfigurationChanged);
    QSignalSpy regionChanged(config.get(), &DZuConfiguration::sigRegionChanged);
    const QByteArray name = property.toLatin1();
    QVERIFY(config->setProperty(name.constData(), value));
    QVERIFY(config->setProperty(name.constData(), value));
    QCOMPARE(config->property(name.constData()), value);
    QCOMPARE(configChanged.count(), signal == "config" ? 2 : 0);
    QCOMPARE(regionChanged.count(), signal == "region" ? 2 : 0);
}

void TestDZuConfiguration::displayFlagsEmitOnlyOnChange_data()
{
    QTest::addColumn<QString>("property");
    QTest::newRow("displayDate") << "displayDate";
    QTest::newRow("displaySeconds") << "displaySeconds";
}

void TestDZuConfiguration::displayFlagsEmitOnlyOnChange()
{
    QFETCH(QString, property);
    TestStation station;
    auto config = station.create();
    const QByteArray name = property.toLatin1();
    QSignalSpy regionChanged(config.get(), &DZuConfiguration::sigRegionChanged);
    QVERIFY(config->setProperty(name.constData(), false));
    QCOMPARE(regionChanged.count(), 0);
    QVERIFY(config->setProperty(name.constData(), true));
    QCOMPARE(regionChanged.count(), 1);
    QVERIFY(config->setProperty(name.constData(), true));
    QCOMPARE(regionChanged.count(), 1);
    QCOMPARE(config->property(name.constData()).toBool(), true);
}

void TestDZuConfiguration::sequenceScriptTextsArePrefixedOnRead()
{
    TestStation station;
    auto config = station.create();
    QSignalSpy changed(config.get(), &DZuConfiguration::sigConfigurationChanged);
    QVERIFY(config->setProperty("sequenceScriptPath", "launch.js"));
    QVERIFY(config->setProperty("sequenceScriptData", "data.json"));
    QVERIFY(config->setProperty("sequenceStatusOutput", "OUT_1"));
    QVERIFY(config->setProperty("sequenceIoLaunch", true));
    const QString media = config->directories()->getMediaDirectoryPath();
    QCOMPARE(config->property("sequenceScriptPath").toString(), media + "/launch.js");
    QCOMPARE(config->property("sequenceScriptData").toString(), media + "/data.json");
    QCOMPARE(config->storedSequenceScriptPath(), QString("launch.js"));
    QCOMPARE(config->storedSequenceScriptData(), QString("data.json"));
    QCOMPARE(config->sequenceStatusOutput(), QString("OUT_1"));
    QCOMPARE(changed.count(), 0);
}

// --- Save ------------------------------------------------------------------------------------

void TestDZuConfiguration::saveWritesSections()
{
    TestStation station;
    QVERIFY(station.writeText(R"({
        "general": {"workplace_name": "W", "sound_volume": 150, "unknown": 1, "lastModification": "x"},
        "system": {"name": "Old", "version": "0.1", "utcOffset": 2, "extra": true},
        "validators": {"serial": "^[0-9]+$"},
        "comments": {"skip_comments": ["s1", "s2"], "rework_comments": ["r1"]},
        "sequencer": {"sequenceScriptPath": "a.js", "sequenceScriptData": "b.json",
                      "sequenceIoRelations": [{"binaryCode": 5, "sequenceBaseName": "B"},
                                              {"binaryCode": 3, "sequenceBaseName": "A"}]},
        "sync": {"interval_ms": 2000, "excluded_patterns": [" *.tmp "]},
        "regionalSettings": {"customNtp": "ntp.local", "displayDate": true}})"));
    auto config = station.create();

    QJsonObject root{{"custom", QJsonObject{{"keep", true}}}, {"general", QJsonObject{{"stale", 1}}}};
    QVERIFY(config->saveSettings(root));
    const QJsonObject file = station.readDocument();
    QCOMPARE(file, root);

    QCOMPARE(at(file, "custom.keep"), QJsonValue(true));
    QCOMPARE(at(file, "general.sound_volume"), QJsonValue(150));
    QCOMPARE(at(file, "general.workplace_name"), QJsonValue("W"));
    QVERIFY(!file.value("general").toObject().contains("unknown"));
    QVERIFY(!file.value("general").toObject().contains("stale"));
    QCOMPARE(file.value("system").toObject(), (QJsonObject{{"name", "Orvanel Tamsic"}, {"version", "@VERSION@"}}));
    QCOMPARE(file.value("validators").toObject(), (QJsonObject{{"serial", "^[0-9]+$"}}));
    QCOMPARE(at(file, "comments.skip_comments"), QJsonValue(QJsonArray{"s1", "s2"}));
    QCOMPARE(at(file, "comments.rework_comments"), QJsonValue(QJsonArray{"r1"}));
    // Stored texts, not the media-prefixed ones the properties show.
    QCOMPARE(at(file, "sequencer.sequenceScriptPath"), QJsonValue("a.js"));
    QCOMPARE(at(file, "sequencer.sequenceScriptData"), QJsonValue("b.json"));
    const QJsonArray relations = at(file, "sequencer.sequenceIoRelations").toArray();
    QCOMPARE(relations.size(), 2);
    QCOMPARE(relations.at(0).toObject().value("sequenceBaseName"), QJsonValue("B"));
    QCOMPARE(relations.at(1).toObject().value("binaryCode"), QJsonValue(3));
    QCOMPARE(file.value("sync").toObject(),
             (QJsonObject{{"interval_ms", 2000}, {"excluded_patterns", QJsonArray{"*.tmp"}}}));
    QCOMPARE(at(file, "regionalSettings.customNtp"), QJsonValue("ntp.local"));
    QCOMPARE(at(file, "regionalSettings.displayDate"), QJsonValue(true));
    QCOMPARE(at(file, "regionalSettings.language"),
             QJsonValue(LanguagesManagement::instance()->getCurrentLanguageCode()));
    QCOMPARE(at(file, "regionalSettings.keyboard_input"),
             QJsonValue(KeyboardManagement::instance()->getCurrentKeyboardLayoutCode()));
    QCOMPARE(file.value("regionalSettings").toObject().size(), 14);
    QCOMPARE(file.value("general").toObject().size(), 9);
    // Saving changes neither the members nor the in-memory document.
    QCOMPARE(config->storedSoundVolume(), 150);
    QCOMPARE(at(config->mainConfiguration(), "system.utcOffset"), QJsonValue(2));
}

void TestDZuConfiguration::saveKeepsOrDefaultsPluginSections_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QJsonObject>("configuration");
    QTest::addColumn<QJsonObject>("paths");
    QTest::newRow("absent sections gain their defaults") << QByteArray("{}")
        << QJsonObject{{"pluginConfigFilename", "config_plugin.json"}, {"pluginBehaviorFilename", "behavior_plugin.js"}}
        << QJsonObject{{"images", "media"}, {"sequences", "sequences"}, {"reports", "reports"}, {"plugins", "plugins"}};
    QTest::newRow("present values are carried, missing ones defaulted, unknown dropped")
        << QByteArray(R"({"configuration": {"pluginBehaviorFilename": "b.js", "other": 1},
                          "paths": {"images": "pictures", "reports": "pdf", "other": "x"}})")
        << QJsonObject{{"pluginConfigFilename", "config_plugin.json"}, {"pluginBehaviorFilename", "b.js"}}
        << QJsonObject{{"images", "pictures"}, {"sequences", "sequences"}, {"reports", "pdf"}, {"plugins", "plugins"}};
}

void TestDZuConfiguration::saveKeepsOrDefaultsPluginSections()
{
    QFETCH(QByteArray, document);
    QFETCH(QJsonObject, configuration);
    QFETCH(QJsonObject, paths);
    TestStation station;
    QVERIFY(station.writeText(document.constData()));
    auto config = station.create();
    QJsonObject root;
    QVERIFY(config->saveSettings(root));
    const QJsonObject file = station.readDocument();
    QCOMPARE(file.value("configuration").toObject(), configuration);
    QCOMPARE(file.value("paths").toObject(), paths);
}

void TestDZuConfiguration::saveLastModificationIsNowButGetterKeepsLoadedValue()
{
    TestStation station;
    QVERIFY(station.writeText(R"({"general": {"lastModification": "2020-01-02T03:04:05"}})"));
    auto config = station.create();
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    QJsonObject root;
    QVERIFY(config->saveSettings(root));
    const QString written = at(station.readDocument(), "general.lastModification").toString();
    const QDateTime stamp = QDateTime::fromString(written, Qt::ISODate);
    QVERIFY2(stamp.isValid(), qPrintable(written));
    QVERIFY(stamp >= before);
    QCOMPARE(written, stamp.toString(Qt::ISODate));
    QCOMPARE(config->lastModification(), QString("2020-01-02T03:04:05"));
}

void TestDZuConfiguration::saveLogger_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QJsonValue>("expected");
    const QJsonObject rootLogger{{"level", "root"}};
    QTest::newRow("empty logger leaves root's logger untouched")
        << QByteArray(R"({"logger": {}})") << QJsonValue(rootLogger);
    QTest::newRow("absent logger leaves root's logger untouched") << QByteArray("{}") << QJsonValue(rootLogger);
    QTest::newRow("loaded logger replaces root's logger")
        << QByteArray(R"({"logger": {"level": "debug", "files": 3}})")
        << QJsonValue(QJsonObject{{"level", "debug"}, {"files", 3}});
}

void TestDZuConfiguration::saveLogger()
{
    QFETCH(QByteArray, document);
    QFETCH(QJsonValue, expected);
    TestStation station;
    QVERIFY(station.writeText(document.constData()));
    auto config = station.create();
    QJsonObject root{{"logger", QJsonObject{{"level", "root"}}}};
    QVERIFY(config->saveSettings(root));
    QCOMPARE(station.readDocument().value("logger"), expected);
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
    QCOMPARE(log.count(logTag(555, "DZuConfiguration::saveSettings: seqIoRl is null")), 1);
    const QJsonArray relations = at(station.readDocument(), "sequencer.sequenceIoRelations").toArray();
    QCOMPARE(relations.size(), 2);
    QCOMPARE(relations.at(1).toObject().value("sequenceBaseName"), QJsonValue("B"));
}

void TestDZuConfiguration::saveUsersOnlyWhileAccessControlLives()
{
    TestStation station;
    QVERIFY(station.writeText(R"({"regionalSettings": {"dateFormat": "YYYY-MM-DD"},
        "users": [{"name": "admin", "level": 3, "expiry": "2031-12-31"}]})"));
    auto accessControl = std::make_unique<AccessControlManager>();
    auto config = station.create(accessControl.get());
    config->loadUsers();
    QCOMPARE(accessControl->users().size(), 1);
    QCOMPARE(accessControl->users().first().expiry, QDate(2031, 12, 31));

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
    QCOMPARE(log.count(logTag(625, "ERROR: Couldn't open save file.")), 1);
    QCOMPARE(at(root, "general.workplace_name"), QJsonValue("W"));
}

// --- Restart ---------------------------------------------------------------------------------

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
    {
        AccessControlManager accessControl;
        auto config = station.create(&accessControl);
        config->loadUsers();
        config->loadDirectories();
        QCOMPARE(accessControl.users().size(), 1);
        QCOMPARE(config->dateTime()->utcOffset(), 3);
        config->setWorkplaceName("Station 4");
        config->setProdLineName("Line D");
        config->setInactivityTimeout(240);
        config->setSoundVolume(35);
        config->setSequenceWarningThreshold(70);
        config->setForceAutoLogoutForAllUsers(true);
        config->setHideProductionTimer(true);
        config->setOperatorCannotSelectSequence(true);
        config->setTorqueUnit("lbf.ft");
        config->setWeightUnit("lb");
        config->setDistanceUnit("in");
        config->setTemperatureUnit("\u00B0F");
        config->setUseDefaultNtp(false);
        config->setCustomNtp("ntp.plant");
        config->setDisplayDate(true);
        config->setDisplaySeconds(true);
        config->setRegion(zone.value(0), zone.value(1));
        config->setFormats("12 h", "MM/DD/YYYY");
        config->setCompanyLogo("logo.png");
        config->setSequenceAutoLaunch(true);
        config->setSequenceAutoSerialNumber(true);
        config->setSequenceIoLaunch(true);
        config->setSequenceScriptLaunch(true);
        config->setSequenceScriptPath("launch.js");
        config->setSequenceScriptData("data.json");
        config->setSequenceStatusOutput("OUT_2");
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
    QCOMPARE(config->workplaceName(), QString("Station 4"));
    QCOMPARE(config->prodLineName(), QString("Line D"));
    QCOMPARE(config->inactivityTimeout(), 240);
    QCOMPARE(config->storedSoundVolume(), 35);
    QCOMPARE(config->sequenceWarningThreshold(), 70);
    QVERIFY(config->forceAutoLogoutForAllUsers());
    QVERIFY(config->hideProductionTimer());
    QVERIFY(config->operatorCannotSelectSequence());
    QCOMPARE(config->torqueUnit(), QString("lbf.ft"));
    QCOMPARE(config->weightUnit(), QString("lb"));
    QCOMPARE(config->distanceUnit(), QString("in"));
    QCOMPARE(config->temperatureUnit(), QString("\u00B0F"));
    QVERIFY(!config->useDefaultNtp());
    QCOMPARE(config->customNtp(), QString("ntp.plant"));
    QVERIFY(config->displayDate());
    QVERIFY(config->displaySeconds());
    QCOMPARE(config->currentRegion(), zone.value(0));
    QCOMPARE(config->currentCity(), zone.value(1));
    QCOMPARE(config->currentHourFormat(), QString("12 h"));
    QCOMPARE(config->currentDateFormat(), QString("MM/DD/YYYY"));
    QVERIFY(!config->dateTime()->is24hFormat());
    QCOMPARE(config->companyLogo(), QString("logo.png"));
    QVERIFY(config->sequenceAutoLaunch());
    QVERIFY(config->sequenceAutoSerialNumber());
    QVERIFY(config->sequenceIoLaunch());
    QVERIFY(config->sequenceScriptLaunch());
    QCOMPARE(config->storedSequenceScriptPath(), QString("launch.js"));
    QCOMPARE(config->storedSequenceScriptData(), QString("data.json"));
    QCOMPARE(config->sequenceStatusOutput(), QString("OUT_2"));
    QCOMPARE(KeyboardManagement::instance()->getCurrentKeyboardLayoutCode(), QString("it"));
    QCOMPARE(LanguagesManagement::instance()->getCurrentLanguageCode(), QString("fr_FR"));
    QCOMPARE(config->validators(), (QVariantMap{{"serial", "^[0-9]+$"}}));
    QCOMPARE(config->skipComments(), QStringList{"s"});
    QCOMPARE(config->reworkComments(), QStringList{"r"});
    QCOMPARE(relationNames(*config), QStringList{"2:front"});
    QCOMPARE(config->syncIntervalMs(), 5000);
    QCOMPARE(config->syncExcludedPatterns(), QStringList{"*.tmp"});
    QCOMPARE(config->getLoggerSection(), (QVariantMap{{"level", "warning"}}));
    QCOMPARE(config->getConfigParameter("paths.images"), QVariant("pictures"));
    // Not carried over by the save: the UTC offset.
    QCOMPARE(config->dateTime()->utcOffset(), 0);
    QCOMPARE(config->systemName(), QString("Orvanel Tamsic"));
}

// The shipped demo document uses every section; it must load cleanly and keep its values.
void TestDZuConfiguration::demoStationDocumentLoads()
{
    TestStation station;
    const QString demoConfig = QStringLiteral(STATION_DEMO_DIR "/config");
    QVERIFY(QFile::remove(station.filePath()));
    QVERIFY(QFile::copy(demoConfig + "/settings.json", station.filePath()));
    const QString plugin = "plugins/3f2b8c1e-6d4a-4e2b-9a57-1c0d8e7f6a21";
    QVERIFY(QDir().mkpath(station.configDir() + '/' + plugin));
    QVERIFY(QDir().mkpath(station.configDir() + "/plugins/legacy"));
    QVERIFY(QFile::copy(demoConfig + '/' + plugin + "/config_plugin.json",
                        station.configDir() + '/' + plugin + "/config_plugin.json"));

    LogCapture log;
    auto config = station.create();
    const QStringList errors = log.matching(QString::fromLatin1(C_sourceTag)).filter("ERROR");
    QVERIFY2(errors.isEmpty(), qPrintable(errors.join('\n')));
    QCOMPARE(config->workplaceName(), QString("Station 12 - Gearbox housing"));
    QCOMPARE(config->sequenceIoRelations()->count(), 3);
    QCOMPARE(config->skipComments().size(), 3);
    QCOMPARE(config->syncIntervalMs(), 60000);
    QCOMPARE(config->dateTime()->utcOffset(), 1);
    QCOMPARE(at(config->mainConfiguration(), "_hidden_.pluginsDefConf").toObject().keys(),
             QStringList{"3f2b8c1e-6d4a-4e2b-9a57-1c0d8e7f6a21"});
    QCOMPARE(KeyboardManagement::instance()->getCurrentKeyboardLayoutCode(), QString("fr"));

    auto accessControl = std::make_unique<AccessControlManager>();
    auto withUsers = station.create(accessControl.get());
    withUsers->loadUsers();
    QCOMPARE(accessControl->users().size(), 3);
    QCOMPARE(accessControl->users().first().expiry, QDate(2030, 12, 31));
}

QTEST_GUILESS_MAIN(TestDZuConfiguration)
#include "tst_dzuconfiguration.moc"
