#include "utilities/mounttable.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace MountTable {
namespace {

// mountinfo escapes space, tab, newline and backslash as "\ooo".
QString unescape(const QByteArray& field)
{
    QByteArray out;
    out.reserve(field.size());
    for (int i = 0; i < field.size(); ++i) {
        if (field.at(i) == '\\' && i + 3 < field.size() && field.at(i + 1) >= '0' && field.at(i + 1) <= '7') {
            bool ok = false;
            const int value = field.mid(i + 1, 3).toInt(&ok, 8);
            if (ok) {
                out.append(static_cast<char>(value));
                i += 3;
                continue;
            }
        }
        out.append(field.at(i));
    }
    return QString::fromLocal8Bit(out);
}

} // namespace

QList<Entry> parse(const QByteArray& mountInfo)
{
    // "id parent major:minor root mountpoint options [optional...] - fstype source superoptions"
    QList<Entry> result;
    const QList<QByteArray> lines = mountInfo.split('\n');
    for (const QByteArray& line : lines) {
        const QList<QByteArray> fields = line.split(' ');
        const int separator = fields.indexOf("-");
        if (fields.size() < 5 || separator < 6 || separator + 2 >= fields.size())
            continue;
        Entry entry;
        entry.mountPoint = unescape(fields.at(4));
        entry.fileSystemType = unescape(fields.at(separator + 1));
        entry.source = unescape(fields.at(separator + 2));
        result.append(entry);
    }
    return result;
}

QList<Entry> entries()
{
    QFile table(QString::fromLatin1(C_mountInfoPath));
    if (!table.open(QIODevice::ReadOnly))
        return {};
    // A proc file reports no size: read until the end.
    return parse(table.readAll());
}

Entry entryAt(const QString& path)
{
    const QString wanted = normalizedPath(path);
    Entry found;
    const QList<Entry> all = entries();
    for (const Entry& entry : all) {
        if (entry.mountPoint == wanted)
            found = entry;
    }
    return found;
}

bool hasMountAtOrBelow(const QString& directory)
{
    const QString wanted = normalizedPath(directory);
    if (wanted.isEmpty())
        return false;
    const QString prefix = wanted == QLatin1String("/") ? wanted : wanted + QLatin1Char('/');
    const QList<Entry> all = entries();
    for (const Entry& entry : all) {
        if (entry.mountPoint == wanted || entry.mountPoint.startsWith(prefix))
            return true;
    }
    return false;
}

QString normalizedPath(const QString& path)
{
    if (path.isEmpty())
        return QString();
    const QString clean = QDir::cleanPath(QDir(path).absolutePath());
    const QFileInfo info(clean);
    const QString parent = QFileInfo(info.path()).canonicalFilePath();
    if (parent.isEmpty() || info.fileName().isEmpty())
        return clean;
    return parent == QLatin1String("/") ? parent + info.fileName() : parent + QLatin1Char('/') + info.fileName();
}

} // namespace MountTable
