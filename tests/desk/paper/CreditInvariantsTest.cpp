#include "desk/paper/PaperFamilies.h"
#include "tests/desk/paper/StoredDesk.h"

#include <algorithm>
#include <random>

using namespace desk;
using namespace desk::test;

namespace {

constexpr double kSmallFunds = 300;
constexpr double kSmallLimit = 1200;
constexpr double kPrice = 10;
const char* const kCodes[] = {"600001", "600002"};

/// A credit account with little money and credit and some initial positions, and two stocks. Their prices
/// move while the account's orders wait.
class CreditInvariants : public StoredDesk, public testing::WithParamInterface<unsigned> {
protected:
    CreditInvariants() {
        removeStore();
        CInstrumentEntry second = *m_quotes.instrument(keyOf(kCredit));
        second.code = kCodes[1];
        m_quotes.addInstrument(second);
        reopen();
        for (const char* code : kCodes)
            quote(code);
    }

    void reopen() {
        CAccountEntry entry;
        entry.key = "CR";
        entry.broker = TC::EQDBrokerType::Credit;
        entry.funds = kSmallFunds;
        entry.creditLimit = kSmallLimit;
        entry.positions = {{"SH600001", EPositionSide::Long, 60, 40, 9.5},
                           {"SH600002", EPositionSide::Long, 30, 30, 10.5}};
        openFamilies({entry});
    }

    int draw(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_random); }

    /// Sets a book with a gap between its prices, so that some orders wait. Orders that trade have frozen the
    /// amounts that they need.
    void quote(const char* code) {
        const double middle = kPrice + draw(-50, 50) / 10.0;
        const double step = draw(1, 10) / 10.0;
        const std::string key = std::string("SH") + code;
        m_quotes.setQuote(key, {{middle - step, draw(1, 30)}}, {{middle + step, draw(1, 30)}});
        const CMoney before = funds("CR").available();
        ASSERT_TRUE(m_broker->onQuote(key).isSuccess());
        EXPECT_GE(funds("CR").available(), before);
    }

    void order() {
        const int operations[] = {18, 18, 19, 20, 21, 21, 21, 21, 22, 22, 22, 22, 23, 24, 25};
        const int operation = operations[draw(0, static_cast<int>(std::size(operations)) - 1)];
        TC::CCodeOrderParam code = recordOf(kCredit, operation, draw(1, 40), kPrice + draw(-50, 50) / 10.0);
        code.m_stock.m_strCode = kCodes[draw(0, 1)];
        if (draw(0, operation == 22 ? 2 : 7) == 0) code.m_ePriceType = kMarket;
        if (operation == 22 && code.m_ePriceType == kMarket) returnAllWithoutFunds(code);
        code.m_nQuantityKind = TC::kQuantityKindPlain;
        code.m_dQuantity = draw(1, 300);
        orderOf(kCredit, code);
    }

    /// Makes the order return all owed shares, and freezes all money of the account with another order. The
    /// book often has only a part of the shares. Then it is easy to overestimate the proceeds of their sale.
    void returnAllWithoutFunds(TC::CCodeOrderParam& code) {
        code.m_nVolume = static_cast<int>(std::max<std::int64_t>(1, returnable(code.m_stock.m_strCode)));
        constexpr double kLow = 1;
        const int most = static_cast<int>(fromMoney(funds("CR").available()) / kLow);
        if (most > 0) orderOf(kCredit, 18, most, kLow); // this order waits and freezes the money
    }

    std::int64_t returnable(const std::string& code) const {
        for (const CPaperDebt& each : m_broker->debts()) {
            if (each.m_strStock == "SH" + code) return each.returnable();
        }
        return 0;
    }

    void step(int number) {
        const int kind = draw(0, 19);
        if (kind < 11)
            order();
        else if (kind < 17)
            quote(kCodes[draw(0, 1)]);
        else if (kind < 18)
            (void)m_broker->cancelTask(draw(1, number + 1), "");
        else if (kind < 19)
            startDay(std::to_string(20260105 + number));
        else
            reopen();
    }

    /// The amounts frozen by the account's waiting orders. They must equal the frozen amounts of its debts.
    struct CHeld {
        std::int64_t m_nReturning = 0;
        CMoney m_nProceeds = 0;
        CMoney m_nCredit = 0;
    };

    std::map<std::string, CHeld> heldByOrders() const {
        std::map<std::string, CHeld> held;
        for (const CPaperOrder& each : m_broker->orders()) {
            if (!each.isOpen()) continue;
            const bool isMoney = each.m_eOperation == static_cast<TC::EOperationType>(20);
            CHeld& sum = held[isMoney ? std::string() : each.m_strStock];
            sum.m_nCredit += each.m_nCredit;
            sum.m_nProceeds += each.m_nProceeds;
            if (returnsShares(each)) sum.m_nReturning += each.rest();
        }
        return held;
    }

    void check() const {
        const CPaperFunds account = funds("CR");
        EXPECT_GE(account.available(), 0);
        EXPECT_GE(account.m_nFrozen, 0);
        CMoney used = 0;
        CMoney proceeds = 0;
        std::map<std::string, CHeld> held = heldByOrders();
        for (const CPaperDebt& debt : m_broker->debts()) {
            const CHeld& sum = held[debt.m_strStock];
            EXPECT_EQ(debt.m_nReturning, sum.m_nReturning);
            EXPECT_EQ(debt.m_nClaimed, sum.m_nProceeds);
            EXPECT_EQ(debt.m_nReserved, sum.m_nCredit);
            EXPECT_GE(debt.m_nAmount, debt.m_nClaimed);
            EXPECT_GE(debt.returnable(), 0);
            used += debt.m_nAmount + debt.m_nReserved;
            if (!debt.m_strStock.empty()) proceeds += debt.m_nAmount;
        }
        EXPECT_LE(used, toMoney(kSmallLimit).value());
        EXPECT_EQ(account.m_nMargin, proceeds);
    }

    /// Money, positions and debts, valued at one fixed price instead of the quotes.
    CMoney worth() const {
        const CMoney price = toMoney(kPrice).value();
        CMoney sum = funds("CR").m_nCash;
        for (const CPaperPosition& each : m_broker->positions())
            sum += price * each.m_nVolume;
        for (const CPaperDebt& each : m_broker->debts())
            sum -= each.m_strStock.empty() ? each.m_nAmount : price * each.m_nVolume;
        return sum;
    }

    CMoney gains() const {
        const std::vector<CPaperOrder> orders = m_broker->orders();
        CMoney sum = 0;
        for (const CPaperFill& each : m_broker->fills()) {
            const bool isBuy = orders.at(static_cast<std::size_t>(each.m_nOrder - 1)).isBuy();
            const CMoney gain = (toMoney(kPrice).value() - each.m_nPrice) * each.m_nVolume;
            sum += isBuy ? gain : -gain;
        }
        return sum;
    }

    /// The number of fills of an operation at another price than the order's limit.
    int betterFills(int operation) const {
        const std::vector<CPaperOrder> orders = m_broker->orders();
        int count = 0;
        for (const CPaperFill& each : m_broker->fills()) {
            const CPaperOrder& order = orders.at(static_cast<std::size_t>(each.m_nOrder - 1));
            const bool isOperation = order.m_eOperation == static_cast<TC::EOperationType>(operation);
            if (isOperation && !order.m_bMarket && each.m_nPrice != order.m_nPrice) ++count;
        }
        return count;
    }

    /// The number of returns without a limit for which the book had only a part.
    std::ptrdiff_t returnsCutShort() const {
        const std::vector<CPaperOrder> orders = m_broker->orders();
        return std::count_if(orders.begin(), orders.end(), [](const CPaperOrder& order) {
            return returnsShares(order) && order.m_bMarket && order.m_nFilled != 0 && order.rest() != 0;
        });
    }

    std::mt19937 m_random{GetParam()};
};

} // namespace

TEST_P(CreditInvariants, LimitAndFundsHoldAtEveryPrice) {
    const CMoney initial = worth();
    for (int i = 0; i < 600 && !HasFailure(); ++i) {
        step(i);
        check();
        EXPECT_EQ(worth(), initial + gains()) << "after step " << i;
    }
    EXPECT_GT(betterFills(21), 3);
    EXPECT_GT(betterFills(22), 3);
    EXPECT_GT(returnsCutShort(), 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, CreditInvariants, testing::Range(1U, 9U));
