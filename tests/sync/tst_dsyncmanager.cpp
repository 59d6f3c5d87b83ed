#include <QtTest>

#include <atomic>
#include <memory>
#include <thread>

#include "logcapture.h"
#include "sync/dsyncmanager.h"

namespace {
const int C_passTimeoutMs = 120000;

bool writeFile(const QString& path, const QByteArray& content, const QDateTime& modified = QDateTime())
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size()
           && (!modified.isValid() || file.setFileTime(modified, QFileDevice::FileModificationTime));
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Relative paths of the regular files under a directory, hidden ones included.
QStringList filesUnder(const QString& root)
{
    QStringList files;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << QDir(root).relativeFilePath(it.next());
    files.sort();
    return files;
}

QByteArray pattern(int size, char seed)
{
    QByteArray data(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        data[i] = char(seed + i % 97);
    return data;
}
}

class TestDSyncManager : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        QVERIFY(m_dir->isValid());
        QVERIFY(QDir().mkpath(local()));
        QVERIFY(QDir().mkpath(remote()));
    }
    void cleanup()
    {
        m_manager.reset();
        m_dir.reset();
    }

    void changedFilesAreCopiedAgain_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QStringList>("copiedAgain");
        QTest::newRow("nothing changed copies nothing") << "none" << QStringList();
        QTest::newRow("the bookkeeping survives a restart") << "restart" << QStringList();
        QTest::newRow("a size change is copied") << "size" << QStringList {"a.txt"};
        QTest::newRow("a new modification time alone is copied") << "mtime" << QStringList {"a.txt"};
        QTest::newRow("a new file is copied") << "new" << QStringList {"c.txt"};
        // The records of the first pass were made for the former distant directory.
        QTest::newRow("the alias given a new distant directory gets every file there")
            << "moved" << QStringList {".hidden", "a.txt", "b.txt", "sub/deep/report.pdf"};
    }
    // Sub-directories and hidden files kept, excluded patterns and temporaries never on the distant side.
    void changedFilesAreCopiedAgain()
    {
        QFETCH(QString, change);
        QFETCH(QStringList, copiedAgain);
        const QDateTime past = QDateTime::currentDateTime().addSecs(-3600);
        QVERIFY(writeFile(local("a.txt"), "alpha", past));
        QVERIFY(writeFile(local("b.txt"), "bravo", past));
        QVERIFY(writeFile(local("sub/deep/report.pdf"), "pdf"));
        QVERIFY(writeFile(local("sub/results.db-journal"), "journal"));
        QVERIFY(writeFile(local("sub/deep/scratch.tmp"), "tmp"));
        QVERIFY(writeFile(local(".hidden"), "hidden"));
        DSyncManager* manager = makeManager({"*-journal", "*.tmp"});
        QStringList synced {".hidden", "a.txt", "b.txt", "sub/deep/report.pdf"};
        QCOMPARE(pass(manager), synced);
        QCOMPARE(filesUnder(remote()), synced);
        QCOMPARE(QFileInfo(remote("a.txt")).lastModified(), QFileInfo(local("a.txt")).lastModified());

        if (change == "restart")
            manager = makeManager({"*-journal", "*.tmp"});
        else if (change == "size")
            QVERIFY(writeFile(local("a.txt"), "alpha, longer", past));
        else if (change == "mtime")
            QVERIFY(writeFile(local("a.txt"), "ALPHA", past.addSecs(60)));
        else if (change == "new")
            QVERIFY(writeFile(local("c.txt"), "charlie"));
        QString destination = remote();
        if (change == "moved") {
            destination = m_dir->filePath("moved");
            QVERIFY(QDir().mkpath(destination));
            manager->addDirectory("distant", local(), destination);
        }
        // Signals on the owner's thread; a request during the pass adds a pass without going idle between.
        QStringList events;
        bool onOwnerThread = true;
        QObject context;
        connect(manager, &DSyncManager::syncCompleted, &context, [&](const QString& path, bool ok) {
            events << QString("completed %1 %2").arg(QDir(local()).relativeFilePath(path)).arg(ok);
            onOwnerThread = onOwnerThread && QThread::currentThread() == thread();
        });
        connect(manager, &DSyncManager::idleChanged, &context,
                [&](bool idle) { events << QString("idle %1").arg(idle); });
        manager->requestSync();
        manager->requestSync();
        QVERIFY(manager->waitForIdle(C_passTimeoutMs));
        // Files complete in the order the directory lists them: compared sorted, between the idle changes.
        QVERIFY(events.size() >= 2);
        QCOMPARE(events.first(), QString("idle 0"));
        QCOMPARE(events.last(), QString("idle 1"));
        QStringList completed = events.mid(1, events.size() - 2);
        completed.sort();
        QStringList expected;
        for (const QString& name : copiedAgain)
            expected << "completed " + name + " 1";
        QCOMPARE(completed, expected);
        QVERIFY(onOwnerThread);
        if (change == "new")
            synced.insert(3, "c.txt");
        QCOMPARE(filesUnder(destination), synced);
        for (const QString& name : synced)
            QCOMPARE(readFile(destination + "/" + name), readFile(local(name)));
        if (change == "moved") // the former distant directory is left as it was
            QCOMPARE(filesUnder(remote()), synced);
        QVERIFY(filesUnder(trash()).isEmpty());
    }
    void distantFileIsTrashedBeforeReplace_data()
    {
        QTest::addColumn<bool>("copiedBefore");
        QTest::addColumn<QByteArray>("distantContent");
        QTest::addColumn<bool>("trashed");
        QTest::newRow("distant copy edited behind the manager's back") << true << QByteArray("edited remotely") << true;
        QTest::newRow("unknown distant file with other content") << false << QByteArray("someone else's") << true;
        QTest::newRow("unknown distant file with the same content is kept") << false << QByteArray("version 2")
                                                                            << false;
    }
    void distantFileIsTrashedBeforeReplace()
    {
        QFETCH(bool, copiedBefore);
        QFETCH(QByteArray, distantContent);
        QFETCH(bool, trashed);
        const QDateTime past = QDateTime::currentDateTime().addSecs(-600);
        DSyncManager* manager = makeManager();
        if (copiedBefore) {
            QVERIFY(writeFile(local("sub/r.txt"), "version 1", past));
            QCOMPARE(pass(manager), QStringList {"sub/r.txt"});
        }
        QVERIFY(writeFile(remote("sub/r.txt"), distantContent));
        QVERIFY(writeFile(local("sub/r.txt"), "version 2"));
        QCOMPARE(pass(manager), QStringList {"sub/r.txt"});

        QCOMPARE(readFile(remote("sub/r.txt")), QByteArray("version 2"));
        const QStringList inTrash = filesUnder(trash());
        QCOMPARE(inTrash.size(), trashed ? 1 : 0);
        if (trashed) {
            const QRegularExpression name("^distant/sub/r\\.\\d{8}-\\d{6}-\\d{3}\\.txt$");
            QVERIFY2(name.match(inTrash.first()).hasMatch(), qPrintable(inTrash.first()));
            QCOMPARE(readFile(trash() + "/" + inTrash.first()), distantContent);
        }
        // Once replaced, the distant copy is the manager's own again: a later change replaces it without trash.
        QVERIFY(writeFile(local("sub/r.txt"), "version 3"));
        QCOMPARE(pass(manager), QStringList {"sub/r.txt"});
        QCOMPARE(filesUnder(trash()).size(), inTrash.size());
    }
    void unchangedFilesAreFoundWhateverTheirNames_data()
    {
        QTest::addColumn<QStringList>("names");
        // Names whose byte order differs from the order of their directories' listing.
        QTest::newRow("a directory between names that sort around its own")
            << QStringList {"a-b", "a.txt", "a/x", "a/y/z", "a0", "a_", "b"};
        QTest::newRow("non-ASCII names and deep directories")
            << QStringList {"\u00e9t\u00e9.txt", "e/f", "z\u00fc/1", "zu/2", "d/d/d/d/deep", "d-d"};
        QTest::newRow("more files than one page of records")
            << [] {
                   QStringList names;
                   for (int i = 0; i < 2600; ++i)
                       names << QString("p%1/f%2").arg(i % 7).arg(i);
                   return names;
               }();
    }
    // A pass with nothing changed finds every record, and copies nothing again.
    void unchangedFilesAreFoundWhateverTheirNames()
    {
        QFETCH(QStringList, names);
        for (const QString& name : names)
            QVERIFY(writeFile(local(name), name.toUtf8()));
        DSyncManager* manager = makeManager();
        QStringList sorted = names;
        sorted.sort();
        QStringList copied = pass(manager);
        copied.sort();
        QCOMPARE(copied, sorted);
        QCOMPARE(pass(manager), QStringList());
        QVERIFY(writeFile(local(names.last()), "changed"));
        QCOMPARE(pass(manager), QStringList {names.last()});
    }

    void progressReachesTheOwnerInBatches_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("1,000 files") << 1000;
        QTest::newRow("4,000 files") << 4000;
    }
    // Every file is signalled, while the owner's thread is woken a bounded number of times per second.
    void progressReachesTheOwnerInBatches()
    {
        QFETCH(int, count);
        for (int i = 0; i < count; ++i)
            QVERIFY(writeFile(local(QString("d%1/f%2").arg(i / 500).arg(i)), "x"));
        DSyncManager* manager = makeManager();
        struct Wakeups : QObject
        {
            int count = 0;
            bool eventFilter(QObject*, QEvent* event) override
            {
                count += event->type() == QEvent::MetaCall;
                return false;
            }
        } wakeups;
        manager->installEventFilter(&wakeups);
        QElapsedTimer clock;
        clock.start();
        QSignalSpy started(manager, &DSyncManager::syncStarted);
        QCOMPARE(pass(manager).size(), count);
        const qint64 elapsedMs = clock.elapsed();
        manager->removeEventFilter(&wakeups);
        QCOMPARE(started.size(), count);
        // One batch per 100 ms at most, plus the first one and the end of the pass.
        QVERIFY2(wakeups.count <= elapsedMs / 100 + 3,
                 qPrintable(QString("%1 wake-ups in %2 ms").arg(wakeups.count).arg(elapsedMs)));
    }

    void readerNeverSeesHalfCopiedFile()
    {
        const QByteArray big = pattern(48 * 1024 * 1024, 'a');
        QVERIFY(writeFile(local("big.bin"), big));
        QVERIFY(writeFile(local("small.txt"), "small"));
        QVERIFY(writeFile(remote("big.bin"), "old small version"));
        DSyncManager* manager = makeManager();

        std::atomic_bool done {false};
        std::atomic_int polls {0};
        std::atomic_int partial {0};
        const QString root = remote();
        const QMap<QString, QList<qint64>> complete {{"big.bin", {big.size(), 17}}, {"small.txt", {5}}};
        std::thread reader([&] {
            while (!done) {
                // Hidden temporaries are not listed; a file listed, then trashed, may fail to open.
                QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
                while (it.hasNext()) {
                    QFile file(it.next());
                    if (file.open(QIODevice::ReadOnly) && !complete.value(it.fileName()).contains(file.size()))
                        ++partial;
                }
                ++polls;
            }
        });
        const QStringList copied = pass(manager);
        done = true;
        reader.join();
        QCOMPARE(copied, QStringList({"big.bin", "small.txt"}));
        QVERIFY(polls > 0);
        QCOMPARE(partial.load(), 0);
        QVERIFY(readFile(remote("big.bin")) == big);

        // Destroyed while replacing: the old copy or the new one, and no temporary left behind.
        const QByteArray changed = pattern(48 * 1024 * 1024, 'b');
        QVERIFY(writeFile(local("big.bin"), changed));
        manager->requestSync();
        m_manager.reset();
        QCOMPARE(filesUnder(remote()), QStringList({"big.bin", "small.txt"}));
        const QByteArray seen = readFile(remote("big.bin"));
        QVERIFY(seen == big || seen == changed);
    }
    void pauseStopsAndResumeCatchesUp()
    {
        const int count = 400;
        const QByteArray content = pattern(128 * 1024, 'k');
        for (int i = 0; i < count; ++i)
            QVERIFY(writeFile(local(QString("f%1.bin").arg(i)), content));
        DSyncManager* manager = makeManager();
        QSignalSpy completed(manager, &DSyncManager::syncCompleted);

        manager->requestSync();
        // Pause once copying has begun (watching the disk, not the queued signals).
        const QDeadlineTimer deadline(C_passTimeoutMs);
        while (QDir(remote()).isEmpty(QDir::Files) && !deadline.hasExpired())
            QThread::usleep(200);
        manager->pauseAll();
        QVERIFY(manager->isPausedAll());
        QVERIFY(manager->waitForIdle(C_passTimeoutMs));
        const int copiedBeforePause = completed.count();
        QVERIFY(copiedBeforePause > 0);
        QVERIFY2(copiedBeforePause < count, "the pause did not stop the pass");
        // The file running at the pause was finished: every visible distant file is complete.
        const QStringList distant = filesUnder(remote());
        QCOMPARE(distant.size(), copiedBeforePause);
        for (const QString& name : distant)
            QCOMPARE(QFileInfo(remote(name)).size(), qint64(content.size()));

        manager->requestSync();
        QVERIFY2(manager->isIdle(), "a pass started while paused");

        manager->resumeAll();
        QVERIFY(!manager->isPausedAll());
        QVERIFY(!manager->isIdle());
        QVERIFY(manager->waitForIdle(C_passTimeoutMs));
        QCOMPARE(completed.count(), count);
        QCOMPARE(filesUnder(remote()).size(), count);
    }
    // An unreachable distant directory is reported and the pass goes on; an unavailable alias
    // waits; overlapping directories are refused.
    void registeredDirectories()
    {
        QVERIFY(writeFile(local("a.txt"), "alpha"));
        QVERIFY(writeFile(m_dir->filePath("second/b.txt"), "bravo"));
        QVERIFY(writeFile(m_dir->filePath("third/c.txt"), "charlie"));
        QVERIFY(QDir().mkpath(m_dir->filePath("secondRemote")));
        const QString missing = m_dir->filePath("notMounted/share");
        LogCapture log;
        DSyncManager* manager = makeManager();
        manager->setDirectoryAvailability("second", false); // kept for an alias registered later
        manager->addDirectory("second", m_dir->filePath("second"), m_dir->filePath("secondRemote"));
        manager->addDirectory("aaa-first", m_dir->filePath("third"), missing);
        QSignalSpy errors(manager, &DSyncManager::errorOccurred);
        QCOMPARE(pass(manager), QStringList {"a.txt"});
        QCOMPARE(errors.count(), 1);
        QVERIFY(errors.first().first().toString().contains(missing));
        QVERIFY(log.contains("Distant directory unreachable"));
        QVERIFY(!QFileInfo::exists(missing));
        QVERIFY(!QFileInfo::exists(m_dir->filePath("secondRemote/b.txt")));
        manager->setDirectoryAvailability("second", true);
        pass(manager);
        QCOMPARE(readFile(m_dir->filePath("secondRemote/b.txt")), QByteArray("bravo"));

        QCOMPARE(manager->getLocalDirSynchronizedAlias(m_dir->filePath("local/./")), QString("distant"));
        QCOMPARE(manager->getLocalDirSynchronizedAlias(m_dir->filePath("second")), QString("second"));
        QCOMPARE(manager->getLocalDirSynchronizedAlias(remote()), QString());
        QCOMPARE(manager->getLocalDirSynchronizedAlias(QString()), QString());
        manager->addDirectory("loop", local(), local("inside"));
        QVERIFY(!manager->isAliasDirectorySynchronised("loop"));
        QVERIFY(log.contains("overlap"));
        QVERIFY(manager->isAliasDirectorySynchronised("distant"));
        manager->delDirectory("distant");
        QVERIFY(!manager->isAliasDirectorySynchronised("distant"));
        QCOMPARE(manager->getLocalDirSynchronizedAlias(local()), QString());
    }
    void failedFileKeepsDistantDataAndIsRetried_data()
    {
        QTest::addColumn<bool>("withTrash");
        QTest::addColumn<QString>("error");
        QTest::newRow("a directory in the file's place") << true << "Distant path is a directory";
        QTest::newRow("a changed distant file and no trash directory") << false << "no trash directory";
    }
    void failedFileKeepsDistantDataAndIsRetried()
    {
        QFETCH(bool, withTrash);
        QFETCH(QString, error);
        QVERIFY(writeFile(local("r.txt"), "local"));
        if (withTrash)
            QVERIFY(QDir().mkpath(remote("r.txt/inside")));
        else
            QVERIFY(writeFile(remote("r.txt"), "distant only"));
        LogCapture log;
        DSyncManager* manager = makeManager({}, withTrash);
        QSignalSpy completed(manager, &DSyncManager::syncCompleted);
        QSignalSpy errors(manager, &DSyncManager::errorOccurred);
        QCOMPARE(pass(manager), QStringList());
        QCOMPARE(completed.count(), 1);
        QCOMPARE(errors.count(), 1);
        QVERIFY2(errors.first().first().toString().contains(error), qPrintable(errors.first().first().toString()));
        QVERIFY(log.contains(error));
        if (!withTrash)
            QCOMPARE(readFile(remote("r.txt")), QByteArray("distant only"));
        // Nothing was recorded, so the next pass tries again.
        QVERIFY(withTrash ? QDir(remote("r.txt")).removeRecursively() : QFile::remove(remote("r.txt")));
        QCOMPARE(pass(manager), QStringList {"r.txt"});
    }
    // Construction alone touches nothing; once a directory is added, the timer runs passes.
    void periodicPassesRunOnTheTimer()
    {
        {
            DSyncManager manager(database(), trash(), 1000, {"*.tmp"});
            QVERIFY(manager.isIdle());
            QVERIFY(manager.findChildren<QTimer*>().isEmpty());
            QVERIFY(manager.wipeSyncDatabaseFile());
        }
        QVERIFY(!QFileInfo::exists(database()));
        QVERIFY(!QFileInfo::exists(trash()));
        makeManager({}, true, 100);
        QVERIFY(writeFile(local("a.txt"), "alpha"));
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(remote("a.txt")), 30000);
        QVERIFY(writeFile(local("b.txt"), "bravo"));
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(remote("b.txt")), 30000);
    }
    // A corrupt database fails the pass; wiping is the way out, but not while a pass runs.
    void corruptDatabaseAndWipe()
    {
        QVERIFY(writeFile(database(), pattern(4096, 'z')));
        QVERIFY(writeFile(local("big.bin"), pattern(32 * 1024 * 1024, 'w')));
        QVERIFY(writeFile(local("a.txt"), "alpha"));
        LogCapture log;
        DSyncManager* manager = makeManager();
        QSignalSpy errors(manager, &DSyncManager::errorOccurred);
        QCOMPARE(pass(manager), QStringList());
        QCOMPARE(errors.count(), 1);
        QVERIFY(filesUnder(remote()).isEmpty());
        QVERIFY(manager->wipeSyncDatabaseFile());
        QVERIFY(!QFileInfo::exists(database()));

        manager->requestSync();
        QVERIFY(!manager->isIdle());
        QVERIFY(!manager->wipeSyncDatabaseFile());
        QVERIFY(log.contains("refused while a pass runs"));
        QVERIFY(manager->waitForIdle(C_passTimeoutMs));
        QCOMPARE(filesUnder(remote()), QStringList({"a.txt", "big.bin"}));
        QVERIFY(QFileInfo::exists(database()));
        QVERIFY(manager->wipeSyncDatabaseFile());
        QVERIFY(!QFileInfo::exists(database()));
        // Afresh: the distant copies match, so they are only recorded again, nothing trashed.
        QCOMPARE(pass(manager), QStringList({"a.txt", "big.bin"}));
        QVERIFY(QFileInfo::exists(database()));
        QVERIFY(filesUnder(trash()).isEmpty());
        QCOMPARE(pass(manager), QStringList());
    }
private:
    QString local(const QString& relative = QString()) const { return m_dir->filePath("local/" + relative); }
    QString remote(const QString& relative = QString()) const { return m_dir->filePath("remote/" + relative); }
    QString trash() const { return m_dir->filePath("trash"); }
    QString database() const { return m_dir->filePath("sync.db"); }
    DSyncManager* makeManager(const QStringList& patterns = {}, bool withTrash = true, int intervalMs = 0)
    {
        m_manager.reset(new DSyncManager(database(), withTrash ? trash() : QString(), intervalMs, patterns));
        m_manager->addDirectory("distant", local(), remote());
        return m_manager.get();
    }
    // Runs one pass and returns the local files it completed successfully.
    QStringList pass(DSyncManager* manager)
    {
        QSignalSpy completed(manager, &DSyncManager::syncCompleted);
        manager->requestSync();
        if (!manager->waitForIdle(C_passTimeoutMs))
            return {"timeout"};
        QStringList files;
        for (const QList<QVariant>& args : qAsConst(completed)) {
            if (args.at(1).toBool())
                files << QDir(local()).relativeFilePath(args.at(0).toString());
        }
        files.sort();
        return files;
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<DSyncManager> m_manager;
};

QTEST_GUILESS_MAIN(TestDSyncManager)
#include "tst_dsyncmanager.moc"
