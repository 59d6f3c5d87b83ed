// The settings service against a bare load of the same document: station-config as a whole
// process beside this program's own "bare" modes (read and parse; read, parse, change one
// key, serialise and write back), runs interleaved, medians, ratios and peak memory.
//
// Usage: bench_settings [--reps N] [--quick] [--dir DIR]
//   status      station-config status --json, 13.9 MB document   vs  bare parse
//   set         station-config set general.sound_volume N        vs  bare load and save
//   folders     station-config folders --json, 1,000 folders     vs  bare parse
//   memory      peak memory of status                            vs  the document's size
// --quick: a 1.4 MB document, 100 folders, one repetition (a smoke run).
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTextStream>
#include <QUuid>

#include <algorithm>
#include <functional>

#include <unistd.h>

#include "benchprocess.h"

using BenchProcess::median;
using BenchProcess::Run;
using BenchProcess::runProcess;

namespace {

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

// The bare modes: what any program must at least do with the document.
int bareParse(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    return document.isObject() ? 0 : 1;
}

int bareSave(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        return 1;
    QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    QJsonObject general = root.value(QStringLiteral("general")).toObject();
    general.insert(QStringLiteral("sound_volume"), general.value(QStringLiteral("sound_volume")).toInt() == 40 ? 41 : 40);
    root.insert(QStringLiteral("general"), general);
    const QByteArray text = QJsonDocument(root).toJson();
    file.resize(0);
    file.seek(0);
    return file.write(text) == text.size() && file.flush() && ::fsync(file.handle()) == 0 ? 0 : 1;
}

bool copyTree(const QString& source, const QString& target)
{
    QDir().mkpath(target);
    const QDir from(source);
    for (const QFileInfo& entry : from.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        const QString destination = target + QLatin1Char('/') + entry.fileName();
        if (entry.isDir() ? !copyTree(entry.filePath(), destination) : !QFile::copy(entry.filePath(), destination))
            return false;
    }
    return true;
}

// A copy of the demo station whose document is adjusted by `grow`; returns the document's path.
QString makeStation(const QString& directory, const std::function<void(QJsonObject&)>& grow)
{
    if (!copyTree(QStringLiteral(BENCH_DEMO_STATION), directory))
        return QString();
    const QString path = directory + QStringLiteral("/config/settings.json");
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        return QString();
    QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    grow(root);
    file.resize(0);
    file.seek(0);
    file.write(QJsonDocument(root).toJson());
    return path;
}

// Comment lists and input-code relations, as a long-running station accumulates them.
void growLarge(QJsonObject& root, int entries)
{
    QJsonArray skip;
    QJsonArray rework;
    for (int i = 0; i < entries; ++i) {
        skip.append(QStringLiteral("Skipped at station %1: fastener not reachable with the current tool, see report").arg(i));
        rework.append(QStringLiteral("Rework %1: cross-threaded screw replaced and retightened to nominal torque").arg(i));
    }
    QJsonObject comments = root.value(QStringLiteral("comments")).toObject();
    comments.insert(QStringLiteral("skip_comments"), skip);
    comments.insert(QStringLiteral("rework_comments"), rework);
    root.insert(QStringLiteral("comments"), comments);
}

void growFolders(QJsonObject& root, int count)
{
    QJsonObject directories = root.value(QStringLiteral("directories")).toObject();
    QJsonArray folders;
    for (int i = 0; i < count; ++i)
        folders.append(QJsonObject { { "id", QUuid::createUuid().toString() }, { "type", "internal" },
                                     { "aliasName", QStringLiteral("Folder_%1").arg(i, 4, 10, QLatin1Char('0')) },
                                     { "path", QStringLiteral("folders/f%1").arg(i) }, { "enabled", true } });
    directories.insert(QStringLiteral("folders"), folders);
    directories.insert(QStringLiteral("foldersRoles"), QJsonObject());
    root.insert(QStringLiteral("directories"), directories);
}

struct Row
{
    QString name;
    QStringList engine;
    QStringList bare;
    double target;
};

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--bare-parse") == 0)
        return bareParse(QString::fromLocal8Bit(argv[2]));
    if (argc == 3 && qstrcmp(argv[1], "--bare-save") == 0)
        return bareSave(QString::fromLocal8Bit(argv[2]));

    QCoreApplication app(argc, argv);
    int reps = 9;
    bool quick = false;
    QString base;
    const QStringList args = app.arguments();
    for (int i = 1; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--reps") && i + 1 < args.size())
            reps = args[++i].toInt();
        else if (args[i] == QLatin1String("--quick"))
            quick = true;
        else if (args[i] == QLatin1String("--dir") && i + 1 < args.size())
            base = args[++i];
        else {
            out() << "usage: bench_settings [--reps N] [--quick] [--dir DIR]\n";
            return 2;
        }
    }
    if (quick)
        reps = 1;

    QTemporaryDir temporary(base.isEmpty() ? QDir::tempPath() + QStringLiteral("/bench_settings-XXXXXX")
                                           : base + QStringLiteral("/bench_settings-XXXXXX"));
    const QString self = QCoreApplication::applicationFilePath();
    const QString tool = QStringLiteral(BENCH_STATION_CONFIG);
    const int entries = quick ? 6000 : 60000;
    const int folders = quick ? 100 : 1000;

    const QString large = temporary.filePath(QStringLiteral("large"));
    const QString largeDocument = makeStation(large, [entries](QJsonObject& root) { growLarge(root, entries); });
    const QString many = temporary.filePath(QStringLiteral("folders"));
    const QString manyDocument = makeStation(many, [folders](QJsonObject& root) { growFolders(root, folders); });
    if (largeDocument.isEmpty() || manyDocument.isEmpty()) {
        out() << "cannot build the stations under " << temporary.path() << "\n";
        return 1;
    }
    const double documentMiB = QFileInfo(largeDocument).size() / 1048576.0;
    out() << QStringLiteral("document %1 MB (%2 comments); %3 folders\n")
                 .arg(QFileInfo(largeDocument).size() / 1e6, 0, 'f', 1).arg(2 * entries).arg(folders);
    out().flush();

    // Volume values alternate so that every set really changes and saves the document.
    int volume = 30;
    const QVector<Row> rows {
        { QStringLiteral("status --json"), { tool, "--station", large, "--json", "status" }, { self, "--bare-parse", largeDocument }, 2.0 },
        { QStringLiteral("set"), { tool, "--station", large, "set", "general.sound_volume", "" }, { self, "--bare-save", largeDocument }, 1.5 },
        { QStringLiteral("folders --json"), { tool, "--station", many, "--json", "folders" }, { self, "--bare-parse", manyDocument }, 3.0 },
    };

    // One warm-up of each, then runs interleaved, the order turning each repetition.
    QVector<QVector<double>> engineMs(rows.size()), bareMs(rows.size());
    QVector<double> statusRss;
    for (int rep = -1; rep < reps; ++rep) {
        for (int r = 0; r < rows.size(); ++r) {
            QStringList engine = rows[r].engine;
            if (engine.last().isEmpty())
                engine.last() = QString::number(volume = volume == 30 ? 31 : 30);
            const bool engineFirst = rep % 2 == 0;
            Run a = runProcess(engineFirst ? engine : rows[r].bare);
            Run b = runProcess(engineFirst ? rows[r].bare : engine);
            const Run& e = engineFirst ? a : b;
            const Run& bare = engineFirst ? b : a;
            if (!e.ok || !bare.ok) {
                out() << "run failed: " << (e.ok ? rows[r].bare : engine).join(QLatin1Char(' ')) << "\n";
                return 1;
            }
            if (rep < 0)
                continue;
            engineMs[r] << e.wallMs;
            bareMs[r] << bare.wallMs;
            if (r == 0)
                statusRss << e.maxRssMiB;
        }
    }

    out() << QStringLiteral("\n%1 %2 %3 %4 %5\n")
                 .arg(QStringLiteral("work"), -16).arg(QStringLiteral("engine ms"), 10).arg(QStringLiteral("bare ms"), 10)
                 .arg(QStringLiteral("ratio"), 7).arg(QStringLiteral("target"));
    bool allMet = true;
    for (int r = 0; r < rows.size(); ++r) {
        const double e = median(engineMs[r]);
        const double b = median(bareMs[r]);
        const bool met = e <= rows[r].target * b;
        allMet = allMet && met;
        out() << QStringLiteral("%1 %2 %3 %4 <= %5x %6\n")
                     .arg(rows[r].name, -16).arg(e, 10, 'f', 1).arg(b, 10, 'f', 1).arg(e / b, 7, 'f', 2)
                     .arg(rows[r].target, 0, 'f', 1).arg(met ? QStringLiteral("met") : QStringLiteral("NOT met"));
    }
    const double rss = median(statusRss);
    const bool memoryMet = rss <= 4 * documentMiB;
    allMet = allMet && memoryMet;
    out() << QStringLiteral("%1 %2 MiB peak for a %3 MiB document: %4x <= 4x %5\n")
                 .arg(QStringLiteral("status memory"), -16).arg(rss, 0, 'f', 1).arg(documentMiB, 0, 'f', 1)
                 .arg(rss / documentMiB, 0, 'f', 2).arg(memoryMet ? QStringLiteral("met") : QStringLiteral("NOT met"));
    out() << QStringLiteral("medians of %1 interleaved runs each\n").arg(reps);
    return allMet ? 0 : 3;
}
