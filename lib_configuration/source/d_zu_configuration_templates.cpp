// Report templates, company logo, report texts and validators.
#include "d_zu_configuration.h"

#include <QFile>
#include <QFileInfo>

namespace {
// Plain copy under the source's own name: an existing destination is kept (the copy then
// fails) and a failure is not reported. Returns the bare file name in every case.
// An unresolved directory ("") copies nothing rather than writing at the file-system root.
QString copyIntoDirectory(const QString& sourcePath, const QString& directory)
{
    const QString fileName = QFileInfo(sourcePath).fileName();
    if (!directory.isEmpty() && QFile::exists(sourcePath))
        QFile::copy(sourcePath, directory + QLatin1Char('/') + fileName);
    return fileName;
}
}

void DZuConfiguration::saveTemplateParameters(const QString& companyAddress, const QString& reportFooter)
{
    m_companyAddress = companyAddress;
    m_reportFooter = reportFooter;
    emit sigConfigurationChanged();
}

QString DZuConfiguration::addTemplateFile(const QString& filename)
{
    const QString fileName = copyIntoDirectory(filename, m_directories.getTemplatesDirectoryPath());
    emit sigConfigurationChanged();
    m_directories.updateTemplatesList();
    return fileName;
}

// The logo setting itself is left alone: the user interface chooses it separately.
QString DZuConfiguration::addCompanyLogo(const QString& filename)
{
    const QString fileName = copyIntoDirectory(filename, m_directories.getMediaDirectoryPath());
    emit sigConfigurationChanged();
    return fileName;
}

// Unlike adding, deleting neither signals nor refreshes the templates list. Only a bare file
// name inside a resolved templates directory is removed; anything else is silently ignored.
void DZuConfiguration::deleteTemplateFile(const QString& filename)
{
    const QString directory = m_directories.getTemplatesDirectoryPath();
    if (directory.isEmpty() || filename.isEmpty() || filename == QLatin1String("..")
        || filename.contains(QLatin1Char('/')) || filename.contains(QLatin1Char('\\')))
        return;
    const QString path = directory + QLatin1Char('/') + filename;
    if (QFileInfo(path).isFile())
        QFile::remove(path);
}

QString DZuConfiguration::getValidator(const QString& type)
{
    return m_validators.value(type).toString();
}

void DZuConfiguration::updateValidator(const QVariantMap& data)
{
    for (auto it = data.cbegin(); it != data.cend(); ++it)
        m_validators.insert(it.key(), it.value());
}
