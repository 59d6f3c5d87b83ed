#include "access/accesscontrolmanager.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

namespace {
QDate parse(const QString& text)
{
    return QDate::fromString(text, QStringLiteral("dd/MM/yyyy"));
}

QString format(const QDate& date)
{
    return date.toString(QStringLiteral("dd/MM/yyyy"));
}

QJsonObject document()
{
    const QString future = format(QDate::currentDate().addYears(1));
    return QJsonDocument::fromJson(QStringLiteral(R"({"general": {}, "users": [
        {"name": "alice", "level": 3, "expiry": "%1"},
        {"name": "bob", "level": 1, "expiry": "01/01/2000"},
        {"name": "carol", "level": 2},
        {"level": 9}
    ]})").arg(future).toUtf8()).object();
}
}

class TestAccessControlManager : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void loadsAndSavesThroughCallbacks();
    void login_data();
    void login();
    void userRemovedByReloadIsLoggedOut();
};

void TestAccessControlManager::loadsAndSavesThroughCallbacks()
{
    AccessControlManager manager;
    manager.loadUsers(document(), parse, format);
    const auto users = manager.users();
    QCOMPARE(users.size(), 3);   // the nameless entry is dropped
    QCOMPARE(users.at(0).level, 3);
    QCOMPARE(users.at(1).expiry, QDate(2000, 1, 1));
    QVERIFY(!users.at(2).expiry.isValid());

    QJsonObject saved{ { "general", QJsonObject{ { "keep", 1 } } } };
    manager.saveUsers(saved);
    QCOMPARE(saved.value("general").toObject().value("keep").toInt(), 1);
    const QJsonArray array = saved.value("users").toArray();
    QCOMPARE(array.size(), 3);
    QCOMPARE(array.at(1).toObject().value("expiry").toString(), QStringLiteral("01/01/2000"));
    QCOMPARE(array.at(2).toObject().value("expiry").toString(), QString());
}

void TestAccessControlManager::login_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("ok");
    QTest::newRow("valid until next year") << "alice" << true;
    QTest::newRow("without expiry") << "carol" << true;
    QTest::newRow("expired") << "bob" << false;
    QTest::newRow("unknown") << "mallory" << false;
}

void TestAccessControlManager::login()
{
    QFETCH(QString, name);
    QFETCH(bool, ok);
    AccessControlManager manager;
    manager.loadUsers(document(), parse, format);
    QSignalSpy spy(&manager, &AccessControlManager::userNameChanged);
    QCOMPARE(manager.login(name), ok);
    QCOMPARE(manager.userName(), ok ? name : QString());
    QCOMPARE(spy.count(), ok ? 1 : 0);
    manager.logout();
    QCOMPARE(spy.count(), ok ? 2 : 0);
    QCOMPARE(manager.userName(), QString());
}

void TestAccessControlManager::userRemovedByReloadIsLoggedOut()
{
    AccessControlManager manager;
    manager.loadUsers(document(), parse, format);
    QVERIFY(manager.login("alice"));
    QSignalSpy spy(&manager, &AccessControlManager::userNameChanged);
    manager.loadUsers(QJsonObject(), parse, format);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(manager.userName(), QString());
}

QTEST_GUILESS_MAIN(TestAccessControlManager)
#include "tst_accesscontrolmanager.moc"
