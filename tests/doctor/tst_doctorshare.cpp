// station-config doctor on a station whose network folder is on a private Samba server: the
// server reached and the login accepted; with a wrong password, the login refused (exit 1).
#include <QTemporaryDir>
#include <QtTest>

#include "doctorstation.h"
#include "folder.h"
#include "sambaserver.h"
#include "utilities/simplecrypt.h"

using namespace DoctorStation;

// A share mounted by the station's own mount helper, unmounted at the end of its scope.
struct Mount {
    QProcess helper;
    QString path;
    ~Mount()
    {
        if (path.isEmpty())
            return;
        QProcess::execute("fusermount3", { "-u", "-z", path });
        helper.terminate();
        if (!helper.waitForFinished(10000))
            helper.kill();
        helper.waitForFinished();
    }
};

class TestDoctorShare : public QObject
{
    Q_OBJECT

    SambaServer m_server;
    QTemporaryDir m_dir;
    int m_copies = 0;

    QString state() const { return m_dir.path() + "/state"; }

    // A station whose one network folder is on the server, with this password.
    QString station(const QString& password)
    {
        const QString station = m_dir.path() + QStringLiteral("/station-%1").arg(++m_copies);
        if (!copyTree(QStringLiteral(STATION_DEMO_DIR), station, true))
            return QString();
        const QString document = station + "/config/settings.json";
        QFile::setPermissions(document, QFile::ReadOwner | QFile::WriteOwner);
        // One save through the tool keeps a version (before the share exists, so nothing mounts).
        if (!setShares(document, {}) || run(station, state(), { "set", "general.sound_volume", "40" }).code != 0)
            return QString();
        const bool written = setShares(document, { QJsonObject {
            { "id", "{2a9d6c41-7e3b-4f05-8c1a-5b8e0f2d7c36}" }, { "type", "samba" }, { "aliasName", "Plant_Share" },
            { "path", m_server.shareName() }, { "domain", "WORKGROUP" }, { "address", m_server.address() },
            { "identifier", m_server.user() }, { "password", SimpleCrypt(Folder::C_cryptKey).encryptToString(password) },
            { "enabled", true } } });
        return written ? station : QString();
    }

    Run diagnose(const QString& station)
    {
        const QMap<QString, QString> before = fingerprint(station);
        const Run result = run(station, state(), { "doctor", "--json" });
        [&] { QCOMPARE(fingerprint(station), before); }();
        return result;
    }

    // Mounts the share where the station mounts it.
    bool mount(Mount& mount, const QString& station, const QStringList& options)
    {
        mount.path = station + "/storage/mnt/Plant_Share";
        if (!QDir().mkpath(mount.path))
            return false;
        mount.helper.start(QStringLiteral(STATION_SMBMOUNT_BINARY),
                           options + QStringList { "//" + m_server.address() + '/' + m_server.shareName(), mount.path });
        mount.helper.write(("username=" + m_server.user() + "\npassword=" + m_server.password() + "\n").toUtf8());
        mount.helper.closeWriteChannel();
        return mount.helper.waitForReadyRead(30000) && mount.helper.readAllStandardOutput().contains("ready");
    }

private slots:
    void initTestCase()
    {
        if (!SambaServer::available())
            QSKIP("needs smbd and root");
        if (QStandardPaths::findExecutable("smbclient").isEmpty())
            QSKIP("needs smbclient to check a login");
        QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
    }

    void cleanupTestCase() { m_server.stop(); }

    // The station is not running, so nothing mounts the share: that alone is a warning.
    void healthyNotMounted()
    {
        const QString path = station(m_server.password());
        QVERIFY(!path.isEmpty());
        const Run result = diagnose(path);
        QVERIFY2(result.code == 0, qPrintable(result.out + result.err));
        QCOMPARE(check(result.json, "share:Plant_Share:server").value("level").toString(), QString("ok"));
        QCOMPARE(check(result.json, "share:Plant_Share:credentials").value("level").toString(), QString("ok"));
        QCOMPARE(notOk(result.json), QStringList { "share:Plant_Share:mounted=warning" });
    }

    // Mounted: every check ok, mounted and writable included.
    void healthyMounted()
    {
        if (!QFile::exists("/dev/fuse"))
            QSKIP("needs /dev/fuse");
        const QString path = station(m_server.password());
        QVERIFY(!path.isEmpty());
        Mount mounted;
        QVERIFY2(mount(mounted, path, {}), qPrintable(QString::fromUtf8(mounted.helper.readAllStandardError())));
        const Run result = diagnose(path);
        QVERIFY2(result.code == 0, qPrintable(result.out + result.err));
        QVERIFY2(notOk(result.json).isEmpty(), qPrintable(result.out));
        QVERIFY2(check(result.json, "share:Plant_Share:mounted").value("message").toString().contains("fuse"),
                 qPrintable(result.out));
        QCOMPARE(check(result.json, "share:Plant_Share:writable").value("level").toString(), QString("ok"));
    }

    // Mounted read-only: the share cannot take the station's files.
    void mountedReadOnly()
    {
        if (!QFile::exists("/dev/fuse"))
            QSKIP("needs /dev/fuse");
        const QString path = station(m_server.password());
        QVERIFY(!path.isEmpty());
        Mount mounted;
        QVERIFY2(mount(mounted, path, { "-o", "ro" }), qPrintable(QString::fromUtf8(mounted.helper.readAllStandardError())));
        const Run result = diagnose(path);
        QCOMPARE(result.code, 1);
        QCOMPARE(notOk(result.json), QStringList { "share:Plant_Share:writable=error" });
        QVERIFY2(check(result.json, "share:Plant_Share:writable").value("message").toString().endsWith("Read-only file system"),
                 qPrintable(result.out));
    }

    void wrongPassword()
    {
        const QString path = station("not-the-password");
        QVERIFY(!path.isEmpty());
        const Run result = diagnose(path);
        QCOMPARE(result.code, 1);
        const QJsonObject row = check(result.json, "share:Plant_Share:credentials");
        QCOMPARE(row.value("level").toString(), QString("error"));
        QVERIFY2(row.value("message").toString().contains("refused (NT_STATUS_LOGON_FAILURE)"), qPrintable(result.out));
        QCOMPARE(notOk(result.json), QStringList({ "share:Plant_Share:credentials=error", "share:Plant_Share:mounted=warning" }));
    }
};

QTEST_GUILESS_MAIN(TestDoctorShare)
#include "tst_doctorshare.moc"
