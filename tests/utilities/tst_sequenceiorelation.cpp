#include "utilities/sequenceiorelation.h"

#include <QJsonDocument>
#include <QtTest>

class TestSequenceIoRelation : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void fromJson_data();
    void fromJson();
    void settersSignalOnlyOnChange();
};

void TestSequenceIoRelation::fromJson_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");
    QTest::newRow("both keys") << QByteArray(R"({"binaryCode": 12, "sequenceBaseName": "screw_A"})") << 12 << "screw_A";
    QTest::newRow("missing keys") << QByteArray("{}") << 0 << "";
    QTest::newRow("wrong types") << QByteArray(R"({"binaryCode": "12", "sequenceBaseName": 4})") << 0 << "";
}

void TestSequenceIoRelation::fromJson()
{
    QFETCH(QByteArray, json);
    QFETCH(int, code);
    QFETCH(QString, name);
    const SequenceIoRelation relation(QJsonDocument::fromJson(json).object());
    QCOMPARE(relation.binaryCode(), code);
    QCOMPARE(relation.sequenceBaseName(), name);
    const SequenceIoRelation copy(relation.toJson());
    QCOMPARE(copy.binaryCode(), code);
    QCOMPARE(copy.sequenceBaseName(), name);
    QCOMPARE(relation.toJson().keys(), QStringList({ "binaryCode", "sequenceBaseName" }));
}

void TestSequenceIoRelation::settersSignalOnlyOnChange()
{
    SequenceIoRelation relation(3, "A");
    QSignalSpy spy(&relation, &SequenceIoRelation::changed);
    relation.setBinaryCode(3);
    relation.setSequenceBaseName("A");
    QCOMPARE(spy.count(), 0);
    relation.setBinaryCode(4);
    relation.setSequenceBaseName("B");
    QCOMPARE(spy.count(), 2);
}

QTEST_GUILESS_MAIN(TestSequenceIoRelation)
#include "tst_sequenceiorelation.moc"
