#include "utilities/dmounteddirectorywatcher.h"

#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

class TestDMountedDirectoryWatcher : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_root;
    QStringList m_mounted;

    bool mountTmpfs(const QString& path);
    bool unmount(const QString& path);

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void followsMountAndUnmount_data();
    void followsMountAndUnmount();
    void ignoresSiblingWithCommonPrefix();
    void takesCurrentStateWithoutSignal();
};

bool TestDMountedDirectoryWatcher::mountTmpfs(const QString& path)
{
    QDir().mkpath(path);
    const int code = QProcess::execute(QStringLiteral("mount"),
                                       {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"),
                                        QStringLiteral("size=1m"), QStringLiteral("stationtest"), path});
    if (code == 0)
        m_mounted.prepend(path);
    return code == 0;
}

bool TestDMountedDirectoryWatcher::unmount(const QString& path)
{
    m_mounted.removeAll(path);
    return QProcess::execute(QStringLiteral("umount"), {path}) == 0;
}

void TestDMountedDirectoryWatcher::initTestCase()
{
    QVERIFY(m_root.isValid());
    const QString probe = m_root.filePath(QStringLiteral("probe"));
    if (!mountTmpfs(probe))
        QSKIP("mounting a tmpfs is not permitted here (needs root with CAP_SYS_ADMIN)");
    QVERIFY(unmount(probe));
}

void TestDMountedDirectoryWatcher::cleanup()
{
    for (const QString& path : m_mounted)
        QProcess::execute(QStringLiteral("umount"), {QStringLiteral("-l"), path});
    m_mounted.clear();
}

void TestDMountedDirectoryWatcher::followsMountAndUnmount_data()
{
    QTest::addColumn<QString>("mountBelow");
    QTest::newRow("file system mounted at the directory") << QString();
    QTest::newRow("file system mounted below the directory") << QStringLiteral("KEY_0001");
}

void TestDMountedDirectoryWatcher::followsMountAndUnmount()
{
    QFETCH(QString, mountBelow);
    const QString directory = m_root.filePath(QStringLiteral("usb"));
    QVERIFY(QDir().mkpath(directory));
    const QString target = mountBelow.isEmpty() ? directory : directory + QLatin1Char('/') + mountBelow;

    DMountedDirectoryWatcher watcher;
    watcher.setMountDir(directory);
    QVERIFY(!watcher.isMounted());
    QSignalSpy changes(&watcher, &DMountedDirectoryWatcher::mountStateChanged);

    QVERIFY(mountTmpfs(target));
    QVERIFY(changes.wait(5000));
    QCOMPARE(changes.at(0), (QList<QVariant> {true, directory}));
    QVERIFY(watcher.isMounted());

    QVERIFY(unmount(target));
    QTRY_COMPARE_WITH_TIMEOUT(changes.count(), 2, 5000);
    QCOMPARE(changes.at(1), (QList<QVariant> {false, directory}));
    QVERIFY(!watcher.isMounted());
}

void TestDMountedDirectoryWatcher::ignoresSiblingWithCommonPrefix()
{
    const QString directory = m_root.filePath(QStringLiteral("media"));
    const QString sibling = m_root.filePath(QStringLiteral("media2"));
    QVERIFY(QDir().mkpath(directory));
    QVERIFY(mountTmpfs(sibling));
    DMountedDirectoryWatcher watcher;
    watcher.setMountDir(directory);
    QVERIFY(!watcher.isMounted());
    QSignalSpy changes(&watcher, &DMountedDirectoryWatcher::mountStateChanged);

    QVERIFY(mountTmpfs(directory));
    QVERIFY(changes.wait(5000));
    // With the sibling still mounted, the directory's unmount reads as unmounted.
    QVERIFY(unmount(directory));
    QTRY_COMPARE_WITH_TIMEOUT(changes.count(), 2, 5000);
    QCOMPARE(changes.at(1), (QList<QVariant> {false, directory}));
    QVERIFY(!watcher.isMounted());
}

void TestDMountedDirectoryWatcher::takesCurrentStateWithoutSignal()
{
    const QString directory = m_root.filePath(QStringLiteral("already"));
    QVERIFY(mountTmpfs(directory));
    DMountedDirectoryWatcher watcher;
    QSignalSpy changes(&watcher, &DMountedDirectoryWatcher::mountStateChanged);
    watcher.setMountDir(directory);
    QVERIFY(watcher.isMounted());
    QCOMPARE(watcher.mountDir(), directory);
    QCOMPARE(changes.count(), 0);

    QVERIFY(unmount(directory));
    QVERIFY(changes.wait(5000));
    QCOMPARE(changes.at(0), (QList<QVariant> {false, directory}));
    QCOMPARE(changes.count(), 1);
}

QTEST_GUILESS_MAIN(TestDMountedDirectoryWatcher)
#include "tst_dmounteddirectorywatcher.moc"
