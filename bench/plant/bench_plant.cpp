// The plant load run. Stations (each a plant_station process with its own directory and sync
// database) mirror their result files to their own directory of one private loopback Samba
// share, each through its own mount of it, all at once; then a pass with nothing changed;
// then one `rsync -a` per station onto the same mounts, for comparison; then new files and
// smbd restarted in the middle of that pass. Every file is checked on the server by content
// hash. Prints a table of the figures; exits 1 when a file is lost or a station does not get
// its share back, 77 when smbd or FUSE is missing.
//
// PLANT_STATIONS (20), PLANT_FILES (1000 per station) and PLANT_FILE_KB (10) change the size;
// PLANT_TMPDIR the directory of the stations and the share (/dev/shm when writable).
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include "folder.h"
#include "sambaserver.h"
#include "stationtool.h"
#include "utilities/simplecrypt.h"

namespace {
constexpr int C_shareWaitMs = 120000;
constexpr int C_passWaitMs = 600000;
constexpr int C_sampleEveryMs = 200;
constexpr int C_filesPerFolder = 100;

QElapsedTimer g_clock;

int environmentNumber(const char* name, int fallback)
{
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(name, &ok);
    return ok && value > 0 ? value : fallback;
}

void say(const QString& line)
{
    std::fputs(qPrintable(line + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}

// One station: its directory, its process and what the process last reported.
struct Station {
    QString directory;
    QString results;            // the mirrored local folder
    QString serverSide;         // its directory of the share, on the server's disk
    std::unique_ptr<QProcess> process;
    QByteArray output;
    bool available = false;
    QString mount;
    qint64 availableAt = -1;    // g_clock time of the last change to available
    qint64 lostAt = -1;         // ... and to unavailable
    bool passDone = false;
    int copied = 0;
    int failed = 0;
    int progress = 0;
    int progressCopied = 0;
    qint64 watchFrom = -1;      // from then on, the time of the first file copied
    qint64 copyingAt = -1;
    QHash<QString, QByteArray> hashes; // relative path -> SHA-256 of what was written

    void read()
    {
        output += process->readAllStandardOutput();
        for (int end = output.indexOf('\n'); end >= 0; end = output.indexOf('\n')) {
            const QList<QByteArray> words = output.left(end).split(' ');
            output.remove(0, end + 1);
            if (words.value(0) == "share") {
                available = words.value(1) == "1";
                (available ? availableAt : lostAt) = g_clock.elapsed();
                if (available)
                    mount = QString::fromUtf8(words.value(2));
            } else if (words.value(0) == "progress") {
                progress = words.value(1).toInt() + words.value(2).toInt();
                noteCopied(words.value(1).toInt());
            } else if (words.value(0) == "pass") {
                copied = words.value(1).toInt();
                failed = words.value(2).toInt();
                noteCopied(copied);
                passDone = true;
            }
        }
    }

    void noteCopied(int count)
    {
        if (count > progressCopied && watchFrom >= 0 && copyingAt < 0)
            copyingAt = g_clock.elapsed();
        progressCopied = count;
    }

    void requestPass()
    {
        passDone = false;
        progress = 0;
        progressCopied = 0;
        process->write("pass\n");
    }
};

class PlantRun
{
public:
    bool prepare(int stations, int files, int fileBytes);
    bool startStations();
    void stopStations();

    // Every station's pass at once; the wall time, or -1 when one did not end in time.
    // `duringPass` is called while they run until it returns true (and before they count as ended).
    qint64 passAll(const std::function<bool()>& duringPass = {});
    // One `rsync -a` per station onto its mount; the wall time, or -1 when one failed.
    qint64 rsyncAll();
    // Files not on the server as written: by content, or (quicker) by size only.
    int lostFiles(bool byContent = true) const;
    // Files of a copy under way (".dsync-*") left on the share, by path from the share.
    QStringList temporariesLeft() const;
    // Copies every station's log to a new directory that stays; its path, empty on failure.
    QString keepLogs() const;
    // The time the last station copied its first file after the restart, -1 when one did not.
    qint64 lastCopyingAgain() const;
    void addFiles(const QString& folder, int files);
    struct Restart {
        qint64 stoppedAt = -1;
        qint64 answeringAt = -1;  // smbd accepts connections again
        qint64 availableAt = -1;  // the last station reporting its share back
        int sawLoss = 0;          // stations that reported their share lost
        int copied = 0;           // by the interrupted pass
        int failed = 0;
    };
    bool restartServerMidPass(int newFiles, Restart& restart);

    int copied() const { return sum([](const Station& s) { return s.copied; }); }
    int failed() const { return sum([](const Station& s) { return s.failed; }); }
    int stationCount() const { return int(m_stations.size()); }
    qint64 peakServerKb() const { return m_peakKb; }
    qint64 peakServerProportionalKb() const { return m_peakProportionalKb; }
    int peakServerProcesses() const { return m_peakProcesses; }
    QString error() const { return m_error; }

private:
    int sum(const std::function<int(const Station&)>& value) const
    {
        int total = 0;
        for (const Station& station : m_stations)
            total += value(station);
        return total;
    }
    bool wait(const std::function<bool()>& done, int timeoutMs);
    void sampleServer();
    bool writeStation(Station& station, int index);

    SambaServer m_server;
    QTemporaryDir m_dir;
    std::vector<Station> m_stations;
    int m_fileBytes = 0;
    qint64 m_peakKb = 0;
    qint64 m_peakProportionalKb = 0;
    int m_peakProcesses = 0;
    qint64 m_lastSample = -C_sampleEveryMs;
    QString m_error;
};

bool PlantRun::wait(const std::function<bool()>& done, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    QTimer tick; // wakes the wait below at least this often
    tick.start(50);
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        sampleServer();
    }
    return true;
}

// The resident memory of the server's processes: smbd and every process it forked name its
// configuration file, in the server's own directory, on their command line.
void PlantRun::sampleServer()
{
    if (g_clock.elapsed() - m_lastSample < C_sampleEveryMs)
        return;
    m_lastSample = g_clock.elapsed();
    const QByteArray serverRoot = QFileInfo(m_server.shareDirectory()).path().toUtf8() + '/';
    qint64 kb = 0;
    qint64 proportionalKb = 0;
    int processes = 0;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& entry : entries) {
        QFile cmdline(QStringLiteral("/proc/%1/cmdline").arg(entry));
        if (!cmdline.open(QIODevice::ReadOnly) || !cmdline.readAll().contains(serverRoot))
            continue;
        // Resident and proportional (shared pages divided among their users) sizes.
        QFile rollup(QStringLiteral("/proc/%1/smaps_rollup").arg(entry));
        if (!rollup.open(QIODevice::ReadOnly))
            continue;
        ++processes;
        for (const QByteArray& line : rollup.readAll().split('\n')) {
            const QList<QByteArray> words = line.simplified().split(' ');
            if (words.value(0) == "Rss:")
                kb += words.value(1).toLongLong();
            else if (words.value(0) == "Pss:")
                proportionalKb += words.value(1).toLongLong();
        }
    }
    if (kb > m_peakKb) {
        m_peakKb = kb;
        m_peakProportionalKb = proportionalKb;
        m_peakProcesses = processes;
    }
}

bool PlantRun::writeStation(Station& station, int index)
{
    const QString name = QStringLiteral("station-%1").arg(index + 1, 2, 10, QLatin1Char('0'));
    station.directory = m_dir.path() + QLatin1Char('/') + name;
    station.results = station.directory + QStringLiteral("/storage/internal/results");
    station.serverSide = m_server.shareDirectory() + QLatin1Char('/') + name;
    if (!copyTree(QStringLiteral(STATION_DEMO_DIR), station.directory) || !QDir().mkpath(station.serverSide)
        || !QDir().mkpath(station.results))
        return false;

    // The demo station, its network folder on this server in its own directory, and sync
    // passes only when asked (the longest interval there is).
    QFile file(station.directory + QStringLiteral("/config/settings.json"));
    if (!file.open(QIODevice::ReadWrite))
        return false;
    QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    QJsonObject general = root.value(QStringLiteral("general")).toObject();
    general.insert(QStringLiteral("workplace_name"), name);
    root.insert(QStringLiteral("general"), general);
    QJsonObject sync = root.value(QStringLiteral("sync")).toObject();
    sync.insert(QStringLiteral("interval_ms"), 600000);
    root.insert(QStringLiteral("sync"), sync);
    QJsonObject directories = root.value(QStringLiteral("directories")).toObject();
    QJsonArray folders = directories.value(QStringLiteral("folders")).toArray();
    for (int i = 0; i < folders.size(); ++i) {
        QJsonObject folder = folders.at(i).toObject();
        if (folder.value(QStringLiteral("type")) != QLatin1String("samba"))
            continue;
        folder.insert(QStringLiteral("address"), m_server.address());
        folder.insert(QStringLiteral("path"), m_server.shareName() + QLatin1Char('/') + name);
        folder.insert(QStringLiteral("identifier"), m_server.user());
        folder.insert(QStringLiteral("password"), SimpleCrypt(Folder::C_cryptKey).encryptToString(m_server.password()));
        folders[i] = folder;
    }
    directories.insert(QStringLiteral("folders"), folders);
    root.insert(QStringLiteral("directories"), directories);
    const QByteArray bytes = QJsonDocument(root).toJson();
    file.resize(0);
    return file.write(bytes) == bytes.size();
}

bool PlantRun::prepare(int stations, int files, int fileBytes)
{
    m_fileBytes = fileBytes;
    if (!m_server.start()) {
        m_error = m_server.errorString();
        return false;
    }
    m_stations.resize(stations);
    for (int i = 0; i < stations; ++i) {
        if (!writeStation(m_stations[i], i)) {
            m_error = QStringLiteral("cannot write station %1 in %2").arg(i + 1).arg(m_dir.path());
            return false;
        }
    }
    addFiles(QStringLiteral("day"), files);
    return true;
}

// `files` new files of random bytes per station, in folders of 100 ("<folder>-NN/cycle-NNNN.res").
void PlantRun::addFiles(const QString& folder, int files)
{
    QByteArray bytes(m_fileBytes, Qt::Uninitialized);
    for (Station& station : m_stations) {
        for (int n = 0; n < files; ++n) {
            const QString relative = QStringLiteral("%1-%2/cycle-%3.res")
                                         .arg(folder).arg(n / C_filesPerFolder + 1, 2, 10, QLatin1Char('0'))
                                         .arg(n + 1, 4, 10, QLatin1Char('0'));
            QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
            QDir().mkpath(QFileInfo(station.results + QLatin1Char('/') + relative).path());
            QFile file(station.results + QLatin1Char('/') + relative);
            if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size())
                station.hashes.insert(relative, QCryptographicHash::hash(bytes, QCryptographicHash::Sha256));
        }
    }
}

bool PlantRun::startStations()
{
    for (Station& station : m_stations) {
        station.process = std::make_unique<QProcess>();
        station.process->setStandardErrorFile(station.directory + QStringLiteral("/plant_station.log"));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_STATE_HOME"), station.directory + QStringLiteral("/state"));
        station.process->setProcessEnvironment(environment);
        QObject::connect(station.process.get(), &QProcess::readyReadStandardOutput, [&station] { station.read(); });
        station.process->start(QStringLiteral(PLANT_STATION_BINARY), {station.directory});
    }
    const bool up = wait([this] {
        for (const Station& station : m_stations) {
            if (!station.available)
                return false;
        }
        return true;
    }, C_shareWaitMs);
    if (!up)
        m_error = QStringLiteral("not every station got its share within %1 s").arg(C_shareWaitMs / 1000);
    return up;
}

void PlantRun::stopStations()
{
    for (Station& station : m_stations) {
        if (!station.process)
            continue;
        station.process->closeWriteChannel();
        if (!station.process->waitForFinished(30000)) {
            station.process->kill();
            station.process->waitForFinished(5000);
        }
    }
}

qint64 PlantRun::passAll(const std::function<bool()>& duringPass)
{
    const qint64 start = g_clock.elapsed();
    for (Station& station : m_stations)
        station.requestPass();
    bool hookDone = !duringPass;
    const bool ended = wait([&] {
        if (!hookDone)
            hookDone = duringPass();
        for (const Station& station : m_stations) {
            if (!station.passDone)
                return false;
        }
        return hookDone;
    }, C_passWaitMs);
    return ended ? g_clock.elapsed() - start : -1;
}

qint64 PlantRun::rsyncAll()
{
    std::vector<std::unique_ptr<QProcess>> runs;
    const qint64 start = g_clock.elapsed();
    for (const Station& station : m_stations) {
        runs.push_back(std::make_unique<QProcess>());
        runs.back()->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        runs.back()->start(QStringLiteral("rsync"), {QStringLiteral("-a"), station.results + QLatin1Char('/'),
                                                     station.mount + QStringLiteral("/rsync/")});
    }
    bool ok = wait([&runs] {
        for (const auto& run : runs) {
            if (run->state() != QProcess::NotRunning)
                return false;
        }
        return true;
    }, C_passWaitMs);
    for (const auto& run : runs)
        ok = ok && run->exitStatus() == QProcess::NormalExit && run->exitCode() == 0;
    return ok ? g_clock.elapsed() - start : -1;
}

QStringList PlantRun::temporariesLeft() const
{
    QStringList found;
    const QDir share(m_server.shareDirectory());
    for (const Station& station : m_stations) {
        QDirIterator it(station.serverSide, {QStringLiteral(".dsync-*")}, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext())
            found << share.relativeFilePath(it.next());
    }
    return found;
}

QString PlantRun::keepLogs() const
{
    QTemporaryDir kept(QDir::tempPath() + QStringLiteral("/bench_plant-logs-XXXXXX"));
    if (!kept.isValid())
        return QString();
    kept.setAutoRemove(false);
    for (const Station& station : m_stations)
        QFile::copy(station.directory + QStringLiteral("/plant_station.log"),
                    kept.path() + QLatin1Char('/') + QFileInfo(station.directory).fileName() + QStringLiteral(".log"));
    return kept.path();
}

qint64 PlantRun::lastCopyingAgain() const
{
    qint64 last = 0;
    for (const Station& station : m_stations) {
        if (station.copyingAt < 0)
            return -1;
        last = qMax(last, station.copyingAt);
    }
    return last;
}

int PlantRun::lostFiles(bool byContent) const
{
    int lost = 0;
    for (const Station& station : m_stations) {
        for (auto it = station.hashes.cbegin(); it != station.hashes.cend(); ++it) {
            QFile file(station.serverSide + QLatin1Char('/') + it.key());
            if (!byContent) {
                lost += file.size() == m_fileBytes ? 0 : 1;
                continue;
            }
            if (!file.open(QIODevice::ReadOnly) || QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256) != it.value())
                ++lost;
        }
    }
    return lost;
}

// Restarts smbd once a fifth of the `newFiles` of each station are copied, then waits for the
// pass to end and for every station to report its share available.
bool PlantRun::restartServerMidPass(int newFiles, Restart& restart)
{
    const qint64 pass = passAll([&] {
        if (sum([](const Station& s) { return s.progress; }) * 5 < stationCount() * newFiles)
            return false;
        restart.stoppedAt = g_clock.elapsed();
        m_server.stop();
        if (!m_server.start())
            m_error = QStringLiteral("smbd did not start again: ") + m_server.errorString();
        restart.answeringAt = g_clock.elapsed();
        for (Station& station : m_stations) {
            station.watchFrom = restart.answeringAt;
            station.copyingAt = -1;
        }
        return true;
    });
    if (pass < 0 || !m_error.isEmpty()) {
        if (m_error.isEmpty())
            m_error = QStringLiteral("the pass during the restart did not end");
        return false;
    }
    restart.copied = copied();
    restart.failed = failed();
    const bool back = wait([&] {
        for (const Station& station : m_stations) {
            if (!station.available)
                return false;
        }
        return true;
    }, C_shareWaitMs);
    if (!back) {
        m_error = QStringLiteral("not every station got its share back within %1 s").arg(C_shareWaitMs / 1000);
        return false;
    }
    // Copying again once a file is copied after the restart (the passes after this one count).
    restart.sawLoss = 0;
    restart.availableAt = restart.answeringAt;
    for (const Station& station : m_stations) {
        if (station.lostAt >= restart.stoppedAt) {
            ++restart.sawLoss;
            restart.availableAt = qMax(restart.availableAt, station.availableAt);
        }
    }
    return true;
}

QString seconds(qint64 ms)
{
    return ms < 0 ? QStringLiteral("did not end") : QString::number(double(ms) / 1000, 'f', 1) + QStringLiteral(" s");
}

// Files (and bytes when `fileBytes` is not 0) a second.
QString rate(int files, int fileBytes, qint64 ms)
{
    if (ms <= 0)
        return QStringLiteral("-");
    if (fileBytes == 0)
        return QStringLiteral("%1 files checked/s").arg(qRound(files * 1000.0 / ms));
    return QStringLiteral("%1 files/s, %2 MB/s")
        .arg(qRound(files * 1000.0 / ms))
        .arg(double(files) * fileBytes / (1024 * 1024) * 1000 / ms, 0, 'f', 1);
}
}

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    g_clock.start();
    if (!SambaServer::available() || !QFile::exists(QStringLiteral("/dev/fuse"))) {
        say(QStringLiteral("bench_plant: needs smbd, /dev/fuse and root; skipped"));
        return 77;
    }
    // Stations and share in memory (tmpfs) when there is one: the figures are the stations',
    // the mounts' and the server's, not those of a disk the machine shares with other work.
    if (qEnvironmentVariableIsEmpty("PLANT_TMPDIR") && QFileInfo(QStringLiteral("/dev/shm")).isWritable())
        qputenv("TMPDIR", "/dev/shm");
    else if (!qEnvironmentVariableIsEmpty("PLANT_TMPDIR"))
        qputenv("TMPDIR", qgetenv("PLANT_TMPDIR"));
    const int stations = environmentNumber("PLANT_STATIONS", 20);
    const int files = environmentNumber("PLANT_FILES", 1000);
    const int fileBytes = environmentNumber("PLANT_FILE_KB", 10) * 1024;
    const int total = stations * files;

    PlantRun run;
    say(QStringLiteral("%1 stations, %2 files of %3 KB each, one share").arg(stations).arg(files).arg(fileBytes / 1024));
    if (!run.prepare(stations, files, fileBytes) || !run.startStations()) {
        say(QStringLiteral("bench_plant: ") + run.error());
        run.stopStations();
        return 1;
    }
    say(QStringLiteral("every station has its share after %1").arg(seconds(g_clock.elapsed())));

    QStringList rows;
    int lost = 0;
    const auto row = [&](const QString& what, int count, bool copies, qint64 ms, const QString& outcome) {
        rows << QStringLiteral("| %1 | %2 | %3 | %4 |").arg(what, seconds(ms), rate(count, copies ? fileBytes : 0, ms), outcome);
        say(rows.last());
    };

    qint64 ms = run.passAll();
    int lostNow = run.lostFiles();
    lost += lostNow;
    row(QStringLiteral("first pass, %1 stations at once").arg(stations), total, true, ms,
        QStringLiteral("%1 copied, %2 failed, %3 lost").arg(run.copied()).arg(run.failed()).arg(lostNow));
    ms = run.passAll();
    row(QStringLiteral("pass with nothing changed"), total, false, ms,
        QStringLiteral("%1 copied, %2 failed").arg(run.copied()).arg(run.failed()));
    ms = run.rsyncAll();
    bool rsyncFailed = ms < 0;
    row(QStringLiteral("`rsync -a`, %1 at once, onto the same mounts").arg(stations), total, true, ms, QString());
    ms = run.rsyncAll();
    rsyncFailed = rsyncFailed || ms < 0;
    row(QStringLiteral("`rsync -a` with nothing changed"), total, false, ms, QString());

    // New files, and smbd restarted during their pass; then passes until every station's pass
    // ends without a failure.
    const int added = files / 2;
    run.addFiles(QStringLiteral("restart"), added);
    PlantRun::Restart restart;
    bool recovered = run.restartServerMidPass(added, restart);
    int copiedAfter = 0;
    int passes = 0;
    qint64 settledAt = g_clock.elapsed();
    for (bool clean = restart.failed == 0 && run.lostFiles(false) == 0; recovered && !clean && passes < 5; ++passes) {
        recovered = run.passAll() >= 0;
        settledAt = g_clock.elapsed();
        copiedAfter += run.copied();
        clean = run.failed() == 0 && run.lostFiles(false) == 0;
    }
    lostNow = run.lostFiles();
    lost += lostNow;
    const QStringList temporaries = run.temporariesLeft();
    const qint64 copyingAgain = run.lastCopyingAgain();
    if (recovered) {
        rows << QStringLiteral("| %1 new files each, smbd restarted after a fifth of them | %2 | - | %3 copied, %4 failed before the "
                               "restart's end; %5 copied by %6 more pass(es); %7 lost of %8; %9 temporaries left |")
                    .arg(added).arg(seconds(settledAt - restart.stoppedAt)).arg(restart.copied).arg(restart.failed)
                    .arg(copiedAfter).arg(passes).arg(lostNow).arg(stations * (files + added)).arg(temporaries.size());
        say(rows.last());
    }
    run.stopStations();
    // The stations' own account of a run that went wrong outlives the run's directory.
    const bool failed = lost != 0 || !temporaries.isEmpty() || !recovered;
    const QString logs = failed || rsyncFailed ? run.keepLogs() : QString();

    say(QString());
    say(QStringLiteral("| run | wall time | throughput | files |"));
    say(QStringLiteral("|---|---|---|---|"));
    for (const QString& line : rows)
        say(line);
    say(QStringLiteral("\nsmbd peak memory: %1 MB resident, %2 MB proportional, %3 processes")
            .arg(double(run.peakServerKb()) / 1024, 0, 'f', 0).arg(double(run.peakServerProportionalKb()) / 1024, 0, 'f', 0)
            .arg(run.peakServerProcesses()));
    if (recovered) {
        say(QStringLiteral("smbd down for %1; every station's share available again %2 after smbd answered again "
                           "(%3 of %4 stations reported it lost), every station copying again %5 after, "
                           "every station's pass without failure %6 after")
                .arg(seconds(restart.answeringAt - restart.stoppedAt), seconds(restart.availableAt - restart.answeringAt))
                .arg(restart.sawLoss).arg(stations)
                .arg(seconds(copyingAgain < 0 ? -1 : copyingAgain - restart.answeringAt), seconds(settledAt - restart.answeringAt)));
    } else
        say(QStringLiteral("bench_plant: ") + run.error());
    say(QStringLiteral("files lost: %1").arg(lost));
    for (const QString& path : temporaries)
        say(QStringLiteral("temporary left on the share: ") + path);
    if (!logs.isEmpty())
        say(QStringLiteral("the stations' logs are kept in ") + logs);
    return failed ? 1 : 0;
}
