#pragma once

#include "orderservice/socket/ConnData.h"

#include <cstddef>
#include <limits>
#include <string_view>

namespace TC {

/// The limits that protect a listener against unknown clients. Off unless the deployment switch
/// "mdl_order_socket_guard" is on: the plain protocol has no limits. The refuse functions return the text of
/// a refusal, or null if there is none. A refused client receives "-ERR" and the text, and its connection is
/// closed. The switch is read when the listener is created.
class CSocketGuard {
public:
    static constexpr std::size_t kMaxConnections = 1000;
    static constexpr std::size_t kMaxEnding = 100; ///< closed connections that still wait for their peers
    static constexpr int kMaxLine = 64 * 1024;     ///< bytes, including CR LF
    static constexpr int kMaxFailedLogins = 10;
    static constexpr double kLoginSeconds = 60;

    /// Reads the switch. `needsLogin`: whether the listener has a login name at all.
    explicit CSocketGuard(bool needsLogin);

    bool isOn() const { return m_bOn; }

    /// `others`: how many connections there are besides the new one.
    const char* refuseConnection(std::size_t others) const;
    const char* refuseLine(int length) const;
    const char* refuseLineFeed() const;
    /// Whether the line has a zero byte. Without this check its argument would silently end there.
    bool hasZeroByte(std::string_view line) const;
    const char* refuseLogins(const ConnData& connection) const;
    /// `isFull`: whether the largest allowed number of connections of the address already waits for a login.
    const char* refuseDelay(bool isFull) const;
    /// `now` is utils::getTime().
    const char* refuseSilence(const ConnData& connection, double now) const;

private:
    const bool m_bOn;
    const bool m_bNeedsLogin;
};

} // namespace TC
