// The kind of an order whose setting text names a kind, in every family whose check makes records.
#include "tests/check/CheckFixture.h"
#include "tests/check/FamilyChecks.h"

namespace {

using namespace TC;

struct CKindCase {
    const char* name;
    EOrderStrategyTradeType family;
    int number;
};

void PrintTo(const CKindCase& kind, std::ostream* out) {
    *out << kind.name;
}

class SettingKind : public CheckFixture, public testing::WithParamInterface<CKindCase> {
protected:
    SettingKind() {
        families::addGroup(host, tested());
        families::addInstrument(host, tested(), tested().code, 10.5);
    }
    const families::CFamilyUnderTest& tested() const { return families::find(GetParam().family); }

    std::vector<CCodeOrderParam> codes;
    std::map<std::string, double> weights;
};

TEST_P(SettingKind, OfTheTextOutdoesTheOrdersAndTheStrategys) {
    const COrderParam order = COrderBuilder(GetParam().number)
                                  .line(QString::fromLatin1(tested().code), 10.5, 100)
                                  .set([](COrderParam& o) {
                                      o.m_strOrderSetting = "kind=9";
                                      o.m_eOrderType = static_cast<EOrderType>(4);
                                  });
    const auto strategy =
        families::strategyOf(tested(), EPriceType::Specified).volume(1).set([&](COrderStrategyParam& s) {
            s.setting(findFamily(tested().family)->m_eSlot).m_eOrderType = static_cast<EOrderType>(5);
        });
    ASSERT_TRUE(tested().check(service, order, strategy, codes, weights));
    ASSERT_EQ(codes.size(), 2u);
    for (const CCodeOrderParam& code : codes)
        EXPECT_EQ(static_cast<int>(code.m_eOrderType), 9);
}

constexpr CKindCase kCases[] = {
    {"Stock", EOrderStrategyTradeType::Stock, 23},
    {"Future", EOrderStrategyTradeType::Future, 0},
    {"Basket", EOrderStrategyTradeType::Basket, 25},
    {"CreditTrade", EOrderStrategyTradeType::Credit, 27},
    {"CreditRepayment", EOrderStrategyTradeType::Credit, 29},
    {"Option", EOrderStrategyTradeType::StockOption, 48},
    {"FutureOption", EOrderStrategyTradeType::FutureOption, 0},
    {"Sgt", EOrderStrategyTradeType::SGT, 23},
    {"Hgt", EOrderStrategyTradeType::HGT, 23},
    {"Gold", EOrderStrategyTradeType::Gold, 0},
};

INSTANTIATE_TEST_SUITE_P(Families, SettingKind, testing::ValuesIn(kCases),
                         [](const auto& family) { return family.param.name; });

} // namespace
