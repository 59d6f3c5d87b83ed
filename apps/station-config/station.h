#pragma once
#include <QJsonObject>
#include <QString>

class AccessControlManager;
class DZuConfiguration;

// The station a command works on: its directory (holding "preconfiguration.json") and the
// library initialised on it.
class Station
{
public:
    // An explicit directory, or a writable copy of the demo station made on first use.
    // Empty on failure, with the reason in `error`.
    static QString resolveDirectory(const QString& requested, QString& error);
    // Copies a station directory tree; copies are writable by their owner.
    static bool copyDirectory(const QString& source, const QString& target);

    explicit Station(const QString& directory);
    ~Station();

    // Loads the pre-configuration and initialises the library; `loadFolders` also builds
    // the folder registry (mounting network folders) and loads the users.
    bool open(bool loadFolders, QString& error);

    QString directory() const { return m_directory; }
    QString documentPath() const;
    DZuConfiguration* configuration() const { return m_configuration; }
    AccessControlManager* accessControl() const { return m_accessControl; }

    // The document as it is on disk (without the in-memory "_hidden_" section).
    QJsonObject readDocument() const;
    // Saves through the library, keeping every key of the file the library does not own.
    bool save();

private:
    QString m_directory;
    AccessControlManager* m_accessControl = nullptr;
    DZuConfiguration* m_configuration = nullptr;
};
