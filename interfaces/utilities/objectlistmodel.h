#pragma once
#include "utilities/station_utilities_export.h"
#include <QAbstractListModel>
#include <QList>
#include <QObject>
#include <QSharedPointer>

// Non-template base of the station's list models of shared QObject pointers. Rows expose
// the object under the role name "object" (and "display"); `changed()` follows every
// structural change, after the model's own begin/end notifications.
// The model and every object it holds stay owned by C++ whichever way QML reaches them
// (get(), a row's role, a property): QML's garbage collection never deletes them, since
// the shared pointers that hold them do.
class STATION_UTILITIES_EXPORT ObjectListModelBase : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY changed)
public:
    enum Roles { ObjectRole = Qt::UserRole + 1 };

    explicit ObjectListModelBase(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    virtual int count() const = 0;
    // The object of row `index`, null outside the rows.
    Q_INVOKABLE QObject* get(int index) const;

signals:
    void changed();

protected:
    virtual QObject* objectAt(int index) const = 0;
    // Marks `object` (may be null) as owned by C++ for every QML engine.
    static void keepOwnedByCpp(QObject* object);
};

template <typename T>
class ObjectListModel : public ObjectListModelBase
{
public:
    using Pointer = QSharedPointer<T>;
    explicit ObjectListModel(QObject* parent = nullptr) : ObjectListModelBase(parent) {}

    int count() const override { return m_list.size(); }
    Pointer at(int index) const { return index >= 0 && index < m_list.size() ? m_list.at(index) : Pointer(); }
    const QList<Pointer>& list() const { return m_list; }

    void append(const Pointer& item)
    {
        keepOwnedByCpp(item.data());
        beginInsertRows(QModelIndex(), m_list.size(), m_list.size());
        m_list.append(item);
        endInsertRows();
        emit changed();
    }
    bool removeAt(int index)
    {
        if (index < 0 || index >= m_list.size())
            return false;
        beginRemoveRows(QModelIndex(), index, index);
        m_list.removeAt(index);
        endRemoveRows();
        emit changed();
        return true;
    }
    void reset(const QList<Pointer>& items = QList<Pointer>())
    {
        for (const Pointer& item : items)
            keepOwnedByCpp(item.data());
        beginResetModel();
        m_list = items;
        endResetModel();
        emit changed();
    }

protected:
    QObject* objectAt(int index) const override { return at(index).data(); }

private:
    QList<Pointer> m_list;
};
