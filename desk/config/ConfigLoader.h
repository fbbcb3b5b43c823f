#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"

#include <string>
#include <vector>

namespace desk {

/// What a desk folder says, and everything that is wrong with it. With mistakes the configuration is what
/// could be read, and must not be traded on. Warnings hold nothing up.
struct CLoadedConfig {
    CDeskConfig config;
    std::vector<CDiagnostic> mistakes;
    std::vector<CDiagnostic> warnings;
};

/// Reads desk.toml, strategies.toml, instruments.csv, quotes.csv, quote_changes.csv, positions.csv and
/// settings.xml of the folder. The last three may be missing. Reads only; never throws.
CLoadedConfig loadDeskConfig(const std::string& folder);

/// Makes the folders and empty order files that strategies need to start: a file strategy starts only where
/// its file exists, and then deletes it. Gives what could not be made.
std::vector<std::string> prepareOrderFiles(const CDeskConfig& config);

} // namespace desk
