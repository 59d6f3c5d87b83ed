#include "folder.h"
#include "logcapture.h"
#include "utilities/preconfiguration.h"
#include "utilities/simplecrypt.h"

#include <QCoreApplication>
#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTranslator>
#include <QUuid>
#include <QtTest>

namespace {
QSharedPointer<Folder> makeFolder(const QString& type, const QString& alias, const QString& path, bool enabled = true,
                                  int pollingInterval = 5000, const QString& id = QString())
{
    return Folder::configure(type, id, alias, path, QStringLiteral("CORP"), QStringLiteral("10.0.0.5"),
                             QStringLiteral("operator"), QStringLiteral("s3cret"), enabled, false, pollingInterval);
}

QSharedPointer<Folder> networkFolder() { return makeFolder("samba", "Results", "share/results", false); }

QStringList rowIds(const QVariantList& rows)
{
    QStringList ids;
    for (const QVariant& row : rows)
        ids << row.toMap().value(QStringLiteral("id")).toString();
    return ids;
}

const QStringList C_roles{"undefined", "sequences", "results", "pdfResults", "templates", "toolBackups", "media",
                          "scripts"};

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

class TestFolder : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_root;
    QTranslator m_catalogue;
    QString m_removableRoot;
    QString m_mountRoot;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_root.isValid());
        m_removableRoot = m_root.filePath(QStringLiteral("removable"));
        m_mountRoot = m_root.filePath(QStringLiteral("mount"));
        PreConfiguration::setParameter(QStringLiteral("internalStorageDirPath"), m_root.filePath("internal"));
        PreConfiguration::setParameter(QStringLiteral("removableStorageDirPath"), m_removableRoot);
        PreConfiguration::setParameter(QStringLiteral("mountingStorageDirPath"), m_mountRoot);
        PreConfiguration::setParameter(QStringLiteral("shareMountBackend"), QStringLiteral("fuse"));
        for (const char* dir : {"internal", "removable", "mount"})
            QVERIFY(QDir(m_root.path()).mkpath(dir));
        QVERIFY(m_catalogue.load(QStringLiteral("station_en"), QStringLiteral(STATION_CATALOGUE_DIR)));
        QCoreApplication::installTranslator(&m_catalogue);
    }

    void cleanupTestCase() { PreConfiguration::clear(); }

    void jsonForm_data()
    {
        QTest::addColumn<QString>("type");
        QTest::newRow("local folder stores only the common keys") << "internal";
        QTest::newRow("network folder adds its credentials, the password encrypted") << "samba";
    }

    void jsonForm()
    {
        QFETCH(QString, type);
        const auto folder = makeFolder(type, "Data", "data", false);
        QJsonObject json = folder->toJsonObject();
        QJsonObject expected{{"id", folder->id()}, {"type", type}, {"aliasName", "Data"}, {"path", "data"},
                             {"enabled", folder->isEnabled()}};
        if (type == QLatin1String("samba")) {
            expected.insert("domain", "CORP");
            expected.insert("address", "10.0.0.5");
            expected.insert("identifier", "operator");
            const QString stored = json.take("password").toString();
            QVERIFY(!stored.contains(QStringLiteral("s3cret")));
            QCOMPARE(SimpleCrypt(Folder::C_cryptKey).decryptToString(stored), QStringLiteral("s3cret"));
        }
        QCOMPARE(json, expected);
    }

    void identity_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("expectedId"); // "{uuid}": any braced UUID
        QTest::addColumn<bool>("canDelete");
        const QString uuid = QStringLiteral("{6f1c2a4e-0d7b-4c1e-9a55-3b2f8e7d1c00}");
        QTest::newRow("null id gets a braced uuid and can be deleted") << "external" << QString() << "{uuid}" << true;
        QTest::newRow("built-in id is kept and cannot be deleted") << "internal" << "internal" << "internal" << false;
        QTest::newRow("empty non-null id stays empty") << "external" << QString("") << "" << false;
        QTest::newRow("given uuid is kept") << "samba" << uuid << uuid << true;
        QTest::newRow("no type leaves the id empty") << "" << QString() << "" << false;
    }

    void identity()
    {
        QFETCH(QString, type);
        QFETCH(QString, id);
        QFETCH(QString, expectedId);
        QFETCH(bool, canDelete);
        const auto folder = makeFolder(type, "Id", "id", false, 5000, id);
        if (expectedId == QLatin1String("{uuid}")) {
            QVERIFY(folder->id().startsWith(QLatin1Char('{')) && folder->id().endsWith(QLatin1Char('}')));
            QVERIFY(!QUuid(folder->id()).isNull());
        } else {
            QCOMPARE(folder->id(), expectedId);
        }
        QCOMPARE(folder->canDelete(), canDelete);
    }

    void updateChangeRules_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QStringList>("values"); // alias, path, domain, address, identifier, password
        QTest::addColumn<bool>("changed");
        const QStringList same{"Data", "data", "CORP", "10.0.0.5", "operator", "s3cret"};
        auto with = [&](int i, const QString& v) { QStringList l = same; l[i] = v; return l; };
        QTest::newRow("internal: identical values are no change") << "internal" << same << false;
        QTest::newRow("internal: new path is a change") << "internal" << with(1, "other") << true;
        QTest::newRow("internal: case of the alias is a change") << "internal" << with(0, "DATA") << true;
        QTest::newRow("internal: credentials are ignored") << "internal" << with(3, "10.0.0.6") << false;
        // Disabling is not stored for a removable folder: it stays enabled.
        QTest::newRow("removable: only enabled changed is no change") << "external" << same << false;
        QTest::newRow("removable: new alias is a change") << "external" << with(0, "Stick") << true;
        QTest::newRow("network: identical values are no change") << "samba" << same << false;
        QTest::newRow("network: new domain is a change") << "samba" << with(2, "LAB") << true;
        QTest::newRow("network: new address is a change") << "samba" << with(3, "10.0.0.6") << true;
        QTest::newRow("network: new login is a change") << "samba" << with(4, "admin") << true;
        QTest::newRow("network: new password is a change") << "samba" << with(5, "other") << true;
    }

    void updateChangeRules()
    {
        QFETCH(QString, type);
        QFETCH(QStringList, values);
        QFETCH(bool, changed);
        // Created and updated disabled: the network rows never mount anything.
        const auto folder = makeFolder(type, "Data", "data", false);
        QSignalSpy spy(folder.data(), &Folder::sigChanged);
        QCOMPARE(folder->update(type, values[0], values[1], values[2], values[3], values[4], values[5], false, false),
                 changed);
        QCOMPARE(spy.count(), changed ? 1 : 0);
        const bool network = type == QLatin1String("samba");
        QCOMPARE(folder->isEnabled(), !network);
        QCOMPARE(folder->aliasName(), values[0]);
        QCOMPARE(folder->path(), values[1]);
        QCOMPARE(folder->address(), network ? values[3] : QString());
        QCOMPARE(folder->password(), network ? values[5] : QString());
        QVERIFY(!folder->shareManager());
    }

    void storedPasswordRoundTrip()
    {
        const QJsonObject json = networkFolder()->toJsonObject();
        auto s = [&](const char* key) { return json.value(key).toString(); };
        const auto reread = Folder::configure(s("type"), s("id"), s("aliasName"), s("path"), s("domain"), s("address"),
                                              s("identifier"), s("password"), false, true, 5000);
        QCOMPARE(reread->id(), s("id"));
        QCOMPARE(reread->password(), QStringLiteral("s3cret"));
        QVERIFY(!reread->update("samba", "Results", "share/results", "CORP", "10.0.0.5", "operator", s("password"),
                                false, true));
        QCOMPARE(reread->password(), QStringLiteral("s3cret"));
    }

    void availableRolesModel_data()
    {
        QTest::addColumn<QString>("aliasId");
        QTest::addColumn<QString>("currentRole");
        QTest::addColumn<bool>("isUpdatable");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("updatable offers every role") << "media" << "media" << true << C_roles;
        QTest::newRow("own role only") << "media" << "media" << false << QStringList{"media"};
        QTest::newRow("other role: undefined then the alias role")
            << "results" << "media" << false << QStringList{"undefined", "results"};
        QTest::newRow("unknown alias id repeats the undefined row")
            << "x" << "media" << false << QStringList{"undefined", "undefined"};
        QTest::newRow("unknown current role reads as undefined") << "x" << "x" << false << QStringList{"undefined"};
    }

    void availableRolesModel()
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

    void internalFolderCreatesItsDirectory()
    {
        const auto folder = makeFolder("internal", "Deep", "a/b/c");
        QCOMPARE(folder->mountedPath(), m_root.filePath(QStringLiteral("internal/a/b/c")));
        QVERIFY(QFileInfo(folder->mountedPath()).isDir());
        QVERIFY(folder->isAvailable());
        QVERIFY(folder->networkAdress().isEmpty());

        // A file where the directory should be: make fails with its log line.
        QFile blocker(m_root.filePath(QStringLiteral("internal/blocked")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        LogCapture log;
        const auto blocked = makeFolder("internal", "Blocked", "blocked/x");
        QVERIFY(!blocked->make());
        QVERIFY(log.contains(QStringLiteral("ERROR: Failure to make internal folder: ") + blocked->mountedPath()));
        QVERIFY(log.contains(QStringLiteral("lib_configuration/source/folder")));
        QVERIFY(!blocked->isAvailable());
    }

    void removableFolderSignalsOnceAndPolls()
    {
        const auto folder = makeFolder("external", "Stick", "stick1", true, 1000);
        AvailabilityLog log(folder.data());
        QVERIFY(QMetaObject::invokeMethod(folder.data(), "updateAvailability"));
        QVERIFY(QMetaObject::invokeMethod(folder.data(), "updateAvailability"));
        // Drive present but the folder's directory missing: still unavailable, nothing emitted.
        folder->removableStorageStateChanged(true);
        QVERIFY(log.events.isEmpty());
        QVERIFY(!folder->isAvailable());

        // The timer keeps checking while the drive stays connected.
        QVERIFY(QDir().mkpath(m_removableRoot + QStringLiteral("/stick1")));
        QTRY_COMPARE_WITH_TIMEOUT(log.events, (QStringList{"isAvailableChanged 1", "availabilityChanged Stick 1"}),
                                  10000);
        QVERIFY(folder->isAvailable());
        QVERIFY(QDir(m_removableRoot + QStringLiteral("/stick1")).removeRecursively());
        QTRY_COMPARE_WITH_TIMEOUT(log.events.size(), 4, 10000);
        QCOMPARE(log.events.mid(2), (QStringList{"isAvailableChanged 0", "availabilityChanged Stick 0"}));
    }

    void removableReportsFilteredByPathAndRepeat()
    {
        QVERIFY(QDir().mkpath(m_removableRoot + QStringLiteral("/stick2")));
        const auto folder = makeFolder("external", "Stick2", "stick2", true, 60000);
        AvailabilityLog log(folder.data());
        folder->removableStorageStateChanged(true);
        QCOMPARE(log.events, (QStringList{"isAvailableChanged 1", "availabilityChanged Stick2 1"}));

        // A repeated report does not check again: the vanished directory goes unnoticed.
        QVERIFY(QDir(m_removableRoot + QStringLiteral("/stick2")).removeRecursively());
        folder->removableStorageStateChanged(true);
        // A mount event of another path is ignored, one of its own path checks.
        QVERIFY(QMetaObject::invokeMethod(folder.data(), "sltRemovableStorageChanged", Q_ARG(bool, false),
                                          Q_ARG(QString, m_removableRoot + QStringLiteral("/other"))));
        QCOMPARE(log.events.size(), 2);
        QVERIFY(QMetaObject::invokeMethod(folder.data(), "sltRemovableStorageChanged", Q_ARG(bool, true),
                                          Q_ARG(QString, folder->mountedPath())));
        QCOMPARE(log.events.mid(2), (QStringList{"isAvailableChanged 0", "availabilityChanged Stick2 0"}));
    }

    void statusMaps()
    {
        const auto folder = networkFolder();
        Folder* f = folder.data();
        QCOMPARE(f->mountedPath(), m_mountRoot + QStringLiteral("/Results"));
        QCOMPARE(f->networkAdress(), QStringLiteral("10.0.0.5/share/results"));
        QSignalSpy spy(f, &Folder::folderStatusChanged);
        QSignalSpy others(f, &Folder::availabilityChanged);
        QSignalSpy failures(f, &Folder::folderConnectionFailed);
        // Other folders' mount points, and its own going down, change nothing.
        for (const QString& other : {QStringLiteral("/Results2"), QStringLiteral("/results")})
            QVERIFY(QMetaObject::invokeMethod(f, "sltShareStatusChanged", Q_ARG(QString, m_mountRoot + other),
                                              Q_ARG(bool, true)));
        QVERIFY(QMetaObject::invokeMethod(f, "sltShareStatusChanged", Q_ARG(QString, f->mountedPath()),
                                          Q_ARG(bool, false)));
        QCOMPARE(spy.count() + others.count(), 0);

        QVERIFY(QMetaObject::invokeMethod(f, "sltServerDetectionRetrying", Q_ARG(int, 4000)));
        QVERIFY(QMetaObject::invokeMethod(f, "sltServerResponded"));
        QVERIFY(QMetaObject::invokeMethod(f, "sltMountAttemptFailed", Q_ARG(int, 2), Q_ARG(int, 5),
                                          Q_ARG(QString, "timeout")));
        QVERIFY(QMetaObject::invokeMethod(f, "sltShareStatusChanged", Q_ARG(QString, f->mountedPath()),
                                          Q_ARG(bool, true)));
        const QString ip = QStringLiteral("10.0.0.5");
        const QList<QVariantMap> expected{
            {{"state", "detecting"}, {"serverIp", ip}, {"nextRetryMs", 4000}},
            {{"state", "retrying"}, {"serverIp", ip}},
            {{"state", "mounting"}, {"serverIp", ip}, {"attempt", 2}, {"maxAttempts", 5}}, // without the reason
            {{"state", "mounted"}, {"serverIp", ip}}};
        QCOMPARE(spy.count(), expected.size());
        for (int i = 0; i < expected.size(); ++i) {
            QCOMPARE(spy.at(i).at(0).toString(), QStringLiteral("Results"));
            QCOMPARE(spy.at(i).at(1).toMap(), expected.at(i));
        }
        QCOMPARE(failures.count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestFolder)
#include "tst_folder.moc"
