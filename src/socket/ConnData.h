#pragma once

#include "socket/LineFraming.h"
#include "socket/OrderCredit.h"

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TC {

/// Where a connection stands with its login.
enum class ELoginState : std::int32_t {
    Fresh = 0,
    Named = 1, ///< after `user` or a failed `pass`
    LoggedIn = 2
};

/// What the order socket knows of one connection. Made at connect, gone with the connection; the listener's
/// thread alone touches it.
struct ConnData {
    static constexpr std::size_t kScratchSize = 65536;

    ConnData() : m_scratch(kScratchSize) {}

    std::vector<unsigned char> m_scratch; ///< part of the record; nothing reads or writes it
    QByteArray m_buffer;                  ///< received and not consumed
    std::int64_t m_nBuffered = 0;         ///< valid bytes of m_buffer
    ELoginState m_eLoginState = ELoginState::Fresh;
    std::string m_strUser; ///< the last name given by `user`

    CLineFraming m_framing;      ///< cuts m_buffer into lines
    int m_nFailedLogins = 0;     ///< failed `pass` lines since the last good one
    double m_dStrangerSince = 0; ///< utils::getTime() when it connected or was last logged out, seconds

    std::string m_strAddress;            ///< of the peer, as CFailedLogins counts it
    COrderCredit::CAccountPtr m_account; ///< its part of the room in the service's queue; null without guard
    /// While its `pass` has to wait: since when, and when it is looked at next. utils::getTime().
    std::optional<double> m_passSince, m_passAt;
    bool m_bPeerGone = false; ///< broken; lines that came whole before are still served
};

} // namespace TC
