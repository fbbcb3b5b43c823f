#include "desk/paper/PaperFamilies.h"

#include "tests/desk/paper/FamilyDesk.h"

#include <cstdint>
#include <string>

using namespace desk;
using namespace desk::test;

namespace {

class UsableVolume : public FamilyDesk {
protected:
    static constexpr EFamily kStocks = EFamily::Stock;
    static constexpr EFamily kCredit = EFamily::Credit; // may owe 5000
    static constexpr EFamily kFutures = EFamily::FutureSpeculation;
    static constexpr EFamily kOptions = EFamily::Option;

    double usable(EFamily family, int operation, double price) const {
        return m_broker->usableVolume(rowOf(family).m_pszAccount, keyOf(family),
                                      static_cast<TC::EOperationType>(operation), price);
    }
    /// An order of what is usable is accepted, and one of a unit more is rejected.
    void expectExact(EFamily family, int operation, double price, int unit = 1) {
        SCOPED_TRACE("family " + std::to_string(static_cast<int>(family)) + " operation " +
                     std::to_string(operation));
        const int volume = static_cast<int>(usable(family, operation, price));
        const CPaperOrder more = orderOf(family, operation, volume + unit, price);
        EXPECT_EQ(statusWord(more.m_eStatus), std::string("rejected")) << volume;
        if (volume == 0) return;
        const CPaperOrder exact = orderOf(family, operation, volume, price);
        EXPECT_NE(statusWord(exact.m_eStatus), std::string("rejected")) << exact.m_strReason;
        if (exact.isOpen()) {
            EXPECT_TRUE(m_broker->cancelTask(exact.m_nTask, "").isSuccess());
        }
    }
    void setUnit(EFamily family, int unit) {
        CInstrumentEntry entry = *m_quotes.instrument(keyOf(family));
        entry.unit = unit;
        m_quotes.addInstrument(entry);
    }
};

TEST_F(UsableVolume, PurchaseIsWhatTheFreeMoneyBuysInWholeUnits) {
    EXPECT_EQ(usable(kStocks, 18, 10), 10000);
    setUnit(kStocks, 100);
    EXPECT_EQ(usable(kStocks, 18, 10.01), 9900) << "9990 in whole units";
    EXPECT_EQ(usable(kStocks, 1043, 10.01), 9900) << "a purchase at a given price is a purchase";
    ASSERT_EQ(outcomeOf(kStocks, 18, 1000, 9), "working");
    EXPECT_EQ(usable(kStocks, 18, 10), 9100) << "9000 are frozen";
}

TEST_F(UsableVolume, PurchaseWithoutAUsablePriceIsNothing) {
    for (const double price : {TC::kUnsetDouble, 0.0, -1.0, 0.00004, 1e300}) {
        EXPECT_EQ(usable(kStocks, 18, price), 0) << price;
        EXPECT_EQ(usable(kFutures, 0, price), 0) << price;
        EXPECT_EQ(usable(kCredit, 20, price), 0) << price;
    }
}

TEST_F(UsableVolume, SaleIsWhatCanBeSoldTodayWithoutWhatWaits) {
    startDay("20260105");
    ASSERT_EQ(outcomeOf(kStocks, 18, 150, 10), "filled");
    EXPECT_EQ(usable(kStocks, 19, 10), 0) << "bought today";
    startDay("20260106");
    setUnit(kStocks, 100);
    EXPECT_EQ(usable(kStocks, 19, 10), 150) << "the odd lot too";
    EXPECT_EQ(usable(kStocks, 19, TC::kUnsetDouble), 150) << "a sale needs no price";
    ASSERT_EQ(outcomeOf(kStocks, 19, 100, 11), "working");
    EXPECT_EQ(usable(kStocks, 19, 10), 50);
}

TEST_F(UsableVolume, OpeningIsWhatTheMarginAllows) {
    EXPECT_EQ(usable(kFutures, 0, 100), 1000) << "100000 / (100 * 10 * 0.1)";
    EXPECT_EQ(usable(kFutures, 3, 100), 1000);
    EXPECT_EQ(usable(kFutures, 3, 50), 1000) << "the book pays 100, so the margin is that of 100";
    EXPECT_EQ(usable(EFamily::Gold, 0, 5), 1000) << "100000 / (5 * 100 * 0.2)";
    EXPECT_EQ(usable(EFamily::Gold, 18, 5), 200) << "bought outright";
}

TEST_F(UsableVolume, ClosingIsTheVolumeOfTodayOrOfEarlierDays) {
    startDay("20260105");
    ASSERT_EQ(outcomeOf(kFutures, 0, 30, 100), "filled");
    startDay("20260106");
    ASSERT_EQ(outcomeOf(kFutures, 0, 20, 100), "filled");
    EXPECT_EQ(usable(kFutures, 1, 100), 30);
    EXPECT_EQ(usable(kFutures, 2, 100), 20);
    EXPECT_EQ(usable(kFutures, 6, 100), 50);
    EXPECT_EQ(usable(kFutures, 4, 100), 0) << "nothing is short";
    ASSERT_EQ(outcomeOf(kFutures, 2, 5, 110), "working");
    EXPECT_EQ(usable(kFutures, 2, 100), 15);
    EXPECT_EQ(usable(kFutures, 10, 100), 45 + 950) << "closes 45 and opens with what is left of the money";
}

TEST_F(UsableVolume, OptionsAreBoughtInFullAndSoldOnMargin) {
    EXPECT_EQ(usable(kOptions, 32, 0.1), 1000) << "100000 / (0.1 * 1000)";
    EXPECT_EQ(usable(kOptions, 34, 0.1), 2000) << "half of it as margin";
    ASSERT_EQ(outcomeOf(kOptions, 34, 100, 0.1), "filled");
    EXPECT_EQ(usable(kOptions, 35, 0.1), 100);
    EXPECT_EQ(usable(kOptions, 35, 2.0), 52) << "its premium must be available in addition to the margin";
    EXPECT_EQ(usable(kOptions, 33, 0.1), 0);
    for (const int refused : {36, 37, 38, 39, 40, 41})
        EXPECT_EQ(usable(kOptions, refused, 0.1), 0) << refused;
}

TEST_F(UsableVolume, CreditIsWhatMayStillBeBorrowed) {
    EXPECT_EQ(usable(kCredit, 20, 10), 500);
    EXPECT_EQ(usable(kCredit, 21, 10), 500);
    EXPECT_EQ(usable(kCredit, 21, 5), 500) << "the book pays 10";
    ASSERT_EQ(outcomeOf(kCredit, 20, 200, 10), "filled");
    EXPECT_EQ(usable(kCredit, 20, 10), 300);
    EXPECT_EQ(usable(kCredit, 18, 10), 10000) << "its own money is untouched";
}

TEST_F(UsableVolume, RepaymentsAreLimitedByDebtAndByWhatTheAccountHas) {
    startDay("20260105");
    EXPECT_EQ(usable(kCredit, 25, 10), 0) << "nothing is owed";
    ASSERT_EQ(outcomeOf(kCredit, 21, 300, 10), "filled");
    ASSERT_EQ(outcomeOf(kCredit, 18, 100, 10), "filled");
    ASSERT_EQ(outcomeOf(kCredit, 20, 50, 10.5), "filled");
    EXPECT_EQ(usable(kCredit, 22, 10), 300);
    EXPECT_EQ(usable(kCredit, 23, 10), 0) << "what was bought today cannot be returned";
    startDay("20260106");
    EXPECT_EQ(usable(kCredit, 23, TC::kUnsetDouble), 150) << "all shares it holds; 300 are owed";
    EXPECT_EQ(usable(kCredit, 24, 10), 150);
    EXPECT_EQ(usable(kCredit, 25, 10), 500) << "the money owed";
    ASSERT_EQ(outcomeOf(kCredit, 22, 200, 9), "working");
    EXPECT_EQ(usable(kCredit, 22, 10), 100);
    for (const int refused : {55, 56, 1021})
        EXPECT_EQ(usable(kCredit, refused, 10), 0) << refused;
}

TEST_F(UsableVolume, IsNothingForStrangers) {
    EXPECT_EQ(m_broker->usableVolume("nobody", keyOf(kStocks), TC::EOperationType::Buy, 10), 0);
    EXPECT_EQ(m_broker->usableVolume("ST", "SH999999", TC::EOperationType::Buy, 10), 0);
    EXPECT_EQ(m_broker->usableVolume("ST", keyOf(kFutures), TC::EOperationType::OpenLong, 10), 0);
    EXPECT_EQ(usable(kStocks, -1, 10), 0);
    EXPECT_EQ(usable(kFutures, 18, 10), 0);
    EXPECT_EQ(usable(kFutures, 1043, 10), 0);
}

TEST_F(UsableVolume, IsNothingIfTheMultiplierHasChanged) {
    ASSERT_EQ(outcomeOf(kFutures, 0, 30, 100), "filled");
    CInstrumentEntry entry = *m_quotes.instrument(keyOf(kFutures));
    entry.multiplier = 20;
    m_quotes.addInstrument(entry);
    EXPECT_EQ(usable(kFutures, 2, 100), 0);
    EXPECT_EQ(usable(kFutures, 0, 100), 0);
}

TEST_F(UsableVolume, WithoutAMarginOneOrderIsTheLimit) {
    CInstrumentEntry entry = *m_quotes.instrument(keyOf(kFutures));
    entry.marginRate = 0;
    m_quotes.addInstrument(entry);
    EXPECT_EQ(usable(kFutures, 0, 100), 2147483646);
}

TEST_F(UsableVolume, BrokerAcceptsExactlyWhatIsUsable) {
    startDay("20260105");
    for (const EFamily family : kFamiliesWithOrders) { // positions and debts of an earlier day
        for (const int operation : {18, 0, 3, 32, 34, 20, 21}) {
            if (findOperationRule(static_cast<TC::EOperationType>(operation), family) != nullptr)
                orderOf(family, operation, 60, rowOf(family).m_dPrice);
        }
    }
    startDay("20260106");
    for (const EFamily family : kFamiliesWithOrders) {
        for (int operation = 0; operation <= 1043; ++operation) {
            const COperationRule* rule =
                findOperationRule(static_cast<TC::EOperationType>(operation), family);
            if (rule == nullptr || rule->m_pszRefusal != nullptr || operation == 25) continue;
            expectExact(family, operation, rowOf(family).m_dPrice);
        }
    }
}

TEST_F(UsableVolume, BrokerAcceptsExactlyWhatIsUsableInUnits) {
    startDay("20260105");
    ASSERT_EQ(outcomeOf(kStocks, 18, 1234, 10), "filled");
    ASSERT_EQ(outcomeOf(kCredit, 18, 234, 10), "filled");
    ASSERT_EQ(outcomeOf(kCredit, 21, 134, 10), "filled");
    ASSERT_EQ(outcomeOf(kFutures, 0, 13, 100), "filled");
    startDay("20260106");
    setUnit(kStocks, 100);
    setUnit(kFutures, 5);
    for (const int operation : {18, 19, 1043})
        expectExact(kStocks, operation, 10.07, 100);
    for (const int operation : {18, 20, 21, 22, 23, 24})
        expectExact(kCredit, operation, 10.07, 100);
    for (const int operation : {0, 1, 3, 7, 11})
        expectExact(kFutures, operation, 97.3, 5);
}

} // namespace
