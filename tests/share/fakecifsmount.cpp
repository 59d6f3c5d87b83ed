// Stand-in for "mount -t cifs": records what it was handed, as JSON, in the file named by
// STATION_TEST_MOUNT_RECORD, then fails as mount.cifs does on a wrong password.
//
// Recorded: the arguments, the environment, every open descriptor (with the content of
// regular files), the descriptor named by PASSWD_FD with what it yields when read the way
// mount.cifs reads it, every file under TMPDIR and every file that an argument or a
// "key=value" option names. Contents are base64.
#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

extern char** environ;

namespace {

QString base64(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

QByteArray fileContent(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString descriptorType(int descriptor)
{
    struct stat info;
    if (::fstat(descriptor, &info) != 0)
        return QStringLiteral("closed");
    if (S_ISFIFO(info.st_mode))
        return QStringLiteral("pipe");
    if (S_ISREG(info.st_mode))
        return QStringLiteral("file");
    if (S_ISDIR(info.st_mode))
        return QStringLiteral("directory");
    if (S_ISSOCK(info.st_mode))
        return QStringLiteral("socket");
    return QStringLiteral("other");
}

// Open descriptors, listed before anything else is opened here.
QJsonArray descriptors()
{
    QList<int> numbers;
    if (DIR* directory = ::opendir("/proc/self/fd")) {
        const int own = ::dirfd(directory);
        while (const dirent* entry = ::readdir(directory)) {
            bool ok = false;
            const int number = QByteArray(entry->d_name).toInt(&ok);
            if (ok && number != own)
                numbers << number;
        }
        ::closedir(directory);
    }
    QJsonArray result;
    for (int number : qAsConst(numbers)) {
        const QString link = QStringLiteral("/proc/self/fd/%1").arg(number);
        char target[4096] = {};
        const ssize_t length = ::readlink(QFile::encodeName(link).constData(), target, sizeof(target) - 1);
        QJsonObject entry {{"fd", number}, {"type", descriptorType(number)},
                           {"target", QString::fromLocal8Bit(target, length > 0 ? int(length) : 0)}};
        if (entry.value("type").toString() == QLatin1String("file"))
            entry.insert("content", base64(fileContent(link))); // a fresh open: offsets stay as they are
        result.append(entry);
    }
    return result;
}

// Reads up to a line end or the end of input, at most 512 bytes, as mount.cifs does.
QByteArray readPassword(int descriptor)
{
    QByteArray bytes;
    char c = 0;
    while (bytes.size() < 512 && ::read(descriptor, &c, 1) == 1) {
        if (c == '\n')
            break;
        bytes.append(c);
    }
    return bytes;
}

QJsonArray filesUnder(const QString& directory)
{
    QJsonArray result;
    if (directory.isEmpty())
        return result;
    QDirIterator it(directory, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        result.append(QJsonObject {{"path", path}, {"content", base64(fileContent(path))}});
    }
    return result;
}

// Files named by an argument or by the value of a "key=value" option.
QJsonArray namedFiles(const QStringList& arguments)
{
    QStringList candidates;
    for (const QString& argument : arguments) {
        candidates << argument;
        for (const QString& option : argument.split(QLatin1Char(','))) {
            const int equals = option.indexOf(QLatin1Char('='));
            if (equals > 0)
                candidates << option.mid(equals + 1);
        }
    }
    QJsonArray result;
    for (const QString& path : qAsConst(candidates)) {
        if (QFileInfo(path).isFile())
            result.append(QJsonObject {{"path", path}, {"content", base64(fileContent(path))}});
    }
    return result;
}

} // namespace

int main(int argc, char* argv[])
{
    const QJsonArray openDescriptors = descriptors();

    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);

    QJsonObject environment;
    for (char** variable = environ; *variable; ++variable) {
        const QByteArray text(*variable);
        const int equals = text.indexOf('=');
        if (equals > 0)
            environment.insert(QString::fromLocal8Bit(text.left(equals)), QString::fromLocal8Bit(text.mid(equals + 1)));
    }

    QJsonObject record {{"arguments", QJsonArray::fromStringList(arguments)},
                        {"environment", environment},
                        {"descriptors", openDescriptors},
                        {"tempFiles", filesUnder(qEnvironmentVariable("TMPDIR"))},
                        {"namedFiles", namedFiles(arguments)}};
    bool ok = false;
    const int passwordDescriptor = qEnvironmentVariable("PASSWD_FD").toInt(&ok);
    if (ok) {
        record.insert("passwordDescriptor", passwordDescriptor);
        record.insert("passwordDescriptorType", descriptorType(passwordDescriptor));
        record.insert("passwordRead", base64(readPassword(passwordDescriptor)));
    }

    QFile out(qEnvironmentVariable("STATION_TEST_MOUNT_RECORD"));
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        std::fprintf(stderr, "fake mount: cannot write the record\n");
        return 1;
    }
    out.write(QJsonDocument(record).toJson());
    out.close();
    std::fprintf(stderr, "mount error(13): Permission denied\n");
    return 32;
}
