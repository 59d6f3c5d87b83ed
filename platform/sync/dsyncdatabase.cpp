#include "dsyncdatabase_p.h"

#include "utilities/logline.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {
const char* const C_sourceFile = "platform/sync/dsyncdatabase";
// Writes grouped in one transaction, committed once a second (or every C_writesPerTransaction):
// each commit waits for the disk, and a crash loses at most the records of the last second
// (the files are then compared by content on the next pass, nothing is lost).
const int C_writesPerTransaction = 20000;
const qint64 C_transactionMs = 1000;
}

DSyncDatabase::DSyncDatabase(const QString& connectionName)
    : m_connectionName(connectionName)
{
}

DSyncDatabase::~DSyncDatabase()
{
    close();
}

bool DSyncDatabase::open(const QString& filePath)
{
    close();
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
        db.setDatabaseName(filePath);
        if (!db.open()) {
            m_lastError = db.lastError().text();
            LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("Cannot open the sync database"),
                              filePath + QStringLiteral(": ") + m_lastError);
            db = QSqlDatabase();
            QSqlDatabase::removeDatabase(m_connectionName);
            return false;
        }
    }
    if (!exec(QStringLiteral("CREATE TABLE IF NOT EXISTS files ("
                             "alias TEXT NOT NULL, relative_path TEXT NOT NULL, distant_root TEXT NOT NULL, "
                             "size INTEGER NOT NULL, modified INTEGER NOT NULL, "
                             "distant_size INTEGER NOT NULL, distant_modified INTEGER NOT NULL, "
                             "PRIMARY KEY (alias, relative_path))"))
        || !exec(QStringLiteral("CREATE TABLE IF NOT EXISTS unfinished (alias TEXT NOT NULL PRIMARY KEY)"))) {
        close();
        return false;
    }
    m_insert.reset(new QSqlQuery(QSqlDatabase::database(m_connectionName, false)));
    if (!m_insert->prepare(QStringLiteral("INSERT OR REPLACE INTO files "
                                          "(alias, relative_path, distant_root, size, modified, distant_size, distant_modified) "
                                          "VALUES (?, ?, ?, ?, ?, ?, ?)"))) {
        m_lastError = m_insert->lastError().text();
        close();
        return false;
    }
    return true;
}

void DSyncDatabase::close()
{
    if (!QSqlDatabase::contains(m_connectionName))
        return;
    commit();
    m_insert.reset();
    m_page.reset();
    {
        QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connectionName);
}

bool DSyncDatabase::exec(const QString& statement)
{
    QSqlQuery query(QSqlDatabase::database(m_connectionName, false));
    if (query.exec(statement))
        return true;
    m_lastError = query.lastError().text();
    LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("Sync database statement failed"), m_lastError);
    return false;
}

bool DSyncDatabase::exec(const QString& statement, const QString& value)
{
    QSqlQuery query(QSqlDatabase::database(m_connectionName, false));
    query.prepare(statement);
    query.addBindValue(value);
    if (query.exec())
        return true;
    m_lastError = query.lastError().text();
    LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("Sync database statement failed"), m_lastError);
    return false;
}

bool DSyncDatabase::begin()
{
    if (m_inTransaction)
        return true;
    m_inTransaction = QSqlDatabase::database(m_connectionName, false).transaction();
    m_pendingWrites = 0;
    m_transactionClock.start();
    return m_inTransaction;
}

bool DSyncDatabase::commit()
{
    if (!m_inTransaction)
        return true;
    m_inTransaction = false;
    QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
    if (db.commit())
        return true;
    m_lastError = db.lastError().text();
    LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("Sync database commit failed"), m_lastError);
    return false;
}

QVector<DSyncDatabase::PathRecord> DSyncDatabase::recordsAfter(const QString& alias, const QString& distantRoot,
                                                                const QByteArray& after, int limit)
{
    QVector<PathRecord> result;
    if (!m_page) {
        m_page.reset(new QSqlQuery(QSqlDatabase::database(m_connectionName, false)));
        m_page->setForwardOnly(true);
        // The primary key's index gives the order; the statement ends before the pass writes.
        if (!m_page->prepare(QStringLiteral("SELECT relative_path, size, modified, distant_size, distant_modified "
                                            "FROM files WHERE alias = ? AND relative_path > ? AND distant_root = ? "
                                            "ORDER BY relative_path LIMIT ?"))) {
            m_lastError = m_page->lastError().text();
            m_page.reset();
            LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("Cannot read the sync records"), m_lastError);
            return result;
        }
    }
    QSqlQuery& query = *m_page;
    query.bindValue(0, alias);
    query.bindValue(1, after.isEmpty() ? QString(QLatin1String("")) : QString::fromUtf8(after)); // never NULL
    query.bindValue(2, distantRoot);
    query.bindValue(3, limit);
    if (!query.exec()) {
        m_lastError = query.lastError().text();
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("Cannot read the sync records"), m_lastError);
        return result;
    }
    result.reserve(limit);
    while (query.next()) {
        PathRecord row;
        row.relativePath = query.value(0).toString().toUtf8();
        row.record.distantRoot = distantRoot;
        row.record.size = query.value(1).toLongLong();
        row.record.modified = query.value(2).toLongLong();
        row.record.distantSize = query.value(3).toLongLong();
        row.record.distantModified = query.value(4).toLongLong();
        result << row;
    }
    query.finish();
    return result;
}

bool DSyncDatabase::store(const QString& alias, const QString& relativePath, const Record& record)
{
    if (!m_insert)
        return false;
    begin();
    QSqlQuery& query = *m_insert;
    query.bindValue(0, alias);
    query.bindValue(1, relativePath);
    query.bindValue(2, record.distantRoot);
    query.bindValue(3, record.size);
    query.bindValue(4, record.modified);
    query.bindValue(5, record.distantSize);
    query.bindValue(6, record.distantModified);
    if (!query.exec()) {
        m_lastError = query.lastError().text();
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("Cannot store a sync record"),
                          relativePath + QStringLiteral(": ") + m_lastError);
        return false;
    }
    if (++m_pendingWrites >= C_writesPerTransaction || m_transactionClock.elapsed() >= C_transactionMs)
        return commit();
    return true;
}

bool DSyncDatabase::isUnfinished(const QString& alias)
{
    QSqlQuery query(QSqlDatabase::database(m_connectionName, false));
    query.prepare(QStringLiteral("SELECT 1 FROM unfinished WHERE alias = ?"));
    query.addBindValue(alias);
    if (!query.exec()) {
        m_lastError = query.lastError().text();
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("Cannot read the sync records"), m_lastError);
        return true; // a clean-up for nothing costs less than temporaries left for ever
    }
    return query.next();
}

bool DSyncDatabase::setUnfinished(const QString& alias, bool unfinished)
{
    if (!commit())
        return false;
    return exec(unfinished ? QStringLiteral("INSERT OR IGNORE INTO unfinished (alias) VALUES (?)")
                           : QStringLiteral("DELETE FROM unfinished WHERE alias = ?"),
                alias);
}
