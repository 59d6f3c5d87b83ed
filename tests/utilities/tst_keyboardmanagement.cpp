#include "utilities/keyboardmanagement.h"

#include <QtTest>

class TestKeyboardManagement : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void layoutsInTableOrder();
    void setByCode_data();
    void setByCode();
    void setByName_data();
    void setByName();
};

void TestKeyboardManagement::init()
{
    QVERIFY(KeyboardManagement::instance()->setCurrentKeyboardLayoutCode("gb", false));
}

void TestKeyboardManagement::layoutsInTableOrder()
{
    QCOMPARE(KeyboardManagement::instance()->getKeyboardLayouts(),
             QStringList({ "English (UK)", "English (US)", QString::fromUtf8("Fran\xc3\xa7" "ais"), "Deutsch",
                           QString::fromUtf8("Espa\xc3\xb1ol"), "Italiano" }));
}

void TestKeyboardManagement::setByCode_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("apply");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("changes");
    QTest::newRow("known code without applying") << "fr" << false << true << QString::fromUtf8("Fran\xc3\xa7" "ais") << 1;
    QTest::newRow("known code applied") << "de" << true << true << "Deutsch" << 1;
    QTest::newRow("current code again, applied") << "gb" << true << true << "English (UK)" << 0;
    QTest::newRow("unknown code") << "xx" << true << false << "English (UK)" << 0;
    QTest::newRow("codes are lower case") << "FR" << false << false << "English (UK)" << 0;
    QTest::newRow("empty code") << "" << false << false << "English (UK)" << 0;
}

void TestKeyboardManagement::setByCode()
{
    QFETCH(QString, code);
    QFETCH(bool, apply);
    QFETCH(bool, ok);
    QFETCH(QString, name);
    QFETCH(int, changes);
    auto* keyboards = KeyboardManagement::instance();
    QSignalSpy changed(keyboards, &KeyboardManagement::currentKeyboardLayoutChanged);
    QSignalSpy applied(keyboards, &KeyboardManagement::keyboardLayoutApplied);
    QCOMPARE(keyboards->setCurrentKeyboardLayoutCode(code, apply), ok);
    QCOMPARE(keyboards->getCurrentKeyboardLayout(), name);
    QCOMPARE(changed.count(), changes);
    QCOMPARE(applied.count(), ok && apply ? 1 : 0);
    if (!applied.isEmpty())
        QCOMPARE(applied.first().first().toString(), code);
}

void TestKeyboardManagement::setByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("code");
    QTest::newRow("known name") << "English (US)" << true << "us";
    QTest::newRow("non-ASCII name") << QString::fromUtf8("Espa\xc3\xb1ol") << true << "es";
    QTest::newRow("unknown name") << "Klingon" << false << "gb";
    QTest::newRow("a code is not a name") << "it" << false << "gb";
}

void TestKeyboardManagement::setByName()
{
    QFETCH(QString, name);
    QFETCH(bool, ok);
    QFETCH(QString, code);
    auto* keyboards = KeyboardManagement::instance();
    QSignalSpy applied(keyboards, &KeyboardManagement::keyboardLayoutApplied);
    QCOMPARE(keyboards->setCurrentKeyboardLayout(name), ok);
    QCOMPARE(keyboards->getCurrentKeyboardLayoutCode(), code);
    QCOMPARE(applied.count(), 0);
}

QTEST_GUILESS_MAIN(TestKeyboardManagement)
#include "tst_keyboardmanagement.moc"
