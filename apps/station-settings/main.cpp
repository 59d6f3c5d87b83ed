// station-settings: the station's settings screens.
#include <QCommandLineParser>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QTextStream>

#include "settingsapp.h"
#include "station.h"
#include "utilities/guiengine.h"

int main(int argc, char* argv[])
{
    // The station's panel has no physical keyboard: Qt's on-screen keyboard types into the
    // fields unless the environment chose another input method.
    if (qEnvironmentVariableIsEmpty("QT_IM_MODULE"))
        qputenv("QT_IM_MODULE", "qtvirtualkeyboard");
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("station-settings"));
    SettingsApp::installCatalogue(application);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Edits an assembly station's settings."));
    parser.addHelpOption();
    parser.addOptions({
        { QStringLiteral("station"), QStringLiteral("Station directory (holding preconfiguration.json); default: a copy of the demo station."), QStringLiteral("dir") },
        { QStringLiteral("apply-to-system"), QStringLiteral("Also set this machine's time zone and keyboard map as the station would.") },
    });
    parser.process(application);

    QTextStream err(stderr);
    QString error;
    const QString directory = Station::resolveDirectory(parser.value(QStringLiteral("station")), error);
    if (directory.isEmpty()) {
        err << "station-settings: " << error << "\n";
        return 1;
    }
    if (!parser.isSet(QStringLiteral("apply-to-system")))
        SettingsApp::keepSystemSettings();

    // Declared before the engine so that the screens go first at exit.
    Station station(directory);
    SettingsApp settings(station);
    // The engine wrapper must exist before the library starts, so that it publishes itself.
    QQmlApplicationEngine engine;
    GuiEngine guiEngine(&engine);
    if (!station.open(true, error)) {
        err << "station-settings: " << error << "\n";
        return 1;
    }
    if (!settings.load(engine)) {
        err << "station-settings: the interface did not load\n";
        return 1;
    }
    return application.exec();
}
