#pragma once
#include "station_configuration_export.h"
#include <QByteArray>
#include <QJsonObject>
#include <QString>

// The settings document as a file: reading it with a diagnosis of what was found, writing it
// in place without ever leaving less than the previous document behind, and the advisory lock
// that cooperating programs take around a load-change-save.
//
// Choices of this implementation:
// - A document that is present but unusable (unreadable, not UTF-8, not JSON, not an object,
//   too deep, empty) is reported as such, so that callers can refuse to write over it; the
//   object handed to the load is still Qt's own parse (empty when it failed).
// - The in-place write keeps the file and its inode, serialises before truncating, checks the
//   write and the flush, and on failure writes the previous bytes back.
// - Documents are private to their owner: group and other permission bits are dropped.
class STATION_CONFIGURATION_EXPORT SettingsDocument
{
public:
    enum EnState {
        CeMissing,  // no file: first start, defaults
        CeLoaded,   // read and parsed as a JSON object
        CeUnusable, // present but cannot serve as the document
    };

    struct Reading {
        EnState state = CeMissing;
        // Qt's parse of the file; empty unless it parsed as an object.
        QJsonObject object;
        QByteArray bytes;
        // Why the document is unusable, with the 1-based line and column of a syntax error (0 when none).
        QString reason;
        int line = 0;
        int column = 0;
        QByteArray digest;
    };

    enum EnWriteResult {
        CeWritten,
        CeCannotOpen,      // nothing was written
        CeRestored,        // the write failed; the previous bytes are back
        CeLost,            // the write failed and the previous bytes could not be written back
    };

    static Reading read(const QString& path);
    // Parses bytes already read (what read() does after reading the file).
    static Reading parse(const QByteArray& bytes);
    // "PATH: REASON (line L, column C)".
    static QString describe(const Reading& reading, const QString& path);
    static QByteArray digest(const QByteArray& bytes);

    // Rewrites the file in place (creating it 0600 when missing). `error` gets the system's
    // reason on failure ("No space left on device").
    static EnWriteResult writeInPlace(const QString& path, const QByteArray& bytes, QString* error = nullptr);
    // Drops group and other permissions of an existing file; a stricter mode is kept.
    static bool makePrivate(const QString& path);
    // Renames the file to "<path>.damaged-<UTC time>"; the new path in `movedTo`.
    static bool moveAside(const QString& path, QString* movedTo = nullptr, QString* error = nullptr);
    // Copies the file to "<path>.damaged-<UTC time>" (mode 0600).
    static bool copyAside(const QString& path, QString* copiedTo = nullptr);
};

// Advisory lock on "<document>.lock", held from lock() until unlock() or destruction; a
// process killed while holding it releases it. The library itself takes none.
class STATION_CONFIGURATION_EXPORT SettingsLock
{
public:
    explicit SettingsLock(const QString& documentPath);
    ~SettingsLock();
    SettingsLock(const SettingsLock&) = delete;
    SettingsLock& operator=(const SettingsLock&) = delete;

    // Waits up to `timeoutMs` for the lock; false with the reason in `error` otherwise.
    bool lock(int timeoutMs, QString* error = nullptr);
    void unlock();

private:
    QString m_path;
    int m_descriptor = -1;
};
