#include <QtTest>

#include "mounttablereader.h"

// Reading the kernel's mount table. Plain cifs, FUSE-with-port, NFS and local entries are
// also pinned through the registry's translation test.
class TestMountTableReader : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void parse_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("expected"); // mount point|type|server|share
        QTest::newRow("sub-directory of a share stays with the share")
            << "40 22 0:40 /sub /mnt/y rw - cifs //fs/exchange/reports/ rw" << "/mnt/y|cifs|fs|exchange/reports";
        QTest::newRow("backslash source") << "40 22 0:40 / /mnt/y rw - smb3 \\\\fs\\exchange\\in rw"
                                          << "/mnt/y|smb3|fs|exchange/in";
        QTest::newRow("NFS over IPv6") << "42 22 0:42 / /n rw - nfs [fd00::5]:/export rw" << "/n|nfs|[fd00::5]|export";
        QTest::newRow("sshfs drops the user") << "43 22 0:43 / /ssh rw - fuse.sshfs op@station2:/home/op rw"
                                              << "/ssh|fuse.sshfs|station2|home/op";
        QTest::newRow("octal escapes of the mount point decoded")
            << "44 22 0:44 / /mnt/a\\040b\\011c\\134d rw - cifs //fs/x rw" << "/mnt/a b\tc\\d|cifs|fs|x";
        QTest::newRow("any number of optional fields")
            << "45 22 0:45 / /m rw shared:1 master:2 unbindable - cifs //s/t rw" << "/m|cifs|s|t";
        QTest::newRow("colon in a local source is no server") << "46 22 0:46 / /x rw - overlay a:b rw"
                                                              << "/x|overlay||";
        QTest::newRow("FUSE without a server is no share")
            << "47 22 0:47 / /run/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw" << "/run/gvfs|fuse.gvfsd-fuse||";
        QTest::newRow("share without a share name is no share") << "48 22 0:48 / /y rw - cifs //fs rw" << "/y|cifs||";
    }
    void parse()
    {
        QFETCH(QString, line);
        QFETCH(QString, expected);
        const QList<MountTableReader::Entry> entries = MountTableReader::parse(line + "\n");
        QCOMPARE(entries.size(), 1);
        const MountTableReader::Entry& e = entries.at(0);
        QCOMPARE(QStringList({e.mountPoint, e.fileSystemType, e.server, e.share}).join('|'), expected);
        QCOMPARE(e.isNetworkShare(), !e.share.isEmpty());
    }

    void skipsMalformedLinesAndMissingTable()
    {
        QList<MountTableReader::Entry> entries = MountTableReader::parse(
            "garbage\n1 2 3 4 /no-separator rw cifs //s/t rw\n1 2 0:1 / /ok rw - cifs //s/t rw\n"
            "1 2 0:1 / /cut rw - cifs\n\n");
        QCOMPARE(entries.size(), 1);
        QCOMPARE(entries.at(0).mountPoint, QString("/ok"));
        QTemporaryDir dir;
        MountTableReader::setTableFilePath(dir.filePath("missing"));
        QVERIFY(!MountTableReader::read(entries));
        QVERIFY(entries.isEmpty());
        MountTableReader::setTableFilePath(QString());
        QVERIFY(!MountTableReader::isOnRemoteFileSystem(dir.path()));
        QVERIFY(!MountTableReader::isOnRemoteFileSystem(dir.filePath("missing/below/a.txt")));
        QVERIFY(!MountTableReader::isOnRemoteFileSystem(QString()));
    }

    void isRemoteFileSystemType_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("source");
        QTest::addColumn<bool>("remote");
        QTest::newRow("sshfs whatever its source") << "fuse.sshfs" << "host:" << true;
        QTest::newRow("FUSE client with backslashes") << "fuse.other" << "\\\\server\\share" << true;
        QTest::newRow("FUSE without a server") << "fuse.gvfsd-fuse" << "gvfsd-fuse" << false;
        QTest::newRow("FUSE block device") << "fuseblk" << "/dev/sdb1" << false;
        QTest::newRow("tmpfs named like a share") << "tmpfs" << "//s/t" << false;
    }
    void isRemoteFileSystemType()
    {
        QFETCH(QString, type);
        QFETCH(QString, source);
        QTEST(MountTableReader::isRemoteFileSystemType(type, source), "remote");
    }

    void indexOfMountHolding_data()
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
    void indexOfMountHolding()
    {
        QFETCH(QString, path);
        const QList<MountTableReader::Entry> entries = MountTableReader::parse(
            "1 0 0:1 / / rw - ext4 /dev/sda1 rw\n2 1 0:2 / /mnt/y rw - cifs //a/b rw\n"
            "3 2 0:3 / /mnt/y/local rw - tmpfs tmpfs rw\n4 1 0:4 / /mnt/z rw - cifs //a/c rw\n"
            "5 4 0:5 / /mnt/z rw - cifs //a/d rw\n");
        QTEST(MountTableReader::indexOfMountHolding(entries, path), "index");
    }
};

QTEST_GUILESS_MAIN(TestMountTableReader)
#include "tst_mounttablereader.moc"
