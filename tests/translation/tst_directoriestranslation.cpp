#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include "directories.h"
#include "logcapture.h"
#include "mounttablereader.h"
#include "utilities/preconfiguration.h"

// Path translation of the registry, on folders added through addNewFolderAlias under
// temporary storage roots. The drive mappings come from a mount table written by the test.
class TestDirectoriesTranslation : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void getAddressFromPath_data();
    void getAddressFromPath();
    void getPathRelativeToItsAlias_data();
    void getPathRelativeToItsAlias();
    void getFolderPathFromAlias_data();
    void getFolderPathFromAlias();
    void getMountedPathFromAdress_data();
    void getMountedPathFromAdress();
    void networkAddressToLocalDrive_data();
    void networkAddressToLocalDrive();
    void networkAddressToLocalDriveWithoutTable();
    void getWindowsNetworkPath_data();
    void getWindowsNetworkPath();
    void emptyPathIsLogged();
    void isFileMatchingMode_data();
    void isFileMatchingMode();
    void uriToPath_data();
    void uriToPath();

private:
    void addFolder(const QString& type, const QString& alias, const QString& path,
                   const QString& address = QString());
    QString root(const QString& relative) const { return m_dir->filePath(relative); }

    QTemporaryDir* m_dir = nullptr;
    Directories* m_directories = nullptr;
};

// Mappings as the kernel would list them: a cifs share, the station's FUSE client with a
// port, an NFS export on a mount point with a space, the same cifs share mounted a second
// time, and a local file system mounted inside the first share.
static const char C_mountInfo[] =
    "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
    "40 22 0:40 / /mnt/y rw,relatime shared:5 - cifs //FILESERVER/Exchange rw,vers=3.0\n"
    "41 22 0:41 / /mnt/z rw,nosuid,nodev,relatime - fuse.smb //127.0.0.1:1445/public rw,user_id=0\n"
    "42 22 0:42 / /mnt/with\\040space rw master:3 - nfs4 nas:/export/data rw\n"
    "43 22 0:43 / /mnt/second rw - cifs //fileserver/exchange rw\n"
    "44 40 0:44 / /mnt/y/local rw - tmpfs tmpfs rw\n";

void TestDirectoriesTranslation::init()
{
    m_dir = new QTemporaryDir;
    QVERIFY(m_dir->isValid());
    PreConfiguration::clear();
    PreConfiguration::setParameter("isEditorOnly", true);
    PreConfiguration::setParameter("internalStorageDirPath", root("internal"));
    PreConfiguration::setParameter("removableStorageDirPath", root("usb"));
    PreConfiguration::setParameter("mountingStorageDirPath", root("mnt"));

    QFile table(root("mountinfo"));
    QVERIFY(table.open(QIODevice::WriteOnly));
    table.write(C_mountInfo);
    table.close();
    MountTableReader::setTableFilePath(table.fileName());

    m_directories = new Directories(QString(), QString(), root("usbkey"), 30000, QStringList());
    // List order matters: the first folder that matches wins.
    addFolder("internal", "Results", "results");
    addFolder("internal", "Archive", "results/archive");
    addFolder("internal", "Res", "res");
    addFolder("samba", "Share", "exchange/results", "10.0.0.5");
    addFolder("samba", "Twin", "exchange/results", "10.0.0.5");
    addFolder("external", "Stick", "data");
    QCOMPARE(m_directories->folders()->count(), 6);
}

void TestDirectoriesTranslation::cleanup()
{
    delete m_directories;
    m_directories = nullptr;
    MountTableReader::setTableFilePath(QString());
    PreConfiguration::clear();
    delete m_dir;
}

// Network folders are added disabled: nothing is mounted, only their records matter.
void TestDirectoriesTranslation::addFolder(const QString& type, const QString& alias, const QString& path,
                                           const QString& address)
{
    const bool enabled = type != QLatin1String("samba");
    QVERIFY(!m_directories->addNewFolderAlias(type, QString(), alias, path, QString(), address, "user", "secret",
                                              enabled, false).isNull());
}

void TestDirectoriesTranslation::getAddressFromPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty path comes back empty") << "" << "";
    QTest::newRow("file deep under a share gives only address/share path")
        << "@mnt/Share/2024/05/report.pdf" << "10.0.0.5/exchange/results";
    QTest::newRow("internal folder: empty address, result begins with a slash")
        << "@internal/results/a.csv" << "/results";
    QTest::newRow("first folder in list order wins over a more specific later one")
        << "@internal/results/archive/a.csv" << "/results";
    QTest::newRow("plain text prefix: the folder at res also takes resources")
        << "@internal/resources/a.csv" << "/res";
    QTest::newRow("prefix compared case-sensitively") << "@mnt/SHARE/a.txt" << "@mnt/SHARE/a.txt";
    QTest::newRow("path outside every folder comes back unchanged") << "/elsewhere/a.txt" << "/elsewhere/a.txt";
}

void TestDirectoriesTranslation::getAddressFromPath()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    // "@" stands for the temporary root followed by a separator.
    const QString base = m_dir->path() + QLatin1Char('/');
    QCOMPARE(m_directories->getAddressFromPath(path.replace("@", base)), expected.replace("@", base));
}

void TestDirectoriesTranslation::getPathRelativeToItsAlias_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty path comes back empty") << "" << "";
    QTest::newRow("path under a folder takes its alias") << "@internal/results/2024/file.pdf" << "Results/2024/file.pdf";
    QTest::newRow("first folder in list order wins over a more specific later one")
        << "@internal/results/archive/x.pdf" << "Results/archive/x.pdf";
    QTest::newRow("trailing separator removed") << "@internal/results/2024/" << "Results/2024";
    QTest::newRow("mount point itself becomes the alias") << "@mnt/Share/" << "Share";
    QTest::newRow("every occurrence of the mount path is replaced")
        << "@internal/results/copy@internal/results" << "Results/copyResults";
    QTest::newRow("prefix compared case-sensitively") << "@mnt/share/a.txt" << "@mnt/share/a.txt";
    QTest::newRow("outside every folder: unchanged but for the trailing separator") << "/elsewhere/dir/"
                                                                                    << "/elsewhere/dir";
}

void TestDirectoriesTranslation::getPathRelativeToItsAlias()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    // "@" stands for the temporary root followed by a separator.
    const QString base = m_dir->path() + QLatin1Char('/');
    QCOMPARE(m_directories->getPathRelativeToItsAlias(path.replace("@", base)), expected.replace("@", base));
}

void TestDirectoriesTranslation::getFolderPathFromAlias_data()
{
    QTest::addColumn<QString>("alias");
    QTest::addColumn<QString>("defaultPath");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty alias gives the default") << "" << "/default" << "/default";
    QTest::newRow("known alias gives the folder's path member") << "Share" << "/default" << "exchange/results";
    QTest::newRow("alias compared case-sensitively") << "share" << "/default" << "/default";
    QTest::newRow("unknown alias gives the default") << "Nobody" << "/default" << "/default";
}

void TestDirectoriesTranslation::getFolderPathFromAlias()
{
    QFETCH(QString, alias);
    QFETCH(QString, defaultPath);
    QFETCH(QString, expected);
    QCOMPARE(m_directories->getFolderPathFromAlias(alias, defaultPath), expected);
}

void TestDirectoriesTranslation::getMountedPathFromAdress_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("mountedTouched");
    QTest::newRow("empty address: empty, mounted untouched") << "" << "" << false;
    QTest::newRow("unknown address: empty, mounted untouched") << "10.0.0.5/other" << "" << false;
    QTest::newRow("address compared exactly") << "10.0.0.5/Exchange/results" << "" << false;
    QTest::newRow("internal folder's address is not a share") << "/results" << "" << false;
    QTest::newRow("known unmounted share: the first one's alias, mounted false")
        << "10.0.0.5/exchange/results" << "Share" << true;
}

void TestDirectoriesTranslation::getMountedPathFromAdress()
{
    QFETCH(QString, address);
    QFETCH(QString, expected);
    QFETCH(bool, mountedTouched);
    bool mounted = true;
    QCOMPARE(m_directories->getMountedPathFromAdress(address, mounted), expected);
    QCOMPARE(mounted, !mountedTouched);
}

void TestDirectoriesTranslation::networkAddressToLocalDrive_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("foundBefore");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("foundAfter");
    QTest::newRow("one part: empty, found left true") << "fileserver" << true << "" << true;
    QTest::newRow("one part: empty, found left false") << "fileserver" << false << "" << false;
    QTest::newRow("share found ignoring case; first mount wins") << "fileserver/exchange" << false << "/mnt/y/" << true;
    QTest::newRow("further parts are ignored") << "fileserver/exchange/2024/05" << false << "/mnt/y/" << true;
    QTest::newRow("server with a port") << "127.0.0.1:1445/public" << false << "/mnt/z/" << true;
    QTest::newRow("NFS export, escaped mount point decoded") << "nas/export" << false << "/mnt/with space/" << true;
    QTest::newRow("listing searched by containment: a share name's beginning matches")
        << "fileserver/exch" << false << "/mnt/y/" << true;
    QTest::newRow("unknown share: found false") << "fileserver/other" << true << "" << false;
    QTest::newRow("leading slash: empty server matches nothing") << "/exchange" << true << "" << false;
    QTest::newRow("a local file system is no share") << "dev/sda1" << true << "" << false;
}

void TestDirectoriesTranslation::networkAddressToLocalDrive()
{
    QFETCH(QString, address);
    QFETCH(bool, foundBefore);
    QFETCH(QString, expected);
    QFETCH(bool, foundAfter);
    bool found = foundBefore;
    QCOMPARE(m_directories->networkAddressToLocalDrive(address, found), expected);
    QCOMPARE(found, foundAfter);
}

// The listing cannot be read: as "net use" failing.
void TestDirectoriesTranslation::networkAddressToLocalDriveWithoutTable()
{
    MountTableReader::setTableFilePath(root("no-such-table"));
    bool found = true;
    QCOMPARE(m_directories->networkAddressToLocalDrive("fileserver/exchange", found), QString());
    QCOMPARE(found, false);
    QVERIFY(m_directories->getWindowsNetworkPath("/mnt/y/a.txt").isEmpty());
}

void TestDirectoriesTranslation::getWindowsNetworkPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QVariantMap>("expected");
    const auto map = [](const QString& address, const QString& path, const QString& name) {
        return QVariantMap{ { "adress", address }, { "path", path }, { "name", name } };
    };
    QTest::newRow("relative path: empty map") << "reports/result.pdf" << QVariantMap();
    QTest::newRow("file on a share: server/share, directory inside it, name")
        << "/mnt/y/reports/2024/result.pdf" << map("FILESERVER/Exchange", "reports/2024/", "result.pdf");
    QTest::newRow("file URL form") << "file:///mnt/y/reports/2024/result.pdf"
                                   << map("FILESERVER/Exchange", "reports/2024/", "result.pdf");
    QTest::newRow("file at the share's root: the path is a lone separator")
        << "/mnt/y/result.pdf" << map("FILESERVER/Exchange", "/", "result.pdf");
    QTest::newRow("server with a port") << "/mnt/z/a.txt" << map("127.0.0.1:1445/public", "/", "a.txt");
    QTest::newRow("NFS export on a mount point with a space")
        << "/mnt/with space/d/f.csv" << map("nas/export/data", "d/", "f.csv");
    QTest::newRow("a local mount inside a share decides: empty map") << "/mnt/y/local/a.txt" << QVariantMap();
    QTest::newRow("file on a local disk: empty map") << "/home/user/a.txt" << QVariantMap();
    QTest::newRow("a directory named like a mount point is not inside it") << "/mnt/yy/a.txt" << QVariantMap();
}

void TestDirectoriesTranslation::getWindowsNetworkPath()
{
    QFETCH(QString, path);
    QFETCH(QVariantMap, expected);
    QCOMPARE(m_directories->getWindowsNetworkPath(path), expected);
}

void TestDirectoriesTranslation::emptyPathIsLogged()
{
    LogCapture log;
    QVERIFY(m_directories->getWindowsNetworkPath(QString()).isEmpty());
    QCOMPARE(log.count("ERROR: path is empty"), 1);
    QCOMPARE(log.count("lib_configuration/source/directories;"), 1);
}

void TestDirectoriesTranslation::isFileMatchingMode_data()
{
    QTest::addColumn<QString>("filePath");
    QTest::addColumn<bool>("isExternalMode");
    QTest::addColumn<bool>("expected");
    QTest::addColumn<bool>("uncLogged");
    QTest::newRow("UNC path keeps external mode") << "\\\\server\\share\\a.txt" << true << true << true;
    QTest::newRow("UNC path keeps internal mode") << "\\\\server\\share\\a.txt" << false << false << true;
    QTest::newRow("local file in external mode: false") << "@internal/results/a.csv" << true << false << false;
    QTest::newRow("local file in internal mode: true") << "@internal/results/a.csv" << false << true << false;
    QTest::newRow("file URL of a local file") << "file://@internal/results/a.csv" << false << true << false;
    QTest::newRow("missing file judged by its directory") << "@internal/none/deeper/a.csv" << true << false << false;
    QTest::newRow("relative path names no network drive") << "a.csv" << true << false << false;
}

void TestDirectoriesTranslation::isFileMatchingMode()
{
    QFETCH(QString, filePath);
    QFETCH(bool, isExternalMode);
    QFETCH(bool, expected);
    QFETCH(bool, uncLogged);
    QVERIFY(QDir().mkpath(root("internal/results")));
    QFile file(root("internal/results/a.csv"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();

    LogCapture log;
    QCOMPARE(m_directories->isFileMatchingMode(filePath.replace("@", m_dir->path() + "/"), isExternalMode), expected);
    QCOMPARE(log.contains("UNC path detected."), uncLogged);
}

void TestDirectoriesTranslation::uriToPath_data()
{
    QTest::addColumn<QString>("uri");
    QTest::addColumn<QString>("expected");
    QTest::newRow("file URL gives its local path") << "file:///data/a.csv" << "/data/a.csv";
    QTest::newRow("percent-encoded file URL is decoded") << "file:///data/my%20file.csv" << "/data/my file.csv";
    QTest::newRow("plain path comes back unchanged") << "/data/a.csv" << "/data/a.csv";
    QTest::newRow("URL of another scheme comes back unchanged") << "smb://server/share/a.csv"
                                                                << "smb://server/share/a.csv";
    QTest::newRow("empty text comes back empty") << "" << "";
}

void TestDirectoriesTranslation::uriToPath()
{
    QFETCH(QString, uri);
    QFETCH(QString, expected);
    QCOMPARE(m_directories->uriToPath(uri), expected);
}

QTEST_GUILESS_MAIN(TestDirectoriesTranslation)
#include "tst_directoriestranslation.moc"
