#pragma once
#include "utilities/station_utilities_export.h"
#include <QObject>
#include <QPair>
#include <QStringList>
#include <QVector>

// On-screen keyboard layouts: a table of (display name, code), "English (UK)"/"gb", ...
class STATION_UTILITIES_EXPORT KeyboardManagement : public QObject
{
    Q_OBJECT
public:
    static KeyboardManagement* instance();

    QStringList getKeyboardLayouts() const;           // display names, table order
    QString getCurrentKeyboardLayout() const;         // display name
    QString getCurrentKeyboardLayoutCode() const;     // code
    bool setCurrentKeyboardLayout(const QString& name);            // false for an unknown name
    bool setCurrentKeyboardLayoutCode(const QString& code, bool apply); // false for an unknown code
    // Makes the current layout the active one (emits keyboardLayoutApplied).
    void applyKeyboardLayout();

signals:
    void currentKeyboardLayoutChanged();
    void keyboardLayoutApplied(const QString& code);

private:
    KeyboardManagement();
    QVector<QPair<QString, QString>> m_layouts;
    int m_current = 0;
};
