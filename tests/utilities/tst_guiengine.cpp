#include "utilities/guiengine.h"

#include <QQmlEngine>
#include <QtTest>

class TestGuiEngine : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void instanceFollowsLifetime();
    void setsRootContextProperties();
};

void TestGuiEngine::instanceFollowsLifetime()
{
    QCOMPARE(GuiEngine::instance(), nullptr);
    auto* qmlEngine = new QQmlEngine;
    {
        GuiEngine engine(qmlEngine);
        QCOMPARE(GuiEngine::instance(), &engine);
        QVERIFY(engine.isValid());
        delete qmlEngine;
        QVERIFY(!engine.isValid());
        QCOMPARE(engine.engine(), nullptr);
        engine.setContextProperties({ { "x", 1 } });   // no engine: nothing happens
    }
    QCOMPARE(GuiEngine::instance(), nullptr);
}

void TestGuiEngine::setsRootContextProperties()
{
    QQmlEngine qmlEngine;
    GuiEngine engine(&qmlEngine);
    QObject object;
    engine.setContextProperties({ { "zuConfig", QVariant::fromValue(&object) }, { "answer", 42 } });
    QCOMPARE(qmlEngine.rootContext()->contextProperty("zuConfig").value<QObject*>(), &object);
    QCOMPARE(qmlEngine.rootContext()->contextProperty("answer").toInt(), 42);
}

QTEST_GUILESS_MAIN(TestGuiEngine)
#include "tst_guiengine.moc"
