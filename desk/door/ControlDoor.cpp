#include "desk/door/ControlDoor.h"

#include "desk/config/FolderFiles.h"
#include "desk/door/CallReport.h"
#include "desk/door/ControlSocket.h"
#include "desk/journal/Json.h"
#include "orderservice/base/Thread.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>

#include <nlohmann/json.hpp>

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <exception>
#include <set>
#include <thread>
#include <utility>

namespace desk {
namespace {

namespace asio = boost::asio;
using asio::local::stream_protocol;
using boost::system::error_code;

/// How long accepting pauses if the process has no descriptor or memory for another connection.
constexpr std::chrono::milliseconds kAcceptPause{100};
constexpr std::size_t kReadBytes = 4096;

/// Starts a thread that receives no signals: they belong to the main thread.
template<typename Body>
std::thread startThread(const char* name, Body body) {
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread([name, body] {
        utils::setThreadName(name);
        body();
    });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

/// The request may have been carried out before the exception.
std::string notKnownAnswer(const std::string& exception) {
    return refusalAnswer(kCallNotKnown, "an error ended the request: " + exception +
                                            "; it may have been carried out, so look in the journal before "
                                            "you repeat it");
}

std::string answerOf(const CControlDoor::CHandler& handler, const std::string& line) {
    try {
        return handler(line);
    } catch (const std::exception& error) {
        return notKnownAnswer(error.what());
    } catch (...) {
        return notKnownAnswer("an unknown exception");
    }
}

std::string tooLongAnswer(std::size_t limit) {
    return refusalAnswer(kCallBadRequest, "the line is longer than " + std::to_string(limit) + " bytes");
}

std::string fullAnswer(std::size_t limit) {
    return refusalAnswer(kCallRefused,
                         "there are " + std::to_string(limit) + " other clients already; try again later");
}

class CClient;
using CClientPtr = std::shared_ptr<CClient>;

/// What the clients need of the door. Thread "control".
class IClientOwner {
public:
    virtual ~IClientOwner() = default;
    virtual const CControlLimits& limits() const = 0;
    /// Carries out the request, and calls CClient::answer later.
    virtual void perform(const CClientPtr& client, std::string line) = 0;
    virtual void remove(const CClientPtr& client) = 0;
};

/// One connection. Thread "control".
class CClient : public std::enable_shared_from_this<CClient> {
public:
    CClient(stream_protocol::socket socket, IClientOwner& owner)
        : m_socket(std::move(socket)), m_owner(owner), m_timer(m_socket.get_executor()) {}

    /// Takes the next request: from what was read already, or from the client.
    void next() {
        m_bBusy = false;
        if (m_bLast) return leave();
        if (m_bEnding) return turnAway(endingAnswer());
        const std::size_t end = m_strReceived.find('\n', m_nSearched);
        m_nSearched = m_strReceived.size();
        if (end == std::string::npos && m_nSearched <= m_owner.limits().m_nLineBytes) return read();
        if (end == std::string::npos || end > m_owner.limits().m_nLineBytes)
            return turnAway(tooLongAnswer(m_owner.limits().m_nLineBytes));
        std::string line = m_strReceived.substr(0, end);
        m_strReceived.erase(0, end + 1);
        m_nSearched = 0;
        m_bBusy = true;
        m_timer.cancel();
        m_owner.perform(shared_from_this(), std::move(line));
    }
    void answer(std::string text) {
        m_strAnswer = std::move(text) + '\n';
        m_bBusy = true;
        limitTime(m_bEnding ? m_owner.limits().m_endPatience : m_owner.limits().m_patience);
        asio::async_write(m_socket, asio::buffer(m_strAnswer),
                          [self = shared_from_this()](const error_code& error, std::size_t) {
                              if (error) return self->leave();
                              self->limitTime(self->m_owner.limits().m_patience);
                              self->next();
                          });
    }
    /// Answers and then leaves.
    void turnAway(std::string text) {
        m_bLast = true;
        answer(std::move(text));
    }
    /// Begins to read, with the limit of the time.
    void begin() {
        limitTime(m_owner.limits().m_patience);
        next();
    }
    /// The door ends: tells the client so behind the answer that is being sent, and leaves. A request that
    /// was not read yet is answered by that. Waits only a short time for the client.
    void finish() {
        m_bEnding = true;
        limitTime(m_owner.limits().m_endPatience);
        if (!m_bBusy) next();
    }

private:
    void read() {
        m_socket.async_read_some(asio::buffer(m_bytes),
                                 [self = shared_from_this()](const error_code& error, std::size_t length) {
                                     if (error) return self->leave();
                                     self->m_strReceived.append(self->m_bytes.data(), length);
                                     if (!self->m_bBusy) self->next();
                                 });
    }
    void limitTime(std::chrono::milliseconds time) {
        m_timer.expires_after(time);
        m_timer.async_wait([self = shared_from_this()](const error_code& error) {
            // If the timer has expired already, setting a new time does not cancel this callback.
            const bool isOver = self->m_timer.expiry() <= std::chrono::steady_clock::now();
            if (!error && isOver) self->leave();
        });
    }
    void leave() {
        error_code ignored;
        m_timer.cancel(ignored);
        m_socket.close(ignored);
        m_owner.remove(shared_from_this());
    }

    stream_protocol::socket m_socket;
    IClientOwner& m_owner;
    asio::steady_timer m_timer;
    std::array<char, kReadBytes> m_bytes{};
    std::string m_strReceived;
    std::size_t m_nSearched = 0; ///< so many bytes of m_strReceived have no newline
    std::string m_strAnswer;
    bool m_bBusy = false;   ///< a request is carried out, or its answer is being sent
    bool m_bLast = false;   ///< leaves after the answer
    bool m_bEnding = false; ///< the door ends
};

} // namespace

struct CControlDoor::CState : IClientOwner {
    CState(CHandler call, CControlLimits bounds)
        : m_handler(std::move(call)), m_limits(bounds), m_acceptor(m_io), m_pause(m_io),
          m_callWork(m_calls.get_executor()) {}

    const CControlLimits& limits() const override { return m_limits; }
    void perform(const CClientPtr& client, std::string line) override {
        if (!m_callWork.owns_work()) return client->turnAway(endingAnswer());
        asio::post(m_calls, [this, client, line = std::move(line)] {
            std::string text = answerOf(m_handler, line);
            asio::post(m_io, [client, text = std::move(text)] { client->answer(text); });
        });
    }
    void remove(const CClientPtr& client) override { m_clients.erase(client); }

    void accept() {
        m_acceptor.async_accept([this](const error_code& error, stream_protocol::socket socket) {
            // A client may have been accepted just before the acceptor was closed.
            if (!error) take(std::move(socket));
            if (!m_acceptor.is_open()) return;
            if (error) return pause();
            accept();
        });
    }
    void take(stream_protocol::socket socket) {
        const auto client = std::make_shared<CClient>(std::move(socket), *this);
        const bool isFull = m_clients.size() >= m_limits.m_nClients;
        m_clients.insert(client);
        if (m_bFinishing)
            client->finish();
        else if (isFull)
            client->turnAway(fullAnswer(m_limits.m_nClients));
        else
            client->begin();
    }
    void pause() {
        m_pause.expires_after(kAcceptPause);
        m_pause.async_wait([this](const error_code& error) {
            if (!error && m_acceptor.is_open()) accept();
        });
    }
    /// Also takes no more requests: the thread "calls" ends when it has carried out those that wait. Clients
    /// that have connected already get an answer.
    void stopAccepting() {
        m_callWork.reset();
        ::unlink(m_folder.pathOf(kControlSocketName).c_str());
        ::shutdown(m_acceptor.native_handle(), SHUT_RDWR); // from now on nobody can connect
        error_code error;
        m_acceptor.non_blocking(true, error);
        while (!error) {
            stream_protocol::socket socket(m_io);
            m_acceptor.accept(socket, error);
            if (!error) take(std::move(socket));
        }
        m_acceptor.close(error);
        m_pause.cancel(error);
    }
    void finishClients() {
        m_bFinishing = true;
        const std::set<CClientPtr> clients = m_clients;
        for (const CClientPtr& client : clients)
            client->finish();
    }

    const CHandler m_handler;
    const CControlLimits m_limits;
    CFolderHandle m_folder;
    asio::io_context m_io;
    asio::io_context m_calls;
    stream_protocol::acceptor m_acceptor;
    asio::steady_timer m_pause;
    std::set<CClientPtr> m_clients;
    bool m_bFinishing = false; ///< no request runs any more, and no client is kept
    asio::executor_work_guard<asio::io_context::executor_type> m_callWork;
    std::thread m_ioThread;
    std::thread m_callThread;
};

CControlDoor::CControlDoor(CHandler handler, CControlLimits limits)
    : m_state(std::make_unique<CState>(std::move(handler), limits)) {}

CControlDoor::~CControlDoor() {
    close();
}

utils::KNError CControlDoor::open(const std::string& folder) {
    CState& state = *m_state;
    utils::KNError result = state.m_folder.open(folder);
    if (result.isSuccess()) result = listenOnControlSocket(folder, state.m_folder, state.m_acceptor);
    if (!result.isSuccess()) return result;
    state.accept();
    state.m_callThread = startThread("calls", [&state] { state.m_calls.run(); });
    state.m_ioThread = startThread("control", [&state] { state.m_io.run(); });
    return {};
}

void CControlDoor::close() {
    CState& state = *m_state;
    if (!state.m_ioThread.joinable()) return;
    // The thread "control" must not end while a request is carried out.
    auto ioWork = asio::make_work_guard(state.m_io);
    asio::post(state.m_io, [&state] { state.stopAccepting(); });
    state.m_callThread.join();
    asio::post(state.m_io, [&state] { state.finishClients(); });
    ioWork.reset();
    state.m_ioThread.join();
    state.m_folder.close();
}

std::string refusalAnswer(const char* result, const std::string& cause) {
    const CJson answer{{"result", result}, {"cause", cause}};
    return answer.dump(-1, ' ', false, CJson::error_handler_t::replace);
}

std::string endingAnswer() {
    return refusalAnswer(kCallEnding, "the desk ends; nothing was carried out");
}

} // namespace desk
