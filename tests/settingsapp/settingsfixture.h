#pragma once
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QString>
#include <QTemporaryDir>

#include <memory>

class GuiEngine;
class SettingsApp;
class Station;

// The settings application's screens started as main() starts them, on a temporary copy of the
// demo station, with the time-zone command and the compositor file pointed at stand-ins.
class SettingsFixture
{
public:
    SettingsFixture();
    ~SettingsFixture();

    bool start(QString& error);

    QQuickWindow* window() const;
    QObject* item(const QString& objectName) const;
    SettingsApp* app() const { return m_app.get(); }
    Station* station() const { return m_station.get(); }
    QString directory() const { return m_directory.path(); }
    // Emits a button's clicked() as a press would.
    bool click(const QString& objectName) const;

private:
    void pointSeamsAtStandIns() const;

    // The engine goes first at destruction, the station's copy last.
    QTemporaryDir m_directory;
    std::unique_ptr<Station> m_station;
    std::unique_ptr<SettingsApp> m_app;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    std::unique_ptr<GuiEngine> m_guiEngine;
};
