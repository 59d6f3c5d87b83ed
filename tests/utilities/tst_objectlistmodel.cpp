#include "utilities/olm_sequenceiorelation.h"

#include <QtTest>

namespace {
using Relation = QSharedPointer<SequenceIoRelation>;

Relation relation(int code, const QString& name)
{
    return Relation(new SequenceIoRelation(code, name));
}
}

class TestObjectListModel : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void changedFollowsEndNotification();
    void rejectedRemovalEmitsNothing();
    void rowsExposeTheObject();

private:
    void record(OLM_SequenceIoRelation& model);
    QStringList m_events;
};

void TestObjectListModel::init()
{
    m_events.clear();
}

void TestObjectListModel::record(OLM_SequenceIoRelation& model)
{
    auto log = [this](const char* name) { return [this, name] { m_events << QString::fromLatin1(name); }; };
    connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, this, log("beginInsert"));
    connect(&model, &QAbstractItemModel::rowsInserted, this, log("endInsert"));
    connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, this, log("beginRemove"));
    connect(&model, &QAbstractItemModel::rowsRemoved, this, log("endRemove"));
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, log("beginReset"));
    connect(&model, &QAbstractItemModel::modelReset, this, log("endReset"));
    connect(&model, &ObjectListModelBase::changed, this, [this, &model] {
        m_events << QStringLiteral("changed:%1").arg(model.count());
    });
}

void TestObjectListModel::changedFollowsEndNotification()
{
    OLM_SequenceIoRelation model;
    record(model);
    model.append(relation(3, "A"));
    model.append(relation(5, "B"));
    QVERIFY(model.removeAt(0));
    model.reset({ relation(7, "C"), relation(8, "D"), relation(9, "E") });
    model.reset();
    QCOMPARE(m_events, QStringList({ "beginInsert", "endInsert", "changed:1",
                                     "beginInsert", "endInsert", "changed:2",
                                     "beginRemove", "endRemove", "changed:1",
                                     "beginReset", "endReset", "changed:3",
                                     "beginReset", "endReset", "changed:0" }));
}

void TestObjectListModel::rejectedRemovalEmitsNothing()
{
    OLM_SequenceIoRelation model;
    model.append(relation(3, "A"));
    record(model);
    QVERIFY(!model.removeAt(-1));
    QVERIFY(!model.removeAt(1));
    QVERIFY(m_events.isEmpty());
    QCOMPARE(model.count(), 1);
}

void TestObjectListModel::rowsExposeTheObject()
{
    OLM_SequenceIoRelation model;
    const Relation first = relation(3, "A");
    model.append(first);
    model.append(Relation());
    const QHash<int, QByteArray> roles = model.roleNames();
    QCOMPARE(roles.value(ObjectListModelBase::ObjectRole), QByteArray("object"));
    QCOMPARE(roles.value(Qt::DisplayRole), QByteArray("display"));
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(model.data(model.index(0), ObjectListModelBase::ObjectRole).value<QObject*>(), first.data());
    QCOMPARE(model.get(0), first.data());
    QCOMPARE(model.get(1), nullptr);            // a null row is allowed
    QCOMPARE(model.get(2), nullptr);            // out of range
    QVERIFY(model.at(-1).isNull());
    QCOMPARE(model.property("count").toInt(), 2);
}

QTEST_GUILESS_MAIN(TestObjectListModel)
#include "tst_objectlistmodel.moc"
