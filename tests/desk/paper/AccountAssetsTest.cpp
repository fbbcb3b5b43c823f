#include "desk/paper/AccountAssets.h"

#include "tests/desk/paper/FamilyDesk.h"

using namespace desk;
using namespace desk::test;

namespace {

class AccountAssets : public FamilyDesk {
protected:
    double assets(EFamily family) const {
        const auto all = assetsOf(m_broker->booksOf(rowOf(family).m_pszAccount), m_quotes);
        EXPECT_TRUE(all.has_value());
        return fromMoney(all.value_or(0));
    }
    /// Sets the last price, and leaves the book as it is.
    void setLast(EFamily family, double last, double previousClose = TC::kUnsetDouble) {
        CQuoteEntry quote = *m_quotes.quote(keyOf(family));
        quote.last = last;
        quote.previousClose = previousClose;
        m_quotes.setWhole(quote);
    }
};

TEST_F(AccountAssets, StocksAreWorthTheirLastPrice) {
    EXPECT_EQ(assets(EFamily::Stock), kFunds);
    ASSERT_EQ(outcomeOf(EFamily::Stock, 18, 100, 10), "filled");
    EXPECT_EQ(assets(EFamily::Stock), kFunds) << "without a last price they are worth what they cost";
    setLast(EFamily::Stock, TC::kUnsetDouble, 11);
    EXPECT_EQ(assets(EFamily::Stock), kFunds + 100) << "the previous close";
    setLast(EFamily::Stock, 12, 11);
    EXPECT_EQ(assets(EFamily::Stock), kFunds + 200);
    ASSERT_EQ(outcomeOf(EFamily::Stock, 18, 100, 9), "working");
    EXPECT_EQ(assets(EFamily::Stock), kFunds + 200) << "frozen money is still the account's";
    m_quotes.dropQuote(keyOf(EFamily::Stock));
    EXPECT_EQ(assets(EFamily::Stock), kFunds);
}

TEST_F(AccountAssets, PositionsOnMarginAreWorthTheirGain) {
    ASSERT_EQ(outcomeOf(EFamily::FutureSpeculation, 0, 10, 100), "filled");
    ASSERT_EQ(outcomeOf(EFamily::FutureSpeculation, 3, 4, 100), "filled");
    setLast(EFamily::FutureSpeculation, 103);
    EXPECT_EQ(assets(EFamily::FutureSpeculation), kFunds + 6 * 10 * 3);
}

TEST_F(AccountAssets, SoldOptionsCostWhatItTakesToBuyThemBack) {
    ASSERT_EQ(outcomeOf(EFamily::Option, 34, 100, 0.1), "filled");
    setLast(EFamily::Option, 0.1);
    EXPECT_EQ(assets(EFamily::Option), kFunds);
    setLast(EFamily::Option, 0.3);
    EXPECT_EQ(assets(EFamily::Option), kFunds - 100 * 1000 * 0.2);
}

TEST_F(AccountAssets, DebtsAreTakenOff) {
    ASSERT_EQ(outcomeOf(EFamily::Credit, 20, 100, 10), "filled");
    ASSERT_EQ(outcomeOf(EFamily::Credit, 21, 300, 10), "filled");
    EXPECT_EQ(assets(EFamily::Credit), kFunds);
    setLast(EFamily::Credit, 11);
    EXPECT_EQ(assets(EFamily::Credit), kFunds + 100 - 300) << "100 are held, 300 are owed";
}

TEST_F(AccountAssets, BooksOfAnAccountAreItsOwn) {
    ASSERT_EQ(outcomeOf(EFamily::Stock, 18, 100, 10), "filled");
    ASSERT_EQ(outcomeOf(EFamily::Credit, 20, 100, 10), "filled");
    const CPaperBooks books = m_broker->booksOf("ST");
    ASSERT_EQ(books.m_funds.size(), 1U);
    EXPECT_EQ(books.m_funds[0].m_strAccount, "ST");
    ASSERT_EQ(books.m_positions.size(), 1U);
    EXPECT_TRUE(books.m_debts.empty());
    EXPECT_TRUE(m_broker->booksOf("nobody").m_funds.empty());
    ASSERT_EQ(m_broker->ordersOf("CR").size(), 1U);
    EXPECT_EQ(m_broker->ordersOf("CR")[0].m_nId, 2);
    EXPECT_TRUE(m_broker->ordersOf("nobody").empty());
}

TEST_F(AccountAssets, AWorthBeyondAnyAccountIsNoFigure) {
    ASSERT_EQ(outcomeOf(EFamily::FutureSpeculation, 0, 1000, 100), "filled");
    setLast(EFamily::FutureSpeculation, 1e10);
    EXPECT_FALSE(assetsOf(m_broker->booksOf("FU"), m_quotes));
}

} // namespace
