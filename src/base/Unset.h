#pragma once

#include <cfloat>
#include <cmath>
#include <limits>
#include <type_traits>

/// The not-set values of all order records, and the tolerance for prices and amounts.
namespace TC {

/// An int that is not set. Records with this number are exchanged with the host, so it must not change.
inline constexpr int kUnsetInt = 0x7fffffff;

/// A price or amount that is not set.
inline constexpr double kUnsetDouble = DBL_MAX;

/// Two prices or amounts are treated as equal if their difference is not greater than this. The smallest
/// price step of the supported markets is 0.0001, which is ten times this value.
inline constexpr double kPriceTolerance = 1e-5;

inline bool isUnset(int value) {
    return value == kUnsetInt;
}

/// An enumeration is not set if its number is -1.
template<typename E, typename = std::enable_if_t<std::is_enum<E>::value>>
constexpr bool isUnset(E value) {
    return static_cast<int>(value) == -1;
}

/// The not-set value of an enumeration.
template<typename E>
constexpr E unsetEnum() {
    return static_cast<E>(-1);
}

/// True if the price is not set: its difference to DBL_MAX is within the tolerance.
inline bool isInvalidPrice(double price) {
    return kPriceTolerance >= std::fabs(price - kUnsetDouble);
}

/// True if the number is treated as zero.
inline bool isZero(double value) {
    return kPriceTolerance >= std::fabs(value);
}

} // namespace TC
