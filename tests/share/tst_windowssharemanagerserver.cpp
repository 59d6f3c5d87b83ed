#include "logcapture.h"
#include "sambaserver.h"
#include "utilities/preconfiguration.h"
#include "utilities/windowssharemanager.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {
const int C_timeoutMs = 20000;

// File system type mounted at `path`, empty when nothing is.
QString mountTypeAt(const QString& path)
{
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    if (!table.open(QIODevice::ReadOnly))
        return QString();
    QString type;
    for (const QByteArray& line : table.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        const int separator = fields.indexOf("-");
        if (separator > 4 && separator + 1 < fields.size() && QString::fromLocal8Bit(fields.at(4)) == path)
            type = QString::fromLocal8Bit(fields.at(separator + 1));
    }
    return type;
}

// Every signal of a manager, in order, as short texts.
class SignalLog : public QObject
{
public:
    explicit SignalLog(WindowsShareManager* manager)
    {
        connect(manager, &WindowsShareManager::serverDetectionStarted, this, [this]() { m_events << "detecting"; });
        connect(manager, &WindowsShareManager::serverDetectionRetrying, this,
                [this](int ms) { m_events << QStringLiteral("retry %1").arg(ms); });
        connect(manager, &WindowsShareManager::serverResponded, this, [this]() { m_events << "responded"; });
        connect(manager, &WindowsShareManager::mountAttemptStarted, this,
                [this](int n, int max) { m_events << QStringLiteral("attempt %1/%2").arg(n).arg(max); });
        connect(manager, &WindowsShareManager::mountAttemptFailed, this,
                [this](int n, int max, const QString&) { m_events << QStringLiteral("failed %1/%2").arg(n).arg(max); });
        connect(manager, &WindowsShareManager::permanentMountFailure, this, [this]() { m_events << "permanent"; });
        connect(manager, &WindowsShareManager::connectionChanged, this,
                [this](const QString&, bool connected) { m_events << (connected ? "connected" : "disconnected"); });
    }
    QStringList m_events;
};
} // namespace

class TestWindowsShareManagerServer : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_root;
    SambaServer m_server;

    std::unique_ptr<WindowsShareManager> manager(const QString& alias, const QString& password,
                                                 const QString& share = QString());

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void mountsAndServesFiles();
    void wrongPasswordFailsPermanently();
    void stoppedServerDisconnectsAndRemounts();
    void unmountedBehindItsBackMountsAgain();
    void destructorLeavesNoMount();
};

std::unique_ptr<WindowsShareManager> TestWindowsShareManagerServer::manager(const QString& alias,
                                                                            const QString& password,
                                                                            const QString& share)
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

void TestWindowsShareManagerServer::initTestCase()
{
    if (!SambaServer::available())
        QSKIP("smbd is not installed: share integration tests need a Samba server");
    if (WindowsShareManager::fuseHelperProgram().isEmpty())
        QSKIP("the mount helper station-smbmount is not built");
    QVERIFY(m_root.isValid());
    PreConfiguration::setParameter(QStringLiteral("shareMountBackend"), QStringLiteral("fuse"));
    QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
}

void TestWindowsShareManagerServer::cleanupTestCase()
{
    m_server.stop();
    PreConfiguration::clear();
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    QVERIFY(table.open(QIODevice::ReadOnly));
    QVERIFY(!table.readAll().contains(m_root.path().toLocal8Bit()));
}

void TestWindowsShareManagerServer::mountsAndServesFiles()
{
    LogCapture log;
    auto share = manager(QStringLiteral("Results"), m_server.password());
    SignalLog events(share.get());
    QSignalSpy connection(share.get(), &WindowsShareManager::connectionChanged);
    share->start();
    QVERIFY(connection.wait(C_timeoutMs));

    QCOMPARE(events.m_events,
             (QStringList {"detecting", "responded", "attempt 1/2", "connected"}));
    QCOMPARE(connection.at(0), (QList<QVariant> {m_root.filePath(QStringLiteral("Results")), true}));
    QVERIFY(share->isMounted());
    QVERIFY(mountTypeAt(share->mountPoint()).startsWith(QLatin1String("fuse")));

    // Written locally, found on the server; written on the server, read locally.
    QFile local(share->mountPoint() + QStringLiteral("/torque_0001.csv"));
    QVERIFY(local.open(QIODevice::WriteOnly));
    QCOMPARE(local.write("12.5;ok\n"), qint64(8));
    local.close();
    QFile remote(m_server.shareDirectory() + QStringLiteral("/torque_0001.csv"));
    QVERIFY(remote.open(QIODevice::ReadOnly));
    QCOMPARE(remote.readAll(), QByteArray("12.5;ok\n"));
    remote.close();
    QVERIFY(local.open(QIODevice::Append));
    QCOMPARE(local.write("13.0;ok\n"), qint64(8));
    local.close();
    QVERIFY(QDir(share->mountPoint()).mkpath(QStringLiteral("line 2/é")));
    QVERIFY(QFile::rename(local.fileName(), share->mountPoint() + QStringLiteral("/line 2/é/torque.csv")));
    QFile moved(m_server.shareDirectory() + QStringLiteral("/line 2/é/torque.csv"));
    QVERIFY(moved.open(QIODevice::ReadOnly));
    QCOMPARE(moved.readAll(), QByteArray("12.5;ok\n13.0;ok\n"));
    QVERIFY(QFile::remove(share->mountPoint() + QStringLiteral("/line 2/é/torque.csv")));
    QVERIFY(!moved.exists());

    share->umountWindowsShare();
    QVERIFY(!share->isMounted());
    QCOMPARE(mountTypeAt(share->mountPoint()), QString());
    QCOMPARE(connection.count(), 2);
    QCOMPARE(connection.at(1).at(1).toBool(), false);
    QVERIFY(log.matching(m_server.password()).isEmpty());
}

void TestWindowsShareManagerServer::wrongPasswordFailsPermanently()
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

void TestWindowsShareManagerServer::stoppedServerDisconnectsAndRemounts()
{
    auto share = manager(QStringLiteral("Later"), m_server.password());
    QSignalSpy connection(share.get(), &WindowsShareManager::connectionChanged);
    share->start();
    QVERIFY(connection.wait(C_timeoutMs));
    QCOMPARE(connection.at(0).at(1).toBool(), true);

    m_server.stop();
    SignalLog events(share.get());
    QTRY_COMPARE_WITH_TIMEOUT(connection.count(), 2, C_timeoutMs);
    QCOMPARE(connection.at(1).at(1).toBool(), false);
    QVERIFY(!share->isMounted());
    QCOMPARE(mountTypeAt(share->mountPoint()), QString());
    // It looks for the server again on its own.
    QTRY_VERIFY_WITH_TIMEOUT(events.m_events.contains(QStringLiteral("retry 400")), C_timeoutMs);

    QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
    QTRY_COMPARE_WITH_TIMEOUT(connection.count(), 3, C_timeoutMs);
    QCOMPARE(connection.at(2).at(1).toBool(), true);
    QVERIFY(share->isMounted());
    QVERIFY(QFileInfo(share->mountPoint()).isDir());
    QVERIFY(QDir(share->mountPoint()).exists());
}

void TestWindowsShareManagerServer::unmountedBehindItsBackMountsAgain()
{
    auto share = manager(QStringLiteral("Taken"), m_server.password());
    QSignalSpy connection(share.get(), &WindowsShareManager::connectionChanged);
    share->start();
    QVERIFY(connection.wait(C_timeoutMs));

    QCOMPARE(QProcess::execute(QStringLiteral("fusermount3"), {QStringLiteral("-u"), share->mountPoint()}), 0);
    QTRY_COMPARE_WITH_TIMEOUT(connection.count(), 2, C_timeoutMs);
    QCOMPARE(connection.at(1).at(1).toBool(), false);
    QTRY_COMPARE_WITH_TIMEOUT(connection.count(), 3, C_timeoutMs);
    QCOMPARE(connection.at(2).at(1).toBool(), true);
    QVERIFY(share->isMounted());
    QVERIFY(!mountTypeAt(share->mountPoint()).isEmpty());
}

void TestWindowsShareManagerServer::destructorLeavesNoMount()
{
    auto share = manager(QStringLiteral("Gone"), m_server.password(), m_server.readOnlyShareName());
    QSignalSpy connection(share.get(), &WindowsShareManager::connectionChanged);
    share->start();
    QVERIFY(connection.wait(C_timeoutMs));
    const QString mountPoint = share->mountPoint();
    QVERIFY(!mountTypeAt(mountPoint).isEmpty());
    // The read-only share refuses writes through the mount.
    QFile refused(mountPoint + QStringLiteral("/denied.txt"));
    QVERIFY(!refused.open(QIODevice::WriteOnly));

    share.reset();
    QCOMPARE(mountTypeAt(mountPoint), QString());
    QVERIFY(!QFileInfo::exists(mountPoint));
}

QTEST_GUILESS_MAIN(TestWindowsShareManagerServer)
#include "tst_windowssharemanagerserver.moc"
