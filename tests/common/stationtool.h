#pragma once
// Running the built station-config and copying station trees, for the tests that drive the tool.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

struct ToolRun {
    int code = -1; // -1 when the program crashed or timed out
    QString out;
    QString err;
};

// The system's environment with the tool's state (log file) under `stateDir` and no STATION_DIR.
inline QProcessEnvironment toolEnvironment(const QString& stateDir)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_STATE_HOME"), stateDir);
    environment.remove(QStringLiteral("STATION_DIR"));
    return environment;
}

inline ToolRun runTool(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment,
                       const QByteArray& input = QByteArray(), int timeoutMs = 120000)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    ToolRun result;
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished();
        result.err = QStringLiteral("timed out");
        return result;
    }
    result.code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

// Copies a directory tree, leaving every copy writable by its owner; `keepTimes` also keeps the
// files' modification times.
inline bool copyTree(const QString& source, const QString& target, bool keepTimes = false)
{
    if (!QDir().mkpath(target))
        return false;
    QDirIterator it(source, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QString destination = target + QLatin1Char('/') + QDir(source).relativeFilePath(it.filePath());
        if (it.fileInfo().isDir() ? !QDir().mkpath(destination)
                                  : !(QDir().mkpath(QFileInfo(destination).path()) && QFile::copy(it.filePath(), destination)))
            return false;
        QFile::setPermissions(destination, QFile::permissions(destination) | QFile::WriteOwner);
        if (keepTimes && it.fileInfo().isFile()) {
            QFile file(destination);
            if (file.open(QIODevice::ReadWrite))
                file.setFileTime(it.fileInfo().lastModified(), QFileDevice::FileModificationTime);
        }
    }
    return true;
}
