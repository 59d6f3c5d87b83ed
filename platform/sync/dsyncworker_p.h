#pragma once
#include <QObject>
#include <QRegularExpression>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

#include <atomic>

#include "dsyncdatabase_p.h"
#include "dsyncdistantroot_p.h"

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

// Runs passes on the sync thread. Between two files it looks at the pause and stop flags
// the manager owns, and ends the pass early when one is set.
class DSyncWorker : public QObject
{
    Q_OBJECT
public:
    DSyncWorker(const std::atomic_bool* paused, const std::atomic_bool* stopping);

    void runPass(const DSyncPassJob& job);

    // Prefix and suffix of the temporary files written in distant directories.
    static const QString C_temporaryPrefix;
    static const QString C_temporarySuffix;

signals:
    void syncStarted(const QString& filePath);
    void syncCompleted(const QString& filePath, bool succeeded);
    void errorOccurred(const QString& message);
    // interrupted: the pass ended early because of a pause or the manager's destruction.
    void passFinished(bool interrupted);

private:
    enum class EnMirrorResult { CeMirrorDone, CeMirrorInterrupted };
    // CeFileRootLost: the distant root is no longer the one the alias's pass started with.
    enum class EnFileResult { CeFileDone, CeFileFailed, CeFileRootLost };

    bool shouldStop() const;
    EnMirrorResult syncMirror(DSyncDatabase& database, const DSyncPassJob& job, const DSyncPassJob::Mirror& mirror);
    EnFileResult syncFile(DSyncDatabase& database, const DSyncPassJob& job, DSyncDistantRoot& root,
                          const DSyncPassJob::Mirror& mirror, const QString& relativePath, const QString& localFile,
                          qint64 size, qint64 modified, const DSyncDatabase::Record* record);
    EnFileResult storeRecord(DSyncDatabase& database, DSyncDistantRoot& root, const DSyncPassJob::Mirror& mirror,
                             const QString& relativePath, const QString& localFile, DSyncDatabase::Record record,
                             bool copied);
    bool rootStillThere(DSyncDistantRoot& root, const DSyncPassJob::Mirror& mirror);
    void removeStaleTemporaries(DSyncDistantRoot& root, const DSyncPassJob::Mirror& mirror);
    bool copyThroughTemporary(DSyncDistantRoot& root, const QString& localFile, const QString& relativePath,
                              qint64 modified);
    bool moveToTrash(const QString& trashRoot, DSyncDistantRoot& root, const QString& alias,
                     const QString& relativePath);
    bool copyOut(int distantFd, const QString& target);
    bool isExcluded(const QString& fileName) const;
    void fail(int line, const QString& message, const QString& detail);

    const std::atomic_bool* m_paused;
    const std::atomic_bool* m_stopping;
    QVector<QRegularExpression> m_excluded;
    QSet<QString> m_skippedFiles;       // the database and its side files
    QSet<QString> m_createdDirectories; // distant directories (relative) known to exist in this alias's pass
    bool m_unfinishedMarked = false;    // the database says this alias may have temporaries left
    bool m_temporaryLeft = false;       // a temporary of this alias's pass could not be removed
    QByteArray m_buffer;                // copy buffer, kept between files
};
