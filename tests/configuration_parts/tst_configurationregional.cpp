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
}

class TestConfigurationRegional : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void timeZoneTable();
    void builtInTimeZonesAndLanguages();
    void setRegion_data();
    void setRegion();
    void setFormats_data();
    void setFormats();
    void keyMapLayout_data();
    void keyMapLayout();

private:
    QString noCompositorFile() const { return m_tools.filePath("no-such-dir/weston.ini"); }

    QTemporaryDir m_tools;
    std::unique_ptr<TestStation> m_station;
    std::unique_ptr<DZuConfiguration> m_config;
};

void TestConfigurationRegional::initTestCase()
{
    qputenv("TZ", C_processZone);
    QCOMPARE(QTimeZone::systemTimeZoneId(), C_processZone);
    // Stand-ins for the time-zone program: record their arguments, then succeed or fail.
    for (const auto& tool : {qMakePair(QStringLiteral("ok.sh"), 0), qMakePair(QStringLiteral("fail.sh"), 1)}) {
        const QString path = m_tools.filePath(tool.first);
        QVERIFY(writeFile(path, "#!/bin/sh\necho \"$@\" >> \"" + m_tools.filePath("calls.txt").toUtf8()
                                    + "\"\nexit " + QByteArray::number(tool.second) + "\n"));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    DZuConfiguration::setTimeZoneCommand(m_tools.filePath("fail.sh"));
    DZuConfiguration::setCompositorConfigPath(noCompositorFile());
}

void TestConfigurationRegional::init()
{
    QFile::remove(m_tools.filePath("calls.txt"));
    m_station = std::make_unique<TestStation>();
    m_config = m_station->create();
    QCOMPARE(m_config->currentCity(), QString("Paris"));
}

void TestConfigurationRegional::cleanup()
{
    m_config.reset();
    m_station.reset();
    DZuConfiguration::setTimeZoneCommand(m_tools.filePath("fail.sh"));
    DZuConfiguration::setCompositorConfigPath(noCompositorFile());
}

// Three components: the middle one is the city; a missing file leaves the maps alone.
void TestConfigurationRegional::timeZoneTable()
{
    const QString path = m_station->root() + "/timezones.csv";
    TimeZoneTable table{{"Old", {"Town"}}};
    TimeZoneIndex index{{"Old/Town", 1}};
    QVERIFY(!DZuConfiguration::loadTimeZoneTable(path, table, index));
    QCOMPARE(index, (TimeZoneIndex{{"Old/Town", 1}}));
    QVERIFY(writeFile(path, "58;America/Argentina/Buenos_Aires\n"));
    table.clear();
    index.clear();
    QVERIFY(DZuConfiguration::loadTimeZoneTable(path, table, index));
    QCOMPARE(table, (TimeZoneTable{{"America", {"Argentina"}}}));
    QCOMPARE(index, (TimeZoneIndex{{"America/Argentina/Buenos_Aires", 58}}));
}

void TestConfigurationRegional::builtInTimeZonesAndLanguages()
{
    const QStringList identifiers = m_config->timezones();
    QVERIFY2(identifiers.size() >= 300, qPrintable(QString::number(identifiers.size())));
    QVERIFY(identifiers.contains("Etc/UTC") && identifiers.contains("America/Argentina/Buenos_Aires"));
    QVERIFY(std::is_sorted(identifiers.cbegin(), identifiers.cend()));
    // Every zone offered to the operator is one the system can switch to.
    for (const QString& identifier : identifiers)
        QVERIFY2(QTimeZone(identifier.toUtf8()).isValid(), qPrintable(identifier));
    for (const char* region : {"Africa", "America", "Asia", "Australia", "Europe", "Pacific"})
        QVERIFY2(m_config->regions().contains(region), region);
    QVERIFY(m_config->cities().contains("Paris") && m_config->cities().contains("Berlin"));
    m_config->setCurrentRegion("Atlantis");
    QCOMPARE(m_config->cities(), QStringList());

    // Languages are the table's names, not codes, in order.
    const QStringList languages = m_config->getLanguages();
    QVERIFY(languages.contains("English") && languages.contains(QString::fromUtf8("Fran\xc3\xa7" "ais")));
    QVERIFY(std::is_sorted(languages.cbegin(), languages.cend()));
    QVERIFY(!languages.contains("en_GB"));
}

void TestConfigurationRegional::setRegion_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("region");
    QTest::addColumn<QString>("city");
    QTest::addColumn<QByteArray>("calls");
    QTest::addColumn<QString>("logged");

    const QString failed = "DZuConfiguration_Error_changing_system_time_zone_";
    const QString invalid = "DZuConfiguration_Error__invalid_region__city";
    QTest::newRow("system zone: no command, no log") << "ok.sh" << "Europe" << "Paris" << QByteArray("<missing>") << "";
    QTest::newRow("other zone: command succeeds") << "ok.sh" << "Asia" << "Tokyo" << QByteArray("set-timezone Asia/Tokyo\n")
                                                  << "DZuConfiguration_The_system_time_zone_has_been_successfully_changed_";
    QTest::newRow("other zone: command fails") << "fail.sh" << "America" << "New_York"
                                               << QByteArray("set-timezone America/New_York\n") << failed;
    QTest::newRow("program missing counts as failure") << "absent.sh" << "Asia" << "Tokyo" << QByteArray("<missing>") << failed;
    QTest::newRow("invalid pair: no command") << "ok.sh" << "Atlantis" << "Poseidonia" << QByteArray("<missing>") << invalid;
    QTest::newRow("empty city: no command") << "ok.sh" << "Europe" << "" << QByteArray("<missing>") << invalid;
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

    QCOMPARE(m_config->currentRegion(), region);
    QCOMPARE(m_config->currentCity(), city);
    QCOMPARE(regionChanged.count(), 1);
    QCOMPARE(readFile(m_tools.filePath("calls.txt")), calls);
    if (logged.isEmpty()) {
        QCOMPARE(log.lines(), QStringList());
    } else {
        QCOMPARE(log.lines().size(), 1);
        QCOMPARE(log.count("lib_configuration/source/d_zu_configuration;\t"), 1);
        QCOMPARE(log.count(logged), 1);
    }
}

void TestConfigurationRegional::setFormats_data()
{
    QTest::addColumn<QString>("hourFormat");
    QTest::addColumn<QString>("dateFormat");
    QTest::addColumn<QDateTime>("value");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("foreign");   // "date|time" texts that must not parse

    // Qt 5 writes the marker of the system locale, upper-cased.
    const QString pm = ' ' + QLocale::system().pmText().toUpper();
    const QString am = ' ' + QLocale::system().amText().toUpper();
    const QDateTime afternoon(QDate(2024, 3, 5), QTime(14, 7));
    QTest::newRow("12 h, MM/DD/YYYY") << "12 h" << "MM/DD/YYYY" << afternoon << "03/05/2024 02:07" + pm << "";
    QTest::newRow("24 h, DD/MM/YYYY") << "24 h" << "DD/MM/YYYY" << afternoon << "05/03/2024 14:07" << "|25:00";
    QTest::newRow("24 h, YYYY-MM-DD; other order is invalid")
        << "24 h" << "YYYY-MM-DD" << afternoon << "2024-03-05 14:07" << "05/03/2024|2:07 PM";
    QTest::newRow("other case is 12 h") << "24 H" << "DD/MM/YYYY" << afternoon << "05/03/2024 02:07" + pm << "";
    QTest::newRow("12 h just after midnight") << "12 h" << "DD/MM/YYYY" << QDateTime(QDate(2024, 3, 5), QTime(0, 5))
                                              << "05/03/2024 12:05" + am << "";
    QTest::newRow("unknown date format: empty date pattern, parses nothing")
        << "24 h" << "DD.MM.YYYY" << afternoon << " 14:07" << "05/03/2024|";
    QTest::newRow("invalid date-time") << "12 h" << "MM/DD/YYYY" << QDateTime(QDate(2024, 2, 30), QTime(14, 7)) << "" << "";
}

// The clock is first set the other way, so that every row must switch it. Valid values
// must read back from their own texts.
void TestConfigurationRegional::setFormats()
{
    QFETCH(QString, hourFormat);
    QFETCH(QString, dateFormat);
    QFETCH(QDateTime, value);
    QFETCH(QString, expected);
    QFETCH(QString, foreign);
    const bool is24h = hourFormat == "24 h";
    m_config->dateTime()->set24hFormat(!is24h);
    QSignalSpy regionChanged(m_config.get(), &DZuConfiguration::sigRegionChanged);

    m_config->setFormats(hourFormat, dateFormat);

    QCOMPARE(regionChanged.count(), 1);
    QCOMPARE(m_config->dateTime()->is24hFormat(), is24h);
    QCOMPARE(m_config->isCurrent24HoursFormat(), is24h);
    QCOMPARE(m_config->currentHourFormat(), hourFormat);
    QCOMPARE(m_config->currentDateFormat(), dateFormat);
    QCOMPARE(m_config->dateTimeToString(value), expected);
    if (value.isValid() && !expected.startsWith(' ')) {
        QCOMPARE(m_config->stringToDate(m_config->dateToString(value.date())), value.date());
        QCOMPARE(m_config->stringToTime(m_config->timeToString(value)).time(), value.time());
        QCOMPARE(m_config->dateToString(value.date()) + ' ' + m_config->timeToString(value), expected);
    }
    if (!foreign.section('|', 0, 0).isEmpty())
        QVERIFY(!m_config->stringToDate(foreign.section('|', 0, 0)).isValid());
    if (!foreign.section('|', 1).isEmpty())
        QVERIFY(!m_config->stringToTime(foreign.section('|', 1)).isValid());
}

void TestConfigurationRegional::keyMapLayout_data()
{
    QTest::addColumn<QByteArray>("before");   // null: no file
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("both lines rewritten, capitals lowered")
        << QByteArray("[keyboard]\nkeymap_layout=gb\nkeymap_variant=\n[input-method]\nkeymap_layout=us\n") << "FR"
        << QByteArray("[keyboard]\nkeymap_layout=fr\nkeymap_variant=\n[input-method]\nkeymap_layout=fr\n");
    QTest::newRow("key must start the line, case-sensitive")
        << QByteArray(" keymap_layout=gb\nKeymap_layout=gb\n#keymap_layout=gb\n") << "de"
        << QByteArray(" keymap_layout=gb\nKeymap_layout=gb\n#keymap_layout=gb\n");
    QTest::newRow("shorter file leaves no tail") << QByteArray("keymap_layout=gb,us,de\n") << "fr"
                                                 << QByteArray("keymap_layout=fr\n");
    QTest::newRow("missing file: logged, not created") << QByteArray() << "fr" << QByteArray("<missing>");
}

void TestConfigurationRegional::keyMapLayout()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, layout);
    QFETCH(QByteArray, after);
    const QString path = m_station->root() + "/weston.ini";
    if (!before.isNull())
        QVERIFY(writeFile(path, before));
    DZuConfiguration::setCompositorConfigPath(path);
    LogCapture log;

    m_config->setKeyMapLayout(layout);

    QCOMPARE(readFile(path), after);
    QCOMPARE(log.lines().size(), before.isNull() ? 1 : 0);
    QCOMPARE(log.count("ERROR: cannot open file: " + path), before.isNull() ? 1 : 0);
}

QTEST_GUILESS_MAIN(TestConfigurationRegional)
#include "tst_configurationregional.moc"
