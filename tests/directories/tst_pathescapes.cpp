// Folders whose path or network name would lead out of their storage root, whichever way they
// come in: the loaded document, the operator adding or editing a folder, an update package.
#include "d_zu_configuration.h"
#include "logcapture.h"
#include "registrystation.h"
#include "utilities/jsontools.h"

#include <KZip>
#include <QJsonDocument>

#include <optional>

class TestPathEscapes : public RegistryTestBase
{
    Q_OBJECT

private:
    // Registry folders whose directory (a share's mount point) lies outside their storage root.
    int escapes() const
    {
        int count = 0;
        for (const QSharedPointer<Folder>& folder : m_directories->folders()->list()) {
            const bool share = folder->type() == "samba";
            const QString root = QDir::cleanPath(Directories::rootPath(folder->type()));
            const QString place = QDir::cleanPath(root + '/' + (share ? folder->aliasName() : folder->path()));
            count += place.startsWith(root + '/') || (place == root && !share) ? 0 : 1;
        }
        return count;
    }
    QStringList stationEntries() const { return QDir(m_station->path(".")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }

    // Applies an update package whose configuration update holds `folder`, then loads the result.
    void loadThroughPackage(const QJsonObject& folder)
    {
        const QString config = m_station->path("config");
        const QString package = m_station->path("update/configuration_update.zip");
        QVERIFY(QDir().mkpath(config) && QDir().mkpath(m_station->path("update")) && QDir().mkpath(m_station->path("tmp")));
        QVERIFY(JsonTools::writeFile(config + "/settings.json", QJsonObject{{"keep", 1}}));
        KZip zip(package);
        QVERIFY(zip.open(QIODevice::WriteOnly));
        QVERIFY(zip.writeFile("configuration_update.json",
                              QJsonDocument(RegistryStation::document(QJsonArray{folder}).toObject()).toJson()));
        QVERIFY(zip.close());
        PreConfiguration::setParameter("configUpdateFilename", "configuration_update.json");
        PreConfiguration::setParameter("configFilename", "settings.json");
        const QByteArray savedTmp = qgetenv("TMPDIR");
        qputenv("TMPDIR", m_station->path("tmp").toUtf8());
        DZuConfiguration::processConfigurationUpdate(package, config);
        qputenv("TMPDIR", savedTmp);
        QJsonObject merged;
        QVERIFY(JsonTools::readFile(config + "/settings.json", merged));
        QCOMPARE(merged.value("keep").toInt(), 1);
        load(merged);
    }

private slots:
    void initTestCase()
    {
        loadCatalogue();
        Directories::registerClass();
    }

    void refused_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("alias");
        QTest::addColumn<QString>("path");   // "@" stands for the station's directory
        const QList<QStringList> folders{{"internal path climbing out", "internal", "Elsewhere", "../elsewhere"},
                                         {"absolute internal path", "internal", "Elsewhere", "@/elsewhere"},
                                         {"removable path climbing out", "external", "Elsewhere", "sub/../../elsewhere"},
                                         {"share named after the config folder", "samba", "../config", "share"},
                                         {"share name with a backslash", "samba", "..\\config", "share"}};
        for (const QString way : {"load", "add", "edit", "package"}) {
            for (const QStringList& f : folders)
                QTest::newRow(qPrintable(way + ": " + f.at(0))) << way << f.at(1) << f.at(2) << f.at(3);
        }
    }

    void refused()
    {
        QFETCH(QString, way);
        QFETCH(QString, type);
        QFETCH(QString, alias);
        QFETCH(QString, path);
        path.replace('@', m_station->path("."));
        const bool share = type == "samba";   // shares stay disabled: nothing is mounted
        load(QJsonObject());
        if (way == "edit")
            QCOMPARE(m_directories->setFolderAlias(QString(), "undefined", type, "Legit", "legit", QString(),
                                                   "127.0.0.1:9", "operator", "secret", !share), QString());
        bool found = false;
        const QSharedPointer<Folder> edited = m_directories->getFolderByName("Legit", found);
        QCOMPARE(found, way == "edit");
        const QStringList entries = stationEntries();
        QSignalSpy unavailable(m_directories.get(), &Directories::folderAliasUnavailable);
        std::optional<LogCapture> capture(std::in_place);

        QString error;
        const QJsonObject folder = RegistryStation::folder(RegistryStation::newId(), type, alias, path, !share);
        if (way == "load")
            load(RegistryStation::document(QJsonArray{folder}));
        else if (way == "package")
            loadThroughPackage(folder);
        else
            error = m_directories->setFolderAlias(edited ? edited->id() : QString(), "undefined", type, alias, path,
                                                  QString(), "127.0.0.1:9", "operator", "secret", !share);

        const QStringList log = capture->lines();
        capture.reset();
        const int escaped = escapes();
        qInfo("escapes: %d", escaped);
        QCOMPARE(escaped, 0);
        QCOMPARE(stationEntries().size(), entries.size() + (way == "package" ? 3 : 0));   // config, tmp, update
        QVERIFY(!m_directories->getFolderByName(alias, found) && !found);
        if (edited)
            QCOMPARE(edited->aliasName() + ' ' + edited->path(), QString("Legit legit"));
        const bool asked = way == "add" || way == "edit";
        QCOMPARE(error.startsWith("ERROR: The folder " + alias + " would lie outside its storage"), asked);
        QCOMPARE(unavailable.count(), asked ? 1 : 0);
        QCOMPARE(asked ? unavailable.at(0).at(0).toString() : QString(), error);
        QCOMPARE(log.filter("[Directories] Folder skipped, outside its storage:").size(), asked ? 0 : 1);
    }

    // A folder record built outside the registry has no directory outside its root either.
    void recordAlone_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("alias");
        QTest::addColumn<QString>("path");
        QTest::newRow("internal path climbing out") << "internal" << "Elsewhere" << "../elsewhere";
        QTest::newRow("removable path climbing out") << "external" << "Elsewhere" << "sub/../../elsewhere";
        QTest::newRow("share mounted on the config folder") << "samba" << "../config" << "share";
        QTest::newRow("share mounted on the mount root") << "samba" << "" << "share";
    }

    void recordAlone()
    {
        QFETCH(QString, type);
        QFETCH(QString, alias);
        QFETCH(QString, path);
        const QStringList entries = stationEntries();
        const QSharedPointer<Folder> folder = Folder::configure(type, QString(), alias, path, QString(), "127.0.0.1:9",
                                                                "operator", "secret", true, false, 5000);
        QCOMPARE(folder->mountedPath(), QString());
        QVERIFY(!folder->isAvailable() && !folder->shareManager());
        QCOMPARE(stationEntries(), entries);
    }
};

QTEST_GUILESS_MAIN(TestPathEscapes)
#include "tst_pathescapes.moc"
