#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/TomlSection.h"

#include <string>

namespace desk {

/// Tells what is wrong with a strategy that was read: accounts, instruments and paths that are not there, and
/// what the strategies read before it have already. `path`: as it stands in the file. A stopped strategy may
/// be unfinished: one that was added at run time is saved before it is filled in.
void checkStrategy(const CTomlSection& section, const CDeskConfig& config,
                   const TC::COrderStrategyParam& strategy, const std::string& path);

} // namespace desk
