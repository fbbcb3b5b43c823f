#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/TomlSection.h"

#include <toml++/toml.h>

#include <filesystem>

namespace desk {

/// A strategy with the user's default settings in all its slots, as the keys of strategies.toml start from.
TC::COrderStrategyParam freshStrategy(const CDeskConfig& config);

/// Reads one [[strategy]] table. `folder` is absolute: paths of files are relative to it. Mistakes go to the
/// section; what it cannot read stays as freshStrategy has it.
TC::COrderStrategyParam readStrategyKeys(const std::filesystem::path& folder, const CDeskConfig& config,
                                         const toml::table& table, const CTomlSection& section);

/// The table that readStrategyKeys reads the strategy from. Algorithm settings have no key.
toml::table strategyTable(const std::filesystem::path& folder, const CDeskConfig& config,
                          const TC::COrderStrategyParam& strategy);

} // namespace desk
