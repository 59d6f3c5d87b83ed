#include "folder.h"

#include <algorithm>
#include "directories.h"
#include "utilities/logline.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QQmlEngine>
#include <QThread>
#include <QUuid>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#include <unistd.h>
#endif

static const char C_sourceFile[] = "lib_configuration/source/folder";

namespace {
const QString C_keyValue = QStringLiteral("value");
const QString C_keyId = QStringLiteral("id");
const QString C_keyLocked = QStringLiteral("locked");
const QString C_keyAliasName = QStringLiteral("aliasName");
const QString C_keyName = QStringLiteral("name");

const QString C_typeInternal = QStringLiteral("internal");
const QString C_typeRemovable = QStringLiteral("external");
const QString C_typeNetwork = QStringLiteral("samba");

// How a display path names each type's storage.
const QString C_prefixInternal = QStringLiteral("int://");
const QString C_prefixRemovable = QStringLiteral("usb://");
const QString C_prefixNetwork = QStringLiteral("ext://");

// Blocking pause between unmounting a share and renaming its mount point.
constexpr unsigned long C_renameWaitMs = 500;

QVariantMap typeRow(int value, const QString& id, bool locked, const QString& uriPrefix)
{
    return QVariantMap{{C_keyValue, value}, {C_keyId, id}, {C_keyLocked, locked}, {C_keyAliasName, uriPrefix}};
}

QVariantMap roleRow(int value, const QString& id)
{
    return QVariantMap{{C_keyValue, value}, {C_keyId, id}};
}

// What QDir::cleanPath gives, without its work for a path that has nothing to clean: no empty,
// "." or ".." component, no backslash, no trailing separator.
QString cleaned(const QString& path)
{
    const QChar* p = path.constData();
    const int size = path.size();
    for (int i = 0; i < size; ++i) {
        const ushort c = p[i].unicode();
        const bool componentStart = i == 0 || p[i - 1] == QLatin1Char('/');
        if (c == '\\' || (c == '/' && i > 0 && (p[i - 1] == QLatin1Char('/') || i == size - 1))
            || (c == '.' && componentStart))
            return QDir::cleanPath(path);
    }
    return path;
}

// QFileInfo's answers without its path bookkeeping: a registry checks every folder at load.
#ifdef Q_OS_WIN
bool existsAt(const QString& path) { return QFileInfo::exists(path); }
bool isDirectoryAt(const QString& path) { return QFileInfo(path).isDir(); }
#else
bool existsAt(const QString& path)
{
    return !path.isEmpty() && ::access(QFile::encodeName(path).constData(), F_OK) == 0;
}

bool isDirectoryAt(const QString& path)
{
    struct stat status;
    return !path.isEmpty() && ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}
#endif

// Whether `path`, cleaned, is `root` (when `mayBeRoot`) or lies below it.
bool liesInside(const QString& root, const QString& path, bool mayBeRoot)
{
    const QString cleanRoot = cleaned(root);
    const QString cleanPath = cleaned(path);
    if (cleanPath == cleanRoot)
        return mayBeRoot;
    return cleanPath.startsWith(cleanRoot.endsWith(QLatin1Char('/')) ? cleanRoot : cleanRoot + QLatin1Char('/'));
}
}

const QList<QVariantMap> Folder::c_folderTypes = {
    typeRow(Folder::CeFtInternal, C_typeInternal, true, C_prefixInternal),
    typeRow(Folder::CeFtRemovable, C_typeRemovable, false, C_prefixRemovable),
    typeRow(Folder::CeFtNetwork, C_typeNetwork, false, C_prefixNetwork),
};

const QList<QVariantMap> Folder::c_folderRoles = {
    roleRow(Folder::CeFrUndefined, QStringLiteral("undefined")),
    roleRow(Folder::CeFrSequences, QStringLiteral("sequences")),
    roleRow(Folder::CeFrRawResults, QStringLiteral("results")),
    roleRow(Folder::CeFrPdfResults, QStringLiteral("pdfResults")),
    roleRow(Folder::CeFrTemplates, QStringLiteral("templates")),
    roleRow(Folder::CeFrToolBackups, QStringLiteral("toolBackups")),
    roleRow(Folder::CeFrMedia, QStringLiteral("media")),
    roleRow(Folder::CeFrScripts, QStringLiteral("scripts")),
};

Folder::Folder()
    : m_crypt(C_cryptKey)
{
}

Folder::Folder(const QString& type, const QString& id, int pollingInterval)
    : Folder()
{
    if (!type.isEmpty())
        m_id = id.isNull() ? QUuid::createUuid().toString() : id;
    setPollingInterval(pollingInterval);
}

Folder::~Folder()
{
    if (m_availabilityTimer)
        m_availabilityTimer->stop();
    if (m_shareManager) {
        // A folder on its way out reports nothing more.
        disconnect(m_shareManager, nullptr, this, nullptr);
        m_shareManager->umountWindowsShare();
        m_shareManager->deleteLater();
    }
}

QSharedPointer<Folder> Folder::configure(const QString& type, const QString& id, const QString& aliasName,
                                         const QString& path, const QString& domain, const QString& address,
                                         const QString& identifier, const QString& password, bool enabled,
                                         bool passwordEncrypted, int pollingInterval)
{
    const QSharedPointer<Folder> folder = configureUnmade(type, id, aliasName, path, domain, address, identifier,
                                                          password, enabled, passwordEncrypted, pollingInterval);
    folder->make();
    return folder;
}

QSharedPointer<Folder> Folder::configureUnmade(const QString& type, const QString& id, const QString& aliasName,
                                               const QString& path, const QString& domain, const QString& address,
                                               const QString& identifier, const QString& password, bool enabled,
                                               bool passwordEncrypted, int pollingInterval)
{
    auto* folder = new Folder(type, id, pollingInterval);
    folder->m_makeDeferred = true;
    folder->update(type, aliasName, path, domain, address, identifier, password, enabled, passwordEncrypted);
    folder->m_makeDeferred = false;
    return QSharedPointer<Folder>(folder);
}

bool Folder::update(const QString& type, const QString& aliasName, const QString& path, const QString& domain,
                    const QString& address, const QString& identifier, const QString& password, bool enabled,
                    bool passwordEncrypted)
{
    // A change of case only keeps the share manager: the mount point is renamed in place.
    if (aliasName != m_aliasName && aliasName.toLower() == m_aliasName.toLower() && m_type == C_typeNetwork
        && type == C_typeNetwork && m_shareManager) {
        const QString oldMountPoint = Directories::rootPath(m_type) + QLatin1Char('/') + m_aliasName;
        const QString newMountPoint = Directories::rootPath(type) + QLatin1Char('/') + aliasName;
        m_shareManager->umountWindowsShare();
        QThread::msleep(C_renameWaitMs);
        if (QFileInfo::exists(oldMountPoint) && QDir().rename(oldMountPoint, newMountPoint)) {
            m_aliasName = aliasName;
            m_shareManager->setMountPoint(newMountPoint);
            m_shareManager->start();
            emit sigChanged();
            return true;
        }
        LogLine::critical(this, C_sourceFile, __LINE__,
                          QStringLiteral("[-- AI --] Failed to rename mount point, falling back to full unmount/remount"));
    }

    bool changed = false;
    if (type != m_type) {
        m_type = type;
        changed = true;
    }
    if (aliasName != m_aliasName) {
        m_aliasName = aliasName;
        changed = true;
    }
    if (path != m_path) {
        m_path = path;
        changed = true;
    }

    // Credentials and the enabled flag belong to network shares only; the other types keep theirs.
    if (m_type == C_typeNetwork) {
        const QString clearPassword = passwordEncrypted ? m_crypt.decryptToString(password) : password;
        if (passwordEncrypted && !clearPassword.isEmpty())
            m_passwordCipher = password;
        if (domain != m_domain) {
            m_domain = domain;
            changed = true;
        }
        if (address != m_address) {
            m_address = address;
            changed = true;
        }
        if (identifier != m_identifier) {
            m_identifier = identifier;
            changed = true;
        }
        if (clearPassword != m_password) {
            m_password = clearPassword;
            changed = true;
        }
        if (enabled != m_enabled) {
            m_enabled = enabled;
            changed = true;
        }
    }
    if (!changed)
        return false;

    if (!m_makeDeferred) {
        dropShareManager();
        make();
    }
    emit sigChanged();
    return true;
}

bool Folder::make()
{
    if (m_type == C_typeNetwork) {
        dropShareManager();
        if (!m_enabled)
            return false;
        if (Directories::rootPath(m_type).isEmpty()) {
            LogLine::critical(this, C_sourceFile, __LINE__,
                              QStringLiteral("[Folder] No mounting storage directory, cannot mount"), m_aliasName);
            return false;
        }
        const QString mountPoint = mountedPath();
        if (mountPoint.isEmpty()) {
            LogLine::critical(this, C_sourceFile, __LINE__,
                              QStringLiteral("[Folder] Mount point outside the mounting storage, cannot mount"),
                              m_aliasName);
            return false;
        }
        m_shareManager = new WindowsShareManager(m_address, m_domain, m_identifier, m_password, m_path, mountPoint,
                                                 m_aliasName, m_pollingInterval, this);
        connect(m_shareManager, &WindowsShareManager::connectionChanged, this, &Folder::sltShareStatusChanged);
        connect(m_shareManager, &WindowsShareManager::serverDetectionStarted, this,
                &Folder::sltServerDetectionStarted);
        connect(m_shareManager, &WindowsShareManager::serverDetectionRetrying, this,
                &Folder::sltServerDetectionRetrying);
        connect(m_shareManager, &WindowsShareManager::serverResponded, this, &Folder::sltServerResponded);
        connect(m_shareManager, &WindowsShareManager::mountAttemptStarted, this, &Folder::sltMountAttemptStarted);
        connect(m_shareManager, &WindowsShareManager::mountAttemptFailed, this, &Folder::sltMountAttemptFailed);
        connect(m_shareManager, &WindowsShareManager::permanentMountFailure, this,
                &Folder::sltPermanentMountFailure);
        m_shareManager->start();
        return true;
    }
    if (m_type == C_typeRemovable) {
        updateAvailability();
        return true;
    }
    if (m_type == C_typeInternal) {
        const QString path = mountedPath();
        // Without a storage root the path would land at the file-system root, and a path that
        // leaves the root has no directory here: refuse both.
        if (Directories::rootPath(m_type).isEmpty() || path.isEmpty()
            || (!isDirectoryAt(path) && !QDir().mkpath(path))) {
            LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("ERROR: Failure to make internal folder:"),
                              path.isEmpty() ? m_path : path);
            return false;
        }
        return true;
    }
    return false;
}

void Folder::setPollingInterval(int pollingInterval)
{
    // Compared before the floor is applied, so a low value is re-applied each time.
    if (pollingInterval == m_pollingInterval)
        return;
    m_pollingInterval = qMax(pollingInterval, C_minimumPollingInterval);
    if (m_availabilityTimer)
        m_availabilityTimer->setInterval(m_pollingInterval);
}

QJsonObject Folder::toJsonObject() const
{
    QJsonObject object;
    object.insert(C_modelKeyId, m_id);
    object.insert(C_modelKeyType, m_type);
    object.insert(C_modelKeyAlias, m_aliasName);
    object.insert(C_modelKeyPath, m_path);
    if (m_type == C_typeNetwork) {
        object.insert(C_modelKeyDomain, m_domain);
        object.insert(C_modelKeyAddress, m_address);
        object.insert(C_modelKeyLogin, m_identifier);
        // The stored cipher text is kept while it still decrypts to the password, so that an
        // unchanged folder is saved as the same bytes (the encryption is salted).
        if (m_passwordCipher.isEmpty() || m_crypt.decryptToString(m_passwordCipher) != m_password)
            m_passwordCipher = m_crypt.encryptToString(m_password);
        object.insert(C_modelKeyPassword, m_passwordCipher);
    }
    object.insert(C_modelKeyEnabled, m_enabled);
    return object;
}

QString Folder::getRoleName(EnFolderRole role)
{
    switch (role) {
    case CeFrUndefined:
        return QStringLiteral("-");
    case CeFrSequences:
        //% "Sequences"
        return qtTrId("Folder_Sequences");
    case CeFrRawResults:
        //% "Raw results"
        return qtTrId("Folder_Raw_Results");
    case CeFrPdfResults:
        //% "PDF results"
        return qtTrId("Folder_PDF_Results");
    case CeFrTemplates:
        //% "Templates"
        return qtTrId("Folder_Templates");
    case CeFrToolBackups:
        //% "Tool backups"
        return qtTrId("Folder_Tool_Backups");
    case CeFrMedia:
        //% "Media"
        return qtTrId("Folder_Media");
    case CeFrScripts:
        //% "Scripts"
        return qtTrId("Folder_Scripts");
    }
    return QString();
}

QString Folder::getRoleName(const QString& roleId)
{
    for (const QVariantMap& row : c_folderRoles) {
        if (row.value(C_keyId).toString() == roleId)
            return getRoleName(EnFolderRole(row.value(C_keyValue).toInt()));
    }
    return QString();
}

QString Folder::typeName(EnFolderType type)
{
    switch (type) {
    case CeFtUndefined:
        return QStringLiteral("-");
    case CeFtInternal:
        //% "Internal drive"
        return qtTrId("Folder_Internal_drive");
    case CeFtRemovable:
        //% "Removable drive"
        return qtTrId("Folder_Removable_drive");
    case CeFtNetwork:
        //% "Network drive"
        return qtTrId("Folder_Network_drive");
    }
    return QString();
}

QString Folder::typeName() const
{
    for (const QVariantMap& row : c_folderTypes) {
        if (row.value(C_keyId).toString() == m_type)
            return typeName(EnFolderType(row.value(C_keyValue).toInt()));
    }
    return QString();
}

QString Folder::typeAlias() const
{
    if (m_type == C_typeInternal)
        return C_prefixInternal;
    if (m_type == C_typeRemovable)
        return C_prefixRemovable;
    if (m_type == C_typeNetwork)
        return C_prefixNetwork;
    return QString();
}

QString Folder::displayPath() const
{
    QString text = typeAlias();
    if (m_type == C_typeNetwork)
        text += m_address + QLatin1Char('/');
    return text + m_path;
}

bool Folder::isValidPath(const QString& path)
{
    return existsAt(path);
}

QString Folder::storageEscape(const QString& type, const QString& aliasName, const QString& path)
{
    const auto isSeparator = [](QChar c) { return c == QLatin1Char('/') || c == QLatin1Char('\\'); };
    if (type == C_typeNetwork) {
        if (aliasName.isEmpty() || aliasName == QLatin1String(".") || aliasName == QLatin1String(".."))
            return QStringLiteral("network folder name \"%1\" is no directory name").arg(aliasName);
        if (std::any_of(aliasName.cbegin(), aliasName.cend(), isSeparator))
            return QStringLiteral("network folder name \"%1\" holds a separator").arg(aliasName);
        return QString();
    }
    if (type != C_typeInternal && type != C_typeRemovable)
        return QString();
    // A ".." between separators (or at either end).
    for (int i = path.indexOf(QLatin1String("..")); i >= 0; i = path.indexOf(QLatin1String(".."), i + 1)) {
        if ((i == 0 || isSeparator(path.at(i - 1))) && (i + 2 == path.size() || isSeparator(path.at(i + 2))))
            return QStringLiteral("path \"%1\" climbs out with \"..\"").arg(path);
    }
    const bool hasDrive = path.size() > 1 && path.at(0).isLetter() && path.at(1) == QLatin1Char(':');
    if (type == C_typeInternal && (path.startsWith(QLatin1Char('/')) || path.startsWith(QLatin1Char('\\')) || hasDrive))
        return QStringLiteral("internal path \"%1\" is absolute").arg(path);
    return QString();
}

QVariantList Folder::availableRolesModel(const QString& aliasId, const QString& currentRole, bool isUpdatable)
{
    buildModels();
    if (isUpdatable)
        return m_rolesModel;
    // An id without a row reads as row 0, the "undefined" row.
    if (aliasId == currentRole)
        return QVariantList{m_rolesModel.value(m_roleIndexById.value(currentRole, 0))};
    // With an unknown aliasId the "undefined" row appears twice; editing screens rely on two rows.
    return QVariantList{m_rolesModel.value(m_roleIndexById.value(C_folderRoleUndefined, 0)),
                        m_rolesModel.value(m_roleIndexById.value(aliasId, 0))};
}

void Folder::registerClass()
{
    static bool registered = false;
    if (registered)
        return;
    registered = true;
    // The singleton gives QML a blank folder to read the constant keys and the two models from.
    qmlRegisterSingletonType<Folder>("App", 1, 0, "FolderAlias",
                                     [](QQmlEngine*, QJSEngine*) -> QObject* { return new Folder(); });
    qmlRegisterUncreatableType<Folder>("App", 1, 0, "Folder", QStringLiteral("interface"));
}

bool Folder::isAvailable() const
{
    return isValidPath(mountedPath());
}

bool Folder::canDelete() const
{
    return !QUuid(m_id).isNull();
}

QString Folder::mountedPath() const
{
    const bool network = m_type == C_typeNetwork;
    if (!network && m_type != C_typeInternal && m_type != C_typeRemovable)
        return QString();
    const QString root = Directories::rootPath(m_type);
    const QString path = root + QLatin1Char('/') + (network ? m_aliasName : m_path);
    // Without a root there is nothing to stay inside (make refuses such a folder). A share
    // mounted on the root itself would cover every other share.
    if (root.isEmpty() || liesInside(root, path, !network))
        return path;
    return QString();
}

QString Folder::networkAdress() const
{
    if (m_type == C_typeNetwork)
        return m_address + QLatin1Char('/') + m_path;
    return QString();
}

void Folder::removableStorageStateChanged(bool connected)
{
    if (connected == m_removableConnected)
        return;
    m_removableConnected = connected;
    if (m_type == C_typeRemovable)
        updateAvailability();
}

void Folder::retryConnection()
{
    if (m_shareManager)
        m_shareManager->retryConnection();
}

void Folder::updateAvailability()
{
    bool availability = false;
    if (m_type == C_typeRemovable && m_removableConnected) {
        availability = isValidPath(mountedPath());
        // Polls for as long as the drive stays connected.
        if (!m_availabilityTimer) {
            m_availabilityTimer = new QTimer(this);
            m_availabilityTimer->setSingleShot(true);
            m_availabilityTimer->setInterval(m_pollingInterval);
            connect(m_availabilityTimer, &QTimer::timeout, this, &Folder::updateAvailability);
        }
        m_availabilityTimer->start();
    } else if (m_type == C_typeNetwork && m_shareManager && m_shareManager->isMounted()) {
        availability = isValidPath(mountedPath());
        if (!availability) {
            LogLine::debug(this, C_sourceFile, __LINE__,
                           QStringLiteral("[Folder] Folder %1 is mounted but path not found:").arg(m_aliasName),
                           m_path);
            //% "The share is mounted but the path %1 was not found"
            emit folderConnectionFailed(m_aliasName, qtTrId("Folder_Mounted_but_path_not_found__1").arg(m_path),
                                        false);
        }
    }
    if (availability == m_isAvailable)
        return;
    m_isAvailable = availability;
    emit isAvailableChanged(availability);
    emit availabilityChanged(m_aliasName, availability);
}

void Folder::sltShareStatusChanged(QString path, bool connected)
{
    if (path != mountedPath())
        return;
    updateAvailability();
    if (connected)
        emit folderStatusChanged(m_aliasName, QVariantMap{{QStringLiteral("state"), QStringLiteral("mounted")},
                                                          {QStringLiteral("serverIp"), m_address}});
}

void Folder::sltRemovableStorageChanged(bool mountingState, QString path)
{
    Q_UNUSED(mountingState)
    if (path == mountedPath())
        updateAvailability();
}

void Folder::sltServerDetectionStarted()
{
    emit folderStatusChanged(m_aliasName, QVariantMap{{QStringLiteral("state"), QStringLiteral("detecting")},
                                                      {QStringLiteral("serverIp"), m_address}});
}

void Folder::sltServerDetectionRetrying(int nextIntervalMs)
{
    emit folderStatusChanged(m_aliasName, QVariantMap{{QStringLiteral("state"), QStringLiteral("detecting")},
                                                      {QStringLiteral("serverIp"), m_address},
                                                      {QStringLiteral("nextRetryMs"), nextIntervalMs}});
}

void Folder::sltServerResponded()
{
    // "retrying" once the server answered: the interface shows this step that way.
    emit folderStatusChanged(m_aliasName, QVariantMap{{QStringLiteral("state"), QStringLiteral("retrying")},
                                                      {QStringLiteral("serverIp"), m_address}});
}

void Folder::sltMountAttemptStarted(int attemptNumber, int maxAttempts)
{
    emit folderStatusChanged(m_aliasName, QVariantMap{{QStringLiteral("state"), QStringLiteral("mounting")},
                                                      {QStringLiteral("serverIp"), m_address},
                                                      {QStringLiteral("attempt"), attemptNumber},
                                                      {QStringLiteral("maxAttempts"), maxAttempts}});
}

void Folder::sltMountAttemptFailed(int attemptNumber, int maxAttempts, QString reason)
{
    // A failed attempt shows as the same "mounting" state; the reason stays out of the map.
    Q_UNUSED(reason)
    emit folderStatusChanged(m_aliasName, QVariantMap{{QStringLiteral("state"), QStringLiteral("mounting")},
                                                      {QStringLiteral("serverIp"), m_address},
                                                      {QStringLiteral("attempt"), attemptNumber},
                                                      {QStringLiteral("maxAttempts"), maxAttempts}});
}

void Folder::sltPermanentMountFailure(QString reason)
{
    LogLine::critical(this, C_sourceFile, __LINE__,
                      QStringLiteral("[Folder] Permanent mount failure for %1 :").arg(m_aliasName), reason);
    // The manager is kept: retryConnection may still succeed.
    //% "Unable to mount %1 (%2). Please check the network configuration."
    emit folderConnectionFailed(
        m_aliasName, qtTrId("Folder_Unable_to_mount__1___2__Please_check_network_configuration").arg(m_aliasName, reason),
        true);
}

void Folder::buildModels() const
{
    if (!m_rolesModel.isEmpty())
        return;
    for (int i = 0; i < c_folderTypes.size(); ++i) {
        QVariantMap row = c_folderTypes.at(i);
        row.insert(C_keyName, typeName(EnFolderType(row.value(C_keyValue).toInt())));
        m_typesModel.append(row);
        m_typeIndexById.insert(row.value(C_keyId).toString(), i);
    }
    for (int i = 0; i < c_folderRoles.size(); ++i) {
        QVariantMap row = c_folderRoles.at(i);
        row.insert(C_keyName, getRoleName(EnFolderRole(row.value(C_keyValue).toInt())));
        m_rolesModel.append(row);
        m_roleIndexById.insert(row.value(C_keyId).toString(), i);
    }
}

void Folder::dropShareManager()
{
    if (!m_shareManager)
        return;
    // Unmounted now rather than at the deferred deletion, so that a new manager never mounts
    // over the old share and the availability published below is already true to the disk.
    disconnect(m_shareManager, nullptr, this, nullptr);
    m_shareManager->umountWindowsShare();
    m_shareManager->deleteLater();
    m_shareManager.clear();
    updateAvailability();
}
