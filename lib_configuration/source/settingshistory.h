#pragma once
#include "station_configuration_export.h"
#include "settingsdocument.h"
#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QVector>

// The last versions of the settings document, kept in "<document>.history/" beside it: before
// a program replaces a valid document it records it here, with the time, its size and the keys
// the replacement changes. Version 0 is the newest. Files are private to their owner.
//
// Each version is two files named by a rising sequence number: "<n>.json" (the document's
// bytes exactly) and "<n>.meta" (time, size, changed keys, reason). A version whose .meta is
// missing (a crash between the two writes) is still listed and can be restored.
class STATION_CONFIGURATION_EXPORT SettingsHistory
{
public:
    static constexpr int C_keptVersions = 50;

    struct Version {
        int number = 0;
        QDateTime time;
        qint64 size = 0;
        QStringList changedKeys;
        QString reason;
        QString filePath;
    };

    struct Difference {
        QString key;
        QJsonValue before; // undefined when the key was added
        QJsonValue after;  // undefined when the key was removed
    };

    explicit SettingsHistory(const QString& documentPath);

    QString documentPath() const { return m_documentPath; }
    QString directoryPath() const { return m_directoryPath; }

    // Keeps `document` (the valid document about to be replaced by `next`) as version 0.
    // Bytes equal to version 0 are not kept twice; bytes that are not a JSON object are not
    // kept at all. False, with the reason, when the version cannot be written.
    bool record(const QByteArray& document, const QJsonObject& next, const QString& reason,
                QString* error = nullptr);
    // The same, for a caller that has read the document already.
    bool record(const SettingsDocument::Reading& current, const QJsonObject& next, const QString& reason,
                QString* error = nullptr);
    // Newest first.
    QVector<Version> versions() const;
    bool read(int number, QByteArray& bytes, QString* error = nullptr) const;
    // Writes version `number` over the document in place. A valid current document is recorded
    // first, a damaged one is copied aside as "<document>.damaged-<time>".
    bool rollback(int number, QString* error = nullptr);

    // Key-by-key differences by dotted path; arrays and values compare whole.
    static QVector<Difference> differences(const QJsonObject& before, const QJsonObject& after);
    // Keys that a save changes, without the save time that every save changes.
    static QStringList changedKeys(const QJsonObject& before, const QJsonObject& after);
    // The value with every "password" member (any depth) replaced by asterisks.
    static QJsonValue maskSecrets(const QJsonValue& value, const QString& key = QString());

private:
    QStringList versionFiles() const;

    QString m_documentPath;
    QString m_directoryPath;
};
