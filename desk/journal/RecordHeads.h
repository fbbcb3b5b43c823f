#pragma once

#include <string_view>

namespace desk {

/// How lines of the journal begin. A search through a long day compares these first and parses only the lines
/// that it needs.
inline constexpr std::string_view kOrderHead = R"({"kind":"order",)";
inline constexpr std::string_view kFillHead = R"({"kind":"fill",)";
inline constexpr std::string_view kContinuedHead = R"({"kind":"continued",)";
inline constexpr std::string_view kStoppedHead = R"({"kind":"stopped",)";
inline constexpr std::string_view kCommandHead = R"({"kind":"command",)";

} // namespace desk
