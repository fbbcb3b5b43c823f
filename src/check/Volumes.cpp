#include "orderservice/check/Volumes.h"

#include "orderservice/check/CodeLookup.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/Quote.h"

#include <cmath>
#include <limits>
#include <optional>

namespace TC {
namespace {

/// The volume that the row's part of the amount buys, or nothing if the row cannot be priced. The order of
/// the operations is fixed, so that all callers round in the same way: weight times amount, divided by the
/// sum, divided by the price.
std::optional<int> volumeOfRow(const COrderSingleParam& row, double amount, double sum) {
    QString code = row.m_strCode;
    if (!resolveStockCode(code, EKeyJoin::Plain)) return std::nullopt;
    const CPriceDataPtr quote = hostCall<&CQuoteClient::getStockPrice>(code);
    const CInstrumentDetailPtr detail = hostCall<&CExchangeClient::getCodeInfo>(code);
    if (!quote || !detail) return std::nullopt;
    // The price must be above zero. Otherwise the volume would be 0 or less, and as a target it could sell
    // more than is held.
    const double price = finiteOrUnset(quote->m_dLastPrice);
    if (price == kUnsetDouble || price <= 0) return std::nullopt;
    const double shares = std::trunc(amount * row.m_dWeight / sum / price);
    constexpr double kMostShares = 9e18; // below the largest 64-bit integer
    if (!std::isfinite(shares) || std::fabs(shares) > kMostShares) return std::nullopt;
    const std::int64_t unit = tradingUnit({detail->m_strMarket, detail->m_strCode, {}, {}});
    const std::int64_t volume = static_cast<std::int64_t>(shares) / unit * unit;
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    if (volume < -kMost || volume > kMost) return std::nullopt;
    return static_cast<int>(volume);
}

} // namespace

int truncateToInt(double value) {
    const double whole = std::trunc(value);
    const bool fits = whole >= std::numeric_limits<int>::min() && whole <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(whole) : kUnsetInt;
}

double finiteOrUnset(double value) {
    return std::isfinite(value) ? value : kUnsetDouble;
}

bool isStarMarket(const CStockInfo& stock) {
    return knservice::isTypedStock(knservice::kTypeStarMarket, stock.m_strMarket, stock.m_strCode, {});
}

int tradingUnit(const CStockInfo& stock) {
    if (stock.m_strCode.empty()) return 1;
    const int unit = isStarMarket(stock) ? knservice::getUiMinUnit(stock.m_strMarket, stock.m_strCode, true)
                                         : knservice::getTradeMinUnit(stock.m_strMarket, stock.m_strCode,
                                                                      unsetEnum<EOperationType>());
    return unit > 0 ? unit : 1;
}

void calcVolumnByWeight(QVector<COrderSingleParam>& rows, double amount) {
    double sum = 0;
    for (const COrderSingleParam& row : qAsConst(rows))
        sum += row.m_dWeight;
    const bool isWeightless = isZero(sum) || sum == kUnsetDouble;
    for (COrderSingleParam& row : rows) {
        if (!std::isfinite(sum)) {
            continue;
        } else if (isWeightless) {
            row.m_nVolume = 0;
        } else if (const auto volume = volumeOfRow(row, amount, sum)) {
            row.m_nVolume = *volume;
        }
    }
}

} // namespace TC
