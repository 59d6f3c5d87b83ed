#include "utilities/languagesmanagement.h"

#include <QtTest>

class TestLanguagesManagement : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        LanguagesManagement::instance()->setCatalogueDirectory(QStringLiteral(STATION_TEST_CATALOGUES));
    }

    void setLanguage_data()
    {
        QTest::addColumn<bool>("byName");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("translated");
        QTest::newRow("catalogue for the full code") << false << "fr_FR" << true << "fr_FR" << "Bonjour";
        QTest::newRow("catalogue for the language only") << false << "it_IT" << true << "it_IT" << "Ciao";
        QTest::newRow("no catalogue: untranslated") << false << "de_DE" << true << "de_DE" << "Test_hello";
        QTest::newRow("unknown code keeps English") << false << "fr_CA" << false << "en_GB" << "Test_hello";
        QTest::newRow("by name") << true << QString::fromUtf8("Fran\xc3\xa7" "ais") << true << "fr_FR" << "Bonjour";
        QTest::newRow("a code is not a name") << true << "fr_FR" << false << "en_GB" << "Test_hello";
    }
    void setLanguage()
    {
        QFETCH(bool, byName);
        QFETCH(QString, value);
        QFETCH(bool, ok);
        QFETCH(QString, code);
        QFETCH(QString, translated);
        auto* languages = LanguagesManagement::instance();
        // Starting from French also proves that a language without catalogue removes the previous one.
        QVERIFY(languages->setCurrentLanguageCode("fr_FR"));
        QVERIFY(languages->setCurrentLanguage("English"));
        QCOMPARE(qtTrId("Test_hello"), QStringLiteral("Test_hello"));
        QSignalSpy changed(languages, &LanguagesManagement::currentLanguageChanged);
        QCOMPARE(byName ? languages->setCurrentLanguage(value) : languages->setCurrentLanguageCode(value), ok);
        QCOMPARE(languages->getCurrentLanguageCode(), code);
        QCOMPARE(changed.count(), ok ? 1 : 0);
        QCOMPARE(qtTrId("Test_hello"), translated);
    }
};

QTEST_GUILESS_MAIN(TestLanguagesManagement)
#include "tst_languagesmanagement.moc"
