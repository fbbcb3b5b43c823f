#pragma once

#include "desk/journal/JournalReader.h"

#include <string>

namespace desk {

/// One journal line for people, with a newline at its end; a command brings an indented line for each of its
/// orders. Control characters come out as blanks, so that a text in the journal cannot play with the
/// terminal. Pure.
std::string journalText(const CJournalLine& line);

} // namespace desk
