// scripts/demo.sh's story (without set-up and build) on a copy of the demo station whose network
// folder is served on a free loopback port: what it tells, and that it leaves no server process
// and no mount behind.
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <signal.h>

#include "sambaserver.h"
#include "stationtool.h"

class TestDemo : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    quint16 m_port = 0;

    QString station() const { return m_dir->path() + "/station"; }

    ToolRun runDemo(const QStringList& arguments) const
    {
        QProcessEnvironment environment = toolEnvironment(m_dir->path() + "/state");
        environment.insert("DEMO_SKIP_BUILD", "1");
        environment.insert("BUILD_DIR", QStringLiteral(DEMO_BUILD_DIR));
        environment.insert("STATION_DIR", station());
        environment.insert("TMPDIR", m_dir->path());
        return runTool("bash", QStringList{QStringLiteral(DEMO_SCRIPT)} + arguments, environment, {}, 180000);
    }

    // Processes naming the test's directory (command line or an open file) and mounts under it.
    QStringList leftovers() const
    {
        const QString root = m_dir->path() + '/';
        QStringList found;
        const QStringList entries = QDir("/proc").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString& entry : entries) {
            bool isPid = false;
            const qint64 pid = entry.toLongLong(&isPid);
            if (!isPid || pid == QCoreApplication::applicationPid())
                continue;
            QFile cmdline("/proc/" + entry + "/cmdline");
            bool names = cmdline.open(QIODevice::ReadOnly) && cmdline.readAll().contains(root.toUtf8());
            const QFileInfoList descriptors = QDir("/proc/" + entry + "/fd").entryInfoList(QDir::System | QDir::NoDotAndDotDot);
            for (const QFileInfo& descriptor : descriptors)
                names = names || descriptor.symLinkTarget().startsWith(root);
            if (names)
                found << "process " + entry;
        }
        QFile mounts("/proc/mounts");
        if (mounts.open(QIODevice::ReadOnly)) {
            for (const QByteArray& line : mounts.readAll().split('\n')) {
                if (line.split(' ').value(1).startsWith(root.toUtf8()))
                    found << "mount " + QString::fromUtf8(line);
            }
        }
        return found;
    }

private slots:
    void initTestCase()
    {
        if (!SambaServer::available() || !QFile::exists("/dev/fuse"))
            QSKIP("needs smbd, /dev/fuse and root");
    }

    // A fresh station per case, its Plant_Share on a port nobody uses.
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(copyTree(QStringLiteral(STATION_DEMO_DIR), station()));
        QTcpServer probe;
        QVERIFY(probe.listen(QHostAddress::LocalHost));
        m_port = probe.serverPort();
        probe.close();
        QFile file(station() + "/config/settings.json");
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray document = file.readAll().replace("127.0.0.1:1445", "127.0.0.1:" + QByteArray::number(m_port));
        file.resize(0);
        QVERIFY(file.write(document) == document.size());
    }

    // After a failed case: no server or mount outlives it to disturb the next.
    void cleanup()
    {
        for (const QString& left : leftovers()) {
            if (left.startsWith("process "))
                ::kill(left.mid(8).toInt(), SIGKILL);
            else
                runTool("umount", {"-l", left.split(' ').value(2)}, QProcessEnvironment::systemEnvironment());
        }
    }

    void story_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("portTaken");
        QTest::addColumn<QStringList>("told");
        QTest::addColumn<bool>("serverLeftUp");

        QTest::newRow("the station at work")
            << QStringList{} << false
            << QStringList{"Plant_Share +ext://[^\n]* yes\n", "\n +compare +ok\n", "\n +delete +ok\n",
                           "\n +results -> Plant_Share: 4 copied \\(0.0 MB\\), 0 skipped, 0 failed",
                           "on the share \\(4 files\\):\n +2026-11-02/GB00412871_gearbox_housing_front.json\n",
                           "\n== Server stopped, nothing left mounted\n$"}
            << false;
        QTest::newRow("port taken by another program")
            << QStringList{} << true
            << QStringList{"\nNo server for Plant_Share: 127.0.0.1:\\d+ is already in use by another program",
                           "Plant_Share +ext://[^\n]* no"}
            << false;
        QTest::newRow("kept running, then stopped as told")
            << QStringList{"--keep-running"} << false
            << QStringList{"\n +results -> Plant_Share: 4 copied", "\n  stop the server: +(sudo )?sh \\S+/stop\n$"}
            << true;
    }

    void story()
    {
        QFETCH(QStringList, arguments);
        QFETCH(bool, portTaken);
        QFETCH(QStringList, told);
        QFETCH(bool, serverLeftUp);

        QTcpServer squatter;
        if (portTaken)
            QVERIFY(squatter.listen(QHostAddress::LocalHost, m_port));
        const ToolRun run = runDemo(arguments);
        const QString output = run.out + run.err;
        QVERIFY2(run.code == 0, qPrintable(output));
        for (const QString& pattern : told)
            QVERIFY2(output.contains(QRegularExpression(pattern)), qPrintable(pattern + "\nnot in:\n" + output));

        if (serverLeftUp) {
            QTcpSocket client;
            client.connectToHost(QHostAddress::LocalHost, m_port);
            QVERIFY2(client.waitForConnected(5000), "the server kept running does not answer");
            client.abort();
            const QString stop = QRegularExpression("stop the server: +(.*)\n").match(output).captured(1);
            const ToolRun stopped = runTool("bash", {"-c", stop}, QProcessEnvironment::systemEnvironment());
            QVERIFY2(stopped.code == 0, qPrintable(stop + " failed: " + stopped.out + stopped.err));
        }
        QTRY_VERIFY2_WITH_TIMEOUT(leftovers().isEmpty(), qPrintable(leftovers().join('\n')), 10000);
    }
};

QTEST_GUILESS_MAIN(TestDemo)
#include "tst_demo.moc"
