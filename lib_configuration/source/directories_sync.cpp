// Placeholder bodies so the library links while sync control is written.
#include "directories.h"

void Directories::setSyncManagerFactory(SyncManagerFactory) {}
bool Directories::hasSynchronizedDistantFolder() const { return false; }
void Directories::synchronizeFolderRole(const QString&) {}
void Directories::markResetSyncReady(bool) {}
void Directories::tryFinalizeSyncDatabaseReset() {}
void Directories::finalizeSyncDatabaseReset(bool) {}
int Directories::computeResetSyncWatchdogMs() const { return 0; }
void Directories::performWipeAndResync() {}
void Directories::pauseAllSync() {}
void Directories::resumeAllSync() {}
void Directories::resetSyncDatabase() {}
void Directories::sltLogSyncStarted(QString) {}
void Directories::sltLogSyncCompleted(QString, bool) {}
void Directories::sltLogSyncErrorOccurred(QString) {}
void Directories::markResetReadyInternal(bool) {}
void Directories::dropConnection(QMetaObject::Connection&) {}
