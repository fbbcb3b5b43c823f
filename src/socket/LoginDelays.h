#pragma once

#include "net/NetConnection.h"
#include "socket/ConnData.h"
#include "socket/FailedLogins.h"

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace TC {

/// Holds connections back whose `pass` has to wait because logins of their address failed. Owns nothing of
/// them: a connection that ends must be given to end(). On the listener's thread.
class CLoginDelays {
public:
    /// Answers a connection that may not wait, and closes it.
    using CRefuse = std::function<void(const net::NetConnectionPtr&)>;

    enum class EAnswer {
        GoOn,
        Held,
        Refused ///< by the caller: all places of the address are taken
    };

    explicit CLoginDelays(CRefuse refuse) : m_refuse(std::move(refuse)) {}

    void countFailure(const ConnData& data);

    /// Asked before a `pass` is looked at, and again when the connection is released. A right one waits too:
    /// otherwise nobody would wait for the answer to a wrong one. One that has waited waits on if others of
    /// its address have failed meanwhile: otherwise a wave of connections would share the first, short delay.
    EAnswer admit(const net::NetConnectionPtr& conn, ConnData& data);
    /// The connection does not wait any more: its place is free for another.
    void end(const net::NetConnectionPtr& conn, ConnData& data);

    /// Releases the connections whose time has come.
    void release();
    /// Seconds until release has something to do; empty if nobody waits.
    std::optional<double> secondsToNext() const;

private:
    struct CWaiting {
        net::NetConnectionPtr conn;
        ConnData* data; ///< the connection's, valid until end()
    };
    static constexpr double kSweepSeconds = 0.1;

    bool hasPlace(const ConnData& data);
    void dropGone();

    const CRefuse m_refuse;
    CFailedLogins m_failedLogins;
    std::multimap<double, CWaiting> m_waiting; ///< by when their `pass` is looked at next
    double m_dLastSweep = -kSweepSeconds;      ///< when dropGone last looked
};

} // namespace TC
