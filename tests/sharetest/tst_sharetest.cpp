#include <QTcpServer>
#include <QTranslator>
#include <QtTest>

#include <memory>

#include "directories.h"
#include "logcapture.h"
#include "mounttablereader.h"
#include "sambaserver.h"
#include "utilities/preconfiguration.h"
#include "utilities/simplecrypt.h"

namespace {
const QString C_testFolder = QStringLiteral("__TEST_CONNECTION__");

// Texts for the ids that take a parameter, so that the parameter can be read back from the
// message (without a catalogue qtTrId returns the bare id, which has no %1).
class ParameterTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* id, const char*, int) const override
    {
        if (qstrcmp(id, "Folder_Unable_to_mount__1___2__Please_check_network_configuration") == 0)
            return QStringLiteral("Unable to mount %1 (%2)");
        const bool withParameter = qstrcmp(id, "Directories_Connection_failed") == 0
                                   || QByteArray(id).startsWith("Directories_Cannot_");
        return withParameter ? QString::fromLatin1(id) + QStringLiteral(": %1") : QString();
    }
};
}

// The registry against a real SMB server on loopback, mounted through the user-space share
// client: the share connection test, and path translation on a really mounted share.
class TestShareConnectionTest : public QObject
{
    Q_OBJECT

    SambaServer m_server;
    ParameterTranslator m_translator;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<Directories> m_directories;

    void start(const QString& address, const QString& password, const QString& share)
    {
        m_directories->testFolderConnection(address, QString(), m_server.user(), password, share);
    }
    bool isTestShareMounted() const
    {
        QList<MountTableReader::Entry> mounts;
        MountTableReader::read(mounts);
        return std::any_of(mounts.cbegin(), mounts.cend(), [](const MountTableReader::Entry& mount) {
            return mount.mountPoint.endsWith(QLatin1Char('/') + C_testFolder);
        });
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (!SambaServer::available())
            QSKIP("smbd or the FUSE share client is not available here");
        QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
        QCoreApplication::installTranslator(&m_translator);
    }
    void cleanupTestCase()
    {
        QCoreApplication::removeTranslator(&m_translator);
        m_server.stop();
    }
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        QVERIFY(m_dir->isValid());
        PreConfiguration::clear();
        PreConfiguration::setParameter("isEditorOnly", true);
        PreConfiguration::setParameter("shareMountBackend", "fuse");
        PreConfiguration::setParameter("internalStorageDirPath", m_dir->filePath("internal"));
        PreConfiguration::setParameter("removableStorageDirPath", m_dir->filePath("usb"));
        PreConfiguration::setParameter("mountingStorageDirPath", m_dir->filePath("mnt"));
        QVERIFY(QDir().mkpath(m_dir->filePath("mnt")));
        m_directories.reset(new Directories(QString(), QString(), m_dir->filePath("usbkey"), 30000, QStringList()));
    }
    void cleanup()
    {
        m_directories.reset();
        QVERIFY(!isTestShareMounted());
        PreConfiguration::clear();
        m_dir.reset();
    }

    void outcome_data()
    {
        QTest::addColumn<QString>("address"); // "server", "closed" (a port nobody listens on) or empty
        QTest::addColumn<QString>("password");
        QTest::addColumn<bool>("readOnly");
        QTest::addColumn<bool>("success");
        QTest::addColumn<QString>("message"); // pattern
        QTest::addColumn<int>("leftover"); // test directory left on the mount root: 1 empty, 2 with a file
        QTest::addColumn<bool>("afterSuccess"); // a successful test ran first on the same registry
        const QString failed = "^Directories_Connection_failed: Unable to mount " + C_testFolder + " \\(.+\\)$";
        QTest::newRow("good share: a stale probe file is written over, read back and deleted, nothing left mounted")
            << "server" << "right" << false << true << "^Directories_Connection_successful$" << 0 << false;
        QTest::newRow("empty leftover test directory is removed without a word")
            << "server" << "right" << false << true << "^Directories_Connection_successful$" << 1 << false;
        QTest::newRow("non-empty leftover is logged and the test goes on")
            << "server" << "right" << false << true << "^Directories_Connection_successful$" << 2 << false;
        QTest::newRow("wrong password: the folder's message with the manager's reason")
            << "server" << "wrong" << false << false << failed << 0 << false;
        QTest::newRow("silent server: timeout, not before the 10 s limit")
            << "closed" << "right" << false << false << "^Directories_Connection_timeout$" << 0 << false;
        QTest::newRow("address the manager refuses inside start(): still one result")
            << "" << "right" << false << false << failed << 0 << false;
        QTest::newRow("read-only share: cannot write, with the file's error text")
            << "server" << "right" << true << false << "^Directories_Cannot_write_to_share: .+$" << 0 << false;
        QTest::newRow("wrong password after a successful test: the earlier success is not reported again")
            << "server" << "wrong" << false << false << failed << 0 << true;
    }
    void outcome()
    {
        QFETCH(QString, address);
        QFETCH(QString, password);
        QFETCH(bool, readOnly);
        QFETCH(bool, success);
        QFETCH(QString, message);
        QFETCH(int, leftover);
        QFETCH(bool, afterSuccess);
        if (afterSuccess) {
            QSignalSpy first(m_directories.get(), &Directories::testConnectionResult);
            start(m_server.address(), m_server.password(), m_server.shareName());
            QTRY_COMPARE_WITH_TIMEOUT(first.count(), 1, 30000);
            QCOMPARE(first.at(0), (QList<QVariant> {true, QString("Directories_Connection_successful")}));
        }
        const QString leftoverDir = m_dir->filePath("mnt/" + C_testFolder);
        QVERIFY(leftover == 0 || QDir().mkpath(leftoverDir));
        QVERIFY(leftover < 2 || QFile(leftoverDir + "/forgotten.txt").open(QIODevice::WriteOnly));
        QFile stale(QDir(m_server.shareDirectory()).filePath(C_testFolder + ".txt"));
        QVERIFY(stale.open(QIODevice::WriteOnly) && stale.write("stale") == 5);
        stale.close();
        QVERIFY(stale.setPermissions(QFileDevice::Permissions(0x6666))); // read and write for everyone
        if (address == "server") {
            address = m_server.address();
        } else if (address == "closed") {
            QTcpServer listener;
            QVERIFY(listener.listen(QHostAddress::LocalHost));
            address = QStringLiteral("127.0.0.1:%1").arg(listener.serverPort());
        }

        LogCapture log;
        QSignalSpy progress(m_directories.get(), &Directories::testInProgressChanged);
        QSignalSpy results(m_directories.get(), &Directories::testConnectionResult);
        bool inProgressAtResult = true;
        QObject context;
        connect(m_directories.get(), &Directories::testConnectionResult, &context,
                [&]() { inProgressAtResult = m_directories->testInProgress(); });
        QElapsedTimer clock;
        clock.start();
        start(address, password == "right" ? m_server.password() : "wrong-password",
              readOnly ? m_server.readOnlyShareName() : m_server.shareName());
        QTRY_COMPARE_WITH_TIMEOUT(results.count(), 1, 30000);
        const qint64 elapsedMs = clock.elapsed();
        const QString text = results.at(0).at(1).toString();
        QVERIFY2(QRegularExpression(message).match(text).hasMatch(), qPrintable(text));
        QCOMPARE(results.at(0).at(0).toBool(), success);
        QVERIFY(!inProgressAtResult);
        QVERIFY(!isTestShareMounted());
        QCOMPARE(stale.exists(), !success);
        QVERIFY(!success || progress.count() >= 2);
        if (message.contains("timeout")) // coarse timers may fire up to 5 % early
            QVERIFY2(elapsedMs >= 9500, qPrintable(QString::number(elapsedMs)));
        QVERIFY(!results.wait(500));
        QCOMPARE(results.count(), 1);
        QVERIFY(!m_directories->testInProgress());
        const QStringList warnings = log.matching("[Directories] WARNING: Could not remove orphaned test directory:");
        QCOMPARE(warnings.size(), leftover == 2 ? 1 : 0);
        if (leftover == 2) {
            QVERIFY(warnings.at(0).endsWith(leftoverDir + " - it may not be empty. Manual cleanup required."));
            QVERIFY(QFile::exists(leftoverDir + "/forgotten.txt"));
        }
        stale.remove();
    }

    void requestsDuringATestAreRefused()
    {
        const QString refused = QStringLiteral("Directories_Previous_test_still_cleaning_up");
        QSignalSpy results(m_directories.get(), &Directories::testConnectionResult);
        // Once the clean-up starts (testInProgress back to false), ask again once.
        bool askedDuringCleanup = false;
        bool sawProgress = false;
        QObject context;
        connect(m_directories.get(), &Directories::testInProgressChanged, &context, [&]() {
            sawProgress = sawProgress || m_directories->testInProgress();
            if (sawProgress && !m_directories->testInProgress() && !askedDuringCleanup && results.count() == 1) {
                askedDuringCleanup = true;
                start(m_server.address(), m_server.password(), m_server.shareName());
            }
        });
        start(m_server.address(), m_server.password(), m_server.shareName());
        QVERIFY(m_directories->testInProgress());
        // Refused at once while mounting; the running test carries on.
        start(m_server.address(), m_server.password(), m_server.shareName());
        QCOMPARE(results.count(), 1);
        QCOMPARE(results.at(0), (QList<QVariant> {false, refused}));
        QVERIFY(m_directories->testInProgress());

        QTRY_COMPARE_WITH_TIMEOUT(results.count(), 3, 30000);
        QVERIFY(askedDuringCleanup);
        QCOMPARE(results.at(1).at(1).toString(), refused);
        QCOMPARE(results.at(2), (QList<QVariant> {true, QString("Directories_Connection_successful")}));
        QVERIFY(!m_directories->testInProgress());
        // Back to idle: the next test is accepted.
        start(m_server.address(), m_server.password(), m_server.shareName());
        QTRY_COMPARE_WITH_TIMEOUT(results.count(), 4, 30000);
        QCOMPARE(results.at(3).at(1).toString(), QString("Directories_Connection_successful"));
    }

    void translationOnAMountedShare()
    {
        const QJsonObject folder {{"id", QUuid::createUuid().toString()}, {"type", "samba"}, {"aliasName", "Net"},
                                  {"path", m_server.shareName()}, {"domain", ""}, {"address", m_server.address()},
                                  {"identifier", m_server.user()}, {"enabled", true},
                                  {"password", SimpleCrypt(Folder::C_cryptKey).encryptToString(m_server.password())}};
        QJsonValue section = QJsonObject {{"folders", QJsonArray {folder}}};
        m_directories->loadSettings(section);
        QTRY_VERIFY_WITH_TIMEOUT(m_directories->networkStorage().value("Net"), 30000);
        bool found = false;
        const QString mountPoint = m_directories->getFolderByName("Net", found)->mountedPath();
        QVERIFY(found);
        const QString address = m_server.address() + '/' + m_server.shareName();

        for (const QString& asked : {address, address.toUpper()}) {
            found = false;
            QCOMPARE(m_directories->networkAddressToLocalDrive(asked, found), mountPoint + "/");
            QVERIFY(found);
        }
        bool mounted = false;
        QCOMPARE(m_directories->getMountedPathFromAdress(address, mounted), mountPoint);
        QVERIFY(mounted);
        const QVariantMap expected {{"adress", address}, {"path", "reports/2024/"}, {"name", "result.pdf"}};
        QCOMPARE(m_directories->getWindowsNetworkPath(mountPoint + "/reports/2024/result.pdf"), expected);
        QFile onShare(mountPoint + "/mode.txt");
        QVERIFY2(onShare.open(QIODevice::WriteOnly) && onShare.write("x") == 1, qPrintable(onShare.errorString()));
        onShare.close();
        QVERIFY(m_directories->isFileMatchingMode(onShare.fileName(), true));
        QVERIFY(!m_directories->isFileMatchingMode(onShare.fileName(), false));
        QVERIFY(m_directories->isFileMatchingMode(m_dir->filePath("internal"), false));
        QVERIFY(onShare.remove());

        // Unmounted with its registry: no drive any more.
        m_directories.reset(new Directories(QString(), QString(), m_dir->filePath("usbkey"), 30000, QStringList()));
        found = true;
        QCOMPARE(m_directories->networkAddressToLocalDrive(address, found), QString());
        QVERIFY(!found);
    }
};

QTEST_GUILESS_MAIN(TestShareConnectionTest)
#include "tst_sharetest.moc"
