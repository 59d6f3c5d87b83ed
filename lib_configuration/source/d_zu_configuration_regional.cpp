// Regional settings: time zone, date and hour formats, languages and the keyboard map.
#include "d_zu_configuration.h"

#include "utilities/languagesmanagement.h"
#include "utilities/logline.h"

#include <QFile>
#include <QProcess>
#include <QTextStream>
#include <QTimeZone>

namespace {
const char C_source[] = "lib_configuration/source/d_zu_configuration";

const QString C_timeZoneResource = QStringLiteral(":/data/timezones.csv");
const QString C_hourFormat24 = QStringLiteral("24 h");
const QString C_hourPattern24 = QStringLiteral("HH:mm");
const QString C_hourPattern12 = QStringLiteral("hh:mm A");
const QString C_keymapLayoutKey = QStringLiteral("keymap_layout=");

QString& timeZoneProgram()
{
    static QString program = QStringLiteral("timedatectl");
    return program;
}

QString& compositorFilePath()
{
    static QString path = QStringLiteral("/etc/xdg/weston/weston.ini");
    return path;
}
}

const QMap<QString, QString> DZuConfiguration::c_dateFormats{
    {QStringLiteral("DD/MM/YYYY"), QStringLiteral("dd/MM/yyyy")},
    {QStringLiteral("MM/DD/YYYY"), QStringLiteral("MM/dd/yyyy")},
    {QStringLiteral("YYYY-MM-DD"), QStringLiteral("yyyy-MM-dd")},
};

// --- Seams ----------------------------------------------------------------------------------

void DZuConfiguration::setTimeZoneCommand(const QString& program) { timeZoneProgram() = program; }
QString DZuConfiguration::timeZoneCommand() { return timeZoneProgram(); }
void DZuConfiguration::setCompositorConfigPath(const QString& path) { compositorFilePath() = path; }
QString DZuConfiguration::compositorConfigPath() { return compositorFilePath(); }

// --- Time-zone table ------------------------------------------------------------------------

bool DZuConfiguration::loadTimeZoneTable(const QString& path, QMap<QString, QStringList>& table,
                                         QMap<QString, int>& index)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;

    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine());
        const QStringList fields = line.split(QLatin1Char(';'), Qt::SkipEmptyParts);
        if (fields.size() != 2)
            continue;

        QString identifier = fields.at(1);
        identifier.remove(QLatin1Char('\n'));
        identifier.remove(QLatin1Char('\r'));
        index.insert(identifier, fields.at(0).toInt(nullptr, 10));

        // A third component ("America/Argentina/Buenos_Aires") is ignored: the middle one is the city.
        const QStringList components = identifier.split(QLatin1Char('/'), Qt::SkipEmptyParts);
        if (components.size() < 2)
            continue;
        table[components.at(0)].append(components.at(1));
    }
    return true;
}

void DZuConfiguration::loadTimeZones()
{
    loadTimeZoneTable(C_timeZoneResource, m_timeZones, m_timeZoneIndex);
}

QStringList DZuConfiguration::timezones() const { return m_timeZoneIndex.keys(); }
QStringList DZuConfiguration::regions() const { return m_timeZones.keys(); }
QStringList DZuConfiguration::cities() const { return m_timeZones.value(m_currentRegion); }

// --- Time zone and formats ------------------------------------------------------------------

void DZuConfiguration::setRegion(const QString& region, const QString& city)
{
    // Stored before any check: an invalid pair is kept and saved as the operator chose it.
    m_currentRegion = region;
    m_currentCity = city;

    const QString identifier = region + QLatin1Char('/') + city;
    const QTimeZone zone(identifier.toUtf8());
    if (zone != QTimeZone::systemTimeZone()) {
        if (!zone.isValid()) {
            LogLine::critical(this, C_source, __LINE__, qtTrId("DZuConfiguration_Error__invalid_region__city"));
        } else {
            // Blocks the caller until the command ends; any outcome but exit code 0 is a failure.
            const int exitCode = QProcess::execute(timeZoneProgram(), {QStringLiteral("set-timezone"), identifier});
            if (exitCode == 0)
                LogLine::debug(this, C_source, __LINE__,
                               qtTrId("DZuConfiguration_The_system_time_zone_has_been_successfully_changed_"));
            else
                LogLine::critical(this, C_source, __LINE__, qtTrId("DZuConfiguration_Error_changing_system_time_zone_"));
        }
    }
    emit sigRegionChanged();
}

void DZuConfiguration::setFormats(const QString& hourformat, const QString& dateformat)
{
    m_currentHourFormat = hourformat;
    m_currentDateFormat = dateformat;
    m_dateTime.set24hFormat(hourformat == C_hourFormat24);
    emit sigRegionChanged();
}

QString DZuConfiguration::getQDateStringFormat() const
{
    return c_dateFormats.value(m_currentDateFormat);
}

QString DZuConfiguration::getQTimeStringFormat() const
{
    return m_currentHourFormat == C_hourFormat24 ? C_hourPattern24 : C_hourPattern12;
}

QDate DZuConfiguration::stringToDate(const QString& stringDate)
{
    return QDate::fromString(stringDate, getQDateStringFormat());
}

QString DZuConfiguration::dateToString(const QDate& date)
{
    return date.toString(getQDateStringFormat());
}

QDateTime DZuConfiguration::stringToTime(const QString& stringTime)
{
    return QDateTime::fromString(stringTime, getQTimeStringFormat());
}

QString DZuConfiguration::timeToString(const QDateTime& time)
{
    return time.toString(getQTimeStringFormat());
}

QString DZuConfiguration::dateTimeToString(const QDateTime& dateTime)
{
    if (!dateTime.isValid() || dateTime.isNull())
        return QString();
    return dateTime.toString(getQDateStringFormat() + QLatin1Char(' ') + getQTimeStringFormat());
}

// --- Languages and keyboard map -------------------------------------------------------------

QStringList DZuConfiguration::getLanguages() const
{
    return LanguagesManagement::instance()->languageTable().keys();
}

void DZuConfiguration::setKeyMapLayout(const QString& layout)
{
    if (layout.isEmpty())
        return;

    const QString path = compositorFilePath();
    QFile file(path);
    // ExistingOnly: a missing compositor file is reported, never created empty.
    if (!file.open(QIODevice::ReadWrite | QIODevice::Text | QIODevice::ExistingOnly)) {
        LogLine::debug(this, C_source, __LINE__, QStringLiteral("ERROR: cannot open file: ") + path);
        return;
    }

    QStringList lines;
    {
        QTextStream in(&file);
        in.setCodec("UTF-8");
        while (!in.atEnd()) {
            const QString line = in.readLine();
            lines.append(line.startsWith(C_keymapLayoutKey) ? C_keymapLayoutKey + layout.toLower() : line);
        }
    }

    file.resize(0);
    file.seek(0);
    QTextStream out(&file);
    out.setCodec("UTF-8");
    for (const QString& line : lines)
        out << line << '\n';
}
