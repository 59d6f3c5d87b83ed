// station-config on the demo station with its network folder pointed at a private Samba
// server: what sync --now and test-share report when the share is really there.
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include "folder.h"
#include "sambaserver.h"
#include "stationtool.h"
#include "utilities/simplecrypt.h"

using Run = ToolRun;

class TestStationConfigShare : public QObject
{
    Q_OBJECT

    SambaServer m_server;
    QTemporaryDir m_dir;
    QString m_station;

    Run run(const QStringList& arguments, const QByteArray& input = QByteArray()) const
    {
        return runTool(QStringLiteral(STATION_CONFIG_BINARY), QStringList{"--station", m_station} + arguments,
                       toolEnvironment(m_dir.path() + "/state"), input);
    }

    bool writeResult(const QString& name, const QByteArray& bytes)
    {
        const QString results = m_station + "/storage/internal/results";
        QFile file(results + '/' + name);
        return QDir().mkpath(results) && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

private slots:
    void initTestCase()
    {
        if (!SambaServer::available() || !QFile::exists("/dev/fuse"))
            QSKIP("needs smbd, /dev/fuse and root");
        QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));

        m_station = m_dir.path() + "/station";
        QVERIFY(copyTree(QStringLiteral(STATION_DEMO_DIR), m_station));
        // The demo's network folder, on this server.
        QFile file(m_station + "/config/settings.json");
        QVERIFY(file.open(QIODevice::ReadWrite));
        QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
        QJsonObject directories = root.value("directories").toObject();
        QJsonArray folders = directories.value("folders").toArray();
        for (int i = 0; i < folders.size(); ++i) {
            QJsonObject folder = folders.at(i).toObject();
            if (folder.value("aliasName") != "Plant_Share")
                continue;
            folder.insert("address", m_server.address());
            folder.insert("path", m_server.shareName());
            folder.insert("identifier", m_server.user());
            folder.insert("password", SimpleCrypt(Folder::C_cryptKey).encryptToString(m_server.password()));
            folders[i] = folder;
        }
        directories.insert("folders", folders);
        root.insert("directories", directories);
        file.resize(0);
        QVERIFY(file.write(QJsonDocument(root).toJson()) > 0);
    }

    void cleanupTestCase() { m_server.stop(); }

    // Each step of the share test, as it passes, and the reason of the step that fails.
    void testShareSteps()
    {
        const Run good = run({"test-share", m_server.address(), m_server.shareName(), "--user", m_server.user()},
                             m_server.password().toUtf8() + "\n");
        QVERIFY2(good.code == 0, qPrintable(good.out + good.err));
        QVERIFY2(QRegularExpression("^server 127.0.0.1:\\d+ +ok\nmount +ok: .+\nwrite +ok: .+\nread +ok\ncompare +ok\ndelete +ok\n$")
                     .match(good.out).hasMatch(), qPrintable(good.out));

        const Run wrong = run({"test-share", m_server.address(), m_server.shareName(), "--user", m_server.user()},
                              "not-the-password\n");
        QCOMPARE(wrong.code, 1);
        QVERIFY2(QRegularExpression("^server 127.0.0.1:\\d+ +ok\nmount +FAILED: .+\n$")
                     .match(wrong.out).hasMatch(), qPrintable(wrong.out));
    }

    // A pass copies what changed and skips the rest; the summary counts both, and the work the
    // pass had before it began.
    void syncSummary()
    {
        QVERIFY(writeResult("cycle-001.db", QByteArray(2048, 'a')));
        QVERIFY(writeResult("cycle-002.db", QByteArray(1024, 'b')));
        const Run first = run({"sync", "--now"});
        QVERIFY2(first.code == 0, qPrintable(first.out + first.err));
        QVERIFY2(QRegularExpression("^results -> Plant_Share: 2 copied \\(0.0 MB\\), 0 skipped, 0 failed, \\d+\\.\\d s\n$")
                     .match(first.out).hasMatch(), qPrintable(first.out));
        QVERIFY2(first.err.isEmpty(), qPrintable(first.err));
        QVERIFY(QFile::exists(m_server.shareDirectory() + "/cycle-001.db"));

        QVERIFY(writeResult("cycle-003.db", "c"));
        const Run second = run({"sync", "--now", "--json"});
        QCOMPARE(second.code, 0);
        const QJsonObject pass = QJsonDocument::fromJson(second.out.toUtf8()).object().value("pass").toArray().at(0).toObject();
        QCOMPARE(pass.value("copied").toInt(), 1);
        // The pass's own work (what the progress counts): only the new file.
        QCOMPARE(pass.value("pending").toInt(), 1);
        QCOMPARE(pass.value("skipped").toInt(), 2);
        QCOMPARE(pass.value("failed").toInt(), 0);
        QCOMPARE(pass.value("unreachable").toBool(), false);
        QCOMPARE(pass.value("copiedBytes").toInt(), 1);
    }

    // While waiting, the share's state changes are printed; it settles before the time-out.
    void foldersWaitSettles()
    {
        const Run result = run({"folders", "--wait", "30"});
        QVERIFY2(result.code == 0, qPrintable(result.out + result.err));
        QVERIFY2(result.out.contains(QRegularExpression("^ +\\d+\\.\\d s  Plant_Share: ", QRegularExpression::MultilineOption)),
                 qPrintable(result.out));
        QVERIFY2(result.out.contains(QRegularExpression("Plant_Share +ext://[^\n]* yes\n")), qPrintable(result.out));
    }
};

QTEST_GUILESS_MAIN(TestStationConfigShare)
#include "tst_stationconfigshare.moc"
