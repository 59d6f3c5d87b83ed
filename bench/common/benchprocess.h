// Whole processes timed the way the benchmarks compare them: fork/exec/wait4, output discarded.
#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QStringList>
#include <QVector>

#include <algorithm>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace BenchProcess {

struct Run
{
    bool ok = false;
    double wallMs = 0;
    double userMs = 0;
    double maxRssMiB = 0;
};

// fork/exec/wait4: the time, CPU and peak memory of the process and of the children it waited for.
inline Run runProcess(const QStringList& command, const QString& strace = QString())
{
    QStringList argv = command;
    if (!strace.isEmpty())
        argv = QStringList {QStringLiteral("strace"), QStringLiteral("-f"), QStringLiteral("-c"), QStringLiteral("-o"), strace} + argv;
    QVector<QByteArray> bytes;
    for (const QString& arg : argv)
        bytes << QFile::encodeName(arg);
    QVector<char*> pointers;
    for (QByteArray& b : bytes)
        pointers << b.data();
    pointers << nullptr;
    Run run;
    QElapsedTimer clock;
    clock.start();
    const pid_t pid = ::fork();
    if (pid == 0) {
        const int devNull = ::open("/dev/null", O_WRONLY);
        ::dup2(devNull, STDOUT_FILENO);
        ::dup2(devNull, STDERR_FILENO);
        ::execvp(pointers[0], pointers.data());
        ::_exit(127);
    }
    int status = 0;
    struct rusage usage {};
    if (pid < 0 || ::wait4(pid, &status, 0, &usage) != pid)
        return run;
    run.wallMs = clock.nsecsElapsed() / 1e6;
    run.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    run.userMs = usage.ru_utime.tv_sec * 1e3 + usage.ru_utime.tv_usec / 1e3;
    run.maxRssMiB = usage.ru_maxrss / 1024.0;
    return run;
}

inline double median(QVector<double> values)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    const int n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

} // namespace BenchProcess
