#pragma once
#include "utilities/station_utilities_export.h"
#include <QDateTime>
#include <QFileInfo>
#include <QObject>
#include <QSharedPointer>

// One file-system entry, as a QML row.
class STATION_UTILITIES_EXPORT FileInfo : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString absoluteFilePath READ absoluteFilePath CONSTANT)
    Q_PROPERTY(QString relativePath READ relativePath CONSTANT)
    Q_PROPERTY(QString folderType READ folderType CONSTANT)
    Q_PROPERTY(bool isDir READ isDir CONSTANT)
    Q_PROPERTY(qint64 size READ size CONSTANT)
    Q_PROPERTY(QDateTime lastModified READ lastModified CONSTANT)
public:
    static QSharedPointer<FileInfo> create(const QFileInfo& info, const QString& rootPath, const QString& folderType);

    QString name() const;              // file name
    QString absoluteFilePath() const;
    QString relativePath() const;      // relative to the root path given at creation
    QString folderType() const;
    bool isDir() const;
    qint64 size() const;
    QDateTime lastModified() const;
    const QFileInfo& fileInfo() const { return m_info; }

private:
    FileInfo(const QFileInfo& info, const QString& rootPath, const QString& folderType);
    QFileInfo m_info;
    QString m_rootPath;
    QString m_folderType;
};
