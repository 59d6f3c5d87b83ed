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
        PreConfiguration::setParameter(QStringLiteral("configDirPath"), configDir());
        PreConfiguration::setParameter(QStringLiteral("configFilename"), QString::fromLatin1(C_fileName));
        PreConfiguration::setParameter(QStringLiteral("internalStorageDirPath"), root + "/storage/internal");
        PreConfiguration::setParameter(QStringLiteral("removableStorageDirPath"), root + "/storage/usb");
        PreConfiguration::setParameter(QStringLiteral("mountingStorageDirPath"), root + "/storage/mnt");
        PreConfiguration::setParameter(QStringLiteral("trashStorageDirPath"), root + "/storage/trash");
        PreConfiguration::setParameter(QStringLiteral("syncDatabaseFilePath"), root + "/storage/sync.db");
        PreConfiguration::setParameter(QStringLiteral("systemUpdateFolder"), root + "/update");
        writeDocument(QJsonObject());
    }

    QString root() const { return m_dir.path(); }
    QString configDir() const { return m_dir.path() + "/config"; }
    QString filePath() const { return configDir() + '/' + C_fileName; }

    // Writes the document. Unless `keepRegion`, a document without a region gets the system's
    // own time zone, so that loading it never asks the system to change zone.
    bool writeDocument(QJsonObject document, bool keepRegion = false) const
    {
        QJsonObject regional = document.value("regionalSettings").toObject();
        if (!keepRegion && !regional.contains("region")) {
            const QStringList zone = QString::fromUtf8(QTimeZone::systemTimeZoneId()).split('/');
            regional.insert("region", zone.value(0));
            regional.insert("city", zone.value(1));
            document.insert("regionalSettings", regional);
        }
        return writeBytes(QJsonDocument(document).toJson());
    }
    bool writeText(const char* json, bool keepRegion = false) const
    {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(json, &error);
        if (error.error != QJsonParseError::NoError || !document.isObject())
            return false;
        return writeDocument(document.object(), keepRegion);
    }
    bool writeBytes(const QByteArray& bytes) const
    {
        QFile file(filePath());
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
    }
    QJsonObject readDocument() const
    {
        QFile file(filePath());
        if (!file.open(QIODevice::ReadOnly))
            return QJsonObject();
        return QJsonDocument::fromJson(file.readAll()).object();
    }

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

    bool isValid() const { return m_dir.isValid(); }

private:
    QTemporaryDir m_dir;
};
