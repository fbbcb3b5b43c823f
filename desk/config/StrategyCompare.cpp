#include "desk/config/StrategyCompare.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <tuple>
#include <utility>

namespace desk {
namespace {

// Both records are split by structured bindings that name every member. So a new member causes a compile
// error here until it is added.

auto settingFields(const TC::COrderSetting& setting) {
    const auto& [priceType, orderType, first, second, firstOn, secondOn, cmdLog] = setting;
    return std::tie(priceType, orderType, first, second, firstOn, secondOn, cmdLog);
}

auto strategyFields(const TC::COrderStrategyParam& strategy) {
    [[maybe_unused]] const auto& [status, channel, name, accountType, account, family, positionType, source,
                                  accountMode, path, user, pass, code, stockSetting, furtherSettings, volume,
                                  further1, further2, useAmount, amount, byPercent, percent, startCount,
                                  hedgeBasket, commandFlag, orderType, algorithm, hedgeParam] = strategy;
    return std::tie(channel, name, accountType, account, family, positionType, source, accountMode, path,
                    user, pass, code, stockSetting, furtherSettings, volume, further1, further2, useAmount,
                    amount, byPercent, percent, hedgeBasket, commandFlag, orderType, algorithm, hedgeParam);
}

using CFields = decltype(strategyFields(std::declval<const TC::COrderStrategyParam&>()));
constexpr std::size_t kFieldCount = std::tuple_size_v<CFields>;

/// The keys of the fields, in the order of strategyFields.
constexpr std::array<const char*, kFieldCount> kFieldKeys = {
    "channel",       "name",         "account",      "account",    "family",
    "position_type", "source",       "account_mode", "path",       "user",
    "pass",          "code",         "setting",      "setting",    "volume",
    "further1",      "further2",     "use_amount",   "amount",     "by_percent",
    "percent",       "hedge_basket", "command_flag", "order_type", "algorithm setting",
    "hedge_param"};

template<typename Fields, std::size_t... Index>
std::array<bool, sizeof...(Index)> sameness(const Fields& a, const Fields& b, std::index_sequence<Index...>) {
    return {isSame(std::get<Index>(a), std::get<Index>(b))...};
}

} // namespace

bool isSame(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool isSame(const TC::COrderSetting& a, const TC::COrderSetting& b) {
    const auto left = settingFields(a);
    const auto right = settingFields(b);
    const auto same = sameness(left, right, std::make_index_sequence<std::tuple_size_v<decltype(left)>>());
    return std::find(same.begin(), same.end(), false) == same.end();
}

const char* firstDifference(const TC::COrderStrategyParam& a, const TC::COrderStrategyParam& b) {
    const auto same = sameness(strategyFields(a), strategyFields(b), std::make_index_sequence<kFieldCount>());
    const auto found = std::find(same.begin(), same.end(), false);
    return found == same.end() ? nullptr : kFieldKeys.at(static_cast<std::size_t>(found - same.begin()));
}

} // namespace desk
