#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"
#include "desk/config/FolderFiles.h"

#include <string>

namespace desk {

/// Line numbers of the [user] keys that limit the number of strategies; 0: the key is missing.
struct CUserLines {
    int maxStrategies = 0;
    int maxSocketStrategies = 0;
};

/// Reads desk.toml of the folder into the configuration. The instruments must be read before, because baskets
/// name them.
CUserLines readDeskToml(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

} // namespace desk
