#pragma once

#include "desk/config/ConfigLoader.h"
#include "desk/config/Diagnostics.h"

#include <ostream>
#include <string>
#include <vector>

namespace desk {

/// `orderdesk check FOLDER`: prints the mistakes and the warnings of a desk folder with file, line and what
/// was expected. It checks the files, and also what the paper broker would refuse if it knew no account yet.
/// It does not read the books, so `run` may refuse more or less. Returns the process's exit code: 0 if there
/// is no mistake, otherwise 2; warnings do not matter.
int runCheck(const std::string& folder, std::ostream& out);

/// Reads a desk folder for `run`, which holds the lock of the folder. Does the same as loadDeskConfig. If
/// that finds no mistake, it adds what the paper broker would refuse of the accounts that are not in its
/// books yet.
CLoadedConfig readDeskFolder(const std::string& folder);

/// Prints one line for each mistake: file, line and what was expected.
void printMistakes(const std::vector<CDiagnostic>& mistakes, std::ostream& out);

/// Returns a warning as one line of text: file, line, "warning" and what was expected.
std::string warningText(const CDiagnostic& warning);

} // namespace desk
