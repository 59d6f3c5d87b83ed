#include "utilities/fileutils.h"
#include "utilities/jsontools.h"
#include "filebytes.h"

#include <QtTest>

class TestFileUtils : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void updateJsonFile_data()
    {
        QTest::addColumn<QByteArray>("config");
        QTest::addColumn<QByteArray>("update");
        QTest::addColumn<QByteArray>("expected");   // empty: refused, configuration untouched
        QTest::newRow("objects merge key by key, three levels deep")
            << QByteArray(R"({"g": {"a": 1, "b": {"c": 1, "d": 2}}, "other": true})")
            << QByteArray(R"({"g": {"b": {"d": null}, "e": 4}})")
            << QByteArray(R"({"g": {"a": 1, "b": {"c": 1, "d": null}, "e": 4}, "other": true})");
        QTest::newRow("arrays are replaced, not appended")
            << QByteArray(R"({"c": {"skip": ["x", "y"]}})") << QByteArray(R"({"c": {"skip": ["q"]}})")
            << QByteArray(R"({"c": {"skip": ["q"]}})");
        QTest::newRow("object replaced by a scalar")
            << QByteArray(R"({"a": {"deep": 1}})") << QByteArray(R"({"a": 0})") << QByteArray(R"({"a": 0})");
        QTest::newRow("broken update") << QByteArray(R"({"a": 1})") << QByteArray(R"({"a": )") << QByteArray();
        QTest::newRow("broken configuration") << QByteArray(R"({"a": )") << QByteArray(R"({"a": 2})") << QByteArray();
    }
    void updateJsonFile()
    {
        QFETCH(QByteArray, config);
        QFETCH(QByteArray, update);
        QFETCH(QByteArray, expected);
        QTemporaryDir dir;
        const QString configPath = dir.filePath("config.json");
        QVERIFY(writeBytes(configPath, config));
        QVERIFY(writeBytes(dir.filePath("update.json"), update));
        QVERIFY(!::updateJsonFile(dir.filePath("missing.json"), configPath));
        QCOMPARE(readBytes(configPath), config);
        QCOMPARE(::updateJsonFile(dir.filePath("update.json"), configPath), !expected.isEmpty());
        if (expected.isEmpty()) {
            QCOMPARE(readBytes(configPath), config);
            return;
        }
        QJsonObject result;
        QVERIFY(JsonTools::readFile(configPath, result));
        QCOMPARE(result, QJsonDocument::fromJson(expected).object());
    }
};

QTEST_GUILESS_MAIN(TestFileUtils)
#include "tst_fileutils.moc"
