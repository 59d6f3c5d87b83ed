// The folder registry: folders, settings section, editing rules, selection, sorting, counters.
#include <QCoreApplication>
#include <QSignalSpy>
#include <QtTest>

#include "directories.h"
#include "registrystation.h"

namespace {
const QStringList C_builtInAliases = {"CERTIFICATES", "MEDIA",     "PDF_RESULTS", "RAW_RESULTS",
                                      "SCRIPTS",      "SEQUENCES", "TEMPLATES",   "TOOL_BACKUPS"};
}

class TestDirectories : public RegistryTestBase
{
    Q_OBJECT

private:
    QString addOperatorFolder(const QString& alias, const QString& role = "undefined", const QString& type = "internal",
                              bool enabled = true)
    {
        const QString error = m_directories->setFolderAlias(QString(), role, type, alias, alias.toLower(), QString(),
                                                            "127.0.0.1:9", "operator", "secret", enabled);
        bool found = false;
        const QSharedPointer<Folder> folder = m_directories->getFolderByName(alias, found);
        return error.isEmpty() && found ? folder->id() : QString();
    }

private slots:
    void initTestCase()
    {
        loadCatalogue();
        Directories::registerClass();
    }

    void builtInFoldersAfterEmptyLoad_data()
    {
        QTest::addColumn<bool>("medium");
        QTest::newRow("no removable medium: the eight built-in folders in alias order") << false;
        QTest::newRow("removable medium present: USB follows") << true;
    }

    void builtInFoldersAfterEmptyLoad()
    {
        QFETCH(bool, medium);
        // A directory with a file system mounted on it stands for the USB key's mount point.
        if (medium)
            m_directories.reset(new Directories(QString(), QString(), QStringLiteral("/proc"), 30000, QStringList()));
        QCOMPARE(m_directories->removableStorageAvailable(), medium);
        QSignalSpy changed(m_directories.get(), &Directories::sigDirectoriesChanged);
        load(QJsonObject());
        QCOMPARE(aliases(), C_builtInAliases + (medium ? QStringList{"USB"} : QStringList()));
        QCOMPARE(changed.count(), 1);
        // Every built-in folder serves its own role.
        for (const QSharedPointer<Folder>& folder : m_directories->folders()->list())
            QCOMPARE(m_directories->foldersRoles().value(folder->id()), folder->id());
        QCOMPARE(m_directories->foldersRoles().size(), aliases().size());
        QVERIFY(QFileInfo(m_station->internal("db")).isDir());

        // Saving right away removes both keys and leaves the rest.
        QJsonObject root{{"directories", QJsonObject{{"folders", QJsonArray{1}}, {"foldersRoles", QJsonObject{}},
                                                     {"kept", 7}}},
                         {"other", true}};
        m_directories->saveSettings(root);
        QCOMPARE(root, (QJsonObject{{"directories", QJsonObject{{"kept", 7}}}, {"other", true}}));
    }

    void persistenceAndDeletionFollowUuidIdentity()
    {
        const QString id = RegistryStation::newId();
        // The section itself, not a whole document, is read as well; two roles point at Archive.
        load(QJsonObject{{"folders", QJsonArray{RegistryStation::folder(id, "internal", "Archive", "archive"),
                                                RegistryStation::folder("custom", "internal", "Custom", "custom")}},
                         {"foldersRoles", QJsonObject{{"templates", id}, {"media", id}}}});
        QCOMPARE(m_directories->folders()->count(), 10);
        QCOMPARE(m_directories->getRoleOfFolder(id), QStringLiteral("media"));
        QCOMPARE(m_directories->getRoleOfFolder(RegistryStation::newId()), QStringLiteral("undefined"));
        QCOMPARE(m_directories->getRoleNameOfFolder(id), Folder::getRoleName(QStringLiteral("media")));
        QJsonObject root;
        m_directories->saveSettings(root);
        const QJsonArray saved = root.value("directories").toObject().value("folders").toArray();
        QCOMPARE(saved.size(), 1);
        QCOMPARE(saved.at(0).toObject().value("id").toString(), id);

        // A non-UUID folder cannot be deleted.
        m_directories->selectFolder(aliases().indexOf("Custom"));
        QVERIFY(m_directories->isSelectedFolderEditable());
        QVERIFY(!m_directories->isSelectedFolderDeletable());
        m_directories->deleteSelectedFolder();
        QCOMPARE(m_directories->folders()->count(), 10);

        m_directories->selectFolder(aliases().indexOf("Archive"));
        QVERIFY(m_directories->isSelectedFolderDeletable());
        QSignalSpy selection(m_directories.get(), &Directories::selectedFolderChanged);
        QSignalSpy changed(m_directories.get(), &Directories::sigDirectoriesChanged);
        m_directories->deleteSelectedFolder();
        QVERIFY(!aliases().contains("Archive"));
        QCOMPARE(m_directories->selectedFolderIndex(), -1);
        QVERIFY(!m_directories->selectedFolder());
        QCOMPARE(selection.count(), 1);
        QCOMPARE(changed.count(), 1);
    }

    void refusals_data()
    {
        QTest::addColumn<bool>("edit");
        QTest::addColumn<QString>("alias");
        QTest::addColumn<QString>("expected");
        const QString duplicate = qtTrId("Directories_Duplicate_alias");
        QTest::newRow("new alias equal to an existing one but for case") << false << "archive" << duplicate;
        QTest::newRow("new alias equal to a built-in one") << false << "Media" << duplicate;
        QTest::newRow("USB is reserved without a USB folder") << false << "usb" << duplicate;
        QTest::newRow("edit of an unknown id") << true << "Other"
                                               << qtTrId("Directories_Failure_to_find_this_alias_in_the_list");
    }

    void refusals()
    {
        QFETCH(bool, edit);
        QFETCH(QString, alias);
        QFETCH(QString, expected);
        load(QJsonObject());
        QVERIFY(!addOperatorFolder("Archive").isEmpty());
        QVERIFY(!expected.startsWith("Directories_")); // the catalogue gave a text
        const QStringList before = aliases();
        QSignalSpy changed(m_directories.get(), &Directories::sigDirectoriesChanged);
        QCOMPARE(m_directories->setFolderAlias(edit ? RegistryStation::newId() : QString(), "results", "internal",
                                               alias, "x", QString(), QString(), QString(), QString(), true),
                 expected);
        QCOMPARE(aliases(), before);
        QCOMPARE(m_directories->foldersRoles().value("results"), QStringLiteral("results"));
        QCOMPARE(changed.count(), 0);
    }

    void roleReassignmentFallsBackInSavedSection()
    {
        load(QJsonObject());
        const QString id = addOperatorFolder("Share", "results", "samba", false);
        QVERIFY(!id.isEmpty());
        QCOMPARE(m_directories->getRoleOfFolder(id), QStringLiteral("results"));
        QJsonObject root;
        m_directories->saveSettings(root);
        QCOMPARE(root.value("directories").toObject().value("foldersRoles").toObject(), (QJsonObject{{"results", id}}));

        // Back to undefined: the role points at itself and is omitted; a second identical edit stays quiet.
        QSignalSpy changed(m_directories.get(), &Directories::sigDirectoriesChanged);
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(m_directories->setFolderAlias(id, "undefined", "samba", "Share", "share", QString(),
                                                   "127.0.0.1:9", "operator", "secret", false),
                     QString());
            QCOMPARE(changed.count(), 1);
        }
        QCOMPARE(m_directories->foldersRoles().value("results"), QStringLiteral("results"));
        m_directories->saveSettings(root);
        QVERIFY(!root.value("directories").toObject().contains("foldersRoles"));
        QCOMPARE(root.value("directories").toObject().value("folders").toArray().size(), 1);
    }

    void caseOnlyCollisionKeepsFirstAddedAfterSort()
    {
        load(QJsonObject());
        const auto first = m_directories->addNewFolderAlias("internal", QString(), "data", "first", QString(),
                                                            QString(), QString(), QString(), true, false);
        QVERIFY(first);
        QVERIFY(m_directories->addNewFolderAlias("internal", QString(), "Data", "second", QString(), QString(),
                                                 QString(), QString(), true, false));
        QCOMPARE(aliases().filter("data", Qt::CaseInsensitive).size(), 2);
        m_directories->sortFoldersByAliasName();
        QVERIFY(m_directories->folders()->list().contains(first));
        QCOMPARE(aliases(), (QStringList{"CERTIFICATES", "data", "MEDIA", "PDF_RESULTS", "RAW_RESULTS", "SCRIPTS",
                                         "SEQUENCES", "TEMPLATES", "TOOL_BACKUPS"}));
    }

    void selectionEdgeCases()
    {
        QVERIFY(QMetaObject::invokeMethod(m_directories.get(), "sltRemovableStorageStateChanged", Q_ARG(bool, true)));
        load(QJsonObject());
        QCOMPARE(m_directories->folders()->count(), 9);
        QSignalSpy selection(m_directories.get(), &Directories::selectedFolderChanged);
        m_directories->selectFolder(2);
        QCOMPARE(m_directories->selectedFolder()->aliasName(), QStringLiteral("PDF_RESULTS"));
        m_directories->selectFolder(99);
        QCOMPARE(m_directories->selectedFolderIndex(), 99);
        QVERIFY(!m_directories->selectedFolder());
        QVERIFY(!m_directories->isSelectedFolderEditable());
        m_directories->selectFolder(99);
        QCOMPARE(selection.count(), 2);
        // Nothing selected: deleting does nothing at all.
        QSignalSpy changed(m_directories.get(), &Directories::sigDirectoriesChanged);
        m_directories->deleteSelectedFolder();
        QCOMPARE(changed.count(), 0);
        QCOMPARE(m_directories->selectedFolderIndex(), 99);

        // Sorting after an addition follows the selected folder; a reload drops the selection.
        m_directories->selectFolder(aliases().indexOf("SEQUENCES"));
        selection.clear();
        QVERIFY(!addOperatorFolder("Archive").isEmpty());
        QCOMPARE(selection.count(), 1);
        QCOMPARE(m_directories->selectedFolderIndex(), 6);
        QCOMPARE(m_directories->selectedFolder()->aliasName(), QStringLiteral("SEQUENCES"));
        load(QJsonObject());
        QCOMPARE(m_directories->selectedFolderIndex(), -1);
        QVERIFY(!m_directories->selectedFolder());
    }

    void countersFollowFolders()
    {
        load(RegistryStation::document({RegistryStation::folder(RegistryStation::newId(), "samba", "Share", "share"),
                                        RegistryStation::folder(RegistryStation::newId(), "samba", "Off", "off", false),
                                        RegistryStation::folder(RegistryStation::newId(), "external", "Stick", "s")}));
        QCOMPARE(m_directories->configuredNetworkStorageNbr(), 1);
        QCOMPARE(m_directories->configuredRemovableStorageNbr(), 1);
        QCOMPARE(m_directories->connectedNetworkStorageNbr() + m_directories->connectedRemovableStorageNbr(), 0);
        auto availability = [this](const char* alias, bool available) {
            QVERIFY(QMetaObject::invokeMethod(m_directories.get(), "sltFolderAliasAvailabilityChanged",
                                              Q_ARG(QString, QString::fromLatin1(alias)), Q_ARG(bool, available)));
        };
        availability("Share", true);
        availability("Stick", true);
        availability("Off", true); // disabled: not counted
        QCOMPARE(m_directories->connectedNetworkStorageNbr(), 1);
        QCOMPARE(m_directories->connectedRemovableStorageNbr(), 1);
        availability("Share", false);
        QCOMPARE(m_directories->connectedNetworkStorageNbr(), 0);

        QVERIFY(!addOperatorFolder("Second", "undefined", "samba").isEmpty());
        QCOMPARE(m_directories->configuredNetworkStorageNbr(), 2);
        QCOMPARE(m_directories->externalAliasesCountForRole("results"), 2);
    }
};

QTEST_GUILESS_MAIN(TestDirectories)
#include "tst_directories.moc"
