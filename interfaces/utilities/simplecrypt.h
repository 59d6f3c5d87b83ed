#pragma once
#include "utilities/station_utilities_export.h"
#include <QString>
#include <QtGlobal>

// Obfuscation of stored texts (share passwords), not encryption: anyone with the key reads
// them. Stored form: the SimpleCrypt version-3 format (Base64 of version byte 3, flags byte,
// then the XOR-chained payload of a random byte, an optional checksum and optionally
// qCompress-ed UTF-8 text). An empty text encrypts to an empty text.
class STATION_UTILITIES_EXPORT SimpleCrypt
{
public:
    // Longest text a stored form may decompress to (in UTF-8 bytes); a longer one is refused.
    static constexpr int C_maxTextSize = 64 * 1024;

    explicit SimpleCrypt(quint64 key = 0);
    void setKey(quint64 key);
    QString encryptToString(const QString& plaintext) const;
    // Empty for an empty input, a wrong version, a bad checksum or a compressed text longer
    // than C_maxTextSize.
    QString decryptToString(const QString& cyphertext) const;

private:
    quint64 m_key;
};
