// The orders for which the check asks the user's configuration whether the price type is allowed.
#include "tests/check/CheckFixture.h"
#include "tests/check/FamilyChecks.h"

#include <algorithm>

namespace {

using namespace TC;
using families::CFamilyUnderTest;

/// The order numbers of a family whose check asks. The other numbers of the family do not ask.
struct CAskingNumbers {
    families::EFamily family;
    std::vector<int> numbers;
};

const std::vector<CAskingNumbers>& askingNumbers() {
    static const std::vector<CAskingNumbers> rows = {
        {families::EFamily::Stock, {23, 24, 86, 87, 88, 89, 90, 91, 92}},
        {families::EFamily::Credit, {23, 24, 27, 28}},
        {families::EFamily::StockOption, {48, 49, 50, 51, 52, 53, 54, 55, 56, 57}},
        {families::EFamily::SGT, {23, 24}},
        {families::EFamily::HGT, {23, 24}},
        {families::EFamily::Gold, {0, 1, 3, 4, 23, 24}},
        {families::EFamily::Future, {}},
        {families::EFamily::FutureOption, {}},
        {families::EFamily::Basket, {}},
        {families::EFamily::FutureBasket, {}},
        {families::EFamily::Neeq, {}},
    };
    return rows;
}

class PriceTypeCalls : public CheckFixture, public testing::WithParamInterface<CFamilyUnderTest> {
protected:
    PriceTypeCalls() {
        families::addInstrument(host, GetParam(), GetParam().code, 10.5);
        families::addGroup(host, GetParam());
        host.switches.on.insert("mdl_order_compose_basket_buy_sell");
    }
    /// How often the check of an order with this number asks. Option locks and the plain numbers of the
    /// share-transfer market need the code of a stock.
    std::size_t callsOf(int number, EPriceType priceType) {
        const bool isStock = isStockLockOrder(number) ||
                             (GetParam().family == families::EFamily::Neeq && number <= kOrderSell);
        const QString code = QString::fromLatin1(isStock ? "600000" : GetParam().code);
        const std::size_t before = host.user.priceTypeCalls.all().size();
        std::vector<CCodeOrderParam> codes;
        std::map<std::string, double> weights;
        GetParam().check(service, COrderBuilder(number).line(code, 10.5, 100),
                         families::strategyOf(GetParam(), priceType), codes, weights);
        return host.user.priceTypeCalls.all().size() - before;
    }
    std::vector<int> numbersThatAsk(EPriceType priceType) {
        std::vector<int> asking;
        for (int number = -1; number <= 130; ++number) {
            if (!findFamily(GetParam().family)->accepts(number)) continue;
            const std::size_t calls = callsOf(number, priceType);
            EXPECT_LE(calls, 1u) << number;
            if (calls > 0) asking.push_back(number);
        }
        return asking;
    }
};

TEST_P(PriceTypeCalls, OnlySomeNumbersOfTheFamilyAsk) {
    const auto& rows = askingNumbers();
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [](const CAskingNumbers& r) { return r.family == GetParam().family; });
    ASSERT_NE(row, rows.end());
    EXPECT_EQ(numbersThatAsk(EPriceType::Latest), row->numbers);
}

TEST_P(PriceTypeCalls, NoOrderAsksAtASpecifiedPrice) {
    EXPECT_EQ(numbersThatAsk(EPriceType::Specified), std::vector<int>());
}

INSTANTIATE_TEST_SUITE_P(Families, PriceTypeCalls, testing::ValuesIn(families::kFamilies),
                         [](const auto& test) { return std::string(test.param.name); });

/// Basket strategies accept the sale of all positions.
TEST_F(CheckFixture, SaleOfAllPositionsDoesNotAskForThePriceType) {
    const CFamilyUnderTest& basket = families::find(families::EFamily::Basket);
    families::addInstrument(host, basket, basket.code, 10.5);
    host.tasks.addPosition(host.user.accounts.at("A1"), "SH", "600000", 700);
    std::vector<CCodeOrderParam> codes;
    std::map<std::string, double> weights;
    EXPECT_TRUE(basket.check(service, COrderBuilder(26).set([](auto& o) { o.m_bAll = true; }),
                             families::strategyOf(basket, EPriceType::Latest), codes, weights));
    EXPECT_EQ(codes.size(), 1u);
    EXPECT_TRUE(host.user.priceTypeCalls.all().empty());
}

} // namespace
