// Placeholder bodies so the library links while role paths are written.
#include "directories.h"

QString Directories::getLocalFolderPathByRole(const QString&) const { return {}; }
QString Directories::getSecuredFolderPathByRole(const QString&) const { return {}; }
QString Directories::getDefaultRelativePathForRole(const QString&) const { return {}; }
void Directories::refreshDirectoriesPaths() {}
QString Directories::getUpdateFolderPath() const { return {}; }
QString Directories::getInternalStorageDirectoryPath() { return {}; }
QString Directories::getRemovableStorageDirectoryPath() { return {}; }
QString Directories::getMountingStorageDirectoryPath() { return {}; }
QString Directories::getGeneralScriptsDirectoryPath() { return {}; }
QString Directories::getLocalDatabasesDirectoryPath() const { return {}; }
QString Directories::getLocalMediaDirectoryPath() const { return {}; }
QString Directories::getLocalPdfReportsDirectoryPath() const { return {}; }
QString Directories::getLocalSequencesDirectoryPath() const { return {}; }
QString Directories::getLocalTemplatesDirectoryPath() const { return {}; }
QString Directories::getLocalToolBackupsDirectoryPath() const { return {}; }
QString Directories::getDatabasesDirectoryPath() const { return {}; }
QString Directories::getPdfReportsDirectoryPath() const { return {}; }
QString Directories::getSequencesDirectoryPath() const { return {}; }
QString Directories::getTemplatesDirectoryPath() const { return {}; }
QString Directories::getMediaDirectoryPath() const { return {}; }
QString Directories::getToolBackupsDirectoryPath() const { return {}; }
