#include "utilities/dmounteddirectorywatcher.h"
#include "utilities/logline.h"
#include "utilities/mounttable.h"

#include <QSocketNotifier>
#include <QTimer>

#include <fcntl.h>
#include <unistd.h>

namespace {
const char* const C_source = "platform/utilities/dmounteddirectorywatcher";
// Used only when the kernel's table cannot be watched for changes.
const int C_fallbackPollMs = 1000;
} // namespace

class DMountedDirectoryWatcher::Private
{
public:
    QString directory;
    bool mounted = false;
    int tableFd = -1;
    QSocketNotifier* notifier = nullptr;
    QTimer* pollTimer = nullptr;

    void recheck(DMountedDirectoryWatcher* q)
    {
        const bool now = !directory.isEmpty() && MountTable::hasMountAtOrBelow(directory);
        if (now == mounted)
            return;
        mounted = now;
        LogLine::debug(q, C_source, __LINE__, now ? QStringLiteral("Mounted:") : QStringLiteral("Unmounted:"),
                       directory);
        emit q->mountStateChanged(now, directory);
    }
};

DMountedDirectoryWatcher::DMountedDirectoryWatcher(QObject* parent)
    : QObject(parent)
    , d(new Private)
{
    // The mount table signals every mount and unmount as an exceptional condition (POLLPRI).
    d->tableFd = ::open(MountTable::C_mountInfoPath, O_RDONLY | O_CLOEXEC);
    if (d->tableFd >= 0) {
        d->notifier = new QSocketNotifier(d->tableFd, QSocketNotifier::Exception, this);
        d->notifier->setEnabled(false);
        // The kernel rearms the condition in poll() itself: nothing needs to be read here.
        connect(d->notifier, &QSocketNotifier::activated, this, [this]() { d->recheck(this); });
    } else {
        LogLine::critical(this, C_source, __LINE__, QStringLiteral("Cannot watch the mount table, polling it"),
                          QString::fromLatin1(MountTable::C_mountInfoPath));
        d->pollTimer = new QTimer(this);
        d->pollTimer->setInterval(C_fallbackPollMs);
        connect(d->pollTimer, &QTimer::timeout, this, [this]() { d->recheck(this); });
    }
}

DMountedDirectoryWatcher::~DMountedDirectoryWatcher()
{
    delete d->notifier;
    d->notifier = nullptr;
    if (d->tableFd >= 0)
        ::close(d->tableFd);
    delete d;
}

void DMountedDirectoryWatcher::setMountDir(const QString& directory)
{
    d->directory = directory;
    // The state of a new directory is taken as it is, without a signal.
    d->mounted = !directory.isEmpty() && MountTable::hasMountAtOrBelow(directory);
    const bool watching = !directory.isEmpty();
    if (d->notifier)
        d->notifier->setEnabled(watching);
    if (d->pollTimer) {
        if (watching)
            d->pollTimer->start();
        else
            d->pollTimer->stop();
    }
    LogLine::debug(this, C_source, __LINE__, QStringLiteral("Watching mounts at or below"),
                   directory + (d->mounted ? QStringLiteral(" (mounted)") : QStringLiteral(" (not mounted)")));
}

QString DMountedDirectoryWatcher::mountDir() const
{
    return d->directory;
}

bool DMountedDirectoryWatcher::isMounted() const
{
    return d->mounted;
}
