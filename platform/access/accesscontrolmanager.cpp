#include "access/accesscontrolmanager.h"

#include <QJsonArray>

namespace {
const QString C_keyUsers = QStringLiteral("users");
const QString C_keyName = QStringLiteral("name");
const QString C_keyLevel = QStringLiteral("level");
const QString C_keyExpiry = QStringLiteral("expiry");
}

AccessControlManager::AccessControlManager(QObject* parent)
    : QObject(parent)
{
}

void AccessControlManager::loadUsers(const QJsonObject& document, std::function<QDate(QString)> parseDate,
                                     std::function<QString(QDate)> formatDate)
{
    m_formatDate = formatDate;
    QList<User> users;
    const QJsonArray array = document.value(C_keyUsers).toArray();
    for (const QJsonValue& value : array) {
        const QJsonObject object = value.toObject();
        User user;
        user.name = object.value(C_keyName).toString();
        if (user.name.isEmpty())
            continue;
        user.level = object.value(C_keyLevel).toInt();
        const QString expiry = object.value(C_keyExpiry).toString();
        if (!expiry.isEmpty() && parseDate)
            user.expiry = parseDate(expiry);
        users.append(user);
    }
    setUsers(users);
}

void AccessControlManager::saveUsers(QJsonObject& document) const
{
    QJsonArray array;
    for (const User& user : m_users) {
        QJsonObject object;
        object.insert(C_keyName, user.name);
        object.insert(C_keyLevel, user.level);
        const QString expiry = user.expiry.isValid() && m_formatDate ? m_formatDate(user.expiry)
            : user.expiry.isValid() ? user.expiry.toString(Qt::ISODate) : QString();
        object.insert(C_keyExpiry, expiry);
        array.append(object);
    }
    document.insert(C_keyUsers, array);
}

QList<AccessControlManager::User> AccessControlManager::users() const
{
    return m_users;
}

void AccessControlManager::setUsers(const QList<User>& users)
{
    m_users = users;
    // The logged-in user stays only while still known.
    if (!m_userName.isEmpty()) {
        bool known = false;
        for (const User& user : m_users)
            known = known || user.name == m_userName;
        if (!known)
            logout();
    }
}

QString AccessControlManager::userName() const
{
    return m_userName;
}

bool AccessControlManager::login(const QString& name)
{
    for (const User& user : qAsConst(m_users)) {
        if (user.name != name)
            continue;
        if (user.expiry.isValid() && user.expiry < QDate::currentDate())
            return false;
        if (m_userName != name) {
            m_userName = name;
            emit userNameChanged(m_userName);
        }
        return true;
    }
    return false;
}

void AccessControlManager::logout()
{
    if (m_userName.isEmpty())
        return;
    m_userName.clear();
    emit userNameChanged(m_userName);
}
