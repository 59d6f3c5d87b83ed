// Build-time plugin through which qmlplugindump describes the module App 1.0 (App.qmltypes).
// It is not installed: programs register the module through the library itself.
#include <QQmlExtensionPlugin>

#include "directories.h"

class AppTypesPlugin : public QQmlExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    void registerTypes(const char* uri) override
    {
        Q_UNUSED(uri)
        Directories::registerClass();
    }
};

#include "apptypesplugin.moc"
