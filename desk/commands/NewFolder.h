#pragma once

#include <ostream>
#include <string>

namespace desk {

/// `orderdesk new FOLDER`: writes a commented desk folder that works as it is. The folder must not exist or
/// be empty. Gives the process's exit code: 0, or 2 with a line on `err`.
int runNew(const std::string& folder, std::ostream& out, std::ostream& err);

} // namespace desk
