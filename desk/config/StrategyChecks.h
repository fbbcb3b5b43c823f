#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/TomlSection.h"

#include <filesystem>
#include <string>

namespace desk {

/// Reports the mistakes of a strategy that was read: unknown accounts and instruments, unusable paths, and
/// conflicts with the strategies read before it. `folder` is the absolute desk folder, `path` is the path as
/// written in the file. A stopped strategy may be incomplete, because a strategy that is added at run time is
/// saved before its values are filled in.
void checkStrategy(const CTomlSection& section, const CDeskConfig& config,
                   const std::filesystem::path& folder, const TC::COrderStrategyParam& strategy,
                   const std::string& path);

/// Warns about values of a strategy that will not work as its owner may expect. See CDiagnostics.
void warnOfStrategy(const CTomlSection& section, const CDeskConfig& config,
                    const TC::COrderStrategyParam& strategy, const std::string& path);

/// Returns the reason why a strategy must not be changed to these values, or started with them, while the
/// desk runs; for people, empty if it may. Reasons are an unsafe path, a path that meets one of `others`, an
/// address or a login that `check` refuses, and a code without an instrument. Reads the current state of the
/// file system. Any thread.
std::string whyRefused(const CDeskConfig& config, const std::filesystem::path& folder,
                       const TC::COrderStrategyParam& strategy, const TC::COrderStrategyMap& others);

} // namespace desk
