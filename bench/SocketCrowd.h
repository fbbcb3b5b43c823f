#pragma once

#include "bench/SocketPeers.h"

#include <cstddef>
#include <deque>
#include <string>

namespace bench {

/// Fifty connections in one thread. Each has one line in flight.
class CCrowd {
public:
    static constexpr int kConnections = 50;

    /// Connects all clients to the server. `line` is the line that they send.
    CCrowd(const CPeer& peer, std::string line);
    ~CCrowd();
    CCrowd(const CCrowd&) = delete;
    CCrowd& operator=(const CCrowd&) = delete;

    /// Sends these bytes on each connection and waits until each has received this many bytes.
    void prepare(const std::string& bytes, std::size_t replyBytes) const;

    /// Returns when each connection has sent `each` lines and received their replies.
    void exchange(int each) const;

private:
    struct CState {
        int left;
        std::size_t received;
    };

    bool serve(const CClient& client, CState& state) const;

    const CPeer m_peer;
    const std::string m_strLine;
    const int m_nEpoll;
    std::deque<CClient> m_clients;
};

} // namespace bench
