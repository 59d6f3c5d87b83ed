#include "utilities/dmounteddirectorywatcher.h"

#include <QtTest>

class TestDMountedDirectoryWatcher : public QObject
{
    Q_OBJECT

    QTemporaryDir m_root;
    QStringList m_mounted;

    bool mountTmpfs(const QString& path)
    {
        QDir().mkpath(path);
        const bool ok = QProcess::execute("mount", {"-t", "tmpfs", "-o", "size=1m", "stationtest", path}) == 0;
        if (ok)
            m_mounted.prepend(path);
        return ok;
    }
    bool unmount(const QString& path)
    {
        m_mounted.removeAll(path);
        return QProcess::execute("umount", {path}) == 0;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_root.isValid());
        if (!mountTmpfs(m_root.filePath("probe")))
            QSKIP("mounting a tmpfs is not permitted here (needs root with CAP_SYS_ADMIN)");
        QVERIFY(unmount(m_root.filePath("probe")));
    }
    void cleanup()
    {
        for (const QString& path : qAsConst(m_mounted))
            QProcess::execute("umount", {"-l", path});
        m_mounted.clear();
    }

    void followsMountAndUnmount_data()
    {
        QTest::addColumn<QString>("mountBelow");
        QTest::addColumn<QString>("sibling");
        QTest::addColumn<bool>("mountedFirst");
        QTest::newRow("file system mounted at the directory") << QString() << QString() << false;
        QTest::newRow("file system mounted below the directory") << "KEY_0001" << QString() << false;
        QTest::newRow("a mounted sibling with a common prefix is not the directory") << QString() << "usb2" << false;
        QTest::newRow("state at setMountDir taken without a signal") << QString() << QString() << true;
    }
    void followsMountAndUnmount()
    {
        QFETCH(QString, mountBelow);
        QFETCH(QString, sibling);
        QFETCH(bool, mountedFirst);
        const QString directory = m_root.filePath("usb");
        QVERIFY(QDir().mkpath(directory));
        if (!sibling.isEmpty())
            QVERIFY(mountTmpfs(m_root.filePath(sibling)));
        const QString target = mountBelow.isEmpty() ? directory : directory + '/' + mountBelow;
        if (mountedFirst)
            QVERIFY(mountTmpfs(target));
        DMountedDirectoryWatcher watcher;
        QSignalSpy changes(&watcher, &DMountedDirectoryWatcher::mountStateChanged);
        watcher.setMountDir(directory);
        QCOMPARE(watcher.isMounted(), mountedFirst);
        QCOMPARE(changes.count(), 0);
        if (!mountedFirst) {
            QVERIFY(mountTmpfs(target));
            QVERIFY(changes.wait(5000));
            QCOMPARE(changes.takeFirst(), (QList<QVariant> {true, directory}));
            QVERIFY(watcher.isMounted());
        }
        QVERIFY(unmount(target));
        QTRY_COMPARE_WITH_TIMEOUT(changes.count(), 1, 5000);
        QCOMPARE(changes.at(0), (QList<QVariant> {false, directory}));
        QVERIFY(!watcher.isMounted());
    }
};

QTEST_GUILESS_MAIN(TestDMountedDirectoryWatcher)
#include "tst_dmounteddirectorywatcher.moc"
