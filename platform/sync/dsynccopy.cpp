#include "dsynccopy_p.h"

#include "dsyncworker_p.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstring>

#include <cstdio>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
const int C_bufferSize = 256 * 1024;
// Below this a clone costs more than the copy it saves.
const qint64 C_cloneThreshold = 64 * 1024;

QString systemError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

bool unsupported(int error)
{
    return error == EXDEV || error == EOPNOTSUPP || error == EINVAL || error == ENOSYS || error == ENOTTY
        || error == EBADF || error == EPERM;
}

// Copies `size` bytes (or up to the end when it comes first) and says how many; errno set on failure.
bool copyContent(int source, int target, qint64 size, DSyncCopyAbilities& abilities, QByteArray& buffer, qint64& copied)
{
    copied = 0;
    if (abilities.clone && size >= C_cloneThreshold) {
        if (::ioctl(target, FICLONE, source) == 0) {
            struct stat status;
            copied = ::fstat(target, &status) == 0 ? status.st_size : -1;
            return true;
        }
        if (!unsupported(errno))
            return false;
        abilities.clone = false;
    }
    if (abilities.kernelCopy) {
        while (copied < size) {
            const ssize_t n = ::copy_file_range(source, nullptr, target, nullptr, size_t(size - copied), 0);
            if (n < 0) {
                if (copied == 0 && unsupported(errno)) {
                    abilities.kernelCopy = false;
                    break;
                }
                return false;
            }
            if (n == 0)
                return true;
            copied += n;
        }
        if (abilities.kernelCopy)
            return true;
    }
    if (buffer.size() != C_bufferSize)
        buffer.resize(C_bufferSize);
    while (copied < size) {
        const ssize_t n = ::read(source, buffer.data(), size_t(qMin<qint64>(buffer.size(), size - copied)));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return n == 0;
        for (ssize_t written = 0; written < n;) {
            const ssize_t w = ::write(target, buffer.constData() + written, size_t(n - written));
            if (w < 0 && errno == EINTR)
                continue;
            if (w <= 0) {
                if (w == 0)
                    errno = EIO;
                return false;
            }
            written += w;
        }
        copied += n;
    }
    return true;
}

qint64 modifiedMs(const struct stat& status)
{
    return qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1000000;
}
}

DSyncCopyResult dsyncCopyFile(int rootFd, const QString& rootPath, const DSyncCopyRequest& request,
                              DSyncCopyAbilities& abilities, QByteArray& buffer)
{
    DSyncCopyResult result;
    const QString distantFile = rootPath + QLatin1Char('/') + request.relativePath;
    const int source = ::open(QFile::encodeName(request.localFile).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (source < 0) {
        result.message = QStringLiteral("Cannot read the local file");
        result.detail = request.localFile + QStringLiteral(": ") + systemError(errno);
        return result;
    }
    // A hidden name of our own (rather than QTemporaryFile) keeps it to one create and one rename.
    const QString directory = QFileInfo(request.relativePath).path();
    const QString directoryPrefix = directory == QLatin1String(".") ? QString() : directory + QLatin1Char('/');
    QByteArray temporary;
    int target = -1;
    for (int attempt = 0; attempt < 8 && target < 0; ++attempt) {
        temporary = QFile::encodeName(directoryPrefix + DSyncWorker::C_temporaryPrefix
                                      + QString::number(QRandomGenerator::global()->generate64(), 36)
                                      + DSyncWorker::C_temporarySuffix);
        target = ::openat(rootFd, temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (target < 0 && errno != EEXIST)
            break;
    }
    if (target < 0) {
        const int error = errno;
        // A share may have created the file and lost the answer (a server going away): unless the
        // name is known to be absent, it counts as left, so that the next pass looks for it.
        if (error != EEXIST && ::unlinkat(rootFd, temporary.constData(), 0) != 0 && errno != ENOENT)
            result.temporaryLeft = true;
        result.message = QStringLiteral("Cannot write in the distant directory");
        result.detail = rootPath + QLatin1Char('/') + directory + QStringLiteral(": cannot create: ") + systemError(error);
        ::close(source);
        return result;
    }
    const auto discard = [&](const QString& message, int error) {
        if (target >= 0)
            ::close(target);
        ::close(source);
        result.temporaryLeft = ::unlinkat(rootFd, temporary.constData(), 0) != 0;
        result.message = message;
        result.detail = distantFile + QStringLiteral(": ") + systemError(error);
        return result;
    };
    qint64 copied = 0;
    if (!copyContent(source, target, request.size, abilities, buffer, copied))
        return discard(QStringLiteral("Cannot write the distant copy"), errno);
    // The copy keeps the local modification time (a failure here only costs a content check later).
    // Access time "now" rather than left as it is: a share's helper would have to read it first.
    const struct timespec times[2] = {{0, UTIME_NOW},
                                      {time_t(request.modified / 1000), long(request.modified % 1000) * 1000000}};
    ::futimens(target, times);
    struct stat written;
    bool known = false;
    if (request.timesExact && copied >= 0) {
        written.st_size = copied;
        written.st_mtim = times[1];
        known = true;
    } else if (!request.statAfterRename) {
        known = ::fstat(target, &written) == 0;
    }
    const int closed = ::close(target);
    target = -1;
    if (closed != 0)
        return discard(QStringLiteral("Cannot write the distant copy"), errno);
    ::close(source);
    const QByteArray final = QFile::encodeName(request.relativePath);
    bool moved = false;
    if (request.noReplace) {
        // A distant file that appeared during the copy is not ours to replace: the next pass sees it.
        moved = ::renameat2(rootFd, temporary.constData(), rootFd, final.constData(), RENAME_NOREPLACE) == 0;
        struct stat existing;
        if (!moved && (errno == EEXIST
                       || ((errno == EINVAL || errno == ENOSYS)
                           && ::fstatat(rootFd, final.constData(), &existing, AT_SYMLINK_NOFOLLOW) == 0))) {
            result.temporaryLeft = ::unlinkat(rootFd, temporary.constData(), 0) != 0;
            result.message = QStringLiteral("Distant file appeared during the copy, left as it is");
            result.detail = distantFile;
            return result;
        }
    }
    // In one step where the file system allows it, so that a reader sees the old file or the new one.
    if (!moved && ::renameat(rootFd, temporary.constData(), rootFd, final.constData()) != 0
        && (::unlinkat(rootFd, final.constData(), 0) != 0
            || ::renameat(rootFd, temporary.constData(), rootFd, final.constData()) != 0)) {
        const int error = errno;
        result.temporaryLeft = ::unlinkat(rootFd, temporary.constData(), 0) != 0;
        result.message = QStringLiteral("Cannot move the distant copy into place");
        result.detail = distantFile + QStringLiteral(": ") + systemError(error);
        return result;
    }
    if (known || ::fstatat(rootFd, final.constData(), &written, AT_SYMLINK_NOFOLLOW) == 0) {
        result.distantSize = written.st_size;
        result.distantModified = modifiedMs(written);
    }
    result.ok = true;
    return result;
}
