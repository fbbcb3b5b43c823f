#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"

#include <string>

namespace desk {

/// Reads instruments.csv, quotes.csv, quote_changes.csv and positions.csv of the folder. Needs the accounts.
void readMarketTables(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

} // namespace desk
