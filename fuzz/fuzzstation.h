#pragma once
// A scratch station for the fuzz harnesses: temporary storage folders, pre-configuration
// parameters pointing at them, an application object, and no system changes.
#include "d_zu_configuration.h"
#include "utilities/preconfiguration.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

namespace FuzzStation {

inline QTemporaryDir& directory()
{
    static QTemporaryDir dir;
    return dir;
}

// Creates the application, the folders and the parameters once; later calls return at once.
inline void setUp()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    // The default zone equals the system's, so a load never asks to change it.
    qputenv("TZ", "Europe/Paris");
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    new QCoreApplication(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    const QString root = directory().path();
    for (const char* sub : {"config", "storage/internal", "storage/usb", "storage/mnt", "storage/trash", "update"})
        QDir(root).mkpath(QString::fromLatin1(sub));
    PreConfiguration::clear();
    const QList<QPair<const char*, QString>> parameters{
        {"configDirPath", root + "/config"}, {"configFilename", QStringLiteral("settings.json")},
        {"internalStorageDirPath", root + "/storage/internal"}, {"removableStorageDirPath", root + "/storage/usb"},
        {"mountingStorageDirPath", root + "/storage/mnt"}, {"trashStorageDirPath", root + "/storage/trash"},
        {"syncDatabaseFilePath", root + "/storage/sync.db"}, {"systemUpdateFolder", root + "/update"},
        {"elementsFilename", QStringLiteral("elements.json")},
        {"configUpdateFilename", QStringLiteral("configuration_update.json")},
        {"configUpdatePackageFilename", QStringLiteral("configuration_update.zip")}};
    for (const auto& parameter : parameters)
        PreConfiguration::setParameter(QString::fromLatin1(parameter.first), parameter.second);
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("true"));
    DZuConfiguration::setCompositorConfigPath(QString());
}

inline QString path(const char* relative)
{
    return directory().path() + QLatin1Char('/') + QLatin1String(relative);
}

inline bool write(const QString& file, const uint8_t* data, size_t size)
{
    QFile out(file);
    return out.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && out.write(reinterpret_cast<const char*>(data), qint64(size)) == qint64(size);
}

}
