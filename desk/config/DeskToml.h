#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"

#include <string>

namespace desk {

inline constexpr const char* kDeskFile = "desk.toml";

/// Reads desk.toml of the folder into the configuration. Needs the instruments, which baskets name.
void readDeskToml(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

} // namespace desk
