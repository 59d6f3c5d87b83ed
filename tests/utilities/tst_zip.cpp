#include "utilities/zip.h"
#include "logcapture.h"
#include "filebytes.h"

#include <KZip>

#include <QtTest>

namespace {
struct Entry
{
    enum Kind { File, Directory, Link } kind;
    QString name;
    QByteArray data;   // file content or link target
};

// The writer refuses a name that is both a link and a directory: such a file is written
// under "l1nk/" and renamed in the archive bytes (names are stored as they are).
bool buildArchive(const QString& path, const QList<Entry>& entries)
{
    KZip zip(path);
    bool ok = zip.open(QIODevice::WriteOnly);
    for (const Entry& entry : entries) {
        if (entry.kind == Entry::File)
            ok = ok && zip.writeFile(entry.name, entry.data);
        else if (entry.kind == Entry::Directory)
            ok = ok && zip.writeDir(entry.name);
        else
            ok = ok && zip.writeSymLink(entry.name, QString::fromUtf8(entry.data));
    }
    QFile file(path);
    if (!zip.close() || !ok || !file.open(QIODevice::ReadWrite))
        return false;
    const QByteArray bytes = file.readAll();
    return file.seek(0) && file.write(QByteArray(bytes).replace("l1nk/", "link/")) == bytes.size();
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
    void extractsTreeAndReplacesFiles()
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
        QVERIFY(writeBytes(dest + "/elements.json", "old content, longer than the new one"));

        const QList<QByteArray> extracted = Zip::Unzip(archive.toUtf8(), dest.toUtf8(), QByteArray());

        QCOMPARE(sorted(extracted), QStringList({ "big.bin", QString::fromUtf8("dossier/\xc3\xa9t\xc3\xa9.txt"),
                                                  "elements.json", "sub/deeper/update.json" }));
        QCOMPARE(readBytes(dest + "/elements.json"), QByteArray(R"({"a": 1})"));
        QCOMPARE(readBytes(dest + "/sub/deeper/update.json"), QByteArray("{}"));
        QCOMPARE(readBytes(dest + QString::fromUtf8("/dossier/\xc3\xa9t\xc3\xa9.txt")), QByteArray("utf-8 name"));
        QCOMPARE(readBytes(dest + "/big.bin"), QByteArray(300000, 'z'));
    }

    void refusesEntriesOutsideDestination_data()
    {
        QTest::addColumn<QList<Entry>>("entries");
        QTest::addColumn<QStringList>("extracted");
        QTest::addColumn<int>("logLines");
        QTest::addColumn<QString>("planted"); // a directory link to @OUT@ made in the destination beforehand
        const QStringList usual{ "good.txt", "sub/after.txt" };
        // "@OUT@" stands for a directory beside the destination. The archive also holds
        // "good.txt" before and "sub/after.txt" after these entries.
        QTest::newRow("parent reference")
            << QList<Entry>{ { Entry::File, "../evil.txt", "x" } } << usual << 1 << QString();
        QTest::newRow("parent reference inside a sub-directory")
            << QList<Entry>{ { Entry::File, "sub/../../evil.txt", "x" } } << usual << 1 << QString();
        QTest::newRow("parent reference that stays inside is still refused")
            << QList<Entry>{ { Entry::File, "sub/../inside.txt", "x" } } << usual << 1 << QString();
        QTest::newRow("absolute path")
            << QList<Entry>{ { Entry::File, "@OUT@/abs.txt", "x" } } << usual << 1 << QString();
        QTest::newRow("drive letter") << QList<Entry>{ { Entry::File, "C:/evil.txt", "x" } } << usual << 1 << QString();
        QTest::newRow("backslash separators")
            << QList<Entry>{ { Entry::File, "..\\evil.txt", "x" } } << usual << 1 << QString();
        QTest::newRow("link to a file outside")
            << QList<Entry>{ { Entry::Link, "passwd", "@OUT@/target.txt" } } << usual << 1 << QString();
        QTest::newRow("relative link climbing out")
            << QList<Entry>{ { Entry::Link, "up", "../../outside" } } << usual << 1 << QString();
        QTest::newRow("file below a link: the whole archive is unreadable")
            << QList<Entry>{ { Entry::Link, "link", "@OUT@" }, { Entry::File, "l1nk/through.txt", "x" } }
            << QStringList() << 1 << QString();
        // The reader keeps the directory and drops the later link of the same name.
        QTest::newRow("link over a directory already holding a file: the file stays inside")
            << QList<Entry>{ { Entry::File, "l1nk/through.txt", "x" }, { Entry::Link, "link", "@OUT@" } }
            << QStringList({ "good.txt", "link/through.txt", "sub/after.txt" }) << 0 << QString();
        QTest::newRow("files through a directory link already in the destination are refused")
            << QList<Entry>{ { Entry::File, "link/through.txt", "x" }, { Entry::File, "link/target.txt", "x" } }
            << usual << 2 << "link";
        QTest::newRow("no directory is made through a directory link already in the destination")
            << QList<Entry>{ { Entry::File, "link/deeper/x.txt", "x" } } << usual << 1 << "link";
    }
    void refusesEntriesOutsideDestination()
    {
        QFETCH(QList<Entry>, entries);
        QFETCH(QStringList, extracted);
        QFETCH(int, logLines);
        QFETCH(QString, planted);
        QTemporaryDir work;
        const QString outside = work.filePath("outside");
        const QString dest = work.filePath("deep/dest");
        QVERIFY(QDir().mkpath(dest));
        QVERIFY(writeBytes(outside + "/target.txt", "keep"));
        QVERIFY(planted.isEmpty() || QFile::link(outside, dest + "/" + planted));

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

        QStringList inDestination = extracted;
        if (!planted.isEmpty())
            inDestination << planted;
        inDestination.sort();
        QCOMPARE(treeOf(dest), inDestination);
        // Nothing appeared anywhere else, and nothing outside was changed.
        QStringList expectedTree = before;
        for (const QString& name : extracted)
            expectedTree << "deep/dest/" + name;
        expectedTree.sort();
        QCOMPARE(treeOf(work.path()), expectedTree);
        QCOMPARE(readBytes(outside + "/target.txt"), QByteArray("keep"));
        QCOMPARE(QDir(outside).entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList { "target.txt" });
        QCOMPARE(log.count("platform/utilities/zip"), logLines);
    }

    void unreadableArchives_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("logged");
        QTest::newRow("not a zip file") << QByteArray("this is plain text, not an archive") << true;
        QTest::newRow("valid archive without entries") << QByteArray() << false;
    }
    void unreadableArchives()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, logged);
        QTemporaryDir work;
        const QString archive = work.filePath("package.zip");
        const bool valid = QByteArray(QTest::currentDataTag()).startsWith("valid");
        QVERIFY(valid ? buildArchive(archive, {}) : writeBytes(archive, content));
        LogCapture log;
        QVERIFY(Zip::Unzip(archive.toUtf8(), work.filePath("dest").toUtf8(), QByteArray()).isEmpty());
        QCOMPARE(log.contains("platform/utilities/zip"), logged);
        QVERIFY(Zip::Unzip(work.filePath("missing.zip").toUtf8(), work.filePath("dest").toUtf8(), QByteArray()).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestZip)
#include "tst_zip.moc"
