#pragma once
#include "utilities/station_utilities_export.h"
#include <QList>
#include <QObject>
#include <QString>

class QTimer;
class QTcpSocket;

// Mounts one network (SMB) share at a local mount point and keeps it mounted: detects the
// server by a TCP connection (port 445, or the port of a "host:port" address), tries to
// mount a bounded number of times, reports a permanent failure when the attempts are
// spent, and watches the mount so that a share that went away is mounted again.
// Back-end chosen by the pre-configuration parameter "shareMountBackend": "cifs" (default,
// kernel client through mount -t cifs, the password through a pipe named by PASSWD_FD, the
// user name and domain in a 0600 file; pre-configuration parameter "cifsMountProgramPath"
// replaces the mount program) or "fuse" (user-space helper program on libsmbclient, every
// credential on its standard input). The password never appears in a file, on a command
// line, in the environment or in a log line. The manager creates the mount point directory
// when it mounts; a failed attempt and the destructor remove it again when it is empty,
// umountWindowsShare() keeps it (the folder may rename it before mounting again). While
// mounted, a refused probe means the share is lost at once; a probe that gets no answer in
// time counts only when the next one gets none either (a busy station may not hear in time).
class STATION_UTILITIES_EXPORT WindowsShareManager : public QObject
{
    Q_OBJECT
public:
    WindowsShareManager(const QString& serverAddress, const QString& domain, const QString& login,
                        const QString& password, const QString& sharePath, const QString& mountPoint,
                        const QString& aliasName, int pollingIntervalMs, QObject* parent = nullptr);
    ~WindowsShareManager() override;

    // Retry schedule of server detection (ms between probes; the last value repeats) and
    // the number of mount attempts before a permanent failure. Defaults suit a station
    // (2000, 5000, 10000, 30000 ms; 3 attempts 2000 ms apart, so that a wrong password is
    // reported within a few seconds); tests use short values.
    void setDetectionSchedule(const QList<int>& intervalsMs);
    void setMaxMountAttempts(int attempts);
    void setMountAttemptIntervalMs(int intervalMs);
    // Longest wait for the server's answer to one TCP probe (detection and watch).
    void setServerProbeTimeoutMs(int timeoutMs);
    // Takes effect at the next start() or retryConnection().
    void setMountPoint(const QString& mountPoint);

    // The user-space mount helper of the "fuse" back-end; empty when it is not installed.
    static QString fuseHelperProgram();

    // Starts detection and mounting unless already under way or mounted.
    void start();
    // Drops what is under way and starts a new detection at once (also after a permanent
    // failure); does nothing while mounted.
    void retryConnection();
    // Releases the share and the mount point synchronously.
    void umountWindowsShare();
    bool isMounted() const;
    QString mountPoint() const;

signals:
    void connectionChanged(const QString& mountPath, bool connected);
    void serverDetectionStarted();
    void serverDetectionRetrying(int nextIntervalMs);
    void serverResponded();
    void mountAttemptStarted(int attemptNumber, int maxAttempts);
    void mountAttemptFailed(int attemptNumber, int maxAttempts, const QString& reason);
    void permanentMountFailure(const QString& reason);

private:
    class Private;
    Private* d;
};
