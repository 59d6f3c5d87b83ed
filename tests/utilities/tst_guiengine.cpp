#include "utilities/guiengine.h"

#include <QQmlEngine>
#include <QtTest>

class TestGuiEngine : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void instanceFollowsLifetime()
    {
        QCOMPARE(GuiEngine::instance(), nullptr);
        auto* qmlEngine = new QQmlEngine;
        {
            GuiEngine engine(qmlEngine);
            QCOMPARE(GuiEngine::instance(), &engine);
            engine.setContextProperties({ { "answer", 42 } });
            QCOMPARE(qmlEngine->rootContext()->contextProperty("answer").toInt(), 42);
            delete qmlEngine;
            QVERIFY(!engine.isValid());
            QCOMPARE(engine.engine(), nullptr);
            engine.setContextProperties({ { "x", 1 } });   // no engine: nothing happens
        }
        QCOMPARE(GuiEngine::instance(), nullptr);
    }
};

QTEST_GUILESS_MAIN(TestGuiEngine)
#include "tst_guiengine.moc"
