#pragma once
#include <QByteArray>
#include <QList>

namespace Zip {
// Extracts every entry of zipFile into destDir (UTF-8 paths; destDir is created when missing).
// Entries whose path would land outside destDir (absolute paths, "..", backslashes, symbolic
// links) are refused and logged; the others are still extracted, replacing existing files.
// Returns the relative paths of the extracted files (directories are not listed), empty when
// the archive could not be opened or held nothing. `password` is unused (encrypted archives are not supported).
QList<QByteArray> Unzip(const QByteArray& zipFile, const QByteArray& destDir, const QByteArray& password);
}
