// Faults a station meets in the field, driven through station-config as a technician would:
// unusable documents, a full disk, kill -9 in the middle of a save, two writers at once.
#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

#include "stationtool.h"

#include <unistd.h>

namespace {
const QString C_tool = QStringLiteral(STATION_CONFIG_BINARY);
constexpr int C_killTries = 200;
constexpr int C_loopSets = 200;

using Run = ToolRun;

QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray hashOf(const QString& path)
{
    return QCryptographicHash::hash(fileBytes(path), QCryptographicHash::Sha256).toHex();
}

bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    // Flushed here: QFile buffers, and a write that only fails at close would look like success.
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size() && file.flush();
}

// Users and folders held by a document; -1 each when it does not parse.
QPair<int, int> usersAndFolders(const QString& path)
{
    QJsonParseError error;
    const QJsonObject document = QJsonDocument::fromJson(fileBytes(path), &error).object();
    if (error.error != QJsonParseError::NoError)
        return {-1, -1};
    return {document.value("users").toArray().size(),
            document.value("directories").toObject().value("folders").toArray().size()};
}
}

class TestDocumentFaults : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_station;

    QString document() const { return m_station + "/config/settings.json"; }

    Run run(const QStringList& arguments) const
    {
        return runTool(C_tool, QStringList{"--station", m_station} + arguments, QProcessEnvironment::systemEnvironment());
    }

    // A fresh copy of the demo station at m_station.
    bool freshStation()
    {
        m_station = m_dir.path() + "/station";
        QDir(m_station).removeRecursively();
        return copyTree(QStringLiteral(STATION_DEMO_DIR), m_station);
    }

    // The demo document made large with notes the library does not own (kept on every save).
    bool enlargeDocument(int notes)
    {
        QJsonObject root = QJsonDocument::fromJson(fileBytes(document())).object();
        QJsonArray array;
        for (int i = 0; i < notes; ++i)
            array.append(QString("note %1 ").arg(i) + QString(90, QLatin1Char('x')));
        root.insert("plantNotes", array);
        return writeBytes(document(), QJsonDocument(root).toJson());
    }

private slots:
    void init() { QVERIFY(freshStation()); }

    void unusableDocumentIsNeverWritten_data()
    {
        const QByteArray demo = fileBytes(QStringLiteral(STATION_DEMO_DIR) + "/config/settings.json");
        const int volumeLine = demo.left(demo.indexOf("\"sound_volume\"")).count('\n') + 1;
        const int volumeColumn = demo.mid(demo.lastIndexOf('\n', demo.indexOf("\"sound_volume\"")) + 1).indexOf("70,") + 4;
        QByteArray deep = QByteArray("{\"a\":") + QByteArray(100000, '[') + QByteArray(100000, ']') + "}";
        QByteArray latin1 = demo;
        latin1.replace("\"workplace_name\": \"", "\"workplace_name\": \"\xE9");
        QByteArray utf16("\xFF\xFE");
        for (char c : demo) {
            utf16.append(c);
            utf16.append('\0');
        }
        QByteArray comma = demo;
        comma.replace("\"sound_volume\": 70,", "\"sound_volume\": 70,,");

        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<int>("line");
        QTest::addColumn<int>("column");
        QTest::newRow("stray comma") << comma << "not valid JSON" << volumeLine << volumeColumn;
        QTest::newRow("appended garbage") << demo + "}garbage" << "garbage at the end" << demo.count('\n') + 1 << 1;
        QTest::newRow("one Latin-1 byte") << latin1 << "not UTF-8" << 0 << 0;
        QTest::newRow("UTF-16") << utf16 << "UTF-16" << 0 << 0;
        QTest::newRow("nested 100,000 deep") << deep << "too deeply nested" << 1 << 0;
        QTest::newRow("empty file") << QByteArray() << "empty" << 0 << 0;
        QTest::newRow("an array, not an object") << QByteArray("[1, 2]") << "not a JSON object" << 0 << 0;
    }

    // Every command that reads or writes the document refuses with exit 3 and changes no byte.
    void unusableDocumentIsNeverWritten()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        QFETCH(int, line);
        QFETCH(int, column);
        QVERIFY(writeBytes(document(), bytes));
        const QByteArray before = hashOf(document());

        for (const QStringList& command : QList<QStringList>{{"status"}, {"get", "general.sound_volume"},
                                                             {"set", "general.sound_volume", "50"}, {"paths"},
                                                             {"folders", "--json"}}) {
            const Run result = run(command);
            QVERIFY2(result.code == 3, qPrintable(command.join(' ') + ": " + result.err));
            QVERIFY2(result.out.isEmpty(), qPrintable(result.out));
            const QString refusal = result.err.split('\n').filter("station-config:").value(0);
            QVERIFY2(refusal.contains(document()) && refusal.contains(reason) && refusal.contains("nothing was changed"),
                     qPrintable(refusal));
            if (line > 0)
                QVERIFY2(refusal.contains(QString("at line %1, column ").arg(line)), qPrintable(refusal));
            if (column > 0)
                QVERIFY2(refusal.contains(QString("at line %1, column %2").arg(line).arg(column)), qPrintable(refusal));
        }
        QCOMPARE(hashOf(document()), before);
        QVERIFY(!QFileInfo::exists(document() + ".history"));
    }

    // A document its reader may not read is refused too, for a user who is not root.
    void unreadableDocumentIsRefused()
    {
        if (::geteuid() != 0 && ::access("/usr/bin/setpriv", X_OK) != 0)
            QSKIP("needs root (to run the tool as another user) or a non-root run");
        QFile::setPermissions(document(), QFile::WriteOwner);
        const QByteArray before = hashOf(document());
        QStringList command{"set", "general.sound_volume", "50"};
        QProcess process;
        if (::geteuid() == 0) {
            // As nobody, owning the station: the document is then readable only for writing.
            QVERIFY(QProcess::execute("chown", {"-R", "nobody", m_dir.path()}) == 0);
            QFile::setPermissions(m_dir.path(), QFile::permissions(m_dir.path()) | QFile::ExeOther);
            process.start("/usr/bin/setpriv", QStringList{"--reuid=nobody", "--regid=nogroup", "--clear-groups",
                                                          C_tool, "--station", m_station} + command);
        } else {
            process.start(C_tool, QStringList{"--station", m_station} + command);
        }
        QVERIFY(process.waitForFinished(60000));
        const QString error = QString::fromUtf8(process.readAllStandardError());
        if (process.exitCode() != 3 && error.contains("Permission denied") && !error.contains(document()))
            QSKIP("the tool cannot run as nobody from this build directory");
        QCOMPARE(process.exitCode(), 3);
        QVERIFY2(error.contains("cannot be read: Permission denied") && error.contains("nothing was changed"),
                 qPrintable(error));
        QFile::setPermissions(document(), QFile::ReadOwner | QFile::WriteOwner);
        QCOMPARE(hashOf(document()), before);
    }

    void fullDiskKeepsThePreviousDocument()
    {
        if (::geteuid() != 0)
            QSKIP("mounting a small tmpfs needs root");
        const QString disk = m_dir.path() + "/disk";
        QDir().mkpath(disk);
        if (QProcess::execute("mount", {"-t", "tmpfs", "-o", "size=2m", "tmpfs", disk}) != 0)
            QSKIP("tmpfs cannot be mounted here");
        struct Unmount {
            QString path;
            ~Unmount() { QProcess::execute("umount", {"-l", path}); }
        } unmount{disk};

        // The station's configuration directory lives on the small disk.
        const QPair<int, int> expected = usersAndFolders(document());
        const QString config = m_station + "/config";
        QVERIFY(QProcess::execute("cp", {"-a", config + "/.", disk}) == 0);
        QVERIFY(QDir(config).removeRecursively());
        QVERIFY(QFile::link(disk, config));
        QCOMPARE(run({"set", "general.sound_volume", "40"}).code, 0); // history and lock in place

        // Fill the disk, then free 32 KiB: room for a version of the document, not for a 100 KiB one.
        int filler = 0;
        const QByteArray page(4096, 'f');
        while (writeBytes(QString("%1/filler-%2").arg(disk).arg(filler), page))
            ++filler;
        QFile::remove(QString("%1/filler-%2").arg(disk).arg(filler));
        for (int i = 1; i <= 8; ++i)
            QVERIFY(QFile::remove(QString("%1/filler-%2").arg(disk).arg(filler - i)));

        const QByteArray before = hashOf(document());
        const Run full = run({"set", "templates.report_footer", QString(100 * 1024, QLatin1Char('w'))});
        QCOMPARE(full.code, 1);
        QVERIFY2(full.err.contains("cannot write " + document()) || full.err.contains("cannot write " + disk),
                 qPrintable(full.err));
        QVERIFY2(full.err.contains("No space left on device"), qPrintable(full.err));
        QCOMPARE(hashOf(document()), before);
        QCOMPARE(run({"get", "general.sound_volume"}).out.trimmed(), QString("40"));

        for (int i = 0; i < filler; ++i)
            QFile::remove(QString("%1/filler-%2").arg(disk).arg(i));
        QCOMPARE(run({"set", "general.sound_volume", "45"}).code, 0);
        QCOMPARE(usersAndFolders(document()), expected);
        QVERIFY(QFile::remove(config));
    }

    // kill -9 at random points of a save of a 1 MB document: afterwards the document parses,
    // or rollback 0 brings it back; no user or folder is ever lost.
    void killDuringSetLosesNothing()
    {
        QVERIFY(enlargeDocument(10000));
        const QPair<int, int> expected = usersAndFolders(document());
        QVERIFY(expected.first > 0 && expected.second > 0);

        QElapsedTimer clock;
        clock.start();
        QCOMPARE(run({"set", "general.sound_volume", "1"}).code, 0);
        const int fullRunMs = int(clock.elapsed()) + 1;

        const quint32 seed = QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        int killedWhileRunning = 0, torn = 0, restored = 0, lost = 0;
        for (int i = 0; i < C_killTries; ++i) {
            QProcess process;
            process.start(C_tool, {"--station", m_station, "set", "general.sound_volume", QString::number(i)});
            QVERIFY(process.waitForStarted());
            QThread::usleep(random.bounded(fullRunMs * 1000));
            if (process.state() == QProcess::Running)
                ++killedWhileRunning;
            process.kill();
            process.waitForFinished();

            if (usersAndFolders(document()).first < 0) {
                ++torn;
                const Run rollback = run({"rollback", "0"});
                if (rollback.code == 0)
                    ++restored;
                else
                    qWarning() << "rollback 0 failed:" << rollback.err;
            }
            if (usersAndFolders(document()) != expected)
                ++lost;
        }
        qInfo("kill -9 during set (seed %u, full run %d ms): %d tries, %d killed while running, %d documents torn, "
              "%d restored by rollback 0, %d documents lost",
              seed, fullRunMs, C_killTries, killedWhileRunning, torn, restored, lost);
        QCOMPARE(lost, 0);
        QCOMPARE(restored, torn);
    }

    // Two loops of set on different keys, at the same time: both last values, nobody lost.
    void concurrentWritersKeepBothChanges()
    {
        const QPair<int, int> expected = usersAndFolders(document());
        const QString loop = QStringLiteral(
            "fails=0; i=1; while [ $i -le %1 ]; do \"$0\" --station \"$1\" set \"$2\" $i >/dev/null 2>&1 "
            "|| fails=$((fails+1)); i=$((i+1)); done; echo $fails");
        QProcess first, second;
        first.start("sh", {"-c", loop.arg(C_loopSets), C_tool, m_station, "general.sequenceWarningThreshold"});
        second.start("sh", {"-c", loop.arg(C_loopSets), C_tool, m_station, "general.inactivity_timeout"});
        QVERIFY(first.waitForFinished(600000));
        QVERIFY(second.waitForFinished(600000));
        const int failures = first.readAllStandardOutput().trimmed().toInt() + second.readAllStandardOutput().trimmed().toInt();
        const QJsonObject general = QJsonDocument::fromJson(fileBytes(document())).object().value("general").toObject();
        qInfo("two writers, %d sets each: %d failed sets, last values %d and %d, users and folders %d/%d",
              C_loopSets, failures, general.value("sequenceWarningThreshold").toInt(), general.value("inactivity_timeout").toInt(),
              usersAndFolders(document()).first, usersAndFolders(document()).second);
        QCOMPARE(failures, 0);
        QCOMPARE(general.value("sequenceWarningThreshold").toInt(), C_loopSets);
        QCOMPARE(general.value("inactivity_timeout").toInt(), C_loopSets);
        QCOMPARE(usersAndFolders(document()), expected);
    }

    // Versions are kept private, diffed key by key, restored, and a rollback can be undone.
    void rollbackRoundTrip()
    {
        QCOMPARE(run({"set", "general.sound_volume", "11"}).code, 0);
        QCOMPARE(run({"set", "general.sound_volume", "22"}).code, 0);
        QCOMPARE(QFile::permissions(document()) & 0x0077, QFile::Permissions());
        const Run diff = run({"diff", "0"});
        QVERIFY2(diff.out.contains("general.sound_volume: 11 -> 22"), qPrintable(diff.out));
        QVERIFY2(!diff.out.contains("Gearbox"), "a diff shows no stored secret");

        QCOMPARE(run({"rollback", "0"}).code, 0);
        QCOMPARE(run({"get", "general.sound_volume"}).out.trimmed(), QString("11"));
        const Run history = run({"history", "--json"});
        const QJsonArray versions = QJsonDocument::fromJson(history.out.toUtf8()).object().value("versions").toArray();
        QVERIFY(versions.size() >= 3);
        QVERIFY(versions.at(0).toObject().value("reason").toString().startsWith("rollback"));
        QCOMPARE(versions.at(1).toObject().value("changedKeys").toArray(), QJsonArray{"general.sound_volume"});

        QCOMPARE(run({"rollback", "0"}).code, 0); // the rollback itself was recorded: undo it
        QCOMPARE(run({"get", "general.sound_volume"}).out.trimmed(), QString("22"));
        QCOMPARE(run({"rollback", "99"}).code, 1);
        QCOMPARE(run({"rollback", "x"}).code, 2);
    }
};

QTEST_GUILESS_MAIN(TestDocumentFaults)
#include "tst_documentfaults.moc"
