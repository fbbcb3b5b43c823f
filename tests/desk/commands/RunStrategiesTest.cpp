#include "desk/config/ConfigLoader.h"
#include "orderservice/service/OrderService.h"
#include "tests/desk/commands/RunningFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace desk {
namespace {

class RunStrategies : public CRunningFolder {};

TEST_F(RunStrategies, StrategyThatDoesNotStartIsNamedWithTheReason) {
    block("desk/orders/group.txt");
    const int code = run({[this] { return has("strategy_not_started"); }});
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("\"event\":\"strategy_not_started\",\"channel\":1,\"orders\":0,\"task\":null,"
                    "\"cause\":\"信号来源必须为文件\""));
    const std::string line = "channel 1: the strategy does not run: 信号来源必须为文件\n";
    EXPECT_NE(out.str().find(line), std::string::npos) << out.str();
    EXPECT_EQ(out.str().find("does not run"), out.str().rfind("does not run")) << out.str();
}

TEST_F(RunStrategies, StrategyOverTheLimitIsNamed) {
    change("desk/desk.toml", "max_strategies = 20", "max_strategies = 15");
    const int code = run({[this] { return has("strategy_not_loaded"); }});
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("\"event\":\"strategy_not_loaded\",\"channel\":16,"));
    EXPECT_NE(out.str().find("channel 16: the strategy is not loaded: over the limit of strategies\n"),
              std::string::npos)
        << out.str();
}

/// A failed cancel of an order has no task. The screen reports it once, with account and order.
TEST_F(RunStrategies, FailedCancelOfAnOrderIsReportedOnceAndWithoutATask) {
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":16"); },
        [this] {
            folder.handOver("desk/orders/group.txt", "cancel_order A1 7\n");
            return true;
        },
        [this] { return has("cancel_not_done"); },
    });
    EXPECT_EQ(code, 0);
    const std::string cause = "cancel_order A1 7: account A1 has no order 7";
    EXPECT_TRUE(has("\"event\":\"cancel_not_done\",\"channel\":null,\"orders\":0,\"task\":null,"
                    "\"cause\":\"" +
                    cause + "\""));
    const std::string screen = out.str();
    EXPECT_NE(screen.find("cancel not done: " + cause + "\n"), std::string::npos) << screen;
    EXPECT_EQ(screen.find("has no order 7"), screen.rfind("has no order 7")) << screen;
    EXPECT_EQ(screen.find(std::to_string(TC::kUnsetInt)), std::string::npos) << screen;
}

TEST_F(RunStrategies, RowsThatABasketLeavesOutAreNamed) {
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":16"); },
        [this] {
            folder.handOver("desk/orders/basket.txt", "25,0\n600102\t100\n699999\t100\n");
            return true;
        },
        [this] { return has("\"kind\":\"command\""); },
    });
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("\"event\":\"rows_left_out\",\"channel\":4,\"orders\":0,\"task\":null,\"rows\":1,"
                    "\"code\":\"699999\",\"cause\":\"the code is not a stock that can be traded\""));
    EXPECT_NE(out.str().find("channel 4: 1 row of a basket left out; the first is 699999: the code is not a "
                             "stock that can be traded\n"),
              std::string::npos)
        << out.str();
}

TEST_F(RunStrategies, StrategiesThatOthersCanReadAreRefused) {
    std::filesystem::permissions(folder.path("desk/strategies.toml"), std::filesystem::perms::others_read,
                                 std::filesystem::perm_options::add);
    EXPECT_EQ(runDesk(folder.path("desk"), std::nullopt, out, [] { return true; }), 2);
    EXPECT_NE(out.str().find("strategies.toml: contains a password, but other users have access to it"),
              std::string::npos);
    EXPECT_FALSE(folder.exists("desk/journal.jsonl"));
}

/// The file system has changed after the folder was read.
TEST_F(RunStrategies, AStrategyWhosePathHasBecomeTheDesksOwnFileIsNotStarted) {
    const std::string before = folder.read("desk/desk.toml");
    QString error;
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":16"); },
        [&] {
            TC::COrderService& service = *TC::COrderService::instance();
            service.stopOrderStrategy(2, error);
            std::filesystem::remove(folder.path("desk/orders/single.txt"));
            std::filesystem::create_hard_link(folder.path("desk/desk.toml"),
                                              folder.path("desk/orders/single.txt"));
            error.clear();
            EXPECT_EQ(service.startOrderStrategy(2, error, true), -1);
            return true;
        },
    });
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(
        error.endsWith(QStringLiteral("is the desk's own desk.toml, which the strategy would delete")))
        << error.toStdString();
    EXPECT_EQ(folder.read("desk/desk.toml"), before);
    EXPECT_TRUE(folder.exists("desk/orders/single.txt"));
}

TEST_F(RunStrategies, AStrategyIsNotChangedToWhatCheckRefuses) {
    std::vector<int> results;
    const auto update = [&](const auto& changeOf) {
        TC::COrderService& service = *TC::COrderService::instance();
        TC::COrderStrategyParam strategy = service.getStrategyMap().value(2);
        changeOf(strategy);
        results.push_back(service.updateOrderStrategy(2, strategy));
    };
    const QString own = QString::fromStdString(folder.path("desk/paper.db"));
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":16"); },
        [&] {
            QString error;
            TC::COrderService::instance()->stopOrderStrategy(2, error);
            update([&](TC::COrderStrategyParam& strategy) { strategy.m_strSignalSource = own; });
            update([](TC::COrderStrategyParam& strategy) { strategy.m_strCode = QStringLiteral("600102"); });
            update([](TC::COrderStrategyParam& strategy) { strategy.m_nVolume = 300; });
            return true;
        },
    });
    EXPECT_EQ(code, 0);
    EXPECT_EQ(results, (std::vector<int>{-1, -1, 0}));
    EXPECT_TRUE(has("修改失败! path"));
    EXPECT_TRUE(has("修改失败! code \\\"600102\\\" has no market; expected \\\"SH600102\\\""));
    EXPECT_TRUE(folder.exists("desk/paper.db"));
}

TEST_F(RunStrategies, AFolderWhoseStrategyWouldDeleteItsFilesIsNotStarted) {
    change("desk/strategies.toml", "orders/single.txt", "desk.toml");
    const std::string before = folder.read("desk/desk.toml");
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 2);
    EXPECT_NE(out.str().find("path \"desk.toml\" is the desk's own desk.toml"), std::string::npos)
        << out.str();
    EXPECT_EQ(folder.read("desk/desk.toml"), before);
}

TEST_F(RunStrategies, StrategiesChangedAtRunTimeSurvive) {
    const int code = run({
        [] {
            TC::COrderService* service = TC::COrderService::instance();
            if (service == nullptr) return false;
            QString error;
            service->stopOrderStrategy(2, error);
            service->removeOrderStrategy(3);
            return service->addOrderStrategy(TC::EOrderStrategyType::File) == 3;
        },
        [this] { return has("\"action\":\"stop\",\"channel\":2"); },
    });
    EXPECT_EQ(code, 0);
    const CLoadedConfig loaded = loadDeskConfig(folder.path("desk"));
    EXPECT_TRUE(loaded.mistakes.empty());
    EXPECT_EQ(loaded.config.strategies.keys(),
              (QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
    EXPECT_TRUE(loaded.config.strategies[1].isRunning());
    EXPECT_FALSE(loaded.config.strategies[2].isRunning());
    EXPECT_EQ(loaded.config.strategies[3].m_strName, QStringLiteral("策略3"));
}

} // namespace
} // namespace desk
