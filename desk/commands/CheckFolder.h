#pragma once

#include "desk/config/ConfigLoader.h"
#include "desk/config/Diagnostics.h"

#include <ostream>
#include <string>
#include <vector>

namespace desk {

/// `orderdesk check FOLDER`: names every mistake in a desk folder by file, line and what was expected. Gives
/// the process's exit code: 0 where there is none, 2 otherwise.
int runCheck(const std::string& folder, std::ostream& out);

/// Reads a desk folder as loadDeskConfig does; where that finds no mistake, those that the paper broker would
/// make of its accounts are told too.
CLoadedConfig readDeskFolder(const std::string& folder);

/// One line for each mistake: file, line and what was expected.
void printMistakes(const std::vector<CDiagnostic>& mistakes, std::ostream& out);

} // namespace desk
