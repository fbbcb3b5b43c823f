#include "desk/window/TradeBoard.h"

#include "orderservice/base/Clock.h"

#include <algorithm>

namespace desk {
namespace {

bool isSame(const CQuoteEntry& a, const CQuoteEntry& b) {
    const auto isSameLevel = [](const CQuoteLevel& one, const CQuoteLevel& other) {
        return one.price == other.price && one.volume == other.volume;
    };
    return a.last == b.last && std::equal(a.buy.begin(), a.buy.end(), b.buy.begin(), isSameLevel) &&
           std::equal(a.sell.begin(), a.sell.end(), b.sell.begin(), isSameLevel);
}

} // namespace

void CTradeBoard::count(CTaskState& task, EOrderStatus status, int change) {
    task.m_nOrders += change;
    switch (status) {
    case EOrderStatus::Working:
    case EOrderStatus::PartFilled:
        task.m_nWaiting += change;
        break;
    case EOrderStatus::Filled:
        task.m_nFilled += change;
        break;
    case EOrderStatus::Cancelled:
        task.m_nCancelled += change;
        break;
    case EOrderStatus::Rejected:
        task.m_nRejected += change;
        break;
    }
}

std::vector<CTaskState> CTradeBoard::take(const CFeedBatch& batch) {
    std::set<int> changed;
    for (const CPaperTask& task : batch.m_tasks) {
        m_tasks[task.m_nId].m_task = task;
        changed.insert(task.m_nId);
    }
    for (const CPaperOrder& order : batch.m_orders) {
        CTaskState& task = m_tasks[order.m_nTask];
        task.m_task.m_nId = order.m_nTask;
        if (task.m_task.m_strTime.empty()) task.m_task.m_strTime = order.m_strTime;
        const auto known = m_states.find(order.m_nId);
        if (known != m_states.end()) count(task, known->second, -1);
        const bool isNewRejection = order.m_eStatus == EOrderStatus::Rejected &&
                                    (known == m_states.end() || known->second != EOrderStatus::Rejected);
        if (isNewRejection && m_bStarted) m_unseen.push_back(order.m_nId);
        count(task, order.m_eStatus, 1);
        m_states[order.m_nId] = order.m_eStatus;
        if (order.isOpen())
            m_waiting[order.m_nId] = {order.m_strAccount, order.m_nTask};
        else
            m_waiting.erase(order.m_nId);
        changed.insert(order.m_nTask);
    }
    std::vector<CTaskState> result;
    for (const int task : changed)
        result.push_back(m_tasks[task]);
    return result;
}

int CTradeBoard::waitingAccounts() const {
    std::set<std::string> accounts;
    for (const auto& [order, waiting] : m_waiting)
        accounts.insert(waiting.m_strAccount);
    return static_cast<int>(accounts.size());
}

void CQuoteTimes::take(const std::string& stockKey, const CQuoteEntry& quote) {
    const auto known = m_quotes.find(stockKey);
    const bool isNew = known == m_quotes.end();
    if (!isNew && isSame(known->second.m_quote, quote)) return;
    CKnown& entry = isNew ? m_quotes[stockKey] : known->second;
    entry.m_quote = quote;
    if (!isNew || m_bStarted) entry.m_strTime = QString::fromStdString(utils::currentTimeText());
}

QString CQuoteTimes::timeOf(const std::string& stockKey) const {
    const auto found = m_quotes.find(stockKey);
    return found == m_quotes.end() ? QString() : found->second.m_strTime;
}

} // namespace desk
