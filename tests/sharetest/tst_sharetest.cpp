#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include "directories.h"
#include "logcapture.h"
#include "mounttablereader.h"
#include "sambaserver.h"
#include "utilities/preconfiguration.h"

namespace {
const QString C_testFolder = QStringLiteral("__TEST_CONNECTION__");
const QString C_probeFile = QStringLiteral("__TEST_CONNECTION__.txt");

// Texts for the ids that take a parameter, so that the parameter can be read back from the
// message (without a catalogue qtTrId returns the bare id, which has no %1).
class ParameterTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* sourceText, const char*, int) const override
    {
        static const QByteArrayList withParameter = { "Directories_Connection_failed",
                                                      "Directories_Cannot_write_to_share",
                                                      "Directories_Cannot_read_from_share",
                                                      "Directories_Cannot_delete_from_share" };
        if (withParameter.contains(sourceText))
            return QString::fromLatin1(sourceText) + QStringLiteral(": %1");
        if (qstrcmp(sourceText, "Folder_Unable_to_mount__1___2__Please_check_network_configuration") == 0)
            return QStringLiteral("Unable to mount %1 (%2)");
        return QString();
    }
};
}

// The share connection test of the registry against a real SMB server on loopback,
// mounted through the user-space share client.
class TestShareConnectionTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void goodShareSucceedsAndLeavesNothingBehind();
    void wrongPasswordReportsTheReason();
    void silentServerTimesOut();
    void unusableAddressFailsWithoutWaiting();
    void readOnlyShareCannotBeWritten();
    void requestsDuringATestAreRefused();
    void leftoverTestDirectory_data();
    void leftoverTestDirectory();

private:
    struct Result
    {
        bool success = false;
        QString message;
        bool inProgressAtResult = true;
    };
    // Starts a test and waits for its one result.
    Result runTest(const QString& address, const QString& password, const QString& share,
                   qint64* elapsedMs = nullptr);
    QString testMountPoint() const;
    bool isTestShareMounted() const;

    SambaServer m_server;
    ParameterTranslator m_translator;
    QTemporaryDir* m_dir = nullptr;
    Directories* m_directories = nullptr;
};

void TestShareConnectionTest::initTestCase()
{
    if (!SambaServer::available())
        QSKIP("smbd or the FUSE share client is not available here");
    QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
    QCoreApplication::installTranslator(&m_translator);
}

void TestShareConnectionTest::cleanupTestCase()
{
    QCoreApplication::removeTranslator(&m_translator);
    m_server.stop();
}

void TestShareConnectionTest::init()
{
    m_dir = new QTemporaryDir;
    QVERIFY(m_dir->isValid());
    PreConfiguration::clear();
    PreConfiguration::setParameter("isEditorOnly", true);
    PreConfiguration::setParameter("shareMountBackend", "fuse");
    PreConfiguration::setParameter("internalStorageDirPath", m_dir->filePath("internal"));
    PreConfiguration::setParameter("removableStorageDirPath", m_dir->filePath("usb"));
    PreConfiguration::setParameter("mountingStorageDirPath", m_dir->filePath("mnt"));
    QVERIFY(QDir().mkpath(m_dir->filePath("mnt")));
    m_directories = new Directories(QString(), QString(), m_dir->filePath("usbkey"), 30000, QStringList());
}

void TestShareConnectionTest::cleanup()
{
    delete m_directories;
    m_directories = nullptr;
    QVERIFY(!isTestShareMounted());
    PreConfiguration::clear();
    delete m_dir;
}

TestShareConnectionTest::Result TestShareConnectionTest::runTest(const QString& address, const QString& password,
                                                                const QString& share, qint64* elapsedMs)
{
    Result result;
    QSignalSpy spy(m_directories, &Directories::testConnectionResult);
    const QMetaObject::Connection probe =
        connect(m_directories, &Directories::testConnectionResult, this,
                [this, &result](bool, const QString&) { result.inProgressAtResult = m_directories->testInProgress(); });
    QElapsedTimer clock;
    clock.start();
    m_directories->testFolderConnection(address, QString(), m_server.user(), password, share);
    [&]() { QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 30000); }();
    if (elapsedMs)
        *elapsedMs = clock.elapsed();
    disconnect(probe);
    if (spy.count() != 1)
        return result;
    result.success = spy.at(0).at(0).toBool();
    result.message = spy.at(0).at(1).toString();
    return result;
}

QString TestShareConnectionTest::testMountPoint() const
{
    return QFileInfo(m_dir->filePath("mnt")).canonicalFilePath() + QLatin1Char('/') + C_testFolder;
}

bool TestShareConnectionTest::isTestShareMounted() const
{
    QList<MountTableReader::Entry> mounts;
    if (!MountTableReader::read(mounts))
        return false;
    for (const MountTableReader::Entry& mount : qAsConst(mounts)) {
        if (mount.mountPoint.endsWith(QLatin1Char('/') + C_testFolder))
            return true;
    }
    return false;
}

void TestShareConnectionTest::goodShareSucceedsAndLeavesNothingBehind()
{
    // A stale probe file on the share is overwritten, read back and deleted through the mount.
    QFile stale(QDir(m_server.shareDirectory()).filePath(C_probeFile));
    QVERIFY(stale.open(QIODevice::WriteOnly));
    stale.write("stale");
    stale.close();
    QVERIFY(stale.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::WriteGroup
                                 | QFile::ReadOther | QFile::WriteOther));

    QSignalSpy progress(m_directories, &Directories::testInProgressChanged);
    QSignalSpy results(m_directories, &Directories::testConnectionResult);
    const Result result = runTest(m_server.address(), m_server.password(), m_server.shareName());
    QCOMPARE(result.message, QString("Directories_Connection_successful"));
    QVERIFY(result.success);
    QVERIFY(!result.inProgressAtResult);
    QVERIFY(progress.count() >= 2);
    QVERIFY(!QFile::exists(stale.fileName()));
    QVERIFY(!isTestShareMounted());

    QVERIFY(!results.wait(500));
    QCOMPARE(results.count(), 1);
    QVERIFY(!m_directories->testInProgress());
}

void TestShareConnectionTest::wrongPasswordReportsTheReason()
{
    const Result result = runTest(m_server.address(), QStringLiteral("wrong-password"), m_server.shareName());
    QVERIFY(!result.success);
    // The folder's own message, naming the test folder and the manager's reason.
    QVERIFY2(result.message.startsWith("Directories_Connection_failed: Unable to mount " + C_testFolder + " ("),
             qPrintable(result.message));
    QVERIFY2(!result.message.endsWith(" ()"), qPrintable(result.message));
    QVERIFY(!isTestShareMounted());
}

void TestShareConnectionTest::silentServerTimesOut()
{
    // A loopback port that nobody listens on.
    QTcpServer listener;
    QVERIFY(listener.listen(QHostAddress::LocalHost));
    const quint16 port = listener.serverPort();
    listener.close();

    QSignalSpy results(m_directories, &Directories::testConnectionResult);
    qint64 elapsedMs = 0;
    const Result result = runTest(QStringLiteral("127.0.0.1:%1").arg(port), m_server.password(),
                                  m_server.shareName(), &elapsedMs);
    QVERIFY(!result.success);
    QCOMPARE(result.message, QString("Directories_Connection_timeout"));
    QVERIFY(!result.inProgressAtResult);
    // Not before the 10 s limit (coarse timers may fire up to 5 % early).
    QVERIFY2(elapsedMs >= 9500, qPrintable(QString::number(elapsedMs)));
    QVERIFY(!results.wait(500));
    QCOMPARE(results.count(), 1);
}

// The share manager refuses such an address inside start(): the test still hears it.
void TestShareConnectionTest::unusableAddressFailsWithoutWaiting()
{
    const Result result = runTest(QString(), m_server.password(), m_server.shareName());
    QVERIFY(!result.success);
    QVERIFY2(result.message.startsWith("Directories_Connection_failed: Unable to mount " + C_testFolder + " ("),
             qPrintable(result.message));
    QVERIFY(!result.inProgressAtResult);
}

void TestShareConnectionTest::readOnlyShareCannotBeWritten()
{
    const Result result = runTest(m_server.address(), m_server.password(), m_server.readOnlyShareName());
    QVERIFY(!result.success);
    const QString prefix = QStringLiteral("Directories_Cannot_write_to_share: ");
    QVERIFY2(result.message.startsWith(prefix), qPrintable(result.message));
    QVERIFY2(result.message.size() > prefix.size(), "the file's error text is missing");
    QVERIFY(!isTestShareMounted());
}

void TestShareConnectionTest::requestsDuringATestAreRefused()
{
    const QString refused = QStringLiteral("Directories_Previous_test_still_cleaning_up");
    QSignalSpy results(m_directories, &Directories::testConnectionResult);

    // Once the clean-up starts (testInProgress back to false), ask again once.
    bool askedDuringCleanup = false;
    bool sawProgress = false;
    connect(m_directories, &Directories::testInProgressChanged, this, [&]() {
        if (m_directories->testInProgress()) {
            sawProgress = true;
            return;
        }
        if (sawProgress && !askedDuringCleanup && results.count() == 1) {
            askedDuringCleanup = true;
            m_directories->testFolderConnection(m_server.address(), QString(), m_server.user(),
                                                m_server.password(), m_server.shareName());
        }
    });

    m_directories->testFolderConnection(m_server.address(), QString(), m_server.user(), m_server.password(),
                                        m_server.shareName());
    QVERIFY(m_directories->testInProgress());

    // Refused at once while mounting; the running test carries on.
    m_directories->testFolderConnection(m_server.address(), QString(), m_server.user(), m_server.password(),
                                        m_server.shareName());
    QCOMPARE(results.count(), 1);
    QCOMPARE(results.at(0).at(0).toBool(), false);
    QCOMPARE(results.at(0).at(1).toString(), refused);
    QVERIFY(m_directories->testInProgress());

    QTRY_COMPARE_WITH_TIMEOUT(results.count(), 3, 30000);
    QVERIFY(askedDuringCleanup);
    QCOMPARE(results.at(1).at(1).toString(), refused);
    QCOMPARE(results.at(2).at(0).toBool(), true);
    QCOMPARE(results.at(2).at(1).toString(), QString("Directories_Connection_successful"));
    QVERIFY(!m_directories->testInProgress());

    // Back to idle: the next test is accepted.
    const Result next = runTest(m_server.address(), m_server.password(), m_server.shareName());
    QCOMPARE(next.message, QString("Directories_Connection_successful"));
}

void TestShareConnectionTest::leftoverTestDirectory_data()
{
    QTest::addColumn<bool>("withContent");
    QTest::newRow("empty leftover is removed without a word") << false;
    QTest::newRow("non-empty leftover is logged and the test goes on") << true;
}

void TestShareConnectionTest::leftoverTestDirectory()
{
    QFETCH(bool, withContent);
    const QString leftover = m_dir->filePath("mnt/" + C_testFolder);
    QVERIFY(QDir().mkpath(leftover));
    if (withContent) {
        QFile file(leftover + "/forgotten.txt");
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    LogCapture log;
    const Result result = runTest(m_server.address(), m_server.password(), m_server.shareName());
    QCOMPARE(result.message, QString("Directories_Connection_successful"));
    const QStringList warnings = log.matching("[Directories] WARNING: Could not remove orphaned test directory:");
    QCOMPARE(warnings.size(), withContent ? 1 : 0);
    if (withContent) {
        QVERIFY(warnings.at(0).endsWith(leftover + " - it may not be empty. Manual cleanup required."));
        QVERIFY(QFile::exists(leftover + "/forgotten.txt"));
    }
}

QTEST_GUILESS_MAIN(TestShareConnectionTest)
#include "tst_sharetest.moc"
