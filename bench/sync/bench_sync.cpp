// Mirrors many small files into an empty directory, then runs a pass with nothing changed,
// and times "rsync -a" on the same data for comparison.
// Usage: bench_sync [fileCount=10000] [fileSizeBytes=10240]
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextStream>

#include "sync/dsyncmanager.h"

namespace {
const int C_filesPerDirectory = 100;
const int C_passTimeoutMs = 3600 * 1000;

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

bool makeData(const QString& root, int count, int size)
{
    QByteArray content(size, Qt::Uninitialized);
    for (int i = 0; i < count; ++i) {
        const QString dir = QStringLiteral("%1/d%2").arg(root).arg(i / C_filesPerDirectory, 3, 10, QLatin1Char('0'));
        if (i % C_filesPerDirectory == 0 && !QDir().mkpath(dir))
            return false;
        for (int j = 0; j < size; ++j)
            content[j] = char('a' + (i + j) % 26);
        QFile file(QStringLiteral("%1/f%2.dat").arg(dir).arg(i));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != size)
            return false;
    }
    return true;
}

int countFiles(const QString& root)
{
    int n = 0;
    const QStringList dirs = QDir(root).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& dir : dirs)
        n += QDir(root + QLatin1Char('/') + dir).entryList(QDir::Files).size();
    return n;
}

// Milliseconds of one manager pass, -1 on timeout; `copied` counts the files it completed.
qint64 timePass(DSyncManager& manager, int& copied)
{
    copied = 0;
    const QMetaObject::Connection counter = QObject::connect(&manager, &DSyncManager::syncCompleted,
                                                             [&copied](const QString&, bool ok) { copied += ok; });
    QElapsedTimer timer;
    timer.start();
    manager.requestSync();
    const bool idle = manager.waitForIdle(C_passTimeoutMs);
    const qint64 elapsed = timer.elapsed();
    QObject::disconnect(counter);
    return idle ? elapsed : -1;
}

qint64 timeRsync(const QString& rsync, const QString& source, const QString& target)
{
    QElapsedTimer timer;
    timer.start();
    QProcess process;
    process.start(rsync, {QStringLiteral("-a"), source + QLatin1Char('/'), target});
    if (!process.waitForFinished(C_passTimeoutMs) || process.exitCode() != 0)
        return -1;
    return timer.elapsed();
}
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    const int count = args.size() > 1 ? args.at(1).toInt() : 10000;
    const int size = args.size() > 2 ? args.at(2).toInt() : 10240;
    if (count <= 0 || size <= 0) {
        out() << "usage: bench_sync [fileCount] [fileSizeBytes]\n";
        return 2;
    }

    QTemporaryDir root;
    const QString source = root.filePath(QStringLiteral("source"));
    const QString mirror = root.filePath(QStringLiteral("mirror"));
    const QString rsyncMirror = root.filePath(QStringLiteral("rsync"));
    out() << "Data: " << count << " files of " << size << " bytes in " << root.path() << "\n";
    if (!root.isValid() || !makeData(source, count, size) || !QDir().mkpath(mirror)) {
        out() << "cannot create the data\n";
        return 1;
    }

    DSyncManager manager(root.filePath(QStringLiteral("sync.db")), root.filePath(QStringLiteral("trash")), 0,
                         {QStringLiteral("*-journal"), QStringLiteral("*-shm"), QStringLiteral("*-wal")});
    manager.addDirectory(QStringLiteral("bench"), source, mirror);
    int copied = 0;
    const qint64 first = timePass(manager, copied);
    const int firstCopied = copied;
    const qint64 second = timePass(manager, copied);
    const int secondCopied = copied;
    if (first < 0 || second < 0 || countFiles(mirror) != count) {
        out() << "DSyncManager pass failed (mirror holds " << countFiles(mirror) << " files)\n";
        return 1;
    }

    out() << qSetFieldWidth(34) << Qt::left << "" << qSetFieldWidth(16) << "initial copy" << "nothing changed"
          << qSetFieldWidth(0) << "\n";
    out() << qSetFieldWidth(34) << "DSyncManager (ms)" << qSetFieldWidth(16) << first << second << qSetFieldWidth(0)
          << "  (" << firstCopied << " then " << secondCopied << " files copied)\n";

    const QString rsync = QStandardPaths::findExecutable(QStringLiteral("rsync"));
    if (rsync.isEmpty()) {
        out() << "rsync not found: comparison skipped\n";
        return 0;
    }
    const qint64 rsyncFirst = timeRsync(rsync, source, rsyncMirror);
    const qint64 rsyncSecond = timeRsync(rsync, source, rsyncMirror);
    out() << qSetFieldWidth(34) << "rsync -a (ms)" << qSetFieldWidth(16) << rsyncFirst << rsyncSecond
          << qSetFieldWidth(0) << "\n";
    out().flush();
    return 0;
}
