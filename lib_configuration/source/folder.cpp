// Placeholder bodies so the library links while the folder implementation is written.
#include "folder.h"
#include <QJsonObject>

const QList<QVariantMap> Folder::c_folderTypes;
const QList<QVariantMap> Folder::c_folderRoles;

Folder::Folder() {}
Folder::Folder(const QString&, const QString&, int) {}
Folder::~Folder() {}
QSharedPointer<Folder> Folder::configure(const QString&, const QString&, const QString&, const QString&,
                                         const QString&, const QString&, const QString&, const QString&, bool,
                                         bool, int) { return {}; }
bool Folder::update(const QString&, const QString&, const QString&, const QString&, const QString&,
                    const QString&, const QString&, bool, bool) { return false; }
bool Folder::make() { return false; }
void Folder::setPollingInterval(int) {}
QJsonObject Folder::toJsonObject() const { return {}; }
QString Folder::getRoleName(EnFolderRole) { return {}; }
QString Folder::getRoleName(const QString&) { return {}; }
QString Folder::typeName(EnFolderType) { return {}; }
QString Folder::typeName() const { return {}; }
QString Folder::typeAlias() const { return {}; }
QString Folder::displayPath() const { return {}; }
bool Folder::isValidPath(const QString&) { return false; }
QVariantList Folder::availableRolesModel(const QString&, const QString&, bool) { return {}; }
void Folder::registerClass() {}
bool Folder::isAvailable() const { return false; }
bool Folder::canDelete() const { return false; }
QString Folder::mountedPath() const { return {}; }
QString Folder::networkAdress() const { return {}; }
void Folder::removableStorageStateChanged(bool) {}
void Folder::retryConnection() {}
void Folder::updateAvailability() {}
void Folder::sltShareStatusChanged(QString, bool) {}
void Folder::sltRemovableStorageChanged(bool, QString) {}
void Folder::sltServerDetectionStarted() {}
void Folder::sltServerDetectionRetrying(int) {}
void Folder::sltServerResponded() {}
void Folder::sltMountAttemptStarted(int, int) {}
void Folder::sltMountAttemptFailed(int, int, QString) {}
void Folder::sltPermanentMountFailure(QString) {}
void Folder::buildModels() {}
void Folder::dropShareManager() {}
