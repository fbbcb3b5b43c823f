#include "desk/config/Kinds.h"
#include "desk/paper/PaperFamilies.h"
#include "tests/desk/paper/StoredDesk.h"

#include <ostream>
#include <random>

using namespace desk;
using namespace desk::test;

namespace {

/// The operations of a random sequence, and the operations that close everything at its end.
struct CGame {
    EFamily m_eFamily;
    std::vector<int> m_operations;
    int m_nCloseLong;
    int m_nCloseShort;
};

void PrintTo(const CGame& game, std::ostream* out) {
    *out << "family " << static_cast<int>(game.m_eFamily);
}

const CGame kGames[] = {
    {EFamily::Stock, {18, 18, 19}, 19, 0},
    {EFamily::FutureSpeculation, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}, 7, 9},
    {EFamily::Gold, {0, 1, 3, 4, 18, 19}, 1, 4},
    {EFamily::Option, {32, 33, 34, 35}, 33, 35},
    {EFamily::FutureOption, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}, 6, 8},
    {EFamily::Credit, {18, 19, 20, 20, 21, 21, 22, 23, 24, 25}, 19, 0},
};

/// Every account starts with positions that were bought at another price than the family's.
class PaperInvariants : public StoredDesk, public testing::WithParamInterface<CGame> {
protected:
    PaperInvariants() {
        removeStore();
        std::vector<CAccountEntry> accounts = familyAccounts();
        for (std::size_t i = 0; i < accounts.size(); ++i) {
            const CFamilyRow& row = kFamilyRows[i];
            const std::string key = keyOf(row.m_eFamily);
            accounts[i].positions = {{key, EPositionSide::Long, 7, 5, row.m_dPrice * 0.98}};
            if (canBeShort(row.m_eKind))
                accounts[i].positions.push_back({key, EPositionSide::Short, 4, 3, row.m_dPrice * 1.01});
        }
        openFamilies(accounts);
    }

    const EFamily f = GetParam().m_eFamily;
    const CMoney price = toMoney(rowOf(f).m_dPrice).value();
    std::mt19937 random{20260105};

    int draw(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); }

    /// A random price near the family's price.
    double drawPrice() { return fromMoney(price * (100 + draw(-5, 5)) / 100); }

    void drawOrder() {
        const std::vector<int>& operations = GetParam().m_operations;
        const int operation = operations[static_cast<std::size_t>(draw(0, int(operations.size()) - 1))];
        TC::CCodeOrderParam code = recordOf(f, operation, draw(1, 9), drawPrice());
        if (draw(0, 4) == 0) code.m_ePriceType = kMarket;
        code.m_nQuantityKind = TC::kQuantityKindPlain;
        code.m_dQuantity = draw(1, 40);
        orderOf(f, code);
    }

    /// One random event: mostly an order, sometimes a quote, a cancel, a new day or a restart.
    template<typename Quote>
    void step(int number, Quote quote) {
        const int kind = draw(0, 19);
        if (kind < 13)
            drawOrder();
        else if (kind < 17)
            quote();
        else if (kind < 18)
            (void)m_broker->cancelTask(draw(1, number + 1), "");
        else if (kind < 19)
            startDay(std::to_string(20260105 + number));
        else
            openFamilies();
        checkNothingIsNegative();
    }

    void checkNothingIsNegative() const {
        const CPaperFunds account = fundsOf(f);
        EXPECT_GE(account.m_nFrozen, 0);
        EXPECT_GE(account.m_nMargin, 0);
        CMoney held = 0;
        for (const CPaperPosition& each : m_broker->positions()) {
            if (each.m_strAccount != account.m_strAccount) continue;
            EXPECT_GE(each.m_nFrozenToday, 0);
            EXPECT_GE(each.m_nFrozen, each.m_nFrozenToday);
            EXPECT_GE(each.m_nSellable, each.m_nFrozen);
            EXPECT_GE(each.m_nVolume, each.m_nSellable);
            EXPECT_GE(each.m_nVolume, each.m_nToday);
            EXPECT_GE(each.m_nToday, each.m_nFrozenToday);
            EXPECT_GE(each.m_nMargin, 0);
            held += each.m_nMargin;
        }
        for (const CPaperDebt& each : m_broker->debts()) {
            EXPECT_GE(each.m_nAmount, 0);
            EXPECT_GE(each.m_nReturning, 0);
            EXPECT_GE(each.m_nVolume, each.m_nReturning);
            EXPECT_GE(each.m_nReserved, 0);
            if (!each.m_strStock.empty()) held += each.m_nAmount;
        }
        EXPECT_EQ(account.m_nMargin, held) << "margins of positions, and what borrowed shares were sold for";
        EXPECT_EQ(account.m_nFrozen, frozenByOrders());
    }

    CMoney frozenByOrders() const {
        CMoney sum = 0;
        for (const CPaperOrder& order : m_broker->orders())
            sum += order.m_nFrozen;
        return sum;
    }

    /// Money, positions and debts, valued at the family's price.
    CMoney worth() const {
        CMoney sum = fundsOf(f).m_nCash;
        const CMoney lot = price * rowOf(f).m_nMultiplier;
        for (const CPaperPosition& each : m_broker->positions()) {
            if (each.m_strAccount != rowOf(f).m_pszAccount) continue;
            const CMoney rise = lot * each.m_nVolume - each.m_nCost;
            sum += each.m_nPaid + (each.m_eSide == EPositionSide::Long ? rise : -rise);
        }
        for (const CPaperDebt& each : m_broker->debts())
            sum -= each.m_strStock.empty() ? each.m_nAmount : lot * each.m_nVolume;
        return sum;
    }

    /// The account's gains from fills at other prices than the family's.
    CMoney gains() const {
        const std::vector<CPaperOrder> orders = m_broker->orders();
        CMoney sum = 0;
        for (const CPaperFill& each : m_broker->fills()) {
            const CPaperOrder& order = orders.at(static_cast<std::size_t>(each.m_nOrder - 1));
            const CMoney gain = (price - each.m_nPrice) * each.m_nVolume * rowOf(f).m_nMultiplier;
            sum += order.isBuy() ? gain : -gain;
        }
        return sum;
    }

    void closeAll() {
        for (const CPaperTask& task : m_broker->tasks())
            (void)m_broker->cancelTask(task.m_nId, "");
        startDay("20991231");
        offer(f, fromMoney(price));
        if (f == EFamily::Credit) returnAllDebts();
        if (longOf(f) != 0) atMarket(f, GetParam().m_nCloseLong, static_cast<int>(longOf(f)));
        if (shortOf(f) != 0) atMarket(f, GetParam().m_nCloseShort, static_cast<int>(shortOf(f)));
    }

    void returnAllDebts() {
        for (const CPaperDebt& debt : m_broker->debts()) {
            if (!debt.m_strStock.empty()) {
                atMarket(f, 22, static_cast<int>(debt.m_nVolume));
                continue;
            }
            TC::CCodeOrderParam code = recordOf(f, 25, 1, 1);
            code.m_nQuantityKind = TC::kQuantityKindPlain;
            code.m_dQuantity = fromMoney(debt.m_nAmount);
            orderOf(f, code);
        }
    }
};

} // namespace

TEST_P(PaperInvariants, MoneyInIsMoneyOutWhateverIsTraded) {
    const CMoney initial = worth();
    for (int i = 0; i < 400 && !HasFailure(); ++i) {
        step(i, [this] { offer(f, drawPrice(), draw(1, 12)); });
        EXPECT_EQ(worth(), initial + gains()) << "after step " << i;
    }
    EXPECT_GT(fills().size(), 20u);
}

TEST_P(PaperInvariants, AtOnePriceNobodyGainsOrLoses) {
    const CMoney initial = worth();
    for (int i = 0; i < 200 && !HasFailure(); ++i) {
        step(i, [this] { offer(f, fromMoney(price), draw(1, 12)); });
        EXPECT_EQ(worth(), initial) << "after step " << i;
        EXPECT_GE(fundsOf(f).available(), 0);
    }
    EXPECT_GT(fills().size(), 20u);
}

TEST_P(PaperInvariants, WhenAllIsClosedNothingIsHeld) {
    const CMoney initial = worth();
    for (int i = 0; i < 300; ++i)
        step(i, [this] { offer(f, drawPrice(), draw(1, 12)); });
    closeAll();
    checkNothingIsNegative();
    EXPECT_EQ(longOf(f), 0);
    EXPECT_EQ(shortOf(f), 0);
    EXPECT_EQ(frozen(f), 0);
    EXPECT_EQ(margin(f), 0);
    EXPECT_TRUE(m_broker->debts().empty());
    EXPECT_EQ(fundsOf(f).m_nCash, initial + gains());
    for (const EPositionSide side : {EPositionSide::Long, EPositionSide::Short}) {
        const CPaperPosition position = positionOf(f, side);
        EXPECT_EQ(position.m_nCost, 0);
        EXPECT_EQ(position.m_nPaid, 0);
        EXPECT_EQ(position.m_nMargin, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Families, PaperInvariants, testing::ValuesIn(kGames), [](const auto& testCase) {
    return "Family" + std::to_string(static_cast<int>(testCase.param.m_eFamily));
});
