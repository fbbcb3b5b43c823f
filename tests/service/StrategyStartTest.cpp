#include "orderservice/gates/IntakePause.h"
#include "tests/service/RegistryFixture.h"

#include <vector>

namespace {

using namespace TC;

class StrategyStart : public CRegistryFixture {};

TEST_F(StrategyStart, GuardOfTheHostRefusesAStartAndTheFileStays) {
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

TEST_F(StrategyStart, GuardOfTheHostThatThrowsRefusesAndIsNamed) {
    service().setStrategyGuard(
        [](const COrderStrategyParam&, const COrderStrategyMap&) -> QString { throw 7; });
    add(stoppedFile());
    EXPECT_EQ(start(), -1);
    EXPECT_TRUE(error.startsWith(QStringLiteral("setStrategyGuard: "))) << error.toStdString();
    EXPECT_EQ(folder.read("a.txt"), "old orders");
    EXPECT_EQ(service().updateOrderStrategy(3, service().getStrategyMap()[3]), -1);
    ASSERT_EQ(host.messages.messages.size(), 3u); // one for each failed call, one for the refused change
    for (const fake::CMessage& message : host.messages.messages)
        EXPECT_TRUE(message.text.contains(QStringLiteral("setStrategyGuard")));
}

TEST_F(StrategyStart, GuardThatThrowsWhileStrategiesAreLoadedIsReported) {
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

TEST_F(StrategyStart, StartThatFailsWhileStrategiesAreLoadedGoesToTheAudit) {
    host.user.addStrategy(CStrategyBuilder().channel(3).file(folder.path("none.txt")));
    host.user.addStrategy(CStrategyBuilder(stoppedFile()).channel(4));
    load();
    ASSERT_EQ(host.audit.incidents.size(), 1u);
    EXPECT_EQ(host.audit.incidents[0].m_eIncident, EIncident::StrategyNotStarted);
    EXPECT_EQ(host.audit.incidents[0].m_nChannel, 3);
    EXPECT_EQ(host.audit.incidents[0].m_strCause, QStringLiteral("信号来源必须为文件"));
    EXPECT_TRUE(host.messages.messages.empty());
    EXPECT_EQ(start(), -1); // a requested start reports to its caller only
    EXPECT_EQ(host.audit.incidents.size(), 1u);
}

TEST_F(StrategyStart, GuardMaySetAnotherGuard) {
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

TEST_F(StrategyStart, GuardMayRemoveTheStrategyThatIsStarted) {
    add(stoppedFile());
    service().setStrategyGuard([this](const COrderStrategyParam& strategy, const COrderStrategyMap&) {
        service().removeOrderStrategy(strategy.m_nChannel);
        return QString();
    });
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("策略3不存在"));
    EXPECT_EQ(folder.read("a.txt"), "old orders");
}

TEST_F(StrategyStart, GuardMayRemoveTheStrategyThatIsChanged) {
    add(stoppedFile());
    service().setStrategyGuard([this](const COrderStrategyParam& strategy, const COrderStrategyMap&) {
        service().removeOrderStrategy(strategy.m_nChannel);
        return QString();
    });
    EXPECT_EQ(service().updateOrderStrategy(3, service().getStrategyMap()[3]), -1);
    EXPECT_TRUE(service().getStrategyMap().isEmpty());
}

TEST_F(StrategyStart, GuardOfTheHostRefusesAChangeWithAMessage) {
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

TEST_F(StrategyStart, StartOfAnUnknownStrategyFails) {
    load();
    EXPECT_EQ(start(12), -1);
    EXPECT_EQ(error, QStringLiteral("策略12不存在"));
    EXPECT_TRUE(statuses.empty());
}

TEST_F(StrategyStart, StartNeedsTheNamedAccounts) {
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

TEST_F(StrategyStart, SingleAccountIsLookedUpAmongTheAccountsAlsoInTableMode) {
    host.user.simple.insert("S1");
    add(stoppedFile().account(QStringLiteral("S1")).tableMode());
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("选择的账号组或账号不存在"));
}

TEST_F(StrategyStart, BasketGroupMayBeOfCreditAccounts) {
    host.user.addAccount("C1", EQDBrokerType::Credit);
    host.user.addGroup(EQDBrokerType::Credit, "CG", {{"C1", 1.0}});
    add(stoppedFile().family(EOrderStrategyTradeType::Basket).group(QStringLiteral("CG")).code(QString()));
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(error, QStringLiteral("代码不能为空")); // only a note: baskets have no code
}

TEST_F(StrategyStart, StartNeedsLoggedInAccounts) {
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

TEST_F(StrategyStart, StartNeedsASource) {
    add(CStrategyBuilder().stopped().file(""));
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("信号来源为空"));
}

TEST_F(StrategyStart, FileMustExistAtTheStart) {
    add(CStrategyBuilder().stopped().file(folder.path("missing.txt")));
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("信号来源必须为文件"));
    changeMap([&] { host.user.strategies.clear(); });
    add(CStrategyBuilder().stopped().file(folder.path()));
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("信号来源必须为文件"));
}

TEST_F(StrategyStart, FileIsReportedBeforeItIsDeletedUnread) {
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

TEST_F(StrategyStart, EmptyFileIsDeletedWithoutAReport) {
    add(stoppedFile());
    folder.write("a.txt", "");
    EXPECT_EQ(start(3), 0);
    EXPECT_FALSE(folder.exists("a.txt"));
    EXPECT_TRUE(host.audit.discards.empty());
}

TEST_F(StrategyStart, StartDropsTheFileThatWaitsUnread) {
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

TEST_F(StrategyStart, QuietStartShowsNoMessage) {
    add(stoppedFile());
    EXPECT_EQ(start(3, false), 0);
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(StrategyStart, EmptyCodeIsANoteOnly) {
    add(stoppedFile().code(QString()));
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(error, QStringLiteral("代码不能为空"));
    EXPECT_TRUE(isRunning());
}

TEST_F(StrategyStart, CodeOfAFamilyThatIsNotOnTheListDoesNotCount) {
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
        service().stopOrderStrategy(3, error); // otherwise it takes the file of the next row
    }
}

TEST_F(StrategyStart, EmptyCodeOfAFutureHasItsOwnNoteAndOfCreditNone) {
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

TEST_F(StrategyStart, SecondStartOnlyTellsTheStatus) {
    add(stoppedFile());
    ASSERT_EQ(start(), 0);
    statuses.clear();
    EXPECT_EQ(start(3, true), 0);
    EXPECT_EQ(statuses, std::vector<bool>{true});
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(StrategyStart, InterfaceStrategyNeedsNoFile) {
    add(stoppedFile().source(EOrderStrategyType::Interface));
    EXPECT_EQ(start(), 0);
    EXPECT_TRUE(folder.exists("a.txt"));
}

TEST_F(StrategyStart, OnlyFileStrategiesInsistOnAFile) {
    const CIntakePause pause; // otherwise the running strategy reads the file at once
    folder.write("a.txt", "old");
    add(stoppedFile().source(EOrderStrategyType::BatchPending));
    EXPECT_EQ(start(), 0);
    EXPECT_TRUE(folder.exists("a.txt"));
}

TEST_F(StrategyStart, SourcesThatAreNotBuiltAreRefused) {
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

TEST_F(StrategyStart, RunningStrategyWhoseAccountWentStaysAsItIs) {
    add(stoppedFile());
    ASSERT_EQ(start(), 0);
    folder.write("b.txt", "");
    host.trade.loginStatus["A2"] = 3;
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("选择的账号登录失败"));
    EXPECT_TRUE(isRunning());
}

TEST_F(StrategyStart, FileThatCannotBeDroppedKeepsTheStrategyStopped) {
    // A regular file that cannot be deleted.
    add(CStrategyBuilder().file("/proc/self/status").stopped());
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("信号来源文件无法删除"));
    EXPECT_FALSE(isRunning());
}

} // namespace
