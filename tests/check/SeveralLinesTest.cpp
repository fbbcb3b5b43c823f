// Orders with several lines: only baskets accept them. Files and sockets cannot create such orders for other
// families, so the tests call the checks directly.
#include "tests/check/CheckFixture.h"
#include "tests/check/FamilyChecks.h"

namespace {

using namespace TC;

struct CRefusal {
    EOrderStrategyTradeType family;
    const char* text;
};

void PrintTo(const CRefusal& refusal, std::ostream* out) {
    *out << families::find(refusal.family).name;
}

class SeveralLines : public CheckFixture, public testing::WithParamInterface<CRefusal> {
protected:
    SeveralLines() {
        families::addGroup(host, tested());
        families::addInstrument(host, tested(), tested().code, 10.5);
    }
    const families::CFamilyUnderTest& tested() const { return families::find(GetParam().family); }
    bool check(int number, int lines) {
        COrderBuilder order(number);
        for (int i = 0; i < lines; ++i)
            order.line(QString::fromLatin1(tested().code), 10.5, 100);
        codes.clear();
        return tested().check(service, order, families::strategyOf(tested(), EPriceType::Specified), codes,
                              weights);
    }

    std::vector<CCodeOrderParam> codes;
    std::map<std::string, double> weights;
};

class SingleInstrument : public SeveralLines {};

TEST_P(SingleInstrument, SeveralLinesAreRefusedUnderEveryNumberOfTheFamily) {
    const CFamily* family = findFamily(GetParam().family);
    for (int number = 0; number <= 130; ++number) {
        if (!family->accepts(number)) continue;
        host.orders.errors.clear();
        EXPECT_FALSE(check(number, 2)) << number;
        EXPECT_EQ(onlyError().toStdString(), GetParam().text) << number;
        EXPECT_EQ(host.orders.errors.front().title, QStringLiteral("参数错误"));
    }
    EXPECT_TRUE(codes.empty());
    EXPECT_TRUE(host.user.accountsCalls.all().empty()) << "nothing is looked up for such an order";
}

TEST_P(SingleInstrument, OneLineIsTaken) {
    EXPECT_TRUE(check(tested().number, 1)) << host.errorTexts().size();
    EXPECT_TRUE(host.errorTexts().empty());
}

constexpr char kLines[] = "[文件单]　通道号: 3, 下单参数不合法!";
constexpr char kNumber[] = "[文件单]　通道号: 3, 下单指令不合法!";

std::string familyName(const testing::TestParamInfo<CRefusal>& info) {
    return families::find(info.param.family).name;
}

INSTANTIATE_TEST_SUITE_P(Families, SingleInstrument,
                         testing::Values(CRefusal{EOrderStrategyTradeType::Stock, kLines},
                                         CRefusal{EOrderStrategyTradeType::Future, kLines},
                                         CRefusal{EOrderStrategyTradeType::Credit, kNumber},
                                         CRefusal{EOrderStrategyTradeType::StockOption, kLines},
                                         CRefusal{EOrderStrategyTradeType::FutureOption, kLines},
                                         CRefusal{EOrderStrategyTradeType::SGT, kLines},
                                         CRefusal{EOrderStrategyTradeType::HGT, kLines},
                                         CRefusal{EOrderStrategyTradeType::Neeq, kLines},
                                         CRefusal{EOrderStrategyTradeType::Gold, kLines}),
                         familyName);

class Baskets : public SeveralLines {};

TEST_P(Baskets, SeveralLinesAreTheRows) {
    ASSERT_TRUE(check(25, 2));
    EXPECT_TRUE(host.errorTexts().empty());
    EXPECT_EQ(codes.size(), 4u) << "two rows on two accounts";
}

TEST_P(Baskets, NoLineAtAllIsRefusedButForSelling) {
    EXPECT_FALSE(check(25, 0));
    EXPECT_EQ(onlyError().toStdString(), GetParam().text);
    host.orders.errors.clear();
    EXPECT_TRUE(check(26, 0));
    EXPECT_TRUE(host.errorTexts().empty());
}

INSTANTIATE_TEST_SUITE_P(Families, Baskets,
                         testing::Values(CRefusal{EOrderStrategyTradeType::Basket, kNumber},
                                         CRefusal{EOrderStrategyTradeType::FutureBasket, kNumber}),
                         familyName);

} // namespace
