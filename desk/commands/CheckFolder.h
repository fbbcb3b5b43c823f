#pragma once

#include "desk/config/Diagnostics.h"

#include <ostream>
#include <string>
#include <vector>

namespace desk {

/// `orderdesk check FOLDER`: names every mistake in a desk folder by file, line and what was expected. Gives
/// the process's exit code: 0 where there is none, 2 otherwise.
int runCheck(const std::string& folder, std::ostream& out);

/// One line for each mistake: file, line and what was expected.
void printMistakes(const std::vector<CDiagnostic>& mistakes, std::ostream& out);

} // namespace desk
