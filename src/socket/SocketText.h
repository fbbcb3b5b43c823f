#pragma once

#include <string_view>

namespace TC {

/// The text behind a verb: up to the first zero byte, without white space at both ends.
std::string_view trimArgument(std::string_view text);

/// Compares in a time that depends on the length of `given` alone, so that a stranger who measures learns
/// nothing of the expected text.
bool isSameSecret(std::string_view given, std::string_view expected);

} // namespace TC
