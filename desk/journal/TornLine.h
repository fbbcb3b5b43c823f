#pragma once

#include <cstddef>
#include <string_view>

namespace desk {

/// Whether the text is a journal record: a JSON object whose `kind` is a text.
bool isRecord(std::string_view text);

/// Where the record begins that a line of a journal holds behind a torn line; 0 if there is none. A torn line
/// without a line end, as a file that was cut leaves it, has the next record in the same line. A line that is
/// a record as a whole is never cut: objects within it may begin with a `kind` of their own.
std::size_t recordBehindTornLine(std::string_view line);

} // namespace desk
