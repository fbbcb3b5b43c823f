#include "desk/window/Feed.h"

#include "orderservice/base/Clock.h"

#include <QDateTime>
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

/// The position behind `"key":`, or npos. Keys of nested objects are found too; the first one is used.
std::size_t valueOf(const std::string& line, const char* key) {
    const std::string name = '"' + std::string(key) + "\":";
    const std::size_t found = line.find(name);
    return found == std::string::npos ? found : found + name.size();
}

QString timeNow() {
    return QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
}

} // namespace

std::string journalText(const std::string& line, const char* key) {
    const std::size_t begin = valueOf(line, key);
    if (begin == std::string::npos || line.compare(begin, 1, "\"") != 0) return {};
    std::size_t end = begin + 1;
    while (end < line.size() && line[end] != '"')
        end += line[end] == '\\' ? 2 : 1;
    if (end >= line.size()) return {};
    const QByteArray list = '[' + QByteArray::fromStdString(line.substr(begin, end + 1 - begin)) + ']';
    return QJsonDocument::fromJson(list).array().at(0).toString().toStdString();
}

bool readTask(const std::string& line, CPaperTask& task) {
    if (line.compare(0, 17, R"({"kind":"command")") != 0) return false;
    const std::size_t number = valueOf(line, "task");
    task.m_nId = number == std::string::npos ? 0 : std::atoi(line.c_str() + number);
    if (task.m_nId == 0) return false;
    const std::size_t seq = valueOf(line, "seq");
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
    m_nLastOrder = std::max(m_nLastOrder, order.m_nId);
    keepOrder(order);
}

void CWindowFeed::addTask(CPaperTask task) {
    const std::lock_guard lock(m_mutex);
    m_tasks.push_back(std::move(task));
}

void CWindowFeed::addMessage(CFeedMessage::EKind kind, bool isWarning, const QString& text) {
    const QString time = timeNow();
    const std::lock_guard lock(m_mutex);
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
    std::vector<std::string> all;
    std::vector<CPaperTask> tasks;
    for (std::size_t begin = 0; begin < lines.size();) {
        const std::size_t end = std::min(lines.find('\n', begin), lines.size());
        all.push_back(lines.substr(begin, end - begin));
        CPaperTask task;
        if (readTask(all.back(), task)) tasks.push_back(std::move(task));
        begin = end + 1;
    }
    const std::lock_guard lock(m_mutex);
    std::move(all.begin(), all.end(), std::back_inserter(m_journal));
    std::move(tasks.begin(), tasks.end(), std::back_inserter(m_tasks));
    for (; m_journal.size() > kMaxWaiting; ++m_nDropped)
        m_journal.pop_front();
}

void CWindowFeed::setBooks(std::shared_ptr<const CBooks> books) {
    const std::lock_guard lock(m_mutex);
    m_books = std::move(books);
}

CFeedBatch CWindowFeed::take() {
    const std::lock_guard lock(m_mutex);
    CFeedBatch batch;
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
    batch.m_nWaiting =
        m_orders.size() + m_fills.size() + m_tasks.size() + m_messages.size() + m_journal.size();
    return batch;
}

} // namespace desk
