#pragma once
#include "sync/station_sync_export.h"
#include <QObject>
#include <QString>
#include <QStringList>

// One-way mirror of registered local directories to their distant directories. Passes run
// every interval and on requestSync() on a worker thread; signals reach the caller's thread
// queued. Bookkeeping lives in a SQLite database. Data is never lost: a distant file that
// differs from what the manager last wrote there goes to the trash directory before being
// replaced, and local deletions are not propagated.
// The operations the configuration library calls are virtual so that another
// implementation (or a test double) can stand in.
//
// Choices of this implementation:
// - The constructor only stores its arguments: the worker thread and the timer start with the
//   first addDirectory() or requestSync(), the database is opened only for a pass.
// - addDirectory() refuses empty arguments and overlapping directories (log line); adding an
//   alias again replaces its directories.
// - intervalMs <= 0 disables periodic passes (passes then run on requestSync() only).
// - A file is copied when its size or modification time differ from the record of its last
//   copy; it reaches the distant side under a hidden temporary name (".dsync-*.part") in the
//   target directory and is renamed into place, with the local modification time. Temporaries
//   left by a pass that did not end (a crash) are removed at the start of the alias's next pass.
// - A distant file without a record, or no longer as the manager last wrote it, is compared by
//   content: identical (e.g. a copy whose record a crash lost), it is only recorded; different,
//   it goes to the trash like a distant file changed behind the manager's back.
// - Trash layout: <trash>/<alias>/<relative directory>/<base>.<yyyyMMdd-HHmmss-zzz>[-n].<suffix>.
//   A file that cannot be trashed is not replaced (error signalled).
// - Regular files only: symbolic links and empty directories are not mirrored.
// - A distant root that does not exist is reported as unreachable and never created.
// - An alias's pass holds its distant root open and works relative to it: nothing is created
//   at or above the root. Before each file it checks that the path still names that directory
//   (and, if it was a mount point, that it still is one); otherwise that alias's pass stops with
//   "distant directory unreachable" and the files not copied stay unrecorded. A distant root
//   found to be a mount point when added stays expected to be one at every later pass (a share
//   unmounted leaves its bare mount point on the local disk).
// - Aliases are available until setDirectoryAvailability(alias, false); the flag is kept for
//   aliases not (yet) registered.
// - requestSync() during a pass queues one more pass; while paused it is remembered and run by
//   resumeAll(). Timer ticks during a pass are dropped.
// - idleChanged() is emitted on the manager's own thread, after the per-file signals of the pass.
// - syncStarted/syncCompleted carry the local file's path; errorOccurred carries an English text.
//   The worker hands them over in batches (at most about ten a second, and at the end of a
//   pass), each batch emitted here one signal per file in the order of the events: the owner's
//   thread wakes a bounded number of times per second whatever the number of files.
// - To a distant root on a network file system (a share) a few copies run at once; the order of
//   syncCompleted then follows the copies' ends, not the directory listing.
// - Each file is read with one stat on a pass where it did not change (none on the distant
//   side), and the records are streamed from the database in the walk's order, not loaded.
// - Destruction stops the pass after the file being copied and waits for it.
class STATION_SYNC_EXPORT DSyncManager : public QObject
{
    Q_OBJECT
public:
    DSyncManager(const QString& databaseFilePath, const QString& trashDirectoryPath, int intervalMs,
                 const QStringList& excludedPatterns, QObject* parent = nullptr);
    ~DSyncManager() override;

    virtual void addDirectory(const QString& alias, const QString& localPath, const QString& remotePath);
    virtual void delDirectory(const QString& alias);
    virtual QString getLocalDirSynchronizedAlias(const QString& localPath) const;
    virtual bool isAliasDirectorySynchronised(const QString& alias) const;
    virtual void setDirectoryAvailability(const QString& alias, bool available);

    virtual void pauseAll();
    virtual void resumeAll();
    virtual bool isPausedAll() const;
    virtual bool isIdle() const;
    virtual void requestSync();
    // Closes and deletes the database, then starts afresh; false while a pass runs.
    virtual bool wipeSyncDatabaseFile();

    int intervalMs() const;
    QStringList excludedPatterns() const;
    QStringList aliases() const;

    // Blocks (running the caller's event loop) until no pass runs; false on timeout. For tools and tests.
    bool waitForIdle(int timeoutMs);

signals:
    void idleChanged(bool idle);
    void syncStarted(const QString& filePath);
    void syncCompleted(const QString& filePath, bool succeeded);
    void errorOccurred(const QString& message);

private:
    class Private;
    Private* d;
};
