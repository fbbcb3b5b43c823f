#include "tests/service/RegistryFixture.h"

#include <thread>
#include <vector>

namespace {

using namespace TC;

class StrategyRegistry : public CRegistryFixture {};

TEST_F(StrategyRegistry, IdsFillTheFirstGap) {
    const std::vector<std::pair<std::vector<int>, int>> cases{
        {{}, 1}, {{1, 2, 4}, 3}, {{1, 2, 3}, 4}, {{10000, 10001}, 1}, {{2}, 1}, {{-1, 0}, 1}, {{0, 1}, 2}};
    for (const auto& [keys, expected] : cases) {
        changeMap([&, &keys = keys] {
            host.user.strategies.clear();
            for (const int key : keys)
                host.user.addStrategy(CStrategyBuilder().channel(key).stopped());
        });
        EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), expected);
    }
}

TEST_F(StrategyRegistry, NumberOfAStrategyThatTheLimitLeftOutIsNotGiven) {
    for (const int channel : {1, 2, 3})
        host.user.addStrategy(CStrategyBuilder().channel(channel).stopped());
    host.user.maxStrategies = 2;
    load();
    ASSERT_EQ(service().getStrategyMap().keys(), (QList<int>{1, 2}));
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 4);
    load(); // the limit leaves out the new strategy too
    EXPECT_EQ(service().removeOrderStrategy(1), 0);
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 1);
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 5);
}

TEST_F(StrategyRegistry, StrategiesThatTheLimitLeavesOutGoToTheAuditOnce) {
    for (const int channel : {1, 2, 3})
        host.user.addStrategy(CStrategyBuilder().channel(channel).stopped());
    host.user.maxStrategies = 1;
    load();
    load();
    ASSERT_EQ(host.audit.incidents.size(), 2u);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(host.audit.incidents[i].m_eIncident, EIncident::StrategyNotLoaded);
        EXPECT_EQ(host.audit.incidents[i].m_nChannel, i + 2);
        EXPECT_EQ(host.audit.incidents[i].m_strCause, QStringLiteral("over the limit of strategies"));
    }
    EXPECT_TRUE(host.messages.messages.empty());
}

TEST_F(StrategyRegistry, NumbersLeftOutAreKeptForTheirUserAlone) {
    for (const int channel : {1, 2})
        host.user.addStrategy(CStrategyBuilder().channel(channel).stopped());
    host.user.maxStrategies = 1;
    load();
    host.user.loggedIn = false;
    load();
    host.user.loggedIn = true;
    load();
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 3);
    COrderStrategyMap others;
    host.user.strategyMap = &others;
    load();
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 1);
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 2);
    host.user.strategyMap = &host.user.strategies; // the first user is back, without strategy 2
    load();                                        // the limit leaves out strategy 3 too
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 4);
}

TEST_F(StrategyRegistry, NumberThatWasLeftOutIsFreeOnceItsStrategyIsRemoved) {
    for (const int channel : {1, 2})
        host.user.addStrategy(CStrategyBuilder().channel(channel).stopped());
    host.user.maxStrategies = 1;
    load();
    host.user.maxStrategies = 2;
    host.user.addStrategy(CStrategyBuilder().channel(2).stopped()); // the host adds it again
    load();
    EXPECT_EQ(service().removeOrderStrategy(2), 0);
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 2);
}

TEST_F(StrategyRegistry, NewStrategyHasItsNameSourceAndVolumes) {
    load();
    const int id = service().addOrderStrategy(EOrderStrategyType::Signal);
    const COrderStrategyParam* strategy = service().getStrategyConst(id);
    ASSERT_NE(strategy, nullptr);
    EXPECT_EQ(strategy->m_nChannel, id);
    EXPECT_EQ(strategy->m_strName, QStringLiteral("策略1"));
    EXPECT_EQ(strategy->m_eStrategyType, EOrderStrategyType::Signal);
    EXPECT_EQ(strategy->m_nVolume, 1);
    EXPECT_EQ(strategy->m_nFurther1, 1);
    EXPECT_EQ(strategy->m_nFurther2, 1);
    EXPECT_FALSE(strategy->isRunning());
}

TEST_F(StrategyRegistry, NewStrategyCopiesTheUsersDefaultsSlotBySlot) {
    using D = EDefaultSetting;
    const D kinds[] = {D::Stock, D::Future, D::Basket, D::Option, D::Neeq, D::HGT, D::Gold};
    for (const D kind : kinds)
        host.user.defaults[kind].m_strCmdLog = std::to_string(static_cast<int>(kind));
    load();
    const COrderStrategyParam* strategy =
        service().getStrategy(service().addOrderStrategy(EOrderStrategyType::File));
    const D expected[] = {D::Stock,  D::Future, D::Future, D::Future, D::Future, D::Future,
                          D::Basket, D::None,   D::Stock,  D::Option, D::Neeq,   D::HGT,
                          D::Gold,   D::None,   D::None,   D::None};
    for (int slot = 0; slot < 16; ++slot) {
        const std::string text =
            expected[slot] == D::None ? "" : std::to_string(static_cast<int>(expected[slot]));
        EXPECT_EQ(strategy->setting(static_cast<ESettingSlot>(slot)).m_strCmdLog, text) << slot;
    }
}

TEST_F(StrategyRegistry, UpdateUsesTheRecordsChannel) {
    add(CStrategyBuilder().stopped().set([](auto& s) { s.m_nStartCount = 4; }));
    COrderStrategyParam changed =
        CStrategyBuilder().stopped().volume(77).set([](auto& s) { s.m_nStartCount = 9; });
    EXPECT_EQ(service().updateOrderStrategy(555, changed), 0);
    EXPECT_EQ(service().getStrategyMap()[3].m_nVolume, 77);
    EXPECT_EQ(service().getStrategyMap()[3].m_nStartCount, 0);
    changed.m_nChannel = 9;
    EXPECT_EQ(service().updateOrderStrategy(3, changed), -1);
    EXPECT_EQ(service().getStrategyMap().size(), 1);
}

TEST_F(StrategyRegistry, RunningStrategyIsNotUpdated) {
    add(stoppedFile());
    ASSERT_EQ(start(), 0);
    EXPECT_EQ(service().updateOrderStrategy(3, CStrategyBuilder().stopped().volume(77)), -1);
    EXPECT_EQ(service().getStrategyMap()[3].m_nVolume, 1000);
}

TEST_F(StrategyRegistry, RemoveTakesRunningStrategiesToo) {
    add(stoppedFile());
    ASSERT_EQ(start(), 0);
    EXPECT_EQ(service().removeOrderStrategy(3), 0);
    EXPECT_EQ(service().removeOrderStrategy(3), -1);
    EXPECT_EQ(service().getStrategy(3), nullptr);
    EXPECT_EQ(service().getStrategyConst(3), nullptr);
}

TEST_F(StrategyRegistry, MapIsACopyThatLeavesThePointersGivenOutAlone) {
    add(CStrategyBuilder().stopped());
    const COrderStrategyParam* before = service().getStrategyConst(3);
    {
        auto copy = service().getStrategyMap();
        service().updateOrderStrategy(3, CStrategyBuilder().stopped().volume(5));
        EXPECT_EQ(copy[3].m_nVolume, 1000);
    }
    EXPECT_EQ(service().getStrategyConst(3), before);
    EXPECT_EQ(before->m_nVolume, 5);
}

TEST_F(StrategyRegistry, StopAnnouncesItself) {
    add(stoppedFile());
    ASSERT_EQ(start(), 0);
    writeWhileLocked([this] { service().getStrategy(3)->m_nStartCount = 5; });
    statuses.clear();
    EXPECT_EQ(service().stopOrderStrategy(3, error), 0);
    EXPECT_FALSE(isRunning());
    EXPECT_EQ(service().getStrategyMap()[3].m_nStartCount, 0);
    EXPECT_EQ(statuses, std::vector<bool>{false});
    EXPECT_EQ(host.messageTexts(), std::vector<QString>{QStringLiteral("[标题2]　策略3: 停止运行!")});
}

TEST_F(StrategyRegistry, StopOfAStoppedOrUnknownStrategyOnlyTellsTheStatus) {
    add(stoppedFile());
    EXPECT_EQ(service().stopOrderStrategy(3, error), 0);
    EXPECT_EQ(service().stopOrderStrategy(99, error), 0);
    EXPECT_EQ(statuses, (std::vector<bool>{false, false}));
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(StrategyRegistry, StopTellsWhetherOthersStillRun) {
    addFileStrategy(4);
    add(stoppedFile());
    ASSERT_EQ(start(), 0);
    statuses.clear();
    EXPECT_EQ(service().stopOrderStrategy(3, error), 0);
    EXPECT_EQ(service().stopOrderStrategy(99, error), 0);
    EXPECT_EQ(service().stopOrderStrategy(4, error), 0);
    EXPECT_EQ(statuses, (std::vector<bool>{true, true, false}));
}

TEST_F(StrategyRegistry, UpdateNeverStartsAStrategy) {
    add(stoppedFile());
    ASSERT_EQ(start(), 0);
    const COrderStrategyParam running = service().getStrategyMap()[3];
    ASSERT_EQ(service().stopOrderStrategy(3, error), 0);
    EXPECT_EQ(service().updateOrderStrategy(3, running), 0);
    EXPECT_FALSE(isRunning());
}

TEST_F(StrategyRegistry, ListenerOfTheStatusMayRemoveTheStrategy) {
    add(stoppedFile());
    QObject::connect(
        &service(), &COrderService::sigSetStatus, &service(),
        [this](bool) { service().removeOrderStrategy(3); }, Qt::DirectConnection);
    EXPECT_EQ(start(3, true), 0);
    EXPECT_TRUE(service().getStrategyMap().isEmpty());
    EXPECT_EQ(host.messageTexts(), std::vector<QString>{QStringLiteral("[标题2]　策略3: 启动成功!")});
}

TEST_F(StrategyRegistry, LogOutWithARunningStrategyTellsTheStatus) {
    add(stoppedFile());
    ASSERT_EQ(start(), 0);
    statuses.clear();
    host.user.loggedIn = false;
    service().loadFromConfig(false);
    EXPECT_EQ(statuses, std::vector<bool>{false});
    service().loadFromConfig(false);
    EXPECT_EQ(statuses, std::vector<bool>{false});
}

TEST_F(StrategyRegistry, OperationsWithoutAUserFail) {
    host.user.loggedIn = false;
    load();
    EXPECT_EQ(service().updateOrderStrategy(3, COrderStrategyParam()), -1);
    EXPECT_EQ(service().removeOrderStrategy(3), -1);
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(service().stopOrderStrategy(3, error), 0);
    EXPECT_EQ(service().getStrategy(3), nullptr);
    EXPECT_EQ(service().strategyOf(3), nullptr);
    service().visitStrategies([](int, const COrderStrategyParam&) { FAIL(); });
}

TEST_F(StrategyRegistry, VisitorMayRemoveStrategies) {
    addFileStrategy(1);
    addFileStrategy(2);
    load();
    std::vector<int> seen;
    service().visitStrategies([&](int channel, const COrderStrategyParam&) {
        seen.push_back(channel);
        service().removeOrderStrategy(2);
    });
    EXPECT_EQ(seen, std::vector<int>{1});
}

TEST_F(StrategyRegistry, CopiesAreGivenWhileAPassHoldsTheRegistry) {
    addFileStrategy(1);
    load();
    service().visitStrategies([&](int, const COrderStrategyParam&) {
        std::thread other([this] {
            EXPECT_NE(service().strategyOf(1), nullptr);
            EXPECT_NE(service().getOrderService(), nullptr);
        });
        other.join();
    });
}

TEST_F(StrategyRegistry, StoppedStrategyLeavesItsFileAlone) {
    add(stoppedFile());
    addFileStrategy(4);
    ASSERT_EQ(service().startOrderStrategy(4, error, false), 0);
    drop(4, ""); // by now a pass has looked at both strategies
    EXPECT_TRUE(folder.exists("a.txt"));
}

} // namespace
