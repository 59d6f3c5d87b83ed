#pragma once
#include "d_zu_configuration.h"

#include "utilities/preconfiguration.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimeZone>

#include <memory>

// Writes `bytes`, creating the parent directory.
inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// The relation model as "code:name" texts.
inline QStringList relationTexts(DZuConfiguration& config)
{
    QStringList texts;
    for (const auto& relation : config.sequenceIoRelations()->list())
        texts << QString::number(relation->binaryCode()) + ':' + relation->sequenceBaseName();
    return texts;
}

// A station in a temporary directory: storage folders, pre-configuration parameters and a
// configuration directory holding "settings.json" (an empty document until a test writes one).
class TestStation
{
public:
    static constexpr const char* C_fileName = "settings.json";

    TestStation()
    {
        const QString root = m_dir.path();
        for (const char* sub : {"config", "storage/internal", "storage/usb", "storage/mnt", "storage/trash"})
            QDir(root).mkpath(QString::fromLatin1(sub));
        PreConfiguration::clear();
        const QList<QPair<const char*, QString>> parameters{
            {"configDirPath", configDir()}, {"configFilename", QString::fromLatin1(C_fileName)},
            {"internalStorageDirPath", root + "/storage/internal"}, {"removableStorageDirPath", root + "/storage/usb"},
            {"mountingStorageDirPath", root + "/storage/mnt"}, {"trashStorageDirPath", root + "/storage/trash"},
            {"syncDatabaseFilePath", root + "/storage/sync.db"}, {"systemUpdateFolder", root + "/update"}};
        for (const auto& parameter : parameters)
            PreConfiguration::setParameter(QString::fromLatin1(parameter.first), parameter.second);
        writeDocument(QJsonObject());
    }

    QString root() const { return m_dir.path(); }
    QString configDir() const { return m_dir.path() + "/config"; }
    QString filePath() const { return configDir() + '/' + C_fileName; }

    // A document without a region gets the system's own time zone, so that loading it never
    // asks the system to change zone.
    bool writeDocument(QJsonObject document) const
    {
        QJsonObject regional = document.value("regionalSettings").toObject();
        if (!regional.contains("region")) {
            const QStringList zone = QString::fromUtf8(QTimeZone::systemTimeZoneId()).split('/');
            regional.insert("region", zone.value(0));
            regional.insert("city", zone.value(1));
            document.insert("regionalSettings", regional);
        }
        return writeBytes(QJsonDocument(document).toJson());
    }
    bool writeText(const char* json) const
    {
        const QJsonDocument document = QJsonDocument::fromJson(json);
        return document.isObject() && writeDocument(document.object());
    }
    bool writeBytes(const QByteArray& bytes) const { return writeFile(filePath(), bytes); }
    QJsonObject readDocument() const { return QJsonDocument::fromJson(readFile(filePath())).object(); }

    std::unique_ptr<DZuConfiguration> create(AccessControlManager* accessControl = nullptr) const
    {
        return createIn(configDir(), accessControl);
    }
    std::unique_ptr<DZuConfiguration> createIn(const QString& configDirectory,
                                               AccessControlManager* accessControl = nullptr) const
    {
        return std::make_unique<DZuConfiguration>(configDirectory, QString::fromLatin1(C_fileName),
                                                  root() + "/storage/usb", accessControl,
                                                  root() + "/storage/sync.db", root() + "/storage/trash");
    }

private:
    QTemporaryDir m_dir;
};
