#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>

// Pieces of WindowsShareManager that need no running event loop: reading the address,
// building the mount commands and finding the programs.
namespace ShareMount {

const quint16 C_defaultPort = 445;

struct Target
{
    QString host;         // server name or address, without port
    quint16 port = C_defaultPort;
    QString share;        // first component of the share path
    QString subdirectory; // rest of the share path, "/" separated, may be empty

    bool isValid() const { return !host.isEmpty() && !share.isEmpty() && port != 0; }
    // "//host[:port]/share[/subdirectory]"; the port only when it is not 445.
    QString uncPath(bool withPort) const;
};

// Reads "host", "host:port", "\\host", "//host", "smb://host:port" and a share path such as
// "share", "/share/dir" or "share\dir". A share given in the address ("//host/share") is
// taken when the share path is empty.
Target parseTarget(const QString& serverAddress, const QString& sharePath);

// mount.cifs holds passwords of up to 512 bytes: a longer one is refused, not cut.
const int C_maxCifsPasswordBytes = 512;

struct Command
{
    QString program;
    QStringList arguments;
    // cifs: "username=" and "domain=" lines for a 0600 file, never the password;
    // fuse: every credential line, for the helper's standard input.
    QByteArray credentials;
    // cifs: the password and a line end, for the pipe that PASSWD_FD names; empty for fuse.
    QByteArray password;
    QString error; // why no command could be built
};

// "username=", "password=", "domain=" lines; empty with `error` set when a value cannot be
// written as one line.
QByteArray credentialsText(const QString& login, const QString& password, const QString& domain, QString* error);

// mount -t cifs //host/share[/dir] MOUNTPOINT -o credentials=FILE,... with the password in
// `password`: the caller hands it over through a pipe whose descriptor number goes into the
// environment variable PASSWD_FD, which mount.cifs reads, so that no file holds it.
// The program is the pre-configuration parameter "cifsMountProgramPath" when set, else mount.
Command cifsMountCommand(const Target& target, const QString& mountPoint, const QString& credentialsFile,
                         const QString& login, const QString& password, const QString& domain);
// HELPER //host[:port]/share[/dir] MOUNTPOINT, credentials on standard input.
Command fuseMountCommand(const QString& helperProgram, const Target& target, const QString& mountPoint,
                         const QString& login, const QString& password, const QString& domain);

// Unmount commands tried in order (the last ones detach a busy or dead mount lazily).
QList<QStringList> unmountCommands(const QString& mountPoint, bool fuse);

// The helper program: parameter "smbFuseHelperPath", then next to the application, then its
// libexec directory, then the build tree and the installed location. Empty when none exists.
QString fuseHelperProgram();

} // namespace ShareMount
