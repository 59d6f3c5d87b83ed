#include "teststation.h"

#include "logcapture.h"

#include <QLocale>
#include <QSignalSpy>
#include <QTimeZone>
#include <QtTest>

#include <algorithm>

namespace {
using TimeZoneTable = QMap<QString, QStringList>;
using TimeZoneIndex = QMap<QString, int>;

// The process sees this zone as the system's; the machine's own setting is never touched.
const QByteArray C_processZone = "Europe/Paris";

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}
}

class TestConfigurationRegional : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void timeZoneTable_data();
    void timeZoneTable();
    void missingTimeZoneTableLeavesMapsAlone();
    void builtInTimeZoneResource();

    void setRegion_data();
    void setRegion();

    void setFormatsDrivesClock_data();
    void setFormatsDrivesClock();
    void dateTimeToString_data();
    void dateTimeToString();
    void parsing_data();
    void parsing();

    void keyMapLayout_data();
    void keyMapLayout();
    void keyMapLayoutWithoutFileLogsAndCreatesNothing();

    void languagesAreTheTableNamesInOrder();

private:
    QTemporaryDir m_tools;
    std::unique_ptr<TestStation> m_station;
    std::unique_ptr<DZuConfiguration> m_config;
};

void TestConfigurationRegional::initTestCase()
{
    qputenv("TZ", C_processZone);
    QCOMPARE(QTimeZone::systemTimeZoneId(), C_processZone);
    QVERIFY(m_tools.isValid());
    // Stand-ins for the time-zone program: record their arguments, then succeed or fail.
    for (const auto& tool : {qMakePair(QStringLiteral("ok.sh"), 0), qMakePair(QStringLiteral("fail.sh"), 1)}) {
        const QString path = m_tools.filePath(tool.first);
        const QByteArray script = "#!/bin/sh\necho \"$@\" >> \"" + m_tools.filePath("calls.txt").toUtf8()
                                  + "\"\nexit " + QByteArray::number(tool.second) + "\n";
        QVERIFY(writeFile(path, script));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    DZuConfiguration::setTimeZoneCommand(m_tools.filePath("fail.sh"));
    DZuConfiguration::setCompositorConfigPath(m_tools.filePath("no-such-dir/weston.ini"));
}

void TestConfigurationRegional::init()
{
    QFile::remove(m_tools.filePath("calls.txt"));
    m_station = std::make_unique<TestStation>();
    QVERIFY(m_station->isValid());
    m_config = m_station->create();
    QCOMPARE(m_config->currentCity(), QString("Paris"));
}

void TestConfigurationRegional::cleanup()
{
    m_config.reset();
    m_station.reset();
}

void TestConfigurationRegional::timeZoneTable_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<TimeZoneTable>("table");
    QTest::addColumn<TimeZoneIndex>("index");

    QTest::newRow("cities gathered per region in file order")
        << QByteArray("1;Europe/Paris\n2;Asia/Tokyo\n3;Europe/Berlin\n")
        << TimeZoneTable{{"Europe", {"Paris", "Berlin"}}, {"Asia", {"Tokyo"}}}
        << TimeZoneIndex{{"Europe/Paris", 1}, {"Asia/Tokyo", 2}, {"Europe/Berlin", 3}};
    QTest::newRow("three components: middle one is the city")
        << QByteArray("58;America/Argentina/Buenos_Aires\n59;America/Argentina/Cordoba\n")
        << TimeZoneTable{{"America", {"Argentina", "Argentina"}}}
        << TimeZoneIndex{{"America/Argentina/Buenos_Aires", 58}, {"America/Argentina/Cordoba", 59}};
    QTest::newRow("one component: indexed, no city") << QByteArray("4;UTC\n") << TimeZoneTable{}
                                                     << TimeZoneIndex{{"UTC", 4}};
    QTest::newRow("line ends of both kinds removed") << QByteArray("5;Asia/Tokyo\r\n6;Asia/Seoul")
                                                     << TimeZoneTable{{"Asia", {"Tokyo", "Seoul"}}}
                                                     << TimeZoneIndex{{"Asia/Tokyo", 5}, {"Asia/Seoul", 6}};
    QTest::newRow("empty parts dropped before counting")
        << QByteArray(";7;;Africa/Abidjan\n8;;Europe//Rome\n")
        << TimeZoneTable{{"Africa", {"Abidjan"}}, {"Europe", {"Rome"}}}
        << TimeZoneIndex{{"Africa/Abidjan", 7}, {"Europe//Rome", 8}};
    QTest::newRow("line end after a last ';' is a third field") << QByteArray("9;Europe/Rome;\r\n")
                                                                 << TimeZoneTable{} << TimeZoneIndex{};
    QTest::newRow("lines without exactly two fields ignored")
        << QByteArray("Europe/Paris\n1;Europe/Oslo;extra\n\n9;Europe/Rome\n")
        << TimeZoneTable{{"Europe", {"Rome"}}} << TimeZoneIndex{{"Europe/Rome", 9}};
    QTest::newRow("first field not a number reads 0") << QByteArray("x;Europe/Oslo\n")
                                                      << TimeZoneTable{{"Europe", {"Oslo"}}}
                                                      << TimeZoneIndex{{"Europe/Oslo", 0}};
}

void TestConfigurationRegional::timeZoneTable()
{
    QFETCH(QByteArray, content);
    QFETCH(TimeZoneTable, table);
    QFETCH(TimeZoneIndex, index);

    QTemporaryDir dir;
    const QString path = dir.filePath("timezones.csv");
    QVERIFY(writeFile(path, content));

    TimeZoneTable readTable;
    TimeZoneIndex readIndex;
    QVERIFY(DZuConfiguration::loadTimeZoneTable(path, readTable, readIndex));
    QCOMPARE(readTable, table);
    QCOMPARE(readIndex, index);
}

void TestConfigurationRegional::missingTimeZoneTableLeavesMapsAlone()
{
    TimeZoneTable table{{"Europe", {"Paris"}}};
    TimeZoneIndex index{{"Europe/Paris", 1}};
    QVERIFY(!DZuConfiguration::loadTimeZoneTable(m_tools.filePath("absent.csv"), table, index));
    QCOMPARE(table.value("Europe"), QStringList{"Paris"});
    QCOMPARE(index.size(), 1);
}

void TestConfigurationRegional::builtInTimeZoneResource()
{
    const QStringList identifiers = m_config->timezones();
    QVERIFY2(identifiers.size() >= 300, qPrintable(QString::number(identifiers.size())));
    QVERIFY(identifiers.contains("Europe/Paris"));
    QVERIFY(identifiers.contains("Etc/UTC"));
    QVERIFY(identifiers.contains("America/Argentina/Buenos_Aires"));
    QVERIFY(std::is_sorted(identifiers.cbegin(), identifiers.cend()));

    // Every zone offered to the operator is one the system can switch to.
    for (const QString& identifier : identifiers)
        QVERIFY2(QTimeZone(identifier.toUtf8()).isValid(), qPrintable(identifier));

    const QStringList regions = m_config->regions();
    for (const char* region : {"Africa", "America", "Asia", "Australia", "Europe", "Pacific"})
        QVERIFY2(regions.contains(region), region);
    QCOMPARE(m_config->currentRegion(), QString("Europe"));
    QVERIFY(m_config->cities().contains("Paris"));
    QVERIFY(m_config->cities().contains("Berlin"));
    m_config->setCurrentRegion("Atlantis");
    QCOMPARE(m_config->cities(), QStringList());
}

void TestConfigurationRegional::setRegion_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("region");
    QTest::addColumn<QString>("city");
    QTest::addColumn<QByteArray>("calls");
    QTest::addColumn<QString>("logged");

    QTest::newRow("system zone: no command, no log") << "ok.sh" << "Europe" << "Paris" << QByteArray() << "";
    QTest::newRow("other zone: command succeeds")
        << "ok.sh" << "Asia" << "Tokyo" << QByteArray("set-timezone Asia/Tokyo\n")
        << "DZuConfiguration_The_system_time_zone_has_been_successfully_changed_";
    QTest::newRow("other zone: command fails")
        << "fail.sh" << "America" << "New_York" << QByteArray("set-timezone America/New_York\n")
        << "DZuConfiguration_Error_changing_system_time_zone_";
    QTest::newRow("program missing counts as failure")
        << "absent.sh" << "Asia" << "Tokyo" << QByteArray() << "DZuConfiguration_Error_changing_system_time_zone_";
    QTest::newRow("invalid pair: no command")
        << "ok.sh" << "Atlantis" << "Poseidonia" << QByteArray() << "DZuConfiguration_Error__invalid_region__city";
    QTest::newRow("empty city: no command") << "ok.sh" << "Europe" << "" << QByteArray()
                                            << "DZuConfiguration_Error__invalid_region__city";
}

void TestConfigurationRegional::setRegion()
{
    QFETCH(QString, tool);
    QFETCH(QString, region);
    QFETCH(QString, city);
    QFETCH(QByteArray, calls);
    QFETCH(QString, logged);

    DZuConfiguration::setTimeZoneCommand(m_tools.filePath(tool));
    QSignalSpy regionChanged(m_config.get(), &DZuConfiguration::sigRegionChanged);
    LogCapture log;

    m_config->setRegion(region, city);
    DZuConfiguration::setTimeZoneCommand(m_tools.filePath("fail.sh"));

    QCOMPARE(m_config->currentRegion(), region);
    QCOMPARE(m_config->currentCity(), city);
    QCOMPARE(regionChanged.count(), 1);
    const QByteArray recorded = readFile(m_tools.filePath("calls.txt"));
    QCOMPARE(recorded, calls.isEmpty() ? QByteArray("<missing>") : calls);
    if (logged.isEmpty()) {
        QCOMPARE(log.lines(), QStringList());
    } else {
        QCOMPARE(log.lines().size(), 1);
        QCOMPARE(log.count("lib_configuration/source/d_zu_configuration;\t"), 1);
        QCOMPARE(log.count(logged), 1);
    }
}

void TestConfigurationRegional::setFormatsDrivesClock_data()
{
    QTest::addColumn<QString>("hourFormat");
    QTest::addColumn<bool>("is24h");
    QTest::addColumn<QString>("pattern");

    QTest::newRow("24 h") << "24 h" << true << "HH:mm";
    QTest::newRow("12 h") << "12 h" << false << "hh:mm A";
    QTest::newRow("other spelling is 12 h") << "24h" << false << "hh:mm A";
    QTest::newRow("other case is 12 h") << "24 H" << false << "hh:mm A";
}

void TestConfigurationRegional::setFormatsDrivesClock()
{
    QFETCH(QString, hourFormat);
    QFETCH(bool, is24h);
    QFETCH(QString, pattern);

    m_config->dateTime()->set24hFormat(!is24h);
    QSignalSpy regionChanged(m_config.get(), &DZuConfiguration::sigRegionChanged);
    m_config->setFormats(hourFormat, "YYYY-MM-DD");

    QCOMPARE(regionChanged.count(), 1);
    QCOMPARE(m_config->dateTime()->is24hFormat(), is24h);
    QCOMPARE(m_config->isCurrent24HoursFormat(), is24h);
    QCOMPARE(m_config->currentHourFormat(), hourFormat);
    QCOMPARE(m_config->currentDateFormat(), QString("YYYY-MM-DD"));
    QCOMPARE(m_config->getQTimeStringFormat(), pattern);
    QCOMPARE(m_config->getQDateStringFormat(), QString("yyyy-MM-dd"));
}

void TestConfigurationRegional::dateTimeToString_data()
{
    QTest::addColumn<QString>("hourFormat");
    QTest::addColumn<QString>("dateFormat");
    QTest::addColumn<QDateTime>("value");
    QTest::addColumn<QString>("expected");

    // Qt 5 writes the marker of the system locale, upper-cased.
    const QString pm = QLocale::system().pmText().toUpper();
    const QString am = QLocale::system().amText().toUpper();
    const QDateTime afternoon(QDate(2024, 3, 5), QTime(14, 7));

    QTest::newRow("12 h, MM/DD/YYYY") << "12 h" << "MM/DD/YYYY" << afternoon << "03/05/2024 02:07 " + pm;
    QTest::newRow("24 h, DD/MM/YYYY") << "24 h" << "DD/MM/YYYY" << afternoon << "05/03/2024 14:07";
    QTest::newRow("24 h, YYYY-MM-DD") << "24 h" << "YYYY-MM-DD" << afternoon << "2024-03-05 14:07";
    QTest::newRow("trailing blank is 12 h") << "24 h " << "DD/MM/YYYY" << afternoon << "05/03/2024 02:07 " + pm;
    QTest::newRow("12 h just after midnight") << "12 h" << "DD/MM/YYYY" << QDateTime(QDate(2024, 3, 5), QTime(0, 5))
                                              << "05/03/2024 12:05 " + am;
    QTest::newRow("unknown date format: empty date pattern") << "24 h" << "DD.MM.YYYY" << afternoon << " 14:07";
    QTest::newRow("invalid date-time") << "12 h" << "MM/DD/YYYY" << QDateTime(QDate(2024, 2, 30), QTime(14, 7)) << "";
    QTest::newRow("null date-time") << "24 h" << "DD/MM/YYYY" << QDateTime() << "";
}

void TestConfigurationRegional::dateTimeToString()
{
    QFETCH(QString, hourFormat);
    QFETCH(QString, dateFormat);
    QFETCH(QDateTime, value);
    QFETCH(QString, expected);

    m_config->setFormats(hourFormat, dateFormat);
    QCOMPARE(m_config->dateTimeToString(value), expected);
}

void TestConfigurationRegional::parsing_data()
{
    QTest::addColumn<QString>("hourFormat");
    QTest::addColumn<QString>("dateFormat");
    QTest::addColumn<QString>("dateText");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("timeText");
    QTest::addColumn<QTime>("time");

    const QString pm = QLocale::system().pmText().toUpper();
    QTest::newRow("month first, 12 h") << "12 h" << "MM/DD/YYYY" << "03/05/2024" << QDate(2024, 3, 5)
                                       << "02:07 " + pm << QTime(14, 7);
    QTest::newRow("day first, 24 h") << "24 h" << "DD/MM/YYYY" << "03/05/2024" << QDate(2024, 5, 3) << "14:07"
                                     << QTime(14, 7);
    QTest::newRow("text in the other order is invalid") << "24 h" << "YYYY-MM-DD" << "05/03/2024" << QDate()
                                                        << "2:07 PM" << QTime();
    QTest::newRow("unknown date format parses nothing") << "24 h" << "D-M-Y" << "05/03/2024" << QDate()
                                                        << "25:00" << QTime();
}

void TestConfigurationRegional::parsing()
{
    QFETCH(QString, hourFormat);
    QFETCH(QString, dateFormat);
    QFETCH(QString, dateText);
    QFETCH(QDate, date);
    QFETCH(QString, timeText);
    QFETCH(QTime, time);

    m_config->setFormats(hourFormat, dateFormat);
    QCOMPARE(m_config->stringToDate(dateText), date);
    QCOMPARE(m_config->stringToTime(timeText).time(), time);
    if (date.isValid())
        QCOMPARE(m_config->dateToString(date), dateText);
    if (time.isValid())
        QCOMPARE(m_config->timeToString(m_config->stringToTime(timeText)), timeText);
}

void TestConfigurationRegional::keyMapLayout_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("both lines rewritten, capitals lowered")
        << QByteArray("[keyboard]\nkeymap_layout=gb\nkeymap_variant=\n[input-method]\nkeymap_layout=us\n") << "FR"
        << QByteArray("[keyboard]\nkeymap_layout=fr\nkeymap_variant=\n[input-method]\nkeymap_layout=fr\n");
    QTest::newRow("key must start the line, case-sensitive")
        << QByteArray(" keymap_layout=gb\nKeymap_layout=gb\n#keymap_layout=gb\n") << "de"
        << QByteArray(" keymap_layout=gb\nKeymap_layout=gb\n#keymap_layout=gb\n");
    QTest::newRow("no matching line: nothing added") << QByteArray("[core]\nidle-time=0\n") << "de"
                                                     << QByteArray("[core]\nidle-time=0\n");
    QTest::newRow("UTF-8 kept") << QByteArray("# clavier fran\xc3\xa7" "ais\nkeymap_layout=gb\n") << "Ch"
                                << QByteArray("# clavier fran\xc3\xa7" "ais\nkeymap_layout=ch\n");
    QTest::newRow("last line gets its line end") << QByteArray("keymap_layout=gb") << "it"
                                                 << QByteArray("keymap_layout=it\n");
    QTest::newRow("shorter file leaves no tail") << QByteArray("keymap_layout=gb,us,de\n") << "fr"
                                                 << QByteArray("keymap_layout=fr\n");
    QTest::newRow("empty layout leaves the file alone") << QByteArray("keymap_layout=gb") << ""
                                                        << QByteArray("keymap_layout=gb");
}

void TestConfigurationRegional::keyMapLayout()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, layout);
    QFETCH(QByteArray, after);

    QTemporaryDir dir;
    const QString path = dir.filePath("weston.ini");
    QVERIFY(writeFile(path, before));
    DZuConfiguration::setCompositorConfigPath(path);
    LogCapture log;

    m_config->setKeyMapLayout(layout);
    DZuConfiguration::setCompositorConfigPath(m_tools.filePath("no-such-dir/weston.ini"));

    QCOMPARE(readFile(path), after);
    QCOMPARE(log.lines(), QStringList());
}

void TestConfigurationRegional::keyMapLayoutWithoutFileLogsAndCreatesNothing()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("weston.ini");
    DZuConfiguration::setCompositorConfigPath(path);
    LogCapture log;

    m_config->setKeyMapLayout("fr");
    DZuConfiguration::setCompositorConfigPath(m_tools.filePath("no-such-dir/weston.ini"));

    QCOMPARE(log.count("ERROR: cannot open file: " + path), 1);
    QVERIFY(!QFile::exists(path));
}

void TestConfigurationRegional::languagesAreTheTableNamesInOrder()
{
    const QStringList languages = m_config->getLanguages();
    QVERIFY(languages.contains("English"));
    QVERIFY(languages.contains(QString::fromUtf8("Fran\xc3\xa7" "ais")));
    QVERIFY(std::is_sorted(languages.cbegin(), languages.cend()));
    QVERIFY(!languages.contains("en_GB"));   // names, not codes
}

QTEST_GUILESS_MAIN(TestConfigurationRegional)
#include "tst_configurationregional.moc"
