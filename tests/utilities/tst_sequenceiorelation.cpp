#include "utilities/sequenceiorelation.h"

#include <QtTest>

class TestSequenceIoRelation : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void wrongTypesGiveEmptyRelation()
    {
        const SequenceIoRelation relation(QJsonDocument::fromJson(R"({"binaryCode": "12", "sequenceBaseName": 4})").object());
        QCOMPARE(relation.binaryCode(), 0);
        QCOMPARE(relation.sequenceBaseName(), QString());
    }

    void settersSignalOnlyOnChange()
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
};

QTEST_GUILESS_MAIN(TestSequenceIoRelation)
#include "tst_sequenceiorelation.moc"
