#pragma once
#include "utilities/station_utilities_export.h"
#include <QString>
#include <functional>

// True when the file parses as JSON.
STATION_UTILITIES_EXPORT bool isValidJsonFile(const QString& path);
// Largest update document updateJsonFile reads: as large as a file of a package may be.
constexpr qint64 C_maxUpdateFileSize = 64LL * 1024 * 1024;
// Merges the update document into the configuration document on disk: objects are merged
// key by key, every other value (arrays included) replaces the old one; the result is
// written back to configPath. False when either file is unreadable, the update document is
// larger than C_maxUpdateFileSize (it is then not read at all) or the write fails.
STATION_UTILITIES_EXPORT bool updateJsonFile(const QString& updatePath, const QString& configPath);
// Copies every file of sourceDir (recursively, keeping sub-directories) for whose path
// `accept` returns true into targetDir, replacing files of the same name. Returns the
// number of files copied.
STATION_UTILITIES_EXPORT int copyFiles(const QString& sourceDir, const QString& targetDir,
              const std::function<bool(const QString&)>& accept);
