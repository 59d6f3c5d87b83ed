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
    void initTestCase();
    void firstCallCreatesFromPreConfiguration();
    void secondCallReturnsTheFirstInstance();
    void directoriesIsUncreatableInQml();

private:
    TestStation m_station;
    QString m_package;
    AccessControlManager m_firstAccessControl;
    AccessControlManager m_secondAccessControl;
};

void TestDZuConfigurationInstance::initTestCase()
{
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("true"));
    QVERIFY(m_station.isValid());
    PreConfiguration::setParameter("isEditorOnly", true);
    PreConfiguration::setParameter("elementsFilename", "elements.json");
    PreConfiguration::setParameter("configUpdateFilename", "configuration_update.json");
    QVERIFY(m_station.writeText(R"({"general": {"workplace_name": "Instance"},
        "regionalSettings": {"dateFormat": "YYYY-MM-DD"},
        "users": [{"name": "admin", "level": 3, "expiry": "2031-01-01"}]})"));

    // A valid update package waits in the update folder.
    const QString updateFolder = PreConfiguration::getParameter("systemUpdateFolder").toString();
    QVERIFY(QDir().mkpath(updateFolder));
    m_package = PreConfiguration::backupConfigFilePath(updateFolder);
    KZip zip(m_package);
    QVERIFY(zip.open(QIODevice::WriteOnly));
    QVERIFY(zip.writeFile("elements.json", R"({"elements": []})"));
    QVERIFY(zip.writeFile("configuration_update.json", R"({"general": {"workplace_name": "Updated"}})"));
    QVERIFY(zip.close());
}

void TestDZuConfigurationInstance::firstCallCreatesFromPreConfiguration()
{
    QVERIFY(!DZuConfiguration::getInstance());
    DZuConfiguration* config = DZuConfiguration::initInstance(&m_firstAccessControl);
    QVERIFY(config);
    QCOMPARE(DZuConfiguration::getInstance(), config);
    QCOMPARE(config->objectName(), QString("ZuConfiguration"));
    QCOMPARE(config->configurationDirectoryPath(), m_station.configDir());
    QCOMPARE(config->workplaceName(), QString("Instance"));

    // Editor-only: the package was not looked for, so nothing of it was applied.
    QVERIFY(QFile::exists(m_package));
    QVERIFY(!QFile::exists(m_station.configDir() + "/elements.json"));

    // The same package is applied when processed: the check above was not vacuous.
    DZuConfiguration::processConfigurationUpdate(m_package, m_station.configDir());
    QVERIFY(QFile::exists(m_station.configDir() + "/elements.json"));
    QVERIFY(!QFile::exists(m_package));
}

void TestDZuConfigurationInstance::secondCallReturnsTheFirstInstance()
{
    DZuConfiguration* first = DZuConfiguration::getInstance();
    QVERIFY(first);
    PreConfiguration::setParameter("configFilename", "other.json");
    QCOMPARE(DZuConfiguration::initInstance(&m_secondAccessControl), first);
    QCOMPARE(first->configurationFileName(), QString(TestStation::C_fileName));

    // The access control of the first call is the one in use.
    first->loadUsers();
    QCOMPARE(m_firstAccessControl.users().size(), 1);
    QVERIFY(m_secondAccessControl.users().isEmpty());
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
