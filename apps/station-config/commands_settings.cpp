#include "commands.h"

#include "arguments.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>

#include "d_zu_configuration.h"
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

// VALUE is read as JSON when it parses (numbers, booleans, arrays, quoted strings), else as text.
QJsonValue parseValue(const QString& text)
{
    const QJsonDocument document = QJsonDocument::fromJson(QStringLiteral("[%1]").arg(text).toUtf8());
    if (document.isArray() && document.array().size() == 1)
        return document.array().first();
    return QJsonValue(text);
}

// Keys without a setter: the value goes into the in-memory document, which the service applies again.
void setThroughDocument(Station& station, const QString& key, const QJsonValue& value)
{
    JsonTools::addValue(station.configuration()->settings(), key, value);
    station.configuration()->loadSettings();
}

// Applies the new value to the service; false when the service refuses it.
bool apply(Station& station, const QString& key, const QJsonValue& value)
{
    DZuConfiguration* config = station.configuration();
    if (const char* property = propertyOfKey().value(key, nullptr))
        return config->setProperty(property, value.toVariant());
    if (key == QLatin1String("regionalSettings.region")) {
        config->setRegion(value.toString(), config->currentCity());
    } else if (key == QLatin1String("regionalSettings.city")) {
        config->setRegion(config->currentRegion(), value.toString());
    } else if (key == QLatin1String("regionalSettings.language")) {
        const QString name = LanguagesManagement::instance()->languageTable().key(value.toString());
        if (name.isEmpty())
            return false;
        config->setCurrentLanguage(name);
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
        setThroughDocument(station, key, value);
    }
    return true;
}

// A writer that found the file changed since it loaded it reloads and applies its change again.
constexpr int C_conflictRetries = 5;
}

int cmdGet(CommandContext& context)
{
    bool found = false;
    const QJsonValue value = JsonTools::getValue(context.station.readDocument(), context.arguments.first(), &found);
    if (!found) {
        err() << "station-config: no value at " << context.arguments.first() << "\n";
        return 1;
    }
    if (value.isObject() || value.isArray())
        out() << QJsonDocument::fromVariant(value.toVariant()).toJson(QJsonDocument::Indented);
    else if (value.isString() && !context.json)
        out() << value.toString() << "\n";
    else
        out() << QString::fromUtf8(QJsonDocument(QJsonArray { value }).toJson(QJsonDocument::Compact)).mid(1).chopped(1) << "\n";
    return 0;
}

int cmdSet(CommandContext& context)
{
    const QString key = context.arguments.at(0);
    const QJsonValue value = parseValue(context.arguments.at(1));
    if (key.startsWith(QLatin1String("_hidden_"))) {
        err() << "station-config: " << key << " lives in memory only\n";
        return 1;
    }
    Station& station = context.station;

    // Sections the service writes are rebuilt over this; other keys keep the new value.
    const auto intoFile = [&](QJsonObject& root) {
        JsonTools::addValue(QSharedPointer<QJsonObject>(&root, [](QJsonObject*) {}), key, value);
    };
    for (int attempt = 0;; ++attempt) {
        if (!apply(station, key, value)) {
            err() << "station-config: cannot set " << key << "\n";
            return 1;
        }
        QString error;
        const Station::EnSaveResult result = station.save(QStringLiteral("set ") + key, error, intoFile);
        if (result == Station::CeSaved)
            break;
        if (result == Station::CeConflict && attempt < C_conflictRetries) {
            station.reload();
            if (!station.isDocumentUsable()) {
                err() << "station-config: " << station.unusableMessage() << "\n";
                return 3;
            }
            continue;
        }
        err() << "station-config: " << error << "\n";
        return result == Station::CeUnusable ? 3 : 1;
    }
    CommandContext readBack { context.station, { key }, context.options, context.json };
    return cmdGet(readBack);
}
