#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "directories.h"
#include "sambaserver.h"
#include "sync/dsyncmanager.h"
#include "utilities/preconfiguration.h"
#include "utilities/simplecrypt.h"

// The raw results role given to a network folder: files written locally appear on the
// server through the folder's mount, as the station's result mirroring does it.
class TestSyncEndToEnd : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void resultsReachTheShare();
    void pauseStopsCopyingAndResumeCatchesUp();
    void resetRegistersTheRolesAgainAndReportsOnce();

private:
    void writeLocal(const QString& name, const QByteArray& content);
    bool onServer(const QString& name) const { return QFile::exists(m_server.shareDirectory() + '/' + name); }

    SambaServer m_server;
    QTemporaryDir m_dir;
    Directories* m_directories = nullptr;
    QString m_results;
};

void TestSyncEndToEnd::initTestCase()
{
    if (!SambaServer::available() || !QFile::exists("/dev/fuse"))
        QSKIP("needs smbd, /dev/fuse and root");
    QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));

    PreConfiguration::clear();
    PreConfiguration::setParameter("internalStorageDirPath", m_dir.filePath("internal"));
    PreConfiguration::setParameter("removableStorageDirPath", m_dir.filePath("usb"));
    PreConfiguration::setParameter("mountingStorageDirPath", m_dir.filePath("mnt"));
    PreConfiguration::setParameter("databaseReportsDirPath", m_dir.filePath("internal/results"));
    PreConfiguration::setParameter("pdfReportsDirPath", m_dir.filePath("internal/pdf"));
    PreConfiguration::setParameter("shareMountBackend", "fuse");

    const QString id = "{0d7a3c52-4b1e-4f2a-9c8d-6e5f4a3b2c1d}";
    const QJsonObject share { { "id", id }, { "type", "samba" }, { "aliasName", "Mirror" },
                              { "path", m_server.shareName() }, { "address", m_server.address() },
                              { "identifier", m_server.user() }, { "domain", "WORKGROUP" },
                              { "password", SimpleCrypt(Folder::C_cryptKey).encryptToString(m_server.password()) },
                              { "enabled", true } };
    QJsonValue document = QJsonObject { { "directories", QJsonObject {
        { "folders", QJsonArray { share } }, { "foldersRoles", QJsonObject { { "results", id } } } } } };

    m_directories = new Directories(m_dir.filePath("sync.db"), m_dir.filePath("trash"), m_dir.filePath("usbkey"),
                                    1000, { "*.tmp" });
    QVERIFY(m_directories->syncManager());
    m_directories->loadSettings(document);
    QTRY_COMPARE_WITH_TIMEOUT(m_directories->connectedNetworkStorageNbr(), 1, 20000);
    QVERIFY(m_directories->syncManager()->isAliasDirectorySynchronised("Mirror"));
    m_results = m_directories->getLocalFolderPathByRole("results");
}

void TestSyncEndToEnd::cleanupTestCase()
{
    delete m_directories;   // unmounts the share
    m_directories = nullptr;
    m_server.stop();
}

void TestSyncEndToEnd::writeLocal(const QString& name, const QByteArray& content)
{
    QFile file(m_results + '/' + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

void TestSyncEndToEnd::resultsReachTheShare()
{
    writeLocal("cycle-001.db", "results of cycle 1");
    writeLocal("scratch.tmp", "never mirrored");
    m_directories->syncManager()->requestSync();
    QTRY_VERIFY_WITH_TIMEOUT(onServer("cycle-001.db"), 20000);
    QFile copy(m_server.shareDirectory() + "/cycle-001.db");
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QCOMPARE(copy.readAll(), QByteArray("results of cycle 1"));
    QVERIFY(m_directories->syncManager()->waitForIdle(20000));
    QVERIFY(!onServer("scratch.tmp"));
}

void TestSyncEndToEnd::pauseStopsCopyingAndResumeCatchesUp()
{
    DSyncManager* manager = m_directories->syncManager();
    QVERIFY(manager->waitForIdle(20000));
    m_directories->pauseAllSync();
    writeLocal("cycle-002.db", "results of cycle 2");
    manager->requestSync();
    QTest::qWait(3000);   // three intervals
    QVERIFY(!onServer("cycle-002.db"));

    m_directories->resumeAllSync();
    QTRY_VERIFY_WITH_TIMEOUT(onServer("cycle-002.db"), 20000);
}

void TestSyncEndToEnd::resetRegistersTheRolesAgainAndReportsOnce()
{
    QSignalSpy done(m_directories, &Directories::syncDatabaseResetDone);
    m_directories->resetSyncDatabase();
    QVERIFY(done.wait(60000));
    QTest::qWait(500);
    QCOMPARE(done.count(), 1);
    QCOMPARE(done.at(0).at(0).toBool(), true);
    QVERIFY(m_directories->syncManager()->isAliasDirectorySynchronised("Mirror"));
    QVERIFY(!m_directories->syncManager()->isPausedAll());

    // Mirroring goes on with the new database.
    writeLocal("cycle-003.db", "results of cycle 3");
    QTRY_VERIFY_WITH_TIMEOUT(onServer("cycle-003.db"), 20000);
}

QTEST_MAIN(TestSyncEndToEnd)
#include "tst_syncendtoend.moc"
