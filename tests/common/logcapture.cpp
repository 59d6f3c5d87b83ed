#include "logcapture.h"

#include <QMutex>
#include <QtGlobal>

namespace {
QMutex g_mutex;
QStringList g_lines;
bool g_echo = false;
QtMessageHandler g_previous = nullptr;

void handler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    {
        QMutexLocker lock(&g_mutex);
        g_lines << message;
    }
    if (g_echo && g_previous)
        g_previous(type, context, message);
}
}

LogCapture::LogCapture(bool echo)
{
    g_echo = echo;
    clear();
    g_previous = qInstallMessageHandler(handler);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(g_previous);
}

QStringList LogCapture::lines() const
{
    QMutexLocker lock(&g_mutex);
    return g_lines;
}

QStringList LogCapture::matching(const QString& text) const
{
    return lines().filter(text);
}

void LogCapture::clear()
{
    QMutexLocker lock(&g_mutex);
    g_lines.clear();
}
