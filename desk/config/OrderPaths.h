#pragma once

#include "records/StrategyParam.h"

#include <filesystem>
#include <string>

/// Where order files may lie. A strategy that starts deletes the file at its path, and each order file is
/// renamed to the path with ".tmp" and deleted. So neither name may be a file that the desk lives on.
namespace desk {

/// Why the desk must not take order files at the path, for people; empty if it may. `folder` and `path` are
/// absolute; `shown` is the path as people know it.
///
/// Refused, for the path and for the path with ".tmp": a file of the desk folder (by name, also through
/// folders that are links; by a symbolic or a hard link), a place in the folder for refused order files, and
/// a folder. Refused too: a zero byte, behind which the system would not read.
std::string whyNoOrderPath(const std::filesystem::path& folder, const std::string& path,
                           const std::string& shown);

/// Why two strategies cannot have these paths, for people; empty if they can. They must not meet, with or
/// without ".tmp": each would take or delete the other's files.
std::string whyPathsMeet(const std::string& path, const std::string& shown,
                         const TC::COrderStrategyParam& other);

/// Whether the path looks like one of another system, such as C:\orders\a.txt.
bool isForeignPath(const std::string& path);

} // namespace desk
