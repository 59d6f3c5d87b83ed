// Path translation between local paths, aliases, file URLs and share addresses.
#include "fuzzstation.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzStation::setUp();
    static Directories* directories = new Directories(FuzzStation::path("storage/sync.db"),
                                                      FuzzStation::path("storage/trash"),
                                                      FuzzStation::path("storage/usb"), 30000, {}, nullptr);
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    bool flag = false;
    directories->uriToPath(text);
    directories->getWindowsNetworkPath(text);
    directories->getAddressFromPath(text);
    directories->networkAddressToLocalDrive(text, flag);
    directories->getMountedPathFromAdress(text, flag);
    directories->getPathOfFile(text);
    directories->getNameOfFile(text);
    directories->isFileMatchingMode(text, true);
    return 0;
}
