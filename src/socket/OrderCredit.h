#pragma once

#include <functional>
#include <list>
#include <memory>
#include <mutex>

namespace TC {

/// Shares out the room for orders in the service's queue among the connections of all listeners. An order
/// counts from the moment it is handed over until it has been worked off, with its rows: a basket of 300 rows
/// is work for 300, an order or a cancel for one. What has no room is not read from the client yet, so no
/// client can put more than a moment's work in front of another's order.
///
/// The room is as many rows as the service works off in kSeconds, measured from what it has done lately. A
/// connection with less than its share, half of the room, goes on at once while there is room. One over its
/// share, or anybody while all the room is taken, waits; then the connections take turns of a few orders
/// each, in the order in which they began to wait. An order that takes more room than is left goes out whole.
///
/// Held by shared pointer, since tickets return room after the listeners have gone. Any thread.
class COrderCredit : public std::enable_shared_from_this<COrderCredit> {
public:
    /// Rows of orders in the queue, of all connections. An idle service is not measured, and each row can
    /// turn out to wait two seconds for a quote: so it is no more than keeps a fast service busy.
    static constexpr int kMostRoom = 8;
    static constexpr int kLeastRoom = 4;     ///< also if the service is slow, so that it always has work
    static constexpr double kSeconds = 0.04; ///< of work for the service

    /// Lets room go when its last copy is gone.
    using CTicket = std::shared_ptr<const void>;

    /// One connection's part. Its end gives back what the connection did not use; its tickets may outlive it.
    class CAccount;
    using CAccountPtr = std::shared_ptr<CAccount>;

    /// `wake` is called when an account that has to wait may try again: on any thread, with a lock held, so
    /// it may do no more than post. Not after the account has been closed.
    CAccountPtr open(std::function<void()> wake);
    void close(CAccount& account);

    /// Whether the account may hand an order over now. False puts it in line for its turn.
    bool mayPlace(CAccount& account);
    /// Takes room for an order of so many rows, whether there is any or not.
    CTicket charge(const CAccountPtr& account, int rows);
    /// The account has nothing more to place for now: gives back what is left of its turn.
    void endTurn(CAccount& account);

    /// Whether an account waits for its turn.
    bool hasWaiting();
    /// Tries again to wake those who could not be woken, for want of memory, when room came back. Listeners
    /// call it now and then while somebody waits.
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

    std::mutex m_mutex;             ///< guards everything below, and the accounts
    int m_nRoom = kMostRoom;        ///< what m_nTaken should not exceed
    double m_dSecondsPerRow = 0;    ///< seconds that the service takes for a line, lately
    double m_dLastBack = 0;         ///< utils::getTime() when room came back last
    int m_nTaken = 0;               ///< rows in the queue
    int m_nGranted = 0;             ///< rows that turns may still add
    std::list<CAccount*> m_waiting; ///< who waits for a turn; accounts leave it before they end
};

} // namespace TC
