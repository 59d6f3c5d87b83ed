#include "commands.h"

#include "arguments.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

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
    for (const auto& folder : directories->folders()->list()) {
        if (folder)
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

    QJsonArray rows;
    for (const auto& folder : directories->folders()->list()) {
        if (!folder)
            continue;
        // Keys inserted in their sorted order: each one goes to the end of the object.
        QJsonObject row;
        row.insert(QLatin1String("alias"), folder->aliasName());
        // A share's mount point exists before the share is mounted: the registry's connected
        // flag says whether it is.
        row.insert(QLatin1String("available"), folder->type() == QLatin1String("samba")
                                                   ? directories->networkStorage().value(folder->aliasName())
                                                   : folder->isAvailable());
        row.insert(QLatin1String("displayPath"), folder->displayPath());
        row.insert(QLatin1String("enabled"), folder->isEnabled());
        row.insert(QLatin1String("id"), folder->id());
        row.insert(QLatin1String("role"), directories->getRoleOfFolder(folder->id()));
        row.insert(QLatin1String("type"), folder->type());
        if (lastState.contains(folder->aliasName()))
            row.insert(QStringLiteral("state"), lastState.value(folder->aliasName()));
        if (lastError.contains(folder->aliasName()))
            row.insert(QStringLiteral("error"), lastError.value(folder->aliasName()));
        rows.append(row);
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
        out().flush();
        JsonWriter::write(STDOUT_FILENO, rows);
        return finish();
    }
    const QString format = QStringLiteral("%1  %2  %3  %4  %5  %6  %7\n");
    out() << format.arg(QStringLiteral("ID"), -38).arg(QStringLiteral("TYPE"), -8).arg(QStringLiteral("ALIAS"), -16)
                 .arg(QStringLiteral("PATH"), -40).arg(QStringLiteral("ROLE"), -12).arg(QStringLiteral("ENABLED"), -7)
                 .arg(QStringLiteral("AVAILABLE"));
    for (const QJsonValue& value : rows) {
        const QJsonObject row = value.toObject();
        QString available = row.value("available").toBool() ? QStringLiteral("yes") : QStringLiteral("no");
        if (row.contains("error"))
            available += QStringLiteral(" (") + row.value("error").toString() + QLatin1Char(')');
        else if (row.contains("state") && !row.value("available").toBool())
            available += QStringLiteral(" (") + row.value("state").toString() + QLatin1Char(')');
        out() << format.arg(row.value("id").toString(), -38).arg(row.value("type").toString(), -8)
                     .arg(row.value("alias").toString(), -16).arg(row.value("displayPath").toString(), -40)
                     .arg(row.value("role").toString(), -12)
                     .arg(row.value("enabled").toBool() ? QStringLiteral("yes") : QStringLiteral("no"), -7)
                     .arg(available);
    }
    out().flush();
    return finish();
}
