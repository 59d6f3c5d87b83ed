#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QUuid>
#include <QtTest>

#include "directories.h"
#include "sambaserver.h"
#include "utilities/preconfiguration.h"
#include "utilities/simplecrypt.h"

// Path translation on a share that is really mounted: a network folder of the registry,
// mounted from the SMB server on loopback by the user-space share client.
class TestTranslationOnShare : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();

    void mountedShareIsItsDrive();
    void fileOnTheShareMapsToServerAndShare();
    void fileOnTheShareIsNetworkStorage();
    void mountedShareGivesItsPath();
    void unmountedShareHasNoDrive();

private:
    QString address() const { return m_server.address() + QLatin1Char('/') + m_server.shareName(); }

    SambaServer m_server;
    QTemporaryDir m_dir;
    Directories* m_directories = nullptr;
    QString m_mountPoint;
};

void TestTranslationOnShare::initTestCase()
{
    if (!SambaServer::available())
        QSKIP("smbd or the FUSE share client is not available here");
    QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
    PreConfiguration::clear();
    PreConfiguration::setParameter("isEditorOnly", true);
    PreConfiguration::setParameter("shareMountBackend", "fuse");
    PreConfiguration::setParameter("internalStorageDirPath", m_dir.filePath("internal"));
    PreConfiguration::setParameter("removableStorageDirPath", m_dir.filePath("usb"));
    PreConfiguration::setParameter("mountingStorageDirPath", m_dir.filePath("mnt"));
    QVERIFY(QDir().mkpath(m_dir.filePath("mnt")));

    const QJsonObject folder{ { "id", QUuid::createUuid().toString() },
                              { "type", "samba" },
                              { "aliasName", "Net" },
                              { "path", m_server.shareName() },
                              { "domain", "" },
                              { "address", m_server.address() },
                              { "identifier", m_server.user() },
                              { "password", SimpleCrypt(Folder::C_cryptKey).encryptToString(m_server.password()) },
                              { "enabled", true } };
    QJsonValue section = QJsonObject{ { "folders", QJsonArray{ folder } } };
    m_directories = new Directories(QString(), QString(), m_dir.filePath("usbkey"), 30000, QStringList());
    m_directories->loadSettings(section);
    QTRY_VERIFY_WITH_TIMEOUT(m_directories->networkStorage().value("Net"), 30000);

    bool found = false;
    m_mountPoint = m_directories->getFolderByName("Net", found)->mountedPath();
    QVERIFY(found);
}

void TestTranslationOnShare::cleanupTestCase()
{
    delete m_directories;
    m_directories = nullptr;
    PreConfiguration::clear();
    m_server.stop();
}

void TestTranslationOnShare::mountedShareIsItsDrive()
{
    bool found = false;
    QCOMPARE(m_directories->networkAddressToLocalDrive(address(), found), m_mountPoint + "/");
    QVERIFY(found);
    found = false;
    QCOMPARE(m_directories->networkAddressToLocalDrive(address().toUpper(), found), m_mountPoint + "/");
    QVERIFY(found);
}

void TestTranslationOnShare::fileOnTheShareMapsToServerAndShare()
{
    const QVariantMap expected{ { "adress", address() }, { "path", "reports/2024/" }, { "name", "result.pdf" } };
    QCOMPARE(m_directories->getWindowsNetworkPath(m_mountPoint + "/reports/2024/result.pdf"), expected);
    QCOMPARE(m_directories->getWindowsNetworkPath(QUrl::fromLocalFile(m_mountPoint + "/reports/2024/result.pdf")
                                                      .toString()),
             expected);
}

void TestTranslationOnShare::fileOnTheShareIsNetworkStorage()
{
    QFile file(m_mountPoint + "/mode.txt");
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(file.errorString()));
    file.write("x");
    file.close();
    QVERIFY(m_directories->isFileMatchingMode(file.fileName(), true));
    QVERIFY(!m_directories->isFileMatchingMode(file.fileName(), false));
    QVERIFY(m_directories->isFileMatchingMode(m_dir.filePath("internal"), false));
    QVERIFY(file.remove());
}

void TestTranslationOnShare::mountedShareGivesItsPath()
{
    bool mounted = false;
    QCOMPARE(m_directories->getMountedPathFromAdress(address(), mounted), m_mountPoint);
    QVERIFY(mounted);
}

void TestTranslationOnShare::unmountedShareHasNoDrive()
{
    delete m_directories;
    m_directories = nullptr;
    Directories remaining(QString(), QString(), m_dir.filePath("usbkey"), 30000, QStringList());
    bool found = true;
    QCOMPARE(remaining.networkAddressToLocalDrive(address(), found), QString());
    QVERIFY(!found);
}

QTEST_GUILESS_MAIN(TestTranslationOnShare)
#include "tst_translationshare.moc"
