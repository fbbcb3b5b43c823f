#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/TomlSection.h"

#include <toml++/toml.h>

#include <filesystem>

namespace desk {

/// Returns a strategy with the user's default settings in all slots. Reading the keys of strategies.toml
/// starts from it.
TC::COrderStrategyParam freshStrategy(const CDeskConfig& config);

/// Reads one [[strategy]] table. `folder` is absolute; relative file paths are below it. Mistakes go to the
/// section; a value that cannot be read stays as in freshStrategy.
TC::COrderStrategyParam readStrategyKeys(const std::filesystem::path& folder, const CDeskConfig& config,
                                         const toml::table& table, const CTomlSection& section);

/// Returns the table from which readStrategyKeys reads this strategy. Algorithm settings have no key and are
/// not written.
toml::table strategyTable(const std::filesystem::path& folder, const CDeskConfig& config,
                          const TC::COrderStrategyParam& strategy);

} // namespace desk
