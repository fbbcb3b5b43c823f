#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"

#include <string>
#include <vector>

namespace desk {

/// The configuration of a desk folder, and all mistakes and warnings. If there are mistakes, the
/// configuration holds only what could be read and must not be used for trading. Warnings do not prevent a
/// start.
struct CLoadedConfig {
    CDeskConfig config;
    std::vector<CDiagnostic> mistakes;
    std::vector<CDiagnostic> warnings;
};

/// Reads desk.toml, strategies.toml, instruments.csv, quotes.csv, quote_changes.csv, positions.csv and
/// settings.xml of the folder. The last three may be missing. Reads only; never throws.
CLoadedConfig loadDeskConfig(const std::string& folder);

/// Creates the folders and the empty order files that file strategies need to start: such a strategy starts
/// only if its file exists, and then deletes it. Returns one text for each file that could not be created.
std::vector<std::string> prepareOrderFiles(const CDeskConfig& config);

} // namespace desk
