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
/// be saved, or orders were dropped at the end.
///
/// At the end the orders that were accepted are worked off. keepWaiting is asked meanwhile, on another
/// thread: once it says no, the rest is dropped, journalled order by order, and counted on `out`. An empty
/// one always waits.
int runDesk(const std::string& folder, std::optional<double> exitWhenIdle, std::ostream& out,
            const std::function<bool()>& keepGoing, const std::function<bool()>& keepWaiting = {});

} // namespace desk
