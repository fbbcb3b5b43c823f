#include "desk/paper/PaperBroker.h"

#include "desk/paper/BookReview.h"
#include "desk/paper/Holds.h"
#include "desk/paper/Matching.h"
#include "desk/paper/OrderRules.h"
#include "desk/paper/PaperFamilies.h"
#include "desk/paper/Settlement.h"
#include "desk/paper/TakeIn.h"
#include "desk/paper/UsableVolume.h"
#include "orderservice/base/StrictNumber.h"
#include "orderservice/base/Thread.h"

#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

namespace desk {
namespace {

utils::KNError badRequest(const std::string& text) {
    return {kPaperBadRequest, text};
}

template<typename K, typename V>
std::vector<V> valuesOf(const CTrackedMap<K, V>& map) {
    std::vector<V> values;
    values.reserve(map.values().size());
    for (const auto& entry : map.values())
        values.push_back(entry.second);
    return values;
}

/// The values of one account.
template<typename K, typename V>
std::vector<V> valuesOf(const CTrackedMap<K, V>& map, const std::string& account) {
    std::vector<V> values;
    for (const auto& [key, value] : map.values()) {
        if (value.m_strAccount == account) values.push_back(value);
    }
    return values;
}

std::vector<CPaperDebt> debtsOf(const CPaperBook& book) {
    std::vector<CPaperDebt> debts = valuesOf(book.m_debts);
    debts.erase(std::remove_if(debts.begin(), debts.end(),
                               [](const CPaperDebt& debt) {
                                   return debt.m_nAmount == 0 && debt.m_nVolume == 0 && debt.m_nReserved == 0;
                               }),
                debts.end());
    return debts;
}

/// The parsed words of a `cancel_order` line. The account is empty if they are not valid.
struct COrderAddress {
    std::string m_strAccount;
    int m_nOrder = 0;
};

COrderAddress readAddress(const std::vector<std::string>& words) {
    constexpr std::size_t kWords = 3;
    if (words.size() != kWords) return {};
    try {
        return {boost::trim_copy(words[1]), utils::strictInt(boost::trim_copy(words[2]))};
    } catch (const boost::bad_lexical_cast&) {
        return {};
    }
}

} // namespace

CPaperBroker::CPaperBroker(const IQuoteSource& quotes, CListener listener)
    : m_quotes(quotes), m_listener(std::move(listener)) {}

CPaperBroker::~CPaperBroker() {
    stopWorker();
}

utils::KNError CPaperBroker::open(const std::string& folder, const std::vector<CAccountEntry>& accounts,
                                  std::int64_t lastEventTaken, const CKnownNumbers& known) {
    const std::lock_guard lock(m_mutex);
    std::vector<CBrokerEvent> stored;
    utils::KNError error = m_store.open(folder, m_book, stored, lastEventTaken > 0);
    if (!error.isSuccess()) return error;
    // An older copy of the store lacks tasks that were carried out.
    if (m_book.m_counters.m_nLastEvent >= lastEventTaken && m_book.lastTask() < known.m_nTask)
        m_unbooked = std::pair(m_book.lastTask() + 1, known.m_nTask);
    for (CBrokerEvent& event : stored) {
        if (event.m_nNumber > lastEventTaken) m_pending.push_back(std::move(event));
    }
    m_nDeliveredEvent = lastEventTaken;
    for (const CAccountEntry& account : accounts) {
        m_accounts[account.key] = account;
        m_book.m_creditLimits[account.key] = toMoney(account.creditLimit).value_or(0);
    }
    // The listener may know more events than the store, for example after the store was removed. New events
    // then need larger numbers, or the listener would take them for old ones.
    CPaperBook::CCounters& counters = m_book.m_counters;
    counters.m_nLastEvent = std::max(counters.m_nLastEvent, lastEventTaken);
    m_book.knowTask(known.m_nTask);
    counters.m_nLastOrder = std::max(counters.m_nLastOrder, known.m_nOrder);
    counters.m_nLastFill = std::max(counters.m_nLastFill, known.m_nFill);
    error = reviewBook(m_book, m_quotes, accounts);
    for (const CAccountEntry& account : accounts) {
        if (error.isSuccess() && m_book.m_funds.find(account.key) == nullptr)
            error = takeInAccount(m_book, m_quotes, account);
    }
    if (error.isSuccess())
        error = finishChange();
    else
        m_book.rollBack();
    if (!error.isSuccess()) m_store.close();
    return error;
}

utils::KNError CPaperBroker::startTradingDay(const std::string& day) {
    const auto lock = lockBooks();
    std::string& known = m_book.m_counters.m_strTradingDay;
    if (day <= known) return {};
    const bool isFirst = known.empty();
    known = day;
    if (isFirst) return finishChange(); // the accounts were taken in on this day
    for (const CPaperOrder& order : valuesOf(m_book.m_orders)) {
        if (order.isOpen()) cancel(m_book, m_book.m_orders.edit(order.m_nId), "the trading day ended");
    }
    for (const auto& [key, position] : m_book.m_positions.values()) {
        if (position.m_nToday == 0 && position.m_nSellable == position.m_nVolume) continue;
        CPaperPosition& edited = m_book.m_positions.edit(key);
        edited.m_nSellable = edited.m_nVolume;
        edited.m_nToday = 0;
    }
    return finishChange();
}

void CPaperBroker::startWorker() {
    if (m_worker.joinable()) return;
    m_queue.setServed(true);
    m_worker = std::thread([this] {
        utils::setThreadName("paper");
        while (m_queue.waitForCommand())
            finishQueued();
    });
}

void CPaperBroker::stopWorker() {
    m_queue.setServed(false);
    if (m_worker.joinable()) m_worker.join();
    finishQueued();
}

void CPaperBroker::queueCommand(CQueuedCommand command) {
    if (!m_queue.push(std::move(command))) finishQueued();
}

void CPaperBroker::finishQueued() {
    const auto lock = lockBooks();
}

/// Every operation that reads or changes the books begins with this.
std::unique_lock<std::mutex> CPaperBroker::lockBooks() {
    std::unique_lock<std::mutex> lock(m_mutex, std::defer_lock);
    {
        const std::lock_guard next(m_next);
        lock.lock();
    }
    carryOutQueued();
    return lock;
}

/// Carries out the queued commands in one transaction. An exception means that memory is missing; then books
/// and store may differ, and nothing may go on with them. So the process ends. The store has each command
/// whole or not at all, and the next start reports the commands that it does not have.
void CPaperBroker::carryOutQueued() noexcept {
    const std::vector<CQueuedCommand> commands = m_queue.takeAll();
    if (commands.empty()) return;
    if (commands.size() > 1) {
        for (const CQueuedCommand& command : commands)
            place(*command.m_command, command.m_nReference, command.m_nTask);
        if (finishChange().isSuccess()) {
            for (const CQueuedCommand& command : commands)
                reportRejected(command);
            return;
        }
    }
    for (const CQueuedCommand& command : commands)
        carryOutAlone(command);
}

void CPaperBroker::carryOutAlone(const CQueuedCommand& command) {
    place(*command.m_command, command.m_nReference, command.m_nTask);
    const utils::KNError error = finishChange();
    if (error.isSuccess())
        reportRejected(command);
    else if (command.m_onRefused)
        command.m_onRefused(error);
}

void CPaperBroker::reportRejected(const CQueuedCommand& command) {
    if (!command.m_onRejected) return;
    std::vector<CPaperOrder> rejected;
    for (const int id : m_book.ordersOfTask(command.m_nTask)) {
        const CPaperOrder* order = m_book.m_orders.find(id);
        if (order->m_eStatus == EOrderStatus::Rejected) rejected.push_back(*order);
    }
    if (!rejected.empty()) command.m_onRejected(rejected);
}

/// Adds a command to the present change. The next command of the change finds its orders in the book.
void CPaperBroker::place(const TC::COrderComandParam& command, std::int64_t reference, int task) {
    m_book.newTask(task, reference, command.m_strRemark).m_nOrders = static_cast<int>(command.m_codes.size());
    std::vector<const CPaperOrder*> orders;
    for (const TC::CCodeOrderParam& record : command.m_codes) {
        CPaperOrder& order = m_book.newOrder(task);
        placeOrder(command, record, order);
        orders.push_back(&order);
    }
    for (const CPaperOrder* order : orders)
        m_book.addResting(*order);
}

void CPaperBroker::placeOrder(const TC::COrderComandParam& command, const TC::CCodeOrderParam& record,
                              CPaperOrder& order) {
    const std::optional<CInstrumentEntry> instrument =
        m_quotes.instrument(record.m_stock.m_strMarket + record.m_stock.m_strCode);
    fillOrder(command, record, instrument, order);
    ensureQuote(order.m_strStock);
    planClosing(m_book, order);
    order.m_strReason = reasonToReject(command, record, instrument, order);
    if (!order.m_strReason.empty()) {
        order.m_nCloseEarlier = 0;
        order.m_nCloseToday = 0;
        order.m_eStatus = EOrderStatus::Rejected;
        m_book.announce(order);
        return;
    }
    hold(m_book, order);
    if (isDirect(order))
        carryOut(record, order);
    else
        trade(order);
}

void CPaperBroker::fillOrder(const TC::COrderComandParam& command, const TC::CCodeOrderParam& record,
                             const std::optional<CInstrumentEntry>& instrument, CPaperOrder& order) {
    if (record.m_account) order.m_strAccount = record.m_account->getKey();
    order.m_strStock = instrument ? instrument->key() : record.m_stock.m_strMarket + record.m_stock.m_strCode;
    order.m_eFamily = command.m_eTraderType;
    order.m_eOperation = record.m_eOperationType;
    order.m_nVolume = record.m_nVolume;
    takePrice(record, order);
    if (instrument) takeTerms(*instrument, order);
}

std::string CPaperBroker::reasonToReject(const TC::COrderComandParam& command,
                                         const TC::CCodeOrderParam& record,
                                         const std::optional<CInstrumentEntry>& instrument,
                                         const CPaperOrder& order) const {
    const auto account = m_accounts.find(order.m_strAccount);
    return rejectionReason({command, record, account != m_accounts.end() ? &account->second : nullptr,
                            instrument, m_book, order});
}

void CPaperBroker::trade(CPaperOrder& order) {
    m_book.announce(order);
    match(m_book, order);
    if (!order.m_bMarket || !order.isOpen()) return;
    const bool hasQuote = m_book.m_sides.find(order.m_strStock) != nullptr;
    cancel(m_book, order, hasQuote ? "the book offers no more volume" : "there is no quote");
}

void CPaperBroker::carryOut(const TC::CCodeOrderParam& record, CPaperOrder& order) {
    const CMoney money = isMoneyOnly(order) ? toMoney(record.m_dQuantity).value_or(0) : 0;
    settleDirectly(m_book, order, money);
    order.m_nFilled = order.m_nVolume;
    order.m_nFilledAmount = money;
    order.m_eStatus = EOrderStatus::Filled;
    m_book.announce(order);
}

utils::KNError CPaperBroker::cancelTask(int taskId, const std::string& reason) {
    const auto lock = lockBooks();
    const std::string name = "task " + std::to_string(taskId);
    if (m_book.m_tasks.find(taskId) == nullptr) return badRequest(name + " is unknown");
    bool isAnyOpen = false;
    for (const int id : m_book.ordersOfTask(taskId)) {
        if (!m_book.m_orders.find(id)->isOpen()) continue;
        cancel(m_book, m_book.m_orders.edit(id), reason);
        isAnyOpen = true;
    }
    if (!isAnyOpen) return {kPaperNothingOpen, name + " has no waiting orders"};
    return finishChange();
}

utils::KNError CPaperBroker::cancelOrders(const std::vector<std::string>& words, const std::string& reason) {
    const auto lock = lockBooks();
    const COrderAddress address = readAddress(words);
    if (address.m_strAccount.empty()) return badRequest("cancel_order takes an account key and an order id");
    const std::string name = "order " + std::to_string(address.m_nOrder);
    const CPaperOrder* order = m_book.m_orders.find(address.m_nOrder);
    if (order == nullptr || order->m_strAccount != address.m_strAccount) {
        return badRequest("account " + address.m_strAccount + " has no " + name);
    }
    if (!order->isOpen())
        return {kPaperNothingOpen, name + " does not wait: " + statusWord(order->m_eStatus)};
    cancel(m_book, m_book.m_orders.edit(address.m_nOrder), reason);
    return finishChange();
}

utils::KNError CPaperBroker::cancelWaiting(const std::function<bool(const CPaperOrder&)>& isChosen,
                                           const std::string& reason, int& cancelled) {
    cancelled = 0;
    const auto lock = lockBooks();
    std::vector<int> chosen;
    for (const auto& [id, order] : m_book.m_orders.values()) {
        if (order.isOpen() && isChosen(order)) chosen.push_back(id);
    }
    if (chosen.empty()) return {};
    for (const int id : chosen)
        cancel(m_book, m_book.m_orders.edit(id), reason);
    const utils::KNError error = finishChange();
    if (error.isSuccess()) cancelled = static_cast<int>(chosen.size());
    return error;
}

utils::KNError CPaperBroker::onQuote(const std::string& stockKey) {
    const auto lock = lockBooks();
    if (const std::optional<CQuoteEntry> quote = m_quotes.quote(stockKey))
        m_book.m_sides.set(stockKey, sidesOf(*quote));
    else
        m_book.m_sides.erase(stockKey);
    matchResting(stockKey);
    if (!m_book.m_events.empty()) return finishChange();
    m_book.keep(); // so that a later change that fails does not bring the older quote back
    return {};
}

void CPaperBroker::ensureQuote(const std::string& stockKey) {
    if (m_book.m_sides.find(stockKey) != nullptr) return;
    const std::optional<CQuoteEntry> quote = m_quotes.quote(stockKey);
    if (!quote) return;
    m_book.m_sides.edit(stockKey) = sidesOf(*quote);
    matchResting(stockKey);
}

/// False if the account or the instrument of a waiting order is no longer in the folder, or is now of another
/// kind. Such an order was not compared with the folder (reviewBook), so it is not matched.
bool CPaperBroker::mayTrade(const CPaperOrder& order, EInstrumentKind kind) const {
    const auto account = m_accounts.find(order.m_strAccount);
    const CPaperFamily* family = findPaperFamily(order.m_eFamily);
    return account != m_accounts.end() && family != nullptr && family->accepts(account->second.broker) &&
           family->m_eInstrumentKind == kind;
}

void CPaperBroker::matchResting(const std::string& stockKey) {
    const std::vector<int> resting = m_book.resting(stockKey);
    if (resting.empty()) return;
    const std::optional<CInstrumentEntry> instrument = m_quotes.instrument(stockKey);
    if (!instrument) return;
    for (const int id : resting) {
        const CPaperOrder* order = m_book.m_orders.find(id);
        if (order->isOpen() && mayTrade(*order, instrument->kind)) match(m_book, m_book.m_orders.edit(id));
    }
}

utils::KNError CPaperBroker::finishChange() {
    const utils::KNError error = m_store.save(m_book, m_nDeliveredEvent);
    if (!error.isSuccess()) {
        m_book.rollBack();
        return error;
    }
    m_pending.insert(m_pending.end(), std::make_move_iterator(m_book.m_events.begin()),
                     std::make_move_iterator(m_book.m_events.end()));
    m_book.keep();
    deliverPending();
    return {};
}

void CPaperBroker::deliverEvents() {
    const auto lock = lockBooks();
    deliverPending();
}

utils::KNError CPaperBroker::storeDelivered() {
    const auto lock = lockBooks();
    deliverPending();
    return finishChange();
}

void CPaperBroker::deliverPending() {
    if (m_pending.empty() || !m_listener) return;
    const std::size_t taken = m_listener(m_pending);
    if (taken == 0) return;
    m_nDeliveredEvent = m_pending[taken - 1].m_nNumber;
    m_pending.erase(m_pending.begin(), m_pending.begin() + static_cast<std::ptrdiff_t>(taken));
}

std::vector<std::int64_t> CPaperBroker::closableVolumes(const std::vector<std::string>& accounts,
                                                        const CInstrumentEntry& instrument,
                                                        TC::EOperationType operation) {
    const CPaperFamily* family = findClosingFamily(instrument.kind, operation);
    if (family == nullptr) return {};
    CPaperOrder order;
    order.m_strStock = instrument.key();
    order.m_eOperation = operation;
    order.m_eFamily = family->m_eType;
    std::vector<std::int64_t> volumes;
    const auto lock = lockBooks();
    for (const std::string& account : accounts) {
        order.m_strAccount = account;
        volumes.push_back(closableVolume(m_book, order));
    }
    return volumes;
}

double CPaperBroker::usableVolume(const std::string& account, const std::string& stockKey,
                                  TC::EOperationType operation, double price) {
    const std::optional<CInstrumentEntry> instrument = m_quotes.instrument(stockKey);
    if (!instrument) return 0;
    const auto lock = lockBooks();
    const auto found = m_accounts.find(account);
    if (found == m_accounts.end()) return 0;
    // Before its first order an instrument has no quote in the book.
    const CBookSides* sides = m_book.m_sides.find(instrument->key());
    const std::optional<CQuoteEntry> quote = sides == nullptr ? m_quotes.quote(stockKey) : std::nullopt;
    const CBookSides fresh = quote ? sidesOf(*quote) : CBookSides();
    return desk::usableVolume(
        m_book, {found->second, *instrument, operation, price, sides != nullptr ? sides : &fresh});
}

bool CPaperBroker::hasTask(int taskId) {
    const auto lock = lockBooks();
    return m_book.m_tasks.find(taskId) != nullptr;
}

std::vector<CPaperTask> CPaperBroker::tasks() {
    const auto lock = lockBooks();
    return valuesOf(m_book.m_tasks);
}

std::vector<CPaperOrder> CPaperBroker::orders() {
    const auto lock = lockBooks();
    return valuesOf(m_book.m_orders);
}

std::vector<CPaperFill> CPaperBroker::fills() {
    const auto lock = lockBooks();
    return valuesOf(m_book.m_fills);
}

std::vector<CPaperFunds> CPaperBroker::funds() {
    const auto lock = lockBooks();
    return valuesOf(m_book.m_funds);
}

std::vector<CPaperPosition> CPaperBroker::positions() {
    const auto lock = lockBooks();
    return valuesOf(m_book.m_positions);
}

std::vector<CPaperDebt> CPaperBroker::debts() {
    const auto lock = lockBooks();
    return debtsOf(m_book);
}

CPaperBooks CPaperBroker::books() {
    const auto lock = lockBooks();
    return {valuesOf(m_book.m_funds), valuesOf(m_book.m_positions), debtsOf(m_book)};
}

CPaperBooks CPaperBroker::booksOf(const std::string& account) {
    const auto lock = lockBooks();
    return {valuesOf(m_book.m_funds, account), valuesOf(m_book.m_positions, account),
            valuesOf(m_book.m_debts, account)};
}

std::vector<CPaperOrder> CPaperBroker::ordersOf(const std::string& account) {
    const auto lock = lockBooks();
    return valuesOf(m_book.m_orders, account);
}

} // namespace desk
