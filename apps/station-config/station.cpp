#include "station.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include "access/accesscontrolmanager.h"
#include "d_zu_configuration.h"
#include "folder.h"
#include "settingsdocument.h"
#include "utilities/installpaths.h"
#include "utilities/jsontools.h"
#include "utilities/preconfiguration.h"

namespace {
const char C_preconfigurationFile[] = "preconfiguration.json";

QString demoSource()
{
    const QString candidate = InstallPaths::demoStationDirectory();
    return QFileInfo::exists(candidate + QLatin1Char('/') + QLatin1String(C_preconfigurationFile)) ? candidate : QString();
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
            // Private to the owner: a station's document holds share passwords.
            const QFile::Permissions executable = QFile::permissions(destination) & QFile::ExeOwner;
            QFile::setPermissions(destination, QFile::ReadOwner | QFile::WriteOwner | executable);
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
    // The configuration singleton lives until the process ends. Folders of shares and removable
    // drives unmount and stop watching as they go; internal folders hold nothing to release and
    // end with the process (a thousand of them took longer to destroy than to print).
    if (m_configuration) {
        auto* folders = m_configuration->directories()->folders();
        QList<QSharedPointer<Folder>> internal;
        for (const QSharedPointer<Folder>& folder : folders->list()) {
            if (folder && folder->type() == QLatin1String("internal"))
                internal << folder;
        }
        folders->reset(internal);
    }
    delete m_accessControl;
}

bool Station::open(bool loadFolders, QString& error, bool lockDocument)
{
    const QString preconfiguration = m_directory + QLatin1Char('/') + QLatin1String(C_preconfigurationFile);
    if (!PreConfiguration::load(preconfiguration)) {
        error = QStringLiteral("cannot load %1").arg(preconfiguration);
        return false;
    }
    if (lockDocument && !lock(error))
        return false;
    m_accessControl = new AccessControlManager;
    m_configuration = DZuConfiguration::initInstance(m_accessControl);
    if (!m_configuration) {
        error = QStringLiteral("the configuration library did not start");
        return false;
    }
    QObject::connect(m_accessControl, &AccessControlManager::userNameChanged,
                     m_configuration, &DZuConfiguration::sltUserNameChanged);
    m_configuration->loadUsers();
    m_foldersLoaded = loadFolders;
    if (loadFolders)
        m_configuration->loadDirectories();
    m_knownDigest = m_configuration->loadedDocumentDigest();
    return true;
}

bool Station::lock(QString& error)
{
    const QString path = m_configuration
        ? documentPath()
        : PreConfiguration::configurationFilePath(PreConfiguration::getParameter(QStringLiteral("configDirPath")).toString());
    if (!m_lock)
        m_lock = std::make_unique<SettingsLock>(path);
    return m_lock->lock(C_lockTimeoutMs, &error);
}

void Station::unlock()
{
    if (m_lock)
        m_lock->unlock();
}

QString Station::documentPath() const
{
    return m_configuration->documentFilePath();
}

bool Station::isDocumentUsable() const
{
    return m_configuration && m_configuration->isDocumentUsable();
}

QString Station::unusableMessage() const
{
    QString text = m_configuration->documentDescription() + QStringLiteral("; nothing was changed");
    const auto versions = history().versions();
    if (!versions.isEmpty())
        text += QStringLiteral(". %1 earlier version(s) are kept; the newest, of %2, is restored by 'rollback 0'")
                    .arg(versions.size())
                    .arg(versions.first().time.toLocalTime().toString(Qt::ISODate));
    return text;
}

QJsonObject Station::readDocument() const
{
    QJsonObject document;
    JsonTools::readFile(documentPath(), document);
    return document;
}

Station::EnSaveResult Station::save(const QString& reason, QString& error,
                                    const std::function<void(QJsonObject&)>& adjust, bool overwrite)
{
    const QString path = documentPath();
    // The file is read once; as this program loaded it, it is not parsed again.
    SettingsDocument::Reading onDisk;
    QFile file(path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const QJsonObject loaded = m_configuration->loadedDocument();
    if (!file.isOpen() || file.error() != QFileDevice::NoError) {
        onDisk = SettingsDocument::read(path); // says why: missing or unreadable
    } else if (!loaded.isEmpty() && SettingsDocument::digest(bytes) == m_knownDigest) {
        onDisk.state = SettingsDocument::CeLoaded;
        onDisk.object = loaded;
        onDisk.bytes = bytes;
        onDisk.digest = m_knownDigest;
    } else {
        onDisk = SettingsDocument::parse(bytes);
    }
    if (onDisk.state == SettingsDocument::CeUnusable) {
        error = SettingsDocument::describe(onDisk, path) + QStringLiteral("; nothing was changed");
        return CeUnusable;
    }
    if (!overwrite && onDisk.digest != m_knownDigest) {
        error = QStringLiteral("%1 was changed by another program since it was loaded; nothing was changed").arg(path);
        return CeConflict;
    }

    QJsonObject next = onDisk.object;
    if (adjust)
        adjust(next);
    m_configuration->completeDocument(next);
    if (!history().record(onDisk, next, reason, &error)) {
        error += QStringLiteral("; nothing was changed");
        return CeHistoryFailed;
    }
    if (!m_configuration->saveCompletedSettings(next)) {
        error = QStringLiteral("cannot write %1: %2").arg(path, m_configuration->lastSaveError());
        return CeWriteFailed;
    }
    m_knownDigest = m_configuration->loadedDocumentDigest();
    return CeSaved;
}

void Station::reload()
{
    m_configuration->reload();
    m_configuration->loadUsers();
    if (m_foldersLoaded)
        m_configuration->loadDirectories();
    m_knownDigest = m_configuration->loadedDocumentDigest();
}
