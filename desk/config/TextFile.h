#pragma once

#include "orderservice/base/KNError.h"

#include <string>

namespace desk {

/// Result of reading a file.
enum class EFileRead { Whole, Missing, Unreadable };

/// Reads the whole file into `text`. Unreadable: the path is a folder, there is no permission, or the disk
/// fails while reading. So half a file is never treated as a whole file.
EFileRead readTextFile(const std::string& path, std::string& text);

/// Replaces the folder's file with the text, completely or not at all: it writes a draft file next to it and
/// renames the draft. Afterwards only the owner can read and write the file, because it can hold passwords
/// and accounts.
[[nodiscard]] utils::KNError replaceTextFile(const std::string& folder, const std::string& name,
                                             const std::string& text);

} // namespace desk
