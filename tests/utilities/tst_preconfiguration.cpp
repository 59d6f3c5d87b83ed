#include "utilities/preconfiguration.h"
#include "logcapture.h"

#include <QtTest>

namespace {
bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
}

class TestPreConfiguration : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { PreConfiguration::clear(); }
    void refusesUnusableFiles_data();
    void refusesUnusableFiles();
    void resolvesRelativePathsAgainstFileDirectory();
    void directoryGettersReadTheirParameters();
    void filePathsInsideDirectory();
    void relativeToInternalPath_data();
    void relativeToInternalPath();
};

void TestPreConfiguration::refusesUnusableFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing file") << QByteArray();
    QTest::newRow("array instead of object") << QByteArray(R"(["configDirPath"])");
    QTest::newRow("broken JSON") << QByteArray(R"({"configDirPath": )");
}

void TestPreConfiguration::refusesUnusableFiles()
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
    // A failed load leaves the table as it was.
    QCOMPARE(PreConfiguration::getParameter("configFilename").toString(), QStringLiteral("kept.json"));
}

void TestPreConfiguration::resolvesRelativePathsAgainstFileDirectory()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("etc/station.json");
    QVERIFY(QDir().mkpath(dir.filePath("etc")));
    QVERIFY(writeBytes(path, R"({
        "configDirPath": "config",
        "systemUpdateFolder": "update",
        "usbKeyMountPath": "../media/usb",
        "internalStorageDirPath": "/data/internal",
        "syncDatabaseFilePath": "./db/sync.sqlite",
        "trashStorageDirPath": "",
        "configFilename": "configuration.json",
        "isEditorOnly": true,
        "numericPath": 3
    })"));
    PreConfiguration::setParameter("stale", 1);

    QVERIFY(PreConfiguration::load(path));
    const QString base = QFileInfo(dir.path()).absoluteFilePath();
    QCOMPARE(PreConfiguration::getParameter("configDirPath").toString(), base + "/etc/config");
    QCOMPARE(PreConfiguration::getParameter("systemUpdateFolder").toString(), base + "/etc/update");
    QCOMPARE(PreConfiguration::getParameter("usbKeyMountPath").toString(), base + "/media/usb");
    QCOMPARE(PreConfiguration::syncDatabaseFilePath(), base + "/etc/db/sync.sqlite");
    QCOMPARE(PreConfiguration::getInternalStorageDirectoryPath(), QStringLiteral("/data/internal"));
    QCOMPARE(PreConfiguration::getTrashStorageDirectoryPath(), QString());
    QCOMPARE(PreConfiguration::getParameter("configFilename").toString(), QStringLiteral("configuration.json"));
    QCOMPARE(PreConfiguration::getParameter("isEditorOnly").toBool(), true);
    QCOMPARE(PreConfiguration::getParameter("numericPath").toInt(), 3);
    QVERIFY(!PreConfiguration::getParameter("stale").isValid());
}

void TestPreConfiguration::directoryGettersReadTheirParameters()
{
    const QStringList names = { "internalStorageDirPath", "removableStorageDirPath", "mountingStorageDirPath",
                                "trashStorageDirPath", "syncDatabaseFilePath", "generalScriptsDirPath" };
    for (const QString& name : names)
        PreConfiguration::setParameter(name, "/value/of/" + name);
    const QStringList values = { PreConfiguration::getInternalStorageDirectoryPath(),
                                 PreConfiguration::getRemovableStorageDirectoryPath(),
                                 PreConfiguration::getMountingStorageDirectoryPath(),
                                 PreConfiguration::getTrashStorageDirectoryPath(),
                                 PreConfiguration::syncDatabaseFilePath(),
                                 PreConfiguration::getGeneralScriptsDirectoryPath() };
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(values.at(i), "/value/of/" + names.at(i));
}

void TestPreConfiguration::filePathsInsideDirectory()
{
    QCOMPARE(PreConfiguration::backupConfigFilePath("/upd"), QStringLiteral("/upd/configuration_update.zip"));
    PreConfiguration::setParameter("configUpdatePackageFilename", "package.zip");
    PreConfiguration::setParameter("configUpdateFilename", "update.json");
    PreConfiguration::setParameter("configFilename", "configuration.json");
    QCOMPARE(PreConfiguration::backupConfigFilePath("/upd"), QStringLiteral("/upd/package.zip"));
    QCOMPARE(PreConfiguration::configUpdateFilePath("/cfg"), QStringLiteral("/cfg/update.json"));
    QCOMPARE(PreConfiguration::configurationFilePath("/cfg"), QStringLiteral("/cfg/configuration.json"));
}

void TestPreConfiguration::relativeToInternalPath_data()
{
    QTest::addColumn<QString>("root");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("absolute under the root loses the root") << "/data/internal" << QVariant("/data/internal/sequences") << "sequences";
    QTest::newRow("root with a trailing separator") << "/data/internal/" << QVariant("/data/internal/a/b") << "a/b";
    QTest::newRow("the root itself") << "/data/internal" << QVariant("/data/internal/") << "";
    QTest::newRow("unclean path is normalised") << "/data/internal" << QVariant("/data/internal/x/../media") << "media";
    QTest::newRow("same prefix but another directory") << "/data/internal" << QVariant("/data/internalX/a") << "/data/internalX/a";
    QTest::newRow("outside the root is kept") << "/data/internal" << QVariant("/other/a") << "/other/a";
    QTest::newRow("relative is kept") << "/data/internal" << QVariant("reports/pdf") << "reports/pdf";
    QTest::newRow("absent parameter") << "/data/internal" << QVariant() << "";
}

void TestPreConfiguration::relativeToInternalPath()
{
    QFETCH(QString, root);
    QFETCH(QVariant, value);
    QFETCH(QString, expected);
    PreConfiguration::setParameter("internalStorageDirPath", root);
    if (value.isValid())
        PreConfiguration::setParameter("sequencesDirPath", value);
    QCOMPARE(PreConfiguration::getRelativeToInternalPath("sequencesDirPath"), expected);
}

QTEST_GUILESS_MAIN(TestPreConfiguration)
#include "tst_preconfiguration.moc"
