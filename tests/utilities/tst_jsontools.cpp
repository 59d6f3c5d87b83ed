#include "utilities/jsontools.h"
#include "filebytes.h"

#include <QtTest>

namespace {
QJsonObject parse(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object();
}
}

class TestJsonTools : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void getValue_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QJsonValue>("value");   // Undefined: not found
        QTest::newRow("three levels") << "a.b.c" << QJsonValue("deep");
        QTest::newRow("null value counts as found") << "nothing" << QJsonValue();
        QTest::newRow("step through a non-object") << "top.x" << QJsonValue(QJsonValue::Undefined);
    }
    void getValue()
    {
        QFETCH(QString, path);
        QFETCH(QJsonValue, value);
        const QJsonObject object = parse(R"({"top": 1, "nothing": null, "a": {"b": {"c": "deep"}}})");
        bool found = value.isUndefined();
        QCOMPARE(JsonTools::getValue(object, path, &found), value);
        QCOMPARE(found, !value.isUndefined());
        QCOMPARE(JsonTools::getValue(object, path), value);   // no flag pointer: no crash
    }

    void addValue_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("creates missing intermediate objects") << "_hidden_.pluginsDefConf.id"
            << QByteArray(R"({"top":1,"keep":{"x":1},"_hidden_":{"pluginsDefConf":{"id":2}}})");
        QTest::newRow("replaces a non-object step by an object") << "top.inner" << QByteArray(R"({"top":{"inner":2},"keep":{"x":1}})");
        QTest::newRow("empty path does nothing") << "" << QByteArray(R"({"top":1,"keep":{"x":1}})");
    }
    void addValue()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, expected);
        auto object = QSharedPointer<QJsonObject>::create(parse(R"({"top": 1, "keep": {"x": 1}})"));
        const QJsonObject* before = object.data();
        JsonTools::addValue(object, path, QJsonValue(2));
        QCOMPARE(object.data(), before);   // changed in place
        QCOMPARE(*object, parse(expected));
        JsonTools::addValue(QSharedPointer<QJsonObject>(), path, QJsonValue(1));   // no object: no crash
    }

    // Only a JSON object is read; a failed read leaves the object untouched.
    void readFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("array is not an object") << QByteArray("[1, 2]");
        QTest::newRow("trailing garbage") << QByteArray("{} x");
    }
    void readFile()
    {
        QFETCH(QByteArray, content);
        QTemporaryDir dir;
        const QJsonObject written = parse(R"({"a": {"b": "\u00e9t\u00e9"}, "l": [1]})");
        QVERIFY(JsonTools::writeFile(dir.filePath("doc.json"), written));
        QVERIFY(!JsonTools::writeFile(dir.filePath("no/such/dir/out.json"), written));
        QJsonObject object;
        QVERIFY(JsonTools::readFile(dir.filePath("doc.json"), object));
        QCOMPARE(object, written);
        QVERIFY(writeBytes(dir.filePath("doc.json"), content));
        QVERIFY(!JsonTools::readFile(dir.filePath("doc.json"), object));
        QVERIFY(!JsonTools::readFile(dir.filePath("missing.json"), object));
        QCOMPARE(object, written);
    }
};

QTEST_GUILESS_MAIN(TestJsonTools)
#include "tst_jsontools.moc"
