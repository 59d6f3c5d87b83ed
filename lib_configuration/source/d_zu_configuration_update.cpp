// Placeholder body so the library links while the update package handling is written.
#include "d_zu_configuration.h"

void DZuConfiguration::processConfigurationUpdate(const QString&, const QString&) {}
