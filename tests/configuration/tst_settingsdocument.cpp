// The document file: what a load found, the in-place write, and the kept versions.
#include "settingsdocument.h"
#include "settingshistory.h"
#include "teststation.h"

#include <QtTest>

#include <sys/stat.h>

namespace {
ino_t inodeOf(const QString& path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
}

// What this process handed to write calls so far (the "wchar" line of /proc/self/io).
qint64 bytesWrittenByThisProcess()
{
    QFile io("/proc/self/io");
    if (!io.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : io.readAll().split('\n')) {
        if (line.startsWith("wchar: "))
            return line.mid(7).toLongLong();
    }
    return -1;
}

mode_t modeOf(const QString& path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}
}

class TestSettingsDocument : public QObject
{
    Q_OBJECT

private slots:
    // The service publishes what the load found; memory still gets the defaults of a failed load.
    void loadTellsWhatItFound()
    {
        TestStation station;
        QVERIFY(QFile::remove(station.filePath()));
        auto config = station.create();
        QCOMPARE(config->documentState(), int(SettingsDocument::CeMissing));
        QVERIFY(config->isDocumentUsable());

        QVERIFY(station.writeText(R"({"general": {"workplace_name": "Cell 4"}})"));
        config->reload();
        QCOMPARE(config->documentState(), int(SettingsDocument::CeLoaded));
        QCOMPARE(config->workplaceName(), QString("Cell 4"));

        QVERIFY(station.writeBytes("{\n  \"general\": {\"workplace_name\": \"Cell 4\"}\n  \"x\": 1\n}"));
        config->reload();
        QVERIFY(!config->property("documentUsable").toBool());
        QCOMPARE(config->documentErrorLine(), 3);
        QCOMPARE(config->documentErrorColumn(), 3);
        QVERIFY(config->documentDescription().startsWith(station.filePath() + ": not valid JSON"));
        QCOMPARE(config->workplaceName(), QString());
    }

    void inPlaceWriteKeepsTheFileAndMakesItPrivate_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("expected");
        QTest::newRow("readable by all") << 0644 << 0600;
        QTest::newRow("readable by the group") << 0640 << 0600;
        QTest::newRow("already private") << 0600 << 0600;
        QTest::newRow("private and executable by the owner") << 0700 << 0700;
    }

    void inPlaceWriteKeepsTheFileAndMakesItPrivate()
    {
        QFETCH(int, mode);
        QFETCH(int, expected);
        TestStation station;
        QVERIFY(::chmod(QFile::encodeName(station.filePath()).constData(), mode_t(mode)) == 0);
        const ino_t inode = inodeOf(station.filePath());
        QString error;
        QCOMPARE(SettingsDocument::writeInPlace(station.filePath(), "{\"a\": 1}", &error), SettingsDocument::CeWritten);
        QCOMPARE(readFile(station.filePath()), QByteArray("{\"a\": 1}"));
        QCOMPARE(inodeOf(station.filePath()), inode);
        QCOMPARE(int(modeOf(station.filePath())), expected);
    }

    // Only what follows the first changed byte is written again; the file ends up byte for byte
    // the new text, in the same inode.
    void inPlaceWriteRewritesFromTheFirstChange_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<qint64>("written");
        const QByteArray body(1 << 20, 'x');
        QTest::newRow("changed near the end") << body + "1}" << body + "22}" << qint64(3);
        QTest::newRow("shortened") << body + "123}" << body + "}" << qint64(1);
        QTest::newRow("changed at the start") << "1" + body << "2" + body << qint64(body.size() + 1);
        QTest::newRow("unchanged") << body << body << qint64(0);
        QTest::newRow("emptied") << body << QByteArray() << qint64(0);
    }
    void inPlaceWriteRewritesFromTheFirstChange()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(qint64, written);
        TestStation station;
        QVERIFY(station.writeBytes(before));
        const ino_t inode = inodeOf(station.filePath());
        const qint64 writtenBefore = bytesWrittenByThisProcess();
        QCOMPARE(SettingsDocument::writeInPlace(station.filePath(), after), SettingsDocument::CeWritten);
        QCOMPARE(bytesWrittenByThisProcess() - writtenBefore, written);
        QCOMPARE(readFile(station.filePath()), after);
        QCOMPARE(inodeOf(station.filePath()), inode);
    }

    // The digest is XXH64 (values of its reference implementation).
    void digest_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("digest");
        QTest::newRow("empty") << QByteArray() << QByteArray("ef46db3751d8e999");
        QTest::newRow("one byte") << QByteArray("a") << QByteArray("d24ec4f1a98c6e5b");
        QTest::newRow("three bytes") << QByteArray("abc") << QByteArray("44bc2cf5ad770999");
        QTest::newRow("past one stripe") << QByteArray("Nobody inspects the spammish repetition")
                                         << QByteArray("fbcea83c8a378bf1");
    }
    void digest()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, digest);
        QCOMPARE(SettingsDocument::digest(bytes), digest);
    }

    // 55 saves keep the newest 50; equal bytes and unusable documents add no version;
    // leftovers of an interrupted write go; the keys a save changed are recorded.
    void historyKeepsTheNewestVersions()
    {
        TestStation station;
        SettingsHistory history(station.filePath());
        QString error;
        for (int i = 0; i < 55; ++i) {
            const QJsonObject next{{"general", QJsonObject{{"sound_volume", i + 1}, {"lastModification", QString::number(i)}}}};
            const QByteArray current = QJsonDocument(QJsonObject{{"general", QJsonObject{{"sound_volume", i}}}}).toJson();
            QVERIFY2(history.record(current, next, QString("set %1").arg(i), &error), qPrintable(error));
        }
        QVERIFY(history.record(readFile(history.versions().first().filePath), QJsonObject(), "same again"));
        QVERIFY(history.record("{ torn", QJsonObject(), "unusable"));
        QVERIFY(writeFile(history.directoryPath() + "/00000099.json.Ab12Cd", "partial"));
        QVERIFY(history.record("{\"n\": 1}", QJsonObject{{"n", 2}}, "last"));

        const auto versions = history.versions();
        QCOMPARE(versions.size(), SettingsHistory::C_keptVersions);
        QCOMPARE(versions.first().reason, QString("last"));
        QCOMPARE(versions.at(1).reason, QString("set 54"));
        QCOMPARE(versions.at(1).changedKeys, QStringList{"general.sound_volume"});
        QCOMPARE(versions.last().reason, QString("set 6"));
        QVERIFY(!QFileInfo::exists(history.directoryPath() + "/00000099.json.Ab12Cd"));
        QCOMPARE(int(modeOf(history.directoryPath())), 0700);
        QCOMPARE(int(modeOf(versions.first().filePath)), 0600);
    }

    // Rolling back over a torn document restores the version and keeps the torn bytes aside.
    void rollbackOverATornDocumentKeepsItAside()
    {
        TestStation station;
        SettingsHistory history(station.filePath());
        const QByteArray good = "{\"general\": {\"workplace_name\": \"Cell 4\"}}";
        QVERIFY(history.record(good, QJsonObject(), "set"));
        QVERIFY(station.writeBytes("{\"general\": {\"workplace_na"));
        QString error;
        QVERIFY2(history.rollback(0, &error), qPrintable(error));
        QCOMPARE(readFile(station.filePath()), good);
        const QStringList aside = QDir(station.configDir()).entryList({"settings.json.damaged-*"});
        QCOMPARE(aside.size(), 1);
        QCOMPARE(readFile(station.configDir() + '/' + aside.first()), QByteArray("{\"general\": {\"workplace_na"));
        QVERIFY(!history.rollback(1, &error));
    }
};

QTEST_GUILESS_MAIN(TestSettingsDocument)
#include "tst_settingsdocument.moc"
