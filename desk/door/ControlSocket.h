#pragma once

#include "orderservice/base/KNError.h"

#include <boost/asio/local/stream_protocol.hpp>

#include <string>

namespace desk {

/// Error numbers of the control door.
enum EControlError : int { kControlUnusable = 1, kControlNoAnswer = 2 };

/// A folder that is held open, so that a socket in it can be named by a short path: the system limits the
/// path of a socket to 107 bytes. Not thread-safe.
class CFolderHandle {
public:
    CFolderHandle() = default;
    ~CFolderHandle();
    CFolderHandle(const CFolderHandle&) = delete;
    CFolderHandle& operator=(const CFolderHandle&) = delete;

    /// Fails if the folder does not exist or may not be searched.
    [[nodiscard]] utils::KNError open(const std::string& folder);
    void close();
    bool isOpen() const { return m_nDescriptor >= 0; }
    /// A path of a name in the folder. It is valid while the folder is open, in this process only.
    std::string pathOf(const std::string& name) const;

private:
    int m_nDescriptor = -1;
};

/// Makes FOLDER/control.sock and listens on it. Only the owner of the process may connect: the socket gets
/// this permission under another name, before it listens, and then replaces a socket that an earlier desk has
/// left. The caller must hold the desk folder. Fails if the path has something else, or if the file system
/// has no sockets.
[[nodiscard]] utils::KNError listenOnControlSocket(const std::string& folder, const CFolderHandle& handle,
                                                   boost::asio::local::stream_protocol::acceptor& acceptor);

/// Connects to the desk that runs in the folder. Fails with kControlNoAnswer if nobody listens, and with
/// kControlUnusable if the folder or the socket cannot be used. A desk may run even if nobody listens: before
/// it trades, while it ends, and if it could not make its socket.
[[nodiscard]] utils::KNError connectToControlSocket(const std::string& folder,
                                                    boost::asio::local::stream_protocol::socket& socket);

} // namespace desk
