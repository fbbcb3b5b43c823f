#pragma once

#include "desk/paper/PaperBroker.h"
#include "desk/window/Feed.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace desk {

/// A thread for what could keep the window's thread waiting: it reads the books of the broker twice a second
/// for the feed, and carries out cancels. Broker, quotes and feed must outlive it.
class CDeskWorker {
public:
    CDeskWorker(CPaperBroker& broker, const IQuoteSource& quotes, std::vector<CInstrumentEntry> instruments,
                CWindowFeed& feed);
    /// Carries out the actions that wait, and ends the thread.
    ~CDeskWorker();
    CDeskWorker(const CDeskWorker&) = delete;
    CDeskWorker& operator=(const CDeskWorker&) = delete;

    /// Calls the action on the thread. Actions are called in their order. Any thread.
    void post(std::function<void()> action);

private:
    void work();
    void readBooks();

    CPaperBroker& m_broker;
    const IQuoteSource& m_quotes;
    const std::vector<CInstrumentEntry> m_instruments;
    CWindowFeed& m_feed;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::function<void()>> m_actions;
    bool m_bEnd = false;
    std::thread m_thread; ///< last member: it uses all others
};

} // namespace desk
