#include "utilities/logline.h"
#include "utilities/pathhelpers.h"

#include <QDebug>
#include <QThread>

namespace {
QString pointerText(const void* p)
{
    return QStringLiteral("0x%1").arg(quintptr(p), QT_POINTER_SIZE * 2, 16, QLatin1Char('0'));
}
}

QString LogLine::format(const void* object, const char* sourceFile, int line,
                        const QString& message, const QString& appended)
{
    QString text = QStringLiteral("\n") + getDate()
        + QStringLiteral(";\tThread =") + pointerText(QThread::currentThread())
        + QStringLiteral(";\tThis =") + (object ? pointerText(object) : QStringLiteral("static"))
        + QStringLiteral(";\t") + QString::fromUtf8(sourceFile)
        + QStringLiteral(";\t") + QString::number(line)
        + QStringLiteral(";\t") + message;
    if (!appended.isEmpty())
        text += QLatin1Char(' ') + appended;
    return text;
}

void LogLine::critical(const void* object, const char* sourceFile, int line,
                       const QString& message, const QString& appended)
{
    qCritical().noquote() << format(object, sourceFile, line, message, appended);
}

void LogLine::debug(const void* object, const char* sourceFile, int line,
                    const QString& message, const QString& appended)
{
    qDebug().noquote() << format(object, sourceFile, line, message, appended);
}
