// What a package or a stored text may inflate to: zip bombs, headers that lie about sizes,
// and the start-up step that applies a package. Each case prints its peak memory.
#include "d_zu_configuration.h"
#include "filebytes.h"
#include "logcapture.h"
#include "utilities/preconfiguration.h"
#include "utilities/simplecrypt.h"
#include "utilities/zip.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QtEndian>
#include <QtTest>

#include <optional>
#include <zlib.h>

namespace {
constexpr qint64 C_MiB = 1024 * 1024;
constexpr qint64 C_bombFill = 1200 * 1000 * 1000;   // letters of a 1.2 GB JSON value
#if defined(__SANITIZE_ADDRESS__)
#define STATION_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define STATION_ADDRESS_SANITIZER 1
#endif
#endif
#ifdef STATION_ADDRESS_SANITIZER
// The sanitizer's shadow memory and quarantine lift every peak; a bomb inflated in memory
// would still be over 1.2 GB.
constexpr qint64 C_peakLimitKiB = 1024 * 1024;
#else
constexpr qint64 C_peakLimitKiB = 100 * 1024;
#endif
constexpr quint64 C_key = Q_UINT64_C(0x07d3b95e1a4c82f6);

// One file of a test archive: head, `fill` letters, tail; its headers claim `claimed` bytes (-1: the truth).
struct Member
{
    QString name;
    QByteArray head;
    qint64 fill;
    QByteArray tail;
    qint64 claimed;
};
using Members = QList<Member>;
Member file(const QString& name, const QByteArray& head, qint64 fill = 0, qint64 claimed = -1, const QByteArray& tail = {})
{
    return Member{name, head, fill, tail, claimed};
}
const Member C_elements = file("elements.json", R"({"elements": []})");
Member bomb(qint64 claimed = -1) { return file("configuration_update.json", R"({"x":")", C_bombFill, claimed, R"("})"); }

// Raw deflate of a member, in milliseconds whatever its size: after a full flush deflate starts
// afresh, so every 1 MiB chunk of letters deflates to the same bytes.
QByteArray deflated(const Member& member, quint32& crc)
{
    z_stream z{};
    deflateInit2(&z, 9, Z_DEFLATED, -MAX_WBITS, 9, Z_DEFAULT_STRATEGY);
    QByteArray out;
    const auto squeeze = [&](const QByteArray& in, int flush) {
        crc = quint32(crc32(crc, reinterpret_cast<const Bytef*>(in.constData()), uInt(in.size())));
        z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(in.constData()));
        z.avail_in = uInt(in.size());
        const int start = out.size();
        do {
            out.resize(out.size() + 65536);
            z.next_out = reinterpret_cast<Bytef*>(out.data() + out.size() - 65536);
            z.avail_out = 65536;
            deflate(&z, flush);
        } while (z.avail_out == 0);
        out.chop(int(z.avail_out));
        return out.mid(start);
    };
    crc = 0;
    squeeze(member.head, Z_FULL_FLUSH);
    const QByteArray chunk(int(qMin(member.fill, C_MiB)), 'a');
    const QByteArray once = chunk.isEmpty() ? QByteArray() : squeeze(chunk, Z_FULL_FLUSH);
    qint64 left = member.fill - chunk.size();
    for (; !chunk.isEmpty() && left >= chunk.size(); left -= chunk.size()) {
        crc = quint32(crc32(crc, reinterpret_cast<const Bytef*>(chunk.constData()), uInt(chunk.size())));
        out += once;
    }
    squeeze(QByteArray(int(left), 'a') + member.tail, Z_FINISH);
    deflateEnd(&z);
    return out;
}

void little(QByteArray& bytes, quint64 value, int width)
{
    for (int i = 0; i < width; ++i)
        bytes.append(char((value >> (8 * i)) & 0xff));
}

// A zip archive written field by field, so that its headers may claim any size.
bool writeZip(const QString& path, const Members& members)
{
    QFile zip(path);
    bool ok = zip.open(QIODevice::WriteOnly);
    QByteArray central;
    for (const Member& member : members) {
        quint32 crc = 0;
        const QByteArray data = deflated(member, crc);
        const QByteArray name = member.name.toUtf8();
        const qint64 size = member.claimed >= 0 ? member.claimed : member.head.size() + member.fill + member.tail.size();
        QByteArray local;
        little(local, 0x04034b50, 4);
        for (quint64 field : {20, 0, 8, 0, 0x21})   // version, flags, deflate, time, date
            little(local, field, 2);
        for (quint64 field : {quint64(crc), quint64(data.size()), quint64(size)})
            little(local, field, 4);
        little(local, quint64(name.size()), 4);       // name length, no extra field
        little(central, 0x031e02014b50, 6);           // signature, made by
        central += local.mid(4, 26);
        little(central, 0, 6);                        // comment, disk, internal attributes
        little(central, quint64(0100644) << 16, 4);
        little(central, quint64(zip.pos()), 4);
        central += name;
        ok = ok && zip.write(local + name + data) == local.size() + name.size() + data.size();
    }
    QByteArray end;
    little(end, 0x06054b50, 8);                       // signature, disk numbers
    little(end, quint64(members.size()) * 0x10001, 4);
    little(end, quint64(central.size()), 4);
    little(end, quint64(zip.pos()), 6);               // offset, no comment
    return ok && zip.write(central + end) == central.size() + end.size();
}

// The stored form of `text` compressed, its length header replaced by `claimed`.
QString storedText(const QByteArray& text, quint32 claimed)
{
    QByteArray data = qCompress(text, 9);
    qToBigEndian(claimed, data.data());
    const quint16 checksum = qChecksum(data.constData(), uint(data.size()));
    QByteArray payload = QByteArray("r") + char(checksum >> 8) + char(checksum & 0xff) + data;
    char previous = 0;
    for (int pos = 0; pos < payload.size(); ++pos)
        previous = payload[pos] = char(payload.at(pos) ^ char(C_key >> (8 * (pos % 8))) ^ previous);
    return QString::fromLatin1((QByteArray("\x03\x03") + payload).toBase64());
}

// Resets the peak resident memory of this process (VmHWM) to its current use.
bool resetPeak()
{
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    return clear.open(QIODevice::WriteOnly) && clear.write("5") == 1;
}

// Prints the figures of a case; false when the peak since resetPeak went over the limit.
bool reportPeak(const QString& what, const QElapsedTimer& timer)
{
    QFile status(QStringLiteral("/proc/self/status"));
    const QByteArray text = status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
    const qint64 peak = text.mid(text.indexOf("VmHWM:") + 6).simplified().split(' ').value(0).toLongLong();
    qInfo("%s in %lld ms, peak memory %lld MB", qPrintable(what), timer.elapsed(), peak / 1024);
    return peak > 0 && peak < C_peakLimitKiB;
}

Zip::Limits smallLimits()
{
    Zip::Limits limits;
    limits.maxEntrySize = C_MiB / 2;
    limits.maxTotalSize = C_MiB;
    return limits;
}
}

Q_DECLARE_METATYPE(Members)
Q_DECLARE_METATYPE(Zip::Limits)

class TestPackageLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unzip_data()
    {
        QTest::addColumn<Members>("members");
        QTest::addColumn<Zip::Limits>("limits");
        QTest::addColumn<QString>("refusal");   // empty: extracted
        QByteArray noise(600 * 1024, '\0');     // does not compress
        QRandomGenerator(7).fillRange(reinterpret_cast<quint32*>(noise.data()), noise.size() / 4);
        const QByteArray third = noise.left(400 * 1024);
        Members many;
        for (int i = 0; i <= 10000; ++i)
            many << file(QStringLiteral("f%1.json").arg(i), "{}");

        QTest::newRow("within every limit") << Members{C_elements, file("noise.bin", noise)} << Zip::Limits() << "";
        QTest::newRow("1.2 GB JSON value")
            << Members{C_elements, bomb()} << Zip::Limits()
            << "configuration_update.json claims 1200000008 bytes, over the entry size limit of 67108864 bytes";
        QTest::newRow("1.2 GB JSON value, headers claiming 8 bytes")
            << Members{C_elements, bomb(8)} << Zip::Limits()
            << "configuration_update.json inflates past the entry size limit of 67108864 bytes";
        QTest::newRow("2 MiB of one letter") << Members{C_elements, file("a.json", "", 2 * C_MiB)} << Zip::Limits()
                                             << "a.json claims 2097152 bytes, over the compression ratio limit of 200:1";
        QTest::newRow("2 MiB of one letter, header claiming 8 bytes")
            << Members{C_elements, file("a.json", "", 2 * C_MiB, 8)} << Zip::Limits()
            << "a.json inflates past the compression ratio limit of 200:1";
        QTest::newRow("10001 entries") << many << Zip::Limits() << "10001 entries, over the entry count limit of 10000";
        QTest::newRow("entry over its limit, header claiming 100 bytes")
            << Members{C_elements, file("n.bin", noise, 0, 100)} << smallLimits()
            << "n.bin inflates past the entry size limit of 524288 bytes";
        QTest::newRow("total over its limit, headers claiming 100 bytes")
            << Members{C_elements, file("1.bin", third, 0, 100), file("2.bin", third, 0, 100), file("3.bin", third, 0, 100)}
            << smallLimits() << "inflates past the total size limit of 1048576 bytes";
    }

    void unzip()
    {
        QFETCH(Members, members);
        QFETCH(Zip::Limits, limits);
        QFETCH(QString, refusal);
        QTemporaryDir work;
        const QString dest = work.filePath("dest");
        QVERIFY(writeZip(work.filePath("package.zip"), members));
        std::optional<LogCapture> capture(std::in_place);
        QVERIFY(resetPeak());
        QElapsedTimer timer;
        timer.start();

        const QList<QByteArray> extracted = Zip::Unzip(work.filePath("package.zip").toUtf8(), dest.toUtf8(), "", limits);

        const QStringList log = capture->lines();
        capture.reset();
        QVERIFY(reportPeak(extracted.isEmpty() ? "refused" : "extracted", timer));
        const int files = QDir(dest).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot).size();
        QCOMPARE(files, refusal.isEmpty() ? members.size() : 0);   // all or nothing
        QCOMPARE(extracted.size(), files);
        QCOMPARE(log.filter("zip package refused").size(), refusal.isEmpty() ? 0 : 1);
        if (!refusal.isEmpty())
            QCOMPARE(log.filter(refusal).size(), 1);
        QCOMPARE(readBytes(dest + "/elements.json"), refusal.isEmpty() ? C_elements.head : QByteArray());
    }

    void storedPassword_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("text");
        const QByteArray letters(90 * C_MiB, 'a');
        const QString longest(SimpleCrypt::C_maxTextSize, 'a');
        QTest::newRow("90 MB text claimed as such") << storedText(letters, quint32(letters.size())) << QString();
        QTest::newRow("90 MB text claiming 1 KB") << storedText(letters, 1024) << QString();
        QTest::newRow("longest text") << SimpleCrypt(C_key).encryptToString(longest) << longest;
        QTest::newRow("one byte longer") << SimpleCrypt(C_key).encryptToString(longest + 'a') << QString();
    }

    void storedPassword()
    {
        QFETCH(QString, stored);
        QFETCH(QString, text);
        QVERIFY(resetPeak());
        QElapsedTimer timer;
        timer.start();
        const QString decrypted = SimpleCrypt(C_key).decryptToString(stored);
        QVERIFY(reportPeak(QStringLiteral("%1 KB stored text read").arg(stored.size() / 1000), timer));
        QCOMPARE(decrypted, text);
    }

    void startUp_data()
    {
        QTest::addColumn<Members>("members");
        QTest::addColumn<bool>("leftover");   // a 1.2 GB update file left by an earlier start
        QTest::addColumn<QString>("configFiles");
        QTest::newRow("package carrying a 1.2 GB JSON value") << Members{C_elements, bomb()} << false << "settings.json";
        QTest::newRow("1.2 GB update file left from before") << Members{C_elements} << true << "elements.json,settings.json";
    }

    void startUp()
    {
        QFETCH(Members, members);
        QFETCH(bool, leftover);
        QFETCH(QString, configFiles);
        QTemporaryDir work;
        const QString config = work.filePath("config");
        const QString package = work.filePath("configuration_update.zip");
        QVERIFY(writeBytes(config + "/settings.json", R"({"keep": 1})") && writeZip(package, members));
        QFile left(config + "/configuration_update.json");
        QVERIFY(!leftover || (left.open(QIODevice::WriteOnly) && left.resize(C_bombFill)));   // sparse
        left.close();
        PreConfiguration::clear();
        PreConfiguration::setParameter("elementsFilename", "elements.json");
        PreConfiguration::setParameter("configUpdateFilename", "configuration_update.json");
        PreConfiguration::setParameter("configFilename", "settings.json");
        const QByteArray savedTmp = qgetenv("TMPDIR");
        QVERIFY(QDir().mkpath(work.filePath("tmp")));
        qputenv("TMPDIR", work.filePath("tmp").toUtf8());
        std::optional<LogCapture> capture(std::in_place);
        QVERIFY(resetPeak());
        QElapsedTimer timer;
        timer.start();

        DZuConfiguration::processConfigurationUpdate(package, config);

        const QStringList log = capture->lines();
        capture.reset();
        qputenv("TMPDIR", savedTmp);
        PreConfiguration::clear();
        QVERIFY(reportPeak("start-up went on", timer));
        QCOMPARE(QDir(config).entryList(QDir::Files, QDir::Name).join(','), configFiles);
        QCOMPARE(readBytes(config + "/settings.json"), QByteArray(R"({"keep": 1})"));
        QCOMPARE(log.filter(leftover ? "update file refused" : "zip package refused").size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestPackageLimits)
#include "tst_packagelimits.moc"
