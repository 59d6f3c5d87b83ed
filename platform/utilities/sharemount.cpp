#include "windowssharemanager_p.h"
#include "utilities/installpaths.h"
#include "utilities/preconfiguration.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <unistd.h>

namespace ShareMount {
namespace {

const char* const C_helperName = "station-smbmount";

bool isExecutable(const QString& path)
{
    const QFileInfo info(path);
    return !path.isEmpty() && info.isFile() && info.isExecutable();
}

QString findSystemProgram(const QString& name)
{
    const QString found = QStandardPaths::findExecutable(name);
    if (!found.isEmpty())
        return found;
    const QStringList systemDirs {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin"), QStringLiteral("/usr/bin"),
                                  QStringLiteral("/bin")};
    const QString inSbin = QStandardPaths::findExecutable(name, systemDirs);
    return inSbin.isEmpty() ? name : inSbin;
}

// "username=" and "domain=" lines; empty with `error` set when a value cannot be written as
// one line or the login is missing. `password` is only checked.
QByteArray accountText(const QString& login, const QString& password, const QString& domain, QString* error)
{
    for (const QString* value : {&login, &password, &domain}) {
        if (value->contains(QLatin1Char('\n')) || value->contains(QLatin1Char('\r'))) {
            if (error)
                *error = QStringLiteral("a user name, domain or password contains a line break");
            return QByteArray();
        }
    }
    if (login.isEmpty()) {
        if (error)
            *error = QStringLiteral("no user name");
        return QByteArray();
    }
    QByteArray text = "username=" + login.toUtf8() + '\n';
    if (!domain.isEmpty())
        text += "domain=" + domain.toUtf8() + '\n';
    return text;
}

QString cifsMountProgram()
{
    const QString configured = PreConfiguration::getParameter(QStringLiteral("cifsMountProgramPath")).toString();
    return configured.isEmpty() ? findSystemProgram(QStringLiteral("mount")) : configured;
}

} // namespace

QString Target::uncPath(bool withPort) const
{
    QString text = QStringLiteral("//") + host;
    if (withPort && port != C_defaultPort)
        text += QLatin1Char(':') + QString::number(port);
    text += QLatin1Char('/') + share;
    if (!subdirectory.isEmpty())
        text += QLatin1Char('/') + subdirectory;
    return text;
}

Target parseTarget(const QString& serverAddress, const QString& sharePath)
{
    Target target;
    QString address = serverAddress.trimmed();
    address.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (address.startsWith(QLatin1String("smb://"), Qt::CaseInsensitive))
        address = address.mid(6);
    while (address.startsWith(QLatin1Char('/')))
        address.remove(0, 1);

    QString pathInAddress;
    const int slash = address.indexOf(QLatin1Char('/'));
    if (slash >= 0) {
        pathInAddress = address.mid(slash + 1);
        address.truncate(slash);
    }
    const int colon = address.lastIndexOf(QLatin1Char(':'));
    if (colon >= 0) {
        bool ok = false;
        const uint port = address.mid(colon + 1).toUInt(&ok);
        target.port = ok && port > 0 && port < 65536 ? static_cast<quint16>(port) : 0;
        address.truncate(colon);
    }
    target.host = address;

    QString path = sharePath.trimmed();
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (path.isEmpty())
        path = pathInAddress;
    const QStringList parts = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (!parts.isEmpty()) {
        target.share = parts.first();
        target.subdirectory = parts.mid(1).join(QLatin1Char('/'));
    }
    return target;
}

QByteArray credentialsText(const QString& login, const QString& password, const QString& domain, QString* error)
{
    const QByteArray account = accountText(login, password, domain, error);
    if (account.isEmpty())
        return account;
    const int userLineEnd = account.indexOf('\n') + 1;
    return account.left(userLineEnd) + "password=" + password.toUtf8() + '\n' + account.mid(userLineEnd);
}

Command cifsMountCommand(const Target& target, const QString& mountPoint, const QString& credentialsFile,
                         const QString& login, const QString& password, const QString& domain)
{
    Command command;
    command.credentials = accountText(login, password, domain, &command.error);
    if (command.credentials.isEmpty())
        return command;
    const QByteArray passwordBytes = password.toUtf8();
    if (passwordBytes.size() > C_maxCifsPasswordBytes || passwordBytes.contains('\0')) {
        command.credentials.clear();
        command.error = QStringLiteral("the password is longer than %1 bytes or holds a null character")
                            .arg(C_maxCifsPasswordBytes);
        return command;
    }
    command.password = passwordBytes + '\n';
    QStringList options {QStringLiteral("credentials=") + credentialsFile,
                         QStringLiteral("uid=%1").arg(::geteuid()), QStringLiteral("gid=%1").arg(::getegid()),
                         QStringLiteral("iocharset=utf8")};
    if (target.port != C_defaultPort)
        options << QStringLiteral("port=%1").arg(target.port);
    command.program = cifsMountProgram();
    command.arguments = QStringList {QStringLiteral("-t"), QStringLiteral("cifs"), target.uncPath(false),
                                     mountPoint, QStringLiteral("-o"), options.join(QLatin1Char(','))};
    return command;
}

Command fuseMountCommand(const QString& helperProgram, const Target& target, const QString& mountPoint,
                         const QString& login, const QString& password, const QString& domain)
{
    Command command;
    if (helperProgram.isEmpty()) {
        command.error = QStringLiteral("the mount helper %1 is not installed").arg(QLatin1String(C_helperName));
        return command;
    }
    command.credentials = credentialsText(login, password, domain, &command.error);
    if (command.credentials.isEmpty())
        return command;
    command.program = helperProgram;
    command.arguments = QStringList {target.uncPath(true), mountPoint};
    return command;
}

QList<QStringList> unmountCommands(const QString& mountPoint, bool fuse)
{
    if (fuse) {
        const QString fusermount = QStandardPaths::findExecutable(QStringLiteral("fusermount3"));
        if (!fusermount.isEmpty())
            return {{fusermount, QStringLiteral("-u"), mountPoint},
                    {fusermount, QStringLiteral("-u"), QStringLiteral("-z"), mountPoint}};
    }
    const QString umount = findSystemProgram(QStringLiteral("umount"));
    return {{umount, mountPoint}, {umount, QStringLiteral("-l"), mountPoint}};
}

QString fuseHelperProgram()
{
    const QString configured = PreConfiguration::getParameter(QStringLiteral("smbFuseHelperPath")).toString();
    if (!configured.isEmpty())
        return isExecutable(configured) ? configured : QString();

    QStringList candidates;
    if (QCoreApplication::instance()) {
        const QString appDir = QCoreApplication::applicationDirPath();
        candidates << appDir + QLatin1Char('/') + QLatin1String(C_helperName)
                   << QDir::cleanPath(appDir + QStringLiteral("/../libexec/") + QLatin1String(C_helperName));
    }
    candidates << InstallPaths::mountHelper();
    for (const QString& candidate : qAsConst(candidates)) {
        if (isExecutable(candidate))
            return candidate;
    }
    return QString();
}

} // namespace ShareMount
