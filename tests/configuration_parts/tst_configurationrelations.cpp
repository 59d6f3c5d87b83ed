#include "teststation.h"

#include "logcapture.h"

#include <QSignalSpy>
#include <QtTest>

namespace {
using Rows = QList<QPair<int, QString>>;

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
    void validators();

private:
    std::unique_ptr<TestStation> m_station;
    std::unique_ptr<DZuConfiguration> m_config;
    QString m_templates;
    QString m_media;
};

void TestConfigurationRelations::init()
{
    // Loading the document sets the region: never let that reach the real system.
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("false"));
    m_station = std::make_unique<TestStation>();
    const QString internal = m_station->root() + "/storage/internal/";
    PreConfiguration::setParameter("templatesDirPath", internal + "report_templates");
    PreConfiguration::setParameter("mediaDirPath", internal + "media");
    m_config = m_station->create();
    QCOMPARE(m_config->sequenceIoRelations()->count(), 0);
    m_config->loadDirectories();
    m_templates = m_config->directories()->getTemplatesDirectoryPath();
    m_media = m_config->directories()->getMediaDirectoryPath();
    // Both resolve inside the station's internal storage, each to its own directory.
    QVERIFY2(m_templates.startsWith(internal) && m_media.startsWith(internal) && m_templates != m_media,
             qPrintable(m_templates + ' ' + m_media));
    QVERIFY(QDir().mkpath(m_templates) && QDir().mkpath(m_media));
}

void TestConfigurationRelations::cleanup()
{
    m_config.reset();
    m_station.reset();
}

void TestConfigurationRelations::relations_data()
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

void TestConfigurationRelations::relations()
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
    QSignalSpy modelChanged(model, &ObjectListModelBase::changed);
    QSignalSpy inserted(model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(model, &QAbstractItemModel::rowsRemoved);
    LogCapture log;

    if (operation == "add")
        QCOMPARE(m_config->addSequenceIoRelation(code, name), changed);
    else if (operation == "edit")
        m_config->editSequenceIoRelation(index, code, name);
    else
        m_config->removeSequenceIoRelation(index);

    QCOMPARE(relationTexts(*m_config), after);
    QCOMPARE(relationChanged.count(), changed ? 1 : 0);
    // Additions and removals notify the model's listeners; edits send nothing.
    QCOMPARE(modelChanged.count(), operation != "edit" && changed ? 1 : 0);
    QCOMPARE(inserted.count(), operation == "add" && changed ? 1 : 0);
    if (inserted.count())
        QCOMPARE(inserted.first().at(1).toInt(), before.size());
    QCOMPARE(removed.count(), operation == "remove" && changed ? 1 : 0);
    const bool outOfRange = operation == "remove" && !changed;
    QCOMPARE(log.lines().size(), outOfRange ? 1 : 0);
    QCOMPARE(log.count("ERROR: index out of range"), outOfRange ? 1 : 0);

    for (int row = 0; row < after.size(); ++row) {
        int found = -7;
        QVERIFY(m_config->checkSeqRelationExist(after.at(row).section(':', 0, 0).toInt(), found));
        QCOMPARE(found, row);
    }
    int found = -7;
    QVERIFY(!m_config->checkSeqRelationExist(99, found));
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

void TestConfigurationRelations::comments()
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

void TestConfigurationRelations::addFile_data()
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

void TestConfigurationRelations::addFile()
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

void TestConfigurationRelations::deleteTemplateFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("removed");

    QTest::newRow("existing template removed") << "report.lrxml" << true;
    QTest::newRow("missing template: nothing") << "absent.lrxml" << false;
    QTest::newRow("path outside the directory refused") << "../outside.lrxml" << false;
    QTest::newRow("sub-directory not removed") << "archive" << false;
}

void TestConfigurationRelations::deleteTemplateFile()
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

// Entries are merged in: a given name is overwritten, the others are kept; nothing is signalled.
void TestConfigurationRelations::validators()
{
    m_config->updateValidator({{"barcode", "^[A-Z]+$"}, {"serial", "^[0-9]+$"}});
    QSignalSpy changed(m_config.get(), &DZuConfiguration::sigConfigurationChanged);
    m_config->updateValidator({{"barcode", "^[0-9]{8}$"}, {"a", true}, {"b", 2.5}});
    QCOMPARE(m_config->validators(),
             (QVariantMap{{"a", true}, {"b", 2.5}, {"barcode", "^[0-9]{8}$"}, {"serial", "^[0-9]+$"}}));
    QCOMPARE(m_config->getValidator("barcode"), QString("^[0-9]{8}$"));
    QCOMPARE(m_config->getValidator("unknown"), QString());
    m_config->updateValidator({});
    QCOMPARE(m_config->validators().size(), 4);
    QCOMPARE(changed.count(), 0);
}

QTEST_GUILESS_MAIN(TestConfigurationRelations)
#include "tst_configurationrelations.moc"
