#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/paper/PaperRecords.h"
#include "desk/paper/TrackedMap.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace desk {

/// One price level of a quote and the volume that is still available at it.
struct CBookLevel {
    CMoney m_nPrice = 0;
    std::int64_t m_nVolume = 0;
};

/// The volume that the latest quote of an instrument still offers.
struct CBookSides {
    std::vector<CBookLevel> m_buy;  ///< best first
    std::vector<CBookLevel> m_sell; ///< best first
};

/// The usable levels of a quote. Levels without a volume or without a usable price are left out.
CBookSides sidesOf(const CQuoteEntry& quote);

/// The broker's state in memory. A change edits it and ends with keep or rollBack. One store transaction
/// writes the edits of one change, which may be several commands. Not thread-safe: the broker's mutex guards
/// it.
class CPaperBook {
public:
    using CPositionKey = std::tuple<std::string, std::string, EPositionSide>; ///< account, instrument
    using CDebtKey = std::pair<std::string, std::string>; ///< account, instrument or empty for money

    struct CCounters {
        int m_nLastOrder = 0;
        int m_nLastFill = 0;
        std::int64_t m_nLastEvent = 0;
        std::string m_strTradingDay; ///< "yyyyMMdd"; empty: not known yet
    };

    CTrackedMap<std::string, CPaperFunds> m_funds;
    CTrackedMap<CPositionKey, CPaperPosition> m_positions;
    CTrackedMap<CDebtKey, CPaperDebt> m_debts;
    CTrackedMap<int, CPaperTask> m_tasks;
    CTrackedMap<int, CPaperOrder> m_orders;
    CTrackedMap<int, CPaperFill> m_fills;
    CTrackedMap<std::string, CBookSides> m_sides; ///< in memory only
    std::map<std::string, CMoney> m_creditLimits; ///< from the configuration, by account; in memory only
    CCounters m_counters;
    std::vector<CBrokerEvent> m_events; ///< events of the current change

    /// Reserves the number of the next task. The number is used up even if no task is created. Any thread.
    int reserveTask() { return ++m_nLastTask; }
    /// The largest number of a task so far; 0 without one.
    int lastTask() const { return m_nLastTask; }
    /// New tasks get larger numbers than this one.
    void knowTask(int id) { m_nLastTask = std::max(m_nLastTask.load(), id); }
    /// `id` must be a reserved number.
    CPaperTask& newTask(int id, std::int64_t reference, const std::string& remark);
    CPaperOrder& newOrder(int task);
    /// The position of the order's account and instrument on a side. Created if missing.
    CPaperPosition& editPosition(const CPaperOrder& order, EPositionSide side);
    /// The account's debt in the instrument, or in money if `stock` is empty. Created if missing.
    CPaperDebt& editDebt(const std::string& account, const std::string& stock);
    /// Adds a fill and its event.
    void addFill(const CPaperOrder& order, CMoney price, int volume);
    /// Sets the order's time and adds an event with its state.
    void announce(CPaperOrder& order);

    /// Makes a waiting order of the present change known to resting().
    void addResting(const CPaperOrder& order);
    /// Ids of the waiting orders of an instrument, in time priority: the orders that waited at the last
    /// keep, then the orders added since. Some may not wait any more.
    std::vector<int> resting(const std::string& stockKey) const;
    /// Ids of a task's orders as of the last keep.
    std::vector<int> ordersOfTask(int task) const;

    void keep();
    void rollBack();

private:
    CBrokerEvent& newEvent(const CPaperOrder& order);

    std::map<std::string, std::set<int>> m_resting;
    std::map<int, std::vector<int>> m_taskOrders;
    CCounters m_kept;
    std::atomic<int> m_nLastTask{0};
};

} // namespace desk
