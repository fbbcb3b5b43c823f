// Places one order over the order socket, cancels a task if --cancel is given, and quits. It uses C++17 and
// POSIX and no libraries.
//
//     place_and_cancel [--user NAME] [--cancel TASK] [--timeout SECONDS] HOST PORT ORDER
//
// ORDER is the argument of "placeorder", such as 23,9,10.5,600000,100. The password is read from the
// environment variable ORDER_SOCKET_PASS, because other users of the machine can see the command line.
// Without --user the program does not log in.
//
// Exit codes: 0 success, 1 refused by the server, 2 wrong usage or connection failure.
#include <iconv.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

enum EExitCode { kDone = 0, kRefused = 1, kBroken = 2 };

/// The server answered -ERR.
struct CRefused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Connecting failed, the connection broke, or no reply arrived in time.
struct CBroken : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct CUsage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Replies are GBK. Invalid bytes become question marks.
std::string gbkToUtf8(std::string gbk) {
    const iconv_t converter = ::iconv_open("UTF-8", "GBK");
    if (converter == reinterpret_cast<iconv_t>(-1)) return gbk;
    std::string utf8;
    char* in = gbk.data();
    std::size_t left = gbk.size();
    while (left > 0) {
        char piece[256];
        char* out = piece;
        std::size_t room = sizeof piece;
        const bool isStuck = ::iconv(converter, &in, &left, &out, &room) == static_cast<std::size_t>(-1);
        utf8.append(piece, out);
        if (isStuck && errno != E2BIG) {
            utf8 += '?';
            ++in;
            --left;
        }
    }
    ::iconv_close(converter);
    return utf8;
}

/// A connection to an order socket. Each call sends one line and waits for its one reply.
class COrderSocket {
public:
    /// Connects and reads the greeting. `timeout` applies to connecting and to each reply.
    COrderSocket(const std::string& host, const std::string& port, std::chrono::milliseconds timeout)
        : m_timeout(timeout) {
        connect(host, port);
        try {
            m_strGreeting = readReply("connecting");
        } catch (...) {
            ::close(m_nSocket);
            throw;
        }
    }
    ~COrderSocket() { ::close(m_nSocket); }
    COrderSocket(const COrderSocket&) = delete;
    COrderSocket& operator=(const COrderSocket&) = delete;

    const std::string& greeting() const { return m_strGreeting; }

    /// Call this only once, because a second `pass` would log out again. Both texts are UTF-8.
    void logIn(const std::string& user, const std::string& password) {
        ask("user", user);
        ask("pass", password);
    }
    /// The reply means that the order was queued. It does not mean that the order was accepted.
    std::string placeOrder(const std::string& fields) { return ask("placeorder", fields); }
    std::string cancel(int task) { return ask("cancel", std::to_string(task)); }
    void quit() { ask("quit", ""); }

    /// Sends a line and returns its reply. Throws CRefused if the reply is -ERR.
    std::string ask(const std::string& verb, const std::string& argument) {
        // A line feed without a carriage return stops the listener for all clients. So the argument must not
        // contain a line end.
        if (argument.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos)
            throw CUsage("the argument of " + verb + " holds a line end or a zero byte");
        sendAll(verb, argument.empty() ? verb + "\r\n" : verb + " " + argument + "\r\n");
        return readReply(verb);
    }

private:
    using CClock = std::chrono::steady_clock;

    void connect(const std::string& host, const std::string& port) {
        addrinfo hints{};
        hints.ai_socktype = SOCK_STREAM;
        addrinfo* list = nullptr;
        const int failure = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &list);
        const std::string where = "cannot connect to " + host + ":" + port + ": ";
        if (failure != 0) throw CBroken(where + ::gai_strerror(failure));
        const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(list, ::freeaddrinfo);
        int error = 0;
        for (const addrinfo* address = list; address != nullptr; address = address->ai_next) {
            error = tryAddress(*address);
            if (error == 0) return;
        }
        throw CBroken(where + std::strerror(error));
    }

    /// Returns 0 or the system's error number.
    int tryAddress(const addrinfo& address) {
        m_nSocket = ::socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC,
                             address.ai_protocol);
        if (m_nSocket < 0) return errno;
        int error = ::connect(m_nSocket, address.ai_addr, address.ai_addrlen) == 0 ? 0 : errno;
        if (error == EINPROGRESS)
            error = waitFor(POLLOUT, CClock::now() + m_timeout) ? pendingError() : ETIMEDOUT;
        if (error != 0) {
            ::close(m_nSocket);
            return error;
        }
        const int on = 1;
        ::setsockopt(m_nSocket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        return 0;
    }

    int pendingError() const {
        int error = 0;
        socklen_t size = sizeof error;
        ::getsockopt(m_nSocket, SOL_SOCKET, SO_ERROR, &error, &size);
        return error;
    }

    /// Returns false if the deadline has passed.
    bool waitFor(short event, CClock::time_point deadline) const {
        for (;;) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - CClock::now());
            if (left.count() <= 0) return false;
            pollfd entry{m_nSocket, event, 0};
            const int count = ::poll(&entry, 1, static_cast<int>(left.count()));
            if (count > 0) return true;
            if (count < 0 && errno != EINTR) throw CBroken(std::strerror(errno));
        }
    }

    void sendAll(const std::string& verb, std::string_view bytes) {
        const auto deadline = CClock::now() + m_timeout;
        while (!bytes.empty()) {
            const ssize_t count = ::send(m_nSocket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count > 0) {
                bytes.remove_prefix(static_cast<std::size_t>(count));
            } else {
                waitAfter(verb, "cannot send", POLLOUT, deadline);
            }
        }
    }

    /// Reads one reply and returns it in UTF-8 without CR LF. A reply can arrive in pieces, and several
    /// replies can arrive together.
    std::string readReply(const std::string& verb) {
        const auto deadline = CClock::now() + m_timeout;
        std::size_t end = m_strReceived.find('\n');
        for (; end == std::string::npos; end = m_strReceived.find('\n')) {
            char piece[4096];
            const ssize_t count = ::recv(m_nSocket, piece, sizeof piece, 0);
            if (count == 0) throw CBroken(verb + ": the server closed the connection");
            if (count > 0) {
                m_strReceived.append(piece, static_cast<std::size_t>(count));
            } else {
                waitAfter(verb, "cannot receive", POLLIN, deadline);
            }
        }
        std::string reply = m_strReceived.substr(0, end);
        m_strReceived.erase(0, end + 1);
        if (!reply.empty() && reply.back() == '\r') reply.pop_back();
        reply = gbkToUtf8(reply);
        if (reply.compare(0, 3, "+OK") != 0) throw CRefused(verb + ": " + reply);
        return reply;
    }

    /// Called after a system call failed. Waits until the call can be repeated, or throws.
    void waitAfter(const std::string& verb, const char* what, short event,
                   CClock::time_point deadline) const {
        if (errno == EINTR) return;
        if (errno != EAGAIN && errno != EWOULDBLOCK)
            throw CBroken(verb + ": " + what + ": " + std::strerror(errno));
        if (!waitFor(event, deadline))
            throw CBroken(verb + ": no answer within " + std::to_string(m_timeout.count()) + " ms");
    }

    const std::chrono::milliseconds m_timeout;
    int m_nSocket = -1;
    std::string m_strReceived; ///< received bytes after the last reply that was returned
    std::string m_strGreeting;
};

struct CArguments {
    std::string host, port, order;
    std::optional<std::string> user;
    std::optional<int> task;
    std::chrono::milliseconds timeout{10000};
};

int readInt(const std::string& name, const std::string& text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        throw CUsage(name + ": expected a whole number instead of \"" + text + "\"");
    return value;
}

int readBetween(const std::string& name, const std::string& text, int least, int most) {
    const int value = readInt(name, text);
    if (value < least || value > most)
        throw CUsage(name + " must lie between " + std::to_string(least) + " and " + std::to_string(most));
    return value;
}

void readOption(CArguments& arguments, const std::string& name, const std::string& value) {
    if (name == "--user") {
        arguments.user = value;
    } else if (name == "--cancel") {
        arguments.task = readInt(name, value);
    } else if (name == "--timeout") {
        arguments.timeout = std::chrono::seconds(readBetween(name, value, 1, 3600));
    } else {
        throw CUsage("unknown option " + name);
    }
}

CArguments readArguments(const std::vector<std::string>& words) {
    CArguments arguments;
    std::vector<std::string> places;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i].compare(0, 2, "--") != 0) {
            places.push_back(words[i]);
        } else if (i + 1 < words.size()) {
            readOption(arguments, words[i], words[i + 1]);
            ++i;
        } else {
            throw CUsage(words[i] + " needs a value");
        }
    }
    if (places.size() != 3) throw CUsage("expected HOST, PORT and ORDER");
    arguments.host = places[0];
    arguments.port = std::to_string(readBetween("PORT", places[1], 1, 65535));
    arguments.order = places[2];
    return arguments;
}

void place(COrderSocket& connection, const std::string& order) {
    try {
        std::cout << "placeorder: " << connection.placeOrder(order) << std::endl;
    } catch (const CBroken& error) {
        // If the order is sent again, it could be placed twice.
        throw CBroken(std::string(error.what()) +
                      "; the order may have been taken: look before you send it again");
    }
}

void talk(const CArguments& arguments) {
    const char* password = std::getenv("ORDER_SOCKET_PASS");
    COrderSocket connection(arguments.host, arguments.port, arguments.timeout);
    std::cout << connection.greeting() << std::endl;
    if (arguments.user) connection.logIn(*arguments.user, password != nullptr ? password : "");
    place(connection, arguments.order);
    if (arguments.task) std::cout << "cancel: " << connection.cancel(*arguments.task) << std::endl;
    connection.quit();
}

} // namespace

int main(int argc, char** argv) {
    try {
        talk(readArguments({argv + 1, argv + argc}));
        return kDone;
    } catch (const CRefused& error) {
        std::cerr << "refused: " << error.what() << '\n';
        return kRefused;
    } catch (const CUsage& error) {
        std::cerr
            << error.what()
            << "\nusage: place_and_cancel [--user NAME] [--cancel TASK] [--timeout SECONDS] HOST PORT ORDER\n"
               "the password is taken from ORDER_SOCKET_PASS\n";
    } catch (const std::exception& error) {
        std::cerr << "failed: " << error.what() << '\n';
    }
    return kBroken;
}
