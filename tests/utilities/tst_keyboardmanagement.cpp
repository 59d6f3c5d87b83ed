#include "utilities/keyboardmanagement.h"

#include <QtTest>

class TestKeyboardManagement : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void setLayout_data()
    {
        QTest::addColumn<bool>("byName");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("apply");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("code");
        QTest::addColumn<int>("changes");
        QTest::newRow("known code without applying") << false << "fr" << false << true << "fr" << 1;
        QTest::newRow("known code applied") << false << "de" << true << true << "de" << 1;
        QTest::newRow("current code again, applied") << false << "gb" << true << true << "gb" << 0;
        QTest::newRow("unknown code") << false << "xx" << true << false << "gb" << 0;
        QTest::newRow("codes are lower case") << false << "FR" << false << false << "gb" << 0;
        QTest::newRow("non-ASCII name, never applied") << true << QString::fromUtf8("Espa\xc3\xb1ol") << false << true << "es" << 1;
        QTest::newRow("a code is not a name") << true << "it" << false << false << "gb" << 0;
    }
    void setLayout()
    {
        QFETCH(bool, byName);
        QFETCH(QString, value);
        QFETCH(bool, apply);
        QFETCH(bool, ok);
        QFETCH(QString, code);
        QFETCH(int, changes);
        auto* keyboards = KeyboardManagement::instance();
        QVERIFY(keyboards->setCurrentKeyboardLayoutCode("gb", false));
        QSignalSpy changed(keyboards, &KeyboardManagement::currentKeyboardLayoutChanged);
        QSignalSpy applied(keyboards, &KeyboardManagement::keyboardLayoutApplied);
        QCOMPARE(byName ? keyboards->setCurrentKeyboardLayout(value) : keyboards->setCurrentKeyboardLayoutCode(value, apply), ok);
        QCOMPARE(keyboards->getCurrentKeyboardLayoutCode(), code);
        QCOMPARE(changed.count(), changes);
        QCOMPARE(applied.count(), ok && apply ? 1 : 0);
        if (!applied.isEmpty())
            QCOMPARE(applied.first().first().toString(), code);
    }
};

QTEST_GUILESS_MAIN(TestKeyboardManagement)
#include "tst_keyboardmanagement.moc"
