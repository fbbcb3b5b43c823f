#include "orderservice/base/StrictNumber.h"

#include <boost/lexical_cast.hpp>

#include <array>
#include <charconv>
#include <cstdint>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>

namespace utils {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// An integer of at most 15 digits and a power of ten up to 10^15 are both exact doubles. So one division
// rounds correctly, and the result is the same double as that of strtod.
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

/// The value of a text if the whole text is a number. The decimal separator is always a point; lexical_cast
/// would use the locale of the process.
std::optional<double> streamedDouble(std::string_view text) {
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    double value = 0;
    const bool isRead =
        stream >> std::noskipws >> value && stream.get() == std::istringstream::traits_type::eof();
    // The stream accepts a number with an incomplete exponent.
    const bool isWhole =
        !text.empty() && std::string_view("eE+-").find(text.back()) == std::string_view::npos;
    return isRead && isWhole ? std::optional(value) : std::nullopt;
}

/// Whether the first character after the signs is a letter of "inf" or "nan". The text may still be no
/// number.
bool isWord(std::string_view text) {
    const std::size_t first = text.find_first_not_of("+-");
    return first != std::string_view::npos &&
           std::string_view("iInN").find(text[first]) != std::string_view::npos;
}

} // namespace

int strictInt(std::string_view text) {
    // from_chars does not accept a plus sign; otherwise it accepts the same texts.
    const bool hasPlus = !text.empty() && text.front() == '+';
    if (hasPlus) text.remove_prefix(1);
    const bool isPlain = !hasPlus || (!text.empty() && isDigit(text.front()));
    int value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (!isPlain || read.ec != std::errc() || read.ptr != text.data() + text.size())
        throw boost::bad_lexical_cast();
    return value;
}

double strictDouble(std::string_view text) {
    if (const auto value = fastDouble(text)) return *value;
    if (isWord(text)) return boost::lexical_cast<double>(text.data(), text.size());
    if (const auto value = streamedDouble(text)) return *value;
    throw boost::bad_lexical_cast();
}

} // namespace utils
