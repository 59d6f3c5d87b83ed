#include "settingsapp.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickStyle>
#include <QTranslator>

#include "d_zu_configuration.h"
#include "settingsdocument.h"
#include "station.h"
#include "utilities/installpaths.h"
#include "utilities/languagesmanagement.h"
#include "utilities/logline.h"

static const char C_sourceFile[] = "apps/station-settings/settingsapp";
static const char C_saveReason[] = "station-settings save";
static const char C_timeFormat[] = "yyyy-MM-dd HH:mm:ss";
// What the library runs on a real station.
static const char C_systemTimeZoneCommand[] = "timedatectl";
static const char C_systemCompositorFile[] = "/etc/xdg/weston/weston.ini";

SettingsApp::SettingsApp(Station& station, QObject* parent)
    : QObject(parent)
    , m_station(station)
{
}

QString SettingsApp::directory() const
{
    return QDir::toNativeSeparators(m_station.directory());
}

bool SettingsApp::save()
{
    return saveDocument(false);
}

bool SettingsApp::overwrite()
{
    return saveDocument(true);
}

bool SettingsApp::saveDocument(bool overwrite)
{
    QString error;
    Station::EnSaveResult result = Station::CeUnusable;
    DZuConfiguration* configuration = m_station.configuration();
    if (!configuration) {
        error = QStringLiteral("the station is not open");
    } else if (!configuration->isDocumentUsable()) {
        // The settings in memory are defaults standing in for a damaged file.
        error = configuration->documentDescription() + QStringLiteral("; nothing was changed");
    } else if (m_station.lock(error)) {
        result = m_station.save(QLatin1String(C_saveReason), error, {}, overwrite);
        m_station.unlock();
    } else {
        result = Station::CeWriteFailed;
    }

    if (result == Station::CeConflict) {
        LogLine::debug(this, C_sourceFile, __LINE__, QStringLiteral("save refused:"), error);
        emit sigSaveConflict(error);
        return false;
    }
    const bool success = result == Station::CeSaved;
    if (success)
        refreshHistory();
    else
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("cannot save the settings document:"), error);
    emit saved(success, success ? QString() : error);
    return success;
}

void SettingsApp::reload()
{
    if (!m_station.configuration())
        return;
    reloadStation();
    emit reloaded();
}

void SettingsApp::reloadStation()
{
    // Through the station, which also takes note of the file it read for the next save.
    m_station.reload();
    // The library's reload replaces its values without notifying them: the screens read them again.
    for (const char* signal : { "sigConfigurationChanged", "sigRegionChanged", "sigSequenceRelationChanged" })
        QMetaObject::invokeMethod(m_station.configuration(), signal);
    sltUpdateDocumentDamage();
    refreshHistory();
}

bool SettingsApp::restoreVersion(int number)
{
    QString error;
    QString when;
    bool success = false;
    if (!m_station.configuration()) {
        error = QStringLiteral("the station is not open");
    } else if (m_station.lock(error)) {
        SettingsHistory history = m_station.history();
        const auto versions = history.versions();
        if (number < 0 || number >= versions.size()) {
            error = QStringLiteral("there is no version %1").arg(number);
        } else {
            when = stationTime(versions.at(number).time);
            success = history.rollback(number, &error);
        }
        m_station.unlock();
    }
    if (success)
        reloadStation();
    else
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("cannot restore a version:"), error);
    refreshHistory();
    emit sigRestored(success, success ? when : error);
    return success;
}

bool SettingsApp::startFromDefaults()
{
    QString detail;
    QString movedTo;
    bool success = false;
    if (!m_station.configuration()) {
        detail = QStringLiteral("the station is not open");
    } else if (m_station.lock(detail)) {
        const QString path = m_station.documentPath();
        if (SettingsDocument::read(path).state != SettingsDocument::CeUnusable)
            detail = QStringLiteral("%1 can be used now; it was read again and nothing was moved").arg(path);
        else
            success = SettingsDocument::moveAside(path, &movedTo, &detail);
        m_station.unlock();
        reloadStation();
    }
    if (!success)
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("cannot start from defaults:"), detail);
    emit sigStartedFromDefaults(success, success ? movedTo : detail);
    return success;
}

void SettingsApp::refreshHistory()
{
    QVariantList list;
    if (m_station.configuration()) {
        for (const SettingsHistory::Version& version : m_station.history().versions()) {
            list.append(QVariantMap {
                { QStringLiteral("number"), version.number },
                { QStringLiteral("time"), version.time },
                { QStringLiteral("timeText"), stationTime(version.time) },
                { QStringLiteral("size"), version.size },
                { QStringLiteral("changedKeys"), version.changedKeys },
                { QStringLiteral("reason"), version.reason },
            });
        }
    }
    if (list == m_history)
        return;
    m_history = list;
    emit historyChanged();
}

QString SettingsApp::stationTime(const QDateTime& time) const
{
    // On the station's clock (UTC shifted by its offset), as the header shows the time.
    DZuConfiguration* configuration = m_station.configuration();
    const int offsetHours = configuration ? configuration->dateTime()->utcOffset() : 0;
    return time.toUTC().addSecs(offsetHours * 3600).toString(QLatin1String(C_timeFormat));
}

void SettingsApp::sltUpdateDocumentDamage()
{
    DZuConfiguration* configuration = m_station.configuration();
    QString damage;
    if (configuration && !configuration->isDocumentUsable()) {
        QFile file(m_station.documentPath());
        damage = file.open(QIODevice::ReadOnly) ? damageOf(file.readAll()) : QStringLiteral("invalid");
    }
    if (damage == m_documentDamage)
        return;
    m_documentDamage = damage;
    emit documentDamageChanged();
}

QString SettingsApp::damageOf(const QByteArray& bytes)
{
    // A write cut short by a crash leaves zeros where the data never reached the disk...
    int end = bytes.size();
    while (end > 0 && bytes.at(end - 1) == '\0')
        --end;
    const QByteArray text = bytes.left(end);
    if (text.contains('\0'))
        return QStringLiteral("invalid"); // UTF-16 or binary
    if (end < bytes.size())
        return QStringLiteral("torn");
    if (text.trimmed().isEmpty())
        return QStringLiteral("empty");
    // ... or a text that stops inside the document: a string or brackets still open at its
    // end, none closed out of turn before.
    QByteArray open;
    bool inString = false;
    bool escaped = false;
    for (const char c : text) {
        if (inString) {
            if (escaped)
                escaped = false;
            else if (c == '\\')
                escaped = true;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '{' || c == '[') {
            open.append(c);
        } else if (c == '}' || c == ']') {
            if (open.isEmpty() || open.back() != (c == '}' ? '{' : '['))
                return QStringLiteral("invalid");
            open.chop(1);
        }
    }
    return inString || !open.isEmpty() ? QStringLiteral("torn") : QStringLiteral("invalid");
}

bool SettingsApp::installCatalogue(QCoreApplication& application)
{
    auto* catalogue = new QTranslator(&application);
    if (catalogue->load(QStringLiteral("station_en"), InstallPaths::catalogueDirectory())) {
        // The other languages' catalogues are beside it.
        LanguagesManagement::instance()->setCatalogueDirectory(QFileInfo(catalogue->filePath()).absolutePath());
        return QCoreApplication::installTranslator(catalogue);
    }
    LogLine::critical(nullptr, C_sourceFile, __LINE__, QStringLiteral("the English catalogue is missing"));
    delete catalogue;
    return false;
}

void SettingsApp::keepSystemSettings()
{
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("true"));
    DZuConfiguration::setCompositorConfigPath(QString());
}

QStringList SettingsApp::languages() const
{
    // As LanguagesManagement looks for a language's catalogue: by code, then by language alone.
    LanguagesManagement* management = LanguagesManagement::instance();
    const QDir directory(management->catalogueDirectory());
    QStringList offered;
    const QMap<QString, QString>& table = management->languageTable();
    for (auto it = table.cbegin(); it != table.cend(); ++it) {
        const QString code = it.value();
        if (directory.exists(QStringLiteral("station_") + code + QStringLiteral(".qm"))
            || directory.exists(QStringLiteral("station_") + code.section(QLatin1Char('_'), 0, 0) + QStringLiteral(".qm")))
            offered.append(it.key());
    }
    return offered;
}

void SettingsApp::refreshTemplates()
{
    if (DZuConfiguration* configuration = m_station.configuration())
        configuration->directories()->updateTemplatesList();
}

bool SettingsApp::load(QQmlApplicationEngine& engine)
{
    Q_INIT_RESOURCE(settings_qml);
    // The station's panel is used by touch: Material's controls are finger-sized (48 px); an
    // explicit choice in the environment wins.
    if (qEnvironmentVariableIsEmpty("QT_QUICK_CONTROLS_STYLE"))
        QQuickStyle::setStyle(QStringLiteral("Material"));
    if (DZuConfiguration* configuration = m_station.configuration()) {
        connect(configuration, &DZuConfiguration::documentStateChanged, this, &SettingsApp::sltUpdateDocumentDamage,
                Qt::UniqueConnection);
    }
    sltUpdateDocumentDamage();
    refreshHistory();
    // What the library runs for the time zone and the keyboard map, once the station is open.
    m_systemPreview = QFileInfo(DZuConfiguration::timeZoneCommand()).fileName() != QLatin1String(C_systemTimeZoneCommand)
        || DZuConfiguration::compositorConfigPath() != QLatin1String(C_systemCompositorFile);
    QCoreApplication::setApplicationVersion(QStringLiteral(STATION_APP_VERSION));
    engine.rootContext()->setContextProperty(QStringLiteral("station"), this);
    // The new catalogue is installed before the signal: every translated text is read again.
    connect(LanguagesManagement::instance(), &LanguagesManagement::currentLanguageChanged, &engine,
            &QQmlEngine::retranslate);
    engine.load(QUrl(QStringLiteral("qrc:/station-settings/main.qml")));
    return !engine.rootObjects().isEmpty();
}
