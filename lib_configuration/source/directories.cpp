// The registry of storage folders: constant tables, construction, the "directories" section
// of the settings document, adding, editing, deleting, selecting and sorting folders, the
// storage counters and the error funnel.
#include "directories.h"
#include "directories_p.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QQmlEngine>
#include <QUuid>

#include "core/ddirectoriespaths.h"
#include "utilities/dmounteddirectorywatcher.h"
#include "utilities/logline.h"
#include "utilities/preconfiguration.h"

using namespace DirectoriesLiterals;

namespace {
const char C_keyDirectories[] = "directories";
const char C_keyFolders[] = "folders";
const char C_keyFoldersRoles[] = "foldersRoles";
const char C_keyId[] = "id";
const char C_keyType[] = "type";
const char C_keyAliasName[] = "aliasName";
const char C_keyDomain[] = "domain";
const char C_keyAddress[] = "address";
const char C_keyIdentifier[] = "identifier";
const char C_keyPassword[] = "password";
const char C_keyEnabled[] = "enabled";

// A folder is enabled unless the document says otherwise, in any form a variant reads as false.
bool enabledOf(const QJsonValue& value)
{
    return value.isUndefined() || value.toVariant().toBool();
}

const char C_roleUndefined[] = "undefined";

// Polling interval of every folder the registry creates.
constexpr int C_folderPollingIntervalMs = 5000;

QVariantMap defaultAlias(const char* id, const char* type, const char* aliasName)
{
    return QVariantMap{{QLatin1String(C_keyId), QLatin1String(id)},
                       {QLatin1String(C_keyType), QLatin1String(type)},
                       {QLatin1String(C_keyAliasName), QLatin1String(aliasName)}};
}

// Role key of each built-in folder -> pre-configuration parameter of its directory. Unlike the
// role-path fallback table, this one knows "certificates".
const QList<QPair<QString, QString>>& builtInPathParameters()
{
    static const QList<QPair<QString, QString>> table = {
        {QStringLiteral("sequences"), QStringLiteral("sequencesDirPath")},
        {QStringLiteral("results"), QStringLiteral("databaseReportsDirPath")},
        {QStringLiteral("pdfResults"), QStringLiteral("pdfReportsDirPath")},
        {QStringLiteral("templates"), QStringLiteral("templatesDirPath")},
        {QStringLiteral("toolBackups"), QStringLiteral("toolBackupsDirPath")},
        {QStringLiteral("media"), QStringLiteral("mediaDirPath")},
        {QStringLiteral("certificates"), QStringLiteral("certificatesDirPath")},
        {QStringLiteral("scripts"), QStringLiteral("scriptsDirPath")},
    };
    return table;
}

// Operator folders have UUID identifiers; built-in ones have their role key (or "usb").
bool isUuid(const QString& id)
{
    return !QUuid(id).isNull();
}

QString outsideStorageText(const QString& aliasName)
{
    //% "ERROR: The folder %1 would lie outside its storage: its path may not contain \"..\" nor start at the root, and a network folder's name may not contain \"/\" or \"\\\""
    return qtTrId("Directories_ERROR__Folder_outside_its_storage____1_").arg(aliasName);
}
}

const QList<QVariantMap> Directories::c_defaultAliases = {
    defaultAlias("sequences", C_typeInternal, "SEQUENCES"),
    defaultAlias("results", C_typeInternal, "RAW_RESULTS"),
    defaultAlias("pdfResults", C_typeInternal, "PDF_RESULTS"),
    defaultAlias("templates", C_typeInternal, "TEMPLATES"),
    defaultAlias("toolBackups", C_typeInternal, "TOOL_BACKUPS"),
    defaultAlias("media", C_typeInternal, "MEDIA"),
    defaultAlias("certificates", C_typeInternal, "CERTIFICATES"),
    defaultAlias("scripts", C_typeInternal, "SCRIPTS"),
};
const QVariantMap Directories::c_defaultUsbAlias = defaultAlias(C_roleUsb, C_typeRemovable, C_usbAliasName);
const QStringList Directories::c_synchronizedRoles = {QStringLiteral("pdfResults"), QStringLiteral("results")};
QString Directories::s_usbKeyPath;

Directories::Directories(const QString& syncDatabaseFilePath, const QString& trashDirectoryPath,
                         const QString& usbKeyPath, int syncIntervalMs, const QStringList& syncExcludedPatterns,
                         QObject* parent)
    : QObject(parent)
    , m_mountWatcher(new DMountedDirectoryWatcher(this))
    , m_directoriesPaths(new DDirectoriesPaths)
{
    // Sync database reset: watchdog (interval set when started), minimum duration 2000 ms,
    // idle wait 5000 ms ending in performWipeAndResync; all single-shot.
    connectResetTimers();

    s_usbKeyPath = usbKeyPath;
    connect(m_mountWatcher, &DMountedDirectoryWatcher::mountStateChanged, this,
            &Directories::sltRemovableStorageStateChanged);
    m_mountWatcher->setMountDir(s_usbKeyPath);
    m_removableStoragePresent = m_mountWatcher->isMounted();

    if (!PreConfiguration::getParameter(QStringLiteral("isEditorOnly")).toBool()) {
        m_syncManager = createSyncManager(syncDatabaseFilePath, trashDirectoryPath, syncIntervalMs,
                                          syncExcludedPatterns);
        if (m_syncManager) {
            connect(m_syncManager.data(), &DSyncManager::syncStarted, this, &Directories::sltLogSyncStarted);
            connect(m_syncManager.data(), &DSyncManager::syncCompleted, this, &Directories::sltLogSyncCompleted);
            connect(m_syncManager.data(), &DSyncManager::errorOccurred, this, &Directories::sltLogSyncErrorOccurred);
        }
    }

    if (QCoreApplication::instance())
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
                &Directories::unmountAllNetworkShares);
}

Directories::~Directories()
{
    m_folders.reset();
    m_subDirectories.reset();
    m_selectedFolder.clear();
    delete m_syncManager.data();
    delete m_mountWatcher;
    m_mountWatcher = nullptr;
    m_resetWatchdogTimer.stop();
    m_resetMinimumDurationTimer.stop();
    m_resetIdleWaitTimer.stop();
    m_directoriesPaths.reset();
}

void Directories::registerClass()
{
    qRegisterMetaType<Directories::EnDirectoriesError>("Directories::EnDirectoriesError");
    qmlRegisterUncreatableType<Directories>("App", 1, 0, "Directories", QStringLiteral("interface"));
    Folder::registerClass();
}

// --- Settings section -------------------------------------------------------------------

void Directories::loadSettings(QJsonValue& value)
{
    // Normally the whole settings document; a value that already is the section (it holds
    // "folders" or "foldersRoles" but no "directories") is taken as it stands.
    const QJsonObject given = value.toObject();
    QJsonObject section;
    if (given.contains(QLatin1String(C_keyDirectories)))
        section = given.value(QLatin1String(C_keyDirectories)).toObject();
    else if (given.contains(QLatin1String(C_keyFolders)) || given.contains(QLatin1String(C_keyFoldersRoles)))
        section = given;

    // The storage tables and the selection survive: the final sort drops the old selection.
    m_folders.reset();
    m_foldersRoles.clear();

    QMap<QString, QString> defaultPaths;
    for (const auto& entry : builtInPathParameters())
        defaultPaths.insert(entry.first, PreConfiguration::getRelativeToInternalPath(entry.second));

    for (const QVariantMap& alias : c_defaultAliases) {
        QVariantMap fields = alias;
        fields.insert(QLatin1String(C_keyPath), defaultPaths.value(alias.value(QLatin1String(C_keyId)).toString(),
                                                                   QStringLiteral("")));
        const QSharedPointer<Folder> folder = addNewFolderAlias(fields);
        if (folder)
            m_foldersRoles.insert(folder->id(), folder->id());
    }

    const QJsonArray folders = section.value(QLatin1String(C_keyFolders)).toArray();
    for (const QJsonValue& element : folders) {
        const QJsonObject fields = element.toObject();
        // Read as variants, as they always were: a number given for a text still reads as its digits.
        const auto text = [&fields](const char* key) {
            const QJsonValue value = fields.value(QLatin1String(key));
            return value.isString() ? value.toString() : value.toVariant().toString();
        };
        const QString type = text(C_keyType);
        const QString aliasName = text(C_keyAliasName);
        const QString path = text(C_keyPath);
        const QString escape = Folder::storageEscape(type, aliasName, path);
        if (!escape.isEmpty()) {
            // The document may come from an update package: such a folder is never created.
            LogLine::critical(this, C_sourceFile, __LINE__,
                              QStringLiteral("[Directories] Folder skipped, outside its storage:"), escape);
            continue;
        }
        // Passwords in the settings document are in their stored (obfuscated) form.
        const QSharedPointer<Folder> folder = addNewFolderAlias(
            type, text(C_keyId), aliasName, path, text(C_keyDomain), text(C_keyAddress), text(C_keyIdentifier),
            text(C_keyPassword), enabledOf(fields.value(QLatin1String(C_keyEnabled))), true);
        if (!folder)
            continue;
        if (folder->isEnabled()) {
            if (folder->type() == QLatin1String(C_typeNetwork)) {
                m_networkStorage.insert(folder->aliasName(), false);
                emit configuredNetworkStorageNbrChanged();
            } else if (folder->type() == QLatin1String(C_typeRemovable)) {
                m_removableStorage.insert(folder->aliasName(), false);
                emit configuredRemovableStorageNbrChanged();
            }
        }
        // A share counts as unavailable until it reports itself connected.
        if (m_syncManager)
            m_syncManager->setDirectoryAvailability(
                folder->aliasName(), folder->isEnabled() && folder->type() != QLatin1String(C_typeNetwork));
    }

    updateUsbFolder(m_removableStoragePresent);

    const QJsonObject roles = section.value(QLatin1String(C_keyFoldersRoles)).toObject();
    for (auto it = roles.constBegin(); it != roles.constEnd(); ++it)
        m_foldersRoles.insert(it.key(), it.value().toString());

    if (m_syncManager) {
        for (const QString& role : c_synchronizedRoles)
            synchronizeFolderRole(role);
    }

    sortFoldersByAliasName();
    refreshDirectoriesPaths();
    emit sigDirectoriesChanged();
}

void Directories::saveSettings(QJsonObject& root)
{
    // Only the section's two keys are rewritten; anything else stored there stays.
    QJsonObject section = root.value(QLatin1String(C_keyDirectories)).toObject();

    // Built-in folders are rebuilt at every load and never written.
    QJsonArray folders;
    for (const QSharedPointer<Folder>& folder : m_folders.list()) {
        if (!folder || !isUuid(folder->id()))
            continue;
        folders.append(folder->toJsonObject());
    }
    if (folders.isEmpty())
        section.remove(QLatin1String(C_keyFolders));
    else
        section.insert(QLatin1String(C_keyFolders), folders);

    QJsonObject roles;
    for (auto it = m_foldersRoles.constBegin(); it != m_foldersRoles.constEnd(); ++it) {
        if (it.value() != it.key())
            roles.insert(it.key(), it.value());
    }
    if (roles.isEmpty())
        section.remove(QLatin1String(C_keyFoldersRoles));
    else
        section.insert(QLatin1String(C_keyFoldersRoles), roles);

    root.insert(QLatin1String(C_keyDirectories), section);
}

// --- Adding, editing, deleting ------------------------------------------------------------

QSharedPointer<Folder> Directories::addNewFolderAlias(const QString& type, const QString& id,
                                                      const QString& aliasName, const QString& path,
                                                      const QString& domain, const QString& address,
                                                      const QString& identifier, const QString& password,
                                                      bool enabled, bool passwordEncrypted)
{
    const QSharedPointer<Folder> folder = Folder::configureUnmade(type, id, aliasName, path, domain, address,
                                                                  identifier, password, enabled, passwordEncrypted,
                                                                  C_folderPollingIntervalMs);
    if (!folder) {
        sendError(CeDeFolderInstanceCreation, aliasName);
        return QSharedPointer<Folder>();
    }
    connect(this, &Directories::removableStorageStateChanged, folder.data(), &Folder::removableStorageStateChanged);
    connect(folder.data(), &Folder::availabilityChanged, this, &Directories::sltFolderAliasAvailabilityChanged);
    connect(folder.data(), &Folder::folderConnectionFailed, this, &Directories::sltFolderConnectionFailed);
    // Appended without a duplicate check and without sorting: callers sort when they are done.
    m_folders.append(folder);
    folder->make();
    return folder;
}

QSharedPointer<Folder> Directories::addNewFolderAlias(const QMap<QString, QVariant>& fields)
{
    // Passwords in the settings document are in their stored (obfuscated) form.
    return addNewFolderAlias(fields.value(QLatin1String(C_keyType)).toString(),
                             fields.value(QLatin1String(C_keyId)).toString(),
                             fields.value(QLatin1String(C_keyAliasName)).toString(),
                             fields.value(QLatin1String(C_keyPath)).toString(),
                             fields.value(QLatin1String(C_keyDomain)).toString(),
                             fields.value(QLatin1String(C_keyAddress)).toString(),
                             fields.value(QLatin1String(C_keyIdentifier)).toString(),
                             fields.value(QLatin1String(C_keyPassword)).toString(),
                             fields.value(QLatin1String(C_keyEnabled), true).toBool(), true);
}

QString Directories::setFolderAlias(QString id, QString folderRole, QString folderType, QString aliasName,
                                    QString path, QString domain, QString address, QString identifier,
                                    QString password, bool enable)
{
    QSharedPointer<Folder> folder;
    bool refresh = false;

    if (!Folder::storageEscape(folderType, aliasName, path).isEmpty()) {
        sendError(CeDeFolderOutsideStorage, aliasName);
        return outsideStorageText(aliasName);
    }

    if (id.isEmpty()) {
        if (!isThisAliasAvailable(aliasName)) {
            //% "This alias name is already used"
            return qtTrId("Directories_Duplicate_alias");
        }
        // A null id: the factory gives the new folder its UUID.
        folder = addNewFolderAlias(folderType, QString(), aliasName, path, domain, address, identifier, password,
                                   enable, false);
        refresh = true;
        // Counted like a loaded folder, so that the counters follow its availability at once.
        if (folder && folder->isEnabled()) {
            if (folder->type() == QLatin1String(C_typeNetwork)) {
                m_networkStorage.insert(folder->aliasName(), false);
                emit configuredNetworkStorageNbrChanged();
            } else if (folder->type() == QLatin1String(C_typeRemovable)) {
                m_removableStorage.insert(folder->aliasName(), false);
                emit configuredRemovableStorageNbrChanged();
            }
        }
    } else {
        bool found = false;
        folder = getFolderById(id, found);
        if (!found) {
            //% "This alias cannot be found in the list"
            return qtTrId("Directories_Failure_to_find_this_alias_in_the_list");
        }
        // No duplicate check on edit: a folder may take an alias another folder already has.
        refresh = folder->update(folderType, aliasName, path, domain, address, identifier, password, enable, false);
    }

    if (folder && !folder->id().isEmpty()) {
        const QString current = getRoleOfFolder(folder->id());
        if (folderRole != current) {
            const bool synced = m_syncManager && m_syncManager->isAliasDirectorySynchronised(aliasName);
            if (current != QLatin1String(C_roleUndefined)) {
                // The role falls back to its built-in folder.
                m_foldersRoles.insert(current, current);
                if (synced && c_synchronizedRoles.contains(current) && m_syncManager)
                    m_syncManager->delDirectory(aliasName);
            }
            if (folderRole != QLatin1String(C_roleUndefined)) {
                m_foldersRoles.insert(folderRole, folder->id());
                if (c_synchronizedRoles.contains(folderRole) && m_syncManager) {
                    if (synced)
                        m_syncManager->delDirectory(aliasName);
                    synchronizeFolderRole(folderRole);
                }
            }
            refresh = true;
        }
    }

    if (refresh) {
        sortFoldersByAliasName();
        refreshDirectoriesPaths();
        emit sigDirectoriesChanged();
    }
    return QString();
}

void Directories::deleteSelectedFolder()
{
    // Built-in and USB folders cannot be deleted.
    if (!m_selectedFolder || !isUuid(m_selectedFolder->id()))
        return;
    if (m_selectedFolderIndex >= 0 && m_selectedFolderIndex < m_folders.count())
        m_folders.removeAt(m_selectedFolderIndex);
    if (m_selectedFolderIndex != C_InvalidIndex) {
        m_selectedFolderIndex = C_InvalidIndex;
        m_selectedFolder.clear();
        emit selectedFolderChanged();
    }
    // Roles that pointed at the folder keep its id; resolving them falls back to local paths.
    emit sigDirectoriesChanged();
}

void Directories::selectFolder(int index)
{
    if (index == m_selectedFolderIndex)
        return;
    // Stored as given, also out of range.
    m_selectedFolderIndex = index;
    m_selectedFolder = m_folders.at(index);
    emit selectedFolderChanged();
}

void Directories::sortFoldersByAliasName()
{
    // Consumed from the end: of two folders whose aliases differ only in case, the one nearer
    // the start of the list replaces the other in the map and is the one kept. Intended.
    QList<QSharedPointer<Folder>> remaining = m_folders.list();
    QMap<QString, QSharedPointer<Folder>> byAlias;
    while (!remaining.isEmpty()) {
        const QSharedPointer<Folder> folder = remaining.takeLast();
        if (!folder) {
            LogLine::critical(this, C_sourceFile, __LINE__,
                              QStringLiteral("Directories::sortFoldersByAliasName: null folder in list"));
            continue;
        }
        byAlias.insert(folder->aliasName().toUpper(), folder);
    }
    m_folders.reset();
    m_folders.reset(byAlias.values());

    if (m_selectedFolder) {
        const int index = m_folders.list().indexOf(m_selectedFolder);
        if (index != m_selectedFolderIndex) {
            m_selectedFolderIndex = index;
            if (index == C_InvalidIndex)
                m_selectedFolder.clear();
            emit selectedFolderChanged();
        }
    }
}

// --- Look-ups -----------------------------------------------------------------------------

QSharedPointer<Folder> Directories::getFolderById(const QString& id, bool& found) const
{
    found = false;
    if (id.isEmpty())
        return QSharedPointer<Folder>();
    for (const QSharedPointer<Folder>& folder : m_folders.list()) {
        if (folder && folder->id() == id) {
            found = true;
            return folder;
        }
    }
    return QSharedPointer<Folder>();
}

QSharedPointer<Folder> Directories::getFolderByName(const QString& aliasName, bool& found) const
{
    found = false;
    if (aliasName.isEmpty())
        return QSharedPointer<Folder>();
    const QString wanted = aliasName.toUpper();
    for (const QSharedPointer<Folder>& folder : m_folders.list()) {
        if (folder && folder->aliasName().toUpper() == wanted) {
            found = true;
            return folder;
        }
    }
    return QSharedPointer<Folder>();
}

bool Directories::isThisAliasAvailable(QString aliasName) const
{
    // "USB" stays reserved whether or not the USB folder exists.
    const QString wanted = aliasName.toUpper();
    if (wanted == QLatin1String(C_usbAliasName))
        return false;
    for (const QSharedPointer<Folder>& folder : m_folders.list()) {
        if (folder && folder->aliasName().toUpper() == wanted)
            return false;
    }
    return true;
}

QString Directories::getRoleOfFolder(QString id) const
{
    // Ascending key order: of two roles pointing at one folder, the first key wins.
    for (auto it = m_foldersRoles.constBegin(); it != m_foldersRoles.constEnd(); ++it) {
        if (it.value() == id)
            return it.key();
    }
    return QLatin1String(C_roleUndefined);
}

QString Directories::getRoleNameOfFolder(QString id)
{
    return Folder::getRoleName(getRoleOfFolder(id));
}

QList<QSharedPointer<Folder>> Directories::getAliasesWithRole(const QString& role) const
{
    QList<QSharedPointer<Folder>> result;
    if (!m_foldersRoles.contains(role))
        return result;
    for (const QSharedPointer<Folder>& folder : m_folders.list()) {
        if (!folder || !folder->isEnabled())
            continue;
        const QString folderRole = getRoleOfFolder(folder->id());
        if (folderRole == role || folderRole == QLatin1String(C_roleUndefined) || folderRole == QLatin1String(C_roleUsb))
            result.append(folder);
    }
    return result;
}

int Directories::externalAliasesCountForRole(QString folderRole) const
{
    int count = 0;
    for (const QSharedPointer<Folder>& folder : getAliasesWithRole(folderRole)) {
        if (folder->type() == QLatin1String(C_typeNetwork))
            ++count;
    }
    return count;
}

bool Directories::isSelectedFolderEditable() const
{
    return !m_selectedFolder.isNull();
}

bool Directories::isSelectedFolderDeletable() const
{
    return m_selectedFolder && isUuid(m_selectedFolder->id());
}

// --- Storage counters and availability ----------------------------------------------------

int Directories::connectedNetworkStorageNbr() const
{
    int count = 0;
    for (bool connected : m_networkStorage)
        count += connected ? 1 : 0;
    return count;
}

int Directories::connectedRemovableStorageNbr() const
{
    int count = 0;
    for (bool connected : m_removableStorage)
        count += connected ? 1 : 0;
    return count;
}

void Directories::retryFolderConnection(QString aliasName)
{
    for (const QSharedPointer<Folder>& folder : m_folders.list()) {
        if (folder && folder->aliasName() == aliasName) {
            folder->retryConnection();
            return;
        }
    }
}

void Directories::unmountAllNetworkShares()
{
    // Releasing the folders unmounts their shares.
    m_folders.reset();
}

void Directories::sltFolderAliasAvailabilityChanged(QString aliasName, bool available)
{
    if (m_removableStorage.contains(aliasName)) {
        m_removableStorage[aliasName] = available;
        emit connectedRemovableStorageNbrChanged();
        return;
    }
    if (!m_networkStorage.contains(aliasName))
        return;

    m_networkStorage[aliasName] = available;
    if (m_syncManager && !m_syncManager->isPausedAll()) {
        m_syncManager->setDirectoryAvailability(aliasName, available);
        if (available) {
            bool found = false;
            const QSharedPointer<Folder> folder = getFolderByName(aliasName, found);
            for (const QString& role : c_synchronizedRoles) {
                if (found && m_foldersRoles.value(role) == folder->id())
                    synchronizeFolderRole(role);
            }
        }
    }
    refreshDirectoriesPaths();
    emit connectedNetworkStorageNbrChanged();
}

void Directories::reload()
{
    emit sigDirectoriesChanged();
}

// --- Errors -------------------------------------------------------------------------------

void Directories::sendError(Directories::EnDirectoriesError error, QString parameter) const
{
    QString message;
    switch (error) {
    case CeDeFolderInstanceCreation:
        //% "ERROR: Failure to create the folder object: %1"
        message = qtTrId("Directories_ERROR__Failure_to_create_the_instance_of_object____1_").arg(parameter);
        break;
    case CeDeAliasFolderAccess:
        //% "ERROR: Failure to access the alias folder: %1"
        message = qtTrId("Directories_ERROR__Failure_to_access_to_alias_folder____1_").arg(parameter);
        emit folderAliasUnavailable(message);
        break;
    case CeDeAliasFolderNotFound:
        //% "ERROR: Failure to find the alias folder: %1"
        message = qtTrId("Directories_ERROR__Failure_to_find_the_alias_folder____1_").arg(parameter);
        emit folderAliasUnavailable(message);
        break;
    case CeDeFatalInternalFolderCreation:
        //% "FATAL ERROR: Failure to create the internal memory folder: %1"
        message = qtTrId("Directories_FATAL_ERROR__Failure_to_create_internal_memory_folder____1_").arg(parameter);
        emit internalMemoryAccessError(message);
        break;
    case CeDeFatalInternalFolderAccess:
        //% "FATAL ERROR: Failure to access the internal memory folder: %1"
        message = qtTrId("Directories_FATAL_ERROR__Failure_to_access_to_internal_memory_folder____1_").arg(parameter);
        emit internalMemoryAccessError(message);
        break;
    case CeDeFatalInternalFolderNotFound:
        //% "FATAL ERROR: Failure to find the internal memory folder: %1"
        message = qtTrId("Directories_FATAL_ERROR__Failure_to_find_the_internal_memory_folder____1_").arg(parameter);
        emit internalMemoryAccessError(message);
        break;
    case CeDeFolderOutsideStorage:
        message = outsideStorageText(parameter);
        emit folderAliasUnavailable(message);
        break;
    case CeDeNone:
    default:
        break;
    }
    if (!message.isEmpty())
        LogLine::critical(this, C_sourceFile, __LINE__, message);
}

void Directories::sltFolderConnectionFailed(QString aliasName, QString errorMessage, bool isPermanent)
{
    emit networkFolderConnectionError(aliasName, errorMessage, isPermanent);
}
