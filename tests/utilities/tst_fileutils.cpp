#include "utilities/fileutils.h"
#include "utilities/jsontools.h"

#include <QJsonDocument>
#include <QtTest>

namespace {
bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
}

class TestFileUtils : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void isValidJsonFile_data();
    void isValidJsonFile();
    void updateJsonFileMerges_data();
    void updateJsonFileMerges();
    void updateJsonFileFailsWithoutTouchingConfig_data();
    void updateJsonFileFailsWithoutTouchingConfig();
    void copyFilesKeepsTreeAndReplaces();
    void copyFilesFromMissingDirectory();
};

void TestFileUtils::isValidJsonFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("valid");
    QTest::newRow("object") << QByteArray(R"({"a": 1})") << true;
    QTest::newRow("array") << QByteArray("[1]") << true;
    QTest::newRow("broken") << QByteArray(R"({"a": 1)") << false;
    QTest::newRow("empty file") << QByteArray() << false;
    QTest::newRow("a picture") << QByteArray("\x89PNG\r\n\x1a\n\0\0", 10) << false;
}

void TestFileUtils::isValidJsonFile()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, valid);
    QTemporaryDir dir;
    QVERIFY(writeBytes(dir.filePath("f"), content));
    QCOMPARE(::isValidJsonFile(dir.filePath("f")), valid);
    QVERIFY(!::isValidJsonFile(dir.filePath("missing")));
}

void TestFileUtils::updateJsonFileMerges_data()
{
    QTest::addColumn<QByteArray>("config");
    QTest::addColumn<QByteArray>("update");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("nested objects merge key by key")
        << QByteArray(R"({"general": {"a": 1, "b": 2}, "other": true})")
        << QByteArray(R"({"general": {"b": 3, "c": 4}})")
        << QByteArray(R"({"general": {"a": 1, "b": 3, "c": 4}, "other": true})");
    QTest::newRow("arrays are replaced, not appended")
        << QByteArray(R"({"comments": {"skip_comments": ["x", "y", "z"]}})")
        << QByteArray(R"({"comments": {"skip_comments": ["q"]}})")
        << QByteArray(R"({"comments": {"skip_comments": ["q"]}})");
    QTest::newRow("object replaced by a scalar")
        << QByteArray(R"({"a": {"deep": 1}})") << QByteArray(R"({"a": 0})") << QByteArray(R"({"a": 0})");
    QTest::newRow("scalar replaced by an object")
        << QByteArray(R"({"a": 0})") << QByteArray(R"({"a": {"deep": 1}})") << QByteArray(R"({"a": {"deep": 1}})");
    QTest::newRow("three levels deep")
        << QByteArray(R"({"a": {"b": {"c": 1, "d": 2}}})")
        << QByteArray(R"({"a": {"b": {"d": null}}})")
        << QByteArray(R"({"a": {"b": {"c": 1, "d": null}}})");
    QTest::newRow("empty update keeps the document")
        << QByteArray(R"({"a": [1, 2]})") << QByteArray("{}") << QByteArray(R"({"a": [1, 2]})");
}

void TestFileUtils::updateJsonFileMerges()
{
    QFETCH(QByteArray, config);
    QFETCH(QByteArray, update);
    QFETCH(QByteArray, expected);
    QTemporaryDir dir;
    QVERIFY(writeBytes(dir.filePath("config.json"), config));
    QVERIFY(writeBytes(dir.filePath("update.json"), update));
    QVERIFY(updateJsonFile(dir.filePath("update.json"), dir.filePath("config.json")));
    QJsonObject result;
    QVERIFY(JsonTools::readFile(dir.filePath("config.json"), result));
    QCOMPARE(result, QJsonDocument::fromJson(expected).object());
}

void TestFileUtils::updateJsonFileFailsWithoutTouchingConfig_data()
{
    QTest::addColumn<QByteArray>("update");
    QTest::addColumn<QByteArray>("config");
    QTest::newRow("broken update") << QByteArray(R"({"a": )") << QByteArray(R"({"a": 1})");
    QTest::newRow("update is an array") << QByteArray("[1]") << QByteArray(R"({"a": 1})");
    QTest::newRow("broken configuration") << QByteArray(R"({"a": 2})") << QByteArray(R"({"a": )");
}

void TestFileUtils::updateJsonFileFailsWithoutTouchingConfig()
{
    QFETCH(QByteArray, update);
    QFETCH(QByteArray, config);
    QTemporaryDir dir;
    QVERIFY(writeBytes(dir.filePath("config.json"), config));
    QVERIFY(writeBytes(dir.filePath("update.json"), update));
    QVERIFY(!updateJsonFile(dir.filePath("update.json"), dir.filePath("config.json")));
    QCOMPARE(readBytes(dir.filePath("config.json")), config);
    QVERIFY(!updateJsonFile(dir.filePath("missing.json"), dir.filePath("config.json")));
    QCOMPARE(readBytes(dir.filePath("config.json")), config);
}

void TestFileUtils::copyFilesKeepsTreeAndReplaces()
{
    QTemporaryDir source;
    QTemporaryDir target;
    QVERIFY(writeBytes(source.filePath("elements.json"), "new elements"));
    QVERIFY(writeBytes(source.filePath("sub/deeper/update.json"), "nested"));
    QVERIFY(writeBytes(source.filePath("picture.png"), "png"));
    QVERIFY(writeBytes(target.filePath("elements.json"), "old elements, longer than the new ones"));
    QVERIFY(writeBytes(target.filePath("unrelated.txt"), "stays"));

    QStringList seen;
    const int copied = copyFiles(source.path(), target.path(), [&seen](const QString& path) {
        seen << QFileInfo(path).fileName();
        return !path.endsWith(QLatin1String(".png"));
    });

    QCOMPARE(copied, 2);
    seen.sort();
    QCOMPARE(seen, QStringList({ "elements.json", "picture.png", "update.json" }));
    QCOMPARE(readBytes(target.filePath("elements.json")), QByteArray("new elements"));
    QCOMPARE(readBytes(target.filePath("sub/deeper/update.json")), QByteArray("nested"));
    QVERIFY(!QFile::exists(target.filePath("picture.png")));
    QCOMPARE(readBytes(target.filePath("unrelated.txt")), QByteArray("stays"));
}

void TestFileUtils::copyFilesFromMissingDirectory()
{
    QTemporaryDir target;
    QCOMPARE(copyFiles(target.filePath("missing"), target.path(), [](const QString&) { return true; }), 0);
    QVERIFY(QDir(target.path()).isEmpty());
}

QTEST_GUILESS_MAIN(TestFileUtils)
#include "tst_fileutils.moc"
