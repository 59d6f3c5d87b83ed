#pragma once
#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTranslator>
#include <QUuid>
#include <QtTest>

#include "directories.h"
#include "utilities/preconfiguration.h"

// A station's storage in a temporary directory, set as the pre-configuration of this
// process. No sync manager (editor-only) unless a test asks for one.
class RegistryStation
{
public:
    RegistryStation()
    {
        for (const char* sub : {"internal", "removable", "mnt", "usbkey"})
            QDir(m_dir.path()).mkpath(QString::fromLatin1(sub));
        PreConfiguration::clear();
        PreConfiguration::setParameter(QStringLiteral("internalStorageDirPath"), internal());
        PreConfiguration::setParameter(QStringLiteral("removableStorageDirPath"), path("removable"));
        PreConfiguration::setParameter(QStringLiteral("mountingStorageDirPath"), path("mnt"));
        PreConfiguration::setParameter(QStringLiteral("isEditorOnly"), true);
        // Relative names that differ from the role keys, so that the tables can be told apart.
        for (const auto& entry : QList<QPair<const char*, const char*>>{
                 {"sequencesDirPath", "seq"}, {"databaseReportsDirPath", "db"}, {"pdfReportsDirPath", "pdf"},
                 {"templatesDirPath", "tpl"}, {"toolBackupsDirPath", "backups"}, {"mediaDirPath", "media"},
                 {"certificatesDirPath", "certs"}, {"scriptsDirPath", "scripts"}})
            PreConfiguration::setParameter(QLatin1String(entry.first), QLatin1String(entry.second));
    }
    ~RegistryStation() { PreConfiguration::clear(); }

    QString path(const QString& relative) const { return m_dir.path() + QLatin1Char('/') + relative; }
    QString internal(const QString& relative = QString()) const
    {
        return relative.isEmpty() ? path(QStringLiteral("internal")) : path(QStringLiteral("internal/") + relative);
    }
    // A directory with nothing mounted on it: no removable medium.
    QString usbKeyPath() const { return path(QStringLiteral("usbkey")); }
    static QString newId() { return QUuid::createUuid().toString(); }

    static QJsonObject folder(const QString& id, const QString& type, const QString& alias, const QString& path,
                              bool enabled = true)
    {
        QJsonObject object{{"id", id}, {"type", type}, {"aliasName", alias}, {"path", path}, {"enabled", enabled}};
        if (type == QLatin1String("samba")) {
            object.insert("address", "127.0.0.1:9");
            object.insert("identifier", "operator");
        }
        return object;
    }

    static QJsonValue document(const QJsonArray& folders, const QJsonObject& roles = QJsonObject())
    {
        QJsonObject section;
        if (!folders.isEmpty())
            section.insert("folders", folders);
        if (!roles.isEmpty())
            section.insert("foldersRoles", roles);
        return QJsonObject{{"directories", section}};
    }

private:
    QTemporaryDir m_dir;
};

// Shared fixture of the registry tests: the English catalogue, a fresh station and registry per test.
class RegistryTestBase : public QObject
{
    Q_OBJECT

protected:
    QTranslator m_catalogue;
    std::unique_ptr<RegistryStation> m_station;
    std::unique_ptr<Directories> m_directories;

    void loadCatalogue()
    {
        QVERIFY(m_catalogue.load(QStringLiteral("station_en"), QStringLiteral(STATION_CATALOGUE_DIR)));
        QCoreApplication::installTranslator(&m_catalogue);
    }
    void makeStation()
    {
        m_station.reset(new RegistryStation);
        m_directories.reset(new Directories(QString(), QString(), m_station->usbKeyPath(), 30000, QStringList()));
    }
    void load(QJsonValue document) { m_directories->loadSettings(document); }
    QStringList aliases() const
    {
        QStringList names;
        for (const QSharedPointer<Folder>& folder : m_directories->folders()->list())
            names << folder->aliasName();
        return names;
    }

private slots:
    void initTestCase() { loadCatalogue(); }
    void init() { makeStation(); }
    void cleanup()
    {
        // Releasing the registry releases its folders, which unmount their shares.
        m_directories.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_station.reset();
    }
};
