#include "dsyncworker_p.h"

#include "dsynclocalwalk_p.h"
#include "utilities/logline.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>
#include <QThread>

#include <unistd.h>

namespace {
const char* const C_sourceFile = "platform/sync/dsyncworker";
const qint64 C_bufferSize = 256 * 1024;
const int C_recordsPerPage = 2000;
// A file this large sends the events gathered so far before it is copied.
const qint64 C_largeFile = 8 * 1024 * 1024;

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

// The records of one alias and distant root, read page by page in the walk's order.
class RecordStream
{
public:
    RecordStream(DSyncDatabase& database, const QString& alias, const QString& distantRoot)
        : m_database(database)
        , m_alias(alias)
        , m_distantRoot(distantRoot)
    {
    }

    // The record of a path, null when there is none; paths must come in increasing byte order.
    const DSyncDatabase::Record* find(const QByteArray& relativePath)
    {
        for (;;) {
            if (m_index >= m_page.size()) {
                if (m_ended)
                    return nullptr;
                m_page = m_database.recordsAfter(m_alias, m_distantRoot, m_last, C_recordsPerPage);
                m_index = 0;
                m_ended = m_page.size() < C_recordsPerPage;
                if (m_page.isEmpty())
                    return nullptr;
                m_last = m_page.constLast().relativePath;
            }
            const QByteArray& key = m_page.at(m_index).relativePath;
            if (key < relativePath) {
                ++m_index;
                continue;
            }
            return key == relativePath ? &m_page.at(m_index).record : nullptr;
        }
    }

private:
    DSyncDatabase& m_database;
    const QString m_alias;
    const QString m_distantRoot;
    QVector<DSyncDatabase::PathRecord> m_page;
    int m_index = 0;
    bool m_ended = false;
    QByteArray m_last;
};
}

const QString DSyncWorker::C_temporaryPrefix = QStringLiteral(".dsync-");
const QString DSyncWorker::C_temporarySuffix = QStringLiteral(".part");

DSyncWorker::DSyncWorker(const std::atomic_bool* paused, const std::atomic_bool* stopping)
    : m_paused(paused)
    , m_stopping(stopping)
{
    m_transfers.setMaxThreadCount(C_transfersInFlight);
}

DSyncWorker::~DSyncWorker()
{
    m_transfers.waitForDone();
}

bool DSyncWorker::shouldStop() const
{
    return m_paused->load() || m_stopping->load();
}

void DSyncWorker::post(DSyncEvent::EnKind kind, const QString& text)
{
    m_events.append(DSyncEvent {kind, text});
    if (!m_sinceFlush.isValid() || m_sinceFlush.elapsed() >= C_batchIntervalMs)
        flushEvents();
}

void DSyncWorker::flushEvents()
{
    m_sinceFlush.start();
    if (m_events.isEmpty())
        return;
    emit eventsReady(m_events);
    m_events.clear();
}

void DSyncWorker::fail(int line, const QString& message, const QString& detail)
{
    LogLine::critical(this, C_sourceFile, line, message, detail);
    post(DSyncEvent::CeError, detail.isEmpty() ? message : message + QStringLiteral(": ") + detail);
}

bool DSyncWorker::isExcluded(const QByteArray& fileName) const
{
    static const QByteArray temporaryPrefix = C_temporaryPrefix.toUtf8();
    static const QByteArray temporarySuffix = C_temporarySuffix.toUtf8();
    if (fileName.startsWith(temporaryPrefix) && fileName.endsWith(temporarySuffix))
        return true;
    for (const QByteArray& suffix : m_excludedSuffixes) {
        if (fileName.endsWith(suffix))
            return true;
    }
    if (m_excluded.isEmpty())
        return false;
    const QString name = QFile::decodeName(fileName);
    for (const QRegularExpression& expression : m_excluded) {
        if (expression.match(name).hasMatch())
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
            m_excludedSuffixes.clear();
            for (const QString& pattern : job.excludedPatterns) {
                const QString rest = pattern.mid(1);
                if (pattern.startsWith(QLatin1Char('*')) && !rest.isEmpty()
                    && !rest.contains(QRegularExpression(QStringLiteral("[*?\\[\\]\\\\]")))) {
                    m_excludedSuffixes << QFile::encodeName(rest);
                    continue;
                }
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
    flushEvents();
    emit passFinished(interrupted);
}

DSyncWorker::EnMirrorResult DSyncWorker::syncMirror(DSyncDatabase& database, const DSyncPassJob& job,
                                                    const DSyncPassJob::Mirror& mirror)
{
    DSyncLocalWalk walk;
    if (!walk.open(mirror.localPath)) {
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
    m_newDirectories.clear();
    m_temporaryLeft = false;
    m_unfinishedMarked = database.isUnfinished(mirror.alias);
    if (m_unfinishedMarked)
        removeStaleTemporaries(root, mirror);
    m_skippedRelative.clear();
    const QString localPrefix = mirror.localPath + QLatin1Char('/');
    for (const QString& skipped : qAsConst(m_skippedFiles)) {
        if (skipped.startsWith(localPrefix))
            m_skippedRelative.insert(QFile::encodeName(skipped.mid(localPrefix.size())));
    }

    MirrorState state;
    state.job = &job;
    state.mirror = &mirror;
    state.database = &database;
    state.root = &root;
    state.concurrent = root.isNetwork();
    const EnMirrorResult result = walkMirror(state, walk);
    collectTransfers(state, true);
    if (state.rootLost) {
        // Reported after the transfers that were in flight, as what ended the alias's pass.
        fail(__LINE__, QStringLiteral("Pass stopped, distant directory unreachable"),
             mirror.alias + QStringLiteral(": ") + mirror.remotePath + QStringLiteral(" (") + root.errorString()
                 + QLatin1Char(')'));
    }
    database.commit();
    if (m_unfinishedMarked && !m_temporaryLeft)
        database.setUnfinished(mirror.alias, false);
    return result;
}

DSyncWorker::EnMirrorResult DSyncWorker::walkMirror(MirrorState& state, DSyncLocalWalk& walk)
{
    RecordStream records(*state.database, state.mirror->alias, state.mirror->remotePath);
    DSyncLocalWalk::File file;
    while (walk.next(file)) {
        if (shouldStop())
            return EnMirrorResult::CeMirrorInterrupted;
        if (isExcluded(file.name) || m_skippedRelative.contains(file.relativePath))
            continue;
        const DSyncDatabase::Record* record = records.find(file.relativePath);
        if (record && record->size == file.size && record->modified == file.modified)
            continue;
        collectTransfers(state, false);
        // Whatever now answers at that path (the bare mount point of an unmounted share) is not
        // the distant side: the alias waits for the next pass.
        if (state.rootLost || !state.root->verify()) {
            state.rootLost = true;
            break;
        }
        if (syncFile(state, QFile::decodeName(file.relativePath), file.size, file.modified, record)
            == EnFileResult::CeFileRootLost)
            break;
    }
    return EnMirrorResult::CeMirrorDone;
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

DSyncWorker::EnFileResult DSyncWorker::syncFile(MirrorState& state, const QString& relativePath, qint64 size,
                                                qint64 modified, const DSyncDatabase::Record* record)
{
    const DSyncPassJob::Mirror& mirror = *state.mirror;
    DSyncDistantRoot& root = *state.root;
    const QString localFile = mirror.localPath + QLatin1Char('/') + relativePath;
    post(DSyncEvent::CeStarted, localFile);
    const QString directory = QFileInfo(relativePath).path();
    // A directory this pass made holds only what the pass put there: nothing to look at.
    const bool inNewDirectory = m_newDirectories.contains(directory);
    const DSyncDistantRoot::Entry distant = inNewDirectory ? DSyncDistantRoot::Entry() : root.entry(relativePath);

    DSyncDatabase::Record written;
    written.distantRoot = mirror.remotePath;
    written.size = size;
    written.modified = modified;

    if (distant.exists) {
        if (distant.isDirectory) {
            fail(__LINE__, QStringLiteral("Distant path is a directory"), mirror.remotePath + QLatin1Char('/') + relativePath);
            post(DSyncEvent::CeFailed, localFile);
            return EnFileResult::CeFileFailed;
        }
        const bool asWritten = record && !distant.isSymLink && distant.size == record->distantSize
            && distant.modified == record->distantModified;
        if (!asWritten) {
            // Already the local content (its record lost in a crash, or the database wiped): only remember it.
            if (!distant.isSymLink && sameContent(localFile, root.openForReading(relativePath))) {
                written.distantSize = distant.size;
                written.distantModified = distant.modified;
                return storeRecord(state, relativePath, localFile, written, false);
            }
            if (!moveToTrash(state.job->trashDirectoryPath, root, mirror.alias, relativePath)) {
                post(DSyncEvent::CeFailed, localFile);
                return EnFileResult::CeFileFailed;
            }
        }
    }

    if (!m_createdDirectories.contains(directory)) {
        bool created = false;
        if (!root.makeDirectories(directory, &created)) {
            fail(__LINE__, QStringLiteral("Cannot create the distant directory"),
                 root.path() + QLatin1Char('/') + directory + QStringLiteral(": ") + root.errorString());
            post(DSyncEvent::CeFailed, localFile);
            return EnFileResult::CeFileFailed;
        }
        m_createdDirectories.insert(directory);
        if (created)
            m_newDirectories.insert(directory);
    }
    // Written through before the first temporary, so that a crash is followed by a clean-up.
    if (!m_unfinishedMarked)
        m_unfinishedMarked = state.database->setUnfinished(mirror.alias, true);

    Transfer transfer;
    transfer.request.localFile = localFile;
    transfer.request.relativePath = relativePath;
    transfer.request.size = size;
    transfer.request.modified = modified;
    // A kernel client of a share may send cached data at close, and the server then sets the
    // time again: asked after the rename. Through a user-space mount the time set stays.
    transfer.request.statAfterRename = state.concurrent && !root.isUserSpace();
    transfer.request.timesExact = root.keepsExactTimes();
    transfer.request.noReplace = !distant.exists;
    transfer.record = written;
    if (size >= C_largeFile)
        flushEvents();
    if (!state.concurrent) {
        transfer.result = dsyncCopyFile(root.descriptor(), root.path(), transfer.request, state.abilities, m_buffer);
        return finishTransfer(state, transfer);
    }
    transfer.abilities = state.abilities;
    {
        QMutexLocker lock(&m_transferMutex);
        ++m_inFlight;
    }
    const int rootFd = root.descriptor();
    const QString rootPath = root.path();
    m_transfers.start(QRunnable::create([this, transfer, rootFd, rootPath]() mutable {
        static thread_local QByteArray buffer;
        transfer.result = dsyncCopyFile(rootFd, rootPath, transfer.request, transfer.abilities, buffer);
        QMutexLocker lock(&m_transferMutex);
        m_finishedTransfers.append(transfer);
        --m_inFlight;
        m_transferDone.wakeAll();
    }));
    return EnFileResult::CeFileDone;
}

void DSyncWorker::collectTransfers(MirrorState& state, bool all)
{
    if (!state.concurrent)
        return;
    for (;;) {
        QVector<Transfer> finished;
        bool more = false;
        {
            QMutexLocker lock(&m_transferMutex);
            const auto mustWait = [&] {
                return m_finishedTransfers.isEmpty() && (all ? m_inFlight > 0 : m_inFlight >= C_transfersInFlight);
            };
            while (mustWait()) {
                // Long copies: what was gathered meanwhile still reaches the manager in time.
                if (!m_transferDone.wait(&m_transferMutex, C_batchIntervalMs) && mustWait()) {
                    lock.unlock();
                    flushEvents();
                    lock.relock();
                }
            }
            finished.swap(m_finishedTransfers);
            more = all && m_inFlight > 0;
        }
        for (const Transfer& transfer : qAsConst(finished)) {
            state.abilities.clone = state.abilities.clone && transfer.abilities.clone;
            state.abilities.kernelCopy = state.abilities.kernelCopy && transfer.abilities.kernelCopy;
            finishTransfer(state, transfer);
        }
        if (!more)
            return;
    }
}

DSyncWorker::EnFileResult DSyncWorker::finishTransfer(MirrorState& state, const Transfer& transfer)
{
    if (!transfer.result.ok) {
        m_temporaryLeft = m_temporaryLeft || transfer.result.temporaryLeft;
        fail(__LINE__, transfer.result.message, transfer.result.detail);
        post(DSyncEvent::CeFailed, transfer.request.localFile);
        return EnFileResult::CeFileFailed;
    }
    DSyncDatabase::Record record = transfer.record;
    record.distantSize = transfer.result.distantSize;
    record.distantModified = transfer.result.distantModified;
    return storeRecord(state, transfer.request.relativePath, transfer.request.localFile, record, true);
}

// Records the distant file as written, once sure it was written on the distant side.
DSyncWorker::EnFileResult DSyncWorker::storeRecord(MirrorState& state, const QString& relativePath,
                                                   const QString& localFile, const DSyncDatabase::Record& record,
                                                   bool copied)
{
    // A distant root of the local disk cannot be replaced by a bare mount point: the check
    // before the file is enough there.
    if (state.rootLost || (state.root->isMountPoint() && !state.root->verify())) {
        state.rootLost = true;
        post(DSyncEvent::CeFailed, localFile);
        return EnFileResult::CeFileRootLost;
    }
    const bool stored = state.database->store(state.mirror->alias, relativePath, record);
    if (!stored && copied)
        fail(__LINE__, QStringLiteral("Copied but not recorded"), localFile);
    post(stored ? DSyncEvent::CeCompleted : DSyncEvent::CeFailed, localFile);
    return stored ? EnFileResult::CeFileDone : EnFileResult::CeFileFailed;
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
