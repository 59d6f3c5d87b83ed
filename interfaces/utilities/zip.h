#pragma once
#include "utilities/station_utilities_export.h"
#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QtGlobal>

namespace Zip {
// Bounds of one extraction, far above anything a real package holds. A package over any of
// them is refused whole (logged, nothing extracted). Sizes are inflated sizes: what the
// archive claims is checked first, then what inflating really yields.
struct Limits
{
    qint64 maxEntrySize = 64LL * 1024 * 1024;    // bytes of one file
    qint64 maxTotalSize = 256LL * 1024 * 1024;   // bytes of all files together
    int maxEntries = 10000;                      // entries of every kind: files, directories, links
    int maxRatio = 200;                          // inflated bytes per stored byte of one file...
    qint64 ratioFloor = 1024 * 1024;             // ...once that file is past this size
};

// Extracts every entry of zipFile into destDir (UTF-8 paths; destDir is created when missing).
// Entries whose path would land outside destDir (absolute paths, "..", backslashes, symbolic
// links) are refused and logged; the others are still extracted, replacing existing files.
// Returns the relative paths of the extracted files (directories are not listed), empty when
// the archive could not be opened, held nothing or broke a limit. `password` is unused
// (encrypted archives are not supported).
STATION_UTILITIES_EXPORT QList<QByteArray> Unzip(const QByteArray& zipFile, const QByteArray& destDir, const QByteArray& password,
                        const Limits& limits = Limits());

// Writes a new archive at zipFile (UTF-8 path, replaced when present) holding `files`, relative
// path -> content, compressed. False, with the reason in `error`, when it cannot be written
// completely; a partly written archive is then removed.
STATION_UTILITIES_EXPORT bool Write(const QByteArray& zipFile, const QList<QPair<QByteArray, QByteArray>>& files, QString* error = nullptr);
}
