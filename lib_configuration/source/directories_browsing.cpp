// Browsing of the storage roots, the report template list, the internal storage size and the
// USB folder that follows the removable medium.
#include "directories.h"
#include "directories_p.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStorageInfo>

#include <algorithm>
#include <array>

#include "utilities/logline.h"
#include "utilities/pathhelpers.h"
#include "utilities/preconfiguration.h"

using namespace DirectoriesLiterals;

namespace {
const char C_templatesRole[] = "templates";
const char C_templateFilter[] = "*.lrxml";

// Template versions such as "report_V1.10.0"; case-sensitive, so "v1.2.3" is no version.
const QRegularExpression& splitVersionPattern()
{
    static const QRegularExpression pattern(QStringLiteral("V(\\d+)\\.(\\d+)\\.(\\d+)"));
    return pattern;
}

const QRegularExpression& compareVersionPattern()
{
    static const QRegularExpression pattern(QStringLiteral("V(\\d+)\\.(\\d+)\\.(\\d+)"));
    return pattern;
}

std::array<qulonglong, 3> templateVersion(const QString& fileName)
{
    const QRegularExpressionMatch match = compareVersionPattern().match(fileName);
    return {match.captured(1).toULongLong(), match.captured(2).toULongLong(), match.captured(3).toULongLong()};
}

bool isBrowsableType(const QString& folderType)
{
    return folderType == QLatin1String(C_typeInternal) || folderType == QLatin1String(C_typeRemovable)
           || folderType == QLatin1String(C_typeNetwork);
}
}

QString Directories::rootPath(const QString& folderType)
{
    if (folderType == QLatin1String("internal"))
        return PreConfiguration::getInternalStorageDirectoryPath();
    if (folderType == QLatin1String("external"))
        return PreConfiguration::getRemovableStorageDirectoryPath();
    if (folderType == QLatin1String("samba"))
        return PreConfiguration::getMountingStorageDirectoryPath();
    LogLine::critical(nullptr, C_sourceFile, __LINE__, QStringLiteral("ERROR: Unknown folder type:"), folderType);
    return QString();
}

QString Directories::getRelativePath(const QString& folderType, const QString& path) const
{
    QString relative = addLastPathSepIfNeeded(path);
    // Unknown types have no root (and rootPath is not asked, so nothing is logged).
    const QString root = isBrowsableType(folderType) ? addLastPathSepIfNeeded(rootPath(folderType)) : QString();
    if (!root.isEmpty() && relative.startsWith(root))
        relative = relative.mid(root.size());
    return delLastPathSepIfPresent(relative);
}

void Directories::setCurrentFolderType(QString folderType)
{
    if (folderType == m_currentFolderType)
        return;
    m_currentFolderType = folderType;
    emit currentPathChanged();
}

void Directories::setCurrentRelativePath(QString folderType, QString path)
{
    m_currentFolderType = folderType;
    if (folderType == QLatin1String(C_typeNetwork)) {
        // Network mounts are not browsed; the list keeps what it showed.
        m_currentDirectory.clear();
        emit currentPathChanged();
        return;
    }
    m_currentDirectory = rootPath(folderType) + QLatin1Char('/') + path;
    updateSubDirectoriesModel();
}

void Directories::goToParentDirectory()
{
    // Never above the root of the current type.
    const QString parent = QFileInfo(m_currentDirectory).path();
    const QString root = rootPath(m_currentFolderType);
    m_currentDirectory = parent.startsWith(root) ? parent : root;
    updateSubDirectoriesModel();
}

void Directories::changeDirectory(int index)
{
    const QSharedPointer<FileInfo> entry = m_subDirectories.at(index);
    if (entry) {
        m_currentDirectory = entry->absoluteFilePath();
        m_selectedEntryName.clear();
        updateSubDirectoriesModel();
    }
    // Reset quietly: the rebuild above already notified.
    m_selectedDirectoryIndex = C_InvalidIndex;
}

void Directories::selectDirectory(int index)
{
    const QSharedPointer<FileInfo> entry = m_subDirectories.at(index);
    if (entry) {
        m_selectedEntryName = entry->name();
        m_selectedDirectoryIndex = index;
    } else {
        // The previously selected name stays.
        m_selectedDirectoryIndex = C_InvalidIndex;
    }
    emit currentPathChanged();
}

void Directories::updateSubDirectoriesModel()
{
    m_subDirectories.reset();
    // An empty current directory means no browsing (QDir would list the working directory).
    if (!m_currentDirectory.isEmpty()) {
        const QFileInfoList entries = QDir(m_currentDirectory)
                                          .entryInfoList(QDir::AllDirs | QDir::NoSymLinks | QDir::NoDotAndDotDot,
                                                         QDir::Name | QDir::DirsFirst);
        const QString root = rootPath(m_currentFolderType);
        for (const QFileInfo& entry : entries)
            m_subDirectories.append(FileInfo::create(entry, root, m_currentFolderType));
    }
    emit currentPathChanged();
}

QString Directories::currentPath() const
{
    QString path = getRelativePath(m_currentFolderType, m_currentDirectory);
    if (!m_selectedEntryName.isEmpty()) {
        if (!path.isEmpty())
            path += QLatin1Char('/');
        path += m_selectedEntryName;
    }
    return path;
}

QString Directories::currentRelativePath() const
{
    const QString path = getRelativePath(m_currentFolderType, m_currentDirectory);
    return path.isEmpty() ? QStringLiteral(".") : path;
}

bool Directories::currentPathHasParent() const
{
    return !getRelativePath(m_currentFolderType, m_currentDirectory).isEmpty();
}

bool Directories::isCurrentDirectoryValid() const
{
    return !m_currentDirectory.isEmpty() && QFileInfo(m_currentDirectory).isDir();
}

QStringList Directories::getFilesForPath(QString path, QStringList filter) const
{
    if (path.isEmpty())
        return QStringList();
    return QDir(path).entryList(filter, QDir::Files | QDir::NoSymLinks, QDir::Name);
}

QStringList Directories::templatesList()
{
    const QStringList files = QDir(getSecuredFolderPathByRole(QLatin1String(C_templatesRole)))
                                  .entryList(QStringList{QLatin1String(C_templateFilter)}, QDir::Files, QDir::Name);
    QStringList versioned;
    QStringList plain;
    for (const QString& name : files) {
        if (splitVersionPattern().match(name).hasMatch())
            versioned << name;
        else
            plain << name;
    }
    // Highest version first; equal versions keep no particular order.
    std::sort(versioned.begin(), versioned.end(), [](const QString& left, const QString& right) {
        return templateVersion(left) > templateVersion(right);
    });
    return versioned + plain;
}

void Directories::updateTemplatesList()
{
    emit sigDirectoriesChanged();
}

bool Directories::getStorageSize(qint64& bytesTotal, qint64& bytesAvailable)
{
    const QString root = QFileInfo(PreConfiguration::getInternalStorageDirectoryPath()).canonicalFilePath();
    const QStorageInfo storage(root);
    if (root.isEmpty() || !storage.isValid()) {
        LogLine::critical(nullptr, C_sourceFile, __LINE__, QStringLiteral("ERROR: Failure to get root storage info"));
        return false;
    }
    bytesTotal = storage.bytesTotal();
    bytesAvailable = storage.bytesAvailable();
    if (bytesTotal < 1) {
        LogLine::critical(nullptr, C_sourceFile, __LINE__, QStringLiteral("ERROR: Invalid root storage size:"),
                          QString::number(bytesTotal));
        return false;
    }
    return true;
}

void Directories::sltRemovableStorageStateChanged(bool available)
{
    m_removableStoragePresent = available;
    updateUsbFolder(available);
}

void Directories::updateUsbFolder(bool present)
{
    bool found = false;
    getFolderByName(QLatin1String(C_usbAliasName), found);
    if (present && !found) {
        // Appended at the end; the list is not sorted again here.
        QVariantMap fields = c_defaultUsbAlias;
        fields.insert(QLatin1String(C_keyPath), QStringLiteral(""));
        addNewFolderAlias(fields);
        m_foldersRoles.insert(QLatin1String(C_roleUsb), QLatin1String(C_roleUsb));
    } else if (!present && found) {
        const QList<QSharedPointer<Folder>>& list = m_folders.list();
        for (int i = 0; i < list.size(); ++i) {
            if (list.at(i) && list.at(i)->aliasName() == QLatin1String(C_usbAliasName)) {
                m_folders.removeAt(i);
                break;
            }
        }
        m_foldersRoles.remove(QLatin1String(C_roleUsb));
    }
    emit removableStorageStateChanged(present);
}
