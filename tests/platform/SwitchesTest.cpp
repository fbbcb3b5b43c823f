#include "orderservice/platform/Switches.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

namespace {

using namespace TC;

TEST(Switches, PathIsTheModuleAndOneSwitch) {
    const std::vector<std::string> path{"mdl_order", "mdl_order_any"};
    ASSERT_NE(orderSwitchOf(path), nullptr);
    EXPECT_EQ(orderSwitchOf(path), &path[1]);
    EXPECT_EQ(orderSwitchOf({}), nullptr);
    EXPECT_EQ(orderSwitchOf({"mdl_order"}), nullptr);
    EXPECT_EQ(orderSwitchOf({"mdl_other", "mdl_order_any"}), nullptr);
    EXPECT_EQ(orderSwitchOf({"mdl_order", "mdl_order_any", "more"}), nullptr);
}

// A switch that is missing in the list could not be set in the desk's folder.
TEST(Switches, ListHasEverySwitchOfTheHeader) {
    std::ifstream file(ORDERSERVICE_SOURCE_DIR "/src/platform/Switches.h");
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const std::regex constant(R"rx(k\w+Switch = "(\w+)")rx");
    std::set<std::string> constants;
    for (std::sregex_iterator it(text.begin(), text.end(), constant), end; it != end; ++it)
        constants.insert((*it)[1]);
    EXPECT_EQ(constants.size(), 14u);
    EXPECT_EQ(constants, std::set<std::string>(std::begin(kOrderSwitches), std::end(kOrderSwitches)));
}

} // namespace
