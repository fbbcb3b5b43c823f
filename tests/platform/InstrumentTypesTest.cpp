#include "orderservice/platform/InstrumentTypes.h"

#include "tests/platform/EchoHost.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

using InstrumentTypes = echo::CEchoHost;

TEST_F(InstrumentTypes, TypesOfAnInstrument) {
    types.types = {{knservice::kTypeStarMarket, "SH688001"}};
    EXPECT_TRUE(knservice::StockTypeCenter::isTypedStock(knservice::kTypeStarMarket, "SH", "688001"));
    EXPECT_FALSE(knservice::StockTypeCenter::isTypedStock(knservice::kTypeParPriced, "SH", "688001"));
    EXPECT_TRUE(knservice::isTypedStock(knservice::kTypeStarMarket, "SH", "688001", ""));
    EXPECT_FALSE(knservice::isTypedStock(knservice::kTypeStarMarket, "SZ", "688001", ""));
}

TEST_F(InstrumentTypes, Units) {
    EXPECT_EQ(knservice::getTradeMinUnit("SH", "600000", EOperationType::Sell), 200);
    EXPECT_EQ(types.asked, "SH 600000 19");
    EXPECT_EQ(knservice::getUiMinUnit("SZ", "000001", true), 10);
    EXPECT_EQ(types.asked, "SZ 000001 trade");
    EXPECT_EQ(knservice::getUiMinUnit("SZ", "000001", false), 10);
    EXPECT_EQ(types.asked, "SZ 000001 show");
}

} // namespace
