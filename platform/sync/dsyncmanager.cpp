#include "sync/dsyncmanager.h"

#include "dsyncworker_p.h"
#include "utilities/logline.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSet>
#include <QThread>
#include <QTimer>

namespace {
const char* const C_sourceFile = "platform/sync/dsyncmanager";

QString normalisedPath(const QString& path)
{
    return path.isEmpty() ? QString() : QDir::cleanPath(QDir(path).absolutePath());
}

bool isSameOrInside(const QString& path, const QString& directory)
{
    return path == directory || path.startsWith(directory + QLatin1Char('/')) || directory == QLatin1String("/");
}
}

class DSyncManager::Private
{
public:
    DSyncManager* q;
    QString databaseFilePath;
    QString trashDirectoryPath;
    int intervalMs;
    QStringList excludedPatterns;

    QMap<QString, DSyncPassJob::Mirror> mirrors; // by alias
    QMap<QString, bool> availability;             // by alias; absent means available
    QSet<QString> mountPointRoots;                // distant roots that were mount points when added

    // Read by the worker between files.
    std::atomic_bool paused {false};
    std::atomic_bool stopping {false};

    bool running = false;  // a pass has been handed to the worker and has not reported back
    bool pending = false;  // requestSync() during a pass: one more pass follows
    bool catchUp = false;  // a pass was refused or cut short by the pause: resumeAll() runs one

    QThread* thread = nullptr;
    DSyncWorker* worker = nullptr;
    QTimer* timer = nullptr;

    void ensureStarted();
    void startPass();
    void dispatchPass();
    void passFinished(bool interrupted);
    void timerTick();
    void deliver(const DSyncEventBatch& events);
};

// One wake-up of this thread per batch; the signals themselves stay one per file, in order.
void DSyncManager::Private::deliver(const DSyncEventBatch& events)
{
    for (const DSyncEvent& event : events) {
        switch (event.kind) {
        case DSyncEvent::CeStarted:
            emit q->syncStarted(event.text);
            break;
        case DSyncEvent::CeCompleted:
        case DSyncEvent::CeFailed:
            emit q->syncCompleted(event.text, event.kind == DSyncEvent::CeCompleted);
            break;
        case DSyncEvent::CeError:
            emit q->errorOccurred(event.text);
            break;
        }
    }
}

void DSyncManager::Private::ensureStarted()
{
    if (thread)
        return;
    thread = new QThread;
    thread->setObjectName(QStringLiteral("DSyncManager"));
    worker = new DSyncWorker(&paused, &stopping);
    worker->moveToThread(thread);
    qRegisterMetaType<DSyncEventBatch>();
    QObject::connect(worker, &DSyncWorker::eventsReady, q, [this](const DSyncEventBatch& events) { deliver(events); },
                     Qt::QueuedConnection);
    QObject::connect(worker, &DSyncWorker::passFinished, q, [this](bool interrupted) { passFinished(interrupted); },
                     Qt::QueuedConnection);
    thread->start();

    timer = new QTimer(q);
    QObject::connect(timer, &QTimer::timeout, q, [this] { timerTick(); });
    if (intervalMs > 0)
        timer->start(intervalMs);
}

void DSyncManager::Private::startPass()
{
    running = true;
    emit q->idleChanged(false);
    dispatchPass();
}

void DSyncManager::Private::dispatchPass()
{
    DSyncPassJob job;
    job.databaseFilePath = databaseFilePath;
    job.trashDirectoryPath = trashDirectoryPath;
    job.excludedPatterns = excludedPatterns;
    for (DSyncPassJob::Mirror mirror : qAsConst(mirrors)) {
        mirror.remoteMountPoint = mountPointRoots.contains(mirror.remotePath);
        if (availability.value(mirror.alias, true))
            job.mirrors << mirror;
    }
    DSyncWorker* target = worker;
    QMetaObject::invokeMethod(worker, [target, job] { target->runPass(job); }, Qt::QueuedConnection);
}

void DSyncManager::Private::passFinished(bool interrupted)
{
    if (interrupted && paused)
        catchUp = true;
    if (pending) {
        pending = false;
        if (!paused) {
            dispatchPass();
            return;
        }
        catchUp = true;
    }
    running = false;
    emit q->idleChanged(true);
}

void DSyncManager::Private::timerTick()
{
    if (paused) {
        catchUp = true;
        return;
    }
    // A tick during a pass is dropped: the running pass already covers it.
    if (running || mirrors.isEmpty())
        return;
    startPass();
}

DSyncManager::DSyncManager(const QString& databaseFilePath, const QString& trashDirectoryPath, int intervalMs,
                           const QStringList& excludedPatterns, QObject* parent)
    : QObject(parent)
    , d(new Private)
{
    d->q = this;
    d->databaseFilePath = databaseFilePath;
    d->trashDirectoryPath = trashDirectoryPath;
    d->intervalMs = intervalMs;
    d->excludedPatterns = excludedPatterns;
}

DSyncManager::~DSyncManager()
{
    d->stopping = true;
    if (d->thread) {
        // The worker ends its pass after the current file.
        d->thread->quit();
        d->thread->wait();
        delete d->worker;
        delete d->thread;
    }
    delete d;
}

void DSyncManager::addDirectory(const QString& alias, const QString& localPath, const QString& remotePath)
{
    const QString local = normalisedPath(localPath);
    const QString remote = normalisedPath(remotePath);
    if (alias.isEmpty() || local.isEmpty() || remote.isEmpty()) {
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("addDirectory: alias and both paths are required"),
                          alias + QStringLiteral(" ") + localPath + QStringLiteral(" -> ") + remotePath);
        return;
    }
    if (isSameOrInside(local, remote) || isSameOrInside(remote, local)) {
        LogLine::critical(this, C_sourceFile, __LINE__,
                          QStringLiteral("addDirectory: local and distant directories overlap"),
                          local + QStringLiteral(" -> ") + remote);
        return;
    }
    if (DSyncDistantRoot::isMountPoint(remote))
        d->mountPointRoots.insert(remote);
    d->mirrors.insert(alias, DSyncPassJob::Mirror {alias, local, remote, false});
    d->ensureStarted();
}

void DSyncManager::delDirectory(const QString& alias)
{
    // A pass already running keeps its own snapshot and finishes this alias.
    d->mirrors.remove(alias);
}

QString DSyncManager::getLocalDirSynchronizedAlias(const QString& localPath) const
{
    const QString local = normalisedPath(localPath);
    if (local.isEmpty())
        return QString();
    for (const DSyncPassJob::Mirror& mirror : qAsConst(d->mirrors)) {
        if (mirror.localPath == local)
            return mirror.alias;
    }
    return QString();
}

bool DSyncManager::isAliasDirectorySynchronised(const QString& alias) const
{
    return d->mirrors.contains(alias);
}

void DSyncManager::setDirectoryAvailability(const QString& alias, bool available)
{
    d->availability.insert(alias, available);
}

void DSyncManager::pauseAll()
{
    d->paused = true;
}

void DSyncManager::resumeAll()
{
    d->paused = false;
    if (d->catchUp) {
        d->catchUp = false;
        requestSync();
    }
}

bool DSyncManager::isPausedAll() const
{
    return d->paused;
}

bool DSyncManager::isIdle() const
{
    return !d->running;
}

void DSyncManager::requestSync()
{
    d->ensureStarted();
    if (d->paused) {
        d->catchUp = true;
        return;
    }
    if (d->running) {
        d->pending = true;
        return;
    }
    d->startPass();
}

bool DSyncManager::wipeSyncDatabaseFile()
{
    if (d->running) {
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("wipeSyncDatabaseFile: refused while a pass runs"));
        return false;
    }
    if (d->databaseFilePath.isEmpty())
        return true;
    // The worker opens the database for a pass only, so nothing holds it now.
    bool wiped = true;
    for (const QString& suffix : {QString(), QStringLiteral("-journal"), QStringLiteral("-wal"), QStringLiteral("-shm")}) {
        const QString path = d->databaseFilePath + suffix;
        if (QFileInfo::exists(path) && !QFile::remove(path)) {
            LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("wipeSyncDatabaseFile: cannot delete"), path);
            wiped = false;
        }
    }
    return wiped;
}

int DSyncManager::intervalMs() const
{
    return d->intervalMs;
}

QStringList DSyncManager::excludedPatterns() const
{
    return d->excludedPatterns;
}

QStringList DSyncManager::aliases() const
{
    return d->mirrors.keys();
}

bool DSyncManager::waitForIdle(int timeoutMs)
{
    if (!d->running)
        return true;
    QEventLoop loop;
    const QMetaObject::Connection connection = connect(this, &DSyncManager::idleChanged, &loop, [&loop](bool idle) {
        if (idle)
            loop.quit();
    });
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    loop.exec();
    disconnect(connection);
    return !d->running;
}
