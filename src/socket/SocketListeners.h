#pragma once

#include "orderservice/gates/OrderGate.h"
#include "orderservice/gates/StrategyRegistry.h"
#include "orderservice/records/SocketServerParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QMap>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace TC {

class COrderCredit;
class COrderSocketServerWrapper;

/// The listeners of the socket strategies. The key is the ip:port text exactly as entered. Strategies with
/// the same text and the same login share one listener. All operations except joinAll are called with the
/// registry's mutex held. Only joinAll waits for a running listener's thread.
class CSocketListeners {
public:
    /// Gate and registry must outlive the listeners' threads. closeAll and joinAll end these threads.
    CSocketListeners(IOrderGate& gate, IStrategyRegistry& registry);
    virtual ~CSocketListeners();
    CSocketListeners(const CSocketListeners&) = delete;
    CSocketListeners& operator=(const CSocketListeners&) = delete;

    /// Adds the strategy to the listener of its source; starts the listener if there is none. If false,
    /// `error` has the reason.
    bool join(const COrderStrategyParam& strategy, QString& error);
    /// Removes the strategy from its listener; the last strategy closes it. If false, `error` has the reason.
    bool leave(const COrderStrategyParam& strategy, QString& error);

    /// Closes all listeners.
    void closeAll();
    /// Waits for the threads of closed listeners. The caller must not hold the registry's mutex, because a
    /// thread may wait for it. Call it only when join is not called any more.
    void joinAll();

protected:
    /// The step of leave and closeAll that stops a listener. If it throws, the listener stays on the list.
    virtual void stopListener(COrderSocketServerWrapper& wrapper);

private:
    void open(const COrderStrategyParam& strategy, QString& error);
    void startThread(boost::shared_ptr<COrderSocketServerWrapper> wrapper);
    void share(const COrderStrategyParam& strategy, QString& error);
    void close(QString source); ///< by value: the caller's text may be destroyed during the call
    void joinFinished();

    IOrderGate& m_gate;
    IStrategyRegistry& m_registry;
    const std::shared_ptr<COrderCredit> m_credit; ///< shared by all listeners: they use one queue
    QMap<QString, boost::shared_ptr<COrderSocketServerWrapper>> m_socketServers;
    QMap<QString, CFutrueSocketServerParam> m_socketParams;

    struct CListenerThread {
        std::thread thread;
        std::shared_ptr<std::atomic<bool>> isDone;
    };
    std::vector<CListenerThread> m_threads; ///< includes closed listeners that are still ending
};

} // namespace TC
