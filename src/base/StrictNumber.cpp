#include "base/StrictNumber.h"

#include <boost/lexical_cast.hpp>

#include <array>
#include <cstdint>
#include <optional>

namespace utils {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Nine digits always fit an int, so no overflow test is needed on the fast way.
constexpr std::size_t kFastIntDigits = 9;

std::optional<int> fastInt(std::string_view text) {
    const bool negative = !text.empty() && text.front() == '-';
    const std::string_view digits = negative ? text.substr(1) : text;
    if (digits.empty() || digits.size() > kFastIntDigits) return std::nullopt;
    int value = 0;
    for (const char c : digits) {
        if (!isDigit(c)) return std::nullopt;
        value = value * 10 + (c - '0');
    }
    return negative ? -value : value;
}

// An integer of at most 15 digits and a power of ten up to 10^15 are both exact doubles, so that one division
// rounds correctly: the result is the very double that strtod gives.
constexpr std::size_t kFastDoubleDigits = 15;
constexpr std::array<double, kFastDoubleDigits + 1> kPowersOfTen = {
    1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

std::optional<double> fastDouble(std::string_view text) {
    std::int64_t mantissa = 0;
    std::size_t digits = 0;
    std::size_t fraction = 0;
    bool point = false;
    for (const char c : text) {
        if (c == '.' && !point && digits > 0) {
            point = true;
        } else if (isDigit(c) && digits < kFastDoubleDigits) {
            mantissa = mantissa * 10 + (c - '0');
            ++digits;
            if (point) ++fraction;
        } else {
            return std::nullopt;
        }
    }
    if (digits == 0 || (point && fraction == 0)) return std::nullopt;
    return static_cast<double>(mantissa) / kPowersOfTen[fraction];
}

} // namespace

int strictInt(std::string_view text) {
    if (const auto value = fastInt(text)) return *value;
    return boost::lexical_cast<int>(text.data(), text.size());
}

double strictDouble(std::string_view text) {
    if (const auto value = fastDouble(text)) return *value;
    return boost::lexical_cast<double>(text.data(), text.size());
}

} // namespace utils
