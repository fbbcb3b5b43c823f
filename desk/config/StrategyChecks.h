#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/TomlSection.h"

#include <filesystem>
#include <string>

namespace desk {

/// Tells what is wrong with a strategy that was read: accounts, instruments and paths that are not there, and
/// what the strategies read before it have already. `folder` is the absolute desk folder, `path` the path as
/// it stands in the file. A stopped strategy may be unfinished: one that was added at run time is saved
/// before it is filled in.
void checkStrategy(const CTomlSection& section, const CDeskConfig& config,
                   const std::filesystem::path& folder, const TC::COrderStrategyParam& strategy,
                   const std::string& path);

/// Warns of what a strategy that was read has, and what will not work as its owner may think. See
/// CDiagnostics.
void warnOfStrategy(const CTomlSection& section, const CDeskConfig& config,
                    const TC::COrderStrategyParam& strategy, const std::string& path);

/// Why a strategy must not be changed to this or started like this while the desk runs, for people; empty if
/// it may: a path that is not safe, also beside `others`, an address or a login that `check` refuses, and a
/// code that is no instrument's. Looks at the file system as it is now. Any thread.
std::string whyRefused(const CDeskConfig& config, const std::filesystem::path& folder,
                       const TC::COrderStrategyParam& strategy, const TC::COrderStrategyMap& others);

} // namespace desk
