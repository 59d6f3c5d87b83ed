#include "dsyncdistantroot_p.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace {
QByteArray encoded(const QString& path)
{
    return QFile::encodeName(path);
}

unsigned long fileSystemType(int fd)
{
    struct statfs status;
    return ::fstatfs(fd, &status) == 0 ? static_cast<unsigned long>(status.f_type) : 0;
}

bool isNetworkFileSystem(unsigned long type)
{
    switch (type) {
    case 0x65735546UL: // FUSE
    case 0xFF534D42UL: // CIFS
    case 0xFE534D42UL: // SMB2
    case 0x517BUL:     // SMB
    case 0x6969UL:     // NFS
        return true;
    default:
        return false;
    }
}

bool hasExactTimes(unsigned long type)
{
    switch (type) {
    case 0xEF53UL:     // ext2/3/4
    case 0x58465342UL: // XFS
    case 0x9123683EUL: // Btrfs
    case 0x01021994UL: // tmpfs
        return true;
    default:
        return false;
    }
}

qint64 modifiedMs(const struct stat& status)
{
    return qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1000000;
}
}

DSyncDistantRoot::~DSyncDistantRoot()
{
    close();
}

bool DSyncDistantRoot::setError(const QString& what)
{
    m_error = what + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
    return false;
}

bool DSyncDistantRoot::open(const QString& path)
{
    close();
    m_path = path;
    m_fd = ::open(encoded(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (m_fd < 0)
        return setError(QStringLiteral("cannot open"));
    struct stat own;
    struct stat parent;
    if (::fstat(m_fd, &own) != 0 || ::stat(encoded(path + QStringLiteral("/..")).constData(), &parent) != 0) {
        setError(QStringLiteral("cannot read its status"));
        close();
        return false;
    }
    m_device = own.st_dev;
    m_inode = own.st_ino;
    m_mountPoint = parent.st_dev != own.st_dev;
    const unsigned long type = fileSystemType(m_fd);
    m_network = isNetworkFileSystem(type);
    m_userSpace = type == 0x65735546UL; // FUSE
    m_exactTimes = hasExactTimes(type);
    return true;
}

bool DSyncDistantRoot::isMountPoint(const QString& path)
{
    struct stat own;
    struct stat parent;
    return ::stat(encoded(path).constData(), &own) == 0
        && ::stat(encoded(path + QStringLiteral("/..")).constData(), &parent) == 0 && own.st_dev != parent.st_dev;
}

void DSyncDistantRoot::close()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

bool DSyncDistantRoot::verify()
{
    struct stat now;
    if (m_fd < 0 || ::stat(encoded(m_path).constData(), &now) != 0)
        return setError(QStringLiteral("gone"));
    if (!S_ISDIR(now.st_mode) || quint64(now.st_dev) != m_device || quint64(now.st_ino) != m_inode) {
        m_error = QStringLiteral("no longer the directory the pass started in");
        return false;
    }
    struct stat parent;
    if (m_mountPoint && ::stat(encoded(m_path + QStringLiteral("/..")).constData(), &parent) != 0)
        return setError(QStringLiteral("parent gone"));
    if (m_mountPoint && parent.st_dev == now.st_dev) {
        m_error = QStringLiteral("no longer a mount point");
        return false;
    }
    return true;
}

DSyncDistantRoot::Entry DSyncDistantRoot::entry(const QString& relativePath) const
{
    Entry entry;
    struct stat status;
    if (::fstatat(m_fd, encoded(relativePath).constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return entry;
    entry.exists = true;
    entry.isSymLink = S_ISLNK(status.st_mode);
    struct stat target;
    entry.isDirectory = S_ISDIR(status.st_mode)
        || (entry.isSymLink && ::fstatat(m_fd, encoded(relativePath).constData(), &target, 0) == 0
            && S_ISDIR(target.st_mode));
    entry.size = status.st_size;
    entry.modified = modifiedMs(status);
    return entry;
}

int DSyncDistantRoot::openForReading(const QString& relativePath)
{
    const int fd = ::openat(m_fd, encoded(relativePath).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        setError(QStringLiteral("cannot open"));
    return fd;
}

int DSyncDistantRoot::createNew(const QString& relativePath)
{
    const int fd = ::openat(m_fd, encoded(relativePath).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0)
        setError(QStringLiteral("cannot create"));
    return fd;
}

bool DSyncDistantRoot::makeDirectories(const QString& relativeDirectory, bool* created)
{
    QString directory;
    bool made = false;
    for (const QString& part : relativeDirectory.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (part == QLatin1String("."))
            continue;
        directory += (directory.isEmpty() ? QString() : QStringLiteral("/")) + part;
        made = ::mkdirat(m_fd, encoded(directory).constData(), 0777) == 0;
        if (!made && errno != EEXIST)
            return setError(QStringLiteral("cannot create ") + directory);
    }
    if (created)
        *created = made;
    return true;
}

bool DSyncDistantRoot::rename(const QString& from, const QString& to)
{
    const QByteArray source = encoded(from);
    const QByteArray target = encoded(to);
    // In one step where the file system allows it, so that a reader sees the old file or the new one.
    if (::renameat(m_fd, source.constData(), m_fd, target.constData()) == 0)
        return true;
    if (::unlinkat(m_fd, target.constData(), 0) == 0 && ::renameat(m_fd, source.constData(), m_fd, target.constData()) == 0)
        return true;
    return setError(QStringLiteral("cannot rename"));
}

bool DSyncDistantRoot::moveOut(const QString& relativePath, const QString& target)
{
    if (::renameat(m_fd, encoded(relativePath).constData(), AT_FDCWD, encoded(target).constData()) == 0)
        return true;
    return setError(QStringLiteral("cannot move"));
}

bool DSyncDistantRoot::remove(const QString& relativePath)
{
    if (::unlinkat(m_fd, encoded(relativePath).constData(), 0) == 0)
        return true;
    return setError(QStringLiteral("cannot remove ") + relativePath);
}

int DSyncDistantRoot::removeFiles(const QString& prefix, const QString& suffix)
{
    // Listed through the path, removed through the open directory: a path that came to name
    // another directory loses nothing.
    const QDir root(m_path);
    int removed = 0;
    bool failed = false;
    QDirIterator it(m_path, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QString name = it.fileName();
        if (!name.startsWith(prefix) || !name.endsWith(suffix))
            continue;
        if (remove(root.relativeFilePath(it.filePath())))
            ++removed;
        else
            failed = true;
    }
    return failed ? -1 : removed;
}
