#pragma once
#include "utilities/station_utilities_export.h"
#include <QObject>
#include <QString>

class QTimer;

// Follows the kernel's mount table for a file system mounted at or below a directory.
// setMountDir() takes the current state without a signal; later changes emit mountStateChanged.
class STATION_UTILITIES_EXPORT DMountedDirectoryWatcher : public QObject
{
    Q_OBJECT
public:
    explicit DMountedDirectoryWatcher(QObject* parent = nullptr);
    ~DMountedDirectoryWatcher() override;

    void setMountDir(const QString& directory);
    QString mountDir() const;
    bool isMounted() const;

signals:
    void mountStateChanged(bool mounted, const QString& path);

private:
    class Private;
    Private* d;
};
