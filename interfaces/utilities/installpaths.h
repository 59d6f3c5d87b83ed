#pragma once
#include <QString>

#include "utilities/station_utilities_export.h"

// Where the station's data files and helper programs are, found from the location of this
// library: beside an installed library, the install tree's relative layout (so an installed
// prefix can be moved as a whole); in the build tree, the paths its build recorded in
// station-build-tree.ini next to the library, a file that is never installed.
namespace InstallPaths {
// Directory holding the compiled catalogues (station_en.qm).
STATION_UTILITIES_EXPORT QString catalogueDirectory();
// Read-only demo station (a directory holding preconfiguration.json).
STATION_UTILITIES_EXPORT QString demoStationDirectory();
// The user-space SMB mount helper (station-smbmount).
STATION_UTILITIES_EXPORT QString mountHelper();
}
