#include "access/accesscontrolmanager.h"
#include "core/ddirectoriespaths.h"

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
        QSignalSpy spy(&manager, &AccessControlManager::userNameChanged);
        QCOMPARE(manager.login(name), ok);
        QCOMPARE(manager.userName(), ok ? name : QString());
        QCOMPARE(spy.count(), ok ? 1 : 0);
        manager.logout();
        QCOMPARE(spy.count(), ok ? 2 : 0);
        QCOMPARE(manager.userName(), QString());
        if (ok) {   // a user removed by a reload is logged out
            QVERIFY(manager.login(name));
            load(manager, "[]");
            QCOMPARE(spy.count(), 4);
            QCOMPARE(manager.userName(), QString());
        }
    }

    void pathSignalsOnlyOnChange()
    {
        DDirectoriesPaths paths;
        QSignalSpy spy(&paths, &DDirectoriesPaths::pathChanged);
        paths.setPath("results", DDirectoriesPaths::C_pathTypeSave, "/data/results");
        paths.setPath("results", DDirectoriesPaths::C_pathTypeSave, "/data/results");
        paths.setPath("results", DDirectoriesPaths::C_pathTypeLoad, "/mnt/share/results");
        paths.setPath("media", DDirectoriesPaths::C_pathTypeSave, QString());   // an empty path is a value too
        QCOMPARE(spy.count(), 3);
        QCOMPARE(spy.at(1), QVariantList({ "results", "load", "/mnt/share/results" }));
        QCOMPARE(paths.path("results", DDirectoriesPaths::C_pathTypeSave), QStringLiteral("/data/results"));
    }
};

QTEST_GUILESS_MAIN(TestAccessAndPaths)
#include "tst_accessandpaths.moc"
