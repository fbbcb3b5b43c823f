#include "orderservice/records/StrategyParam.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

TEST(StrategyParam, NewStrategyIsStoppedAndTradesOne) {
    const COrderStrategyParam strategy;
    EXPECT_EQ(strategy.m_nStatus, 1);
    EXPECT_FALSE(strategy.isRunning());
    EXPECT_EQ(strategy.m_nChannel, 0x7fffffff);
    EXPECT_EQ(strategy.m_eSelectedAccountType, ESelectedAccountType::Group);
    EXPECT_EQ(strategy.m_eTradeType, EOrderStrategyTradeType::Stock);
    EXPECT_EQ(static_cast<int>(strategy.m_ePositionType), 0);
    EXPECT_EQ(strategy.m_eStrategyType, EOrderStrategyType::File);
    EXPECT_EQ(strategy.m_nAccountMode, 0);
    EXPECT_EQ(strategy.m_nVolume, 1);
    EXPECT_EQ(strategy.m_nFurther1, 1);
    EXPECT_EQ(strategy.m_nFurther2, 1);
    EXPECT_FALSE(strategy.m_bUseAmount);
    EXPECT_EQ(strategy.m_dAmount, kUnsetDouble);
    EXPECT_FALSE(strategy.m_bByPercent);
    EXPECT_EQ(strategy.m_dPercent, kUnsetDouble);
    EXPECT_EQ(strategy.m_nStartCount, 0);
    EXPECT_FALSE(strategy.m_bHedgeBasket);
    EXPECT_FALSE(strategy.m_bCommandFlag);
    EXPECT_EQ(static_cast<int>(strategy.m_eOrderType), -1);
    EXPECT_EQ(strategy.m_algoSetting, nullptr);
    EXPECT_TRUE(strategy.m_hedgeParam.isEmpty());
}

TEST(StrategyParam, NewStrategyHasNoTexts) {
    const COrderStrategyParam strategy;
    for (const QString* text :
         {&strategy.m_strName, &strategy.m_strSelectedAccount, &strategy.m_strSignalSource,
          &strategy.m_strUser, &strategy.m_strPass, &strategy.m_strCode}) {
        EXPECT_TRUE(text->isEmpty());
    }
}

TEST(StrategyParam, RunsAtStatusZeroOnly) {
    COrderStrategyParam strategy;
    strategy.m_nStatus = COrderStrategyParam::kRunning;
    EXPECT_EQ(strategy.m_nStatus, 0);
    EXPECT_TRUE(strategy.isRunning());
    for (const int status : {1, 2, -1}) {
        strategy.m_nStatus = status;
        EXPECT_FALSE(strategy.isRunning()) << status;
    }
    EXPECT_EQ(COrderStrategyParam::kTableMode, 1);
}

TEST(StrategyParam, EverySlotIsASettingOfItsOwn) {
    COrderStrategyParam strategy;
    for (int slot = 0; slot < kSettingSlots; ++slot) {
        strategy.setting(static_cast<ESettingSlot>(slot)).m_strCmdLog = std::to_string(slot);
    }
    const COrderStrategyParam& read = strategy;
    EXPECT_EQ(read.m_stockSetting.m_strCmdLog, "0");
    for (int slot = 0; slot < kSettingSlots; ++slot) {
        EXPECT_EQ(read.setting(static_cast<ESettingSlot>(slot)).m_strCmdLog, std::to_string(slot));
    }
}

TEST(StrategyParam, NewStrategyHasDefaultSettings) {
    const COrderStrategyParam strategy;
    for (int slot = 0; slot < kSettingSlots; ++slot) {
        const COrderSetting& setting = strategy.setting(static_cast<ESettingSlot>(slot));
        EXPECT_EQ(setting.m_ePriceType, EPriceType::Latest);
        EXPECT_EQ(setting.m_strCmdLog, "");
    }
}

TEST(StrategyParam, AChangedSettingDoesNotReachCopies) {
    COrderStrategyParam strategy;
    strategy.setting(ESettingSlot::Gold).m_strCmdLog = "first";
    const COrderStrategyParam copy = strategy;
    strategy.setting(ESettingSlot::Gold).m_strCmdLog = "second";
    EXPECT_EQ(copy.setting(ESettingSlot::Gold).m_strCmdLog, "first");
    EXPECT_EQ(COrderStrategyParam().setting(ESettingSlot::Gold).m_strCmdLog, "");
}

} // namespace
