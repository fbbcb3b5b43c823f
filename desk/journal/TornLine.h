#pragma once

#include <cstddef>
#include <string_view>

namespace desk {

/// Whether the text is a journal record: a JSON object whose `kind` is a text.
bool isRecord(std::string_view text);

/// The position of a record that follows a torn line in the same journal line; 0 if no record follows. A torn
/// line without a newline, as in a file that was cut, is followed by the next record in the same line. A line
/// that is one whole record is never split, because objects inside it may also begin with a `kind`.
std::size_t recordBehindTornLine(std::string_view line);

} // namespace desk
