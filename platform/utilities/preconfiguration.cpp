#include "utilities/preconfiguration.h"
#include "utilities/logline.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutex>
#include <QVariantMap>

namespace {
const char* const C_source = "platform/utilities/preconfiguration";

// The table is read from any thread (loggers, sync worker); writes are rare.
QMutex g_mutex;
QVariantMap g_parameters;

bool isPathParameter(const QString& name)
{
    return name.endsWith(QLatin1String("Path")) || name.endsWith(QLatin1String("Folder"));
}

QString stringParameter(const QString& name)
{
    return PreConfiguration::getParameter(name).toString();
}

QString fileInDirectory(const QString& dir, const QString& fileName)
{
    return dir + QLatin1Char('/') + fileName;
}
}

bool PreConfiguration::load(const QString& filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot open pre-configuration file:"), filePath);
        return false;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: pre-configuration file is not a JSON object:"), filePath);
        return false;
    }

    const QDir base = QFileInfo(filePath).absoluteDir();
    QVariantMap parameters = document.object().toVariantMap();
    for (auto it = parameters.begin(); it != parameters.end(); ++it) {
        if (!isPathParameter(it.key()) || it.value().type() != QVariant::String)
            continue;
        const QString value = it.value().toString();
        if (!value.isEmpty() && QDir::isRelativePath(value))
            it.value() = QDir::cleanPath(base.absoluteFilePath(value));
    }

    QMutexLocker lock(&g_mutex);
    g_parameters = parameters;
    return true;
}

QVariant PreConfiguration::getParameter(const QString& name)
{
    QMutexLocker lock(&g_mutex);
    return g_parameters.value(name);
}

void PreConfiguration::setParameter(const QString& name, const QVariant& value)
{
    QMutexLocker lock(&g_mutex);
    g_parameters.insert(name, value);
}

void PreConfiguration::clear()
{
    QMutexLocker lock(&g_mutex);
    g_parameters.clear();
}

QString PreConfiguration::getInternalStorageDirectoryPath()
{
    return stringParameter(QStringLiteral("internalStorageDirPath"));
}

QString PreConfiguration::getRemovableStorageDirectoryPath()
{
    return stringParameter(QStringLiteral("removableStorageDirPath"));
}

QString PreConfiguration::getMountingStorageDirectoryPath()
{
    return stringParameter(QStringLiteral("mountingStorageDirPath"));
}

QString PreConfiguration::getTrashStorageDirectoryPath()
{
    return stringParameter(QStringLiteral("trashStorageDirPath"));
}

QString PreConfiguration::syncDatabaseFilePath()
{
    return stringParameter(QStringLiteral("syncDatabaseFilePath"));
}

QString PreConfiguration::getGeneralScriptsDirectoryPath()
{
    return stringParameter(QStringLiteral("generalScriptsDirPath"));
}

QString PreConfiguration::backupConfigFilePath(const QString& dir)
{
    const QVariant name = getParameter(QStringLiteral("configUpdatePackageFilename"));
    return fileInDirectory(dir, name.isValid() ? name.toString() : QStringLiteral("configuration_update.zip"));
}

QString PreConfiguration::configUpdateFilePath(const QString& dir)
{
    return fileInDirectory(dir, stringParameter(QStringLiteral("configUpdateFilename")));
}

QString PreConfiguration::configurationFilePath(const QString& dir)
{
    return fileInDirectory(dir, stringParameter(QStringLiteral("configFilename")));
}

QString PreConfiguration::getRelativeToInternalPath(const QString& parameterName)
{
    const QVariant value = getParameter(parameterName);
    if (!value.isValid())
        return QString();
    const QString path = QDir::cleanPath(value.toString());
    if (value.toString().isEmpty() || QDir::isRelativePath(path))
        return value.toString().isEmpty() ? QString() : path;

    const QString root = QDir::cleanPath(getInternalStorageDirectoryPath());
    if (root.isEmpty())
        return path;
    if (path == root)
        return QString();
    const QString rootWithSeparator = root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/');
    if (path.startsWith(rootWithSeparator))
        return path.mid(rootWithSeparator.size());
    return path;
}
