#pragma once
#include "core/station_core_export.h"
#include <QHash>
#include <QObject>
#include <QString>

// Resolved directory of each role, per path type, shared with the rest of the application.
class STATION_CORE_EXPORT DDirectoriesPaths : public QObject
{
    Q_OBJECT
public:
    static const QString C_pathTypeLoad;   // "load"
    static const QString C_pathTypeSave;   // "save"

    explicit DDirectoriesPaths(QObject* parent = nullptr);

    void setPath(const QString& role, const QString& pathType, const QString& path);
    Q_INVOKABLE QString path(const QString& role, const QString& pathType) const;

signals:
    void pathChanged(const QString& role, const QString& pathType, const QString& path);

private:
    QHash<QString, QString> m_paths;
};
