// export-update and compare: the settings of one station against, or carried to, the others of
// a plant.
//
// Choices:
// - Identity keys (the workplace name, the time of the last save, the "system" section the
//   library writes itself) are neither exported nor compared unless --keys names them or a
//   key inside them (a section around them does not):
//   stations of a plant share everything but their names. So are the storage folders
//   ("directories"): each station mirrors to its own directory of a share, and a package that
//   carried one station's folders would have the others mirror into it.
// - Arrays (folders, relations, comment lists) are one value each, as the update merge replaces
//   them whole; objects are compared and carried key by key.
// - An update package only adds and replaces keys: what only the other station holds is named
//   in the report ("notCarried"), never silently dropped.
// - export-update writes the package beside OUT and renames it into place; an existing OUT is
//   replaced only with --force.
#include "commands.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

#include "arguments.h"
#include "settingsdocument.h"
#include "settingshistory.h"
#include "station.h"
#include "utilities/jsontools.h"
#include "utilities/preconfiguration.h"
#include "utilities/zip.h"

namespace {
using Difference = SettingsHistory::Difference;

const QStringList c_identityKeys { QStringLiteral("general.workplace_name"), QStringLiteral("general.lastModification"),
                                   QStringLiteral("system"), QStringLiteral("_hidden_"), QStringLiteral("directories") };

bool isUnder(const QString& key, const QString& prefix)
{
    return key == prefix || key.startsWith(prefix + QLatin1Char('.'));
}

QString compact(const QJsonValue& value)
{
    if (value.isUndefined())
        return QStringLiteral("(absent)");
    if (value.isString())
        return value.toString();
    return QString::fromUtf8(QJsonDocument(QJsonArray { value }).toJson(QJsonDocument::Compact)).mid(1).chopped(1);
}

// A difference between an object and nothing becomes one difference per key of the object, so
// that every difference names a value, not a section.
void expand(const Difference& difference, QVector<Difference>& out)
{
    const bool objectBefore = difference.before.isObject() && difference.after.isUndefined();
    const bool objectAfter = difference.after.isObject() && difference.before.isUndefined();
    const QJsonObject object = objectBefore ? difference.before.toObject() : difference.after.toObject();
    if (!(objectBefore || objectAfter) || object.isEmpty()) {
        out.append(difference);
        return;
    }
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString key = difference.key + QLatin1Char('.') + it.key();
        expand(objectBefore ? Difference { key, it.value(), QJsonValue::Undefined }
                            : Difference { key, QJsonValue::Undefined, it.value() },
               out);
    }
}

// Key by key, `there` against `here`, keeping only the chosen keys: those under a --keys prefix
// (every key without one) and never an identity key unless a prefix names it or a key inside it.
QVector<Difference> chosenDifferences(const QJsonObject& there, const QJsonObject& here, const QStringList& prefixes,
                                      QStringList& unmatched)
{
    QVector<Difference> all;
    for (const Difference& difference : SettingsHistory::differences(there, here))
        expand(difference, all);
    QVector<Difference> chosen;
    unmatched = prefixes;
    for (const Difference& difference : qAsConst(all)) {
        // An identity key counts as named by a prefix at or below it ("general" does not name it).
        bool identity = false;
        for (const QString& key : c_identityKeys) {
            if (!isUnder(difference.key, key))
                continue;
            identity = true;
            for (const QString& prefix : prefixes)
                identity = identity && !(isUnder(prefix, key) && isUnder(difference.key, prefix));
        }
        if (identity)
            continue;
        bool selected = prefixes.isEmpty();
        for (const QString& prefix : prefixes) {
            if (isUnder(difference.key, prefix)) {
                selected = true;
                unmatched.removeAll(prefix);
            }
        }
        if (selected)
            chosen.append(difference);
    }
    return chosen;
}

// "--keys A,B.c": the chosen prefixes; false with a usage message when one is empty.
bool keyPrefixes(const CommandContext& context, QStringList& prefixes)
{
    if (!context.options.isSet(QStringLiteral("keys")))
        return true;
    for (const QString& part : context.options.value(QStringLiteral("keys")).split(QLatin1Char(','))) {
        const QString prefix = part.trimmed();
        if (prefix.isEmpty() || prefix.startsWith(QLatin1Char('.')) || prefix.endsWith(QLatin1Char('.'))) {
            err() << "station-config: option '--keys': '" << context.options.value(QStringLiteral("keys"))
                  << "' is not a comma-separated list of keys or sections\nTry 'station-config --help'.\n";
            return false;
        }
        prefixes << prefix;
    }
    return true;
}

// The settings document of the station in `directory`, read without starting the library.
// Exit code: 0, 2 when the directory is no station, 3 when its document is unusable.
int otherDocument(const QString& directory, QJsonObject& document, QString& path)
{
    const QString root = QFileInfo(directory).absoluteFilePath();
    QJsonObject preconfiguration;
    if (!JsonTools::readFile(root + QStringLiteral("/preconfiguration.json"), preconfiguration)) {
        err() << "station-config: " << root << " holds no readable preconfiguration.json\nTry 'station-config --help'.\n";
        return CeExitUsage;
    }
    const QString configDir = preconfiguration.value(QStringLiteral("configDirPath")).toString();
    const QString fileName = preconfiguration.value(QStringLiteral("configFilename")).toString();
    path = QDir(root).absoluteFilePath(configDir) + QLatin1Char('/') + fileName;
    const SettingsDocument::Reading reading = SettingsDocument::read(path);
    if (reading.state == SettingsDocument::CeUnusable) {
        err() << "station-config: " << SettingsDocument::describe(reading, path) << "; nothing was changed\n";
        return CeExitUnusable;
    }
    document = reading.object;
    return CeExitSuccess;
}

QJsonObject ownDocument(const Station& station)
{
    return SettingsDocument::read(station.documentPath()).object;
}

// Writes the package at `target` through a temporary file beside it: the name appears complete
// or not at all. Without `replace`, an existing target is left as it is.
bool writePackage(const QString& target, const QJsonObject& update, bool replace, QString& error)
{
    const QString updateName = PreConfiguration::getParameter(QStringLiteral("configUpdateFilename")).toString();
    QTemporaryFile temporary(QFileInfo(target).absolutePath() + QStringLiteral("/.") + QFileInfo(target).fileName()
                             + QStringLiteral(".XXXXXX"));
    if (!temporary.open()) {
        error = QStringLiteral("cannot write in %1: %2").arg(QFileInfo(target).absolutePath(), temporary.errorString());
        return false;
    }
    temporary.close();
    const QByteArray bytes = QJsonDocument(update).toJson(QJsonDocument::Indented);
    if (!Zip::Write(QFile::encodeName(temporary.fileName()), { { updateName.toUtf8(), bytes } }, &error)) {
        error = QStringLiteral("cannot write %1: %2").arg(target, error);
        return false;
    }
    const QByteArray from = QFile::encodeName(temporary.fileName());
    const QByteArray to = QFile::encodeName(target);
    // link() refuses an existing name atomically; rename() replaces it atomically.
    const int result = replace ? ::rename(from.constData(), to.constData()) : ::link(from.constData(), to.constData());
    if (result != 0) {
        error = errno == EEXIST ? QStringLiteral("%1 exists; give --force to replace it").arg(target)
                                : QStringLiteral("cannot write %1: %2").arg(target, QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    }
    return true;
}

QJsonArray keyList(const QVector<Difference>& differences)
{
    QJsonArray keys;
    for (const Difference& difference : differences)
        keys.append(difference.key);
    return keys;
}
}

int cmdExportUpdate(CommandContext& context)
{
    QStringList prefixes;
    if (!keyPrefixes(context, prefixes))
        return CeExitUsage;
    const QString target = QFileInfo(context.arguments.first()).absoluteFilePath();
    QJsonObject there;
    QString therePath;
    const QString from = context.options.value(QStringLiteral("from"));
    if (context.options.isSet(QStringLiteral("from"))) {
        if (const int code = otherDocument(from, there, therePath))
            return code;
    }

    QStringList unmatched;
    const QVector<Difference> chosen = chosenDifferences(there, ownDocument(context.station), prefixes, unmatched);
    if (!unmatched.isEmpty() && therePath.isEmpty()) {
        err() << "station-config: this station has no setting under " << unmatched.join(QStringLiteral(", "))
              << "; nothing was written\n";
        return CeExitFailed;
    }
    auto update = QSharedPointer<QJsonObject>::create();
    QVector<Difference> carried;
    QVector<Difference> notCarried;
    for (const Difference& difference : chosen) {
        if (difference.after.isUndefined()) {
            notCarried.append(difference);
            continue;
        }
        JsonTools::addValue(update, difference.key, difference.after);
        carried.append(difference);
    }
    QString error;
    if (!writePackage(target, *update, context.options.isSet(QStringLiteral("force")), error)) {
        err() << "station-config: " << error << "\n";
        return CeExitFailed;
    }
    QJsonObject report { { "package", target }, { "keys", keyList(carried) } };
    if (!therePath.isEmpty()) {
        report.insert(QStringLiteral("from"), QFileInfo(from).absoluteFilePath());
        report.insert(QStringLiteral("notCarried"), keyList(notCarried));
    }
    if (context.json) {
        out() << QJsonDocument(report).toJson(QJsonDocument::Indented);
    } else {
        out() << "package     " << target << "\nkeys        " << carried.size() << "\n";
        for (const Difference& difference : qAsConst(carried))
            out() << "  " << difference.key << "\n";
        if (!notCarried.isEmpty()) {
            out() << "notCarried  " << notCarried.size() << " (only on " << QFileInfo(from).absoluteFilePath()
                  << "; an update cannot remove keys)\n";
            for (const Difference& difference : qAsConst(notCarried))
                out() << "  " << difference.key << "\n";
        }
    }
    return CeExitSuccess;
}

int cmdCompare(CommandContext& context)
{
    QStringList prefixes;
    if (!keyPrefixes(context, prefixes))
        return CeExitUsage;
    QJsonObject there;
    QString therePath;
    if (const int code = otherDocument(context.arguments.first(), there, therePath))
        return code;
    const QString other = QFileInfo(context.arguments.first()).absoluteFilePath();
    QStringList unmatched;
    const QVector<Difference> differences = chosenDifferences(there, ownDocument(context.station), prefixes, unmatched);
    if (context.json) {
        QJsonArray rows;
        for (const Difference& difference : differences) {
            QJsonObject row { { "key", difference.key } };
            if (!difference.after.isUndefined())
                row.insert(QStringLiteral("here"), SettingsHistory::maskSecrets(difference.after, difference.key));
            if (!difference.before.isUndefined())
                row.insert(QStringLiteral("other"), SettingsHistory::maskSecrets(difference.before, difference.key));
            rows.append(row);
        }
        out() << QJsonDocument(QJsonObject { { "station", context.station.directory() }, { "other", other },
                                             { "equal", differences.isEmpty() }, { "differences", rows } })
                     .toJson(QJsonDocument::Indented);
    } else {
        for (const Difference& difference : differences)
            out() << difference.key << ": " << compact(SettingsHistory::maskSecrets(difference.after, difference.key))
                  << " | " << compact(SettingsHistory::maskSecrets(difference.before, difference.key)) << "\n";
        if (differences.isEmpty())
            out() << "same settings as " << other << "\n";
        else
            out() << differences.size() << " key(s) differ: this station | " << other << "\n";
    }
    return differences.isEmpty() ? CeExitSuccess : CeExitFailed;
}
