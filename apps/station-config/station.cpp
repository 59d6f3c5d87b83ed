#include "station.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include "access/accesscontrolmanager.h"
#include "d_zu_configuration.h"
#include "utilities/jsontools.h"
#include "utilities/preconfiguration.h"

namespace {
const char C_preconfigurationFile[] = "preconfiguration.json";

QString demoSource()
{
    for (const QString& candidate : { QStringLiteral(STATION_DEMO_SOURCE_DIR), QStringLiteral(STATION_DEMO_INSTALLED_DIR) }) {
        if (QFileInfo::exists(candidate + QLatin1Char('/') + QLatin1String(C_preconfigurationFile)))
            return candidate;
    }
    return QString();
}
}

bool Station::copyDirectory(const QString& source, const QString& target)
{
    if (!QDir().mkpath(target))
        return false;
    QDirIterator it(source, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QString destination = target + QLatin1Char('/') + QDir(source).relativeFilePath(it.filePath());
        if (it.fileInfo().isDir()) {
            if (!QDir().mkpath(destination))
                return false;
        } else if (!QFile::copy(it.filePath(), destination)) {
            return false;
        } else {
            QFile::setPermissions(destination, QFile::permissions(destination) | QFile::WriteOwner);
        }
    }
    return true;
}

QString Station::resolveDirectory(const QString& requested, QString& error)
{
    if (!requested.isEmpty()) {
        const QString directory = QFileInfo(requested).absoluteFilePath();
        if (!QFileInfo::exists(directory + QLatin1Char('/') + QLatin1String(C_preconfigurationFile))) {
            error = QStringLiteral("%1 holds no %2").arg(directory, QLatin1String(C_preconfigurationFile));
            return QString();
        }
        return directory;
    }

    // The demo station is copied once, so that commands may change it freely.
    const QString copy = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/station-config/demo-station");
    if (QFileInfo::exists(copy + QLatin1Char('/') + QLatin1String(C_preconfigurationFile)))
        return copy;
    const QString source = demoSource();
    if (source.isEmpty()) {
        error = QStringLiteral("the demo station is not installed");
        return QString();
    }
    if (!copyDirectory(source, copy)) {
        error = QStringLiteral("cannot copy the demo station to %1").arg(copy);
        return QString();
    }
    return copy;
}

Station::Station(const QString& directory)
    : m_directory(directory)
{
}

Station::~Station()
{
    // The configuration singleton lives until the process ends; its folders unmount then.
    if (m_configuration)
        m_configuration->directories()->folders()->reset();
    delete m_accessControl;
}

bool Station::open(bool loadFolders, QString& error)
{
    const QString preconfiguration = m_directory + QLatin1Char('/') + QLatin1String(C_preconfigurationFile);
    if (!PreConfiguration::load(preconfiguration)) {
        error = QStringLiteral("cannot load %1").arg(preconfiguration);
        return false;
    }
    m_accessControl = new AccessControlManager;
    m_configuration = DZuConfiguration::initInstance(m_accessControl);
    if (!m_configuration) {
        error = QStringLiteral("the configuration library did not start");
        return false;
    }
    QObject::connect(m_accessControl, &AccessControlManager::userNameChanged,
                     m_configuration, &DZuConfiguration::sltUserNameChanged);
    m_configuration->loadUsers();
    if (loadFolders)
        m_configuration->loadDirectories();
    return true;
}

QString Station::documentPath() const
{
    return m_configuration->configurationDirectoryPath() + QLatin1Char('/') + m_configuration->configurationFileName();
}

QJsonObject Station::readDocument() const
{
    QJsonObject document;
    JsonTools::readFile(documentPath(), document);
    return document;
}

bool Station::save()
{
    QJsonObject root = readDocument();
    return m_configuration->saveSettings(root);
}
