#include "toollog.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>

#include <cstdio>

namespace {
// Past this size the log is moved to "<path>.1" (replacing the previous one) and started again.
constexpr qint64 C_rotateBytes = 1024 * 1024;

bool s_verbose = false;
// "[pid] command arguments", fixed at install: messages may come after the application is gone.
QByteArray s_origin;

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
        // Private to the owner, like the settings document it talks about.
        opened->setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        return opened;
    }();
    return file;
}

void handler(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    static const char* const levels[] = { "debug", "warning", "critical", "fatal", "info" };
    const QByteArray text = message.trimmed().toUtf8();
    // The sync and share workers log from their own threads.
    static QMutex mutex;
    const QMutexLocker locker(&mutex);
    if (QFile* file = logFile()) {
        const QByteArray time = QDateTime::currentDateTime().toString(Qt::ISODateWithMs).toUtf8();
        file->write(time + ' ' + s_origin + ' ' + levels[type] + ": " + text + '\n');
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
    s_origin = QStringLiteral("[%1] %2")
                   .arg(QCoreApplication::applicationPid())
                   .arg(QCoreApplication::arguments().mid(1).join(QLatin1Char(' ')))
                   .toUtf8();
    qInstallMessageHandler(handler);
}
