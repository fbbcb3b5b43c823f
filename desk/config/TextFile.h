#pragma once

#include <string>

namespace desk {

/// What became of reading a file.
enum class EFileRead { Whole, Missing, Unreadable };

/// Reads the whole file into `text`. A folder at the file's place, a file without the right to read it and a
/// disk that fails halfway are Unreadable: half a file must never pass for a whole one.
EFileRead readTextFile(const std::string& path, std::string& text);

} // namespace desk
