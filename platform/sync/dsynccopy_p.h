#pragma once
#include <QByteArray>
#include <QString>

// Copy of one local file into a distant directory held open (rootFd): written under a hidden
// temporary name next to its target, given the local modification time, then renamed into
// place. Safe to run on several threads at once (each with its own buffer), it touches only
// what its arguments name and reports instead of logging.
struct DSyncCopyRequest
{
    QString localFile;
    QString relativePath;
    qint64 size = 0;       // as the walk saw it: bytes beyond are left for the next pass
    qint64 modified = 0;   // ms since the epoch
    bool statAfterRename = false; // a network file system may adjust what was written: ask it
    bool timesExact = false;      // the file system keeps the time as given: no need to ask at all
    bool noReplace = false;       // no distant file was there: one that appeared meanwhile is kept
};

struct DSyncCopyResult
{
    bool ok = false;
    bool temporaryLeft = false; // a temporary could not be removed after a failure
    QString message;
    QString detail;
    qint64 distantSize = -1;
    qint64 distantModified = -1;
};

// What the file systems of one mirror allow, learnt on its first files.
struct DSyncCopyAbilities
{
    bool clone = true;
    bool kernelCopy = true;
};

DSyncCopyResult dsyncCopyFile(int rootFd, const QString& rootPath, const DSyncCopyRequest& request,
                              DSyncCopyAbilities& abilities, QByteArray& buffer);
