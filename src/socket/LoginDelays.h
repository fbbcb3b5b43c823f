#pragma once

#include "orderservice/net/NetConnection.h"
#include "orderservice/socket/ConnData.h"
#include "orderservice/socket/FailedLogins.h"

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace TC {

/// Holds connections whose `pass` has to wait because logins of their address failed. It keeps a pointer to
/// their data and does not own it, so end() must be called for a connection that ends. Used on the listener's
/// thread only.
class CLoginDelays {
public:
    /// Sends the refusal to a connection that may not wait, and closes it.
    using CRefuse = std::function<void(const net::NetConnectionPtr&)>;

    enum class EAnswer {
        GoOn,
        Held,
        Refused ///< all places of the address are taken; the caller refuses the connection
    };

    explicit CLoginDelays(CRefuse refuse) : m_refuse(std::move(refuse)) {}

    void countFailure(const ConnData& data);

    /// Called before a `pass` is checked, and again when the connection is released. A correct password waits
    /// too: otherwise a guesser would see a missing answer as a wrong password and would not wait for it. A
    /// connection that has waited waits longer if other logins of its address failed meanwhile: otherwise
    /// many connections at the same time would share the first, short delay.
    EAnswer admit(const net::NetConnectionPtr& conn, ConnData& data);
    /// Ends the connection's wait, if it waits. Its place is free for another connection.
    void end(const net::NetConnectionPtr& conn, ConnData& data);

    /// Releases the connections whose delay is over.
    void release();
    /// Seconds until release must be called next; empty if no connection waits.
    std::optional<double> secondsToNext() const;

private:
    struct CWaiting {
        net::NetConnectionPtr conn;
        ConnData* data; ///< owned by the connection, valid until end()
    };
    static constexpr double kSweepSeconds = 0.1;

    bool hasPlace(const ConnData& data);
    void dropGone();

    const CRefuse m_refuse;
    CFailedLogins m_failedLogins;
    std::multimap<double, CWaiting> m_waiting; ///< key: when the `pass` is checked next
    double m_dLastSweep = -kSweepSeconds;      ///< when dropGone last checked the connections
};

} // namespace TC
