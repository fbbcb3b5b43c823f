#pragma once

#include "desk/paper/PaperRecords.h"
#include "desk/window/Books.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace desk {

/// A message for the user, as the window shows it.
struct CFeedMessage {
    enum class EKind { Service, Desk, Refusal, File, Incident };
    std::int64_t m_nNumber = 0; ///< 1, 2, 3 and so on
    QString m_strTime;          ///< local, hh:mm:ss.zzz
    EKind m_eKind = EKind::Service;
    bool m_bWarning = false;
    QString m_strText;
};

/// What has happened since the last batch, at most CWindowFeed::kBatch of each kind.
struct CFeedBatch {
    std::vector<CPaperOrder> m_orders; ///< the latest state of each order
    std::vector<CBrokerEvent> m_fills;
    std::vector<CPaperTask> m_tasks;
    std::vector<CFeedMessage> m_messages;
    std::vector<std::string> m_journal;    ///< lines without their newlines
    std::shared_ptr<const CBooks> m_books; ///< the latest; null if no new books have come
    std::int64_t m_nNewOrders = 0;         ///< number of orders that appeared since the last batch
    std::size_t m_nDropped = 0;            ///< messages and journal lines that were dropped before it
    std::size_t m_nWaitingTrades = 0;      ///< orders, fills and tasks that wait for the next batches
};

/// Collects what happens on all threads for the window's thread. Writers copy under the feed's own lock and
/// never wait for the window. Any thread.
///
/// If the window cannot follow, the oldest messages and journal lines are dropped, notes before warnings; the
/// journal's file has the records. Their number is in the next batch. Orders and fills are never dropped: an
/// order that waits here is replaced by its later state.
class CWindowFeed {
public:
    /// The largest number of entries of one kind in a batch. It bounds the time that the window's thread
    /// needs.
    static constexpr std::size_t kBatch = 300;
    /// The largest number of messages and of journal lines that wait.
    static constexpr std::size_t kMaxWaiting = 5000;

    void addEvent(const CBrokerEvent& event);
    void addOrder(const CPaperOrder& order);
    void addTask(CPaperTask task);
    void addMessage(CFeedMessage::EKind kind, bool isWarning, const QString& text);
    /// Whole lines, each with its newline. The record of a command also adds its task, which `take` reads:
    /// the caller has the journal locked.
    void addJournalLines(const std::string& lines);
    void setBooks(std::shared_ptr<const CBooks> books);

    /// The window's thread, at most 20 times a second.
    CFeedBatch take();
    /// Nobody reads the feed any more: from now on it drops everything.
    void end();

private:
    void keepOrder(const CPaperOrder& order);
    std::vector<std::string> takeBatch(CFeedBatch& batch);
    void dropMessage();

    std::mutex m_mutex;
    std::deque<CPaperOrder> m_orders;
    std::unordered_map<int, std::int64_t> m_waiting; ///< numbers of the orders in m_orders, by order
    std::int64_t m_nFirstOrder = 0;                  ///< number of the first order in m_orders
    std::int64_t m_nNewOrders = 0;
    int m_nLastOrder = 0;
    std::deque<CBrokerEvent> m_fills;
    std::deque<CPaperTask> m_tasks;
    std::deque<std::string> m_commands; ///< journal lines whose tasks are not read yet
    std::deque<CFeedMessage> m_messages;
    std::int64_t m_nLastMessage = 0;
    std::size_t m_nDropped = 0;
    std::deque<std::string> m_journal;
    std::shared_ptr<const CBooks> m_books;
    bool m_bEnded = false;
};

/// The place where the value of the key begins in a line of the journal; npos if the line has no such key.
/// Keys of nested objects are found too; the first one is used.
std::size_t journalValue(const std::string& line, const char* key);
/// The task of a command's record in the journal. False if the line is not the record of a command that has a
/// task.
bool readTask(const std::string& journalLine, CPaperTask& task);
/// The text of a key of a journal line, such as the kind; empty if the line does not have the key.
std::string journalText(const std::string& line, const char* key);

} // namespace desk
