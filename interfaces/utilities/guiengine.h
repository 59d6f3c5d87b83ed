#pragma once
#include "utilities/station_utilities_export.h"
#include <QObject>
#include <QPointer>
#include <QQmlContext>
#include <QVector>

class QQmlEngine;

// Wraps the application's QML engine; null until an application creates one (the last one
// created is the instance).
class STATION_UTILITIES_EXPORT GuiEngine : public QObject
{
    Q_OBJECT
public:
    explicit GuiEngine(QQmlEngine* engine, QObject* parent = nullptr);
    ~GuiEngine() override;

    static GuiEngine* instance();
    bool isValid() const;
    QQmlEngine* engine() const;
    // Sets all properties on the engine's root context in one call.
    void setContextProperties(const QVector<QQmlContext::PropertyPair>& properties);

private:
    QPointer<QQmlEngine> m_engine;
};
