// The service as the user interface sees it: a QML file in a real engine.
#include "teststation.h"

#include "utilities/guiengine.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QtTest>

class TestDZuConfigurationQml : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void contextPropertiesArePublished();
    void bindingsFollowTheService();
    void qmlWritesAndCallsReachTheService();
    void invokables_data();
    void invokables();

private:
    std::unique_ptr<QObject> createClient(QQmlEngine& engine);
};

void TestDZuConfigurationQml::initTestCase()
{
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("true"));
}

std::unique_ptr<QObject> TestDZuConfigurationQml::createClient(QQmlEngine& engine)
{
    QQmlComponent component(&engine, QUrl::fromLocalFile(QStringLiteral(STATION_TEST_QML_DIR "/ZuConfigClient.qml")));
    std::unique_ptr<QObject> client(component.create());
    if (!client)
        qWarning() << component.errorString();
    return client;
}

void TestDZuConfigurationQml::contextPropertiesArePublished()
{
    QQmlEngine engine;
    GuiEngine guiEngine(&engine);
    TestStation station;
    auto config = station.create();
    QQmlContext* context = engine.rootContext();
    QCOMPARE(context->contextProperty("zuConfig").value<QObject*>(), config.get());
    QCOMPARE(context->contextProperty("directories").value<QObject*>(), config->directories());
    QCOMPARE(context->contextProperty("dateTime").value<QObject*>(), config->dateTime());

    auto client = createClient(engine);
    QVERIFY(client);
    QCOMPARE(client->property("folders").value<QObject*>(), config->directories());
    QCOMPARE(client->property("clock").value<QObject*>(), config->dateTime());
    QCOMPARE(client->property("appName").toString(), QString("Kestrin Editor"));
    QCOMPARE(client->property("version").toString(), QString("@VERSION@"));
    QCOMPARE(client->property("dateFormats").toStringList(), (QStringList{"DD/MM/YYYY", "MM/DD/YYYY", "YYYY-MM-DD"}));
}

void TestDZuConfigurationQml::bindingsFollowTheService()
{
    QQmlEngine engine;
    GuiEngine guiEngine(&engine);
    TestStation station;
    QVERIFY(station.writeText(R"({"general": {"workplace_name": "Loaded", "sound_volume": 60}})"));
    auto config = station.create();
    auto client = createClient(engine);
    QVERIFY(client);
    QCOMPARE(client->property("workplace").toString(), QString("Loaded"));
    QCOMPARE(client->property("volume").toInt(), 60);
    QCOMPARE(client->property("is24h").toBool(), true);

    config->setWorkplaceName("Changed in C++");
    config->setSoundVolume(-1);
    config->setFormats("12 h", "DD/MM/YYYY");
    QCOMPARE(client->property("workplace").toString(), QString("Changed in C++"));
    QCOMPARE(client->property("volume").toInt(), 100);
    QCOMPARE(client->property("is24h").toBool(), false);
}

void TestDZuConfigurationQml::qmlWritesAndCallsReachTheService()
{
    QQmlEngine engine;
    GuiEngine guiEngine(&engine);
    TestStation station;
    auto config = station.create();
    auto client = createClient(engine);
    QVERIFY(client);

    QVariant scriptPath;
    QVERIFY(QMetaObject::invokeMethod(client.get(), "writeSettings", Q_RETURN_ARG(QVariant, scriptPath)));
    QCOMPARE(config->workplaceName(), QString("Written from QML"));
    QCOMPARE(config->storedSoundVolume(), 100);
    QVERIFY(config->displayDate());
    QCOMPARE(config->customNtp(), QString("ntp.qml"));
    QCOMPARE(config->storedSequenceScriptPath(), QString("launch.js"));
    QCOMPARE(scriptPath.toString(), config->mediaDirectoryPath() + "/launch.js");
    QCOMPARE(config->currentHourFormat(), QString("12 h"));
    QCOMPARE(config->currentDateFormat(), QString("YYYY-MM-DD"));
    QCOMPARE(config->skipComments(), QStringList{"From QML"});
    QCOMPARE(config->validators().value("serial").toString(), QString("^[A-Z]+$"));
    // Bindings saw the same changes.
    QCOMPARE(client->property("workplace").toString(), QString("Written from QML"));
    QCOMPARE(client->property("is24h").toBool(), false);
    QCOMPARE(client->property("skipCount").toInt(), 1);
}

void TestDZuConfigurationQml::invokables_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("added");
    QTest::newRow("positive code is added") << 4 << "front" << true;
    QTest::newRow("code 0 is refused") << 0 << "front" << false;
    QTest::newRow("empty name is refused") << 4 << "" << false;
}

void TestDZuConfigurationQml::invokables()
{
    QFETCH(int, code);
    QFETCH(QString, name);
    QFETCH(bool, added);
    QQmlEngine engine;
    GuiEngine guiEngine(&engine);
    TestStation station;
    QVERIFY(station.writeText(R"({"validators": {"max": 12}})"));
    auto config = station.create();
    auto client = createClient(engine);
    QVERIFY(client);
    QSignalSpy relationChanged(config.get(), &DZuConfiguration::sigSequenceRelationChanged);

    QVariant result;
    QVERIFY(QMetaObject::invokeMethod(client.get(), "addRelation", Q_RETURN_ARG(QVariant, result),
                                      Q_ARG(QVariant, code), Q_ARG(QVariant, name)));
    QCOMPARE(result.toBool(), added);
    QCOMPARE(config->sequenceIoRelations()->count(), added ? 1 : 0);
    QCOMPARE(client->property("relationCount").toInt(), added ? 1 : 0);
    QCOMPARE(relationChanged.count(), added ? 1 : 0);

    QVERIFY(QMetaObject::invokeMethod(client.get(), "validator", Q_RETURN_ARG(QVariant, result),
                                      Q_ARG(QVariant, QString("max"))));
    QCOMPARE(result.toString(), QString("12"));
}

QTEST_GUILESS_MAIN(TestDZuConfigurationQml)
#include "tst_dzuconfiguration_qml.moc"
