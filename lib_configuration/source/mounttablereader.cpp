#include "mounttablereader.h"
#include "utilities/mounttable.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#ifdef Q_OS_LINUX
#include <sys/vfs.h>
#endif

namespace {
const QString C_kernelTableFilePath = QStringLiteral("/proc/self/mountinfo");

QString& tableFilePathOverride()
{
    static QString path;
    return path;
}

bool isFuseType(const QString& type)
{
    return type == QLatin1String("fuse") || type == QLatin1String("fuseblk") || type.startsWith(QLatin1String("fuse."));
}

// Server and share named by a mount source: "//server/share[/sub]" (also with
// backslashes) or "[user@]host:[/]path" as NFS and sshfs write it.
void splitNetworkSource(const QString& source, QString& server, QString& share)
{
    server.clear();
    share.clear();
    QString text = source;
    text.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (text.startsWith(QLatin1String("//"))) {
        const QString rest = text.mid(2);
        const int slash = rest.indexOf(QLatin1Char('/'));
        if (slash <= 0)
            return;
        server = rest.left(slash);
        share = rest.mid(slash + 1);
    } else {
        int colon = -1;
        if (text.startsWith(QLatin1Char('['))) {
            const int bracket = text.indexOf(QLatin1String("]:"));
            colon = bracket < 0 ? -1 : bracket + 1;
        } else {
            colon = text.indexOf(QLatin1Char(':'));
        }
        if (colon <= 0)
            return;
        QString host = text.left(colon);
        if (host.contains(QLatin1Char('/')))
            return;
        host = host.mid(host.lastIndexOf(QLatin1Char('@')) + 1);
        server = host;
        share = text.mid(colon + 1);
    }
    while (share.startsWith(QLatin1Char('/')))
        share.remove(0, 1);
    while (share.endsWith(QLatin1Char('/')))
        share.chop(1);
    if (server.isEmpty())
        share.clear();
}
}

QList<MountTableReader::Entry> MountTableReader::parse(const QString& mountInfoText)
{
    QList<Entry> entries;
    const QList<MountTable::Entry> table = MountTable::parse(mountInfoText.toLocal8Bit());
    for (const MountTable::Entry& row : table) {
        if (!row.mountPoint.startsWith(QLatin1Char('/')))
            continue;
        Entry entry;
        entry.mountPoint = row.mountPoint;
        entry.fileSystemType = row.fileSystemType;
        entry.source = row.source;
        if (isRemoteFileSystemType(entry.fileSystemType, entry.source))
            splitNetworkSource(entry.source, entry.server, entry.share);
        entries.append(entry);
    }
    return entries;
}

bool MountTableReader::read(QList<Entry>& entries)
{
    entries.clear();
    QFile file(tableFilePath());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    entries = parse(QString::fromLocal8Bit(file.readAll()));
    return true;
}

bool MountTableReader::isRemoteFileSystemType(const QString& fileSystemType, const QString& source)
{
    static const QStringList networkTypes = {
        QStringLiteral("cifs"), QStringLiteral("smb3"), QStringLiteral("smbfs"), QStringLiteral("nfs"),
        QStringLiteral("nfs4"), QStringLiteral("afs"),  QStringLiteral("ceph"),  QStringLiteral("coda"),
        QStringLiteral("ncpfs"), QStringLiteral("davfs")
    };
    static const QStringList networkFuseTypes = {
        QStringLiteral("sshfs"), QStringLiteral("smbnetfs"), QStringLiteral("rclone"), QStringLiteral("s3fs"),
        QStringLiteral("curlftpfs"), QStringLiteral("glusterfs")
    };
    if (networkTypes.contains(fileSystemType))
        return true;
    if (!isFuseType(fileSystemType))
        return false;
    if (networkFuseTypes.contains(fileSystemType.mid(5)))
        return true;
    // Any other FUSE file system counts when its source names a server and a share.
    QString normalised = source;
    normalised.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (!normalised.startsWith(QLatin1String("//")))
        return false;
    QString server;
    QString share;
    splitNetworkSource(normalised, server, share);
    return !server.isEmpty() && !share.isEmpty();
}

int MountTableReader::indexOfMountHolding(const QList<Entry>& entries, const QString& absolutePath)
{
    const QString path = QDir::cleanPath(absolutePath);
    int best = -1;
    int bestLength = -1;
    for (int i = 0; i < entries.size(); ++i) {
        const QString mountPoint = QDir::cleanPath(entries.at(i).mountPoint);
        const bool holds = mountPoint == QLatin1String("/") || path == mountPoint
                           || path.startsWith(mountPoint + QLatin1Char('/'));
        if (holds && mountPoint.size() >= bestLength) {
            best = i;
            bestLength = mountPoint.size();
        }
    }
    return best;
}

bool MountTableReader::isOnRemoteFileSystem(const QString& path)
{
#ifdef Q_OS_LINUX
    if (path.isEmpty())
        return false;
    QString probe = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    while (!QFileInfo::exists(probe)) {
        const QString parent = QFileInfo(probe).path();
        if (parent == probe)
            return false;
        probe = parent;
    }
    struct statfs info;
    if (::statfs(QFile::encodeName(probe).constData(), &info) != 0)
        return false;
    switch (quint32(info.f_type)) {
    case 0x517B:      // SMB
    case 0xFF534D42u: // CIFS
    case 0xFE534D42u: // SMB2
    case 0x6969:      // NFS
    case 0x5346414Fu: // AFS
    case 0x00C36400u: // Ceph
    case 0x73757245u: // Coda
    case 0x564C:      // NCP
        return true;
    case 0x65735546u: { // FUSE: the type in the mount table tells a network one
        QList<Entry> entries;
        if (!read(entries))
            return false;
        // The file system answered statfs, so resolving links cannot hang on it.
        const QString canonical = QFileInfo(probe).canonicalFilePath();
        const int index = indexOfMountHolding(entries, canonical.isEmpty() ? probe : canonical);
        return index >= 0 && isRemoteFileSystemType(entries.at(index).fileSystemType, entries.at(index).source);
    }
    default:
        return false;
    }
#else
    Q_UNUSED(path)
    return false;
#endif
}

void MountTableReader::setTableFilePath(const QString& filePath)
{
    tableFilePathOverride() = filePath;
}

QString MountTableReader::tableFilePath()
{
    return tableFilePathOverride().isEmpty() ? C_kernelTableFilePath : tableFilePathOverride();
}
