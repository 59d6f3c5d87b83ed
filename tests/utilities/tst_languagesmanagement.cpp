#include "utilities/languagesmanagement.h"

#include <QtTest>

class TestLanguagesManagement : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void tableInKeyOrder();
    void setByCode_data();
    void setByCode();
    void setByNameAndUnknownName();
};

void TestLanguagesManagement::initTestCase()
{
    LanguagesManagement::instance()->setCatalogueDirectory(QStringLiteral(STATION_TEST_CATALOGUES));
}

void TestLanguagesManagement::init()
{
    QVERIFY(LanguagesManagement::instance()->setCurrentLanguageCode("en_GB"));
    QCOMPARE(qtTrId("Test_hello"), QStringLiteral("Test_hello"));
}

void TestLanguagesManagement::tableInKeyOrder()
{
    const auto& table = LanguagesManagement::instance()->languageTable();
    QCOMPARE(table.keys(), QStringList({ "Deutsch", "English", QString::fromUtf8("Espa\xc3\xb1ol"),
                                         QString::fromUtf8("Fran\xc3\xa7" "ais"), "Italiano" }));
    QCOMPARE(table.value("English"), QStringLiteral("en_GB"));
    QCOMPARE(table.value("Italiano"), QStringLiteral("it_IT"));
}

void TestLanguagesManagement::setByCode_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("translated");
    QTest::newRow("catalogue for the full code") << "fr_FR" << true << QString::fromUtf8("Fran\xc3\xa7" "ais") << "Bonjour";
    QTest::newRow("catalogue for the language only") << "it_IT" << true << "Italiano" << "Ciao";
    QTest::newRow("no catalogue: untranslated") << "de_DE" << true << "Deutsch" << "Test_hello";
    QTest::newRow("unknown code keeps English") << "fr_CA" << false << "English" << "Test_hello";
    QTest::newRow("a name is not a code") << "Deutsch" << false << "English" << "Test_hello";
}

void TestLanguagesManagement::setByCode()
{
    QFETCH(QString, code);
    QFETCH(bool, ok);
    QFETCH(QString, language);
    QFETCH(QString, translated);
    auto* languages = LanguagesManagement::instance();
    QSignalSpy changed(languages, &LanguagesManagement::currentLanguageChanged);
    QCOMPARE(languages->setCurrentLanguageCode(code), ok);
    QCOMPARE(languages->getCurrentLanguage(), language);
    QCOMPARE(changed.count(), ok ? 1 : 0);
    QCOMPARE(qtTrId("Test_hello"), translated);
}

void TestLanguagesManagement::setByNameAndUnknownName()
{
    auto* languages = LanguagesManagement::instance();
    QVERIFY(languages->setCurrentLanguage(QString::fromUtf8("Fran\xc3\xa7" "ais")));
    QCOMPARE(languages->getCurrentLanguageCode(), QStringLiteral("fr_FR"));
    QCOMPARE(qtTrId("Test_hello"), QStringLiteral("Bonjour"));
    QVERIFY(!languages->setCurrentLanguage("fr_FR"));
    QCOMPARE(languages->getCurrentLanguageCode(), QStringLiteral("fr_FR"));
    // Going back to a language without catalogue removes the previous one.
    QVERIFY(languages->setCurrentLanguage("English"));
    QCOMPARE(qtTrId("Test_hello"), QStringLiteral("Test_hello"));
}

QTEST_GUILESS_MAIN(TestLanguagesManagement)
#include "tst_languagesmanagement.moc"
