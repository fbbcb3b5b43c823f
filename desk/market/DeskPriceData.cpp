#include "desk/market/DeskPriceData.h"

#include <algorithm>

namespace desk {
namespace {

/// A range of price types and the book levels that they name. Levels are counted from 0. `step` is 1 or -1:
/// the change of the level from one type to the next.
struct CLevelRow {
    int firstType;
    int lastType;
    bool isBuy;
    int firstLevel;
    int step;
};

constexpr CLevelRow kLevelRows[] = {
    {0, 4, false, 4, -1}, // fifth to first sell price
    {6, 10, true, 0, 1},  // first to fifth buy price
    {30, 34, false, 5, 1},
    {35, 39, true, 5, 1},
};

} // namespace

CDeskPriceData::CDeskPriceData(const CQuoteEntry& quote, const CInstrumentEntry& instrument)
    : m_quote(quote) {
    m_dLastPrice = quote.last;
    const auto isOffered = [](const CQuoteLevel& level) { return !TC::isInvalidPrice(level.price); };
    const bool isTraded = std::any_of(quote.buy.begin(), quote.buy.end(), isOffered) ||
                          std::any_of(quote.sell.begin(), quote.sell.end(), isOffered);
    m_nDayCount = isTraded ? 1 : 0;
    m_dFallbackPrice = TC::isInvalidPrice(instrument.lowerLimit) ? kLowestPrice : instrument.lowerLimit;
    m_dUpperLimit = instrument.upperLimit;
}

double CDeskPriceData::priceOf(TC::EPriceType type) const {
    if (type == TC::EPriceType::Latest) return m_quote.last;
    const int number = static_cast<int>(type);
    for (const CLevelRow& row : kLevelRows) {
        if (number < row.firstType || number > row.lastType) continue;
        const auto level = static_cast<std::size_t>(row.firstLevel + row.step * (number - row.firstType));
        return (row.isBuy ? m_quote.buy : m_quote.sell).at(level).price;
    }
    return TC::kUnsetDouble;
}

} // namespace desk
