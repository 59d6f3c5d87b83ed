#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

#include "d_zu_configuration.h"
#include "settingsapp.h"
#include "settingsdocument.h"
#include "settingsfixture.h"
#include "settingshistory.h"
#include "station.h"

// The history view of the settings screens and the saves that meet another writer: versions
// kept by each save, restored after a confirmation; a save after another program changed the
// file asks first and writes nothing until told to overwrite; a failed save shows its reason.
class TestDocumentHistory : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void historyListsSavedVersions();
    void restoreAsksFirst_data();
    void restoreAsksFirst();
    void saveAfterAnotherWriter_data();
    void saveAfterAnotherWriter();
    void failedSaveShowsReason();

private:
    // Saves through the header's button; the result signal's arguments.
    QVariantList clickSave();
    // What another program does: under the lock, sets the workplace name in the file.
    void writeAsAnotherProgram(const QString& workplace);
    QString workplaceOnDisk() const;
    bool dialogOpened(const QString& objectName) const { return m_fixture.property(objectName, "opened").toBool(); }
    DZuConfiguration* configuration() const { return DZuConfiguration::getInstance(); }

    SettingsFixture m_fixture;
};

void TestDocumentHistory::initTestCase()
{
    QString error;
    QVERIFY2(m_fixture.start(error), qPrintable(error));
    m_fixture.window()->resize(1024, 600);
    QVERIFY(QTest::qWaitForWindowExposed(m_fixture.window()));
    QVERIFY(m_fixture.app()->history().isEmpty());
}

QVariantList TestDocumentHistory::clickSave()
{
    QSignalSpy saved(m_fixture.app(), &SettingsApp::saved);
    if (!m_fixture.click(QStringLiteral("saveButton")) || saved.count() != 1)
        return {};
    return saved.first();
}

void TestDocumentHistory::writeAsAnotherProgram(const QString& workplace)
{
    const QString path = m_fixture.documentPath();
    SettingsLock lock(path);
    QString error;
    // The settings application holds no lock while its operator edits.
    QVERIFY2(lock.lock(0, &error), qPrintable(error));
    QJsonObject document = SettingsDocument::read(path).object;
    QJsonObject general = document.value(QStringLiteral("general")).toObject();
    general.insert(QStringLiteral("workplace_name"), workplace);
    document.insert(QStringLiteral("general"), general);
    QCOMPARE(SettingsDocument::writeInPlace(path, QJsonDocument(document).toJson()), SettingsDocument::CeWritten);
}

QString TestDocumentHistory::workplaceOnDisk() const
{
    return SettingsDocument::read(m_fixture.documentPath())
        .object.value(QStringLiteral("general")).toObject().value(QStringLiteral("workplace_name")).toString();
}

void TestDocumentHistory::historyListsSavedVersions()
{
    for (const QString& name : { QStringLiteral("First edit"), QStringLiteral("Second edit") }) {
        configuration()->setWorkplaceName(name);
        const QVariantList result = clickSave();
        QVERIFY(!result.isEmpty());
        QVERIFY2(result.at(0).toBool(), qPrintable(result.at(1).toString()));
    }
    QCOMPARE(workplaceOnDisk(), QStringLiteral("Second edit"));
    // The demo document, then the first edit, each kept by the save that replaced it.
    const QVariantList history = m_fixture.app()->history();
    QCOMPARE(history.size(), 2);
    const QVariantMap newest = history.first().toMap();
    QCOMPARE(newest.value(QStringLiteral("number")).toInt(), 0);
    QCOMPARE(newest.value(QStringLiteral("changedKeys")).toStringList(), QStringList { QStringLiteral("general.workplace_name") });
    QCOMPARE(newest.value(QStringLiteral("reason")).toString(), QStringLiteral("station-settings save"));
    QCOMPARE(newest.value(QStringLiteral("size")).toLongLong(), m_fixture.station()->history().versions().first().size);

    QVERIFY(m_fixture.click(QStringLiteral("historyButton")));
    QTRY_VERIFY(dialogOpened(QStringLiteral("historyDialog")));
    QTRY_COMPARE(m_fixture.property(QStringLiteral("historyDialogListView"), "count").toInt(), 2);
    QTRY_VERIFY(m_fixture.isShown(QStringLiteral("historyDialogListRestore_1")));
    QVERIFY(m_fixture.text(QStringLiteral("historyDialogListKeys_0")).contains(QStringLiteral("general.workplace_name")));
    QCOMPARE(m_fixture.text(QStringLiteral("historyDialogListTime_0")), newest.value(QStringLiteral("timeText")).toString());
    QVERIFY(m_fixture.saveScreenshot(QStringLiteral("history")));
}

void TestDocumentHistory::restoreAsksFirst_data()
{
    QTest::addColumn<bool>("confirm");
    QTest::addColumn<QString>("expected");
    QTest::newRow("cancelled: the document stays") << false << "Second edit";
    QTest::newRow("confirmed: the older value comes back") << true << "First edit";
}

void TestDocumentHistory::restoreAsksFirst()
{
    QFETCH(bool, confirm);
    QFETCH(QString, expected);
    const QByteArray before = SettingsFixture::digest(m_fixture.documentPath());
    if (!dialogOpened(QStringLiteral("historyDialog"))) {
        QVERIFY(m_fixture.click(QStringLiteral("historyButton")));
        QTRY_VERIFY(dialogOpened(QStringLiteral("historyDialog")));
    }
    QTRY_VERIFY(m_fixture.isShown(QStringLiteral("historyDialogListRestore_0")));
    QVERIFY(m_fixture.click(QStringLiteral("historyDialogListRestore_0")));
    QTRY_VERIFY(dialogOpened(QStringLiteral("restoreConfirm")));
    QCOMPARE(SettingsFixture::digest(m_fixture.documentPath()), before);
    if (!confirm)
        QVERIFY(m_fixture.saveScreenshot(QStringLiteral("restore-confirm")));

    QSignalSpy restored(m_fixture.app(), &SettingsApp::sigRestored);
    QVERIFY(m_fixture.click(confirm ? QStringLiteral("restoreConfirmAccept") : QStringLiteral("restoreConfirmCancel")));
    QTRY_VERIFY(!dialogOpened(QStringLiteral("restoreConfirm")));
    QCOMPARE(workplaceOnDisk(), expected);
    QCOMPARE(configuration()->workplaceName(), expected);
    QCOMPARE(m_fixture.text(QStringLiteral("workplaceNameField")), expected);
    QCOMPARE(restored.count(), confirm ? 1 : 0);
    if (!confirm)
        return;
    QVERIFY2(restored.at(0).at(0).toBool(), qPrintable(restored.at(0).at(1).toString()));
    QTRY_VERIFY(!dialogOpened(QStringLiteral("historyDialog")));
    QVERIFY(!m_fixture.isShown(QStringLiteral("unsavedLabel")));
    QCOMPARE(m_fixture.text(QStringLiteral("messageText")),
             qtTrId("StationSettings_History_restored").arg(restored.at(0).at(1).toString()));
    // The document it replaced is a version now: the second edit can be restored in turn.
    QByteArray newest;
    QVERIFY(m_fixture.station()->history().read(0, newest));
    QCOMPARE(SettingsDocument::parse(newest).object.value(QStringLiteral("general")).toObject()
                 .value(QStringLiteral("workplace_name")).toString(), QStringLiteral("Second edit"));
}

void TestDocumentHistory::saveAfterAnotherWriter_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("diskKeepsTheirs");
    QTest::addColumn<bool>("showsTheirs");
    QTest::newRow("cancel writes nothing") << "conflictCancelButton" << true << false;
    QTest::newRow("reload discards the edit") << "conflictReloadButton" << true << true;
    QTest::newRow("overwrite keeps the edit") << "conflictOverwriteButton" << false << false;
}

void TestDocumentHistory::saveAfterAnotherWriter()
{
    QFETCH(QString, answer);
    QFETCH(bool, diskKeepsTheirs);
    QFETCH(bool, showsTheirs);
    const QString mine = QStringLiteral("Mine");
    // Each row's other writer changes the file anew.
    const QString theirName = QStringLiteral("Theirs, ") + QLatin1String(QTest::currentDataTag());
    configuration()->setWorkplaceName(mine);
    writeAsAnotherProgram(theirName);
    if (QTest::currentTestFailed())
        return;
    const QString path = m_fixture.documentPath();
    const QByteArray theirs = SettingsFixture::digest(path);
    const int versions = m_fixture.station()->history().versions().size();

    QSignalSpy conflict(m_fixture.app(), &SettingsApp::sigSaveConflict);
    QSignalSpy saved(m_fixture.app(), &SettingsApp::saved);
    QVERIFY(m_fixture.click(QStringLiteral("saveButton")));
    QTRY_VERIFY(dialogOpened(QStringLiteral("conflictDialog")));
    QVERIFY(conflict.count() > 0);
    QVERIFY(conflict.first().at(0).toString().contains(path));
    QCOMPARE(saved.count(), 0);
    QCOMPARE(SettingsFixture::digest(path), theirs);
    QCOMPARE(m_fixture.station()->history().versions().size(), versions);
    if (answer == QLatin1String("conflictCancelButton"))
        QVERIFY(m_fixture.saveScreenshot(QStringLiteral("save-conflict")));

    QVERIFY(m_fixture.click(answer));
    QTRY_VERIFY(!dialogOpened(QStringLiteral("conflictDialog")));
    QCOMPARE(workplaceOnDisk(), diskKeepsTheirs ? theirName : mine);
    QCOMPARE(configuration()->workplaceName(), showsTheirs ? theirName : mine);
    QCOMPARE(m_fixture.text(QStringLiteral("workplaceNameField")), showsTheirs ? theirName : mine);
    QCOMPARE(m_fixture.isShown(QStringLiteral("unsavedLabel")), answer == QLatin1String("conflictCancelButton"));
    if (answer == QLatin1String("conflictOverwriteButton")) {
        // Their document is kept as a version before it is overwritten.
        QCOMPARE(saved.count(), 1);
        QVERIFY(saved.first().at(0).toBool());
        QByteArray kept;
        QVERIFY(m_fixture.station()->history().read(0, kept));
        QCOMPARE(QCryptographicHash::hash(kept, QCryptographicHash::Sha256), theirs);
    } else {
        QCOMPARE(SettingsFixture::digest(path), theirs);
    }
    // The lock went with the save: another program writes at once.
    SettingsLock lock(path);
    QVERIFY(lock.lock(0));
}

void TestDocumentHistory::failedSaveShowsReason()
{
    // The version a save keeps first cannot be written: a file stands where its folder goes.
    const QString historyPath = m_fixture.station()->history().directoryPath();
    const QString movedHistory = historyPath + QStringLiteral(".moved");
    QVERIFY(QDir().rename(historyPath, movedHistory));
    QFile blocker(historyPath);
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const QByteArray before = SettingsFixture::digest(m_fixture.documentPath());

    configuration()->setWorkplaceName(QStringLiteral("Not saved"));
    const QVariantList result = clickSave();
    QVERIFY(QFile::remove(historyPath));
    QVERIFY(QDir().rename(movedHistory, historyPath));

    QVERIFY(!result.isEmpty());
    QCOMPARE(result.at(0).toBool(), false);
    const QString error = result.at(1).toString();
    QVERIFY2(error.contains(historyPath) && error.contains(QStringLiteral("nothing was changed")), qPrintable(error));
    QVERIFY(m_fixture.isShown(QStringLiteral("messageBanner")));
    QVERIFY(m_fixture.property(QStringLiteral("messageBanner"), "isError").toBool());
    QCOMPARE(m_fixture.text(QStringLiteral("messageText")), qtTrId("StationSettings_Save_failed").arg(error));
    QVERIFY(m_fixture.isShown(QStringLiteral("unsavedLabel")));
    QCOMPARE(SettingsFixture::digest(m_fixture.documentPath()), before);
    QVERIFY(!dialogOpened(QStringLiteral("conflictDialog")));
}

QTEST_MAIN(TestDocumentHistory)
#include "tst_documenthistory.moc"
