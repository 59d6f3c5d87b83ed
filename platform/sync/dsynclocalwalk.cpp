#include "dsynclocalwalk_p.h"

#include <QFile>

#include <algorithm>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
// A directory sorts as its name followed by '/', so that its files take their place in the
// byte order of the full paths.
bool lessInPathOrder(const QByteArray& a, bool aDirectory, const QByteArray& b, bool bDirectory)
{
    const int common = std::min(a.size(), b.size());
    const int compared = std::memcmp(a.constData(), b.constData(), size_t(common));
    if (compared != 0)
        return compared < 0;
    const auto charAt = [](const QByteArray& name, bool directory, int i) -> int {
        if (i < name.size())
            return uchar(name.at(i));
        return i == name.size() && directory ? '/' : -1;
    };
    return charAt(a, aDirectory, common) < charAt(b, bDirectory, common);
}
}

DSyncLocalWalk::~DSyncLocalWalk()
{
    while (!m_levels.empty())
        pop();
}

bool DSyncLocalWalk::open(const QString& root)
{
    while (!m_levels.empty())
        pop();
    const int fd = ::open(QFile::encodeName(root).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    return fd >= 0 && push(fd, QByteArray());
}

bool DSyncLocalWalk::push(int fd, const QByteArray& prefix)
{
    // fdopendir() takes the descriptor over: it reads a duplicate, the level keeps its own.
    const int listed = ::dup(fd);
    DIR* directory = listed >= 0 ? ::fdopendir(listed) : nullptr;
    if (!directory) {
        if (listed >= 0)
            ::close(listed);
        ::close(fd);
        return false;
    }
    Level level;
    level.fd = fd;
    level.prefix = prefix;
    while (const dirent* entry = ::readdir(directory)) {
        const char* name = entry->d_name;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
            continue;
        unsigned char type = entry->d_type;
        if (type == DT_UNKNOWN) {
            struct stat status;
            if (::fstatat(fd, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            type = S_ISDIR(status.st_mode) ? DT_DIR : S_ISREG(status.st_mode) ? DT_REG : DT_UNKNOWN;
        }
        if (type == DT_DIR || type == DT_REG)
            level.entries.push_back(Entry {QByteArray(name), type == DT_DIR});
    }
    ::closedir(directory);
    std::sort(level.entries.begin(), level.entries.end(), [](const Entry& a, const Entry& b) {
        return lessInPathOrder(a.name, a.directory, b.name, b.directory);
    });
    m_levels.push_back(std::move(level));
    return true;
}

void DSyncLocalWalk::pop()
{
    ::close(m_levels.back().fd);
    m_levels.pop_back();
}

bool DSyncLocalWalk::next(File& file)
{
    while (!m_levels.empty()) {
        Level& level = m_levels.back();
        if (level.index >= level.entries.size()) {
            pop();
            continue;
        }
        const Entry& entry = level.entries[level.index++];
        if (entry.directory) {
            const int fd = ::openat(level.fd, entry.name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
            if (fd >= 0)
                push(fd, level.prefix + entry.name + '/'); // `level` may move
            continue;
        }
        struct stat status;
        if (::fstatat(level.fd, entry.name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode))
            continue;
        file.name = entry.name;
        file.relativePath = level.prefix + entry.name;
        file.size = status.st_size;
        file.modified = qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1000000;
        return true;
    }
    return false;
}
