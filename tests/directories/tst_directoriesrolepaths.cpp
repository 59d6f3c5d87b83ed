// Role path resolution: local paths made on demand, secured paths with their fallbacks and errors.
#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QtTest>

#include "directories.h"
#include "logcapture.h"
#include "registrystation.h"

namespace {
// Puts a file where the directory `path` should be.
bool blockWithFile(const QString& path)
{
    QFile blocker(path);
    return QDir(path).removeRecursively() && blocker.open(QIODevice::WriteOnly);
}
}

class TestDirectoriesRolePaths : public RegistryTestBase
{
    Q_OBJECT

private slots:
    void localPathsAreMadeOnDemand()
    {
        LogCapture log;
        QCOMPARE(m_directories->getLocalFolderPathByRole("certificates"), m_station->internal("certificates"));
        QVERIFY(QFileInfo(m_station->internal("certificates")).isDir());
        QCOMPARE(log.count("WARNING: No internal folder found for role: certificates, using default internal path"), 1);
        // A role with a default path takes it from the pre-configuration.
        QCOMPARE(m_directories->getLocalFolderPathByRole("results"), m_station->internal("db"));

        // A listed folder's missing directory is made quietly.
        load(QJsonObject());
        QVERIFY(QDir(m_station->internal("seq")).removeRecursively());
        QSignalSpy internal(m_directories.get(), &Directories::internalMemoryAccessError);
        log.clear();
        QCOMPARE(m_directories->getLocalFolderPathByRole("sequences"), m_station->internal("seq"));
        QVERIFY(QFileInfo(m_station->internal("seq")).isDir());
        QCOMPARE(internal.count(), 0);
        QVERIFY(log.lines().isEmpty());
    }

    // A directory that cannot be made (a file stands in the way) is reported to the screens and logged.
    void pathThatCannotBeMadeIsReported_data()
    {
        QTest::addColumn<bool>("listed");     // the role's folder is in the loaded list
        QTest::addColumn<QString>("blocked"); // relative to the internal storage
        QTest::addColumn<QString>("role");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("named");   // in the signal's text
        QTest::addColumn<QString>("logged");
        QTest::newRow("listed folder") << true << "seq" << "sequences" << "seq" << "SEQUENCES" << "ERROR: Cannot create local directory: ";
        QTest::newRow("default path") << false << "" << "media" << "media" << "media" << "ERROR: Cannot create default directory: ";
    }

    void pathThatCannotBeMadeIsReported()
    {
        QFETCH(bool, listed);
        QFETCH(QString, blocked);
        QFETCH(QString, role);
        QFETCH(QString, path);
        QFETCH(QString, named);
        QFETCH(QString, logged);
        if (listed)
            load(QJsonObject());
        QVERIFY(blockWithFile(m_station->internal(blocked)));
        QSignalSpy internal(m_directories.get(), &Directories::internalMemoryAccessError);
        LogCapture log;
        QCOMPARE(m_directories->getLocalFolderPathByRole(role), m_station->internal(path));
        QCOMPARE(internal.size(), 1);
        QVERIFY2(internal.at(0).at(0).toString().contains(named), qPrintable(internal.at(0).at(0).toString()));
        QCOMPARE(log.count(logged + m_station->internal(path)), 1);
    }

    void securedPath_data()
    {
        QTest::addColumn<QString>("role");
        QTest::addColumn<bool>("assigned");     // the role points at the network folder
        QTest::addColumn<bool>("folderExists"); // the network folder is in the list
        QTest::addColumn<bool>("mounted");      // its mount directory exists
        QTest::addColumn<QString>("expected");  // relative to the station
        QTest::addColumn<QString>("named");     // what each error names; empty: no error
        QTest::newRow("mounted network folder is used") << "results" << true << true << true << "mnt/Share" << "";
        QTest::newRow("missing mount directory falls back, naming the alias")
            << "results" << true << true << false << "internal/db" << "Share";
        QTest::newRow("deleted folder falls back, naming the stale id")
            << "results" << true << false << false << "internal/db" << "ID";
        QTest::newRow("built-in folder serves its role") << "results" << false << true << true << "internal/db" << "";
        QTest::newRow("role unknown to the table is local without error")
            << "nosuchrole" << false << true << true << "internal/nosuchrole" << "";
    }

    void securedPath()
    {
        QFETCH(QString, role);
        QFETCH(bool, assigned);
        QFETCH(bool, folderExists);
        QFETCH(bool, mounted);
        QFETCH(QString, expected);
        QFETCH(QString, named);
        const QString id = RegistryStation::newId();
        QJsonArray folders;
        if (folderExists)
            folders.append(RegistryStation::folder(id, "samba", "Share", "share", false));
        load(RegistryStation::document(folders, assigned ? QJsonObject{{role, id}} : QJsonObject()));
        if (mounted)
            QVERIFY(QDir().mkpath(m_station->path("mnt/Share")));
        if (named == "ID")
            named = id;
        QSignalSpy unavailable(m_directories.get(), &Directories::folderAliasUnavailable);
        QCOMPARE(m_directories->getSecuredFolderPathByRole(role), m_station->path(expected));
        QCOMPARE(m_directories->getSecuredFolderPathByRole(role), m_station->path(expected));
        // Every call that falls back reports again.
        QCOMPARE(unavailable.count(), named.isEmpty() ? 0 : 2);
        for (const QList<QVariant>& arguments : unavailable)
            QVERIFY2(arguments.at(0).toString().endsWith(": " + named), qPrintable(arguments.at(0).toString()));
    }
};

QTEST_GUILESS_MAIN(TestDirectoriesRolePaths)
#include "tst_directoriesrolepaths.moc"
