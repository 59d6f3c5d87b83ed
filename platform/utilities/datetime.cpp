#include "utilities/datetime.h"
#include "utilities/logline.h"

#include <QDateTime>
#include <QMetaMethod>
#include <QThread>

namespace {
const char* const C_source = "platform/utilities/datetime";
const int C_minUtcOffset = -12;
const int C_maxUtcOffset = 14;
}

DateTime::DateTime(QObject* parent)
    : QObject(parent)
    , m_timer(this)
{
    m_timer.setInterval(1000);
    connect(&m_timer, &QTimer::timeout, this, &DateTime::tick);
}

void DateTime::set24hFormat(bool is24h)
{
    if (m_is24h == is24h)
        return;
    m_is24h = is24h;
    emit formatChanged();
}

bool DateTime::is24hFormat() const
{
    return m_is24h;
}

void DateTime::setUtcOffset(int hours)
{
    if (hours < C_minUtcOffset || hours > C_maxUtcOffset) {
        LogLine::critical(this, C_source, __LINE__, QStringLiteral("ERROR: UTC offset out of range:"), QString::number(hours));
        return;
    }
    if (m_utcOffset == hours)
        return;
    m_utcOffset = hours;
    emit utcOffsetChanged();
}

int DateTime::utcOffset() const
{
    return m_utcOffset;
}

QString DateTime::currentDate() const
{
    return QDateTime::currentDateTimeUtc().addSecs(m_utcOffset * 3600).toString(QStringLiteral("dd/MM/yyyy"));
}

QString DateTime::currentTime() const
{
    const QDateTime now = QDateTime::currentDateTimeUtc().addSecs(m_utcOffset * 3600);
    return now.toString(m_is24h ? QStringLiteral("HH:mm:ss") : QStringLiteral("hh:mm:ss AP"));
}

void DateTime::connectNotify(const QMetaMethod& signal)
{
    if (signal != QMetaMethod::fromSignal(&DateTime::tick))
        return;
    // Connections may be made from any thread; the timer lives in ours.
    if (QThread::currentThread() == thread())
        m_timer.start();
    else
        QMetaObject::invokeMethod(&m_timer, qOverload<>(&QTimer::start), Qt::QueuedConnection);
}

void DateTime::disconnectNotify(const QMetaMethod& signal)
{
    // An invalid method means "everything was disconnected".
    if (signal.isValid() && signal != QMetaMethod::fromSignal(&DateTime::tick))
        return;
    // Called with the object's connection lock held: look at the remaining connections later.
    QMetaObject::invokeMethod(this, [this] {
        if (!isSignalConnected(QMetaMethod::fromSignal(&DateTime::tick)))
            m_timer.stop();
    }, Qt::QueuedConnection);
}
