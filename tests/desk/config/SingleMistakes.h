#pragma once

#include "desk/commands/CheckFolder.h"
#include "desk/commands/NewFolder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace desk::test {

/// One slip in the demo folder: the first place of a text is replaced by another. `told` has the beginnings
/// of the lines that the check must print for it, and no others; empty: it cannot be seen, for the reason.
struct CSlip {
    const char* name;
    const char* file;
    const char* what;
    const char* by;
    const char* told;
    const char* reason = "";
};

inline std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// What the check prints for a slip, without its last line.
inline std::vector<std::string> checkOf(const CSlip& slip) {
    const CTempFolder folder;
    std::ostringstream out;
    EXPECT_EQ(runNew(folder.path("desk"), out, out), 0);
    const std::string file = std::string("desk/") + slip.file;
    std::string text = folder.read(file);
    const std::size_t place = text.find(slip.what);
    EXPECT_NE(place, std::string::npos) << "no " << slip.what;
    if (place == std::string::npos) return {};
    folder.write(file, text.replace(place, std::string(slip.what).size(), slip.by));
    std::ostringstream printed;
    runCheck(folder.path("desk"), printed);
    std::vector<std::string> lines = linesOf(printed.str());
    if (!lines.empty()) lines.pop_back();
    return lines;
}

/// Runs every slip; gives the names of those that pass in silence.
inline std::vector<std::string> expectTold(const std::vector<CSlip>& slips) {
    std::vector<std::string> silent;
    for (const CSlip& slip : slips) {
        SCOPED_TRACE(slip.name);
        const std::vector<std::string> printed = checkOf(slip);
        const std::vector<std::string> told = linesOf(slip.told);
        if (printed.empty()) silent.emplace_back(slip.name);
        EXPECT_EQ(printed.size(), told.size()) << testing::PrintToString(printed);
        for (std::size_t i = 0; i < std::min(printed.size(), told.size()); ++i)
            EXPECT_EQ(printed[i].substr(0, told[i].size()), told[i]);
    }
    return silent;
}

} // namespace desk::test
