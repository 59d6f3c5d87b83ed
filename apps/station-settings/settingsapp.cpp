#include "settingsapp.h"

#include <QCoreApplication>
#include <QDir>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickStyle>
#include <QTranslator>

#include "d_zu_configuration.h"
#include "station.h"
#include "utilities/logline.h"

static const char C_sourceFile[] = "apps/station-settings/settingsapp";

SettingsApp::SettingsApp(Station& station, QObject* parent)
    : QObject(parent)
    , m_station(station)
{
}

QString SettingsApp::directory() const
{
    return QDir::toNativeSeparators(m_station.directory());
}

bool SettingsApp::save()
{
    QString error;
    const bool success = m_station.configuration()
        && m_station.save(QStringLiteral("station-settings save"), error) == Station::CeSaved;
    if (!success)
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("cannot save the settings document:"), error);
    emit saved(success);
    return success;
}

void SettingsApp::reload()
{
    DZuConfiguration* configuration = m_station.configuration();
    if (!configuration)
        return;
    configuration->reload();
    configuration->loadDirectories();
    emit reloaded();
}

bool SettingsApp::installCatalogue(QCoreApplication& application)
{
    auto* catalogue = new QTranslator(&application);
    if (catalogue->load(QStringLiteral("station_en"), QStringLiteral(STATION_BUILD_CATALOGUE_DIR))
        || catalogue->load(QStringLiteral("station_en"), QStringLiteral(STATION_INSTALLED_CATALOGUE_DIR)))
        return QCoreApplication::installTranslator(catalogue);
    LogLine::critical(nullptr, C_sourceFile, __LINE__, QStringLiteral("the English catalogue is missing"));
    delete catalogue;
    return false;
}

void SettingsApp::keepSystemSettings()
{
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("true"));
    DZuConfiguration::setCompositorConfigPath(QString());
}

bool SettingsApp::load(QQmlApplicationEngine& engine)
{
    Q_INIT_RESOURCE(settings_qml);
    // Fusion reads well on a desktop; an explicit choice in the environment wins.
    if (qEnvironmentVariableIsEmpty("QT_QUICK_CONTROLS_STYLE"))
        QQuickStyle::setStyle(QStringLiteral("Fusion"));
    engine.rootContext()->setContextProperty(QStringLiteral("station"), this);
    engine.load(QUrl(QStringLiteral("qrc:/station-settings/main.qml")));
    return !engine.rootObjects().isEmpty();
}
