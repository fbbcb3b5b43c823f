#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace desk {

/// Prices and money inside the paper broker: whole ten-thousandths of a currency unit, the finest price step
/// of the markets served. Sums of whole numbers come out the same in every order, which sums of doubles do
/// not.
using CMoney = std::int64_t;

inline constexpr CMoney kMoneyPerUnit = 10000;

/// Largest amount taken for one order or one account: 10^13 currency units. Far from the ends of CMoney, so
/// that sums over an account's orders stay within it.
inline constexpr CMoney kMaxMoney = 10'000'000'000'000 * kMoneyPerUnit;

/// Rounds to the nearest ten-thousandth. Empty for what is no finite number or lies beyond kMaxMoney on
/// either side.
std::optional<CMoney> toMoney(double amount);

/// Like toMoney, but also empty where the amount is finer than a ten-thousandth by more than the price
/// tolerance.
std::optional<CMoney> toPrice(double price);

double fromMoney(CMoney money);

/// An amount as messages show it: four digits behind the point.
std::string moneyText(CMoney money);

/// price times volume, or empty beyond kMaxMoney. volume is not negative.
std::optional<CMoney> amountOf(CMoney price, std::int64_t volume);

/// Part of a sum that falls on a part of the volume, rounded towards zero; the last part takes the rest.
/// whole is not 0.
CMoney partOf(CMoney sum, std::int64_t part, std::int64_t whole);

inline constexpr int kRateUnit = 1'000'000; ///< rates are whole millionths

/// The rate's part of an amount, rounded down. The amount is not negative.
CMoney rateOf(CMoney amount, int rate);

} // namespace desk
