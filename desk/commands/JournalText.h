#pragma once

#include "desk/journal/JournalReader.h"

#include <string>

namespace desk {

/// Formats one journal line for people, with a newline at the end. A command gets an additional indented line
/// for each of its orders. Control characters become blanks, so that a text in the journal cannot control the
/// terminal. Pure.
std::string journalText(const CJournalLine& line);

} // namespace desk
