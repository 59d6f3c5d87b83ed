#include "teststation.h"

#include "logcapture.h"

#include <QSignalSpy>
#include <QtTest>

namespace {
using Rows = QList<QPair<int, QString>>;

QStringList rowTexts(DZuConfiguration& config)
{
    QStringList texts;
    for (const auto& relation : config.sequenceIoRelations()->list())
        texts << QString::number(relation->binaryCode()) + ':' + relation->sequenceBaseName();
    return texts;
}

void fill(DZuConfiguration& config, const Rows& rows)
{
    for (const auto& row : rows)
        QVERIFY(config.addSequenceIoRelation(row.first, row.second));
}

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

class TestConfigurationRelations : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void addRelation_data();
    void addRelation();
    void editRelation_data();
    void editRelation();
    void removeRelation_data();
    void removeRelation();
    void nullEntriesAreLoggedAndSkipped();

    void comments_data();
    void comments();
    void commentGetterOutOfRangeLogsRage_data();
    void commentGetterOutOfRangeLogsRage();

private:
    std::unique_ptr<TestStation> m_station;
    std::unique_ptr<DZuConfiguration> m_config;
};

void TestConfigurationRelations::initTestCase()
{
    // Loading the document sets the region: never let that reach the real system.
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("false"));
}

void TestConfigurationRelations::init()
{
    m_station = std::make_unique<TestStation>();
    QVERIFY(m_station->isValid());
    m_config = m_station->create();
    QCOMPARE(m_config->sequenceIoRelations()->count(), 0);
}

void TestConfigurationRelations::cleanup()
{
    m_config.reset();
    m_station.reset();
}

void TestConfigurationRelations::addRelation_data()
{
    QTest::addColumn<Rows>("before");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QStringList>("after");

    QTest::newRow("first relation is appended") << Rows{} << 1 << "A" << true << QStringList{"1:A"};
    QTest::newRow("new code goes last") << Rows{{7, "A"}} << 3 << "B" << true << QStringList{"7:A", "3:B"};
    QTest::newRow("code 0 refused") << Rows{} << 0 << "A" << false << QStringList{};
    QTest::newRow("negative code refused") << Rows{} << -4 << "A" << false << QStringList{};
    QTest::newRow("empty name refused") << Rows{} << 2 << "" << false << QStringList{};
    QTest::newRow("existing code refused, list unchanged")
        << Rows{{3, "A"}, {5, "B"}} << 5 << "C" << false << QStringList{"3:A", "5:B"};
}

void TestConfigurationRelations::addRelation()
{
    QFETCH(Rows, before);
    QFETCH(int, code);
    QFETCH(QString, name);
    QFETCH(bool, accepted);
    QFETCH(QStringList, after);

    fill(*m_config, before);
    OLM_SequenceIoRelation* model = m_config->sequenceIoRelations();
    QSignalSpy relationChanged(m_config.get(), &DZuConfiguration::sigSequenceRelationChanged);
    QSignalSpy modelChanged(model, &ObjectListModelBase::changed);
    QSignalSpy inserted(model, &QAbstractItemModel::rowsInserted);

    QCOMPARE(m_config->addSequenceIoRelation(code, name), accepted);
    QCOMPARE(rowTexts(*m_config), after);
    QCOMPARE(relationChanged.count(), accepted ? 1 : 0);
    QCOMPARE(modelChanged.count(), accepted ? 1 : 0);
    QCOMPARE(inserted.count(), accepted ? 1 : 0);
    if (accepted)
        QCOMPARE(inserted.first().at(1).toInt(), before.size());
}

void TestConfigurationRelations::editRelation_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<bool>("signalled");

    const QStringList untouched{"3:A", "5:B"};
    QTest::newRow("free code: row gets new code and name") << 0 << 9 << "C" << QStringList{"9:C", "5:B"} << true;
    QTest::newRow("code of another row renames that row only")
        << 0 << 5 << "C" << QStringList{"3:A", "5:C"} << true;
    QTest::newRow("own code renames the row and keeps it") << 0 << 3 << "D" << QStringList{"3:D", "5:B"} << true;
    QTest::newRow("code 0 ignored") << 0 << 0 << "C" << untouched << false;
    QTest::newRow("negative code ignored") << 1 << -1 << "C" << untouched << false;
    QTest::newRow("empty name ignored") << 0 << 9 << "" << untouched << false;
    QTest::newRow("index = count ignored") << 2 << 9 << "C" << untouched << false;
    QTest::newRow("negative index ignored") << -1 << 9 << "C" << untouched << false;
}

void TestConfigurationRelations::editRelation()
{
    QFETCH(int, index);
    QFETCH(int, code);
    QFETCH(QString, name);
    QFETCH(QStringList, after);
    QFETCH(bool, signalled);

    fill(*m_config, {{3, "A"}, {5, "B"}});
    QSignalSpy relationChanged(m_config.get(), &DZuConfiguration::sigSequenceRelationChanged);
    QSignalSpy modelChanged(m_config->sequenceIoRelations(), &ObjectListModelBase::changed);

    m_config->editSequenceIoRelation(index, code, name);

    QCOMPARE(rowTexts(*m_config), after);
    QCOMPARE(relationChanged.count(), signalled ? 1 : 0);
    QCOMPARE(modelChanged.count(), 0);   // edits send no model notification

    int found = -7;
    QVERIFY(m_config->checkSeqRelationExist(after.first().section(':', 0, 0).toInt(), found));
    QCOMPARE(found, 0);
}

void TestConfigurationRelations::removeRelation_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QStringList>("after");

    QTest::newRow("first row") << 0 << QStringList{"5:B"};
    QTest::newRow("last row") << 1 << QStringList{"3:A"};
    QTest::newRow("index -1 is out of range") << -1 << QStringList{"3:A", "5:B"};
    QTest::newRow("index = count is out of range") << 2 << QStringList{"3:A", "5:B"};
}

void TestConfigurationRelations::removeRelation()
{
    QFETCH(int, index);
    QFETCH(QStringList, after);

    fill(*m_config, {{3, "A"}, {5, "B"}});
    const bool valid = after.size() == 1;
    QSignalSpy relationChanged(m_config.get(), &DZuConfiguration::sigSequenceRelationChanged);
    QSignalSpy removed(m_config->sequenceIoRelations(), &QAbstractItemModel::rowsRemoved);
    LogCapture log;

    m_config->removeSequenceIoRelation(index);

    QCOMPARE(rowTexts(*m_config), after);
    QCOMPARE(relationChanged.count(), valid ? 1 : 0);
    QCOMPARE(removed.count(), valid ? 1 : 0);
    QCOMPARE(log.count("ERROR: index out of range"), valid ? 0 : 1);
    QCOMPARE(log.count("out of rage"), 0);

    int found = -7;
    QVERIFY(!m_config->checkSeqRelationExist(index == 0 ? 3 : 99, found));
    QCOMPARE(found, -7);   // untouched when not found
}

void TestConfigurationRelations::nullEntriesAreLoggedAndSkipped()
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

void TestConfigurationRelations::comments_data()
{
    QTest::addColumn<bool>("skip");
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<int>("signalCount");

    for (bool skip : {true, false}) {
        const QByteArray list = skip ? "skip: " : "rework: ";
        QTest::newRow(list + "add appends") << skip << "add" << 0 << "C" << QStringList{"A", "B", "C"} << 1;
        QTest::newRow(list + "add duplicate keeps both") << skip << "add" << 0 << "A" << QStringList{"A", "B", "A"} << 1;
        QTest::newRow(list + "add empty ignored") << skip << "add" << 0 << "" << QStringList{"A", "B"} << 0;
        QTest::newRow(list + "edit replaces") << skip << "edit" << 1 << "X" << QStringList{"A", "X"} << 1;
        QTest::newRow(list + "edit with empty text ignored") << skip << "edit" << 1 << "" << QStringList{"A", "B"} << 0;
        QTest::newRow(list + "edit out of range ignored") << skip << "edit" << 2 << "X" << QStringList{"A", "B"} << 0;
        QTest::newRow(list + "edit negative ignored") << skip << "edit" << -1 << "X" << QStringList{"A", "B"} << 0;
        QTest::newRow(list + "remove drops the entry") << skip << "remove" << 0 << "" << QStringList{"B"} << 1;
        QTest::newRow(list + "remove out of range silent") << skip << "remove" << 5 << "" << QStringList{"A", "B"} << 0;
        QTest::newRow(list + "remove negative silent") << skip << "remove" << -1 << "" << QStringList{"A", "B"} << 0;
    }
}

void TestConfigurationRelations::comments()
{
    QFETCH(bool, skip);
    QFETCH(QString, operation);
    QFETCH(int, index);
    QFETCH(QString, text);
    QFETCH(QStringList, after);
    QFETCH(int, signalCount);

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
    else
        (config.*api.remove)(index);

    QCOMPARE((config.*api.list)(), after);
    QCOMPARE((config.*api.other)(), QStringList());   // the other list is its own
    QCOMPARE(changed.count(), signalCount);
    QCOMPARE(log.lines(), QStringList());
    for (int i = 0; i < after.size(); ++i)
        QCOMPARE((config.*api.get)(i), after.at(i));
}

void TestConfigurationRelations::commentGetterOutOfRangeLogsRage_data()
{
    QTest::addColumn<bool>("skip");
    QTest::addColumn<int>("index");

    QTest::newRow("skip: index 5 of two") << true << 5;
    QTest::newRow("skip: index = count") << true << 2;
    QTest::newRow("skip: index -1") << true << -1;
    QTest::newRow("rework: index 5 of two") << false << 5;
    QTest::newRow("rework: index -1") << false << -1;
}

void TestConfigurationRelations::commentGetterOutOfRangeLogsRage()
{
    QFETCH(bool, skip);
    QFETCH(int, index);

    const CommentApi& api = skip ? C_skip : C_rework;
    DZuConfiguration& config = *m_config;
    (config.*api.add)("A");
    (config.*api.add)("B");
    LogCapture log;

    QCOMPARE((config.*api.get)(index), QString());
    const QStringList lines = log.matching("ERROR: index out of rage");
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.first().contains("lib_configuration/source/d_zu_configuration;\t"));
    QCOMPARE((config.*api.list)(), QStringList({"A", "B"}));
}

QTEST_GUILESS_MAIN(TestConfigurationRelations)
#include "tst_configurationrelations.moc"
