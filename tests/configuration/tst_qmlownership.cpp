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
    // Each function reaches the objects of one model its own way, returns what it read and
    // keeps no reference to them.
    function model(name) {
        return name === "folders" ? directories.folders
             : name === "relations" ? zuConfig.sequenceIoRelations : directories.subDirectories
    }
    function byGet(name, property) {
        var values = []
        for (var i = 0; i < model(name).count; ++i)
            values.push(model(name).get(i)[property])
        return values.join(",")
    }
    function byRole(name, property) {
        rows.model = model(name)
        var values = []
        for (var i = 0; i < rows.count; ++i)
            values.push(rows.itemAt(i).row[property])
        rows.model = undefined
        return values.join(",")
    }
    function selected(name, property) {
        var values = []
        for (var i = 0; i < directories.folders.count; ++i) {
            directories.selectFolder(i)
            values.push(directories.selectedFolder[property])
        }
        directories.selectFolder(-1)
        return values.join(",")
    }
    function addedThenByGet(name, property) {
        return zuConfig.addSequenceIoRelation(9, "Added") ? byGet(name, property) : "not added"
    }
    function count(name, property) { return model(name).count }

    Repeater {
        id: rows
        delegate: Item { readonly property QtObject row: model.object }
    }
}
)";

// The objects of a model, read from its list (which leaves their ownership alone).
template <typename T>
QObjectList objects(const ObjectListModel<T>* model)
{
    QObjectList result;
    for (const auto& object : model->list())
        result << object.data();
    return result;
}

// The property of every object, as the client functions return it.
QString values(const QObjectList& objects, const char* property)
{
    QStringList values;
    for (const QObject* object : objects)
        values << object->property(property).toString();
    return values.join(QLatin1Char(','));
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
    QObjectList folders() const { return objects(m_config->directories()->folders()); }
    QObjectList relations() const { return objects(m_config->sequenceIoRelations()); }
    QObjectList entries() const { return objects(m_config->directories()->subDirectories()); }

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
    for (const QObjectList& list : {folders(), relations(), entries()}) {
        for (QObject* object : list)
            result << object;
    }
    return result;
}

void TestQmlOwnership::objectsOutliveTheCollection_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("property");
    QTest::newRow("folder: get(i)") << "byGet" << "folders" << "aliasName";
    QTest::newRow("folder: selectedFolder property") << "selected" << "folders" << "aliasName";
    QTest::newRow("folder: role in a delegate") << "byRole" << "folders" << "aliasName";
    QTest::newRow("loaded relation: get(i)") << "byGet" << "relations" << "sequenceBaseName";
    QTest::newRow("relation added at run time: get(i)") << "addedThenByGet" << "relations" << "sequenceBaseName";
    QTest::newRow("relation: role in a delegate") << "byRole" << "relations" << "sequenceBaseName";
    QTest::newRow("directory entry: get(i)") << "byGet" << "entries" << "name";
    QTest::newRow("directory entry: role in a delegate") << "byRole" << "entries" << "name";
    QTest::newRow("model: property of its owner") << "count" << "relations" << "";
}

void TestQmlOwnership::objectsOutliveTheCollection()
{
    QFETCH(QString, function);
    QFETCH(QString, model);
    QFETCH(QString, property);
    Directories* directories = m_config->directories();
    const auto reached = [&]() {
        return model == QLatin1String("folders") ? folders() : model == QLatin1String("relations") ? relations()
                                                                                                  : entries();
    };
    QVERIFY(folders().size() >= 8);
    QCOMPARE(values(relations(), "sequenceBaseName"), QStringLiteral("Alpha,Beta"));
    QVERIFY(values(entries(), "name").contains(QLatin1String("Line 2")));

    QQmlComponent component(m_engine.get());
    component.setData(C_client, QUrl::fromLocalFile(QDir::current().filePath(QStringLiteral("OwnershipClient.qml"))));
    std::unique_ptr<QObject> client(component.create());
    QVERIFY2(client, qPrintable(component.errorString()));
    QVariant returned;
    QVERIFY(QMetaObject::invokeMethod(client.get(), qPrintable(function), Q_RETURN_ARG(QVariant, returned),
                                      Q_ARG(QVariant, model), Q_ARG(QVariant, property)));
    QCOMPARE(returned.toString(), property.isEmpty() ? QString::number(reached().size())
                                                     : values(reached(), qPrintable(property)));

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
    QVERIFY(!values(folders(), "aliasName").isEmpty());
    QVERIFY(values(relations(), "sequenceBaseName").startsWith(QLatin1String("Alpha,Beta")));
    m_config->editSequenceIoRelation(0, 1, QStringLiteral("Renamed"));
    m_config->removeSequenceIoRelation(relations().size() - 1);
    QVERIFY(values(relations(), "sequenceBaseName").startsWith(QLatin1String("Renamed")));
    directories->setCurrentRelativePath(QStringLiteral("internal"), QStringLiteral("Line 1"));
    QCOMPARE(values(entries(), "name"), QStringLiteral("Station A"));
    directories->reload();
    QVERIFY(folders().size() >= 8);
}

QTEST_MAIN(TestQmlOwnership)
#include "tst_qmlownership.moc"
