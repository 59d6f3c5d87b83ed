// The mount helper, built with LeakSanitizer, frees what it allocates on every way out:
// usage errors, refused credentials, a missing share, an unreachable server, a mount that
// fails, and a mount that is served and then released.
#include "sambaserver.h"

#include <QProcess>
#include <QTcpServer>
#include <QtTest>

#include <unistd.h>

namespace {
const int C_timeoutMs = 60000;

bool mountedAt(const QString& path)
{
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    if (!table.open(QIODevice::ReadOnly))
        return false;
    const QByteArray needle = ' ' + path.toLocal8Bit() + ' ';
    return table.readAll().contains(needle);
}
} // namespace

class TestSmbMountHelperLeaks : public QObject
{
    Q_OBJECT

    SambaServer m_server;
    QTemporaryDir m_dir;
    quint16 m_closedPort = 0;

    // Runs the helper to its end with `credentials` on its standard input.
    static bool run(QProcess& helper, const QStringList& arguments, const QByteArray& credentials)
    {
        helper.start(QStringLiteral(STATION_SMBMOUNT_LSAN), arguments);
        if (!helper.waitForStarted(C_timeoutMs))
            return false;
        helper.write(credentials);
        helper.closeWriteChannel();
        return helper.waitForFinished(C_timeoutMs);
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (!SambaServer::available())
            QSKIP("smbd is not installed: the helper needs a Samba server");
        QVERIFY(m_dir.isValid());
        QVERIFY(QDir(m_dir.path()).mkpath(QStringLiteral("mnt")));
        QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
        QTcpServer closed; // a loopback port nobody listens on
        QVERIFY(closed.listen(QHostAddress::LocalHost));
        m_closedPort = closed.serverPort();
        closed.close();
        // Leaks are reported on standard error with exit code 23 (the helper's own codes are lower).
        qputenv("LSAN_OPTIONS", "exitcode=23:fast_unwind_on_malloc=0:suppressions=" STATION_LSAN_SUPPRESSIONS);
    }

    // A failed check leaves the helper killed and its mount dead: detach it.
    void cleanup()
    {
        const QString mountPoint = m_dir.filePath(QStringLiteral("mnt"));
        if (mountedAt(mountPoint))
            QProcess::execute(QStringLiteral("fusermount3"), {QStringLiteral("-u"), QStringLiteral("-z"), mountPoint});
    }

    void cleanupTestCase()
    {
        m_server.stop();
        qunsetenv("LSAN_OPTIONS");
    }

    void failuresLeakNothing_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("credentials");
        QTest::addColumn<int>("exitCode");
        const QString share = QStringLiteral("//%1/%2").arg(m_server.address(), m_server.shareName());
        const QString mountPoint = m_dir.filePath(QStringLiteral("mnt"));
        const QByteArray good = "username=" + m_server.user().toUtf8() + "\npassword=" + m_server.password().toUtf8()
            + '\n';
        QTest::newRow("unknown option") << QStringList {"--help"} << QByteArray() << 1;
        QTest::newRow("no user name") << QStringList {share, mountPoint} << QByteArray("password=x\n") << 1;
        QTest::newRow("wrong password") << QStringList {share, mountPoint}
                                        << "username=" + m_server.user().toUtf8() + "\npassword=wrong\n" << 2;
        QTest::newRow("unreachable server")
            << QStringList {QStringLiteral("//127.0.0.1:%1/share").arg(m_closedPort), mountPoint} << good << 3;
        QTest::newRow("unknown share")
            << QStringList {QStringLiteral("//%1/missing").arg(m_server.address()), mountPoint} << good << 4;
        QTest::newRow("invalid FUSE option") << QStringList {"-o", "no_such_option", share, mountPoint} << good << 1;
        QTest::newRow("mount point missing")
            << QStringList {share, m_dir.filePath(QStringLiteral("absent"))} << good << 6;
    }
    void failuresLeakNothing()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, credentials);
        QFETCH(int, exitCode);
        QProcess helper;
        QVERIFY(run(helper, arguments, credentials));
        const QByteArray errors = helper.readAllStandardError();
        QVERIFY2(!errors.contains("Sanitizer"), errors.constData());
        QCOMPARE(helper.exitStatus(), QProcess::NormalExit);
        QCOMPARE(helper.exitCode(), exitCode);
    }

    // Mounted, served, unmounted from outside: the helper ends cleanly and leaks nothing.
    void servedMountLeaksNothing()
    {
        if (::access("/dev/fuse", R_OK | W_OK) != 0)
            QSKIP("/dev/fuse is not usable here");
        const QString mountPoint = m_dir.filePath(QStringLiteral("mnt"));
        QProcess helper;
        helper.start(QStringLiteral(STATION_SMBMOUNT_LSAN),
                     {QStringLiteral("//%1/%2").arg(m_server.address(), m_server.shareName()), mountPoint});
        QVERIFY(helper.waitForStarted(C_timeoutMs));
        helper.write("username=" + m_server.user().toUtf8() + "\npassword=" + m_server.password().toUtf8() + '\n');
        helper.closeWriteChannel();
        QByteArray output;
        const auto readyOrEnded = [&]() {
            output += helper.readAllStandardOutput();
            return output.contains("ready") || helper.state() == QProcess::NotRunning;
        };
        QTRY_VERIFY_WITH_TIMEOUT(readyOrEnded(), C_timeoutMs);
        QVERIFY2(mountedAt(mountPoint), helper.readAllStandardError().constData());
        QVERIFY(QDir(mountPoint).exists());
        QCOMPARE(QProcess::execute(QStringLiteral("fusermount3"), {QStringLiteral("-u"), mountPoint}), 0);
        QVERIFY(helper.waitForFinished(C_timeoutMs));
        const QByteArray errors = helper.readAllStandardError();
        QVERIFY2(!errors.contains("Sanitizer"), errors.constData());
        QCOMPARE(helper.exitCode(), 0);
        QVERIFY(!mountedAt(mountPoint));
    }
};

QTEST_GUILESS_MAIN(TestSmbMountHelperLeaks)
#include "tst_smbmounthelperleaks.moc"
