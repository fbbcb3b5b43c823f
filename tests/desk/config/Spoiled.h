#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace desk::test {

/// One change that makes a folder wrong, and the only mistake that the desk must report.
struct CSpoiled {
    const char* name; ///< name of the test
    const char* file;
    const char* what; ///< the text to replace, once
    const char* by;
    const char* expected;
};

inline void PrintTo(const CSpoiled& row, std::ostream* out) {
    *out << row.name;
}

inline std::string nameOf(const testing::TestParamInfo<CSpoiled>& info) {
    return info.param.name;
}

} // namespace desk::test
