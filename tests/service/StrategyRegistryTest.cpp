#include "gates/IntakePause.h"
#include "tests/service/ServiceFixture.h"

#include <thread>
#include <vector>

namespace {

using namespace TC;

class StrategyRegistry : public ServiceFixture {
protected:
    void SetUp() override {
        ServiceFixture::SetUp();
        QObject::connect(
            &service(), &COrderService::sigSetStatus, &service(),
            [this](bool running) { statuses.push_back(running); }, Qt::DirectConnection);
    }
    /// Binds the service; the strategies stay as they are.
    void load() {
        service().loadFromConfig(false);
        statuses.clear();
    }
    /// Changes the host's map while no user is bound, so that the file loop of an earlier load does not look
    /// at it meanwhile.
    template<typename Change>
    void changeMap(const Change& change) {
        host.user.loggedIn = false;
        load();
        change();
        host.user.loggedIn = true;
        load();
    }
    void add(const COrderStrategyParam& strategy) {
        changeMap([&] { host.user.addStrategy(strategy); });
    }
    CStrategyBuilder stoppedFile() {
        folder.write("a.txt", "old orders");
        return CStrategyBuilder().file(folder.path("a.txt")).code(QStringLiteral("SH600000")).stopped();
    }
    int start(int id = 3, bool showMsg = false) {
        error.clear();
        return service().startOrderStrategy(id, error, showMsg);
    }
    bool isRunning(int id = 3) { return service().getStrategyMap()[id].isRunning(); }

    QString error;
    std::vector<bool> statuses;
};

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
    load(); // the limit leaves the new one out, too
    EXPECT_EQ(service().removeOrderStrategy(1), 0);
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 1);
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 5);
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
    host.user.strategyMap = &host.user.strategies; // the first user comes back, without strategy 2
    load();                                        // the limit leaves strategy 3 out as well
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 4);
}

TEST_F(StrategyRegistry, NumberThatWasLeftOutIsFreeOnceItsStrategyIsRemoved) {
    for (const int channel : {1, 2})
        host.user.addStrategy(CStrategyBuilder().channel(channel).stopped());
    host.user.maxStrategies = 1;
    load();
    host.user.maxStrategies = 2;
    host.user.addStrategy(CStrategyBuilder().channel(2).stopped()); // the host brings it back
    load();
    EXPECT_EQ(service().removeOrderStrategy(2), 0);
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), 2);
}

TEST_F(StrategyRegistry, GuardOfTheHostRefusesAStartAndTheFileStays) {
    int strategies = 0;
    service().setStrategyGuard([&](const COrderStrategyParam& strategy, const COrderStrategyMap& all) {
        strategies = all.size();
        return strategy.m_nChannel == 3 ? QStringLiteral("not this one") : QString();
    });
    add(stoppedFile());
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("not this one"));
    EXPECT_FALSE(isRunning());
    EXPECT_EQ(folder.read("a.txt"), "old orders");
    EXPECT_EQ(strategies, 1);
    EXPECT_TRUE(host.messages.messages.empty());
}

TEST_F(StrategyRegistry, GuardOfTheHostThatThrowsRefusesAndIsNamed) {
    service().setStrategyGuard(
        [](const COrderStrategyParam&, const COrderStrategyMap&) -> QString { throw 7; });
    add(stoppedFile());
    EXPECT_EQ(start(), -1);
    EXPECT_TRUE(error.startsWith(QStringLiteral("setStrategyGuard: "))) << error.toStdString();
    EXPECT_EQ(folder.read("a.txt"), "old orders");
    EXPECT_EQ(service().updateOrderStrategy(3, service().getStrategyMap()[3]), -1);
    ASSERT_EQ(host.messages.messages.size(), 3u); // the failure of each call, and the refused change
    for (const fake::CMessage& message : host.messages.messages)
        EXPECT_TRUE(message.text.contains(QStringLiteral("setStrategyGuard")));
}

TEST_F(StrategyRegistry, GuardThatThrowsWhileStrategiesAreLoadedIsReported) {
    service().setStrategyGuard(
        [](const COrderStrategyParam&, const COrderStrategyMap&) -> QString { throw 7; });
    host.user.addStrategy(stoppedFile());
    host.user.strategies[3].m_nStatus = COrderStrategyParam::kRunning;
    load();
    EXPECT_FALSE(isRunning());
    ASSERT_EQ(host.messages.messages.size(), 1u);
    EXPECT_EQ(host.messages.messages[0].text,
              QStringLiteral("[接口单]　策略3: setStrategyGuard: an exception of an unknown type"));
}

TEST_F(StrategyRegistry, GuardMaySetAnotherGuard) {
    add(stoppedFile());
    const auto held = std::make_shared<QString>(QStringLiteral("the first guard"));
    service().setStrategyGuard([this, held](const COrderStrategyParam&, const COrderStrategyMap&) {
        service().setStrategyGuard({});
        return *held;
    });
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("the first guard"));
    EXPECT_EQ(start(), 0);
}

TEST_F(StrategyRegistry, GuardMayRemoveTheStrategyThatIsStarted) {
    add(stoppedFile());
    service().setStrategyGuard([this](const COrderStrategyParam& strategy, const COrderStrategyMap&) {
        service().removeOrderStrategy(strategy.m_nChannel);
        return QString();
    });
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("策略3不存在"));
    EXPECT_EQ(folder.read("a.txt"), "old orders");
}

TEST_F(StrategyRegistry, GuardMayRemoveTheStrategyThatIsChanged) {
    add(stoppedFile());
    service().setStrategyGuard([this](const COrderStrategyParam& strategy, const COrderStrategyMap&) {
        service().removeOrderStrategy(strategy.m_nChannel);
        return QString();
    });
    EXPECT_EQ(service().updateOrderStrategy(3, service().getStrategyMap()[3]), -1);
    EXPECT_TRUE(service().getStrategyMap().isEmpty());
}

TEST_F(StrategyRegistry, GuardOfTheHostRefusesAChangeWithAMessage) {
    add(stoppedFile());
    service().setStrategyGuard([](const COrderStrategyParam& strategy, const COrderStrategyMap&) {
        return strategy.m_strCode.startsWith(QStringLiteral("SH")) ? QString() : QStringLiteral("no market");
    });
    COrderStrategyParam changed = service().getStrategyMap()[3];
    changed.m_strCode = QStringLiteral("600000");
    EXPECT_EQ(service().updateOrderStrategy(3, changed), -1);
    EXPECT_EQ(service().getStrategyMap()[3].m_strCode, QStringLiteral("SH600000"));
    ASSERT_EQ(host.messages.messages.size(), 1u);
    EXPECT_EQ(host.messages.messages[0].text, QStringLiteral("[标题2]　策略3: 修改失败! no market"));
    changed.m_strCode = QStringLiteral("SH600001");
    EXPECT_EQ(service().updateOrderStrategy(3, changed), 0);
    EXPECT_EQ(start(), 0);
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

TEST_F(StrategyRegistry, UpdateGoesByTheRecordsChannel) {
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

TEST_F(StrategyRegistry, StartOfAnUnknownStrategyFails) {
    load();
    EXPECT_EQ(start(12), -1);
    EXPECT_EQ(error, QStringLiteral("策略12不存在"));
    EXPECT_TRUE(statuses.empty());
}

TEST_F(StrategyRegistry, StartNeedsTheNamedAccounts) {
    const std::vector<COrderStrategyParam> strategies{
        stoppedFile().group(QStringLiteral("none")), stoppedFile().group(QString()),
        stoppedFile().account(QStringLiteral("none")),
        stoppedFile().set([](auto& s) { s.m_eSelectedAccountType = static_cast<ESelectedAccountType>(7); })};
    for (const COrderStrategyParam& strategy : strategies) {
        changeMap([&] { host.user.strategies.clear(); });
        add(strategy);
        EXPECT_EQ(start(), -1);
        EXPECT_EQ(error, QStringLiteral("选择的账号组或账号不存在"));
        EXPECT_FALSE(isRunning());
        EXPECT_TRUE(folder.exists("a.txt"));
    }
}

TEST_F(StrategyRegistry, SingleAccountIsLookedUpAmongTheAccountsAlsoInTableMode) {
    host.user.simple.insert("S1");
    add(stoppedFile().account(QStringLiteral("S1")).tableMode());
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("选择的账号组或账号不存在"));
}

TEST_F(StrategyRegistry, BasketGroupMayBeOfCreditAccounts) {
    host.user.addAccount("C1", EQDBrokerType::Credit);
    host.user.addGroup(EQDBrokerType::Credit, "CG", {{"C1", 1.0}});
    add(stoppedFile().family(EOrderStrategyTradeType::Basket).group(QStringLiteral("CG")).code(QString()));
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(error, QStringLiteral("代码不能为空")); // a note only: baskets have no code
}

TEST_F(StrategyRegistry, StartNeedsLoggedInAccounts) {
    add(stoppedFile());
    host.trade.loginStatus["A2"] = 3;
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("选择的账号登录失败"));
    changeMap([&] { host.user.strategies.clear(); });
    add(stoppedFile().account(QStringLiteral("A2")));
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("选择的账号登录失败"));
    changeMap([&] { host.user.strategies.clear(); });
    add(stoppedFile().account(QStringLiteral("A1")));
    EXPECT_EQ(start(), 0);
}

TEST_F(StrategyRegistry, StartNeedsASource) {
    add(CStrategyBuilder().stopped().file(""));
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("信号来源为空"));
}

TEST_F(StrategyRegistry, FileMustExistAtTheStart) {
    add(CStrategyBuilder().stopped().file(folder.path("missing.txt")));
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("信号来源必须为文件"));
    changeMap([&] { host.user.strategies.clear(); });
    add(CStrategyBuilder().stopped().file(folder.path()));
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("信号来源必须为文件"));
}

TEST_F(StrategyRegistry, FileIsReportedBeforeItIsDeletedUnread) {
    add(stoppedFile());
    folder.write("a.txt", "23,0,10.5,600000,100\n24,0");
    bool wasThere = false;
    host.audit.onRecord = [&] { wasThere = folder.exists("a.txt"); };
    EXPECT_EQ(start(3), 0);
    EXPECT_FALSE(folder.exists("a.txt"));
    ASSERT_EQ(host.audit.discards.size(), 1u);
    EXPECT_TRUE(wasThere);
    EXPECT_EQ(host.audit.discards[0].m_nChannel, 3);
    EXPECT_EQ(host.audit.discards[0].m_strSource, QString::fromStdString(folder.path("a.txt")));
    EXPECT_EQ(host.audit.discards[0].m_nLines, 2);
    EXPECT_EQ(host.audit.discards[0].m_nBytes, 25);
}

TEST_F(StrategyRegistry, EmptyFileIsDeletedWithoutAReport) {
    add(stoppedFile());
    folder.write("a.txt", "");
    EXPECT_EQ(start(3), 0);
    EXPECT_FALSE(folder.exists("a.txt"));
    EXPECT_TRUE(host.audit.discards.empty());
}

TEST_F(StrategyRegistry, StartDropsTheFileThatWaitsUnread) {
    add(stoppedFile());
    EXPECT_EQ(start(3, true), 0);
    EXPECT_TRUE(isRunning());
    EXPECT_FALSE(folder.exists("a.txt"));
    EXPECT_TRUE(error.isEmpty());
    EXPECT_EQ(statuses, std::vector<bool>{true});
    ASSERT_EQ(host.messages.messages.size(), 1u);
    EXPECT_EQ(host.messages.messages[0].text, QStringLiteral("[标题2]　策略3: 启动成功!"));
    EXPECT_EQ(host.messages.messages[0].level, MsgLevel::Note);
}

TEST_F(StrategyRegistry, QuietStartShowsNoMessage) {
    add(stoppedFile());
    EXPECT_EQ(start(3, false), 0);
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(StrategyRegistry, EmptyCodeIsANoteOnly) {
    add(stoppedFile().code(QString()));
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(error, QStringLiteral("代码不能为空"));
    EXPECT_TRUE(isRunning());
}

TEST_F(StrategyRegistry, CodeOfAFamilyThatIsNotOnTheListDoesNotCount) {
    const struct {
        int family;
        bool isCounted;
    } cases[] = {{0, true}, {2, false}, {4, true},  {5, true},  {6, false},  {7, false}, {8, false},
                 {9, true}, {10, true}, {11, true}, {12, true}, {13, false}, {-1, false}};
    for (const auto& row : cases) {
        const auto family = static_cast<EOrderStrategyTradeType>(row.family);
        host.user.addGroup(orderStrategyTradeTypeToBrokerType(family), "G", {{"A1", 1.0}});
        add(stoppedFile().family(family));
        EXPECT_EQ(start(), 0) << row.family;
        EXPECT_EQ(error, row.isCounted ? QString() : QStringLiteral("代码不能为空")) << row.family;
    }
}

TEST_F(StrategyRegistry, EmptyCodeOfAFutureHasItsOwnNoteAndOfCreditNone) {
    host.user.addGroup(EQDBrokerType::Future, "G", {{"A1", 1.0}});
    add(stoppedFile().code(QString()).family(EOrderStrategyTradeType::Future));
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(error, QStringLiteral("合约代码为空"));
    host.user.addGroup(EQDBrokerType::Credit, "G", {{"A1", 1.0}});
    changeMap([&] { host.user.strategies.clear(); });
    add(stoppedFile().code(QString()).family(EOrderStrategyTradeType::Credit));
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(error, QString());
}

TEST_F(StrategyRegistry, SecondStartOnlyTellsTheStatus) {
    add(stoppedFile());
    ASSERT_EQ(start(), 0);
    statuses.clear();
    EXPECT_EQ(start(3, true), 0);
    EXPECT_EQ(statuses, std::vector<bool>{true});
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(StrategyRegistry, InterfaceStrategyNeedsNoFile) {
    add(stoppedFile().source(EOrderStrategyType::Interface));
    EXPECT_EQ(start(), 0);
    EXPECT_TRUE(folder.exists("a.txt"));
}

TEST_F(StrategyRegistry, OnlyFileStrategiesInsistOnAFile) {
    const CIntakePause pause; // the strategy reads the file as soon as it runs
    folder.write("a.txt", "old");
    add(stoppedFile().source(EOrderStrategyType::BatchPending));
    EXPECT_EQ(start(), 0);
    EXPECT_TRUE(folder.exists("a.txt"));
}

TEST_F(StrategyRegistry, SourcesThatAreNotBuiltAreRefused) {
    add(stoppedFile().account(QStringLiteral("A1")).tableMode());
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("此版本尚不支持DBF委托表"));
    changeMap([&] { host.user.strategies.clear(); });
    host.user.encryption = true;
    add(stoppedFile());
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("此版本尚不支持加密的文件单"));
    EXPECT_TRUE(folder.exists("a.txt"));
    EXPECT_TRUE(statuses.empty());
}

TEST_F(StrategyRegistry, StopAnnouncesItself) {
    add(stoppedFile());
    ASSERT_EQ(start(), 0);
    service().getStrategy(3)->m_nStartCount = 5;
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

TEST_F(StrategyRegistry, RunningStrategyWhoseAccountWentStaysAsItIs) {
    add(stoppedFile());
    ASSERT_EQ(start(), 0);
    folder.write("b.txt", "");
    host.trade.loginStatus["A2"] = 3;
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("选择的账号登录失败"));
    EXPECT_TRUE(isRunning());
}

TEST_F(StrategyRegistry, FileThatCannotBeDroppedKeepsTheStrategyStopped) {
    // A regular file that nobody can delete.
    add(CStrategyBuilder().file("/proc/self/status").stopped());
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("信号来源文件无法删除"));
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
    EXPECT_FALSE(service().copyStrategy(3).has_value());
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
            EXPECT_TRUE(service().copyStrategy(1).has_value());
            EXPECT_NE(service().getOrderService(), nullptr);
        });
        other.join();
    });
}

TEST_F(StrategyRegistry, StoppedStrategyLeavesItsFileAlone) {
    add(stoppedFile());
    addFileStrategy(4);
    ASSERT_EQ(service().startOrderStrategy(4, error, false), 0);
    drop(4, ""); // a pass has gone over both by now
    EXPECT_TRUE(folder.exists("a.txt"));
}

} // namespace
