#include "desk/window/Books.h"

#include <gtest/gtest.h>

namespace {

using namespace desk;

class COneQuote : public IQuoteSource {
public:
    std::optional<CInstrumentEntry> instrument(const std::string&) const override { return std::nullopt; }
    std::optional<CQuoteEntry> quote(const std::string& stock) const override {
        if (stock != "X") return std::nullopt;
        CQuoteEntry quote;
        quote.last = 12;
        return quote;
    }
};

CMoney units(double amount) {
    return *toMoney(amount);
}

CPaperPosition position(EPositionSide side, double cost, double paid, const char* stock = "X") {
    CPaperPosition result;
    result.m_strAccount = "A";
    result.m_strStock = stock;
    result.m_eSide = side;
    result.m_nVolume = 100;
    result.m_nCost = units(cost);
    result.m_nPaid = units(paid);
    return result;
}

CValuedAccount account(const std::vector<CPaperPosition>& positions,
                       const std::vector<CPaperDebt>& debts = {}) {
    CPaperFunds funds;
    funds.m_strAccount = "A";
    funds.m_nCash = units(5000);
    return valueBooks({funds}, positions, debts, COneQuote()).m_accounts.at(0);
}

TEST(Books, APaidPositionAddsItsValue) {
    const CValuedAccount result = account({position(EPositionSide::Long, 1000, 1000)});
    EXPECT_DOUBLE_EQ(result.m_dEquity, 5000 + 1200);
    EXPECT_DOUBLE_EQ(result.m_dProfit, 200);
}

TEST(Books, APositionOnMarginAddsItsProfit) {
    EXPECT_DOUBLE_EQ(account({position(EPositionSide::Long, 1000, 0)}).m_dEquity, 5000 + 200);
    EXPECT_DOUBLE_EQ(account({position(EPositionSide::Short, 1000, 0)}).m_dEquity, 5000 - 200);
}

TEST(Books, ASoldOptionSubtractsItsValue) {
    EXPECT_DOUBLE_EQ(account({position(EPositionSide::Short, 1000, -1000)}).m_dEquity, 5000 - 1200);
}

TEST(Books, WithoutAPriceTheCostIsUsed) {
    const CValuedAccount result = account({position(EPositionSide::Long, 1000, 1000, "Y")});
    EXPECT_DOUBLE_EQ(result.m_dEquity, 5000 + 1000);
    EXPECT_DOUBLE_EQ(result.m_dProfit, 0);
}

TEST(Books, DebtsAreSubtracted) {
    CPaperDebt money;
    money.m_strAccount = "A";
    money.m_nAmount = units(300);
    CPaperDebt shares;
    shares.m_strAccount = "A";
    shares.m_strStock = "X";
    shares.m_nVolume = 100;
    shares.m_nAmount = units(1000); // proceeds, which are in the cash
    const CValuedAccount result = account({}, {money, shares});
    EXPECT_DOUBLE_EQ(result.m_dEquity, 5000 - 300 - 1200);
    EXPECT_DOUBLE_EQ(result.m_dProfit, -200);
}

} // namespace
