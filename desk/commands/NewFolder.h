#pragma once

#include <ostream>
#include <string>

namespace desk {

/// `orderdesk new FOLDER`: writes a desk folder with comments that works without changes. If the folder
/// exists, it must be empty. If `confirms` is true, the user of the folder confirms his orders before they
/// are sent. Returns the process's exit code: 0, or 2 with a line on `err`.
int runNew(const std::string& folder, bool confirms, std::ostream& out, std::ostream& err);

} // namespace desk
