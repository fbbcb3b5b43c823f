// The end of the desk while a function call waits for a quote.
#include "desk/commands/CallDesk.h"
#include "orderservice/base/Clock.h"
#include "tests/desk/commands/RunningFolder.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <atomic>
#include <future>
#include <sstream>
#include <string>
#include <thread>

namespace desk {
namespace {

/// Sleeps return at once and advance the time. A call that waits for a quote is held until it is released.
class CHoldingClock : public utils::IClock {
public:
    CHoldingClock() { utils::installClock(this); }
    ~CHoldingClock() override { utils::installClock(nullptr); }

    double time() override { return static_cast<double>(m_nMicroseconds) / 1e6; }
    void sleep(double seconds) override {
        char name[16] = {};
        pthread_getname_np(pthread_self(), name, sizeof name);
        if (std::string(name) == "calls") {
            m_bHolds = true;
            m_released.wait();
        }
        m_nMicroseconds += static_cast<long long>(seconds * 1e6);
        std::this_thread::yield();
    }
    QDateTime currentDateTime() override { return QDateTime(QDate(2026, 1, 5), QTime(9, 30)); }

    bool holds() const { return m_bHolds; }
    void release() {
        if (!m_bReleased.exchange(true)) m_release.set_value();
    }

private:
    std::atomic<long long> m_nMicroseconds{0};
    std::atomic<bool> m_bHolds{false};
    std::atomic<bool> m_bReleased{false};
    std::promise<void> m_release;
    const std::shared_future<void> m_released{m_release.get_future()};
};

class EndWithCall : public CRunningFolder {
protected:
    bool shows(const std::string& text) const { return out.str().find(text) != std::string::npos; }

    CHoldingClock clock;
};

constexpr int kMostLooks = 100000;

constexpr const char* kFinishing =
    "Finishing a function call. It waits up to two seconds for each instrument "
    "without a quote, and then sends its command.";
constexpr const char* kGoesOn =
    "The function call goes on, and its command may still go out. One more Ctrl-C ends the desk at once.";

TEST_F(EndWithCall, UserIsToldThatACallIsFinishedAndTheClientGetsItsAnswer) {
    change("desk/quotes.csv", "SZ300301,40,40,39.99", "SZ300301,40,40\n#");
    std::ostringstream printed, failed;
    std::future<int> client;
    const auto keepGoing = [&] {
        if (!client.valid() && folder.exists("desk/control.sock"))
            client = std::async(std::launch::async, [&] {
                return runCall(folder.path("desk"),
                               {"passorder",
                                R"({"opType":23,"orderType":1101,"prType":4,"modelVolume":"100",)"
                                R"("accountID":"10001","orderCode":"300301"})",
                                {}},
                               printed, failed);
            });
        return !clock.holds();
    };
    int looks = 0;
    const auto keepWaiting = [&] { // the second Ctrl-C comes when the user has read the first line
        if (++looks > kMostLooks) clock.release(); // the test fails instead of hanging
        if (!shows(kFinishing)) return true;
        if (shows(kGoesOn)) clock.release();
        return false;
    };
    EXPECT_EQ(runDesk(folder.path("desk"), std::nullopt, out, keepGoing, keepWaiting), 0);
    EXPECT_TRUE(shows(kFinishing)) << out.str();
    EXPECT_TRUE(shows(kGoesOn)) << out.str();
    EXPECT_FALSE(shows("The waiting orders are discarded")) << out.str();
    EXPECT_EQ(client.get(), 1) << printed.str() << failed.str();
    EXPECT_EQ(printed.str().rfind("NOTHING SENT", 0), 0U) << printed.str();
    EXPECT_TRUE(has("\"event\":\"refused\",\"call\":")) << journal();
}

} // namespace
} // namespace desk
