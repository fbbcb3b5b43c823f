#include "orderservice/socket/OrderCredit.h"

#include "orderservice/base/Clock.h"

#include <algorithm>
#include <utility>

namespace TC {
namespace {

/// Weight of a new measurement in the moving average.
constexpr double kNewest = 0.125;

} // namespace

class COrderCredit::CAccount {
public:
    explicit CAccount(std::function<void()> wake) : m_wake(std::move(wake)) {}

    enum class EWait {
        None,
        ForShare, ///< until enough of its own orders are finished
        InLine    ///< until it gets its turn
    };

    std::function<void()> m_wake; ///< empty after the account is closed
    int m_nTaken = 0;             ///< rows in the queue
    int m_nTurn = 0;              ///< rows that its current turn may still add
    EWait m_eWait = EWait::None;
    /// Holds the account's list element while it is not in m_waiting. So joining m_waiting allocates no
    /// memory.
    std::list<CAccount*> m_place{this};
};

/// What a ticket points to: the room of one order. Its destructor returns the room.
class COrderCredit::CRoom {
public:
    CRoom(std::shared_ptr<COrderCredit> credit, CAccountPtr account, int rows)
        : m_credit(std::move(credit)), m_account(std::move(account)), m_nRows(rows),
          m_dSince(utils::getTime()) {}
    ~CRoom() { m_credit->giveBack(*m_account, m_nRows, m_dSince); }
    CRoom(const CRoom&) = delete;
    CRoom& operator=(const CRoom&) = delete;

private:
    const std::shared_ptr<COrderCredit> m_credit;
    const CAccountPtr m_account;
    const int m_nRows;
    const double m_dSince; ///< when the room was taken, in utils::getTime()
};

COrderCredit::CAccountPtr COrderCredit::open(std::function<void()> wake) {
    return std::make_shared<CAccount>(std::move(wake));
}

void COrderCredit::close(CAccount& account) {
    const std::lock_guard lock(m_mutex);
    account.m_wake = nullptr;
    account.m_eWait = CAccount::EWait::None;
    m_waiting.remove(&account);
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
    if (m_waiting.empty() && m_nTaken + m_nGranted < m_nRoom) return true;
    lineUp(account);
    return false;
}

COrderCredit::CTicket COrderCredit::charge(const CAccountPtr& account, int rows) {
    rows = std::max(rows, 1);
    auto room = std::make_shared<CRoom>(shared_from_this(), account, rows);
    const std::lock_guard lock(m_mutex);
    const int ofTurn = std::min(account->m_nTurn, rows);
    account->m_nTurn -= ofTurn;
    m_nGranted -= ofTurn;
    account->m_nTaken += rows;
    m_nTaken += rows;
    return room;
}

void COrderCredit::endTurn(CAccount& account) {
    const std::lock_guard lock(m_mutex);
    dropTurn(account);
}

bool COrderCredit::hasWaiting() {
    const std::lock_guard lock(m_mutex);
    return !m_waiting.empty();
}

void COrderCredit::wakeWaiting() {
    const std::lock_guard lock(m_mutex);
    grantTurns();
}

/// Called by the destructor of a ticket's content, so it must not throw.
void COrderCredit::giveBack(CAccount& account, int rows, double since) noexcept {
    const std::lock_guard lock(m_mutex);
    // The service began this order when it had finished the previous one, or when this order was handed over,
    // whichever is later.
    const double now = utils::getTime();
    measure((now - std::max(since, std::exchange(m_dLastBack, now))) / rows);
    account.m_nTaken -= rows;
    m_nTaken -= rows;
    const bool hasShare = account.m_nTaken <= share() - turn();
    if (account.m_eWait == CAccount::EWait::ForShare && hasShare) lineUp(account);
    grantTurns();
}

void COrderCredit::measure(double secondsPerRow) {
    m_dSecondsPerRow += (secondsPerRow - m_dSecondsPerRow) * kNewest;
    m_nRoom = m_dSecondsPerRow * kMostRoom <= kSeconds
                  ? kMostRoom
                  : std::max(kLeastRoom, static_cast<int>(kSeconds / m_dSecondsPerRow));
}

void COrderCredit::dropTurn(CAccount& account) noexcept {
    m_nGranted -= std::exchange(account.m_nTurn, 0);
    grantTurns();
}

void COrderCredit::lineUp(CAccount& account) noexcept {
    m_waiting.splice(m_waiting.end(), account.m_place);
    account.m_eWait = CAccount::EWait::InLine;
}

/// The more accounts wait, the shorter the turns are, so that the last account does not wait long. If an
/// account cannot be woken because memory ran out, it stays the first and is tried again later.
void COrderCredit::grantTurns() noexcept try {
    while (!m_waiting.empty()) {
        const int rows = std::max(1, turn() / static_cast<int>(m_waiting.size()));
        if (m_nTaken + m_nGranted + rows > m_nRoom) return;
        CAccount& account = *m_waiting.front();
        account.m_wake();
        account.m_place.splice(account.m_place.end(), m_waiting, m_waiting.begin());
        account.m_eWait = CAccount::EWait::None;
        account.m_nTurn = rows;
        m_nGranted += rows;
    }
} catch (...) {
}

} // namespace TC
