// Placeholder bodies so the library links while the regional settings are written.
#include "d_zu_configuration.h"

const QMap<QString, QString> DZuConfiguration::c_dateFormats{
    {QStringLiteral("DD/MM/YYYY"), QStringLiteral("dd/MM/yyyy")},
    {QStringLiteral("MM/DD/YYYY"), QStringLiteral("MM/dd/yyyy")},
    {QStringLiteral("YYYY-MM-DD"), QStringLiteral("yyyy-MM-dd")},
};

void DZuConfiguration::loadTimeZones() {}
QStringList DZuConfiguration::timezones() const { return m_timeZoneIndex.keys(); }
QStringList DZuConfiguration::regions() const { return m_timeZones.keys(); }
QStringList DZuConfiguration::cities() const { return m_timeZones.value(m_currentRegion); }
QStringList DZuConfiguration::getLanguages() const { return {}; }
QString DZuConfiguration::getQDateStringFormat() const { return c_dateFormats.value(m_currentDateFormat); }
QString DZuConfiguration::getQTimeStringFormat() const { return {}; }
void DZuConfiguration::setKeyMapLayout(const QString&) {}

void DZuConfiguration::setRegion(const QString& region, const QString& city)
{
    m_currentRegion = region;
    m_currentCity = city;
    emit sigRegionChanged();
}

void DZuConfiguration::setFormats(const QString& hourformat, const QString& dateformat)
{
    m_currentHourFormat = hourformat;
    m_currentDateFormat = dateformat;
    emit sigRegionChanged();
}

QDate DZuConfiguration::stringToDate(const QString& stringDate) { return QDate::fromString(stringDate, getQDateStringFormat()); }
QString DZuConfiguration::dateToString(const QDate& date) { return date.toString(getQDateStringFormat()); }
QDateTime DZuConfiguration::stringToTime(const QString&) { return {}; }
QString DZuConfiguration::timeToString(const QDateTime&) { return {}; }
QString DZuConfiguration::dateTimeToString(const QDateTime&) { return {}; }
