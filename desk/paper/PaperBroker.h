#pragma once

#include "base/KNError.h"
#include "desk/config/DeskConfig.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBook.h"
#include "desk/paper/PaperRecords.h"
#include "desk/paper/PaperStore.h"
#include "records/CommandParam.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace desk {

/// The largest numbers that a record outside the store names (CJournal); 0: none.
struct CKnownNumbers {
    int m_nTask = 0;
    int m_nOrder = 0;
    int m_nFill = 0;
};

/// A broker on paper: takes finished commands of every product family as a real one would, checks funds,
/// positions and debts, trades against the quotes that the desk shows, and keeps all of it in a store. What
/// it models of each family stands in the tables of PaperFamilies, what it accepts at rejectionReason
/// (OrderRules.h).
///
/// Money. Plain buys and sells, and options, are paid in full. A future, gold that is opened, and an option
/// that is sold hold a margin from opening to closing: the price of the trade, times volume and multiplier,
/// times the instrument's margin rate. What a future has gained or lost is booked to cash when it is closed,
/// against the average cost of the position, so an account can end below zero; there are no margin calls. A
/// waiting sale that opens may find a better price in a later quote than its limit: it then holds more margin
/// than it had frozen.
///
/// Credit. An account has one debt of money and one of shares for each instrument; repayments name no
/// contract. Financed buys and short sales use the account's credit limit: money, and shares at what they
/// were sold for. A waiting short sale that finds a better price than its limit trades as far as its own
/// credit and what is left of the account's pay for; a rest without credit is cancelled. The proceeds of a
/// short sale are held until the shares are returned, and pay for buying them back; a waiting return counts
/// on those that it found when it was accepted.
///
/// Trading. An order trades at once with the opposite levels of the quote, each at the level's price, as far
/// as its limit allows; the rest waits with its money or volume frozen. Each quote update offers its
/// displayed volumes once: what orders take is gone until the next onQuote of the instrument. onQuote matches
/// the waiting orders in the order of their ids, again at the levels' prices, so an order may get a better
/// price than its limit, never a worse one. Between two calls of onQuote the quote source is asked only where
/// the broker has no quote of the instrument yet. An order without limit takes what the book has; the rest is
/// cancelled at once, all of it while there is no quote. A limit order without a quote waits. Orders are good
/// for the trading day.
///
/// Store. Every call that changes something has stored all of it in one transaction before it returns. If the
/// store fails, the call fails with the reason, nothing has happened, and the broker goes on as it was. The
/// funds and positions of the configuration are taken only for an account that is new to the store; later the
/// store's count alone.
///
/// Events. Changes of orders, and fills, are numbered and kept in the store until the listener has taken
/// them, so that a journal that was full or a process that was killed leaves no gap: they come again, in
/// order, each once.
///
/// Threads. Every operation may be called from any thread; one mutex guards all. The quote source and the
/// listener are called with the mutex held: neither may call the broker, and the source must not hold a lock
/// of its own while it calls onQuote.
class CPaperBroker {
public:
    /// Takes one event; false: not now, it stays in line. Must not throw.
    using CListener = std::function<bool(const CBrokerEvent&)>;

    /// The source outlives the broker.
    CPaperBroker(const IQuoteSource& quotes, CListener listener);

    /// Opens the store in the desk folder and takes in new accounts, once, before any other call.
    /// `lastEventTaken` is the number of the last event that the listener took in its life
    /// (CJournal::lastBrokerEvent); those after it are delivered again. Fails where the store cannot be used,
    /// where an account's funds or positions make no sense, and where what the books hold does not fit the
    /// instruments any more (BookReview.h). The store is then as it was, also where an older desk made it.
    /// `known` are numbers that a record outside the store names: new ones are above them, so that no number
    /// ever means two things, also after the store was lost or an older copy was put in its place.
    [[nodiscard]] utils::KNError open(const std::string& folder, const std::vector<CAccountEntry>& accounts,
                                      std::int64_t lastEventTaken, const CKnownNumbers& known = {});

    /// Tells the trading day, "yyyyMMdd". A day after the one known ends every waiting order and makes all
    /// that was bought sellable; the same day or an earlier one changes nothing.
    [[nodiscard]] utils::KNError startTradingDay(const std::string& day);

    /// Takes the number of the next task, so that the caller can record the command with it before it places
    /// the command. The number is used up, also if no command is placed under it.
    int reserveTask();

    /// Takes one command: a task with one order for each code, in their order. An order that is refused is an
    /// order with state rejected; the call fails only where the store does. `reference` is the caller's
    /// number for the command and comes back in its events. `taskId` is a number from reserveTask, or 0 for
    /// the next one, which it then gets on success. A command without codes is a task without orders.
    [[nodiscard]] utils::KNError placeCommand(const TC::COrderComandParam& command, std::int64_t reference,
                                              int& taskId);

    /// Cancels the waiting orders of a task. Fails where the task is unknown or nothing of it waits.
    [[nodiscard]] utils::KNError cancelTask(int taskId, const std::string& reason);

    /// Cancels one order by the words of a `cancel_order` line: the word itself, account key, order id.
    /// Blanks around a word do not count. Fails where there are not three words, the id is no number, the
    /// order is not the account's, or it does not wait any more.
    [[nodiscard]] utils::KNError cancelOrders(const std::vector<std::string>& words);

    /// The instrument has a new quote: reads it and matches what waits. If the store fails, what waits goes
    /// on waiting for the next quote.
    [[nodiscard]] utils::KNError onQuote(const std::string& stockKey);

    /// Delivers what the listener has not taken yet, until it refuses.
    void deliverEvents();

    /// Stores which events the listener has taken, so that they do not come again, whatever the next open is
    /// told. For an orderly end; a failure changes nothing but that.
    [[nodiscard]] utils::KNError storeDelivered();

    /// What each of the accounts could close now of the instrument by an operation that closes positions
    /// (futures, options, gold), less what waiting orders will close. None where the operation is no such.
    std::vector<std::int64_t> closableVolumes(const std::vector<std::string>& accounts,
                                              const CInstrumentEntry& instrument,
                                              TC::EOperationType operation) const;

    bool hasTask(int taskId) const;
    /// Snapshots, by id or by account.
    std::vector<CPaperTask> tasks() const;
    std::vector<CPaperOrder> orders() const;
    std::vector<CPaperFill> fills() const;
    std::vector<CPaperFunds> funds() const;
    std::vector<CPaperPosition> positions() const;
    /// What accounts owe, or will owe when their waiting orders trade; by account, money first.
    std::vector<CPaperDebt> debts() const;

private:
    void placeOrder(const TC::COrderComandParam& command, const TC::CCodeOrderParam& record,
                    CPaperOrder& order);
    static void fillOrder(const TC::COrderComandParam& command, const TC::CCodeOrderParam& record,
                          const std::optional<CInstrumentEntry>& instrument, CPaperOrder& order);
    std::string reasonToReject(const TC::COrderComandParam& command, const TC::CCodeOrderParam& record,
                               const std::optional<CInstrumentEntry>& instrument,
                               const CPaperOrder& order) const;
    /// Puts an accepted order to the book.
    void trade(CPaperOrder& order);
    /// Carries out an accepted order that does not trade.
    void carryOut(const TC::CCodeOrderParam& record, CPaperOrder& order);
    void ensureQuote(const std::string& stockKey);
    bool mayTrade(const CPaperOrder& order, EInstrumentKind kind) const;
    void matchResting(const std::string& stockKey);
    utils::KNError finishChange();
    void deliverPending();

    mutable std::mutex m_mutex;
    const IQuoteSource& m_quotes;
    CListener m_listener;
    CPaperStore m_store;
    CPaperBook m_book;
    std::map<std::string, CAccountEntry> m_accounts; ///< of the configuration, by key
    std::deque<CBrokerEvent> m_pending;              ///< stored, not yet taken by the listener
    std::int64_t m_nDeliveredEvent = 0;
};

} // namespace desk
