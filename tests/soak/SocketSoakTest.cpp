// Fifty clients use the desk's order socket for some seconds. Afterwards every accepted order and cancel must
// be in the journal once. Lines that were not sent completely must not be there. No descriptor may stay open.
//
// ORDERSERVICE_SOAK_SECONDS is the duration in seconds, 5 if not set. ORDERSERVICE_SOAK_SEED repeats the
// actions of the clients.
#include "desk/commands/RunDesk.h"
#include "desk/journal/Journal.h"
#include "desk/journal/JournalReader.h"
#include "tests/soak/SoakClient.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestSocket.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <system_error>
#include <thread>

namespace {

constexpr int kClients = 50;
constexpr std::chrono::seconds kForgetLimit{20}; ///< for the listener to notice that all clients left

unsigned fromEnvironment(const char* name, unsigned otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? static_cast<unsigned>(std::stoul(text)) : otherwise;
}

std::ptrdiff_t openDescriptors() {
    const std::filesystem::directory_iterator begin("/proc/self/fd"), end;
    return std::distance(begin, end);
}

/// All clients, on one separate thread.
class CSoakCrowd {
public:
    CSoakCrowd(unsigned short port, std::chrono::seconds length, unsigned seed) : m_end(m_io, length) {
        m_end.async_wait([this](const boost::system::error_code&) { m_isOver = true; });
        for (int i = 0; i < kClients; ++i)
            m_clients.emplace_back(m_io, port, m_ledger, m_isOver, seed, i, kClients);
    }
    ~CSoakCrowd() {
        m_io.stop();
        if (m_thread.joinable()) m_thread.join();
    }
    CSoakCrowd(const CSoakCrowd&) = delete;
    CSoakCrowd& operator=(const CSoakCrowd&) = delete;

    void start() {
        for (CSoakClient& client : m_clients)
            client.join();
        m_thread = std::thread([this] {
            m_io.run();
            m_isDone = true;
        });
    }
    bool isDone() const { return m_isDone; }
    /// Call it only after isDone() returns true.
    const COrderLedger& ledger() const { return m_ledger; }

private:
    boost::asio::io_service m_io;
    boost::asio::steady_timer m_end;
    bool m_isOver = false;
    COrderLedger m_ledger;
    std::deque<CSoakClient> m_clients;
    std::thread m_thread;
    std::atomic<bool> m_isDone{false};
};

/// How often the journal has the mark of each order and cancel.
using CMarkCounts = std::map<COrderLedger::CMark, int>;

/// Compares what the clients know with the journal.
struct CTally {
    int accepted = 0, unanswered = 0, cut = 0;
    int cancels = 0;  ///< accepted cancels
    int lost = 0;     ///< accepted, but not in the journal
    int doubled = 0;  ///< more than once in the journal
    int invented = 0; ///< in the journal, but never sent completely
};

CTally compare(const COrderLedger& ledger, CMarkCounts marks) {
    CTally tally;
    for (const auto& [mark, fate] : ledger.fates()) {
        const int times = marks[mark];
        marks.erase(mark);
        const bool isAccepted = fate == COrderLedger::EFate::Accepted;
        const bool isCut = fate == COrderLedger::EFate::Cut;
        ++(isAccepted ? tally.accepted : isCut ? tally.cut : tally.unanswered);
        if (isAccepted && COrderLedger::isCancel(mark)) ++tally.cancels;
        if (isAccepted && times == 0) ++tally.lost;
        if (times > 1) ++tally.doubled;
        if (isCut && times > 0) ++tally.invented;
    }
    tally.invented += static_cast<int>(marks.size());
    return tally;
}

class SocketSoak : public testing::Test {
protected:
    void SetUp() override {
        folder.write("desk.toml", R"([user]
name = "soak"
kind = 100
order_service = true
rights = ["signal_orders"]
max_strategies = 1
max_socket_strategies = 1

[switches]
mdl_order_socket_guard = true

[[account]]
key = "A1"
broker = "stock"
funds = 1e12
)");
        folder.write("instruments.csv", "market,code,name,product,types,unit,upper_limit,lower_limit\n"
                                        "SH,600000,江河重工,STOCK,100028,100,1000,1\n");
        folder.write("quotes.csv", "instrument,last,previous_close,bid1,bid1_volume,ask1,ask1_volume\n"
                                   "SH600000,900,900,899,100,901,100\n");
        folder.writeSecret("strategies.toml", R"([[strategy]]
channel = 1
source = "signal"
path = "127.0.0.1:)" + std::to_string(port) +
                                                  R"("
user = "trader"
pass = "secret"
account = "A1"
family = "stock"
price_type = "specified"
running = true
)");
    }

    /// Runs the desk until all clients have left and the listener has noticed it.
    int runDesk() {
        return desk::runDesk(folder.path(), std::nullopt, out, [this] { return goOn(); });
    }

    bool goOn() {
        if (!crowd) {
            const bool isListening =
                folder.read(desk::kJournalFileName).find("\"kind\":\"door\"") != std::string::npos;
            if (!isListening) return true;
            crowd = std::make_unique<CSoakCrowd>(port, length, seed);
            crowd->start();
        }
        if (!crowd->isDone()) return true;
        if (!gone) gone = std::chrono::steady_clock::now();
        isForgotten = openSockets() == socketsBefore + 2; // those of the listener and of the control door
        return !isForgotten && std::chrono::steady_clock::now() - *gone < kForgetLimit;
    }

    CMarkCounts journalled() const {
        CMarkCounts marks;
        desk::CJournalReader reader;
        EXPECT_TRUE(reader.open(folder.path()).isSuccess());
        while (const auto line = reader.next()) {
            EXPECT_FALSE(line->m_bDamaged);
            const auto record = nlohmann::json::parse(line->m_strText);
            if (record["kind"] == "cancel_task") ++marks[{record["task"].get<int>(), COrderLedger::kCancel}];
            if (record["kind"] != "command") continue;
            for (const auto& code : record["codes"])
                ++marks[{code["volume"].get<int>(),
                         static_cast<int>(std::lround(code["price"].get<double>() * 100))}];
        }
        return marks;
    }

    CTempFolder folder;
    const unsigned short port = freePort();
    const std::chrono::seconds length{fromEnvironment("ORDERSERVICE_SOAK_SECONDS", 5)};
    const unsigned seed = fromEnvironment("ORDERSERVICE_SOAK_SEED", std::random_device()());
    std::ostringstream out;
    std::unique_ptr<CSoakCrowd> crowd;
    std::optional<std::chrono::steady_clock::time_point> gone;
    const std::ptrdiff_t socketsBefore = openSockets();
    bool isForgotten = false;
};

TEST_F(SocketSoak, WhatWasAcceptedIsJournalledOnceAndConnectionsForgotten) {
    std::printf("soak of %lld s, seed %u\n", static_cast<long long>(length.count()), seed);
    std::fflush(stdout);
    const std::ptrdiff_t before = openDescriptors();
    ASSERT_EQ(runDesk(), 0) << out.str();
    ASSERT_TRUE(crowd && crowd->isDone()) << out.str();
    EXPECT_TRUE(isForgotten) << "connections are left";
    EXPECT_EQ(crowd->ledger().failures(), std::vector<std::string>());

    const CTally tally = compare(crowd->ledger(), journalled());
    std::printf("%d accepted, %d of them cancels, %d unanswered, %d cut\n", tally.accepted, tally.cancels,
                tally.unanswered, tally.cut);
    EXPECT_EQ(tally.lost, 0);
    EXPECT_EQ(tally.doubled, 0);
    EXPECT_EQ(tally.invented, 0);
    EXPECT_GT(tally.accepted, kClients * length.count());
    EXPECT_GT(tally.cancels, 0);
    EXPECT_GT(tally.unanswered, 0);
    EXPECT_GT(tally.cut, 0);
    crowd.reset();
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
