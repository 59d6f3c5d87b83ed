// Role path resolution of the registry: the local (write) and secured (read) directory of
// each role, and their publication into the shared paths record.
#include "directories.h"
#include "directories_p.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>

#include "core/ddirectoriespaths.h"
#include "utilities/logline.h"
#include "utilities/preconfiguration.h"

using namespace DirectoriesLiterals;

namespace {

// Role key -> default path relative to internal storage, read once per process. There is
// deliberately no "certificates" row: that role falls back to its own key.
const QMap<QString, QString>& defaultRelativePaths()
{
    static const QMap<QString, QString> table = [] {
        const QList<QPair<QString, QString>> parameters = {
            {QStringLiteral("sequences"), QStringLiteral("sequencesDirPath")},
            {QStringLiteral("results"), QStringLiteral("databaseReportsDirPath")},
            {QStringLiteral("pdfResults"), QStringLiteral("pdfReportsDirPath")},
            {QStringLiteral("toolBackups"), QStringLiteral("toolBackupsDirPath")},
            {QStringLiteral("templates"), QStringLiteral("templatesDirPath")},
            {QStringLiteral("media"), QStringLiteral("mediaDirPath")},
            {QStringLiteral("scripts"), QStringLiteral("scriptsDirPath")},
        };
        QMap<QString, QString> paths;
        for (const auto& entry : parameters)
            paths.insert(entry.first, PreConfiguration::getRelativeToInternalPath(entry.second));
        return paths;
    }();
    return table;
}

// Roles whose two paths are published into the shared record, in this order.
const QStringList& publishedRoles()
{
    static const QStringList roles = {QStringLiteral("results"), QStringLiteral("pdfResults"),
                                      QStringLiteral("sequences"), QStringLiteral("templates"),
                                      QStringLiteral("media")};
    return roles;
}

// An empty path is no directory (QDir("") would be the working directory).
bool isExistingDirectory(const QString& path)
{
    return !path.isEmpty() && QFileInfo(path).isDir();
}
}

QString Directories::getDefaultRelativePathForRole(const QString& role) const
{
    // An absent parameter counts as no default: the role key is used then too.
    const QString path = defaultRelativePaths().value(role);
    return path.isEmpty() ? role : path;
}

QString Directories::getLocalFolderPathByRole(const QString& role) const
{
    // Only the role's built-in folder counts here, never a folder assigned through the roles.
    for (const QSharedPointer<Folder>& folder : m_folders.list()) {
        if (!folder || folder->id() != role || folder->type() != QLatin1String(C_typeInternal))
            continue;
        const QString path = folder->mountedPath();
        if (isExistingDirectory(path))
            return path;
        if (!QDir().mkpath(path)) {
            LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("ERROR: Cannot create local directory:"), path);
            sendError(CeDeFatalInternalFolderAccess, folder->aliasName());
        }
        return path;
    }

    LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("WARNING: No internal folder found for role:"),
                      role + QStringLiteral(", using default internal path"));
    const QString path = PreConfiguration::getInternalStorageDirectoryPath() + QLatin1Char('/')
                         + getDefaultRelativePathForRole(role);
    if (!QDir().mkpath(path)) {
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("ERROR: Cannot create default directory:"), path);
        sendError(CeDeFatalInternalFolderNotFound, role);
    }
    return path;
}

QString Directories::getSecuredFolderPathByRole(const QString& role) const
{
    const QString id = m_foldersRoles.value(role);
    if (id.isEmpty() || id == role)
        return getLocalFolderPathByRole(role);

    bool found = false;
    const QSharedPointer<Folder> folder = getFolderById(id, found);
    if (!found) {
        sendError(CeDeAliasFolderNotFound, id);
        return getLocalFolderPathByRole(role);
    }
    // Reachability is the existence of the mounted directory right now; every fallback
    // reports again.
    const QString path = folder->mountedPath();
    if (isExistingDirectory(path))
        return path;
    sendError(CeDeAliasFolderAccess, folder->aliasName());
    return getLocalFolderPathByRole(role);
}

void Directories::refreshDirectoriesPaths()
{
    if (!m_directoriesPaths) {
        LogLine::critical(this, C_sourceFile, __LINE__,
                          QStringLiteral("Directories::refreshDirectoriesPaths: m_directoriesPaths is null"));
        return;
    }
    for (const QString& role : publishedRoles()) {
        m_directoriesPaths->setPath(role, DDirectoriesPaths::C_pathTypeLoad, getSecuredFolderPathByRole(role));
        m_directoriesPaths->setPath(role, DDirectoriesPaths::C_pathTypeSave, getLocalFolderPathByRole(role));
    }
}

QString Directories::getUpdateFolderPath() const
{
    return PreConfiguration::getParameter(QStringLiteral("systemUpdateFolder")).toString();
}

QString Directories::getInternalStorageDirectoryPath()
{
    return PreConfiguration::getInternalStorageDirectoryPath();
}

QString Directories::getRemovableStorageDirectoryPath()
{
    return PreConfiguration::getRemovableStorageDirectoryPath();
}

QString Directories::getMountingStorageDirectoryPath()
{
    return PreConfiguration::getMountingStorageDirectoryPath();
}

QString Directories::getGeneralScriptsDirectoryPath()
{
    return PreConfiguration::getGeneralScriptsDirectoryPath();
}

QString Directories::getLocalDatabasesDirectoryPath() const
{
    return getLocalFolderPathByRole(QStringLiteral("results"));
}

QString Directories::getLocalMediaDirectoryPath() const
{
    return getLocalFolderPathByRole(QStringLiteral("media"));
}

QString Directories::getLocalPdfReportsDirectoryPath() const
{
    return getLocalFolderPathByRole(QStringLiteral("pdfResults"));
}

QString Directories::getLocalSequencesDirectoryPath() const
{
    return getLocalFolderPathByRole(QStringLiteral("sequences"));
}

QString Directories::getLocalTemplatesDirectoryPath() const
{
    return getLocalFolderPathByRole(QStringLiteral("templates"));
}

QString Directories::getLocalToolBackupsDirectoryPath() const
{
    return getLocalFolderPathByRole(QStringLiteral("toolBackups"));
}

QString Directories::getDatabasesDirectoryPath() const
{
    return getSecuredFolderPathByRole(QStringLiteral("results"));
}

QString Directories::getMediaDirectoryPath() const
{
    return getSecuredFolderPathByRole(QStringLiteral("media"));
}

QString Directories::getPdfReportsDirectoryPath() const
{
    return getSecuredFolderPathByRole(QStringLiteral("pdfResults"));
}

QString Directories::getSequencesDirectoryPath() const
{
    return getSecuredFolderPathByRole(QStringLiteral("sequences"));
}

QString Directories::getTemplatesDirectoryPath() const
{
    return getSecuredFolderPathByRole(QStringLiteral("templates"));
}

QString Directories::getToolBackupsDirectoryPath() const
{
    return getSecuredFolderPathByRole(QStringLiteral("toolBackups"));
}
