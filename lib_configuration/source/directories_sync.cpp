// Sync control of the registry: role synchronisation with the sync manager, pause/resume,
// and the timer-driven reset of the sync database.
#include "directories.h"
#include "directories_p.h"

#include <QDir>
#include <QFileInfo>

#include "sync/dsyncmanager.h"
#include "utilities/logline.h"

using namespace DirectoriesLiterals;

namespace {

const int C_resetWatchdogBaseMs = 5000;
const int C_resetWatchdogPerFileMs = 2000;
const int C_resetWatchdogMaxMs = 300000;

Directories::SyncManagerFactory& syncManagerFactory()
{
    static Directories::SyncManagerFactory factory;
    return factory;
}
}

void Directories::setSyncManagerFactory(SyncManagerFactory factory)
{
    syncManagerFactory() = std::move(factory);
}

DSyncManager* Directories::createSyncManager(const QString& databaseFilePath, const QString& trashDirectoryPath,
                                             int intervalMs, const QStringList& excludedPatterns)
{
    if (syncManagerFactory())
        return syncManagerFactory()(databaseFilePath, trashDirectoryPath, intervalMs, excludedPatterns, this);
    return new DSyncManager(databaseFilePath, trashDirectoryPath, intervalMs, excludedPatterns, this);
}

bool Directories::hasSynchronizedDistantFolder() const
{
    for (const QString& role : c_synchronizedRoles) {
        const QString target = m_foldersRoles.value(role);
        if (!target.isEmpty() && target != role)
            return true;
    }
    return false;
}

void Directories::synchronizeFolderRole(const QString& role)
{
    if (!m_syncManager) {
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("synchronizeFolderRole: syncManager not available"));
        return;
    }
    if (role.isEmpty())
        return;

    const QString targetId = m_foldersRoles.value(role);
    if (targetId == role)
        return;   // the role keeps its own local folder: nothing to mirror

    QString localPath;
    QString remotePath;
    QString previousAlias;
    QString alias;
    QString registeredAlias;
    for (const QSharedPointer<Folder>& folder : m_folders.list()) {
        if (!folder)
            continue;
        if (folder->id() == role) {
            localPath = folder->mountedPath();
            if (m_syncManager)
                previousAlias = m_syncManager->getLocalDirSynchronizedAlias(localPath);
        } else if (folder->id() == targetId) {
            remotePath = folder->mountedPath();
        }
        if (folder->id() == targetId) {
            alias = folder->aliasName();
            if (m_syncManager && m_syncManager->isAliasDirectorySynchronised(alias))
                registeredAlias = alias;
        }
    }

    if (localPath.isEmpty() || remotePath.isEmpty())
        return;

    if (registeredAlias != previousAlias) {
        if (!registeredAlias.isEmpty() && m_syncManager)
            m_syncManager->delDirectory(registeredAlias);
        if (!previousAlias.isEmpty() && m_syncManager)
            m_syncManager->delDirectory(previousAlias);
    }
    // Registered again even when nothing changed: the manager takes a re-registration in stride.
    if (m_syncManager)
        m_syncManager->addDirectory(alias, localPath, remotePath);
}

void Directories::pauseAllSync()
{
    if (m_syncManager)
        m_syncManager->pauseAll();
}

void Directories::resumeAllSync()
{
    if (m_syncManager)
        m_syncManager->resumeAll();
}

// Hooks kept for the application's own logging; the manager reports every file.
void Directories::sltLogSyncStarted(QString filePath)
{
    Q_UNUSED(filePath)
}

void Directories::sltLogSyncCompleted(QString filePath, bool succeeded)
{
    Q_UNUSED(filePath)
    Q_UNUSED(succeeded)
}

void Directories::sltLogSyncErrorOccurred(QString message)
{
    Q_UNUSED(message)
}

// --- Sync database reset ------------------------------------------------------------

void Directories::dropConnection(QMetaObject::Connection& connection)
{
    if (connection) {
        disconnect(connection);
        connection = QMetaObject::Connection();
    }
}

void Directories::connectResetTimers()
{
    m_resetWatchdogTimer.setSingleShot(true);
    m_resetMinimumDurationTimer.setSingleShot(true);
    m_resetMinimumDurationTimer.setInterval(2000);
    m_resetIdleWaitTimer.setSingleShot(true);
    m_resetIdleWaitTimer.setInterval(5000);

    connect(&m_resetWatchdogTimer, &QTimer::timeout, this, [this]() {
        if (m_resetInProgress)
            markResetReadyInternal(true);
    });
    connect(&m_resetIdleWaitTimer, &QTimer::timeout, this, [this]() {
        if (!m_resetInProgress)
            return;
        dropConnection(m_resetWaitForIdleConnection);
        performWipeAndResync();
    });
    connect(&m_resetMinimumDurationTimer, &QTimer::timeout, this, [this]() {
        if (!m_resetInProgress)
            return;
        m_resetMinimumDurationElapsed = true;
        if (m_resetReady)
            finalizeSyncDatabaseReset(m_resetResult);
    });
}

void Directories::resetSyncDatabase()
{
    if (!m_syncManager) {
        LogLine::critical(this, C_sourceFile, __LINE__,
                          QStringLiteral("Directories::resetSyncDatabase: sync manager not available"));
        emit syncDatabaseResetDone(false);
        return;
    }
    if (m_resetInProgress)
        return;

    m_resetInProgress = true;
    m_resetWasPausedBeforeReset = m_syncManager->isPausedAll();
    m_resetMinimumDurationTimer.start();

    if (!m_resetWasPausedBeforeReset && m_syncManager)
        m_syncManager->pauseAll();

    if (m_syncManager && m_syncManager->isIdle()) {
        QTimer::singleShot(0, this, &Directories::performWipeAndResync);
        return;
    }

    dropConnection(m_resetWaitForIdleConnection);
    if (m_syncManager) {
        m_resetWaitForIdleConnection = connect(m_syncManager.data(), &DSyncManager::idleChanged, this, [this](bool idle) {
            if (!idle || !m_resetInProgress)
                return;
            dropConnection(m_resetWaitForIdleConnection);
            m_resetIdleWaitTimer.stop();
            performWipeAndResync();
        });
    }
    m_resetIdleWaitTimer.start();
}

void Directories::performWipeAndResync()
{
    if (!m_resetInProgress || !m_syncManager)
        return;

    if (!m_syncManager->wipeSyncDatabaseFile()) {
        LogLine::critical(this, C_sourceFile, __LINE__,
                          QStringLiteral("Directories::performWipeAndResync: file wipe failed"));
        if (!m_resetWasPausedBeforeReset && m_syncManager)
            m_syncManager->resumeAll();
        if (m_resetInProgress)
            markResetReadyInternal(false);
        return;
    }

    const QStringList roles = c_synchronizedRoles;
    for (const QString& role : roles)
        synchronizeFolderRole(role);

    refreshDirectoriesPaths();

    if (!m_resetWasPausedBeforeReset && m_syncManager)
        m_syncManager->resumeAll();

    dropConnection(m_resetResyncIdleConnection);
    if (m_syncManager) {
        m_resetResyncIdleConnection = connect(m_syncManager.data(), &DSyncManager::idleChanged, this, [this](bool idle) {
            if (idle && m_resetInProgress)
                markResetReadyInternal(true);
        });
    }

    m_resetWatchdogTimer.start(computeResetSyncWatchdogMs());

    if (m_syncManager)
        m_syncManager->requestSync();
}

void Directories::markResetSyncReady(bool success)
{
    if (m_resetInProgress)
        markResetReadyInternal(success);
}

void Directories::markResetReadyInternal(bool success)
{
    m_resetReady = true;
    m_resetResult = success;
    m_resetWatchdogTimer.stop();
    dropConnection(m_resetResyncIdleConnection);
    tryFinalizeSyncDatabaseReset();
}

void Directories::tryFinalizeSyncDatabaseReset()
{
    if (m_resetInProgress && m_resetReady && m_resetMinimumDurationElapsed)
        finalizeSyncDatabaseReset(m_resetResult);
}

void Directories::finalizeSyncDatabaseReset(bool success)
{
    if (!m_resetInProgress)
        return;

    m_resetWatchdogTimer.stop();
    m_resetMinimumDurationTimer.stop();
    m_resetIdleWaitTimer.stop();
    dropConnection(m_resetResyncIdleConnection);
    dropConnection(m_resetWaitForIdleConnection);

    m_resetInProgress = false;
    m_resetReady = false;
    m_resetMinimumDurationElapsed = false;
    m_resetResult = false;
    m_resetWasPausedBeforeReset = false;

    emit syncDatabaseResetDone(success);
}

int Directories::computeResetSyncWatchdogMs() const
{
    if (c_synchronizedRoles.isEmpty())
        return C_resetWatchdogBaseMs;

    qint64 count = 0;
    for (const QString& role : c_synchronizedRoles) {
        const QString path = getLocalFolderPathByRole(role);
        if (path.isEmpty() || !QFileInfo(path).isDir())
            continue;
        count += QDir(path).entryList(QDir::Files | QDir::NoSymLinks, QDir::Unsorted).size();
    }
    return int(qMin<qint64>(count * C_resetWatchdogPerFileMs + C_resetWatchdogBaseMs, C_resetWatchdogMaxMs));
}
