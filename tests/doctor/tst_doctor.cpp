// station-config doctor on copies of a healthy station, each with one fault: the check that
// reports it, its level, the exit code, and the station tree unchanged by the diagnosis.
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "doctorstation.h"

using namespace DoctorStation;

namespace {
// A loopback port that nothing listens on: bound once by the system's choice, then closed.
quint16 closedPort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    quint16 port = 0;
    if (fd >= 0 && ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0
        && ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    if (fd >= 0)
        ::close(fd);
    return port;
}

// Overwrites `count` bytes of a file at `offset`.
bool scribble(const QString& path, qint64 offset, int count)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) && file.seek(offset) && file.write(QByteArray(count, '\xA5')) == count;
}
}

using Fault = std::function<bool(const QString& station)>;
Q_DECLARE_METATYPE(Fault)

class TestDoctor : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_base;   // a healthy station: document saved once (so a version is kept), sync database
    int m_copies = 0;

    QString state() const { return m_dir.path() + "/state"; }

    QString freshCopy()
    {
        const QString station = m_dir.path() + QStringLiteral("/station-%1").arg(++m_copies);
        return copyTree(m_base, station, true) ? station : QString();
    }

    // Runs doctor --json and doctor; checks that both agree and that nothing changed.
    void diagnose(const QString& station, Run& json, Run& text)
    {
        const QMap<QString, QString> before = fingerprint(station);
        json = run(station, state(), { "doctor", "--json" });
        text = run(station, state(), { "doctor" });
        const QMap<QString, QString> after = fingerprint(station);
        QVERIFY(!before.isEmpty());
        for (auto it = before.begin(); it != before.end(); ++it)
            QVERIFY2(after.value(it.key()) == it.value(), qPrintable("changed: " + it.key()));
        for (auto it = after.begin(); it != after.end(); ++it)
            QVERIFY2(before.contains(it.key()), qPrintable("created: " + it.key()));
        QVERIFY2(!json.json.isEmpty(), qPrintable(json.out + json.err));
        QCOMPARE(json.code, text.code);
        // Every check is a line "LEVEL   NAME: MESSAGE" of the plain output, in the same order.
        int from = 0;
        for (const QJsonValue& value : json.json.value("checks").toArray()) {
            const QJsonObject row = value.toObject();
            const QRegularExpression line(QStringLiteral("^%1 +%2: .+$")
                                              .arg(row.value("level").toString(), QRegularExpression::escape(row.value("check").toString())),
                                          QRegularExpression::MultilineOption);
            const QRegularExpressionMatch match = line.match(text.out, from);
            QVERIFY2(match.hasMatch(), qPrintable(row.value("check").toString() + " not in:\n" + text.out));
            from = match.capturedEnd();
        }
        int errors = 0;
        for (const QJsonValue& value : json.json.value("checks").toArray())
            errors += value.toObject().value("level").toString() == "error";
        QCOMPARE(json.json.value("errors").toInt(), errors);
        QCOMPARE(json.code, errors > 0 ? 1 : 0);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_base = m_dir.path() + "/base";
        QVERIFY(copyTree(QStringLiteral(STATION_DEMO_DIR), m_base, true));
        const QString document = m_base + "/config/settings.json";
        QVERIFY(QFile::setPermissions(document, QFile::ReadOwner | QFile::WriteOwner));
        // The demo's share is replaced by none here (tst_doctorshare has a server).
        QVERIFY(setShares(document, {}));
        // One save through the tool: a kept version, and the folders the station makes.
        const Run saved = run(m_base, state(), { "set", "general.sound_volume", "40" });
        QVERIFY2(saved.code == 0, qPrintable(saved.out + saved.err));
        QVERIFY(QDir().mkpath(m_base + "/storage/internal/results"));
        QVERIFY(writeSyncDatabase(m_base + "/storage/sync.db", 400));
    }

    void healthy()
    {
        const QString station = freshCopy();
        QVERIFY(!station.isEmpty());
        Run json, text;
        diagnose(station, json, text);
        QVERIFY2(json.code == 0, qPrintable(text.out + text.err));
        QVERIFY2(notOk(json.json).isEmpty(), qPrintable(text.out));
        for (const char* name : { "preconfiguration", "document", "document-mode", "document-history", "storage-root",
                                  "removable-medium", "sync-database", "sync-last-pass", "sync-pending", "trash",
                                  "timezone-program", "compositor", "temporary-files" })
            QVERIFY2(!check(json.json, name).isEmpty(), name);
        QVERIFY2(check(json.json, "sync-database").value("message").toString().contains("400 file(s) recorded"),
                 qPrintable(text.out));
        QVERIFY2(text.out.endsWith("0 error(s), 0 warning(s)\n"), qPrintable(text.out));
    }

    // Files of a mirrored role that the database does not record as they are now are pending.
    void pendingFiles()
    {
        const QString station = freshCopy();
        QVERIFY(!station.isEmpty());
        const QString document = station + "/config/settings.json";
        QJsonObject root = readJson(document);
        QJsonObject directories = root.value("directories").toObject();
        QString archive;
        for (const QJsonValue& folder : directories.value("folders").toArray()) {
            if (folder.toObject().value("aliasName").toString() == "Archive")
                archive = folder.toObject().value("id").toString();
        }
        QVERIFY(!archive.isEmpty());
        directories.insert("foldersRoles", QJsonObject { { "results", archive } });
        root.insert("directories", directories);
        QVERIFY(writeJson(document, root));

        // Three results: one copied as it is, one changed since its copy, one never copied.
        const QString results = station + "/storage/internal/results";
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(1700000000000);
        for (const char* name : { "copied.db", "changed.db", "new.db" }) {
            QFile file(results + '/' + name);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("12345") == 5 && file.flush());
            QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
        }
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "pending");
            db.setDatabaseName(station + "/storage/sync.db");
            QVERIFY(db.open());
            QSqlQuery query(db);
            QVERIFY(query.exec("INSERT INTO files VALUES ('results', 'copied.db', '/share', 5, 1700000000000, 5, 1700000000000)"));
            QVERIFY(query.exec("INSERT INTO files VALUES ('results', 'changed.db', '/share', 4, 1700000000000, 4, 1700000000000)"));
            db.close();
        }
        QSqlDatabase::removeDatabase("pending");

        Run json, text;
        diagnose(station, json, text);
        QCOMPARE(json.code, 0);
        QCOMPARE(check(json.json, "sync-pending").value("message").toString(), QString("2 file(s) waiting for the next pass"));
    }

    void fault_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::addColumn<QString>("check");
        QTest::addColumn<QString>("level");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");   // pattern of the check's message

        QTest::newRow("document unusable") << Fault([](const QString& s) {
            QFile file(s + "/config/settings.json");
            return file.open(QIODevice::ReadWrite) && file.resize(0) && file.write("{ \"general\": { \"sound_volume\": 4") > 0;
        }) << "document" << "error" << 1 << "settings.json: .*line 1";
        QTest::newRow("document readable by others") << Fault([](const QString& s) {
            return QFile::setPermissions(s + "/config/settings.json", QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        }) << "document-mode" << "warning" << 0 << "^mode 0644";
        QTest::newRow("no history") << Fault([](const QString& s) {
            return QDir(s + "/config/settings.json.history").removeRecursively();
        }) << "document-history" << "warning" << 0 << "no kept versions";
        QTest::newRow("storage root missing") << Fault([](const QString& s) {
            return QDir(s + "/storage/internal").removeRecursively();
        }) << "storage-root" << "error" << 1 << "storage/internal does not exist";
        QTest::newRow("storage root not writable") << Fault([](const QString& s) {
            const QString root = s + "/storage/internal";
            if (::geteuid() != 0)
                return QFile::setPermissions(root, QFile::ReadOwner | QFile::ExeOwner);
            // Root writes anywhere but on a read-only file system.
            return QProcess::execute("mount", { "-t", "tmpfs", "-o", "ro,size=1m", "tmpfs", root }) == 0;
        }) << "storage-root" << "error" << 1 << "is not writable: (Read-only file system|Permission denied)";
        QTest::newRow("server unreachable") << Fault([](const QString& s) {
            const quint16 port = closedPort();
            return port != 0 && setShares(s + "/config/settings.json", { QJsonObject {
                { "id", "{0b7c1d2e-3f40-4a51-8b62-7c83d94ea5f6}" }, { "type", "samba" }, { "aliasName", "Line_Share" },
                { "path", "station" }, { "address", QStringLiteral("127.0.0.1:%1").arg(port) },
                { "identifier", "operator" }, { "password", "" }, { "enabled", true } } });
        }) << "share:Line_Share:server" << "error" << 1 << "^127\\.0\\.0\\.1:\\d+ not reachable: Connection refused";
        QTest::newRow("sync database corrupted") << Fault([](const QString& s) {
            // The header stays; pages of the table are overwritten.
            const QString path = s + "/storage/sync.db";
            return QFileInfo(path).size() > 16384 && scribble(path, 4096, 12000);
        }) << "sync-database" << "error" << 1 << "sync\\.db is corrupted: .+";
        QTest::newRow("stale sync temporaries") << Fault([](const QString& s) {
            QFile file(s + "/storage/internal/results/.dsync-4k2j9q.part");
            // Flushed first: a write still buffered would set the time again when it lands.
            return file.open(QIODevice::WriteOnly) && file.write("partial") == 7 && file.flush()
                && file.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime);
        }) << "temporary-files" << "warning" << 0 << "^1 stale sync temporary .*results/\\.dsync-4k2j9q\\.part";
        QTest::newRow("compositor file missing") << Fault([](const QString& s) {
            return QFile::remove(s + "/etc/weston.ini");
        }) << "compositor" << "error" << 1 << "etc/weston\\.ini not found";
        QTest::newRow("time-zone program missing") << Fault([](const QString& s) {
            return QFile::remove(s + "/bin/timedatectl-preview");
        }) << "timezone-program" << "error" << 1 << "bin/timedatectl-preview not found";
    }

    // The fault is the one check that is not ok, at its level, with the exit code it implies.
    void fault()
    {
        QFETCH(Fault, fault);
        QFETCH(QString, check);
        QFETCH(QString, level);
        QFETCH(int, code);
        QFETCH(QString, message);

        const QString station = freshCopy();
        QVERIFY(!station.isEmpty());
        // A read-only file system mounted for a fault goes away however the row ends.
        struct Unmount {
            QString path;
            ~Unmount() { if (!path.isEmpty()) QProcess::execute("umount", { "-l", path }); }
        } unmount;
        if (QString(QTest::currentDataTag()) == "storage root not writable" && ::geteuid() == 0)
            unmount.path = station + "/storage/internal";
        QVERIFY2(fault(station), "the fault could not be injected");
        Run json, text;
        diagnose(station, json, text);
        if (QTest::currentTestFailed())
            return;
        const QJsonObject row = DoctorStation::check(json.json, check);
        QVERIFY2(!row.isEmpty(), qPrintable(text.out));
        QCOMPARE(row.value("level").toString(), level);
        QVERIFY2(QRegularExpression(message).match(row.value("message").toString()).hasMatch(),
                 qPrintable(row.value("message").toString()));
        QVERIFY2(!row.value("advice").toString().isEmpty(), qPrintable(text.out));
        QCOMPARE(notOk(json.json), QStringList { check + '=' + level });
        QCOMPARE(json.code, code);
    }
};

QTEST_GUILESS_MAIN(TestDoctor)
#include "tst_doctor.moc"
