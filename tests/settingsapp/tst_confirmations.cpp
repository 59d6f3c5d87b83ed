#include <QFile>
#include <QQuickItem>
#include <QtTest>

#include "d_zu_configuration.h"
#include "settingsapp.h"
#include "settingsfixture.h"

// What cannot be undone asks first: each action's question appears, Cancel leaves everything as
// it was, the question's action then does what was asked. A new network folder with nothing
// typed is refused.
class TestConfirmations : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void refuseInvalidNewFolder_data();
    void refuseInvalidNewFolder();
    void reloadWithoutChangesAsksNothing();
    void confirm_data();
    void confirm();

private:
    Directories* directories() const { return DZuConfiguration::getInstance()->directories(); }
    DZuConfiguration* configuration() const { return DZuConfiguration::getInstance(); }
    bool hasFolder(const QString& alias) const;
    bool dialogOpen(const QString& name) const { return m_fixture.property(name, "opened").toBool(); }
    // A change in memory only, as an edit on a page makes it.
    void editInMemory();
    bool editKept() const { return configuration()->torqueUnit() == m_editedUnit; }

    SettingsFixture m_fixture;
    QString m_savedUnit;
    QString m_editedUnit;
};

void TestConfirmations::initTestCase()
{
    QString error;
    QVERIFY2(m_fixture.start(error), qPrintable(error));
    QVERIFY(QTest::qWaitForWindowExposed(m_fixture.window()));
    m_savedUnit = configuration()->torqueUnit();
    // Another unit than the document's.
    m_editedUnit = m_savedUnit == QLatin1String("Nm") ? QStringLiteral("lbf.ft") : QStringLiteral("Nm");
    configuration()->setTorqueUnit(m_editedUnit);
    QVERIFY2(editKept(), qPrintable(QStringLiteral("the library keeps no torque unit %1").arg(m_editedUnit)));
    configuration()->setTorqueUnit(m_savedUnit);
    m_fixture.window()->setProperty("unsaved", false);
}

bool TestConfirmations::hasFolder(const QString& alias) const
{
    bool found = false;
    directories()->getFolderByName(alias, found);
    return found;
}

void TestConfirmations::editInMemory()
{
    configuration()->setTorqueUnit(m_editedUnit);
    QVERIFY(editKept());
    QTRY_VERIFY(m_fixture.window()->property("unsaved").toBool());
}

void TestConfirmations::refuseInvalidNewFolder_data()
{
    QTest::addColumn<QString>("alias");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expectedMessageId");
    // The label beside the field at fault.
    QTest::addColumn<QString>("problemLabel");
    QTest::newRow("every field empty") << "" << "" << "" << "StationSettings_Folders_alias_required" << "aliasProblemLabel";
    QTest::newRow("blank alias") << "   " << "127.0.0.1" << "share" << "StationSettings_Folders_alias_required" << "aliasProblemLabel";
    QTest::newRow("alias of another folder") << "Plant_Share" << "127.0.0.1" << "share" << "Directories_Duplicate_alias" << "aliasProblemLabel";
    QTest::newRow("no server address") << "Nameless" << "" << "share" << "StationSettings_Folders_address_required" << "addressProblemLabel";
    QTest::newRow("server name with a space") << "Nameless" << "plant server" << "share" << "StationSettings_Folders_address_invalid" << "addressProblemLabel";
    QTest::newRow("address part over 255") << "Nameless" << "192.168.1.300" << "share" << "StationSettings_Folders_address_invalid" << "addressProblemLabel";
    QTest::newRow("port over 65535") << "Nameless" << "10.0.0.1:70000" << "share" << "StationSettings_Folders_address_invalid" << "addressProblemLabel";
    QTest::newRow("no share path") << "Nameless" << "10.0.0.1" << "" << "StationSettings_Folders_share_path_invalid" << "pathProblemLabel";
    QTest::newRow("share path in UNC form") << "Nameless" << "10.0.0.1" << "\\\\server\\share" << "StationSettings_Folders_share_path_invalid" << "pathProblemLabel";
    QTest::newRow("share path from the root") << "Nameless" << "10.0.0.1" << "/station" << "StationSettings_Folders_share_path_invalid" << "pathProblemLabel";
}

void TestConfirmations::refuseInvalidNewFolder()
{
    QFETCH(QString, alias);
    QFETCH(QString, address);
    QFETCH(QString, path);
    QFETCH(QString, expectedMessageId);
    QFETCH(QString, problemLabel);
    QVERIFY(m_fixture.showPage(QStringLiteral("folders")));
    const int before = directories()->folders()->list().size();
    auto named = [this](const QString& name) {
        int count = 0;
        for (const auto& folder : directories()->folders()->list())
            count += folder->aliasName() == name ? 1 : 0;
        return count;
    };
    const int namedBefore = named(alias.trimmed());

    QVERIFY(m_fixture.newFolder(QStringLiteral("samba")));
    QVERIFY(m_fixture.item(QStringLiteral("folderAliasField"))->setProperty("text", alias));
    QVERIFY(m_fixture.item(QStringLiteral("folderAddressField"))->setProperty("text", address));
    QVERIFY(m_fixture.item(QStringLiteral("folderPathField"))->setProperty("text", path));

    QVERIFY(m_fixture.click(QStringLiteral("applyFolderButton")));
    const QString expected = qtTrId(expectedMessageId.toLatin1().constData());
    QVERIFY(expected != expectedMessageId);
    QCOMPARE(m_fixture.text(QStringLiteral("folderEditorMessage")), expected);
    QVERIFY(m_fixture.isShown(problemLabel));
    QCOMPARE(m_fixture.text(problemLabel), expected);
    QVERIFY(m_fixture.saveScreenshot(QStringLiteral("folder_refused_") + QString::fromLatin1(QTest::currentDataTag()).replace(QLatin1Char(' '), QLatin1Char('_'))));
    QCOMPARE(directories()->folders()->list().size(), before);
    QCOMPARE(named(alias.trimmed()), namedBefore);
    // Still editing the new folder, so that the operator can complete it.
    QVERIFY(m_fixture.item(QStringLiteral("folderEditor"))->property("creating").toBool());
    QVERIFY(m_fixture.click(QStringLiteral("cancelFolderButton")));
}

void TestConfirmations::reloadWithoutChangesAsksNothing()
{
    m_fixture.window()->setProperty("unsaved", false);
    QSignalSpy reloaded(m_fixture.app(), &SettingsApp::reloaded);
    QVERIFY(m_fixture.click(QStringLiteral("reloadButton")));
    QCOMPARE(reloaded.count(), 1);
    QVERIFY(!dialogOpen(QStringLiteral("reloadConfirm")));
}

void TestConfirmations::confirm_data()
{
    QTest::addColumn<QString>("action");
    // The button that asks (empty: the window is closed), the question's name.
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("dialog");
    QTest::newRow("delete a folder") << "deleteFolder" << "deleteFolderButton" << "deleteFolderConfirm";
    QTest::newRow("delete a template") << "deleteTemplate" << "deleteTemplateButton" << "deleteTemplateConfirm";
    QTest::newRow("reset the sync database") << "resetSync" << "resetSyncButton" << "resetSyncConfirm";
    QTest::newRow("reload with unsaved changes") << "reload" << "reloadButton" << "reloadConfirm";
    // Last: the window is gone afterwards.
    QTest::newRow("close with unsaved changes") << "close" << "" << "closeConfirm";
}

void TestConfirmations::confirm()
{
    QFETCH(QString, action);
    QFETCH(QString, button);
    QFETCH(QString, dialog);
    QQuickWindow* window = m_fixture.window();

    // What the action does, read before and after.
    std::function<bool()> done;
    QString templateFile;
    if (action == QLatin1String("deleteFolder")) {
        QVERIFY(m_fixture.showPage(QStringLiteral("folders")));
        QVERIFY(SettingsFixture::selectFolder(QStringLiteral("Plant_Share")));
        QTRY_VERIFY(directories()->isSelectedFolderDeletable());
        done = [this] { return !hasFolder(QStringLiteral("Plant_Share")); };
    } else if (action == QLatin1String("deleteTemplate")) {
        QVERIFY(m_fixture.showPage(QStringLiteral("templates")));
        const QStringList templates = directories()->templatesList();
        QVERIFY(!templates.isEmpty());
        templateFile = directories()->getTemplatesDirectoryPath() + QLatin1Char('/') + templates.constFirst();
        QVERIFY(QFile::exists(templateFile));
        m_fixture.item(QStringLiteral("templateList"))->setProperty("currentIndex", 0);
        // Deleting a template keeps the edits of the other pages.
        editInMemory();
        done = [this, templateFile, name = templates.constFirst()] {
            return !QFile::exists(templateFile) && !m_fixture.property(QStringLiteral("templateList"), "model").toStringList().contains(name);
        };
    } else if (action == QLatin1String("resetSync")) {
        QVERIFY(m_fixture.showPage(QStringLiteral("sync")));
        done = [this] {
            return m_fixture.property(QStringLiteral("page_sync"), "resetting").toBool()
                || !m_fixture.property(QStringLiteral("page_sync"), "resetMessage").toString().isEmpty();
        };
    } else if (action == QLatin1String("reload")) {
        QVERIFY(m_fixture.showPage(QStringLiteral("general")));
        editInMemory();
        done = [this] { return configuration()->torqueUnit() == m_savedUnit; };
    } else if (action == QLatin1String("close")) {
        editInMemory();
        done = [window] { return !window->isVisible(); };
    }
    QVERIFY(done);
    QVERIFY2(!done(), "done before anything was asked");

    auto ask = [&] {
        if (button.isEmpty())
            window->close();
        else
            QVERIFY(m_fixture.click(button));
        QTRY_VERIFY(dialogOpen(dialog));
        QVERIFY(!m_fixture.text(dialog + QStringLiteral("Text")).isEmpty());
    };

    ask();
    QVERIFY(m_fixture.saveScreenshot(QStringLiteral("confirm_") + action));
    QVERIFY2(!done(), "done without an answer");
    QVERIFY(m_fixture.click(dialog + QStringLiteral("Cancel")));
    QTRY_VERIFY(!dialogOpen(dialog));
    QVERIFY2(!done(), "done although cancelled");
    QVERIFY(window->isVisible());

    ask();
    QVERIFY(m_fixture.click(dialog + QStringLiteral("Accept")));
    QTRY_VERIFY2(done(), "not done after the answer");
    if (action == QLatin1String("deleteTemplate")) {
        QVERIFY2(editKept(), "the template delete dropped an edit");
        QVERIFY(window->property("unsaved").toBool());
    }
    if (action == QLatin1String("reload"))
        QVERIFY(!window->property("unsaved").toBool());
}

QTEST_MAIN(TestConfirmations)
#include "tst_confirmations.moc"
