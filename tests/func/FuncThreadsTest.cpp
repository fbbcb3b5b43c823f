// Function trading on many threads at once.
#include "tests/func/FuncServiceFixture.h"

#include <atomic>
#include <thread>
#include <vector>

namespace {

using namespace TC;

thread_local std::string s_key; ///< of the calling thread

class FuncThreads : public FuncServiceFixture {};

TEST_F(FuncThreads, TenCallersGetTheirOwnOrdersAndFailures) {
    constexpr int kCallers = 10;
    constexpr int kCalls = 20;
    std::atomic<int> failed{0};
    std::atomic<int> mixed{0};
    service.registOrderFailedCallback([&](const int&, const std::string& key, const utils::KNError&) {
        ++failed;
        if (key != s_key) ++mixed;
    });
    std::vector<std::thread> callers;
    for (int caller = 0; caller < kCallers; ++caller) {
        callers.emplace_back([&, caller] {
            s_key = "caller" + std::to_string(caller);
            const std::string tradeKey = "\"x|" + s_key + "|1\"";
            for (int call = 0; call < kCalls; ++call) {
                pass({{"tradeKey", tradeKey},
                      {"modelVolume", '"' + std::to_string(100 * (caller + 1)) + '"'}});
                pass({{"tradeKey", tradeKey}, {"orderCode", "\"999999\""}});
                service.doParserOrder("SMARTALGOPYPASSORDER", textOf({{"tradeKey", tradeKey}}), "{}");
            }
        });
    }
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(failed, kCallers * kCalls);
    EXPECT_EQ(mixed, 0);
    int plain = 0;
    std::map<int, int> byVolume;
    for (const auto& command : host.commands()) {
        if (command->m_ePlatform != ETradePlatform::Plain) continue;
        ++plain;
        ++byVolume[command->m_codes.at(0).m_nVolume];
    }
    EXPECT_EQ(host.commands().size(), static_cast<std::size_t>(2 * kCallers * kCalls));
    EXPECT_EQ(plain, kCallers * kCalls);
    for (int caller = 0; caller < kCallers; ++caller)
        EXPECT_EQ(byVolume[100 * (caller + 1)], kCalls);
}

} // namespace
