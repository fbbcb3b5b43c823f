#pragma once

#include "desk/window/Feed.h"
#include "desk/window/Tables.h"

#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace desk {

/// Counts the orders that the window has seen: by task, those that wait, and the rejections that the user has
/// not seen. Main thread only.
class CTradeBoard {
public:
    /// Takes the orders and tasks of a batch. Returns the tasks that have changed.
    std::vector<CTaskState> take(const CFeedBatch& batch);

    struct CWaiting {
        std::string m_strAccount;
        int m_nTask = 0;
    };
    /// The orders that wait, by order.
    const std::map<int, CWaiting>& waiting() const { return m_waiting; }
    /// The number of accounts that have waiting orders.
    int waitingAccounts() const;

    /// The rejected orders that the user has not seen, oldest first.
    const std::vector<int>& unseen() const { return m_unseen; }
    int unseenRejections() const { return static_cast<int>(m_unseen.size()); }
    void markSeen() { m_unseen.clear(); }
    /// The rejections of earlier runs are not news.
    void setStarted() { m_bStarted = true; }

private:
    void count(CTaskState& task, EOrderStatus status, int change);

    std::unordered_map<int, EOrderStatus> m_states; ///< of all orders
    std::unordered_map<int, CTaskState> m_tasks;
    std::map<int, CWaiting> m_waiting;
    std::vector<int> m_unseen;
    bool m_bStarted = false;
};

/// Remembers when each quote changed last while the window was open. Main thread only.
class CQuoteTimes {
public:
    void take(const std::string& stockKey, const CQuoteEntry& quote);
    /// From now on, a quote that was not known is a change.
    void setStarted() { m_bStarted = true; }
    /// ISO 8601; empty if the quote has not changed.
    QString timeOf(const std::string& stockKey) const;

private:
    struct CKnown {
        CQuoteEntry m_quote;
        QString m_strTime;
    };
    std::unordered_map<std::string, CKnown> m_quotes;
    bool m_bStarted = false;
};

} // namespace desk
