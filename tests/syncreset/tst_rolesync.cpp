#include <QJsonArray>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "directories.h"
#include "fakesyncmanager.h"
#include "logcapture.h"
#include "utilities/preconfiguration.h"

// Role synchronisation as the registry drives it, against a recording manager. The
// distant folders here are internal operator folders: what matters is their identity and
// mount path, not the transport.
class TestRoleSync : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void selfAssignedRolesAreNeverRegistered();
    void assigningResultsRegistersTheMirror();
    void reassigningMovesTheMirror();
    void sameAliasIsRegisteredAgainWithoutDeletion();
    void unmountedDistantFolderCausesNoCall();
    void missingManagerIsLogged();
    void networkAvailabilityReachesManager();

private:
    QString addOperatorFolder(const QString& alias, const QString& type = QStringLiteral("internal"));

    QTemporaryDir* m_dir = nullptr;
    Directories* m_directories = nullptr;
    FakeSyncManager* m_fake = nullptr;
};

void TestRoleSync::init()
{
    m_dir = new QTemporaryDir;
    PreConfiguration::clear();
    PreConfiguration::setParameter("internalStorageDirPath", m_dir->filePath("internal"));
    PreConfiguration::setParameter("removableStorageDirPath", m_dir->filePath("usb"));
    PreConfiguration::setParameter("mountingStorageDirPath", m_dir->filePath("mnt"));
    PreConfiguration::setParameter("databaseReportsDirPath", m_dir->filePath("internal/results"));
    PreConfiguration::setParameter("pdfReportsDirPath", m_dir->filePath("internal/pdf"));
    PreConfiguration::setParameter("shareMountBackend", "fuse");

    Directories::setSyncManagerFactory([this](const QString&, const QString&, int, const QStringList&, QObject* parent) {
        m_fake = new FakeSyncManager(parent);
        return m_fake;
    });
    m_directories = new Directories(QString(), QString(), m_dir->filePath("usbkey"), 30000, QStringList());
    QJsonValue empty = QJsonObject();
    m_directories->loadSettings(empty);
    m_fake->calls.clear();
}

void TestRoleSync::cleanup()
{
    delete m_directories;
    m_directories = nullptr;
    Directories::setSyncManagerFactory(nullptr);
    delete m_dir;
}

QString TestRoleSync::addOperatorFolder(const QString& alias, const QString& type)
{
    const QString error = m_directories->setFolderAlias(QString(), "undefined", type, alias, alias.toLower(),
                                                        QString(), QString(), QString(), QString(), true);
    if (!error.isEmpty())
        return QString();
    bool found = false;
    const QSharedPointer<Folder> folder = m_directories->getFolderByName(alias, found);
    return found ? folder->id() : QString();
}

void TestRoleSync::selfAssignedRolesAreNeverRegistered()
{
    m_directories->synchronizeFolderRole("results");
    m_directories->synchronizeFolderRole("pdfResults");
    QVERIFY(m_fake->calls.isEmpty());
    QVERIFY(!m_directories->hasSynchronizedDistantFolder());
}

void TestRoleSync::assigningResultsRegistersTheMirror()
{
    const QString id = addOperatorFolder("Archive");
    QVERIFY(!id.isEmpty());
    m_fake->calls.clear();
    QCOMPARE(m_directories->setFolderAlias(id, "results", "internal", "Archive", "archive", QString(), QString(),
                                           QString(), QString(), true),
             QString());
    QCOMPARE(m_directories->foldersRoles().value("results"), id);
    QVERIFY(m_directories->hasSynchronizedDistantFolder());

    const QString local = m_dir->filePath("internal/results");
    const QString remote = m_dir->filePath("internal/archive");
    QCOMPARE(m_fake->calls, QStringList { QStringLiteral("add:Archive:%1:%2").arg(local, remote) });
}

void TestRoleSync::reassigningMovesTheMirror()
{
    const QString first = addOperatorFolder("Archive");
    const QString second = addOperatorFolder("Backup");
    m_directories->setFolderAlias(first, "results", "internal", "Archive", "archive", QString(), QString(),
                                  QString(), QString(), true);
    m_fake->calls.clear();

    // Giving the role to another folder forgets the first mirror before registering the new one.
    m_directories->setFolderAlias(second, "results", "internal", "Backup", "backup", QString(), QString(),
                                  QString(), QString(), true);
    QCOMPARE(m_fake->calls.size(), 2);
    QCOMPARE(m_fake->calls.at(0), QStringLiteral("del:Archive"));
    QVERIFY(m_fake->calls.at(1).startsWith("add:Backup:"));

    // Taking the role away again makes "results" fall back to its own folder.
    m_fake->calls.clear();
    m_directories->setFolderAlias(second, "undefined", "internal", "Backup", "backup", QString(), QString(),
                                  QString(), QString(), true);
    QCOMPARE(m_directories->foldersRoles().value("results"), QStringLiteral("results"));
    QCOMPARE(m_fake->calls, QStringList { "del:Backup" });
    QVERIFY(!m_directories->hasSynchronizedDistantFolder());
}

void TestRoleSync::sameAliasIsRegisteredAgainWithoutDeletion()
{
    const QString id = addOperatorFolder("Archive");
    m_directories->setFolderAlias(id, "results", "internal", "Archive", "archive", QString(), QString(),
                                  QString(), QString(), true);
    m_fake->calls.clear();
    m_directories->synchronizeFolderRole("results");
    QCOMPARE(m_fake->calls.size(), 1);
    QVERIFY(m_fake->calls.at(0).startsWith("add:Archive:"));
}

void TestRoleSync::unmountedDistantFolderCausesNoCall()
{
    // The local pdf directory is mirrored under "Archive" already.
    m_fake->registered.insert("Archive", m_dir->filePath("internal/pdf"));

    // A distant folder of a type without a mount path: nothing is deleted, nothing added.
    const QString id = "{6f0b8d3e-6f2a-4a55-9d7e-0c1a2b3c4d5e}";
    QJsonObject odd { { "id", id }, { "type", "ftp" }, { "aliasName", "Odd" }, { "path", "odd" }, { "enabled", true } };
    QJsonObject document { { "directories", QJsonObject { { "folders", QJsonArray { odd } },
                                                          { "foldersRoles", QJsonObject { { "pdfResults", id } } } } } };
    QJsonValue value = document;
    m_directories->loadSettings(value);
    QVERIFY2(m_fake->calls.filter("del:").isEmpty() && m_fake->calls.filter("add:").isEmpty(),
             qPrintable(m_fake->calls.join(", ")));
    QVERIFY(m_directories->hasSynchronizedDistantFolder());
}

void TestRoleSync::missingManagerIsLogged()
{
    delete m_directories;
    PreConfiguration::setParameter("isEditorOnly", true);
    m_directories = new Directories(QString(), QString(), m_dir->filePath("usbkey"), 30000, QStringList());
    LogCapture log;
    m_directories->synchronizeFolderRole("results");
    QCOMPARE(log.count("synchronizeFolderRole: syncManager not available"), 1);
    m_directories->pauseAllSync();   // nothing to pause; must not crash
    PreConfiguration::setParameter("isEditorOnly", false);
}

void TestRoleSync::networkAvailabilityReachesManager()
{
    QJsonObject folder { { "id", "{1b4e28ba-2fa1-11d2-883f-0016d3cca427}" }, { "type", "samba" }, { "aliasName", "Share" },
                         { "path", "results" }, { "address", "127.0.0.1:9" }, { "enabled", true } };
    QJsonObject document { { "directories", QJsonObject { { "folders", QJsonArray { folder } },
                                                          { "foldersRoles", QJsonObject { { "results", folder["id"] } } } } } };
    QJsonValue value = document;
    m_directories->loadSettings(value);
    QVERIFY(m_fake->calls.contains("avail:Share:0"));

    // The share comes back: the manager hears it and the role is registered (its mount
    // directory is made by hand here, as a mounted share would provide it).
    QDir().mkpath(m_dir->filePath("mnt/Share"));
    m_fake->calls.clear();
    QSignalSpy connected(m_directories, &Directories::connectedNetworkStorageNbrChanged);
    QMetaObject::invokeMethod(m_directories, "sltFolderAliasAvailabilityChanged", Q_ARG(QString, "Share"), Q_ARG(bool, true));
    QCOMPARE(connected.count(), 1);
    QCOMPARE(m_directories->connectedNetworkStorageNbr(), 1);
    QCOMPARE(m_fake->calls.value(0), QStringLiteral("avail:Share:1"));
    QVERIFY(m_fake->calls.value(1).startsWith("add:Share:"));

    // While paused the manager is not told.
    m_fake->paused = true;
    m_fake->calls.clear();
    QMetaObject::invokeMethod(m_directories, "sltFolderAliasAvailabilityChanged", Q_ARG(QString, "Share"), Q_ARG(bool, false));
    QVERIFY(m_fake->calls.isEmpty());
    QCOMPARE(m_directories->connectedNetworkStorageNbr(), 0);
}

QTEST_MAIN(TestRoleSync)
#include "tst_rolesync.moc"
