// Placeholder bodies so the library links while browsing is written.
#include "directories.h"

QString Directories::rootPath(const QString&) { return {}; }
QString Directories::getRelativePath(const QString&, const QString&) const { return {}; }
void Directories::updateSubDirectoriesModel() {}
QString Directories::currentPath() const { return {}; }
QString Directories::currentRelativePath() const { return {}; }
bool Directories::currentPathHasParent() const { return false; }
QStringList Directories::templatesList() { return {}; }
void Directories::updateTemplatesList() {}
bool Directories::getStorageSize(qint64&, qint64&) { return false; }
QStringList Directories::getFilesForPath(QString, QStringList) const { return {}; }
bool Directories::isCurrentDirectoryValid() const { return false; }
void Directories::setCurrentFolderType(QString) {}
void Directories::setCurrentRelativePath(QString, QString) {}
void Directories::goToParentDirectory() {}
void Directories::changeDirectory(int) {}
void Directories::selectDirectory(int) {}
void Directories::sltRemovableStorageStateChanged(bool) {}
