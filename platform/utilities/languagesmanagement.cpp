#include "utilities/languagesmanagement.h"
#include "utilities/installpaths.h"
#include "utilities/logline.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTranslator>

namespace {
const char* const C_source = "platform/utilities/languagesmanagement";
const char* const C_defaultCode = "en_GB";
}

LanguagesManagement* LanguagesManagement::instance()
{
    static LanguagesManagement* s_instance = new LanguagesManagement;
    return s_instance;
}

LanguagesManagement::LanguagesManagement()
    : m_languages({
          { QStringLiteral("English"), QStringLiteral("en_GB") },
          { QStringLiteral("Français"), QStringLiteral("fr_FR") },
          { QStringLiteral("Deutsch"), QStringLiteral("de_DE") },
          { QStringLiteral("Español"), QStringLiteral("es_ES") },
          { QStringLiteral("Italiano"), QStringLiteral("it_IT") },
      })
    , m_currentCode(QString::fromLatin1(C_defaultCode))
{
}

const QMap<QString, QString>& LanguagesManagement::languageTable() const
{
    return m_languages;
}

QString LanguagesManagement::getCurrentLanguage() const
{
    return m_languages.key(m_currentCode);
}

QString LanguagesManagement::getCurrentLanguageCode() const
{
    return m_currentCode;
}

bool LanguagesManagement::setCurrentLanguage(const QString& name)
{
    const auto it = m_languages.constFind(name);
    if (it == m_languages.constEnd())
        return false;
    return setCurrentLanguageCode(it.value());
}

bool LanguagesManagement::setCurrentLanguageCode(const QString& code)
{
    if (code.isEmpty() || m_languages.key(code).isEmpty())
        return false;
    const bool changed = code != m_currentCode;
    m_currentCode = code;
    installCatalogue();
    if (changed)
        emit currentLanguageChanged();
    return true;
}

void LanguagesManagement::setCatalogueDirectory(const QString& directory)
{
    m_catalogueDirectory = directory;
}

QString LanguagesManagement::catalogueDirectory() const
{
    if (!m_catalogueDirectory.isEmpty())
        return m_catalogueDirectory;
    return InstallPaths::catalogueDirectory();
}

void LanguagesManagement::installCatalogue()
{
    if (m_translator) {
        QCoreApplication::removeTranslator(m_translator);
        delete m_translator;
        m_translator = nullptr;
    }
    const QString directory = catalogueDirectory();
    const QStringList candidates = {
        directory + QStringLiteral("/station_") + m_currentCode + QStringLiteral(".qm"),
        directory + QStringLiteral("/station_") + m_currentCode.section(QLatin1Char('_'), 0, 0) + QStringLiteral(".qm"),
    };
    for (const QString& file : candidates) {
        if (!QFileInfo(file).isFile())
            continue;
        auto* translator = new QTranslator(this);
        if (translator->load(file) && QCoreApplication::installTranslator(translator)) {
            m_translator = translator;
            return;
        }
        LogLine::critical(this, C_source, __LINE__, QStringLiteral("ERROR: cannot install translation catalogue:"), file);
        delete translator;
    }
}
