// Placeholder bodies so the library links while browsing is written.
#include "directories.h"
#include "utilities/logline.h"
#include "utilities/preconfiguration.h"

static const char C_sourceFile[] = "lib_configuration/source/directories";

QString Directories::rootPath(const QString& folderType)
{
    if (folderType == QLatin1String("internal"))
        return PreConfiguration::getInternalStorageDirectoryPath();
    if (folderType == QLatin1String("external"))
        return PreConfiguration::getRemovableStorageDirectoryPath();
    if (folderType == QLatin1String("samba"))
        return PreConfiguration::getMountingStorageDirectoryPath();
    LogLine::critical(nullptr, C_sourceFile, __LINE__, QStringLiteral("ERROR: Unknown folder type:"), folderType);
    return QString();
}
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
