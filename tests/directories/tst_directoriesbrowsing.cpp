// Browsing the storage roots, the template list and the USB folder that follows the removable medium.
#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QtTest>

#include "directories.h"
#include "logcapture.h"
#include "registrystation.h"

namespace {
bool touch(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly);
}
}

class TestDirectoriesBrowsing : public RegistryTestBase
{
    Q_OBJECT

private:
    QStringList rowNames() const
    {
        QStringList names;
        for (const QSharedPointer<FileInfo>& entry : m_directories->subDirectories()->list())
            names << entry->name();
        return names;
    }

private slots:
    void init()
    {
        makeStation();
        for (const char* sub : {"internal/b", "internal/a/deeper", "internal/c"})
            QVERIFY(QDir().mkpath(m_station->path(QString::fromLatin1(sub))));
        QVERIFY(touch(m_station->internal("file.txt")));
        QVERIFY(QFile::link(m_station->internal("a"), m_station->internal("link")));
    }

    void selectionEdgeCases()
    {
        m_directories->setCurrentRelativePath("internal", "");
        QCOMPARE(rowNames(), (QStringList{"a", "b", "c"})); // no file, no link
        m_directories->goToParentDirectory(); // stays at the root
        QCOMPARE(m_directories->currentRelativePath(), QStringLiteral("."));
        m_directories->selectDirectory(1);
        QCOMPARE(m_directories->selectedDirectoryIndex(), 1);
        QCOMPARE(m_directories->currentPath(), QStringLiteral("b"));
        QSignalSpy changed(m_directories.get(), &Directories::currentPathChanged);
        m_directories->selectDirectory(5);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(m_directories->selectedDirectoryIndex(), -1);
        QCOMPARE(m_directories->currentPath(), QStringLiteral("b")); // the name stays

        m_directories->selectDirectory(1);
        changed.clear();
        m_directories->changeDirectory(-1);
        QCOMPARE(m_directories->selectedDirectoryIndex(), -1);
        QCOMPARE(m_directories->currentRelativePath(), QStringLiteral("."));
        m_directories->setCurrentFolderType("internal");
        QCOMPARE(changed.count(), 0);
    }

    void templatesAndFiles()
    {
        load(QJsonObject());
        for (const char* name : {"tpl/report_V1.9.3.lrxml", "tpl/plain.lrxml", "tpl/report_V1.10.0.lrxml",
                                 "tpl/report_v2.0.0.lrxml", "tpl/notes.txt", "b/z.csv", "b/a.csv", "b/a.txt"})
            QVERIFY(touch(m_station->internal(QLatin1String(name))));
        QCOMPARE(m_directories->templatesList(),
                 (QStringList{"report_V1.10.0.lrxml", "report_V1.9.3.lrxml", "plain.lrxml", "report_v2.0.0.lrxml"}));

        QVERIFY(QFile::link(m_station->internal("b/z.csv"), m_station->internal("b/l.csv")));
        QCOMPARE(m_directories->getFilesForPath(m_station->internal("b"), {"*.csv"}), (QStringList{"a.csv", "z.csv"}));
    }

    void usbFolderFollowsTheMedium()
    {
        load(QJsonObject());
        QSignalSpy state(m_directories.get(), &Directories::removableStorageStateChanged);
        QSignalSpy changed(m_directories.get(), &Directories::sigDirectoriesChanged);
        auto plug = [this](bool plugged) {
            QVERIFY(QMetaObject::invokeMethod(m_directories.get(), "sltRemovableStorageStateChanged",
                                              Q_ARG(bool, plugged)));
        };
        plug(true);
        plug(true);
        bool found = false;
        QSharedPointer<Folder> usb = m_directories->getFolderByName("usb", found);
        QVERIFY(found);
        QCOMPARE(m_directories->folders()->count(), 9);
        QCOMPARE(m_directories->folders()->at(8), usb); // appended, not sorted
        QCOMPARE(usb->id(), QStringLiteral("usb"));
        QCOMPARE(m_directories->foldersRoles().value("usb"), QStringLiteral("usb"));
        QVERIFY(m_directories->removableStorageAvailable());
        QCOMPARE(state.count(), 2);
        QCOMPARE(changed.count(), 0);

        plug(false);
        m_directories->getFolderByName("USB", found);
        QVERIFY(!found);
        QVERIFY(!m_directories->foldersRoles().contains("usb"));
        QVERIFY(!m_directories->removableStorageAvailable());
        QCOMPARE(state.last().at(0).toBool(), false);
    }
};

QTEST_GUILESS_MAIN(TestDirectoriesBrowsing)
#include "tst_directoriesbrowsing.moc"
