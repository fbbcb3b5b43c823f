#pragma once

#include "service/OrderService.h"
#include "tests/breach/BreachHost.h"
#include "tests/support/Builders.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestSocket.h"

#include <gtest/gtest.h>

#include <string>

namespace breach {

/// The real service on a host that breaks its contract, with a strategy for each family.
class CBreachRoad {
public:
    CBreachRoad();
    ~CBreachRoad();

    static TC::COrderService& service() { return *TC::COrderService::instance(); }

    // What reaches the operations of the host, one way each.
    void load();
    void place(const TC::COrderParam& order) { service().placeorder(order); }
    /// A buying order with the given number.
    static TC::COrderParam order(int channel, int number = 23, double price = 10.5, int volume = 100);
    void start(int channel);
    void drop(const std::string& bytes);
    /// Starts the socket strategy and sends it a line, which is answered.
    void ask(const std::string& line);
    void cancel() { service().cancelOrder(7); }
    void saveSettings();
    void exchange();

    /// Ends the service and begins with a new one.
    void renewService();
    /// Waits until the service's thread has worked off what was queued. Calls nothing of the host.
    void waitForService();
    std::size_t commandCount() const;
    bool waitForCommands(std::size_t count);

    CTempFolder folder;
    CBreachHost host;
    std::string reply;      ///< the last one of the socket
    QString startError;     ///< of the last start
    int startResult = 0;    ///< of the last start
    bool hasThrown = false; ///< saveSettings let an exception out

private:
    void addStrategy(int channel, TC::EOrderStrategyTradeType family, bool isRunning = true);

    const unsigned short m_nPort = freePort();
};

/// An operation of the host, and what makes the library call it.
struct CBreachRow {
    const char* m_pszOperation;
    void (*m_pfnReach)(CBreachRoad& road);
    /// Sets the host up before the first load; may be null.
    void (*m_pfnPrepare)(CBreachRoad& road) = nullptr;
    bool m_bLoads = false; ///< the first load itself reaches the operation
    bool m_bDrops = false; ///< the service drops all orders from then on
};

extern const std::vector<CBreachRow> kBreachRows;

} // namespace breach
