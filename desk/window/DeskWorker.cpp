#include "desk/window/DeskWorker.h"

#include <chrono>
#include <memory>
#include <utility>

namespace desk {
namespace {

constexpr std::chrono::milliseconds kPeriod(500);

} // namespace

CDeskWorker::CDeskWorker(CPaperBroker& broker, const IQuoteSource& quotes,
                         std::vector<CInstrumentEntry> instruments, CWindowFeed& feed)
    : m_broker(broker), m_quotes(quotes), m_instruments(std::move(instruments)), m_feed(feed),
      m_thread([this] { work(); }) {}

CDeskWorker::~CDeskWorker() {
    {
        const std::lock_guard lock(m_mutex);
        m_bEnd = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void CDeskWorker::post(std::function<void()> action) {
    {
        const std::lock_guard lock(m_mutex);
        m_actions.push_back(std::move(action));
    }
    m_changed.notify_all();
}

void CDeskWorker::work() {
    for (bool isEnd = false; !isEnd;) {
        std::vector<std::function<void()>> actions;
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait_for(lock, kPeriod, [this] { return m_bEnd || !m_actions.empty(); });
            actions.swap(m_actions);
            isEnd = m_bEnd;
        }
        for (const auto& action : actions)
            action();
        readBooks();
    }
}

void CDeskWorker::readBooks() {
    auto books = std::make_shared<CBooks>(
        valueBooks(m_broker.funds(), m_broker.positions(), m_broker.debts(), m_quotes));
    for (const CInstrumentEntry& instrument : m_instruments) {
        if (auto quote = m_quotes.quote(instrument.key())) books->m_quotes.emplace(instrument.key(), *quote);
    }
    m_feed.setBooks(std::move(books));
}

} // namespace desk
