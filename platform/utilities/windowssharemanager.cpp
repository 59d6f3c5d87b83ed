#include "utilities/windowssharemanager.h"
#include "utilities/logline.h"
#include "utilities/preconfiguration.h"
#include "utilities/mounttable.h"
#include "windowssharemanager_p.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryFile>
#include <QTimer>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {
const char* const C_source = "platform/utilities/windowssharemanager";

const QList<int> C_defaultSchedule {2000, 5000, 10000, 30000};
const int C_defaultMaxAttempts = 3;
const int C_defaultAttemptIntervalMs = 2000;
const int C_defaultProbeTimeoutMs = 3000;
// Silent probes in a row after which a mounted share counts as lost.
const int C_silentProbesForLoss = 2;
const int C_mountTimeoutMs = 30000;
const int C_unmountTimeoutMs = 10000;
const int C_helperExitTimeoutMs = 3000;

enum class EnState { Idle, Detecting, WaitingToProbe, Mounting, WaitingToMount, Mounted, Failed };

// A process that inherits one more descriptor: the read end of the pipe holding the password.
// The descriptor is close-on-exec in this process, so no other child ever gets it.
class PasswordPipeProcess : public QProcess
{
public:
    PasswordPipeProcess(int descriptor, QObject* parent)
        : QProcess(parent)
        , m_descriptor(descriptor)
    {
    }

protected:
    void setupChildProcess() override
    {
        // In the child, between fork and exec.
        ::fcntl(m_descriptor, F_SETFD, 0);
    }

private:
    int m_descriptor;
};

// A pipe already holding `bytes` (at most a few hundred, far below the pipe's capacity), its
// write end closed; returns the read end (close-on-exec, above the standard descriptors) or -1.
int pipeHolding(const QByteArray& bytes)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return -1;
    int readEnd = ends[0];
    if (readEnd <= STDERR_FILENO) {
        // Only when a standard descriptor was closed: the child gets new standard descriptors.
        readEnd = ::fcntl(ends[0], F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        ::close(ends[0]);
    }
    qint64 written = 0;
    while (readEnd >= 0 && written < bytes.size()) {
        const ssize_t n = ::write(ends[1], bytes.constData() + written, size_t(bytes.size() - written));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        written += n;
    }
    ::close(ends[1]);
    if (written != bytes.size()) {
        if (readEnd >= 0)
            ::close(readEnd);
        return -1;
    }
    return readEnd;
}

// What a mount program wrote on stderr, on one line, or a description of how it ended.
QString failureReason(QProcess* process)
{
    const QString written = QString::fromLocal8Bit(process->readAllStandardError()).simplified();
    if (!written.isEmpty())
        return written.left(400);
    if (process->exitStatus() == QProcess::CrashExit)
        return QStringLiteral("%1 ended abnormally").arg(QFileInfo(process->program()).fileName());
    if (process->exitCode() == 0)
        return QStringLiteral("%1 ended").arg(QFileInfo(process->program()).fileName());
    return QStringLiteral("%1 failed with exit code %2")
        .arg(QFileInfo(process->program()).fileName())
        .arg(process->exitCode());
}
} // namespace

class WindowsShareManager::Private
{
public:
    explicit Private(WindowsShareManager* manager)
        : q(manager)
    {
    }

    WindowsShareManager* q;
    QString serverAddress;
    QString domain;
    QString login;
    QString password;
    QString sharePath;
    QString mountPoint;
    QString aliasName;
    int pollingIntervalMs = 5000;

    QList<int> schedule = C_defaultSchedule;
    int maxAttempts = C_defaultMaxAttempts;
    int attemptIntervalMs = C_defaultAttemptIntervalMs;
    int probeTimeoutMs = C_defaultProbeTimeoutMs;

    EnState state = EnState::Idle;
    bool mounted = false;
    bool fuse = false;
    bool createdMountPoint = false;
    int scheduleIndex = 0;
    int attempt = 0;
    int silentProbes = 0; // probes of a mounted share in a row that got no answer in time
    ShareMount::Target target;
    QString activeMountPoint; // normalised mount point of the attempt or mount under way

    QTcpSocket* socket = nullptr;
    QTimer probeTimeout;
    QTimer stepTimer;  // next probe or next mount attempt
    QTimer watchTimer; // while mounted
    QTimer mountTimeout;
    QProcess* process = nullptr; // mount command (cifs) or mount helper (fuse)
    QTemporaryFile* credentialsFile = nullptr;

    void beginDetection();
    void probe();
    void probeSucceeded();
    // `silent`: the time-out, no answer at all (a refusal or an error is an answer).
    void probeFailed(const QString& reason, bool silent = false);
    void beginAttempt();
    void launchCifs(const ShareMount::Target& target);
    void launchFuse(const ShareMount::Target& target);
    void processFinished();
    void helperOutput();
    void attemptFailed(const QString& reason);
    void becomeMounted();
    void watch();
    void connectionLost(const QString& reason);
    void stopActivity();
    void releaseMount();
    void dropProcess(int graceMs = 0);
    void dropCredentialsFile();
    void removeCreatedMountPoint();
    bool isMountedNow() const;
};

void WindowsShareManager::Private::beginDetection()
{
    stopActivity();
    target = ShareMount::parseTarget(serverAddress, sharePath);
    fuse = PreConfiguration::getParameter(QStringLiteral("shareMountBackend")).toString() == QLatin1String("fuse");
    state = EnState::Detecting;
    scheduleIndex = 0;
    LogLine::debug(q, C_source, __LINE__, QStringLiteral("Server detection started for"), aliasName);
    emit q->serverDetectionStarted();
    if (!target.isValid()) {
        // Nothing to probe: the attempt fails at once with the reason.
        state = EnState::Failed;
        const QString reason =
            QStringLiteral("invalid server address or share path: %1 %2").arg(serverAddress, sharePath);
        LogLine::critical(q, C_source, __LINE__, QStringLiteral("Cannot mount"),
                          aliasName + QStringLiteral(": ") + reason);
        emit q->permanentMountFailure(reason);
        return;
    }
    probe();
}

void WindowsShareManager::Private::probe()
{
    if (socket->state() != QAbstractSocket::UnconnectedState)
        socket->abort();
    probeTimeout.start(probeTimeoutMs);
    socket->connectToHost(target.host, target.port);
}

void WindowsShareManager::Private::probeSucceeded()
{
    probeTimeout.stop();
    socket->abort();
    silentProbes = 0;
    if (state != EnState::Detecting)
        return;
    LogLine::debug(q, C_source, __LINE__, QStringLiteral("Server responded:"), serverAddress);
    emit q->serverResponded();
    attempt = 0;
    beginAttempt();
}

void WindowsShareManager::Private::probeFailed(const QString& reason, bool silent)
{
    probeTimeout.stop();
    socket->abort();
    if (state == EnState::Mounted) {
        // A refusal is the server's answer; silence may be a station too busy to hear it in
        // time: the share counts as lost after a second silent probe in a row.
        if (silent) {
            if (++silentProbes < C_silentProbesForLoss) {
                LogLine::debug(q, C_source, __LINE__, QStringLiteral("Server silent, asked again at the next check:"),
                               aliasName);
                return;
            }
        }
        connectionLost(QStringLiteral("server does not answer: ") + reason);
        return;
    }
    if (state != EnState::Detecting)
        return;
    const int next = schedule.at(qMin(scheduleIndex, schedule.size() - 1));
    ++scheduleIndex;
    state = EnState::WaitingToProbe;
    LogLine::debug(q, C_source, __LINE__, QStringLiteral("Server not reachable, next probe in ms:"),
                   QStringLiteral("%1 (%2: %3)").arg(next).arg(serverAddress, reason));
    stepTimer.start(next);
    emit q->serverDetectionRetrying(next);
}

void WindowsShareManager::Private::beginAttempt()
{
    ++attempt;
    state = EnState::Mounting;
    emit q->mountAttemptStarted(attempt, maxAttempts);
    if (state != EnState::Mounting) // a receiver stopped or restarted us
        return;

    activeMountPoint = MountTable::normalizedPath(mountPoint);
    if (!MountTable::entryAt(activeMountPoint).mountPoint.isEmpty()) {
        // Left over from an earlier run (a dead helper leaves such a mount): detach it first.
        LogLine::debug(q, C_source, __LINE__, QStringLiteral("Releasing a stale mount at"), activeMountPoint);
        releaseMount();
    }
    if (!QFileInfo(activeMountPoint).isDir()) {
        if (!QDir().mkpath(activeMountPoint)) {
            attemptFailed(QStringLiteral("cannot create the mount point %1").arg(activeMountPoint));
            return;
        }
        createdMountPoint = true;
    }
    if (fuse)
        launchFuse(target);
    else
        launchCifs(target);
}

void WindowsShareManager::Private::launchCifs(const ShareMount::Target& mountTarget)
{
    // The file holds the user name and domain only; the password goes through a pipe.
    credentialsFile = new QTemporaryFile(QDir::tempPath() + QStringLiteral("/station-share-XXXXXX"));
    // QTemporaryFile creates the file with mode 0600.
    if (!credentialsFile->open()) {
        dropCredentialsFile();
        attemptFailed(QStringLiteral("cannot create a credentials file"));
        return;
    }
    const ShareMount::Command command = ShareMount::cifsMountCommand(mountTarget, activeMountPoint,
                                                                     credentialsFile->fileName(), login, password,
                                                                     domain);
    if (!command.error.isEmpty()) {
        dropCredentialsFile();
        attemptFailed(command.error);
        return;
    }
    const bool written = credentialsFile->write(command.credentials) == command.credentials.size()
        && credentialsFile->flush();
    credentialsFile->close();
    if (!written) {
        dropCredentialsFile();
        attemptFailed(QStringLiteral("cannot write the credentials file"));
        return;
    }
    const int passwordDescriptor = pipeHolding(command.password);
    if (passwordDescriptor < 0) {
        dropCredentialsFile();
        attemptFailed(QStringLiteral("cannot create a pipe for the password"));
        return;
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // mount.cifs prefers these to PASSWD_FD: none may come from our own environment.
    environment.remove(QStringLiteral("PASSWD"));
    environment.remove(QStringLiteral("PASSWD_FILE"));
    environment.insert(QStringLiteral("PASSWD_FD"), QString::number(passwordDescriptor));
    process = new PasswordPipeProcess(passwordDescriptor, q);
    process->setProgram(command.program);
    process->setArguments(command.arguments);
    process->setProcessEnvironment(environment);
    process->setStandardInputFile(QProcess::nullDevice());
    QObject::connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), q,
                     [this]() { processFinished(); });
    QObject::connect(process, &QProcess::errorOccurred, q, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            processFinished();
    });
    LogLine::debug(q, C_source, __LINE__, QStringLiteral("Mounting"),
                   mountTarget.uncPath(false) + QStringLiteral(" at ") + activeMountPoint);
    mountTimeout.start(C_mountTimeoutMs);
    process->start();
    // The child holds its own copy once started (or failed to start): ours goes.
    ::close(passwordDescriptor);
}

void WindowsShareManager::Private::launchFuse(const ShareMount::Target& mountTarget)
{
    const ShareMount::Command command = ShareMount::fuseMountCommand(ShareMount::fuseHelperProgram(), mountTarget,
                                                                     activeMountPoint, login, password, domain);
    if (!command.error.isEmpty()) {
        attemptFailed(command.error);
        return;
    }
    process = new QProcess(q);
    process->setProgram(command.program);
    process->setArguments(command.arguments);
    QObject::connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), q,
                     [this]() { processFinished(); });
    QObject::connect(process, &QProcess::errorOccurred, q, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            processFinished();
    });
    QObject::connect(process, &QProcess::readyReadStandardOutput, q, [this]() { helperOutput(); });
    LogLine::debug(q, C_source, __LINE__, QStringLiteral("Mounting with the user-space helper"),
                   mountTarget.uncPath(true) + QStringLiteral(" at ") + activeMountPoint);
    mountTimeout.start(C_mountTimeoutMs);
    process->start();
    // The credentials go through the pipe only; the helper reads them up to the end of input.
    process->write(command.credentials);
    process->closeWriteChannel();
}

// The helper says "ready" once the kernel holds the mount.
void WindowsShareManager::Private::helperOutput()
{
    if (!process || state != EnState::Mounting)
        return;
    if (process->readAllStandardOutput().contains("ready")) {
        if (isMountedNow())
            becomeMounted();
        else
            attemptFailed(QStringLiteral("the mount helper reported a mount that the kernel does not show"));
    }
}

void WindowsShareManager::Private::processFinished()
{
    if (!process)
        return;
    if (state == EnState::Mounted) {
        // Only the helper outlives the mount step: its end takes the share away.
        const QString reason = failureReason(process);
        connectionLost(QStringLiteral("mount helper ended: ") + reason);
        return;
    }
    if (state != EnState::Mounting)
        return;
    const bool succeeded = !fuse && process->error() != QProcess::FailedToStart
        && process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0;
    const QString reason = process->error() == QProcess::FailedToStart
        ? QStringLiteral("cannot run %1: %2").arg(process->program(), process->errorString())
        : failureReason(process);
    dropCredentialsFile();
    if (succeeded && isMountedNow()) {
        dropProcess();
        becomeMounted();
    } else {
        attemptFailed(succeeded ? QStringLiteral("mount succeeded but the kernel does not show it") : reason);
    }
}

void WindowsShareManager::Private::attemptFailed(const QString& reason)
{
    mountTimeout.stop();
    if (process) {
        dropProcess();
        releaseMount();
    }
    dropCredentialsFile();
    removeCreatedMountPoint();
    LogLine::critical(q, C_source, __LINE__,
                      QStringLiteral("Mount attempt %1/%2 failed for").arg(attempt).arg(maxAttempts),
                      aliasName + QStringLiteral(": ") + reason);
    const int failedAttempt = attempt;
    if (attempt < maxAttempts) {
        state = EnState::WaitingToMount;
        stepTimer.start(attemptIntervalMs);
        emit q->mountAttemptFailed(failedAttempt, maxAttempts, reason);
        return;
    }
    state = EnState::Failed;
    emit q->mountAttemptFailed(failedAttempt, maxAttempts, reason);
    LogLine::critical(q, C_source, __LINE__, QStringLiteral("Giving up mounting"),
                      aliasName + QStringLiteral(": ") + reason);
    emit q->permanentMountFailure(reason);
}

void WindowsShareManager::Private::becomeMounted()
{
    mountTimeout.stop();
    state = EnState::Mounted;
    mounted = true;
    silentProbes = 0;
    watchTimer.start(qMax(100, pollingIntervalMs));
    LogLine::debug(q, C_source, __LINE__, QStringLiteral("Share mounted at"), activeMountPoint);
    emit q->connectionChanged(mountPoint, true);
}

// While mounted: the mount must still be in the table, the helper alive and the server answering.
void WindowsShareManager::Private::watch()
{
    if (state != EnState::Mounted)
        return;
    if (!isMountedNow()) {
        connectionLost(QStringLiteral("the mount disappeared"));
        return;
    }
    if (fuse && (!process || process->state() != QProcess::Running)) {
        connectionLost(QStringLiteral("the mount helper is not running"));
        return;
    }
    if (socket->state() == QAbstractSocket::UnconnectedState)
        probe();
}

void WindowsShareManager::Private::connectionLost(const QString& reason)
{
    LogLine::critical(q, C_source, __LINE__, QStringLiteral("Share connection lost for"),
                      aliasName + QStringLiteral(": ") + reason);
    watchTimer.stop();
    if (process)
        process->disconnect(q);
    releaseMount();
    dropProcess(C_helperExitTimeoutMs);
    mounted = false;
    removeCreatedMountPoint();
    state = EnState::Idle;
    emit q->connectionChanged(mountPoint, false);
    if (state == EnState::Idle) // unless a receiver already restarted or stopped us
        beginDetection();
}

// Stops timers, probe and any mount step under way; a live mount stays.
void WindowsShareManager::Private::stopActivity()
{
    stepTimer.stop();
    probeTimeout.stop();
    mountTimeout.stop();
    if (socket->state() != QAbstractSocket::UnconnectedState)
        socket->abort();
    if (state != EnState::Mounted && process) {
        dropProcess();
        releaseMount();
        dropCredentialsFile();
        removeCreatedMountPoint();
    }
}

// Unmounts synchronously, lazily when a plain unmount does not succeed.
void WindowsShareManager::Private::releaseMount()
{
    const QString path = activeMountPoint.isEmpty() ? MountTable::normalizedPath(mountPoint) : activeMountPoint;
    const MountTable::Entry entry = MountTable::entryAt(path);
    if (entry.mountPoint.isEmpty())
        return;
    const bool fuseMount = entry.fileSystemType.startsWith(QLatin1String("fuse"));
    const QList<QStringList> commands = ShareMount::unmountCommands(path, fuseMount);
    for (const QStringList& command : commands) {
        QProcess unmount;
        unmount.setStandardInputFile(QProcess::nullDevice());
        unmount.start(command.first(), command.mid(1));
        if (!unmount.waitForFinished(C_unmountTimeoutMs)) {
            unmount.kill();
            unmount.waitForFinished(1000);
        }
        if (MountTable::entryAt(path).mountPoint.isEmpty())
            return;
        LogLine::debug(q, C_source, __LINE__, QStringLiteral("Unmount did not release the share:"),
                       command.join(QLatin1Char(' ')) + QStringLiteral(" -> ")
                           + QString::fromLocal8Bit(unmount.readAllStandardError()).trimmed());
    }
    LogLine::critical(q, C_source, __LINE__, QStringLiteral("Cannot unmount"), path);
}

// Ends the mount program or helper; a helper ends by itself within `graceMs` once its mount
// is gone, otherwise it is terminated.
void WindowsShareManager::Private::dropProcess(int graceMs)
{
    if (!process)
        return;
    QProcess* ending = process;
    process = nullptr;
    ending->disconnect(q);
    if (ending->state() != QProcess::NotRunning) {
        if (graceMs <= 0 || !ending->waitForFinished(graceMs)) {
            ending->terminate();
            if (!ending->waitForFinished(C_helperExitTimeoutMs)) {
                ending->kill();
                ending->waitForFinished(1000);
            }
        }
    }
    ending->deleteLater();
}

void WindowsShareManager::Private::dropCredentialsFile()
{
    if (!credentialsFile)
        return;
    credentialsFile->remove();
    delete credentialsFile;
    credentialsFile = nullptr;
}

void WindowsShareManager::Private::removeCreatedMountPoint()
{
    if (!createdMountPoint || activeMountPoint.isEmpty())
        return;
    if (MountTable::entryAt(activeMountPoint).mountPoint.isEmpty() && QDir().rmdir(activeMountPoint))
        createdMountPoint = false;
}

bool WindowsShareManager::Private::isMountedNow() const
{
    const MountTable::Entry entry = MountTable::entryAt(activeMountPoint);
    if (entry.mountPoint.isEmpty())
        return false;
    return fuse ? entry.fileSystemType.startsWith(QLatin1String("fuse")) : true;
}

WindowsShareManager::WindowsShareManager(const QString& serverAddress, const QString& domain, const QString& login,
                                         const QString& password, const QString& sharePath,
                                         const QString& mountPoint, const QString& aliasName, int pollingIntervalMs,
                                         QObject* parent)
    : QObject(parent)
    , d(new Private(this))
{
    d->serverAddress = serverAddress;
    d->domain = domain;
    d->login = login;
    d->password = password;
    d->sharePath = sharePath;
    d->mountPoint = mountPoint;
    d->aliasName = aliasName;
    d->pollingIntervalMs = pollingIntervalMs > 0 ? pollingIntervalMs : 5000;

    d->socket = new QTcpSocket(this);
    connect(d->socket, &QTcpSocket::connected, this, [this]() { d->probeSucceeded(); });
    connect(d->socket, &QTcpSocket::errorOccurred, this, [this]() { d->probeFailed(d->socket->errorString()); });
    d->probeTimeout.setSingleShot(true);
    connect(&d->probeTimeout, &QTimer::timeout, this, [this]() {
        // A loop kept busy past the time-out sees the timer and the server's answer together,
        // the timer possibly first: the socket is asked before the server is given up.
        if (d->socket->state() == QAbstractSocket::ConnectingState && d->socket->waitForConnected(0))
            return; // connected() has been handled
        if (d->socket->state() == QAbstractSocket::ConnectedState)
            d->probeSucceeded();
        else
            d->probeFailed(QStringLiteral("no answer"), true);
    });
    d->stepTimer.setSingleShot(true);
    connect(&d->stepTimer, &QTimer::timeout, this, [this]() {
        if (d->state == EnState::WaitingToProbe) {
            d->state = EnState::Detecting;
            d->probe();
        } else if (d->state == EnState::WaitingToMount) {
            d->beginAttempt();
        }
    });
    d->mountTimeout.setSingleShot(true);
    connect(&d->mountTimeout, &QTimer::timeout, this,
            [this]() { d->attemptFailed(QStringLiteral("no mount after %1 ms").arg(C_mountTimeoutMs)); });
    connect(&d->watchTimer, &QTimer::timeout, this, [this]() { d->watch(); });
}

WindowsShareManager::~WindowsShareManager()
{
    blockSignals(true);
    umountWindowsShare();
    d->removeCreatedMountPoint();
    delete d;
}

void WindowsShareManager::setDetectionSchedule(const QList<int>& intervalsMs)
{
    QList<int> schedule;
    for (int interval : intervalsMs) {
        if (interval > 0)
            schedule.append(interval);
    }
    if (schedule.isEmpty()) {
        LogLine::critical(this, C_source, __LINE__,
                          QStringLiteral("Empty detection schedule, keeping the current one"));
        return;
    }
    d->schedule = schedule;
}

void WindowsShareManager::setMaxMountAttempts(int attempts)
{
    d->maxAttempts = qMax(1, attempts);
}

void WindowsShareManager::setMountAttemptIntervalMs(int intervalMs)
{
    d->attemptIntervalMs = qMax(0, intervalMs);
}

void WindowsShareManager::setServerProbeTimeoutMs(int timeoutMs)
{
    d->probeTimeoutMs = qMax(100, timeoutMs);
}

void WindowsShareManager::setMountPoint(const QString& mountPoint)
{
    d->mountPoint = mountPoint;
}

QString WindowsShareManager::fuseHelperProgram()
{
    return ShareMount::fuseHelperProgram();
}

void WindowsShareManager::start()
{
    if (d->state != EnState::Idle && d->state != EnState::Failed)
        return;
    d->beginDetection();
}

void WindowsShareManager::retryConnection()
{
    if (d->state == EnState::Mounted)
        return;
    d->beginDetection();
}

void WindowsShareManager::umountWindowsShare()
{
    const bool wasMounted = d->mounted;
    d->watchTimer.stop();
    d->stopActivity();
    if (d->process) {
        // The helper of a live mount: unmounting ends it.
        d->process->disconnect(this);
        d->releaseMount();
        d->dropProcess(C_helperExitTimeoutMs);
    }
    d->releaseMount();
    d->dropCredentialsFile();
    d->mounted = false;
    d->state = EnState::Idle;
    if (wasMounted) {
        LogLine::debug(this, C_source, __LINE__, QStringLiteral("Share unmounted from"), d->activeMountPoint);
        emit connectionChanged(d->mountPoint, false);
    }
}

bool WindowsShareManager::isMounted() const
{
    return d->mounted;
}

QString WindowsShareManager::mountPoint() const
{
    return d->mountPoint;
}
