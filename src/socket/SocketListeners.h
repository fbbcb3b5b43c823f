#pragma once

#include "gates/OrderGate.h"
#include "gates/StrategyRegistry.h"
#include "records/SocketServerParam.h"
#include "records/StrategyParam.h"

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

/// The listeners of the socket strategies, by the ip:port text exactly as entered. Strategies that name the
/// same text with the same login share one. Every operation but joinAll is called with the registry's mutex
/// held, and none but joinAll waits for a listener's thread.
class CSocketListeners {
public:
    /// Gate and registry outlive the listeners' threads, which closeAll and joinAll end.
    CSocketListeners(IOrderGate& gate, IStrategyRegistry& registry);
    virtual ~CSocketListeners();
    CSocketListeners(const CSocketListeners&) = delete;
    CSocketListeners& operator=(const CSocketListeners&) = delete;

    /// Puts the strategy on the listener of its source and starts that where there is none. False leaves the
    /// reason.
    bool join(const COrderStrategyParam& strategy, QString& error);
    /// Takes the strategy off its listener; the last one closes it. False leaves the reason.
    bool leave(const COrderStrategyParam& strategy, QString& error);

    /// Closes all listeners.
    void closeAll();
    /// Waits for the threads of closed listeners. Without the registry's mutex, which a thread may want, and
    /// only where nothing joins any more.
    void joinAll();

protected:
    /// The step of leave and closeAll that ends a listener. One that throws leaves it as it was.
    virtual void stopListener(COrderSocketServerWrapper& wrapper);

private:
    void open(const COrderStrategyParam& strategy, QString& error);
    void startThread(boost::shared_ptr<COrderSocketServerWrapper> wrapper);
    void share(const COrderStrategyParam& strategy, QString& error);
    void close(QString source); ///< by value: it outlives the record that the caller has it from
    void joinFinished();

    IOrderGate& m_gate;
    IStrategyRegistry& m_registry;
    const std::shared_ptr<COrderCredit> m_credit; ///< of all listeners: they share one queue
    QMap<QString, boost::shared_ptr<COrderSocketServerWrapper>> m_socketServers;
    QMap<QString, CFutrueSocketServerParam> m_socketParams;

    struct CListenerThread {
        std::thread thread;
        std::shared_ptr<std::atomic<bool>> isDone;
    };
    std::vector<CListenerThread> m_threads; ///< also of listeners that were closed and are still ending
};

} // namespace TC
