#pragma once

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <string_view>

/// Numbers of order files and of the socket protocol. A text is a number exactly where boost::lexical_cast
/// says so under the classic locale, whatever the locale of the process: no blanks, no empty text, signs
/// allowed, "inf" and "nan" allowed for doubles, no trailing exponent mark or sign. Plain decimal texts take
/// a faster way to the same value.
namespace utils {

/// Throws boost::bad_lexical_cast where the text is not an int or does not fit one.
int strictInt(std::string_view text);

/// Throws boost::bad_lexical_cast where the text is not a double or is too large for one.
double strictDouble(std::string_view text);

} // namespace utils
