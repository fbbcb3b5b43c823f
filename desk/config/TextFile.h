#pragma once

#include "base/KNError.h"

#include <string>

namespace desk {

/// What became of reading a file.
enum class EFileRead { Whole, Missing, Unreadable };

/// Reads the whole file into `text`. A folder at the file's place, a file without the right to read it and a
/// disk that fails halfway are Unreadable: half a file must never pass for a whole one.
EFileRead readTextFile(const std::string& path, std::string& text);

/// Puts the text in the place of the folder's file, whole or not at all, by way of a draft beside it. The
/// file is its owner's alone afterwards: it can hold passwords and accounts.
[[nodiscard]] utils::KNError replaceTextFile(const std::string& folder, const std::string& name,
                                             const std::string& text);

} // namespace desk
