#include "utilities/simplecrypt.h"
#include "utilities/logline.h"

#include <KCompressionDevice>
#include <KFilterBase>

#include <QByteArray>
#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QtEndian>

#include <memory>

namespace {
const char* const C_source = "platform/utilities/simplecrypt";
const char C_version = 0x03;

enum EnCryptoFlag : char {
    CeCfCompression = 0x01,
    CeCfChecksum = 0x02,
    CeCfHash = 0x04,
};

char keyByte(quint64 key, int position)
{
    return char((key >> (8 * (position % 8))) & 0xff);
}

void appendBigEndian16(QByteArray& data, quint16 value)
{
    data.append(char(value >> 8));
    data.append(char(value & 0xff));
}

// The reverse of qCompress (a big-endian 32-bit length, then a zlib stream), bounded: a
// length over SimpleCrypt::C_maxTextSize is refused before anything is allocated, and a
// stream that inflates past its length is refused as soon as it does. Empty when refused or
// damaged.
QByteArray boundedUncompress(const QByteArray& data)
{
    if (data.size() < 4)
        return QByteArray();
    const quint32 claimed = qFromBigEndian<quint32>(data.constData());
    if (claimed > quint32(SimpleCrypt::C_maxTextSize)) {
        LogLine::critical(nullptr, C_source, __LINE__,
                          QStringLiteral("ERROR: stored text refused, its length is over the limit of %1 bytes:")
                              .arg(SimpleCrypt::C_maxTextSize),
                          QString::number(claimed));
        return QByteArray();
    }
    const std::unique_ptr<KFilterBase> inflater(KCompressionDevice::filterForCompressionType(KCompressionDevice::GZip));
    inflater->setFilterFlags(KFilterBase::ZlibHeaders);
    if (!inflater->init(QIODevice::ReadOnly))
        return QByteArray();
    // One byte more than claimed tells a stream longer than its length.
    QByteArray text(int(claimed) + 1, Qt::Uninitialized);
    inflater->setInBuffer(data.constData() + 4, uint(data.size() - 4));
    inflater->setOutBuffer(text.data(), uint(text.size()));
    KFilterBase::Result result;
    do
        result = inflater->uncompress();
    while (result == KFilterBase::Ok && !inflater->outBufferFull() && !inflater->inBufferEmpty());
    const int produced = text.size() - inflater->outBufferAvailable();
    inflater->terminate();
    if (result != KFilterBase::End || produced > int(claimed))
        return QByteArray();
    text.truncate(produced);
    return text;
}
}

SimpleCrypt::SimpleCrypt(quint64 key)
    : m_key(key)
{
}

void SimpleCrypt::setKey(quint64 key)
{
    m_key = key;
}

QString SimpleCrypt::encryptToString(const QString& plaintext) const
{
    if (plaintext.isEmpty())
        return QString();

    char flags = 0;
    QByteArray data = plaintext.toUtf8();
    const QByteArray compressed = qCompress(data, 9);
    if (compressed.size() < data.size()) {
        data = compressed;
        flags |= CeCfCompression;
    }

    QByteArray payload;
    payload.reserve(data.size() + 3);
    payload.append(char(QRandomGenerator::global()->generate() & 0xff));
    appendBigEndian16(payload, qChecksum(data.constData(), uint(data.size())));
    flags |= CeCfChecksum;
    payload.append(data);

    char previous = 0;
    for (int pos = 0; pos < payload.size(); ++pos) {
        payload[pos] = char(payload.at(pos) ^ keyByte(m_key, pos) ^ previous);
        previous = payload.at(pos);
    }

    QByteArray result;
    result.reserve(payload.size() + 2);
    result.append(C_version);
    result.append(flags);
    result.append(payload);
    return QString::fromLatin1(result.toBase64());
}

QString SimpleCrypt::decryptToString(const QString& cyphertext) const
{
    const QByteArray raw = QByteArray::fromBase64(cyphertext.toLatin1());
    if (raw.size() < 3 || raw.at(0) != C_version)
        return QString();
    const char flags = raw.at(1);

    QByteArray data = raw.mid(2);
    char previous = 0;
    for (int pos = 0; pos < data.size(); ++pos) {
        const char current = data.at(pos);
        data[pos] = char(current ^ previous ^ keyByte(m_key, pos));
        previous = current;
    }
    data.remove(0, 1);   // the random byte

    if (flags & CeCfChecksum) {
        if (data.size() < 2)
            return QString();
        const quint16 stored = quint16((quint8(data.at(0)) << 8) | quint8(data.at(1)));
        data.remove(0, 2);
        if (qChecksum(data.constData(), uint(data.size())) != stored)
            return QString();
    } else if (flags & CeCfHash) {
        // Older writers could protect the text with a SHA-1 hash instead of the checksum.
        if (data.size() < 20)
            return QString();
        const QByteArray stored = data.left(20);
        data.remove(0, 20);
        if (QCryptographicHash::hash(data, QCryptographicHash::Sha1) != stored)
            return QString();
    }

    if (flags & CeCfCompression)
        data = boundedUncompress(data);
    return QString::fromUtf8(data);
}
