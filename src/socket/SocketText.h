#pragma once

#include <string_view>

namespace TC {

/// Returns the argument after a verb: the text up to the first zero byte, without white space at both ends.
std::string_view trimArgument(std::string_view text);

/// Compares two texts. The time depends only on the length of `given`, so a client that measures the time
/// learns nothing about the expected text.
bool isSameSecret(std::string_view given, std::string_view expected);

} // namespace TC
