#include "utilities/jsontools.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

namespace {
QJsonObject parse(const char* json)
{
    return QJsonDocument::fromJson(json).object();
}

bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
}

class TestJsonTools : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void getValue_data();
    void getValue();
    void addValue_data();
    void addValue();
    void addValueWithoutObjectDoesNothing();
    void readFile_data();
    void readFile();
    void writeFileRoundTripsAndFailsOnMissingDirectory();
};

void TestJsonTools::getValue_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QJsonValue>("value");
    QTest::newRow("top-level key") << "top" << true << QJsonValue(1);
    QTest::newRow("nested key") << "system.utcOffset" << true << QJsonValue(2.5);
    QTest::newRow("three levels") << "a.b.c" << true << QJsonValue("deep");
    QTest::newRow("an object is a value too") << "a.b" << true << QJsonValue(QJsonObject{ { "c", "deep" } });
    QTest::newRow("null value counts as found") << "nothing" << true << QJsonValue();
    QTest::newRow("missing last step") << "system.name" << false << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("missing first step") << "general.name" << false << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("step through a non-object") << "top.x" << false << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("step through an array") << "list.0" << false << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("empty path") << "" << false << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("trailing dot") << "system." << false << QJsonValue(QJsonValue::Undefined);
}

void TestJsonTools::getValue()
{
    QFETCH(QString, path);
    QFETCH(bool, found);
    QFETCH(QJsonValue, value);
    const QJsonObject object = parse(R"({"top": 1, "nothing": null, "list": [1, 2],
        "system": {"utcOffset": 2.5}, "a": {"b": {"c": "deep"}}})");
    bool wasFound = !found;
    QCOMPARE(JsonTools::getValue(object, path, &wasFound), value);
    QCOMPARE(wasFound, found);
    QCOMPARE(JsonTools::getValue(object, path), value);   // no flag pointer: no crash
}

void TestJsonTools::addValue_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("replaces a top-level value") << "top" << QJsonValue(5)
        << QByteArray(R"({"top":5,"keep":{"x":1,"y":2}})");
    QTest::newRow("adds beside siblings") << "keep.z" << QJsonValue("new")
        << QByteArray(R"({"top":1,"keep":{"x":1,"y":2,"z":"new"}})");
    QTest::newRow("creates missing intermediate objects") << "_hidden_.pluginsDefConf.id" << QJsonValue(true)
        << QByteArray(R"({"top":1,"keep":{"x":1,"y":2},"_hidden_":{"pluginsDefConf":{"id":true}}})");
    QTest::newRow("replaces a non-object step by an object") << "top.inner" << QJsonValue(3)
        << QByteArray(R"({"top":{"inner":3},"keep":{"x":1,"y":2}})");
    QTest::newRow("sets a whole object") << "keep" << QJsonValue(QJsonObject{ { "w", 0 } })
        << QByteArray(R"({"top":1,"keep":{"w":0}})");
}

void TestJsonTools::addValue()
{
    QFETCH(QString, path);
    QFETCH(QJsonValue, value);
    QFETCH(QByteArray, expected);
    auto object = QSharedPointer<QJsonObject>::create(parse(R"({"top": 1, "keep": {"x": 1, "y": 2}})"));
    const QJsonObject* before = object.data();
    JsonTools::addValue(object, path, value);
    QCOMPARE(object.data(), before);   // changed in place
    QCOMPARE(*object, parse(expected));
}

void TestJsonTools::addValueWithoutObjectDoesNothing()
{
    JsonTools::addValue(QSharedPointer<QJsonObject>(), QStringLiteral("a.b"), QJsonValue(1));
    auto object = QSharedPointer<QJsonObject>::create();
    JsonTools::addValue(object, QString(), QJsonValue(1));
    QVERIFY(object->isEmpty());
}

void TestJsonTools::readFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("ok");
    QTest::newRow("object") << QByteArray(R"({"a": {"b": 1}})") << true;
    QTest::newRow("empty object") << QByteArray("{}") << true;
    QTest::newRow("array is not an object") << QByteArray("[1, 2]") << false;
    QTest::newRow("broken JSON") << QByteArray(R"({"a": )") << false;
    QTest::newRow("empty file") << QByteArray() << false;
    QTest::newRow("trailing garbage") << QByteArray("{} x") << false;
}

void TestJsonTools::readFile()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, ok);
    QTemporaryDir dir;
    const QString path = dir.filePath("doc.json");
    QVERIFY(writeBytes(path, content));
    QJsonObject object{ { "untouched", 1 } };
    QCOMPARE(JsonTools::readFile(path, object), ok);
    if (ok)
        QCOMPARE(object, QJsonDocument::fromJson(content).object());
    else
        QCOMPARE(object, QJsonObject({ { "untouched", 1 } }));

    QVERIFY(!JsonTools::readFile(dir.filePath("missing.json"), object));
}

void TestJsonTools::writeFileRoundTripsAndFailsOnMissingDirectory()
{
    QTemporaryDir dir;
    const QJsonObject object = parse(R"({"general": {"name": "été", "n": 3}, "list": [1, "a"]})");
    const QString path = dir.filePath("out.json");
    QVERIFY(JsonTools::writeFile(path, object));
    QJsonObject read;
    QVERIFY(JsonTools::readFile(path, read));
    QCOMPARE(read, object);

    QVERIFY(!JsonTools::writeFile(dir.filePath("no/such/dir/out.json"), object));
}

QTEST_GUILESS_MAIN(TestJsonTools)
#include "tst_jsontools.moc"
