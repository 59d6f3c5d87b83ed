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
    void initTestCase() { DZuConfiguration::setTimeZoneCommand(QStringLiteral("true")); }
    void init();
    void cleanup();
    void publishedAndBound();
    void qmlWritesAndCallsReachTheService();

private:
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<GuiEngine> m_guiEngine;
    std::unique_ptr<TestStation> m_station;
    std::unique_ptr<DZuConfiguration> m_config;
    std::unique_ptr<QObject> m_client;
};

void TestDZuConfigurationQml::init()
{
    m_engine = std::make_unique<QQmlEngine>();
    m_guiEngine = std::make_unique<GuiEngine>(m_engine.get());
    m_station = std::make_unique<TestStation>();
    QVERIFY(m_station->writeText(R"({"general": {"workplace_name": "Loaded", "sound_volume": 60},
                                     "validators": {"max": 12}})"));
    m_config = m_station->create();
    QQmlComponent component(m_engine.get(), QUrl::fromLocalFile(STATION_TEST_QML_DIR "/ZuConfigClient.qml"));
    m_client.reset(component.create());
    QVERIFY2(m_client, qPrintable(component.errorString()));
}

void TestDZuConfigurationQml::cleanup()
{
    m_client.reset();
    m_config.reset();
    m_station.reset();
    m_guiEngine.reset();
    m_engine.reset();
}

void TestDZuConfigurationQml::publishedAndBound()
{
    QQmlContext* context = m_engine->rootContext();
    QCOMPARE(context->contextProperty("zuConfig").value<QObject*>(), m_config.get());
    QCOMPARE(m_client->property("folders").value<QObject*>(), m_config->directories());
    QCOMPARE(m_client->property("clock").value<QObject*>(), m_config->dateTime());
    QCOMPARE(m_client->property("workplace").toString(), QString("Loaded"));
    QCOMPARE(m_client->property("volume").toInt(), 60);
    QCOMPARE(m_client->property("is24h").toBool(), true);

    m_config->setWorkplaceName("Changed in C++");
    m_config->setSoundVolume(-1);
    m_config->setFormats("12 h", "DD/MM/YYYY");
    QCOMPARE(m_client->property("workplace").toString(), QString("Changed in C++"));
    QCOMPARE(m_client->property("volume").toInt(), 100);
    QCOMPARE(m_client->property("is24h").toBool(), false);
}

void TestDZuConfigurationQml::qmlWritesAndCallsReachTheService()
{
    QVariant result;
    QVERIFY(QMetaObject::invokeMethod(m_client.get(), "writeSettings", Q_RETURN_ARG(QVariant, result)));
    QCOMPARE(m_config->workplaceName(), QString("Written from QML"));
    QCOMPARE(m_config->storedSoundVolume(), 100);
    QVERIFY(m_config->displayDate());
    QCOMPARE(m_config->customNtp(), QString("ntp.qml"));
    QCOMPARE(m_config->storedSequenceScriptPath(), QString("launch.js"));
    QCOMPARE(result.toString(), m_config->mediaDirectoryPath() + "/launch.js");
    QCOMPARE(m_config->currentHourFormat(), QString("12 h"));
    QCOMPARE(m_config->currentDateFormat(), QString("YYYY-MM-DD"));
    QCOMPARE(m_config->skipComments(), QStringList{"From QML"});
    QCOMPARE(m_config->validators().value("serial").toString(), QString("^[A-Z]+$"));
    QCOMPARE(m_client->property("workplace").toString(), QString("Written from QML"));
    QCOMPARE(m_client->property("is24h").toBool(), false);
    QCOMPARE(m_client->property("skipCount").toInt(), 1);

    for (int code : {4, 0}) {
        QVERIFY(QMetaObject::invokeMethod(m_client.get(), "addRelation", Q_RETURN_ARG(QVariant, result),
                                          Q_ARG(QVariant, code), Q_ARG(QVariant, "front")));
        QCOMPARE(result.toBool(), code > 0);
    }
    QCOMPARE(m_client->property("relationCount").toInt(), 1);
    QVERIFY(QMetaObject::invokeMethod(m_client.get(), "validator", Q_RETURN_ARG(QVariant, result),
                                      Q_ARG(QVariant, QString("max"))));
    QCOMPARE(result.toString(), QString("12"));
}

QTEST_GUILESS_MAIN(TestDZuConfigurationQml)
#include "tst_dzuconfiguration_qml.moc"
