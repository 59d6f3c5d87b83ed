// A network folder against a real SMB server (smbd on loopback), mounted through the FUSE back-end.
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

namespace {
QByteArray mountTable()
{
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    return table.open(QIODevice::ReadOnly) ? table.readAll() : QByteArray();
}

// Whether a file system is mounted at `path` (the mount-point field of the kernel's table).
bool isMountPoint(const QString& path) { return mountTable().contains(' ' + QDir::cleanPath(path).toUtf8() + ' '); }

// Processes (mount helpers) whose command line names `path`.
int processesNaming(const QString& path)
{
    int count = 0;
    for (const QString& pid : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
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
    QTranslator m_catalogue;

    // Created disabled so that spies connected before `enable` see the first mount attempt.
    QSharedPointer<Folder> disabledFolder(const QString& alias, const QString& password)
    {
        return Folder::configure("samba", QString(), alias, m_server.shareName(), QString(), m_server.address(),
                                 m_server.user(), password, false, false, 1000);
    }
    bool enable(const QSharedPointer<Folder>& folder, const QString& password, const QString& alias = QString())
    {
        if (!folder->update("samba", alias.isEmpty() ? folder->aliasName() : alias, folder->path(), folder->domain(),
                            folder->address(), folder->identifier(), password, true, false)
            || !folder->shareManager())
            return false;
        folder->shareManager()->setDetectionSchedule({200, 400});
        folder->shareManager()->setMaxMountAttempts(2);
        folder->shareManager()->setMountAttemptIntervalMs(200);
        folder->shareManager()->setServerProbeTimeoutMs(1000);
        return true;
    }
    // A folder whose share is mounted, or null.
    QSharedPointer<Folder> mounted(const QString& alias)
    {
        const auto folder = disabledFolder(alias, m_server.password());
        QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
        const bool up = enable(folder, m_server.password())
                        && QTest::qWaitFor([&] { return availability.count() == 1; }, C_mountTimeoutMs);
        return up && folder->isAvailable() && isMountPoint(folder->mountedPath()) ? folder : QSharedPointer<Folder>();
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (!SambaServer::available() || WindowsShareManager::fuseHelperProgram().isEmpty())
            QSKIP("smbd or the user-space mount helper is not available on this machine");
        QVERIFY(m_root.isValid());
        m_mountRoot = m_root.filePath(QStringLiteral("mount"));
        for (const char* dir : {"internal", "removable", "mount"})
            QVERIFY(QDir(m_root.path()).mkpath(dir));
        PreConfiguration::setParameter("internalStorageDirPath", m_root.filePath(QStringLiteral("internal")));
        PreConfiguration::setParameter("removableStorageDirPath", m_root.filePath(QStringLiteral("removable")));
        PreConfiguration::setParameter("mountingStorageDirPath", m_mountRoot);
        PreConfiguration::setParameter("shareMountBackend", "fuse");
        QVERIFY(m_catalogue.load(QStringLiteral("station_en"), QStringLiteral(STATION_CATALOGUE_DIR)));
        QCoreApplication::installTranslator(&m_catalogue);
        QVERIFY(m_server.start());
    }

    void cleanup()
    {
        // Folders of a test are gone by now; their managers' deferred deletions run here.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QTRY_VERIFY_WITH_TIMEOUT(!mountTable().contains(m_mountRoot.toUtf8()), 10000);
    }

    void cleanupTestCase()
    {
        m_server.stop();
        QVERIFY(!mountTable().contains(m_mountRoot.toUtf8()));
        QTRY_COMPARE_WITH_TIMEOUT(processesNaming(m_mountRoot), 0, 10000);
        PreConfiguration::clear();
    }

    void mountRenameInPlaceAndDisable()
    {
        const auto folder = disabledFolder(QStringLiteral("Results"), m_server.password());
        QSignalSpy status(folder.data(), &Folder::folderStatusChanged);
        QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
        QSignalSpy failures(folder.data(), &Folder::folderConnectionFailed);
        QVERIFY(enable(folder, m_server.password()));
        QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 1, C_mountTimeoutMs);
        QCOMPARE(availability.at(0), (QList<QVariant>{QStringLiteral("Results"), true}));
        QVERIFY(folder->isAvailable() && folder->shareManager()->isMounted());
        QVERIFY(isMountPoint(folder->mountedPath()));
        QVERIFY(processesNaming(folder->mountedPath()) >= 1); // its mount helper (and the helper's workers)
        QCOMPARE(failures.count(), 0);
        const QString ip = m_server.address();
        const QVariantList expected{QVariantMap{{"state", "detecting"}, {"serverIp", ip}},
                                    QVariantMap{{"state", "retrying"}, {"serverIp", ip}},
                                    QVariantMap{{"state", "mounting"}, {"serverIp", ip}, {"attempt", 1},
                                                {"maxAttempts", 2}},
                                    QVariantMap{{"state", "mounted"}, {"serverIp", ip}}};
        QVariantList seen;
        for (const QList<QVariant>& args : status) {
            QCOMPARE(args.at(0).toString(), QStringLiteral("Results"));
            seen << args.at(1);
        }
        QCOMPARE(seen, expected);

        QFile written(folder->mountedPath() + QStringLiteral("/report_0001.txt"));
        QVERIFY(written.open(QIODevice::WriteOnly) && written.write("tightening ok\n") == 14);
        written.close();
        QFile onServer(m_server.shareDirectory() + QStringLiteral("/report_0001.txt"));
        QVERIFY(onServer.open(QIODevice::ReadOnly));
        QCOMPARE(onServer.readAll(), QByteArray("tightening ok\n"));
        QVERIFY(onServer.remove());

        // A case-only rename moves the mount point in place; the same manager mounts it again.
        WindowsShareManager* manager = folder->shareManager();
        const QString oldMountPoint = folder->mountedPath();
        LogCapture log;
        QSignalSpy changed(folder.data(), &Folder::sigChanged);
        QVERIFY(enable(folder, m_server.password(), QStringLiteral("results")));
        QCOMPARE(changed.count(), 1);
        QVERIFY(!log.contains(QStringLiteral("Failed to rename mount point")));
        QCOMPARE(folder->mountedPath(), m_mountRoot + QStringLiteral("/results"));
        QVERIFY(QFileInfo(folder->mountedPath()).isDir());
        QVERIFY(!QFileInfo::exists(oldMountPoint));
        QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 3, C_mountTimeoutMs);
        QCOMPARE(availability.at(1), (QList<QVariant>{QStringLiteral("Results"), false}));
        QCOMPARE(availability.at(2), (QList<QVariant>{QStringLiteral("results"), true}));
        QCOMPARE(folder->shareManager(), manager);
        QVERIFY(isMountPoint(folder->mountedPath()));

        // Disabling unmounts at once.
        QVERIFY(folder->update("samba", folder->aliasName(), folder->path(), folder->domain(), folder->address(),
                               folder->identifier(), m_server.password(), false, false));
        QVERIFY(!folder->shareManager());
        QVERIFY(!isMountPoint(folder->mountedPath()));
        QCOMPARE(availability.count(), 4);
        QCOMPARE(availability.at(3).at(1).toBool(), false);
    }

    void wrongPasswordFailsPermanently()
    {
        LogCapture log;
        const auto folder = disabledFolder(QStringLiteral("Denied"), QStringLiteral("not-the-password"));
        QSignalSpy failures(folder.data(), &Folder::folderConnectionFailed);
        QVERIFY(enable(folder, QStringLiteral("not-the-password")));
        QSignalSpy managerFailure(folder->shareManager(), &WindowsShareManager::permanentMountFailure);
        QTRY_COMPARE_WITH_TIMEOUT(failures.count(), 1, C_mountTimeoutMs);
        QCOMPARE(managerFailure.count(), 1);
        const QString reason = managerFailure.at(0).at(0).toString();
        QVERIFY(!reason.isEmpty());
        QCOMPARE(failures.at(0), (QList<QVariant>{"Denied", QStringLiteral("Unable to mount Denied (%1). Please check "
                                                                           "the network configuration.").arg(reason),
                                                  true}));
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

    void stoppedServerThenDestroyedFolder()
    {
        auto folder = mounted(QStringLiteral("Later"));
        QVERIFY(folder);
        QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
        QSignalSpy status(folder.data(), &Folder::folderStatusChanged);
        m_server.stop();
        QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 1, C_mountTimeoutMs);
        QCOMPARE(availability.at(0), (QList<QVariant>{QStringLiteral("Later"), false}));
        QVERIFY(!isMountPoint(folder->mountedPath()));
        QVERIFY(!folder->isAvailable());

        QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
        QTRY_COMPARE_WITH_TIMEOUT(availability.count(), 2, C_mountTimeoutMs);
        QCOMPARE(availability.at(1), (QList<QVariant>{QStringLiteral("Later"), true}));
        QCOMPARE(states(status).last(), QStringLiteral("mounted"));
        const QString mountPoint = folder->mountedPath();
        QVERIFY(isMountPoint(mountPoint));

        // A destroyed folder unmounts synchronously, before any event runs.
        QPointer<WindowsShareManager> manager = folder->shareManager();
        folder.reset();
        QVERIFY(!isMountPoint(mountPoint));
        QVERIFY(manager.isNull());
    }

    void renameRemakesWithNewManager_data()
    {
        QTest::addColumn<QString>("alias");
        QTest::addColumn<int>("fallbackLines");
        QTest::newRow("new name") << "Results2" << 0;
        // A directory already holds the new name: the in-place rename fails.
        QTest::newRow("case-only rename onto a taken directory falls back") << "results" << 1;
    }

    void renameRemakesWithNewManager()
    {
        QFETCH(QString, alias);
        QFETCH(int, fallbackLines);
        const auto folder = mounted(QStringLiteral("Results"));
        QVERIFY(folder);
        QPointer<WindowsShareManager> oldManager = folder->shareManager();
        const QString oldMountPoint = folder->mountedPath();
        if (fallbackLines)
            QVERIFY(QDir().mkpath(m_mountRoot + "/" + alias + "/taken"));
        LogCapture log;
        QVERIFY(enable(folder, m_server.password(), alias));
        QCOMPARE(log.count("[-- AI --] Failed to rename mount point, falling back to full unmount/remount"),
                 fallbackLines);
        QCOMPARE(folder->aliasName(), alias);
        QVERIFY(folder->shareManager() && folder->shareManager() != oldManager.data());
        QTRY_VERIFY_WITH_TIMEOUT(oldManager.isNull(), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(isMountPoint(m_mountRoot + "/" + alias), C_mountTimeoutMs);
        if (!fallbackLines)
            QVERIFY(!isMountPoint(oldMountPoint));
    }
};

QTEST_GUILESS_MAIN(TestFolderShare)
#include "tst_foldershare.moc"
