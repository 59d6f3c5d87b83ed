#include "utilities/fileinfo.h"

#include <QtTest>

class TestFileInfo : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void relativePathToTheRoot()
    {
        QTemporaryDir dir;
        QVERIFY(QDir().mkpath(dir.filePath("a/b")));
        const auto deeper = FileInfo::create(QFileInfo(dir.filePath("a/b")), dir.path() + "/", "internal");
        QCOMPARE(deeper->relativePath(), QStringLiteral("a/b"));   // root with a trailing separator
        QCOMPARE(deeper->name(), QStringLiteral("b"));
        QCOMPARE(FileInfo::create(QFileInfo(dir.path()), dir.path(), "internal")->relativePath(), QString());
    }
};

QTEST_GUILESS_MAIN(TestFileInfo)
#include "tst_fileinfo.moc"
