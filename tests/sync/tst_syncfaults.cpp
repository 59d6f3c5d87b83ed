// Sync faults met in the field: the distant mount lost in the middle of a pass (a bind mount,
// and a real SMB mount of the loopback Samba server unmounted by its share manager), and the
// process killed with kill -9 in the middle of a pass.
#include <QProcess>
#include <QtTest>

#include <memory>

#include <signal.h>
#include <unistd.h>

#include "sambaserver.h"
#include "utilities/preconfiguration.h"
#include "utilities/windowssharemanager.h"

namespace {
const QString C_driver = QStringLiteral(SYNC_PASS_DRIVER);
const int C_passTimeoutMs = 300000;
const int C_mountTimeoutMs = 30000;
const int C_kills = 4;

bool run(const QString& program, const QStringList& args)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, args);
    return process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit
           && process.exitCode() == 0;
}

// Bytes of one file, different for every index and size.
QByteArray content(int index, int size)
{
    QByteArray data(size, Qt::Uninitialized);
    quint32 x = 2654435761u * quint32(index + 1) + quint32(size);
    for (int i = 0; i < size; ++i) {
        x = x * 1664525u + 1013904223u;
        data[i] = char(x >> 24);
    }
    return data;
}

// Ten files a directory: a pass enters a new distant directory every ten files.
QString fileName(int index)
{
    return QString("batch-%1/file-%2.bin").arg(index / 10, 2, 10, QLatin1Char('0')).arg(index, 3, 10, QLatin1Char('0'));
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Relative paths of the regular files under a directory, hidden ones included.
QStringList filesUnder(const QString& root)
{
    QStringList files;
    QDirIterator it(root, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << QDir(root).relativeFilePath(it.next());
    files.sort();
    return files;
}

// Every entry directly in a directory (none when it does not exist).
QStringList entriesOf(const QString& directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
}

QStringList temporariesUnder(const QString& root)
{
    return filesUnder(root).filter(QRegularExpression("(^|/)\\.dsync-[^/]*\\.part$"));
}

int filesOfSize(const QString& root, qint64 size)
{
    int count = 0;
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        count += it.fileInfo().size() == size ? 1 : 0;
    }
    return count;
}

// Stops a process and waits until the kernel reports it stopped; false once it has ended.
bool stopProcess(qint64 pid)
{
    if (::kill(pid_t(pid), SIGSTOP) != 0)
        return false;
    QFile stat(QString("/proc/%1/stat").arg(pid));
    // A process in uninterruptible sleep stops when it wakes up: waits for it, however long.
    for (QDeadlineTimer deadline(60000); !deadline.hasExpired(); QThread::usleep(100)) {
        if (!stat.open(QIODevice::ReadOnly))
            return false;
        const QByteArray line = stat.readAll();
        stat.close();
        const QByteArray state = line.mid(line.lastIndexOf(')') + 2, 1);
        if (state == "T" || state == "Z")
            return state == "T";
    }
    return false;
}
}

class TestSyncFaults : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        PreConfiguration::setParameter("shareMountBackend", "fuse");
    }
    void cleanupTestCase()
    {
        m_server.stop();
        PreConfiguration::clear();
    }
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        QVERIFY(m_dir->isValid());
    }
    void cleanup()
    {
        while (!m_mounts.isEmpty())
            run("umount", {"-l", m_mounts.takeLast()});
        m_dir.reset();
    }

    void distantMountLostMidPass_data()
    {
        QTest::addColumn<QString>("unmount");
        QTest::addColumn<bool>("beforePass");
        QTest::newRow("bind mount lazily unmounted") << "umount -l" << false;
        QTest::newRow("bind mount lazily unmounted and its mount point removed")
            << "umount -l, mount point removed" << false;
        QTest::newRow("bind mount lazily unmounted before the pass") << "umount -l" << true;
        QTest::newRow("SMB share unmounted by its share manager") << "share manager" << false;
    }
    // 600 files of 256 KB to a mount that goes away in the middle of the pass (or before it, once
    // the alias is added): nothing lands on the local disk, and every file reaches the destination
    // once it is mounted again. The pass runs in the driver, stopped while the mount goes away.
    void distantMountLostMidPass()
    {
        QFETCH(QString, unmount);
        QFETCH(bool, beforePass);
        if (geteuid() != 0)
            QSKIP("mounting needs root");
        const bool shareManager = unmount == "share manager";
        const bool mountPointRemoved = unmount.endsWith("removed");
        const int count = 600;
        const int size = 256 * 1024;
        const QString mountPoint = path("mnt/share");
        // The destination as its server sees it: a file system of its own, or the share's directory.
        QString destination = path("storage");
        std::unique_ptr<WindowsShareManager> share;
        if (shareManager) {
            if (!SambaServer::available() || WindowsShareManager::fuseHelperProgram().isEmpty()
                || !QFile::exists("/dev/fuse"))
                QSKIP("needs smbd, the mount helper station-smbmount and /dev/fuse");
            QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
            destination = m_server.shareDirectory();
            share.reset(new WindowsShareManager(m_server.address(), QString(), m_server.user(), m_server.password(),
                                                m_server.shareName(), mountPoint, "Mirror", 300));
            share->setDetectionSchedule({200, 400});
            share->setMountAttemptIntervalMs(100);
            share->setServerProbeTimeoutMs(1000);
        } else {
            QVERIFY(QDir().mkpath(destination) && QDir().mkpath(mountPoint));
            QVERIFY(mount({"-t", "tmpfs", "-o", "size=256m", "tmpfs", destination}));
        }
        const auto attach = [&] {
            if (!share)
                return mount({"--bind", destination, mountPoint});
            share->start();
            return QTest::qWaitFor([&] { return share->isMounted(); }, C_mountTimeoutMs);
        };
        QVERIFY(attach());
        QStringList expected;
        for (int i = 0; i < count; ++i) {
            expected << fileName(i);
            QVERIFY(writeFile(path("local/" + expected.last()), content(i, size)));
        }
        const auto detach = [&] {
            if (share) {
                share->umountWindowsShare(); // keeps the bare mount point
                return !share->isMounted();
            }
            m_mounts.removeAll(mountPoint);
            return run("umount", {"-l", mountPoint});
        };
        // Moved aside in one step, with whatever may have been written into it meanwhile.
        const QString bare = mountPointRemoved ? path("mnt/share-removed") : mountPoint;
        const auto lose = [&] { return detach() && (!mountPointRemoved || QDir().rename(mountPoint, bare)); };

        // The alias is added while the mount is there: the driver expects a mount point.
        QProcess driver;
        driver.setProcessChannelMode(QProcess::MergedChannels);
        driver.start(C_driver, QStringList {"--hold"} + driverArguments(mountPoint));
        QVERIFY(driver.waitForStarted());
        QVERIFY(QTest::qWaitFor([&] { return driver.canReadLine() || driver.state() == QProcess::NotRunning; }, 30000));
        QCOMPARE(driver.readLine().trimmed(), QByteArray("added"));
        if (beforePass)
            QVERIFY(lose());
        driver.write("go\n");
        QVERIFY(driver.waitForBytesWritten());
        if (!beforePass) {
            // Looked at while stopped: lost once a tenth of the files are at the destination.
            bool lost = false;
            while (!lost && driver.state() != QProcess::NotRunning) {
                QThread::usleep(500);
                if (!stopProcess(driver.processId()))
                    continue;
                if (filesUnder(destination).size() >= count / 10) {
                    QVERIFY(lose());
                    lost = true;
                }
                ::kill(pid_t(driver.processId()), SIGCONT);
            }
            QVERIFY2(lost, "the pass ended before the unmount");
        }
        QVERIFY(driver.waitForFinished(C_passTimeoutMs));
        QCOMPARE(driver.exitCode(), 0);
        const QStringList output = QString::fromLocal8Bit(driver.readAll()).split('\n');
        const bool mountPointMadeAgain = mountPointRemoved && QFileInfo::exists(mountPoint);
        QStringList onLocalDisk = entriesOf(bare);
        int localFiles = filesUnder(bare).size();
        if (mountPointMadeAgain) {
            onLocalDisk << entriesOf(mountPoint);
            localFiles += filesUnder(mountPoint).size();
        }
        const int beforeReturn = filesUnder(destination).size();

        if (mountPointRemoved && !mountPointMadeAgain)
            QVERIFY(QDir().mkpath(mountPoint));
        QVERIFY(attach());
        QCOMPARE(runDriver(driverArguments(mountPoint)), 0);
        const QStringList afterReturn = filesUnder(destination);
        // Lost before the pass reached the alias, or during it: the log line and the error signal.
        const QString unreachable = "distant directory unreachable";
        const QStringList errors = output.filter(QRegularExpression("^error: "));
        const QStringList logged = output.filter(unreachable, Qt::CaseInsensitive);
        qInfo("%s: files on the local disk under the mount point: %d; files at the destination: %d before "
              "its return, %d of %d after",
              QTest::currentDataTag(), localFiles, beforeReturn, int(afterReturn.size()), count);

        QCOMPARE(onLocalDisk, QStringList());
        QVERIFY2(!mountPointMadeAgain, "the removed mount point was made again");
        QVERIFY2(beforeReturn < count, "the pass went on writing through the lost mount");
        QVERIFY2(logged.size() > errors.filter(unreachable, Qt::CaseInsensitive).size(), qPrintable(output.join('\n')));
        QVERIFY(!errors.isEmpty());
        QVERIFY2(errors.last().contains(unreachable, Qt::CaseInsensitive), qPrintable(errors.last()));
        QCOMPARE(afterReturn, expected);
        for (int i = 0; i < count; ++i)
            QVERIFY2(readFile(destination + "/" + fileName(i)) == content(i, size), qPrintable(fileName(i)));
        QVERIFY(filesUnder(path("trash")).isEmpty());
        if (share) {
            share->umountWindowsShare();
            QVERIFY(QDir(destination).removeRecursively() && QDir().mkpath(destination));
        }
    }

    void killedPassesLeaveNothingBehind_data()
    {
        QTest::addColumn<bool>("replacing");
        QTest::newRow("killed while copying new files") << false;
        QTest::newRow("killed while replacing the copies of changed files") << true;
    }
    // A pass killed with kill -9 several times, then a clean pass: no temporary left, nothing
    // trashed (every distant file was the manager's own copy), every file right.
    void killedPassesLeaveNothingBehind()
    {
        QFETCH(bool, replacing);
        const int count = 120;
        const int size = 1024 * 1024;
        const QString local = path("local");
        const QString distant = path("distant");
        QVERIFY(QDir().mkpath(distant));
        QStringList expected;
        for (int i = 0; i < count; ++i)
            expected << fileName(i);
        const auto writeVersion = [&](int version) {
            for (int i = 0; i < count; ++i) {
                if (!writeFile(local + "/" + expected.at(i), content(i, size + version)))
                    return false;
            }
            return true;
        };
        if (replacing) {
            QVERIFY(writeVersion(0));
            QCOMPARE(runDriver(), 0);
            QCOMPARE(filesOfSize(distant, size), count);
        }
        QVERIFY(writeVersion(1));

        for (int kill = 1; kill <= C_kills; ++kill) {
            QProcess driver;
            driver.setProcessChannelMode(QProcess::ForwardedChannels);
            driver.start(C_driver, driverArguments());
            QVERIFY(driver.waitForStarted());
            // Run in short slices and looked at while stopped; killed in a slice that ends with a
            // temporary on the distant side, a little further into the files each time.
            const int target = kill * count / (2 * C_kills);
            bool killed = false;
            while (!killed && !driver.waitForFinished(0)) {
                QThread::usleep(500);
                if (!stopProcess(driver.processId()))
                    continue;
                if (filesOfSize(distant, size + 1) >= target && !temporariesUnder(distant).isEmpty()) {
                    driver.kill();
                    killed = true;
                } else {
                    ::kill(pid_t(driver.processId()), SIGCONT);
                }
            }
            QVERIFY2(killed, "the pass ended before it could be killed");
            QVERIFY(driver.waitForFinished(30000));
            QCOMPARE(driver.exitStatus(), QProcess::CrashExit);
        }
        const int temporariesBefore = temporariesUnder(distant).size();
        const int copiedBefore = filesOfSize(distant, size + 1);
        QCOMPARE(runDriver(), 0);
        const int temporariesAfter = temporariesUnder(distant).size();
        const int trashed = filesUnder(path("trash")).size();
        qInfo("%s: %d kills (%d of %d files copied, %d temporaries); after a clean pass: %d temporaries, "
              "%d files in the trash",
              QTest::currentDataTag(), C_kills, copiedBefore, count, temporariesBefore, temporariesAfter, trashed);

        QVERIFY(temporariesBefore > 0);
        QCOMPARE(temporariesAfter, 0);
        QCOMPARE(trashed, 0);
        QCOMPARE(filesUnder(distant), expected);
        for (int i = 0; i < count; ++i)
            QVERIFY2(readFile(distant + "/" + expected.at(i)) == content(i, size + 1), qPrintable(expected.at(i)));
    }

private:
    QString path(const QString& relative) const { return m_dir->filePath(relative); }
    bool mount(const QStringList& args)
    {
        if (!run("mount", args))
            return false;
        m_mounts << args.last();
        return true;
    }
    QStringList driverArguments(const QString& distant = QString()) const
    {
        return {path("sync.db"), path("trash"), path("local"), distant.isEmpty() ? path("distant") : distant};
    }
    int runDriver(const QStringList& arguments = {})
    {
        QProcess driver;
        driver.setProcessChannelMode(QProcess::ForwardedChannels);
        driver.start(C_driver, arguments.isEmpty() ? driverArguments() : arguments);
        if (!driver.waitForFinished(C_passTimeoutMs) || driver.exitStatus() != QProcess::NormalExit)
            return -1;
        return driver.exitCode();
    }

    SambaServer m_server;
    std::unique_ptr<QTemporaryDir> m_dir;
    QStringList m_mounts;
};

QTEST_GUILESS_MAIN(TestSyncFaults)
#include "tst_syncfaults.moc"
