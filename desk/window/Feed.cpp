#include "desk/window/Feed.h"

#include "orderservice/base/Clock.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace desk {
namespace {

template<typename T>
std::vector<T> takeSome(std::deque<T>& waiting) {
    const auto count = static_cast<std::ptrdiff_t>(std::min(waiting.size(), CWindowFeed::kBatch));
    std::vector<T> taken(std::make_move_iterator(waiting.begin()),
                         std::make_move_iterator(waiting.begin() + count));
    waiting.erase(waiting.begin(), waiting.begin() + count);
    return taken;
}

/// Whether the line of the journal is the record of a command.
bool isCommand(const std::string& line) {
    static const std::string kBegin = R"({"kind":"command")";
    return line.compare(0, kBegin.size(), kBegin) == 0;
}

QString timeNow() {
    const std::string now = utils::currentTimeText();
    return QString::fromStdString(now.substr(now.find('T') + 1));
}

} // namespace

std::size_t journalValue(const std::string& line, const char* key) {
    const std::string name = '"' + std::string(key) + "\":";
    const std::size_t found = line.find(name);
    return found == std::string::npos ? found : found + name.size();
}

std::string journalText(const std::string& line, const char* key) {
    const std::size_t begin = journalValue(line, key);
    if (begin == std::string::npos || line.compare(begin, 1, "\"") != 0) return {};
    std::size_t end = begin + 1;
    while (end < line.size() && line[end] != '"')
        end += line[end] == '\\' ? 2 : 1;
    if (end >= line.size()) return {};
    const QByteArray list = '[' + QByteArray::fromStdString(line.substr(begin, end + 1 - begin)) + ']';
    return QJsonDocument::fromJson(list).array().at(0).toString().toStdString();
}

bool readTask(const std::string& line, CPaperTask& task) {
    if (!isCommand(line)) return false;
    const std::size_t number = journalValue(line, "task");
    task.m_nId = number == std::string::npos ? 0 : std::atoi(line.c_str() + number);
    if (task.m_nId == 0) return false;
    const std::size_t seq = journalValue(line, "seq");
    if (seq != std::string::npos) task.m_nReference = std::atoll(line.c_str() + seq);
    task.m_strTime = journalText(line, "time");
    task.m_strRemark = journalText(line, "remark");
    return true;
}

void CWindowFeed::keepOrder(const CPaperOrder& order) {
    const auto waiting = m_waiting.find(order.m_nId);
    if (waiting != m_waiting.end()) {
        m_orders[static_cast<std::size_t>(waiting->second - m_nFirstOrder)] = order;
        return;
    }
    m_waiting.emplace(order.m_nId, m_nFirstOrder + static_cast<std::int64_t>(m_orders.size()));
    m_orders.push_back(order);
}

void CWindowFeed::addEvent(const CBrokerEvent& event) {
    const std::lock_guard lock(m_mutex);
    if (m_bEnded) return;
    if (event.isFill()) {
        m_fills.push_back(event);
        return;
    }
    if (event.m_order.m_nId > m_nLastOrder) {
        m_nLastOrder = event.m_order.m_nId;
        ++m_nNewOrders;
    }
    keepOrder(event.m_order);
}

void CWindowFeed::addOrder(const CPaperOrder& order) {
    const std::lock_guard lock(m_mutex);
    if (m_bEnded) return;
    m_nLastOrder = std::max(m_nLastOrder, order.m_nId);
    keepOrder(order);
}

void CWindowFeed::addTask(CPaperTask task) {
    const std::lock_guard lock(m_mutex);
    if (!m_bEnded) m_tasks.push_back(std::move(task));
}

void CWindowFeed::addMessage(CFeedMessage::EKind kind, bool isWarning, const QString& text) {
    const QString time = timeNow();
    const std::lock_guard lock(m_mutex);
    if (m_bEnded) return;
    m_messages.push_back({++m_nLastMessage, time, kind, isWarning, text});
    if (m_messages.size() > kMaxWaiting) dropMessage();
}

/// Drops the oldest note, or the oldest warning if there are only warnings.
void CWindowFeed::dropMessage() {
    const auto isNote = [](const CFeedMessage& message) { return !message.m_bWarning; };
    const auto note = std::find_if(m_messages.begin(), m_messages.end(), isNote);
    m_messages.erase(note == m_messages.end() ? m_messages.begin() : note);
    ++m_nDropped;
}

void CWindowFeed::addJournalLines(const std::string& lines) {
    const std::lock_guard lock(m_mutex);
    if (m_bEnded) return;
    for (std::size_t begin = 0; begin < lines.size();) {
        const std::size_t end = std::min(lines.find('\n', begin), lines.size());
        m_journal.push_back(lines.substr(begin, end - begin));
        if (isCommand(m_journal.back())) m_commands.push_back(m_journal.back());
        begin = end + 1;
    }
    for (; m_journal.size() > kMaxWaiting; ++m_nDropped)
        m_journal.pop_front();
}

void CWindowFeed::end() {
    const std::lock_guard lock(m_mutex);
    m_bEnded = true;
    m_orders.clear();
    m_waiting.clear();
    m_fills.clear();
    m_tasks.clear();
    m_commands.clear();
    m_messages.clear();
    m_journal.clear();
    m_books.reset();
}

void CWindowFeed::setBooks(std::shared_ptr<const CBooks> books) {
    const std::lock_guard lock(m_mutex);
    if (!m_bEnded) m_books = std::move(books);
}

CFeedBatch CWindowFeed::take() {
    CFeedBatch batch;
    const std::vector<std::string> commands = takeBatch(batch);
    for (const std::string& line : commands) {
        CPaperTask task;
        if (readTask(line, task)) batch.m_tasks.push_back(std::move(task));
    }
    return batch;
}

/// Returns the commands whose tasks the batch still needs.
std::vector<std::string> CWindowFeed::takeBatch(CFeedBatch& batch) {
    const std::lock_guard lock(m_mutex);
    std::vector<std::string> commands = takeSome(m_commands);
    batch.m_orders = takeSome(m_orders);
    m_nFirstOrder += static_cast<std::int64_t>(batch.m_orders.size());
    for (const CPaperOrder& order : batch.m_orders)
        m_waiting.erase(order.m_nId);
    batch.m_fills = takeSome(m_fills);
    batch.m_tasks = takeSome(m_tasks);
    batch.m_messages = takeSome(m_messages);
    batch.m_journal = takeSome(m_journal);
    batch.m_books = std::exchange(m_books, nullptr);
    batch.m_nDropped = std::exchange(m_nDropped, 0);
    batch.m_nNewOrders = std::exchange(m_nNewOrders, 0);
    batch.m_nWaitingTrades = m_orders.size() + m_fills.size() + m_tasks.size() + m_commands.size();
    return commands;
}

} // namespace desk
