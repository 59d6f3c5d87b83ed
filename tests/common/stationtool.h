#pragma once
// Running the built station-config and copying station trees, for the tests that drive the tool.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QRegularExpression>
#include <QtTest>

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

// A JSON file's top-level object; empty when it cannot be read.
inline QJsonObject readJson(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

// The value at a dotted path ("a.b.0.c"); a number steps into an array.
inline QJsonValue valueAt(const QJsonObject& root, const QString& path)
{
    QJsonValue value = root;
    for (const QString& part : path.split(QLatin1Char('.'))) {
        bool index = false;
        const int position = part.toInt(&index);
        value = index && value.isArray() ? value.toArray().at(position) : value.toObject().value(part);
    }
    return value;
}

// "key=JSON;key=JSON" as a list of pairs, "key=" for an absent key (a JSON value may hold no ';').
inline QList<QPair<QString, QJsonValue>> assignments(const QString& text)
{
    QList<QPair<QString, QJsonValue>> result;
    for (const QString& item : text.split(';', Qt::SkipEmptyParts)) {
        const QString value = item.section('=', 1);
        result.append({ item.section('=', 0, 0),
                        value.isEmpty() ? QJsonValue(QJsonValue::Undefined)
                                        : QJsonDocument::fromJson("[" + value.toUtf8() + "]").array().first() });
    }
    return result;
}

// `text` matches the regular expression `pattern` (dot matches newlines); an empty pattern wants no text.
inline void verifyMatches(const QString& text, const QString& pattern, const char* stream)
{
    if (pattern.isEmpty()) {
        QVERIFY2(text.isEmpty(), qPrintable(QStringLiteral("%1 should be empty: %2").arg(QLatin1String(stream), text)));
        return;
    }
    const QRegularExpression expression(pattern, QRegularExpression::DotMatchesEverythingOption);
    QVERIFY2(expression.isValid(), qPrintable(pattern));
    QVERIFY2(expression.match(text).hasMatch(),
             qPrintable(QStringLiteral("%1 does not match /%2/:\n%3").arg(QLatin1String(stream), pattern, text)));
}
