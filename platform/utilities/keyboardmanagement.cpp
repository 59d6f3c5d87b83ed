#include "utilities/keyboardmanagement.h"

KeyboardManagement* KeyboardManagement::instance()
{
    static KeyboardManagement* s_instance = new KeyboardManagement;
    return s_instance;
}

KeyboardManagement::KeyboardManagement()
    : m_layouts({
          { QStringLiteral("English (UK)"), QStringLiteral("gb") },
          { QStringLiteral("English (US)"), QStringLiteral("us") },
          { QStringLiteral("Français"), QStringLiteral("fr") },
          { QStringLiteral("Deutsch"), QStringLiteral("de") },
          { QStringLiteral("Español"), QStringLiteral("es") },
          { QStringLiteral("Italiano"), QStringLiteral("it") },
      })
{
}

QStringList KeyboardManagement::getKeyboardLayouts() const
{
    QStringList names;
    for (const auto& layout : m_layouts)
        names << layout.first;
    return names;
}

QString KeyboardManagement::getCurrentKeyboardLayout() const
{
    return m_layouts.at(m_current).first;
}

QString KeyboardManagement::getCurrentKeyboardLayoutCode() const
{
    return m_layouts.at(m_current).second;
}

bool KeyboardManagement::setCurrentKeyboardLayout(const QString& name)
{
    for (int i = 0; i < m_layouts.size(); ++i) {
        if (m_layouts.at(i).first == name) {
            if (i != m_current) {
                m_current = i;
                emit currentKeyboardLayoutChanged();
            }
            return true;
        }
    }
    return false;
}

bool KeyboardManagement::setCurrentKeyboardLayoutCode(const QString& code, bool apply)
{
    for (int i = 0; i < m_layouts.size(); ++i) {
        if (m_layouts.at(i).second == code) {
            if (i != m_current) {
                m_current = i;
                emit currentKeyboardLayoutChanged();
            }
            if (apply)
                applyKeyboardLayout();
            return true;
        }
    }
    return false;
}

void KeyboardManagement::applyKeyboardLayout()
{
    emit keyboardLayoutApplied(getCurrentKeyboardLayoutCode());
}
