#include "d_zu_configuration.h"

#include "jsonwriter.h"

#include "access/accesscontrolmanager.h"
#include "core/ddirectoriespaths.h"
#include "sync/dsyncmanager.h"
#include "utilities/guiengine.h"
#include "utilities/jsontools.h"
#include "utilities/keyboardmanagement.h"
#include "utilities/languagesmanagement.h"
#include "utilities/logline.h"
#include "utilities/preconfiguration.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>
#include <QQmlContext>
#include <QUuid>
#include <QtQml/qqml.h>

#include <cmath>
#include <limits>

namespace {
const char C_source[] = "lib_configuration/source/d_zu_configuration";

// Source lines under which these messages have always been reported; log readers match them.
constexpr int C_lineSeqIoRelationNull = 555;
constexpr int C_lineCannotOpenSaveFile = 625;
constexpr int C_lineNoWorkspaceDirectory = 820;
constexpr int C_lineMainConfigUnavailable = 855;

const QString C_hiddenSection = QStringLiteral("_hidden_");
const QString C_hiddenConfigurationDirectoryPath = QStringLiteral("_hidden_.configurationDirectoryPath");
const QString C_hiddenPluginsDefConf = QStringLiteral("_hidden_.pluginsDefConf");
const QString C_hiddenUserName = QStringLiteral("_hidden_.userName");

const QString C_hourFormat24 = QStringLiteral("24 h");
const QString C_hourFormat12 = QStringLiteral("12 h");
const QString C_defaultDateFormat = QStringLiteral("DD/MM/YYYY");
const QString C_defaultRegion = QStringLiteral("Europe");
const QString C_defaultCity = QStringLiteral("Paris");
const QString C_defaultTorqueUnit = QStringLiteral("Nm");
const QString C_defaultWeightUnit = QStringLiteral("g");
const QString C_defaultDistanceUnit = QStringLiteral("m");
const QString C_defaultTemperatureUnit = QStringLiteral("\u00B0C");
const QString C_defaultLanguageCode = QStringLiteral("en_GB");
const QString C_defaultKeyboardCode = QStringLiteral("gb");
const QString C_defaultPluginConfigFilename = QStringLiteral("config_plugin.json");
const QString C_defaultPluginBehaviorFilename = QStringLiteral("behavior_plugin.js");

constexpr int C_defaultSyncIntervalMs = 30000;

const QStringList& defaultExcludedPatterns()
{
    static const QStringList patterns{QStringLiteral("*-journal"), QStringLiteral("*-shm"), QStringLiteral("*-wal")};
    return patterns;
}

// 1000 <= value <= 600000, as one unsigned comparison.
bool isAcceptedSyncInterval(int value)
{
    return static_cast<quint32>(value) - 1000u <= 599000u;
}

// Trimmed, non-empty string elements of the array, in order; other elements are skipped.
QStringList patternsFromArray(const QJsonArray& array)
{
    QStringList patterns;
    for (const QJsonValue& element : array) {
        if (!element.isString())
            continue;
        const QString pattern = element.toString().trimmed();
        if (!pattern.isEmpty())
            patterns.append(pattern);
    }
    return patterns;
}

QString stringAt(const QJsonObject& object, const QString& dottedPath, const QString& defaultValue)
{
    bool found = false;
    const QJsonValue value = JsonTools::getValue(object, dottedPath, &found);
    return found ? value.toString(defaultValue) : defaultValue;
}

QJsonArray arrayFromStringList(const QStringList& list)
{
    QJsonArray array;
    for (const QString& text : list)
        array.append(text);
    return array;
}

// Nearest whole number, halves towards +infinity; out-of-range values are clamped.
int roundUtcOffset(double value)
{
    const double rounded = std::floor(value + 0.5);
    if (!(rounded >= std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    if (rounded > std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    return static_cast<int>(rounded);
}
}

DZuConfiguration* DZuConfiguration::m_instance = nullptr;

// --- Creation -------------------------------------------------------------------------------

DZuConfiguration* DZuConfiguration::initInstance(AccessControlManager* accessControl)
{
    if (!m_instance) {
        const QString configDirPath = PreConfiguration::getParameter(QStringLiteral("configDirPath")).toString();
        const bool isEditorOnly = PreConfiguration::getParameter(QStringLiteral("isEditorOnly")).toBool();
        if (!isEditorOnly) {
            const QString systemUpdateFolder =
                PreConfiguration::getParameter(QStringLiteral("systemUpdateFolder")).toString();
            const QString packagePath = PreConfiguration::backupConfigFilePath(systemUpdateFolder);
            if (QFile::exists(packagePath))
                processConfigurationUpdate(packagePath, configDirPath);
        }
        const QString configFilename = PreConfiguration::getParameter(QStringLiteral("configFilename")).toString();

        QString removableStoragePath = Directories::getRemovableStorageDirectoryPath();
        const QString usbKeyMountPath = PreConfiguration::getParameter(QStringLiteral("usbKeyMountPath")).toString();
        if (PreConfiguration::getParameter(QStringLiteral("isDevComputer")).toBool() && !usbKeyMountPath.isEmpty())
            removableStoragePath = usbKeyMountPath;

        const QString trashDirectoryPath = PreConfiguration::getTrashStorageDirectoryPath();
        const QString syncDatabaseFilePath = PreConfiguration::syncDatabaseFilePath();

        // A station other than the embedded target (a development computer, a demo) may name
        // another time-zone program and compositor file; the load below already uses them.
        const QString timeZoneCommand = PreConfiguration::getParameter(QStringLiteral("timeZoneCommandPath")).toString();
        if (!timeZoneCommand.isEmpty())
            setTimeZoneCommand(timeZoneCommand);
        const QString compositorConfig = PreConfiguration::getParameter(QStringLiteral("compositorConfigPath")).toString();
        if (!compositorConfig.isEmpty())
            setCompositorConfigPath(compositorConfig);

        m_instance = new DZuConfiguration(configDirPath, configFilename, removableStoragePath, accessControl,
                                          syncDatabaseFilePath, trashDirectoryPath);
    }
    qmlRegisterUncreatableType<Directories>("App", 1, 0, "Directories", QStringLiteral("interface"));
    return m_instance;
}

DZuConfiguration* DZuConfiguration::getInstance()
{
    return m_instance;
}

DZuConfiguration::InitialSyncSettings DZuConfiguration::readInitialSyncSettings(const QString& dir,
                                                                                const QString& fileName)
{
    InitialSyncSettings sync;
    sync.reading = SettingsDocument::read(dir + QLatin1Char('/') + fileName);
    sync.reading.bytes = QByteArray(); // the parse is all the load needs: a large document is not held twice
    const QJsonObject document = sync.reading.state == SettingsDocument::CeLoaded ? sync.reading.object : QJsonObject();
    sync.excludedPatterns = syncExcludedPatternsOf(document, defaultExcludedPatterns());
    sync.intervalMs = syncIntervalMsOf(document, C_defaultSyncIntervalMs);
    return sync;
}

DZuConfiguration::DZuConfiguration(const QString& configurationDirectoryPath, const QString& configurationFileName,
                                   const QString& removableStoragePath, AccessControlManager* accessControl,
                                   const QString& syncDatabaseFilePath, const QString& trashDirectoryPath)
    : DZuConfiguration(configurationDirectoryPath, configurationFileName, removableStoragePath, accessControl,
                       syncDatabaseFilePath, trashDirectoryPath,
                       readInitialSyncSettings(configurationDirectoryPath, configurationFileName))
{
}

DZuConfiguration::DZuConfiguration(const QString& configurationDirectoryPath, const QString& configurationFileName,
                                   const QString& removableStoragePath, AccessControlManager* accessControl,
                                   const QString& syncDatabaseFilePath, const QString& trashDirectoryPath,
                                   const InitialSyncSettings& sync)
    : QObject(nullptr)
    , m_directories(syncDatabaseFilePath, trashDirectoryPath, removableStoragePath, sync.intervalMs,
                    sync.excludedPatterns, this)
    , m_configurationDirectoryPath(configurationDirectoryPath)
    , m_configurationFileName(configurationFileName)
    , m_accessControl(accessControl)
    , m_torqueUnit(C_defaultTorqueUnit)
    , m_weightUnit(C_defaultWeightUnit)
    , m_distanceUnit(C_defaultDistanceUnit)
    , m_temperatureUnit(C_defaultTemperatureUnit)
    , m_syncIntervalMs(C_defaultSyncIntervalMs)
    , m_syncExcludedPatterns(defaultExcludedPatterns())
    , m_currentRegion(C_defaultRegion)
    , m_currentCity(C_defaultCity)
    , m_currentHourFormat(C_hourFormat24)
    , m_currentDateFormat(C_defaultDateFormat)
{
    m_mainConfig = mainConfigFrom(sync.reading, true);
    m_settings = QSharedPointer<QJsonObject>(&m_mainConfig, [](QJsonObject*) {});

    setObjectName(QStringLiteral("ZuConfiguration"));

    loadSettings();

    Directories::registerClass();

    GuiEngine* guiEngine = GuiEngine::instance();
    if (guiEngine && guiEngine->isValid()) {
        guiEngine->setContextProperties({
            {QStringLiteral("zuConfig"), QVariant::fromValue<QObject*>(this)},
            {QStringLiteral("directories"), QVariant::fromValue<QObject*>(&m_directories)},
            {QStringLiteral("dateTime"), QVariant::fromValue<QObject*>(&m_dateTime)},
        });
    }

    m_dateFormats = QStringList{QStringLiteral("DD/MM/YYYY"), QStringLiteral("MM/DD/YYYY"),
                                QStringLiteral("YYYY-MM-DD")};
    m_hourFormats = QStringList{C_hourFormat24, C_hourFormat12};

    // A layout chosen by the operator (setKeyboardInput) also becomes the compositor's keymap.
    connect(KeyboardManagement::instance(), &KeyboardManagement::keyboardLayoutApplied, this,
            &DZuConfiguration::setKeyMapLayout);
}

DZuConfiguration::~DZuConfiguration()
{
    if (m_instance == this)
        m_instance = nullptr;
}

// --- Document -------------------------------------------------------------------------------

QJsonObject DZuConfiguration::getMainConfig(const QString& fileName)
{
    return mainConfigFrom(SettingsDocument::read(m_configurationDirectoryPath + QLatin1Char('/') + fileName),
                          fileName == m_configurationFileName);
}

QJsonObject DZuConfiguration::mainConfigFrom(const SettingsDocument::Reading& reading, bool isMainDocument)
{
    if (isMainDocument)
        setDocumentReading(reading);
    if (reading.state != SettingsDocument::CeLoaded && reading.object.isEmpty()) {
        LogLine::critical(this, C_source, C_lineMainConfigUnavailable,
                          QStringLiteral("ERROR: Main configuration is not available!"));
        return QJsonObject();
    }
    return reading.object;
}

void DZuConfiguration::setDocumentReading(const SettingsDocument::Reading& reading)
{
    const bool changed = reading.state != m_documentState || reading.reason != m_documentProblem
        || reading.line != m_documentErrorLine || reading.column != m_documentErrorColumn;
    m_documentState = reading.state;
    m_documentProblem = reading.reason;
    m_documentErrorLine = reading.line;
    m_documentErrorColumn = reading.column;
    m_loadedDocumentDigest = reading.digest;
    m_loadedDocument = reading.state == SettingsDocument::CeLoaded ? reading.object : QJsonObject();
    if (changed)
        emit documentStateChanged();
}

QString DZuConfiguration::documentFilePath() const
{
    return m_configurationDirectoryPath + QLatin1Char('/') + m_configurationFileName;
}

QString DZuConfiguration::documentDescription() const
{
    if (m_documentState != SettingsDocument::CeUnusable)
        return QString();
    SettingsDocument::Reading reading;
    reading.reason = m_documentProblem;
    reading.line = m_documentErrorLine;
    reading.column = m_documentErrorColumn;
    return SettingsDocument::describe(reading, documentFilePath());
}

QVariant DZuConfiguration::getConfigParameter(const QString& path) const
{
    bool found = false;
    const QJsonValue value = JsonTools::getValue(m_mainConfig, path, &found);
    return found ? value.toVariant() : QVariant();
}

QVariantMap DZuConfiguration::getLoggerSection() const
{
    return m_mainConfig.value(QStringLiteral("logger")).toObject().toVariantMap();
}

void DZuConfiguration::loadSettings()
{
    JsonTools::addValue(m_settings, C_hiddenSection, QJsonObject());
    JsonTools::addValue(m_settings, C_hiddenConfigurationDirectoryPath, m_configurationDirectoryPath);

    const QJsonObject general = m_mainConfig.value(QStringLiteral("general")).toObject();
    m_workplaceName = general.value(QStringLiteral("workplace_name")).toString();
    m_prodLineName = general.value(QStringLiteral("production_line_name")).toString();
    // The constructor's 60, 100 and 90 are overwritten here on purpose: a missing key reads 0.
    m_inactivityTimeout = general.value(QStringLiteral("inactivity_timeout")).toInt();
    m_sequenceWarningThreshold = general.value(QStringLiteral("sequenceWarningThreshold")).toInt();
    m_forceAutoLogoutForAllUsers = general.value(QStringLiteral("forceAutoLogoutForAllUsers")).toBool();
    m_soundVolume = general.value(QStringLiteral("sound_volume")).toInt();
    m_hideProductionTimer = general.value(QStringLiteral("hideProductionTimer")).toBool();
    m_operatorCannotSelectSequence = general.value(QStringLiteral("operatorCannotSelectSequence")).toBool();
    m_lastModification = general.value(QStringLiteral("lastModification")).toString();

    m_systemName = m_mainConfig.value(QStringLiteral("system")).toObject().value(QStringLiteral("name")).toString();

    m_validators = m_mainConfig.value(QStringLiteral("validators")).toVariant().toMap();

    const QJsonObject templates = m_mainConfig.value(QStringLiteral("templates")).toObject();
    m_companyLogo = templates.value(QStringLiteral("company_logo")).toString();
    m_companyAddress = templates.value(QStringLiteral("company_address")).toString();
    m_reportFooter = templates.value(QStringLiteral("report_footer")).toString();

    const QJsonObject comments = m_mainConfig.value(QStringLiteral("comments")).toObject();
    m_skipComments.load(comments.value(QStringLiteral("skip_comments")).toArray());
    m_reworkComments.load(comments.value(QStringLiteral("rework_comments")).toArray());

    const QJsonObject sequencer = m_mainConfig.value(QStringLiteral("sequencer")).toObject();
    m_sequenceAutoLaunch = sequencer.value(QStringLiteral("sequenceAutoLaunch")).toBool();
    m_sequenceAutoSerialNumber = sequencer.value(QStringLiteral("sequenceAutoSerialNumber")).toBool();
    m_sequenceIoLaunch = sequencer.value(QStringLiteral("sequenceIoLaunch")).toBool();
    m_sequenceScriptLaunch = sequencer.value(QStringLiteral("sequenceScriptLaunch")).toBool();
    m_sequenceScriptData = sequencer.value(QStringLiteral("sequenceScriptData")).toString();
    m_sequenceScriptPath = sequencer.value(QStringLiteral("sequenceScriptPath")).toString();
    m_sequenceStatusOutput = sequencer.value(QStringLiteral("sequenceStatusOutput")).toString();
    m_sequenceIoRelations.reset();
    const QJsonArray relations = sequencer.value(QStringLiteral("sequenceIoRelations")).toArray();
    for (const QJsonValue& relation : relations) {
        m_sequenceIoRelations.append(QSharedPointer<SequenceIoRelation>(
            new SequenceIoRelation(relation.toObject()), &QObject::deleteLater));
    }

    const QJsonObject sync = m_mainConfig.value(QStringLiteral("sync")).toObject();
    if (sync.contains(QStringLiteral("interval_ms"))) {
        const int interval = sync.value(QStringLiteral("interval_ms")).toInt(m_syncIntervalMs);
        if (isAcceptedSyncInterval(interval))
            m_syncIntervalMs = interval;
    }
    const QJsonValue patterns = sync.value(QStringLiteral("excluded_patterns"));
    if (patterns.isArray()) {
        const QStringList excluded = patternsFromArray(patterns.toArray());
        if (excluded != m_syncExcludedPatterns)
            m_syncExcludedPatterns = excluded;
    }

    const QJsonObject regional = m_mainConfig.value(QStringLiteral("regionalSettings")).toObject();
    LanguagesManagement::instance()->setCurrentLanguageCode(
        regional.value(QStringLiteral("language")).toString(C_defaultLanguageCode));
    m_torqueUnit = regional.value(QStringLiteral("torque_unit")).toString(C_defaultTorqueUnit);
    m_weightUnit = regional.value(QStringLiteral("weight_unit")).toString(C_defaultWeightUnit);
    m_distanceUnit = regional.value(QStringLiteral("distance_unit")).toString(C_defaultDistanceUnit);
    m_temperatureUnit = regional.value(QStringLiteral("temperature_unit")).toString(C_defaultTemperatureUnit);
    rebuildUnitLabels();
    // Absent means the default server; present with a wrong type reads as false.
    m_useDefaultNtp = regional.contains(QStringLiteral("useDefaultNtp"))
        ? regional.value(QStringLiteral("useDefaultNtp")).toBool()
        : true;
    m_customNtp = regional.value(QStringLiteral("customNtp")).toString();
    m_currentRegion = regional.value(QStringLiteral("region")).toString(C_defaultRegion);
    m_currentCity = regional.value(QStringLiteral("city")).toString(C_defaultCity);
    m_currentHourFormat = regional.value(QStringLiteral("hourFormat")).toString(C_hourFormat24);
    m_dateTime.set24hFormat(m_currentHourFormat == C_hourFormat24);
    m_currentDateFormat = regional.value(QStringLiteral("dateFormat")).toString(C_defaultDateFormat);
    KeyboardManagement::instance()->setCurrentKeyboardLayoutCode(
        regional.value(QStringLiteral("keyboard_input")).toString(C_defaultKeyboardCode), false);
    m_displayDate = regional.value(QStringLiteral("displayDate")).toBool();
    m_displaySeconds = regional.value(QStringLiteral("displaySeconds")).toBool();

    if (appliesSystemSettingsOnLoad())
        setRegion(m_currentRegion, m_currentCity);

    const QJsonValue utcOffset = JsonTools::getValue(m_mainConfig, QStringLiteral("system.utcOffset"));
    m_dateTime.setUtcOffset(utcOffset.isDouble() ? roundUtcOffset(utcOffset.toDouble()) : 0);

    m_configurationDirectoryPath = JsonTools::getValue(m_mainConfig, C_hiddenConfigurationDirectoryPath).toString();
    if (m_configurationDirectoryPath.isEmpty()) {
        LogLine::critical(this, C_source, C_lineNoWorkspaceDirectory,
                          QStringLiteral("ERROR: No workspace directory available!"));
        return;
    }
    m_configurationDirectoryPath = QDir(m_configurationDirectoryPath).absolutePath();
    QDir().mkpath(m_configurationDirectoryPath);

    loadPluginDefaults();
}

void DZuConfiguration::loadPluginDefaults()
{
    JsonTools::addValue(m_settings, C_hiddenPluginsDefConf, QJsonObject());

    const QString pluginsDirectory = m_configurationDirectoryPath + QLatin1Char('/')
        + stringAt(m_mainConfig, QStringLiteral("paths.plugins"), QStringLiteral("plugins"));
    const QString pluginFileName = stringAt(m_mainConfig, QStringLiteral("configuration.pluginConfigFilename"),
                                            C_defaultPluginConfigFilename);

    const QFileInfoList entries =
        QDir(pluginsDirectory).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QFileInfo& entry : entries) {
        // Only directories named by a UUID hold plugins.
        if (QUuid(entry.fileName()).isNull())
            continue;
        QJsonObject defaults;
        if (JsonTools::readFile(entry.absoluteFilePath() + QLatin1Char('/') + pluginFileName, defaults))
            JsonTools::addValue(m_settings, C_hiddenPluginsDefConf + QLatin1Char('.') + entry.fileName(), defaults);
    }
}

void DZuConfiguration::rebuildUnitLabels()
{
    m_unitLabels.clear();
    m_unitLabels.append(QVariantMap{{qtTrId("DZuConfiguration_torque_unit"), m_torqueUnit}});
    m_unitLabels.append(QVariantMap{{qtTrId("DZuConfiguration_weight_unit"), m_weightUnit}});
    m_unitLabels.append(QVariantMap{{qtTrId("DZuConfiguration_distance_unit"), m_distanceUnit}});
    m_unitLabels.append(QVariantMap{{qtTrId("DZuConfiguration_temperature_unit"), m_temperatureUnit}});
}

void DZuConfiguration::reload()
{
    // Replaced in place: the settings pointer keeps referring to the member.
    m_mainConfig = getMainConfig(m_configurationFileName);
    loadSettings();
}

void DZuConfiguration::loadDirectories()
{
    QJsonValue document(*m_settings);
    m_directories.loadSettings(document);
}

void DZuConfiguration::loadUsers()
{
    if (!m_accessControl)
        return;
    m_accessControl->loadUsers(
        m_mainConfig, [this](const QString& text) { return stringToDate(text); },
        [this](const QDate& date) { return dateToString(date); });
}

void DZuConfiguration::sltUserNameChanged(const QString& userName)
{
    if (m_settings)
        JsonTools::addValue(m_settings, C_hiddenUserName, userName);
}

// --- Saving ---------------------------------------------------------------------------------

bool DZuConfiguration::saveSettings(QJsonObject& root)
{
    completeDocument(root);
    return saveCompletedSettings(root);
}

bool DZuConfiguration::saveCompletedSettings(const QJsonObject& root)
{
    // Serialised before the file is touched; a failed write puts the previous bytes back.
    const QByteArray text = JsonWriter::toJson(root);
    QString error;
    switch (SettingsDocument::writeInPlace(documentFilePath(), text, &error)) {
    case SettingsDocument::CeWritten:
        m_lastSaveError.clear();
        m_loadedDocumentDigest = SettingsDocument::digest(text);
        m_loadedDocument = QJsonObject(); // what a parse of the text gives is not known here
        return true;
    case SettingsDocument::CeCannotOpen:
        m_lastSaveError = error;
        LogLine::critical(this, C_source, C_lineCannotOpenSaveFile, QStringLiteral("ERROR: Couldn't open save file."));
        return false;
    case SettingsDocument::CeRestored:
        m_lastSaveError = error;
        LogLine::critical(this, C_source, __LINE__,
                          QStringLiteral("ERROR: Couldn't write save file, the previous document is kept:"), error);
        return false;
    case SettingsDocument::CeLost:
        break;
    }
    m_lastSaveError = error;
    LogLine::critical(this, C_source, __LINE__,
                      QStringLiteral("ERROR: Couldn't write save file nor restore the previous document:"), error);
    return false;
}

void DZuConfiguration::completeDocument(QJsonObject& root)
{
    QJsonObject general;
    general.insert(QStringLiteral("workplace_name"), m_workplaceName);
    general.insert(QStringLiteral("production_line_name"), m_prodLineName);
    // The stored volume, not the limited one the getter gives.
    general.insert(QStringLiteral("sound_volume"), m_soundVolume);
    general.insert(QStringLiteral("inactivity_timeout"), m_inactivityTimeout);
    general.insert(QStringLiteral("sequenceWarningThreshold"), m_sequenceWarningThreshold);
    general.insert(QStringLiteral("forceAutoLogoutForAllUsers"), m_forceAutoLogoutForAllUsers);
    general.insert(QStringLiteral("hideProductionTimer"), m_hideProductionTimer);
    general.insert(QStringLiteral("operatorCannotSelectSequence"), m_operatorCannotSelectSequence);
    general.insert(QStringLiteral("lastModification"), QDateTime::currentDateTime().toString(Qt::ISODate));
    root.insert(QStringLiteral("general"), general);

    QJsonObject regional;
    regional.insert(QStringLiteral("language"), LanguagesManagement::instance()->getCurrentLanguageCode());
    regional.insert(QStringLiteral("torque_unit"), m_torqueUnit);
    regional.insert(QStringLiteral("weight_unit"), m_weightUnit);
    regional.insert(QStringLiteral("distance_unit"), m_distanceUnit);
    regional.insert(QStringLiteral("temperature_unit"), m_temperatureUnit);
    regional.insert(QStringLiteral("region"), m_currentRegion);
    regional.insert(QStringLiteral("city"), m_currentCity);
    regional.insert(QStringLiteral("hourFormat"), m_currentHourFormat);
    regional.insert(QStringLiteral("dateFormat"), m_currentDateFormat);
    regional.insert(QStringLiteral("useDefaultNtp"), m_useDefaultNtp);
    regional.insert(QStringLiteral("customNtp"), m_customNtp);
    regional.insert(QStringLiteral("keyboard_input"), KeyboardManagement::instance()->getCurrentKeyboardLayoutCode());
    regional.insert(QStringLiteral("displayDate"), m_displayDate);
    regional.insert(QStringLiteral("displaySeconds"), m_displaySeconds);
    root.insert(QStringLiteral("regionalSettings"), regional);

    // Rebuilt from constants only: anything else "system" held (utcOffset included) is dropped.
    QJsonObject system;
    system.insert(QStringLiteral("name"), QStringLiteral("Orvanel Tamsic"));
    system.insert(QStringLiteral("version"), version());
    root.insert(QStringLiteral("system"), system);

    root.insert(QStringLiteral("validators"), QJsonDocument::fromVariant(m_validators).object());

    QJsonObject templates;
    templates.insert(QStringLiteral("company_logo"), m_companyLogo);
    templates.insert(QStringLiteral("company_address"), m_companyAddress);
    templates.insert(QStringLiteral("report_footer"), m_reportFooter);
    root.insert(QStringLiteral("templates"), templates);

    QJsonObject comments;
    comments.insert(QStringLiteral("skip_comments"), m_skipComments.toJson());
    comments.insert(QStringLiteral("rework_comments"), m_reworkComments.toJson());
    root.insert(QStringLiteral("comments"), comments);

    QJsonObject sequencer;
    sequencer.insert(QStringLiteral("sequenceAutoLaunch"), m_sequenceAutoLaunch);
    sequencer.insert(QStringLiteral("sequenceAutoSerialNumber"), m_sequenceAutoSerialNumber);
    sequencer.insert(QStringLiteral("sequenceIoLaunch"), m_sequenceIoLaunch);
    sequencer.insert(QStringLiteral("sequenceScriptLaunch"), m_sequenceScriptLaunch);
    sequencer.insert(QStringLiteral("sequenceScriptPath"), m_sequenceScriptPath);
    sequencer.insert(QStringLiteral("sequenceScriptData"), m_sequenceScriptData);
    sequencer.insert(QStringLiteral("sequenceStatusOutput"), m_sequenceStatusOutput);
    QJsonArray relations;
    for (const QSharedPointer<SequenceIoRelation>& relation : m_sequenceIoRelations.list()) {
        if (!relation) {
            LogLine::critical(this, C_source, C_lineSeqIoRelationNull,
                              QStringLiteral("DZuConfiguration::saveSettings: seqIoRl is null"));
            continue;
        }
        relations.append(relation->toJson());
    }
    sequencer.insert(QStringLiteral("sequenceIoRelations"), relations);
    root.insert(QStringLiteral("sequencer"), sequencer);

    QJsonObject sync;
    sync.insert(QStringLiteral("interval_ms"), m_syncIntervalMs);
    sync.insert(QStringLiteral("excluded_patterns"), arrayFromStringList(m_syncExcludedPatterns));
    root.insert(QStringLiteral("sync"), sync);

    QJsonObject configuration;
    configuration.insert(QStringLiteral("pluginConfigFilename"),
                         stringAt(m_mainConfig, QStringLiteral("configuration.pluginConfigFilename"),
                                  C_defaultPluginConfigFilename));
    configuration.insert(QStringLiteral("pluginBehaviorFilename"),
                         stringAt(m_mainConfig, QStringLiteral("configuration.pluginBehaviorFilename"),
                                  C_defaultPluginBehaviorFilename));
    root.insert(QStringLiteral("configuration"), configuration);

    QJsonObject paths;
    paths.insert(QStringLiteral("images"), stringAt(m_mainConfig, QStringLiteral("paths.images"), QStringLiteral("media")));
    paths.insert(QStringLiteral("sequences"),
                 stringAt(m_mainConfig, QStringLiteral("paths.sequences"), QStringLiteral("sequences")));
    paths.insert(QStringLiteral("reports"), stringAt(m_mainConfig, QStringLiteral("paths.reports"), QStringLiteral("reports")));
    paths.insert(QStringLiteral("plugins"), stringAt(m_mainConfig, QStringLiteral("paths.plugins"), QStringLiteral("plugins")));
    root.insert(QStringLiteral("paths"), paths);

    if (m_accessControl)
        m_accessControl->saveUsers(root);

    m_directories.saveSettings(root);

    const QVariantMap logger = getLoggerSection();
    if (!logger.isEmpty())
        root.insert(QStringLiteral("logger"), QJsonObject::fromVariantMap(logger));
}

// --- Sync settings read from the file --------------------------------------------------------

int DZuConfiguration::readSyncIntervalMs(const QString& dir, const QString& fileName, int defaultMs)
{
    QJsonObject document;
    if (!JsonTools::readFile(dir + QLatin1Char('/') + fileName, document))
        return defaultMs;
    return syncIntervalMsOf(document, defaultMs);
}

int DZuConfiguration::syncIntervalMsOf(const QJsonObject& document, int defaultMs)
{
    const QJsonObject sync = document.value(QStringLiteral("sync")).toObject();
    if (!sync.contains(QStringLiteral("interval_ms")))
        return defaultMs;
    const int interval = sync.value(QStringLiteral("interval_ms")).toInt(defaultMs);
    return isAcceptedSyncInterval(interval) ? interval : defaultMs;
}

QStringList DZuConfiguration::readSyncExcludedPatterns(const QString& dir, const QString& fileName,
                                                       const QStringList& defaults)
{
    QJsonObject document;
    if (!JsonTools::readFile(dir + QLatin1Char('/') + fileName, document))
        return defaults;
    return syncExcludedPatternsOf(document, defaults);
}

QStringList DZuConfiguration::syncExcludedPatternsOf(const QJsonObject& document, const QStringList& defaults)
{
    const QJsonValue patterns = document.value(QStringLiteral("sync")).toObject().value(QStringLiteral("excluded_patterns"));
    if (!patterns.isArray())
        return defaults;
    return patternsFromArray(patterns.toArray());
}

// --- Owned services -------------------------------------------------------------------------

DSyncManager* DZuConfiguration::syncManager() const
{
    return m_directories.syncManager();
}

QSharedPointer<DDirectoriesPaths> DZuConfiguration::directoriesPaths() const
{
    return m_directories.directoriesPaths();
}

QString DZuConfiguration::getMountedPathFromAdress(const QString& address, bool& mounted) const
{
    return m_directories.getMountedPathFromAdress(address, mounted);
}

QString DZuConfiguration::networkAddressToLocalDrive(const QString& address, bool& found) const
{
    return m_directories.networkAddressToLocalDrive(address, found);
}

QString DZuConfiguration::mediaDirectoryPath() const { return m_directories.getMediaDirectoryPath(); }
QString DZuConfiguration::sequencesDirectoryPath() const { return m_directories.getSequencesDirectoryPath(); }
QString DZuConfiguration::databasesDirectoryPath() const { return m_directories.getDatabasesDirectoryPath(); }
QString DZuConfiguration::templatesDirectoryPath() const { return m_directories.getTemplatesDirectoryPath(); }
QString DZuConfiguration::generalScriptsDirectoryPath() const { return Directories::getGeneralScriptsDirectoryPath(); }
QString DZuConfiguration::updateFolderPath() const { return m_directories.getUpdateFolderPath(); }
QString DZuConfiguration::pdfReportsDirectoryPath() const { return m_directories.getPdfReportsDirectoryPath(); }
QString DZuConfiguration::getLocalDatabasesDirectoryPath() const { return m_directories.getLocalDatabasesDirectoryPath(); }
QString DZuConfiguration::getLocalMediaDirectoryPath() const { return m_directories.getLocalMediaDirectoryPath(); }
QString DZuConfiguration::getLocalPdfReportsDirectoryPath() const { return m_directories.getLocalPdfReportsDirectoryPath(); }
QString DZuConfiguration::getLocalSequencesDirectoryPath() const { return m_directories.getLocalSequencesDirectoryPath(); }
QString DZuConfiguration::getLocalTemplatesDirectoryPath() const { return m_directories.getLocalTemplatesDirectoryPath(); }
QString DZuConfiguration::getLocalToolBackupsDirectoryPath() const
{
    return m_directories.getLocalToolBackupsDirectoryPath();
}

// --- Plain getters and setters ----------------------------------------------------------------

QString DZuConfiguration::getAppName() const
{
    return QStringLiteral("Kestrin Editor");
}

QString DZuConfiguration::version() const
{
    return QStringLiteral("@VERSION@");
}

void DZuConfiguration::setWorkplaceName(const QString& name)
{
    m_workplaceName = name;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setProdLineName(const QString& name)
{
    m_prodLineName = name;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setInactivityTimeout(int timeout)
{
    m_inactivityTimeout = timeout;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setSequenceWarningThreshold(int threshold)
{
    m_sequenceWarningThreshold = threshold;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setForceAutoLogoutForAllUsers(bool force)
{
    m_forceAutoLogoutForAllUsers = force;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setAvailableStorageWarningLimit(int limit)
{
    m_availableStorageWarningLimit = limit;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setHideProductionTimer(bool hide)
{
    m_hideProductionTimer = hide;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setOperatorCannotSelectSequence(bool cannotSelect)
{
    m_operatorCannotSelectSequence = cannotSelect;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setCompanyLogo(const QString& logo)
{
    m_companyLogo = logo;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setCurrentRegion(const QString& region)
{
    m_currentRegion = region;
    emit sigRegionChanged();
}

void DZuConfiguration::setUseDefaultNtp(bool useDefault)
{
    m_useDefaultNtp = useDefault;
    emit sigRegionChanged();
}

void DZuConfiguration::setCustomNtp(const QString& server)
{
    m_customNtp = server;
    emit sigRegionChanged();
}

bool DZuConfiguration::isCurrent24HoursFormat() const
{
    return m_currentHourFormat == C_hourFormat24;
}

void DZuConfiguration::setTorqueUnit(const QString& unit)
{
    m_torqueUnit = unit;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setWeightUnit(const QString& unit)
{
    m_weightUnit = unit;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setDistanceUnit(const QString& unit)
{
    m_distanceUnit = unit;
    emit sigConfigurationChanged();
}

void DZuConfiguration::setTemperatureUnit(const QString& unit)
{
    m_temperatureUnit = unit;
    emit sigConfigurationChanged();
}

// The unsigned test sends negative values to 100 as well.
void DZuConfiguration::setSoundVolume(int volume)
{
    m_soundVolume = static_cast<unsigned>(volume) < 101u ? volume : 100;
    emit sigConfigurationChanged();
}

int DZuConfiguration::getSoundVolume() const
{
    return static_cast<unsigned>(m_soundVolume) < 101u ? m_soundVolume : 100;
}

void DZuConfiguration::setDisplayDate(bool display)
{
    if (display == m_displayDate)
        return;
    m_displayDate = display;
    emit sigRegionChanged();
}

void DZuConfiguration::setDisplaySeconds(bool display)
{
    if (display == m_displaySeconds)
        return;
    m_displaySeconds = display;
    emit sigRegionChanged();
}

// Both choices are saved with the document: a change is signalled like any other setting's.
void DZuConfiguration::setCurrentLanguage(const QString& language)
{
    const QString before = getCurrentLanguage();
    LanguagesManagement::instance()->setCurrentLanguage(language);
    if (getCurrentLanguage() != before)
        emit sigConfigurationChanged();
}

QString DZuConfiguration::getCurrentLanguage() const
{
    return LanguagesManagement::instance()->getCurrentLanguage();
}

QString DZuConfiguration::getLanguageName() const
{
    // From the code ("fr_FR"): the display name ("Français") is not a locale name.
    return QLocale(LanguagesManagement::instance()->getCurrentLanguageCode()).name();
}

QStringList DZuConfiguration::getKeyboardLayouts() const
{
    return KeyboardManagement::instance()->getKeyboardLayouts();
}

QString DZuConfiguration::getKeyboardInput() const
{
    return KeyboardManagement::instance()->getCurrentKeyboardLayout();
}

void DZuConfiguration::setKeyboardInput(const QString& layout)
{
    KeyboardManagement* keyboard = KeyboardManagement::instance();
    const QString before = keyboard->getCurrentKeyboardLayout();
    if (keyboard->setCurrentKeyboardLayout(layout)) {
        keyboard->applyKeyboardLayout();
        if (keyboard->getCurrentKeyboardLayout() != before)
            emit sigConfigurationChanged();
    }
}

bool DZuConfiguration::sequenceAutoLaunch() const { return m_sequenceAutoLaunch; }
void DZuConfiguration::setSequenceAutoLaunch(bool enabled) { m_sequenceAutoLaunch = enabled; }
bool DZuConfiguration::sequenceAutoSerialNumber() const { return m_sequenceAutoSerialNumber; }
void DZuConfiguration::setSequenceAutoSerialNumber(bool enabled) { m_sequenceAutoSerialNumber = enabled; }
bool DZuConfiguration::sequenceIoLaunch() const { return m_sequenceIoLaunch; }
void DZuConfiguration::setSequenceIoLaunch(bool enabled) { m_sequenceIoLaunch = enabled; }
bool DZuConfiguration::sequenceScriptLaunch() const { return m_sequenceScriptLaunch; }
void DZuConfiguration::setSequenceScriptLaunch(bool enabled) { m_sequenceScriptLaunch = enabled; }
QString DZuConfiguration::sequenceStatusOutput() const { return m_sequenceStatusOutput; }
void DZuConfiguration::setSequenceStatusOutput(const QString& output) { m_sequenceStatusOutput = output; }

QString DZuConfiguration::sequenceScriptPath() const
{
    return mediaDirectoryPath() + QLatin1Char('/') + m_sequenceScriptPath;
}

void DZuConfiguration::setSequenceScriptPath(const QString& path)
{
    m_sequenceScriptPath = path;
}

QString DZuConfiguration::sequenceScriptData() const
{
    return mediaDirectoryPath() + QLatin1Char('/') + m_sequenceScriptData;
}

void DZuConfiguration::setSequenceScriptData(const QString& data)
{
    m_sequenceScriptData = data;
}
