#include "utilities/preconfiguration.h"
#include "utilities/windowssharemanager.h"
#include "windowssharemanager_p.h"

#include <QDir>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

class TestWindowsShareManager : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    // A loopback port nobody listens on.
    static quint16 closedPort();

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void readsAddressAndSharePath_data();
    void readsAddressAndSharePath();
    void cifsCommandKeepsPasswordInTheCredentialsFile_data();
    void cifsCommandKeepsPasswordInTheCredentialsFile();
    void fuseCommandSendsPasswordOnStandardInput();
    void lineBreakInPasswordRefused();

    void detectionRetriesOnTheSchedule();
    void retryConnectionRestartsTheSchedule();
    void invalidAddressFailsAtOnce();
    void attemptsEndInPermanentFailure();
    void cifsAttemptLeavesNoCredentialsFile();
};

quint16 TestWindowsShareManager::closedPort()
{
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost))
        return 0;
    const quint16 port = probe.serverPort();
    probe.close();
    return port;
}

void TestWindowsShareManager::initTestCase()
{
    QVERIFY(m_dir.isValid());
}

void TestWindowsShareManager::cleanup()
{
    PreConfiguration::clear();
}

void TestWindowsShareManager::readsAddressAndSharePath_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("sharePath");
    QTest::addColumn<QString>("host");
    QTest::addColumn<int>("port");
    QTest::addColumn<QString>("share");
    QTest::addColumn<QString>("subdirectory");
    QTest::addColumn<bool>("valid");

    QTest::newRow("plain host uses port 445") << "fileserver" << "results" << "fileserver" << 445 << "results" << ""
                                              << true;
    QTest::newRow("host:port selects the port") << "127.0.0.1:1445" << "results" << "127.0.0.1" << 1445 << "results"
                                                << "" << true;
    QTest::newRow("directory below the share") << "fileserver" << "/results/line2/" << "fileserver" << 445
                                               << "results" << "line2" << true;
    QTest::newRow("backslash notation") << "\\\\fileserver" << "results\\line2\\day" << "fileserver" << 445
                                        << "results" << "line2/day" << true;
    QTest::newRow("share given in the address") << "//fileserver:139/media" << "" << "fileserver" << 139 << "media"
                                                << "" << true;
    QTest::newRow("smb url") << "smb://fileserver" << "data" << "fileserver" << 445 << "data" << "" << true;
    QTest::newRow("port out of range is invalid") << "fileserver:70000" << "data" << "fileserver" << 0 << "data"
                                                  << "" << false;
    QTest::newRow("no share is invalid") << "fileserver" << "" << "fileserver" << 445 << "" << "" << false;
    QTest::newRow("no host is invalid") << "" << "data" << "" << 445 << "data" << "" << false;
}

void TestWindowsShareManager::readsAddressAndSharePath()
{
    QFETCH(QString, address);
    QFETCH(QString, sharePath);
    const ShareMount::Target target = ShareMount::parseTarget(address, sharePath);
    QTEST(target.host, "host");
    QTEST(int(target.port), "port");
    QTEST(target.share, "share");
    QTEST(target.subdirectory, "subdirectory");
    QTEST(target.isValid(), "valid");
}

void TestWindowsShareManager::cifsCommandKeepsPasswordInTheCredentialsFile_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("domain");
    QTest::newRow("plain password") << "Secret123" << "";
    QTest::newRow("password with option separators") << "a,b=c d" << "PLANT";
    QTest::newRow("password looking like a path") << "/mnt/x" << "";
}

void TestWindowsShareManager::cifsCommandKeepsPasswordInTheCredentialsFile()
{
    QFETCH(QString, password);
    QFETCH(QString, domain);
    const ShareMount::Target target =
        ShareMount::parseTarget(QStringLiteral("fileserver:1445"), QStringLiteral("data/sub"));
    const QString credentials = m_dir.filePath(QStringLiteral("cred"));
    const ShareMount::Command command =
        ShareMount::cifsMountCommand(target, QStringLiteral("/mnt/data"), credentials, QStringLiteral("operator"),
                                     password, domain);
    QVERIFY(command.error.isEmpty());
    QVERIFY(command.program.endsWith(QLatin1String("mount")));
    QCOMPARE(command.arguments.mid(0, 4), (QStringList {QStringLiteral("-t"), QStringLiteral("cifs"),
                                                        QStringLiteral("//fileserver/data/sub"),
                                                        QStringLiteral("/mnt/data")}));
    for (const QString& argument : command.arguments)
        QVERIFY2(!argument.contains(password), qPrintable(argument));
    const QString options = command.arguments.last();
    QVERIFY(options.split(QLatin1Char(',')).contains(QStringLiteral("credentials=") + credentials));
    QVERIFY(options.split(QLatin1Char(',')).contains(QStringLiteral("port=1445")));

    const QList<QByteArray> lines = command.credentials.split('\n');
    QVERIFY(lines.contains("username=operator"));
    QVERIFY(lines.contains("password=" + password.toUtf8()));
    QCOMPARE(lines.contains("domain=" + domain.toUtf8()), !domain.isEmpty());
}

void TestWindowsShareManager::fuseCommandSendsPasswordOnStandardInput()
{
    const ShareMount::Target target = ShareMount::parseTarget(QStringLiteral("127.0.0.1:1445"), QStringLiteral("data"));
    const ShareMount::Command command = ShareMount::fuseMountCommand(
        QStringLiteral("/opt/helper"), target, QStringLiteral("/mnt/data"), QStringLiteral("operator"),
        QStringLiteral("Secret123"), QString());
    QCOMPARE(command.program, QStringLiteral("/opt/helper"));
    QCOMPARE(command.arguments,
             (QStringList {QStringLiteral("//127.0.0.1:1445/data"), QStringLiteral("/mnt/data")}));
    QVERIFY(command.credentials.contains("password=Secret123\n"));

    const ShareMount::Command missing = ShareMount::fuseMountCommand(
        QString(), target, QStringLiteral("/mnt/data"), QStringLiteral("operator"), QStringLiteral("x"), QString());
    QVERIFY(missing.program.isEmpty());
    QVERIFY(!missing.error.isEmpty());
}

void TestWindowsShareManager::lineBreakInPasswordRefused()
{
    // A second line would smuggle another key into the credentials.
    const ShareMount::Target target = ShareMount::parseTarget(QStringLiteral("fileserver"), QStringLiteral("data"));
    const ShareMount::Command command =
        ShareMount::cifsMountCommand(target, QStringLiteral("/mnt/data"), m_dir.filePath(QStringLiteral("cred")),
                                     QStringLiteral("operator"), QStringLiteral("pw\nusername=root"), QString());
    QVERIFY(command.program.isEmpty());
    QVERIFY(command.credentials.isEmpty());
    QVERIFY(!command.error.isEmpty());
}

void TestWindowsShareManager::detectionRetriesOnTheSchedule()
{
    const quint16 port = closedPort();
    QVERIFY(port != 0);
    WindowsShareManager manager(QStringLiteral("127.0.0.1:%1").arg(port), QString(), QStringLiteral("operator"),
                                QStringLiteral("pw"), QStringLiteral("data"), m_dir.filePath(QStringLiteral("A")),
                                QStringLiteral("A"), 1000);
    manager.setDetectionSchedule({50, 80});
    QSignalSpy started(&manager, &WindowsShareManager::serverDetectionStarted);
    QSignalSpy retrying(&manager, &WindowsShareManager::serverDetectionRetrying);
    QSignalSpy responded(&manager, &WindowsShareManager::serverResponded);
    QSignalSpy attempts(&manager, &WindowsShareManager::mountAttemptStarted);
    manager.start();
    QCOMPARE(started.count(), 1);

    QTRY_VERIFY_WITH_TIMEOUT(retrying.count() >= 3, 10000);
    QCOMPARE(retrying.at(0).at(0).toInt(), 50);
    QCOMPARE(retrying.at(1).at(0).toInt(), 80);
    QCOMPARE(retrying.at(2).at(0).toInt(), 80);
    QCOMPARE(started.count(), 1);
    QCOMPARE(responded.count(), 0);
    QCOMPARE(attempts.count(), 0);
    QVERIFY(!manager.isMounted());
    QVERIFY(!QFileInfo::exists(m_dir.filePath(QStringLiteral("A"))));
}

void TestWindowsShareManager::retryConnectionRestartsTheSchedule()
{
    const quint16 port = closedPort();
    WindowsShareManager manager(QStringLiteral("127.0.0.1:%1").arg(port), QString(), QStringLiteral("operator"),
                                QStringLiteral("pw"), QStringLiteral("data"), m_dir.filePath(QStringLiteral("B")),
                                QStringLiteral("B"), 1000);
    manager.setDetectionSchedule({60, 5000});
    QSignalSpy started(&manager, &WindowsShareManager::serverDetectionStarted);
    QSignalSpy retrying(&manager, &WindowsShareManager::serverDetectionRetrying);
    manager.start();
    QTRY_COMPARE_WITH_TIMEOUT(retrying.count(), 2, 10000);
    QCOMPARE(retrying.at(1).at(0).toInt(), 5000);

    // Waiting 5 s now; a retry probes at once and starts the schedule from the top.
    manager.retryConnection();
    QCOMPARE(started.count(), 2);
    QTRY_COMPARE_WITH_TIMEOUT(retrying.count(), 3, 4000);
    QCOMPARE(retrying.at(2).at(0).toInt(), 60);
    // start() while detecting changes nothing.
    manager.start();
    QCOMPARE(started.count(), 2);
}

void TestWindowsShareManager::invalidAddressFailsAtOnce()
{
    WindowsShareManager manager(QString(), QString(), QStringLiteral("operator"), QStringLiteral("pw"), QString(),
                                m_dir.filePath(QStringLiteral("C")), QStringLiteral("C"), 1000);
    QSignalSpy failure(&manager, &WindowsShareManager::permanentMountFailure);
    QSignalSpy retrying(&manager, &WindowsShareManager::serverDetectionRetrying);
    manager.start();
    QCOMPARE(failure.count(), 1);
    QVERIFY(failure.at(0).at(0).toString().contains(QLatin1String("invalid")));
    QCOMPARE(retrying.count(), 0);
}

void TestWindowsShareManager::attemptsEndInPermanentFailure()
{
    if (WindowsShareManager::fuseHelperProgram().isEmpty())
        QSKIP("the mount helper station-smbmount is not built");
    // A server that answers on TCP but speaks no SMB: detection succeeds, every mount fails.
    QTcpServer mute;
    QVERIFY(mute.listen(QHostAddress::LocalHost));
    connect(&mute, &QTcpServer::newConnection, &mute, [&mute]() {
        while (QTcpSocket* connection = mute.nextPendingConnection()) {
            connection->close();
            connection->deleteLater();
        }
    });
    PreConfiguration::setParameter(QStringLiteral("shareMountBackend"), QStringLiteral("fuse"));
    const QString mountPoint = m_dir.filePath(QStringLiteral("D"));
    WindowsShareManager manager(QStringLiteral("127.0.0.1:%1").arg(mute.serverPort()), QString(),
                                QStringLiteral("operator"), QStringLiteral("pw"), QStringLiteral("data"), mountPoint,
                                QStringLiteral("D"), 1000);
    manager.setMaxMountAttempts(2);
    manager.setMountAttemptIntervalMs(50);
    QSignalSpy responded(&manager, &WindowsShareManager::serverResponded);
    QSignalSpy started(&manager, &WindowsShareManager::mountAttemptStarted);
    QSignalSpy failed(&manager, &WindowsShareManager::mountAttemptFailed);
    QSignalSpy permanent(&manager, &WindowsShareManager::permanentMountFailure);
    manager.start();

    QVERIFY(permanent.wait(30000));
    QCOMPARE(responded.count(), 1);
    QCOMPARE(started.count(), 2);
    QCOMPARE(started.at(0), (QList<QVariant> {1, 2}));
    QCOMPARE(started.at(1), (QList<QVariant> {2, 2}));
    QCOMPARE(failed.count(), 2);
    QCOMPARE(failed.at(1).at(1).toInt(), 2);
    const QString reason = permanent.at(0).at(0).toString();
    QVERIFY(!reason.isEmpty());
    QCOMPARE(failed.at(1).at(2).toString(), reason);
    QVERIFY(!manager.isMounted());
    // The mount point it created is gone again.
    QVERIFY(!QFileInfo::exists(mountPoint));
}

void TestWindowsShareManager::cifsAttemptLeavesNoCredentialsFile()
{
    // Whatever mount says (no kernel client here, or no SMB on the port), the attempt fails
    // with its words and the temporary credentials file is gone afterwards.
    QTcpServer mute;
    QVERIFY(mute.listen(QHostAddress::LocalHost));
    connect(&mute, &QTcpServer::newConnection, &mute, [&mute]() {
        while (QTcpSocket* connection = mute.nextPendingConnection()) {
            connection->close();
            connection->deleteLater();
        }
    });
    QTemporaryDir temp;
    QVERIFY(temp.isValid());
    const QByteArray oldTemp = qgetenv("TMPDIR");
    qputenv("TMPDIR", temp.path().toLocal8Bit());
    WindowsShareManager manager(QStringLiteral("127.0.0.1:%1").arg(mute.serverPort()), QStringLiteral("PLANT"),
                                QStringLiteral("operator"), QStringLiteral("Secret123"), QStringLiteral("data"),
                                m_dir.filePath(QStringLiteral("E")), QStringLiteral("E"), 1000);
    manager.setMaxMountAttempts(1);
    QSignalSpy permanent(&manager, &WindowsShareManager::permanentMountFailure);
    manager.start();
    const bool failed = permanent.wait(30000);
    qputenv("TMPDIR", oldTemp);
    QVERIFY(failed);
    QVERIFY(!permanent.at(0).at(0).toString().isEmpty());
    QCOMPARE(QDir(temp.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
    QVERIFY(!manager.isMounted());
}

QTEST_GUILESS_MAIN(TestWindowsShareManager)
#include "tst_windowssharemanager.moc"
