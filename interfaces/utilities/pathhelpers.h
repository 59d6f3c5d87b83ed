#pragma once
#include "utilities/station_utilities_export.h"
#include <QString>

// Local date and time text used at the start of every log line.
STATION_UTILITIES_EXPORT QString getDate();
// Appends "/" when the text does not end with a path separator ("/" or "\\").
STATION_UTILITIES_EXPORT QString addLastPathSepIfNeeded(const QString& path);
// Removes one trailing path separator ("/" or "\\") when present.
STATION_UTILITIES_EXPORT QString delLastPathSepIfPresent(const QString& path);
