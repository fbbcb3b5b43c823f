#pragma once

#include "socket/ConnData.h"

#include <cstddef>
#include <limits>
#include <string_view>

namespace TC {

/// What makes a listener safe against strangers. Off unless the deployment switch "mdl_order_socket_guard" is
/// on: the plain protocol has no limits. Gives a word for the refusal, or null where all is well; who is
/// refused gets "-ERR", the word, and is closed. The switch is read when the listener starts.
class CSocketGuard {
public:
    static constexpr std::size_t kMaxConnections = 1000;
    static constexpr std::size_t kMaxEnding = 100; ///< that have been closed and wait for their peers
    static constexpr int kMaxLine = 64 * 1024;     ///< bytes, CR LF counted
    static constexpr int kMaxFailedLogins = 10;
    static constexpr double kLoginSeconds = 60;

    /// Reads the switch. `needsLogin`: whether the listener has a login name at all.
    explicit CSocketGuard(bool needsLogin);

    bool isOn() const { return m_bOn; }

    /// `others`: how many connections there are besides the new one.
    const char* refuseConnection(std::size_t others) const;
    const char* refuseLine(int length) const;
    const char* refuseLineFeed() const;
    /// Whether the line has a zero byte, behind which its argument would be cut off without a word.
    bool hasZeroByte(std::string_view line) const;
    const char* refuseLogins(const ConnData& connection) const;
    /// `isFull`: whether as many connections of the address as may wait for their login do so already.
    const char* refuseDelay(bool isFull) const;
    /// `now` as utils::getTime() gives it.
    const char* refuseSilence(const ConnData& connection, double now) const;

private:
    const bool m_bOn;
    const bool m_bNeedsLogin;
};

} // namespace TC
