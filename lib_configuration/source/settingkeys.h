#pragma once
#include "station_configuration_export.h"
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

class DZuConfiguration;

// One key of the settings document that a tool may change, with what the configuration
// service accepts for it.
struct STATION_CONFIGURATION_EXPORT SettingKey
{
    enum EnType { CeBoolean, CeInteger, CeText, CeChoice, CeTextList, CeRegularExpression };

    QString key;                  // dotted path: "general.sound_volume"
    EnType type = CeText;
    qint64 minimum = 0;           // CeInteger
    qint64 maximum = 0;
    QStringList allowed;          // CeChoice: the values as stored
    QMap<QString, QString> names; // CeChoice: displayed name -> stored value, accepted as well
    QString allowedFrom;          // what a choice is, e.g. "a city of region Europe"

    QString typeName() const;
    // "0..100", "Nm, cNm, ...", "true or false"...
    QString allowedText() const;
    // The stored value for `text` typed by a user; false with `reason` naming what is allowed.
    bool convert(const QString& text, QJsonValue& value, QString& reason) const;
};

namespace SettingKeys {
// Every settable key, from the service's own lists (languages, keyboard layouts, regions and
// the cities of the current region, hour and date formats, units) and its limits.
STATION_CONFIGURATION_EXPORT QList<SettingKey> describe(DZuConfiguration* config);
// The key named `key`, or nullptr.
STATION_CONFIGURATION_EXPORT const SettingKey* find(const QList<SettingKey>& keys, const QString& key);

// Units offered for each kind of measure.
STATION_CONFIGURATION_EXPORT QStringList torqueUnits();
STATION_CONFIGURATION_EXPORT QStringList weightUnits();
STATION_CONFIGURATION_EXPORT QStringList distanceUnits();
STATION_CONFIGURATION_EXPORT QStringList temperatureUnits();
// Limits the service applies: it stores a volume above 100 or below 0 as 100, and ignores
// a sync interval outside these bounds when it loads the document.
constexpr int C_soundVolumeMaximum = 100;
constexpr int C_syncIntervalMinimumMs = 1000;
constexpr int C_syncIntervalMaximumMs = 600000;
// Cities of a region of the time-zone table (empty for an unknown region).
STATION_CONFIGURATION_EXPORT QStringList citiesOf(DZuConfiguration* config, const QString& region);
}
