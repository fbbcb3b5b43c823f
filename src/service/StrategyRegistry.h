#pragma once

#include "records/OrderParam.h"
#include "records/StrategyParam.h"

#include <QString>
#include <QVector>

#include <functional>
#include <mutex>
#include <optional>

namespace TC {

class CSocketListeners;

/// The user's strategies behind one mutex: adding, changing, removing, starting and stopping them. The map is
/// the host's; it is bound once a user is logged in, and what changes here is saved with the user's
/// configuration. Any thread; results as COrderService documents them.
class CStrategyRegistry {
public:
    /// Called with the mutex held after each start and stop; the argument is hasRunning().
    using CStatusListener = std::function<void(bool)>;

    CStrategyRegistry(CStatusListener listener, CSocketListeners& listeners)
        : m_onStatus(std::move(listener)), m_listeners(listeners) {}

    /// Guards the map. Recursive: who holds it may call every operation here.
    std::recursive_mutex& mutex() { return m_mutex; }

    void bind(COrderStrategyMap* strategies);
    /// The bound map or null; only with the mutex held.
    COrderStrategyMap* strategies() { return m_pStrategies; }

    int add(EOrderStrategyType type);
    int update(const COrderStrategyParam& param);
    int remove(int id);
    int start(int id, QString& error, bool showMsg);
    int stop(int id, QString& error);
    COrderStrategyParam* find(int id);
    /// Starts what the configuration remembers as running; what fails stays stopped.
    void restartRemembered(bool showMsg);

    COrderStrategyMap copy();
    std::optional<COrderStrategyParam> copyOne(int id);
    /// Copies of the strategies that the orders are meant for, so that they can be worked on without the
    /// mutex.
    COrderStrategyMap copyFor(const QVector<COrderParam>& orders);
    bool hasRunning() const;
    QString statusBarTip();
    void visit(const std::function<void(int, const COrderStrategyParam&)>& visit);

private:
    int nextId() const;
    bool startChecked(COrderStrategyParam& strategy, QString& error);
    bool openSource(const COrderStrategyParam& strategy, QString& error);

    std::recursive_mutex m_mutex;
    COrderStrategyMap* m_pStrategies = nullptr;
    CStatusListener m_onStatus;
    CSocketListeners& m_listeners;
};

} // namespace TC
