// Configuration update packages: extraction into a scratch directory, then the start-up merge.
#include "fuzzstation.h"
#include "utilities/zip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzStation::setUp();
    const QString package = FuzzStation::path("update/configuration_update.zip");
    const QString target = FuzzStation::path("extracted");
    QDir(target).removeRecursively();
    if (!FuzzStation::write(package, data, size))
        return 0;
    Zip::Unzip(package.toUtf8(), target.toUtf8(), QByteArray());
    QDir(target).removeRecursively();

    // The same package through start-up, over a small valid document.
    FuzzStation::write(FuzzStation::path("config/settings.json"), reinterpret_cast<const uint8_t*>("{}"), 2);
    DZuConfiguration::processConfigurationUpdate(package, FuzzStation::path("config"));
    QFile::remove(package);
    return 0;
}
