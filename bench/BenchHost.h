#pragma once

#include "examples/minimal_host/MinimalHost.h"

#include "orderservice/records/StrategyParam.h"

#include <condition_variable>
#include <cstddef>
#include <cstdio>
#include <mutex>
#include <ostream>
#include <string>

namespace bench {

/// Counts commands, and can block the service's thread at the first of them.
class CCountingOrders : public TC::COrderClient {
public:
    void orderCommands(const TC::COrderComandParamPtr& command) override;
    void showTradeError(const QString& text, const QString& title) override;

    /// Makes the next command block until release is called.
    void hold();
    void release();
    /// Blocks until this many commands or refusals have arrived since the last reset.
    void waitFor(int count);
    /// Waits until a command has blocked the service's thread.
    void waitUntilHeld();
    void reset();
    int refusals();

private:
    void count(bool refused);

    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_nArrived = 0;
    int m_nRefused = 0;
    int m_nAwaited = 0;
    bool m_bHold = false;
    bool m_bHeld = false;
};

class CSilentMessages : public TC::CMsgService {
public:
    void showMsg(const QString&, TC::EMsgTypeDef, TC::MsgLevel, bool, bool, const QString&) override {}
};

/// A host that answers at once and prints nothing. Only one object may exist in a process at a time.
class CBenchServices {
public:
    /// intervalMs: the polling interval for files in milliseconds.
    explicit CBenchServices(int intervalMs);
    ~CBenchServices();
    CBenchServices(const CBenchServices&) = delete;
    CBenchServices& operator=(const CBenchServices&) = delete;

    CCountingOrders& orders() { return m_orders; }
    TC::COrderStrategyMap& strategies() { return *m_user.getStrategyMap(); }

private:
    class CUser : public minimal::CUser {
    public:
        int interval = 1;
        int getMinFileServiceInterval() const override { return interval; }
        int getMaxOrderServerNum() const override { return 1000; }
        bool testHintBeforeOrderFlag(int) const override { return false; }
        bool isPriceTypeValid(TC::EPriceType, TC::EOperationType, TC::EQDBrokerType, const std::string&,
                              const std::string&, TC::EOrderType) const override {
            return true;
        }
    };

    std::ostream m_nowhere{nullptr};
    minimal::CMinimalHost m_host{m_nowhere};
    CUser m_user;
    CCountingOrders m_orders;
    CSilentMessages m_messages;
};

/// The order service on this host, with one or more running file strategies.
class CBenchHost {
public:
    /// folder: an existing folder for the order files.
    CBenchHost(int strategies, int intervalMs, const std::string& folder);
    ~CBenchHost();

    CCountingOrders& orders() { return m_services.orders(); }
    /// Gives the first strategy a file of this many stock orders. The file is complete when it appears.
    void dropOrders(int count);
    std::string path(int strategy) const;

private:
    std::string m_strFolder;
    CBenchServices m_services;
};

/// A running file strategy that sends its orders to the account of the host.
TC::COrderStrategyParam stockStrategy(int channel, const std::string& path);

/// Writes a file of plain stock lines. The file is complete when it appears at the path.
void dropStockLines(const std::string& path, int count);

/// Number and volume of the plain stock lines; they buy minimal::kStockKey at minimal::kPrice.
inline constexpr int kStockNumber = 23;
inline constexpr int kStockVolume = 100;

/// Returns the bytes of a file of plain stock lines.
std::string stockLines(int count);

/// Reads such lines with fgets, splits them and converts their numbers. Builds no records. Returns the number
/// of lines.
std::size_t splitLines(std::FILE* stream);

/// Creates a new folder for one benchmark; the caller removes it.
std::string makeFolder();
void removeFolder(const std::string& folder);

} // namespace bench
