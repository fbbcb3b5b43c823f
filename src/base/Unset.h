#pragma once

#include <cfloat>
#include <cmath>
#include <limits>
#include <type_traits>

/// The not-set values that every order record shares, and the near-zero rule for prices and amounts.
namespace TC {

/// An int that nobody has set. Records cross the boundary with this number in them, so it is fixed.
inline constexpr int kUnsetInt = 0x7fffffff;

/// A price or amount that nobody has set.
inline constexpr double kUnsetDouble = DBL_MAX;

/// Two prices or amounts that lie no further apart than this count as equal. The finest price step of the
/// markets served is 0.0001, ten times as much.
inline constexpr double kPriceTolerance = 1e-5;

inline bool isUnset(int value) {
    return value == kUnsetInt;
}

/// An enumeration is not set when its number is -1.
template<typename E, typename = std::enable_if_t<std::is_enum<E>::value>>
constexpr bool isUnset(E value) {
    return static_cast<int>(value) == -1;
}

/// The not-set value of an enumeration.
template<typename E>
constexpr E unsetEnum() {
    return static_cast<E>(-1);
}

/// True when nobody has set the price: it lies within the tolerance of DBL_MAX.
inline bool isInvalidPrice(double price) {
    return kPriceTolerance >= std::fabs(price - kUnsetDouble);
}

/// True when the number counts as zero.
inline bool isZero(double value) {
    return kPriceTolerance >= std::fabs(value);
}

} // namespace TC
