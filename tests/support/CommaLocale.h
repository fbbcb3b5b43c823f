#pragma once

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <locale>
#include <string>
#include <string_view>

/// While it lives, the process writes numbers as 1.234,5, like much of Europe. This affects C++ streams and,
/// through setlocale, strtod and printf. No other thread may start or end while it lives.
class CCommaLocale {
public:
    CCommaLocale()
        : m_strBefore(std::setlocale(LC_ALL, nullptr)),
          m_before(std::locale::global(std::locale(std::locale::classic(), new CCommaNumbers))) {
        // The machine may have no such locale. So the data of one is here, in the format that the C library
        // loads.
        constexpr std::string_view kNumeric(
            "\x14\x11\x03\x20\x06\0\0\0\x20\0\0\0\x22\0\0\0\x24\0\0\0\x28\0\0\0"
            "\x2c\0\0\0\x30\0\0\0,\0.\0\x03\x03\0\0,\0\0\0.\0\0\0UTF-8\0",
            0x36);
        std::filesystem::create_directory(m_folder.path("comma"));
        m_folder.write("comma/LC_NUMERIC", std::string(kNumeric));
        ::setenv("LOCPATH", m_folder.path().c_str(), 1);
        EXPECT_NE(std::setlocale(LC_NUMERIC, "comma"), nullptr);
        ::unsetenv("LOCPATH");
        EXPECT_EQ(std::strtod("10,5", nullptr), 10.5);
    }
    ~CCommaLocale() {
        std::locale::global(m_before); // sets the locale of the C library too
        std::setlocale(LC_ALL, m_strBefore.c_str());
    }
    CCommaLocale(const CCommaLocale&) = delete;
    CCommaLocale& operator=(const CCommaLocale&) = delete;

private:
    class CCommaNumbers : public std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };

    const CTempFolder m_folder;
    const std::string m_strBefore;
    const std::locale m_before;
};
