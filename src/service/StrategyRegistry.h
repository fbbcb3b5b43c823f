#pragma once

#include "records/StrategyParam.h"

#include <QString>

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>

namespace TC {

class CSocketListeners;
class CUserConfig;

/// The user's strategies behind one mutex: adding, changing, removing, starting and stopping them. The map is
/// the host's; it is bound once a user is logged in, and what changes here is saved with the user's
/// configuration. Any thread; results as COrderService documents them.
class CStrategyRegistry {
public:
    /// Called with the mutex held after each start and stop; the argument is hasRunning().
    using CStatusListener = std::function<void(bool)>;

    /// Why a strategy must not be like this, for people; empty if it may. Called with the mutex held; `all`
    /// are the strategies as they are.
    using CGuard = std::function<QString(const COrderStrategyParam&, const COrderStrategyMap& all)>;

    CStrategyRegistry(CStatusListener listener, CSocketListeners& listeners)
        : m_onStatus(std::move(listener)), m_listeners(listeners) {}

    /// Keeps the strategies still: held for the whole of every operation and of a pass of the file loop.
    /// Recursive: who holds it may call every operation here.
    std::recursive_mutex& mutex() { return m_mutex; }

    /// The host's own test of each change and start; none unless set.
    void setGuard(CGuard guard);

    void bind(COrderStrategyMap* strategies);
    bool isBound() const;
    /// Erases the strategies that `filter` takes out of the map it is given, and tells the audit of each.
    /// Their numbers stay taken for this map, also if another user is bound in between, until the strategy
    /// is removed.
    void filter(const std::function<void(COrderStrategyMap*)>& filter);

    int add(EOrderStrategyType type);
    int update(const COrderStrategyParam& param);
    int remove(int id);
    int start(int id, QString& error, bool showMsg);
    int stop(int id, QString& error);
    COrderStrategyParam* find(int id);
    /// Starts what the configuration remembers as running. A strategy whose start fails stays stopped; the
    /// audit gets the reason.
    void restartRemembered(bool showMsg);

    /// Closes the listeners for good: no strategy starts any more.
    void closeDoors();
    /// With the mutex held.
    bool isClosing() const { return m_bClosing; }

    COrderStrategyMap copy();
    /// A copy of one strategy as it is now. Does not wait for operations and passes.
    std::optional<COrderStrategyParam> copyOne(int id) const;
    bool hasRunning() const;
    QString statusBarTip();
    void visit(const std::function<void(int, const COrderStrategyParam&)>& visit);

private:
    int nextId() const;
    QString whyRefused(const COrderStrategyParam& strategy);
    bool isStopped(int id) const;
    void leaveListener(int id);
    bool startGuarded(const COrderStrategyParam& strategy, QString& error);
    bool startChecked(const COrderStrategyParam& strategy, QString& error);
    bool openSource(const CUserConfig& user, const COrderStrategyParam& strategy, QString& error);

    /// Changes what the map holds, while nobody copies a strategy.
    template<typename Change>
    void change(const Change& change) {
        const std::lock_guard lock(m_dataMutex);
        change();
    }

    std::recursive_mutex m_mutex;
    /// Guards the map's content for those who do not hold m_mutex. Taken for moments, behind m_mutex where
    /// both are; nothing of the host is called under it.
    mutable std::mutex m_dataMutex;
    COrderStrategyMap* m_pStrategies = nullptr;
    /// Numbers of the strategies that were filtered out, for each user's map: the map has lost them when its
    /// user comes back. Only the address is used.
    std::map<const COrderStrategyMap*, std::set<int>> m_leftOut;
    CStatusListener m_onStatus;
    CGuard m_guard;
    CSocketListeners& m_listeners;
    bool m_bClosing = false;
};

} // namespace TC
