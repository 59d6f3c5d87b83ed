#pragma once
#include "station_configuration_export.h"
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSharedPointer>
#include <QString>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>

#include "utilities/simplecrypt.h"

#include "utilities/windowssharemanager.h"

// One storage folder of the station (an alias): internal directory, removable drive or
// network share. Always held through a QSharedPointer.
class STATION_CONFIGURATION_EXPORT Folder : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("QML.Element", "auto")

    Q_PROPERTY(QString id READ id NOTIFY sigChanged)
    Q_PROPERTY(QString type READ type NOTIFY sigChanged)
    Q_PROPERTY(QString typeAlias READ typeAlias NOTIFY sigChanged)
    Q_PROPERTY(QString typeName READ typeName NOTIFY sigChanged)
    Q_PROPERTY(QString aliasName READ aliasName NOTIFY sigChanged)
    Q_PROPERTY(QString domain READ domain NOTIFY sigChanged)
    Q_PROPERTY(QString address READ address NOTIFY sigChanged)
    Q_PROPERTY(QString identifier READ identifier NOTIFY sigChanged)
    Q_PROPERTY(QString password READ password NOTIFY sigChanged)
    Q_PROPERTY(QString path READ path NOTIFY sigChanged)
    Q_PROPERTY(QString displayPath READ displayPath NOTIFY sigChanged)
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY sigChanged FINAL)
    Q_PROPERTY(bool isAvailable READ isAvailable NOTIFY isAvailableChanged FINAL)
    Q_PROPERTY(bool canDelete READ canDelete NOTIFY sigChanged FINAL)
    Q_PROPERTY(QVariantList typesModel READ typesModel CONSTANT FINAL)
    Q_PROPERTY(QVariantList rolesModel READ rolesModel CONSTANT FINAL)

    Q_PROPERTY(QString C_modelKeyAddress MEMBER C_modelKeyAddress CONSTANT FINAL)
    Q_PROPERTY(QString C_modelKeyAlias MEMBER C_modelKeyAlias CONSTANT FINAL)
    Q_PROPERTY(QString C_modelKeyDomain MEMBER C_modelKeyDomain CONSTANT FINAL)
    Q_PROPERTY(QString C_modelKeyEnabled MEMBER C_modelKeyEnabled CONSTANT FINAL)
    Q_PROPERTY(QString C_modelKeyId MEMBER C_modelKeyId CONSTANT FINAL)
    Q_PROPERTY(QString C_modelKeyLogin MEMBER C_modelKeyLogin CONSTANT FINAL)
    Q_PROPERTY(QString C_modelKeyLocked MEMBER C_modelKeyLocked CONSTANT FINAL)
    Q_PROPERTY(QString C_modelKeyName MEMBER C_modelKeyName CONSTANT FINAL)
    Q_PROPERTY(QString C_modelKeyPassword MEMBER C_modelKeyPassword CONSTANT FINAL)
    Q_PROPERTY(QString C_modelKeyPath MEMBER C_modelKeyPath CONSTANT FINAL)
    Q_PROPERTY(QString C_modelKeyType MEMBER C_modelKeyType CONSTANT FINAL)
    Q_PROPERTY(QString C_modelKeyValue MEMBER C_modelKeyValue CONSTANT FINAL)
    Q_PROPERTY(QString C_folderTypeRemovable MEMBER C_folderTypeRemovable CONSTANT FINAL)
    Q_PROPERTY(QString C_folderTypeInternal MEMBER C_folderTypeInternal CONSTANT FINAL)
    Q_PROPERTY(QString C_folderTypeNetwork MEMBER C_folderTypeNetwork CONSTANT FINAL)
    Q_PROPERTY(QString C_folderRoleSequences MEMBER C_folderRoleSequences CONSTANT FINAL)
    Q_PROPERTY(QString C_folderRoleRawResults MEMBER C_folderRoleRawResults CONSTANT FINAL)
    Q_PROPERTY(QString C_folderRolePdfResults MEMBER C_folderRolePdfResults CONSTANT FINAL)
    Q_PROPERTY(QString C_folderRoleTemplates MEMBER C_folderRoleTemplates CONSTANT FINAL)
    Q_PROPERTY(QString C_folderRoleMedia MEMBER C_folderRoleMedia CONSTANT FINAL)
    Q_PROPERTY(QString C_folderRoleUsb MEMBER C_folderRoleUsb CONSTANT FINAL)
    Q_PROPERTY(QString C_folderRoleScripts MEMBER C_folderRoleScripts CONSTANT FINAL)
    Q_PROPERTY(QString C_folderRoleToolBackups MEMBER C_folderRoleToolBackups CONSTANT FINAL)
    Q_PROPERTY(QString C_folderRoleCertificates MEMBER C_folderRoleCertificates CONSTANT FINAL)
    Q_PROPERTY(QString C_folderRoleUndefined MEMBER C_folderRoleUndefined CONSTANT FINAL)

public:
    enum EnFolderType { CeFtUndefined = 0, CeFtInternal = 1, CeFtRemovable = 2, CeFtNetwork = 3 };
    Q_ENUM(EnFolderType)
    enum EnFolderRole {
        CeFrUndefined = 0, CeFrSequences = 1, CeFrRawResults = 2, CeFrPdfResults = 3,
        CeFrTemplates = 4, CeFrToolBackups = 5, CeFrMedia = 6, CeFrScripts = 7
    };
    Q_ENUM(EnFolderRole)

    static const QList<QVariantMap> c_folderTypes;
    static const QList<QVariantMap> c_folderRoles;

    // Keys shared with QML and Directories, so that QML never spells them.
    const QString C_modelKeyAddress = QStringLiteral("address");
    const QString C_modelKeyAlias = QStringLiteral("aliasName");
    const QString C_modelKeyDomain = QStringLiteral("domain");
    const QString C_modelKeyEnabled = QStringLiteral("enabled");
    const QString C_modelKeyId = QStringLiteral("id");
    const QString C_modelKeyLogin = QStringLiteral("identifier");
    const QString C_modelKeyLocked = QStringLiteral("locked");
    const QString C_modelKeyName = QStringLiteral("name");
    const QString C_modelKeyPassword = QStringLiteral("password");
    const QString C_modelKeyPath = QStringLiteral("path");
    const QString C_modelKeyType = QStringLiteral("type");
    const QString C_modelKeyValue = QStringLiteral("value");
    const QString C_folderTypeRemovable = QStringLiteral("external");
    const QString C_folderTypeInternal = QStringLiteral("internal");
    const QString C_folderTypeNetwork = QStringLiteral("samba");
    const QString C_folderRoleSequences = QStringLiteral("sequences");
    const QString C_folderRoleRawResults = QStringLiteral("results");
    const QString C_folderRolePdfResults = QStringLiteral("pdfResults");
    const QString C_folderRoleTemplates = QStringLiteral("templates");
    const QString C_folderRoleMedia = QStringLiteral("media");
    // "usb" and "certificates" have no row in c_folderRoles and no EnFolderRole value:
    // other parts of the product use them as role ids all the same.
    const QString C_folderRoleUsb = QStringLiteral("usb");
    const QString C_folderRoleScripts = QStringLiteral("scripts");
    const QString C_folderRoleToolBackups = QStringLiteral("toolBackups");
    const QString C_folderRoleCertificates = QStringLiteral("certificates");
    const QString C_folderRoleUndefined = QStringLiteral("undefined");

    // Same key for every folder; the stored password is obfuscated, not encrypted.
    static constexpr quint64 C_cryptKey = 0x07d3b95e1a4c82f6ULL;
    static constexpr int C_defaultPollingInterval = 5000;
    static constexpr int C_minimumPollingInterval = 1000;

    Folder();
    Folder(const QString& type, const QString& id, int pollingInterval);
    ~Folder() override;

    static QSharedPointer<Folder> configure(const QString& type, const QString& id, const QString& aliasName,
                                            const QString& path, const QString& domain, const QString& address,
                                            const QString& identifier, const QString& password, bool enabled,
                                            bool passwordEncrypted, int pollingInterval);

    // As configure(), without making the folder: the registry connects it first, then makes it once.
    static QSharedPointer<Folder> configureUnmade(const QString& type, const QString& id, const QString& aliasName,
                                                  const QString& path, const QString& domain, const QString& address,
                                                  const QString& identifier, const QString& password, bool enabled,
                                                  bool passwordEncrypted, int pollingInterval);

    bool update(const QString& type, const QString& aliasName, const QString& path, const QString& domain,
                const QString& address, const QString& identifier, const QString& password, bool enabled,
                bool passwordEncrypted);
    // Prepares the folder for its type: creates an internal directory, checks a removable one,
    // starts the share manager of an enabled network share. Refuses (logged, false) when the
    // type's storage root is not configured, rather than work at the file-system root.
    bool make();
    void setPollingInterval(int pollingInterval);
    int pollingInterval() const { return m_pollingInterval; }
    QJsonObject toJsonObject() const;

    static QString getRoleName(EnFolderRole role);
    static QString getRoleName(const QString& roleId);
    static QString typeName(EnFolderType type);
    QString typeName() const;
    QString typeAlias() const;
    QString displayPath() const;
    static bool isValidPath(const QString& path);
    // Why a folder of this type with this alias and path would not lie inside its storage
    // root: a ".." in the path of an internal or removable folder, an absolute internal path,
    // a network folder's name that is empty, "." or ".." or holds a separator. Empty when the
    // folder lies inside.
    static QString storageEscape(const QString& type, const QString& aliasName, const QString& path);

    Q_INVOKABLE QVariantList availableRolesModel(const QString& aliasId, const QString& currentRole, bool isUpdatable);

    static void registerClass();

    QString id() const { return m_id; }
    QString type() const { return m_type; }
    QString aliasName() const { return m_aliasName; }
    QString path() const { return m_path; }
    QString domain() const { return m_domain; }
    QString address() const { return m_address; }
    QString identifier() const { return m_identifier; }
    QString password() const { return m_password; }
    bool isEnabled() const { return m_enabled; }
    bool isAvailable() const;
    bool canDelete() const;
    QVariantList typesModel() const { buildModels(); return m_typesModel; }
    QVariantList rolesModel() const { buildModels(); return m_rolesModel; }

    // Directory of the folder on this machine (the mount point for a network share); empty
    // when it would lie outside the type's storage root (a share must lie strictly below it).
    QString mountedPath() const;
    // address + "/" + path for a network share, else "" (spelled so on purpose).
    QString networkAdress() const;
    // The live share manager of a network folder, or null.
    WindowsShareManager* shareManager() const { return m_shareManager.data(); }

signals:
    void sigChanged();
    void isAvailableChanged(bool isAvailable);
    void availabilityChanged(QString aliasName, bool availability);
    void folderStatusChanged(QString aliasName, QVariantMap statusData);
    void folderConnectionFailed(QString aliasName, QString errorMessage, bool isPermanent);

public slots:
    void removableStorageStateChanged(bool connected);
    void retryConnection();

private slots:
    void updateAvailability();
    void sltShareStatusChanged(QString path, bool connected);
    void sltRemovableStorageChanged(bool mountingState, QString path);
    void sltServerDetectionStarted();
    void sltServerDetectionRetrying(int nextIntervalMs);
    void sltServerResponded();
    void sltMountAttemptStarted(int attemptNumber, int maxAttempts);
    void sltMountAttemptFailed(int attemptNumber, int maxAttempts, QString reason);
    void sltPermanentMountFailure(QString reason);

private:
    void buildModels() const;
    // Unmounts and releases the share manager at once, then republishes availability.
    void dropShareManager();

    QString m_id;
    QString m_type;
    QString m_aliasName;
    QString m_path;
    QString m_domain;
    QString m_address;
    QString m_identifier;
    QString m_password;
    // Cipher text of the password as last read or written.
    mutable QString m_passwordCipher;
    // Built on first use: a station loads many folders that no screen ever edits.
    mutable QVariantList m_typesModel;
    mutable QMap<QString, int> m_typeIndexById;
    mutable QVariantList m_rolesModel;
    mutable QMap<QString, int> m_roleIndexById;
    SimpleCrypt m_crypt;
    QPointer<WindowsShareManager> m_shareManager;
    // Made when a removable folder first polls: most folders never need one.
    QTimer* m_availabilityTimer = nullptr;
    bool m_removableConnected = false;
    bool m_isAvailable = false;
    int m_pollingInterval = C_defaultPollingInterval;
    bool m_enabled = true;
    bool m_makeDeferred = false; // configureUnmade(): update() leaves make() to the caller
};
