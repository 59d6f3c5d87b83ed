#include "utilities/datetime.h"
#include "logcapture.h"

#include <QDateTime>
#include <QtTest>

class TestDateTime : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void utcOffset_data();
    void utcOffset();
    void timeFollowsOffsetAndFormat_data();
    void timeFollowsOffsetAndFormat();
    void formatSignalOnlyOnChange();
    void ticksOnlyWhileConnected();
};

void TestDateTime::utcOffset_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("expected");
    QTest::addColumn<int>("signalCount");
    QTest::addColumn<bool>("logged");
    QTest::newRow("same value, no signal") << 0 << 0 << 0 << false;
    QTest::newRow("positive") << 5 << 5 << 1 << false;
    QTest::newRow("lowest zone") << -12 << -12 << 1 << false;
    QTest::newRow("highest zone") << 14 << 14 << 1 << false;
    QTest::newRow("too high is refused") << 15 << 0 << 0 << true;
    QTest::newRow("too low is refused") << -13 << 0 << 0 << true;
}

void TestDateTime::utcOffset()
{
    QFETCH(int, offset);
    QFETCH(int, expected);
    QFETCH(int, signalCount);
    QFETCH(bool, logged);
    DateTime dateTime;
    QSignalSpy spy(&dateTime, &DateTime::utcOffsetChanged);
    LogCapture log;
    dateTime.setUtcOffset(offset);
    QCOMPARE(dateTime.utcOffset(), expected);
    QCOMPARE(spy.count(), signalCount);
    QCOMPARE(log.contains("platform/utilities/datetime"), logged);
}

void TestDateTime::timeFollowsOffsetAndFormat_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<bool>("is24h");
    QTest::newRow("UTC, 24 h") << 0 << true;
    QTest::newRow("east, 24 h") << 9 << true;
    QTest::newRow("west, 12 h") << -7 << false;
}

void TestDateTime::timeFollowsOffsetAndFormat()
{
    QFETCH(int, offset);
    QFETCH(bool, is24h);
    DateTime dateTime;
    dateTime.setUtcOffset(offset);
    dateTime.set24hFormat(is24h);
    const QString pattern = is24h ? QStringLiteral("HH:mm:ss") : QStringLiteral("hh:mm:ss AP");
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(offset * 3600);
    const QString time = dateTime.currentTime();
    const QString date = dateTime.currentDate();
    const QDateTime after = QDateTime::currentDateTimeUtc().addSecs(offset * 3600);
    QVERIFY2(time == before.toString(pattern) || time == after.toString(pattern), qPrintable(time));
    QVERIFY2(date == before.toString("dd/MM/yyyy") || date == after.toString("dd/MM/yyyy"), qPrintable(date));
    QCOMPARE(time.endsWith("AM") || time.endsWith("PM"), !is24h);
}

void TestDateTime::formatSignalOnlyOnChange()
{
    DateTime dateTime;
    QSignalSpy spy(&dateTime, &DateTime::formatChanged);
    dateTime.set24hFormat(true);
    QCOMPARE(spy.count(), 0);
    dateTime.set24hFormat(false);
    dateTime.set24hFormat(false);
    QCOMPARE(spy.count(), 1);
    QVERIFY(!dateTime.is24hFormat());
}

void TestDateTime::ticksOnlyWhileConnected()
{
    DateTime dateTime;
    auto* timer = dateTime.findChild<QTimer*>();
    QVERIFY(timer);
    QVERIFY(!timer->isActive());

    const auto first = connect(&dateTime, &DateTime::tick, this, [] {});
    QVERIFY(timer->isActive());
    {
        QSignalSpy spy(&dateTime, &DateTime::tick);
        QVERIFY(spy.wait(5000));
    }
    // The spy is gone, the first connection still listens.
    QCoreApplication::processEvents();
    QVERIFY(timer->isActive());
    disconnect(first);
    QTRY_VERIFY_WITH_TIMEOUT(!timer->isActive(), 10000);
}

QTEST_GUILESS_MAIN(TestDateTime)
#include "tst_datetime.moc"
