// The process-wide instance: its own executable, since initInstance creates it once per process.
#include "teststation.h"

#include "access/accesscontrolmanager.h"

#include <KZip>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QtTest>

class TestDZuConfigurationInstance : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void firstCallCreatesFromPreConfigurationSecondReturnsIt();
    void directoriesIsUncreatableInQml();
};

void TestDZuConfigurationInstance::firstCallCreatesFromPreConfigurationSecondReturnsIt()
{
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("true"));
    TestStation station;
    PreConfiguration::setParameter("isEditorOnly", true);
    PreConfiguration::setParameter("elementsFilename", "elements.json");
    PreConfiguration::setParameter("configUpdateFilename", "configuration_update.json");
    QVERIFY(station.writeText(R"({"general": {"workplace_name": "Instance"},
        "regionalSettings": {"dateFormat": "YYYY-MM-DD"}, "users": [{"name": "admin", "level": 3, "expiry": "2031-01-01"}]})"));
    // A valid update package waits in the update folder.
    const QString updateFolder = PreConfiguration::getParameter("systemUpdateFolder").toString();
    QVERIFY(QDir().mkpath(updateFolder));
    const QString package = PreConfiguration::backupConfigFilePath(updateFolder);
    KZip zip(package);
    QVERIFY(zip.open(QIODevice::WriteOnly));
    QVERIFY(zip.writeFile("elements.json", R"({"elements": []})"));
    QVERIFY(zip.writeFile("configuration_update.json", R"({"general": {"workplace_name": "Updated"}})"));
    QVERIFY(zip.close());

    AccessControlManager firstAccessControl, secondAccessControl;
    QVERIFY(!DZuConfiguration::getInstance());
    DZuConfiguration* config = DZuConfiguration::initInstance(&firstAccessControl);
    QVERIFY(config);
    QCOMPARE(DZuConfiguration::getInstance(), config);
    QCOMPARE(config->objectName(), QString("ZuConfiguration"));
    QCOMPARE(config->configurationDirectoryPath(), station.configDir());
    QCOMPARE(config->workplaceName(), QString("Instance"));
    // Editor-only: the package was not looked for, so nothing of it was applied.
    QVERIFY(QFile::exists(package));
    QVERIFY(!QFile::exists(station.configDir() + "/elements.json"));
    // The same package is applied when processed: the check above was not vacuous.
    DZuConfiguration::processConfigurationUpdate(package, station.configDir());
    QVERIFY(QFile::exists(station.configDir() + "/elements.json"));
    QVERIFY(!QFile::exists(package));

    PreConfiguration::setParameter("configFilename", "other.json");
    QCOMPARE(DZuConfiguration::initInstance(&secondAccessControl), config);
    QCOMPARE(config->configurationFileName(), QString(TestStation::C_fileName));
    // The access control of the first call is the one in use.
    config->loadUsers();
    QCOMPARE(firstAccessControl.users().size(), 1);
    QVERIFY(secondAccessControl.users().isEmpty());
}

void TestDZuConfigurationInstance::directoriesIsUncreatableInQml()
{
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import App 1.0\nDirectories {}\n", QUrl());
    QVERIFY(component.isError());
    QVERIFY2(component.errorString().contains("interface"), qPrintable(component.errorString()));
}

QTEST_GUILESS_MAIN(TestDZuConfigurationInstance)
#include "tst_dzuconfiguration_instance.moc"
