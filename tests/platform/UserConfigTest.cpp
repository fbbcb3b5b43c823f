#include "orderservice/platform/UserConfig.h"

#include "orderservice/base/Text.h"
#include "tests/platform/EchoHost.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

using UserConfig = echo::CEchoHost;

TEST_F(UserConfig, UserConfigurationComesFromTheUserManager) {
    EXPECT_EQ(getUserConfig(), &host.user);
    host.user.loggedIn = false;
    EXPECT_EQ(getUserConfig(), nullptr);
}

TEST_F(UserConfig, BasketIsFoundByItsNameInUtf8AndInGbk) {
    // The GBK bytes of 医药 are also valid UTF-8 for another word.
    for (const QString& name : {QStringLiteral("医药"), QStringLiteral("蓝筹")}) {
        host.user.baskets.clear();
        host.user.baskets[name].m_rows.resize(2);
        EXPECT_EQ(findBasket(host.user, name.toStdString())->m_rows.size(), 2u);
        EXPECT_EQ(findBasket(host.user, utils::toLocal8Bit(name))->m_rows.size(), 2u);
        EXPECT_FALSE(findBasket(host.user, "蓝").has_value());
    }
}

TEST_F(UserConfig, AccountsAreThoseOfTheFamilysBrokerType) {
    COrderStrategyParam strategy;
    strategy.m_eTradeType = EOrderStrategyTradeType::Credit;
    strategy.m_eSelectedAccountType = ESelectedAccountType::Group;
    strategy.m_strSelectedAccount = QStringLiteral("G");
    EXPECT_FALSE(hasAnyAccount(host.user, strategy));
    host.user.addGroup(orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType::Credit), "G", {{"A1", 1}});
    EXPECT_TRUE(hasAnyAccount(host.user, strategy));
}

} // namespace
