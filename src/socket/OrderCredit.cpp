#include "socket/OrderCredit.h"

#include "base/Clock.h"

#include <algorithm>
#include <utility>

namespace TC {
namespace {

/// How much a new measurement counts against those before it.
constexpr double kNewest = 0.125;

} // namespace

class COrderCredit::CAccount {
public:
    explicit CAccount(std::function<void()> wake) : m_wake(std::move(wake)) {}

    enum class EWait {
        None,
        ForShare, ///< for orders of its own to be worked off
        InLine    ///< for its turn
    };

    std::function<void()> m_wake; ///< empty once the account is closed
    int m_nTaken = 0;             ///< lines in the queue
    int m_nTurn = 0;              ///< lines that its turn may still add
    EWait m_eWait = EWait::None;
};

/// What a ticket holds: the room of one order.
class COrderCredit::CRoom {
public:
    CRoom(std::shared_ptr<COrderCredit> credit, CAccountPtr account, int lines)
        : m_credit(std::move(credit)), m_account(std::move(account)), m_nLines(lines),
          m_dSince(utils::getTime()) {}
    ~CRoom() { m_credit->giveBack(*m_account, m_nLines, m_dSince); }
    CRoom(const CRoom&) = delete;
    CRoom& operator=(const CRoom&) = delete;

private:
    const std::shared_ptr<COrderCredit> m_credit;
    const CAccountPtr m_account;
    const int m_nLines;
    const double m_dSince; ///< when it was taken
};

COrderCredit::CAccountPtr COrderCredit::open(std::function<void()> wake) {
    return std::make_shared<CAccount>(std::move(wake));
}

void COrderCredit::close(CAccount& account) {
    const std::lock_guard lock(m_mutex);
    account.m_wake = nullptr;
    account.m_eWait = CAccount::EWait::None;
    m_line.erase(std::remove(m_line.begin(), m_line.end(), &account), m_line.end());
    dropTurn(account);
}

bool COrderCredit::mayPlace(CAccount& account) {
    const std::lock_guard lock(m_mutex);
    if (account.m_eWait != CAccount::EWait::None) return false;
    if (account.m_nTurn > 0) return true;
    if (account.m_nTaken >= share()) {
        account.m_eWait = CAccount::EWait::ForShare;
        return false;
    }
    if (m_line.empty() && m_nTaken + m_nGranted < m_nRoom) return true;
    lineUp(account);
    return false;
}

COrderCredit::CTicket COrderCredit::charge(const CAccountPtr& account, int lines) {
    lines = std::max(lines, 1);
    auto room = std::make_shared<CRoom>(shared_from_this(), account, lines);
    const std::lock_guard lock(m_mutex);
    const int ofTurn = std::min(account->m_nTurn, lines);
    account->m_nTurn -= ofTurn;
    m_nGranted -= ofTurn;
    account->m_nTaken += lines;
    m_nTaken += lines;
    return room;
}

void COrderCredit::endTurn(CAccount& account) {
    const std::lock_guard lock(m_mutex);
    dropTurn(account);
}

void COrderCredit::giveBack(CAccount& account, int lines, double since) {
    const std::lock_guard lock(m_mutex);
    // The service began with this order when it had done the one before, or else when this one came.
    const double now = utils::getTime();
    measure((now - std::max(since, std::exchange(m_dLastBack, now))) / lines);
    account.m_nTaken -= lines;
    m_nTaken -= lines;
    const bool hasShare = account.m_nTaken <= share() - turn();
    if (account.m_eWait == CAccount::EWait::ForShare && hasShare) lineUp(account);
    grantTurns();
}

void COrderCredit::measure(double secondsOfALine) {
    m_dLine += (secondsOfALine - m_dLine) * kNewest;
    m_nRoom = m_dLine * kMostRoom <= kSeconds ? kMostRoom
                                              : std::max(kLeastRoom, static_cast<int>(kSeconds / m_dLine));
}

void COrderCredit::dropTurn(CAccount& account) {
    m_nGranted -= std::exchange(account.m_nTurn, 0);
    grantTurns();
}

void COrderCredit::lineUp(CAccount& account) {
    m_line.push_back(&account);
    account.m_eWait = CAccount::EWait::InLine;
}

/// The more wait, the shorter the turns: so the last of them does not wait for long. An account that cannot
/// be woken, for want of memory, stays the first and is tried again with the next room.
void COrderCredit::grantTurns() try {
    while (!m_line.empty()) {
        const int lines = std::max(1, turn() / static_cast<int>(m_line.size()));
        if (m_nTaken + m_nGranted + lines > m_nRoom) return;
        CAccount& account = *m_line.front();
        account.m_wake();
        m_line.pop_front();
        account.m_eWait = CAccount::EWait::None;
        account.m_nTurn = lines;
        m_nGranted += lines;
    }
} catch (...) {
}

} // namespace TC
