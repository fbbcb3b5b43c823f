#pragma once

#include <boost/asio/io_service.hpp>
#include <boost/asio/post.hpp>

#include <mutex>
#include <utility>

namespace TC {

/// Posts calls to a listener's event loop as long as the loop exists. This object may outlive the listener.
/// Thread-safe.
class CLoopPost {
public:
    explicit CLoopPost(boost::asio::io_service& io) : m_pIo(&io) {}

    /// Runs the call on the listener's thread soon. After close the call is discarded.
    template<typename Call>
    void post(Call call) {
        const std::lock_guard lock(m_mutex);
        if (m_pIo != nullptr) boost::asio::post(*m_pIo, std::move(call));
    }

    /// After this returns, the loop may be destroyed.
    void close() {
        const std::lock_guard lock(m_mutex);
        m_pIo = nullptr;
    }

private:
    std::mutex m_mutex;
    boost::asio::io_service* m_pIo;
};

} // namespace TC
