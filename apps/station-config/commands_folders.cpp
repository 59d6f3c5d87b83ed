#include "commands.h"

#include "arguments.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QVector>

#include <cstdio>

#include <unistd.h>

#include "d_zu_configuration.h"
#include "directories.h"
#include "folder.h"
#include "jsonwriter.h"
#include "station.h"

int cmdFolders(CommandContext& context)
{
    Directories* directories = context.station.configuration()->directories();

    const int waitSeconds = context.options.value(QStringLiteral("wait")).toInt();
    // While waiting, each share's state changes are printed as they happen.
    const bool showChanges = waitSeconds > 0 && !context.json;
    QElapsedTimer clock;
    clock.start();
    const auto said = [&clock](const QString& alias, const QString& what) {
        out() << QString::number(double(clock.elapsed()) / 1000, 'f', 1).rightJustified(6) << " s  " << alias << ": "
              << what << "\n";
        out().flush();
    };

    QMap<QString, QString> lastError;
    QMap<QString, QString> lastState;
    QObject::connect(directories, &Directories::networkFolderConnectionError,
                     [&](const QString& alias, const QString& message, bool) {
                         if (showChanges && lastError.value(alias) != message)
                             said(alias, message);
                         lastError[alias] = message;
                     });
    // Only a share reports states (its share manager's steps).
    for (const auto& folder : directories->folders()->list()) {
        if (folder && folder->type() == QLatin1String("samba"))
            QObject::connect(folder.data(), &Folder::folderStatusChanged,
                             [&](const QString& alias, const QVariantMap& status) {
                                 const QString state = status.value(QStringLiteral("state")).toString();
                                 if (showChanges && lastState.value(alias) != state)
                                     said(alias, state);
                                 lastState[alias] = state;
                             });
    }

    QSet<QString> failedPermanently;
    bool timedOut = false;
    if (showChanges) {
        for (const auto& folder : directories->folders()->list()) {
            if (folder && folder->isEnabled() && folder->type() == QLatin1String("samba"))
                said(folder->aliasName(), directories->networkStorage().value(folder->aliasName())
                                              ? QStringLiteral("available")
                                              : QStringLiteral("not connected yet; waiting up to %1 s").arg(waitSeconds));
        }
    }
    if (waitSeconds > 0)
        timedOut = !waitForNetworkFolders(directories, failedPermanently, waitSeconds * 1000);

    struct Row {
        QString id, type, alias, displayPath, role, state, error;
        bool enabled, available, hasState, hasError;
    };
    QVector<Row> rows;
    for (const auto& folder : directories->folders()->list()) {
        if (!folder)
            continue;
        const QString alias = folder->aliasName();
        rows.append(Row { folder->id(), folder->type(), alias, folder->displayPath(),
                          directories->getRoleOfFolder(folder->id()), lastState.value(alias), lastError.value(alias),
                          folder->isEnabled(),
                          // A share's mount point exists before the share is mounted: the
                          // registry's connected flag says whether it is.
                          folder->type() == QLatin1String("samba") ? directories->networkStorage().value(alias)
                                                                   : folder->isAvailable(),
                          lastState.contains(alias), lastError.contains(alias) });
    }

    // Exit 4 with one line naming the shares still unsettled when the wait ran out.
    const auto finish = [&]() {
        if (!timedOut)
            return int(CeExitSuccess);
        err() << "station-config: timed out after " << waitSeconds << " s waiting for "
              << unconnectedShares(directories, failedPermanently).join(QStringLiteral(", ")) << "\n";
        return int(CeExitTimedOut);
    };
    if (context.json) {
        // Written as QJsonDocument lays out an array of objects (keys in sorted order), without
        // building a thousand objects first.
        QByteArray text("[\n");
        const auto field = [&text](const char* key, const QByteArray& value, bool last = false) {
            text += "        \"";
            text += key;
            text += "\": ";
            text += value;
            text += last ? "\n" : ",\n";
        };
        const auto boolean = [](bool value) { return QByteArray(value ? "true" : "false"); };
        for (int i = 0; i < rows.size(); ++i) {
            const Row& row = rows.at(i);
            text += "    {\n";
            field("alias", JsonWriter::quoted(row.alias));
            field("available", boolean(row.available));
            field("displayPath", JsonWriter::quoted(row.displayPath));
            field("enabled", boolean(row.enabled));
            if (row.hasError)
                field("error", JsonWriter::quoted(row.error));
            field("id", JsonWriter::quoted(row.id));
            field("role", JsonWriter::quoted(row.role));
            if (row.hasState)
                field("state", JsonWriter::quoted(row.state));
            field("type", JsonWriter::quoted(row.type), true);
            text += i + 1 < rows.size() ? "    },\n" : "    }\n";
        }
        text += "]\n";
        out().flush();
        std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
        std::fflush(stdout);
        return finish();
    }
    const QString format = QStringLiteral("%1  %2  %3  %4  %5  %6  %7\n");
    out() << format.arg(QStringLiteral("ID"), -38).arg(QStringLiteral("TYPE"), -8).arg(QStringLiteral("ALIAS"), -16)
                 .arg(QStringLiteral("PATH"), -40).arg(QStringLiteral("ROLE"), -12).arg(QStringLiteral("ENABLED"), -7)
                 .arg(QStringLiteral("AVAILABLE"));
    for (const Row& row : rows) {
        QString available = row.available ? QStringLiteral("yes") : QStringLiteral("no");
        if (row.hasError)
            available += QStringLiteral(" (") + row.error + QLatin1Char(')');
        else if (row.hasState && !row.available)
            available += QStringLiteral(" (") + row.state + QLatin1Char(')');
        out() << format.arg(row.id, -38).arg(row.type, -8).arg(row.alias, -16).arg(row.displayPath, -40)
                     .arg(row.role, -12).arg(row.enabled ? QStringLiteral("yes") : QStringLiteral("no"), -7)
                     .arg(available);
    }
    out().flush();
    return finish();
}
