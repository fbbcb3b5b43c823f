#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/DeskToml.h"
#include "desk/config/Diagnostics.h"
#include "desk/config/MarketTables.h"

namespace desk {

/// Adds the warnings that need more than one table of the folder: strategies over the limit, guards that are
/// off, remarks that are not used, credit groups, codes on two markets, and basket stocks without a book. The
/// folder must have no mistakes.
void warnOfFolder(const CDeskConfig& config, const CDeskLines& lines, const CInstrumentLines& instruments,
                  CDiagnostics& diagnostics);

} // namespace desk
