#pragma once

#include <string_view>

namespace desk {

/// The beginnings of journal lines. A search compares them first and parses only the lines that it needs,
/// because a journal may be long.
inline constexpr std::string_view kOrderHead = R"({"kind":"order",)";
inline constexpr std::string_view kFillHead = R"({"kind":"fill",)";
inline constexpr std::string_view kContinuedHead = R"({"kind":"continued",)";
inline constexpr std::string_view kStoppedHead = R"({"kind":"stopped",)";
inline constexpr std::string_view kCommandHead = R"({"kind":"command",)";

} // namespace desk
