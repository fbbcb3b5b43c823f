#include "desk/market/DeskPriceData.h"

#include <gtest/gtest.h>

namespace desk {
namespace {

/// A quote with buy prices from 99 down to 90 and sell prices from 101 up to 110.
CQuoteEntry fullQuote() {
    CQuoteEntry quote;
    quote.last = 100;
    quote.previousClose = 98.5;
    for (std::size_t level = 0; level < quote.buy.size(); ++level) {
        quote.buy[level] = {99.0 - static_cast<double>(level), 100};
        quote.sell[level] = {101.0 + static_cast<double>(level), 100};
    }
    return quote;
}

TEST(DeskPriceData, EveryLevelHasItsPriceType) {
    const struct {
        int type;
        double price;
    } rows[] = {{0, 105},  {1, 104},  {2, 103}, {3, 102}, {4, 101},  {5, 100},  {6, 99},
                {7, 98},   {8, 97},   {9, 96},  {10, 95}, {30, 106}, {31, 107}, {32, 108},
                {33, 109}, {34, 110}, {35, 94}, {36, 93}, {37, 92},  {38, 91},  {39, 90}};
    const CDeskPriceData data(fullQuote());
    for (const auto& row : rows) {
        const auto type = static_cast<TC::EPriceType>(row.type);
        EXPECT_EQ(data.getOriginPrice(type, TC::EOperationType::Buy), row.price) << row.type;
        EXPECT_EQ(data.getPriceForOrder(type, TC::EOperationType::Sell, 0, {}), row.price) << row.type;
        EXPECT_EQ(data.getPriceForCalc(type, TC::EOperationType::Buy, 0, {}), row.price) << row.type;
    }
}

TEST(DeskPriceData, AnInstrumentWithAnEmptyBookIsSuspended) {
    CQuoteEntry quote;
    quote.last = 100;
    EXPECT_EQ(CDeskPriceData(quote).m_nDayCount, 0);
    quote.sell[0] = {101, 100};
    EXPECT_GT(CDeskPriceData(quote).m_nDayCount, 0);
    EXPECT_GT(CDeskPriceData(fullQuote()).m_nDayCount, 0);
}

TEST(DeskPriceData, TypesWithoutAQuotedPriceAreUnset) {
    const CDeskPriceData data(fullQuote());
    for (const int type : {-1, 11, 12, 29, 40, 49, 1000}) {
        EXPECT_EQ(data.getPriceForOrder(static_cast<TC::EPriceType>(type), TC::EOperationType::Buy, 0, {}),
                  TC::kUnsetDouble)
            << type;
    }
}

TEST(DeskPriceData, AnEmptyLevelIsUnset) {
    CQuoteEntry quote = fullQuote();
    quote.sell[0] = {};
    const CDeskPriceData data(quote);
    EXPECT_TRUE(
        TC::isInvalidPrice(data.getPriceForOrder(TC::EPriceType::Sell1, TC::EOperationType::Buy, 0, {})));
}

TEST(DeskPriceData, LimitsOfTheDayAreTheInstruments) {
    CInstrumentEntry instrument;
    instrument.upperLimit = 110;
    instrument.lowerLimit = 90;
    const CDeskPriceData data(fullQuote(), instrument);
    EXPECT_EQ(data.m_dLastPrice, 100);
    EXPECT_EQ(data.m_dUpperLimit, 110);
    EXPECT_EQ(data.m_dFallbackPrice, 90);
    EXPECT_EQ(data.m_dPhase, 0);
    EXPECT_EQ(data.m_dPhasePrice, TC::kUnsetDouble);
}

TEST(DeskPriceData, WithoutLimitsEveryPriceOfTheBrokerIsWithinThem) {
    const CDeskPriceData data(fullQuote());
    EXPECT_EQ(data.m_dUpperLimit, TC::kUnsetDouble);
    EXPECT_EQ(data.m_dFallbackPrice, 0.0001);
}

} // namespace
} // namespace desk
