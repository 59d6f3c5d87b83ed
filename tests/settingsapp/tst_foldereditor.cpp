#include <QJsonArray>
#include <QJsonObject>
#include <QQuickItem>
#include <QSignalSpy>
#include <QtTest>

#include "d_zu_configuration.h"
#include "settingsapp.h"
#include "settingsfixture.h"
#include "station.h"
#include "utilities/jsontools.h"

// The folder editor of the settings screens, driven through its controls: a network folder is
// added, given a role, saved, and found back after a reload.
class TestFolderEditor : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void showsChosenFolder();
    void addNetworkFolder();
    void testConnectionReportsFailure();
    void savedFolderComesBackOnReload();

private:
    // Opens a blank editor and types a network folder with the given alias into it.
    void fillNewNetworkFolder(const QString& alias);
    QSharedPointer<Folder> folderNamed(const QString& alias, int& count) const;
    Directories* directories() const { return DZuConfiguration::getInstance()->directories(); }
    bool showsUnsaved() const { return m_fixture.item(QStringLiteral("unsavedLabel"))->property("visible").toBool(); }
    QString editorMessage() const { return m_fixture.item(QStringLiteral("folderEditorMessage"))->property("text").toString(); }

    SettingsFixture m_fixture;
    const QString m_alias = QStringLiteral("Bench share");
    const QString m_role = QStringLiteral("templates");
};

void TestFolderEditor::initTestCase()
{
    QString error;
    QVERIFY2(m_fixture.start(error), qPrintable(error));
    QVERIFY(QTest::qWaitForWindowExposed(m_fixture.window()));
    QVERIFY(m_fixture.showPage(QStringLiteral("folders")));
    QVERIFY2(!showsUnsaved(), "nothing changed yet");
}

void TestFolderEditor::fillNewNetworkFolder(const QString& alias)
{
    QVERIFY(m_fixture.newFolder(QStringLiteral("samba")));
    QObject* roleBox = m_fixture.item(QStringLiteral("folderRoleBox"));
    QVERIFY(roleBox);

    const QList<QPair<QString, QString>> fields {
        { QStringLiteral("folderAliasField"), alias },
        { QStringLiteral("folderAddressField"), QStringLiteral("127.0.0.1:1") },
        { QStringLiteral("folderPathField"), QStringLiteral("bench") },
        { QStringLiteral("folderDomainField"), QStringLiteral("WORKGROUP") },
        { QStringLiteral("folderLoginField"), QStringLiteral("tester") },
        { QStringLiteral("folderPasswordField"), QStringLiteral("secret") },
    };
    for (const auto& field : fields) {
        QObject* input = m_fixture.item(field.first);
        QVERIFY2(input, qPrintable(field.first));
        QVERIFY(input->setProperty("text", field.second));
    }
    int roleIndex = -1;
    QVERIFY(QMetaObject::invokeMethod(roleBox, "indexOfValue", Q_RETURN_ARG(int, roleIndex), Q_ARG(QVariant, m_role)));
    QVERIFY2(roleIndex > 0, "a new folder may take any role");
    roleBox->setProperty("currentIndex", roleIndex);
}

QSharedPointer<Folder> TestFolderEditor::folderNamed(const QString& alias, int& count) const
{
    QSharedPointer<Folder> found;
    count = 0;
    for (const auto& folder : directories()->folders()->list()) {
        if (folder->aliasName() == alias) {
            found = folder;
            ++count;
        }
    }
    return found;
}

void TestFolderEditor::showsChosenFolder()
{
    int count = 0;
    const QSharedPointer<Folder> share = folderNamed(QStringLiteral("Plant_Share"), count);
    QVERIFY(share);
    directories()->selectFolder(directories()->folders()->list().indexOf(share));
    QCOMPARE(m_fixture.item(QStringLiteral("folderAliasField"))->property("text").toString(), QStringLiteral("Plant_Share"));
    QCOMPARE(m_fixture.item(QStringLiteral("folderAddressField"))->property("text").toString(), QStringLiteral("127.0.0.1:1445"));
    QCOMPARE(m_fixture.item(QStringLiteral("folderTypeBox"))->property("currentValue").toString(), QStringLiteral("samba"));
    // The demo station gives the share the raw results role.
    QCOMPARE(m_fixture.item(QStringLiteral("folderRoleBox"))->property("currentValue").toString(), QStringLiteral("results"));
}

void TestFolderEditor::addNetworkFolder()
{
    fillNewNetworkFolder(m_alias);
    QVERIFY(m_fixture.click(QStringLiteral("applyFolderButton")));

    int count = 0;
    const QSharedPointer<Folder> folder = folderNamed(m_alias, count);
    QCOMPARE(count, 1);
    QCOMPARE(folder->type(), QStringLiteral("samba"));
    QCOMPARE(folder->address(), QStringLiteral("127.0.0.1:1"));
    QCOMPARE(folder->path(), QStringLiteral("bench"));
    QCOMPARE(folder->identifier(), QStringLiteral("tester"));
    QCOMPARE(directories()->getRoleOfFolder(folder->id()), m_role);
    // The editor moves on to the folder it created.
    QCOMPARE(directories()->selectedFolder(), folder.data());
    QCOMPARE(editorMessage(), qtTrId("StationSettings_Folders_applied").arg(m_alias));
    QVERIFY(showsUnsaved());
}

void TestFolderEditor::testConnectionReportsFailure()
{
    fillNewNetworkFolder(QStringLiteral("Probe"));
    QSignalSpy result(directories(), &Directories::testConnectionResult);
    QVERIFY(m_fixture.click(QStringLiteral("testFolderButton")));
    QTRY_COMPARE_WITH_TIMEOUT(result.count(), 1, 120000);
    QCOMPARE(result.at(0).at(0).toBool(), false);
    QVERIFY(!directories()->testInProgress());
    QCOMPARE(editorMessage(), result.at(0).at(1).toString());
    QVERIFY(!editorMessage().isEmpty());
    QVERIFY(m_fixture.click(QStringLiteral("cancelFolderButton")));
    int count = 0;
    QVERIFY(folderNamed(QStringLiteral("Probe"), count).isNull());
}

void TestFolderEditor::savedFolderComesBackOnReload()
{
    QSignalSpy saved(m_fixture.app(), &SettingsApp::saved);
    QVERIFY(m_fixture.click(QStringLiteral("saveButton")));
    QCOMPARE(saved.count(), 1);
    QCOMPARE(saved.at(0).at(0).toBool(), true);
    QVERIFY(!showsUnsaved());

    int count = 0;
    const QString id = folderNamed(m_alias, count)->id();
    const QJsonObject document = m_fixture.station()->readDocument();
    QCOMPARE(JsonTools::getValue(document, QStringLiteral("directories.foldersRoles.") + m_role).toString(), id);
    bool onDisk = false;
    for (const QJsonValue& entry : JsonTools::getValue(document, QStringLiteral("directories.folders")).toArray())
        onDisk = onDisk || entry.toObject().value(QStringLiteral("aliasName")).toString() == m_alias;
    QVERIFY(onDisk);

    // Deleted in memory only: the reload brings it back from the file.
    directories()->selectFolder(directories()->folders()->list().indexOf(folderNamed(m_alias, count)));
    QVERIFY(m_fixture.click(QStringLiteral("deleteFolderButton")));
    // Deleting asks first.
    QTRY_VERIFY(m_fixture.property(QStringLiteral("deleteFolderConfirm"), "opened").toBool());
    QVERIFY(m_fixture.click(QStringLiteral("deleteFolderConfirmAccept")));
    QVERIFY(folderNamed(m_alias, count).isNull());
    QVERIFY(showsUnsaved());

    QSignalSpy reloaded(m_fixture.app(), &SettingsApp::reloaded);
    QVERIFY(m_fixture.click(QStringLiteral("reloadButton")));
    // With unsaved changes, reloading asks first.
    QTRY_VERIFY(m_fixture.property(QStringLiteral("reloadConfirm"), "opened").toBool());
    QCOMPARE(reloaded.count(), 0);
    QVERIFY(m_fixture.click(QStringLiteral("reloadConfirmAccept")));
    QCOMPARE(reloaded.count(), 1);
    QVERIFY(!showsUnsaved());
    const QSharedPointer<Folder> back = folderNamed(m_alias, count);
    QCOMPARE(count, 1);
    QCOMPARE(back->id(), id);
    QCOMPARE(back->address(), QStringLiteral("127.0.0.1:1"));
    QCOMPARE(directories()->getRoleOfFolder(id), m_role);
    auto* list = m_fixture.item(QStringLiteral("folderList"));
    QCOMPARE(list->property("count").toInt(), directories()->folders()->count());
}

QTEST_MAIN(TestFolderEditor)
#include "tst_foldereditor.moc"
