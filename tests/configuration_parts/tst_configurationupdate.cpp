#include "teststation.h"

#include "logcapture.h"

#include <KZip>
#include <QtTest>

namespace {
using Entries = QList<QPair<QString, QByteArray>>;

const QByteArray C_configuration = R"({"keep": 1, "regionalSettings": {"city": "Paris", "region": "Europe"}})";
const QByteArray C_elements = R"({"elements": ["screwdriver"]})";
const QByteArray C_update = R"({"regionalSettings": {"city": "Berlin"}, "added": true})";
const QByteArray C_merged = R"({"added": true, "keep": 1, "regionalSettings": {"city": "Berlin", "region": "Europe"}})";
const QByteArray C_pictureBytes = QByteArray::fromHex("89504e470d0a1a0a0000000d49484452");

// Compares JSON documents whatever their layout.
QByteArray canonical(const QByteArray& json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    return document.isNull() ? json : document.toJson(QJsonDocument::Compact);
}

bool buildArchive(const QString& path, const Entries& entries)
{
    KZip zip(path);
    bool written = zip.open(QIODevice::WriteOnly);
    for (const auto& entry : entries)
        written = written && zip.writeFile(entry.first, entry.second);
    return zip.close() && written;
}

// Names in the directory, sorted and joined with ","; "" for an empty directory.
QString namesIn(const QString& directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name).join(',');
}
}

class TestConfigurationUpdate : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void package_data();
    void package();
    void temporaryDirectoryFailureKeepsPackage();
    void unreadablePackageIsKeptForNextStart_data();
    void unreadablePackageIsKeptForNextStart();
    void entriesCannotEscapeTheExtractionDirectory();

private:
    QString packagePath() const { return m_root->filePath("update/configuration_update.zip"); }
    QString configDir() const { return m_root->filePath("config"); }
    QString config(const char* name) const { return configDir() + '/' + QLatin1String(name); }
    QString tempRoot() const { return m_root->filePath("tmp"); }

    std::unique_ptr<QTemporaryDir> m_root;
    QByteArray m_savedTmpDir;
};

void TestConfigurationUpdate::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(m_root->isValid());
    for (const char* sub : {"config", "update", "tmp"})
        QVERIFY(QDir(m_root->path()).mkpath(sub));
    // The package is unpacked below QDir::tempPath(): keep that inside the test directory.
    m_savedTmpDir = qgetenv("TMPDIR");
    qputenv("TMPDIR", tempRoot().toUtf8());
    QCOMPARE(QDir::tempPath(), tempRoot());

    PreConfiguration::clear();
    PreConfiguration::setParameter("elementsFilename", "elements.json");
    PreConfiguration::setParameter("configUpdateFilename", "configuration_update.json");
    PreConfiguration::setParameter("configFilename", "settings.json");
    QVERIFY(writeFile(config("settings.json"), C_configuration));
}

void TestConfigurationUpdate::cleanup()
{
    qputenv("TMPDIR", m_savedTmpDir);
    PreConfiguration::clear();
    m_root.reset();
}

void TestConfigurationUpdate::package_data()
{
    QTest::addColumn<Entries>("entries");
    QTest::addColumn<QByteArray>("leftUpdate");   // update file already in the directory
    QTest::addColumn<QStringList>("configFiles");
    QTest::addColumn<QByteArray>("elements");
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QStringList>("warnedNames");

    QTest::newRow("elements, update and picture: picture left out, update merged and deleted")
        << Entries{{"elements.json", C_elements}, {"configuration_update.json", C_update}, {"logo.png", C_pictureBytes}}
        << QByteArray() << QStringList{"elements.json", "settings.json"} << C_elements << C_merged
        << QStringList{"logo.png"};
    QTest::newRow("only elements: replaced, no merge")
        << Entries{{"elements.json", C_elements}} << QByteArray()
        << QStringList{"elements.json", "settings.json"} << C_elements << C_configuration << QStringList{};
    QTest::newRow("only elements: update left from before is merged")
        << Entries{{"elements.json", C_elements}} << C_update
        << QStringList{"elements.json", "settings.json"} << C_elements << C_merged << QStringList{};
    QTest::newRow("broken update JSON: not copied, no merge")
        << Entries{{"elements.json", C_elements}, {"configuration_update.json", "{\"added\": tr"}} << QByteArray()
        << QStringList{"elements.json", "settings.json"} << C_elements << C_configuration << QStringList{};
    QTest::newRow("broken elements JSON: older copy kept")
        << Entries{{"elements.json", "not json"}} << QByteArray()
        << QStringList{"elements.json", "settings.json"} << QByteArray(R"({"old": 1})") << C_configuration
        << QStringList{};
}

void TestConfigurationUpdate::package()
{
    QFETCH(Entries, entries);
    QFETCH(QByteArray, leftUpdate);
    QFETCH(QStringList, configFiles);
    QFETCH(QByteArray, elements);
    QFETCH(QByteArray, settings);
    QFETCH(QStringList, warnedNames);

    QVERIFY(writeFile(config("elements.json"), R"({"old": 1})"));
    if (!leftUpdate.isEmpty())
        QVERIFY(writeFile(config("configuration_update.json"), leftUpdate));
    QVERIFY(buildArchive(packagePath(), entries));
    LogCapture log;

    DZuConfiguration::processConfigurationUpdate(packagePath(), configDir());

    QCOMPARE(namesIn(configDir()), configFiles.join(','));
    QCOMPARE(canonical(readFile(config("elements.json"))), canonical(elements));
    QCOMPARE(canonical(readFile(config("settings.json"))), canonical(settings));
    QVERIFY(!QFile::exists(packagePath()));
    QCOMPARE(namesIn(tempRoot()), QString());   // extraction directory removed

    const QStringList warnings = log.matching("WARNING: unexpected file ignored in configuration update:");
    QCOMPARE(warnings.size(), warnedNames.size());
    for (const QString& name : warnedNames) {
        QCOMPARE(log.count("WARNING: unexpected file ignored in configuration update: " + name), 1);
        QVERIFY(log.matching(name).first().contains("This =static;\tlib_configuration/source/d_zu_configuration;\t"));
    }
    QCOMPARE(log.count("ERROR"), 0);
}

void TestConfigurationUpdate::temporaryDirectoryFailureKeepsPackage()
{
    // A temporary path below a plain file cannot be created, whoever runs the test.
    QVERIFY(writeFile(m_root->filePath("plain"), "file"));
    qputenv("TMPDIR", m_root->filePath("plain").toUtf8());
    QVERIFY(buildArchive(packagePath(), {{"elements.json", C_elements}}));
    LogCapture log;

    DZuConfiguration::processConfigurationUpdate(packagePath(), configDir());

    const QStringList lines = log.matching("ERROR: Unable to create temporary directory: " + m_root->filePath("plain/{"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(QFile::exists(packagePath()));
    QCOMPARE(namesIn(configDir()), QString("settings.json"));
}

void TestConfigurationUpdate::unreadablePackageIsKeptForNextStart_data()
{
    QTest::addColumn<QByteArray>("bytes");   // null: no package at all
    QTest::newRow("truncated archive") << QByteArray("PK\x03\x04\x14\x00\x00\x00", 8);
    QTest::newRow("missing package only logs") << QByteArray();
}

void TestConfigurationUpdate::unreadablePackageIsKeptForNextStart()
{
    QFETCH(QByteArray, bytes);
    if (!bytes.isNull())
        QVERIFY(writeFile(packagePath(), bytes));
    QVERIFY(writeFile(config("configuration_update.json"), C_update));
    LogCapture log;

    DZuConfiguration::processConfigurationUpdate(packagePath(), configDir());

    if (bytes.isNull()) {
        QCOMPARE(log.count("ERROR: Configuration file not found: " + packagePath()), 1);
        QCOMPARE(namesIn(tempRoot()), QString());
    } else {
        QCOMPARE(log.count("ERROR: Cannot open update zip file: " + packagePath()), 1);
        QCOMPARE(readFile(packagePath()), bytes);
        // Leaves its (empty) extraction directory behind.
        const QString left = namesIn(tempRoot());
        QVERIFY2(QRegularExpression("^\\{[0-9a-f-]{36}\\}$").match(left).hasMatch(), qPrintable(left));
    }
    // Stops before the merge.
    QCOMPARE(canonical(readFile(config("settings.json"))), canonical(C_configuration));
    QCOMPARE(namesIn(configDir()), QString("configuration_update.json,settings.json"));
}

// Regression: a package must not be able to write next to the extraction directory or
// anywhere else by naming its entries "../x" or "/abs/x".
void TestConfigurationUpdate::entriesCannotEscapeTheExtractionDirectory()
{
    const QString outside = m_root->filePath("outside");
    QVERIFY(QDir().mkpath(outside));
    const QString absoluteTarget = outside + "/elements.json";
    QVERIFY(buildArchive(packagePath(), {{"../elements.json", C_update},
                                         {"../../config/configuration_update.json", C_update},
                                         {absoluteTarget, C_update},
                                         {"sub/../../escape.json", C_update},
                                         {"elements.json", C_elements}}));
    LogCapture log;

    DZuConfiguration::processConfigurationUpdate(packagePath(), configDir());

    QCOMPARE(namesIn(outside), QString());
    QCOMPARE(namesIn(tempRoot()), QString());
    QCOMPARE(namesIn(m_root->path()), QString("config,outside,tmp,update"));
    QCOMPARE(namesIn(configDir()), QString("elements.json,settings.json"));
    QCOMPARE(canonical(readFile(config("elements.json"))), canonical(C_elements));
    QCOMPARE(canonical(readFile(config("settings.json"))), canonical(C_configuration));
    QVERIFY(!QFile::exists(packagePath()));
}

QTEST_GUILESS_MAIN(TestConfigurationUpdate)
#include "tst_configurationupdate.moc"
