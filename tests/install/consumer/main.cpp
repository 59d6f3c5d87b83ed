// Uses the installed library: a folder's JSON form and its translated type name.
#include <QCoreApplication>
#include <QJsonDocument>
#include <QTextStream>
#include <QTranslator>

#include "folder.h"
#include "utilities/preconfiguration.h"

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QTranslator catalogue;
    if (!catalogue.load(QStringLiteral("station_en"), QStringLiteral(CATALOGUE_DIR)))
        return 1;
    QCoreApplication::installTranslator(&catalogue);

    PreConfiguration::setParameter(QStringLiteral("internalStorageDirPath"), QStringLiteral("/tmp"));
    const auto folder = Folder::configure(QStringLiteral("samba"), QString(), QStringLiteral("Results"),
                                          QStringLiteral("share/results"), QString(), QStringLiteral("10.0.0.5"),
                                          QString(), QString(), false, false, 5000);
    QTextStream out(stdout);
    out << QJsonDocument(folder->toJsonObject()).toJson(QJsonDocument::Compact) << "\n";
    out << "Folder_Network_drive -> " << folder->typeName() << "\n";
    out << folder->displayPath() << "\n";
    return folder->displayPath() == QLatin1String("ext://10.0.0.5/share/results") ? 0 : 1;
}
