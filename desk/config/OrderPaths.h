#pragma once

#include "orderservice/records/StrategyParam.h"

#include <filesystem>
#include <string>

/// Checks of the paths of order files. A strategy that starts deletes the file at its path. Each order file
/// is renamed to its path plus ".tmp" and then deleted. So neither name may be a file that the desk needs.
namespace desk {

/// Returns the reason why the desk must not take order files at the path, for people; empty if it may.
/// `folder` and `path` are absolute; `shown` is the path for the message.
///
/// The path and the path plus ".tmp" must not be: a file of the desk itself, a place in the folder for
/// refused order files, or a folder. A file of the desk is also recognized through a linked folder, a
/// symbolic link or a hard link. A path with a zero byte is refused too, because the system would not read
/// the part after it.
std::string whyNoOrderPath(const std::filesystem::path& folder, const std::string& path,
                           const std::string& shown);

/// Returns the reason why two strategies cannot have these paths, for people; empty if they can. The paths
/// must not be the same file, with or without ".tmp": each strategy would take or delete the other's files.
std::string whyPathsMeet(const std::string& path, const std::string& shown,
                         const TC::COrderStrategyParam& other);

/// Whether the path looks like a path of another operating system, such as C:\orders\a.txt.
bool isForeignPath(const std::string& path);

} // namespace desk
