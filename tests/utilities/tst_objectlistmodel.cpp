#include "utilities/olm_sequenceiorelation.h"

#include <QtTest>

namespace {
using Relation = QSharedPointer<SequenceIoRelation>;

Relation relation(int code)
{
    return Relation(new SequenceIoRelation(code, QString::number(code)));
}
}

class TestObjectListModel : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void changedFollowsEndNotification()
    {
        OLM_SequenceIoRelation model;
        QStringList events;
        auto log = [&events](const char* name) { return [&events, name] { events << QString::fromLatin1(name); }; };
        connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, this, log("beginInsert"));
        connect(&model, &QAbstractItemModel::rowsInserted, this, log("endInsert"));
        connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, this, log("beginRemove"));
        connect(&model, &QAbstractItemModel::rowsRemoved, this, log("endRemove"));
        connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, log("beginReset"));
        connect(&model, &QAbstractItemModel::modelReset, this, log("endReset"));
        connect(&model, &ObjectListModelBase::changed, this, [&] { events << QStringLiteral("changed:%1").arg(model.count()); });
        model.append(relation(3));
        model.append(relation(5));
        QVERIFY(!model.removeAt(-1));
        QVERIFY(!model.removeAt(2));
        QVERIFY(model.removeAt(0));
        model.reset({ relation(7), relation(8), relation(9) });
        model.reset();
        QCOMPARE(events, QStringList({ "beginInsert", "endInsert", "changed:1", "beginInsert", "endInsert", "changed:2",
                                       "beginRemove", "endRemove", "changed:1", "beginReset", "endReset", "changed:3",
                                       "beginReset", "endReset", "changed:0" }));
    }

    void rowsExposeTheObject()
    {
        OLM_SequenceIoRelation model;
        const Relation first = relation(3);
        model.append(first);
        model.append(Relation());
        QCOMPARE(model.roleNames().value(ObjectListModelBase::ObjectRole), QByteArray("object"));
        QCOMPARE(model.data(model.index(0), ObjectListModelBase::ObjectRole).value<QObject*>(), first.data());
        QCOMPARE(model.get(1), nullptr);            // a null row is allowed
        QCOMPARE(model.get(2), nullptr);            // out of range
        QVERIFY(model.at(-1).isNull());
        QCOMPARE(model.property("count").toInt(), 2);
    }
};

QTEST_GUILESS_MAIN(TestObjectListModel)
#include "tst_objectlistmodel.moc"
