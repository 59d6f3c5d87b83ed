#include "dsyncworker_p.h"

#include "utilities/logline.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QThread>

#include <unistd.h>

namespace {
const char* const C_sourceFile = "platform/sync/dsyncworker";
const qint64 C_bufferSize = 256 * 1024;

qint64 modifiedMs(const QFileInfo& info)
{
    return info.lastModified().toMSecsSinceEpoch();
}

// Same bytes in a local file and an open distant file (the descriptor is taken over).
bool sameContent(const QString& localFile, int distantFd)
{
    if (distantFd < 0)
        return false;
    QFile second;
    if (!second.open(distantFd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(distantFd);
        return false;
    }
    QFile first(localFile);
    if (first.size() != second.size() || !first.open(QIODevice::ReadOnly))
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
    DSyncDistantRoot root;
    if (!root.open(mirror.remotePath)) {
        fail(__LINE__, QStringLiteral("Distant directory unreachable"), mirror.alias + QStringLiteral(": ") + mirror.remotePath);
        return EnMirrorResult::CeMirrorDone;
    }
    if (mirror.remoteMountPoint && !root.isMountPoint()) {
        // The bare mount point of a share that went away lies on the local disk.
        fail(__LINE__, QStringLiteral("Distant directory unreachable"),
             mirror.alias + QStringLiteral(": ") + mirror.remotePath + QStringLiteral(" (no longer a mount point)"));
        return EnMirrorResult::CeMirrorDone;
    }
    m_createdDirectories.clear();
    m_temporaryLeft = false;
    m_unfinishedMarked = database.isUnfinished(mirror.alias);
    if (m_unfinishedMarked)
        removeStaleTemporaries(root, mirror);

    EnMirrorResult result = EnMirrorResult::CeMirrorDone;
    const QHash<QString, DSyncDatabase::Record> records = database.records(mirror.alias);
    const QDir localDir(localRoot.absoluteFilePath());
    QDirIterator it(localDir.absolutePath(), QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        if (shouldStop()) {
            result = EnMirrorResult::CeMirrorInterrupted;
            break;
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
        if (!rootStillThere(root, mirror)
            || syncFile(database, job, root, mirror, relativePath, localFile, size, modified, record)
                == EnFileResult::CeFileRootLost)
            break;
    }
    database.commit();
    if (m_unfinishedMarked && !m_temporaryLeft)
        database.setUnfinished(mirror.alias, false);
    return result;
}

bool DSyncWorker::rootStillThere(DSyncDistantRoot& root, const DSyncPassJob::Mirror& mirror)
{
    if (root.verify())
        return true;
    // Whatever now answers at that path (the bare mount point of an unmounted share) is not
    // the distant side: the alias waits for the next pass.
    fail(__LINE__, QStringLiteral("Pass stopped, distant directory unreachable"),
         mirror.alias + QStringLiteral(": ") + mirror.remotePath + QStringLiteral(" (") + root.errorString()
             + QLatin1Char(')'));
    return false;
}

// A pass killed while copying leaves its temporary behind; the database says which aliases
// may have some.
void DSyncWorker::removeStaleTemporaries(DSyncDistantRoot& root, const DSyncPassJob::Mirror& mirror)
{
    const int removed = root.removeFiles(C_temporaryPrefix, C_temporarySuffix);
    if (removed < 0) {
        m_temporaryLeft = true;
        fail(__LINE__, QStringLiteral("Cannot remove the temporaries of an interrupted pass"),
             mirror.alias + QStringLiteral(": ") + root.errorString());
    } else if (removed > 0) {
        LogLine::debug(this, C_sourceFile, __LINE__, QStringLiteral("Temporaries of an interrupted pass removed:"),
                       mirror.alias + QStringLiteral(" ") + QString::number(removed));
    }
}

DSyncWorker::EnFileResult DSyncWorker::syncFile(DSyncDatabase& database, const DSyncPassJob& job,
                                                DSyncDistantRoot& root, const DSyncPassJob::Mirror& mirror,
                                                const QString& relativePath, const QString& localFile, qint64 size,
                                                qint64 modified, const DSyncDatabase::Record* record)
{
    emit syncStarted(localFile);
    const DSyncDistantRoot::Entry distant = root.entry(relativePath);

    DSyncDatabase::Record written;
    written.distantRoot = mirror.remotePath;
    written.size = size;
    written.modified = modified;

    if (distant.exists) {
        if (distant.isDirectory) {
            fail(__LINE__, QStringLiteral("Distant path is a directory"), mirror.remotePath + QLatin1Char('/') + relativePath);
            emit syncCompleted(localFile, false);
            return EnFileResult::CeFileFailed;
        }
        const bool asWritten = record && !distant.isSymLink && distant.size == record->distantSize
            && distant.modified == record->distantModified;
        if (!asWritten) {
            // Already the local content (its record lost in a crash, or the database wiped): only remember it.
            if (!distant.isSymLink && sameContent(localFile, root.openForReading(relativePath)))
                return storeRecord(database, root, mirror, relativePath, localFile, written, false);
            if (!moveToTrash(job.trashDirectoryPath, root, mirror.alias, relativePath)) {
                emit syncCompleted(localFile, false);
                return EnFileResult::CeFileFailed;
            }
        }
    }

    // Written through before the first temporary, so that a crash is followed by a clean-up.
    if (!m_unfinishedMarked)
        m_unfinishedMarked = database.setUnfinished(mirror.alias, true);
    if (!copyThroughTemporary(root, localFile, relativePath, modified)) {
        emit syncCompleted(localFile, false);
        return EnFileResult::CeFileFailed;
    }
    return storeRecord(database, root, mirror, relativePath, localFile, written, true);
}

// Records the distant file as it is now, once sure it was written on the distant side.
DSyncWorker::EnFileResult DSyncWorker::storeRecord(DSyncDatabase& database, DSyncDistantRoot& root,
                                                   const DSyncPassJob::Mirror& mirror, const QString& relativePath,
                                                   const QString& localFile, DSyncDatabase::Record record, bool copied)
{
    if (!rootStillThere(root, mirror)) {
        emit syncCompleted(localFile, false);
        return EnFileResult::CeFileRootLost;
    }
    const DSyncDistantRoot::Entry distant = root.entry(relativePath);
    record.distantSize = distant.size;
    record.distantModified = distant.modified;
    const bool stored = database.store(mirror.alias, relativePath, record);
    if (!stored && copied)
        fail(__LINE__, QStringLiteral("Copied but not recorded"), localFile);
    emit syncCompleted(localFile, stored);
    return stored ? EnFileResult::CeFileDone : EnFileResult::CeFileFailed;
}

bool DSyncWorker::copyThroughTemporary(DSyncDistantRoot& root, const QString& localFile, const QString& relativePath,
                                       qint64 modified)
{
    const QString distantFile = root.path() + QLatin1Char('/') + relativePath;
    const QString directory = QFileInfo(relativePath).path();
    if (!m_createdDirectories.contains(directory)) {
        if (!root.makeDirectories(directory)) {
            fail(__LINE__, QStringLiteral("Cannot create the distant directory"),
                 root.path() + QLatin1Char('/') + directory + QStringLiteral(": ") + root.errorString());
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
    const QString directoryPrefix = directory == QLatin1String(".") ? QString() : directory + QLatin1Char('/');
    QString temporaryPath;
    QFile temporary;
    for (int attempt = 0; attempt < 8 && !temporary.isOpen(); ++attempt) {
        temporaryPath = directoryPrefix + C_temporaryPrefix
            + QString::number(QRandomGenerator::global()->generate64(), 36) + C_temporarySuffix;
        const int fd = root.createNew(temporaryPath);
        if (fd >= 0 && !temporary.open(fd, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle))
            ::close(fd);
    }
    if (!temporary.isOpen()) {
        fail(__LINE__, QStringLiteral("Cannot write in the distant directory"),
             root.path() + QLatin1Char('/') + directory + QStringLiteral(": ") + root.errorString());
        return false;
    }
    const auto discard = [&](int line, const QString& message, const QString& detail) {
        temporary.close();
        if (!root.remove(temporaryPath))
            m_temporaryLeft = true;
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
    if (!root.rename(temporaryPath, relativePath))
        return discard(__LINE__, QStringLiteral("Cannot move the distant copy into place"),
                       distantFile + QStringLiteral(": ") + root.errorString());
    return true;
}

bool DSyncWorker::moveToTrash(const QString& trashRoot, DSyncDistantRoot& root, const QString& alias,
                              const QString& relativePath)
{
    const QString distantFile = root.path() + QLatin1Char('/') + relativePath;
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

    if (root.moveOut(relativePath, target))
        return true;
    // Another file system: a copy in the trash is enough, the distant file is then replaced.
    if (copyOut(root.openForReading(relativePath), target)) {
        root.remove(relativePath);
        return true;
    }
    fail(__LINE__, QStringLiteral("Cannot move the changed distant file to the trash"), distantFile);
    return false;
}

// Copies an open distant file (the descriptor is taken over) to a new file.
bool DSyncWorker::copyOut(int distantFd, const QString& target)
{
    if (distantFd < 0)
        return false;
    QFile source;
    if (!source.open(distantFd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(distantFd);
        return false;
    }
    QFile copy(target);
    if (!copy.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return false;
    if (m_buffer.size() != C_bufferSize)
        m_buffer.resize(C_bufferSize);
    qint64 read = 0;
    while ((read = source.read(m_buffer.data(), m_buffer.size())) > 0) {
        if (copy.write(m_buffer.constData(), read) != read)
            break;
    }
    copy.close();
    if (read == 0 && copy.error() == QFileDevice::NoError)
        return true;
    copy.remove();
    return false;
}
