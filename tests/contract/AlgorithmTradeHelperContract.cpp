#include "platform/AlgorithmTradeHelper.h"
#include "platform/TradingRules.h"

#include "contract/ContractFixture.h"
#include "contract/Suites.h"

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

TEST_P(AlgorithmTradeHelperContract, TextThatIsNotUnderstoodLeavesThePointer) {
    const auto own = boost::make_shared<CAlgorithmOrderSetting>();
    CAlgorithmOrderSettingPtr setting = own;
    EXPECT_FALSE(helper().getAlgOrderSettingFromString(world().unreadableAlgorithmText, setting));
    EXPECT_EQ(setting, own);
}

TEST_P(AlgorithmOrdersContract, TextThatIsUnderstoodMakesANewSetting) {
    ASSERT_FALSE(world().algorithmTexts.empty());
    for (const std::string& text : world().algorithmTexts) {
        const auto own = boost::make_shared<CAlgorithmOrderSetting>();
        CAlgorithmOrderSettingPtr first = own, second = own;
        ASSERT_TRUE(helper().getAlgOrderSettingFromString(text, first)) << text;
        ASSERT_TRUE(helper().getAlgOrderSettingFromString(text, second)) << text;
        ASSERT_NE(first, nullptr) << text;
        EXPECT_NE(first, own) << text;
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
