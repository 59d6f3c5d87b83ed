// One sync pass as a whole process, the way the copying tools it is compared with run:
// one directory pair, one pass, exit when idle (status 1 when anything failed).
// Usage: bench_syncpass <database> <trash> <local directory> <distant directory>
#include <QCoreApplication>

#include "sync/dsyncmanager.h"

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 5)
        return 2;
    DSyncManager manager(args.at(1), args.at(2), 0, {});
    int failed = 0;
    QObject::connect(&manager, &DSyncManager::syncCompleted, [&failed](const QString&, bool ok) { failed += !ok; });
    // An unreachable directory fails no file: any error fails the run.
    QObject::connect(&manager, &DSyncManager::errorOccurred, [&failed](const QString&) { ++failed; });
    manager.addDirectory(QStringLiteral("bench"), args.at(3), args.at(4));
    manager.requestSync();
    if (!manager.waitForIdle(3600 * 1000))
        return 3;
    return failed == 0 ? 0 : 1;
}
