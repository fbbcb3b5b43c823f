// Cuts any bytes into any pieces and sends them through the receive loop of the order socket. Every line must
// get one reply that ends in CR LF. An order line must reach the gate at most once. The cuts must not change
// the result.
//
// The first byte chooses the listener (1: guard on, 2: login needed). The second byte is the number of
// lengths that follow. The lengths are used repeatedly to cut the remaining bytes.
#include "orderservice/platform/Switches.h"
#include "orderservice/socket/OrderSocketServer.h"
#include "tests/support/DoorFakes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kMaxCuts = 16;

void require(bool condition) {
    if (!condition) std::abort();
}

/// A connection without a peer. It stores the bytes that it should send.
class CStoringConnection : public net::NetConnection {
public:
    CStoringConnection(boost::asio::io_service& io, net::NetManager& manager)
        : net::NetConnection(boost::asio::ip::tcp::socket(io), manager) {}
    void send(const std::vector<unsigned char>& bytes, int count, bool) override {
        const std::string text(bytes.begin(), bytes.begin() + count);
        require(text.size() >= 2 && text.find("\r\n") == text.size() - 2);
        replies.push_back(text);
    }
    std::vector<std::string> replies;
};

struct CChoice {
    bool isGuarded;
    bool needsLogin;
};

/// The result of a conversation.
struct COutcome {
    std::vector<std::string> replies; ///< the first is the greeting
    std::size_t orders = 0;
    std::vector<int> cancelled;
    bool isOpen = false;
};

bool operator==(const COutcome& a, const COutcome& b) {
    return a.replies == b.replies && a.orders == b.orders && a.cancelled == b.cancelled &&
           a.isOpen == b.isOpen;
}

class CConversation {
public:
    CConversation(CChoice choice, CFakeHost& host, CFakeClock& clock)
        : m_audit(host.audit), m_clock(clock),
          m_pServer(boost::make_shared<TC::COrderSocketServer>(m_io, "127.0.0.1", 0,
                                                               choice.needsLogin ? "u" : "", "p", m_gate,
                                                               m_registry, QStringLiteral("127.0.0.1:0"))),
          m_pConnection(boost::make_shared<CStoringConnection>(m_io, *m_pServer)) {
        m_audit.doors.clear();
        // A stuck listener waits until it is stopped. It must not be stopped earlier, because then it serves
        // nobody.
        m_audit.onRecord = [this] {
            const std::vector<TC::CDoorReport>& doors = m_audit.doors;
            if (!doors.empty() && doors.back().m_eEvent == TC::EDoorEvent::Stuck) m_pServer->stop();
        };
        m_pServer->onConnected(m_pConnection);
    }
    void receive(std::string_view piece) {
        m_pServer->onDataReceived({piece.begin(), piece.end()}, static_cast<int>(piece.size()),
                                  m_pConnection);
        // The login is delayed. Advance the time, but by less than the limit for a silent connection.
        while (m_pConnection->isHeld()) {
            m_clock.sleep(TC::CFailedLogins::kLastDelay);
            m_pServer->clockMoved();
            m_io.restart();
            m_io.poll();
        }
    }
    COutcome finish() {
        COutcome outcome{m_pConnection->replies, m_gate.batches.size(), m_gate.cancelledTasks,
                         m_pServer->connectionCount() == 1};
        m_pServer->onDisconnected(0, m_pConnection);
        require(m_pServer->connectionCount() == 0);
        m_audit.onRecord = nullptr;
        return outcome;
    }

private:
    fake::CAudit& m_audit;
    CFakeClock& m_clock;
    boost::asio::io_service m_io;
    CRecordingGate m_gate;
    CPlainRegistry m_registry;
    boost::shared_ptr<TC::COrderSocketServer> m_pServer;
    boost::shared_ptr<CStoringConnection> m_pConnection;
};

COutcome converse(CChoice choice, CFakeHost& host, CFakeClock& clock, std::string_view stream,
                  const std::vector<std::size_t>& cuts) {
    CConversation conversation(choice, host, clock);
    for (std::size_t i = 0; !stream.empty(); ++i) {
        const std::size_t length = std::min(cuts[i % cuts.size()], stream.size());
        conversation.receive(stream.substr(0, length));
        stream.remove_prefix(length);
    }
    return conversation.finish();
}

/// The lines that a listener accepts. They end at the first line feed without a carriage return.
std::vector<std::string_view> linesOf(std::string_view stream, bool& hasLoneFeed) {
    std::vector<std::string_view> lines;
    for (std::size_t feed = stream.find('\n'); feed != std::string_view::npos; feed = stream.find('\n')) {
        hasLoneFeed = feed == 0 || stream[feed - 1] != '\r';
        if (hasLoneFeed) break;
        lines.push_back(stream.substr(0, feed + 1));
        stream.remove_prefix(feed + 1);
    }
    return lines;
}

void check(const COutcome& outcome, CChoice choice, std::string_view stream) {
    bool hasLoneFeed = false;
    const std::vector<std::string_view> lines = linesOf(stream, hasLoneFeed);
    const auto countOf = [&](std::string_view verb) {
        return static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), [&](std::string_view line) {
            return line.substr(0, verb.size()) == verb;
        }));
    };
    const std::size_t refusals = choice.isGuarded && hasLoneFeed ? 1 : 0;
    const std::size_t replies = outcome.replies.size() - 1;
    require(replies <= lines.size() + refusals);
    if (outcome.isOpen) require(refusals == 0 && replies == lines.size());
    require(outcome.orders <= countOf("placeorder") && outcome.cancelled.size() <= countOf("cancel"));
    const auto accepted = std::count(outcome.replies.begin(), outcome.replies.end(), "+OK\r\n");
    require(outcome.orders + outcome.cancelled.size() <= static_cast<std::size_t>(accepted));
    const bool wasLoggedIn = !choice.needsLogin || (countOf("user") > 0 && countOf("pass") > 0);
    require(wasLoggedIn || (outcome.orders == 0 && outcome.cancelled.empty()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static CFakeHost host;
    static CFakeClock clock;
    if (size < 2) return 0;
    const CChoice choice{(data[0] & 1) != 0, (data[0] & 2) != 0};
    const std::size_t count = std::min({std::size_t{data[1]}, kMaxCuts, size - 2});
    std::vector<std::size_t> cuts;
    for (std::size_t i = 0; i < count; ++i)
        cuts.push_back(std::size_t{data[2 + i]} + 1);
    const std::string_view stream(reinterpret_cast<const char*>(data) + 2 + count, size - 2 - count);
    host.switches.on.clear();
    if (choice.isGuarded) host.switches.on.insert(TC::kSocketGuardSwitch);
    const COutcome whole = converse(choice, host, clock, stream, {std::max(stream.size(), std::size_t{1})});
    check(whole, choice, stream);
    if (!cuts.empty()) require(converse(choice, host, clock, stream, cuts) == whole);
    // A fuzzer runs for a long time. Without this the records of the host would grow.
    host.audit.reports.clear();
    host.audit.doors.clear();
    host.records.log.clear();
    return 0;
}
