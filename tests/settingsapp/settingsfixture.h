#pragma once
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QString>
#include <QTemporaryDir>

#include <functional>
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

    // `prepare` may change the copy's settings document (at documentPath()) before the station opens.
    bool start(QString& error, const std::function<bool(const QString& documentPath)>& prepare = {});

    QQuickWindow* window() const;
    QObject* item(const QString& objectName) const;
    SettingsApp* app() const { return m_app.get(); }
    Station* station() const { return m_station.get(); }
    QString directory() const { return m_directory.path(); }
    // The demo station's settings document in the copy.
    QString documentPath() const;
    // Draws a fresh frame and saves the window's image as <screenshots>/<name>.png.
    bool saveScreenshot(const QString& name, QImage* image = nullptr) const;
    // Emits a button's clicked() as a press would.
    bool click(const QString& objectName) const;
    // A named item's property (invalid when there is no such item), its "text" and whether it is shown (itself and its ancestors visible).
    QVariant property(const QString& objectName, const char* name) const;
    QString text(const QString& objectName) const;
    bool isShown(const QString& objectName) const;
    // Shows the page of `key` and waits until it is on screen; false when there is none or it stays hidden.
    bool showPage(const QString& key) const;
    // Opens a blank folder editor set to the folder type `type` (its network fields shown for "samba").
    bool newFolder(const QString& type) const;
    // Selects a folder of the registry by its alias; false when there is none.
    static bool selectFolder(const QString& alias);
    // SHA-256 of a file's bytes; empty when it cannot be read.
    static QByteArray digest(const QString& path);

private:
    void pointSeamsAtStandIns() const;

    // The engine goes first at destruction, the station's copy last.
    QTemporaryDir m_directory;
    std::unique_ptr<Station> m_station;
    std::unique_ptr<SettingsApp> m_app;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    std::unique_ptr<GuiEngine> m_guiEngine;
};
