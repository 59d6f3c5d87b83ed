#include "teststation.h"

#include "logcapture.h"

#include <QLocale>
#include <QProcess>
#include <QSignalSpy>
#include <QTimeZone>
#include <QtTest>

#include <algorithm>

#include <unistd.h>

namespace {
using Rows = QList<QPair<int, QString>>;
using TimeZoneTable = QMap<QString, QStringList>;
using TimeZoneIndex = QMap<QString, int>;

// The process sees this zone as the system's; the machine's own setting is never touched.
const QByteArray C_processZone = "Europe/Paris";

// Skip and rework lists follow the same rules; each row of the comment tests runs on both.
struct CommentApi
{
    void (DZuConfiguration::*add)(const QString&);
    void (DZuConfiguration::*edit)(int, const QString&);
    void (DZuConfiguration::*remove)(int);
    QString (DZuConfiguration::*get)(int);
    QStringList (DZuConfiguration::*list)() const;
    QStringList (DZuConfiguration::*other)() const;
};

const CommentApi C_skip{&DZuConfiguration::addSkipComment, &DZuConfiguration::editSkipComment,
                        &DZuConfiguration::removeSkipComment, &DZuConfiguration::getSkipCommentFromIndex,
                        &DZuConfiguration::skipComments, &DZuConfiguration::reworkComments};
const CommentApi C_rework{&DZuConfiguration::addReworkComment, &DZuConfiguration::editReworkComment,
                          &DZuConfiguration::removeReworkComment, &DZuConfiguration::getReworkCommentFromIndex,
                          &DZuConfiguration::reworkComments, &DZuConfiguration::skipComments};
}

class TestConfigurationParts : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void relations_data();
    void relations();
    void nullEntriesAreLoggedAndSkipped();

    void comments_data();
    void comments();

    void addFile_data();
    void addFile();
    void deleteTemplateFile_data();
    void deleteTemplateFile();

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
    QString m_templates;
    QString m_media;
};

void TestConfigurationParts::initTestCase()
{
    qputenv("TZ", C_processZone);
    QCOMPARE(QTimeZone::systemTimeZoneId(), C_processZone);
    // Time-zone programs: record their arguments, then succeed or fail. Only the one named
    // timedatectl passes for the system's; the others are stand-ins.
    for (const auto& tool : {qMakePair(QStringLiteral("ok.sh"), 0), qMakePair(QStringLiteral("fail.sh"), 1),
                             qMakePair(QStringLiteral("bin/timedatectl"), 0)}) {
        QDir().mkpath(QFileInfo(m_tools.filePath(tool.first)).absolutePath());
        const QString path = m_tools.filePath(tool.first);
        QVERIFY(writeFile(path, "#!/bin/sh\necho \"$@\" >> \"" + m_tools.filePath("calls.txt").toUtf8()
                                    + "\"\nexit " + QByteArray::number(tool.second) + "\n"));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    DZuConfiguration::setTimeZoneCommand(m_tools.filePath("fail.sh"));
    DZuConfiguration::setCompositorConfigPath(noCompositorFile());
}

void TestConfigurationParts::init()
{
    QFile::remove(m_tools.filePath("calls.txt"));
    m_station = std::make_unique<TestStation>();
    const QString internal = m_station->root() + "/storage/internal/";
    PreConfiguration::setParameter("templatesDirPath", internal + "report_templates");
    PreConfiguration::setParameter("mediaDirPath", internal + "media");
    m_config = m_station->create();
    QCOMPARE(m_config->sequenceIoRelations()->count(), 0);
    QCOMPARE(m_config->currentCity(), QString("Paris"));
    m_config->loadDirectories();
    m_templates = m_config->directories()->getTemplatesDirectoryPath();
    m_media = m_config->directories()->getMediaDirectoryPath();
    // Both resolve inside the station's internal storage, each to its own directory.
    QVERIFY2(m_templates.startsWith(internal) && m_media.startsWith(internal) && m_templates != m_media,
             qPrintable(m_templates + ' ' + m_media));
    QVERIFY(QDir().mkpath(m_templates) && QDir().mkpath(m_media));
}

void TestConfigurationParts::cleanup()
{
    m_config.reset();
    m_station.reset();
    DZuConfiguration::setTimeZoneCommand(m_tools.filePath("fail.sh"));
    DZuConfiguration::setCompositorConfigPath(noCompositorFile());
}

void TestConfigurationParts::relations_data()
{
    QTest::addColumn<Rows>("before");
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<bool>("changed");

    const Rows two{{3, "A"}, {5, "B"}};
    const QStringList untouched{"3:A", "5:B"};
    QTest::newRow("add: first relation is appended") << Rows{} << "add" << 0 << 1 << "A" << QStringList{"1:A"} << true;
    QTest::newRow("add: new code goes last") << Rows{{7, "A"}} << "add" << 0 << 3 << "B" << QStringList{"7:A", "3:B"} << true;
    QTest::newRow("add: code 0 refused") << Rows{} << "add" << 0 << 0 << "A" << QStringList{} << false;
    QTest::newRow("add: negative code refused") << Rows{} << "add" << 0 << -4 << "A" << QStringList{} << false;
    QTest::newRow("add: empty name refused") << Rows{} << "add" << 0 << 2 << "" << QStringList{} << false;
    QTest::newRow("add: existing code refused, list unchanged") << two << "add" << 0 << 5 << "C" << untouched << false;
    QTest::newRow("edit: free code gives the row new code and name") << two << "edit" << 0 << 9 << "C"
                                                                      << QStringList{"9:C", "5:B"} << true;
    QTest::newRow("edit: code of another row renames that row only") << two << "edit" << 0 << 5 << "C"
                                                                      << QStringList{"3:A", "5:C"} << true;
    QTest::newRow("edit: own code renames the row and keeps it") << two << "edit" << 0 << 3 << "D"
                                                                  << QStringList{"3:D", "5:B"} << true;
    QTest::newRow("edit: code 0 ignored") << two << "edit" << 0 << 0 << "C" << untouched << false;
    QTest::newRow("edit: empty name ignored") << two << "edit" << 0 << 9 << "" << untouched << false;
    QTest::newRow("edit: index = count ignored") << two << "edit" << 2 << 9 << "C" << untouched << false;
    QTest::newRow("remove: last row") << two << "remove" << 1 << 0 << "" << QStringList{"3:A"} << true;
    QTest::newRow("remove: index -1 is out of range") << two << "remove" << -1 << 0 << "" << untouched << false;
    QTest::newRow("remove: index = count is out of range") << two << "remove" << 2 << 0 << "" << untouched << false;
}

void TestConfigurationParts::relations()
{
    QFETCH(Rows, before);
    QFETCH(QString, operation);
    QFETCH(int, index);
    QFETCH(int, code);
    QFETCH(QString, name);
    QFETCH(QStringList, after);
    QFETCH(bool, changed);

    for (const auto& row : before)
        QVERIFY(m_config->addSequenceIoRelation(row.first, row.second));
    OLM_SequenceIoRelation* model = m_config->sequenceIoRelations();
    QSignalSpy relationChanged(m_config.get(), &DZuConfiguration::sigSequenceRelationChanged);
    QSignalSpy inserted(model, &QAbstractItemModel::rowsInserted);
    LogCapture log;

    if (operation == "add")
        QCOMPARE(m_config->addSequenceIoRelation(code, name), changed);
    else if (operation == "edit")
        m_config->editSequenceIoRelation(index, code, name);
    else
        m_config->removeSequenceIoRelation(index);

    QCOMPARE(relationTexts(*m_config), after);
    QCOMPARE(relationChanged.isEmpty(), !changed);
    // A view shows an added row where it went.
    if (operation == "add" && changed)
        QCOMPARE(inserted.value(0).value(1).toInt(), before.size());
    QCOMPARE(log.count("ERROR: index out of range"), operation == "remove" && !changed ? 1 : 0);

    for (int row = 0; row < after.size(); ++row) {
        int found = -7;
        QVERIFY(m_config->checkSeqRelationExist(after.at(row).section(':', 0, 0).toInt(), found));
        QCOMPARE(found, row);
    }
    int found = -7;
    QVERIFY(!m_config->checkSeqRelationExist(99, found));
    QCOMPARE(found, -7);   // untouched when not found
}

void TestConfigurationParts::nullEntriesAreLoggedAndSkipped()
{
    OLM_SequenceIoRelation* model = m_config->sequenceIoRelations();
    model->append(QSharedPointer<SequenceIoRelation>());
    QVERIFY(m_config->addSequenceIoRelation(5, "B"));
    LogCapture log;

    int found = -1;
    QVERIFY(m_config->checkSeqRelationExist(5, found));
    QCOMPARE(found, 1);   // the null row still counts as a position
    QCOMPARE(log.count("DZuConfiguration::checkSeqRelationExist: seqIoRl is null"), 1);

    log.clear();
    QSignalSpy relationChanged(m_config.get(), &DZuConfiguration::sigSequenceRelationChanged);
    m_config->editSequenceIoRelation(0, 9, "C");
    QCOMPARE(log.count("DZuConfiguration::editSequenceIoRelation: sequenceIoRelation at index is null"), 1);
    QCOMPARE(relationChanged.count(), 0);
    QCOMPARE(model->at(1)->binaryCode(), 5);

    // Editing any row to code 5 renames the owner of 5, even from the null row.
    m_config->editSequenceIoRelation(0, 5, "D");
    QCOMPARE(model->at(1)->sequenceBaseName(), QString("D"));
    QCOMPARE(relationChanged.count(), 1);
}

void TestConfigurationParts::comments_data()
{
    QTest::addColumn<bool>("skip");
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<int>("signalCount");
    QTest::addColumn<QString>("logged");

    const QStringList ab{"A", "B"};
    const QString rage = "ERROR: index out of rage";
    for (bool skip : {true, false}) {
        const QByteArray list = skip ? "skip: " : "rework: ";
        QTest::newRow(list + "add appends") << skip << "add" << 0 << "C" << QStringList{"A", "B", "C"} << 1 << "";
        QTest::newRow(list + "add duplicate keeps both") << skip << "add" << 0 << "A" << QStringList{"A", "B", "A"} << 1 << "";
        QTest::newRow(list + "add empty ignored") << skip << "add" << 0 << "" << ab << 0 << "";
        QTest::newRow(list + "edit replaces") << skip << "edit" << 1 << "X" << QStringList{"A", "X"} << 1 << "";
        QTest::newRow(list + "edit out of range ignored") << skip << "edit" << 2 << "X" << ab << 0 << "";
        QTest::newRow(list + "remove drops the entry") << skip << "remove" << 0 << "" << QStringList{"B"} << 1 << "";
        QTest::newRow(list + "remove out of range silent") << skip << "remove" << 5 << "" << ab << 0 << "";
        QTest::newRow(list + "get at index -1 logs") << skip << "get" << -1 << "" << ab << 0 << rage;
        QTest::newRow(list + "get at index 5 logs") << skip << "get" << 5 << "" << ab << 0 << rage;
    }
}

void TestConfigurationParts::comments()
{
    QFETCH(bool, skip);
    QFETCH(QString, operation);
    QFETCH(int, index);
    QFETCH(QString, text);
    QFETCH(QStringList, after);
    QFETCH(int, signalCount);
    QFETCH(QString, logged);

    const CommentApi& api = skip ? C_skip : C_rework;
    DZuConfiguration& config = *m_config;
    (config.*api.add)("A");
    (config.*api.add)("B");
    QSignalSpy changed(m_config.get(), &DZuConfiguration::sigConfigurationChanged);
    LogCapture log;

    if (operation == "add")
        (config.*api.add)(text);
    else if (operation == "edit")
        (config.*api.edit)(index, text);
    else if (operation == "remove")
        (config.*api.remove)(index);
    else
        QCOMPARE((config.*api.get)(index), QString());

    QCOMPARE((config.*api.list)(), after);
    QCOMPARE((config.*api.other)(), QStringList());   // the other list is its own
    QCOMPARE(changed.count(), signalCount);
    if (logged.isEmpty()) {
        QCOMPARE(log.lines(), QStringList());
    } else {
        QCOMPARE(log.lines().size(), 1);
        QCOMPARE(log.count(logged), 1);
        QCOMPARE(log.count("lib_configuration/source/d_zu_configuration;\t"), 1);
    }
    for (int i = 0; i < after.size(); ++i)
        QCOMPARE((config.*api.get)(i), after.at(i));
}

void TestConfigurationParts::addFile_data()
{
    QTest::addColumn<bool>("logo");
    QTest::addColumn<bool>("sourceExists");
    QTest::addColumn<bool>("targetExists");

    for (bool logo : {false, true}) {
        const QByteArray kind = logo ? "logo: " : "template: ";
        QTest::newRow(kind + "copied under its own name") << logo << true << false;
        QTest::newRow(kind + "missing source copies nothing, still signals") << logo << false << false;
        QTest::newRow(kind + "existing file is not overwritten") << logo << true << true;
    }
}

void TestConfigurationParts::addFile()
{
    QFETCH(bool, logo);
    QFETCH(bool, sourceExists);
    QFETCH(bool, targetExists);

    const QString name = logo ? "company logo.png" : "report.lrxml";
    const QString source = m_station->root() + "/import/" + name;
    const QString target = (logo ? m_media : m_templates) + '/' + name;
    const QString otherTarget = (logo ? m_templates : m_media) + '/' + name;
    if (sourceExists)
        QVERIFY(writeFile(source, "new content"));
    if (targetExists)
        QVERIFY(writeFile(target, "old content"));
    m_config->setCompanyLogo("previous.png");
    QSignalSpy changed(m_config.get(), &DZuConfiguration::sigConfigurationChanged);
    QSignalSpy listRefreshed(m_config->directories(), &Directories::sigDirectoriesChanged);

    const QString result = logo ? m_config->addCompanyLogo(source) : m_config->addTemplateFile(source);

    QCOMPARE(result, name);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(listRefreshed.count(), logo ? 0 : 1);
    const QByteArray expected = targetExists ? "old content" : sourceExists ? "new content" : "<missing>";
    QCOMPARE(readFile(target), expected);
    QVERIFY(!QFile::exists(otherTarget));
    QCOMPARE(m_config->companyLogo(), QString("previous.png"));   // adding a logo does not choose it
    if (sourceExists)
        QCOMPARE(readFile(source), QByteArray("new content"));
}

void TestConfigurationParts::deleteTemplateFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("removed");

    QTest::newRow("existing template removed") << "report.lrxml" << true;
    QTest::newRow("missing template: nothing") << "absent.lrxml" << false;
    QTest::newRow("path outside the directory refused") << "../outside.lrxml" << false;
    QTest::newRow("sub-directory not removed") << "archive" << false;
}

void TestConfigurationParts::deleteTemplateFile()
{
    QFETCH(QString, name);
    QFETCH(bool, removed);

    QVERIFY(writeFile(m_templates + "/report.lrxml", "template"));
    QVERIFY(writeFile(m_templates + "/../outside.lrxml", "kept"));
    QVERIFY(QDir().mkpath(m_templates + "/archive"));
    QSignalSpy changed(m_config.get(), &DZuConfiguration::sigConfigurationChanged);
    QSignalSpy listRefreshed(m_config->directories(), &Directories::sigDirectoriesChanged);
    LogCapture log;

    m_config->deleteTemplateFile(name);

    QCOMPARE(QFile::exists(m_templates + "/report.lrxml"), !removed);
    QVERIFY(QFile::exists(m_templates + "/../outside.lrxml"));
    QVERIFY(QFileInfo(m_templates + "/archive").isDir());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(listRefreshed.count(), 0);
    QCOMPARE(log.lines(), QStringList());
}

// Three components: the middle one is the city; a missing file leaves the maps alone.
void TestConfigurationParts::timeZoneTable()
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

void TestConfigurationParts::builtInTimeZonesAndLanguages()
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

void TestConfigurationParts::setRegion_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("region");
    QTest::addColumn<QString>("city");
    QTest::addColumn<QByteArray>("calls");
    QTest::addColumn<QString>("logged");

    const QString failed = "DZuConfiguration_Error_changing_system_time_zone_";
    const QString invalid = "DZuConfiguration_Error__invalid_region__city";
    QTest::newRow("system zone: no command, no log") << "ok.sh" << "Europe" << "Paris" << QByteArray("<missing>") << "";
    QTest::newRow("other zone: command succeeds") << "bin/timedatectl" << "Asia" << "Tokyo"
                                                  << QByteArray("set-timezone Asia/Tokyo\n")
                                                  << "DZuConfiguration_The_system_time_zone_has_been_successfully_changed_";
    QTest::newRow("other zone: stand-in succeeds, no success claimed")
        << "ok.sh" << "Asia" << "Tokyo" << QByteArray("set-timezone Asia/Tokyo\n")
        << "time zone Asia/Tokyo given to the stand-in " + m_tools.filePath("ok.sh") + " (exit 0); the system time zone is unchanged";
    QTest::newRow("other zone: command fails") << "fail.sh" << "America" << "New_York"
                                               << QByteArray("set-timezone America/New_York\n") << failed;
    QTest::newRow("program missing counts as failure") << "absent.sh" << "Asia" << "Tokyo" << QByteArray("<missing>") << failed;
    QTest::newRow("invalid pair: no command") << "ok.sh" << "Atlantis" << "Poseidonia" << QByteArray("<missing>") << invalid;
    QTest::newRow("empty city: no command") << "ok.sh" << "Europe" << "" << QByteArray("<missing>") << invalid;
}

void TestConfigurationParts::setRegion()
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
        // In the language of the catalogue installed, if any.
        QCOMPARE(log.count(qtTrId(logged.toUtf8().constData())), 1);
    }
}

void TestConfigurationParts::setFormats_data()
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
void TestConfigurationParts::setFormats()
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

void TestConfigurationParts::keyMapLayout_data()
{
    QTest::addColumn<QByteArray>("before");   // null: no file
    QTest::addColumn<QString>("layout");
    QTest::addColumn<bool>("readOnly");       // the file's directory cannot be written
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QString>("logged");

    const QByteArray ini = "[core]\r\nshell=kiosk-shell.so\r\n\n[keyboard]\nkeymap_layout=gb\nkeymap_variant=\n"
                           "[input-method]\nkeymap_layout=us\n# end";
    QTest::newRow("both lines rewritten, capitals lowered, others kept as they were")
        << ini << "FR" << false
        << QByteArray("[core]\r\nshell=kiosk-shell.so\r\n\n[keyboard]\nkeymap_layout=fr\nkeymap_variant=\n"
                      "[input-method]\nkeymap_layout=fr\n# end\n") << "";
    QTest::newRow("key must start the line, case-sensitive")
        << QByteArray(" keymap_layout=gb\nKeymap_layout=gb\n#keymap_layout=gb\n") << "de" << false
        << QByteArray(" keymap_layout=gb\nKeymap_layout=gb\n#keymap_layout=gb\n") << "";
    QTest::newRow("shorter file leaves no tail") << QByteArray("keymap_layout=gb,us,de\n") << "fr" << false
                                                 << QByteArray("keymap_layout=fr\n") << "";
    QTest::newRow("directory not writable: old file untouched")
        << ini << "fr" << true << ini << "the file is unchanged";
    QTest::newRow("missing file: logged, not created") << QByteArray() << "fr" << false << QByteArray("<missing>")
                                                       << "ERROR: cannot open file: ";
}

void TestConfigurationParts::keyMapLayout()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, layout);
    QFETCH(bool, readOnly);
    QFETCH(QByteArray, after);
    QFETCH(QString, logged);
    const QString directory = m_station->root() + "/etc";
    const QString path = directory + "/weston.ini";
    QVERIFY(QDir().mkpath(directory));
    struct Unmount {
        QString path;
        ~Unmount() { if (!path.isEmpty()) QProcess::execute("umount", {"-l", path}); }
    } unmount;
    if (readOnly && ::geteuid() == 0) {
        // Root writes anywhere but on a read-only file system.
        if (QProcess::execute("mount", {"-t", "tmpfs", "-o", "size=1m", "tmpfs", directory}) != 0)
            QSKIP("tmpfs cannot be mounted here");
        unmount.path = directory;
    }
    if (!before.isNull()) {
        QVERIFY(writeFile(path, before));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    }
    if (readOnly) {
        QVERIFY(::geteuid() == 0 ? QProcess::execute("mount", {"-o", "remount,ro", directory}) == 0
                                 : QFile::setPermissions(directory, QFile::ReadOwner | QFile::ExeOwner));
    }
    DZuConfiguration::setCompositorConfigPath(path);
    LogCapture log;

    m_config->setKeyMapLayout(layout);

    if (readOnly && ::geteuid() != 0)
        QFile::setPermissions(directory, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QCOMPARE(readFile(path), after);
    QCOMPARE(log.lines().size(), logged.isEmpty() ? 0 : 1);
    if (!logged.isEmpty())
        QVERIFY2(log.count(logged) == 1, qPrintable(log.lines().join('\n')));
    if (!before.isNull()) {
        // Replaced in place of the old file: same mode, no temporary left beside it.
        const QFile::Permissions mode = QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser);
        QCOMPARE(mode, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
        QCOMPARE(QDir(directory).entryList(QDir::Files | QDir::Hidden), QStringList{"weston.ini"});
    }
}

QTEST_GUILESS_MAIN(TestConfigurationParts)
#include "tst_configurationparts.moc"
