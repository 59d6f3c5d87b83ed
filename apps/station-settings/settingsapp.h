#pragma once
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVariantList>

#include "settingkeys.h"

class QCoreApplication;
class QQmlApplicationEngine;
class Station;

// The application's side of the settings screens, published to QML as "station": saving and
// reloading the document (the library's own save is not callable from QML), the kept versions
// of the document and the two ways out of an unusable one.
// By default the screens edit the document only: the time-zone command and the compositor file
// are pointed at harmless stand-ins unless the application is told to apply them to this machine.
//
// The document's advisory lock is taken around each write only (save, restore, moving a
// damaged file aside), never while the operator edits, so that other programs can write in
// between; a save that finds the file changed since this program read it asks first.
class SettingsApp : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString directory READ directory CONSTANT)
    // Kept versions, newest first: maps with number, time (date), timeText (on the station's
    // clock), size (bytes), changedKeys (the keys the following save changed) and reason (of that save).
    Q_PROPERTY(QVariantList history READ history NOTIFY historyChanged)
    // How an unusable document is damaged: "" (usable), "empty" (no content), "torn" (stops
    // before the document is complete, as a write interrupted by a crash leaves it) or "invalid".
    Q_PROPERTY(QString documentDamage READ documentDamage NOTIFY documentDamageChanged)
    // True when the station's system commands are stand-ins (a preview time-zone command, a
    // compositor file other than the system's, or --apply-to-system not given): the time zone
    // and keyboard map chosen are not applied to this computer. Read when the screens load.
    Q_PROPERTY(bool systemPreview READ systemPreview CONSTANT)
    // Languages offered on the screens: the library's, less those without a catalogue. Choosing
    // one installs its catalogue and retranslates the screens at once, on the same page.
    Q_PROPERTY(QStringList languages READ languages CONSTANT)
    // True when the on-screen keyboard is the input method (QT_IM_MODULE=qtvirtualkeyboard).
    Q_PROPERTY(bool virtualKeyboard READ virtualKeyboard CONSTANT)
    // Units offered for each measure: the ones the library accepts (SettingKeys).
    Q_PROPERTY(QStringList torqueUnits READ torqueUnits CONSTANT)
    Q_PROPERTY(QStringList weightUnits READ weightUnits CONSTANT)
    Q_PROPERTY(QStringList distanceUnits READ distanceUnits CONSTANT)
    Q_PROPERTY(QStringList temperatureUnits READ temperatureUnits CONSTANT)
public:
    explicit SettingsApp(Station& station, QObject* parent = nullptr);

    QString directory() const;
    QVariantList history() const { return m_history; }
    QString documentDamage() const { return m_documentDamage; }
    bool systemPreview() const { return m_systemPreview; }
    static QStringList torqueUnits() { return SettingKeys::torqueUnits(); }
    static QStringList weightUnits() { return SettingKeys::weightUnits(); }
    static QStringList distanceUnits() { return SettingKeys::distanceUnits(); }
    static QStringList temperatureUnits() { return SettingKeys::temperatureUnits(); }
    QStringList languages() const;
    static bool virtualKeyboard() { return qgetenv("QT_IM_MODULE") == "qtvirtualkeyboard"; }

    // Saves through the library under the lock, keeping the keys of the file it does not own.
    // Emits saved(), or sigSaveConflict() when another program changed the file since this one
    // read it (nothing written). Refused while the document in memory stands for an unusable file.
    Q_INVOKABLE bool save();
    // Saves over the other program's changes, after a conflict.
    Q_INVOKABLE bool overwrite();
    // Reads the document again (discarding unsaved changes) with the folders and users; emits reloaded().
    Q_INVOKABLE void reload();
    // Writes version `number` of the history over the document, then reloads; emits sigRestored().
    Q_INVOKABLE bool restoreVersion(int number);
    // Moves an unusable document aside as "<document>.damaged-<time>" and reloads on defaults
    // (the next save writes a new document); emits sigStartedFromDefaults(). A usable file is
    // never moved: it is read again instead.
    Q_INVOKABLE bool startFromDefaults();
    // Reads the list of kept versions again.
    Q_INVOKABLE void refreshHistory();
    // Reads the template folder again (after a template was added or deleted), leaving every
    // other setting as it is in memory.
    Q_INVOKABLE void refreshTemplates();

    // Installs the English catalogue (build tree first, then the installed one); the library looks
    // for the other languages' catalogues in the same directory.
    static bool installCatalogue(QCoreApplication& application);
    // Keeps the machine's time zone and keyboard map out of reach of the screens.
    static void keepSystemSettings();
    // Publishes this object as "station" and loads the main window; false when QML failed.
    bool load(QQmlApplicationEngine& engine);

signals:
    // `error` is the reason of a failure, empty on success.
    void saved(bool success, const QString& error);
    void sigSaveConflict(const QString& message);
    void reloaded();
    // `detail`: the restored version's time (station clock) on success, else the reason.
    void sigRestored(bool success, const QString& detail);
    // `detail`: where the damaged file went on success, else the reason.
    void sigStartedFromDefaults(bool success, const QString& detail);
    void historyChanged();
    void documentDamageChanged();

private:
    bool saveDocument(bool overwrite);
    void reloadStation();
    QString stationTime(const QDateTime& time) const;
    // What documentDamage() says of a file's bytes (the document being unusable).
    static QString damageOf(const QByteArray& bytes);
    void sltUpdateDocumentDamage();

    Station& m_station;
    QVariantList m_history;
    QString m_documentDamage;
    bool m_systemPreview = true;
};
