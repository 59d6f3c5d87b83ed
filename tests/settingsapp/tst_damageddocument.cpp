#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

#include "d_zu_configuration.h"
#include "settingsapp.h"
#include "settingsdocument.h"
#include "settingsfixture.h"
#include "settingshistory.h"
#include "station.h"

// The settings screens on a station whose settings document is damaged: they open on a
// blocking banner with Save disabled and never write over the file; the way out by moving the
// file aside and starting from defaults, and the way out by restoring a kept version.
class TestDamagedDocument : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void opensOnBlockingBanner();
    void writesNothing_data();
    void writesNothing();
    void damageIsTold_data();
    void damageIsTold();
    void startFromDefaults();
    void restoreNewestVersion();

private:
    bool writeDocument(const QByteArray& bytes) const;
    // Writes `bytes` as the document and has the application read it again.
    void damageAndReload(const QByteArray& bytes);
    QStringList asideFiles() const;
    DZuConfiguration* configuration() const { return DZuConfiguration::getInstance(); }

    SettingsFixture m_fixture;
    QByteArray m_demoBytes;
    const QString m_demoWorkplace = QStringLiteral("Station 12 - Gearbox housing");
    // A member separator is missing at the end of line 3: the parse fails where line 4's member starts.
    const QByteArray m_syntaxError = "{\n    \"general\": {\n        \"workplace_name\": \"Bench\"\n"
                                     "        \"sound_volume\": 80\n    }\n}\n";
};

bool TestDamagedDocument::writeDocument(const QByteArray& bytes) const
{
    QFile file(m_fixture.documentPath());
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

void TestDamagedDocument::damageAndReload(const QByteArray& bytes)
{
    QVERIFY(writeDocument(bytes));
    m_fixture.app()->reload();
    QTRY_VERIFY(m_fixture.isShown(QStringLiteral("documentProblemPanel")));
}

QStringList TestDamagedDocument::asideFiles() const
{
    const QFileInfo document(m_fixture.documentPath());
    QStringList found;
    for (const QFileInfo& entry : document.dir().entryInfoList({ document.fileName() + QStringLiteral(".damaged-*") }, QDir::Files))
        found << entry.filePath();
    return found;
}

void TestDamagedDocument::initTestCase()
{
    // The demo document is kept as a version (as a save would have kept it), then damaged.
    auto prepare = [this](const QString& path) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return false;
        m_demoBytes = file.readAll();
        file.close();
        QJsonObject next = QJsonDocument::fromJson(m_demoBytes).object();
        QJsonObject general = next.value(QStringLiteral("general")).toObject();
        general.insert(QStringLiteral("workplace_name"), QStringLiteral("Bench"));
        next.insert(QStringLiteral("general"), general);
        return SettingsHistory(path).record(m_demoBytes, next, QStringLiteral("test edit")) && writeDocument(m_syntaxError);
    };
    QString error;
    QVERIFY2(m_fixture.start(error, prepare), qPrintable(error));
    QVERIFY(!m_demoBytes.isEmpty());
    m_fixture.window()->resize(1024, 600);
    QVERIFY(QTest::qWaitForWindowExposed(m_fixture.window()));
}

void TestDamagedDocument::opensOnBlockingBanner()
{
    QTRY_VERIFY(m_fixture.isShown(QStringLiteral("documentProblemPanel")));
    QVERIFY2(!m_fixture.isShown(QStringLiteral("page_general")), "the pages stay hidden");
    QVERIFY(!m_fixture.property(QStringLiteral("saveButton"), "enabled").toBool());
    QVERIFY(m_fixture.property(QStringLiteral("historyButton"), "enabled").toBool());

    QVERIFY(m_fixture.text(QStringLiteral("documentProblemPath")).contains(m_fixture.documentPath()));
    const QString reason = m_fixture.text(QStringLiteral("documentProblemReason"));
    QVERIFY2(reason.contains(QStringLiteral("not valid JSON")), qPrintable(reason));
    QVERIFY2(reason.contains(QStringLiteral("line 4, column 9")), qPrintable(reason));
    QVERIFY(m_fixture.isShown(QStringLiteral("documentProblemUnchanged")));
    const QString unchanged = qtTrId("StationSettings_Document_unchanged");
    QVERIFY(unchanged.startsWith(QStringLiteral("Nothing was changed")));
    QCOMPARE(m_fixture.text(QStringLiteral("documentProblemUnchanged")), unchanged);
    // A syntax error is not blamed on a crash.
    QCOMPARE(m_fixture.app()->documentDamage(), QStringLiteral("invalid"));
    QVERIFY(!m_fixture.isShown(QStringLiteral("documentProblemCause")));

    // The kept version is offered with its time and the key the save after it changed.
    QTRY_VERIFY(m_fixture.isShown(QStringLiteral("problemHistoryListRestore_0")));
    QVERIFY(m_fixture.text(QStringLiteral("problemHistoryListKeys_0")).contains(QStringLiteral("general.workplace_name")));
    QVERIFY(!m_fixture.text(QStringLiteral("problemHistoryListTime_0")).isEmpty());
    QVERIFY(m_fixture.isShown(QStringLiteral("startFromDefaultsButton")));
    QVERIFY(m_fixture.saveScreenshot(QStringLiteral("damaged-document")));
}

void TestDamagedDocument::writesNothing_data()
{
    QTest::addColumn<QString>("action");
    QTest::newRow("the disabled save button") << "button";
    QTest::newRow("a save called anyway") << "save";
    QTest::newRow("an overwrite called anyway") << "overwrite";
}

void TestDamagedDocument::writesNothing()
{
    QFETCH(QString, action);
    const QString path = m_fixture.documentPath();
    const QByteArray before = SettingsFixture::digest(path);
    const int versions = m_fixture.station()->history().versions().size();
    QSignalSpy saved(m_fixture.app(), &SettingsApp::saved);
    configuration()->setWorkplaceName(QStringLiteral("Edited on defaults"));

    if (action == QLatin1String("button")) {
        QVERIFY2(!m_fixture.click(QStringLiteral("saveButton")), "the button takes no click");
        QCOMPARE(saved.count(), 0);
    } else {
        QVERIFY(!(action == QLatin1String("save") ? m_fixture.app()->save() : m_fixture.app()->overwrite()));
        QCOMPARE(saved.count(), 1);
        QCOMPARE(saved.at(0).at(0).toBool(), false);
        const QString error = saved.at(0).at(1).toString();
        QVERIFY2(error.contains(QStringLiteral("nothing was changed")), qPrintable(error));
        QCOMPARE(m_fixture.text(QStringLiteral("messageText")), qtTrId("StationSettings_Save_failed").arg(error));
    }
    QCOMPARE(SettingsFixture::digest(path), before);
    QCOMPARE(m_fixture.station()->history().versions().size(), versions);
    QVERIFY(asideFiles().isEmpty());
}

void TestDamagedDocument::damageIsTold_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("damage");
    const QByteArray demo = m_demoBytes;
    QTest::newRow("empty file") << QByteArray() << "empty";
    QTest::newRow("cut inside a member") << demo.left(demo.indexOf("\"sound") + 3) << "torn";
    QTest::newRow("cut between members") << demo.left(demo.indexOf("\n", demo.size() / 2)) << "torn";
    QTest::newRow("zeros where the data never reached the disk") << demo.left(200) + QByteArray(4096, '\0') << "torn";
    QTest::newRow("syntax error") << m_syntaxError << "invalid";
    QTest::newRow("closing bracket out of turn") << QByteArray("{\"a\": [1, 2}, \"b\": {") << "invalid";
    QTest::newRow("UTF-16") << QByteArray("\xff\xfe{\0}\0", 6) << "invalid";
    QTest::newRow("not an object") << QByteArray("[1, 2]") << "invalid";
}

void TestDamagedDocument::damageIsTold()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, damage);
    QVERIFY(!m_demoBytes.isEmpty());
    damageAndReload(bytes);
    if (QTest::currentTestFailed())
        return;
    QVERIFY(!configuration()->isDocumentUsable());
    QCOMPARE(m_fixture.app()->documentDamage(), damage);
    QVERIFY(!m_fixture.property(QStringLiteral("saveButton"), "enabled").toBool());

    // Empty or cut short: the banner says so and points at the newest version.
    const bool interrupted = damage != QLatin1String("invalid");
    QCOMPARE(m_fixture.isShown(QStringLiteral("documentProblemCause")), interrupted);
    QCOMPARE(m_fixture.isShown(QStringLiteral("restoreNewestHint")), interrupted);
    if (interrupted) {
        QCOMPARE(m_fixture.text(QStringLiteral("documentProblemCause")),
                 qtTrId(damage == QLatin1String("empty") ? "StationSettings_Document_empty" : "StationSettings_Document_torn"));
        QCOMPARE(m_fixture.property(QStringLiteral("problemHistoryListRestore_0"), "highlighted").toBool(), true);
    }
    if (QTest::currentDataTag() == QByteArrayLiteral("cut between members"))
        QVERIFY(m_fixture.saveScreenshot(QStringLiteral("torn-document")));
}

void TestDamagedDocument::startFromDefaults()
{
    damageAndReload(m_syntaxError);
    if (QTest::currentTestFailed())
        return;
    const QString path = m_fixture.documentPath();
    const QByteArray damaged = SettingsFixture::digest(path);
    QSignalSpy started(m_fixture.app(), &SettingsApp::sigStartedFromDefaults);

    QVERIFY(m_fixture.click(QStringLiteral("startFromDefaultsButton")));
    QTRY_VERIFY(m_fixture.property(QStringLiteral("defaultsConfirm"), "opened").toBool());
    QVERIFY(QFile::exists(path));
    QVERIFY(m_fixture.click(QStringLiteral("defaultsConfirmAccept")));
    QTRY_VERIFY(!m_fixture.isShown(QStringLiteral("documentProblemPanel")));

    // The damaged bytes wait beside the document; no document now, defaults in memory.
    QCOMPARE(started.count(), 1);
    QCOMPARE(started.at(0).at(0).toBool(), true);
    const QStringList aside = asideFiles();
    QCOMPARE(aside.size(), 1);
    QCOMPARE(started.at(0).at(1).toString(), aside.first());
    QCOMPARE(SettingsFixture::digest(aside.first()), damaged);
    QVERIFY(!QFile::exists(path));
    QCOMPARE(configuration()->documentState(), int(SettingsDocument::CeMissing));
    QVERIFY(m_fixture.text(QStringLiteral("messageText")).contains(aside.first()));
    QVERIFY(m_fixture.isShown(QStringLiteral("page_general")));
    QVERIFY(m_fixture.property(QStringLiteral("saveButton"), "enabled").toBool());

    // The first save writes a new, valid document.
    configuration()->setWorkplaceName(QStringLiteral("Fresh start"));
    QSignalSpy saved(m_fixture.app(), &SettingsApp::saved);
    QVERIFY(m_fixture.click(QStringLiteral("saveButton")));
    QCOMPARE(saved.count(), 1);
    QVERIFY2(saved.at(0).at(0).toBool(), qPrintable(saved.at(0).at(1).toString()));
    const SettingsDocument::Reading written = SettingsDocument::read(path);
    QCOMPARE(written.state, SettingsDocument::CeLoaded);
    QCOMPARE(written.object.value(QStringLiteral("general")).toObject().value(QStringLiteral("workplace_name")).toString(),
             QStringLiteral("Fresh start"));
    QFile::remove(aside.first());
}

void TestDamagedDocument::restoreNewestVersion()
{
    damageAndReload(m_demoBytes.left(m_demoBytes.size() / 3));
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(m_fixture.app()->documentDamage(), QStringLiteral("torn"));
    const QByteArray torn = SettingsFixture::digest(m_fixture.documentPath());
    // The version kept before the damage: the demo document.
    const auto versions = m_fixture.station()->history().versions();
    QVERIFY(!versions.isEmpty());
    QByteArray newest;
    QVERIFY(m_fixture.station()->history().read(0, newest));
    QCOMPARE(newest, m_demoBytes);

    QVERIFY(m_fixture.click(QStringLiteral("problemHistoryListRestore_0")));
    QTRY_VERIFY(m_fixture.property(QStringLiteral("restoreConfirm"), "opened").toBool());
    QVERIFY(m_fixture.text(QStringLiteral("restoreConfirmText")).contains(m_fixture.text(QStringLiteral("problemHistoryListTime_0"))));
    QVERIFY(m_fixture.click(QStringLiteral("restoreConfirmAccept")));

    QTRY_VERIFY(!m_fixture.isShown(QStringLiteral("documentProblemPanel")));
    QCOMPARE(configuration()->workplaceName(), m_demoWorkplace);
    QCOMPARE(m_fixture.text(QStringLiteral("workplaceNameField")), m_demoWorkplace);
    QFile document(m_fixture.documentPath());
    QVERIFY(document.open(QIODevice::ReadOnly));
    QCOMPARE(document.readAll(), m_demoBytes);
    // The torn file was copied aside, not lost.
    const QStringList aside = asideFiles();
    QCOMPARE(aside.size(), 1);
    QCOMPARE(SettingsFixture::digest(aside.first()), torn);
    QVERIFY(m_fixture.property(QStringLiteral("saveButton"), "enabled").toBool());
}

QTEST_MAIN(TestDamagedDocument)
#include "tst_damageddocument.moc"
