#pragma once

#include "base/KNError.h"
#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"

#include <string>

namespace desk {

inline constexpr const char* kStrategyFile = "strategies.toml";

/// Reads strategies.toml of the folder. Settings start from the user's defaults; the keys of a strategy go to
/// its family's slot. Needs the instruments and what desk.toml says.
void readStrategies(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics);

/// Writes strategies.toml anew, whole or not at all: what it can hold of each strategy is what readStrategies
/// reads. Paths below the folder are written relative to it.
[[nodiscard]] utils::KNError saveStrategies(const std::string& folder,
                                            const TC::COrderStrategyMap& strategies);

} // namespace desk
