#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/CommandQueue.h"
#include "desk/paper/PaperBook.h"
#include "desk/paper/PaperRecords.h"
#include "desk/paper/PaperStore.h"
#include "orderservice/base/KNError.h"
#include "orderservice/records/CommandParam.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace desk {

/// The largest numbers that a record outside the store (the journal, see CJournal) contains; 0 if it has
/// none.
struct CKnownNumbers {
    int m_nTask = 0;
    int m_nOrder = 0;
    int m_nFill = 0;
};

/// What the accounts have and owe, as of one moment. Each list as its own operation of CPaperBroker returns
/// it.
struct CPaperBooks {
    std::vector<CPaperFunds> m_funds;
    std::vector<CPaperPosition> m_positions;
    std::vector<CPaperDebt> m_debts;
};

/// A simulated broker. It takes finished commands of every product family, checks funds, positions and debts,
/// trades against the desk's quotes, and keeps everything in a store. The tables of PaperFamilies list what
/// it models of each family. rejectionReason (OrderRules.h) describes the orders that it accepts.
///
/// Money. Plain buys and sells, and options, are paid in full. A future, gold that is opened, and a sold
/// option hold a margin from opening to closing. The margin is price times volume times multiplier times the
/// instrument's margin rate. The gain or loss of a future is booked to cash when it is closed, against the
/// average cost of the position. So an account can end below zero; there are no margin calls. A waiting sale
/// that opens a position may trade at a price above its limit in a later quote. Its margin is then larger
/// than the money that it had frozen.
///
/// Credit. An account has one debt of money, and one debt of shares for each instrument. A repayment does not
/// name a contract. Financed buys and short sales use the account's credit limit. A financed buy uses the
/// money borrowed, a short sale the money for which the shares were sold. A waiting short sale may find a
/// price above its limit. It then trades as much as its own credit and the unused credit of the account
/// allow, and the rest is cancelled. The proceeds of a short sale are held until the shares are returned, and
/// they pay for buying the shares back. An order that returns shares claims its part of the proceeds when it
/// is accepted.
///
/// Trading. An order trades at once with the opposite levels of the quote, each at the level's price, within
/// its limit. The rest waits with its money or volume frozen. Each quote update offers its displayed volumes
/// once: a volume that an order has taken is not offered again until the next onQuote of the instrument.
/// onQuote matches the waiting orders in the order of their ids, also at the prices of the levels. So an
/// order may get a better price than its limit, but never a worse one. Between two calls of onQuote the
/// broker asks the quote source only if it has no quote of the instrument yet. An order without a limit
/// trades with what the book has, and its rest is cancelled at once. If there is no quote, all of it is
/// cancelled. A limit order without a quote waits. Orders are valid for the trading day.
///
/// Store. A call that changes something stores the whole change in one transaction before it returns. If the
/// store fails, the call fails with the reason, the change is undone, and the broker goes on. The funds and
/// positions of the configuration are used only for an account that is new to the store. Afterwards only the
/// store is used.
///
/// Queue. queueCommand returns before the command is stored. The worker carries out all queued commands
/// together, in their order and in one transaction, and delivers their events after it. A command that comes
/// alone does not wait for others. If the transaction fails, the commands are tried again one by one, and
/// each that fails is refused with its reason. Every other call first carries out the queued commands. So a
/// call sees all commands that were queued before it, and it never sees a command that is not stored.
///
/// Events. Changes of orders and fills are numbered. The store keeps them until the listener has taken them.
/// So a full journal or a killed process leaves no gap: the events are delivered later, in order, each once.
///
/// Threads. Every operation is thread-safe; one mutex guards all but the queue. The quote source and the
/// listener are called with the mutex held, so neither may call the broker. The quote source must not hold
/// its own lock while it calls onQuote.
class CPaperBroker {
public:
    /// Takes events, in their order. Returns how many of them, from the first, it has taken. The others are
    /// delivered again later. Must not throw.
    using CListener = std::function<std::size_t(const std::vector<CBrokerEvent>&)>;

    /// The quote source must outlive the broker.
    CPaperBroker(const IQuoteSource& quotes, CListener listener);
    /// Stops the worker.
    ~CPaperBroker();
    CPaperBroker(const CPaperBroker&) = delete;
    CPaperBroker& operator=(const CPaperBroker&) = delete;

    /// Opens the store in the desk folder and takes in new accounts. Must be called once, before any other
    /// call. `lastEventTaken` is the number of the last event that the listener ever took
    /// (CJournal::lastBrokerEvent); later events are delivered again. Fails if the store cannot be used, if
    /// the funds or positions of an account are invalid, or if the loaded book no longer fits the instruments
    /// (BookReview.h). After a failure the store is unchanged, even if it has an older version. `known` are
    /// numbers that a record outside the store contains. New numbers are larger than them. So no number is
    /// used twice, even if the store was lost or replaced by an older copy.
    [[nodiscard]] utils::KNError open(const std::string& folder, const std::vector<CAccountEntry>& accounts,
                                      std::int64_t lastEventTaken, const CKnownNumbers& known = {});

    /// The first and the last task number that `known` of open names, but that the store did not have: their
    /// commands were recorded, but the process ended before the store had them. Nothing if there are none, or
    /// if the store is an older copy.
    std::optional<std::pair<int, int>> unbookedTasks() const { return m_unbooked; }

    /// Sets the trading day, "yyyyMMdd". A later day than the known one cancels every waiting order and makes
    /// all bought volumes sellable. If no day is known yet, the day is only recorded. The same day or an
    /// earlier one changes nothing.
    [[nodiscard]] utils::KNError startTradingDay(const std::string& day);

    /// Starts the thread that carries out queued commands. Without it, queueCommand carries them out itself.
    void startWorker();
    /// Ends that thread. All queued commands are carried out when it returns. Must not be called at the same
    /// time as startWorker.
    void stopWorker();

    /// Waits until the queue has room for another command. Call it before reserveTask: a command that is
    /// recorded must not wait, because a cancel would not find it. Returns at once without the worker.
    void waitForRoom() { m_queue.waitForRoom(); }

    /// Reserves the number of the next task, so that the caller can record the command with it before it
    /// queues the command. The number is used up even if no command is queued with it. Does not wait for the
    /// store.
    int reserveTask() { return m_book.reserveTask(); }

    /// Queues a command, which becomes one task with one order for each code, in their order. A refused order
    /// becomes an order with the state rejected; a command is refused only if the store fails. A command
    /// without codes becomes a task without orders. Does not wait for room; see waitForRoom. Without the
    /// worker it carries out the queued commands before it returns.
    void queueCommand(CQueuedCommand command);

    /// Carries out the commands that are queued now. When it returns, they are stored or refused.
    void finishQueued();

    /// Cancels the waiting orders of a task. Fails if the task is unknown or has no waiting order.
    [[nodiscard]] utils::KNError cancelTask(int taskId, const std::string& reason);

    /// Cancels one order. `words` are the words of a `cancel_order` line: the word itself, the account key
    /// and the order id. Blanks around a word are ignored. `reason` becomes the reason of the order. Fails if
    /// there are not three words, the id is not a number, the account has no such order, or the order does
    /// not wait any more.
    [[nodiscard]] utils::KNError cancelOrders(const std::vector<std::string>& words,
                                              const std::string& reason);

    /// Cancels all waiting orders that are chosen, in one transaction. `isChosen` is called with the broker
    /// locked, for each waiting order. `cancelled` gets their number. Succeeds if none is chosen. Fails only
    /// if the store fails; then all of them go on waiting, and `cancelled` is 0.
    [[nodiscard]] utils::KNError cancelWaiting(const std::function<bool(const CPaperOrder&)>& isChosen,
                                               const std::string& reason, int& cancelled);

    /// Call it when the instrument has a new quote. Reads the quote and matches the waiting orders. If the
    /// store fails, they go on waiting for the next quote.
    [[nodiscard]] utils::KNError onQuote(const std::string& stockKey);

    /// Delivers the events that the listener has not taken yet, until it refuses one.
    void deliverEvents();

    /// Stores which events the listener has taken, so that they are not delivered again, whatever number the
    /// next open gets. Meant for an orderly end. If it fails, only this information is missing.
    [[nodiscard]] utils::KNError storeDelivered();

    /// The volume that each account could close now of the instrument by this operation, without the volume
    /// that waiting orders will close. For operations that close positions (futures, options, gold). Empty
    /// for any other operation.
    std::vector<std::int64_t> closableVolumes(const std::vector<std::string>& accounts,
                                              const CInstrumentEntry& instrument,
                                              TC::EOperationType operation);

    /// The largest volume that one order of the account may have now (UsableVolume.h). 0 for an unknown
    /// account or instrument. price: currency units, may be unset.
    double usableVolume(const std::string& account, const std::string& stockKey, TC::EOperationType operation,
                        double price);

    bool hasTask(int taskId);
    /// Snapshots, by id or by account.
    std::vector<CPaperTask> tasks();
    std::vector<CPaperOrder> orders();
    std::vector<CPaperFill> fills();
    std::vector<CPaperFunds> funds();
    std::vector<CPaperPosition> positions();
    /// What accounts owe, or will owe when their waiting orders trade. Sorted by account, money first.
    std::vector<CPaperDebt> debts();
    /// Funds, positions and debts of the same moment.
    CPaperBooks books();
    /// The same for one account. All lists are empty if the broker has no such account.
    CPaperBooks booksOf(const std::string& account);
    /// The account's orders by id.
    std::vector<CPaperOrder> ordersOf(const std::string& account);

private:
    std::unique_lock<std::mutex> lockBooks();
    void carryOutQueued() noexcept;
    void carryOutAlone(const CQueuedCommand& command);
    void reportRejected(const CQueuedCommand& command);
    void place(const TC::COrderComandParam& command, std::int64_t reference, int task);
    void placeOrder(const TC::COrderComandParam& command, const TC::CCodeOrderParam& record,
                    CPaperOrder& order);
    static void fillOrder(const TC::COrderComandParam& command, const TC::CCodeOrderParam& record,
                          const std::optional<CInstrumentEntry>& instrument, CPaperOrder& order);
    std::string reasonToReject(const TC::COrderComandParam& command, const TC::CCodeOrderParam& record,
                               const std::optional<CInstrumentEntry>& instrument,
                               const CPaperOrder& order) const;
    /// Matches an accepted order against the book; the rest of an order without a limit is cancelled.
    void trade(CPaperOrder& order);
    /// Carries out an accepted order that does not trade.
    void carryOut(const TC::CCodeOrderParam& record, CPaperOrder& order);
    void ensureQuote(const std::string& stockKey);
    bool mayTrade(const CPaperOrder& order, EInstrumentKind kind) const;
    void matchResting(const std::string& stockKey);
    utils::KNError finishChange();
    void deliverPending();

    CCommandQueue m_queue;
    std::thread m_worker;
    /// Held while a thread waits for m_mutex, and taken before it. So the worker, which takes m_mutex again
    /// at once, does not overtake a thread that waits.
    std::mutex m_next;
    std::mutex m_mutex; ///< guards all members below
    const IQuoteSource& m_quotes;
    std::optional<std::pair<int, int>> m_unbooked;
    CListener m_listener;
    CPaperStore m_store;
    CPaperBook m_book;
    std::map<std::string, CAccountEntry> m_accounts; ///< from the configuration, by key
    std::vector<CBrokerEvent> m_pending;             ///< stored, not yet taken by the listener
    std::int64_t m_nDeliveredEvent = 0;
};

} // namespace desk
