// Runs one sync pass in a process of its own, so that tests can stop or kill it in the middle.
// Usage: syncpassdriver [--hold] <database> <trash> <local directory> <distant directory>
// With --hold the directory pair is added (prints "added") and the pass starts once a line
// arrives on standard input. Every error signal is printed as "error: MESSAGE".
// Exit status 0 when the pass ended, 1 on a usage error, 2 on a timeout.
#include <QCoreApplication>

#include <cstdio>

#include "sync/dsyncmanager.h"

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    const bool hold = !args.isEmpty() && args.first() == QLatin1String("--hold");
    if (hold)
        args.removeFirst();
    if (args.size() != 4)
        return 1;
    DSyncManager manager(args.at(0), args.at(1), 0, {});
    QObject::connect(&manager, &DSyncManager::errorOccurred, [](const QString& message) {
        std::printf("error: %s\n", qPrintable(message));
        std::fflush(stdout);
    });
    manager.addDirectory(QStringLiteral("distant"), args.at(2), args.at(3));
    if (hold) {
        std::printf("added\n");
        std::fflush(stdout);
        char line[16];
        if (!std::fgets(line, sizeof line, stdin))
            return 1;
    }
    manager.requestSync();
    return manager.waitForIdle(600000) ? 0 : 2;
}
