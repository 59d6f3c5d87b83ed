#pragma once
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
class DSyncManager : public QObject
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

signals:
    void idleChanged(bool idle);
    void syncStarted(const QString& filePath);
    void syncCompleted(const QString& filePath, bool succeeded);
    void errorOccurred(const QString& message);

private:
    class Private;
    Private* d;
};
