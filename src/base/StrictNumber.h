#pragma once

#include "orderservice/base/Export.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <string_view>

/// Parses numbers in order files and in the socket protocol. The result is the same as that of
/// boost::lexical_cast under the classic locale; the locale of the process has no effect. Blanks and empty
/// texts are not allowed. Signs are allowed, and for doubles also "inf" and "nan". An exponent mark or a sign
/// at the end is not allowed. Plain decimal texts use a faster parser that gives the same value.
namespace utils {

/// Throws boost::bad_lexical_cast if the text is not an integer or does not fit an int.
ORDERSERVICE_EXPORT int strictInt(std::string_view text);

/// Throws boost::bad_lexical_cast if the text is not a number or is too large for a double.
ORDERSERVICE_EXPORT double strictDouble(std::string_view text);

} // namespace utils
