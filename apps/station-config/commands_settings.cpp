// get, set, unset, keys and list: the settings document key by key.
#include "commands.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>

#include <functional>

#include "arguments.h"
#include "d_zu_configuration.h"
#include "settingkeys.h"
#include "station.h"
#include "utilities/jsontools.h"
#include "utilities/keyboardmanagement.h"
#include "utilities/languagesmanagement.h"

namespace {
// Document keys that the service changes through a property setter of its own.
const QMap<QString, const char*>& propertyOfKey()
{
    static const QMap<QString, const char*> table {
        { "general.workplace_name", "workplaceName" },
        { "general.production_line_name", "prodLineName" },
        { "general.inactivity_timeout", "inactivityTimeout" },
        { "general.sequenceWarningThreshold", "sequenceWarningThreshold" },
        { "general.forceAutoLogoutForAllUsers", "forceAutoLogoutForAllUsers" },
        { "general.sound_volume", "soundVolume" },
        { "general.hideProductionTimer", "hideProductionTimer" },
        { "general.operatorCannotSelectSequence", "operatorCannotSelectSequence" },
        { "templates.company_logo", "companyLogo" },
        { "sequencer.sequenceAutoLaunch", "sequenceAutoLaunch" },
        { "sequencer.sequenceAutoSerialNumber", "sequenceAutoSerialNumber" },
        { "sequencer.sequenceIoLaunch", "sequenceIoLaunch" },
        { "sequencer.sequenceScriptLaunch", "sequenceScriptLaunch" },
        { "sequencer.sequenceStatusOutput", "sequenceStatusOutput" },
        { "sequencer.sequenceScriptPath", "sequenceScriptPath" },
        { "sequencer.sequenceScriptData", "sequenceScriptData" },
        { "regionalSettings.torque_unit", "torqueUnit" },
        { "regionalSettings.weight_unit", "weightUnit" },
        { "regionalSettings.distance_unit", "distanceUnit" },
        { "regionalSettings.temperature_unit", "temperatureUnit" },
        { "regionalSettings.useDefaultNtp", "useDefaultNtp" },
        { "regionalSettings.customNtp", "customNtp" },
        { "regionalSettings.displayDate", "displayDate" },
        { "regionalSettings.displaySeconds", "displaySeconds" },
    };
    return table;
}

// Removes the value at a dotted path; false when there is none.
bool removeAt(QJsonObject& object, const QStringList& path, int index = 0)
{
    const QString& part = path.at(index);
    if (!object.contains(part))
        return false;
    if (index == path.size() - 1) {
        object.remove(part);
        return true;
    }
    QJsonObject child = object.value(part).toObject();
    if (!removeAt(child, path, index + 1))
        return false;
    object.insert(part, child);
    return true;
}

// Applies a checked value to the service. `city` goes with a region ("Europe/Paris").
bool apply(Station& station, const QString& key, const QJsonValue& value, const QString& city = QString())
{
    DZuConfiguration* config = station.configuration();
    if (const char* property = propertyOfKey().value(key, nullptr))
        return config->setProperty(property, value.toVariant());
    if (key == QLatin1String("regionalSettings.region")) {
        config->setRegion(value.toString(), city.isEmpty() ? config->currentCity() : city);
    } else if (key == QLatin1String("regionalSettings.city")) {
        config->setRegion(config->currentRegion(), value.toString());
    } else if (key == QLatin1String("regionalSettings.language")) {
        return LanguagesManagement::instance()->setCurrentLanguageCode(value.toString());
    } else if (key == QLatin1String("regionalSettings.keyboard_input")) {
        return KeyboardManagement::instance()->setCurrentKeyboardLayoutCode(value.toString(), true);
    } else if (key == QLatin1String("regionalSettings.hourFormat")) {
        config->setFormats(value.toString(), config->currentDateFormat());
    } else if (key == QLatin1String("regionalSettings.dateFormat")) {
        config->setFormats(config->currentHourFormat(), value.toString());
    } else if (key == QLatin1String("templates.company_address")) {
        config->saveTemplateParameters(value.toString(), config->reportFooter());
    } else if (key == QLatin1String("templates.report_footer")) {
        config->saveTemplateParameters(config->companyAddress(), value.toString());
    } else {
        // Keys without a setter: the value goes into the in-memory document, which the service reads again.
        JsonTools::addValue(config->settings(), key, value);
        config->loadSettings();
    }
    return true;
}

// Takes the key out of the in-memory document: the service falls back to its default.
void applyUnset(Station& station, const QString& key)
{
    DZuConfiguration* config = station.configuration();
    removeAt(*config->settings(), key.split(QLatin1Char('.')));
    config->loadSettings();
}

QString compact(const QJsonValue& value)
{
    if (value.isString())
        return value.toString();
    if (value.isUndefined())
        return QStringLiteral("(absent)");
    return QString::fromUtf8(QJsonDocument(QJsonArray { value }).toJson(QJsonDocument::Compact)).mid(1).chopped(1);
}

// Why KEY cannot be set; the keys under it when it names a section.
QString notSettable(const QList<SettingKey>& keys, const QString& key)
{
    QStringList under;
    for (const SettingKey& description : keys) {
        if (description.key.startsWith(key + QLatin1Char('.')))
            under << description.key.mid(key.size() + 1);
    }
    if (!under.isEmpty())
        return QStringLiteral("%1 is a section, not a value; its keys: %2; see `station-config keys %1`")
            .arg(key, under.join(QStringLiteral(", ")));
    return QStringLiteral("%1 is not a key that can be set; see `station-config keys`").arg(key);
}

// The value to store for KEY from TEXT; the city too for "Region/City". Exit code and reason.
int checkValue(DZuConfiguration* config, const QList<SettingKey>& keys, const QString& key, const QString& text,
               QJsonValue& value, QString& city, QString& reason)
{
    const SettingKey* description = SettingKeys::find(keys, key);
    if (!description) {
        reason = notSettable(keys, key);
        return CeExitFailed;
    }
    const bool regionWithCity = key == QLatin1String("regionalSettings.region") && text.contains(QLatin1Char('/'));
    const QString given = regionWithCity ? text.section(QLatin1Char('/'), 0, 0) : text;
    if (!description->convert(given, value, reason)) {
        reason = QStringLiteral("%1: %2; see `station-config keys %1`").arg(key, reason);
        return CeExitFailed;
    }
    if (key == QLatin1String("regionalSettings.region")) {
        const QStringList cities = SettingKeys::citiesOf(config, value.toString());
        city = regionWithCity ? text.section(QLatin1Char('/'), 1) : config->currentCity();
        if (!cities.contains(city)) {
            reason = regionWithCity
                ? QStringLiteral("%1: '%2' is not a city of region %3; see `station-config timezones %3`")
                      .arg(key, city, value.toString())
                : QStringLiteral("%1: the current city %2 is not in region %3; give both, e.g. `set %1 %3/%4`")
                      .arg(key, city, value.toString(), cities.value(0));
            return CeExitFailed;
        }
    }
    return CeExitSuccess;
}

// A writer that found the file changed since it loaded it reloads and applies its change again.
constexpr int C_conflictRetries = 5;

// Applies `change` and saves, again after a reload when another program saved in between.
int applyAndSave(Station& station, const QString& reason, const std::function<bool()>& change,
                 const std::function<void(QJsonObject&)>& intoFile)
{
    for (int attempt = 0;; ++attempt) {
        if (!change()) {
            err() << "station-config: the configuration service refused the value\n";
            return CeExitFailed;
        }
        QString error;
        const Station::EnSaveResult result = station.save(reason, error, intoFile);
        if (result == Station::CeSaved)
            return CeExitSuccess;
        if (result == Station::CeConflict && attempt < C_conflictRetries) {
            station.reload();
            if (!station.isDocumentUsable()) {
                err() << "station-config: " << station.unusableMessage() << "\n";
                return CeExitUnusable;
            }
            continue;
        }
        err() << "station-config: " << error << "\n";
        return result == Station::CeUnusable ? CeExitUnusable : CeExitFailed;
    }
}

// --check: what set or unset would store against what the document holds; nothing is changed.
// `alsoChanged`: a change that goes with the key (the city of a region).
int checkOnly(const CommandContext& context, const QString& key, const QJsonValue& after, bool alsoChanged = false)
{
    bool found = false;
    const QJsonValue before = JsonTools::getValue(context.station.readDocument(), key, &found);
    const QJsonValue was = found ? before : QJsonValue(QJsonValue::Undefined);
    const bool changed = was != after || alsoChanged;
    const auto nullWhenAbsent = [&](const QJsonValue& value) {
        return value.isUndefined() ? QJsonValue(QJsonValue::Null) : shown(context, value, key);
    };
    if (context.json)
        out() << QJsonDocument(QJsonObject { { "key", key }, { "changed", changed }, { "check", true },
                                             { "before", nullWhenAbsent(was) }, { "after", nullWhenAbsent(after) } })
                     .toJson(QJsonDocument::Indented);
    else if (changed)
        out() << key << ": " << compact(shown(context, was, key)) << " -> " << compact(shown(context, after, key))
              << " (would change)\n";
    else
        out() << key << ": " << compact(shown(context, was, key)) << " (unchanged)\n";
    return CeExitSuccess;
}

// Every leaf of the document as "dotted.key" -> value; array elements by index.
void flatten(const QJsonValue& value, const QString& prefix, QList<QPair<QString, QJsonValue>>& rows)
{
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it)
            flatten(it.value(), prefix.isEmpty() ? it.key() : prefix + QLatin1Char('.') + it.key(), rows);
    } else if (value.isArray() && !value.toArray().isEmpty()
               && (value.toArray().first().isObject() || value.toArray().first().isArray())) {
        const QJsonArray array = value.toArray();
        for (int i = 0; i < array.size(); ++i)
            flatten(array.at(i), prefix + QLatin1Char('.') + QString::number(i), rows);
    } else {
        rows.append({ prefix, value });
    }
}
}

int cmdGet(CommandContext& context)
{
    bool found = false;
    const QString key = context.arguments.first();
    const QJsonValue value = shown(context, JsonTools::getValue(context.station.readDocument(), key, &found), key);
    if (!found) {
        err() << "station-config: no value at " << context.arguments.first() << "\n";
        return CeExitFailed;
    }
    if (value.isObject() || value.isArray())
        out() << QJsonDocument::fromVariant(value.toVariant()).toJson(QJsonDocument::Indented);
    else if (value.isString() && !context.json)
        out() << value.toString() << "\n";
    else
        out() << QString::fromUtf8(QJsonDocument(QJsonArray { value }).toJson(QJsonDocument::Compact)).mid(1).chopped(1) << "\n";
    return CeExitSuccess;
}

int cmdSet(CommandContext& context)
{
    const QString key = context.arguments.at(0);
    Station& station = context.station;
    const QList<SettingKey> keys = SettingKeys::describe(station.configuration());
    QJsonValue value;
    QString city;
    QString reason;
    if (const int code = checkValue(station.configuration(), keys, key, context.arguments.at(1), value, city, reason)) {
        err() << "station-config: " << reason << "\n";
        return code;
    }
    if (context.options.isSet(QStringLiteral("check"))) {
        const bool cityChanges = !city.isEmpty()
            && JsonTools::getValue(station.readDocument(), QStringLiteral("regionalSettings.city")) != QJsonValue(city);
        return checkOnly(context, key, value, cityChanges);
    }
    // Sections the service writes are rebuilt over this; other keys keep the new value.
    const auto intoFile = [&](QJsonObject& root) {
        JsonTools::addValue(QSharedPointer<QJsonObject>(&root, [](QJsonObject*) {}), key, value);
    };
    const int code = applyAndSave(station, QStringLiteral("set ") + key,
                                  [&] { return apply(station, key, value, city); }, intoFile);
    if (code != CeExitSuccess)
        return code;
    CommandContext readBack { context.station, { key }, context.options, context.json };
    return cmdGet(readBack);
}

int cmdUnset(CommandContext& context)
{
    const QString key = context.arguments.at(0);
    Station& station = context.station;
    const QList<SettingKey> keys = SettingKeys::describe(station.configuration());
    if (!SettingKeys::find(keys, key)) {
        err() << "station-config: " << notSettable(keys, key) << "\n";
        return CeExitFailed;
    }
    if (context.options.isSet(QStringLiteral("check"))) {
        // What a save would leave: keys the service always writes come back with their default.
        applyUnset(station, key);
        QJsonObject next = station.readDocument();
        removeAt(next, key.split(QLatin1Char('.')));
        station.configuration()->completeDocument(next);
        bool found = false;
        const QJsonValue after = JsonTools::getValue(next, key, &found);
        return checkOnly(context, key, found ? after : QJsonValue(QJsonValue::Undefined));
    }
    const auto intoFile = [&](QJsonObject& root) { removeAt(root, key.split(QLatin1Char('.'))); };
    const int code = applyAndSave(station, QStringLiteral("unset ") + key,
                                  [&] { applyUnset(station, key); return true; }, intoFile);
    if (code != CeExitSuccess)
        return code;
    bool found = false;
    const QJsonValue now = JsonTools::getValue(station.readDocument(), key, &found);
    if (context.json)
        out() << QJsonDocument(QJsonObject { { "key", key }, { "value", found ? now : QJsonValue() } }).toJson(QJsonDocument::Indented);
    else if (found)
        out() << key << " unset; the station uses its default: " << compact(now) << "\n";
    else
        out() << key << " unset\n";
    return CeExitSuccess;
}

int cmdKeys(CommandContext& context)
{
    const QString prefix = context.arguments.value(0);
    const QJsonObject document = context.station.readDocument();
    QList<SettingKey> keys;
    for (const SettingKey& description : SettingKeys::describe(context.station.configuration())) {
        if (description.key.startsWith(prefix))
            keys << description;
    }
    if (keys.isEmpty()) {
        err() << "station-config: no settable key starts with " << prefix << "\n";
        return CeExitFailed;
    }
    if (context.json) {
        QJsonArray array;
        for (const SettingKey& description : keys) {
            QJsonObject row { { "key", description.key }, { "type", description.typeName() },
                              { "current", JsonTools::getValue(document, description.key) } };
            if (description.type == SettingKey::CeInteger) {
                row.insert(QStringLiteral("minimum"), double(description.minimum));
                row.insert(QStringLiteral("maximum"), double(description.maximum));
            } else if (description.type == SettingKey::CeChoice) {
                row.insert(QStringLiteral("allowed"), QJsonArray::fromStringList(description.allowed));
                QJsonObject names;
                for (auto it = description.names.begin(); it != description.names.end(); ++it)
                    names.insert(it.key(), it.value());
                if (!names.isEmpty())
                    row.insert(QStringLiteral("names"), names);
            } else {
                row.insert(QStringLiteral("allowed"), description.allowedText());
            }
            if (row.value(QStringLiteral("current")).isUndefined())
                row.remove(QStringLiteral("current"));
            array.append(row);
        }
        out() << QJsonDocument(array).toJson(QJsonDocument::Indented);
        return CeExitSuccess;
    }
    // One key: every allowed value, one a line. Several: one line each, long lists counted.
    if (keys.size() == 1 && keys.first().key == prefix) {
        const SettingKey& description = keys.first();
        out() << "key:     " << description.key << "\ntype:    " << description.typeName() << "\ncurrent: "
              << compact(JsonTools::getValue(document, description.key)) << "\n";
        if (description.type == SettingKey::CeChoice) {
            out() << "allowed: " << description.allowed.size() << " values, each " << description.allowedFrom << "\n";
            for (const QString& allowed : description.allowed) {
                const QString name = description.names.key(allowed);
                out() << "  " << allowed << (name.isEmpty() ? QString() : QStringLiteral("  (") + name + QLatin1Char(')')) << "\n";
            }
        } else {
            out() << "allowed: " << description.allowedText() << "\n";
        }
        return CeExitSuccess;
    }
    for (const SettingKey& description : keys) {
        const QString allowed = description.type == SettingKey::CeChoice && description.allowed.size() > 8
            ? QStringLiteral("%1 values: `station-config keys %2`").arg(description.allowed.size()).arg(description.key)
            : description.allowedText();
        out() << qSetFieldWidth(42) << Qt::left << description.key << qSetFieldWidth(0) << " "
              << qSetFieldWidth(18) << description.typeName() << qSetFieldWidth(0) << " "
              << qSetFieldWidth(24) << compact(JsonTools::getValue(document, description.key)) << qSetFieldWidth(0)
              << " " << allowed << "\n";
    }
    return CeExitSuccess;
}

int cmdList(CommandContext& context)
{
    QList<QPair<QString, QJsonValue>> rows;
    flatten(context.station.readDocument(), QString(), rows);
    if (context.json) {
        QJsonObject object;
        for (const auto& row : rows)
            object.insert(row.first, shown(context, row.second, row.first));
        out() << QJsonDocument(object).toJson(QJsonDocument::Indented);
        return CeExitSuccess;
    }
    for (const auto& row : rows)
        out() << row.first << "=" << compact(shown(context, row.second, row.first)) << "\n";
    return CeExitSuccess;
}
