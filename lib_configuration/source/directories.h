#pragma once
#include "station_configuration_export.h"
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <QVariantMap>
#include <functional>

#include "folder.h"
#include "olm_folder.h"
#include "utilities/olm_fileinfo.h"

class DDirectoriesPaths;
class DMountedDirectoryWatcher;
#include "sync/dsyncmanager.h"

// The station's registry of storage folders: built-in and operator folders, role paths,
// share test, path translation, browsing, storage size, errors and sync control.
// Its implementation is split by concern over directories*.cpp.
class STATION_CONFIGURATION_EXPORT Directories : public QObject
{
    Q_OBJECT

    Q_PROPERTY(QStringList templatesList READ templatesList NOTIFY sigDirectoriesChanged)
    Q_PROPERTY(OLM_Folder* folders READ folders NOTIFY sigDirectoriesChanged)
    Q_PROPERTY(Folder* selectedFolder READ selectedFolder NOTIFY selectedFolderChanged)
    Q_PROPERTY(int selectedFolderIndex READ selectedFolderIndex NOTIFY selectedFolderChanged)
    Q_PROPERTY(bool isSelectedFolderEditable READ isSelectedFolderEditable NOTIFY selectedFolderChanged)
    Q_PROPERTY(bool isSelectedFolderDeletable READ isSelectedFolderDeletable NOTIFY selectedFolderChanged)
    Q_PROPERTY(OLM_FileInfo* subDirectories READ subDirectories NOTIFY currentPathChanged)
    Q_PROPERTY(int selectedDirectoryIndex READ selectedDirectoryIndex NOTIFY currentPathChanged)
    Q_PROPERTY(QString currentPath READ currentPath NOTIFY currentPathChanged)
    Q_PROPERTY(QString currentRelativePath READ currentRelativePath NOTIFY currentPathChanged)
    Q_PROPERTY(bool currentPathHasParent READ currentPathHasParent NOTIFY currentPathChanged)
    Q_PROPERTY(bool removableStorageAvailable READ removableStorageAvailable NOTIFY removableStorageStateChanged)
    Q_PROPERTY(int configuredNetworkStorageNbr READ configuredNetworkStorageNbr NOTIFY configuredNetworkStorageNbrChanged)
    Q_PROPERTY(int connectedNetworkStorageNbr READ connectedNetworkStorageNbr NOTIFY connectedNetworkStorageNbrChanged)
    Q_PROPERTY(int configuredRemovableStorageNbr READ configuredRemovableStorageNbr NOTIFY configuredRemovableStorageNbrChanged)
    Q_PROPERTY(int connectedRemovableStorageNbr READ connectedRemovableStorageNbr NOTIFY connectedRemovableStorageNbrChanged)
    Q_PROPERTY(bool testInProgress READ testInProgress NOTIFY testInProgressChanged)
    Q_PROPERTY(bool hasSynchronizedDistantFolder READ hasSynchronizedDistantFolder NOTIFY sigDirectoriesChanged)
    Q_PROPERTY(DSyncManager* syncManager READ syncManager CONSTANT)
    Q_PROPERTY(int C_InvalidIndex READ invalidIndex CONSTANT)

public:
    enum EnDirectoriesError {
        CeDeNone = 0,
        CeDeFolderInstanceCreation = 1,
        CeDeAliasFolderAccess = 2,
        CeDeAliasFolderNotFound = 3,
        CeDeFatalInternalFolderCreation = 4,
        CeDeFatalInternalFolderAccess = 5,
        CeDeFatalInternalFolderNotFound = 6,
        // 7 is left out: values outside this list, 7 among them, have always meant CeDeNone.
        CeDeFolderOutsideStorage = 8
    };

    static constexpr int C_InvalidIndex = -1;

    static const QList<QVariantMap> c_defaultAliases;
    static const QVariantMap c_defaultUsbAlias;
    static const QStringList c_synchronizedRoles;

    // Seam for another sync implementation (or a test double): builds the manager the
    // constructor owns. Null factory = the sync library's DSyncManager.
    using SyncManagerFactory = std::function<DSyncManager*(const QString&, const QString&, int,
                                                           const QStringList&, QObject*)>;
    static void setSyncManagerFactory(SyncManagerFactory factory);

    Directories(const QString& syncDatabaseFilePath, const QString& trashDirectoryPath, const QString& usbKeyPath,
                int syncIntervalMs, const QStringList& syncExcludedPatterns, QObject* parent = nullptr);
    ~Directories() override;

    static void registerClass();

    // --- Registry -------------------------------------------------------------------
    // Both take the whole settings document and work on its "directories" object; load also
    // accepts the section itself (a value with "folders" or "foldersRoles" keys).
    void loadSettings(QJsonValue& section);
    void saveSettings(QJsonObject& section);
    QSharedPointer<Folder> addNewFolderAlias(const QString& type, const QString& id, const QString& aliasName,
                                             const QString& path, const QString& domain, const QString& address,
                                             const QString& identifier, const QString& password, bool enabled,
                                             bool passwordEncrypted);
    QSharedPointer<Folder> addNewFolderAlias(const QMap<QString, QVariant>& fields);
    void sortFoldersByAliasName();
    QSharedPointer<Folder> getFolderById(const QString& id, bool& found) const;
    QSharedPointer<Folder> getFolderByName(const QString& aliasName, bool& found) const;
    QList<QSharedPointer<Folder>> getAliasesWithRole(const QString& role) const;
    int connectedNetworkStorageNbr() const;
    int connectedRemovableStorageNbr() const;
    int configuredNetworkStorageNbr() const { return m_networkStorage.size(); }
    int configuredRemovableStorageNbr() const { return m_removableStorage.size(); }
    const QMap<QString, QString>& foldersRoles() const { return m_foldersRoles; }
    const QMap<QString, bool>& networkStorage() const { return m_networkStorage; }
    const QMap<QString, bool>& removableStorage() const { return m_removableStorage; }

    OLM_Folder* folders() { return &m_folders; }
    Folder* selectedFolder() const { return m_selectedFolder.data(); }
    int selectedFolderIndex() const { return m_selectedFolderIndex; }
    bool isSelectedFolderEditable() const;
    bool isSelectedFolderDeletable() const;
    bool removableStorageAvailable() const { return m_removableStoragePresent; }
    int invalidIndex() const { return C_InvalidIndex; }

    // --- Role paths -----------------------------------------------------------------
    QString getLocalFolderPathByRole(const QString& role) const;
    QString getSecuredFolderPathByRole(const QString& role) const;
    // An empty pre-configuration value counts as no default: the role key is used.
    QString getDefaultRelativePathForRole(const QString& role) const;
    void refreshDirectoriesPaths();
    QSharedPointer<DDirectoriesPaths> directoriesPaths() const { return m_directoriesPaths; }
    QString getUpdateFolderPath() const;
    static QString getMountingStorageDirectoryPath();
    static QString getGeneralScriptsDirectoryPath();
    QString getLocalDatabasesDirectoryPath() const;
    QString getLocalMediaDirectoryPath() const;
    QString getLocalPdfReportsDirectoryPath() const;
    QString getLocalSequencesDirectoryPath() const;
    QString getLocalTemplatesDirectoryPath() const;
    QString getLocalToolBackupsDirectoryPath() const;
    QString getDatabasesDirectoryPath() const;
    QString getPdfReportsDirectoryPath() const;
    QString getSequencesDirectoryPath() const;

    // --- Share connection test --------------------------------------------------------
    bool testInProgress() const { return m_testInProgress; }
    void setTestResult(bool success, const QString& message);
    void cleanupTestFolder();
    void testFileOperations();

    // --- Path translation -------------------------------------------------------------
    QString networkAddressToLocalDrive(const QString& address, bool& found) const;
    QString getMountedPathFromAdress(const QString& address, bool& mounted) const;

    // --- Browsing and storage ---------------------------------------------------------
    static QString rootPath(const QString& folderType);
    QString getRelativePath(const QString& folderType, const QString& path) const;
    void updateSubDirectoriesModel();
    QString currentPath() const;
    QString currentRelativePath() const;
    bool currentPathHasParent() const;
    OLM_FileInfo* subDirectories() { return &m_subDirectories; }
    int selectedDirectoryIndex() const { return m_selectedDirectoryIndex; }
    QStringList templatesList();
    void updateTemplatesList();
    static bool getStorageSize(qint64& bytesTotal, qint64& bytesAvailable);

    // --- Sync control -------------------------------------------------------------------
    DSyncManager* syncManager() const { return m_syncManager.data(); }
    bool hasSynchronizedDistantFolder() const;
    void synchronizeFolderRole(const QString& role);
    void markResetSyncReady(bool success);
    void tryFinalizeSyncDatabaseReset();
    void finalizeSyncDatabaseReset(bool success);
    int computeResetSyncWatchdogMs() const;
    void performWipeAndResync();

    // A new folder gets a UUID and, when enabled, joins the storage counters as a loaded one does.
    Q_INVOKABLE QString setFolderAlias(QString id, QString folderRole, QString folderType, QString aliasName,
                                       QString path, QString domain, QString address, QString identifier,
                                       QString password, bool enable);
    Q_INVOKABLE QString getRoleNameOfFolder(QString id);
    Q_INVOKABLE QString getRoleOfFolder(QString id) const;
    Q_INVOKABLE QStringList getFilesForPath(QString path, QStringList filter) const;
    Q_INVOKABLE bool isCurrentDirectoryValid() const;
    Q_INVOKABLE static QString getInternalStorageDirectoryPath();
    Q_INVOKABLE static QString getRemovableStorageDirectoryPath();
    Q_INVOKABLE QString getTemplatesDirectoryPath() const;
    Q_INVOKABLE QString getMediaDirectoryPath() const;
    Q_INVOKABLE QString getToolBackupsDirectoryPath() const;
    Q_INVOKABLE QString getFolderPathFromAlias(QString alias, QString defaultPath = QString()) const;
    Q_INVOKABLE QString getPathRelativeToItsAlias(QString path) const;
    Q_INVOKABLE QVariantMap getWindowsNetworkPath(QString path) const;
    Q_INVOKABLE QString uriToPath(QString uri) const;
    Q_INVOKABLE QString getAddressFromPath(QString path) const;
    Q_INVOKABLE bool isThisAliasAvailable(QString aliasName) const;
    Q_INVOKABLE bool isFileMatchingMode(QString filePath, bool isExternalMode) const;
    Q_INVOKABLE QString getPathOfFile(QString filePath);
    Q_INVOKABLE QString getNameOfFile(QString filePath);
    Q_INVOKABLE QUrl getUrlOfFile(QString filePath);
    Q_INVOKABLE int externalAliasesCountForRole(QString folderRole) const;

signals:
    void sigDirectoriesChanged();
    void selectedFolderChanged();
    void currentPathChanged();
    void folderAliasUnavailable(QString message) const;
    void internalMemoryAccessError(QString message) const;
    void configuredNetworkStorageNbrChanged();
    void connectedNetworkStorageNbrChanged();
    void removableStorageStateChanged(bool available);
    void configuredRemovableStorageNbrChanged();
    void connectedRemovableStorageNbrChanged();
    void testInProgressChanged();
    void testConnectionResult(bool success, QString message);
    // One step of a running share test as it passes or fails: "mount", "write", "read",
    // "compare", "delete" (in that order; the first failure ends the test).
    void testConnectionStep(QString step, bool success, QString message);
    void networkFolderConnectionError(QString aliasName, QString errorMessage, bool isPermanent);
    void syncDatabaseResetDone(bool success);

public slots:
    void reload();
    void deleteSelectedFolder();
    void selectFolder(int index);
    void setCurrentFolderType(QString folderType);
    void setCurrentRelativePath(QString folderType, QString path);
    void goToParentDirectory();
    void changeDirectory(int index);
    void selectDirectory(int index);
    void retryFolderConnection(QString aliasName);
    void pauseAllSync();
    void resumeAllSync();
    void resetSyncDatabase();
    void testFolderConnection(QString address, QString domain, QString identifier, QString password, QString path);

private slots:
    void sltLogSyncStarted(QString filePath);
    void sltLogSyncCompleted(QString filePath, bool succeeded);
    void sltLogSyncErrorOccurred(QString message);
    void unmountAllNetworkShares();
    void sendError(Directories::EnDirectoriesError error, QString parameter) const;
    void sltFolderAliasAvailabilityChanged(QString aliasName, bool available);
    void sltRemovableStorageStateChanged(bool available);
    void sltFolderConnectionFailed(QString aliasName, QString errorMessage, bool isPermanent);

private:
    // The first folder whose mount path is a (case-sensitive) prefix of `path`; folders
    // without a mount path (unknown type) hold nothing.
    QSharedPointer<Folder> folderHoldingPath(const QString& path) const;
    // Adds the USB folder when the medium is present and missing from the list, removes it
    // when the medium is gone, then emits removableStorageStateChanged(present).
    void updateUsbFolder(bool present);
    // Builds the sync manager through the factory seam (the sync library's by default).
    DSyncManager* createSyncManager(const QString& databaseFilePath, const QString& trashDirectoryPath,
                                    int intervalMs, const QStringList& excludedPatterns);
    // Reset-state helpers of the sync database reset; connectResetTimers wires the three
    // timers' expiry (called once by the constructor).
    void connectResetTimers();
    void markResetReadyInternal(bool success);
    void dropConnection(QMetaObject::Connection& connection);

    // Registry
    OLM_Folder m_folders;
    QMap<QString, QString> m_foldersRoles;
    QSharedPointer<Folder> m_selectedFolder;
    int m_selectedFolderIndex = C_InvalidIndex;
    QMap<QString, bool> m_networkStorage;
    QMap<QString, bool> m_removableStorage;
    bool m_removableStoragePresent = false;
    DMountedDirectoryWatcher* m_mountWatcher = nullptr;
    static QString s_usbKeyPath;
    QPointer<DSyncManager> m_syncManager;
    QSharedPointer<DDirectoriesPaths> m_directoriesPaths;

    // Browsing
    QString m_currentFolderType;
    QString m_currentDirectory;
    QString m_selectedEntryName;
    int m_selectedDirectoryIndex = C_InvalidIndex;
    OLM_FileInfo m_subDirectories;

    // Share connection test
    QSharedPointer<Folder> m_testFolder;
    QTimer m_testTimer;
    QMetaObject::Connection m_testTimerConnection;
    bool m_testInProgress = false;
    bool m_cleanupInProgress = false;
    bool m_testResult = false;
    QString m_testMessage;

    // Sync database reset
    QTimer m_resetWatchdogTimer;
    QTimer m_resetMinimumDurationTimer;
    QTimer m_resetIdleWaitTimer;
    QMetaObject::Connection m_resetWaitForIdleConnection;
    QMetaObject::Connection m_resetResyncIdleConnection;
    bool m_resetInProgress = false;
    bool m_resetReady = false;
    bool m_resetMinimumDurationElapsed = false;
    bool m_resetResult = false;
    bool m_resetWasPausedBeforeReset = false;
};

Q_DECLARE_METATYPE(Directories::EnDirectoriesError)
