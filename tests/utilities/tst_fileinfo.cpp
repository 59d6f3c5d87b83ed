#include "utilities/fileinfo.h"

#include <QtTest>

class TestFileInfo : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void relativePath_data();
    void relativePath();
};

void TestFileInfo::relativePath_data()
{
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("relative");
    QTest::newRow("directly below the root") << "" << "a" << "a";
    QTest::newRow("deeper") << "" << "a/b" << "a/b";
    QTest::newRow("root with a trailing separator") << "/" << "a/b" << "a/b";
    QTest::newRow("the root itself") << "" << "" << "";
}

void TestFileInfo::relativePath()
{
    QFETCH(QString, root);
    QFETCH(QString, entry);
    QFETCH(QString, relative);
    QTemporaryDir dir;
    QVERIFY(QDir().mkpath(dir.filePath("a/b")));
    const QString entryPath = entry.isEmpty() ? dir.path() : dir.filePath(entry);
    const auto info = FileInfo::create(QFileInfo(entryPath), dir.path() + root, "internal");
    QCOMPARE(info->relativePath(), relative);
    QCOMPARE(info->name(), QFileInfo(entryPath).fileName());
    QCOMPARE(info->folderType(), QStringLiteral("internal"));
    QVERIFY(info->isDir());
}

QTEST_GUILESS_MAIN(TestFileInfo)
#include "tst_fileinfo.moc"
