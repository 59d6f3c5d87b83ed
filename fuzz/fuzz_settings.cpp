// The settings document: diagnosis, then the service's load of whatever parsed.
#include "fuzzstation.h"
#include "settingsdocument.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzStation::setUp();
    static DZuConfiguration* configuration = nullptr;
    if (!FuzzStation::write(FuzzStation::path("config/settings.json"), data, size))
        return 0;
    const SettingsDocument::Reading reading =
        SettingsDocument::parse(QByteArray(reinterpret_cast<const char*>(data), int(size)));
    SettingsDocument::describe(reading, QStringLiteral("settings.json"));
    if (!configuration)
        configuration = new DZuConfiguration(FuzzStation::path("config"), QStringLiteral("settings.json"),
                                             FuzzStation::path("storage/usb"), nullptr,
                                             FuzzStation::path("storage/sync.db"), FuzzStation::path("storage/trash"));
    else
        configuration->reload();
    QJsonObject root = configuration->mainConfiguration();
    configuration->completeDocument(root);
    return 0;
}
