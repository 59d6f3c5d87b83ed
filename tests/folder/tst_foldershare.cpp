// A network folder against a real SMB server (smbd on loopback), mounted through the
// user-space back-end of the share manager.
#include "folder.h"
#include "logcapture.h"
#include "sambaserver.h"
#include "utilities/preconfiguration.h"
#include "utilities/windowssharemanager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <algorithm>

namespace {
class TestTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* id, const char*, int) const override
    {
        if (QByteArray(id) == "Folder_Unable_to_mount__1___2__Please_check_network_configuration")
            return QStringLiteral("Unable to mount %1 (%2).");
        return QString();
    }
};

// Whether the kernel's mount table of this process lists a file system mounted at `path`.
bool isMountPoint(const QString& path)
{
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    if (!table.open(QIODevice::ReadOnly))
        return false;
    const QByteArray target = QDir::cleanPath(path).toUtf8();
    for (const QByteArray& line : table.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() > 4 && fields.at(4) == target)
            return true;
    }
    return false;
}

// Processes (mount helpers) whose command line names `path`.
int processesNaming(const QString& path)
{
    int count = 0;
    const QStringList pids = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& pid : pids) {
        QFile cmdline(QStringLiteral("/proc/%1/cmdline").arg(pid));
        if (cmdline.open(QIODevice::ReadOnly) && cmdline.readAll().contains(path.toUtf8()))
            ++count;
    }
    return count;
}

QStringList states(const QSignalSpy& spy)
{
    QStringList list;
    for (const QList<QVariant>& args : spy)
        list << args.at(1).toMap().value(QStringLiteral("state")).toString();
    return list;
}

constexpr int C_mountTimeoutMs = 30000;
}

class TestFolderShare : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_root;
    QString m_mountRoot;
    SambaServer m_server;
    TestTranslator m_translator;

    // A network folder on the test server, disabled first so that every signal of the
    // first mount attempt reaches the spies connected before `enable`.
    QSharedPointer<Folder> disabledFolder(const QString& alias, const QString& password);
    void enable(const QSharedPointer<Folder>& folder, const QString& password);
    bool mountsUnderRoot() const;

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();

    void mountsWithStatusMaps();
    void writesReachTheShare();
    void wrongPasswordFailsPermanently();
    void stoppedServerKeepsFolderUnavailable();
    void disablingUnmountsAtOnce();
    void destroyedFolderLeavesNoMount();
    void caseOnlyRenameKeepsTheManager();
    void caseOnlyRenameFallsBackWhenTargetTaken();
    void renameRemakesWithNewManager();
};

QSharedPointer<Folder> TestFolderShare::disabledFolder(const QString& alias, const QString& password)
{
    return Folder::configure(QStringLiteral("samba"), QString(), alias, m_server.shareName(), QString(),
                             m_server.address(), m_server.user(), password, false, false, 1000);
}

void TestFolderShare::enable(const QSharedPointer<Folder>& folder, const QString& password)
{
    QVERIFY(folder->update(QStringLiteral("samba"), folder->aliasName(), folder->path(), folder->domain(),
                           folder->address(), folder->identifier(), password, true, false));
    WindowsShareManager* manager = folder->shareManager();
    QVERIFY(manager);
    manager->setDetectionSchedule({200, 400});
    manager->setMaxMountAttempts(2);
    manager->setMountAttemptIntervalMs(200);
    manager->setServerProbeTimeoutMs(1000);
}

bool TestFolderShare::mountsUnderRoot() const
{
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    return table.open(QIODevice::ReadOnly) && table.readAll().contains(m_mountRoot.toUtf8());
}

void TestFolderShare::initTestCase()
{
    if (!SambaServer::available() || WindowsShareManager::fuseHelperProgram().isEmpty())
        QSKIP("smbd or the user-space mount helper is not available on this machine");
    QVERIFY(m_root.isValid());
    m_mountRoot = m_root.filePath(QStringLiteral("mount"));
    QVERIFY(QDir().mkpath(m_mountRoot));
    QVERIFY(QDir().mkpath(m_root.filePath(QStringLiteral("internal"))));
    QVERIFY(QDir().mkpath(m_root.filePath(QStringLiteral("removable"))));
    PreConfiguration::setParameter(QStringLiteral("internalStorageDirPath"), m_root.filePath(QStringLiteral("internal")));
    PreConfiguration::setParameter(QStringLiteral("removableStorageDirPath"), m_root.filePath(QStringLiteral("removable")));
    PreConfiguration::setParameter(QStringLiteral("mountingStorageDirPath"), m_mountRoot);
    PreConfiguration::setParameter(QStringLiteral("shareMountBackend"), QStringLiteral("fuse"));
    QCoreApplication::installTranslator(&m_translator);
    QVERIFY(m_server.start());
}

void TestFolderShare::cleanup()
{
    // Folders of a test are gone by now; their managers' deferred deletions run here.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTRY_VERIFY_WITH_TIMEOUT(!mountsUnderRoot(), 10000);
}

void TestFolderShare::cleanupTestCase()
{
    QCoreApplication::removeTranslator(&m_translator);
    m_server.stop();
    QVERIFY(!m_server.isRunning());
    QVERIFY(!mountsUnderRoot());
    QTRY_COMPARE_WITH_TIMEOUT(processesNaming(m_mountRoot), 0, 10000);
    PreConfiguration::clear();
}

void TestFolderShare::mountsWithStatusMaps()
{
    const auto folder = disabledFolder(QStringLiteral("Results"), m_server.password());
    QSignalSpy status(folder.data(), &Folder::folderStatusChanged);
    QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
    QSignalSpy failures(folder.data(), &Folder::folderConnectionFailed);
    enable(folder, m_server.password());

    QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 1, C_mountTimeoutMs);
    QCOMPARE(availability.at(0), (QList<QVariant>{QStringLiteral("Results"), true}));
    QVERIFY(folder->isAvailable());
    QVERIFY(isMountPoint(folder->mountedPath()));
    QVERIFY(folder->shareManager()->isMounted());
    QCOMPARE(processesNaming(folder->mountedPath()), 1); // its mount helper
    QCOMPARE(failures.count(), 0);

    const QStringList seen = states(status);
    QCOMPARE(seen.first(), QStringLiteral("detecting"));
    QCOMPARE(seen.last(), QStringLiteral("mounted"));
    QVERIFY(seen.indexOf(QStringLiteral("retrying")) > 0);
    QVERIFY(seen.indexOf(QStringLiteral("mounting")) > seen.indexOf(QStringLiteral("retrying")));
    for (const QList<QVariant>& args : status) {
        QCOMPARE(args.at(0).toString(), QStringLiteral("Results"));
        QCOMPARE(args.at(1).toMap().value(QStringLiteral("serverIp")).toString(), m_server.address());
    }
    const QVariantMap attempt = status.at(seen.indexOf(QStringLiteral("mounting"))).at(1).toMap();
    QCOMPARE(attempt.value(QStringLiteral("attempt")).toInt(), 1);
    QCOMPARE(attempt.value(QStringLiteral("maxAttempts")).toInt(), 2);
}

void TestFolderShare::writesReachTheShare()
{
    const auto folder = disabledFolder(QStringLiteral("Reports"), m_server.password());
    QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
    enable(folder, m_server.password());
    QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 1, C_mountTimeoutMs);

    QFile written(folder->mountedPath() + QStringLiteral("/report_0001.txt"));
    QVERIFY(written.open(QIODevice::WriteOnly));
    QCOMPARE(written.write("tightening ok\n"), qint64(14));
    written.close();

    QFile onServer(m_server.shareDirectory() + QStringLiteral("/report_0001.txt"));
    QVERIFY(onServer.open(QIODevice::ReadOnly));
    QCOMPARE(onServer.readAll(), QByteArray("tightening ok\n"));
    onServer.close();
    QVERIFY(onServer.remove());
}

void TestFolderShare::wrongPasswordFailsPermanently()
{
    LogCapture log;
    const auto folder = disabledFolder(QStringLiteral("Denied"), QStringLiteral("not-the-password"));
    QSignalSpy failures(folder.data(), &Folder::folderConnectionFailed);
    enable(folder, QStringLiteral("not-the-password"));
    QSignalSpy managerFailure(folder->shareManager(), &WindowsShareManager::permanentMountFailure);

    QTRY_COMPARE_WITH_TIMEOUT(failures.count(), 1, C_mountTimeoutMs);
    QCOMPARE(managerFailure.count(), 1);
    const QString reason = managerFailure.at(0).at(0).toString();
    QVERIFY(!reason.isEmpty());
    QCOMPARE(failures.at(0).at(0).toString(), QStringLiteral("Denied"));
    QCOMPARE(failures.at(0).at(1).toString(), QStringLiteral("Unable to mount Denied (%1).").arg(reason));
    QCOMPARE(failures.at(0).at(2).toBool(), true);
    QVERIFY(log.contains(QStringLiteral("[Folder] Permanent mount failure for Denied : ") + reason));
    // The manager is kept for a later retry; the folder is not available.
    QVERIFY(folder->shareManager());
    QVERIFY(!folder->isAvailable());
    QVERIFY(!isMountPoint(folder->mountedPath()));

    // A manual retry starts the sequence again, and fails the same way.
    QSignalSpy status(folder.data(), &Folder::folderStatusChanged);
    folder->retryConnection();
    QTRY_COMPARE_WITH_TIMEOUT(failures.count(), 2, C_mountTimeoutMs);
    QCOMPARE(states(status).first(), QStringLiteral("detecting"));
    QVERIFY(states(status).contains(QStringLiteral("mounting")));
}

void TestFolderShare::stoppedServerKeepsFolderUnavailable()
{
    const auto folder = disabledFolder(QStringLiteral("Later"), m_server.password());
    QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
    enable(folder, m_server.password());
    QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 1, C_mountTimeoutMs);

    // The manager notices the server going away and the folder follows.
    QSignalSpy status(folder.data(), &Folder::folderStatusChanged);
    m_server.stop();
    QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 2, C_mountTimeoutMs);
    QCOMPARE(availability.at(1), (QList<QVariant>{QStringLiteral("Later"), false}));
    QVERIFY(!isMountPoint(folder->mountedPath()));

    // While the server is down the manager keeps probing and the folder stays unavailable.
    QTRY_VERIFY_WITH_TIMEOUT(std::count_if(status.begin(), status.end(),
                                           [](const QList<QVariant>& args) {
                                               return args.at(1).toMap().contains(QStringLiteral("nextRetryMs"));
                                           }) >= 2,
                             C_mountTimeoutMs);
    QCOMPARE(availability.count(), 2);
    QVERIFY(!folder->isAvailable());

    QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
    QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 3, C_mountTimeoutMs);
    QCOMPARE(availability.at(2), (QList<QVariant>{QStringLiteral("Later"), true}));
    QVERIFY(isMountPoint(folder->mountedPath()));
    QCOMPARE(states(status).last(), QStringLiteral("mounted"));
}

void TestFolderShare::disablingUnmountsAtOnce()
{
    const auto folder = disabledFolder(QStringLiteral("Off"), m_server.password());
    QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
    enable(folder, m_server.password());
    QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 1, C_mountTimeoutMs);

    QVERIFY(folder->update(QStringLiteral("samba"), folder->aliasName(), folder->path(), folder->domain(),
                           folder->address(), folder->identifier(), m_server.password(), false, false));
    QVERIFY(!folder->shareManager());
    QVERIFY(!isMountPoint(folder->mountedPath()));
    QCOMPARE(availability.count(), 2);
    QCOMPARE(availability.at(1).at(1).toBool(), false);
}

void TestFolderShare::destroyedFolderLeavesNoMount()
{
    auto folder = disabledFolder(QStringLiteral("Gone"), m_server.password());
    QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
    enable(folder, m_server.password());
    QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 1, C_mountTimeoutMs);
    const QString mountPoint = folder->mountedPath();
    QPointer<WindowsShareManager> manager = folder->shareManager();
    QVERIFY(isMountPoint(mountPoint));

    folder.reset();
    // Unmounted synchronously, before any event runs.
    QVERIFY(!isMountPoint(mountPoint));
    QVERIFY(manager.isNull());
}

void TestFolderShare::caseOnlyRenameKeepsTheManager()
{
    const auto folder = disabledFolder(QStringLiteral("Results"), m_server.password());
    QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
    enable(folder, m_server.password());
    QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 1, C_mountTimeoutMs);
    WindowsShareManager* manager = folder->shareManager();
    const QString oldMountPoint = folder->mountedPath();

    LogCapture log;
    QSignalSpy changed(folder.data(), &Folder::sigChanged);
    QVERIFY(folder->update(QStringLiteral("samba"), QStringLiteral("results"), folder->path(), folder->domain(),
                           folder->address(), folder->identifier(), m_server.password(), true, false));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(folder->aliasName(), QStringLiteral("results"));
    QCOMPARE(folder->shareManager(), manager);
    QVERIFY(!log.contains(QStringLiteral("Failed to rename mount point")));
    QCOMPARE(folder->mountedPath(), m_mountRoot + QStringLiteral("/results"));
    QVERIFY(QFileInfo(folder->mountedPath()).isDir());
    QVERIFY(!QFileInfo::exists(oldMountPoint));
    QVERIFY(!isMountPoint(oldMountPoint));

    // The same manager mounts the share again under the new name.
    QSignalSpy status(folder.data(), &Folder::folderStatusChanged);
    QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 3, C_mountTimeoutMs);
    QCOMPARE(availability.at(1), (QList<QVariant>{QStringLiteral("Results"), false}));
    QCOMPARE(availability.at(2), (QList<QVariant>{QStringLiteral("results"), true}));
    QCOMPARE(folder->shareManager(), manager);
    QVERIFY(isMountPoint(folder->mountedPath()));
    QCOMPARE(states(status).last(), QStringLiteral("mounted"));
}

void TestFolderShare::caseOnlyRenameFallsBackWhenTargetTaken()
{
    const auto folder = disabledFolder(QStringLiteral("Media"), m_server.password());
    QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
    enable(folder, m_server.password());
    QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 1, C_mountTimeoutMs);
    QPointer<WindowsShareManager> oldManager = folder->shareManager();
    // A directory already holds the new name: the in-place rename must fail.
    QVERIFY(QDir().mkpath(m_mountRoot + QStringLiteral("/media/taken")));

    LogCapture log;
    QVERIFY(folder->update(QStringLiteral("samba"), QStringLiteral("media"), folder->path(), folder->domain(),
                           folder->address(), folder->identifier(), m_server.password(), true, false));
    QCOMPARE(log.count(QStringLiteral("[-- AI --] Failed to rename mount point, falling back to full unmount/remount")),
             1);
    QCOMPARE(folder->aliasName(), QStringLiteral("media"));
    QVERIFY(folder->shareManager());
    QVERIFY(folder->shareManager() != oldManager.data());
    QTRY_VERIFY_WITH_TIMEOUT(isMountPoint(m_mountRoot + QStringLiteral("/media")), C_mountTimeoutMs);
}

void TestFolderShare::renameRemakesWithNewManager()
{
    const auto folder = disabledFolder(QStringLiteral("Results"), m_server.password());
    QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
    enable(folder, m_server.password());
    QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 1, C_mountTimeoutMs);
    QPointer<WindowsShareManager> oldManager = folder->shareManager();
    const QString oldMountPoint = folder->mountedPath();

    QVERIFY(folder->update(QStringLiteral("samba"), QStringLiteral("Results2"), folder->path(), folder->domain(),
                           folder->address(), folder->identifier(), m_server.password(), true, false));
    QVERIFY(folder->shareManager());
    QVERIFY(folder->shareManager() != oldManager.data());
    folder->shareManager()->setDetectionSchedule({200, 400});
    QTRY_VERIFY_WITH_TIMEOUT(oldManager.isNull(), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(isMountPoint(m_mountRoot + QStringLiteral("/Results2")), C_mountTimeoutMs);
    QVERIFY(!isMountPoint(oldMountPoint));
}

QTEST_GUILESS_MAIN(TestFolderShare)
#include "tst_foldershare.moc"
