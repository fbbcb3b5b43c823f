#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace desk {

/// Prices and money inside the paper broker, in whole ten-thousandths of a currency unit. That is the finest
/// price step of the markets served. A sum of integers does not depend on the order of its terms; a sum of
/// doubles does.
using CMoney = std::int64_t;

inline constexpr CMoney kMoneyPerUnit = 10000;

/// Largest amount that is accepted for one order or one account: 10^13 currency units. It is far from the
/// limits of CMoney, so sums over an account's orders do not overflow.
inline constexpr CMoney kMaxMoney = 10'000'000'000'000 * kMoneyPerUnit;

/// Rounds to the nearest ten-thousandth. Empty if the amount is not a finite number, or if it is above
/// kMaxMoney or below -kMaxMoney.
std::optional<CMoney> toMoney(double amount);

/// Like toMoney, but also empty if the price differs from a whole ten-thousandth by more than the price
/// tolerance.
std::optional<CMoney> toPrice(double price);

double fromMoney(CMoney money);

/// An amount as messages show it, with four decimals.
std::string moneyText(CMoney money);

/// Price times volume, or empty if the result is beyond kMaxMoney. The volume must not be negative.
std::optional<CMoney> amountOf(CMoney price, std::int64_t volume);

/// The share of a sum that belongs to `part` of `whole`, rounded towards zero. If `part` equals `whole`, this
/// is the whole sum, so callers lose nothing to rounding when they take the last part. `whole` must not be 0.
CMoney partOf(CMoney sum, std::int64_t part, std::int64_t whole);

inline constexpr int kRateUnit = 1'000'000; ///< rates are whole millionths

/// Amount times rate, rounded down. The amount must not be negative.
CMoney rateOf(CMoney amount, int rate);

} // namespace desk
