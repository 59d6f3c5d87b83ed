#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "directories.h"
#include "fakesyncmanager.h"
#include "logcapture.h"
#include "utilities/preconfiguration.h"

class TestSyncReset : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void watchdogBudget_data();
    void watchdogBudget();
    void idleManagerReportsOnceAfterMinimumDuration_data();
    void idleManagerReportsOnceAfterMinimumDuration();
    void busyManagerWipesWhenIdle();
    void busyManagerWipesAfterIdleWait();
    void refusedWipeReportsFailure();
    void missingManagerReportsAtOnce();
    void watchdogExpiryCountsAsSuccess();
    void finalizeEndsAtOnceAndLeavesPaused();

private:
    void makeFiles(const QString& relativeDir, int count);
    int indexOf(const QString& call) const { return m_fake ? m_fake->calls.indexOf(call) : -1; }

    QTemporaryDir* m_dir = nullptr;
    Directories* m_directories = nullptr;
    FakeSyncManager* m_fake = nullptr;
};

void TestSyncReset::init()
{
    m_dir = new QTemporaryDir;
    QVERIFY(m_dir->isValid());
    PreConfiguration::clear();
    PreConfiguration::setParameter("internalStorageDirPath", m_dir->filePath("internal"));
    PreConfiguration::setParameter("removableStorageDirPath", m_dir->filePath("usb"));
    PreConfiguration::setParameter("mountingStorageDirPath", m_dir->filePath("mnt"));
    PreConfiguration::setParameter("databaseReportsDirPath", m_dir->filePath("internal/results"));
    PreConfiguration::setParameter("pdfReportsDirPath", m_dir->filePath("internal/pdf"));
    PreConfiguration::setParameter("isEditorOnly", false);

    m_fake = nullptr;
    Directories::setSyncManagerFactory([this](const QString&, const QString&, int, const QStringList&, QObject* parent) {
        m_fake = new FakeSyncManager(parent);
        return m_fake;
    });
    m_directories = new Directories(QString(), QString(), m_dir->filePath("usbkey"), 30000, QStringList());
    QVERIFY(m_fake);
    m_fake->calls.clear();
}

void TestSyncReset::cleanup()
{
    delete m_directories;
    m_directories = nullptr;
    m_fake = nullptr;
    Directories::setSyncManagerFactory(nullptr);
    delete m_dir;
    m_dir = nullptr;
}

void TestSyncReset::makeFiles(const QString& relativeDir, int count)
{
    QDir().mkpath(m_dir->filePath(relativeDir));
    for (int i = 0; i < count; ++i) {
        QFile file(m_dir->filePath(QStringLiteral("%1/file%2.db").arg(relativeDir).arg(i)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
}

void TestSyncReset::watchdogBudget_data()
{
    QTest::addColumn<int>("resultFiles");
    QTest::addColumn<int>("pdfFiles");
    QTest::addColumn<int>("expectedMs");
    QTest::newRow("no files: the base budget") << 0 << 0 << 5000;
    QTest::newRow("3 results and 2 pdf files: 2 s a file on top of 5 s") << 3 << 2 << 15000;
    QTest::newRow("200 files are capped to 5 minutes") << 200 << 0 << 300000;
}

void TestSyncReset::watchdogBudget()
{
    QFETCH(int, resultFiles);
    QFETCH(int, pdfFiles);
    QFETCH(int, expectedMs);
    makeFiles("internal/results", resultFiles);
    makeFiles("internal/pdf", pdfFiles);
    // Sub-directories are not counted.
    QDir().mkpath(m_dir->filePath("internal/results/sub"));
    QCOMPARE(m_directories->computeResetSyncWatchdogMs(), expectedMs);
}

void TestSyncReset::idleManagerReportsOnceAfterMinimumDuration_data()
{
    QTest::addColumn<bool>("pausedBefore");
    QTest::addColumn<int>("starts");
    QTest::newRow("a running manager is paused for the wipe and resumed before the pass") << false << 1;
    QTest::newRow("a paused manager stays paused") << true << 1;
    QTest::newRow("a second start while running is ignored") << false << 2;
}

void TestSyncReset::idleManagerReportsOnceAfterMinimumDuration()
{
    QFETCH(bool, pausedBefore);
    QFETCH(int, starts);
    m_fake->paused = pausedBefore;
    QSignalSpy done(m_directories, &Directories::syncDatabaseResetDone);
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < starts; ++i)
        m_directories->resetSyncDatabase();

    // The wipe runs on the next pass of the event loop, not inside the call.
    QCOMPARE(m_fake->calls, pausedBefore ? QStringList() : QStringList { "pause" });
    QTRY_VERIFY(m_fake->calls.contains("requestSync"));
    QCOMPARE(m_fake->calls.count("wipe"), 1);
    if (!pausedBefore) {
        QVERIFY(indexOf("wipe") < indexOf("resume"));
        QVERIFY(indexOf("resume") < indexOf("requestSync"));
    }

    // The resync goes idle quickly; the result still waits for the minimum duration
    // (coarse timers may fire up to 5 % early).
    m_fake->setIdle(false);
    m_fake->setIdle(true);
    QCOMPARE(done.count(), 0);
    QVERIFY(done.wait(5000));
    QVERIFY(clock.elapsed() >= 1900);
    QCOMPARE(done.count(), 1);
    QCOMPARE(done.at(0).at(0).toBool(), true);

    // Late idle reports change nothing.
    m_fake->setIdle(true);
    QTest::qWait(300);
    QCOMPARE(done.count(), 1);
    QCOMPARE(m_fake->isPausedAll(), pausedBefore);
}

void TestSyncReset::busyManagerWipesWhenIdle()
{
    m_fake->idle = false;
    QSignalSpy done(m_directories, &Directories::syncDatabaseResetDone);
    m_directories->resetSyncDatabase();
    QTest::qWait(200);
    QVERIFY(!m_fake->calls.contains("wipe"));

    m_fake->setIdle(false);   // busy reports are ignored
    QTest::qWait(50);
    QVERIFY(!m_fake->calls.contains("wipe"));

    m_fake->setIdle(true);
    QCOMPARE(m_fake->calls.count("wipe"), 1);
    QVERIFY(m_fake->calls.contains("requestSync"));

    // The idle-wait timer was stopped: no second wipe when it would have expired.
    m_fake->setIdle(true);
    QVERIFY(done.wait(5000));
    QTest::qWait(5500);
    QCOMPARE(m_fake->calls.count("wipe"), 1);
    QCOMPARE(done.count(), 1);
}

void TestSyncReset::busyManagerWipesAfterIdleWait()
{
    m_fake->idle = false;
    QElapsedTimer clock;
    clock.start();
    m_directories->resetSyncDatabase();
    QTest::qWait(4000);
    QVERIFY(!m_fake->calls.contains("wipe"));
    QTRY_VERIFY_WITH_TIMEOUT(m_fake->calls.contains("wipe"), 4000);
    QVERIFY(clock.elapsed() >= 4700);

    // The wait-for-idle connection was dropped: a late idle report does not wipe again.
    m_fake->setIdle(true);
    QCOMPARE(m_fake->calls.count("wipe"), 1);
}

void TestSyncReset::refusedWipeReportsFailure()
{
    LogCapture log;
    m_fake->wipeSucceeds = false;
    QSignalSpy done(m_directories, &Directories::syncDatabaseResetDone);
    m_directories->resetSyncDatabase();
    QVERIFY(done.wait(5000));
    QCOMPARE(done.count(), 1);
    QCOMPARE(done.at(0).at(0).toBool(), false);
    QCOMPARE(log.count("Directories::performWipeAndResync: file wipe failed"), 1);
    QVERIFY(!m_fake->calls.contains("requestSync"));
    QVERIFY(indexOf("wipe") < indexOf("resume"));
    QVERIFY(!m_fake->isPausedAll());
}

void TestSyncReset::missingManagerReportsAtOnce()
{
    delete m_directories;
    m_directories = nullptr;
    PreConfiguration::setParameter("isEditorOnly", true);
    m_directories = new Directories(QString(), QString(), m_dir->filePath("usbkey"), 30000, QStringList());
    QVERIFY(!m_directories->syncManager());

    LogCapture log;
    QSignalSpy done(m_directories, &Directories::syncDatabaseResetDone);
    m_directories->resetSyncDatabase();
    QCOMPARE(done.count(), 1);
    QCOMPARE(done.at(0).at(0).toBool(), false);
    QCOMPARE(log.count("Directories::resetSyncDatabase: sync manager not available"), 1);
}

void TestSyncReset::watchdogExpiryCountsAsSuccess()
{
    QSignalSpy done(m_directories, &Directories::syncDatabaseResetDone);
    QElapsedTimer clock;
    clock.start();
    m_directories->resetSyncDatabase();
    // The manager never reports idle after the resync request: the 5 s watchdog decides
    // (coarse timers may fire up to 5 % early).
    QVERIFY(done.wait(8000));
    QVERIFY2(clock.elapsed() >= 4700, qPrintable(QString::number(clock.elapsed()) + " " + m_fake->calls.join(",")));
    QCOMPARE(done.at(0).at(0).toBool(), true);
}

void TestSyncReset::finalizeEndsAtOnceAndLeavesPaused()
{
    m_fake->idle = false;
    QSignalSpy done(m_directories, &Directories::syncDatabaseResetDone);
    m_directories->resetSyncDatabase();
    m_directories->finalizeSyncDatabaseReset(true);
    QCOMPARE(done.count(), 1);
    QCOMPARE(done.at(0).at(0).toBool(), true);
    QVERIFY(m_fake->isPausedAll());

    // Neither the idle report nor the idle-wait timer wipes after the end.
    m_fake->setIdle(true);
    QTest::qWait(200);
    QVERIFY(!m_fake->calls.contains("wipe"));
    m_directories->markResetSyncReady(false);
    QCOMPARE(done.count(), 1);
}

QTEST_MAIN(TestSyncReset)
#include "tst_syncreset.moc"
