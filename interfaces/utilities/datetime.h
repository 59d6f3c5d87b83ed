#pragma once
#include "utilities/station_utilities_export.h"
#include <QObject>
#include <QString>
#include <QTimer>

// Clock display object for QML ("dateTime"): current date and time texts, refreshed each
// second while something is connected to their change signal. Texts are the UTC time shifted by
// the offset (-12 to 14 hours; others are refused): "dd/MM/yyyy", "HH:mm:ss" or "hh:mm:ss AP".
class STATION_UTILITIES_EXPORT DateTime : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool is24hFormat READ is24hFormat WRITE set24hFormat NOTIFY formatChanged)
    Q_PROPERTY(int utcOffset READ utcOffset WRITE setUtcOffset NOTIFY utcOffsetChanged)
    Q_PROPERTY(QString currentDate READ currentDate NOTIFY tick)
    Q_PROPERTY(QString currentTime READ currentTime NOTIFY tick)
public:
    explicit DateTime(QObject* parent = nullptr);

    void set24hFormat(bool is24h);
    bool is24hFormat() const;
    void setUtcOffset(int hours);
    int utcOffset() const;

    QString currentDate() const;
    QString currentTime() const;

signals:
    void formatChanged();
    void utcOffsetChanged();
    void tick();

protected:
    void connectNotify(const QMetaMethod& signal) override;
    void disconnectNotify(const QMetaMethod& signal) override;

private:
    bool m_is24h = true;
    int m_utcOffset = 0;
    QTimer m_timer;
};
