#pragma once

#include <functional>
#include <list>
#include <memory>
#include <mutex>

namespace TC {

/// Shares the room for orders in the service's queue among the connections of all listeners. An order takes
/// room from the moment when it is handed over until the service has finished it. Room is counted in rows: a
/// basket of 300 rows takes 300, a single order or a cancel takes one. An order without room is not read from
/// the client yet. So no client can put more than a moment of work before another client's order.
///
/// The total room is the number of rows that the service finishes in kSeconds, measured from its recent work.
/// The share of a connection is half of the room. A connection below its share places orders at once if there
/// is room and no connection waits for a turn. Otherwise it waits. Waiting connections get turns of a few
/// rows each, in the order in which they began to wait. An order that needs more room than is left is still
/// placed whole.
///
/// Must be held by a shared pointer, because tickets may return room after the listeners are destroyed.
/// Thread-safe.
class COrderCredit : public std::enable_shared_from_this<COrderCredit> {
public:
    /// Largest room, in rows, for all connections together. It is just enough to keep a fast service busy.
    /// More would be a risk: an idle service is not measured, and each row may have to wait two seconds for a
    /// quote.
    static constexpr int kMostRoom = 8;
    static constexpr int kLeastRoom = 4;     ///< smallest room, so that a slow service always has work too
    static constexpr double kSeconds = 0.04; ///< the room is this much work for the service

    /// Returns its room when its last copy is destroyed.
    using CTicket = std::shared_ptr<const void>;

    /// The state of one connection. close() gives back the rest of its turn. Its tickets may outlive the
    /// connection.
    class CAccount;
    using CAccountPtr = std::shared_ptr<CAccount>;

    /// Creates an account. `wake` is called when an account that had to wait may try again. It is called on
    /// any thread and with a lock held, so it may only post. It is not called after the account is closed.
    CAccountPtr open(std::function<void()> wake);
    void close(CAccount& account);

    /// Whether the account may hand over an order now. If false, the account has to wait and `wake` is called
    /// later.
    bool mayPlace(CAccount& account);
    /// Takes room for an order of this many rows, even if there is not enough.
    CTicket charge(const CAccountPtr& account, int rows);
    /// Gives back the rest of the account's turn. Called when the account has no more orders to place for
    /// now.
    void endTurn(CAccount& account);

    /// Whether an account waits for its turn.
    bool hasWaiting();
    /// Tries again to wake the accounts that could not be woken because memory ran out. Listeners call it
    /// from time to time while an account waits.
    void wakeWaiting();

private:
    class CRoom;

    void giveBack(CAccount& account, int rows, double since) noexcept;
    void measure(double secondsPerRow);
    int share() const { return m_nRoom / 2; }
    int turn() const { return m_nRoom / 4; }
    void dropTurn(CAccount& account) noexcept;
    void lineUp(CAccount& account) noexcept;
    void grantTurns() noexcept;

    std::mutex m_mutex;             ///< guards all members below and the accounts
    int m_nRoom = kMostRoom;        ///< soft limit for m_nTaken, in rows
    double m_dSecondsPerRow = 0;    ///< seconds that the service needs for a row, recent average
    double m_dLastBack = 0;         ///< utils::getTime() when room was last given back
    int m_nTaken = 0;               ///< rows in the queue
    int m_nGranted = 0;             ///< rows that granted turns may still add
    std::list<CAccount*> m_waiting; ///< accounts that wait for a turn; close() removes an account
};

} // namespace TC
