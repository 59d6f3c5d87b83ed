#include "core/ddirectoriespaths.h"

const QString DDirectoriesPaths::C_pathTypeLoad = QStringLiteral("load");
const QString DDirectoriesPaths::C_pathTypeSave = QStringLiteral("save");

namespace {
QString entryKey(const QString& role, const QString& pathType)
{
    // A role key never holds a line break, so the pair maps to one key unambiguously.
    return role + QLatin1Char('\n') + pathType;
}
}

DDirectoriesPaths::DDirectoriesPaths(QObject* parent)
    : QObject(parent)
{
}

void DDirectoriesPaths::setPath(const QString& role, const QString& pathType, const QString& path)
{
    const QString key = entryKey(role, pathType);
    const auto it = m_paths.constFind(key);
    if (it != m_paths.constEnd() && it.value() == path)
        return;
    m_paths.insert(key, path);
    emit pathChanged(role, pathType, path);
}

QString DDirectoriesPaths::path(const QString& role, const QString& pathType) const
{
    return m_paths.value(entryKey(role, pathType));
}
