#include "orderservice/platform/AlgorithmTradeHelper.h"
#include "orderservice/platform/TradingRules.h"

#include "orderservice/contract/ContractFixture.h"
#include "orderservice/contract/Suites.h"

#include <boost/make_shared.hpp>

void contract::linkAlgorithmSuites() {}

namespace {

using namespace TC;
using contract::EHostTrait;

class AlgorithmTradeHelperContract : public contract::CContractTest {
protected:
    CAlgorithmTradeHelper& helper() const { return CAlgorithmTradeHelper::instance(); }
};
CONTRACT_SUITE(AlgorithmTradeHelperContract);

class AlgorithmOrdersContract : public AlgorithmTradeHelperContract {};
CONTRACT_SUITE_WITH(AlgorithmOrdersContract, EHostTrait::Algorithms);

class NoAlgorithmOrdersContract : public AlgorithmTradeHelperContract {};
CONTRACT_SUITE_WITHOUT(NoAlgorithmOrdersContract, EHostTrait::Algorithms);

TEST_P(AlgorithmTradeHelperContract, TextThatIsNotUnderstoodIsRefused) {
    auto setting = boost::make_shared<CAlgorithmOrderSetting>();
    EXPECT_FALSE(helper().getAlgOrderSettingFromString(world().unreadableAlgorithmText, setting));
}

// A host may fill the setting that it receives, or replace it with its own.
TEST_P(AlgorithmOrdersContract, EachUnderstoodTextGivesANewSetting) {
    ASSERT_FALSE(world().algorithmTexts.empty());
    for (const std::string& text : world().algorithmTexts) {
        auto first = boost::make_shared<CAlgorithmOrderSetting>();
        auto second = boost::make_shared<CAlgorithmOrderSetting>();
        ASSERT_TRUE(helper().getAlgOrderSettingFromString(text, first)) << text;
        ASSERT_TRUE(helper().getAlgOrderSettingFromString(text, second)) << text;
        ASSERT_NE(first, nullptr) << text;
        ASSERT_NE(second, nullptr) << text;
        EXPECT_NE(first, second) << text;
    }
}

TEST_P(NoAlgorithmOrdersContract, NoOrderKindIsAnAlgorithm) {
    constexpr int kHighestOrderType = 200;
    for (int type = -1; type <= kHighestOrderType; ++type)
        EXPECT_FALSE(knservice::DataHelper::isAlgoOrderType(static_cast<EOrderType>(type))) << type;
}

TEST_P(AlgorithmTradeHelperContract, ParameterTextNeedsNeitherSettingNorCodes) {
    EXPECT_NO_THROW(helper().getAlgParamsStr(EOrderType::Plain, {}, {}));
    onAnotherThread(
        [&] { EXPECT_NO_THROW(helper().getAlgParamsStr(EOrderType::Plain, {}, {CCodeOrderParam()})); });
}

} // namespace
