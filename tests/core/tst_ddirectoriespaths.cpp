#include "core/ddirectoriespaths.h"

#include <QtTest>

class TestDDirectoriesPaths : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void pathTypeNames();
    void signalsOnlyOnChange();
};

void TestDDirectoriesPaths::pathTypeNames()
{
    QCOMPARE(DDirectoriesPaths::C_pathTypeLoad, QStringLiteral("load"));
    QCOMPARE(DDirectoriesPaths::C_pathTypeSave, QStringLiteral("save"));
}

void TestDDirectoriesPaths::signalsOnlyOnChange()
{
    DDirectoriesPaths paths;
    QSignalSpy spy(&paths, &DDirectoriesPaths::pathChanged);
    paths.setPath("results", DDirectoriesPaths::C_pathTypeSave, "/data/results");
    paths.setPath("results", DDirectoriesPaths::C_pathTypeSave, "/data/results");
    paths.setPath("results", DDirectoriesPaths::C_pathTypeLoad, "/mnt/share/results");
    paths.setPath("media", DDirectoriesPaths::C_pathTypeSave, "/data/results");
    QCOMPARE(spy.count(), 3);
    QCOMPARE(spy.at(1), QVariantList({ "results", "load", "/mnt/share/results" }));
    QCOMPARE(paths.path("results", DDirectoriesPaths::C_pathTypeSave), QStringLiteral("/data/results"));
    QCOMPARE(paths.path("results", DDirectoriesPaths::C_pathTypeLoad), QStringLiteral("/mnt/share/results"));
    QCOMPARE(paths.path("unknown", DDirectoriesPaths::C_pathTypeLoad), QString());

    // An empty path is a value too: setting it on an unknown role is a change.
    paths.setPath("scripts", DDirectoriesPaths::C_pathTypeSave, QString());
    QCOMPARE(spy.count(), 4);
}

QTEST_GUILESS_MAIN(TestDDirectoriesPaths)
#include "tst_ddirectoriespaths.moc"
