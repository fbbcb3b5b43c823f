#pragma once

#include "orderservice/socket/LineFraming.h"
#include "orderservice/socket/OrderCredit.h"

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TC {

/// Login state of a connection.
enum class ELoginState : std::int32_t {
    Fresh = 0,
    Named = 1, ///< after `user` or a failed `pass`
    LoggedIn = 2
};

/// The order socket's data for one connection. It is created at connect and destroyed with the connection.
/// Only the listener's thread uses it.
struct ConnData {
    static constexpr std::size_t kScratchSize = 65536;

    ConnData() : m_scratch(kScratchSize) {}

    std::vector<unsigned char> m_scratch; ///< belongs to the record's layout; not used
    QByteArray m_buffer;                  ///< bytes received and not consumed yet
    std::int64_t m_nBuffered = 0;         ///< valid bytes of m_buffer
    ELoginState m_eLoginState = ELoginState::Fresh;
    std::string m_strUser; ///< the last name given by `user`

    CLineFraming m_framing;         ///< cuts m_buffer into lines
    int m_nFailedLogins = 0;        ///< failed `pass` lines since the last successful one
    double m_dNotLoggedInSince = 0; ///< utils::getTime() when it connected or was last logged out, seconds

    std::string m_strAddress;            ///< the peer's address group, see CFailedLogins::groupOf
    COrderCredit::CAccountPtr m_account; ///< its share of the service's queue; null without the guard
    /// Set while its `pass` has to wait: the start of the wait, and the time of the next check. Seconds of
    /// utils::getTime().
    std::optional<double> m_passSince, m_passAt;
    bool m_bPeerGone = false; ///< the connection broke; complete lines received before are still served
};

} // namespace TC
