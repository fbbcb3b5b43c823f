#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"
#include "desk/config/FolderFiles.h"

#include <string>

namespace desk {

/// Where keys of [user] stand that strategies are counted against; 0: nowhere.
struct CUserLines {
    int maxStrategies = 0;
    int maxSocketStrategies = 0;
};

/// Reads desk.toml of the folder into the configuration. Needs the instruments, which baskets name.
CUserLines readDeskToml(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

} // namespace desk
