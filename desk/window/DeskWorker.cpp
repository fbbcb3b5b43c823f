#include "desk/window/DeskWorker.h"

#include "orderservice/base/Thread.h"

#include <chrono>
#include <exception>
#include <memory>
#include <utility>

namespace desk {
namespace {

constexpr std::chrono::milliseconds kPeriod(500);

} // namespace

CDeskWorker::CDeskWorker(CPaperBroker& broker, const IQuoteSource& quotes,
                         std::vector<CInstrumentEntry> instruments, CWindowFeed& feed)
    : m_broker(broker), m_quotes(quotes), m_instruments(std::move(instruments)), m_feed(feed) {
    readBooks();
    m_thread = std::thread([this] { work(); });
}

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

void CDeskWorker::postLater(std::function<void()> action) {
    const std::lock_guard lock(m_mutex);
    m_later.push_back(std::move(action));
}

void CDeskWorker::work() {
    utils::setThreadName("window");
    for (bool isEnd = false; !isEnd;) {
        std::deque<std::function<void()>> actions;
        isEnd = takeActions(actions);
        for (const auto& action : actions) {
            carryOut(action);
            if (std::chrono::steady_clock::now() - m_lastRead >= kPeriod) carryOut([this] { readBooks(); });
        }
        carryOut([this] { readBooks(); });
    }
}

/// Waits for actions, for half a second at most. Returns whether the thread ends after them.
bool CDeskWorker::takeActions(std::deque<std::function<void()>>& actions) {
    std::unique_lock lock(m_mutex);
    const bool isWoken = m_changed.wait_for(lock, kPeriod, [this] { return m_bEnd || !m_actions.empty(); });
    actions.swap(m_actions);
    if (!isWoken) actions.swap(m_later);
    return m_bEnd;
}

/// An exception must not end the process: orders are on their way.
void CDeskWorker::carryOut(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& error) {
        m_feed.addMessage(CFeedMessage::EKind::Desk, true, QString::fromUtf8(error.what()));
    }
}

void CDeskWorker::readBooks() {
    auto books = std::make_shared<CBooks>(valueBooks(m_broker.books(), m_quotes));
    for (CValuedAccount& account : books->m_accounts)
        account.m_dStart = m_start.emplace(account.m_funds.m_strAccount, account.m_dEquity).first->second;
    for (const CInstrumentEntry& instrument : m_instruments) {
        if (auto quote = m_quotes.quote(instrument.key())) books->m_quotes.emplace(instrument.key(), *quote);
    }
    m_feed.setBooks(std::move(books));
    m_lastRead = std::chrono::steady_clock::now();
}

} // namespace desk
