#include "orderservice/records/OrderSetting.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

TEST(OrderSetting, EverySlotHasItsDefault) {
    using E = EDefaultSetting;
    const E expected[kSettingSlots] = {E::Stock,  E::Future, E::Future, E::Future, E::Future, E::Future,
                                       E::Basket, E::None,   E::Stock,  E::Option, E::Neeq,   E::HGT,
                                       E::Gold,   E::None,   E::None,   E::None};
    for (int slot = 0; slot < kSettingSlots; ++slot) {
        EXPECT_EQ(defaultForSlot(static_cast<ESettingSlot>(slot)), expected[slot]) << slot;
    }
}

TEST(OrderSetting, NewSettingAsksForTheLatestPrice) {
    const COrderSetting setting;
    EXPECT_EQ(setting.m_ePriceType, EPriceType::Latest);
    EXPECT_EQ(setting.m_eOrderType, EOrderType::Plain);
    EXPECT_EQ(setting.m_dFirstLimit, kUnsetDouble);
    EXPECT_EQ(setting.m_dSecondLimit, kUnsetDouble);
    EXPECT_FALSE(setting.m_bFirstLimitOn);
    EXPECT_FALSE(setting.m_bSecondLimitOn);
    EXPECT_EQ(setting.m_strCmdLog, "");
}

} // namespace
