#include "commands.h"

#include "arguments.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QSignalBlocker>
#include <QTemporaryDir>
#include <QTimer>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "d_zu_configuration.h"
#include "directories.h"
#include "folder.h"
#include "jsonwriter.h"
#include "settingsdocument.h"
#include "settingshistory.h"
#include "station.h"
#include "toollog.h"
#include "sync/dsyncmanager.h"
#include "utilities/fileutils.h"
#include "utilities/jsontools.h"
#include "utilities/preconfiguration.h"
#include "utilities/zip.h"

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream& err()
{
    static QTextStream stream(stderr);
    return stream;
}

QJsonValue shown(const CommandContext& context, const QJsonValue& value, const QString& key)
{
    return context.options.isSet(QStringLiteral("show-secrets")) ? value : SettingsHistory::maskSecrets(value, key);
}

namespace {
// How long the share test waits for the server to accept a connection.
constexpr int C_serverProbeMs = 3000;

QString valueText(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::String: return value.toString();
    case QJsonValue::Bool: return value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    case QJsonValue::Double: return QString::number(value.toDouble(), 'g', 15);
    case QJsonValue::Null:
    case QJsonValue::Undefined: return QStringLiteral("-");
    default: return QString::fromUtf8(JsonWriter::toJson(value));
    }
}

void printObject(const QJsonObject& object, int indent)
{
    const QString pad(indent, QLatin1Char(' '));
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it->isObject()) {
            out() << pad << it.key() << "\n";
            printObject(it->toObject(), indent + 2);
        } else if (it->isArray() && !it->toArray().isEmpty() && it->toArray().first().isObject()) {
            out() << pad << it.key() << "\n";
            for (const QJsonValue& row : it->toArray()) {
                QStringList cells;
                const QJsonObject rowObject = row.toObject();
                for (auto cell = rowObject.begin(); cell != rowObject.end(); ++cell)
                    cells << cell.key() + QLatin1Char('=') + valueText(cell.value());
                out() << pad << "  - " << cells.join(QStringLiteral(", ")) << "\n";
            }
        } else {
            out() << pad << qSetFieldWidth(30 - indent) << Qt::left << it.key() << qSetFieldWidth(0)
                  << " " << valueText(it.value()) << "\n";
        }
    }
}
}

void printReport(const QJsonObject& report, bool json)
{
    if (json) {
        // Written as it is produced: through the text stream a large report would be decoded
        // and encoded again, and held whole.
        out().flush();
        std::fflush(stdout);
        JsonWriter::write(STDOUT_FILENO, report);
    } else
        printObject(report, 0);
}

bool waitUntil(const std::function<bool()>& done, int timeoutMs)
{
    QDeadlineTimer deadline(timeoutMs);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    return true;
}

bool waitForNetworkFolders(Directories* directories, QSet<QString>& failedPermanently, int timeoutMs)
{
    const QMetaObject::Connection connection = QObject::connect(directories, &Directories::networkFolderConnectionError,
        [&failedPermanently](const QString& alias, const QString&, bool isPermanent) {
            if (isPermanent)
                failedPermanently.insert(alias);
        });
    const bool settled = waitUntil([&] { return unconnectedShares(directories, failedPermanently).isEmpty(); }, timeoutMs);
    QObject::disconnect(connection);
    return settled;
}

QStringList unconnectedShares(Directories* directories, const QSet<QString>& except)
{
    QStringList aliases;
    for (const auto& folder : directories->folders()->list()) {
        if (folder && folder->isEnabled() && folder->type() == QLatin1String("samba")
            && !directories->networkStorage().value(folder->aliasName()) && !except.contains(folder->aliasName()))
            aliases << folder->aliasName();
    }
    return aliases;
}

int cmdStatus(CommandContext& context)
{
    DZuConfiguration* config = context.station.configuration();
    const QJsonObject hidden = config->getConfigParameter(QStringLiteral("_hidden_")).toJsonObject();

    QJsonArray relations;
    for (const auto& relation : config->sequenceIoRelations()->list()) {
        if (relation)
            relations.append(relation->toJson());
    }
    QJsonArray plugins;
    const QJsonObject pluginDefaults = hidden.value(QStringLiteral("pluginsDefConf")).toObject();
    for (auto it = pluginDefaults.begin(); it != pluginDefaults.end(); ++it)
        plugins.append(it.key());

    const QJsonObject report {
        { "station", context.station.directory() },
        { "document", context.station.documentPath() },
        { "log", ToolLog::path() },
        { "general", QJsonObject {
            { "system_name", config->systemName() },
            { "workplace_name", config->workplaceName() },
            { "production_line_name", config->prodLineName() },
            { "inactivity_timeout", config->inactivityTimeout() },
            { "sequenceWarningThreshold", config->sequenceWarningThreshold() },
            { "forceAutoLogoutForAllUsers", config->forceAutoLogoutForAllUsers() },
            { "sound_volume", config->getSoundVolume() },
            { "hideProductionTimer", config->hideProductionTimer() },
            { "operatorCannotSelectSequence", config->operatorCannotSelectSequence() },
            { "lastModification", config->lastModification() } } },
        { "regionalSettings", QJsonObject {
            { "language", config->getCurrentLanguage() },
            { "torque_unit", config->torqueUnit() },
            { "weight_unit", config->weightUnit() },
            { "distance_unit", config->distanceUnit() },
            { "temperature_unit", config->temperatureUnit() },
            { "region", config->currentRegion() },
            { "city", config->currentCity() },
            { "hourFormat", config->currentHourFormat() },
            { "dateFormat", config->currentDateFormat() },
            { "useDefaultNtp", config->useDefaultNtp() },
            { "customNtp", config->customNtp() },
            { "keyboard_input", config->getKeyboardInput() },
            { "displayDate", config->displayDate() },
            { "displaySeconds", config->displaySeconds() } } },
        { "sequencer", QJsonObject {
            { "sequenceAutoLaunch", config->sequenceAutoLaunch() },
            { "sequenceAutoSerialNumber", config->sequenceAutoSerialNumber() },
            { "sequenceIoLaunch", config->sequenceIoLaunch() },
            { "sequenceScriptLaunch", config->sequenceScriptLaunch() },
            { "sequenceStatusOutput", config->sequenceStatusOutput() },
            { "sequenceScriptPath", config->storedSequenceScriptPath() },
            { "sequenceScriptData", config->storedSequenceScriptData() },
            { "sequenceIoRelations", relations } } },
        { "comments", QJsonObject {
            { "skip_comments", config->skipCommentsJson() },
            { "rework_comments", config->reworkCommentsJson() } } },
        { "templates", QJsonObject {
            { "company_logo", config->companyLogo() },
            { "company_address", config->companyAddress() },
            { "report_footer", config->reportFooter() } } },
        { "sync", QJsonObject {
            { "interval_ms", config->syncIntervalMs() },
            { "excluded_patterns", QJsonArray::fromStringList(config->syncExcludedPatterns()) } } },
        { "validators", config->getConfigParameter(QStringLiteral("validators")).toJsonObject() },
        { "plugins", plugins },
        { "users", config->getConfigParameter(QStringLiteral("users")).toList().size() },
    };
    printReport(shown(context, report).toObject(), context.json);
    return 0;
}

int cmdPaths(CommandContext& context)
{
    Directories* directories = context.station.configuration()->directories();
    QJsonObject report;
    for (const char* role : { "sequences", "results", "pdfResults", "templates", "toolBackups", "media",
                                 "certificates", "scripts" }) {
        report.insert(role, QJsonObject {
            { "local", directories->getLocalFolderPathByRole(role) },
            { "secured", directories->getSecuredFolderPathByRole(role) } });
    }
    printReport(report, context.json);
    return 0;
}

int cmdTimezones(CommandContext& context)
{
    DZuConfiguration* config = context.station.configuration();
    QStringList names;
    if (context.arguments.isEmpty()) {
        names = config->regions();
    } else {
        const QString region = context.arguments.first();
        if (!config->regions().contains(region)) {
            err() << "station-config: unknown region " << region << "\n";
            return 1;
        }
        // Only the displayed region changes; the system time zone is left alone.
        const QString previous = config->currentRegion();
        config->setCurrentRegion(region);
        names = config->cities();
        config->setCurrentRegion(previous);
    }
    if (context.json)
        out() << QJsonDocument(QJsonArray::fromStringList(names)).toJson(QJsonDocument::Indented);
    else
        out() << names.join(QLatin1Char('\n')) << "\n";
    return 0;
}

int cmdTemplates(CommandContext& context)
{
    const QStringList templates = context.station.configuration()->directories()->templatesList();
    if (context.json)
        out() << QJsonDocument(QJsonArray::fromStringList(templates)).toJson(QJsonDocument::Indented);
    else if (!templates.isEmpty())
        out() << templates.join(QLatin1Char('\n')) << "\n";
    return 0;
}

int cmdStorage(CommandContext& context)
{
    qint64 total = 0;
    qint64 available = 0;
    if (!Directories::getStorageSize(total, available)) {
        err() << "station-config: the internal storage size is not available\n";
        return 1;
    }
    printReport(QJsonObject { { "path", PreConfiguration::getInternalStorageDirectoryPath() },
                              { "totalBytes", double(total) }, { "availableBytes", double(available) } },
                context.json);
    return 0;
}

namespace {
// A list as a JSON array, or for reading as "a, b" ("none" when empty).
QJsonValue listValue(const QStringList& list, bool json)
{
    if (json)
        return QJsonArray::fromStringList(list);
    return list.isEmpty() ? QStringLiteral("none") : list.join(QStringLiteral(", "));
}

// What start-up would do with a package, found before anything is placed: false with the
// reason when it would refuse it or take nothing from it. `ignored`: files it would skip.
bool checkPackage(const QString& package, QString& reason, QStringList& ignored)
{
    QTemporaryDir scratch;
    if (!scratch.isValid()) {
        reason = QStringLiteral("no temporary directory to check it in");
        return false;
    }
    const QList<QByteArray> entries = Zip::Unzip(package.toUtf8(), scratch.path().toUtf8(), QByteArray());
    if (entries.isEmpty()) {
        reason = QStringLiteral("not a package the station can open (not a zip archive, empty, or over the package limits)");
        return false;
    }
    const QString updateName = PreConfiguration::getParameter(QStringLiteral("configUpdateFilename")).toString();
    const QString elementsName = PreConfiguration::getParameter(QStringLiteral("elementsFilename")).toString();
    bool hasUpdate = false;
    for (const QByteArray& entry : entries) {
        const QString name = QString::fromUtf8(entry);
        const QString path = scratch.filePath(name);
        if (name == updateName) {
            QJsonObject update;
            if (!JsonTools::readFile(path, update)) {
                reason = QStringLiteral("its %1 is not a JSON object").arg(updateName);
                return false;
            }
            hasUpdate = true;
        } else if (name == elementsName) {
            if (!isValidJsonFile(path)) {
                reason = QStringLiteral("its %1 is not valid JSON").arg(elementsName);
                return false;
            }
        } else {
            ignored << name;
        }
    }
    if (!hasUpdate) {
        reason = QStringLiteral("it holds no settings update (%1 at its top level)").arg(updateName);
        return false;
    }
    return true;
}
}

int cmdApplyUpdate(CommandContext& context)
{
    const QString package = QFileInfo(context.arguments.first()).absoluteFilePath();
    if (!QFileInfo(package).isFile()) {
        err() << "station-config: no such file " << package << "\n";
        return 1;
    }
    QString error;
    // Start-up consumes the package from the system update folder: place a copy there.
    if (!PreConfiguration::load(context.station.directory() + QStringLiteral("/preconfiguration.json"))) {
        err() << "station-config: cannot load the pre-configuration\n";
        return 1;
    }
    QString reason;
    QStringList ignored;
    if (!checkPackage(package, reason, ignored)) {
        err() << "station-config: " << package << ": " << reason << "; nothing was applied\n";
        return CeExitFailed;
    }
    if (!context.station.lock(error)) {
        err() << "station-config: " << error << "\n";
        return 1;
    }
    // The document before the update: refused when unusable, kept as a version when changed.
    const QString documentPath = PreConfiguration::configurationFilePath(
        PreConfiguration::getParameter(QStringLiteral("configDirPath")).toString());
    const SettingsDocument::Reading before = SettingsDocument::read(documentPath);
    if (before.state == SettingsDocument::CeUnusable) {
        err() << "station-config: " << SettingsDocument::describe(before, documentPath)
              << "; nothing was changed\n";
        return 3;
    }
    const QString updateFolder = PreConfiguration::getParameter(QStringLiteral("systemUpdateFolder")).toString();
    const QString target = PreConfiguration::backupConfigFilePath(updateFolder);
    QDir().mkpath(updateFolder);
    QFile::remove(target);
    if (!QFile::copy(package, target)) {
        err() << "station-config: cannot copy the package to " << target << "\n";
        return 1;
    }
    if (!context.station.open(false, error)) {
        err() << "station-config: " << error << "\n";
        return 1;
    }
    const bool consumed = !QFileInfo::exists(target);
    // A package start-up could not open would be tried again at every start.
    if (!consumed)
        QFile::remove(target);
    const SettingsDocument::Reading after = SettingsDocument::read(documentPath);
    if (after.digest != before.digest
        && !context.station.history().record(before.bytes, after.object,
                                              QStringLiteral("apply-update ") + QFileInfo(package).fileName(), &error))
        err() << "station-config: the document before the update was not kept: " << error << "\n";
    const QStringList changed = SettingsHistory::changedKeys(before.object, after.object);
    if (!consumed)
        err() << "station-config: the package was not applied; see " << ToolLog::path() << "\n";
    printReport(QJsonObject { { "package", package }, { "applied", consumed },
                              { "document", context.station.documentPath() },
                              { "changedKeys", listValue(changed, context.json) },
                              { "ignoredFiles", listValue(ignored, context.json) } },
                context.json);
    return consumed ? CeExitSuccess : CeExitFailed;
}

bool serverReachable(const QString& address, QString& reason)
{
    QString host = address;
    QString port = QStringLiteral("445");
    if (address.startsWith(QLatin1Char('['))) {            // "[v6 address]" or "[v6 address]:port"
        const int close = address.indexOf(QLatin1Char(']'));
        host = address.mid(1, close - 1);
        if (close > 0 && address.mid(close + 1).startsWith(QLatin1Char(':')))
            port = address.mid(close + 2);
    } else if (address.count(QLatin1Char(':')) == 1) {      // "host:port"; more colons: a bare v6 address
        host = address.section(QLatin1Char(':'), 0, 0);
        port = address.section(QLatin1Char(':'), 1);
    }
    addrinfo hints {};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (const int code = ::getaddrinfo(host.toUtf8().constData(), port.toUtf8().constData(), &hints, &found)) {
        reason = QString::fromLocal8Bit(::gai_strerror(code));
        return false;
    }
    bool reached = false;
    for (addrinfo* candidate = found; candidate && !reached; candidate = candidate->ai_next) {
        const int fd = ::socket(candidate->ai_family, candidate->ai_socktype | SOCK_NONBLOCK, candidate->ai_protocol);
        if (fd < 0) {
            reason = QString::fromLocal8Bit(std::strerror(errno));
            continue;
        }
        int error = 0;
        if (::connect(fd, candidate->ai_addr, candidate->ai_addrlen) != 0) {
            error = errno;
            if (error == EINPROGRESS) {
                pollfd poll { fd, POLLOUT, 0 };
                if (::poll(&poll, 1, C_serverProbeMs) == 1) {
                    socklen_t length = sizeof error;
                    ::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length);
                } else {
                    error = ETIMEDOUT;
                }
            }
        }
        ::close(fd);
        reached = error == 0;
        if (!reached)
            reason = QString::fromLocal8Bit(std::strerror(error));
    }
    ::freeaddrinfo(found);
    return reached;
}

int cmdTestShare(CommandContext& context)
{
    QTextStream input(stdin);
    const QString password = input.readLine();
    const QString address = context.arguments.at(0);
    QJsonArray steps;
    const auto step = [&](const QString& name, bool ok, const QString& message) {
        steps.append(QJsonObject { { "step", name }, { "ok", ok }, { "message", message } });
        if (!context.json) {
            out() << qSetFieldWidth(36) << Qt::left << name << qSetFieldWidth(0) << " " << (ok ? "ok" : "FAILED")
                  << (message.isEmpty() ? QString() : QStringLiteral(": ") + message) << "\n";
            out().flush();
        }
    };

    QString reason;
    if (!serverReachable(address, reason)) {
        step(QStringLiteral("server ") + address, false, reason);
        if (context.json)
            out() << QJsonDocument(QJsonObject { { "success", false }, { "message", reason }, { "steps", steps } })
                         .toJson(QJsonDocument::Indented);
        return CeExitFailed;
    }
    step(QStringLiteral("server ") + address, true, QString());

    Directories* directories = context.station.configuration()->directories();
    bool finished = false;
    bool success = false;
    QString message;
    bool stepFailed = false;
    QObject::connect(directories, &Directories::testConnectionStep,
                     [&](const QString& name, bool ok, const QString& text) {
                         stepFailed = stepFailed || !ok;
                         step(name, ok, text);
                     });
    QObject::connect(directories, &Directories::testConnectionResult, [&](bool ok, const QString& text) {
        finished = true;
        success = ok;
        message = text;
    });
    directories->testFolderConnection(context.arguments.at(0), context.options.value(QStringLiteral("domain")),
                                      context.options.value(QStringLiteral("user")), password, context.arguments.at(1));
    if (!waitUntil([&finished] { return finished; }, 30000)) {
        err() << "station-config: timed out after 30 s waiting for the share test to report\n";
        return CeExitTimedOut;
    }
    if (!success && !stepFailed)   // refused before any step (a test still cleaning up, say)
        step(QStringLiteral("start"), false, message);
    if (context.json)
        out() << QJsonDocument(QJsonObject { { "success", success }, { "message", message }, { "steps", steps } })
                     .toJson(QJsonDocument::Indented);
    return success ? CeExitSuccess : CeExitFailed;
}
