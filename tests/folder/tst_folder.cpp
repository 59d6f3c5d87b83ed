#include "folder.h"
#include "logcapture.h"
#include "utilities/preconfiguration.h"
#include "utilities/simplecrypt.h"

#include <QCoreApplication>
#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTranslator>
#include <QUuid>
#include <QtTest>

namespace {
// English texts for the ids whose arguments the tests check.
class TestTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* id, const char*, int) const override
    {
        const QByteArray key(id);
        if (key == "Folder_Unable_to_mount__1___2__Please_check_network_configuration")
            return QStringLiteral("Unable to mount %1 (%2). Please check network configuration.");
        if (key == "Folder_Network_drive")
            return QStringLiteral("Network drive");
        if (key == "Folder_Media")
            return QStringLiteral("Media");
        return QString();
    }
};

QSharedPointer<Folder> makeFolder(const QString& type, const QString& alias, const QString& path,
                                  bool enabled = true, const QString& id = QString())
{
    return Folder::configure(type, id, alias, path, QStringLiteral("CORP"), QStringLiteral("10.0.0.5"),
                             QStringLiteral("operator"), QStringLiteral("s3cret"), enabled, false, 5000);
}

QSharedPointer<Folder> removableFolder(const QString& alias, const QString& path, int pollingInterval)
{
    return Folder::configure(QStringLiteral("external"), QString(), alias, path, QString(), QString(), QString(),
                             QString(), true, false, pollingInterval);
}

QStringList rowIds(const QVariantList& rows)
{
    QStringList ids;
    for (const QVariant& row : rows)
        ids << row.toMap().value(QStringLiteral("id")).toString();
    return ids;
}
}

class TestFolder : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_root;
    TestTranslator m_translator;
    QString m_removableRoot;
    QString m_mountRoot;

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void jsonForm_data();
    void jsonForm();
    void identity_data();
    void identity();
    void updateChangeRules_data();
    void updateChangeRules();
    void storedPasswordRoundTrip();
    void pollingFloor_data();
    void pollingFloor();
    void displayPath_data();
    void displayPath();
    void names();
    void models();
    void availableRolesModel_data();
    void availableRolesModel();
    void internalFolderCreatesItsDirectory();
    void qmlRegistration();

    void removableFolderSignalsOnceAndPolls();
    void removableConnectedTwiceChecksOnce();
    void removableMountEventOfOtherPathIgnored();
    void statusMaps_data();
    void statusMaps();
    void shareStatusOfOtherFolderIgnored();
    void permanentFailureReportsAliasAndReason();
    void disabledNetworkFolderHasNoManager();
};

void TestFolder::initTestCase()
{
    QVERIFY(m_root.isValid());
    const QString internal = m_root.filePath(QStringLiteral("internal"));
    m_removableRoot = m_root.filePath(QStringLiteral("removable"));
    m_mountRoot = m_root.filePath(QStringLiteral("mount"));
    for (const QString& dir : {internal, m_removableRoot, m_mountRoot})
        QVERIFY(QDir().mkpath(dir));
    PreConfiguration::setParameter(QStringLiteral("internalStorageDirPath"), internal);
    PreConfiguration::setParameter(QStringLiteral("removableStorageDirPath"), m_removableRoot);
    PreConfiguration::setParameter(QStringLiteral("mountingStorageDirPath"), m_mountRoot);
    PreConfiguration::setParameter(QStringLiteral("shareMountBackend"), QStringLiteral("fuse"));
    QCoreApplication::installTranslator(&m_translator);
}

void TestFolder::cleanupTestCase()
{
    QCoreApplication::removeTranslator(&m_translator);
    PreConfiguration::clear();
}

void TestFolder::jsonForm_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("keys");
    const QStringList common{"aliasName", "enabled", "id", "path", "type"};
    QTest::newRow("internal folder stores only the common keys") << "internal" << common;
    QTest::newRow("removable folder stores only the common keys") << "external" << common;
    QTest::newRow("network folder adds its credentials")
        << "samba" << (common + QStringList{"address", "domain", "identifier", "password"});
}

void TestFolder::jsonForm()
{
    QFETCH(QString, type);
    QFETCH(QStringList, keys);
    // Disabled so that the network folder mounts nothing.
    const auto folder = makeFolder(type, QStringLiteral("Data"), QStringLiteral("data"), false);
    const QJsonObject json = folder->toJsonObject();

    QStringList actual = json.keys();
    keys.sort();
    actual.sort();
    QCOMPARE(actual, keys);
    QCOMPARE(json.value("id").toString(), folder->id());
    QCOMPARE(json.value("type").toString(), type);
    QCOMPARE(json.value("aliasName").toString(), QStringLiteral("Data"));
    QCOMPARE(json.value("path").toString(), QStringLiteral("data"));
    QCOMPARE(json.value("enabled").toBool(), folder->isEnabled());
    if (type == QLatin1String("samba")) {
        QCOMPARE(json.value("domain").toString(), QStringLiteral("CORP"));
        QCOMPARE(json.value("address").toString(), QStringLiteral("10.0.0.5"));
        QCOMPARE(json.value("identifier").toString(), QStringLiteral("operator"));
        const QString stored = json.value("password").toString();
        QVERIFY(!stored.contains(QStringLiteral("s3cret")));
        QCOMPARE(SimpleCrypt(Folder::C_cryptKey).decryptToString(stored), QStringLiteral("s3cret"));
    }
}

void TestFolder::identity_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("expectUuid");
    QTest::addColumn<QString>("expectedId");
    QTest::addColumn<bool>("canDelete");
    QTest::newRow("null id gets a braced uuid and can be deleted") << "external" << QString() << true << QString() << true;
    QTest::newRow("built-in id is kept and cannot be deleted") << "internal" << "internal" << false << "internal" << false;
    QTest::newRow("empty non-null id stays empty") << "external" << QString("") << false << "" << false;
    QTest::newRow("given uuid is kept") << "samba" << "{6f1c2a4e-0d7b-4c1e-9a55-3b2f8e7d1c00}" << false
                                        << "{6f1c2a4e-0d7b-4c1e-9a55-3b2f8e7d1c00}" << true;
    QTest::newRow("no type leaves the id empty") << "" << QString() << false << "" << false;
}

void TestFolder::identity()
{
    QFETCH(QString, type);
    QFETCH(QString, id);
    QFETCH(bool, expectUuid);
    QFETCH(QString, expectedId);
    QFETCH(bool, canDelete);
    const auto folder = Folder::configure(type, id, QStringLiteral("Id"), QStringLiteral("id"), QString(), QString(),
                                          QString(), QString(), false, false, 5000);
    if (expectUuid) {
        QVERIFY(folder->id().startsWith(QLatin1Char('{')) && folder->id().endsWith(QLatin1Char('}')));
        QVERIFY(!QUuid(folder->id()).isNull());
    } else {
        QCOMPARE(folder->id(), expectedId);
    }
    QCOMPARE(folder->canDelete(), canDelete);
    QCOMPARE(folder->property("canDelete").toBool(), canDelete);
}

void TestFolder::updateChangeRules_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("values"); // alias, path, domain, address, identifier, password
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<bool>("enabledAfter");
    const QStringList same{"Data", "data", "CORP", "10.0.0.5", "operator", "s3cret"};
    auto with = [&](int i, const QString& v) { QStringList l = same; l[i] = v; return l; };

    QTest::newRow("internal: identical values are no change") << "internal" << same << false << false << true;
    QTest::newRow("internal: new path is a change") << "internal" << with(1, "other") << false << true << true;
    QTest::newRow("internal: case of the alias is a change") << "internal" << with(0, "DATA") << false << true << true;
    QTest::newRow("internal: credentials are ignored") << "internal" << with(3, "10.0.0.6") << false << false << true;
    // The folder starts enabled (disabling is not stored for this type), the update disables it.
    QTest::newRow("removable: only enabled changed is no change") << "external" << same << false << false << true;
    QTest::newRow("removable: new alias is a change") << "external" << with(0, "Stick") << false << true << true;
    QTest::newRow("network: identical values are no change") << "samba" << same << false << false << false;
    QTest::newRow("network: new domain is a change") << "samba" << with(2, "LAB") << false << true << false;
    QTest::newRow("network: new address is a change") << "samba" << with(3, "10.0.0.6") << false << true << false;
    QTest::newRow("network: new login is a change") << "samba" << with(4, "admin") << false << true << false;
    QTest::newRow("network: new password is a change") << "samba" << with(5, "other") << false << true << false;
}

void TestFolder::updateChangeRules()
{
    QFETCH(QString, type);
    QFETCH(QStringList, values);
    QFETCH(bool, enabled);
    QFETCH(bool, changed);
    QFETCH(bool, enabledAfter);
    // Every folder starts disabled: the network rows then never mount anything.
    const auto folder = makeFolder(type, QStringLiteral("Data"), QStringLiteral("data"), false);
    QSignalSpy spy(folder.data(), &Folder::sigChanged);
    QCOMPARE(folder->update(type, values[0], values[1], values[2], values[3], values[4], values[5], enabled, false),
             changed);
    QCOMPARE(spy.count(), changed ? 1 : 0);
    QCOMPARE(folder->isEnabled(), enabledAfter);
    QCOMPARE(folder->aliasName(), values[0]);
    QCOMPARE(folder->path(), values[1]);
    if (type == QLatin1String("samba")) {
        QCOMPARE(folder->address(), values[3]);
        QCOMPARE(folder->password(), values[5]);
    } else {
        QVERIFY(folder->address().isEmpty());
        QVERIFY(folder->password().isEmpty());
    }
    QVERIFY(!folder->shareManager());
}

void TestFolder::storedPasswordRoundTrip()
{
    const auto original = makeFolder(QStringLiteral("samba"), QStringLiteral("Results"), QStringLiteral("share/results"),
                                     false);
    const QJsonObject json = original->toJsonObject();
    const QString stored = json.value("password").toString();

    const auto reread = Folder::configure(json.value("type").toString(), json.value("id").toString(),
                                          json.value("aliasName").toString(), json.value("path").toString(),
                                          json.value("domain").toString(), json.value("address").toString(),
                                          json.value("identifier").toString(), stored,
                                          json.value("enabled").toBool(), true, 5000);
    QCOMPARE(reread->id(), original->id());
    QCOMPARE(reread->password(), QStringLiteral("s3cret"));
    QVERIFY(!reread->update(QStringLiteral("samba"), QStringLiteral("Results"), QStringLiteral("share/results"),
                            QStringLiteral("CORP"), QStringLiteral("10.0.0.5"), QStringLiteral("operator"), stored,
                            false, true));
    QCOMPARE(reread->password(), QStringLiteral("s3cret"));
}

void TestFolder::pollingFloor_data()
{
    QTest::addColumn<int>("initial");
    QTest::addColumn<int>("set");
    QTest::addColumn<int>("expected");
    QTest::newRow("configured 200 is raised to 1000") << 200 << 0 << 1000;
    QTest::newRow("configured 1500 is kept") << 1500 << 0 << 1500;
    QTest::newRow("setting the default changes nothing") << 5000 << 5000 << 5000;
    QTest::newRow("setting 500 is raised to 1000") << 5000 << 500 << 1000;
    QTest::newRow("setting 500 twice stays 1000") << 500 << 500 << 1000;
}

void TestFolder::pollingFloor()
{
    QFETCH(int, initial);
    QFETCH(int, set);
    QFETCH(int, expected);
    const auto folder = removableFolder(QStringLiteral("Usb"), QStringLiteral("usb"), initial);
    if (set)
        folder->setPollingInterval(set);
    QCOMPARE(folder->pollingInterval(), expected);
    auto* timer = folder->findChild<QTimer*>();
    QVERIFY(timer);
    QCOMPARE(timer->interval(), expected);
    QVERIFY(timer->isSingleShot());
}

void TestFolder::displayPath_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("removable drive") << "external" << "" << "E:/" << "usb://E:/";
    QTest::newRow("network share shows its server") << "samba" << "10.0.0.5" << "share/results"
                                                    << "ext://10.0.0.5/share/results";
    QTest::newRow("internal folder ignores the address") << "internal" << "10.0.0.5" << "D:/data" << "int://D:/data";
    QTest::newRow("unknown type has no prefix") << "ftp" << "" << "pub" << "pub";
}

void TestFolder::displayPath()
{
    QFETCH(QString, type);
    QFETCH(QString, address);
    QFETCH(QString, path);
    QFETCH(QString, expected);
    const auto folder = Folder::configure(type, QString(), QStringLiteral("Shown"), path, QString(), address,
                                          QString(), QString(), false, false, 5000);
    QCOMPARE(folder->displayPath(), expected);
    QCOMPARE(folder->property("displayPath").toString(), expected);
}

void TestFolder::names()
{
    QCOMPARE(Folder::getRoleName(QStringLiteral("usb")), QString());
    QCOMPARE(Folder::getRoleName(QStringLiteral("certificates")), QString());
    QCOMPARE(Folder::getRoleName(QStringLiteral("undefined")), QStringLiteral("-"));
    QCOMPARE(Folder::getRoleName(QStringLiteral("media")), QStringLiteral("Media"));
    QCOMPARE(Folder::getRoleName(QStringLiteral("Media")), QString());
    QCOMPARE(Folder::getRoleName(Folder::EnFolderRole(8)), QString());
    QCOMPARE(Folder::typeName(Folder::CeFtUndefined), QStringLiteral("-"));
    QCOMPARE(Folder::typeName(Folder::EnFolderType(4)), QString());

    Folder network(QStringLiteral("samba"), QString(), 5000);
    network.update(QStringLiteral("samba"), QStringLiteral("N"), QStringLiteral("p"), {}, {}, {}, {}, false, false);
    QCOMPARE(network.typeName(), QStringLiteral("Network drive"));
    QCOMPARE(network.typeAlias(), QStringLiteral("ext://"));
    Folder unknown(QStringLiteral("ftp"), QString(), 5000);
    unknown.update(QStringLiteral("ftp"), QStringLiteral("F"), QStringLiteral("p"), {}, {}, {}, {}, true, false);
    QCOMPARE(unknown.typeName(), QString());
    QCOMPARE(unknown.typeAlias(), QString());
    QCOMPARE(unknown.mountedPath(), QString());
    QVERIFY(!unknown.make());
}

void TestFolder::models()
{
    Folder blank;
    QVERIFY(blank.id().isEmpty());
    const QVariantList types = blank.typesModel();
    QCOMPARE(rowIds(types), (QStringList{"internal", "external", "samba"}));
    const QVariantMap network{{"value", 3}, {"id", "samba"}, {"locked", false}, {"aliasName", "ext://"},
                              {"name", "Network drive"}};
    QCOMPARE(types.at(2).toMap(), network);
    QCOMPARE(types.at(0).toMap().value("locked").toBool(), true);
    QCOMPARE(types.at(1).toMap().value("aliasName").toString(), QStringLiteral("usb://"));

    const QVariantList roles = blank.rolesModel();
    QCOMPARE(rowIds(roles), (QStringList{"undefined", "sequences", "results", "pdfResults", "templates",
                                         "toolBackups", "media", "scripts"}));
    for (int i = 0; i < roles.size(); ++i)
        QCOMPARE(roles.at(i).toMap().value("value").toInt(), i);
    QCOMPARE(roles.at(6).toMap().value("name").toString(), QStringLiteral("Media"));
    QCOMPARE(roles.at(0).toMap().value("name").toString(), QStringLiteral("-"));
}

void TestFolder::availableRolesModel_data()
{
    QTest::addColumn<QString>("aliasId");
    QTest::addColumn<QString>("currentRole");
    QTest::addColumn<bool>("isUpdatable");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("updatable offers every role")
        << "media" << "media" << true
        << QStringList{"undefined", "sequences", "results", "pdfResults", "templates", "toolBackups", "media", "scripts"};
    QTest::newRow("own role only") << "media" << "media" << false << QStringList{"media"};
    QTest::newRow("other role: undefined then the alias role")
        << "results" << "media" << false << QStringList{"undefined", "results"};
    QTest::newRow("unknown alias id repeats the undefined row") << "x" << "media" << false
                                                               << QStringList{"undefined", "undefined"};
    QTest::newRow("unknown current role reads as undefined") << "x" << "x" << false << QStringList{"undefined"};
}

void TestFolder::availableRolesModel()
{
    QFETCH(QString, aliasId);
    QFETCH(QString, currentRole);
    QFETCH(bool, isUpdatable);
    QFETCH(QStringList, expected);
    Folder blank;
    QVariantList rows;
    QVERIFY(QMetaObject::invokeMethod(&blank, "availableRolesModel", Q_RETURN_ARG(QVariantList, rows),
                                      Q_ARG(QString, aliasId), Q_ARG(QString, currentRole),
                                      Q_ARG(bool, isUpdatable)));
    QCOMPARE(rowIds(rows), expected);
}

void TestFolder::internalFolderCreatesItsDirectory()
{
    const auto folder = makeFolder(QStringLiteral("internal"), QStringLiteral("Deep"), QStringLiteral("a/b/c"));
    QCOMPARE(folder->mountedPath(), m_root.filePath(QStringLiteral("internal/a/b/c")));
    QVERIFY(QFileInfo(folder->mountedPath()).isDir());
    QVERIFY(folder->isAvailable());
    QVERIFY(folder->networkAdress().isEmpty());

    // A file where the directory should be: make fails with its log line.
    QFile blocker(m_root.filePath(QStringLiteral("internal/blocked")));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    LogCapture log;
    const auto blocked = makeFolder(QStringLiteral("internal"), QStringLiteral("Blocked"), QStringLiteral("blocked/x"));
    QVERIFY(!blocked->make());
    QVERIFY(log.contains(QStringLiteral("ERROR: Failure to make internal folder: ") + blocked->mountedPath()));
    QVERIFY(log.contains(QStringLiteral("lib_configuration/source/folder")));
    QVERIFY(!blocked->isAvailable());
}

void TestFolder::qmlRegistration()
{
    Folder::registerClass();
    QQmlEngine engine;
    QQmlComponent reader(&engine);
    reader.setData("import QtQml 2.15\nimport App 1.0\nQtObject {\n"
                   "  property string key: FolderAlias.C_modelKeyName\n"
                   "  property int types: FolderAlias.typesModel.length\n"
                   "  property string role: FolderAlias.rolesModel[6].id\n"
                   "  property int network: Folder.CeFtNetwork\n}",
                   QUrl());
    QScopedPointer<QObject> object(reader.create());
    QVERIFY2(object, qPrintable(reader.errorString()));
    QCOMPARE(object->property("key").toString(), QStringLiteral("name"));
    QCOMPARE(object->property("types").toInt(), 3);
    QCOMPARE(object->property("role").toString(), QStringLiteral("media"));
    QCOMPARE(object->property("network").toInt(), 3);

    QQmlComponent creator(&engine);
    creator.setData("import App 1.0\nFolder {}", QUrl());
    QScopedPointer<QObject> folder(creator.create());
    QVERIFY(!folder);
    QVERIFY2(creator.errorString().contains(QStringLiteral("interface")), qPrintable(creator.errorString()));
}

namespace {
// Records the availability signals of a folder in emission order.
struct AvailabilityLog
{
    QStringList events;
    explicit AvailabilityLog(Folder* folder)
    {
        QObject::connect(folder, &Folder::isAvailableChanged, folder,
                         [this](bool available) { events << QStringLiteral("isAvailableChanged %1").arg(available); });
        QObject::connect(folder, &Folder::availabilityChanged, folder, [this](const QString& alias, bool available) {
            events << QStringLiteral("availabilityChanged %1 %2").arg(alias).arg(available);
        });
    }
};
}

void TestFolder::removableFolderSignalsOnceAndPolls()
{
    const auto folder = removableFolder(QStringLiteral("Stick"), QStringLiteral("stick1"), 1000);
    AvailabilityLog log(folder.data());
    QVERIFY(QMetaObject::invokeMethod(folder.data(), "updateAvailability"));
    QVERIFY(QMetaObject::invokeMethod(folder.data(), "updateAvailability"));
    QVERIFY(log.events.isEmpty());

    // Drive present but the folder's directory missing: still unavailable, nothing emitted.
    folder->removableStorageStateChanged(true);
    QVERIFY(log.events.isEmpty());
    QVERIFY(!folder->isAvailable());

    // The timer keeps checking while the drive stays connected.
    QVERIFY(QDir().mkpath(m_removableRoot + QStringLiteral("/stick1")));
    QTRY_COMPARE_WITH_TIMEOUT(log.events,
                              (QStringList{"isAvailableChanged 1", "availabilityChanged Stick 1"}), 10000);
    QVERIFY(folder->isAvailable());

    auto* timer = folder->findChild<QTimer*>();
    QVERIFY(timer);
    QSignalSpy ticks(timer, &QTimer::timeout);
    QVERIFY(ticks.wait(10000));
    QVERIFY(ticks.wait(10000));
    QCOMPARE(log.events.size(), 2);

    QVERIFY(QDir(m_removableRoot + QStringLiteral("/stick1")).removeRecursively());
    QTRY_COMPARE_WITH_TIMEOUT(log.events.size(), 4, 10000);
    QCOMPARE(log.events.mid(2), (QStringList{"isAvailableChanged 0", "availabilityChanged Stick 0"}));

    // Drive gone: at most the pending check runs, then polling stops.
    folder->removableStorageStateChanged(false);
    if (timer->isActive())
        QVERIFY(ticks.wait(10000));
    QVERIFY(!timer->isActive());
    QCOMPARE(log.events.size(), 4);
}

void TestFolder::removableConnectedTwiceChecksOnce()
{
    QVERIFY(QDir().mkpath(m_removableRoot + QStringLiteral("/stick2")));
    const auto folder = removableFolder(QStringLiteral("Stick2"), QStringLiteral("stick2"), 60000);
    AvailabilityLog log(folder.data());
    folder->removableStorageStateChanged(true);
    QCOMPARE(log.events, (QStringList{"isAvailableChanged 1", "availabilityChanged Stick2 1"}));

    // A second identical report must not check again: the vanished directory goes unnoticed.
    QVERIFY(QDir(m_removableRoot + QStringLiteral("/stick2")).removeRecursively());
    folder->removableStorageStateChanged(true);
    QCOMPARE(log.events.size(), 2);

    // An internal folder ignores removable-drive reports entirely.
    const auto internal = makeFolder(QStringLiteral("internal"), QStringLiteral("In"), QStringLiteral("in"));
    AvailabilityLog internalLog(internal.data());
    internal->removableStorageStateChanged(true);
    QVERIFY(internalLog.events.isEmpty());
}

void TestFolder::removableMountEventOfOtherPathIgnored()
{
    QVERIFY(QDir().mkpath(m_removableRoot + QStringLiteral("/stick3")));
    const auto folder = removableFolder(QStringLiteral("Stick3"), QStringLiteral("stick3"), 60000);
    folder->removableStorageStateChanged(true);
    QVERIFY(folder->isAvailable());
    AvailabilityLog log(folder.data());
    QVERIFY(QDir(m_removableRoot + QStringLiteral("/stick3")).removeRecursively());
    QVERIFY(QMetaObject::invokeMethod(folder.data(), "sltRemovableStorageChanged", Q_ARG(bool, false),
                                      Q_ARG(QString, m_removableRoot + QStringLiteral("/other"))));
    QVERIFY(log.events.isEmpty());
    QVERIFY(QMetaObject::invokeMethod(folder.data(), "sltRemovableStorageChanged", Q_ARG(bool, true),
                                      Q_ARG(QString, folder->mountedPath())));
    QCOMPARE(log.events, (QStringList{"isAvailableChanged 0", "availabilityChanged Stick3 0"}));
}

void TestFolder::statusMaps_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<QVariantMap>("expected");
    const QString ip = QStringLiteral("10.0.0.5");
    QTest::newRow("detection started") << QByteArray("sltServerDetectionStarted")
                                       << QVariantMap{{"state", "detecting"}, {"serverIp", ip}};
    QTest::newRow("detection retrying carries the delay")
        << QByteArray("sltServerDetectionRetrying")
        << QVariantMap{{"state", "detecting"}, {"serverIp", ip}, {"nextRetryMs", 4000}};
    QTest::newRow("server responded reads retrying") << QByteArray("sltServerResponded")
                                                     << QVariantMap{{"state", "retrying"}, {"serverIp", ip}};
    QTest::newRow("attempt started") << QByteArray("sltMountAttemptStarted")
                                     << QVariantMap{{"state", "mounting"}, {"serverIp", ip}, {"attempt", 2},
                                                    {"maxAttempts", 5}};
    QTest::newRow("attempt failed reads mounting without the reason")
        << QByteArray("sltMountAttemptFailed")
        << QVariantMap{{"state", "mounting"}, {"serverIp", ip}, {"attempt", 2}, {"maxAttempts", 5}};
    QTest::newRow("own mount point connected") << QByteArray("sltShareStatusChanged")
                                               << QVariantMap{{"state", "mounted"}, {"serverIp", ip}};
}

void TestFolder::statusMaps()
{
    QFETCH(QByteArray, slot);
    QFETCH(QVariantMap, expected);
    const auto folder = makeFolder(QStringLiteral("samba"), QStringLiteral("Results"), QStringLiteral("share/results"),
                                   false);
    QSignalSpy spy(folder.data(), &Folder::folderStatusChanged);
    QSignalSpy failures(folder.data(), &Folder::folderConnectionFailed);
    Folder* f = folder.data();
    bool invoked = false;
    if (slot == "sltServerDetectionRetrying")
        invoked = QMetaObject::invokeMethod(f, slot.constData(), Q_ARG(int, 4000));
    else if (slot == "sltMountAttemptStarted")
        invoked = QMetaObject::invokeMethod(f, slot.constData(), Q_ARG(int, 2), Q_ARG(int, 5));
    else if (slot == "sltMountAttemptFailed")
        invoked = QMetaObject::invokeMethod(f, slot.constData(), Q_ARG(int, 2), Q_ARG(int, 5), Q_ARG(QString, "timeout"));
    else if (slot == "sltShareStatusChanged")
        invoked = QMetaObject::invokeMethod(f, slot.constData(), Q_ARG(QString, f->mountedPath()), Q_ARG(bool, true));
    else
        invoked = QMetaObject::invokeMethod(f, slot.constData());
    QVERIFY(invoked);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("Results"));
    QCOMPARE(spy.at(0).at(1).toMap(), expected);
    QCOMPARE(failures.count(), 0);
}

void TestFolder::shareStatusOfOtherFolderIgnored()
{
    const auto folder = makeFolder(QStringLiteral("samba"), QStringLiteral("Results"), QStringLiteral("share/results"),
                                   false);
    QVERIFY(folder->mountedPath().endsWith(QStringLiteral("/Results")));
    QCOMPARE(folder->mountedPath(), m_mountRoot + QStringLiteral("/Results"));
    QCOMPARE(folder->networkAdress(), QStringLiteral("10.0.0.5/share/results"));
    QSignalSpy status(folder.data(), &Folder::folderStatusChanged);
    QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
    QVERIFY(QMetaObject::invokeMethod(folder.data(), "sltShareStatusChanged",
                                      Q_ARG(QString, m_mountRoot + QStringLiteral("/Results2")), Q_ARG(bool, true)));
    QVERIFY(QMetaObject::invokeMethod(folder.data(), "sltShareStatusChanged",
                                      Q_ARG(QString, m_mountRoot + QStringLiteral("/results")), Q_ARG(bool, true)));
    QCOMPARE(status.count(), 0);
    QVERIFY(QMetaObject::invokeMethod(folder.data(), "sltShareStatusChanged", Q_ARG(QString, folder->mountedPath()),
                                      Q_ARG(bool, false)));
    QCOMPARE(status.count(), 0);
    QCOMPARE(availability.count(), 0);
}

void TestFolder::permanentFailureReportsAliasAndReason()
{
    const auto folder = makeFolder(QStringLiteral("samba"), QStringLiteral("Results"), QStringLiteral("share/results"),
                                   false);
    QSignalSpy failures(folder.data(), &Folder::folderConnectionFailed);
    LogCapture log;
    QVERIFY(QMetaObject::invokeMethod(folder.data(), "sltPermanentMountFailure", Q_ARG(QString, "access denied")));
    QCOMPARE(failures.count(), 1);
    QCOMPARE(failures.at(0).at(0).toString(), QStringLiteral("Results"));
    QCOMPARE(failures.at(0).at(1).toString(),
             QStringLiteral("Unable to mount Results (access denied). Please check network configuration."));
    QCOMPARE(failures.at(0).at(2).toBool(), true);
    QCOMPARE(log.count(QStringLiteral("[Folder] Permanent mount failure for Results : access denied")), 1);
}

void TestFolder::disabledNetworkFolderHasNoManager()
{
    const auto folder = makeFolder(QStringLiteral("samba"), QStringLiteral("Off"), QStringLiteral("share"), false);
    QVERIFY(!folder->shareManager());
    QVERIFY(!folder->isEnabled());
    QVERIFY(!folder->make());
    QVERIFY(!folder->shareManager());

    QSignalSpy status(folder.data(), &Folder::folderStatusChanged);
    QSignalSpy failures(folder.data(), &Folder::folderConnectionFailed);
    QSignalSpy availability(folder.data(), &Folder::availabilityChanged);
    folder->retryConnection();
    // Even with a directory at its mount point it is not reported available.
    QVERIFY(QDir().mkpath(folder->mountedPath()));
    QVERIFY(QMetaObject::invokeMethod(folder.data(), "updateAvailability"));
    QVERIFY(QMetaObject::invokeMethod(folder.data(), "sltShareStatusChanged", Q_ARG(QString, folder->mountedPath()),
                                      Q_ARG(bool, false)));
    QCOMPARE(status.count(), 0);
    QCOMPARE(failures.count(), 0);
    QCOMPARE(availability.count(), 0);
    QVERIFY(QDir(folder->mountedPath()).removeRecursively());
}

QTEST_GUILESS_MAIN(TestFolder)
#include "tst_folder.moc"
