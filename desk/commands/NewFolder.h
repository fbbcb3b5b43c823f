#pragma once

#include <ostream>
#include <string>

namespace desk {

/// `orderdesk new FOLDER`: writes a desk folder with comments that works without changes. If the folder
/// exists, it must be empty. Returns the process's exit code: 0, or 2 with a line on `err`.
int runNew(const std::string& folder, std::ostream& out, std::ostream& err);

} // namespace desk
