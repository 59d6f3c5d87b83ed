// Runs one sync pass in a process of its own, so that tests can kill it in the middle.
// Usage: syncpassdriver <database> <trash> <local directory> <distant directory>
// Exit status 0 when the pass ended, 1 on a usage error, 2 on a timeout.
#include <QCoreApplication>

#include "sync/dsyncmanager.h"

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 5)
        return 1;
    DSyncManager manager(args.at(1), args.at(2), 0, {});
    manager.addDirectory(QStringLiteral("distant"), args.at(3), args.at(4));
    manager.requestSync();
    return manager.waitForIdle(600000) ? 0 : 2;
}
