#include "utilities/installpaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSettings>

#ifdef Q_OS_UNIX
#include <dlfcn.h>
#endif

namespace {

const char C_buildTreeFile[] = "station-build-tree.ini";

QString libraryDirectory()
{
#ifdef Q_OS_UNIX
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&libraryDirectory), &info) != 0 && info.dli_fname)
        return QFileInfo(QFile::decodeName(info.dli_fname)).canonicalPath();
#endif
    // A DLL sits beside its program.
    return QCoreApplication::applicationDirPath();
}

// `key` of the build tree's record, else `installed` relative to the library's directory.
QString locate(const char* key, const char* installed)
{
    static const QString directory = libraryDirectory();
    const QString record = directory + QLatin1Char('/') + QLatin1String(C_buildTreeFile);
    if (QFileInfo::exists(record))
        return QSettings(record, QSettings::IniFormat).value(QLatin1String(key)).toString();
    return QDir::cleanPath(directory + QLatin1Char('/') + QLatin1String(installed));
}

}

QString InstallPaths::catalogueDirectory()
{
    return locate("catalogue", STATION_LIB_TO_DATA "/translations");
}

QString InstallPaths::demoStationDirectory()
{
    return locate("demo", STATION_LIB_TO_DATA "/demo/station");
}

QString InstallPaths::mountHelper()
{
    return locate("helper", STATION_LIB_TO_HELPER);
}
