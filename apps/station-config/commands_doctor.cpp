// doctor: checks a station the way a technician troubleshoots one, one line per check with
// ok / warning / error and what to do. It reads only: the library is not started (starting it
// creates folders, mounts shares, opens the sync database and clears temporaries), the sync
// database is opened read-only, and a share's credentials are tried with a listing.
#include "commands.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QStorageInfo>

#include <cerrno>
#include <cstring>
#include <unistd.h>

#include "folder.h"
#include "settingsdocument.h"
#include "settingshistory.h"
#include "station.h"
#include "utilities/mounttable.h"
#include "utilities/preconfiguration.h"
#include "utilities/simplecrypt.h"

namespace {
// Free space below these is an error / a warning.
constexpr qint64 C_spaceErrorBytes = 64LL * 1024 * 1024;
constexpr qint64 C_spaceWarningBytes = 512LL * 1024 * 1024;
// A trash over this is worth emptying.
constexpr qint64 C_trashWarningBytes = 1024LL * 1024 * 1024;
// A sync temporary older than this belongs to no running pass.
constexpr qint64 C_staleTemporarySeconds = 600;
// The most entries looked at for temporaries under one root (a share may be large).
constexpr int C_temporaryScanLimit = 50000;
constexpr int C_credentialsTimeoutMs = 15000;

enum EnLevel { CeOk, CeWarning, CeError };

struct Check {
    QString name;
    EnLevel level;
    QString message;
    QString advice;   // what to do; empty when ok
};

QString levelName(EnLevel level)
{
    switch (level) {
    case CeOk: return QStringLiteral("ok");
    case CeWarning: return QStringLiteral("warning");
    case CeError: break;
    }
    return QStringLiteral("error");
}

QString sizeText(qint64 bytes)
{
    if (bytes >= 1024LL * 1024 * 1024)
        return QString::number(double(bytes) / (1024.0 * 1024 * 1024), 'f', 1) + QStringLiteral(" GiB");
    return QString::number(double(bytes) / (1024.0 * 1024), 'f', 1) + QStringLiteral(" MiB");
}

QString modeText(const QString& path)
{
    const QFile::Permissions p = QFileInfo(path).permissions();
    const int mode = ((p & QFile::ReadOwner) ? 0400 : 0) | ((p & QFile::WriteOwner) ? 0200 : 0)
        | ((p & QFile::ExeOwner) ? 0100 : 0) | ((p & QFile::ReadGroup) ? 040 : 0) | ((p & QFile::WriteGroup) ? 020 : 0)
        | ((p & QFile::ExeGroup) ? 010 : 0) | ((p & QFile::ReadOther) ? 04 : 0) | ((p & QFile::WriteOther) ? 02 : 0)
        | ((p & QFile::ExeOther) ? 01 : 0);
    return QStringLiteral("0%1").arg(mode, 3, 8, QLatin1Char('0'));
}

// access(2) for writing: honours read-only mounts, and for root nothing else. The system's
// reason in `reason` when not.
bool writable(const QString& path, QString* reason = nullptr)
{
    if (::access(QFile::encodeName(path).constData(), W_OK) == 0)
        return true;
    const int error = errno;
    if (reason)
        *reason = QString::fromLocal8Bit(std::strerror(error));
    return false;
}

class Doctor
{
public:
    QList<Check> checks;

    void add(const QString& name, EnLevel level, const QString& message, const QString& advice = QString())
    {
        checks.append({ name, level, message, level == CeOk ? QString() : advice });
    }

    void preconfiguration(const QString& directory, bool& loaded)
    {
        const QString path = directory + QStringLiteral("/preconfiguration.json");
        loaded = PreConfiguration::load(path);
        if (!loaded) {
            add(QStringLiteral("preconfiguration"), CeError, path + QStringLiteral(" cannot be read as a JSON object"),
                QStringLiteral("restore the station's pre-configuration from its installation"));
            return;
        }
        QStringList missing;
        for (const char* name : { "configDirPath", "configFilename", "internalStorageDirPath", "mountingStorageDirPath",
                                  "syncDatabaseFilePath", "trashStorageDirPath" }) {
            if (PreConfiguration::getParameter(QLatin1String(name)).toString().isEmpty())
                missing << QLatin1String(name);
        }
        if (missing.isEmpty())
            add(QStringLiteral("preconfiguration"), CeOk, path);
        else
            add(QStringLiteral("preconfiguration"), CeError, path + QStringLiteral(" lacks ") + missing.join(QStringLiteral(", ")),
                QStringLiteral("add the missing parameters to the pre-configuration"));
    }

    QJsonObject document(const QString& path)
    {
        const SettingsDocument::Reading reading = SettingsDocument::read(path);
        if (reading.state == SettingsDocument::CeMissing) {
            add(QStringLiteral("document"), CeWarning, path + QStringLiteral(": no document; the station starts from defaults"),
                QStringLiteral("save the settings once (station-config set or station-settings) to write one"));
        } else if (reading.state == SettingsDocument::CeUnusable) {
            add(QStringLiteral("document"), CeError, SettingsDocument::describe(reading, path),
                QStringLiteral("restore a kept version with 'station-config rollback 0', or move the file aside and start from defaults"));
        } else {
            add(QStringLiteral("document"), CeOk, path + QStringLiteral(": valid, %1 bytes").arg(reading.bytes.size()));
        }
        if (reading.state != SettingsDocument::CeMissing) {
            const QFileInfo info(path);
            const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
                | QFile::WriteOther | QFile::ExeOther;
            if (info.permissions() & others)
                add(QStringLiteral("document-mode"), CeWarning,
                    QStringLiteral("mode %1: other users can read the share passwords it holds").arg(modeText(path)),
                    QStringLiteral("chmod 600 ") + path);
            else
                add(QStringLiteral("document-mode"), CeOk, QStringLiteral("mode %1, owner only").arg(modeText(path)));
        }
        const QVector<SettingsHistory::Version> versions = SettingsHistory(path).versions();
        if (versions.isEmpty())
            add(QStringLiteral("document-history"), CeWarning,
                QStringLiteral("no kept versions: a damaged document could not be rolled back"),
                QStringLiteral("versions are kept at each save (station-config set, station-settings)"));
        else
            add(QStringLiteral("document-history"), CeOk, QStringLiteral("%1 kept version(s), newest of %2")
                                                              .arg(versions.size())
                                                              .arg(versions.first().time.toLocalTime().toString(Qt::ISODate)));
        return reading.object;
    }

    void storageRoot(const QString& name, const QString& path, bool required)
    {
        const QFileInfo info(path);
        if (!info.exists()) {
            add(name, required ? CeError : CeWarning, path + QStringLiteral(" does not exist"),
                QStringLiteral("create it (mkdir -p %1) or correct the pre-configuration").arg(path));
            return;
        }
        if (!info.isDir()) {
            add(name, CeError, path + QStringLiteral(" is not a directory"), QStringLiteral("move the file aside and create the directory"));
            return;
        }
        QString reason;
        if (!writable(path, &reason)) {
            add(name, CeError, path + QStringLiteral(" is not writable: ") + reason,
                QStringLiteral("give the station's user write access, or remount it read-write"));
            return;
        }
        const QStorageInfo storage(path);
        const qint64 available = storage.bytesAvailable();
        const QString text = QStringLiteral("%1: writable, %2 free of %3").arg(path, sizeText(available), sizeText(storage.bytesTotal()));
        if (available < C_spaceErrorBytes)
            add(name, CeError, text, QStringLiteral("free space: results and saves will fail"));
        else if (available < C_spaceWarningBytes)
            add(name, CeWarning, text, QStringLiteral("free some space before it runs out"));
        else
            add(name, CeOk, text);
    }

    void networkFolder(const QJsonObject& folder)
    {
        const QString alias = folder.value(QStringLiteral("aliasName")).toString();
        const QString prefix = QStringLiteral("share:") + alias + QLatin1Char(':');
        const QString address = folder.value(QStringLiteral("address")).toString();
        const QString share = folder.value(QStringLiteral("path")).toString();
        QString reason;
        if (!serverReachable(address, reason)) {
            add(prefix + QStringLiteral("server"), CeError, QStringLiteral("%1 not reachable: %2").arg(address, reason),
                QStringLiteral("check that the server is up and that this station's network reaches it"));
            return;
        }
        add(prefix + QStringLiteral("server"), CeOk, address + QStringLiteral(" accepts connections"));
        credentials(prefix + QStringLiteral("credentials"), folder, address, share);

        const QString mountPoint = PreConfiguration::getMountingStorageDirectoryPath() + QLatin1Char('/') + alias;
        const MountTable::Entry entry = MountTable::entryAt(mountPoint);
        if (entry.mountPoint.isEmpty()) {
            add(prefix + QStringLiteral("mounted"), CeWarning, mountPoint + QStringLiteral(" is not mounted"),
                QStringLiteral("the running station mounts it; 'station-config folders --wait 15' tries it now"));
            return;
        }
        add(prefix + QStringLiteral("mounted"), CeOk, QStringLiteral("%1 (%2)").arg(mountPoint, entry.fileSystemType));
        if (writable(mountPoint, &reason))
            add(prefix + QStringLiteral("writable"), CeOk, mountPoint + QStringLiteral(" is writable"));
        else
            add(prefix + QStringLiteral("writable"), CeError, mountPoint + QStringLiteral(" is not writable: ") + reason,
                QStringLiteral("give the share's user write access on the server"));
    }

    // A listing of the share's top directory with the folder's login: nothing is written.
    void credentials(const QString& name, const QJsonObject& folder, const QString& address, const QString& share)
    {
        const QString client = QStandardPaths::findExecutable(QStringLiteral("smbclient"));
        if (client.isEmpty()) {
            add(name, CeWarning, QStringLiteral("not checked: smbclient is not installed"),
                QStringLiteral("install smbclient, or run 'station-config test-share'"));
            return;
        }
        QString host = address;
        QString port = QStringLiteral("445");
        if (address.count(QLatin1Char(':')) == 1) {
            host = address.section(QLatin1Char(':'), 0, 0);
            port = address.section(QLatin1Char(':'), 1);
        }
        const QString password = SimpleCrypt(Folder::C_cryptKey).decryptToString(folder.value(QStringLiteral("password")).toString());
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PASSWD"), password);   // kept off the command line
        process.setProcessEnvironment(environment);
        QStringList arguments { QStringLiteral("//%1/%2").arg(host, share), QStringLiteral("-p"), port,
                                QStringLiteral("-U"), folder.value(QStringLiteral("identifier")).toString(),
                                QStringLiteral("-c"), QStringLiteral("ls") };
        const QString domain = folder.value(QStringLiteral("domain")).toString();
        if (!domain.isEmpty())
            arguments << QStringLiteral("-W") << domain;
        process.start(client, arguments);
        process.closeWriteChannel();
        if (!process.waitForFinished(C_credentialsTimeoutMs)) {
            process.kill();
            process.waitForFinished();
            add(name, CeWarning, QStringLiteral("not checked: the server did not answer in %1 s").arg(C_credentialsTimeoutMs / 1000),
                QStringLiteral("run 'station-config test-share' to see where it stops"));
            return;
        }
        const QString output = QString::fromLocal8Bit(process.readAllStandardOutput() + process.readAllStandardError());
        if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0) {
            add(name, CeOk, QStringLiteral("user %1 accepted on share %2").arg(folder.value(QStringLiteral("identifier")).toString(), share));
            return;
        }
        static const QRegularExpression status(QStringLiteral("NT_STATUS_[A-Z_]+"));
        const QString code = status.match(output).captured();
        if (code == QLatin1String("NT_STATUS_LOGON_FAILURE") || code == QLatin1String("NT_STATUS_WRONG_PASSWORD")
            || code == QLatin1String("NT_STATUS_ACCOUNT_DISABLED") || code == QLatin1String("NT_STATUS_ACCESS_DENIED"))
            add(name, CeError, QStringLiteral("user %1 refused (%2)").arg(folder.value(QStringLiteral("identifier")).toString(), code),
                QStringLiteral("correct the folder's login and password in station-settings"));
        else if (code == QLatin1String("NT_STATUS_BAD_NETWORK_NAME"))
            add(name, CeError, QStringLiteral("the server has no share '%1'").arg(share),
                QStringLiteral("correct the folder's share path in station-settings"));
        else
            add(name, CeWarning, QStringLiteral("not confirmed: %1").arg(code.isEmpty() ? output.trimmed().left(200) : code),
                QStringLiteral("run 'station-config test-share' to see where it stops"));
    }

    void removableMedium()
    {
        const QString path = PreConfiguration::getRemovableStorageDirectoryPath();
        if (path.isEmpty()) {
            add(QStringLiteral("removable-medium"), CeOk, QStringLiteral("none configured"));
            return;
        }
        if (MountTable::entryAt(path).mountPoint.isEmpty()) {
            add(QStringLiteral("removable-medium"), CeOk, path + QStringLiteral(": no medium inserted"));
            return;
        }
        storageRoot(QStringLiteral("removable-medium"), path, true);
    }

    void syncDatabase(const QJsonObject& document)
    {
        const QString path = PreConfiguration::syncDatabaseFilePath();
        const QFileInfo info(path);
        if (!info.exists()) {
            add(QStringLiteral("sync-database"), CeOk, path + QStringLiteral(": not created yet (the first pass creates it)"));
            return;
        }
        const QString connection = QStringLiteral("station-config-doctor");
        QStringList problems;
        QHash<QString, QPair<qint64, qint64>> records;   // relative path -> size, modified (ms)
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
            db.setDatabaseName(path);
            db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
            if (!db.open()) {
                problems << db.lastError().text();
            } else {
                QSqlQuery query(db);
                if (!query.exec(QStringLiteral("PRAGMA integrity_check"))) {
                    problems << query.lastError().text();
                } else {
                    while (query.next()) {
                        const QString row = query.value(0).toString();
                        if (row != QLatin1String("ok") && problems.size() < 3)
                            problems << row;
                    }
                }
                if (problems.isEmpty()) {
                    if (query.exec(QStringLiteral("SELECT relative_path, size, modified FROM files"))) {
                        while (query.next())
                            records.insert(query.value(0).toString(), { query.value(1).toLongLong(), query.value(2).toLongLong() });
                    } else {
                        problems << query.lastError().text();
                    }
                }
                db.close();
            }
        }
        QSqlDatabase::removeDatabase(connection);
        if (!problems.isEmpty()) {
            add(QStringLiteral("sync-database"), CeError, path + QStringLiteral(" is corrupted: ") + problems.join(QStringLiteral("; ")),
                QStringLiteral("'station-config sync --reset' rebuilds it (the next pass compares every file again)"));
            return;
        }
        add(QStringLiteral("sync-database"), CeOk, QStringLiteral("%1: integrity ok, %2 file(s) recorded").arg(path).arg(records.size()));
        add(QStringLiteral("sync-last-pass"), CeOk, QStringLiteral("database last written %1")
                                                        .arg(info.lastModified().toLocalTime().toString(Qt::ISODate)));

        // Files of the mirrored roles that the database does not record as copied as they are now.
        const QJsonObject roles = document.value(QStringLiteral("directories")).toObject().value(QStringLiteral("foldersRoles")).toObject();
        const QList<QPair<QString, QString>> mirrored { { QStringLiteral("results"), QStringLiteral("databaseReportsDirPath") },
                                                        { QStringLiteral("pdfResults"), QStringLiteral("pdfReportsDirPath") } };
        int pending = 0;
        for (const auto& role : mirrored) {
            if (roles.value(role.first).toString().isEmpty())
                continue;
            const QString local = PreConfiguration::getParameter(role.second).toString();
            QDirIterator it(local, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
            while (it.hasNext()) {
                it.next();
                const auto record = records.find(QDir(local).relativeFilePath(it.filePath()));
                if (record == records.end() || record->first != it.fileInfo().size()
                    || record->second != it.fileInfo().lastModified().toMSecsSinceEpoch())
                    ++pending;
            }
        }
        add(QStringLiteral("sync-pending"), CeOk, QStringLiteral("%1 file(s) waiting for the next pass").arg(pending));
    }

    void trash()
    {
        const QString path = PreConfiguration::getTrashStorageDirectoryPath();
        qint64 bytes = 0;
        int files = 0;
        QDirIterator it(path, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            it.next();
            bytes += it.fileInfo().size();
            ++files;
        }
        const QString text = QStringLiteral("%1: %2 file(s), %3").arg(path).arg(files).arg(sizeText(bytes));
        if (bytes > C_trashWarningBytes)
            add(QStringLiteral("trash"), CeWarning, text, QStringLiteral("empty it once the files are no longer needed"));
        else
            add(QStringLiteral("trash"), CeOk, text);
    }

    void targets()
    {
        QString program = PreConfiguration::getParameter(QStringLiteral("timeZoneCommandPath")).toString();
        if (program.isEmpty())
            program = QStandardPaths::findExecutable(QStringLiteral("timedatectl"));
        const QFileInfo info(program);
        if (program.isEmpty() || !info.isFile())
            add(QStringLiteral("timezone-program"), CeError,
                (program.isEmpty() ? QStringLiteral("timedatectl") : program) + QStringLiteral(" not found: time-zone changes cannot be applied"),
                QStringLiteral("install it or correct timeZoneCommandPath in the pre-configuration"));
        else if (!info.isExecutable())
            add(QStringLiteral("timezone-program"), CeError, program + QStringLiteral(" is not executable"),
                QStringLiteral("chmod +x ") + program);
        else
            add(QStringLiteral("timezone-program"), CeOk, program);

        QString compositor = PreConfiguration::getParameter(QStringLiteral("compositorConfigPath")).toString();
        if (compositor.isEmpty())
            compositor = QStringLiteral("/etc/xdg/weston/weston.ini");
        if (!QFileInfo(compositor).isFile())
            add(QStringLiteral("compositor"), CeError, compositor + QStringLiteral(" not found: keyboard-map changes cannot be applied"),
                QStringLiteral("restore the compositor's configuration file, or correct compositorConfigPath"));
        else if (!writable(compositor))
            add(QStringLiteral("compositor"), CeError, compositor + QStringLiteral(" is not writable"),
                QStringLiteral("give the station's user write access to it"));
        else
            add(QStringLiteral("compositor"), CeOk, compositor);
    }

    // Sync temporaries (".dsync-*.part") that no running pass owns.
    void temporaries(const QStringList& roots)
    {
        QStringList stale;
        int count = 0;
        const QDateTime limit = QDateTime::currentDateTimeUtc().addSecs(-C_staleTemporarySeconds);
        for (const QString& root : roots) {
            int seen = 0;
            QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
            while (it.hasNext() && ++seen < C_temporaryScanLimit) {
                it.next();
                if (!it.fileName().startsWith(QLatin1String(".dsync-")) || !it.fileName().endsWith(QLatin1String(".part"))
                    || it.fileInfo().lastModified().toUTC() >= limit)
                    continue;
                ++count;
                if (stale.size() < 3)
                    stale << it.filePath();
            }
        }
        if (count == 0)
            add(QStringLiteral("temporary-files"), CeOk, QStringLiteral("no stale sync temporaries"));
        else
            add(QStringLiteral("temporary-files"), CeWarning,
                QStringLiteral("%1 stale sync temporar%2 left by an interrupted pass: %3%4")
                    .arg(count).arg(count == 1 ? QStringLiteral("y") : QStringLiteral("ies"))
                    .arg(stale.join(QStringLiteral(", ")), count > stale.size() ? QStringLiteral(", ...") : QString()),
                QStringLiteral("the next pass removes them; or delete them while no pass runs"));
    }
};
}

int cmdDoctor(CommandContext& context)
{
    Doctor doctor;
    bool loaded = false;
    doctor.preconfiguration(context.station.directory(), loaded);
    if (loaded) {
        const QString documentPath = PreConfiguration::configurationFilePath(
            PreConfiguration::getParameter(QStringLiteral("configDirPath")).toString());
        const QJsonObject document = doctor.document(documentPath);
        doctor.storageRoot(QStringLiteral("storage-root"), PreConfiguration::getInternalStorageDirectoryPath(), true);
        const QString mounting = PreConfiguration::getMountingStorageDirectoryPath();
        QStringList temporaryRoots { PreConfiguration::getInternalStorageDirectoryPath() };
        const QJsonArray folders = document.value(QStringLiteral("directories")).toObject().value(QStringLiteral("folders")).toArray();
        for (const QJsonValue& value : folders) {
            const QJsonObject folder = value.toObject();
            if (folder.value(QStringLiteral("type")).toString() != QLatin1String("samba")
                || !folder.value(QStringLiteral("enabled")).toBool(true))
                continue;
            doctor.networkFolder(folder);
            const QString mountPoint = mounting + QLatin1Char('/') + folder.value(QStringLiteral("aliasName")).toString();
            if (!MountTable::entryAt(mountPoint).mountPoint.isEmpty())
                temporaryRoots << mountPoint;
        }
        doctor.removableMedium();
        doctor.syncDatabase(document);
        doctor.trash();
        doctor.targets();
        doctor.temporaries(temporaryRoots);
    }

    int errors = 0;
    int warnings = 0;
    QJsonArray rows;
    for (const Check& check : doctor.checks) {
        errors += check.level == CeError;
        warnings += check.level == CeWarning;
        QJsonObject row { { "check", check.name }, { "level", levelName(check.level) }, { "message", check.message } };
        if (!check.advice.isEmpty())
            row.insert(QStringLiteral("advice"), check.advice);
        rows.append(row);
        if (!context.json) {
            out() << qSetFieldWidth(8) << Qt::left << levelName(check.level) << qSetFieldWidth(0) << check.name << ": "
                  << check.message << "\n";
            if (!check.advice.isEmpty())
                out() << "        -> " << check.advice << "\n";
        }
    }
    if (context.json)
        out() << QJsonDocument(QJsonObject { { "station", context.station.directory() }, { "errors", errors },
                                             { "warnings", warnings }, { "checks", rows } })
                     .toJson(QJsonDocument::Indented);
    else
        out() << errors << " error(s), " << warnings << " warning(s)\n";
    return errors > 0 ? CeExitFailed : CeExitSuccess;
}
