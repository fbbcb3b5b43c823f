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

/// One mistake in the demo folder: the first occurrence of a text is replaced. `reported` has the beginnings
/// of all lines that the check must print for it. If it is empty, the check cannot detect the mistake, for
/// the given reason.
struct CSlip {
    const char* name;
    const char* file;
    const char* what;
    const char* by;
    const char* reported;
    const char* reason = "";
};

inline std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// The output of the check for a mistake, without its last line.
inline std::vector<std::string> checkOf(const CSlip& slip) {
    const CTempFolder folder;
    std::ostringstream out;
    EXPECT_EQ(runNew(folder.path("desk"), false, out, out), 0);
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

/// Tests every mistake. Returns the names of the mistakes that the check does not report.
inline std::vector<std::string> expectReported(const std::vector<CSlip>& slips) {
    std::vector<std::string> silent;
    for (const CSlip& slip : slips) {
        SCOPED_TRACE(slip.name);
        const std::vector<std::string> printed = checkOf(slip);
        const std::vector<std::string> reported = linesOf(slip.reported);
        if (printed.empty()) silent.emplace_back(slip.name);
        EXPECT_EQ(printed.size(), reported.size()) << testing::PrintToString(printed);
        for (std::size_t i = 0; i < std::min(printed.size(), reported.size()); ++i)
            EXPECT_EQ(printed[i].substr(0, reported[i].size()), reported[i]);
    }
    return silent;
}

} // namespace desk::test
