#include "sambaserver.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <arpa/inet.h>
#include <cerrno>
#include <csignal>
#include <netinet/in.h>
#include <pwd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {
const char* const C_user = "stationtest";
const char* const C_share = "share";
const char* const C_readOnlyShare = "readonly";

QString findProgram(const QString& name)
{
    const QString inPath = QStandardPaths::findExecutable(name);
    if (!inPath.isEmpty())
        return inPath;
    return QStandardPaths::findExecutable(name, {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/local/sbin"),
                                                 QStringLiteral("/sbin"), QStringLiteral("/usr/bin")});
}

bool userExists()
{
    return ::getpwnam(C_user) != nullptr;
}

sockaddr_in loopback(quint16 port)
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

// A port the kernel hands out for 127.0.0.1 and that is free right now.
quint16 pickPort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0)
        return 0;
    sockaddr_in address = loopback(0);
    quint16 port = 0;
    socklen_t length = sizeof(address);
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0
        && ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    ::close(fd);
    return port;
}
} // namespace

SambaServer::SambaServer() = default;

SambaServer::~SambaServer()
{
    stop();
}

bool SambaServer::available()
{
    if (findProgram(QStringLiteral("smbd")).isEmpty() || findProgram(QStringLiteral("smbpasswd")).isEmpty())
        return false;
    return userExists() || (::geteuid() == 0 && !findProgram(QStringLiteral("useradd")).isEmpty());
}

bool SambaServer::ensureUser()
{
    if (userExists())
        return true;
    QProcess useradd;
    useradd.start(findProgram(QStringLiteral("useradd")),
                  {QStringLiteral("--no-create-home"), QStringLiteral("--shell"), QStringLiteral("/usr/sbin/nologin"),
                   QString::fromLatin1(C_user)});
    // Another test started at the same time may have created it meanwhile.
    if ((!useradd.waitForFinished(30000) || useradd.exitCode() != 0) && !userExists()) {
        m_error = QStringLiteral("cannot create user %1: %2")
                      .arg(QString::fromLatin1(C_user), QString::fromLocal8Bit(useradd.readAllStandardError()));
        return false;
    }
    return userExists();
}

bool SambaServer::portIsFree(quint16 port) const
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0)
        return false;
    const int one = 1;
    ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &one, sizeof(one));
    sockaddr_in address = loopback(port);
    const bool free = ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
    ::close(fd);
    return free;
}

bool SambaServer::accepting() const
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0)
        return false;
    sockaddr_in address = loopback(m_port);
    const bool connected = ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
    ::close(fd);
    return connected;
}

bool SambaServer::prepare()
{
    if (m_prepared)
        return true;
    if (!available()) {
        m_error = QStringLiteral("smbd or smbpasswd is not installed");
        return false;
    }
    if (!ensureUser())
        return false;
    m_dir = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/sambaserver-XXXXXX"));
    if (!m_dir->isValid()) {
        m_error = QStringLiteral("cannot create a temporary directory: ") + m_dir->errorString();
        return false;
    }
    // The server's connection processes run as the test user: they must reach the shares.
    QFile::setPermissions(m_dir->path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner
                                             | QFileDevice::ReadGroup | QFileDevice::ExeGroup
                                             | QFileDevice::ReadOther | QFileDevice::ExeOther);
    QDir root(m_dir->path());
    for (const char* sub : {"private", "lock", "state", "cache", "pid", "ncalrpc", "log", C_share, C_readOnlyShare})
        root.mkpath(QString::fromLatin1(sub));
    for (const char* share : {C_share, C_readOnlyShare})
        QFile::setPermissions(root.filePath(QString::fromLatin1(share)),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner
                                  | QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ExeGroup
                                  | QFileDevice::ReadOther | QFileDevice::WriteOther | QFileDevice::ExeOther);

    m_port = pickPort();
    if (m_port == 0) {
        m_error = QStringLiteral("no free loopback port");
        return false;
    }
    m_password = QStringLiteral("St-%1").arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0'));

    const QString conf = QStringLiteral(
                             "[global]\n"
                             "  workgroup = WORKGROUP\n"
                             "  server role = standalone server\n"
                             "  interfaces = 127.0.0.1\n"
                             "  bind interfaces only = yes\n"
                             "  smb ports = %2\n"
                             "  disable netbios = yes\n"
                             "  private dir = %1/private\n"
                             "  lock directory = %1/lock\n"
                             "  state directory = %1/state\n"
                             "  cache directory = %1/cache\n"
                             "  pid directory = %1/pid\n"
                             "  ncalrpc dir = %1/ncalrpc\n"
                             "  log file = %1/log/log.smbd\n"
                             "  passdb backend = tdbsam\n"
                             "  rpc start on demand helpers = no\n"
                             "  load printers = no\n"
                             "  printing = bsd\n"
                             "  printcap name = /dev/null\n"
                             "  disable spoolss = yes\n"
                             "  map to guest = never\n"
                             "  server min protocol = SMB2_02\n"
                             "[%3]\n"
                             "  path = %1/%3\n"
                             "  read only = no\n"
                             "  valid users = %5\n"
                             "  force user = root\n"
                             "[%4]\n"
                             "  path = %1/%4\n"
                             "  read only = yes\n"
                             "  valid users = %5\n")
                             .arg(m_dir->path())
                             .arg(m_port)
                             .arg(QString::fromLatin1(C_share), QString::fromLatin1(C_readOnlyShare),
                                  QString::fromLatin1(C_user));
    QFile confFile(root.filePath(QStringLiteral("smb.conf")));
    if (!confFile.open(QIODevice::WriteOnly) || confFile.write(conf.toUtf8()) < 0) {
        m_error = QStringLiteral("cannot write smb.conf");
        return false;
    }
    confFile.close();

    QProcess smbpasswd;
    smbpasswd.start(findProgram(QStringLiteral("smbpasswd")),
                    {QStringLiteral("-c"), confFile.fileName(), QStringLiteral("-s"), QStringLiteral("-a"),
                     QString::fromLatin1(C_user)});
    if (!smbpasswd.waitForStarted(10000)) {
        m_error = QStringLiteral("cannot run smbpasswd");
        return false;
    }
    smbpasswd.write((m_password + QLatin1Char('\n') + m_password + QLatin1Char('\n')).toUtf8());
    smbpasswd.closeWriteChannel();
    if (!smbpasswd.waitForFinished(30000) || smbpasswd.exitCode() != 0) {
        m_error = QStringLiteral("smbpasswd failed: ") + QString::fromLocal8Bit(smbpasswd.readAllStandardError());
        return false;
    }
    m_prepared = true;
    return true;
}

bool SambaServer::start()
{
    if (isRunning())
        return true;
    m_error.clear();
    if (!prepare())
        return false;

    // A second smbd on a busy port starts without complaint: make sure ours is the one answering.
    QDeadlineTimer portDeadline(10000);
    while (!portIsFree(m_port)) {
        if (portDeadline.hasExpired()) {
            m_error = QStringLiteral("port %1 is taken by another process").arg(m_port);
            return false;
        }
        QThread::msleep(100);
    }

    const QString conf = QDir(m_dir->path()).filePath(QStringLiteral("smb.conf"));
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process->setStandardOutputFile(QProcess::nullDevice());
    // smbd signals its whole process group when it stops: it must get its own session,
    // so no "--no-process-group".
    m_process->start(findProgram(QStringLiteral("smbd")),
                     {QStringLiteral("--foreground"),
                      QStringLiteral("--configfile=") + conf,
                      QStringLiteral("--log-basename=") + QDir(m_dir->path()).filePath(QStringLiteral("log"))});
    if (!m_process->waitForStarted(10000)) {
        m_error = QStringLiteral("cannot start smbd: ") + m_process->errorString();
        m_process.reset();
        return false;
    }
    m_sessionId = static_cast<int>(m_process->processId());
    QDeadlineTimer deadline(15000);
    while (!accepting()) {
        if (m_process->state() != QProcess::Running || deadline.hasExpired()) {
            m_error = QStringLiteral("smbd does not accept connections on port %1\n%2").arg(m_port).arg(logTail());
            stop();
            return false;
        }
        m_process->waitForFinished(50);
    }
    return true;
}

void SambaServer::stop()
{
    if (m_process) {
        if (m_process->state() != QProcess::NotRunning) {
            m_process->terminate();
            if (!m_process->waitForFinished(10000)) {
                m_process->kill();
                m_process->waitForFinished(5000);
            }
        }
        m_process.reset();
    }
    killStragglers();
}

// smbd leads its own session: its helper and connection processes share that session id.
void SambaServer::killStragglers()
{
    if (m_sessionId <= 0)
        return;
    QDeadlineTimer deadline(5000);
    for (;;) {
        QList<pid_t> remaining;
        const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString& entry : entries) {
            bool isPid = false;
            const pid_t pid = entry.toInt(&isPid);
            if (!isPid || pid == ::getpid())
                continue;
            QFile statFile(QStringLiteral("/proc/%1/stat").arg(pid));
            if (!statFile.open(QIODevice::ReadOnly))
                continue;
            // "pid (comm) state ppid pgrp session ..." where comm may hold spaces.
            const QByteArray stat = statFile.readAll();
            const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
            if (fields.size() > 3 && fields.at(0) != "Z" && fields.at(3).toInt() == m_sessionId)
                remaining.append(pid);
        }
        if (remaining.isEmpty())
            break;
        const int signal = deadline.hasExpired() ? SIGKILL : SIGTERM;
        for (pid_t pid : remaining)
            ::kill(pid, signal);
        QThread::msleep(100);
    }
    m_sessionId = 0;
}

bool SambaServer::isRunning() const
{
    return m_process && m_process->state() == QProcess::Running;
}

QString SambaServer::logTail() const
{
    if (!m_dir)
        return QString();
    QFile log(QDir(m_dir->path()).filePath(QStringLiteral("log/log.smbd")));
    if (!log.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromLocal8Bit(log.readAll().right(2000));
}

QString SambaServer::address() const
{
    return QStringLiteral("127.0.0.1:%1").arg(m_port);
}

quint16 SambaServer::port() const
{
    return m_port;
}

QString SambaServer::shareName() const
{
    return QString::fromLatin1(C_share);
}

QString SambaServer::shareDirectory() const
{
    return m_dir ? QDir(m_dir->path()).filePath(QString::fromLatin1(C_share)) : QString();
}

QString SambaServer::readOnlyShareName() const
{
    return QString::fromLatin1(C_readOnlyShare);
}

QString SambaServer::readOnlyShareDirectory() const
{
    return m_dir ? QDir(m_dir->path()).filePath(QString::fromLatin1(C_readOnlyShare)) : QString();
}

QString SambaServer::user() const
{
    return QString::fromLatin1(C_user);
}

QString SambaServer::password() const
{
    return m_password;
}

QString SambaServer::errorString() const
{
    return m_error;
}
