#include "utilities/objectlistmodel.h"

ObjectListModelBase::ObjectListModelBase(QObject* parent)
    : QAbstractListModel(parent)
{
}

int ObjectListModelBase::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ObjectListModelBase::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= count())
        return QVariant();
    if (role == ObjectRole || role == Qt::DisplayRole)
        return QVariant::fromValue(objectAt(index.row()));
    return QVariant();
}

QHash<int, QByteArray> ObjectListModelBase::roleNames() const
{
    return { { ObjectRole, "object" }, { Qt::DisplayRole, "display" } };
}
