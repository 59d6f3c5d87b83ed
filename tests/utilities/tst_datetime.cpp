#include "utilities/datetime.h"
#include "logcapture.h"

#include <QDateTime>
#include <QtTest>

class TestDateTime : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void offsetAndFormat_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<bool>("is24h");
        QTest::addColumn<int>("expected");
        QTest::newRow("no offset") << 0 << true << 0;
        QTest::newRow("lowest zone, 12 h") << -12 << false << -12;
        QTest::newRow("highest zone") << 14 << true << 14;
        QTest::newRow("too high is refused") << 15 << true << 0;
        QTest::newRow("too low is refused") << -13 << false << 0;
    }
    void offsetAndFormat()
    {
        QFETCH(int, offset);
        QFETCH(bool, is24h);
        QFETCH(int, expected);
        DateTime dateTime;
        LogCapture log;
        dateTime.setUtcOffset(offset);
        dateTime.set24hFormat(is24h);
        QCOMPARE(dateTime.utcOffset(), expected);
        QCOMPARE(log.contains("platform/utilities/datetime"), offset != expected);
        const QString pattern = is24h ? QStringLiteral("HH:mm:ss") : QStringLiteral("hh:mm:ss AP");
        const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(expected * 3600);
        const QString time = dateTime.currentTime();
        const QString date = dateTime.currentDate();
        const QDateTime after = QDateTime::currentDateTimeUtc().addSecs(expected * 3600);
        QVERIFY2(time == before.toString(pattern) || time == after.toString(pattern), qPrintable(time));
        QVERIFY2(date == before.toString("dd/MM/yyyy") || date == after.toString("dd/MM/yyyy"), qPrintable(date));
        QCOMPARE(time.endsWith("AM") || time.endsWith("PM"), !is24h);
    }

    void ticksOnlyWhileConnected()
    {
        DateTime dateTime;
        auto* timer = dateTime.findChild<QTimer*>();
        QVERIFY(timer);
        QVERIFY(!timer->isActive());
        const auto first = connect(&dateTime, &DateTime::tick, this, [] {});
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
};

QTEST_GUILESS_MAIN(TestDateTime)
#include "tst_datetime.moc"
