#include "platform/AlgorithmTradeHelper.h"
#include "platform/TradingRules.h"

#include "tests/contract/ContractFixture.h"

#include <boost/make_shared.hpp>

namespace {

using namespace TC;

class AlgorithmTradeHelperContract : public CContractTest {
protected:
    CAlgorithmTradeHelper& helper() const { return CAlgorithmTradeHelper::instance(); }
};
CONTRACT_SUITE(AlgorithmTradeHelperContract);

TEST_P(AlgorithmTradeHelperContract, TextThatIsNotUnderstoodLeavesThePointer) {
    const auto own = boost::make_shared<CAlgorithmOrderSetting>();
    CAlgorithmOrderSettingPtr setting = own;
    EXPECT_FALSE(helper().getAlgOrderSettingFromString(world().unreadableAlgorithmText, setting));
    EXPECT_EQ(setting, own);
}

TEST_P(AlgorithmTradeHelperContract, TextThatIsUnderstoodMakesANewSetting) {
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

TEST_P(AlgorithmTradeHelperContract, HostWithoutAlgorithmTextsHasNoAlgorithmOrders) {
    constexpr int kHighestOrderType = 200;
    int algorithms = 0;
    for (int type = 0; type <= kHighestOrderType; ++type) {
        if (knservice::DataHelper::isAlgoOrderType(static_cast<EOrderType>(type))) ++algorithms;
    }
    EXPECT_TRUE(algorithms == 0 || !world().algorithmTexts.empty());
}

TEST_P(AlgorithmTradeHelperContract, ParameterTextNeedsNeitherSettingNorCodes) {
    EXPECT_NO_THROW(helper().getAlgParamsStr(EOrderType::Plain, {}, {}));
    onAnotherThread(
        [&] { EXPECT_NO_THROW(helper().getAlgParamsStr(EOrderType::Plain, {}, {CCodeOrderParam()})); });
}

} // namespace
