#include "utilities/guiengine.h"

#include <QQmlEngine>

namespace {
GuiEngine* g_instance = nullptr;
}

GuiEngine::GuiEngine(QQmlEngine* engine, QObject* parent)
    : QObject(parent)
    , m_engine(engine)
{
    g_instance = this;
}

GuiEngine::~GuiEngine()
{
    if (g_instance == this)
        g_instance = nullptr;
}

GuiEngine* GuiEngine::instance()
{
    return g_instance;
}

bool GuiEngine::isValid() const
{
    return !m_engine.isNull();
}

QQmlEngine* GuiEngine::engine() const
{
    return m_engine.data();
}

void GuiEngine::setContextProperties(const QVector<QQmlContext::PropertyPair>& properties)
{
    if (m_engine)
        m_engine->rootContext()->setContextProperties(properties);
}
