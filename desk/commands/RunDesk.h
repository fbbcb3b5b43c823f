#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <string>

namespace desk {

/// `orderdesk run FOLDER [--exit-when-idle SECONDS]`: runs the desk until keepGoing says no or, where a time
/// is given, until nothing has happened and no quote change has been to come for so long. Main thread, with a
/// QCoreApplication. Gives the process's exit code: 0 after an orderly end, 2 for a folder that cannot be
/// traded on, 1 where the journal or the store cannot be opened or closed, or the interfaces cannot
/// be saved.
int runDesk(const std::string& folder, std::optional<double> exitWhenIdle, std::ostream& out,
            const std::function<bool()>& keepGoing);

} // namespace desk
