#include "desk/commands/RunDesk.h"

#include "desk/commands/NewFolder.h"
#include "desk/config/ConfigLoader.h"
#include "desk/host/FolderLock.h"
#include "service/OrderService.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>

namespace desk {
namespace {

/// A copy of the demo folder, run in this process. The steps of a test are taken from within the main loop.
class RunDesk : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(runNew(folder.path("desk"), out, out), 0); }

    std::string journal() const { return folder.read("desk/journal.jsonl"); }
    bool has(const std::string& text) const { return journal().find(text) != std::string::npos; }

    /// Runs the desk; each step is taken once the one before it has returned true.
    int run(std::vector<std::function<bool()>> steps) {
        std::size_t next = 0;
        return runDesk(folder.path("desk"), std::nullopt, out, [&] {
            if (next < steps.size() && steps[next]()) ++next;
            return next < steps.size();
        });
    }

    CTempFolder folder;
    std::ostringstream out;
};

TEST_F(RunDesk, OrderFileIsFilledJournalledAndSurvivesARestart) {
    const int code = run({
        [this] { return has("\"action\":\"start\",\"channel\":4"); },
        [this] {
            folder.handOver("desk/orders/group.txt", "23,0,11.02,600101,1000\n");
            return true;
        },
        [this] { return has("\"kind\":\"fill\""); },
    });
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("\"kind\":\"command\""));
    EXPECT_TRUE(has("\"kind\":\"stopped\""));
    const std::string before = journal();
    EXPECT_EQ(run({[this] { return has("\"action\":\"start\",\"channel\":4"); }}), 0);
    EXPECT_EQ(journal().compare(0, before.size(), before), 0); // never rewritten
}

TEST_F(RunDesk, StrategiesChangedAtRunTimeSurvive) {
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
    EXPECT_EQ(loaded.config.strategies.keys(), (QList<int>{1, 2, 3, 4}));
    EXPECT_TRUE(loaded.config.strategies[1].isRunning());
    EXPECT_FALSE(loaded.config.strategies[2].isRunning());
    EXPECT_EQ(loaded.config.strategies[3].m_strName, QStringLiteral("策略3"));
}

TEST_F(RunDesk, IdleDeskEndsByItself) {
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, out, [] { return true; }), 0);
    EXPECT_TRUE(has("\"reason\":\"idle\""));
}

TEST_F(RunDesk, FolderInUseIsRefused) {
    CFolderLock lock;
    ASSERT_TRUE(lock.acquire(folder.path("desk")).isSuccess());
    EXPECT_EQ(runDesk(folder.path("desk"), std::nullopt, out, [] { return true; }), 2);
    EXPECT_NE(out.str().find("is in use by process"), std::string::npos);
}

TEST_F(RunDesk, FolderWithMistakesIsNotStarted) {
    folder.write("desk/strategies.toml", "[[strategy]]\nchanel = 1\n");
    EXPECT_EQ(runDesk(folder.path("desk"), std::nullopt, out, [] { return true; }), 2);
    EXPECT_NE(out.str().find("strategies.toml:2: strategy: unknown key \"chanel\""), std::string::npos);
    EXPECT_FALSE(folder.exists("desk/journal.jsonl"));
}

TEST_F(RunDesk, StrategyThatDoesNotStartIsNamedWithTheReason) {
    std::filesystem::create_directories(folder.path("desk/orders/group.txt"));
    const int code = run({[this] { return has("does not run"); }});
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("group does not run: 信号来源必须为文件"));
}

/// Takes what the desk tells, and does something the first time that a text is among it.
class CHookedBuffer : public std::stringbuf {
public:
    CHookedBuffer(std::string text, std::function<void()> hook)
        : m_strText(std::move(text)), m_hook(std::move(hook)) {}

protected:
    int sync() override {
        if (m_hook && str().find(m_strText) != std::string::npos) std::exchange(m_hook, nullptr)();
        return 0;
    }

private:
    std::string m_strText;
    std::function<void()> m_hook;
};

TEST_F(RunDesk, StrategyThatStartsAtTheSecondAttemptIsToldAsStarted) {
    const std::string single = folder.path("desk/orders/single.txt");
    std::filesystem::create_directories(folder.path("desk/orders/group.txt"));
    std::filesystem::create_directories(single);
    // Once the first strategy's reason is known, what was in the second one's way is gone.
    CHookedBuffer buffer("group does not run", [&] {
        std::filesystem::remove(single);
        folder.write("desk/orders/single.txt", "");
    });
    std::ostream told(&buffer);
    EXPECT_EQ(runDesk(folder.path("desk"), 0.0, told, [] { return true; }), 0);
    EXPECT_TRUE(has("\"action\":\"start\",\"channel\":2"));
    EXPECT_TRUE(has("single: 启动成功!"));
    EXPECT_FALSE(has("single does not run"));
    EXPECT_TRUE(loadDeskConfig(folder.path("desk")).config.strategies[2].isRunning());
}

} // namespace
} // namespace desk
