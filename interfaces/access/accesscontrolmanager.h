#pragma once
#include "access/station_access_export.h"
#include <QDate>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QString>
#include <functional>

// Station users and the logged-in user. Users live in the "users" array of the settings
// document: objects with "name", "level" and "expiry" (a date text made by the callbacks).
class STATION_ACCESS_EXPORT AccessControlManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString userName READ userName NOTIFY userNameChanged)
public:
    struct User {
        QString name;
        int level = 0;
        QDate expiry;
    };

    explicit AccessControlManager(QObject* parent = nullptr);

    void loadUsers(const QJsonObject& document, std::function<QDate(QString)> parseDate,
                   std::function<QString(QDate)> formatDate);
    void saveUsers(QJsonObject& document) const;

    QList<User> users() const;
    void setUsers(const QList<User>& users);
    QString userName() const;
    // False for an unknown user or one whose expiry date has passed.
    Q_INVOKABLE bool login(const QString& name);
    Q_INVOKABLE void logout();

signals:
    void userNameChanged(const QString& userName);

private:
    QList<User> m_users;
    QString m_userName;
    std::function<QString(QDate)> m_formatDate;
};
