#include "orderservice/socket/SocketGuard.h"

#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"

namespace TC {
namespace {

constexpr const char* kTooManyLogins = "Too Many Failed Logins";

} // namespace

CSocketGuard::CSocketGuard(bool needsLogin)
    : m_bOn(luawrapper::isOrderSwitchOn(kSocketGuardSwitch)), m_bNeedsLogin(needsLogin) {}

const char* CSocketGuard::refuseConnection(std::size_t others) const {
    return m_bOn && others >= kMaxConnections ? "Too Many Connections" : nullptr;
}

const char* CSocketGuard::refuseLine(int length) const {
    return m_bOn && length > kMaxLine ? "Line Too Long" : nullptr;
}

const char* CSocketGuard::refuseLineFeed() const {
    return m_bOn ? "Line Not Ended By CR LF" : nullptr;
}

bool CSocketGuard::hasZeroByte(std::string_view line) const {
    return m_bOn && line.find('\0') != std::string_view::npos;
}

const char* CSocketGuard::refuseLogins(const ConnData& connection) const {
    return m_bOn && connection.m_nFailedLogins >= kMaxFailedLogins ? kTooManyLogins : nullptr;
}

const char* CSocketGuard::refuseDelay(bool isFull) const {
    return m_bOn && isFull ? kTooManyLogins : nullptr;
}

const char* CSocketGuard::refuseSilence(const ConnData& connection, double now) const {
    // A connection whose `pass` is delayed is not treated as silent.
    const bool isWaiting =
        m_bNeedsLogin && connection.m_eLoginState != ELoginState::LoggedIn && !connection.m_passSince;
    return m_bOn && isWaiting && now - connection.m_dNotLoggedInSince >= kLoginSeconds ? "No Login In Time"
                                                                                       : nullptr;
}

} // namespace TC
