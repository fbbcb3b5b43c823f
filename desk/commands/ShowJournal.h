#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace desk {

/// `orderdesk journal FOLDER [--follow]`: prints a desk's journal for people, one line for each record and
/// one indented line for each order of a command. Lines that a crash or a full disk cut short are shown as
/// damaged. With `follow` it also prints new lines until keepGoing returns false. It checks for them five
/// times a second by the clock of base/Clock.h, and continues if another file replaces the journal. Returns
/// the process's exit code: 0, or 1 with a line on `err` if the folder has no journal.
int runJournal(const std::string& folder, bool follow, std::ostream& out, std::ostream& err,
               const std::function<bool()>& keepGoing);

} // namespace desk
