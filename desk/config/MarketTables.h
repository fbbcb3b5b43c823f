#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"
#include "desk/config/FolderFiles.h"

#include <map>
#include <string>

namespace desk {

/// The line of each instrument in its table, by each of the instrument's names.
using CInstrumentLines = std::map<std::string, int>;

/// Reads instruments.csv of the folder.
CInstrumentLines readInstruments(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

/// Reads quotes.csv, quote_changes.csv and positions.csv of the folder. Needs the accounts.
void readMarketTables(const std::string& folder, const CInstrumentLines& instruments, CDeskConfig& config,
                      CDiagnostics& diagnostics);

} // namespace desk
