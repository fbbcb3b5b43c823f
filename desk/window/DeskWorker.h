#pragma once

#include "desk/paper/PaperBroker.h"
#include "desk/window/Feed.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace desk {

/// A thread for what could keep the window's thread waiting: it reads the books of the broker twice a second
/// for the feed, and carries out cancels. Broker, quotes and feed must outlive it.
class CDeskWorker {
public:
    /// Reads the books once before it returns. Their equity is the start of the comparison in later books.
    CDeskWorker(CPaperBroker& broker, const IQuoteSource& quotes, std::vector<CInstrumentEntry> instruments,
                CWindowFeed& feed);
    /// Carries out the actions that wait, and ends the thread.
    ~CDeskWorker();
    CDeskWorker(const CDeskWorker&) = delete;
    CDeskWorker& operator=(const CDeskWorker&) = delete;

    /// Calls the action on the thread. Actions are called in their order. If one throws, the feed gets a
    /// warning. Any thread.
    void post(std::function<void()> action);
    /// Calls the action after the next period of the thread, half a second. It is not called if the thread
    /// ends before. Any thread.
    void postLater(std::function<void()> action);

private:
    void work();
    bool takeActions(std::deque<std::function<void()>>& actions);
    void carryOut(const std::function<void()>& action);
    void readBooks();

    CPaperBroker& m_broker;
    const IQuoteSource& m_quotes;
    const std::vector<CInstrumentEntry> m_instruments;
    CWindowFeed& m_feed;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_actions;
    std::deque<std::function<void()>> m_later;
    std::chrono::steady_clock::time_point m_lastRead; ///< of the books; on the thread
    std::map<std::string, double> m_start;            ///< equity at the start, by account; on the thread
    bool m_bEnd = false;
    std::thread m_thread; ///< last member: it uses all others
};

} // namespace desk
