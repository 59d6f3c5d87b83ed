// Regional settings: time zone, date and hour formats, languages and the keyboard map.
#include "d_zu_configuration.h"

#include "utilities/languagesmanagement.h"
#include "utilities/logline.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryFile>
#include <QTimeZone>

#include <cerrno>
#include <cstring>
#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#else
#include <QSaveFile>
#endif

namespace {
const char C_source[] = "lib_configuration/source/d_zu_configuration";

const QString C_timeZoneResource = QStringLiteral(":/data/timezones.csv");
const QString C_hourFormat24 = QStringLiteral("24 h");
const QString C_hourPattern24 = QStringLiteral("HH:mm");
const QString C_hourPattern12 = QStringLiteral("hh:mm A");
const QByteArray C_keymapLayoutKey = QByteArrayLiteral("keymap_layout=");
const QString C_systemTimeZoneProgram = QStringLiteral("timedatectl");

QString& timeZoneProgram()
{
    static QString program = QStringLiteral("timedatectl");
    return program;
}

bool& applySystemSettingsOnLoad()
{
    static bool apply = true;
    return apply;
}

QString& compositorFilePath()
{
    static QString path = QStringLiteral("/etc/xdg/weston/weston.ini");
    return path;
}

#ifdef Q_OS_UNIX
// Replaces the file at `path` (a symbolic link's target) by `bytes` so that a crash leaves
// either the old or the new file: a temporary file beside it with the old mode and owner,
// flushed to disk, renamed over it. The old file is untouched on failure.
bool replaceFile(const QString& path, const QByteArray& bytes, QString* error)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    struct stat old;
    if (target.isEmpty() || ::stat(QFile::encodeName(target).constData(), &old) != 0) {
        *error = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    const QFileInfo info(target);
    QTemporaryFile temporary(info.absolutePath() + QStringLiteral("/.") + info.fileName() + QStringLiteral(".XXXXXX"));
    if (!temporary.open()) {
        *error = temporary.errorString();
        return false;
    }
    const int fd = temporary.handle();
    if (temporary.write(bytes) != bytes.size() || !temporary.flush()) {
        *error = temporary.errorString();
        return false;
    }
    // The owner only when allowed (root); the mode always.
    if (::fchown(fd, old.st_uid, old.st_gid) != 0 && errno != EPERM) {
        *error = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    if (::fchmod(fd, old.st_mode & 07777) != 0 || ::fsync(fd) != 0) {
        *error = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    if (::rename(QFile::encodeName(temporary.fileName()).constData(), QFile::encodeName(target).constData()) != 0) {
        *error = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    temporary.setAutoRemove(false);
    // The new directory entry reaches the disk too.
    const int directory = ::open(QFile::encodeName(info.absolutePath()).constData(), O_RDONLY | O_DIRECTORY);
    if (directory >= 0) {
        ::fsync(directory);
        ::close(directory);
    }
    return true;
}
#else
// Replaces the file at `path` (a symbolic link's target) by `bytes` through QSaveFile (a
// temporary file renamed over it), keeping its permissions.
bool replaceFile(const QString& path, const QByteArray& bytes, QString* error)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    if (target.isEmpty()) {
        *error = QStringLiteral("%1 does not exist").arg(path);
        return false;
    }
    const QFile::Permissions permissions = QFile::permissions(target);
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        *error = file.errorString();
        return false;
    }
    QFile::setPermissions(target, permissions);
    return true;
}
#endif
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

void DZuConfiguration::loadTimeZones() const
{
    if (!m_timeZonesLoaded)
        loadTimeZoneTable(C_timeZoneResource, m_timeZones, m_timeZoneIndex);
    m_timeZonesLoaded = true;
}

QStringList DZuConfiguration::timezones() const
{
    loadTimeZones();
    return m_timeZoneIndex.keys();
}

QStringList DZuConfiguration::regions() const
{
    loadTimeZones();
    return m_timeZones.keys();
}

QStringList DZuConfiguration::cities() const
{
    loadTimeZones();
    return m_timeZones.value(m_currentRegion);
}

void DZuConfiguration::setApplySystemSettingsOnLoad(bool apply)
{
    applySystemSettingsOnLoad() = apply;
}

bool DZuConfiguration::appliesSystemSettingsOnLoad()
{
    return applySystemSettingsOnLoad();
}

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
            if (exitCode == 0 && QFileInfo(timeZoneProgram()).fileName() == C_systemTimeZoneProgram)
                LogLine::debug(this, C_source, __LINE__,
                               qtTrId("DZuConfiguration_The_system_time_zone_has_been_successfully_changed_"));
            else if (exitCode == 0) // a preview's stand-in: nothing changed on this computer
                LogLine::debug(this, C_source, __LINE__,
                               QStringLiteral("time zone %1 given to the stand-in %2 (exit 0); the system time zone "
                                              "is unchanged").arg(identifier, timeZoneProgram()));
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
    if (path.isEmpty()) {
        LogLine::debug(this, C_source, __LINE__,
                       QStringLiteral("keyboard map %1 not applied: no compositor file (preview)").arg(layout));
        return;
    }
    QFile file(path);
    // A missing compositor file is reported, never created.
    if (!file.open(QIODevice::ReadOnly)) {
        LogLine::debug(this, C_source, __LINE__, QStringLiteral("ERROR: cannot open file: ") + path);
        return;
    }
    const QByteArray before = file.readAll();
    file.close();

    // Other lines are kept byte for byte; each line ends with a line feed.
    QList<QByteArray> lines = before.split('\n');
    if (!lines.isEmpty() && lines.constLast().isEmpty())
        lines.removeLast();
    QByteArray after;
    after.reserve(before.size() + layout.size() + 1);
    for (const QByteArray& line : qAsConst(lines)) {
        if (line.startsWith(C_keymapLayoutKey))
            after += C_keymapLayoutKey + layout.toLower().toUtf8() + (line.endsWith('\r') ? "\r" : "");
        else
            after += line;
        after += '\n';
    }
    if (after == before)
        return;
    QString error;
    if (!replaceFile(path, after, &error))
        LogLine::critical(this, C_source, __LINE__,
                          QStringLiteral("ERROR: cannot rewrite the keyboard map in %1: %2; the file is unchanged")
                              .arg(path, error));
}
