// Directories: translation between local paths, file URLs, alias forms, share addresses and
// the drives that the operating system maps to network shares.
#include "directories.h"
#include "directories_p.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

#include "utilities/logline.h"
#include "utilities/pathhelpers.h"

#ifdef Q_OS_WIN
#include <QProcess>
#include <windows.h>
#else
#include "mounttablereader.h"
#endif

using namespace DirectoriesLiterals;

namespace {

// Local file of a file: URL, or the text unchanged.
QString localPathOf(const QString& pathOrUrl)
{
    const QUrl url(pathOrUrl, QUrl::TolerantMode);
    return url.isValid() && url.isLocalFile() ? url.toLocalFile() : pathOrUrl;
}

#ifdef Q_OS_WIN
constexpr int C_netCommandTimeoutMs = 30000;

// Runs "net" with `arguments`; false when it cannot start, does not end in time or exits
// with a non-zero code.
bool runNet(const QStringList& arguments, QString& output)
{
    QProcess net;
    net.start(QStringLiteral("net"), arguments, QIODevice::ReadWrite);
    if (!net.waitForFinished(C_netCommandTimeoutMs)) {
        net.kill();
        net.waitForFinished();
        return false;
    }
    if (net.exitStatus() != QProcess::NormalExit || net.exitCode() != 0)
        return false;
    output = QString::fromLocal8Bit(net.readAllStandardOutput());
    return true;
}
#endif
}

QVariantMap Directories::getWindowsNetworkPath(QString path) const
{
    if (path.isEmpty()) {
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("ERROR: path is empty"));
        return {};
    }
    const QFileInfo info(localPathOf(path));
    if (info.isRelative())
        return {};

#ifdef Q_OS_WIN
    const QString drive = info.absolutePath().left(1);
    QString output;
    if (!runNet({ QStringLiteral("use"), drive + QLatin1Char(':') }, output))
        return {};
    static const QRegularExpression uncLine(QStringLiteral(R"(\\\\([^\\]+)\\([^\r\n]+))"));
    const QRegularExpressionMatch match = uncLine.match(output);
    if (!match.hasMatch())
        return {};
    return { { QStringLiteral("adress"), QStringLiteral("%1/%2").arg(match.captured(1), match.captured(2)) },
             { QStringLiteral("path"), addLastPathSepIfNeeded(info.path().mid(3)) },
             { QStringLiteral("name"), info.fileName() } };
#else
    // The share mounted at the directory of the file plays the mapped drive; the part of the
    // directory below its mount point is the path on the drive.
    QList<MountTableReader::Entry> mounts;
    if (!MountTableReader::read(mounts))
        return {};
    const QString directory = QDir::cleanPath(info.absolutePath());
    const int index = MountTableReader::indexOfMountHolding(mounts, directory);
    if (index < 0 || !mounts.at(index).isNetworkShare())
        return {};
    const MountTableReader::Entry& mount = mounts.at(index);
    QString inside = directory.mid(QDir::cleanPath(mount.mountPoint).size());
    while (inside.startsWith(QLatin1Char('/')))
        inside.remove(0, 1);
    return { { QStringLiteral("adress"), QStringLiteral("%1/%2").arg(mount.server, mount.share) },
             { QStringLiteral("path"), addLastPathSepIfNeeded(inside) },
             { QStringLiteral("name"), info.fileName() } };
#endif
}

QString Directories::networkAddressToLocalDrive(const QString& address, bool& found) const
{
    // Fewer than two parts leaves `found` as the caller set it.
    const QStringList parts = address.split(QLatin1Char('/'), Qt::KeepEmptyParts);
    if (parts.size() < 2)
        return QString();

#ifdef Q_OS_WIN
    const QString unc = QStringLiteral("\\\\%1\\%2").arg(parts.at(0), parts.at(1));
    QString output;
    if (!runNet({ QStringLiteral("use") }, output)) {
        found = false;
        return QString();
    }
    static const QRegularExpression driveLetter(QStringLiteral("([A-Z]:)"));
    const QStringList lines = output.split(QLatin1Char('\n'), Qt::KeepEmptyParts);
    for (const QString& line : lines) {
        if (!line.contains(unc, Qt::CaseInsensitive))
            continue;
        const QRegularExpressionMatch match = driveLetter.match(line);
        if (match.hasMatch()) {
            found = true;
            return match.captured(1) + QLatin1Char('/');
        }
    }
#else
    // Every mounted share is a "line" of the listing, written as //server/share, and its
    // mount point is the drive.
    const QString unc = QStringLiteral("//%1/%2").arg(parts.at(0), parts.at(1));
    QList<MountTableReader::Entry> mounts;
    if (!MountTableReader::read(mounts)) {
        found = false;
        return QString();
    }
    for (const MountTableReader::Entry& mount : qAsConst(mounts)) {
        if (!mount.isNetworkShare())
            continue;
        const QString remote = QStringLiteral("//%1/%2").arg(mount.server, mount.share);
        if (remote.contains(unc, Qt::CaseInsensitive)) {
            found = true;
            return addLastPathSepIfNeeded(mount.mountPoint);
        }
    }
#endif
    found = false;
    return QString();
}

QString Directories::getMountedPathFromAdress(const QString& address, bool& mounted) const
{
    if (address.isEmpty())
        return QString();
    for (const QSharedPointer<Folder>& folder : m_folders.list()) {
        if (folder.isNull() || folder->type() != QLatin1String("samba") || folder->networkAdress() != address)
            continue;
        mounted = m_networkStorage.value(folder->aliasName(), false);
        // The alias name of an unmounted share is shown in place of a path.
        return mounted ? folder->mountedPath() : folder->aliasName();
    }
    return QString();
}

QSharedPointer<Folder> Directories::folderHoldingPath(const QString& path) const
{
    for (const QSharedPointer<Folder>& folder : m_folders.list()) {
        if (folder.isNull())
            continue;
        const QString mountedPath = folder->mountedPath();
        if (!mountedPath.isEmpty() && path.startsWith(mountedPath, Qt::CaseSensitive))
            return folder;
    }
    return QSharedPointer<Folder>();
}

QString Directories::getAddressFromPath(QString path) const
{
    if (path.isEmpty())
        return path;
    const QSharedPointer<Folder> folder = folderHoldingPath(path);
    if (!folder)
        return path;
    // Names the share, not the file: the part below the mount point is dropped.
    return folder->address() + QLatin1Char('/') + folder->path();
}

QString Directories::getFolderPathFromAlias(QString alias, QString defaultPath) const
{
    if (alias.isEmpty())
        return defaultPath;
    for (const QSharedPointer<Folder>& folder : m_folders.list()) {
        if (!folder.isNull() && folder->aliasName() == alias)
            return folder->path();
    }
    return defaultPath;
}

QString Directories::getPathRelativeToItsAlias(QString path) const
{
    if (path.isEmpty())
        return path;
    QString result = path;
    if (const QSharedPointer<Folder> folder = folderHoldingPath(path))
        result.replace(delLastPathSepIfPresent(folder->mountedPath()), folder->aliasName(), Qt::CaseSensitive);
    return delLastPathSepIfPresent(result);
}

QString Directories::uriToPath(QString uri) const
{
    return localPathOf(uri);
}

bool Directories::isFileMatchingMode(QString filePath, bool isExternalMode) const
{
    const QString workingPath = localPathOf(filePath);
    if (workingPath.startsWith(QLatin1String("\\\\"))) {
        // A UNC path is network storage.
        LogLine::debug(this, C_sourceFile, __LINE__, QStringLiteral("UNC path detected."));
        return isExternalMode;
    }
#ifdef Q_OS_WIN
    const QString root = workingPath.left(3);
    const bool isRemote = GetDriveTypeW(reinterpret_cast<LPCWSTR>(root.utf16())) == DRIVE_REMOTE;
#else
    // A relative path names no drive, as an invalid root on Windows: not remote.
    const bool isRemote = !QFileInfo(workingPath).isRelative() && MountTableReader::isOnRemoteFileSystem(workingPath);
#endif
    return isExternalMode != !isRemote;
}

QString Directories::getPathOfFile(QString filePath)
{
    return QFileInfo(filePath).path();
}

QString Directories::getNameOfFile(QString filePath)
{
    return QFileInfo(filePath).fileName();
}

QUrl Directories::getUrlOfFile(QString filePath)
{
    if (filePath.isEmpty())
        return QUrl();
    QUrl url(filePath);
    url.setScheme(QStringLiteral("file"));
    return url;
}
