// Role path resolution: local paths made on demand, secured paths with their fallbacks and
// errors, and the paths record shared with the rest of the application.
#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QTranslator>
#include <QtTest>

#include "core/ddirectoriespaths.h"
#include "directories.h"
#include "logcapture.h"
#include "registrystation.h"

class TestDirectoriesRolePaths : public QObject
{
    Q_OBJECT

private:
    QTranslator m_catalogue;
    std::unique_ptr<RegistryStation> m_station;
    std::unique_ptr<Directories> m_directories;

    void load(QJsonValue document) { m_directories->loadSettings(document); }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void localPathCreatesMissingDirectoryQuietly();
    void localPathThatCannotBeMadeIsReported();
    void emptyListFallsBackToDefaultPath();
    void defaultPathThatCannotBeMadeIsReported();
    void defaultRelativePaths_data();
    void defaultRelativePaths();
    void securedPath_data();
    void securedPath();
    void refreshPublishesLoadAndSavePaths();
};

void TestDirectoriesRolePaths::initTestCase()
{
    QVERIFY(m_catalogue.load(QStringLiteral("station_en"), QStringLiteral(STATION_CATALOGUE_DIR)));
    QCoreApplication::installTranslator(&m_catalogue);
}

void TestDirectoriesRolePaths::init()
{
    m_station.reset(new RegistryStation);
    m_directories.reset(new Directories(QString(), QString(), m_station->usbKeyPath(), 30000, QStringList()));
}

void TestDirectoriesRolePaths::cleanup()
{
    m_directories.reset();
    m_station.reset();
}

void TestDirectoriesRolePaths::localPathCreatesMissingDirectoryQuietly()
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

void TestDirectoriesRolePaths::localPathThatCannotBeMadeIsReported()
{
    load(QJsonObject());
    QVERIFY(QDir(m_station->internal("seq")).removeRecursively());
    QFile blocker(m_station->internal("seq"));   // a file where the directory should be
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    QSignalSpy internal(m_directories.get(), &Directories::internalMemoryAccessError);
    LogCapture log;
    QCOMPARE(m_directories->getLocalSequencesDirectoryPath(), m_station->internal("seq"));
    QCOMPARE(internal.count(), 1);
    QVERIFY(internal.at(0).at(0).toString().contains("SEQUENCES"));
    QCOMPARE(log.count("ERROR: Cannot create local directory: " + m_station->internal("seq")), 1);
}

void TestDirectoriesRolePaths::emptyListFallsBackToDefaultPath()
{
    LogCapture log;
    QCOMPARE(m_directories->getLocalFolderPathByRole("certificates"), m_station->internal("certificates"));
    QVERIFY(QFileInfo(m_station->internal("certificates")).isDir());
    QCOMPARE(log.count("WARNING: No internal folder found for role: certificates, using default internal path"), 1);
    // A role with a default path takes it from the pre-configuration.
    QCOMPARE(m_directories->getLocalFolderPathByRole("results"), m_station->internal("db"));
}

void TestDirectoriesRolePaths::defaultPathThatCannotBeMadeIsReported()
{
    QVERIFY(QDir(m_station->internal()).removeRecursively());
    QFile blocker(m_station->internal());
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    QSignalSpy internal(m_directories.get(), &Directories::internalMemoryAccessError);
    LogCapture log;
    QCOMPARE(m_directories->getLocalFolderPathByRole("media"), m_station->internal("media"));
    QCOMPARE(internal.count(), 1);
    QVERIFY(internal.at(0).at(0).toString().endsWith("media"));
    QCOMPARE(log.count("ERROR: Cannot create default directory: " + m_station->internal("media")), 1);
}

void TestDirectoriesRolePaths::defaultRelativePaths_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<QString>("expected");
    QTest::newRow("results from its parameter") << "results" << "db";
    QTest::newRow("templates from its parameter") << "templates" << "tpl";
    QTest::newRow("certificates ignores its parameter") << "certificates" << "certificates";
    QTest::newRow("unknown role keeps its key") << "nosuchrole" << "nosuchrole";
}

void TestDirectoriesRolePaths::defaultRelativePaths()
{
    QFETCH(QString, role);
    QFETCH(QString, expected);
    QCOMPARE(m_directories->getDefaultRelativePathForRole(role), expected);
}

void TestDirectoriesRolePaths::securedPath_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<bool>("assigned");       // the role points at the network folder
    QTest::addColumn<bool>("folderExists");   // the network folder is in the list
    QTest::addColumn<bool>("mounted");        // its mount directory exists
    QTest::addColumn<QString>("expected");    // relative to the station
    QTest::addColumn<QString>("named");       // what each error names; empty: no error

    QTest::newRow("mounted network folder is used") << "results" << true << true << true << "mnt/Share" << QString();
    QTest::newRow("missing mount directory falls back, naming the alias")
        << "results" << true << true << false << "internal/db" << "Share";
    QTest::newRow("deleted folder falls back, naming the stale id")
        << "results" << true << false << false << "internal/db" << "ID";
    QTest::newRow("built-in folder serves its role") << "results" << false << true << true << "internal/db" << QString();
    QTest::newRow("role unknown to the table is local without error")
        << "nosuchrole" << false << true << true << "internal/nosuchrole" << QString();
}

void TestDirectoriesRolePaths::securedPath()
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

void TestDirectoriesRolePaths::refreshPublishesLoadAndSavePaths()
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
    QCOMPARE(paths->path("toolBackups", DDirectoriesPaths::C_pathTypeSave), QString());   // not published

    // The share goes away: the next refresh publishes the local path for reading.
    QVERIFY(QDir(m_station->path("mnt/Share")).removeRecursively());
    m_directories->refreshDirectoriesPaths();
    QCOMPARE(paths->path("results", DDirectoriesPaths::C_pathTypeLoad), m_station->internal("db"));
}

QTEST_GUILESS_MAIN(TestDirectoriesRolePaths)
#include "tst_directoriesrolepaths.moc"
