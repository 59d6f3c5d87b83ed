// Stored share passwords.
#include "fuzzstation.h"
#include "utilities/simplecrypt.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const SimpleCrypt crypt(Q_UINT64_C(0x0c2ad4a4acb9f023));
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const QString plain = crypt.decryptToString(text);
    if (!plain.isEmpty() && crypt.decryptToString(crypt.encryptToString(plain)) != plain)
        __builtin_trap();
    return 0;
}
