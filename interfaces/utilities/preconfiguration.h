#pragma once
#include "utilities/station_utilities_export.h"
#include <QString>
#include <QVariant>

// Process-wide table of station pre-configuration parameters, loaded from the station's
// pre-configuration file (a JSON object). Relative path values are resolved against the
// directory of that file when loaded: a string parameter whose name ends in "Path" or "Folder"
// (such as "configDirPath", "systemUpdateFolder") and whose value is a relative path becomes
// absolute.
class STATION_UTILITIES_EXPORT PreConfiguration
{
public:
    // Replaces the table; false (and the table left as it was) when the file is missing or
    // does not hold a JSON object.
    static bool load(const QString& filePath);
    static QVariant getParameter(const QString& name);
    static void setParameter(const QString& name, const QVariant& value);
    static void clear();

    static QString getInternalStorageDirectoryPath();   // "internalStorageDirPath"
    static QString getRemovableStorageDirectoryPath();  // "removableStorageDirPath"
    static QString getMountingStorageDirectoryPath();   // "mountingStorageDirPath"
    static QString getTrashStorageDirectoryPath();      // "trashStorageDirPath"
    static QString syncDatabaseFilePath();              // "syncDatabaseFilePath"
    static QString getGeneralScriptsDirectoryPath();    // "generalScriptsDirPath"

    // dir + "/" + "configUpdatePackageFilename" (default "configuration_update.zip")
    static QString backupConfigFilePath(const QString& dir);
    // dir + "/" + "configUpdateFilename"
    static QString configUpdateFilePath(const QString& dir);
    // dir + "/" + "configFilename"
    static QString configurationFilePath(const QString& dir);

    // The parameter's path relative to the internal storage root: an absolute path under the
    // root loses the root, a relative one is kept, an absent parameter gives "".
    static QString getRelativeToInternalPath(const QString& parameterName);
};
