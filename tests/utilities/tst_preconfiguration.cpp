#include "utilities/preconfiguration.h"
#include "logcapture.h"
#include "filebytes.h"

#include <QtTest>

class TestPreConfiguration : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { PreConfiguration::clear(); }

    void refusesUnusableFiles_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("missing file") << QByteArray();
        QTest::newRow("array instead of object") << QByteArray(R"(["configDirPath"])");
    }
    void refusesUnusableFiles()
    {
        QFETCH(QByteArray, content);
        QTemporaryDir dir;
        const QString path = dir.filePath("station.json");
        if (!content.isEmpty())
            QVERIFY(writeBytes(path, content));
        PreConfiguration::setParameter("configFilename", "kept.json");
        LogCapture log;
        QVERIFY(!PreConfiguration::load(path));
        QCOMPARE(log.count("platform/utilities/preconfiguration"), 1);
        QVERIFY(log.contains(path));
        QCOMPARE(PreConfiguration::getParameter("configFilename").toString(), QStringLiteral("kept.json"));
    }

    void resolvesRelativePathsAgainstFileDirectory()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("etc/station.json");
        QVERIFY(writeBytes(path, R"({"configDirPath": "config", "usbKeyMountPath": "../media/usb",
            "internalStorageDirPath": "/data/internal", "syncDatabaseFilePath": "./db/sync.sqlite",
            "trashStorageDirPath": "", "configFilename": "configuration.json", "isEditorOnly": true})"));
        PreConfiguration::setParameter("stale", 1);
        QVERIFY(PreConfiguration::load(path));
        const QString base = QFileInfo(dir.path()).absoluteFilePath();
        QCOMPARE(PreConfiguration::getParameter("configDirPath").toString(), base + "/etc/config");
        QCOMPARE(PreConfiguration::getParameter("usbKeyMountPath").toString(), base + "/media/usb");
        QCOMPARE(PreConfiguration::syncDatabaseFilePath(), base + "/etc/db/sync.sqlite");
        QCOMPARE(PreConfiguration::getInternalStorageDirectoryPath(), QStringLiteral("/data/internal"));
        QCOMPARE(PreConfiguration::getTrashStorageDirectoryPath(), QString());
        QCOMPARE(PreConfiguration::getParameter("configFilename").toString(), QStringLiteral("configuration.json"));
        QVERIFY(!PreConfiguration::getParameter("stale").isValid());
    }

    void relativeToInternalPath_data()
    {
        QTest::addColumn<QString>("root");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("expected");
        QTest::newRow("root with a trailing separator") << "/data/internal/" << QVariant("/data/internal/a/b") << "a/b";
        QTest::newRow("the root itself") << "/data/internal" << QVariant("/data/internal/") << "";
        QTest::newRow("unclean path is normalised") << "/data/internal" << QVariant("/data/internal/x/../media") << "media";
        QTest::newRow("same prefix but another directory") << "/data/internal" << QVariant("/data/internalX/a") << "/data/internalX/a";
        QTest::newRow("absent parameter") << "/data/internal" << QVariant() << "";
    }
    void relativeToInternalPath()
    {
        QFETCH(QString, root);
        QFETCH(QVariant, value);
        QFETCH(QString, expected);
        PreConfiguration::setParameter("internalStorageDirPath", root);
        if (value.isValid())
            PreConfiguration::setParameter("sequencesDirPath", value);
        QCOMPARE(PreConfiguration::getRelativeToInternalPath("sequencesDirPath"), expected);
    }
};

QTEST_GUILESS_MAIN(TestPreConfiguration)
#include "tst_preconfiguration.moc"
