#include "utilities/fileinfo.h"

#include <QDir>

QSharedPointer<FileInfo> FileInfo::create(const QFileInfo& info, const QString& rootPath, const QString& folderType)
{
    return QSharedPointer<FileInfo>(new FileInfo(info, rootPath, folderType), &QObject::deleteLater);
}

FileInfo::FileInfo(const QFileInfo& info, const QString& rootPath, const QString& folderType)
    : m_info(info)
    , m_rootPath(rootPath)
    , m_folderType(folderType)
{
}

QString FileInfo::name() const
{
    return m_info.fileName();
}

QString FileInfo::absoluteFilePath() const
{
    return m_info.absoluteFilePath();
}

QString FileInfo::relativePath() const
{
    if (m_rootPath.isEmpty())
        return m_info.absoluteFilePath();
    const QString relative = QDir(m_rootPath).relativeFilePath(m_info.absoluteFilePath());
    return relative == QLatin1String(".") ? QString() : relative;
}

QString FileInfo::folderType() const
{
    return m_folderType;
}

bool FileInfo::isDir() const
{
    return m_info.isDir();
}

qint64 FileInfo::size() const
{
    return m_info.size();
}

QDateTime FileInfo::lastModified() const
{
    return m_info.lastModified();
}
