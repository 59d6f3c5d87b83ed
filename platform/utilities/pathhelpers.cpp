#include "utilities/pathhelpers.h"

#include <QDateTime>

QString getDate()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
}

static bool endsWithSeparator(const QString& path)
{
    return path.endsWith(QLatin1Char('/')) || path.endsWith(QLatin1Char('\\'));
}

QString addLastPathSepIfNeeded(const QString& path)
{
    return endsWithSeparator(path) ? path : path + QLatin1Char('/');
}

QString delLastPathSepIfPresent(const QString& path)
{
    return endsWithSeparator(path) ? path.left(path.size() - 1) : path;
}
