#include "settingkeys.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSignalBlocker>

#include <limits>

#include "d_zu_configuration.h"
#include "utilities/keyboardmanagement.h"
#include "utilities/languagesmanagement.h"

namespace {
SettingKey make(const QString& key, SettingKey::EnType type)
{
    SettingKey description;
    description.key = key;
    description.type = type;
    return description;
}

SettingKey integer(const QString& key, qint64 minimum, qint64 maximum)
{
    SettingKey description = make(key, SettingKey::CeInteger);
    description.minimum = minimum;
    description.maximum = maximum;
    return description;
}

SettingKey choice(const QString& key, const QStringList& allowed, const QString& from,
                  const QMap<QString, QString>& names = {})
{
    SettingKey description = make(key, SettingKey::CeChoice);
    description.allowed = allowed;
    description.allowedFrom = from;
    description.names = names;
    return description;
}

// Displayed name -> code of every keyboard layout (the manager is left as it was).
QMap<QString, QString> keyboardLayouts()
{
    KeyboardManagement* keyboards = KeyboardManagement::instance();
    const QSignalBlocker blocker(keyboards);
    const QString current = keyboards->getCurrentKeyboardLayoutCode();
    QMap<QString, QString> layouts;
    for (const QString& name : keyboards->getKeyboardLayouts()) {
        if (keyboards->setCurrentKeyboardLayout(name))
            layouts.insert(name, keyboards->getCurrentKeyboardLayoutCode());
    }
    keyboards->setCurrentKeyboardLayoutCode(current, false);
    return layouts;
}

QStringList codesInOrder(const QMap<QString, QString>& names)
{
    QStringList codes;
    for (const QString& code : names)
        codes << code;
    return codes;
}
}

QString SettingKey::typeName() const
{
    switch (type) {
    case CeBoolean: return QStringLiteral("boolean");
    case CeInteger: return QStringLiteral("integer");
    case CeText: return QStringLiteral("text");
    case CeChoice: return QStringLiteral("choice");
    case CeTextList: return QStringLiteral("text list");
    case CeRegularExpression: return QStringLiteral("regular expression");
    }
    return QString();
}

QString SettingKey::allowedText() const
{
    switch (type) {
    case CeBoolean: return QStringLiteral("true or false");
    case CeInteger:
        if (maximum == std::numeric_limits<int>::max())
            return QStringLiteral("%1 or more").arg(minimum);
        return QStringLiteral("%1..%2").arg(minimum).arg(maximum);
    case CeText: return QStringLiteral("any text");
    case CeChoice: {
        QStringList shown;
        for (const QString& value : allowed) {
            const QString name = names.key(value);
            shown << (name.isEmpty() || name == value ? value : QStringLiteral("%1 (%2)").arg(value, name));
        }
        return shown.join(QStringLiteral(", "));
    }
    case CeTextList: return QStringLiteral("a JSON array of texts, e.g. [\"a\", \"b\"]");
    case CeRegularExpression: return QStringLiteral("a valid regular expression");
    }
    return QString();
}

bool SettingKey::convert(const QString& text, QJsonValue& value, QString& reason) const
{
    const QString quoted = QLatin1Char('\'') + text + QLatin1Char('\'');
    switch (type) {
    case CeBoolean: {
        const QString lower = text.toLower();
        if (lower == QLatin1String("true") || lower == QLatin1String("yes")) {
            value = true;
            return true;
        }
        if (lower == QLatin1String("false") || lower == QLatin1String("no")) {
            value = false;
            return true;
        }
        reason = QStringLiteral("%1 is not a boolean; allowed: true or false").arg(quoted);
        return false;
    }
    case CeInteger: {
        bool ok = false;
        const qint64 number = text.trimmed().toLongLong(&ok);
        if (!ok) {
            reason = QStringLiteral("%1 is not a whole number; allowed: %2").arg(quoted, allowedText());
            return false;
        }
        if (number < minimum || number > maximum) {
            reason = QStringLiteral("%1 is outside %2").arg(quoted, allowedText());
            return false;
        }
        value = double(number);
        return true;
    }
    case CeText:
        value = text;
        return true;
    case CeChoice: {
        if (allowed.contains(text)) {
            value = text;
            return true;
        }
        if (names.contains(text)) {
            value = names.value(text);
            return true;
        }
        for (const QString& candidate : allowed) {
            if (candidate.compare(text, Qt::CaseInsensitive) == 0) {
                value = candidate;
                return true;
            }
        }
        reason = QStringLiteral("%1 is not %2").arg(quoted, allowedFrom);
        if (allowed.size() <= 12)
            reason += QStringLiteral(" (%1)").arg(allowedText());
        return false;
    }
    case CeTextList: {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
        bool texts = error.error == QJsonParseError::NoError && document.isArray();
        for (const QJsonValue& element : document.array())
            texts = texts && element.isString();
        if (!texts) {
            reason = QStringLiteral("%1 is not %2").arg(quoted, allowedText());
            return false;
        }
        value = document.array();
        return true;
    }
    case CeRegularExpression: {
        const QRegularExpression expression(text);
        if (!expression.isValid()) {
            reason = QStringLiteral("%1 is not a valid regular expression (%2)").arg(quoted, expression.errorString());
            return false;
        }
        value = text;
        return true;
    }
    }
    return false;
}

QStringList SettingKeys::torqueUnits()
{
    return { QStringLiteral("Nm"), QStringLiteral("cNm"), QStringLiteral("kNm"), QStringLiteral("in.lbf"),
             QStringLiteral("ft.lbf") };
}

QStringList SettingKeys::weightUnits() { return { QStringLiteral("kg"), QStringLiteral("g"), QStringLiteral("lb") }; }

QStringList SettingKeys::distanceUnits()
{
    return { QStringLiteral("mm"), QStringLiteral("cm"), QStringLiteral("m"), QStringLiteral("in") };
}

QStringList SettingKeys::temperatureUnits()
{
    return { QStringLiteral("\u00B0C"), QStringLiteral("\u00B0F"), QStringLiteral("K") };
}

QStringList SettingKeys::citiesOf(DZuConfiguration* config, const QString& region)
{
    if (!config->regions().contains(region))
        return {};
    const QSignalBlocker blocker(config);
    const QString current = config->currentRegion();
    config->setCurrentRegion(region);
    const QStringList cities = config->cities();
    config->setCurrentRegion(current);
    return cities;
}

QList<SettingKey> SettingKeys::describe(DZuConfiguration* config)
{
    constexpr qint64 C_noMaximum = std::numeric_limits<int>::max();
    const QMap<QString, QString> languages = LanguagesManagement::instance()->languageTable();
    const QMap<QString, QString> keyboards = keyboardLayouts();

    QList<SettingKey> keys {
        make(QStringLiteral("general.workplace_name"), SettingKey::CeText),
        make(QStringLiteral("general.production_line_name"), SettingKey::CeText),
        integer(QStringLiteral("general.inactivity_timeout"), 0, C_noMaximum),
        integer(QStringLiteral("general.sequenceWarningThreshold"), 0, C_noMaximum),
        make(QStringLiteral("general.forceAutoLogoutForAllUsers"), SettingKey::CeBoolean),
        integer(QStringLiteral("general.sound_volume"), 0, C_soundVolumeMaximum),
        make(QStringLiteral("general.hideProductionTimer"), SettingKey::CeBoolean),
        make(QStringLiteral("general.operatorCannotSelectSequence"), SettingKey::CeBoolean),
        choice(QStringLiteral("regionalSettings.language"), codesInOrder(languages), QStringLiteral("a language"), languages),
        choice(QStringLiteral("regionalSettings.torque_unit"), torqueUnits(), QStringLiteral("a torque unit")),
        choice(QStringLiteral("regionalSettings.weight_unit"), weightUnits(), QStringLiteral("a weight unit")),
        choice(QStringLiteral("regionalSettings.distance_unit"), distanceUnits(), QStringLiteral("a distance unit")),
        choice(QStringLiteral("regionalSettings.temperature_unit"), temperatureUnits(), QStringLiteral("a temperature unit")),
        choice(QStringLiteral("regionalSettings.region"), config->regions(), QStringLiteral("a time-zone region")),
        choice(QStringLiteral("regionalSettings.city"), citiesOf(config, config->currentRegion()),
               QStringLiteral("a city of region %1").arg(config->currentRegion())),
        choice(QStringLiteral("regionalSettings.hourFormat"), config->hourFormats(), QStringLiteral("an hour format")),
        choice(QStringLiteral("regionalSettings.dateFormat"), config->dateFormats(), QStringLiteral("a date format")),
        make(QStringLiteral("regionalSettings.useDefaultNtp"), SettingKey::CeBoolean),
        make(QStringLiteral("regionalSettings.customNtp"), SettingKey::CeText),
        choice(QStringLiteral("regionalSettings.keyboard_input"), codesInOrder(keyboards), QStringLiteral("a keyboard layout"),
               keyboards),
        make(QStringLiteral("regionalSettings.displayDate"), SettingKey::CeBoolean),
        make(QStringLiteral("regionalSettings.displaySeconds"), SettingKey::CeBoolean),
        make(QStringLiteral("templates.company_logo"), SettingKey::CeText),
        make(QStringLiteral("templates.company_address"), SettingKey::CeText),
        make(QStringLiteral("templates.report_footer"), SettingKey::CeText),
        make(QStringLiteral("comments.skip_comments"), SettingKey::CeTextList),
        make(QStringLiteral("comments.rework_comments"), SettingKey::CeTextList),
        make(QStringLiteral("sequencer.sequenceAutoLaunch"), SettingKey::CeBoolean),
        make(QStringLiteral("sequencer.sequenceAutoSerialNumber"), SettingKey::CeBoolean),
        make(QStringLiteral("sequencer.sequenceIoLaunch"), SettingKey::CeBoolean),
        make(QStringLiteral("sequencer.sequenceScriptLaunch"), SettingKey::CeBoolean),
        make(QStringLiteral("sequencer.sequenceScriptPath"), SettingKey::CeText),
        make(QStringLiteral("sequencer.sequenceScriptData"), SettingKey::CeText),
        make(QStringLiteral("sequencer.sequenceStatusOutput"), SettingKey::CeText),
        integer(QStringLiteral("sync.interval_ms"), C_syncIntervalMinimumMs, C_syncIntervalMaximumMs),
        make(QStringLiteral("sync.excluded_patterns"), SettingKey::CeTextList),
    };
    // Validators are the document's own: patterns, and numbers such as a scan length.
    const QJsonObject validators = config->mainConfiguration().value(QStringLiteral("validators")).toObject();
    for (auto it = validators.begin(); it != validators.end(); ++it) {
        const QString key = QStringLiteral("validators.") + it.key();
        keys << (it->isDouble() ? integer(key, 0, C_noMaximum) : make(key, SettingKey::CeRegularExpression));
    }
    return keys;
}

const SettingKey* SettingKeys::find(const QList<SettingKey>& keys, const QString& key)
{
    for (const SettingKey& description : keys) {
        if (description.key == key)
            return &description;
    }
    return nullptr;
}
