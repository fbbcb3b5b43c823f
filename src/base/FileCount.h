#pragma once

#include "orderservice/base/Export.h"

#include <optional>
#include <string>

namespace utils {

/// The size of a file, for reports to people.
struct CFileCount {
    long long bytes = 0;
    long long lines = 0; ///< a last line without a line end is counted
};

/// Counts the bytes and lines of the whole file. Returns nothing if it is not a regular file or cannot be
/// read.
ORDERSERVICE_EXPORT std::optional<CFileCount> countFile(const std::string& path);

} // namespace utils
