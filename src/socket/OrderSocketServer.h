#pragma once

#include "orderservice/gates/OrderGate.h"
#include "orderservice/gates/StrategyRegistry.h"
#include "orderservice/net/NetServer.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/records/RecentCodes.h"
#include "orderservice/socket/ConnData.h"
#include "orderservice/socket/LoginDelays.h"
#include "orderservice/socket/LoopPost.h"
#include "orderservice/socket/OrderCredit.h"
#include "orderservice/socket/RefusalTally.h"
#include "orderservice/socket/SocketGuard.h"

#include <boost/asio/steady_timer.hpp>
#include <boost/smart_ptr/owner_less.hpp>

#include <QSet>

#include <limits>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace TC {

struct CSocketVerb;

/// Serves the order protocol on one listener: greeting, lines, login, and the two order commands, whose
/// orders go to the gate. docs/socket-protocol.md describes the protocol byte by byte.
///
/// All callbacks run on the listener's thread, one at a time. So the commands of all connections are served
/// strictly one after the other. Must be held by a shared pointer. Gate and registry must outlive the
/// listener's thread.
class COrderSocketServer : public net::NetServer {
public:
    /// An empty user means that no login is needed. User and password are UTF-8 and compared byte by byte.
    /// source: the address as entered in the strategy, for the audit. credit: shared with all listeners that
    /// hand their orders to the same service; null: there are no other listeners.
    COrderSocketServer(boost::asio::io_service& io, std::string ip, unsigned short port, std::string user,
                       std::string pass, IOrderGate& gate, IStrategyRegistry& registry, QString source,
                       std::shared_ptr<COrderCredit> credit = nullptr);
    ~COrderSocketServer() override;

    /// Also reports to the audit the refusals that were only counted. Bytes that held connections have sent
    /// are not served any more.
    int stop() override;

    /// Makes the listener check utils::getTime() soon, like its timers do when they expire. Call it after
    /// that clock was set to another time. Any thread.
    void clockMoved();

    void onConnected(net::NetConnectionPtr conn) override;
    void onDisconnected(int code, net::NetConnectionPtr conn) override;
    void onDataReceived(const std::vector<unsigned char>& data, int length,
                        net::NetConnectionPtr conn) override;
    void onReleased(net::NetConnectionPtr conn) override;

    /// Ids of the strategies on this listener. Guarded by the registry's mutex. The listener's own thread
    /// never uses them.
    QSet<int>& strategyIds() { return m_strategyIds; }

    /// Number of open connections. Call on the listener's thread.
    std::size_t connectionCount() const { return m_connections.size(); }

private:
    friend struct CSocketVerb;
    using ConnDataPtr = boost::shared_ptr<ConnData>;
    using CReply = std::vector<unsigned char>;

    enum class ENext {
        GoOn,
        Held, ///< the line stays in the buffer until the connection is released
        Closed
    };
    static constexpr double kNoDeadline = std::numeric_limits<double>::max();

    void takeLines(const net::NetConnectionPtr& conn, ConnData& data);
    ENext takeLine(std::string_view line, const net::NetConnectionPtr& conn, ConnData& data);
    void stopAtLineFeed(const net::NetConnectionPtr& conn);
    ENext refuse(const net::NetConnectionPtr& conn, const char* word);
    void forget(const net::NetConnectionPtr& conn);
    COrderCredit::CAccountPtr openAccount(const net::NetConnectionPtr& conn);
    ENext admitOrder(const net::NetConnectionPtr& conn, ConnData& data);
    ENext admitPass(const net::NetConnectionPtr& conn, ConnData& data);
    void lookAtClock();
    void watchDelays();
    COrderCredit::CTicket charge(const ConnData& data, int lines) const;
    void holdTicket(COrderCredit::CTicket ticket) noexcept;
    void startLoginClock(ConnData& data);
    void logOut(ConnData& data);
    void watchConnections();
    void closeSilent();
    void reportRefusal(const net::NetConnection& conn, const char* word);
    void reportCountedRefusals() noexcept;
    void reportDoor(EDoorEvent event, const QString& peer, const std::string& cause) const;

    void onUser(std::string_view argument, ConnData& data, CReply& reply);
    void onPass(std::string_view argument, ConnData& data, CReply& reply);
    void onPlaceOrder(std::string_view argument, ConnData& data, CReply& reply);
    void onCancel(std::string_view argument, ConnData& data, CReply& reply);
    void placeOrder(std::string_view argument, const ConnData& data, CReply& reply);
    bool mustLogIn(const ConnData& data, CReply& reply) const;

    const std::string m_strUser;
    const std::string m_strPass;
    CReply m_reply; ///< for the current line: a line allocates no memory for its reply
    std::map<net::NetConnectionPtr, ConnDataPtr, boost::owner_less<net::NetConnectionPtr>> m_connections;
    QSet<int> m_strategyIds;

    CRecentCodes m_codes; ///< used on the listener's thread only
    IOrderGate& m_gate;
    IStrategyRegistry& m_registry;
    const QString m_strSource;
    const CSocketGuard m_guard;
    boost::asio::steady_timer m_watch; ///< runs while a client is not logged in yet or an order waits
    bool m_bWatching = false;
    CRefusalTally m_refusals;
    bool m_bStuck = false;                ///< no connection is served any more, also not after stop
    double m_dNextDeadline = kNoDeadline; ///< earliest time when a login may be overdue

    const std::shared_ptr<COrderCredit> m_credit;
    const std::shared_ptr<CLoopPost> m_loop;
    CLoginDelays m_loginDelays;
    boost::asio::steady_timer m_delayWatch; ///< runs while a `pass` waits
};

} // namespace TC
