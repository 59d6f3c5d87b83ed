#include "utilities/zip.h"
#include "logcapture.h"

#include <KZip>

#include <QtTest>

namespace {
struct Entry
{
    enum Kind { File, Directory, Link } kind;
    QString name;
    QByteArray data;   // file content or link target
};

quint32 crc32(const QByteArray& data)
{
    quint32 crc = 0xffffffffu;
    for (char c : data) {
        crc ^= quint8(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? (crc >> 1) ^ 0xedb88320u : crc >> 1;
    }
    return ~crc;
}

void put16(QByteArray& out, quint32 value)
{
    out.append(char(value & 0xff)).append(char((value >> 8) & 0xff));
}

void put32(QByteArray& out, quint32 value)
{
    put16(out, value & 0xffff);
    put16(out, value >> 16);
}

// Stored (uncompressed) archive written byte by byte, for entry sequences that the
// archive writer refuses to produce, such as a file below a symbolic link.
bool buildRawArchive(const QString& path, const QList<Entry>& entries)
{
    QByteArray local;
    QByteArray central;
    for (const Entry& entry : entries) {
        const QByteArray name = entry.name.toUtf8() + (entry.kind == Entry::Directory ? "/" : "");
        const quint32 mode = entry.kind == Entry::Link ? 0120777 : entry.kind == Entry::Directory ? 040755 : 0100644;
        const quint32 crc = crc32(entry.data);
        const quint32 offset = quint32(local.size());
        auto common = [&](QByteArray& out) {
            put16(out, 10);                  // version needed
            put16(out, 0x0800);              // UTF-8 names
            put16(out, 0);                   // stored
            put16(out, 0);                   // time
            put16(out, 0x21);                // date: 1 January 1980
            put32(out, crc);
            put32(out, quint32(entry.data.size()));
            put32(out, quint32(entry.data.size()));
            put16(out, quint32(name.size()));
            put16(out, 0);                   // extra field
        };
        put32(local, 0x04034b50);
        common(local);
        local.append(name).append(entry.data);

        put32(central, 0x02014b50);
        put16(central, (3 << 8) | 20);       // made on Unix
        common(central);
        put16(central, 0);                   // comment
        put16(central, 0);                   // disk
        put16(central, 0);                   // internal attributes
        put32(central, mode << 16);
        put32(central, offset);
        central.append(name);
    }
    QByteArray archive = local + central;
    put32(archive, 0x06054b50);
    put16(archive, 0);
    put16(archive, 0);
    put16(archive, quint32(entries.size()));
    put16(archive, quint32(entries.size()));
    put32(archive, quint32(central.size()));
    put32(archive, quint32(local.size()));
    put16(archive, 0);
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(archive) == archive.size();
}

bool buildArchive(const QString& path, const QList<Entry>& entries)
{
    for (const Entry& entry : entries) {
        if (entry.kind == Entry::Link)
            return buildRawArchive(path, entries);
    }
    KZip zip(path);
    if (!zip.open(QIODevice::WriteOnly))
        return false;
    for (const Entry& entry : entries) {
        bool ok = false;
        switch (entry.kind) {
        case Entry::File:
            ok = zip.writeFile(entry.name, entry.data);
            break;
        case Entry::Directory:
            ok = zip.writeDir(entry.name);
            break;
        case Entry::Link:
            ok = zip.writeSymLink(entry.name, QString::fromUtf8(entry.data));
            break;
        }
        if (!ok)
            return false;
    }
    return zip.close();
}

QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList sorted(const QList<QByteArray>& names)
{
    QStringList list;
    for (const QByteArray& name : names)
        list << QString::fromUtf8(name);
    list.sort();
    return list;
}

// Every file below `dir`, relative, sorted; links are listed, not followed.
QStringList treeOf(const QString& dir)
{
    QStringList files;
    QDirIterator it(dir, QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        if (!it.fileInfo().isDir() || it.fileInfo().isSymLink())
            files << QDir(dir).relativeFilePath(it.filePath());
    }
    files.sort();
    return files;
}
}

Q_DECLARE_METATYPE(QList<Entry>)

class TestZip : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void extractsTreeAndReplacesFiles();
    void refusesEntriesOutsideDestination_data();
    void refusesEntriesOutsideDestination();
    void unreadableArchives_data();
    void unreadableArchives();
};

void TestZip::extractsTreeAndReplacesFiles()
{
    QTemporaryDir work;
    const QString archive = work.filePath("package.zip");
    QVERIFY(buildArchive(archive, {
        { Entry::File, "elements.json", R"({"a": 1})" },
        { Entry::Directory, "empty", {} },
        { Entry::File, "sub/deeper/update.json", "{}" },
        { Entry::File, QString::fromUtf8("dossier/\xc3\xa9t\xc3\xa9.txt"), "utf-8 name" },
        { Entry::File, "big.bin", QByteArray(300000, 'z') },
    }));
    const QString dest = work.filePath("dest");
    QVERIFY(QDir().mkpath(dest));
    QFile old(dest + "/elements.json");
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old content, longer than the new one");
    old.close();

    const QList<QByteArray> extracted = Zip::Unzip(archive.toUtf8(), dest.toUtf8(), QByteArray());

    QCOMPARE(sorted(extracted), QStringList({ "big.bin", QString::fromUtf8("dossier/\xc3\xa9t\xc3\xa9.txt"),
                                              "elements.json", "sub/deeper/update.json" }));
    QCOMPARE(readBytes(dest + "/elements.json"), QByteArray(R"({"a": 1})"));
    QCOMPARE(readBytes(dest + "/sub/deeper/update.json"), QByteArray("{}"));
    QCOMPARE(readBytes(dest + QString::fromUtf8("/dossier/\xc3\xa9t\xc3\xa9.txt")), QByteArray("utf-8 name"));
    QCOMPARE(readBytes(dest + "/big.bin"), QByteArray(300000, 'z'));
}

void TestZip::refusesEntriesOutsideDestination_data()
{
    QTest::addColumn<QList<Entry>>("entries");
    QTest::addColumn<QStringList>("extracted");
    QTest::addColumn<int>("logLines");
    const QStringList usual{ "good.txt", "sub/after.txt" };
    // "@OUT@" stands for a directory beside the destination. The archive also holds
    // "good.txt" before and "sub/after.txt" after these entries.
    QTest::newRow("parent reference") << QList<Entry>{ { Entry::File, "../evil.txt", "x" } } << usual << 1;
    QTest::newRow("parent reference inside a sub-directory")
        << QList<Entry>{ { Entry::File, "sub/../../evil.txt", "x" } } << usual << 1;
    QTest::newRow("parent reference that stays inside is still refused")
        << QList<Entry>{ { Entry::File, "sub/../inside.txt", "x" } } << usual << 1;
    QTest::newRow("absolute path") << QList<Entry>{ { Entry::File, "@OUT@/abs.txt", "x" } } << usual << 1;
    QTest::newRow("drive letter") << QList<Entry>{ { Entry::File, "C:/evil.txt", "x" } } << usual << 1;
    QTest::newRow("backslash separators") << QList<Entry>{ { Entry::File, "..\\evil.txt", "x" } } << usual << 1;
    QTest::newRow("link to a file outside")
        << QList<Entry>{ { Entry::Link, "passwd", "@OUT@/target.txt" } } << usual << 1;
    QTest::newRow("relative link climbing out") << QList<Entry>{ { Entry::Link, "up", "../../outside" } } << usual << 1;
    QTest::newRow("file below a link: the whole archive is unreadable")
        << QList<Entry>{ { Entry::Link, "link", "@OUT@" }, { Entry::File, "link/through.txt", "x" } }
        << QStringList() << 1;
    // The reader keeps the directory and drops the later link of the same name.
    QTest::newRow("link over a directory already holding a file: the file stays inside")
        << QList<Entry>{ { Entry::File, "link/through.txt", "x" }, { Entry::Link, "link", "@OUT@" } }
        << QStringList({ "good.txt", "link/through.txt", "sub/after.txt" }) << 0;
}

void TestZip::refusesEntriesOutsideDestination()
{
    QFETCH(QList<Entry>, entries);
    QFETCH(QStringList, extracted);
    QFETCH(int, logLines);
    QTemporaryDir work;
    const QString outside = work.filePath("outside");
    const QString dest = work.filePath("deep/dest");
    QVERIFY(QDir().mkpath(outside));
    QVERIFY(QDir().mkpath(dest));
    QFile target(outside + "/target.txt");
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write("keep");
    target.close();

    QList<Entry> all{ { Entry::File, "good.txt", "good" } };
    for (Entry entry : entries) {
        entry.name.replace("@OUT@", outside);
        entry.data.replace("@OUT@", outside.toUtf8());
        all << entry;
    }
    all << Entry{ Entry::File, "sub/after.txt", "after" };
    const QString archive = work.filePath("crafted.zip");
    QVERIFY(buildArchive(archive, all));
    const QStringList before = treeOf(work.path());

    LogCapture log;
    QCOMPARE(sorted(Zip::Unzip(archive.toUtf8(), dest.toUtf8(), QByteArray())), extracted);

    QCOMPARE(treeOf(dest), extracted);
    // Nothing appeared anywhere else, and nothing outside was changed.
    QStringList expectedTree = before;
    for (const QString& name : extracted)
        expectedTree << "deep/dest/" + name;
    expectedTree.sort();
    QCOMPARE(treeOf(work.path()), expectedTree);
    QCOMPARE(readBytes(outside + "/target.txt"), QByteArray("keep"));
    QCOMPARE(log.count("platform/utilities/zip"), logLines);
}

void TestZip::unreadableArchives_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("logged");
    QTest::newRow("not a zip file") << QByteArray("this is plain text, not an archive") << true;
    QTest::newRow("empty file") << QByteArray() << true;
    QTest::newRow("valid archive without entries") << QByteArray() << false;
}

void TestZip::unreadableArchives()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, logged);
    QTemporaryDir work;
    const QString archive = work.filePath("package.zip");
    if (QByteArray(QTest::currentDataTag()).startsWith("valid")) {
        QVERIFY(buildArchive(archive, {}));
    } else {
        QFile file(archive);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    LogCapture log;
    QVERIFY(Zip::Unzip(archive.toUtf8(), work.filePath("dest").toUtf8(), QByteArray()).isEmpty());
    QCOMPARE(log.contains("platform/utilities/zip"), logged);
    QVERIFY(Zip::Unzip(work.filePath("missing.zip").toUtf8(), work.filePath("dest").toUtf8(), QByteArray()).isEmpty());
}

QTEST_GUILESS_MAIN(TestZip)
#include "tst_zip.moc"
