#include "utilities/objectlistmodel.h"

#include <QQmlEngine>

ObjectListModelBase::ObjectListModelBase(QObject* parent)
    : QAbstractListModel(parent)
{
    // Handed to QML as a property of its owner, which holds it as a member.
    keepOwnedByCpp(this);
}

QObject* ObjectListModelBase::get(int index) const
{
    // An object returned by an invokable becomes the engine's unless its owner is set.
    QObject* object = objectAt(index);
    keepOwnedByCpp(object);
    return object;
}

void ObjectListModelBase::keepOwnedByCpp(QObject* object)
{
    // Set explicitly even where objectOwnership() already reads CppOwnership: that is also
    // its answer for an object the engine has not seen yet, which get() would then give away.
    if (object)
        QQmlEngine::setObjectOwnership(object, QQmlEngine::CppOwnership);
}

int ObjectListModelBase::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ObjectListModelBase::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= count())
        return QVariant();
    if (role == ObjectRole || role == Qt::DisplayRole) {
        QObject* object = objectAt(index.row());
        keepOwnedByCpp(object);
        return QVariant::fromValue(object);
    }
    return QVariant();
}

QHash<int, QByteArray> ObjectListModelBase::roleNames() const
{
    return { { ObjectRole, "object" }, { Qt::DisplayRole, "display" } };
}
