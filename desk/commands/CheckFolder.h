#pragma once

#include "desk/config/ConfigLoader.h"
#include "desk/config/Diagnostics.h"

#include <ostream>
#include <string>
#include <vector>

namespace desk {

/// `orderdesk check FOLDER`: names the mistakes and the warnings of a desk folder by file, line and what was
/// expected: those of its files, and what the paper broker would refuse if every account were new to it. It
/// does not look at the books, which may make `run` refuse more, and refuse less. Gives the process's exit
/// code: 0 where there is no mistake, 2 otherwise; warnings do not count.
int runCheck(const std::string& folder, std::ostream& out);

/// Reads a desk folder for `run`, which holds it: as loadDeskConfig does, and where that finds no mistake,
/// what the paper broker would refuse of the accounts that its books do not have yet.
CLoadedConfig readDeskFolder(const std::string& folder);

/// One line for each mistake: file, line and what was expected.
void printMistakes(const std::vector<CDiagnostic>& mistakes, std::ostream& out);

/// A warning as one line of text: file, line, "warning" and what was expected.
std::string warningText(const CDiagnostic& warning);

} // namespace desk
