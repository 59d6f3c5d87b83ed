// The folder registry: built-in and operator folders, the settings section, editing rules,
// selection, sorting, storage counters and the error funnel.
#include <QCoreApplication>
#include <QSignalSpy>
#include <QTranslator>
#include <QtTest>

#include "directories.h"
#include "logcapture.h"
#include "registrystation.h"
#include "sync/dsyncmanager.h"

namespace {
const QStringList C_builtInAliases = {"CERTIFICATES", "MEDIA",     "PDF_RESULTS", "RAW_RESULTS",
                                      "SCRIPTS",      "SEQUENCES", "TEMPLATES",   "TOOL_BACKUPS"};

QStringList aliases(Directories& directories)
{
    QStringList names;
    for (const QSharedPointer<Folder>& folder : directories.folders()->list())
        names << folder->aliasName();
    return names;
}

void plugRemovableMedium(Directories& directories, bool plugged)
{
    // What the mount watcher calls when a medium comes or goes.
    QVERIFY(QMetaObject::invokeMethod(&directories, "sltRemovableStorageStateChanged", Q_ARG(bool, plugged)));
}
}

class TestDirectories : public QObject
{
    Q_OBJECT

private:
    QTranslator m_catalogue;
    std::unique_ptr<RegistryStation> m_station;
    std::unique_ptr<Directories> m_directories;

    void load(QJsonValue document)
    {
        m_directories->loadSettings(document);
    }
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
    void initTestCase();
    void init();
    void cleanup();

    void constructionCreatesSyncManagerThroughFactory();
    void builtInFoldersAfterEmptyLoad_data();
    void builtInFoldersAfterEmptyLoad();
    void savingAfterEmptyLoadRemovesBothKeys();
    void sectionGivenDirectlyIsRead();
    void persistenceAndDeletionFollowUuidIdentity();
    void refusals_data();
    void refusals();
    void roleReassignmentFallsBackInSavedSection();
    void roleOfFolderPointedAtTwice();
    void caseOnlyCollisionKeepsFirstAddedAfterSort();
    void selectionEdgeCases();
    void sortFollowsSelectedFolder();
    void countersFollowFolders();
    void errorCodes_data();
    void errorCodes();
    void folderConnectionFailureIsRelayed();
    void quitReleasesAllFolders();
};

void TestDirectories::initTestCase()
{
    QVERIFY(m_catalogue.load(QStringLiteral("station_en"), QStringLiteral(STATION_CATALOGUE_DIR)));
    QCoreApplication::installTranslator(&m_catalogue);
    Directories::registerClass();
}

void TestDirectories::init()
{
    m_station.reset(new RegistryStation);
    m_directories.reset(new Directories(QString(), QString(), m_station->usbKeyPath(), 30000, QStringList()));
}

void TestDirectories::cleanup()
{
    m_directories.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_station.reset();
}

void TestDirectories::constructionCreatesSyncManagerThroughFactory()
{
    QVERIFY(!m_directories->syncManager());   // editor-only station

    PreConfiguration::setParameter("isEditorOnly", false);
    QStringList received;
    Directories::setSyncManagerFactory([&](const QString& db, const QString& trash, int interval,
                                           const QStringList& patterns, QObject* parent) {
        received << db << trash << QString::number(interval) << patterns;
        return new DSyncManager(db, trash, interval, patterns, parent);
    });
    const QString db = m_station->path("sync.db");
    Directories directories(db, m_station->path("trash"), m_station->usbKeyPath(), 1234, {"*.tmp"});
    Directories::setSyncManagerFactory(nullptr);

    QCOMPARE(received, (QStringList{db, m_station->path("trash"), "1234", "*.tmp"}));
    QVERIFY(directories.syncManager());
    QCOMPARE(directories.syncManager()->parent(), &directories);
}

void TestDirectories::builtInFoldersAfterEmptyLoad_data()
{
    QTest::addColumn<bool>("medium");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("no removable medium: the eight built-in folders in alias order") << false << C_builtInAliases;
    QTest::newRow("removable medium present: USB follows") << true << (C_builtInAliases + QStringList{"USB"});
}

void TestDirectories::builtInFoldersAfterEmptyLoad()
{
    QFETCH(bool, medium);
    QFETCH(QStringList, expected);
    if (medium) {
        // A directory with a file system mounted on it stands for the USB key's mount point.
        m_directories.reset(new Directories(QString(), QString(), QStringLiteral("/proc"), 30000, QStringList()));
        QVERIFY(m_directories->removableStorageAvailable());
    }
    QSignalSpy changed(m_directories.get(), &Directories::sigDirectoriesChanged);
    load(QJsonObject());

    QCOMPARE(aliases(*m_directories), expected);
    QCOMPARE(changed.count(), 1);
    // Every built-in folder serves its own role.
    for (const QSharedPointer<Folder>& folder : m_directories->folders()->list())
        QCOMPARE(m_directories->foldersRoles().value(folder->id()), folder->id());
    QCOMPARE(m_directories->foldersRoles().size(), expected.size());
    QVERIFY(QFileInfo(m_station->internal("db")).isDir());
}

void TestDirectories::savingAfterEmptyLoadRemovesBothKeys()
{
    load(QJsonObject());
    QJsonObject root{{"directories", QJsonObject{{"folders", QJsonArray{1}}, {"foldersRoles", QJsonObject{{"a", "b"}}},
                                                 {"kept", 7}}},
                     {"other", true}};
    m_directories->saveSettings(root);
    QCOMPARE(root.value("directories").toObject(), (QJsonObject{{"kept", 7}}));
    QCOMPARE(root.value("other"), QJsonValue(true));
}

void TestDirectories::sectionGivenDirectlyIsRead()
{
    const QString id = RegistryStation::newId();
    load(QJsonObject{{"folders", QJsonArray{RegistryStation::folder(id, "internal", "Archive", "archive")}}});
    bool found = false;
    m_directories->getFolderById(id, found);
    QVERIFY(found);
}

void TestDirectories::persistenceAndDeletionFollowUuidIdentity()
{
    const QString id = RegistryStation::newId();
    load(RegistryStation::document({RegistryStation::folder(id, "internal", "Archive", "archive"),
                                    RegistryStation::folder("custom", "internal", "Custom", "custom")}));
    QCOMPARE(m_directories->folders()->count(), 10);

    QJsonObject root;
    m_directories->saveSettings(root);
    const QJsonArray saved = root.value("directories").toObject().value("folders").toArray();
    QCOMPARE(saved.size(), 1);
    QCOMPARE(saved.at(0).toObject().value("id").toString(), id);

    // A non-UUID folder cannot be deleted.
    m_directories->selectFolder(aliases(*m_directories).indexOf("Custom"));
    QVERIFY(m_directories->isSelectedFolderEditable());
    QVERIFY(!m_directories->isSelectedFolderDeletable());
    m_directories->deleteSelectedFolder();
    QCOMPARE(m_directories->folders()->count(), 10);

    m_directories->selectFolder(aliases(*m_directories).indexOf("Archive"));
    QVERIFY(m_directories->isSelectedFolderDeletable());
    QSignalSpy selection(m_directories.get(), &Directories::selectedFolderChanged);
    QSignalSpy changed(m_directories.get(), &Directories::sigDirectoriesChanged);
    m_directories->deleteSelectedFolder();
    QVERIFY(!aliases(*m_directories).contains("Archive"));
    QCOMPARE(m_directories->selectedFolderIndex(), -1);
    QVERIFY(!m_directories->selectedFolder());
    QCOMPARE(selection.count(), 1);
    QCOMPARE(changed.count(), 1);
}

void TestDirectories::refusals_data()
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

void TestDirectories::refusals()
{
    QFETCH(bool, edit);
    QFETCH(QString, alias);
    QFETCH(QString, expected);
    load(QJsonObject());
    QVERIFY(!addOperatorFolder("Archive").isEmpty());
    QVERIFY(!expected.startsWith("Directories_"));   // the catalogue gave a text

    const QStringList before = aliases(*m_directories);
    QSignalSpy changed(m_directories.get(), &Directories::sigDirectoriesChanged);
    const QString id = edit ? RegistryStation::newId() : QString();
    QCOMPARE(m_directories->setFolderAlias(id, "results", "internal", alias, "x", QString(), QString(), QString(),
                                           QString(), true),
             expected);
    QCOMPARE(aliases(*m_directories), before);
    QCOMPARE(m_directories->foldersRoles().value("results"), QStringLiteral("results"));
    QCOMPARE(changed.count(), 0);
}

void TestDirectories::roleReassignmentFallsBackInSavedSection()
{
    load(QJsonObject());
    const QString id = addOperatorFolder("Share", "results", "samba", false);
    QVERIFY(!id.isEmpty());
    QCOMPARE(m_directories->foldersRoles().value("results"), id);
    QCOMPARE(m_directories->getRoleOfFolder(id), QStringLiteral("results"));

    QJsonObject root;
    m_directories->saveSettings(root);
    QCOMPARE(root.value("directories").toObject().value("foldersRoles").toObject(), (QJsonObject{{"results", id}}));

    QSignalSpy changed(m_directories.get(), &Directories::sigDirectoriesChanged);
    QCOMPARE(m_directories->setFolderAlias(id, "undefined", "samba", "Share", "share", QString(), "127.0.0.1:9",
                                           "operator", "secret", false),
             QString());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_directories->foldersRoles().value("results"), QStringLiteral("results"));
    m_directories->saveSettings(root);
    QVERIFY(!root.value("directories").toObject().contains("foldersRoles"));
    QCOMPARE(root.value("directories").toObject().value("folders").toArray().size(), 1);

    // An edit that changes nothing leaves everything quiet.
    QCOMPARE(m_directories->setFolderAlias(id, "undefined", "samba", "Share", "share", QString(), "127.0.0.1:9",
                                           "operator", "secret", false),
             QString());
    QCOMPARE(changed.count(), 1);
}

void TestDirectories::roleOfFolderPointedAtTwice()
{
    const QString id = RegistryStation::newId();
    load(RegistryStation::document({RegistryStation::folder(id, "internal", "Archive", "archive")},
                                   QJsonObject{{"templates", id}, {"media", id}}));
    QCOMPARE(m_directories->getRoleOfFolder(id), QStringLiteral("media"));
    QCOMPARE(m_directories->getRoleOfFolder(RegistryStation::newId()), QStringLiteral("undefined"));
    QCOMPARE(m_directories->getRoleNameOfFolder(id), Folder::getRoleName(QStringLiteral("media")));
}

void TestDirectories::caseOnlyCollisionKeepsFirstAddedAfterSort()
{
    load(QJsonObject());
    const auto first = m_directories->addNewFolderAlias("internal", QString(), "data", "first", QString(), QString(),
                                                        QString(), QString(), true, false);
    const auto second = m_directories->addNewFolderAlias("internal", QString(), "Data", "second", QString(), QString(),
                                                         QString(), QString(), true, false);
    QVERIFY(first && second);
    QCOMPARE(aliases(*m_directories).filter("data", Qt::CaseInsensitive).size(), 2);

    m_directories->sortFoldersByAliasName();
    QCOMPARE(aliases(*m_directories).filter("data", Qt::CaseInsensitive), QStringList{"data"});
    QVERIFY(m_directories->folders()->list().contains(first));
    QCOMPARE(aliases(*m_directories), (QStringList{"CERTIFICATES", "data", "MEDIA", "PDF_RESULTS", "RAW_RESULTS",
                                                   "SCRIPTS", "SEQUENCES", "TEMPLATES", "TOOL_BACKUPS"}));
}

void TestDirectories::selectionEdgeCases()
{
    plugRemovableMedium(*m_directories, true);
    load(QJsonObject());
    QCOMPARE(m_directories->folders()->count(), 9);

    QSignalSpy selection(m_directories.get(), &Directories::selectedFolderChanged);
    m_directories->selectFolder(2);
    QCOMPARE(m_directories->selectedFolder()->aliasName(), QStringLiteral("PDF_RESULTS"));
    m_directories->selectFolder(99);
    QCOMPARE(m_directories->selectedFolderIndex(), 99);
    QVERIFY(!m_directories->selectedFolder());
    QVERIFY(!m_directories->isSelectedFolderEditable());
    QCOMPARE(selection.count(), 2);
    m_directories->selectFolder(99);
    QCOMPARE(selection.count(), 2);

    // Nothing selected: deleting does nothing at all.
    QSignalSpy changed(m_directories.get(), &Directories::sigDirectoriesChanged);
    m_directories->deleteSelectedFolder();
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_directories->selectedFolderIndex(), 99);
}

void TestDirectories::sortFollowsSelectedFolder()
{
    load(QJsonObject());
    m_directories->selectFolder(aliases(*m_directories).indexOf("SEQUENCES"));
    QSignalSpy selection(m_directories.get(), &Directories::selectedFolderChanged);
    QVERIFY(!addOperatorFolder("Archive").isEmpty());
    QCOMPARE(selection.count(), 1);
    QCOMPARE(m_directories->selectedFolderIndex(), 6);
    QCOMPARE(m_directories->selectedFolder()->aliasName(), QStringLiteral("SEQUENCES"));

    // Reloading rebuilds every folder: the old selection is gone.
    load(QJsonObject());
    QCOMPARE(m_directories->selectedFolderIndex(), -1);
    QVERIFY(!m_directories->selectedFolder());
}

void TestDirectories::countersFollowFolders()
{
    load(RegistryStation::document({RegistryStation::folder(RegistryStation::newId(), "samba", "Share", "share"),
                                    RegistryStation::folder(RegistryStation::newId(), "samba", "Off", "off", false),
                                    RegistryStation::folder(RegistryStation::newId(), "external", "Stick", "stick")}));
    QCOMPARE(m_directories->configuredNetworkStorageNbr(), 1);
    QCOMPARE(m_directories->configuredRemovableStorageNbr(), 1);
    QCOMPARE(m_directories->connectedNetworkStorageNbr(), 0);
    QCOMPARE(m_directories->connectedRemovableStorageNbr(), 0);

    QSignalSpy network(m_directories.get(), &Directories::connectedNetworkStorageNbrChanged);
    QSignalSpy removable(m_directories.get(), &Directories::connectedRemovableStorageNbrChanged);
    auto availability = [this](const char* alias, bool available) {
        QVERIFY(QMetaObject::invokeMethod(m_directories.get(), "sltFolderAliasAvailabilityChanged",
                                          Q_ARG(QString, QString::fromLatin1(alias)), Q_ARG(bool, available)));
    };
    availability("Share", true);
    availability("Stick", true);
    availability("Off", true);   // disabled: not counted
    QCOMPARE(m_directories->connectedNetworkStorageNbr(), 1);
    QCOMPARE(m_directories->connectedRemovableStorageNbr(), 1);
    QCOMPARE(network.count(), 1);
    QCOMPARE(removable.count(), 1);
    availability("Share", false);
    QCOMPARE(m_directories->connectedNetworkStorageNbr(), 0);

    QSignalSpy configured(m_directories.get(), &Directories::configuredNetworkStorageNbrChanged);
    QVERIFY(!addOperatorFolder("Second", "undefined", "samba").isEmpty());
    QCOMPARE(m_directories->configuredNetworkStorageNbr(), 2);
    QCOMPARE(configured.count(), 1);
    QCOMPARE(m_directories->externalAliasesCountForRole("results"), 2);
    QCOMPARE(m_directories->externalAliasesCountForRole("nosuchrole"), 0);
}

void TestDirectories::errorCodes_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("aliasSignals");
    QTest::addColumn<int>("internalSignals");
    QTest::addColumn<QString>("text");
    QTest::newRow("0: nothing at all") << 0 << 0 << 0 << QString();
    QTest::newRow("1: creation failure is only logged") << 1 << 0 << 0 << "ERROR: Failure to create the folder object: P";
    QTest::newRow("2: alias folder unreachable") << 2 << 1 << 0 << "ERROR: Failure to access the alias folder: P";
    QTest::newRow("3: alias folder unknown") << 3 << 1 << 0 << "ERROR: Failure to find the alias folder: P";
    QTest::newRow("4: internal folder creation") << 4 << 0 << 1
                                                 << "FATAL ERROR: Failure to create the internal memory folder: P";
    QTest::newRow("5: internal folder access") << 5 << 0 << 1
                                               << "FATAL ERROR: Failure to access the internal memory folder: P";
    QTest::newRow("6: internal folder missing") << 6 << 0 << 1
                                                << "FATAL ERROR: Failure to find the internal memory folder: P";
    QTest::newRow("7: out of range behaves like 0") << 7 << 0 << 0 << QString();
}

void TestDirectories::errorCodes()
{
    QFETCH(int, code);
    QFETCH(int, aliasSignals);
    QFETCH(int, internalSignals);
    QFETCH(QString, text);
    QSignalSpy alias(m_directories.get(), &Directories::folderAliasUnavailable);
    QSignalSpy internal(m_directories.get(), &Directories::internalMemoryAccessError);
    LogCapture log;
    // Called as the slot it is, through the registered enumeration type.
    QVERIFY(QMetaObject::invokeMethod(m_directories.get(), "sendError",
                                      Q_ARG(Directories::EnDirectoriesError, Directories::EnDirectoriesError(code)),
                                      Q_ARG(QString, "P")));
    QCOMPARE(alias.count(), aliasSignals);
    QCOMPARE(internal.count(), internalSignals);
    const QList<QVariant> emitted = aliasSignals ? alias.value(0) : internalSignals ? internal.value(0) : QList<QVariant>();
    if (!emitted.isEmpty())
        QCOMPARE(emitted.at(0).toString(), text);
    if (text.isEmpty()) {
        QVERIFY(log.lines().filter("lib_configuration/source/directories").isEmpty());
    } else {
        QCOMPARE(log.count(text), 1);
        QVERIFY(log.matching(text).at(0).contains("lib_configuration/source/directories"));
    }
}

void TestDirectories::folderConnectionFailureIsRelayed()
{
    load(QJsonObject());
    const QSharedPointer<Folder> folder = m_directories->addNewFolderAlias(
        "samba", QString(), "Share", "share", QString(), "127.0.0.1:9", "operator", "secret", false, false);
    QVERIFY(folder);
    QSignalSpy relayed(m_directories.get(), &Directories::networkFolderConnectionError);
    emit folder->folderConnectionFailed("Share", "host unreachable", false);
    QCOMPARE(relayed.count(), 1);
    QCOMPARE(relayed.at(0), (QList<QVariant>{"Share", "host unreachable", false}));
}

void TestDirectories::quitReleasesAllFolders()
{
    load(QJsonObject());
    QWeakPointer<Folder> media = m_directories->folders()->at(1);
    QVERIFY(QMetaObject::invokeMethod(m_directories.get(), "unmountAllNetworkShares"));
    QCOMPARE(m_directories->folders()->count(), 0);
    QVERIFY(media.isNull());
}

QTEST_GUILESS_MAIN(TestDirectories)
#include "tst_directories.moc"
