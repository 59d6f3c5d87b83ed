#pragma once
#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <functional>
#include <memory>

#include "settingshistory.h"

class AccessControlManager;
class DZuConfiguration;
class SettingsLock;

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

    enum EnSaveResult {
        CeSaved,
        CeUnusable,      // the file on disk is not a usable document: nothing was written
        CeConflict,      // another program changed the file since it was loaded: nothing was written
        CeHistoryFailed, // the current document could not be kept as a version: nothing was written
        CeWriteFailed,   // the write failed; the library put the previous bytes back
    };

    // How long a writer waits for another one to finish.
    static constexpr int C_lockTimeoutMs = 30000;

    explicit Station(const QString& directory);
    ~Station();

    // Loads the pre-configuration and initialises the library; `loadFolders` also builds
    // the folder registry (mounting network folders) and loads the users. `lock` takes the
    // document's advisory lock first and holds it until the station is closed.
    bool open(bool loadFolders, QString& error, bool lock = false);
    // Takes the advisory lock now (a program that edits for long locks only around its saves).
    bool lock(QString& error);
    void unlock();

    QString directory() const { return m_directory; }
    QString documentPath() const;
    DZuConfiguration* configuration() const { return m_configuration; }
    AccessControlManager* accessControl() const { return m_accessControl; }
    SettingsHistory history() const { return SettingsHistory(documentPath()); }

    // False when the document on disk was present but unusable at the last load.
    bool isDocumentUsable() const;
    // "PATH: REASON at line L, column C; nothing was changed" and what can restore it.
    QString unusableMessage() const;

    // The document as it is on disk (without the in-memory "_hidden_" section).
    QJsonObject readDocument() const;
    // Saves through the library, keeping every key of the file the library does not own.
    // Refuses an unusable file and, unless `overwrite`, a file changed since it was loaded;
    // keeps the current document as a version first. `adjust` edits the document before the
    // library completes it. The reason of a refusal or failure goes to `error`.
    EnSaveResult save(const QString& reason, QString& error, const std::function<void(QJsonObject&)>& adjust = {},
                      bool overwrite = false);
    // Reads the document again, with the folders and users when they were loaded.
    void reload();

private:
    QString m_directory;
    AccessControlManager* m_accessControl = nullptr;
    DZuConfiguration* m_configuration = nullptr;
    std::unique_ptr<SettingsLock> m_lock;
    bool m_foldersLoaded = false;
    // Digest of the file as this program last read or wrote it.
    QByteArray m_knownDigest;
};
