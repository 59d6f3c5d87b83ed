// Role path resolution: local paths made on demand, secured paths with their fallbacks and
// errors, and the paths record shared with the rest of the application.
#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QtTest>

#include "core/ddirectoriespaths.h"
#include "directories.h"
#include "logcapture.h"
#include "registrystation.h"

class TestDirectoriesRolePaths : public RegistryTestBase
{
    Q_OBJECT

private slots:
    void localPathCreatesMissingDirectoryQuietly()
    {
        load(QJsonObject());
        QVERIFY(QDir(m_station->internal("seq")).removeRecursively());
        QSignalSpy internal(m_directories.get(), &Directories::internalMemoryAccessError);
        LogCapture log;
        QCOMPARE(m_directories->getLocalFolderPathByRole("sequences"), m_station->internal("seq"));
        QVERIFY(QFileInfo(m_station->internal("seq")).isDir());
        QCOMPARE(internal.count(), 0);
        QVERIFY(log.lines().isEmpty());
    }

    void emptyListFallsBackToDefaultPath()
    {
        LogCapture log;
        QCOMPARE(m_directories->getLocalFolderPathByRole("certificates"), m_station->internal("certificates"));
        QVERIFY(QFileInfo(m_station->internal("certificates")).isDir());
        QCOMPARE(log.count("WARNING: No internal folder found for role: certificates, using default internal path"), 1);
        // A role with a default path takes it from the pre-configuration; others keep their key.
        QCOMPARE(m_directories->getLocalFolderPathByRole("results"), m_station->internal("db"));
        QCOMPARE(m_directories->getDefaultRelativePathForRole("templates"), QStringLiteral("tpl"));
        QCOMPARE(m_directories->getDefaultRelativePathForRole("nosuchrole"), QStringLiteral("nosuchrole"));
    }

    void pathThatCannotBeMadeIsReported_data()
    {
        QTest::addColumn<QString>("blocked"); // a file where this directory should be
        QTest::addColumn<bool>("loaded");
        QTest::addColumn<QString>("named");   // in the signal's text
        QTest::addColumn<QString>("line");
        QTest::newRow("built-in folder's directory") << "seq" << true << "SEQUENCES"
                                                     << "ERROR: Cannot create local directory: ";
        QTest::newRow("default directory of an empty list") << "" << false << "media"
                                                            << "ERROR: Cannot create default directory: ";
    }

    void pathThatCannotBeMadeIsReported()
    {
        QFETCH(QString, blocked);
        QFETCH(bool, loaded);
        QFETCH(QString, named);
        QFETCH(QString, line);
        if (loaded)
            load(QJsonObject());
        QVERIFY(QDir(m_station->internal(blocked)).removeRecursively());
        QFile blocker(m_station->internal(blocked));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        const QString expected = m_station->internal(loaded ? "seq" : "media");
        QSignalSpy internal(m_directories.get(), &Directories::internalMemoryAccessError);
        LogCapture log;
        QCOMPARE(loaded ? m_directories->getLocalSequencesDirectoryPath()
                        : m_directories->getLocalFolderPathByRole("media"),
                 expected);
        QCOMPARE(internal.count(), 1);
        const QString text = internal.at(0).at(0).toString();
        QVERIFY2(loaded ? text.contains(named) : text.endsWith(named), qPrintable(text));
        QCOMPARE(log.count(line + expected), 1);
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

    void refreshPublishesLoadAndSavePaths()
    {
        const QString id = RegistryStation::newId();
        QVERIFY(QDir().mkpath(m_station->path("mnt/Share")));
        load(RegistryStation::document({RegistryStation::folder(id, "samba", "Share", "share", false)},
                                       QJsonObject{{"results", id}}));
        const QSharedPointer<DDirectoriesPaths> paths = m_directories->directoriesPaths();
        QVERIFY(paths);
        QCOMPARE(paths->path("results", DDirectoriesPaths::C_pathTypeLoad), m_station->path("mnt/Share"));
        QCOMPARE(paths->path("results", DDirectoriesPaths::C_pathTypeSave), m_station->internal("db"));
        QCOMPARE(paths->path("pdfResults", DDirectoriesPaths::C_pathTypeLoad), m_station->internal("pdf"));
        QCOMPARE(paths->path("media", DDirectoriesPaths::C_pathTypeSave), m_station->internal("media"));
        QCOMPARE(paths->path("toolBackups", DDirectoriesPaths::C_pathTypeSave), QString()); // not published

        // The share goes away: the next refresh publishes the local path for reading.
        QVERIFY(QDir(m_station->path("mnt/Share")).removeRecursively());
        m_directories->refreshDirectoriesPaths();
        QCOMPARE(paths->path("results", DDirectoriesPaths::C_pathTypeLoad), m_station->internal("db"));
    }
};

QTEST_GUILESS_MAIN(TestDirectoriesRolePaths)
#include "tst_directoriesrolepaths.moc"
