// What a package or a stored text may inflate to: zip bombs, headers that lie about sizes,
// and the start-up step that applies a package.
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
constexpr qint64 C_peakLimitKiB = 100 * 1024;
constexpr quint64 C_key = Q_UINT64_C(0x07d3b95e1a4c82f6);

struct Member
{
    Member(const QString& n = QString(), const QByteArray& h = QByteArray(), qint64 f = 0,
           const QByteArray& t = QByteArray(), qint64 c = -1)
        : name(n), head(h), fill(f), tail(t), claimed(c)
    {
    }
    QString name;
    QByteArray head;
    qint64 fill;       // letters 'a' after the head
    QByteArray tail;
    qint64 claimed;    // size the headers give; -1: the real one
};
using Members = QList<Member>;

const Member C_elements{"elements.json", R"({"elements": []})"};
Member bomb(qint64 claimed = -1) { return {"configuration_update.json", R"({"x":")", C_bombFill, R"("})", claimed}; }

struct Deflated
{
    QByteArray data;   // raw deflate stream
    quint32 crc = 0;
    quint32 adler = 1;
    qint64 size = 0;
    bool repeatable = true;
};

// head + fill letters + tail, deflated in milliseconds whatever the size: after a full flush
// deflate starts afresh, so equal chunks deflate to equal bytes (checked on the second one).
Deflated deflated(const Member& member)
{
    Deflated out;
    z_stream z{};
    deflateInit2(&z, 9, Z_DEFLATED, -MAX_WBITS, 9, Z_DEFAULT_STRATEGY);
    const auto squeeze = [&z](const QByteArray& in, int flush) {
        QByteArray bytes;
        z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(in.constData()));
        z.avail_in = uInt(in.size());
        char buffer[1 << 16];
        do {
            z.next_out = reinterpret_cast<Bytef*>(buffer);
            z.avail_out = sizeof buffer;
            deflate(&z, flush);
            bytes.append(buffer, int(sizeof buffer - z.avail_out));
        } while (z.avail_out == 0);
        return bytes;
    };
    const auto account = [&out](const QByteArray& in) {
        out.crc = quint32(crc32(out.crc, reinterpret_cast<const Bytef*>(in.constData()), uInt(in.size())));
        out.adler = quint32(adler32(out.adler, reinterpret_cast<const Bytef*>(in.constData()), uInt(in.size())));
        out.size += in.size();
    };
    out.data += squeeze(member.head, Z_FULL_FLUSH);
    account(member.head);
    const QByteArray chunk(int(qMin(member.fill, C_MiB)), 'a');
    QByteArray once;
    qint64 left = member.fill;
    for (int n = 0; !chunk.isEmpty() && left >= chunk.size(); ++n, left -= chunk.size()) {
        if (n < 2) {
            const QByteArray bytes = squeeze(chunk, Z_FULL_FLUSH);
            out.repeatable = out.repeatable && (n == 0 || bytes == once);
            once = bytes;
        }
        out.data += once;
        account(chunk);
    }
    const QByteArray last = QByteArray(int(left), 'a') + member.tail;
    out.data += squeeze(last, Z_FINISH);
    account(last);
    deflateEnd(&z);
    return out;
}

void little(QByteArray& bytes, quint64 value, int width)
{
    for (int i = 0; i < width; ++i)
        bytes.append(char((value >> (8 * i)) & 0xff));
}

// A deflated zip archive written field by field, so that its headers may claim any size.
bool writeZip(const QString& path, const Members& members)
{
    QFile file(path);
    bool ok = file.open(QIODevice::WriteOnly);
    QByteArray central;
    for (const Member& member : members) {
        const Deflated d = deflated(member);
        const QByteArray name = member.name.toUtf8();
        QByteArray local;
        little(local, 0x04034b50, 4);
        for (quint64 field : {20, 0, 8, 0, 0x21})   // version, flags, deflate, time, date
            little(local, field, 2);
        little(local, d.crc, 4);
        little(local, quint64(d.data.size()), 4);
        little(local, quint64(member.claimed < 0 ? d.size : member.claimed), 4);
        little(local, quint64(name.size()), 2);
        little(local, 0, 2);
        little(central, 0x02014b50, 4);
        little(central, 0x031e, 2);
        central += local.mid(4, 26);
        little(central, 0, 6);                       // comment, disk, internal attributes
        little(central, 0100644u << 16, 4);
        little(central, quint64(file.pos()), 4);
        central += name;
        ok = ok && d.repeatable && file.write(local + name + d.data) == local.size() + name.size() + d.data.size();
    }
    QByteArray end;
    little(end, 0x06054b50, 8);                            // signature, disk numbers
    little(end, quint64(members.size()) * 0x10001, 4);     // entries on this disk, in all
    little(end, quint64(central.size()), 4);
    little(end, quint64(file.pos()), 4);
    little(end, 0, 2);
    return ok && file.write(central + end) == central.size() + end.size();
}

// Peak resident memory of this process in KiB; resetPeak brings it down to the current use.
qint64 peakKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    const QList<QByteArray> lines = status.open(QIODevice::ReadOnly) ? status.readAll().split('\n') : QList<QByteArray>();
    for (const QByteArray& line : lines) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).simplified().split(' ').first().toLongLong();
    }
    return -1;
}
bool resetPeak()
{
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    return clear.open(QIODevice::WriteOnly) && clear.write("5") == 1;
}

// The stored form of a text whose compressed form claims `claimed` bytes and holds `fill` letters.
QString storedText(quint32 claimed, qint64 fill)
{
    const Deflated d = deflated(Member{QString(), QByteArray(), fill});
    QByteArray data(4, '\0');
    qToBigEndian(claimed, data.data());
    data += QByteArray("\x78\xda", 2) + d.data + QByteArray(4, '\0');
    qToBigEndian(d.adler, data.data() + data.size() - 4);
    const quint16 checksum = qChecksum(data.constData(), uint(data.size()));
    QByteArray payload = QByteArray(1, 'r') + char(checksum >> 8) + char(checksum & 0xff) + data;
    char previous = 0;
    for (int pos = 0; pos < payload.size(); ++pos) {
        payload[pos] = char(payload.at(pos) ^ char(C_key >> (8 * (pos % 8))) ^ previous);
        previous = payload.at(pos);
    }
    return QString::fromLatin1((QByteArray("\x03\x03", 2) + payload).toBase64());
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

private:
    QByteArray m_noise;   // 600 KiB that do not compress

    // Prints the figures of the row; false when the peak went over the limit.
    static bool reportPeak(const QString& what, qint64 ms)
    {
        const qint64 peak = peakKiB();
        qInfo("%s in %lld ms, peak memory %lld MB", qPrintable(what), ms, peak / 1024);
        return peak > 0 && peak < C_peakLimitKiB;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_noise.resize(600 * 1024);
        QRandomGenerator(7).fillRange(reinterpret_cast<quint32*>(m_noise.data()), m_noise.size() / 4);
    }

    void unzip_data()
    {
        QTest::addColumn<Members>("members");
        QTest::addColumn<Zip::Limits>("limits");
        QTest::addColumn<QString>("refusal");   // empty: extracted
        const Member noise{"noise.bin", m_noise};
        Members many;
        for (int i = 0; i <= 10000; ++i)
            many << Member{QStringLiteral("f%1.json").arg(i), "{}"};

        QTest::newRow("within every limit") << Members{C_elements, noise} << Zip::Limits() << QString();
        QTest::newRow("1.2 GB JSON value")
            << Members{C_elements, bomb()} << Zip::Limits()
            << "configuration_update.json claims 1200000008 bytes, over the entry size limit of 67108864 bytes";
        QTest::newRow("1.2 GB JSON value, headers claiming 8 bytes")
            << Members{C_elements, bomb(8)} << Zip::Limits()
            << "configuration_update.json inflates past the entry size limit of 67108864 bytes";
        QTest::newRow("2 MiB of one letter") << Members{C_elements, {"a.json", "", 2 * C_MiB}} << Zip::Limits()
                                             << "a.json claims 2097152 bytes, over the compression ratio limit of 200:1";
        QTest::newRow("2 MiB of one letter, header claiming 8 bytes")
            << Members{C_elements, {"a.json", "", 2 * C_MiB, {}, 8}} << Zip::Limits()
            << "a.json inflates past the compression ratio limit of 200:1";
        QTest::newRow("10001 entries") << many << Zip::Limits() << "10001 entries, over the entry count limit of 10000";
        const QByteArray third = m_noise.left(400 * 1024);
        QTest::newRow("entry over its limit, header claiming 100 bytes")
            << Members{C_elements, {"n.bin", m_noise, 0, {}, 100}} << smallLimits()
            << "n.bin inflates past the entry size limit of 524288 bytes";
        QTest::newRow("total over its limit, headers claiming 100 bytes")
            << Members{C_elements, {"1.bin", third, 0, {}, 100}, {"2.bin", third, 0, {}, 100}, {"3.bin", third, 0, {}, 100}}
            << smallLimits() << "inflates past the total size limit of 1048576 bytes";
    }

    void unzip()
    {
        QFETCH(Members, members);
        QFETCH(Zip::Limits, limits);
        QFETCH(QString, refusal);
        QTemporaryDir work;
        const QString archive = work.filePath("package.zip");
        QVERIFY(writeZip(archive, members));
        const QString dest = work.filePath("dest");
        std::optional<LogCapture> capture(std::in_place);
        QVERIFY(resetPeak());
        QElapsedTimer timer;
        timer.start();

        const QList<QByteArray> extracted = Zip::Unzip(archive.toUtf8(), dest.toUtf8(), QByteArray(), limits);

        const QStringList log = capture->lines();
        capture.reset();
        QVERIFY(reportPeak(extracted.isEmpty() ? "refused" : "extracted", timer.elapsed()));
        const QStringList files = QDir(dest).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(files.size(), refusal.isEmpty() ? members.size() : 0);
        QCOMPARE(extracted.size(), files.size());
        QCOMPARE(log.filter("zip package refused").size(), refusal.isEmpty() ? 0 : 1);
        if (!refusal.isEmpty())
            QCOMPARE(log.filter(refusal).size(), 1);
        if (refusal.isEmpty())
            QCOMPARE(readBytes(dest + "/noise.bin"), m_noise);
    }

    void storedPassword_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("text");
        const SimpleCrypt crypt(C_key);
        const QString longest(SimpleCrypt::C_maxTextSize, 'a');
        QTest::newRow("90 MB text claimed as such") << storedText(90 * C_MiB, 90 * C_MiB) << QString();
        QTest::newRow("90 MB text claiming 1 KB") << storedText(1024, 90 * C_MiB) << QString();
        QTest::newRow("longest text") << crypt.encryptToString(longest) << longest;
        QTest::newRow("one byte longer") << crypt.encryptToString(longest + 'a') << QString();
    }

    void storedPassword()
    {
        QFETCH(QString, stored);
        QFETCH(QString, text);
        QVERIFY(resetPeak());
        QElapsedTimer timer;
        timer.start();
        const QString decrypted = SimpleCrypt(C_key).decryptToString(stored);
        QVERIFY(reportPeak(QStringLiteral("%1 KB stored text read").arg(stored.size() / 1000), timer.elapsed()));
        QCOMPARE(decrypted, text);
    }

    void startUp_data()
    {
        QTest::addColumn<Members>("members");
        QTest::addColumn<bool>("leftover");   // a 1.2 GB update file left by an earlier start
        QTest::addColumn<QString>("configFiles");
        QTest::newRow("package carrying a 1.2 GB JSON value") << Members{C_elements, bomb()} << false << "settings.json";
        QTest::newRow("1.2 GB update file left from before") << Members{C_elements} << true
                                                              << "elements.json,settings.json";
    }

    void startUp()
    {
        QFETCH(Members, members);
        QFETCH(bool, leftover);
        QFETCH(QString, configFiles);
        QTemporaryDir work;
        const QByteArray savedTmp = qgetenv("TMPDIR");
        QVERIFY(QDir().mkpath(work.filePath("tmp")));
        qputenv("TMPDIR", work.filePath("tmp").toUtf8());
        PreConfiguration::clear();
        PreConfiguration::setParameter("elementsFilename", "elements.json");
        PreConfiguration::setParameter("configUpdateFilename", "configuration_update.json");
        PreConfiguration::setParameter("configFilename", "settings.json");
        const QString config = work.filePath("config");
        QVERIFY(writeBytes(config + "/settings.json", R"({"keep": 1})"));
        QFile left(config + "/configuration_update.json");
        QVERIFY(!leftover || (left.open(QIODevice::WriteOnly) && left.resize(C_bombFill)));
        left.close();
        const QString package = work.filePath("update/configuration_update.zip");
        QVERIFY(QDir().mkpath(work.filePath("update")) && writeZip(package, members));
        std::optional<LogCapture> capture(std::in_place);
        QVERIFY(resetPeak());
        QElapsedTimer timer;
        timer.start();

        DZuConfiguration::processConfigurationUpdate(package, config);

        const QStringList log = capture->lines();
        capture.reset();
        QVERIFY(reportPeak("start-up went on", timer.elapsed()));
        qputenv("TMPDIR", savedTmp);
        PreConfiguration::clear();
        QCOMPARE(QDir(config).entryList(QDir::Files, QDir::Name).join(','), configFiles);
        QCOMPARE(readBytes(config + "/settings.json"), QByteArray(R"({"keep": 1})"));
        QCOMPARE(log.filter(leftover ? "update file refused" : "zip package refused").size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestPackageLimits)
#include "tst_packagelimits.moc"
