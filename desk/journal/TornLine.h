#pragma once

#include <cstddef>
#include <string_view>

namespace desk {

/// Where the last record of a journal's line begins; 0 for a sound line. Behind a torn line without a line
/// end, as a file that was cut leaves it, the next record follows in the same line.
inline std::size_t lastRecordOf(std::string_view line) {
    // Within a record these bytes cannot stand: quotes in its texts are escaped.
    const std::size_t place = line.rfind(R"({"kind":")");
    return place == std::string_view::npos ? 0 : place;
}

} // namespace desk
