#pragma once
#include "station_configuration_export.h"

#include <QList>
#include <QString>

// The file systems mounted on this machine, as the kernel lists them in
// /proc/self/mountinfo. On Linux it stands in for the drive mappings of "net use": a
// mounted network share plays the part of a mapped drive, its mount point the drive.
// Not installed; exported for the tests, which read their own tables through the seam below.
class STATION_CONFIGURATION_EXPORT MountTableReader
{
public:
    struct Entry
    {
        QString mountPoint;     // octal escapes (\040 ...) decoded
        QString fileSystemType; // "cifs", "nfs4", "fuse.sshfs", ...
        QString source;         // "//server/share", "host:/export", "/dev/sda1", ...
        QString server;         // server named by a network source, else empty
        QString share;          // share (and sub-path) on the server, "/"-separated, else empty

        // A network file system whose source names both a server and a share.
        bool isNetworkShare() const { return !server.isEmpty() && !share.isEmpty(); }
    };

    // Parses mountinfo text; malformed lines are skipped. Entries keep the table's order.
    static QList<Entry> parse(const QString& mountInfoText);
    // Reads the current table; false (and no entries) when it cannot be read.
    static bool read(QList<Entry>& entries);

    // Whether a file-system type of the table is a remote one (SMB/CIFS, NFS, other network
    // file systems, and FUSE file systems that serve a server's files).
    static bool isRemoteFileSystemType(const QString& fileSystemType, const QString& source);

    // Index of the mount that holds `absolutePath`: the longest mount point containing it,
    // the later one when several are stacked at the same point; -1 when none.
    static int indexOfMountHolding(const QList<Entry>& entries, const QString& absolutePath);

    // Whether `path` lies on a remote file system (statfs, and the table's type for FUSE).
    // A path that does not exist is judged by its nearest existing parent.
    static bool isOnRemoteFileSystem(const QString& path);

    // Test seam: read this file instead of /proc/self/mountinfo (empty restores it).
    static void setTableFilePath(const QString& filePath);
    static QString tableFilePath();
};
