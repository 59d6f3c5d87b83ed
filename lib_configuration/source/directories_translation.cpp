// Placeholder bodies so the library links while path translation is written.
#include "directories.h"

QString Directories::networkAddressToLocalDrive(const QString&, bool&) const { return {}; }
QString Directories::getMountedPathFromAdress(const QString&, bool&) const { return {}; }
QString Directories::getFolderPathFromAlias(QString, QString) const { return {}; }
QString Directories::getPathRelativeToItsAlias(QString) const { return {}; }
QVariantMap Directories::getWindowsNetworkPath(QString) const { return {}; }
QString Directories::uriToPath(QString) const { return {}; }
QString Directories::getAddressFromPath(QString) const { return {}; }
bool Directories::isFileMatchingMode(QString, bool) const { return false; }
QString Directories::getPathOfFile(QString) { return {}; }
QString Directories::getNameOfFile(QString) { return {}; }
QUrl Directories::getUrlOfFile(QString) { return {}; }
