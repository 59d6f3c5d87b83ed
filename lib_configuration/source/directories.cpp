// Placeholder bodies so the library links while the registry is written.
#include "directories.h"

const QList<QVariantMap> Directories::c_defaultAliases;
const QVariantMap Directories::c_defaultUsbAlias;
const QStringList Directories::c_synchronizedRoles;
QString Directories::s_usbKeyPath;

Directories::Directories(const QString&, const QString&, const QString&, int, const QStringList&, QObject* parent)
    : QObject(parent) {}
Directories::~Directories() {}
void Directories::registerClass() {}
void Directories::loadSettings(QJsonValue&) {}
void Directories::saveSettings(QJsonObject&) {}
QSharedPointer<Folder> Directories::addNewFolderAlias(const QString&, const QString&, const QString&, const QString&,
                                                      const QString&, const QString&, const QString&, const QString&,
                                                      bool, bool) { return {}; }
QSharedPointer<Folder> Directories::addNewFolderAlias(const QMap<QString, QVariant>&) { return {}; }
void Directories::sortFoldersByAliasName() {}
QSharedPointer<Folder> Directories::getFolderById(const QString&, bool& found) const { found = false; return {}; }
QSharedPointer<Folder> Directories::getFolderByName(const QString&, bool& found) const { found = false; return {}; }
QList<QSharedPointer<Folder>> Directories::getAliasesWithRole(const QString&) const { return {}; }
int Directories::connectedNetworkStorageNbr() const { return 0; }
int Directories::connectedRemovableStorageNbr() const { return 0; }
bool Directories::isSelectedFolderEditable() const { return false; }
bool Directories::isSelectedFolderDeletable() const { return false; }
QString Directories::setFolderAlias(QString, QString, QString, QString, QString, QString, QString, QString, QString, bool) { return {}; }
QString Directories::getRoleNameOfFolder(QString) { return {}; }
QString Directories::getRoleOfFolder(QString) const { return {}; }
bool Directories::isThisAliasAvailable(QString) const { return false; }
int Directories::externalAliasesCountForRole(QString) const { return 0; }
void Directories::reload() {}
void Directories::deleteSelectedFolder() {}
void Directories::selectFolder(int) {}
void Directories::retryFolderConnection(QString) {}
void Directories::unmountAllNetworkShares() {}
void Directories::sendError(Directories::EnDirectoriesError, QString) const {}
void Directories::sltFolderAliasAvailabilityChanged(QString, bool) {}
void Directories::sltFolderConnectionFailed(QString, QString, bool) {}
