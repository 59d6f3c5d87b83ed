#include "toollog.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {
// Past this size the log is moved to "<path>.1" (replacing the previous one) and started again.
constexpr qint64 C_rotateBytes = 1024 * 1024;

bool s_verbose = false;

QFile* logFile()
{
    static QFile* file = [] {
        const QString path = ToolLog::path();
        QDir().mkpath(QFileInfo(path).path());
        if (QFileInfo(path).size() > C_rotateBytes) {
            QFile::remove(path + QStringLiteral(".1"));
            QFile::rename(path, path + QStringLiteral(".1"));
        }
        auto* opened = new QFile(path);
        if (!opened->open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
            delete opened;
            return static_cast<QFile*>(nullptr);
        }
        return opened;
    }();
    return file;
}

void handler(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    static const char* const levels[] = { "debug", "warning", "critical", "fatal", "info" };
    const QByteArray text = message.trimmed().toUtf8();
    if (QFile* file = logFile()) {
        const QByteArray head = QStringLiteral("%1 [%2] %3 %4: ")
                                    .arg(QDateTime::currentDateTime().toString(Qt::ISODateWithMs))
                                    .arg(QCoreApplication::applicationPid())
                                    .arg(QCoreApplication::arguments().mid(1).join(QLatin1Char(' ')))
                                    .arg(QLatin1String(levels[type]))
                                    .toUtf8();
        file->write(head + text + '\n');
        file->flush();
    }
    if (s_verbose || type == QtFatalMsg) {
        std::fputs(text.constData(), stderr);
        std::fputc('\n', stderr);
    }
}
}

QString ToolLog::path()
{
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (state.isEmpty() || QDir::isRelativePath(state))
        state = QDir::homePath() + QStringLiteral("/.local/state");
    return state + QStringLiteral("/station-config/station-config.log");
}

void ToolLog::install(bool verbose)
{
    s_verbose = verbose;
    qInstallMessageHandler(handler);
}
