#pragma once
#include <QObject>
#include <QString>

class QCoreApplication;
class QQmlApplicationEngine;
class Station;

// The application's side of the settings screens, published to QML as "station": saving and
// reloading the document (the library's own save is not callable from QML).
// By default the screens edit the document only: the time-zone command and the compositor file
// are pointed at harmless stand-ins unless the application is told to apply them to this machine.
class SettingsApp : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString directory READ directory CONSTANT)
public:
    explicit SettingsApp(Station& station, QObject* parent = nullptr);

    QString directory() const;

    // Saves through the library, keeping the keys of the file it does not own; emits saved().
    Q_INVOKABLE bool save();
    // Reads the document again and rebuilds the folder registry; emits reloaded().
    Q_INVOKABLE void reload();

    // Installs the English catalogue (build tree first, then the installed one).
    static bool installCatalogue(QCoreApplication& application);
    // Keeps the machine's time zone and keyboard map out of reach of the screens.
    static void keepSystemSettings();
    // Publishes this object as "station" and loads the main window; false when QML failed.
    bool load(QQmlApplicationEngine& engine);

signals:
    void saved(bool success);
    void reloaded();

private:
    Station& m_station;
};
