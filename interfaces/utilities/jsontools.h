#pragma once
#include "utilities/station_utilities_export.h"
#include <QJsonObject>
#include <QJsonValue>
#include <QSharedPointer>
#include <QString>

// JSON helpers; nested keys are addressed by dot-separated paths ("system.utcOffset").
class STATION_UTILITIES_EXPORT JsonTools
{
public:
    // False when the file cannot be read or does not hold a JSON object.
    static bool readFile(const QString& path, QJsonObject& object);
    // Writes the object indented; false when the file cannot be written.
    static bool writeFile(const QString& path, const QJsonObject& object);
    // Undefined value and *found = false when any step of the path is missing.
    static QJsonValue getValue(const QJsonObject& object, const QString& dottedPath, bool* found = nullptr);
    // Sets the value in place, creating intermediate objects as needed.
    static void addValue(const QSharedPointer<QJsonObject>& object, const QString& dottedPath, const QJsonValue& value);
};
