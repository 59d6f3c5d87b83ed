#include "utilities/fileutils.h"
#include "utilities/jsontools.h"
#include "utilities/logline.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace {
const char* const C_source = "platform/utilities/fileutils";

QJsonObject merged(QJsonObject base, const QJsonObject& update)
{
    for (auto it = update.constBegin(); it != update.constEnd(); ++it) {
        const QJsonValue old = base.value(it.key());
        if (old.isObject() && it.value().isObject())
            base.insert(it.key(), merged(old.toObject(), it.value().toObject()));
        else
            base.insert(it.key(), it.value());
    }
    return base;
}
}

bool isValidJsonFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QJsonParseError error;
    QJsonDocument::fromJson(file.readAll(), &error);
    return error.error == QJsonParseError::NoError;
}

bool updateJsonFile(const QString& updatePath, const QString& configPath)
{
    const qint64 size = QFileInfo(updatePath).size();
    if (size > C_maxUpdateFileSize) {
        LogLine::critical(nullptr, C_source, __LINE__,
                          QStringLiteral("ERROR: update file refused, %1 bytes is over the limit of %2 bytes:")
                              .arg(size)
                              .arg(C_maxUpdateFileSize),
                          updatePath);
        return false;
    }
    QJsonObject update;
    if (!JsonTools::readFile(updatePath, update)) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot read update file:"), updatePath);
        return false;
    }
    QJsonObject config;
    if (!JsonTools::readFile(configPath, config)) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot read configuration file:"), configPath);
        return false;
    }
    return JsonTools::writeFile(configPath, merged(config, update));
}

int copyFiles(const QString& sourceDir, const QString& targetDir,
              const std::function<bool(const QString&)>& accept)
{
    const QDir source(sourceDir);
    if (!source.exists()) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: source directory does not exist:"), sourceDir);
        return 0;
    }
    const QDir target(targetDir);
    int copied = 0;
    QDirIterator it(sourceDir, QDir::Files | QDir::Hidden | QDir::NoSymLinks | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (accept && !accept(path))
            continue;
        const QString destination = target.filePath(source.relativeFilePath(path));
        if (!QDir().mkpath(QFileInfo(destination).absolutePath())) {
            LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot create directory for:"), destination);
            continue;
        }
        const QFileInfo existing(destination);
        if ((existing.exists() || existing.isSymLink()) && !QFile::remove(destination)) {
            LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot replace file:"), destination);
            continue;
        }
        if (!QFile::copy(path, destination)) {
            LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot copy file:"), path);
            continue;
        }
        ++copied;
    }
    return copied;
}
