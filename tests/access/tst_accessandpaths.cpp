#include "access/accesscontrolmanager.h"

#include <QtTest>

static const QString C_format = QStringLiteral("dd/MM/yyyy");

static void load(AccessControlManager& manager, const QString& users)
{
    manager.loadUsers(QJsonDocument::fromJson(("{\"users\": " + users + "}").toUtf8()).object(),
                      [](const QString& text) { return QDate::fromString(text, C_format); },
                      [](const QDate& date) { return date.toString(C_format); });
}

class TestAccessAndPaths : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void login_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("ok");
        QTest::newRow("valid until next year") << "alice" << true;
        QTest::newRow("without expiry") << "carol" << true;
        QTest::newRow("expired") << "bob" << false;
        QTest::newRow("unknown") << "mallory" << false;
    }
    void login()
    {
        QFETCH(QString, name);
        QFETCH(bool, ok);
        AccessControlManager manager;
        load(manager, QStringLiteral(R"([{"name": "alice", "level": 3, "expiry": "%1"}, {"name": "carol", "level": 2},
            {"name": "bob", "level": 1, "expiry": "01/01/2000"}, {"level": 9}])").arg(QDate::currentDate().addYears(1).toString(C_format)));
        QCOMPARE(manager.users().size(), 3);   // the nameless entry is dropped
        QCOMPARE(manager.login(name), ok);
        QCOMPARE(manager.userName(), ok ? name : QString());
        if (ok) {   // a user removed by a reload is logged out
            load(manager, "[]");
            QCOMPARE(manager.userName(), QString());
        }
    }

};

QTEST_GUILESS_MAIN(TestAccessAndPaths)
#include "tst_accessandpaths.moc"
