#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"
#include "desk/config/FolderFiles.h"

#include <map>
#include <string>

namespace desk {

/// Line number of each instrument in its table. Each name of an instrument is a key.
using CInstrumentLines = std::map<std::string, int>;

/// Reads instruments.csv of the folder.
CInstrumentLines readInstruments(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

/// Reads quotes.csv, quote_changes.csv and positions.csv of the folder. The accounts must be read before.
void readMarketTables(const std::string& folder, const CInstrumentLines& instruments, CDeskConfig& config,
                      CDiagnostics& diagnostics);

} // namespace desk
