// sync: the mirrors of the synchronized roles; a pass now with its progress and a summary, or
// one pass for a script (--once: no progress, exit status 1 when anything failed).
#include "commands.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTimer>

#include <unistd.h>

#include "arguments.h"
#include "d_zu_configuration.h"
#include "directories.h"
#include "folder.h"
#include "station.h"
#include "sync/dsyncmanager.h"
#include "utilities/preconfiguration.h"

#include <algorithm>

namespace {
// How long shares may take to mount, and the pass to finish.
constexpr int C_shareWaitMs = 15000;
constexpr int C_passWaitMs = 600000;
constexpr int C_progressRedrawMs = 200;
constexpr int C_barWidth = 30;

// One mirror during a pass: what its local folder holds and what the pass did with it.
struct Tally {
    QString role;
    QString alias;
    QString local;
    QString target;          // alias of the folder it mirrors to
    int files = 0;
    qint64 bytes = 0;
    int pendingFiles = 0;    // what the pass has to copy: not recorded as copied as they are now
    qint64 pendingBytes = 0;
    int copied = 0;
    qint64 copiedBytes = 0;
    int failed = 0;
    bool unreachable = false;
    QElapsedTimer clock;     // from the first file started to the last one completed
    qint64 elapsedMs = 0;
};

QString megabytes(qint64 bytes)
{
    return QString::number(double(bytes) / (1024 * 1024), 'f', 1) + QStringLiteral(" MB");
}

// The alias whose local folder holds `filePath`, -1 when none does.
int tallyOf(const QVector<Tally>& tallies, const QString& filePath)
{
    for (int i = 0; i < tallies.size(); ++i) {
        if (filePath.startsWith(tallies.at(i).local + QLatin1Char('/')))
            return i;
    }
    return -1;
}

QString targetAlias(Directories* directories, const QString& role)
{
    const QString id = directories->foldersRoles().value(role);
    for (const auto& folder : directories->folders()->list()) {
        if (folder && folder->id() == id)
            return folder->aliasName();
    }
    return id;
}

// Size and modification time (ms) of every file the sync database records for `alias`, read
// only; empty when there is no database yet.
QHash<QString, QPair<qint64, qint64>> recordsOf(const QString& databasePath, const QString& alias)
{
    QHash<QString, QPair<qint64, qint64>> records;
    if (!QFileInfo::exists(databasePath))
        return records;
    const QString connection = QStringLiteral("station-config-records");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(databasePath);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (db.open()) {
            QSqlQuery query(db);
            query.setForwardOnly(true);
            query.prepare(QStringLiteral("SELECT relative_path, size, modified FROM files WHERE alias = ?"));
            query.addBindValue(alias);
            if (query.exec()) {
                while (query.next())
                    records.insert(query.value(0).toString(), {query.value(1).toLongLong(), query.value(2).toLongLong()});
            }
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(connection);
    return records;
}

QVector<Tally> mirrorsOf(Directories* directories, DSyncManager* manager)
{
    QVector<QRegularExpression> excluded;
    for (const QString& pattern : manager->excludedPatterns())
        excluded << QRegularExpression(QRegularExpression::wildcardToRegularExpression(pattern));
    const QString database = PreConfiguration::syncDatabaseFilePath();
    QVector<Tally> tallies;
    for (const QString& role : Directories::c_synchronizedRoles) {
        Tally tally;
        tally.role = role;
        tally.local = directories->getLocalFolderPathByRole(role);
        tally.alias = manager->getLocalDirSynchronizedAlias(tally.local);
        if (tally.alias.isEmpty())
            continue;
        tally.target = targetAlias(directories, role);
        const auto records = recordsOf(database, tally.alias);
        const QDir local(tally.local);
        QDirIterator it(tally.local, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            it.next();
            const QFileInfo info = it.fileInfo();
            if (std::any_of(excluded.cbegin(), excluded.cend(),
                            [&info](const QRegularExpression& e) { return e.match(info.fileName()).hasMatch(); }))
                continue;
            ++tally.files;
            tally.bytes += info.size();
            const auto record = records.constFind(local.relativeFilePath(it.filePath()));
            if (record == records.constEnd() || record->first != info.size()
                || record->second != info.lastModified().toMSecsSinceEpoch()) {
                ++tally.pendingFiles;
                tally.pendingBytes += info.size();
            }
        }
        tallies << tally;
    }
    return tallies;
}

// "[#####-----] 12/40 files  1.2 MB of 3.4 MB  RAW_RESULTS" over the previous one: done of
// what the pass has to copy.
void drawProgress(const QVector<Tally>& tallies, const QString& current)
{
    int files = 0, done = 0;
    qint64 bytes = 0, doneBytes = 0;
    for (const Tally& tally : tallies) {
        files += tally.pendingFiles;
        bytes += tally.pendingBytes;
        done += tally.copied + tally.failed;
        doneBytes += tally.copiedBytes;
    }
    // A file changed during the pass is copied without having been counted.
    files = qMax(files, done);
    bytes = qMax(bytes, doneBytes);
    const int filled = files > 0 ? qMin(C_barWidth, done * C_barWidth / files) : 0;
    const QString line = QStringLiteral("\r[%1%2] %3/%4 files  %5 of %6  %7\033[K")
                             .arg(QString(filled, QLatin1Char('#')), QString(C_barWidth - filled, QLatin1Char('-')))
                             .arg(done).arg(files).arg(megabytes(doneBytes), megabytes(bytes), current);
    err() << line;
    err().flush();
}

QJsonObject summaryOf(const Tally& tally)
{
    return QJsonObject { { "role", tally.role }, { "alias", tally.alias }, { "target", tally.target }, { "files", tally.files },
                         { "pending", tally.pendingFiles },
                         { "copied", tally.copied }, { "copiedBytes", double(tally.copiedBytes) },
                         { "skipped", tally.unreachable ? 0 : tally.files - tally.copied - tally.failed },
                         { "failed", tally.failed }, { "unreachable", tally.unreachable },
                         { "seconds", double(tally.elapsedMs) / 1000 } };
}

// Runs one pass and fills the tallies; false when it did not finish in time.
bool runPass(Directories* directories, DSyncManager* manager, QVector<Tally>& tallies, bool quiet)
{
    const bool terminal = !quiet && ::isatty(STDERR_FILENO);
    QString current;
    const auto started = QObject::connect(manager, &DSyncManager::syncStarted, [&](const QString& path) {
        const int index = tallyOf(tallies, path);
        if (index < 0)
            return;
        if (!tallies[index].clock.isValid())
            tallies[index].clock.start();
        current = tallies.at(index).alias;
    });
    const auto completed = QObject::connect(manager, &DSyncManager::syncCompleted, [&](const QString& path, bool ok) {
        const int index = tallyOf(tallies, path);
        if (index < 0)
            return;
        Tally& tally = tallies[index];
        if (ok) {
            ++tally.copied;
            tally.copiedBytes += QFileInfo(path).size();
        } else {
            ++tally.failed;
        }
        if (tally.clock.isValid())
            tally.elapsedMs = tally.clock.elapsed();
    });
    QTimer redraw;
    if (terminal) {
        QObject::connect(&redraw, &QTimer::timeout, [&] { drawProgress(tallies, current); });
        redraw.start(C_progressRedrawMs);
        drawProgress(tallies, current);
    }
    bool sawBusy = false;
    const auto idle = QObject::connect(manager, &DSyncManager::idleChanged, [&sawBusy](bool isIdle) { if (!isIdle) sawBusy = true; });
    manager->requestSync();
    waitUntil([&] { return sawBusy || !manager->isIdle(); }, 2000);
    const bool finished = waitUntil([manager] { return manager->isIdle(); }, C_passWaitMs);
    redraw.stop();
    if (terminal) {
        drawProgress(tallies, current);
        err() << "\n";
        err().flush();
    }
    for (const auto& connection : { started, completed, idle })
        QObject::disconnect(connection);
    for (Tally& tally : tallies)
        tally.unreachable = tally.copied == 0 && tally.failed == 0
            && directories->networkStorage().contains(tally.target) && !directories->networkStorage().value(tally.target);
    return finished;
}
}

int cmdSync(CommandContext& context)
{
    Directories* directories = context.station.configuration()->directories();
    DSyncManager* manager = directories->syncManager();
    if (!manager) {
        err() << "station-config: no sync manager on this station (editor-only installation)\n";
        return CeExitFailed;
    }

    if (context.options.isSet(QStringLiteral("reset"))) {
        int outcome = -1;
        QObject::connect(directories, &Directories::syncDatabaseResetDone, [&outcome](bool ok) { outcome = ok ? 1 : 0; });
        directories->resetSyncDatabase();
        if (!waitUntil([&outcome] { return outcome >= 0; }, 360000)) {
            err() << "station-config: the reset did not report\n";
            return CeExitFailed;
        }
        printReport(QJsonObject { { "reset", outcome == 1 } }, context.json);
        return outcome == 1 ? CeExitSuccess : CeExitFailed;
    }

    bool timedOut = false;
    bool anyFailed = false;
    QJsonArray summary;
    const bool once = context.options.isSet(QStringLiteral("once"));
    const bool pass = once || context.options.isSet(QStringLiteral("now"));
    if (pass) {
        // Mirrors to a share only run once the share is mounted; a terminal is told what it waits for.
        if (!once && ::isatty(STDERR_FILENO)) {
            const QStringList pending = unconnectedShares(directories, {});
            if (!pending.isEmpty()) {
                err() << "waiting up to " << C_shareWaitMs / 1000 << " s for " << pending.join(QStringLiteral(", "))
                      << " to connect\n";
                err().flush();
            }
        }
        QSet<QString> failedPermanently;
        const bool sharesSettled = waitForNetworkFolders(directories, failedPermanently, C_shareWaitMs);
        const QStringList unreachable = unconnectedShares(directories, {});
        if (!unreachable.isEmpty()) {
            err() << "station-config: " << unreachable.join(QStringLiteral(", ")) << " not reachable after "
                  << C_shareWaitMs / 1000 << " s; mirrors to it do not run\n";
            err().flush();
            timedOut = !sharesSettled;
        }
        QVector<Tally> tallies = mirrorsOf(directories, manager);
        if (!runPass(directories, manager, tallies, once)) {
            err() << "station-config: timed out after " << C_passWaitMs / 1000 << " s waiting for the sync pass to finish\n";
            return CeExitTimedOut;
        }
        for (const Tally& tally : tallies) {
            summary.append(summaryOf(tally));
            anyFailed = anyFailed || tally.failed > 0 || tally.unreachable;
        }
        const int passExit = timedOut ? CeExitTimedOut : once && anyFailed ? CeExitFailed : CeExitSuccess;
        if (!context.json) {
            for (const QJsonValue& value : summary) {
                const QJsonObject row = value.toObject();
                out() << row.value("role").toString() << " -> " << row.value("target").toString() << ": "
                      << (row.value("unreachable").toBool() ? QStringLiteral("unreachable, ") : QString())
                      << row.value("copied").toInt() << " copied (" << megabytes(qint64(row.value("copiedBytes").toDouble()))
                      << "), " << row.value("skipped").toInt() << " skipped, " << row.value("failed").toInt() << " failed, "
                      << QString::number(row.value("seconds").toDouble(), 'f', 1) << " s\n";
            }
            return passExit;
        }
    }

    QJsonArray mirrors;
    for (const QString& role : Directories::c_synchronizedRoles) {
        const QString local = directories->getLocalFolderPathByRole(role);
        const QString alias = manager->getLocalDirSynchronizedAlias(local);
        mirrors.append(QJsonObject { { "role", role }, { "local", local }, { "alias", alias },
                                     { "target", directories->foldersRoles().value(role) } });
    }
    QJsonObject report {
        { "paused", manager->isPausedAll() },
        { "idle", manager->isIdle() },
        { "intervalMs", manager->intervalMs() },
        { "excludedPatterns", QJsonArray::fromStringList(manager->excludedPatterns()) },
        { "hasSynchronizedDistantFolder", directories->hasSynchronizedDistantFolder() },
        { "mirrors", mirrors },
    };
    if (pass)
        report.insert(QStringLiteral("pass"), summary);
    printReport(report, context.json);
    return timedOut ? CeExitTimedOut : once && anyFailed ? CeExitFailed : CeExitSuccess;
}
