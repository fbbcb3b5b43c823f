#pragma once

#include "orderservice/base/KNError.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace desk {

/// The limits of a control door.
struct CControlLimits {
    std::size_t m_nLineBytes = 1 << 20; ///< the longest request, without its newline
    std::size_t m_nClients = 16;        ///< connections at the same time
    /// How long a client may take to send a whole line, or to read its answer.
    std::chrono::milliseconds m_patience{60'000};
    /// How long the end of the door waits for a client that does not read its answer.
    std::chrono::milliseconds m_endPatience{1'000};
};

/// The desk's control door: a Unix socket in the desk folder that only the owner may open. Each request is
/// one line, and each answer is one line, in the order of the requests of a connection.
///
/// Two threads: "control" serves the connections, and "calls" carries out the requests of all clients, one
/// after the other. Nothing of a client is read while its request is carried out. If a client leaves, its
/// request is still carried out. A line without its newline is not a request, and is discarded. A client that
/// exceeds a limit gets an answer that says so, and is disconnected.
class CControlDoor {
public:
    /// Answers one request; neither text has a newline. It is called on the thread "calls". If it throws, the
    /// client gets the result kCallNotKnown with the reason.
    using CHandler = std::function<std::string(const std::string& line)>;

    explicit CControlDoor(CHandler handler, CControlLimits limits = {});
    /// Closes the door.
    ~CControlDoor();
    CControlDoor(const CControlDoor&) = delete;
    CControlDoor& operator=(const CControlDoor&) = delete;

    /// Makes the socket and starts the threads. Once. The caller must hold the folder.
    [[nodiscard]] utils::KNError open(const std::string& folder);

    /// Accepts no more connections and removes the socket. Requests that have been read are carried out;
    /// later ones get endingAnswer, and so does a client that has sent nothing. Waits for that, but for a
    /// client that does not read only the time of the limits, and ends the threads. Does nothing if the door
    /// is not open. One thread at a time, and not in the handler.
    void close();

private:
    struct CState;
    std::unique_ptr<CState> m_state;
};

/// An answer without a report: to a request that was not carried out, or that an error has ended. `result` is
/// a word for programs, `cause` a text for people.
std::string refusalAnswer(const char* result, const std::string& cause);
/// The answer to a request that comes while the desk ends.
std::string endingAnswer();

} // namespace desk
