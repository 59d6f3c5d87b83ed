#include "teststation.h"

#include "logcapture.h"

#include <QSignalSpy>
#include <QtTest>

class TestConfigurationTemplates : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void addFile_data();
    void addFile();
    void deleteTemplateFile_data();
    void deleteTemplateFile();
    void saveTemplateParametersStaysInMemory();
    void validators_data();
    void validators();

private:
    std::unique_ptr<TestStation> m_station;
    std::unique_ptr<DZuConfiguration> m_config;
    QString m_templates;
    QString m_media;
};

void TestConfigurationTemplates::init()
{
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("false"));
    m_station = std::make_unique<TestStation>();
    const QString internal = m_station->root() + "/storage/internal/";
    PreConfiguration::setParameter("templatesDirPath", internal + "report_templates");
    PreConfiguration::setParameter("mediaDirPath", internal + "media");
    m_config = m_station->create();
    m_config->loadDirectories();
    m_templates = m_config->directories()->getTemplatesDirectoryPath();
    m_media = m_config->directories()->getMediaDirectoryPath();
    // Both resolve inside the station's internal storage, each to its own directory.
    QVERIFY2(m_templates.startsWith(internal) && m_media.startsWith(internal) && m_templates != m_media,
             qPrintable(m_templates + ' ' + m_media));
    QVERIFY(QDir().mkpath(m_templates) && QDir().mkpath(m_media));
}

void TestConfigurationTemplates::cleanup()
{
    m_config.reset();
    m_station.reset();
}

void TestConfigurationTemplates::addFile_data()
{
    QTest::addColumn<bool>("logo");
    QTest::addColumn<bool>("sourceExists");
    QTest::addColumn<bool>("targetExists");

    for (bool logo : {false, true}) {
        const QByteArray kind = logo ? "logo: " : "template: ";
        QTest::newRow(kind + "copied under its own name") << logo << true << false;
        QTest::newRow(kind + "missing source copies nothing, still signals") << logo << false << false;
        QTest::newRow(kind + "existing file is not overwritten") << logo << true << true;
    }
}

void TestConfigurationTemplates::addFile()
{
    QFETCH(bool, logo);
    QFETCH(bool, sourceExists);
    QFETCH(bool, targetExists);

    const QString name = logo ? "company logo.png" : "report.lrxml";
    const QString source = m_station->root() + "/import/" + name;
    const QString target = (logo ? m_media : m_templates) + '/' + name;
    const QString otherTarget = (logo ? m_templates : m_media) + '/' + name;
    if (sourceExists)
        QVERIFY(writeFile(source, "new content"));
    if (targetExists)
        QVERIFY(writeFile(target, "old content"));
    m_config->setCompanyLogo("previous.png");
    QSignalSpy changed(m_config.get(), &DZuConfiguration::sigConfigurationChanged);
    QSignalSpy listRefreshed(m_config->directories(), &Directories::sigDirectoriesChanged);

    const QString result = logo ? m_config->addCompanyLogo(source) : m_config->addTemplateFile(source);

    QCOMPARE(result, name);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(listRefreshed.count(), logo ? 0 : 1);
    const QByteArray expected = targetExists ? "old content" : sourceExists ? "new content" : "<missing>";
    QCOMPARE(readFile(target), expected);
    QVERIFY(!QFile::exists(otherTarget));
    QCOMPARE(m_config->companyLogo(), QString("previous.png"));   // adding a logo does not choose it
    if (sourceExists)
        QCOMPARE(readFile(source), QByteArray("new content"));
}

void TestConfigurationTemplates::deleteTemplateFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("removed");

    QTest::newRow("existing template removed") << "report.lrxml" << true;
    QTest::newRow("missing template: nothing") << "absent.lrxml" << false;
    QTest::newRow("path outside the directory refused") << "../outside.lrxml" << false;
    QTest::newRow("sub-directory not removed") << "archive" << false;
    QTest::newRow("empty name: nothing") << "" << false;
}

void TestConfigurationTemplates::deleteTemplateFile()
{
    QFETCH(QString, name);
    QFETCH(bool, removed);

    QVERIFY(writeFile(m_templates + "/report.lrxml", "template"));
    QVERIFY(writeFile(m_templates + "/../outside.lrxml", "kept"));
    QVERIFY(QDir().mkpath(m_templates + "/archive"));
    QSignalSpy changed(m_config.get(), &DZuConfiguration::sigConfigurationChanged);
    QSignalSpy listRefreshed(m_config->directories(), &Directories::sigDirectoriesChanged);
    LogCapture log;

    m_config->deleteTemplateFile(name);

    QCOMPARE(QFile::exists(m_templates + "/report.lrxml"), !removed);
    QVERIFY(QFile::exists(m_templates + "/../outside.lrxml"));
    QVERIFY(QFileInfo(m_templates + "/archive").isDir());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(listRefreshed.count(), 0);
    QCOMPARE(log.lines(), QStringList());
}

void TestConfigurationTemplates::saveTemplateParametersStaysInMemory()
{
    const QByteArray onDisk = readFile(m_station->filePath());
    QSignalSpy changed(m_config.get(), &DZuConfiguration::sigConfigurationChanged);

    m_config->saveTemplateParameters("1 Factory Road\nLyon", "Confidential");

    QCOMPARE(m_config->companyAddress(), QString("1 Factory Road\nLyon"));
    QCOMPARE(m_config->reportFooter(), QString("Confidential"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(readFile(m_station->filePath()), onDisk);
}

void TestConfigurationTemplates::validators_data()
{
    QTest::addColumn<QVariantMap>("update");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("count");

    QTest::newRow("unknown name is empty") << QVariantMap{} << "serial" << "" << 1;
    QTest::newRow("existing entry overwritten") << QVariantMap{{"barcode", "^[0-9]{8}$"}} << "barcode" << "^[0-9]{8}$"
                                                << 1;
    QTest::newRow("several entries, others kept")
        << QVariantMap{{"a", true}, {"b", 2.5}} << "barcode" << "^[A-Z]+$" << 3;
    QTest::newRow("empty map changes nothing") << QVariantMap{} << "barcode" << "^[A-Z]+$" << 1;
}

void TestConfigurationTemplates::validators()
{
    QFETCH(QVariantMap, update);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QFETCH(int, count);

    m_config->updateValidator({{"barcode", "^[A-Z]+$"}});
    QSignalSpy changed(m_config.get(), &DZuConfiguration::sigConfigurationChanged);

    m_config->updateValidator(update);

    QCOMPARE(m_config->getValidator(name), expected);
    QCOMPARE(m_config->validators().size(), count);
    for (auto it = update.cbegin(); it != update.cend(); ++it)
        QCOMPARE(m_config->validators().value(it.key()), it.value());
    QCOMPARE(changed.count(), 0);
}

QTEST_GUILESS_MAIN(TestConfigurationTemplates)
#include "tst_configurationtemplates.moc"
