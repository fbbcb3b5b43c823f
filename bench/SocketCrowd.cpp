#include "bench/SocketCrowd.h"

#include <sys/epoll.h>
#include <unistd.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace bench {

CCrowd::CCrowd(const CPeer& peer, std::string line)
    : m_peer(peer), m_strLine(std::move(line)), m_nEpoll(::epoll_create1(EPOLL_CLOEXEC)) {
    for (int i = 0; i < kConnections; ++i) {
        m_clients.emplace_back(peer.port, peer.greeting);
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.u32 = static_cast<std::uint32_t>(i);
        ::epoll_ctl(m_nEpoll, EPOLL_CTL_ADD, m_clients.back().descriptor(), &event);
    }
}

CCrowd::~CCrowd() {
    ::close(m_nEpoll);
}

void CCrowd::prepare(const std::string& bytes, std::size_t replyBytes) const {
    for (const CClient& client : m_clients) {
        client.send(bytes.data(), bytes.size());
        client.receiveAll(replyBytes);
    }
}

void CCrowd::exchange(int each) const {
    std::vector<CState> states(m_clients.size(), CState{each - 1, 0});
    for (const CClient& client : m_clients)
        client.send(m_strLine.data(), m_strLine.size());
    for (std::size_t busy = m_clients.size(); busy > 0;) {
        epoll_event events[kConnections];
        const int count = ::epoll_wait(m_nEpoll, events, kConnections, -1);
        for (int i = 0; i < count; ++i)
            busy -= serve(m_clients[events[i].data.u32], states[events[i].data.u32]) ? 1 : 0;
    }
}

/// True if this was the connection's last reply.
bool CCrowd::serve(const CClient& client, CState& state) const {
    state.received += client.receive();
    if (state.received < m_peer.reply) return false;
    state.received = 0;
    if (state.left == 0) return true;
    --state.left;
    client.send(m_strLine.data(), m_strLine.size());
    return false;
}

} // namespace bench
