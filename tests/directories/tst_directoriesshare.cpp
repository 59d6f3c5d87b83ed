// Network folders of the registry against a real SMB server (smbd on loopback), mounted through FUSE.
#include <QCoreApplication>
#include <QSignalSpy>
#include <QtTest>

#include "core/ddirectoriespaths.h"
#include "directories.h"
#include "registrystation.h"
#include "sambaserver.h"

namespace {
constexpr int C_mountTimeoutMs = 60000;
}

class TestDirectoriesShare : public RegistryTestBase
{
    Q_OBJECT

private:
    SambaServer m_server;

    QSharedPointer<Folder> addShare(const QString& alias, const QString& role, const QString& password)
    {
        const QString error = m_directories->setFolderAlias(QString(), role, "samba", alias, m_server.shareName(),
                                                            QString(), m_server.address(), m_server.user(), password,
                                                            true);
        bool found = false;
        const QSharedPointer<Folder> folder = m_directories->getFolderByName(alias, found);
        return error.isEmpty() && found ? folder : QSharedPointer<Folder>();
    }

private slots:
    void initTestCase()
    {
        if (!SambaServer::available())
            QSKIP("smbd or the FUSE helper is not available on this machine");
        loadCatalogue();
        QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
    }

    void init()
    {
        makeStation();
        PreConfiguration::setParameter("shareMountBackend", "fuse");
        load(QJsonObject());
    }

    void cleanupTestCase() { m_server.stop(); }

    void addedShareBecomesAvailableAndCounted()
    {
        const QSharedPointer<Folder> folder = addShare("Results_Share", "results", m_server.password());
        QVERIFY(folder);
        QCOMPARE(m_directories->configuredNetworkStorageNbr(), 1);
        QCOMPARE(m_directories->connectedNetworkStorageNbr(), 0);

        QTRY_COMPARE_WITH_TIMEOUT(m_directories->connectedNetworkStorageNbr(), 1, C_mountTimeoutMs);
        QVERIFY(folder->isAvailable());
        // The role now reads from the share.
        const QString mountPoint = m_station->path("mnt/Results_Share");
        QCOMPARE(m_directories->getSecuredFolderPathByRole("results"), mountPoint);
        QCOMPARE(m_directories->directoriesPaths()->path("results", DDirectoriesPaths::C_pathTypeLoad), mountPoint);
    }

    void wrongPasswordReachesTheUserInterface()
    {
        QSignalSpy relayed(m_directories.get(), &Directories::networkFolderConnectionError);
        const QSharedPointer<Folder> folder = addShare("Locked", "undefined", "not-the-password");
        QVERIFY(folder);
        if (WindowsShareManager* manager = folder->shareManager()) {
            manager->setMaxMountAttempts(2);
            manager->setMountAttemptIntervalMs(200);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!relayed.isEmpty(), 120000);
        const QList<QVariant> arguments = relayed.first();
        QCOMPARE(arguments.at(0).toString(), QStringLiteral("Locked"));
        QVERIFY2(arguments.at(1).toString().startsWith("Unable to mount Locked ("),
                 qPrintable(arguments.at(1).toString()));
        QCOMPARE(arguments.at(2).toBool(), true);
        QCOMPARE(m_directories->connectedNetworkStorageNbr(), 0);
        QVERIFY(!folder->isAvailable());
    }
};

QTEST_GUILESS_MAIN(TestDirectoriesShare)
#include "tst_directoriesshare.moc"
