// The sync engine against rsync -a and cp -a, each as a whole process on the same data it
// builds itself: runs of the tools interleaved (their order turning from one repetition to
// the next), medians, ratios, and whether each target is met.
//
// Usage: bench_sync [--reps N] [--rows ABCDEFG] [--quick] [--dir DIR] [--no-strace]
//   A initial mirror, 10,000 x 10 KiB        E initial mirror, 100,000 x 1 KiB
//   B no-change pass, 10,000 x 10 KiB        F initial mirror, 4 x 256 MiB
//   C no-change pass, 100,000 x 1 KiB        G initial mirror, 10,000 x 10 KiB onto a loopback
//   D 1 % changed, 100,000 x 1 KiB             SMB share mounted by station-smbmount (root, smbd)
// --quick divides the counts by 100 and the large files by 64, one repetition: a smoke run.
// The engine runs as bench_syncpass (one pair, one pass, exit when idle).
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <functional>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "benchprocess.h"
#include "sambaserver.h"

using BenchProcess::median;
using BenchProcess::Run;
using BenchProcess::runProcess;

namespace {
const int C_filesPerDirectory = 100;

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

void removeTree(const QString& path)
{
    if (QFileInfo::exists(path))
        runProcess({QStringLiteral("rm"), QStringLiteral("-rf"), QStringLiteral("--"), path});
}

QByteArray content(int i, int size)
{
    QByteArray data(size, Qt::Uninitialized);
    for (int j = 0; j < size; ++j)
        data[j] = char('a' + (i + j) % 26);
    return data;
}

QString smallFile(const QString& root, int i)
{
    return QStringLiteral("%1/d%2/f%3.dat").arg(root).arg(i / C_filesPerDirectory, 4, 10, QLatin1Char('0')).arg(i);
}

bool makeFiles(const QString& root, int count, int size)
{
    for (int i = 0; i < count; ++i) {
        const QString path = smallFile(root, i);
        if (i % C_filesPerDirectory == 0 && !QDir().mkpath(QFileInfo(path).path()))
            return false;
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content(i, size)) != size)
            return false;
    }
    return true;
}

bool makeLargeFiles(const QString& root, int count, qint64 size)
{
    if (!QDir().mkpath(root))
        return false;
    const QByteArray block = content(7, 1024 * 1024);
    for (int i = 0; i < count; ++i) {
        QFile file(QStringLiteral("%1/large%2.bin").arg(root).arg(i));
        if (!file.open(QIODevice::WriteOnly))
            return false;
        for (qint64 written = 0; written < size; written += block.size()) {
            QByteArray chunk = block;
            chunk[0] = char(i);
            chunk[1] = char(written >> 20);
            if (file.write(chunk.constData(), qMin<qint64>(chunk.size(), size - written)) < 0)
                return false;
        }
    }
    return true;
}

// Rewrites every hundredth file (new content, same size, a later modification time).
void changeOnePercent(const QString& root, int count, int size, int round)
{
    for (int i = round % 100; i < count; i += 100) {
        QFile file(smallFile(root, i));
        if (file.open(QIODevice::WriteOnly))
            file.write(content(i + round + 1, size));
        file.close();
        file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(round + 1), QFileDevice::FileModificationTime);
    }
}


// Total of the calls column of `strace -c`.
qint64 straceCalls(const QString& file)
{
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : in.readAll().split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() >= 4 && fields.last() == "total")
            return fields.at(fields.size() - 3).toLongLong();
    }
    return -1;
}

// One tool as the rows run it: `prepare` (untimed) before each run, then `command`.
struct Tool
{
    QString name;
    std::function<void(int repetition)> prepare;
    std::function<QStringList(int repetition)> command;
    QVector<Run> runs;
};

struct Row
{
    QString title;
    QVector<Tool> tools;
    int files = 0;
    bool countSyscalls = false;
};

class Bench
{
public:
    Bench(const QString& dir, int reps, bool quick, bool strace)
        : m_dir(dir)
        , m_reps(reps)
        , m_quick(quick)
        , m_strace(strace && !QStandardPaths::findExecutable(QStringLiteral("strace")).isEmpty())
    {
        m_rsync = QStandardPaths::findExecutable(QStringLiteral("rsync"));
    }

    bool hasRsync() const { return !m_rsync.isEmpty(); }
    int scaled(int count) const { return m_quick ? qMax(1, count / 100) : count; }

    QString path(const QString& name) const { return m_dir + QLatin1Char('/') + name; }

    Tool engine(const QString& source, const QString& target, bool fresh)
    {
        const QString database = target + QStringLiteral(".db");
        Tool tool;
        tool.name = QStringLiteral("engine");
        tool.prepare = [=](int) {
            if (fresh) {
                removeTree(target);
                QFile::remove(database);
                QDir().mkpath(target);
            }
        };
        tool.command = [=](int) {
            return QStringList {QStringLiteral(BENCH_SYNCPASS), database, path(QStringLiteral("trash")), source, target};
        };
        return tool;
    }
    Tool rsync(const QString& source, const QString& target, bool fresh)
    {
        Tool tool;
        tool.name = QStringLiteral("rsync -a");
        tool.prepare = [=](int) {
            if (fresh)
                removeTree(target);
        };
        tool.command = [=](int) { return QStringList {m_rsync, QStringLiteral("-a"), source + QLatin1Char('/'), target}; };
        return tool;
    }
    Tool cp(const QString& source, const QString& target)
    {
        Tool tool;
        tool.name = QStringLiteral("cp -a");
        tool.prepare = [=](int) {
            removeTree(target);
            QDir().mkpath(target);
        };
        tool.command = [=](int) {
            return QStringList {QStringLiteral("cp"), QStringLiteral("-a"), QStringLiteral("--"), source + QStringLiteral("/."), target};
        };
        return tool;
    }

    // Interleaved: each repetition runs every tool once, starting one tool further each time.
    bool run(Row& row, const std::function<void(int)>& beforeRepetition = {})
    {
        out() << "\n" << row.title << "\n";
        out().flush();
        for (int rep = 0; rep < m_reps; ++rep) {
            if (beforeRepetition)
                beforeRepetition(rep);
            for (int k = 0; k < row.tools.size(); ++k) {
                Tool& tool = row.tools[(rep + k) % row.tools.size()];
                tool.prepare(rep);
                // What earlier runs left to write back would otherwise slow whichever tool comes next.
                ::sync();
                const Run run = runProcess(tool.command(rep));
                if (!run.ok) {
                    out() << "  " << tool.name << " failed: " << tool.command(rep).join(QLatin1Char(' ')) << "\n";
                    return false;
                }
                tool.runs << run;
            }
        }
        if (row.countSyscalls && m_strace) {
            for (Tool& tool : row.tools) {
                tool.prepare(m_reps);
                const QString trace = path(QStringLiteral("strace.out"));
                runProcess(tool.command(m_reps), trace);
                m_syscalls[tool.name] = double(straceCalls(trace)) / row.files;
            }
        }
        return true;
    }

    // Medians, then the ratios of the engine to each other tool.
    QMap<QString, Run> report(const Row& row)
    {
        QMap<QString, Run> medians;
        for (const Tool& tool : row.tools) {
            QVector<double> wall, user, rss;
            for (const Run& run : tool.runs) {
                wall << run.wallMs;
                user << run.userMs;
                rss << run.maxRssMiB;
            }
            Run m;
            m.ok = true;
            m.wallMs = median(wall);
            m.userMs = median(user);
            m.maxRssMiB = median(rss);
            medians[tool.name] = m;
            out() << QStringLiteral("  %1 %2 ms  user %3 ms  peak %4 MiB")
                         .arg(tool.name, -10)
                         .arg(m.wallMs, 9, 'f', 1)
                         .arg(m.userMs, 8, 'f', 1)
                         .arg(m.maxRssMiB, 6, 'f', 1);
            if (m_syscalls.contains(tool.name) && row.countSyscalls)
                out() << QStringLiteral("  %1 syscalls/file").arg(m_syscalls.value(tool.name), 0, 'f', 1);
            QStringList each;
            for (const Run& run : tool.runs)
                each << QString::number(run.wallMs, 'f', 0);
            out() << "  (runs: " << each.join(QLatin1Char(' ')) << " ms)\n";
        }
        m_syscalls.clear();
        return medians;
    }

    void verdict(const QString& what, double value, double limit)
    {
        out() << QStringLiteral("  %1 = %2 (target <= %3): %4\n")
                     .arg(what)
                     .arg(value, 0, 'f', 2)
                     .arg(limit, 0, 'f', 2)
                     .arg(value <= limit ? QStringLiteral("met") : QStringLiteral("NOT met"));
        m_summary << QStringLiteral("%1 %2 %3").arg(value <= limit ? QStringLiteral("met    ") : QStringLiteral("NOT met"), m_rowTitle, what)
                         + QStringLiteral(" = %1").arg(value, 0, 'f', 2);
    }
    void ratio(const QString& what, double value)
    {
        out() << QStringLiteral("  %1 = %2\n").arg(what).arg(value, 0, 'f', 2);
        m_summary << QStringLiteral("        %1 %2 = %3").arg(m_rowTitle, what).arg(value, 0, 'f', 2);
    }
    void setRowTitle(const QString& title) { m_rowTitle = title; }
    const QStringList& summary() const { return m_summary; }

private:
    QString m_dir;
    int m_reps;
    bool m_quick;
    bool m_strace;
    QString m_rsync;
    QMap<QString, double> m_syscalls;
    QString m_rowTitle;
    QStringList m_summary;
};

// A loopback Samba server and its share mounted by the project's own helper, for row G.
class MountedShare
{
public:
    ~MountedShare() { unmount(); }
    bool mount(const QString& mountPoint, QString& error)
    {
        if (!SambaServer::available() || !QFile::exists(QStringLiteral(BENCH_SMBMOUNT)) || geteuid() != 0) {
            error = QStringLiteral("needs root, smbd and station-smbmount");
            return false;
        }
        if (!m_server.start()) {
            error = m_server.errorString();
            return false;
        }
        m_mountPoint = mountPoint;
        QDir().mkpath(mountPoint);
        m_helper.setProgram(QStringLiteral(BENCH_SMBMOUNT));
        m_helper.setArguments({QStringLiteral("//%1/%2").arg(m_server.address(), m_server.shareName()), mountPoint});
        m_helper.start();
        m_helper.write(QStringLiteral("username=%1\npassword=%2\n").arg(m_server.user(), m_server.password()).toUtf8());
        m_helper.closeWriteChannel();
        while (m_helper.waitForReadyRead(15000)) {
            if (m_helper.readAllStandardOutput().contains("ready"))
                return true;
        }
        error = QStringLiteral("the mount helper did not report ready: ") + QString::fromLocal8Bit(m_helper.readAllStandardError());
        return false;
    }
    void unmount()
    {
        if (m_helper.state() != QProcess::NotRunning) {
            QProcess::execute(QStringLiteral("umount"), {m_mountPoint});
            if (!m_helper.waitForFinished(10000))
                m_helper.kill();
        }
        m_server.stop();
    }
    QString serverDirectory() const { return m_server.shareDirectory(); }

private:
    SambaServer m_server;
    QProcess m_helper;
    QString m_mountPoint;
};
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    int reps = 5;
    QString rows = QStringLiteral("ABCDEFG");
    QString dir;
    bool quick = false;
    bool strace = true;
    while (!args.isEmpty()) {
        const QString arg = args.takeFirst();
        if (arg == QLatin1String("--reps") && !args.isEmpty())
            reps = args.takeFirst().toInt();
        else if (arg == QLatin1String("--rows") && !args.isEmpty())
            rows = args.takeFirst().toUpper();
        else if (arg == QLatin1String("--dir") && !args.isEmpty())
            dir = args.takeFirst();
        else if (arg == QLatin1String("--quick"))
            quick = true;
        else if (arg == QLatin1String("--no-strace"))
            strace = false;
        else {
            out() << "usage: bench_sync [--reps N] [--rows ABCDEFG] [--quick] [--dir DIR] [--no-strace]\n";
            return 2;
        }
    }
    if (quick)
        reps = 1;
    if (reps < 1) {
        out() << "bench_sync: --reps needs a number of at least 1\n";
        return 2;
    }
    QTemporaryDir temporary(dir.isEmpty() ? QDir::tempPath() + QStringLiteral("/bench_sync-XXXXXX")
                                          : dir + QStringLiteral("/bench_sync-XXXXXX"));
    if (!temporary.isValid()) {
        out() << "bench_sync: cannot create a working directory\n";
        return 1;
    }
    Bench bench(temporary.path(), reps, quick, strace);
    if (!bench.hasRsync()) {
        out() << "bench_sync: rsync is not installed (scripts/setup.sh installs it)\n";
        return 1;
    }
    out() << "Working directory " << temporary.path() << ", " << reps << " interleaved runs per tool, medians\n";

    const int small = bench.scaled(10000);
    const int many = bench.scaled(100000);
    const QString smallData = bench.path(QStringLiteral("small"));
    const QString manyData = bench.path(QStringLiteral("many"));
    bool ok = true;

    if (rows.contains(QLatin1Char('A')) || rows.contains(QLatin1Char('B'))) {
        if (!makeFiles(smallData, small, 10240)) {
            out() << "bench_sync: cannot write the data\n";
            return 1;
        }
    }
    if (ok && rows.contains(QLatin1Char('A'))) {
        Row row {QStringLiteral("A  initial mirror, %1 x 10 KiB").arg(small), {}, small, true};
        row.tools << bench.engine(smallData, bench.path(QStringLiteral("a-engine")), true)
                  << bench.rsync(smallData, bench.path(QStringLiteral("a-rsync")), true)
                  << bench.cp(smallData, bench.path(QStringLiteral("a-cp")));
        bench.setRowTitle(QStringLiteral("A"));
        ok = bench.run(row);
        if (ok) {
            const auto m = bench.report(row);
            bench.verdict(QStringLiteral("engine / rsync -a"), m["engine"].wallMs / m["rsync -a"].wallMs, 1.0);
            bench.verdict(QStringLiteral("engine / cp -a"), m["engine"].wallMs / m["cp -a"].wallMs, 1.3);
        }
    }
    if (ok && rows.contains(QLatin1Char('B'))) {
        Row row {QStringLiteral("B  no-change pass, %1 x 10 KiB").arg(small), {}, small, true};
        row.tools << bench.engine(smallData, bench.path(QStringLiteral("b-engine")), false)
                  << bench.rsync(smallData, bench.path(QStringLiteral("b-rsync")), false);
        QDir().mkpath(bench.path(QStringLiteral("b-engine")));
        // The first passes fill both mirrors.
        for (Tool& tool : row.tools)
            runProcess(tool.command(0));
        bench.setRowTitle(QStringLiteral("B"));
        ok = bench.run(row);
        if (ok) {
            const auto m = bench.report(row);
            bench.verdict(QStringLiteral("engine / rsync -a"), m["engine"].wallMs / m["rsync -a"].wallMs, 0.7);
        }
    }
    if (ok && rows.contains(QRegularExpression(QStringLiteral("[CDE]")))) {
        if (!makeFiles(manyData, many, 1024)) {
            out() << "bench_sync: cannot write the data\n";
            return 1;
        }
    }
    if (ok && rows.contains(QLatin1Char('C'))) {
        Row row {QStringLiteral("C  no-change pass, %1 x 1 KiB").arg(many), {}, many, false};
        row.tools << bench.engine(manyData, bench.path(QStringLiteral("c-engine")), false)
                  << bench.rsync(manyData, bench.path(QStringLiteral("c-rsync")), false);
        QDir().mkpath(bench.path(QStringLiteral("c-engine")));
        for (Tool& tool : row.tools)
            runProcess(tool.command(0));
        bench.setRowTitle(QStringLiteral("C"));
        ok = bench.run(row);
        if (ok) {
            const auto m = bench.report(row);
            bench.ratio(QStringLiteral("engine / rsync -a"), m["engine"].wallMs / m["rsync -a"].wallMs);
            bench.verdict(QStringLiteral("engine user CPU / rsync's"), m["engine"].userMs / m["rsync -a"].userMs, 1.5);
            bench.verdict(QStringLiteral("engine peak memory (MiB)"), m["engine"].maxRssMiB, 20);
        }
    }
    if (ok && rows.contains(QLatin1Char('D'))) {
        Row row {QStringLiteral("D  1 % changed, %1 x 1 KiB").arg(many), {}, many, false};
        row.tools << bench.engine(manyData, bench.path(QStringLiteral("c-engine")), false)
                  << bench.rsync(manyData, bench.path(QStringLiteral("c-rsync")), false);
        QDir().mkpath(bench.path(QStringLiteral("c-engine")));
        for (Tool& tool : row.tools)
            runProcess(tool.command(0));
        bench.setRowTitle(QStringLiteral("D"));
        ok = bench.run(row, [&](int rep) { changeOnePercent(manyData, many, 1024, rep); });
        if (ok) {
            const auto m = bench.report(row);
            bench.ratio(QStringLiteral("engine / rsync -a"), m["engine"].wallMs / m["rsync -a"].wallMs);
        }
    }
    if (ok && rows.contains(QLatin1Char('E'))) {
        Row row {QStringLiteral("E  initial mirror, %1 x 1 KiB").arg(many), {}, many, false};
        row.tools << bench.engine(manyData, bench.path(QStringLiteral("e-engine")), true)
                  << bench.rsync(manyData, bench.path(QStringLiteral("e-rsync")), true)
                  << bench.cp(manyData, bench.path(QStringLiteral("e-cp")));
        bench.setRowTitle(QStringLiteral("E"));
        ok = bench.run(row);
        if (ok) {
            const auto m = bench.report(row);
            bench.ratio(QStringLiteral("engine / rsync -a"), m["engine"].wallMs / m["rsync -a"].wallMs);
            bench.ratio(QStringLiteral("engine / cp -a"), m["engine"].wallMs / m["cp -a"].wallMs);
            bench.verdict(QStringLiteral("engine user CPU / rsync's"), m["engine"].userMs / m["rsync -a"].userMs, 1.5);
        }
        removeTree(bench.path(QStringLiteral("e-engine")));
        removeTree(bench.path(QStringLiteral("e-rsync")));
        removeTree(bench.path(QStringLiteral("e-cp")));
    }
    if (ok && rows.contains(QLatin1Char('F'))) {
        const qint64 size = quick ? 4 * 1024 * 1024 : 256 * 1024 * 1024;
        const QString largeData = bench.path(QStringLiteral("large"));
        if (!makeLargeFiles(largeData, 4, size)) {
            out() << "bench_sync: cannot write the data\n";
            return 1;
        }
        Row row {QStringLiteral("F  initial mirror, 4 x %1 MiB").arg(size >> 20), {}, 4, false};
        row.tools << bench.engine(largeData, bench.path(QStringLiteral("f-engine")), true)
                  << bench.rsync(largeData, bench.path(QStringLiteral("f-rsync")), true)
                  << bench.cp(largeData, bench.path(QStringLiteral("f-cp")));
        bench.setRowTitle(QStringLiteral("F"));
        ok = bench.run(row);
        if (ok) {
            const auto m = bench.report(row);
            bench.ratio(QStringLiteral("engine / rsync -a"), m["engine"].wallMs / m["rsync -a"].wallMs);
            bench.verdict(QStringLiteral("engine / cp -a"), m["engine"].wallMs / m["cp -a"].wallMs, 1.1);
        }
        for (const char* name : {"large", "f-engine", "f-rsync", "f-cp"})
            removeTree(bench.path(QLatin1String(name)));
    }
    if (ok && rows.contains(QLatin1Char('G'))) {
        out() << "\nG  initial mirror, " << small << " x 10 KiB onto a loopback SMB share mounted by station-smbmount\n";
        if (!QFileInfo::exists(smallData) && !makeFiles(smallData, small, 10240)) {
            out() << "bench_sync: cannot write the data\n";
            return 1;
        }
        MountedShare share;
        QString error;
        const QString mountPoint = bench.path(QStringLiteral("mnt"));
        if (!share.mount(mountPoint, error)) {
            out() << "  skipped: " << error << "\n";
        } else {
            // A directory of its own on the share for every run; the server's side is emptied after.
            Row row {QStringLiteral("   (engine and rsync -a through the mount)"), {}, small, false};
            Tool engine = bench.engine(smallData, QString(), true);
            engine.prepare = [&](int rep) { QDir().mkpath(mountPoint + QStringLiteral("/engine%1").arg(rep)); };
            engine.command = [&](int rep) {
                return QStringList {QStringLiteral(BENCH_SYNCPASS), bench.path(QStringLiteral("g%1.db").arg(rep)),
                                    bench.path(QStringLiteral("trash")), smallData,
                                    mountPoint + QStringLiteral("/engine%1").arg(rep)};
            };
            Tool rsync = bench.rsync(smallData, QString(), false);
            rsync.prepare = [](int) {};
            rsync.command = [&](int rep) {
                return QStringList {QStandardPaths::findExecutable(QStringLiteral("rsync")), QStringLiteral("-a"),
                                    smallData + QLatin1Char('/'), mountPoint + QStringLiteral("/rsync%1").arg(rep)};
            };
            row.tools << engine << rsync;
            bench.setRowTitle(QStringLiteral("G"));
            ok = bench.run(row);
            if (ok) {
                const auto m = bench.report(row);
                bench.verdict(QStringLiteral("engine / rsync -a"), m["engine"].wallMs / m["rsync -a"].wallMs, 0.5);
            }
            share.unmount();
        }
    }

    out() << "\nSummary\n";
    for (const QString& line : bench.summary())
        out() << "  " << line << "\n";
    out().flush();
    return ok ? 0 : 1;
}
