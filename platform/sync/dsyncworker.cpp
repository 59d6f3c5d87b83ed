#include "dsyncworker_p.h"

#include "utilities/logline.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QThread>

#include <cstdio>

namespace {
const char* const C_sourceFile = "platform/sync/dsyncworker";
const qint64 C_bufferSize = 256 * 1024;

qint64 modifiedMs(const QFileInfo& info)
{
    return info.lastModified().toMSecsSinceEpoch();
}

bool sameContent(const QString& a, const QString& b)
{
    QFile first(a);
    QFile second(b);
    if (first.size() != second.size())
        return false;
    if (!first.open(QIODevice::ReadOnly) || !second.open(QIODevice::ReadOnly))
        return false;
    while (!first.atEnd()) {
        const QByteArray x = first.read(C_bufferSize);
        const QByteArray y = second.read(C_bufferSize);
        if (x != y || x.isEmpty())
            return false;
    }
    return second.atEnd();
}

// A directory name for the trash that cannot climb out of it.
QString safeAlias(const QString& alias)
{
    QString name = alias;
    name.replace(QLatin1Char('/'), QLatin1Char('_')).replace(QLatin1Char('\\'), QLatin1Char('_'));
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        name = QStringLiteral("_");
    return name;
}

// Replaces the target in one step where the platform allows it, so that a reader sees either
// the old or the new file, never none.
bool renameOver(const QString& from, const QString& to)
{
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return true;
    return QFile::remove(to) && QFile::rename(from, to);
}
}

const QString DSyncWorker::C_temporaryPrefix = QStringLiteral(".dsync-");
const QString DSyncWorker::C_temporarySuffix = QStringLiteral(".part");

DSyncWorker::DSyncWorker(const std::atomic_bool* paused, const std::atomic_bool* stopping)
    : m_paused(paused)
    , m_stopping(stopping)
{
}

bool DSyncWorker::shouldStop() const
{
    return m_paused->load() || m_stopping->load();
}

void DSyncWorker::fail(int line, const QString& message, const QString& detail)
{
    LogLine::critical(this, C_sourceFile, line, message, detail);
    emit errorOccurred(detail.isEmpty() ? message : message + QStringLiteral(": ") + detail);
}

bool DSyncWorker::isExcluded(const QString& fileName) const
{
    if (fileName.startsWith(C_temporaryPrefix) && fileName.endsWith(C_temporarySuffix))
        return true;
    for (const QRegularExpression& expression : m_excluded) {
        if (expression.match(fileName).hasMatch())
            return true;
    }
    return false;
}

void DSyncWorker::runPass(const DSyncPassJob& job)
{
    bool interrupted = false;
    if (!job.mirrors.isEmpty()) {
        if (job.databaseFilePath.isEmpty()) {
            fail(__LINE__, QStringLiteral("Sync pass skipped, no database file path"), QString());
        } else {
            m_excluded.clear();
            for (const QString& pattern : job.excludedPatterns) {
                QRegularExpression expression(QRegularExpression::wildcardToRegularExpression(pattern));
                if (expression.isValid())
                    m_excluded << expression;
                else
                    LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("Excluded pattern ignored"), pattern);
            }
            const QString databaseFile = QFileInfo(job.databaseFilePath).absoluteFilePath();
            m_skippedFiles = {databaseFile, databaseFile + QStringLiteral("-journal"),
                              databaseFile + QStringLiteral("-wal"), databaseFile + QStringLiteral("-shm")};
            m_createdDirectories.clear();

            // One connection name per thread: each manager has its own sync thread.
            DSyncDatabase database(QStringLiteral("DSyncManager-%1")
                                       .arg(quintptr(QThread::currentThread()), 0, 16));
            if (!database.open(job.databaseFilePath)) {
                fail(__LINE__, QStringLiteral("Cannot open the sync database"),
                     job.databaseFilePath + QStringLiteral(": ") + database.lastError());
            } else {
                for (const DSyncPassJob::Mirror& mirror : job.mirrors) {
                    if (shouldStop() || syncMirror(database, job, mirror) == EnMirrorResult::CeMirrorInterrupted) {
                        interrupted = true;
                        break;
                    }
                }
                database.close();
            }
        }
    }
    emit passFinished(interrupted);
}

DSyncWorker::EnMirrorResult DSyncWorker::syncMirror(DSyncDatabase& database, const DSyncPassJob& job,
                                                    const DSyncPassJob::Mirror& mirror)
{
    const QFileInfo localRoot(mirror.localPath);
    if (!localRoot.isDir()) {
        fail(__LINE__, QStringLiteral("Local directory missing"), mirror.alias + QStringLiteral(": ") + mirror.localPath);
        return EnMirrorResult::CeMirrorDone;
    }
    if (!QFileInfo(mirror.remotePath).isDir()) {
        fail(__LINE__, QStringLiteral("Distant directory unreachable"), mirror.alias + QStringLiteral(": ") + mirror.remotePath);
        return EnMirrorResult::CeMirrorDone;
    }

    const QHash<QString, DSyncDatabase::Record> records = database.records(mirror.alias);
    const QDir localDir(localRoot.absoluteFilePath());
    QDirIterator it(localDir.absolutePath(), QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        if (shouldStop()) {
            database.commit();
            return EnMirrorResult::CeMirrorInterrupted;
        }
        const QString localFile = it.next();
        const QFileInfo info = it.fileInfo();
        if (isExcluded(info.fileName()) || m_skippedFiles.contains(localFile))
            continue;
        const QString relativePath = localDir.relativeFilePath(localFile);
        const qint64 size = info.size();
        const qint64 modified = modifiedMs(info);

        const auto found = records.constFind(relativePath);
        const DSyncDatabase::Record* record = nullptr;
        if (found != records.constEnd() && found->distantRoot == mirror.remotePath)
            record = &found.value();
        if (record && record->size == size && record->modified == modified)
            continue;
        syncFile(database, job, mirror, relativePath, localFile, size, modified, record);
    }
    database.commit();
    return EnMirrorResult::CeMirrorDone;
}

bool DSyncWorker::syncFile(DSyncDatabase& database, const DSyncPassJob& job, const DSyncPassJob::Mirror& mirror,
                           const QString& relativePath, const QString& localFile, qint64 size, qint64 modified,
                           const DSyncDatabase::Record* record)
{
    emit syncStarted(localFile);
    const QString distantFile = mirror.remotePath + QLatin1Char('/') + relativePath;
    const QFileInfo distant(distantFile);

    DSyncDatabase::Record written;
    written.distantRoot = mirror.remotePath;
    written.size = size;
    written.modified = modified;

    if (distant.exists() || distant.isSymLink()) {
        if (distant.isDir()) {
            fail(__LINE__, QStringLiteral("Distant path is a directory"), distantFile);
            emit syncCompleted(localFile, false);
            return false;
        }
        bool differs = true;
        if (record) {
            differs = distant.isSymLink() || distant.size() != record->distantSize
                || modifiedMs(distant) != record->distantModified;
        } else if (!distant.isSymLink() && sameContent(localFile, distantFile)) {
            // Already there (e.g. after a wipe of the database): only remember it.
            written.distantSize = distant.size();
            written.distantModified = modifiedMs(distant);
            const bool stored = database.store(mirror.alias, relativePath, written);
            emit syncCompleted(localFile, stored);
            return stored;
        }
        if (differs && !moveToTrash(job.trashDirectoryPath, mirror.alias, relativePath, distantFile)) {
            emit syncCompleted(localFile, false);
            return false;
        }
    }

    if (!copyThroughTemporary(localFile, distantFile, modified)) {
        emit syncCompleted(localFile, false);
        return false;
    }
    const QFileInfo copied(distantFile);
    written.distantSize = copied.size();
    written.distantModified = modifiedMs(copied);
    const bool stored = database.store(mirror.alias, relativePath, written);
    if (!stored)
        fail(__LINE__, QStringLiteral("Copied but not recorded"), localFile);
    emit syncCompleted(localFile, stored);
    return stored;
}

bool DSyncWorker::copyThroughTemporary(const QString& localFile, const QString& distantFile, qint64 modified)
{
    const QString directory = QFileInfo(distantFile).absolutePath();
    if (!m_createdDirectories.contains(directory)) {
        if (!QDir().mkpath(directory)) {
            fail(__LINE__, QStringLiteral("Cannot create the distant directory"), directory);
            return false;
        }
        m_createdDirectories.insert(directory);
    }

    QFile source(localFile);
    if (!source.open(QIODevice::ReadOnly)) {
        fail(__LINE__, QStringLiteral("Cannot read the local file"), localFile + QStringLiteral(": ") + source.errorString());
        return false;
    }
    // A hidden name of our own (rather than QTemporaryFile) keeps it to one create and one rename.
    QFile temporary;
    for (int attempt = 0; attempt < 8 && !temporary.isOpen(); ++attempt) {
        temporary.setFileName(directory + QLatin1Char('/') + C_temporaryPrefix
                              + QString::number(QRandomGenerator::global()->generate64(), 36) + C_temporarySuffix);
        temporary.open(QIODevice::WriteOnly | QIODevice::NewOnly);
    }
    if (!temporary.isOpen()) {
        fail(__LINE__, QStringLiteral("Cannot write in the distant directory"),
             directory + QStringLiteral(": ") + temporary.errorString());
        return false;
    }
    const auto discard = [&temporary, this](int line, const QString& message, const QString& detail) {
        temporary.remove();
        fail(line, message, detail);
        return false;
    };
    if (m_buffer.size() != C_bufferSize)
        m_buffer.resize(C_bufferSize);
    for (;;) {
        const qint64 read = source.read(m_buffer.data(), m_buffer.size());
        if (read < 0)
            return discard(__LINE__, QStringLiteral("Cannot read the local file"),
                           localFile + QStringLiteral(": ") + source.errorString());
        if (read == 0)
            break;
        if (temporary.write(m_buffer.constData(), read) != read)
            return discard(__LINE__, QStringLiteral("Cannot write the distant copy"),
                           distantFile + QStringLiteral(": ") + temporary.errorString());
    }
    if (!temporary.flush())
        return discard(__LINE__, QStringLiteral("Cannot write the distant copy"),
                       distantFile + QStringLiteral(": ") + temporary.errorString());
    // The copy keeps the local modification time (a failure here only costs a content check later).
    temporary.setFileTime(QDateTime::fromMSecsSinceEpoch(modified), QFileDevice::FileModificationTime);
    temporary.close();
    if (temporary.error() != QFileDevice::NoError)
        return discard(__LINE__, QStringLiteral("Cannot write the distant copy"),
                       distantFile + QStringLiteral(": ") + temporary.errorString());
    if (!renameOver(temporary.fileName(), distantFile))
        return discard(__LINE__, QStringLiteral("Cannot move the distant copy into place"), distantFile);
    return true;
}

bool DSyncWorker::moveToTrash(const QString& trashRoot, const QString& alias, const QString& relativePath,
                              const QString& distantFile)
{
    if (trashRoot.isEmpty()) {
        fail(__LINE__, QStringLiteral("Distant file changed, no trash directory to keep it"), distantFile);
        return false;
    }
    const QFileInfo relative(relativePath);
    const QString directory = QDir::cleanPath(trashRoot + QLatin1Char('/') + safeAlias(alias) + QLatin1Char('/')
                                              + relative.path());
    if (!QDir().mkpath(directory)) {
        fail(__LINE__, QStringLiteral("Cannot create the trash directory"), directory);
        return false;
    }
    const QString fileName = relative.fileName();
    const int dot = fileName.lastIndexOf(QLatin1Char('.'));
    const QString base = dot > 0 ? fileName.left(dot) : fileName;
    const QString suffix = dot > 0 ? fileName.mid(dot) : QString();
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    QString target = directory + QLatin1Char('/') + base + QLatin1Char('.') + stamp + suffix;
    for (int n = 1; QFileInfo::exists(target) || QFileInfo(target).isSymLink(); ++n)
        target = directory + QLatin1Char('/') + base + QLatin1Char('.') + stamp + QLatin1Char('-')
            + QString::number(n) + suffix;

    if (QFile::rename(distantFile, target))
        return true;
    // Another file system: a copy in the trash is enough, the distant file is then replaced.
    if (QFile::copy(distantFile, target)) {
        QFile::remove(distantFile);
        return true;
    }
    fail(__LINE__, QStringLiteral("Cannot move the changed distant file to the trash"), distantFile);
    return false;
}
