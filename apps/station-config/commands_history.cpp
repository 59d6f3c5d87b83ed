// history, diff and rollback: the kept versions of the settings document.
#include "commands.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "settingsdocument.h"
#include "settingshistory.h"
#include "station.h"

namespace {
QString compact(const QJsonValue& value)
{
    if (value.isUndefined())
        return QStringLiteral("(absent)");
    return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact)).mid(1).chopped(1);
}

// The version number argument (the command line has checked that it is there when required),
// 0 when absent; -1 with a usage message when it is not a version number.
int versionArgument(const CommandContext& context)
{
    if (context.arguments.isEmpty())
        return CeExitSuccess;
    bool ok = false;
    const int number = context.arguments.first().toInt(&ok);
    if (!ok || number < 0) {
        err() << "station-config: not a version number: " << context.arguments.first()
              << " (0 is the newest; see `station-config history`)\nTry 'station-config --help'.\n";
        return -1;
    }
    return number;
}
}

int cmdHistory(CommandContext& context)
{
    const SettingsHistory history = context.station.history();
    const auto versions = history.versions();
    if (context.json) {
        QJsonArray array;
        for (const auto& version : versions) {
            array.append(QJsonObject{{"version", version.number},
                                     {"time", version.time.toString(Qt::ISODateWithMs)},
                                     {"size", double(version.size)},
                                     {"changedKeys", QJsonArray::fromStringList(version.changedKeys)},
                                     {"reason", version.reason},
                                     {"file", version.filePath}});
        }
        out() << QJsonDocument(QJsonObject{{"document", history.documentPath()}, {"versions", array}})
                     .toJson(QJsonDocument::Indented);
        return CeExitSuccess;
    }
    if (versions.isEmpty()) {
        out() << "no version of " << history.documentPath() << " is kept yet\n";
        return CeExitSuccess;
    }
    for (const auto& version : versions) {
        out() << qSetFieldWidth(3) << Qt::right << version.number << qSetFieldWidth(0) << Qt::left << "  "
              << version.time.toLocalTime().toString(Qt::ISODate) << "  " << qSetFieldWidth(9) << Qt::right
              << version.size << qSetFieldWidth(0) << Qt::left << " bytes  " << version.reason;
        if (!version.changedKeys.isEmpty())
            out() << "  [" << version.changedKeys.join(QStringLiteral(", ")) << "]";
        out() << "\n";
    }
    return CeExitSuccess;
}

int cmdDiff(CommandContext& context)
{
    const int number = versionArgument(context);
    if (number < 0)
        return CeExitUsage;
    const SettingsHistory history = context.station.history();
    QByteArray bytes;
    QString error;
    if (!history.read(number, bytes, &error)) {
        err() << "station-config: " << error << "\n";
        return CeExitFailed;
    }
    const SettingsDocument::Reading current = SettingsDocument::read(history.documentPath());
    if (current.state == SettingsDocument::CeUnusable)
        err() << "station-config: " << SettingsDocument::describe(current, history.documentPath())
              << "; compared as an empty document\n";
    const auto differences = SettingsHistory::differences(SettingsDocument::parse(bytes).object, current.object);
    if (context.json) {
        QJsonArray array;
        for (const auto& difference : differences) {
            QJsonObject row{{"key", difference.key}};
            if (!difference.before.isUndefined())
                row.insert(QStringLiteral("version"), SettingsHistory::maskSecrets(difference.before, difference.key));
            if (!difference.after.isUndefined())
                row.insert(QStringLiteral("current"), SettingsHistory::maskSecrets(difference.after, difference.key));
            array.append(row);
        }
        out() << QJsonDocument(QJsonObject{{"version", number}, {"differences", array}}).toJson(QJsonDocument::Indented);
        return CeExitSuccess;
    }
    if (differences.isEmpty())
        out() << "version " << number << " and the current document hold the same settings\n";
    for (const auto& difference : differences) {
        out() << difference.key << ": " << compact(SettingsHistory::maskSecrets(difference.before, difference.key))
              << " -> " << compact(SettingsHistory::maskSecrets(difference.after, difference.key)) << "\n";
    }
    return CeExitSuccess;
}

int cmdRollback(CommandContext& context)
{
    const int number = versionArgument(context);
    if (number < 0)
        return CeExitUsage;
    SettingsHistory history = context.station.history();
    const auto versions = history.versions();
    QString error;
    if (!history.rollback(number, &error)) {
        err() << "station-config: " << error << "\n";
        return CeExitFailed;
    }
    const auto& restored = versions.at(number);
    if (context.json) {
        out() << QJsonDocument(QJsonObject{{"restored", number},
                                           {"time", restored.time.toString(Qt::ISODateWithMs)},
                                           {"document", history.documentPath()}})
                     .toJson(QJsonDocument::Indented);
    } else {
        out() << "restored version " << number << " (" << restored.time.toLocalTime().toString(Qt::ISODate)
              << ", " << restored.size << " bytes) to " << history.documentPath() << "\n";
    }
    return CeExitSuccess;
}
