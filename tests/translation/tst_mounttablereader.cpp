#include <QTemporaryDir>
#include <QtTest>

#include "mounttablereader.h"

// Reading the kernel's mount table: which mounts are shares, of which server and share,
// and which mount holds a path.
class TestMountTableReader : public QObject
{
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void skipsMalformedLines();
    void isRemoteFileSystemType_data();
    void isRemoteFileSystemType();
    void indexOfMountHolding_data();
    void indexOfMountHolding();
    void readsTheKernelTable();
    void localDirectoryIsNotRemote();
};

void TestMountTableReader::parse_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("mountPoint");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("server");
    QTest::addColumn<QString>("share");
    QTest::newRow("cifs source gives server and share")
        << "40 22 0:40 / /mnt/y rw,relatime shared:5 - cifs //fs/exchange rw,vers=3.0"
        << "/mnt/y" << "cifs" << "fs" << "exchange";
    QTest::newRow("sub-directory of a share stays with the share")
        << "40 22 0:40 /sub /mnt/y rw - cifs //fs/exchange/reports/ rw" << "/mnt/y" << "cifs" << "fs"
        << "exchange/reports";
    QTest::newRow("backslash source") << "40 22 0:40 / /mnt/y rw - smb3 \\\\fs\\exchange\\in rw" << "/mnt/y" << "smb3"
                                      << "fs" << "exchange/in";
    QTest::newRow("FUSE share client keeps the server's port")
        << "41 22 0:41 / /srv/mnt/Net rw,nosuid,nodev - fuse.smb //127.0.0.1:1445/public rw"
        << "/srv/mnt/Net" << "fuse.smb" << "127.0.0.1:1445" << "public";
    QTest::newRow("NFS host and export") << "42 22 0:42 / /nfs rw - nfs4 nas:/export/data rw" << "/nfs" << "nfs4"
                                         << "nas" << "export/data";
    QTest::newRow("NFS over IPv6") << "42 22 0:42 / /nfs rw - nfs [fd00::5]:/export rw" << "/nfs" << "nfs"
                                   << "[fd00::5]" << "export";
    QTest::newRow("sshfs drops the user") << "43 22 0:43 / /ssh rw - fuse.sshfs op@station2:/home/op rw" << "/ssh"
                                          << "fuse.sshfs" << "station2" << "home/op";
    QTest::newRow("octal escapes of the mount point decoded")
        << "44 22 0:44 / /mnt/a\\040b\\011c\\134d rw - cifs //fs/x rw" << "/mnt/a b\tc\\d" << "cifs" << "fs" << "x";
    QTest::newRow("any number of optional fields") << "45 22 0:45 / /m rw shared:1 master:2 unbindable - cifs //s/t rw"
                                                   << "/m" << "cifs" << "s" << "t";
    QTest::newRow("local file system names no server") << "22 1 8:1 / / rw - ext4 /dev/sda1 rw" << "/" << "ext4"
                                                        << "" << "";
    QTest::newRow("colon in a local source is no server") << "46 22 0:46 / /x rw - overlay a:b rw" << "/x"
                                                          << "overlay" << "" << "";
    QTest::newRow("FUSE without a server is no share") << "47 22 0:47 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse "
                                                          "gvfsd-fuse rw"
                                                       << "/run/user/1000/gvfs" << "fuse.gvfsd-fuse" << "" << "";
    QTest::newRow("share without a share name is no share") << "48 22 0:48 / /y rw - cifs //fs rw" << "/y" << "cifs"
                                                            << "" << "";
}

void TestMountTableReader::parse()
{
    QFETCH(QString, line);
    QFETCH(QString, mountPoint);
    QFETCH(QString, type);
    QFETCH(QString, server);
    QFETCH(QString, share);
    const QList<MountTableReader::Entry> entries = MountTableReader::parse(line + "\n");
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.at(0).mountPoint, mountPoint);
    QCOMPARE(entries.at(0).fileSystemType, type);
    QCOMPARE(entries.at(0).server, server);
    QCOMPARE(entries.at(0).share, share);
    QCOMPARE(entries.at(0).isNetworkShare(), !share.isEmpty());
}

void TestMountTableReader::skipsMalformedLines()
{
    const QList<MountTableReader::Entry> entries = MountTableReader::parse("garbage\n"
                                                               "1 2 3 4 /no-separator rw cifs //s/t rw\n"
                                                               "1 2 0:1 / /ok rw - cifs //s/t rw\n"
                                                               "1 2 0:1 / /cut rw - cifs\n"
                                                               "\n");
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.at(0).mountPoint, QString("/ok"));
}

void TestMountTableReader::isRemoteFileSystemType_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("source");
    QTest::addColumn<bool>("remote");
    QTest::newRow("sshfs whatever its source") << "fuse.sshfs" << "host:" << true;
    QTest::newRow("FUSE client of a share") << "fuse.smb" << "//127.0.0.1:1445/public" << true;
    QTest::newRow("FUSE client with backslashes") << "fuse.other" << "\\\\server\\share" << true;
    QTest::newRow("FUSE without a server") << "fuse.gvfsd-fuse" << "gvfsd-fuse" << false;
    QTest::newRow("FUSE block device") << "fuseblk" << "/dev/sdb1" << false;
    QTest::newRow("tmpfs named like a share") << "tmpfs" << "//s/t" << false;
}

void TestMountTableReader::isRemoteFileSystemType()
{
    QFETCH(QString, type);
    QFETCH(QString, source);
    QFETCH(bool, remote);
    QCOMPARE(MountTableReader::isRemoteFileSystemType(type, source), remote);
}

void TestMountTableReader::indexOfMountHolding_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("index");
    QTest::newRow("the root holds what nothing else holds") << "/home/a.txt" << 0;
    QTest::newRow("the longest mount point wins") << "/mnt/y/deep/a.txt" << 1;
    QTest::newRow("the mount point itself") << "/mnt/y" << 1;
    QTest::newRow("whole components only") << "/mnt/yy/a.txt" << 0;
    QTest::newRow("a later mount on the same point hides the earlier") << "/mnt/z/a.txt" << 4;
    QTest::newRow("a mount inside a mount") << "/mnt/y/local/a" << 2;
    QTest::newRow("path not cleaned by the caller") << "/mnt/y/local/../b" << 1;
}

void TestMountTableReader::indexOfMountHolding()
{
    QFETCH(QString, path);
    QFETCH(int, index);
    const QList<MountTableReader::Entry> entries = MountTableReader::parse("1 0 0:1 / / rw - ext4 /dev/sda1 rw\n"
                                                               "2 1 0:2 / /mnt/y rw - cifs //a/b rw\n"
                                                               "3 2 0:3 / /mnt/y/local rw - tmpfs tmpfs rw\n"
                                                               "4 1 0:4 / /mnt/z rw - cifs //a/c rw\n"
                                                               "5 4 0:5 / /mnt/z rw - cifs //a/d rw\n");
    QCOMPARE(MountTableReader::indexOfMountHolding(entries, path), index);
}

void TestMountTableReader::readsTheKernelTable()
{
    QList<MountTableReader::Entry> entries;
    QVERIFY(MountTableReader::read(entries));
    QVERIFY(MountTableReader::indexOfMountHolding(entries, QDir::currentPath()) >= 0);

    QTemporaryDir dir;
    MountTableReader::setTableFilePath(dir.filePath("missing"));
    QVERIFY(!MountTableReader::read(entries));
    QVERIFY(entries.isEmpty());
    MountTableReader::setTableFilePath(QString());
}

void TestMountTableReader::localDirectoryIsNotRemote()
{
    QTemporaryDir dir;
    QVERIFY(!MountTableReader::isOnRemoteFileSystem(dir.path()));
    QVERIFY(!MountTableReader::isOnRemoteFileSystem(dir.filePath("missing/below/a.txt")));
    QVERIFY(!MountTableReader::isOnRemoteFileSystem(QString()));
}

QTEST_GUILESS_MAIN(TestMountTableReader)
#include "tst_mounttablereader.moc"
