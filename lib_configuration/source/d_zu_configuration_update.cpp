// Configuration update package, applied at start-up before the document is loaded.
#include "d_zu_configuration.h"

#include "utilities/fileutils.h"
#include "utilities/logline.h"
#include "utilities/preconfiguration.h"
#include "utilities/zip.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

namespace {
const char C_source[] = "lib_configuration/source/d_zu_configuration";

// Only the elements file and the configuration update file are taken from a package, each
// only when it parses as JSON; the names are read from the pre-configuration at each call.
bool isAcceptedUpdateFile(const QString& filePath)
{
    const QString name = QFileInfo(filePath).fileName();
    if (name == PreConfiguration::getParameter(QStringLiteral("elementsFilename")).toString())
        return isValidJsonFile(filePath);
    if (name == PreConfiguration::getParameter(QStringLiteral("configUpdateFilename")).toString())
        return isValidJsonFile(filePath);
    LogLine::critical(nullptr, C_source, __LINE__,
                      QStringLiteral("WARNING: unexpected file ignored in configuration update:"), name);
    return false;
}
}

void DZuConfiguration::processConfigurationUpdate(const QString& zipPath, const QString& configDir)
{
    if (!QFile::exists(zipPath)) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: Configuration file not found:"), zipPath);
        return;
    }

    const QString temporaryPath = QDir::tempPath() + QLatin1Char('/') + QUuid::createUuid().toString();
    QDir temporaryDir(temporaryPath);
    if (!temporaryDir.exists() && !temporaryDir.mkpath(QStringLiteral("."))) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: Unable to create temporary directory:"),
                          temporaryPath);
        return;
    }

    const QList<QByteArray> entries = Zip::Unzip(zipPath.toUtf8(), temporaryPath.toUtf8(), QByteArray());
    if (entries.isEmpty()) {
        // The package stays for the next start; so does the (empty) temporary directory.
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: Cannot open update zip file:"), zipPath);
        return;
    }

    copyFiles(temporaryPath, configDir, isAcceptedUpdateFile);
    temporaryDir.removeRecursively();

    if (!QFile::remove(zipPath))
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot delete file:"), zipPath);

    // The directory decides, not the package: an update file left from an earlier run is merged too.
    const QString updateFilePath = PreConfiguration::configUpdateFilePath(configDir);
    const QString configurationFilePath = PreConfiguration::configurationFilePath(configDir);
    if (QFile::exists(updateFilePath)) {
        updateJsonFile(updateFilePath, configurationFilePath);
        if (!QFile::remove(updateFilePath))
            LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot delete update file:"),
                              updateFilePath);
    }
}
