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

    void localPathThatCannotBeMadeIsReported()
    {
        load(QJsonObject());
        QVERIFY(blockWithFile(m_station->internal("seq")));
        QSignalSpy internal(m_directories.get(), &Directories::internalMemoryAccessError);
        LogCapture log;
        QCOMPARE(m_directories->getLocalSequencesDirectoryPath(), m_station->internal("seq"));
        QCOMPARE(internal.count(), 1);
        QVERIFY(internal.at(0).at(0).toString().contains("SEQUENCES"));
        QCOMPARE(log.count("ERROR: Cannot create local directory: " + m_station->internal("seq")), 1);
    }

    void defaultPathThatCannotBeMadeIsReported()
    {
        QVERIFY(blockWithFile(m_station->internal()));
        QSignalSpy internal(m_directories.get(), &Directories::internalMemoryAccessError);
        LogCapture log;
        QCOMPARE(m_directories->getLocalFolderPathByRole("media"), m_station->internal("media"));
        QCOMPARE(internal.count(), 1);
        QVERIFY(internal.at(0).at(0).toString().endsWith("media"));
        QCOMPARE(log.count("ERROR: Cannot create default directory: " + m_station->internal("media")), 1);
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
