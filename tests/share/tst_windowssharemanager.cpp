#include "utilities/windowssharemanager.h"
#include "windowssharemanager_p.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <memory>

class TestWindowsShareManager : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    std::unique_ptr<WindowsShareManager> make(quint16 port, const QString& alias, const QString& domain = QString())
    {
        return std::make_unique<WindowsShareManager>(QString("127.0.0.1:%1").arg(port), domain, "operator",
                                                     "Secret123", "data", m_dir.filePath(alias), alias, 1000);
    }

private Q_SLOTS:
    void readsAddressAndSharePath_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("sharePath");
        QTest::addColumn<QString>("expected"); // host:port share|subdirectory valid
        QTest::newRow("plain host uses port 445") << "fileserver" << "results" << "fileserver:445 results| 1";
        QTest::newRow("host:port selects the port") << "127.0.0.1:1445" << "results" << "127.0.0.1:1445 results| 1";
        QTest::newRow("path below the share") << "fileserver" << "/results/line2/" << "fileserver:445 results|line2 1";
        QTest::newRow("backslash") << "\\\\fileserver" << "results\\line2\\day" << "fileserver:445 results|line2/day 1";
        QTest::newRow("share given in the address") << "//fileserver:139/media" << "" << "fileserver:139 media| 1";
        QTest::newRow("smb url") << "smb://fileserver" << "data" << "fileserver:445 data| 1";
        QTest::newRow("port out of range is invalid") << "fileserver:70000" << "data" << "fileserver:0 data| 0";
        QTest::newRow("no share is invalid") << "fileserver" << "" << "fileserver:445 | 0";
        QTest::newRow("no host is invalid") << "" << "data" << ":445 data| 0";
    }
    void readsAddressAndSharePath()
    {
        QFETCH(QString, address);
        QFETCH(QString, sharePath);
        const ShareMount::Target t = ShareMount::parseTarget(address, sharePath);
        const QString seen = QStringLiteral("%1:%2 %3|%4 %5").arg(t.host).arg(t.port).arg(t.share, t.subdirectory);
        QTEST(seen.arg(int(t.isValid())), "expected");
    }

    void cifsCommandKeepsPasswordOutOfTheCredentialsFile_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("domain");
        QTest::newRow("plain password") << "Secret123" << "";
        QTest::newRow("password with option separators") << "a,b=c d" << "PLANT";
        QTest::newRow("password looking like a path") << "/mnt/x" << "";
        QTest::newRow("line break refused: it would end the password early") << "pw\nusername=root" << "";
        QTest::newRow("longer than mount.cifs holds: refused") << QString(513, QLatin1Char('p')) << "";
    }
    void cifsCommandKeepsPasswordOutOfTheCredentialsFile()
    {
        QFETCH(QString, password);
        QFETCH(QString, domain);
        const QString credentials = m_dir.filePath(QStringLiteral("cred"));
        const ShareMount::Command command = ShareMount::cifsMountCommand(
            ShareMount::parseTarget(QStringLiteral("fileserver:1445"), QStringLiteral("data/sub")),
            QStringLiteral("/mnt/data"), credentials, QStringLiteral("operator"), password, domain);
        if (password.contains('\n') || password.size() > ShareMount::C_maxCifsPasswordBytes) {
            QVERIFY(command.program.isEmpty());
            QVERIFY(command.credentials.isEmpty() && command.password.isEmpty());
            QVERIFY(!command.error.isEmpty());
            return;
        }
        QVERIFY(command.error.isEmpty());
        QVERIFY(command.program.endsWith(QLatin1String("mount")));
        QCOMPARE(command.arguments.mid(0, 4),
                 (QStringList {"-t", "cifs", "//fileserver/data/sub", "/mnt/data"}));
        for (const QString& argument : command.arguments)
            QVERIFY2(!argument.contains(password), qPrintable(argument));
        const QStringList options = command.arguments.last().split(QLatin1Char(','));
        QVERIFY(options.contains(QStringLiteral("credentials=") + credentials));
        QVERIFY(options.contains(QStringLiteral("port=1445")));
        const QList<QByteArray> lines = command.credentials.split('\n');
        QVERIFY(lines.contains("username=operator"));
        QCOMPARE(lines.contains("domain=" + domain.toUtf8()), !domain.isEmpty());
        QVERIFY(!command.credentials.contains(password.toUtf8()));
        QCOMPARE(command.password, password.toUtf8() + '\n');
    }

    void fuseCommandSendsPasswordOnStandardInput()
    {
        const auto target = ShareMount::parseTarget(QStringLiteral("127.0.0.1:1445"), QStringLiteral("data"));
        const ShareMount::Command command = ShareMount::fuseMountCommand(
            "/opt/helper", target, "/mnt/data", "operator", "Secret123", QString());
        QCOMPARE(command.program, QStringLiteral("/opt/helper"));
        QCOMPARE(command.arguments, (QStringList {"//127.0.0.1:1445/data", "/mnt/data"}));
        QVERIFY(command.credentials.contains("password=Secret123\n"));
        const ShareMount::Command missing =
            ShareMount::fuseMountCommand(QString(), target, "/mnt/data", "operator", "x", QString());
        QVERIFY(missing.program.isEmpty());
        QVERIFY(!missing.error.isEmpty());
    }

    void detectionRetriesOnTheScheduleAndRetryRestartsIt()
    {
        QTcpServer closed; // a loopback port nobody listens on
        QVERIFY(closed.listen(QHostAddress::LocalHost));
        const quint16 port = closed.serverPort();
        closed.close();
        auto manager = make(port, "A");
        manager->setDetectionSchedule({50, 80});
        QSignalSpy started(manager.get(), &WindowsShareManager::serverDetectionStarted);
        QSignalSpy retrying(manager.get(), &WindowsShareManager::serverDetectionRetrying);
        QSignalSpy responded(manager.get(), &WindowsShareManager::serverResponded);
        QSignalSpy attempts(manager.get(), &WindowsShareManager::mountAttemptStarted);
        manager->start();
        QCOMPARE(started.count(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(retrying.count() >= 3, 10000);
        QCOMPARE(retrying.at(0).at(0).toInt(), 50);
        QCOMPARE(retrying.at(1).at(0).toInt(), 80);
        QCOMPARE(retrying.at(2).at(0).toInt(), 80);
        QCOMPARE(started.count(), 1);
        QCOMPARE(responded.count() + attempts.count(), 0);
        QVERIFY(!manager->isMounted());
        QVERIFY(!QFileInfo::exists(m_dir.filePath("A")));
        // A retry probes at once and starts the schedule from the top; start() while detecting does nothing.
        const int before = retrying.count();
        manager->retryConnection();
        QCOMPARE(started.count(), 2);
        QTRY_VERIFY_WITH_TIMEOUT(retrying.count() > before, 10000);
        QCOMPARE(retrying.at(before).at(0).toInt(), 50);
        manager->start();
        QCOMPARE(started.count(), 2);
    }

    // Whatever mount says, the attempt fails with its words and leaves no credentials file.
    void cifsAttemptLeavesNoCredentialsFile()
    {
        QTcpServer mute; // accepts TCP and closes at once: detection succeeds, the mount fails
        connect(&mute, &QTcpServer::newConnection, &mute, [&mute]() {
            while (QTcpSocket* connection = mute.nextPendingConnection())
                connection->close();
        });
        mute.listen(QHostAddress::LocalHost);
        QTemporaryDir temp;
        QVERIFY(mute.isListening() && temp.isValid());
        const QByteArray oldTemp = qgetenv("TMPDIR");
        qputenv("TMPDIR", temp.path().toLocal8Bit());
        auto manager = make(mute.serverPort(), "E", "PLANT");
        manager->setMaxMountAttempts(1);
        QSignalSpy permanent(manager.get(), &WindowsShareManager::permanentMountFailure);
        manager->start();
        const bool failed = permanent.wait(30000);
        qputenv("TMPDIR", oldTemp);
        QVERIFY(failed);
        QVERIFY(!permanent.at(0).at(0).toString().isEmpty());
        QCOMPARE(QDir(temp.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
        QVERIFY(!manager->isMounted());
    }
};

QTEST_GUILESS_MAIN(TestWindowsShareManager)
#include "tst_windowssharemanager.moc"
