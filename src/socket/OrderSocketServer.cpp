#include "orderservice/socket/OrderSocketServer.h"

#include "orderservice/base/Clock.h"
#include "orderservice/base/Fields.h"
#include "orderservice/base/FindRow.h"
#include "orderservice/base/Log.h"
#include "orderservice/base/StrictNumber.h"
#include "orderservice/base/Text.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/socket/OrderCommandParser.h"
#include "orderservice/socket/SocketText.h"

#include <boost/format.hpp>
#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <utility>

namespace TC {
namespace {

constexpr const char* kGreeting = "+OK Welcom to Lumo Order Server Version 0.0.3\r\n";
constexpr std::size_t kGreetingSize = 500;
constexpr std::size_t kReplySize = 1024;
constexpr std::string_view kQuitWord = "quit";
constexpr std::chrono::seconds kWatch{1};

constexpr const char* kBadCommand = "Bad Command";
constexpr const char* kBadParam = "Bad Param";
constexpr const char* kNotLoggedIn = "User Not Login";
constexpr const char* kBadLogin = "User or Pass is Not Right";

void writeOk(std::vector<unsigned char>& reply) {
    constexpr std::string_view kOk("+OK\r\n\0", 6);
    std::copy(kOk.begin(), kOk.end(), reply.begin());
}

void writeError(std::vector<unsigned char>& reply, const char* text) {
    std::snprintf(reinterpret_cast<char*>(reply.data()), reply.size(), "-ERR %s\r\n", text);
}

void sendText(net::NetConnection& conn, const std::vector<unsigned char>& text) {
    const auto end = std::find(text.begin(), text.end(), 0);
    conn.send(text, static_cast<int>(end - text.begin()), true);
}

QString peerOf(const net::NetConnection& conn) {
    return QString::fromStdString(conn.peerAddress()) + QStringLiteral(":") +
           QString::number(conn.peerPort());
}

void logLine(const void* server, std::string_view line, const std::vector<unsigned char>& reply) {
    if (!utils::CLogCenter::logEnabled()) return;
    // The log is UTF-8, but the client may have sent any bytes.
    const auto utf8 = [](const char* bytes, std::size_t size) {
        return UW::sToQs(bytes, size).toStdString();
    };
    const auto text = boost::format("socket receive: %1%, reply: %2%") % utf8(line.data(), line.size()) %
                      utf8(reinterpret_cast<const char*>(reply.data()), reply.size());
    utils::CLogCenter::log(utils::ELogLevel::Info, utils::kStdFileLogger, server,
                           "TC::COrderSocketServer::onDataReceived", text.str());
}

} // namespace

/// A verb, the function that serves it, and the function that decides, with the guard on, whether it is
/// served now. A line is treated as the first verb in the table that it begins with.
struct CSocketVerb {
    std::string_view word;
    void (COrderSocketServer::*serve)(std::string_view argument, ConnData& data,
                                      std::vector<unsigned char>& reply);
    COrderSocketServer::ENext (COrderSocketServer::*admit)(const net::NetConnectionPtr& conn, ConnData& data);

    static const CSocketVerb* find(std::string_view line);
};

/// Returns null if the line is not a command.
const CSocketVerb* CSocketVerb::find(std::string_view line) {
    // `quit` has no function here: takeLine serves it, because it ends the connection.
    using CServer = COrderSocketServer;
    static constexpr CSocketVerb kVerbs[] = {
        {"user", &CServer::onUser, nullptr},
        {"pass", &CServer::onPass, &CServer::admitPass},
        {"placeorder", &CServer::onPlaceOrder, &CServer::admitOrder},
        {"cancel", &CServer::onCancel, &CServer::admitOrder},
        {kQuitWord, nullptr, nullptr},
    };
    return utils::findRow(
        kVerbs, [&](const CSocketVerb& row) { return line.compare(0, row.word.size(), row.word) == 0; });
}

COrderSocketServer::COrderSocketServer(boost::asio::io_service& io, std::string ip, unsigned short port,
                                       std::string user, std::string pass, IOrderGate& gate,
                                       IStrategyRegistry& registry, QString source,
                                       std::shared_ptr<COrderCredit> credit)
    : net::NetServer(io, ip, port, false, false), m_strUser(std::move(user)), m_strPass(std::move(pass)),
      m_reply(kReplySize), m_gate(gate), m_registry(registry), m_strSource(std::move(source)),
      m_guard(!m_strUser.empty()), m_watch(io),
      m_credit(credit ? std::move(credit) : std::make_shared<COrderCredit>()),
      m_loop(std::make_shared<CLoopPost>(io)),
      m_loginDelays([this](const net::NetConnectionPtr& conn) { refuse(conn, m_guard.refuseDelay(true)); }),
      m_delayWatch(io) {
    if (m_guard.isOn()) limitEnding(CSocketGuard::kMaxEnding);
}

/// Connections may be refused after stop, until the listener's thread has ended. So the counted refusals are
/// reported here again.
COrderSocketServer::~COrderSocketServer() {
    m_loop->close();
    for (const auto& [conn, data] : m_connections) {
        if (data->m_account) m_credit->close(*data->m_account);
    }
    reportCountedRefusals();
}

int COrderSocketServer::stop() {
    const int result = net::NetServer::stop();
    m_loop->close();
    reportCountedRefusals();
    return result;
}

void COrderSocketServer::onConnected(net::NetConnectionPtr conn) {
    if (const char* word = m_guard.refuseConnection(m_connections.size())) {
        refuse(conn, word);
        return;
    }
    const auto data = boost::make_shared<ConnData>();
    data->m_strAddress = CFailedLogins::groupOf(conn->peerAddress());
    if (m_guard.isOn()) data->m_account = openAccount(conn);
    m_connections[conn] = data;
    startLoginClock(*data);
    std::vector<unsigned char> greeting(kGreetingSize);
    std::memcpy(greeting.data(), kGreeting, std::strlen(kGreeting));
    sendText(*conn, greeting);
    closeSilent();
}

/// A held connection may have complete lines that are not served yet. They are served later, as if it had not
/// been held. After a handler failed because memory ran out, these lines are discarded: it may have served
/// some of them already.
void COrderSocketServer::onDisconnected(int code, net::NetConnectionPtr conn) {
    const auto found = m_connections.find(conn);
    if (found == m_connections.end()) return;
    if (conn->isHeld() && code != boost::system::errc::not_enough_memory) {
        found->second->m_bPeerGone = true;
    } else {
        forget(conn);
    }
}

void COrderSocketServer::onDataReceived(const std::vector<unsigned char>& data, int length,
                                        net::NetConnectionPtr conn) {
    const auto found = m_connections.find(conn);
    if (found == m_connections.end() || m_bStuck) return;
    const ConnDataPtr connection = found->second;
    connection->m_buffer.append(reinterpret_cast<const char*>(data.data()), length);
    connection->m_nBuffered += length;
    takeLines(conn, *connection);
    closeSilent();
}

void COrderSocketServer::onReleased(net::NetConnectionPtr conn) {
    const auto found = m_connections.find(conn);
    if (found == m_connections.end()) return;
    const ConnDataPtr connection = found->second;
    takeLines(conn, *connection);
    if (connection->m_bPeerGone && !conn->isHeld()) forget(conn);
    closeSilent();
}

void COrderSocketServer::forget(const net::NetConnectionPtr& conn) {
    const auto found = m_connections.find(conn);
    if (found == m_connections.end()) return;
    const ConnDataPtr data = found->second;
    m_connections.erase(found);
    if (data->m_account) m_credit->close(*data->m_account);
    m_loginDelays.end(conn, *data);
}

/// Serves the complete lines until the listener is stopped. Lines after that are lost with the connection and
/// get no reply.
void COrderSocketServer::takeLines(const net::NetConnectionPtr& conn, ConnData& data) {
    const std::string_view bytes(data.m_buffer.constData(), static_cast<std::size_t>(data.m_nBuffered));
    CLineFraming& framing = data.m_framing;
    for (EFrame frame = framing.next(bytes); frame != EFrame::NeedsMore; frame = framing.next(bytes)) {
        if (isStopped()) return;
        if (frame == EFrame::LoneFeed) return stopAtLineFeed(conn);
        const ENext next = takeLine(framing.line(bytes), conn, data);
        if (next == ENext::Closed) return;
        if (next == ENext::Held) break;
        framing.take();
    }
    if (data.m_account) m_credit->endTurn(*data.m_account);
    const int left = static_cast<int>(framing.left(bytes));
    const char* word = conn->isHeld() ? nullptr : m_guard.refuseLine(left);
    if (word != nullptr) {
        refuse(conn, word);
        return;
    }
    framing.compact(data.m_buffer);
    data.m_nBuffered = data.m_buffer.size();
}

/// A line feed without a carriage return is never consumed, so no connection of this listener is served any
/// more until it is stopped. With the guard on, only the connection that sent it is closed.
void COrderSocketServer::stopAtLineFeed(const net::NetConnectionPtr& conn) {
    if (const char* word = m_guard.refuseLineFeed()) {
        refuse(conn, word);
        return;
    }
    conn->flush();
    reportDoor(EDoorEvent::Stuck, peerOf(*conn), "a line feed without a carriage return");
    m_bStuck = true;
    waitForStop();
}

COrderSocketServer::ENext COrderSocketServer::takeLine(std::string_view line,
                                                       const net::NetConnectionPtr& conn, ConnData& data) {
    if (const char* word = m_guard.refuseLine(static_cast<int>(line.size()))) return refuse(conn, word);
    CReply& reply = m_reply;
    std::fill(reply.begin(), std::find(reply.begin(), reply.end(), 0),
              0); // clears the reply to the line before
    const CSocketVerb* verb = m_guard.hasZeroByte(line) ? nullptr : CSocketVerb::find(line);
    if (m_guard.isOn() && verb != nullptr && verb->admit != nullptr) {
        const ENext next = (this->*verb->admit)(conn, data);
        if (next != ENext::GoOn) return next;
    }
    if (verb == nullptr) {
        writeError(reply, kBadCommand);
    } else if (verb->serve == nullptr) {
        writeOk(reply);
        sendText(*conn, reply);
        removeConnection(conn);
        forget(conn);
        return ENext::Closed;
    } else {
        (this->*verb->serve)(trimArgument(line.substr(verb->word.size())), data, reply);
        if (const char* word = m_guard.refuseLogins(data)) return refuse(conn, word);
    }
    sendText(*conn, reply);
    try {
        if (verb != nullptr) logLine(this, line, reply);
    } catch (...) {
        // If logging fails, only the log line is lost. The reply was already sent.
    }
    return ENext::GoOn;
}

/// Sends the text as an error reply, reports the refusal to the audit and closes the connection. Other
/// connections are still served.
COrderSocketServer::ENext COrderSocketServer::refuse(const net::NetConnectionPtr& conn, const char* word) {
    CReply reply(kReplySize);
    writeError(reply, word);
    sendText(*conn, reply);
    reportRefusal(*conn, word);
    removeConnection(conn);
    forget(conn);
    return ENext::Closed;
}

/// The account's callback may be called at any time, even long after the listener was destroyed. So it holds
/// only weak pointers to the listener and the connection.
COrderCredit::CAccountPtr COrderSocketServer::openAccount(const net::NetConnectionPtr& conn) {
    const boost::weak_ptr<net::NetServer> server = shared_from_this();
    const boost::weak_ptr<net::NetConnection> weak = conn;
    return m_credit->open([loop = m_loop, server, weak] {
        loop->post([server, weak] {
            const auto self = server.lock();
            const auto waiting = weak.lock();
            if (self && waiting) waiting->release();
        });
    });
}

/// While the service's queue has too much work, the order waits, and so do all later lines of the client.
COrderSocketServer::ENext COrderSocketServer::admitOrder(const net::NetConnectionPtr& conn, ConnData& data) {
    const bool isNotLoggedIn = data.m_eLoginState != ELoginState::LoggedIn && !m_strUser.empty();
    if (isNotLoggedIn || m_credit->mayPlace(*data.m_account)) return ENext::GoOn;
    conn->hold();
    watchConnections();
    return ENext::Held;
}

COrderSocketServer::ENext COrderSocketServer::admitPass(const net::NetConnectionPtr& conn, ConnData& data) {
    if (m_strUser.empty()) return ENext::GoOn;
    const CLoginDelays::EAnswer answer = m_loginDelays.admit(conn, data);
    if (answer == CLoginDelays::EAnswer::GoOn) return ENext::GoOn;
    if (answer == CLoginDelays::EAnswer::Refused) return refuse(conn, m_guard.refuseDelay(true));
    watchDelays();
    return ENext::Held;
}

void COrderSocketServer::watchDelays() {
    const std::optional<double> seconds = m_loginDelays.secondsToNext();
    if (!seconds) return;
    m_delayWatch.expires_after(std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(*seconds)));
    m_delayWatch.async_wait([this, self = shared_from_this()](const boost::system::error_code& error) {
        if (!error) lookAtClock();
    });
}

void COrderSocketServer::clockMoved() {
    m_loop->post([this, self = shared_from_this()] { lookAtClock(); });
}

void COrderSocketServer::lookAtClock() {
    m_loginDelays.release();
    watchDelays();
    closeSilent();
}

/// From now on the connection is not logged in, and its time limit to log in starts.
void COrderSocketServer::startLoginClock(ConnData& data) {
    if (!m_guard.isOn() || m_strUser.empty()) return;
    data.m_dNotLoggedInSince = utils::getTime();
    m_dNextDeadline = std::min(m_dNextDeadline, data.m_dNotLoggedInSince + CSocketGuard::kLoginSeconds);
    watchConnections();
}

void COrderSocketServer::logOut(ConnData& data) {
    if (data.m_eLoginState == ELoginState::LoggedIn) startLoginClock(data);
    data.m_eLoginState = ELoginState::Named;
}

void COrderSocketServer::onUser(std::string_view argument, ConnData& data, CReply& reply) {
    data.m_strUser = std::string(argument);
    logOut(data);
    writeOk(reply);
}

void COrderSocketServer::onPass(std::string_view argument, ConnData& data, CReply& reply) {
    // Both are always compared, so that the time of the reply does not show which of them is wrong.
    const bool isPass = isSameSecret(argument, m_strPass);
    const bool isUser = isSameSecret(data.m_strUser, m_strUser);
    if (data.m_eLoginState == ELoginState::Named && isPass && isUser) {
        data.m_eLoginState = ELoginState::LoggedIn;
        data.m_nFailedLogins = 0;
        return writeOk(reply);
    }
    logOut(data);
    ++data.m_nFailedLogins;
    if (m_guard.isOn()) m_loginDelays.countFailure(data);
    writeError(reply, kBadLogin);
}

/// If the connection must log in first, writes the error reply and returns true.
bool COrderSocketServer::mustLogIn(const ConnData& data, CReply& reply) const {
    if (data.m_eLoginState == ELoginState::LoggedIn || m_strUser.empty()) return false;
    writeError(reply, kNotLoggedIn);
    return true;
}

void COrderSocketServer::onPlaceOrder(std::string_view argument, ConnData& data, CReply& reply) {
    if (mustLogIn(data, reply)) return;
    try {
        placeOrder(argument, data, reply);
    } catch (const CHostError&) {
        reportFailure(m_strSource);
        writeError(reply, kBadParam);
    } catch (...) {
        writeError(reply, kBadParam);
    }
}

void COrderSocketServer::placeOrder(std::string_view argument, const ConnData& data, CReply& reply) {
    // The order is read in its place in the batch, because moving it takes long.
    QVector<COrderParam> batch(1);
    COrderParam& order = batch.first();
    std::string error;
    if (!parseSocketOrder(argument, m_registry, m_codes, order, error))
        return writeError(reply, (kBadParam + utils::safeUtf82Gbk(error)).c_str());
    CIntakeReport report;
    report.m_eStrategyType = order.m_eStrategyType;
    report.m_nChannel = order.m_nChannel;
    report.m_strSource = m_strSource;
    report.m_nLines = 1;
    report.m_nOrders = 1;
    reportToAudit(report);
    COrderCredit::CTicket ticket = charge(data, order.m_orders.size());
    m_gate.placeOrders(std::move(batch));
    holdTicket(std::move(ticket));
    writeOk(reply);
}

/// Returns null without the guard.
COrderCredit::CTicket COrderSocketServer::charge(const ConnData& data, int lines) const {
    return data.m_account ? m_credit->charge(data.m_account, lines) : nullptr;
}

/// The order is already queued. If this fails, its room is given back too early; the reply does not change.
void COrderSocketServer::holdTicket(COrderCredit::CTicket ticket) noexcept {
    try {
        if (ticket) m_gate.holdUntilProcessed(std::move(ticket));
    } catch (...) {
    }
}

void COrderSocketServer::onCancel(std::string_view argument, ConnData& data, CReply& reply) {
    if (mustLogIn(data, reply)) return;
    try {
        const CFields fields(argument, ' ');
        if (fields.size() != 1 || fields[0].empty()) return writeError(reply, kBadParam);
        const int task = utils::strictInt(fields[0]);
        COrderCredit::CTicket ticket = charge(data, 1);
        m_gate.cancelOrder(task);
        holdTicket(std::move(ticket));
        writeOk(reply);
    } catch (...) {
        writeError(reply, kBadParam);
    }
}

/// Checks once a second for overdue logins and waiting orders, as long as there may be any.
void COrderSocketServer::watchConnections() {
    if (m_bWatching || (m_dNextDeadline == kNoDeadline && !m_credit->hasWaiting())) return;
    m_bWatching = true;
    m_watch.expires_after(kWatch);
    m_watch.async_wait([this, self = shared_from_this()](const boost::system::error_code& error) {
        m_bWatching = false;
        if (error) return;
        m_credit->wakeWaiting();
        closeSilent();
        watchConnections();
    });
}

void COrderSocketServer::closeSilent() {
    if (!m_guard.isOn()) return;
    const double now = utils::getTime();
    if (now < m_dNextDeadline) return;
    m_dNextDeadline = kNoDeadline;
    std::vector<net::NetConnectionPtr> silent;
    for (const auto& [conn, data] : m_connections) {
        if (data->m_eLoginState == ELoginState::LoggedIn) continue;
        if (m_guard.refuseSilence(*data, now) != nullptr) {
            silent.push_back(conn);
        } else {
            // A connection whose `pass` waits can be past its time limit. Checking it again in a second is
            // early enough.
            const double due = std::max(data->m_dNotLoggedInSince + CSocketGuard::kLoginSeconds, now + 1);
            m_dNextDeadline = std::min(m_dNextDeadline, due);
        }
    }
    for (const net::NetConnectionPtr& conn : silent)
        refuse(conn, m_guard.refuseSilence(*m_connections.at(conn), now));
}

void COrderSocketServer::reportRefusal(const net::NetConnection& conn, const char* word) {
    const std::optional<int> others = m_refusals.count(utils::getTime());
    if (!others) return;
    std::string cause = word;
    if (*others > 0) cause += ", and " + std::to_string(*others) + " others before it";
    reportDoor(EDoorEvent::Refused, peerOf(conn), cause);
}

/// If the count cannot be reported, the stop still succeeds.
void COrderSocketServer::reportCountedRefusals() noexcept {
    try {
        const int others = m_refusals.takeNotReported();
        if (others > 0) reportDoor(EDoorEvent::Refused, {}, std::to_string(others) + " others");
    } catch (...) {
    }
}

void COrderSocketServer::reportDoor(EDoorEvent event, const QString& peer, const std::string& cause) const {
    CDoorReport report;
    report.m_eEvent = event;
    report.m_strSource = m_strSource;
    report.m_strPeer = peer;
    report.m_strCause = QString::fromStdString(cause);
    reportToAudit(report);
}

} // namespace TC
