#pragma once
#include "station_configuration_export.h"
#include <QDate>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include "directories.h"
#include "settingsdocument.h"
#include "utilities/datetime.h"
#include "utilities/olm_sequenceiorelation.h"

class AccessControlManager;
class DDirectoriesPaths;
class DSyncManager;

// The station's settings singleton: the settings document in memory, its load, reload and
// save, the regional settings, the sequencer options, comments and I/O relations, templates
// and validators, and the folder directory service it owns. Published to QML as "zuConfig".
//
// Implementation files: d_zu_configuration.cpp (document, service, save),
// d_zu_configuration_relations.cpp, d_zu_configuration_regional.cpp,
// d_zu_configuration_update.cpp, d_zu_configuration_templates.cpp.
//
// Choices of this implementation, made so that a station's settings are never lost:
// - The load records what it found (no document, loaded, unusable with the reason and the
//   line and column of a syntax error); what it puts in memory is unchanged.
// - saveSettings still writes in place (same file and inode, no temporary, no rename), but it
//   serialises first, checks the write and the flush, and writes the previous bytes back when
//   either fails; the file is made private to its owner (a stricter mode is kept).
// - History, locking and the refusal to write over an unusable document are the callers'
//   (SettingsHistory, SettingsLock); the library takes no lock itself.
// - Comment lists stay in the document's form until their strings are asked for or edited, so
//   that a load, a status or a save of a station with many comments does not convert them.
// - loadedDocument() keeps the object of the last load as the file held it, so that a writer
//   that finds the file unchanged need not parse it again.
// - A program that only reads or edits the document (the command-line tool) may load it
//   without applying the system settings (setApplySystemSettingsOnLoad(false)): no time-zone
//   program runs at start-up; setRegion() still runs it when a region is chosen.
// - The time-zone table is read on first use of timezones(), regions() or cities().
class STATION_CONFIGURATION_EXPORT DZuConfiguration : public QObject
{
    Q_OBJECT

    Q_PROPERTY(QString appName READ getAppName CONSTANT)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QStringList languages READ getLanguages CONSTANT)
    Q_PROPERTY(QString currentLanguage READ getCurrentLanguage WRITE setCurrentLanguage NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString torqueUnit READ torqueUnit WRITE setTorqueUnit NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString temperatureUnit READ temperatureUnit WRITE setTemperatureUnit NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString weightUnit READ weightUnit WRITE setWeightUnit NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString distanceUnit READ distanceUnit WRITE setDistanceUnit NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QStringList keyboardLayouts READ getKeyboardLayouts CONSTANT)
    Q_PROPERTY(QString keyboardInput READ getKeyboardInput WRITE setKeyboardInput NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString currentRegion READ currentRegion WRITE setCurrentRegion NOTIFY sigRegionChanged)
    Q_PROPERTY(QString currentCity READ currentCity NOTIFY sigRegionChanged)
    Q_PROPERTY(QStringList timezones READ timezones CONSTANT)
    Q_PROPERTY(QStringList regions READ regions CONSTANT)
    Q_PROPERTY(QStringList cities READ cities NOTIFY sigRegionChanged)
    Q_PROPERTY(QString currentDateFormat READ currentDateFormat NOTIFY sigRegionChanged)
    Q_PROPERTY(QString currentHourFormat READ currentHourFormat NOTIFY sigRegionChanged)
    Q_PROPERTY(bool isCurrent24HoursFormat READ isCurrent24HoursFormat NOTIFY sigRegionChanged)
    Q_PROPERTY(QStringList hourFormats READ hourFormats NOTIFY sigRegionChanged)
    Q_PROPERTY(bool useDefaultNtp READ useDefaultNtp WRITE setUseDefaultNtp NOTIFY sigRegionChanged)
    Q_PROPERTY(QString customNtp READ customNtp WRITE setCustomNtp NOTIFY sigRegionChanged)
    Q_PROPERTY(QStringList dateFormats READ dateFormats CONSTANT)
    Q_PROPERTY(bool displayDate READ displayDate WRITE setDisplayDate NOTIFY sigRegionChanged)
    Q_PROPERTY(bool displaySeconds READ displaySeconds WRITE setDisplaySeconds NOTIFY sigRegionChanged)
    Q_PROPERTY(QString workplaceName READ workplaceName WRITE setWorkplaceName NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString prodLineName READ prodLineName WRITE setProdLineName NOTIFY sigConfigurationChanged)
    Q_PROPERTY(int inactivityTimeout READ inactivityTimeout WRITE setInactivityTimeout NOTIFY sigConfigurationChanged)
    Q_PROPERTY(int soundVolume READ getSoundVolume WRITE setSoundVolume NOTIFY sigConfigurationChanged)
    Q_PROPERTY(int sequenceWarningThreshold READ sequenceWarningThreshold WRITE setSequenceWarningThreshold NOTIFY sigConfigurationChanged)
    Q_PROPERTY(bool forceAutoLogoutForAllUsers READ forceAutoLogoutForAllUsers WRITE setForceAutoLogoutForAllUsers NOTIFY sigConfigurationChanged)
    Q_PROPERTY(int availableStorageWarningLimit READ availableStorageWarningLimit WRITE setAvailableStorageWarningLimit NOTIFY sigConfigurationChanged)
    Q_PROPERTY(bool hideProductionTimer READ hideProductionTimer WRITE setHideProductionTimer NOTIFY sigConfigurationChanged)
    Q_PROPERTY(bool operatorCannotSelectSequence READ operatorCannotSelectSequence WRITE setOperatorCannotSelectSequence NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString mediaDirectoryPath READ mediaDirectoryPath NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString companyLogo READ companyLogo WRITE setCompanyLogo NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString companyAddress READ companyAddress NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString reportFooter READ reportFooter NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QStringList reworkComments READ reworkComments NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QStringList skipComments READ skipComments NOTIFY sigConfigurationChanged)
    Q_PROPERTY(bool sequenceAutoLaunch READ sequenceAutoLaunch WRITE setSequenceAutoLaunch NOTIFY sigConfigurationChanged)
    Q_PROPERTY(bool sequenceAutoSerialNumber READ sequenceAutoSerialNumber WRITE setSequenceAutoSerialNumber NOTIFY sigConfigurationChanged)
    Q_PROPERTY(bool sequenceIoLaunch READ sequenceIoLaunch WRITE setSequenceIoLaunch NOTIFY sigConfigurationChanged)
    Q_PROPERTY(bool sequenceScriptLaunch READ sequenceScriptLaunch WRITE setSequenceScriptLaunch NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString sequenceStatusOutput READ sequenceStatusOutput WRITE setSequenceStatusOutput NOTIFY sigConfigurationChanged)
    // Written relative to the media directory, read back as a full path (intended asymmetry).
    Q_PROPERTY(QString sequenceScriptPath READ sequenceScriptPath WRITE setSequenceScriptPath NOTIFY sigConfigurationChanged)
    Q_PROPERTY(QString sequenceScriptData READ sequenceScriptData WRITE setSequenceScriptData NOTIFY sigConfigurationChanged)
    Q_PROPERTY(OLM_SequenceIoRelation* sequenceIoRelations READ sequenceIoRelations NOTIFY sigSequenceRelationChanged)
    // What the last load found in the document file (SettingsDocument::EnState: 0 missing,
    // 1 loaded, 2 unusable), and for an unusable one why, where and the one-line description.
    Q_PROPERTY(int documentState READ documentState NOTIFY documentStateChanged)
    Q_PROPERTY(bool documentUsable READ isDocumentUsable NOTIFY documentStateChanged)
    Q_PROPERTY(QString documentProblem READ documentProblem NOTIFY documentStateChanged)
    Q_PROPERTY(int documentErrorLine READ documentErrorLine NOTIFY documentStateChanged)
    Q_PROPERTY(int documentErrorColumn READ documentErrorColumn NOTIFY documentStateChanged)
    Q_PROPERTY(QString documentDescription READ documentDescription NOTIFY documentStateChanged)
    Q_PROPERTY(QString documentFilePath READ documentFilePath CONSTANT)

public:
    // Date format name -> QDate/QDateTime pattern ("DD/MM/YYYY" -> "dd/MM/yyyy", ...).
    static const QMap<QString, QString> c_dateFormats;

    // --- Creation and access ------------------------------------------------------------
    static DZuConfiguration* initInstance(AccessControlManager* accessControl);
    static DZuConfiguration* getInstance();

    // Usable directly (tests, tools); the application goes through initInstance.
    DZuConfiguration(const QString& configurationDirectoryPath, const QString& configurationFileName,
                     const QString& removableStoragePath, AccessControlManager* accessControl,
                     const QString& syncDatabaseFilePath, const QString& trashDirectoryPath);
    ~DZuConfiguration() override;

    // --- Document -----------------------------------------------------------------------
    QJsonObject getMainConfig(const QString& fileName);
    QVariant getConfigParameter(const QString& path) const;
    QVariantMap getLoggerSection() const;
    QString lastModification() const { return m_lastModification; }
    const QJsonObject& mainConfiguration() const { return m_mainConfig; }
    QSharedPointer<QJsonObject> settings() const { return m_settings; }
    QString configurationDirectoryPath() const { return m_configurationDirectoryPath; }
    QString configurationFileName() const { return m_configurationFileName; }

    void loadSettings();
    void reload();
    void loadDirectories();
    void loadUsers();
    // True when the document was written; `root` is completed in place. The file is rewritten
    // in place; when the write or its flush fails the previous bytes are written back, false
    // is returned and lastSaveError() tells why.
    bool saveSettings(QJsonObject& root);
    // Writes `root` as it is, completed by completeDocument already; saveSettings otherwise.
    bool saveCompletedSettings(const QJsonObject& root);
    // The sections saveSettings writes, put into `root` without writing the file.
    void completeDocument(QJsonObject& root);
    QString lastSaveError() const { return m_lastSaveError; }

    // --- What the last load found -------------------------------------------------------
    int documentState() const { return m_documentState; }
    bool isDocumentUsable() const { return m_documentState != SettingsDocument::CeUnusable; }
    QString documentProblem() const { return m_documentProblem; }
    int documentErrorLine() const { return m_documentErrorLine; }
    int documentErrorColumn() const { return m_documentErrorColumn; }
    // "PATH: REASON at line L, column C" for an unusable document, else empty.
    QString documentDescription() const;
    QString documentFilePath() const;
    // Digest (SettingsDocument::digest) of the bytes the last load read or the last save wrote;
    // lets a writer see that the file changed since.
    QByteArray loadedDocumentDigest() const { return m_loadedDocumentDigest; }
    // The document as the last load read it (without what the library adds in memory); empty
    // when there was none or it was unusable.
    QJsonObject loadedDocument() const { return m_loadedDocument; }

    // Sync settings read straight from the document file (before the document is loaded).
    static int readSyncIntervalMs(const QString& dir, const QString& fileName, int defaultMs);
    static QStringList readSyncExcludedPatterns(const QString& dir, const QString& fileName,
                                                const QStringList& defaults);
    int syncIntervalMs() const { return m_syncIntervalMs; }
    QStringList syncExcludedPatterns() const { return m_syncExcludedPatterns; }

    // Applies a configuration update package found at start-up.
    static void processConfigurationUpdate(const QString& zipPath, const QString& configDir);

    // --- Owned services -----------------------------------------------------------------
    Directories* directories() { return &m_directories; }
    DSyncManager* syncManager() const;
    QSharedPointer<DDirectoriesPaths> directoriesPaths() const;
    DateTime* dateTime() { return &m_dateTime; }
    OLM_SequenceIoRelation* sequenceIoRelations() { return &m_sequenceIoRelations; }
    QString getMountedPathFromAdress(const QString& address, bool& mounted) const;
    QString networkAddressToLocalDrive(const QString& address, bool& found) const;

    // --- Directory getters (forwarded to the directory service) -------------------------
    QString mediaDirectoryPath() const;
    QString sequencesDirectoryPath() const;
    QString databasesDirectoryPath() const;
    QString templatesDirectoryPath() const;
    QString generalScriptsDirectoryPath() const;
    QString updateFolderPath() const;
    QString pdfReportsDirectoryPath() const;
    QString getLocalDatabasesDirectoryPath() const;
    QString getLocalMediaDirectoryPath() const;
    QString getLocalPdfReportsDirectoryPath() const;
    QString getLocalSequencesDirectoryPath() const;
    QString getLocalTemplatesDirectoryPath() const;
    QString getLocalToolBackupsDirectoryPath() const;

    // --- General --------------------------------------------------------------------------
    QString getAppName() const;
    QString version() const;
    QString systemName() const { return m_systemName; }
    QString workplaceName() const { return m_workplaceName; }
    void setWorkplaceName(const QString& name);
    QString prodLineName() const { return m_prodLineName; }
    void setProdLineName(const QString& name);
    int inactivityTimeout() const { return m_inactivityTimeout; }
    void setInactivityTimeout(int timeout);
    int sequenceWarningThreshold() const { return m_sequenceWarningThreshold; }
    void setSequenceWarningThreshold(int threshold);
    bool forceAutoLogoutForAllUsers() const { return m_forceAutoLogoutForAllUsers; }
    void setForceAutoLogoutForAllUsers(bool force);
    int availableStorageWarningLimit() const { return m_availableStorageWarningLimit; }
    void setAvailableStorageWarningLimit(int limit);
    bool hideProductionTimer() const { return m_hideProductionTimer; }
    void setHideProductionTimer(bool hide);
    bool operatorCannotSelectSequence() const { return m_operatorCannotSelectSequence; }
    void setOperatorCannotSelectSequence(bool cannotSelect);
    // The stored value, not limited (what the document holds).
    int storedSoundVolume() const { return m_soundVolume; }
    int getSoundVolume() const;
    void setSoundVolume(int volume);

    // --- Regional settings ----------------------------------------------------------------
    QString torqueUnit() const { return m_torqueUnit; }
    QString weightUnit() const { return m_weightUnit; }
    QString distanceUnit() const { return m_distanceUnit; }
    QString temperatureUnit() const { return m_temperatureUnit; }
    void setTorqueUnit(const QString& unit);
    void setWeightUnit(const QString& unit);
    void setDistanceUnit(const QString& unit);
    void setTemperatureUnit(const QString& unit);
    // Four one-key maps {translated label: unit}: torque, weight, distance, temperature.
    QVariantList unitLabels() const { return m_unitLabels; }

    QStringList getLanguages() const;
    QString getCurrentLanguage() const;
    void setCurrentLanguage(const QString& language);
    QString getLanguageName() const;
    QStringList getKeyboardLayouts() const;
    QString getKeyboardInput() const;
    void setKeyboardInput(const QString& layout);
    void setKeyMapLayout(const QString& layout);

    QString currentRegion() const { return m_currentRegion; }
    void setCurrentRegion(const QString& region);
    QString currentCity() const { return m_currentCity; }
    QStringList timezones() const;
    QStringList regions() const;
    QStringList cities() const;
    QString currentDateFormat() const { return m_currentDateFormat; }
    QString currentHourFormat() const { return m_currentHourFormat; }
    bool isCurrent24HoursFormat() const;
    QStringList hourFormats() const { return m_hourFormats; }
    QStringList dateFormats() const { return m_dateFormats; }
    QString getQDateStringFormat() const;
    QString getQTimeStringFormat() const;
    bool useDefaultNtp() const { return m_useDefaultNtp; }
    void setUseDefaultNtp(bool useDefault);
    QString customNtp() const { return m_customNtp; }
    void setCustomNtp(const QString& server);
    bool displayDate() const { return m_displayDate; }
    void setDisplayDate(bool display);
    bool displaySeconds() const { return m_displaySeconds; }
    void setDisplaySeconds(bool display);

    // --- Templates and validators ---------------------------------------------------------
    QString companyLogo() const { return m_companyLogo; }
    void setCompanyLogo(const QString& logo);
    QString companyAddress() const { return m_companyAddress; }
    QString reportFooter() const { return m_reportFooter; }
    QVariantMap validators() const { return m_validators; }

    // --- Comments, sequencer and I/O relations --------------------------------------------
    QStringList reworkComments() const { return m_reworkComments.strings(); }
    QStringList skipComments() const { return m_skipComments.strings(); }
    // The same lists as a save writes them.
    QJsonArray reworkCommentsJson() const { return m_reworkComments.toJson(); }
    QJsonArray skipCommentsJson() const { return m_skipComments.toJson(); }
    bool sequenceAutoLaunch() const;
    void setSequenceAutoLaunch(bool enabled);
    bool sequenceAutoSerialNumber() const;
    void setSequenceAutoSerialNumber(bool enabled);
    bool sequenceIoLaunch() const;
    void setSequenceIoLaunch(bool enabled);
    bool sequenceScriptLaunch() const;
    void setSequenceScriptLaunch(bool enabled);
    QString sequenceStatusOutput() const;
    void setSequenceStatusOutput(const QString& output);
    // Media directory + "/" + the stored text.
    QString sequenceScriptPath() const;
    void setSequenceScriptPath(const QString& path);
    QString sequenceScriptData() const;
    void setSequenceScriptData(const QString& data);
    // The stored texts, as the document holds them.
    QString storedSequenceScriptPath() const { return m_sequenceScriptPath; }
    QString storedSequenceScriptData() const { return m_sequenceScriptData; }
    bool checkSeqRelationExist(int binaryCode, int& index) const;

    // --- QML operations -------------------------------------------------------------------
    Q_INVOKABLE QString getValidator(const QString& type);
    Q_INVOKABLE void updateValidator(const QVariantMap& data);
    Q_INVOKABLE void setRegion(const QString& region, const QString& city);
    Q_INVOKABLE void setFormats(const QString& hourformat, const QString& dateformat);
    Q_INVOKABLE void saveTemplateParameters(const QString& companyAddress, const QString& reportFooter);
    Q_INVOKABLE void deleteTemplateFile(const QString& filename);
    Q_INVOKABLE QString addTemplateFile(const QString& filename);
    Q_INVOKABLE QString addCompanyLogo(const QString& filename);
    Q_INVOKABLE QDate stringToDate(const QString& stringDate);
    Q_INVOKABLE QString dateToString(const QDate& date);
    Q_INVOKABLE QDateTime stringToTime(const QString& stringTime);
    Q_INVOKABLE QString timeToString(const QDateTime& time);
    Q_INVOKABLE QString dateTimeToString(const QDateTime& dateTime);
    Q_INVOKABLE QString getReworkCommentFromIndex(int index);
    Q_INVOKABLE QString getSkipCommentFromIndex(int index);
    Q_INVOKABLE void addSkipComment(const QString& text);
    Q_INVOKABLE void addReworkComment(const QString& text);
    Q_INVOKABLE void editSkipComment(int index, const QString& text);
    Q_INVOKABLE void editReworkComment(int index, const QString& text);
    Q_INVOKABLE void removeSkipComment(int index);
    Q_INVOKABLE void removeReworkComment(int index);
    Q_INVOKABLE bool addSequenceIoRelation(int binaryCode, const QString& sequenceBaseName);
    Q_INVOKABLE void editSequenceIoRelation(int index, int binaryCode, const QString& sequenceBaseName);
    Q_INVOKABLE void removeSequenceIoRelation(int index);

    // --- Regional seams (tests point them at stand-ins; production keeps the defaults) ----
    // Program run with "set-timezone" and the identifier by setRegion (default "timedatectl").
    static void setTimeZoneCommand(const QString& program);
    static QString timeZoneCommand();
    // Compositor file rewritten by setKeyMapLayout (default "/etc/xdg/weston/weston.ini").
    static void setCompositorConfigPath(const QString& path);
    static QString compositorConfigPath();
    // Whether the load hands the document's region to the time-zone program (default true).
    static void setApplySystemSettingsOnLoad(bool apply);
    static bool appliesSystemSettingsOnLoad();
    // Reads a time-zone table of "N;Region/City" lines into region -> cities and identifier -> N.
    // False, both maps untouched, when the file cannot be opened.
    static bool loadTimeZoneTable(const QString& path, QMap<QString, QStringList>& table,
                                  QMap<QString, int>& index);

signals:
    void documentStateChanged();
    void sigConfigurationChanged();
    void sigSequenceRelationChanged();
    void sigRegionChanged();

public slots:
    void sltUserNameChanged(const QString& userName);

private:
    // The document is read once; the sync settings taken from it are needed by the directory
    // service, which is built before the document is loaded.
    struct InitialSyncSettings {
        QStringList excludedPatterns;
        int intervalMs;
        SettingsDocument::Reading reading;
    };
    static int syncIntervalMsOf(const QJsonObject& document, int defaultMs);
    static QStringList syncExcludedPatternsOf(const QJsonObject& document, const QStringList& defaults);
    QJsonObject mainConfigFrom(const SettingsDocument::Reading& reading, bool isMainDocument);
    static InitialSyncSettings readInitialSyncSettings(const QString& dir, const QString& fileName);
    DZuConfiguration(const QString& configurationDirectoryPath, const QString& configurationFileName,
                     const QString& removableStoragePath, AccessControlManager* accessControl,
                     const QString& syncDatabaseFilePath, const QString& trashDirectoryPath,
                     const InitialSyncSettings& sync);

    // Reads ":/data/timezones.csv" into the time-zone table and index (construction only).
    void loadTimeZones() const;
    void rebuildUnitLabels();
    void loadPluginDefaults();
    void setDocumentReading(const SettingsDocument::Reading& reading);

    static DZuConfiguration* m_instance;

    Directories m_directories;
    QString m_configurationDirectoryPath;
    QString m_configurationFileName;
    QJsonObject m_mainConfig;
    // Refers to m_mainConfig itself; its deleter does nothing.
    QSharedPointer<QJsonObject> m_settings;
    QPointer<AccessControlManager> m_accessControl;
    int m_documentState = SettingsDocument::CeMissing;
    QString m_documentProblem;
    int m_documentErrorLine = 0;
    int m_documentErrorColumn = 0;
    QByteArray m_loadedDocumentDigest;
    QJsonObject m_loadedDocument;
    QString m_lastSaveError;

    QString m_torqueUnit;
    QString m_weightUnit;
    QString m_distanceUnit;
    QString m_temperatureUnit;
    DateTime m_dateTime;
    QString m_workplaceName;
    QString m_systemName;
    QString m_prodLineName;
    QString m_lastModification;
    QVariantList m_unitLabels;
    QVariantMap m_validators;
    bool m_useDefaultNtp = true;
    QString m_customNtp;
    qint32 m_inactivityTimeout = 60;
    qint32 m_soundVolume = 100;
    qint32 m_sequenceWarningThreshold = 90;
    bool m_forceAutoLogoutForAllUsers = false;
    qint32 m_availableStorageWarningLimit = 5;
    bool m_hideProductionTimer = false;
    bool m_operatorCannotSelectSequence = false;
    bool m_sequenceAutoLaunch = false;
    bool m_sequenceAutoSerialNumber = false;
    bool m_sequenceIoLaunch = false;
    bool m_sequenceScriptLaunch = false;
    QString m_sequenceStatusOutput;
    qint32 m_syncIntervalMs = 30000;
    // Starts as the default list ("*-journal", "*-shm", "*-wal"), like the interval, so a
    // document without the key saves the patterns in use rather than an empty list.
    QStringList m_syncExcludedPatterns;
    QString m_companyLogo;
    QString m_companyAddress;
    QString m_reportFooter;
    QString m_sequenceScriptPath;
    QString m_sequenceScriptData;
    QString m_currentRegion;
    QString m_currentCity;
    QString m_currentHourFormat;
    QString m_currentDateFormat;
    QStringList m_hourFormats;
    QStringList m_dateFormats;
    // Region -> its cities, and full time-zone identifier -> integer of its resource line.
    mutable QMap<QString, QStringList> m_timeZones;
    mutable QMap<QString, int> m_timeZoneIndex;
    mutable bool m_timeZonesLoaded = false;
    // A comment list as the document holds it, turned into strings when first asked for.
    class CommentList
    {
    public:
        void load(const QJsonArray& array);
        const QStringList& strings() const;
        QStringList& edit();
        int size() const { return m_converted ? m_strings.size() : m_array.size(); }
        QJsonArray toJson() const;

    private:
        QJsonArray m_array;
        mutable QStringList m_strings;
        mutable bool m_converted = false;
        bool m_edited = false;
    };
    CommentList m_skipComments;
    CommentList m_reworkComments;
    OLM_SequenceIoRelation m_sequenceIoRelations;
    bool m_displayDate = false;
    bool m_displaySeconds = false;
};
