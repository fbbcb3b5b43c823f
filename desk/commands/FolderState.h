#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/config/Diagnostics.h"

#include <string>
#include <vector>

namespace desk {

/// The warnings of `orderdesk check` about files that change while the desk works: order files that wait,
/// order files that a crash left, paths that no order file can be at, the paper broker's store, and files in
/// the place of the control socket. Reads the journal, but never opens the store, because that could change
/// it. The folder must have no mistakes.
std::vector<CDiagnostic> stateWarnings(const std::string& folder, const CDeskConfig& config);

} // namespace desk
