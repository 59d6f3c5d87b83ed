#include "logcapture.h"
#include "sambaserver.h"
#include "utilities/preconfiguration.h"
#include "utilities/windowssharemanager.h"

#include <QtTest>

#include <cerrno>
#include <cstring>
#include <memory>

#include <fcntl.h>
#include <unistd.h>

namespace {
const int C_timeoutMs = 20000;

// File system type mounted at `path`, empty when nothing is.
QString mountTypeAt(const QString& path)
{
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    QString type;
    for (const QByteArray& line : table.open(QIODevice::ReadOnly) ? table.readAll().split('\n') : QByteArrayList()) {
        const QList<QByteArray> fields = line.split(' ');
        const int separator = fields.indexOf("-");
        if (separator > 4 && separator + 1 < fields.size() && QString::fromLocal8Bit(fields.at(4)) == path)
            type = QString::fromLocal8Bit(fields.at(separator + 1));
    }
    return type;
}

bool write(const QString& path, const QByteArray& data, QIODevice::OpenMode mode)
{
    QFile file(path);
    return file.open(mode) && file.write(data) == data.size();
}

QByteArray read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Every signal of a manager, in order, as short texts.
struct SignalLog : public QObject
{
    explicit SignalLog(WindowsShareManager* manager)
    {
        using M = WindowsShareManager;
        connect(manager, &M::serverDetectionStarted, this, [this]() { m_events << "detecting"; });
        connect(manager, &M::serverDetectionRetrying, this,
                [this](int ms) { m_events << QString("retry %1").arg(ms); });
        connect(manager, &M::serverResponded, this, [this]() { m_events << "responded"; });
        connect(manager, &M::mountAttemptStarted, this,
                [this](int n, int max) { m_events << QString("attempt %1/%2").arg(n).arg(max); });
        connect(manager, &M::mountAttemptFailed, this,
                [this](int n, int max, const QString&) { m_events << QString("failed %1/%2").arg(n).arg(max); });
        connect(manager, &M::permanentMountFailure, this, [this]() { m_events << "permanent"; });
        connect(manager, &M::connectionChanged, this,
                [this](const QString&, bool up) { m_events << (up ? "connected" : "disconnected"); });
    }
    QStringList m_events;
};

// The connection values a manager reported, in order, with the paths they named.
struct ConnectionLog : public QObject
{
    explicit ConnectionLog(WindowsShareManager* manager)
    {
        connect(manager, &WindowsShareManager::connectionChanged, this, [this](const QString& path, bool up) {
            m_paths << path;
            m_values << up;
        });
    }
    int mark() const { return m_values.size(); }
    bool isUp() const { return !m_values.isEmpty() && m_values.last(); }
    bool lostSince(int from) const { return m_values.indexOf(false, from) >= 0; }
    bool connectedSince(int from) const { return m_values.indexOf(true, from) >= 0; }
    // A loss reported at or after `from`, and a connection reported after that loss.
    bool regainedSince(int from) const
    {
        const int lost = m_values.indexOf(false, from);
        return lost >= 0 && connectedSince(lost + 1);
    }
    QStringList m_paths;
    QList<bool> m_values;
};
} // namespace

class TestWindowsShareManagerServer : public QObject
{
    Q_OBJECT

    QTemporaryDir m_root;
    SambaServer m_server;

    std::unique_ptr<WindowsShareManager> manager(const QString& alias, const QString& password,
                                                 const QString& share = QString())
    {
        auto result = std::make_unique<WindowsShareManager>(m_server.address(), QString(), m_server.user(), password,
                                                            share.isEmpty() ? m_server.shareName() : share,
                                                            m_root.filePath(alias), alias, 300);
        result->setDetectionSchedule({200, 400});
        result->setMaxMountAttempts(2);
        result->setMountAttemptIntervalMs(100);
        result->setServerProbeTimeoutMs(1000);
        return result;
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (!SambaServer::available())
            QSKIP("smbd is not installed: share integration tests need a Samba server");
        if (WindowsShareManager::fuseHelperProgram().isEmpty())
            QSKIP("the mount helper station-smbmount is not built");
        QVERIFY(m_root.isValid());
        PreConfiguration::setParameter(QStringLiteral("shareMountBackend"), QStringLiteral("fuse"));
        QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
    }

    void cleanupTestCase()
    {
        m_server.stop();
        PreConfiguration::clear();
        const QByteArray table = read(QStringLiteral("/proc/self/mountinfo"));
        QVERIFY(!table.isEmpty() && !table.contains(m_root.path().toLocal8Bit()));
    }

    void mountsAndServesFiles()
    {
        LogCapture log;
        auto share = manager(QStringLiteral("Results"), m_server.password());
        SignalLog events(share.get());
        QSignalSpy connection(share.get(), &WindowsShareManager::connectionChanged);
        share->start();
        QVERIFY(connection.wait(C_timeoutMs));
        QCOMPARE(events.m_events, (QStringList {"detecting", "responded", "attempt 1/2", "connected"}));
        QCOMPARE(connection.at(0), (QList<QVariant> {m_root.filePath(QStringLiteral("Results")), true}));
        QVERIFY(share->isMounted());
        QVERIFY(mountTypeAt(share->mountPoint()).startsWith(QLatin1String("fuse")));

        // Written, appended, moved and removed through the mount; checked on the server side.
        const QString local = share->mountPoint() + QStringLiteral("/torque_0001.csv");
        QVERIFY(write(local, "12.5;ok\n", QIODevice::WriteOnly));
        QCOMPARE(read(m_server.shareDirectory() + QStringLiteral("/torque_0001.csv")), QByteArray("12.5;ok\n"));
        QVERIFY(write(local, "13.0;ok\n", QIODevice::Append));
        QVERIFY(QDir(share->mountPoint()).mkpath(QStringLiteral("line 2/é")));
        QVERIFY(QFile::rename(local, share->mountPoint() + QStringLiteral("/line 2/é/torque.csv")));
        const QString moved = m_server.shareDirectory() + QStringLiteral("/line 2/é/torque.csv");
        QCOMPARE(read(moved), QByteArray("12.5;ok\n13.0;ok\n"));
        QVERIFY(QFile::remove(share->mountPoint() + QStringLiteral("/line 2/é/torque.csv")));
        QVERIFY(!QFile::exists(moved));

        share->umountWindowsShare();
        QVERIFY(!share->isMounted());
        QCOMPARE(mountTypeAt(share->mountPoint()), QString());
        QCOMPARE(connection.count(), 2);
        QCOMPARE(connection.at(1).at(1).toBool(), false);
        QVERIFY(log.matching(m_server.password()).isEmpty());
    }

    // A close() closes the file on the server before it returns: the kernel sends the release
    // later, and a rename that comes first (served by another of the helper's connections)
    // would be refused by the server for an open file. Here a second descriptor keeps the file
    // open for the kernel, so that no release comes at all: the rename still succeeds, and a
    // write through the second descriptor opens the file again, under its new name.
    void closeClosesOnTheServer()
    {
        auto share = manager(QStringLiteral("Busy"), m_server.password());
        QSignalSpy connection(share.get(), &WindowsShareManager::connectionChanged);
        share->start();
        QVERIFY(connection.wait(C_timeoutMs) && share->isMounted());
        const QByteArray part = QFile::encodeName(share->mountPoint() + QStringLiteral("/result.part"));
        const QByteArray done = QFile::encodeName(share->mountPoint() + QStringLiteral("/result.csv"));
        const int fd = ::open(part.constData(), O_WRONLY | O_CREAT | O_EXCL, 0644);
        QVERIFY(fd >= 0);
        QCOMPARE(::write(fd, "12.5;", 5), ssize_t(5));
        const int second = ::dup(fd);
        QVERIFY(second >= 0);
        QCOMPARE(::close(fd), 0);
        // Plain rename: QFile::rename would copy the file when the rename is refused.
        QVERIFY2(::rename(part.constData(), done.constData()) == 0, std::strerror(errno));
        QCOMPARE(::pwrite(second, "ok\n", 3, 5), ssize_t(3));
        QCOMPARE(::close(second), 0);
        QCOMPARE(read(m_server.shareDirectory() + QStringLiteral("/result.csv")), QByteArray("12.5;ok\n"));
        QVERIFY(!QFileInfo::exists(m_server.shareDirectory() + QStringLiteral("/result.part")));
        QFile::remove(m_server.shareDirectory() + QStringLiteral("/result.csv"));
        share->umountWindowsShare();
    }

    void wrongPasswordFailsPermanently()
    {
        auto share = manager(QStringLiteral("Denied"), QStringLiteral("not-the-password"));
        SignalLog events(share.get());
        QSignalSpy failed(share.get(), &WindowsShareManager::mountAttemptFailed);
        QSignalSpy permanent(share.get(), &WindowsShareManager::permanentMountFailure);
        share->start();
        QVERIFY(permanent.wait(C_timeoutMs));
        QCOMPARE(events.m_events, (QStringList {"detecting", "responded", "attempt 1/2", "failed 1/2", "attempt 2/2",
                                                "failed 2/2", "permanent"}));
        const QString reason = permanent.at(0).at(0).toString();
        QVERIFY2(reason.contains(QLatin1String("access denied")), qPrintable(reason));
        QCOMPARE(failed.at(0).at(2).toString(), reason);
        QCOMPARE(failed.at(1).at(2).toString(), reason);
        QVERIFY(!share->isMounted());
        QCOMPARE(mountTypeAt(share->mountPoint()), QString());
        QVERIFY(!QFileInfo::exists(share->mountPoint()));

        // A permanent failure is not the end: a retry goes through the whole sequence again.
        events.m_events.clear();
        share->retryConnection();
        QTRY_COMPARE_WITH_TIMEOUT(permanent.count(), 2, C_timeoutMs);
        QCOMPARE(events.m_events.first(), QStringLiteral("detecting"));
        QVERIFY(events.m_events.contains(QStringLiteral("attempt 1/2")));
    }

    // Unmounted behind its back, then the server gone: noticed, mounted again on its own; gone with the manager.
    // The waits are on states: a remount may come within one poll of the wait, so the number of
    // reports seen between two polls is not fixed.
    void lostMountIsMountedAgain()
    {
        auto share = manager(QStringLiteral("Later"), m_server.password());
        const QString mountPoint = share->mountPoint();
        ConnectionLog connection(share.get());
        SignalLog events(share.get());
        const auto up = [&]() {
            return connection.isUp() && share->isMounted() && !mountTypeAt(mountPoint).isEmpty();
        };
        share->start();
        QTRY_VERIFY_WITH_TIMEOUT(up(), C_timeoutMs);

        int mark = connection.mark();
        QCOMPARE(QProcess::execute(QStringLiteral("fusermount3"), {QStringLiteral("-u"), mountPoint}), 0);
        QTRY_VERIFY_WITH_TIMEOUT(connection.regainedSince(mark) && up(), C_timeoutMs);

        mark = connection.mark();
        events.m_events.clear();
        m_server.stop();
        QTRY_VERIFY_WITH_TIMEOUT(connection.lostSince(mark) && events.m_events.contains(QStringLiteral("retry 400")),
                                 C_timeoutMs);
        QVERIFY(!connection.isUp());
        QVERIFY(!share->isMounted());
        QCOMPARE(mountTypeAt(mountPoint), QString());

        QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
        mark = connection.mark();
        QTRY_VERIFY_WITH_TIMEOUT(connection.connectedSince(mark) && up(), C_timeoutMs);
        QVERIFY(QDir(mountPoint).exists());
        QCOMPARE(connection.m_paths.count(mountPoint), connection.m_paths.size()); // every report names the mount point

        share.reset(); // the destructor leaves no mount and no mount point
        QCOMPARE(mountTypeAt(mountPoint), QString());
        QVERIFY(!QFileInfo::exists(mountPoint));
    }
};

QTEST_GUILESS_MAIN(TestWindowsShareManagerServer)
#include "tst_windowssharemanagerserver.moc"
