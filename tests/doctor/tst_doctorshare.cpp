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

    void diagnosis_data()
    {
        QTest::addColumn<bool>("rightPassword");
        QTest::addColumn<QString>("mounted");            // "", "rw" or "ro"
        QTest::addColumn<int>("code");
        QTest::addColumn<QStringList>("notOk");          // "check=level" of every check not ok
        QTest::addColumn<QString>("checkName");          // a check whose message holds `message`
        QTest::addColumn<QString>("message");
        // The station is not running, so nothing mounts the share: that alone is a warning.
        QTest::newRow("healthy, not mounted") << true << "" << 0
                                              << QStringList { "share:Plant_Share:mounted=warning" }
                                              << "share:Plant_Share:credentials" << "";
        QTest::newRow("healthy, mounted") << true << "rw" << 0 << QStringList()
                                          << "share:Plant_Share:mounted" << "fuse";
        QTest::newRow("mounted read-only") << true << "ro" << 1
                                           << QStringList { "share:Plant_Share:writable=error" }
                                           << "share:Plant_Share:writable" << "Read-only file system";
        QTest::newRow("wrong password") << false << "" << 1
                                        << QStringList { "share:Plant_Share:credentials=error", "share:Plant_Share:mounted=warning" }
                                        << "share:Plant_Share:credentials" << "refused (NT_STATUS_LOGON_FAILURE)";
    }

    void diagnosis()
    {
        QFETCH(bool, rightPassword);
        QFETCH(QString, mounted);
        QFETCH(int, code);
        QFETCH(QStringList, notOk);
        QFETCH(QString, checkName);
        QFETCH(QString, message);
        if (!mounted.isEmpty() && !QFile::exists("/dev/fuse"))
            QSKIP("needs /dev/fuse");
        const QString path = station(rightPassword ? m_server.password() : QStringLiteral("not-the-password"));
        QVERIFY(!path.isEmpty());
        Mount share;
        if (!mounted.isEmpty()) {
            QVERIFY2(mount(share, path, mounted == "ro" ? QStringList { "-o", "ro" } : QStringList()),
                     qPrintable(QString::fromUtf8(share.helper.readAllStandardError())));
        }
        const Run result = diagnose(path);
        QVERIFY2(result.code == code, qPrintable(result.out + result.err));
        QCOMPARE(DoctorStation::notOk(result.json), notOk);
        QVERIFY2(check(result.json, checkName).value("message").toString().contains(message), qPrintable(result.out));
    }
};

QTEST_GUILESS_MAIN(TestDoctorShare)
#include "tst_doctorshare.moc"
