#include "desk/door/ControlDoor.h"

#include "tests/desk/door/ControlClient.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestSocket.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <atomic>
#include <future>
#include <stdexcept>
#include <string>

namespace desk {
namespace {

using boost::asio::local::stream_protocol;

class ControlDoor : public testing::Test {
protected:
    static std::string echo(const std::string& line) { return "answer to " + line; }
    static CControlLimits limits() { return {}; }
    /// Opens the door; a failure is the text.
    static std::string open(CControlDoor& door, const std::string& path) {
        return door.open(path).errorMsg();
    }

    CTempFolder folder;
};

TEST_F(ControlDoor, AnswersEachLineOfAConnectionInItsOrder) {
    CControlDoor door(echo);
    ASSERT_EQ(open(door, folder.path()), "");
    CControlClient client(folder.path());
    EXPECT_EQ(client.ask("one"), "answer to one");
    ASSERT_TRUE(client.send("two\nthree\n"));
    EXPECT_EQ(client.readLine(), "answer to two");
    EXPECT_EQ(client.readLine(), "answer to three");
}

TEST_F(ControlDoor, LineMayComeInPieces) {
    CControlDoor door(echo);
    ASSERT_EQ(open(door, folder.path()), "");
    CControlClient client(folder.path());
    ASSERT_TRUE(client.send("on"));
    CControlClient other(folder.path());
    EXPECT_EQ(other.ask("two"), "answer to two");
    EXPECT_EQ(client.ask("e"), "answer to one");
}

/// The mask of the process must not matter.
TEST_F(ControlDoor, OnlyTheOwnerMayConnect) {
    const mode_t before = ::umask(0);
    CControlDoor door(echo);
    EXPECT_EQ(open(door, folder.path()), "");
    ::umask(before);
    struct stat status {};
    ASSERT_EQ(::stat(folder.path("control.sock").c_str(), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    EXPECT_FALSE(folder.exists("control.sock.new"));
}

TEST_F(ControlDoor, RemovesItsSocketAtTheEnd) {
    CControlDoor door(echo);
    ASSERT_EQ(open(door, folder.path()), "");
    door.close();
    EXPECT_FALSE(folder.exists("control.sock"));
    boost::asio::io_context io;
    stream_protocol::socket socket(io);
    const utils::KNError connected = connectToControlSocket(folder.path(), socket);
    EXPECT_EQ(connected.errorId(), kControlNoAnswer);
    EXPECT_EQ(connected.errorMsg(), "no desk answers in " + folder.path() +
                                        ": none runs, or it is starting or ending, or it has no control door "
                                        "(its screen says so)");
}

/// A killed desk leaves its socket, and perhaps the socket that was to replace it.
TEST_F(ControlDoor, ReplacesTheSocketsOfAKilledDesk) {
    boost::asio::io_context io;
    for (const char* name : {"control.sock", "control.sock.new"}) {
        stream_protocol::acceptor left(io, stream_protocol::endpoint(folder.path(name)));
        left.close();
        ASSERT_TRUE(folder.exists(name));
    }
    stream_protocol::socket socket(io);
    EXPECT_EQ(connectToControlSocket(folder.path(), socket).errorId(), kControlNoAnswer);
    CControlDoor door(echo);
    ASSERT_EQ(open(door, folder.path()), "");
    EXPECT_EQ(CControlClient(folder.path()).ask("one"), "answer to one");
}

TEST_F(ControlDoor, KeepsAFileThatHasItsName) {
    folder.write("control.sock", "mine");
    CControlDoor door(echo);
    EXPECT_EQ(open(door, folder.path()),
              folder.path("control.sock") + ": there is a file with this name that is not a socket");
    boost::asio::io_context io;
    stream_protocol::socket socket(io);
    const utils::KNError connected = connectToControlSocket(folder.path(), socket);
    EXPECT_EQ(connected.errorId(), kControlUnusable);
    EXPECT_EQ(connected.errorMsg(),
              folder.path("control.sock") + ": there is a file with this name that is not a socket");
    door.close();
    EXPECT_EQ(folder.read("control.sock"), "mine");
}

TEST_F(ControlDoor, KeepsAFileThatHasTheNameOfItsDraft) {
    folder.write("control.sock.new", "mine");
    CControlDoor door(echo);
    EXPECT_EQ(open(door, folder.path()), folder.path("control.sock") + ": the name with .new is used");
    EXPECT_EQ(folder.read("control.sock.new"), "mine");
    EXPECT_FALSE(folder.exists("control.sock"));
}

/// The system would refuse this path as the path of a socket.
TEST_F(ControlDoor, FolderMayHaveALongPath) {
    const std::string path = folder.path(std::string(100, 'a')) + '/' + std::string(100, 'b');
    std::filesystem::create_directories(path);
    CControlDoor door(echo);
    ASSERT_EQ(open(door, path), "");
    EXPECT_EQ(CControlClient(path).ask("one"), "answer to one");
}

TEST_F(ControlDoor, SaysWhyTheFolderCannotHaveASocket) {
    CControlDoor missing(echo);
    EXPECT_EQ(open(missing, folder.path("none")), folder.path("none") + ": No such file or directory");
    CControlDoor unusable(echo);
    EXPECT_EQ(open(unusable, "/proc/self").rfind("/proc/self/control.sock: ", 0), 0U);
    CControlDoor later(echo);
    EXPECT_EQ(open(later, folder.path()), "");
}

TEST_F(ControlDoor, LongestLineIsAnsweredAndALongerOneIsRefused) {
    CControlLimits few = limits();
    few.m_nLineBytes = 10000;
    CControlDoor door([](const std::string& line) { return std::to_string(line.size()); }, few);
    ASSERT_EQ(open(door, folder.path()), "");
    EXPECT_EQ(CControlClient(folder.path()).ask(std::string(10000, 'x')), "10000");
    const std::string refusal = R"({"result":"bad_request","cause":"the line is longer than 10000 bytes"})";
    CControlClient longer(folder.path());
    EXPECT_EQ(longer.ask(std::string(10001, 'x')), refusal);
    EXPECT_EQ(longer.readLine(), "-");
    CControlClient endless(folder.path());
    (void)endless.send(std::string(20000, 'x'));
    EXPECT_EQ(endless.readLine(), refusal);
    EXPECT_EQ(endless.readLine(), "-");
}

TEST_F(ControlDoor, OneClientTooManyIsTurnedAway) {
    CControlLimits few = limits();
    few.m_nClients = 2;
    CControlDoor door(echo, few);
    ASSERT_EQ(open(door, folder.path()), "");
    CControlClient first(folder.path());
    {
        CControlClient second(folder.path());
        ASSERT_EQ(first.ask("one"), "answer to one");
        ASSERT_EQ(second.ask("two"), "answer to two");
        CControlClient third(folder.path());
        EXPECT_EQ(third.readLine(),
                  R"({"result":"refused","cause":"there are 2 other clients already; try again later"})");
        EXPECT_EQ(third.readLine(), "-");
    }
    std::string answer; // the door notices a moment later that the second one has gone
    while (answer != "answer to four")
        answer = CControlClient(folder.path()).ask("four");
    EXPECT_EQ(first.ask("five"), "answer to five");
}

TEST_F(ControlDoor, DisconnectsAClientThatSendsNoWholeLine) {
    CControlLimits few = limits();
    few.m_patience = std::chrono::milliseconds(20);
    std::atomic<int> calls{0};
    CControlDoor door([&](const std::string&) { return std::to_string(++calls); }, few);
    ASSERT_EQ(open(door, folder.path()), "");
    CControlClient idle(folder.path());
    EXPECT_EQ(idle.readLine(), "-");
    CControlClient half(folder.path());
    (void)half.send("half a line"); // if this thread was late, the door has closed the connection before
    EXPECT_EQ(half.readLine(), "-");
    EXPECT_EQ(calls, 0);
}

TEST_F(ControlDoor, LineWithoutItsNewlineIsNoRequest) {
    std::atomic<int> calls{0};
    CControlDoor door([&](const std::string&) { return std::to_string(++calls); });
    ASSERT_EQ(open(door, folder.path()), "");
    CControlClient client(folder.path());
    ASSERT_TRUE(client.send("half a line"));
    client.socket().shutdown(stream_protocol::socket::shutdown_send);
    EXPECT_EQ(client.readLine(), "-");
    EXPECT_EQ(calls, 0);
}

TEST_F(ControlDoor, ClientMayFinishSendingBeforeItReads) {
    CControlDoor door(echo);
    ASSERT_EQ(open(door, folder.path()), "");
    CControlClient client(folder.path());
    ASSERT_TRUE(client.send("one\n"));
    client.socket().shutdown(stream_protocol::socket::shutdown_send);
    EXPECT_EQ(client.readLine(), "answer to one");
    EXPECT_EQ(client.readLine(), "-");
}

TEST_F(ControlDoor, RequestOfAClientThatHasLeftIsCarriedOut) {
    std::promise<std::string> carriedOut;
    CControlDoor door([&](const std::string& line) {
        if (line == "one") carriedOut.set_value(line);
        return line;
    });
    ASSERT_EQ(open(door, folder.path()), "");
    {
        CControlClient client(folder.path());
        ASSERT_TRUE(client.send("one\n"));
    }
    EXPECT_EQ(carriedOut.get_future().get(), "one");
    EXPECT_EQ(CControlClient(folder.path()).ask("two"), "two");
}

/// The command may have gone out before the exception.
TEST_F(ControlDoor, AfterAnExceptionTheOutcomeIsNotKnown) {
    CControlDoor door([](const std::string& line) -> std::string {
        if (line == "one") throw std::runtime_error("no \xff luck");
        if (line == "two") throw 2; // NOLINT: not of the standard library
        return line;
    });
    ASSERT_EQ(open(door, folder.path()), "");
    CControlClient client(folder.path());
    const std::string head = R"({"result":"unknown","cause":"an error ended the request: )";
    const std::string tail =
        R"(; it may have been carried out, so look in the journal before you repeat it"})";
    EXPECT_EQ(client.ask("one"), head + "no \xEF\xBF\xBD luck" + tail);
    EXPECT_EQ(client.ask("two"), head + "an unknown exception" + tail);
    EXPECT_EQ(client.ask("three"), "three");
}

/// The answer is larger than the buffers of the system.
TEST_F(ControlDoor, ClientThatDoesNotReadHoldsUpNobody) {
    CControlLimits few = limits();
    few.m_endPatience = std::chrono::milliseconds(20);
    CControlDoor door(
        [](const std::string& line) { return line == "much" ? std::string(8 << 20, 'x') : line; }, few);
    ASSERT_EQ(open(door, folder.path()), "");
    CControlClient silent(folder.path());
    ASSERT_TRUE(silent.send("much\n"));
    EXPECT_EQ(CControlClient(folder.path()).ask("one"), "one");
    door.close();
    EXPECT_FALSE(folder.exists("control.sock"));
}

TEST_F(ControlDoor, DisconnectsAClientThatDoesNotReadItsAnswer) {
    CControlLimits few = limits();
    few.m_patience = std::chrono::seconds(1); // also for the request, which a late thread must not miss
    CControlDoor door([](const std::string&) { return std::string(8 << 20, 'x'); }, few);
    ASSERT_EQ(open(door, folder.path()), "");
    CControlClient silent(folder.path());
    ASSERT_TRUE(silent.send("much\n"));
    pollfd state{silent.socket().native_handle(), POLLRDHUP, 0};
    EXPECT_EQ(::poll(&state, 1, 60000), 1);
    EXPECT_EQ(silent.readLine(), "-");
}

/// The request that runs is finished, and the next one of its client is refused. A client without a request
/// is not waited for.
TEST_F(ControlDoor, EndWaitsForTheRequestsThatWereRead) {
    std::promise<void> begun, mayEnd;
    CControlDoor door([&](const std::string& line) {
        if (line == "long") {
            begun.set_value();
            mayEnd.get_future().wait();
        }
        return echo(line);
    });
    ASSERT_EQ(open(door, folder.path()), "");
    CControlClient caller(folder.path());
    CControlClient idle(folder.path());
    ASSERT_TRUE(caller.send("long\nnever read\n"));
    begun.get_future().wait();
    std::future<void> closed = std::async(std::launch::async, [&] { door.close(); });
    while (folder.exists("control.sock"))
        std::this_thread::yield();
    EXPECT_EQ(idle.ask("too late"),
              R"({"result":"ending","cause":"the desk ends; nothing was carried out"})");
    EXPECT_EQ(idle.readLine(), "-");
    EXPECT_EQ(closed.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    mayEnd.set_value();
    EXPECT_EQ(caller.readLine(), "answer to long");
    EXPECT_EQ(caller.readLine(), R"({"result":"ending","cause":"the desk ends; nothing was carried out"})");
    EXPECT_EQ(caller.readLine(), "-");
    closed.wait();
}

/// Otherwise a client would not know whether its request was carried out.
TEST_F(ControlDoor, EveryClientThatConnectsGetsAnAnswerAlsoAtTheEnd) {
    constexpr int kClients = 8;
    std::atomic<int> answers{0};
    CControlDoor door(echo);
    ASSERT_EQ(open(door, folder.path()), "");
    const auto callUntilTheEnd = [&] {
        for (;;) {
            boost::asio::io_context io;
            stream_protocol::socket probe(io);
            if (!connectToControlSocket(folder.path(), probe).isSuccess()) return true;
            boost::system::error_code error;
            boost::asio::write(probe, boost::asio::buffer("one\n", 4), error);
            std::string line;
            boost::asio::read_until(probe, boost::asio::dynamic_buffer(line), '\n', error);
            if (error) return false;
            ++answers;
        }
    };
    std::vector<std::future<bool>> clients;
    for (int i = 0; i < kClients; ++i)
        clients.push_back(std::async(std::launch::async, callUntilTheEnd));
    while (answers < 100)
        std::this_thread::yield();
    door.close();
    for (std::future<bool>& client : clients)
        EXPECT_TRUE(client.get());
}

TEST_F(ControlDoor, ManyClientsGetTheirOwnAnswers) {
    constexpr int kClients = 8;
    constexpr int kRequests = 50;
    std::atomic<int> running{0};
    std::atomic<bool> together{false};
    CControlDoor door([&](const std::string& line) {
        if (++running > 1) together = true;
        std::this_thread::yield(); // otherwise two handlers would almost never meet
        if (running > 1) together = true;
        --running;
        return echo(line);
    });
    ASSERT_EQ(open(door, folder.path()), "");
    std::vector<std::future<bool>> clients;
    for (int i = 0; i < kClients; ++i)
        clients.push_back(std::async(std::launch::async, [&, i] {
            CControlClient client(folder.path());
            for (int request = 0; request < kRequests; ++request) {
                const std::string line = std::to_string(i) + ':' + std::to_string(request);
                if (client.ask(line) != echo(line)) return false;
            }
            return true;
        }));
    for (std::future<bool>& client : clients)
        EXPECT_TRUE(client.get());
    EXPECT_FALSE(together); // one after the other
}

TEST_F(ControlDoor, ClosesEverySocket) {
    const std::ptrdiff_t before = openSockets();
    {
        CControlDoor door(echo);
        ASSERT_EQ(open(door, folder.path()), "");
        EXPECT_EQ(CControlClient(folder.path()).ask("one"), "answer to one");
    }
    EXPECT_EQ(openSockets(), before);
}

} // namespace
} // namespace desk
