#include "settingsfixture.h"

#include <QCoreApplication>
#include <QDir>

#include "d_zu_configuration.h"
#include "settingsapp.h"
#include "station.h"
#include "utilities/guiengine.h"


SettingsFixture::SettingsFixture() = default;

void SettingsFixture::pointSeamsAtStandIns() const
{
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("/bin/true"));
    DZuConfiguration::setCompositorConfigPath(m_directory.filePath(QStringLiteral("no-compositor/weston.ini")));
}

SettingsFixture::~SettingsFixture() = default;

bool SettingsFixture::start(QString& error)
{
    if (!m_directory.isValid() || !Station::copyDirectory(QStringLiteral(STATION_DEMO_DIR), m_directory.path())) {
        error = QStringLiteral("cannot copy the demo station");
        return false;
    }
    pointSeamsAtStandIns();
    if (!SettingsApp::installCatalogue(*QCoreApplication::instance())) {
        error = QStringLiteral("the English catalogue was not built");
        return false;
    }

    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_guiEngine = std::make_unique<GuiEngine>(m_engine.get());
    m_station = std::make_unique<Station>(m_directory.path());
    if (!m_station->open(true, error))
        return false;
    // The station's pre-configuration may name its own programs; the screens keep to ours.
    pointSeamsAtStandIns();
    m_app = std::make_unique<SettingsApp>(*m_station);
    if (!m_app->load(*m_engine) || !window()) {
        error = QStringLiteral("the main window did not load");
        return false;
    }
    return true;
}

QQuickWindow* SettingsFixture::window() const
{
    return m_engine && !m_engine->rootObjects().isEmpty()
        ? qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst()) : nullptr;
}

QObject* SettingsFixture::item(const QString& objectName) const
{
    QQuickWindow* root = window();
    return root ? root->findChild<QObject*>(objectName) : nullptr;
}

bool SettingsFixture::click(const QString& objectName) const
{
    QObject* button = item(objectName);
    if (!button || !button->property("enabled").toBool())
        return false;
    return QMetaObject::invokeMethod(button, "clicked");
}
