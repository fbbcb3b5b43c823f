#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"
#include "desk/config/FolderFiles.h"

#include <map>
#include <string>

namespace desk {

/// Line numbers of keys in desk.toml, for warnings that need other tables too. If a key is missing, the
/// number is that of its table; 0 if the table is missing, too.
struct CDeskLines {
    int maxStrategies = 0;
    int maxSocketStrategies = 0;
    std::map<std::string, int> switches; ///< by the name of the switch; empty without the table
};

/// Reads desk.toml of the folder into the configuration. The instruments must be read before, because baskets
/// name them.
CDeskLines readDeskToml(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

} // namespace desk
