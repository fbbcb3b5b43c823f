#include "desk/window/Books.h"
#include "desk/window/Tables.h"

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

TEST(Books, EachRowHasACellForEachColumn) {
    const CValuedAccount valued = account({position(EPositionSide::Long, 1000, 1000)});
    const CRow row = accountRow(valued, 7);
    ASSERT_EQ(row.m_cells.size(), static_cast<int>(accountTable().m_columns.size()));
    EXPECT_EQ(row.m_cells[columnOf(accountTable(), "equity")].toDouble(), 6200);
    EXPECT_EQ(row.m_cells[columnOf(accountTable(), "profit")].toDouble(), 200);
    EXPECT_EQ(row.m_cells[columnOf(accountTable(), "since")].toDouble(), 7);
    const auto columns = [](const CTableSpec& spec) { return static_cast<int>(spec.m_columns.size()); };
    EXPECT_EQ(totalRow({valued}, 7).m_cells.size(), columns(accountTable()));
    EXPECT_EQ(positionRow({}).m_cells.size(), columns(positionTable()));
    EXPECT_EQ(orderRow({}, {}).m_cells.size(), columns(orderTable()));
    EXPECT_EQ(fillRow({}, {}).m_cells.size(), columns(fillTable()));
    EXPECT_EQ(taskRow({}).m_cells.size(), columns(taskTable()));
    EXPECT_EQ(quoteRow({}, nullptr).m_cells.size(), columns(quoteTable()));
    EXPECT_EQ(bookRows(nullptr).at(0).m_cells.size(), columns(bookTable()));
    EXPECT_EQ(messageRow({}).m_cells.size(), columns(messageTable()));
    EXPECT_EQ(journalRow("{}").m_cells.size(), columns(journalTable()));
    EXPECT_EQ(strategyRow({}).m_cells.size(), columns(strategyTable()));
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
