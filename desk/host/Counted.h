#pragma once

#include <cstdint>
#include <string>

namespace desk {

/// A number with its noun, for messages: "1 line", "2 lines". `several` is the plural; if it is empty, the
/// plural is `one` with an s.
inline std::string counted(std::int64_t number, const std::string& one, const std::string& several = {}) {
    const std::string& word = number == 1 ? one : several;
    return std::to_string(number) + ' ' + (word.empty() ? one + 's' : word);
}

} // namespace desk
