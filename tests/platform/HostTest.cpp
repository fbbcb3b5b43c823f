#include "orderservice/platform/Host.h"

#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace TC;

/// The services of the fakes. The test installs them, not the fakes.
class Host : public testing::Test {
protected:
    Host() { releaseHost(); }
    ~Host() override { releaseHost(); }

    CHost all() { return fakes.services(); }

    CFakeHost fakes;
};

TEST_F(Host, IsInstalledAndReleased) {
    EXPECT_FALSE(isHostInstalled());
    const utils::KNError result = installHost(all());
    EXPECT_TRUE(result.isSuccess());
    EXPECT_EQ(result.errorMsg(), "");
    EXPECT_TRUE(isHostInstalled());
    releaseHost();
    EXPECT_FALSE(isHostInstalled());
}

TEST_F(Host, EveryServiceIsFoundThroughItsInstance) {
    ASSERT_TRUE(installHost(all()).isSuccess());
    EXPECT_EQ(&CUserManager::instance(), &fakes.user);
    EXPECT_EQ(&COrderClient::instance(), &fakes.orders);
    EXPECT_EQ(&CTradeClient::instance(), &fakes.trade);
    EXPECT_EQ(&CQuoteClient::instance(), &fakes.quotes);
    EXPECT_EQ(&CExchangeClient::instance(), &fakes.exchange);
    EXPECT_EQ(&CMsgService::instance(), &fakes.messages);
    EXPECT_EQ(&CTimeService::instance(), &fakes.time);
    EXPECT_EQ(&CTradingRules::instance(), &fakes.rules);
    EXPECT_EQ(&CAlgorithmTradeHelper::instance(), &fakes.algorithms);
    EXPECT_EQ(&CIntakeAudit::instance(), &fakes.audit);
    EXPECT_EQ(&knservice::CInstrumentTypes::instance(), &fakes.types);
    EXPECT_EQ(&knservice::TraderCenter::instance(), &fakes.tasks);
    EXPECT_EQ(&knservice::CTradeFrameworkSource::instance(), &fakes.framework);
    EXPECT_EQ(&luawrapper::LuaModuleCtrl::instance(), &fakes.switches);
}

struct CServiceRow {
    const char* name;
    std::function<void(CHost&)> remove;
    std::function<void()> use;
};

const CServiceRow kServices[] = {
    {"CUserManager", [](CHost& h) { h.userManager = nullptr; }, [] { CUserManager::instance(); }},
    {"COrderClient", [](CHost& h) { h.orderClient = nullptr; }, [] { COrderClient::instance(); }},
    {"CTradeClient", [](CHost& h) { h.tradeClient = nullptr; }, [] { CTradeClient::instance(); }},
    {"CQuoteClient", [](CHost& h) { h.quoteClient = nullptr; }, [] { CQuoteClient::instance(); }},
    {"CExchangeClient", [](CHost& h) { h.exchangeClient = nullptr; }, [] { CExchangeClient::instance(); }},
    {"CMsgService", [](CHost& h) { h.msgService = nullptr; }, [] { CMsgService::instance(); }},
    {"CTimeService", [](CHost& h) { h.timeService = nullptr; }, [] { CTimeService::instance(); }},
    {"CTradingRules", [](CHost& h) { h.tradingRules = nullptr; }, [] { CTradingRules::instance(); }},
    {"CAlgorithmTradeHelper", [](CHost& h) { h.algorithmTradeHelper = nullptr; },
     [] { CAlgorithmTradeHelper::instance(); }},
    {"CIntakeAudit", [](CHost& h) { h.intakeAudit = nullptr; }, [] { CIntakeAudit::instance(); }},
    {"CInstrumentTypes", [](CHost& h) { h.instrumentTypes = nullptr; },
     [] { knservice::CInstrumentTypes::instance(); }},
    {"TraderCenter", [](CHost& h) { h.traderCenter = nullptr; }, [] { knservice::TraderCenter::instance(); }},
    {"CTradeFrameworkSource", [](CHost& h) { h.tradeFrameworkSource = nullptr; },
     [] { knservice::CTradeFrameworkSource::instance(); }},
    {"LuaModuleCtrl", [](CHost& h) { h.luaModuleCtrl = nullptr; },
     [] { luawrapper::LuaModuleCtrl::instance(); }},
};

TEST_F(Host, EveryMissingServiceIsNamed) {
    for (const CServiceRow& row : kServices) {
        CHost host = all();
        row.remove(host);
        const utils::KNError result = installHost(host);
        EXPECT_FALSE(result.isSuccess()) << row.name;
        EXPECT_EQ(result.errorMsg(), std::string("installHost: missing service: ") + row.name);
        EXPECT_FALSE(isHostInstalled()) << row.name;
    }
}

TEST_F(Host, SeveralMissingServicesAreNamedTogether) {
    std::string names;
    for (const CServiceRow& row : kServices)
        names += (names.empty() ? "" : ", ") + std::string(row.name);
    EXPECT_EQ(installHost(CHost()).errorMsg(), "installHost: missing service: " + names);
}

TEST_F(Host, SecondHostIsRefusedAndTheFirstStays) {
    ASSERT_TRUE(installHost(all()).isSuccess());
    fake::CTime otherTime;
    CHost other = all();
    other.timeService = &otherTime;
    const utils::KNError result = installHost(other);
    EXPECT_FALSE(result.isSuccess());
    EXPECT_EQ(result.errorMsg(), "installHost: a host is installed already");
    EXPECT_TRUE(isHostInstalled());
    EXPECT_EQ(&CTimeService::instance(), &fakes.time);
}

TEST_F(Host, ReleaseWithoutAHostDoesNothing) {
    releaseHost();
    EXPECT_FALSE(isHostInstalled());
    EXPECT_TRUE(installHost(all()).isSuccess());
}

TEST_F(Host, AnotherHostMayFollowARelease) {
    ASSERT_TRUE(installHost(all()).isSuccess());
    releaseHost();
    fake::CTime otherTime;
    CHost other = all();
    other.timeService = &otherTime;
    ASSERT_TRUE(installHost(other).isSuccess());
    EXPECT_EQ(&CTimeService::instance(), &otherTime);
}

using HostDeathTest = Host;

TEST_F(HostDeathTest, UseWithoutAHostEndsTheProcessWithTheServicesName) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    for (const CServiceRow& row : kServices) {
        EXPECT_DEATH(row.use(),
                     std::string("order service: ") + row.name + " was used while no host is installed");
    }
}

TEST_F(HostDeathTest, UseAfterTheReleaseEndsTheProcess) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    ASSERT_TRUE(installHost(all()).isSuccess());
    releaseHost();
    EXPECT_DEATH(COrderClient::instance(), "order service: COrderClient was used while no host is installed");
}

} // namespace
