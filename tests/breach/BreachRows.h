#pragma once

#include "orderservice/func/OrderFuncService.h"
#include "orderservice/service/OrderService.h"
#include "tests/breach/BreachHost.h"
#include "tests/support/Builders.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestSocket.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace breach {

/// The real service with a strategy for each family, and function trading, on a host that breaks its
/// contract.
class CBreachRun {
public:
    CBreachRun();
    ~CBreachRun();

    static TC::COrderService& service() { return *TC::COrderService::instance(); }

    // Each of these makes the library call other operations of the host.
    void load();
    void place(const TC::COrderParam& order) { service().placeorder(order); }
    /// A buy order with the given number.
    static TC::COrderParam order(int channel, int number = 23, double price = 10.5, int volume = 100);
    void start(int channel);
    void drop(const std::string& bytes);
    /// Starts the socket strategy, sends it a line and stores the answer in `reply`.
    void ask(const std::string& line);
    void cancel() { service().cancelOrder(7); }
    void saveSettings();
    void exchange();
    /// Makes a function call. `hostError` gets the error that the call threw.
    void call(const std::string& func, const std::string& param, const std::string& algoParam = {});
    void attempt(const std::function<void(TC::COrderFuncService&)>& act);

    /// Ends the service and starts a new one.
    void renewService();
    /// The same for function trading. `hostError` gets the error of its start.
    void renewFunctions();
    /// Waits until the service's thread has processed its queue. Calls no operation of the host.
    void waitForService();
    std::size_t commandCount() const;
    bool waitForCommands(std::size_t count);

    CTempFolder folder;
    CBreachHost host;
    std::string reply;      ///< the last reply of the socket
    QString startError;     ///< error of the last start
    int startResult = 0;    ///< result of the last start
    bool hasThrown = false; ///< saveSettings threw an exception
    std::string hostError;  ///< of the last function call; empty if it threw none

private:
    void addStrategy(int channel, TC::EOrderStrategyTradeType family, bool isRunning = true);

    const unsigned short m_nPort = freePort();
};

/// An operation of the host, and how to make the library call it.
struct CBreachRow {
    const char* m_pszOperation;
    void (*m_pfnReach)(CBreachRun& run);
    /// Sets the host up before the first load; may be null.
    void (*m_pfnPrepare)(CBreachRun& run) = nullptr;
    bool m_bLoads = false;      ///< the first load already calls the operation
    bool m_bDrops = false;      ///< afterwards the service drops all orders
    bool m_bOnlyThrows = false; ///< the caller of the library gets the error, and no message is shown
};

extern const std::vector<CBreachRow> kBreachRows;

} // namespace breach
