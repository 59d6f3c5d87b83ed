#pragma once
#include <QMap>
#include <QStringList>

#include "sync/dsyncmanager.h"

// Controllable stand-in for the sync manager: records every call the registry makes and
// lets the test decide idleness and the wipe's outcome.
class FakeSyncManager : public DSyncManager
{
    Q_OBJECT
public:
    explicit FakeSyncManager(QObject* parent)
        : DSyncManager(QString(), QString(), 30000, QStringList(), parent)
    {
    }

    void addDirectory(const QString& alias, const QString& localPath, const QString& remotePath) override
    {
        calls << QStringLiteral("add:%1:%2:%3").arg(alias, localPath, remotePath);
        registered.insert(alias, localPath);
    }
    void delDirectory(const QString& alias) override
    {
        calls << QStringLiteral("del:%1").arg(alias);
        registered.remove(alias);
    }
    QString getLocalDirSynchronizedAlias(const QString& localPath) const override
    {
        return registered.key(localPath);
    }
    bool isAliasDirectorySynchronised(const QString& alias) const override { return registered.contains(alias); }
    void setDirectoryAvailability(const QString& alias, bool available) override
    {
        calls << QStringLiteral("avail:%1:%2").arg(alias).arg(available);
    }
    void pauseAll() override { calls << QStringLiteral("pause"); paused = true; }
    void resumeAll() override { calls << QStringLiteral("resume"); paused = false; }
    bool isPausedAll() const override { return paused; }
    bool isIdle() const override { return idle; }
    void requestSync() override { calls << QStringLiteral("requestSync"); }
    bool wipeSyncDatabaseFile() override
    {
        calls << QStringLiteral("wipe");
        return wipeSucceeds;
    }

    void setIdle(bool value)
    {
        idle = value;
        emit idleChanged(value);
    }

    QStringList calls;
    QMap<QString, QString> registered;   // alias -> local path
    bool paused = false;
    bool idle = true;
    bool wipeSucceeds = true;
};
