// One station of the plant load run: starts the configuration library on a station directory
// (mounting its network folders) and runs sync passes when told, as the station's application
// would. Standard input takes one command a line ("pass"; end of input quits); standard output
// reports, one line each:
//   share <0|1> <mounted path>     the network folder's availability, at start and on each change
//   progress <copied> <failed>     every 10 files of a pass
//   pass <copied> <failed> <ms>    a requested pass ended
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdio>
#include <unistd.h>

#include "access/accesscontrolmanager.h"
#include "d_zu_configuration.h"
#include "directories.h"
#include "folder.h"
#include "sync/dsyncmanager.h"
#include "utilities/preconfiguration.h"

namespace {
constexpr int C_progressEvery = 10;
// A requested pass that has not started by then found nothing to do.
constexpr int C_passStartMs = 3000;

void report(const QString& line)
{
    std::fputs(qPrintable(line + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}
}

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fputs("usage: plant_station STATION_DIR\n", stderr);
        return 2;
    }
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const QString directory = QString::fromLocal8Bit(argv[1]);
    if (!PreConfiguration::load(directory + QStringLiteral("/preconfiguration.json"))) {
        std::fprintf(stderr, "plant_station: cannot load %s/preconfiguration.json\n", argv[1]);
        return 1;
    }
    AccessControlManager access;
    DZuConfiguration* configuration = DZuConfiguration::initInstance(&access);
    if (!configuration) {
        std::fputs("plant_station: the configuration library did not start\n", stderr);
        return 1;
    }
    Directories* directories = configuration->directories();

    QString alias;
    const auto reportShare = [&] {
        bool found = false;
        const QSharedPointer<Folder> folder = directories->getFolderByName(alias, found);
        report(QStringLiteral("share %1 %2").arg(directories->networkStorage().value(alias) ? 1 : 0)
                   .arg(found ? folder->mountedPath() : QString()));
    };
    QObject::connect(directories, &Directories::connectedNetworkStorageNbrChanged, &app, reportShare);
    configuration->loadUsers();
    configuration->loadDirectories();
    if (directories->networkStorage().size() != 1) {
        std::fputs("plant_station: the station needs exactly one network folder\n", stderr);
        return 1;
    }
    alias = directories->networkStorage().firstKey();
    reportShare();

    DSyncManager* manager = directories->syncManager();
    if (!manager) {
        std::fputs("plant_station: no sync manager\n", stderr);
        return 1;
    }
    int copied = 0;
    int failed = 0;
    bool requested = false;
    bool busy = false;
    QElapsedTimer clock;
    QTimer notStarted;
    notStarted.setSingleShot(true);
    const auto finishPass = [&] {
        if (!requested)
            return;
        requested = false;
        busy = false;
        notStarted.stop();
        report(QStringLiteral("pass %1 %2 %3").arg(copied).arg(failed).arg(clock.elapsed()));
    };
    QObject::connect(&notStarted, &QTimer::timeout, &app, [&] {
        if (!busy && manager->isIdle())
            finishPass();
    });
    QObject::connect(manager, &DSyncManager::syncCompleted, &app, [&](const QString&, bool ok) {
        ok ? ++copied : ++failed;
        if ((copied + failed) % C_progressEvery == 0)
            report(QStringLiteral("progress %1 %2").arg(copied).arg(failed));
    });
    QObject::connect(manager, &DSyncManager::idleChanged, &app, [&](bool idle) {
        if (!idle)
            busy = requested;
        else if (busy)
            finishPass();
    });

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QByteArray pending;
    QObject::connect(&input, &QSocketNotifier::activated, &app, [&] {
        char buffer[256];
        const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof(buffer));
        if (count <= 0) {
            input.setEnabled(false);
            QCoreApplication::quit();
            return;
        }
        pending.append(buffer, int(count));
        for (int end = pending.indexOf('\n'); end >= 0; end = pending.indexOf('\n')) {
            const QByteArray line = pending.left(end).trimmed();
            pending.remove(0, end + 1);
            if (line != "pass" || requested)
                continue;
            copied = failed = 0;
            requested = true;
            busy = !manager->isIdle();
            clock.start();
            notStarted.start(C_passStartMs);
            manager->requestSync();
        }
    });
    const int code = app.exec();
    // Folders unmount their shares as they go.
    directories->folders()->reset();
    return code;
}
