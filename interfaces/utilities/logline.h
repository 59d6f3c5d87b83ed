#pragma once
#include "utilities/station_utilities_export.h"
#include <QString>

// The station's one log-line layout:
//   "\n" date ";\tThread =" thread ";\tThis =" object ";\t" source ";\t" line ";\t" message [" " appended]
// `object` null prints "static". Critical lines carry warnings too (category "default").
namespace LogLine {
STATION_UTILITIES_EXPORT QString format(const void* object, const char* sourceFile, int line,
               const QString& message, const QString& appended = QString());
STATION_UTILITIES_EXPORT void critical(const void* object, const char* sourceFile, int line,
              const QString& message, const QString& appended = QString());
STATION_UTILITIES_EXPORT void debug(const void* object, const char* sourceFile, int line,
           const QString& message, const QString& appended = QString());
}
