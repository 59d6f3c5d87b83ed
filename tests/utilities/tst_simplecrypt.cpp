#include "utilities/simplecrypt.h"

#include <QtTest>

namespace {
const quint64 C_key = Q_UINT64_C(0x07d3b95e1a4c82f6);

// CRC-16/X.25, written out bit by bit so that the test does not rely on the code it checks.
quint16 referenceCrc(const QByteArray& data)
{
    quint16 crc = 0xffff;
    for (char c : data) {
        crc ^= quint8(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? quint16((crc >> 1) ^ 0x8408) : quint16(crc >> 1);
    }
    return quint16(crc ^ 0xffff);
}

// Independent reader of the stored form: "version flags checksum-state text".
QString referenceDecode(const QString& stored, quint64 key)
{
    const QByteArray raw = QByteArray::fromBase64(stored.toLatin1());
    if (raw.size() < 5)
        return QString();
    QByteArray plain;
    quint8 previous = 0;
    for (int i = 2; i < raw.size(); ++i) {
        const quint8 c = quint8(raw.at(i));
        plain.append(char(c ^ quint8(key >> (8 * ((i - 2) % 8))) ^ previous));
        previous = c;
    }
    QByteArray data = plain.mid(3);
    const bool checksumOk = referenceCrc(data) == quint16(quint8(plain.at(1)) << 8 | quint8(plain.at(2)));
    if (raw.at(1) & 0x01)
        data = qUncompress(data);
    return QStringLiteral("%1 %2 %3 ").arg(int(raw.at(0))).arg(int(raw.at(1))).arg(checksumOk ? "ok" : "bad")
           + QString::fromUtf8(data);
}
}

class TestSimpleCrypt : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void decryptsPinnedTexts_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("expected");
        // Produced once by a separate script implementing the format (random byte fixed).
        QTest::newRow("short text, checksum only") << QStringLiteral("AwKsMG8GPedGJKY=") << QStringLiteral("secret");
        QTest::newRow("non-ASCII text as UTF-8")
            << QStringLiteral("AwI1pLf9YH3dqShpk/vBmstgttIJtg4rVA==")
            << QString::fromUtf8("P\xc3\xa4ssw\xc3\xb6rd\xe2\x82\xac \xe6\x97\xa5\xe6\x9c\xac");
        QTest::newRow("compressed text")
            << QStringLiteral("AwP3CLii/EU2SWXMrv2P/+AojSd1y6EYBznx2g==") << QStringLiteral("station ").repeated(20);
        QTest::newRow("SHA-1 protection of older writers") << QStringLiteral("AwRvCK1NCBLfFfmTkP9reOykaIz/4EqANlLWMQk=") << QStringLiteral("secret");
        QTest::newRow("no protection at all") << QStringLiteral("AwDmFz5Ha7cQ") << QStringLiteral("secret");
    }
    void decryptsPinnedTexts()
    {
        QFETCH(QString, stored);
        QFETCH(QString, expected);
        QCOMPARE(SimpleCrypt(C_key).decryptToString(stored), expected);
    }

    void encryptsInStoredFormat_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("flags");
        QTest::newRow("empty text stays empty") << QString() << 0;
        QTest::newRow("short text is not compressed") << QStringLiteral("S3cr3t!pa$$") << 0x02;
        QTest::newRow("compressible text is compressed") << QStringLiteral("station ").repeated(50) << 0x03;
    }
    // Checked by an independent reader, then decrypted by the class itself.
    void encryptsInStoredFormat()
    {
        QFETCH(QString, text);
        QFETCH(int, flags);
        SimpleCrypt crypt(C_key);
        const QString stored = crypt.encryptToString(text);
        QCOMPARE(crypt.decryptToString(stored), text);
        QCOMPARE(stored.isEmpty(), text.isEmpty());
        if (text.isEmpty())
            return;
        QCOMPARE(referenceDecode(stored, C_key), QStringLiteral("3 %1 ok ").arg(flags) + text);
    }

    void refusesDamagedTexts_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<quint64>("key");
        const QByteArray valid = QByteArray::fromBase64("AwKsMG8GPedGJKY=");
        QByteArray otherVersion = valid;
        otherVersion[0] = 0x02;
        QByteArray corrupted = valid;
        corrupted[6] = char(corrupted.at(6) ^ 0x10);

        QTest::newRow("empty input") << QString() << C_key;
        QTest::newRow("version other than 3") << QString::fromLatin1(otherVersion.toBase64()) << C_key;
        QTest::newRow("corrupted byte fails the checksum") << QString::fromLatin1(corrupted.toBase64()) << C_key;
        QTest::newRow("wrong key fails the checksum") << QStringLiteral("AwKsMG8GPedGJKY=") << Q_UINT64_C(0x07d3b95e1a4c82f7);
        QTest::newRow("truncated text") << QString::fromLatin1(valid.left(4).toBase64()) << C_key;
        QTest::newRow("not Base64 at all") << QStringLiteral("%%%%") << C_key;
    }
    void refusesDamagedTexts()
    {
        QFETCH(QString, stored);
        QFETCH(quint64, key);
        QCOMPARE(SimpleCrypt(key).decryptToString(stored), QString());
    }
};

QTEST_GUILESS_MAIN(TestSimpleCrypt)
#include "tst_simplecrypt.moc"
