#pragma once

#include <optional>
#include <string>

namespace utils {

/// The size of a file, for a report to people.
struct CFileCount {
    long long bytes = 0;
    long long lines = 0; ///< a last line without a line end counts
};

/// Counts the file from its beginning to its end. None if it is not a regular file or cannot be read.
std::optional<CFileCount> countFile(const std::string& path);

} // namespace utils
