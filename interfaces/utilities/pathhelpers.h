#pragma once
#include <QString>

// Local date and time text used at the start of every log line.
QString getDate();
// Appends "/" when the text does not end with a path separator ("/" or "\\").
QString addLastPathSepIfNeeded(const QString& path);
// Removes one trailing path separator ("/" or "\\") when present.
QString delLastPathSepIfPresent(const QString& path);
