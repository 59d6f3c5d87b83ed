#pragma once
#include "stationtool.h"
// Helpers of the doctor tests: a station made from the demo one, the tool run on it, and a
// fingerprint of the station tree to show that the doctor changed nothing.
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStringList>

namespace DoctorStation {

struct Run : ToolRun {
    QJsonObject json;   // the --json report when the run asked for it
};

inline Run run(const QString& station, const QString& stateDir, const QStringList& arguments)
{
    Run result;
    static_cast<ToolRun&>(result) = runTool(QStringLiteral(STATION_CONFIG_BINARY),
                                            QStringList { "--station", station } + arguments, toolEnvironment(stateDir));
    if (arguments.contains("--json"))
        result.json = QJsonDocument::fromJson(result.out.toUtf8()).object();
    return result;
}

// Rewrites a JSON file in place (its mode is kept).
inline bool writeJson(const QString& path, const QJsonObject& object)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) && file.resize(0) && file.write(QJsonDocument(object).toJson()) > 0;
}

// Replaces the document's folders of type samba by `shares` (and drops role assignments).
inline bool setShares(const QString& documentPath, const QJsonArray& shares)
{
    QJsonObject root = readJson(documentPath);
    QJsonObject directories = root.value("directories").toObject();
    QJsonArray folders;
    for (const QJsonValue& folder : directories.value("folders").toArray()) {
        if (folder.toObject().value("type").toString() != "samba")
            folders.append(folder);
    }
    for (const QJsonValue& share : shares)
        folders.append(share);
    directories.insert("folders", folders);
    directories.insert("foldersRoles", QJsonObject());
    root.insert("directories", directories);
    return !root.isEmpty() && writeJson(documentPath, root);
}

// A real sync database with the sync library's table and some rows.
inline bool writeSyncDatabase(const QString& path, int rows)
{
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "doctor-test");
        db.setDatabaseName(path);
        if (db.open()) {
            QSqlQuery query(db);
            ok = query.exec("CREATE TABLE IF NOT EXISTS files (alias TEXT NOT NULL, relative_path TEXT NOT NULL, "
                            "distant_root TEXT NOT NULL, size INTEGER NOT NULL, modified INTEGER NOT NULL, "
                            "distant_size INTEGER NOT NULL, distant_modified INTEGER NOT NULL, "
                            "PRIMARY KEY (alias, relative_path))");
            db.transaction();
            for (int i = 0; ok && i < rows; ++i) {
                query.prepare("INSERT INTO files VALUES ('results', ?, '/share', ?, ?, ?, ?)");
                query.addBindValue(QStringLiteral("cycle-%1-%2.db").arg(i, 6, 10, QChar('0')).arg(QString(40, 'x')));
                query.addBindValue(1000 + i);
                query.addBindValue(qint64(1700000000000) + i);
                query.addBindValue(1000 + i);
                query.addBindValue(qint64(1700000000000) + i);
                ok = query.exec();
            }
            ok = db.commit() && ok;
            db.close();
        }
    }
    QSqlDatabase::removeDatabase("doctor-test");
    return ok;
}

// Path -> content digest, size, mode and modification time of every entry of a tree.
inline QMap<QString, QString> fingerprint(const QString& root)
{
    QMap<QString, QString> entries;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QFileInfo info = it.fileInfo();
        QString digest;
        if (info.isFile()) {
            QFile file(it.filePath());
            if (file.open(QIODevice::ReadOnly)) {
                QCryptographicHash hash(QCryptographicHash::Sha256);
                hash.addData(&file);
                digest = QString::fromLatin1(hash.result().toHex());
            }
        }
        entries.insert(QDir(root).relativeFilePath(it.filePath()),
                       QStringLiteral("%1 %2 %3 %4").arg(digest).arg(info.size()).arg(int(info.permissions()), 0, 16)
                           .arg(info.lastModified().toMSecsSinceEpoch()));
    }
    return entries;
}

// The check of a --json report with this name (empty when absent).
inline QJsonObject check(const QJsonObject& report, const QString& name)
{
    for (const QJsonValue& value : report.value("checks").toArray()) {
        if (value.toObject().value("check").toString() == name)
            return value.toObject();
    }
    return QJsonObject();
}

// "name=level" of every check that is not ok.
inline QStringList notOk(const QJsonObject& report)
{
    QStringList list;
    for (const QJsonValue& value : report.value("checks").toArray()) {
        const QJsonObject row = value.toObject();
        if (row.value("level").toString() != "ok")
            list << row.value("check").toString() + '=' + row.value("level").toString();
    }
    return list;
}

} // namespace DoctorStation
