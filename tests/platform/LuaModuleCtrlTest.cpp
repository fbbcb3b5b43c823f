#include "orderservice/platform/LuaModuleCtrl.h"

#include "tests/platform/EchoHost.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

using LuaModuleCtrl = echo::CEchoHost;

TEST_F(LuaModuleCtrl, SwitchesOfTheOrderModule) {
    host.switches.on = {"a_switch"};
    EXPECT_TRUE(luawrapper::isOrderSwitchOn("a_switch"));
    EXPECT_FALSE(luawrapper::isOrderSwitchOn("another"));
}

} // namespace
