#pragma once
#include "utilities/station_utilities_export.h"
#include <QMap>
#include <QObject>
#include <QStringList>

class QTranslator;

// Languages of the user interface: a table of display name to code ("English"/"en_GB",
// "Français"/"fr_FR", ...). Choosing a language installs its translation catalogue when one
// exists in the catalogue directory.
class STATION_UTILITIES_EXPORT LanguagesManagement : public QObject
{
    Q_OBJECT
public:
    static LanguagesManagement* instance();

    const QMap<QString, QString>& languageTable() const;   // display name -> code, key order
    QString getCurrentLanguage() const;                     // display name
    QString getCurrentLanguageCode() const;                 // code
    bool setCurrentLanguage(const QString& name);           // false for an unknown name
    bool setCurrentLanguageCode(const QString& code);       // false for an unknown code
    // Directory searched for "station_<code>.qm" (and "station_<language>.qm").
    void setCatalogueDirectory(const QString& directory);
    QString catalogueDirectory() const;

signals:
    void currentLanguageChanged();

private:
    LanguagesManagement();
    void installCatalogue();
    QMap<QString, QString> m_languages;
    QString m_currentCode;
    QString m_catalogueDirectory;
    QTranslator* m_translator = nullptr;
};
