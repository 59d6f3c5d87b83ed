#pragma once
#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <QVector>

#include <memory>

class QSqlQuery;

// Bookkeeping of the copies a sync pass made, one SQLite connection of the calling thread.
// Not thread-safe: open, use and close it on one thread.
class DSyncDatabase
{
public:
    struct Record
    {
        QString distantRoot;       // distant directory the copy was written to
        qint64 size = -1;          // local file when it was copied
        qint64 modified = -1;      // ms since the epoch, local
        qint64 distantSize = -1;   // distant copy as written
        qint64 distantModified = -1;
    };

    explicit DSyncDatabase(const QString& connectionName);
    ~DSyncDatabase();
    DSyncDatabase(const DSyncDatabase&) = delete;
    DSyncDatabase& operator=(const DSyncDatabase&) = delete;

    bool open(const QString& filePath);
    void close();
    QString lastError() const { return m_lastError; }

    struct PathRecord
    {
        QByteArray relativePath; // UTF-8, as SQLite orders it
        Record record;
    };
    // Up to `limit` records of an alias written to one distant root, whose paths (relative to
    // the local directory) come after `after`, in byte order: a pass streams them page by page
    // instead of holding them all. Empty at the end or on an error (lastError()).
    QVector<PathRecord> recordsAfter(const QString& alias, const QString& distantRoot, const QByteArray& after,
                                     int limit);
    bool store(const QString& alias, const QString& relativePath, const Record& record);
    // Groups writes: one transaction per second of work instead of one per file.
    bool commit();

    // Whether the distant side of an alias may hold temporaries of a pass that did not end.
    // Written through at once (pending records included), so that it outlives a crash.
    bool isUnfinished(const QString& alias);
    bool setUnfinished(const QString& alias, bool unfinished);

private:
    bool exec(const QString& statement);
    bool exec(const QString& statement, const QString& value);
    bool begin();

    QString m_connectionName;
    std::unique_ptr<QSqlQuery> m_insert; // prepared once per open
    std::unique_ptr<QSqlQuery> m_page;
    QString m_lastError;
    bool m_inTransaction = false;
    int m_pendingWrites = 0;
    QElapsedTimer m_transactionClock;
};
