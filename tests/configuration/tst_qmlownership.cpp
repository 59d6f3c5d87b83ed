// Objects that QML reaches (folders, sequence I/O relations, directory entries and their
// models) stay owned by C++: QML fetches them every way it can, the engine collects its
// garbage, and C++ then uses them again.
#include "teststation.h"

#include "directories.h"
#include "utilities/guiengine.h"

#include <QPointer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QtTest>

namespace {

const char* const C_client = R"(
import QtQuick 2.15

Item {
    id: client
    // Every function returns text read from the objects and keeps no reference to them.
    function folderByGet() {
        var names = []
        for (var i = 0; i < directories.folders.count; ++i)
            names.push(directories.folders.get(i).aliasName)
        return names.join(",")
    }
    function selectedFolder() {
        var names = []
        for (var i = 0; i < directories.folders.count; ++i) {
            directories.selectFolder(i)
            names.push(directories.selectedFolder.aliasName)
        }
        directories.selectFolder(-1)
        return names.join(",")
    }
    function relationByGet() {
        var names = []
        for (var i = 0; i < zuConfig.sequenceIoRelations.count; ++i)
            names.push(zuConfig.sequenceIoRelations.get(i).sequenceBaseName)
        return names.join(",")
    }
    function addedRelationByGet() {
        var relations = zuConfig.sequenceIoRelations
        if (!zuConfig.addSequenceIoRelation(9, "Added"))
            return "not added"
        return relations.get(relations.count - 1).sequenceBaseName
    }
    function entryByGet() {
        var names = []
        for (var i = 0; i < directories.subDirectories.count; ++i)
            names.push(directories.subDirectories.get(i).name)
        return names.join(",")
    }
    function rowsOf(model, property) {
        rows.model = model
        var names = []
        for (var i = 0; i < rows.count; ++i)
            names.push(rows.itemAt(i).row[property])
        rows.model = undefined
        return names.join(",")
    }
    function folderByRole() { return rowsOf(directories.folders, "aliasName") }
    function relationByRole() { return rowsOf(zuConfig.sequenceIoRelations, "sequenceBaseName") }
    function entryByRole() { return rowsOf(directories.subDirectories, "name") }
    function models() {
        return [directories.folders.count, zuConfig.sequenceIoRelations.count,
                directories.subDirectories.count].join(",")
    }

    Repeater {
        id: rows
        delegate: Item { readonly property QtObject row: model.object }
    }
}
)";

// Names as C++ reads them now, in the form the client functions return.
QString folderNames(Directories* directories)
{
    QStringList names;
    for (const auto& folder : directories->folders()->list())
        names << folder->aliasName();
    return names.join(QLatin1Char(','));
}

QString relationNames(DZuConfiguration* config)
{
    QStringList names;
    for (const auto& relation : config->sequenceIoRelations()->list())
        names << relation->sequenceBaseName();
    return names.join(QLatin1Char(','));
}

QString entryNames(Directories* directories)
{
    QStringList names;
    for (const auto& entry : directories->subDirectories()->list())
        names << entry->name();
    return names.join(QLatin1Char(','));
}

} // namespace

class TestQmlOwnership : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { DZuConfiguration::setTimeZoneCommand(QStringLiteral("true")); }
    void init();
    void cleanup();
    void cleanupTestCase() { qInfo("objects freed under QML: %d", m_freedTotal); }
    void objectsOutliveTheCollection_data();
    void objectsOutliveTheCollection();

private:
    // Guards on every object of the three models, the models and the folder list's owner.
    QList<QPointer<QObject>> guards() const;

    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<GuiEngine> m_guiEngine;
    std::unique_ptr<TestStation> m_station;
    std::unique_ptr<DZuConfiguration> m_config;
    int m_freedTotal = 0;
};

void TestQmlOwnership::init()
{
    m_engine = std::make_unique<QQmlEngine>();
    m_guiEngine = std::make_unique<GuiEngine>(m_engine.get());
    m_station = std::make_unique<TestStation>();
    QVERIFY(m_station->writeText(R"({"sequencer": {"sequenceIoRelations": [
        {"binaryCode": 1, "sequenceBaseName": "Alpha"}, {"binaryCode": 2, "sequenceBaseName": "Beta"}]}})"));
    QVERIFY(QDir(m_station->root()).mkpath("storage/internal/Line 1/Station A"));
    QVERIFY(QDir(m_station->root()).mkpath("storage/internal/Line 2"));
    m_config = m_station->create();
    m_config->loadDirectories();
    m_config->directories()->setCurrentRelativePath(QStringLiteral("internal"), QString());
}

void TestQmlOwnership::cleanup()
{
    m_config.reset();
    m_station.reset();
    m_guiEngine.reset();
    m_engine.reset();
}

QList<QPointer<QObject>> TestQmlOwnership::guards() const
{
    Directories* directories = m_config->directories();
    QList<QPointer<QObject>> result {directories, directories->folders(), directories->subDirectories(),
                                     m_config->sequenceIoRelations()};
    for (const auto& folder : directories->folders()->list())
        result << folder.data();
    for (const auto& relation : m_config->sequenceIoRelations()->list())
        result << relation.data();
    for (const auto& entry : directories->subDirectories()->list())
        result << entry.data();
    return result;
}

void TestQmlOwnership::objectsOutliveTheCollection_data()
{
    QTest::addColumn<QString>("function");
    QTest::newRow("folder: folders.get(i)") << "folderByGet";
    QTest::newRow("folder: selectedFolder property") << "selectedFolder";
    QTest::newRow("folder: model role in a delegate") << "folderByRole";
    QTest::newRow("loaded relation: sequenceIoRelations.get(i)") << "relationByGet";
    QTest::newRow("relation added at run time: get(i)") << "addedRelationByGet";
    QTest::newRow("relation: model role in a delegate") << "relationByRole";
    QTest::newRow("directory entry: subDirectories.get(i)") << "entryByGet";
    QTest::newRow("directory entry: model role in a delegate") << "entryByRole";
    QTest::newRow("models: properties") << "models";
}

void TestQmlOwnership::objectsOutliveTheCollection()
{
    QFETCH(QString, function);
    Directories* directories = m_config->directories();
    QVERIFY(directories->folders()->count() >= 8);
    QCOMPARE(relationNames(m_config.get()), QStringLiteral("Alpha,Beta"));
    QCOMPARE(entryNames(directories).split(QLatin1Char(',')).filter(QStringLiteral("Line ")).size(), 2);

    QQmlComponent component(m_engine.get());
    component.setData(C_client, QUrl::fromLocalFile(QDir::current().filePath(QStringLiteral("OwnershipClient.qml"))));
    std::unique_ptr<QObject> client(component.create());
    QVERIFY2(client, qPrintable(component.errorString()));
    QVariant returned;
    QVERIFY(QMetaObject::invokeMethod(client.get(), qPrintable(function), Q_RETURN_ARG(QVariant, returned)));
    QString expected;
    if (function.startsWith(QLatin1String("folder")) || function == QLatin1String("selectedFolder"))
        expected = folderNames(directories);
    else if (function == QLatin1String("addedRelationByGet"))
        expected = QStringLiteral("Added");
    else if (function.startsWith(QLatin1String("relation")))
        expected = relationNames(m_config.get());
    else if (function.startsWith(QLatin1String("entry")))
        expected = entryNames(directories);
    else
        expected = QStringLiteral("%1,%2,%3")
                       .arg(directories->folders()->count())
                       .arg(m_config->sequenceIoRelations()->count())
                       .arg(directories->subDirectories()->count());
    QCOMPARE(returned.toString(), expected);

    // What QML held is now garbage: collect it and run the deletions it queued.
    const QList<QPointer<QObject>> held = guards();
    client.reset();
    m_engine->collectGarbage();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const int freed = int(std::count(held.begin(), held.end(), QPointer<QObject>()));
    m_freedTotal += freed;
    qInfo("objects freed under QML: %d", freed);
    if (freed > 0) {
        // The registry and the relation model would free them a second time: leave them be.
        Q_UNUSED(m_config.release());
        QFAIL("QML's garbage collection deleted objects that C++ still holds");
    }

    // C++ uses every object again, then changes and empties the models.
    QVERIFY(!folderNames(directories).isEmpty());
    QVERIFY(relationNames(m_config.get()).startsWith(QLatin1String("Alpha,Beta")));
    QVERIFY(entryNames(directories).contains(QLatin1String("Line 2")));
    m_config->editSequenceIoRelation(0, 1, QStringLiteral("Renamed"));
    m_config->removeSequenceIoRelation(m_config->sequenceIoRelations()->count() - 1);
    directories->setCurrentRelativePath(QStringLiteral("internal"), QStringLiteral("Line 1"));
    QCOMPARE(entryNames(directories), QStringLiteral("Station A"));
    directories->reload();
    QVERIFY(directories->folders()->count() >= 8);
}

QTEST_MAIN(TestQmlOwnership)
#include "tst_qmlownership.moc"
