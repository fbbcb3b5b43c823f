#pragma once

#include "orderservice/gates/StrategySource.h"

#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <utility>

namespace TC {

class CSocketListeners;
class CUserConfig;

/// The user's strategies, guarded by one mutex: adds, changes, removes, starts and stops them. The host owns
/// the map, which is bound once a user is logged in. The changes are saved with the user's configuration. Any
/// thread; results as documented in COrderService.
class CStrategyRegistry final : public IStrategySource {
public:
    /// Called after each start and stop, with the mutex held. The argument is hasRunning().
    using CStatusListener = std::function<void(bool)>;

    /// Returns the reason to refuse this version of a strategy, for users; empty if it is accepted. Called
    /// with the mutex held. `all` are the strategies as they are now.
    using CGuard = std::function<QString(const COrderStrategyParam&, const COrderStrategyMap& all)>;

    CStrategyRegistry(CStatusListener listener, CSocketListeners& listeners)
        : m_onStatus(std::move(listener)), m_listeners(listeners) {}

    /// Protects the strategies from changes: it is held during every operation and during each pass of the
    /// file thread. Recursive: the thread that holds it may call every operation here.
    std::recursive_mutex& mutex() { return m_mutex; }

    /// Sets the host's own test of each change and start. There is none by default.
    void setGuard(CGuard guard);

    void bind(COrderStrategyMap* strategies);
    bool isBound() const;
    /// Erases the strategies that `filter` removes from the map it is given, and reports each to the audit.
    /// Their ids stay reserved for this map until the strategy is removed, even if another user is bound in
    /// between.
    void filter(const std::function<void(COrderStrategyMap*)>& filter);

    int add(EOrderStrategyType type);
    int update(const COrderStrategyParam& param);
    int remove(int id);
    int start(int id, QString& error, bool showMsg);
    int stop(int id, QString& error);
    /// The record in the host's map, or null. The pointer is valid until the record is removed.
    COrderStrategyParam* find(int id);
    /// The same for a caller that may write through the pointer at any later time. From then on strategyOf
    /// copies this strategy at each call.
    COrderStrategyParam* findWritable(int id);
    /// Starts the strategies that the configuration remembers as running. If a start fails, the strategy
    /// stays stopped, and the audit gets the reason.
    void restartRemembered(bool showMsg);

    /// Closes the listeners. After that no strategy can be started.
    void closeDoors();
    /// Call it with the mutex held.
    bool isClosing() const { return m_bClosing; }

    COrderStrategyMap copy();
    /// Does not wait for operations or for passes of the file thread.
    COrderStrategyPtr strategyOf(int id) override;
    /// As IStrategyRegistry::revision.
    std::uint64_t revision() const { return m_nRevision; }
    bool hasRunning() const;
    QString statusBarTip();
    void visit(const std::function<void(int, const COrderStrategyParam&)>& visit);

private:
    int nextId() const;
    QString whyRefused(const COrderStrategyParam& strategy);
    bool isStopped(int id);
    void leaveListener(int id);
    bool startGuarded(const COrderStrategyParam& strategy, QString& error);
    bool startChecked(const COrderStrategyParam& strategy, QString& error);
    bool openSource(const CUserConfig& user, const COrderStrategyParam& strategy, QString& error);

    /// Changes one strategy of the map while no thread reads it, and discards its shared copy. Call it with
    /// m_mutex held.
    template<typename Change>
    void change(int id, const Change& change) {
        CShared::node_type discarded; // declared before the lock, so that it is destroyed after the unlock
        const std::lock_guard lock(m_dataMutex);
        ++m_nRevision;
        discarded = m_shared.extract(id);
        change();
    }

    std::recursive_mutex m_mutex;
    /// Guards the map's content for threads that do not hold m_mutex. It is held only briefly. A thread that
    /// needs both locks m_mutex first. No code of the host is called while it is held.
    mutable std::mutex m_dataMutex;
    COrderStrategyMap* m_pStrategies = nullptr;
    using CShared = std::map<int, COrderStrategyPtr>;
    CShared m_shared; ///< copies of strategies that have not changed since; guarded by m_dataMutex
    /// Strategies to which the host has a writable pointer; guarded by m_dataMutex. They stay here until the
    /// end: the pointer stays valid after a change, and also while another user's map is bound.
    std::set<int> m_writable;
    std::atomic<std::uint64_t> m_nRevision{0}; ///< written with m_dataMutex held
    /// Ids of the strategies that were filtered out, for each user's map. The map no longer has them when its
    /// user is bound again. Only the address of the map is used.
    std::map<const COrderStrategyMap*, std::set<int>> m_leftOut;
    CStatusListener m_onStatus;
    CGuard m_guard;
    CSocketListeners& m_listeners;
    bool m_bClosing = false;
};

} // namespace TC
