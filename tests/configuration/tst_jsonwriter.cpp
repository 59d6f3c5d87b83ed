// The document writer gives the bytes Qt's own writer gives, for documents that exercise every
// kind of value, escape, number and nesting, in both formats.
#include "jsonwriter.h"

#include <QtTest>

#include <unistd.h>

class TestJsonWriter : public QObject
{
    Q_OBJECT

private slots:
    void sameBytesAsQt_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty object") << QByteArray("{}");
        QTest::newRow("empty containers") << QByteArray("{\"a\": [], \"b\": {}, \"c\": [[], {}, [[]]]}");
        QTest::newRow("scalars") << QByteArray("{\"t\": true, \"f\": false, \"z\": null, \"s\": \"\"}");
        QTest::newRow("numbers") << QByteArray(
            "{\"n\": [0, -0.0, 1, -1, 0.1, 1e20, 1e-7, 123456789012345, 9007199254740993, 2.5e300, -3.75, 1.0e2,\n"
            "               4294967296, -9223372036854775808, 18446744073709551616, 5e-324, 1.7976931348623157e308]}");
        QTest::newRow("escapes") << QByteArray("{\"s\": \"q\\\"b\\\\s/\\b\\f\\n\\r\\t\\u0001\\u001f\\u007f\"}");
        QTest::newRow("non-ASCII and pairs") << QByteArray("{\"s\": \"é€😀 ab\\u00e9cdefgh\\u20acijklmnop😀\"}");
        QTest::newRow("unpaired surrogates") << QByteArray("{\"s\": [\"\\ud800x\", \"\\udc00\", \"x\\ud83d\", \"\\ud83d\\ud83d\\ude00\"]}");
        QTest::newRow("special characters past an ASCII run") << QByteArray("{\"s\": \"abcdefgh\\\"ijklmnop\\\\qrstuvwx\\ny\"}");
        QTest::newRow("keys that need escapes") << QByteArray("{\"k\\u0002é\": {\"x\\\"\": [{\"y\": [1, {\"z\": [true]}]}]}}");
        QTest::newRow("deep nesting") << QByteArray("{\"a\": [[[[[[[[[[[[[[[[[[{\"b\": [[[[[[[[1]]]]]]]]}]]]]]]]]]]]]]]]]]]}");
    }
    void sameBytesAsQt()
    {
        QFETCH(QByteArray, text);
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(text, &error);
        QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
        const QJsonObject object = document.object();
        const QJsonArray array {object, QJsonArray {object, 1}, "x"};
        for (const auto format : {QJsonDocument::Indented, QJsonDocument::Compact}) {
            QCOMPARE(JsonWriter::toJson(object, format), QJsonDocument(object).toJson(format));
            QCOMPARE(JsonWriter::toJson(array, format), QJsonDocument(array).toJson(format));
        }
        QCOMPARE(JsonWriter::toJson(QJsonValue(array)), QJsonDocument(array).toJson(QJsonDocument::Compact));
        const QString string = object.value("s").toString();
        QCOMPARE(JsonWriter::quoted(string), QJsonDocument(QJsonArray {QJsonValue(string)}).toJson(QJsonDocument::Compact).chopped(1).mid(1));
    }

    // A document larger than the writer's buffer reaches a descriptor whole.
    void writesLargeDocumentsToADescriptor()
    {
        QJsonArray comments;
        for (int i = 0; i < 40000; ++i)
            comments.append(QStringLiteral("Rework %1: screw replaced, \"retightened\" to nominal torque").arg(i));
        const QJsonObject object {{"comments", QJsonObject {{"rework_comments", comments}}}, {"v", 1}};
        QTemporaryFile file;
        QVERIFY(file.open());
        QVERIFY(JsonWriter::write(file.handle(), object));
        QFile written(file.fileName());
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll(), QJsonDocument(object).toJson());
        QVERIFY(!JsonWriter::write(-1, object));
    }
};

QTEST_GUILESS_MAIN(TestJsonWriter)
#include "tst_jsonwriter.moc"
