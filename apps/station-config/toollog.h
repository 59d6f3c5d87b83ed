#pragma once
#include <QString>

// The library's log lines and Qt's own messages go to the tool's log file, not to the
// terminal; with `verbose` they are copied to standard error as well.
namespace ToolLog {
// $XDG_STATE_HOME/station-config/station-config.log (~/.local/state/... by default).
QString path();
void install(bool verbose);
}
