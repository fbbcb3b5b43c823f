#pragma once

#include <algorithm>
#include <string>

namespace desk {

/// The text with a blank in place of each control character, because a terminal would obey it.
inline std::string withoutControls(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; }, ' ');
    return text;
}

} // namespace desk
