#pragma once

#include <boost/asio/io_service.hpp>
#include <boost/asio/post.hpp>

#include <mutex>
#include <utility>

namespace TC {

/// Posts calls to a listener's event loop for as long as the loop is there. Whoever holds one may outlive the
/// listener. Any thread.
class CLoopPost {
public:
    explicit CLoopPost(boost::asio::io_service& io) : m_pIo(&io) {}

    /// Runs the call on the listener's thread, soon; drops it after close.
    template<typename Call>
    void post(Call call) {
        const std::lock_guard lock(m_mutex);
        if (m_pIo != nullptr) boost::asio::post(*m_pIo, std::move(call));
    }

    /// The loop may end once this has returned.
    void close() {
        const std::lock_guard lock(m_mutex);
        m_pIo = nullptr;
    }

private:
    std::mutex m_mutex;
    boost::asio::io_service* m_pIo;
};

} // namespace TC
