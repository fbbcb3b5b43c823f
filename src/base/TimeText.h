#pragma once

#include <string>

namespace utils {

/// The time of currentDateTime (Clock.h) as a text, ISO 8601 with milliseconds: "2026-01-05T09:30:00.123".
/// Any thread. Much cheaper than formatting currentDateTime, which asks for the file of the time zone at
/// every call. This function asks for it once a second.
std::string currentTimeText();

} // namespace utils
