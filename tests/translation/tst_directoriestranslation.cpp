#include <QtTest>

#include <array>
#include <memory>

#include "directories.h"
#include "logcapture.h"
#include "mounttablereader.h"
#include "utilities/preconfiguration.h"

// A cifs share, the FUSE share client with a port, NFS on a mount point with a space, the
// cifs share a second time, and a local file system mounted inside the first share.
static const char C_mountInfo[] = "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
                                  "40 22 0:40 / /mnt/y rw,relatime shared:5 - cifs //FILESERVER/Exchange rw,vers=3.0\n"
                                  "41 22 0:41 / /mnt/z rw,nosuid - fuse.smb //127.0.0.1:1445/public rw,user_id=0\n"
                                  "42 22 0:42 / /mnt/with\\040space rw master:3 - nfs4 nas:/export/data rw\n"
                                  "43 22 0:43 / /mnt/second rw - cifs //fileserver/exchange rw\n"
                                  "44 40 0:44 / /mnt/y/local rw - tmpfs tmpfs rw\n";

// Path translation of the registry on folders under temporary storage roots.
class TestDirectoriesTranslation : public QObject
{
    Q_OBJECT

    QString root(const QString& relative) const { return m_dir->filePath(relative); }
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<Directories> m_directories;

private Q_SLOTS:
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        QVERIFY(m_dir->isValid());
        PreConfiguration::clear();
        PreConfiguration::setParameter("isEditorOnly", true);
        PreConfiguration::setParameter("internalStorageDirPath", root("internal"));
        PreConfiguration::setParameter("removableStorageDirPath", root("usb"));
        PreConfiguration::setParameter("mountingStorageDirPath", root("mnt"));
        QVERIFY(QDir().mkpath(root("internal/results")));
        QVERIFY(QFile(root("internal/results/a.csv")).open(QIODevice::WriteOnly));
        QFile table(root("mountinfo"));
        QVERIFY(table.open(QIODevice::WriteOnly) && table.write(C_mountInfo) > 0);
        table.close();
        MountTableReader::setTableFilePath(table.fileName());

        m_directories.reset(new Directories(QString(), QString(), root("usbkey"), 30000, QStringList()));
        // List order matters: the first folder that matches wins. Network folders are added
        // disabled: nothing is mounted, only their records matter.
        const QStringList folders {"internal Results results", "internal Archive results/archive",
                                   "internal Res res", "samba Share exchange/results", "samba Twin exchange/results",
                                   "external Stick data"};
        for (const QString& folder : folders) {
            const QStringList f = folder.split(' ');
            const bool samba = f.at(0) == "samba";
            QVERIFY(!m_directories->addNewFolderAlias(f.at(0), QString(), f.at(1), f.at(2), QString(),
                                                      samba ? "10.0.0.5" : "", "user", "secret", !samba, false)
                         .isNull());
        }
        QCOMPARE(m_directories->folders()->count(), 6);
    }
    void cleanup()
    {
        m_directories.reset();
        MountTableReader::setTableFilePath(QString());
        PreConfiguration::clear();
        m_dir.reset();
    }

    // "@" stands for the temporary root and a separator. Calls with a found/mounted flag give
    // "result|flag after starting true, flag after starting false".
    void translates_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("expected");
        const auto rows = [](const QString& call, std::initializer_list<std::array<const char*, 3>> table) {
            for (const auto& row : table)
                QTest::newRow(qPrintable(call + ": " + row[0])) << call << QString(row[1]) << QString(row[2]);
        };
        rows("address", {{"empty path comes back empty", "", ""},
                         {"file deep under a share gives only address/share path", "@mnt/Share/2024/05/report.pdf",
                          "10.0.0.5/exchange/results"},
                         {"internal folder: empty address, so a leading slash", "@internal/results/a.csv", "/results"},
                         {"first folder in list order wins", "@internal/results/archive/a.csv", "/results"},
                         {"plain text prefix: the folder at res takes resources", "@internal/resources/a", "/res"},
                         {"prefix compared case-sensitively", "@mnt/SHARE/a.txt", "@mnt/SHARE/a.txt"},
                         {"path outside every folder unchanged", "/elsewhere/a", "/elsewhere/a"}});
        rows("alias", {{"empty path comes back empty", "", ""},
                       {"path under a folder takes its alias", "@internal/results/2024/f.pdf", "Results/2024/f.pdf"},
                       {"first folder in list order wins", "@internal/results/archive/x.pdf", "Results/archive/x.pdf"},
                       {"trailing separator removed", "@internal/results/2024/", "Results/2024"},
                       {"mount point itself becomes the alias", "@mnt/Share/", "Share"},
                       {"every occurrence of the mount path is replaced", "@internal/results/copy@internal/results",
                        "Results/copyResults"},
                       {"prefix compared case-sensitively", "@mnt/share/a.txt", "@mnt/share/a.txt"},
                       {"outside every folder only the trailing separator goes", "/elsewhere/dir/", "/elsewhere/dir"}});
        rows("folderPath", {{"empty alias gives the default", "", "/default"},
                            {"known alias gives its path", "Share", "exchange/results"},
                            {"alias compared case-sensitively", "share", "/default"},
                            {"unknown alias gives the default", "Nobody", "/default"}});
        rows("mounted", {{"empty address, flag untouched", "", "|10"},
                         {"unknown address, flag untouched", "10.0.0.5/other", "|10"},
                         {"address compared exactly", "10.0.0.5/Exchange/results", "|10"},
                         {"internal folder's address is not a share", "/results", "|10"},
                         {"known unmounted share: the first one's alias, flag false", "10.0.0.5/exchange/results",
                          "Share|00"}});
        rows("drive", {{"one part gives nothing, flag untouched", "fileserver", "|10"},
                       {"share found ignoring case, first mount wins", "fileserver/exchange", "/mnt/y/|11"},
                       {"further parts are ignored", "fileserver/exchange/2024/05", "/mnt/y/|11"},
                       {"server with a port", "127.0.0.1:1445/public", "/mnt/z/|11"},
                       {"NFS export, escaped mount point decoded", "nas/export", "/mnt/with space/|11"},
                       {"listing searched by containment: a share name's beginning", "fileserver/exch", "/mnt/y/|11"},
                       {"unknown share, flag false", "fileserver/other", "|00"},
                       {"leading slash: empty server matches nothing", "/exchange", "|00"},
                       {"a local file system is no share", "dev/sda1", "|00"}});
        const char* onShare = "adress=FILESERVER/Exchange name=result.pdf path=reports/2024/";
        rows("unc", {{"relative path gives an empty map", "reports/result.pdf", ""},
                     {"file on a share: server/share, directory inside it, name", "/mnt/y/reports/2024/result.pdf",
                      onShare},
                     {"file URL form", "file:///mnt/y/reports/2024/result.pdf", onShare},
                     {"at the share's root the path is a lone separator", "/mnt/y/result.pdf",
                      "adress=FILESERVER/Exchange name=result.pdf path=/"},
                     {"server with a port", "/mnt/z/a.txt", "adress=127.0.0.1:1445/public name=a.txt path=/"},
                     {"NFS export on a mount point with a space", "/mnt/with space/d/f.csv",
                      "adress=nas/export/data name=f.csv path=d/"},
                     {"a local mount inside a share decides", "/mnt/y/local/a.txt", ""},
                     {"file on a local disk", "/home/user/a.txt", ""},
                     {"a directory named like a mount point is not inside it", "/mnt/yy/a.txt", ""}});
        // isFileMatchingMode in external or internal mode; " unc" when the UNC path was logged.
        rows("external", {{"UNC path keeps external mode", "\\\\server\\share\\a.txt", "1 unc"},
                          {"local file: false", "@internal/results/a.csv", "0"},
                          {"missing file judged by its directory", "@internal/none/deeper/a.csv", "0"},
                          {"relative path names no network drive", "a.csv", "0"}});
        rows("internal", {{"UNC path keeps internal mode", "\\\\server\\share\\a.txt", "0 unc"},
                          {"local file: true", "@internal/results/a.csv", "1"},
                          {"file URL of a local file", "file://@internal/results/a.csv", "1"}});
        rows("uri", {{"percent-encoded file URL is decoded", "file:///data/my%20file.csv", "/data/my file.csv"},
                     {"plain path unchanged", "/data/a.csv", "/data/a.csv"},
                     {"URL of another scheme unchanged", "smb://server/share/a.csv", "smb://server/share/a.csv"},
                     {"empty text comes back empty", "", ""}});
    }
    void translates()
    {
        QFETCH(QString, call);
        QFETCH(QString, input);
        QFETCH(QString, expected);
        const QString base = m_dir->path() + QLatin1Char('/');
        input.replace("@", base);
        const Directories& d = *m_directories;
        QString result;
        if (call == "address" || call == "alias" || call == "folderPath" || call == "uri") {
            result = call == "address" ? d.getAddressFromPath(input)
                     : call == "alias" ? d.getPathRelativeToItsAlias(input)
                     : call == "uri"   ? d.uriToPath(input)
                                       : d.getFolderPathFromAlias(input, "/default");
        } else if (call == "external" || call == "internal") {
            LogCapture log;
            result = QString::number(d.isFileMatchingMode(input, call == "external"));
            result += log.contains("UNC path detected.") ? " unc" : "";
        } else if (call == "unc") {
            const QVariantMap map = d.getWindowsNetworkPath(input);
            QStringList parts;
            for (auto it = map.cbegin(); it != map.cend(); ++it)
                parts << it.key() + '=' + it.value().toString();
            result = parts.join(' ');
        } else {
            bool fromTrue = true;
            bool fromFalse = false;
            result = call == "drive" ? d.networkAddressToLocalDrive(input, fromTrue)
                                     : d.getMountedPathFromAdress(input, fromTrue);
            const QString again = call == "drive" ? d.networkAddressToLocalDrive(input, fromFalse)
                                                  : d.getMountedPathFromAdress(input, fromFalse);
            QCOMPARE(again, result);
            result += QString("|%1%2").arg(int(fromTrue)).arg(int(fromFalse));
        }
        QCOMPARE(result, expected.replace("@", base));
    }

    // The listing cannot be read: as "net use" failing.
    void networkAddressToLocalDriveWithoutTable()
    {
        MountTableReader::setTableFilePath(root("no-such-table"));
        bool found = true;
        QCOMPARE(m_directories->networkAddressToLocalDrive("fileserver/exchange", found), QString());
        QCOMPARE(found, false);
        QVERIFY(m_directories->getWindowsNetworkPath("/mnt/y/a.txt").isEmpty());
    }

    void emptyPathIsLogged()
    {
        LogCapture log;
        QVERIFY(m_directories->getWindowsNetworkPath(QString()).isEmpty());
        QCOMPARE(log.count("ERROR: path is empty"), 1);
        QCOMPARE(log.count("lib_configuration/source/directories;"), 1);
    }
};

QTEST_GUILESS_MAIN(TestDirectoriesTranslation)
#include "tst_directoriestranslation.moc"
