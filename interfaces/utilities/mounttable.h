#pragma once
#include "utilities/station_utilities_export.h"
#include <QList>
#include <QString>

// Reading the kernel's mount table of this process (/proc/self/mountinfo); mount points,
// types and sources have the table's octal escapes (\040 ...) decoded.
namespace MountTable {

struct Entry
{
    QString mountPoint;     // unescaped absolute path
    QString fileSystemType; // "fuse.smb", "cifs", "tmpfs", ...
    QString source;         // "//server/share", device, ...
};

const char* const C_mountInfoPath = "/proc/self/mountinfo";

// Entries of the table, in mount order; empty when it cannot be read.
STATION_UTILITIES_EXPORT QList<Entry> entries();
// Entries of one mountinfo text (for a given table).
STATION_UTILITIES_EXPORT QList<Entry> parse(const QByteArray& mountInfo);
// The entry mounted exactly at `path` that was mounted last, or a null-path entry.
STATION_UTILITIES_EXPORT Entry entryAt(const QString& path);
// True when a file system is mounted at `directory` or anywhere below it.
STATION_UTILITIES_EXPORT bool hasMountAtOrBelow(const QString& directory);
// `path` with symbolic links of its parent resolved, without touching `path` itself (a dead
// network mount point cannot be stat()ed).
STATION_UTILITIES_EXPORT QString normalizedPath(const QString& path);

} // namespace MountTable
