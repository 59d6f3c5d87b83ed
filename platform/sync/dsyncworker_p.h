#pragma once
#include <QElapsedTimer>
#include <QMutex>
#include <QObject>
#include <QRegularExpression>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QThreadPool>
#include <QVector>
#include <QWaitCondition>

#include <atomic>

#include "dsynccopy_p.h"
#include "dsyncdatabase_p.h"
#include "dsyncdistantroot_p.h"

class DSyncLocalWalk;

// What one pass works on: a snapshot taken on the manager's thread, so that the worker never
// reads the manager's state.
struct DSyncPassJob
{
    struct Mirror
    {
        QString alias;
        QString localPath;
        QString remotePath;
        bool remoteMountPoint = false; // the distant root must be a mount point
    };
    QVector<Mirror> mirrors;
    QString databaseFilePath;
    QString trashDirectoryPath;
    QStringList excludedPatterns;
};

// One per-file signal (or error) of a pass, handed to the manager's thread in batches.
struct DSyncEvent
{
    enum EnKind : quint8 { CeStarted, CeCompleted, CeFailed, CeError };
    EnKind kind;
    QString text; // the local file's path, or the error message
};
using DSyncEventBatch = QVector<DSyncEvent>;
Q_DECLARE_METATYPE(DSyncEventBatch)

// Runs passes on the sync thread. Between two files it looks at the pause and stop flags
// the manager owns, and ends the pass early when one is set (copies in flight are finished
// and recorded first).
// Per-file events are gathered and sent at most every C_batchIntervalMs (and at the end of a
// pass), so that the manager's thread wakes a bounded number of times whatever the number of
// files. To a distant root on a network file system (a share) up to C_transfersInFlight
// copies run at once; the walk, the decisions, the trash and the database stay on this thread.
class DSyncWorker : public QObject
{
    Q_OBJECT
public:
    DSyncWorker(const std::atomic_bool* paused, const std::atomic_bool* stopping);
    ~DSyncWorker() override;

    void runPass(const DSyncPassJob& job);

    // Prefix and suffix of the temporary files written in distant directories.
    static const QString C_temporaryPrefix;
    static const QString C_temporarySuffix;
    static const int C_batchIntervalMs = 100;
    static const int C_transfersInFlight = 4;

signals:
    void eventsReady(const DSyncEventBatch& events);
    // interrupted: the pass ended early because of a pause or the manager's destruction.
    void passFinished(bool interrupted);

private:
    enum class EnMirrorResult { CeMirrorDone, CeMirrorInterrupted };
    // CeFileRootLost: the distant root is no longer the one the alias's pass started with.
    enum class EnFileResult { CeFileDone, CeFileFailed, CeFileRootLost };

    struct Transfer
    {
        DSyncCopyRequest request;
        DSyncDatabase::Record record;
        DSyncCopyResult result;
        DSyncCopyAbilities abilities;
    };
    struct MirrorState
    {
        const DSyncPassJob* job = nullptr;
        const DSyncPassJob::Mirror* mirror = nullptr;
        DSyncDatabase* database = nullptr;
        DSyncDistantRoot* root = nullptr;
        bool concurrent = false;
        bool rootLost = false;
        DSyncCopyAbilities abilities;
    };

    bool shouldStop() const;
    EnMirrorResult syncMirror(DSyncDatabase& database, const DSyncPassJob& job, const DSyncPassJob::Mirror& mirror);
    EnMirrorResult walkMirror(MirrorState& state, DSyncLocalWalk& walk);
    EnFileResult syncFile(MirrorState& state, const QString& relativePath, qint64 size, qint64 modified,
                          const DSyncDatabase::Record* record);
    EnFileResult finishTransfer(MirrorState& state, const Transfer& transfer);
    EnFileResult storeRecord(MirrorState& state, const QString& relativePath, const QString& localFile,
                             const DSyncDatabase::Record& record, bool copied);
    // Finished transfers recorded; with `all`, waits for every one in flight, else only for a free slot when all are taken.
    void collectTransfers(MirrorState& state, bool all);
    void removeStaleTemporaries(DSyncDistantRoot& root, const DSyncPassJob::Mirror& mirror);
    bool moveToTrash(const QString& trashRoot, DSyncDistantRoot& root, const QString& alias,
                     const QString& relativePath);
    bool copyOut(int distantFd, const QString& target);
    bool isExcluded(const QByteArray& fileName) const;
    void fail(int line, const QString& message, const QString& detail);
    void post(DSyncEvent::EnKind kind, const QString& text);
    void flushEvents();

    const std::atomic_bool* m_paused;
    const std::atomic_bool* m_stopping;
    QVector<QRegularExpression> m_excluded;
    QVector<QByteArray> m_excludedSuffixes; // patterns "*text" without other wildcards, matched without a regex
    QSet<QString> m_skippedFiles;           // the database and its side files
    QSet<QByteArray> m_skippedRelative;     // the same, relative to the mirror's local directory
    QSet<QString> m_createdDirectories;     // distant directories (relative) known to exist in this alias's pass
    QSet<QString> m_newDirectories;         // the ones this alias's pass made
    bool m_unfinishedMarked = false;        // the database says this alias may have temporaries left
    bool m_temporaryLeft = false;           // a temporary of this alias's pass could not be removed
    QByteArray m_buffer;                    // copy buffer of this thread, kept between files

    DSyncEventBatch m_events;
    QElapsedTimer m_sinceFlush;

    QThreadPool m_transfers;
    QMutex m_transferMutex;
    QWaitCondition m_transferDone;
    QVector<Transfer> m_finishedTransfers; // guarded by m_transferMutex
    int m_inFlight = 0;                    // guarded by m_transferMutex
};
