#include "desk/paper/Money.h"

#include "orderservice/base/Unset.h"

#include <cmath>
#include <cstdio>

namespace desk {
namespace {

__extension__ using CWide = __int128;

} // namespace

std::optional<CMoney> toMoney(double amount) {
    const double scaled = amount * static_cast<double>(kMoneyPerUnit);
    if (!std::isfinite(scaled) || std::fabs(scaled) > static_cast<double>(kMaxMoney)) return {};
    return std::llround(scaled);
}

std::optional<CMoney> toPrice(double price) {
    const std::optional<CMoney> money = toMoney(price);
    // A double cannot represent a large price exactly to the step, so the tolerance grows with the price.
    const double tolerance = TC::kPriceTolerance + std::fabs(price) * 1e-15;
    if (!money || std::fabs(fromMoney(*money) - price) > tolerance) return {};
    return money;
}

double fromMoney(CMoney money) {
    return static_cast<double>(money) / static_cast<double>(kMoneyPerUnit);
}

std::string moneyText(CMoney money) {
    char text[40];
    std::snprintf(text, sizeof text, "%.4f", fromMoney(money));
    return text;
}

std::optional<CMoney> amountOf(CMoney price, std::int64_t volume) {
    CMoney amount = 0;
    if (__builtin_mul_overflow(price, volume, &amount) || amount > kMaxMoney || amount < -kMaxMoney)
        return {};
    return amount;
}

CMoney partOf(CMoney sum, std::int64_t part, std::int64_t whole) {
    return static_cast<CMoney>(static_cast<CWide>(sum) * part / whole);
}

CMoney rateOf(CMoney amount, int rate) {
    return static_cast<CMoney>(static_cast<CWide>(amount) * rate / kRateUnit);
}

} // namespace desk
