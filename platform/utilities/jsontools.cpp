#include "utilities/jsontools.h"
#include "utilities/logline.h"

#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStringList>

namespace {
const char* const C_source = "platform/utilities/jsontools";

// Writes value at keys[depth...] into object, creating (or replacing non-object)
// intermediate values with objects.
void setPathValue(QJsonObject& object, const QStringList& keys, int depth, const QJsonValue& value)
{
    const QString& key = keys.at(depth);
    if (depth == keys.size() - 1) {
        object.insert(key, value);
        return;
    }
    QJsonObject child = object.value(key).toObject();
    setPathValue(child, keys, depth + 1, value);
    object.insert(key, child);
}
}

bool JsonTools::readFile(const QString& path, QJsonObject& object)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return false;
    object = document.object();
    return true;
}

bool JsonTools::writeFile(const QString& path, const QJsonObject& object)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot open file for writing:"), path);
        return false;
    }
    file.write(QJsonDocument(object).toJson(QJsonDocument::Indented));
    if (!file.commit()) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot write file:"), path);
        return false;
    }
    return true;
}

QJsonValue JsonTools::getValue(const QJsonObject& object, const QString& dottedPath, bool* found)
{
    if (found)
        *found = false;
    if (dottedPath.isEmpty())
        return QJsonValue(QJsonValue::Undefined);
    const QStringList keys = dottedPath.split(QLatin1Char('.'));
    QJsonObject current = object;
    for (int i = 0; i < keys.size(); ++i) {
        const auto it = current.constFind(keys.at(i));
        if (it == current.constEnd())
            return QJsonValue(QJsonValue::Undefined);
        if (i == keys.size() - 1) {
            if (found)
                *found = true;
            return it.value();
        }
        if (!it.value().isObject())
            return QJsonValue(QJsonValue::Undefined);
        current = it.value().toObject();
    }
    return QJsonValue(QJsonValue::Undefined);
}

void JsonTools::addValue(const QSharedPointer<QJsonObject>& object, const QString& dottedPath, const QJsonValue& value)
{
    if (!object || dottedPath.isEmpty()) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: no object or empty path:"), dottedPath);
        return;
    }
    setPathValue(*object, dottedPath.split(QLatin1Char('.')), 0, value);
}
