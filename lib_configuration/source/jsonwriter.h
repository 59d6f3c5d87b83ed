#pragma once
#include "station_configuration_export.h"
#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

// JSON text of a document, byte for byte what QJsonDocument::toJson() writes, in a fraction of
// its time: one output buffer instead of one allocation per value and indentation, ASCII runs
// of strings converted eight characters at a time. A station's document can hold hundreds of
// thousands of comments; the tools print it and the library saves it with this.
class STATION_CONFIGURATION_EXPORT JsonWriter
{
public:
    static QByteArray toJson(const QJsonObject& object, QJsonDocument::JsonFormat format = QJsonDocument::Indented);
    static QByteArray toJson(const QJsonArray& array, QJsonDocument::JsonFormat format = QJsonDocument::Indented);
    // One value on its own, as it would stand in a compact document ("[1,2]", "\"text\"").
    static QByteArray toJson(const QJsonValue& value);
    // A string as it stands in such a document, quotes included.
    static QByteArray quoted(const QString& text);
    // The same text written to a descriptor as it is produced, through a buffer of bounded size;
    // false with errno set when a write fails.
    static bool write(int fd, const QJsonObject& object, QJsonDocument::JsonFormat format = QJsonDocument::Indented);
    static bool write(int fd, const QJsonArray& array, QJsonDocument::JsonFormat format = QJsonDocument::Indented);
};
