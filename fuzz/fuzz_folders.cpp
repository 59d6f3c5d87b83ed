// The folder section of the settings document, loaded by the registry. Network folders are
// pointed at a closed loopback port and the event loop never runs: nothing leaves the machine.
#include "fuzzstation.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {
QJsonValue onLoopback(const QJsonValue& value)
{
    if (value.isArray()) {
        QJsonArray array = value.toArray();
        for (int i = 0; i < array.size(); ++i)
            array[i] = onLoopback(array.at(i));
        return array;
    }
    if (!value.isObject())
        return value;
    QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it)
        it.value() = it.key() == QLatin1String("address") ? QJsonValue(QStringLiteral("127.0.0.1:1")) : onLoopback(it.value());
    return object;
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzStation::setUp();
    static Directories* directories = new Directories(FuzzStation::path("storage/sync.db"),
                                                      FuzzStation::path("storage/trash"),
                                                      FuzzStation::path("storage/usb"), 30000, {}, nullptr);
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray(reinterpret_cast<const char*>(data), int(size)));
    if (!document.isObject())
        return 0;
    QJsonValue section(onLoopback(document.object()).toObject());
    directories->loadSettings(section);
    QJsonObject saved;
    directories->saveSettings(saved);
    directories->folders()->reset();
    return 0;
}
