// The pre-configuration file and the paths derived from it.
#include "fuzzstation.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzStation::setUp();
    const QString file = FuzzStation::path("preconfiguration.json");
    if (!FuzzStation::write(file, data, size))
        return 0;
    if (PreConfiguration::load(file)) {
        PreConfiguration::getInternalStorageDirectoryPath();
        PreConfiguration::getRemovableStorageDirectoryPath();
        PreConfiguration::syncDatabaseFilePath();
        PreConfiguration::configurationFilePath(PreConfiguration::getParameter(QStringLiteral("configDirPath")).toString());
        PreConfiguration::getRelativeToInternalPath(QStringLiteral("sequencesDirPath"));
    }
    return 0;
}
