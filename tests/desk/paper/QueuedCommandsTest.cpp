#include "desk/host/PaperOrderClient.h"
#include "desk/paper/PaperBroker.h"

#include "tests/desk/paper/PaperDesk.h"

#include <sqlite3.h>

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <future>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace desk;
using namespace desk::test;

namespace {

/// The quotes of another source. The first m_nMissing requests get no quote.
class CLateQuotes : public IQuoteSource {
public:
    explicit CLateQuotes(const IQuoteSource& quotes) : m_quotes(quotes) {}

    std::optional<CInstrumentEntry> instrument(const std::string& stockKey) const override {
        return m_quotes.instrument(stockKey);
    }
    std::optional<CQuoteEntry> quote(const std::string& stockKey) const override {
        if (m_nMissing == 0) return m_quotes.quote(stockKey);
        --m_nMissing;
        return {};
    }

    mutable int m_nMissing = 0;

private:
    const IQuoteSource& m_quotes;
};

/// A broker with a worker that a test can hold while it delivers events, so that commands wait.
class QueuedCommands : public PaperDesk {
protected:
    QueuedCommands() {
        m_broker.reset();
        m_broker = std::make_unique<CPaperBroker>(m_source, [this](const std::vector<CBrokerEvent>& events) {
            m_deliveries.push_back(events.size());
            m_events.insert(m_events.end(), events.begin(), events.end());
            if (auto onDelivery = std::exchange(m_onDelivery, nullptr)) onDelivery();
            return events.size();
        });
        EXPECT_TRUE(m_broker->open(m_folder.path(), deskAccounts(), 0).isSuccess());
    }
    ~QueuedCommands() override { m_broker.reset(); }

    void queue(const std::vector<TC::CCodeOrderParam>& codes) {
        m_broker->waitForRoom();
        CQueuedCommand command;
        command.m_command = boost::make_shared<TC::COrderComandParam>(stockCommand(codes));
        command.m_nTask = m_broker->reserveTask();
        command.m_nReference = 1000 + command.m_nTask;
        command.m_onRefused = [this, task = command.m_nTask](const utils::KNError& error) {
            m_refused.push_back(std::to_string(task) + ": " + error.errorMsg());
        };
        m_broker->queueCommand(std::move(command));
    }

    /// Starts the worker and lets it carry out one command. After the transaction of that command it waits
    /// until release() is called.
    void holdWorker() {
        m_onDelivery = [this] {
            m_isHeld.set_value();
            m_mayGoOn.get_future().wait();
        };
        m_broker->startWorker();
        queue({buy(100, 9.50)});
        m_isHeld.get_future().wait();
    }
    void release() { m_mayGoOn.set_value(); }

    std::vector<int> tasksOfOrders() const {
        std::vector<int> tasks;
        for (const CPaperOrder& order : m_broker->orders())
            tasks.push_back(order.m_nTask);
        return tasks;
    }

    CLateQuotes m_source{m_quotes};
    std::vector<std::size_t> m_deliveries; ///< number of events of each delivery
    std::function<void()> m_onDelivery;
    std::promise<void> m_isHeld;
    std::promise<void> m_mayGoOn;
    CTexts m_refused;
};

/// An account that knows whether a record was made with it.
struct CNotingAccount : TC::CAccountInfo {
    std::string getKey() const override {
        m_bRecorded = true;
        return "A1";
    }
    mutable std::atomic<bool> m_bRecorded = false;
};

/// Locks the store like another program.
class CStoreLock {
public:
    explicit CStoreLock(const std::string& path) {
        EXPECT_EQ(sqlite3_open(path.c_str(), &m_pDatabase), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(m_pDatabase, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    }
    ~CStoreLock() { sqlite3_close(m_pDatabase); }
    CStoreLock(const CStoreLock&) = delete;
    CStoreLock& operator=(const CStoreLock&) = delete;

private:
    sqlite3* m_pDatabase = nullptr;
};

} // namespace

TEST_F(QueuedCommands, WithoutAWorkerACommandIsStoredAtOnce) {
    queue({buy(200, 10.00)});
    EXPECT_EQ(m_deliveries, (std::vector<std::size_t>{3}));
    EXPECT_EQ(m_events.back().m_order.m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(m_events.back().m_nReference, 1001);
}

TEST_F(QueuedCommands, RecordedTasksThatTheStoreDoesNotHaveAreFoundAtTheStart) {
    queue({buy(100, 9.50)});
    queue({buy(100, 9.51)});
    const std::int64_t lastEvent = m_events.back().m_nNumber;
    const auto unbooked = [&](std::int64_t event, int task) {
        m_broker = std::make_unique<CPaperBroker>(m_source, [](const auto& events) { return events.size(); });
        EXPECT_TRUE(m_broker->open(m_folder.path(), deskAccounts(), event, {task, 0, 0}).isSuccess());
        return m_broker->unbookedTasks();
    };
    EXPECT_EQ(unbooked(lastEvent, 2), std::nullopt);
    EXPECT_EQ(unbooked(lastEvent, 5), std::pair(3, 5));
    EXPECT_EQ(unbooked(lastEvent + 1, 5), std::nullopt)
        << "an older copy of the store lacks other tasks, too";
}

TEST_F(QueuedCommands, CommandsThatWaitAreStoredTogetherAndInTheirOrder) {
    holdWorker();
    queue({buy(100, 9.51)});
    queue({buy(200, 10.00), buy(100, 9.52)});
    queue({buy(100, 9.53)});
    release();
    EXPECT_EQ(tasksOfOrders(), (std::vector<int>{1, 2, 3, 3, 4}));
    EXPECT_EQ(m_deliveries, (std::vector<std::size_t>{1, 6})) << "one delivery, so one transaction";
    for (std::size_t i = 0; i < m_events.size(); ++i)
        EXPECT_EQ(m_events[i].m_nNumber, static_cast<std::int64_t>(i) + 1);
    EXPECT_TRUE(m_refused.empty());
}

TEST_F(QueuedCommands, EveryCallSeesTheCommandsThatWereQueuedBeforeIt) {
    m_broker->startWorker();
    for (int i = 1; i <= 20; ++i) {
        queue({buy(100, 9.50)});
        EXPECT_TRUE(m_broker->hasTask(i));
        queue({buy(100, 9.50)});
        EXPECT_TRUE(m_broker->cancelTask(++i, "").isSuccess());
    }
    queue({buy(100, 9.50)});
    EXPECT_EQ(m_broker->tasks().size(), 21u);
    queue({sell(1050, 9.99)});
    EXPECT_EQ(position().m_nVolume, 950);
}

TEST_F(QueuedCommands, CommandsThatCannotBeStoredAreRefusedEachByItself) {
    holdWorker();
    queue({buy(200, 10.00)});
    queue({buy(100, 9.52)});
    {
        const CStoreLock lock(m_folder.file(kPaperStoreName));
        release();
        m_broker->finishQueued();
    }
    const std::string cause = "the paper broker's store failed: database is locked; another program has "
                              "paper.db open for writing: close that program";
    EXPECT_EQ(m_refused, (CTexts{"2: " + cause, "3: " + cause}));
    EXPECT_EQ(tasksOfOrders(), (std::vector<int>{1})) << "nothing of them has happened";
    EXPECT_EQ(m_events.size(), 1u);

    queue({buy(200, 10.00)});
    EXPECT_EQ(tasksOfOrders(), (std::vector<int>{1, 4})) << "the number of a refused task is not used again";
    EXPECT_EQ(m_broker->orders().back().m_eStatus, EOrderStatus::Filled)
        << "what the refused order would have taken is still there";
    EXPECT_EQ(m_events.at(1).m_nNumber, 2);
    EXPECT_EQ(m_refused.size(), 2u);
}

TEST_F(QueuedCommands, LockThatLastsHoldsUpTheCommandsOnce) {
    holdWorker();
    queue({buy(100, 9.51)});
    queue({buy(100, 9.52)});
    std::atomic<int> sleeps = 0;
    m_clock.m_onSleep = [&] { ++sleeps; };
    const CStoreLock lock(m_folder.file(kPaperStoreName));
    release();
    m_broker->finishQueued();
    EXPECT_EQ(m_refused.size(), 2u);
    EXPECT_EQ(sleeps, 500) << "five seconds for all of them";
}

TEST_F(QueuedCommands, CommandForWhichThereIsNoRoomDoesNotTakeTheOthersWithIt) {
    holdWorker();
    queue({buy(100, 9.51)});
    queue(std::vector<TC::CCodeOrderParam>(480, buy(100, 9.52)));
    queue({buy(100, 9.53)});
    {
        const CFullDisk disk(std::filesystem::file_size(m_folder.file("paper.db-wal")) + 100000);
        release();
        m_broker->finishQueued();
    }
    ASSERT_EQ(m_refused.size(), 1u);
    EXPECT_EQ(m_refused.front().substr(0, 3), "3: ");
    EXPECT_EQ(tasksOfOrders(), (std::vector<int>{1, 2, 4}));
    reopen();
    EXPECT_EQ(tasksOfOrders(), (std::vector<int>{1, 2, 4}));
}

TEST_F(QueuedCommands, OrderThatWaitsIsMatchedBeforeALaterOneOfTheSameTransaction) {
    m_quotes.setQuote(kStock, {}, {{9.50, 150}});
    m_source.m_nMissing = 2;
    holdWorker();            // the first order finds no quote
    queue({buy(100, 9.50)}); // the second order does not find one either
    queue({buy(100, 9.50)});
    release();
    EXPECT_EQ(fills(), (CTexts{"1: 100 @ 95000", "2: 50 @ 95000"}));
    EXPECT_EQ(m_deliveries.size(), 2u);
}

TEST_F(QueuedCommands, EndCarriesOutAllThatWaits) {
    holdWorker();
    queue({buy(100, 9.51)});
    queue({buy(100, 9.52)});
    auto stopped = std::async(std::launch::async, [this] { m_broker->stopWorker(); });
    release();
    stopped.get();
    EXPECT_EQ(m_events.size(), 3u);
    queue({buy(100, 9.53)});
    EXPECT_EQ(m_events.size(), 4u) << "later commands are stored at once";
    EXPECT_EQ(tasksOfOrders(), (std::vector<int>{1, 2, 3, 4}));
}

TEST_F(QueuedCommands, OnlySoManyOrdersWait) {
    holdWorker();
    constexpr int kCommands = 3000;
    std::thread feeder([this] {
        for (int i = 0; i < kCommands; ++i)
            queue({buy(100, 9.00)});
    });
    release();
    feeder.join();
    EXPECT_EQ(m_broker->tasks().size(), kCommands + 1u);
    for (const std::size_t events : m_deliveries)
        EXPECT_LE(events, CCommandQueue::kMostOrders);
    EXPECT_EQ(m_events.size(), kCommands + 1u);
}

// A command is recorded only when the queue has room, so that a recorded command is queued at once.
TEST_F(QueuedCommands, CommandThatWaitsForRoomIsNotRecordedYet) {
    CJournal journal;
    ASSERT_TRUE(journal.open(m_folder.path()).isSuccess());
    std::ostringstream shown;
    CTextSink sink(shown);
    CPaperOrderClient client(journal, *m_broker, sink, false);
    holdWorker();
    queue(std::vector<TC::CCodeOrderParam>(CCommandQueue::kMostOrders, buy(0, 9.00))); // all are rejected
    const auto noting = boost::make_shared<CNotingAccount>();
    TC::CCodeOrderParam code = buy(100, 9.00);
    code.m_account = noting;
    std::atomic<bool> started{false};
    auto sent = std::async(std::launch::async, [&] {
        started = true;
        client.orderCommands(boost::make_shared<TC::COrderComandParam>(stockCommand({code})));
    });
    while (!started)
        std::this_thread::yield();
    // The other thread has many chances to record the command too early.
    for (int i = 0; i < 10000 && !noting->m_bRecorded; ++i)
        std::this_thread::yield();
    EXPECT_FALSE(noting->m_bRecorded);
    release();
    sent.get();
    EXPECT_EQ(journal.lastTask(), 3);
    EXPECT_TRUE(m_broker->cancelTask(3, "").isSuccess());
}

TEST_F(QueuedCommands, CommandsOfSeveralThreadsBecomeOneTaskEach) {
    m_broker->startWorker();
    std::vector<std::thread> threads;
    constexpr int kThreads = 4, kCommands = 50;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([this] {
            for (int n = 0; n < kCommands; ++n) {
                queue({buy(100, 9.00)});
                if (n % 10 == 0) (void)m_broker->positions();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(m_broker->tasks().size(), std::size_t{kThreads * kCommands});
    EXPECT_EQ(m_broker->orders().size(), std::size_t{kThreads * kCommands});
}

/// The child writes the numbers of its events to a pipe, and is killed. Each event that it reported must be
/// in the store.
TEST_F(QueuedCommands, AReportedEventSurvivesAKilledProcess) {
    m_broker.reset();
    int pipeEnds[2];
    ASSERT_EQ(::pipe(pipeEnds), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        m_broker = std::make_unique<CPaperBroker>(m_quotes, [&](const std::vector<CBrokerEvent>& events) {
            const std::int64_t last = events.back().m_nNumber;
            if (::write(pipeEnds[1], &last, sizeof last) != static_cast<ssize_t>(sizeof last)) ::_exit(1);
            return events.size();
        });
        if (!m_broker->open(m_folder.path(), deskAccounts(), 0).isSuccess()) ::_exit(1);
        m_broker->startWorker();
        for (int i = 0; i < 1'000'000; ++i)
            queue({buy(100, 9.50), buy(50, 9.50), buy(100, 10.00)});
        ::_exit(1);
    }
    ::close(pipeEnds[1]);
    std::int64_t last = 0;
    for (int i = 0; i < 20; ++i)
        ASSERT_EQ(::read(pipeEnds[0], &last, sizeof last), static_cast<ssize_t>(sizeof last));
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    for (std::int64_t more = 0; ::read(pipeEnds[0], &more, sizeof more) == static_cast<ssize_t>(sizeof more);)
        last = more;
    ::close(pipeEnds[0]);

    open();
    EXPECT_EQ(m_broker->orders().size(), 3 * m_broker->tasks().size())
        << "a command is there whole or not at all";
    place({buy(100, 9.00)});
    EXPECT_GT(m_events.back().m_nNumber, last) << "the store knows every number that was reported";
}
