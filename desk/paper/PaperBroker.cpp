#include "desk/paper/PaperBroker.h"

#include "base/StrictNumber.h"
#include "desk/paper/Matching.h"
#include "desk/paper/OrderRules.h"

#include <boost/algorithm/string/trim.hpp>

#include <algorithm>

namespace desk {
namespace {

constexpr std::int64_t kMaxInitialVolume = 1'000'000'000'000;

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

bool isSound(const CPositionEntry& entry) {
    return entry.volume >= 0 && entry.volume <= kMaxInitialVolume && entry.available >= 0 &&
           entry.available <= entry.volume;
}

/// The words of a `cancel_order` line, read. Account empty: they make no sense.
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

utils::KNError CPaperBroker::open(const std::string& folder, const std::vector<CAccountEntry>& accounts,
                                  std::int64_t lastEventTaken) {
    const std::lock_guard lock(m_mutex);
    std::vector<CBrokerEvent> stored;
    utils::KNError error = m_store.open(folder, m_book, stored);
    if (!error.isSuccess()) return error;
    for (CBrokerEvent& event : stored) {
        if (event.m_nNumber > lastEventTaken) m_pending.push_back(std::move(event));
    }
    m_nDeliveredEvent = lastEventTaken;
    // A listener that remembers more than the store, as after the store was removed, must not take new events
    // for old.
    m_book.m_counters.m_nLastEvent = std::max(m_book.m_counters.m_nLastEvent, lastEventTaken);
    for (const CAccountEntry& account : accounts) {
        m_accounts[account.key] = account;
        error = takeInAccount(account);
        if (error.isSuccess()) continue;
        m_book.rollBack();
        return error;
    }
    return finishChange();
}

utils::KNError CPaperBroker::takeInAccount(const CAccountEntry& account) {
    if (m_book.m_funds.find(account.key) != nullptr) return {};
    const std::optional<CMoney> cash = toMoney(account.funds);
    if (!cash || *cash < 0)
        return badRequest("account " + account.key + ": funds are negative or out of range");
    m_book.m_funds.edit(account.key) = {account.key, *cash, 0};
    for (const CPositionEntry& entry : account.positions) {
        const std::optional<CMoney> price = toMoney(entry.cost);
        const std::optional<CMoney> cost =
            price && isSound(entry) ? amountOf(*price, entry.volume) : std::nullopt;
        if (!cost)
            return badRequest("account " + account.key + ": position " + entry.stockKey + " makes no sense");
        m_book.m_positions.edit({account.key, entry.stockKey}) = {
            account.key, entry.stockKey, entry.volume, entry.available, 0, *cost};
    }
    return {};
}

utils::KNError CPaperBroker::startTradingDay(const std::string& day) {
    const std::lock_guard lock(m_mutex);
    std::string& known = m_book.m_counters.m_strTradingDay;
    if (day <= known) return {};
    const bool isFirst = known.empty();
    known = day;
    if (isFirst) return finishChange(); // the accounts came as they stand on this day
    for (const CPaperOrder& order : valuesOf(m_book.m_orders)) {
        if (order.isOpen()) cancel(m_book, m_book.m_orders.edit(order.m_nId), "the trading day ended");
    }
    for (const auto& [key, position] : m_book.m_positions.values()) {
        if (position.m_nSellable != position.m_nVolume)
            m_book.m_positions.edit(key).m_nSellable = position.m_nVolume;
    }
    return finishChange();
}

utils::KNError CPaperBroker::placeCommand(const TC::COrderComandParam& command, std::int64_t reference,
                                          int& taskId) {
    const std::lock_guard lock(m_mutex);
    CPaperTask& task = m_book.newTask(reference, command.m_strRemark);
    task.m_nOrders = static_cast<int>(command.m_codes.size());
    const int id = task.m_nId;
    for (const TC::CCodeOrderParam& record : command.m_codes)
        placeOrder(command, record, m_book.newOrder(id));
    utils::KNError error = finishChange();
    if (error.isSuccess()) taskId = id;
    return error;
}

void CPaperBroker::placeOrder(const TC::COrderComandParam& command, const TC::CCodeOrderParam& record,
                              CPaperOrder& order) {
    if (record.m_account) order.m_strAccount = record.m_account->getKey();
    order.m_strStock = record.m_stock.m_strMarket + record.m_stock.m_strCode;
    order.m_eOperation = record.m_eOperationType;
    order.m_nVolume = record.m_nVolume;
    takePrice(record, order);
    ensureQuote(order.m_strStock);
    order.m_strReason = reasonToReject(command, record, order);
    if (!order.m_strReason.empty()) {
        order.m_eStatus = EOrderStatus::Rejected;
        m_book.announce(order);
        return;
    }
    freeze(m_book, order);
    m_book.announce(order);
    match(m_book, order);
    if (!order.m_bMarket || !order.isOpen()) return;
    const bool hasQuote = m_book.m_sides.find(order.m_strStock) != nullptr;
    cancel(m_book, order, hasQuote ? "the book has no more" : "there is no quote");
}

std::string CPaperBroker::reasonToReject(const TC::COrderComandParam& command,
                                         const TC::CCodeOrderParam& record, const CPaperOrder& order) {
    const auto account = m_accounts.find(order.m_strAccount);
    const CPaperFunds* funds = m_book.m_funds.find(order.m_strAccount);
    const CPaperPosition* position = m_book.m_positions.find({order.m_strAccount, order.m_strStock});
    const std::optional<CInstrumentEntry> instrument = m_quotes.instrument(order.m_strStock);
    const CMoney availableCash = funds != nullptr ? funds->available() : 0;
    std::string reason =
        rejectionReason({command, record, account != m_accounts.end() ? &account->second : nullptr,
                         instrument, availableCash, position != nullptr ? position->available() : 0, order});
    if (!reason.empty() || !order.isBuy() || !order.m_bMarket) return reason;
    const std::optional<CMoney> cost = marketCost(m_book, order);
    return cost && *cost <= availableCash ? std::string() : "not enough funds for what the book has";
}

utils::KNError CPaperBroker::cancelTask(int taskId, const std::string& reason) {
    const std::lock_guard lock(m_mutex);
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

utils::KNError CPaperBroker::cancelOrders(const std::vector<std::string>& words) {
    const std::lock_guard lock(m_mutex);
    const COrderAddress address = readAddress(words);
    if (address.m_strAccount.empty()) return badRequest("cancel_order takes an account key and an order id");
    const std::string name = "order " + std::to_string(address.m_nOrder);
    const CPaperOrder* order = m_book.m_orders.find(address.m_nOrder);
    if (order == nullptr || order->m_strAccount != address.m_strAccount) {
        return badRequest("account " + address.m_strAccount + " has no " + name);
    }
    if (!order->isOpen())
        return {kPaperNothingOpen, name + " does not wait: " + statusWord(order->m_eStatus)};
    cancel(m_book, m_book.m_orders.edit(address.m_nOrder), "cancelled by order");
    return finishChange();
}

utils::KNError CPaperBroker::onQuote(const std::string& stockKey) {
    const std::lock_guard lock(m_mutex);
    if (const std::optional<CQuoteEntry> quote = m_quotes.quote(stockKey))
        m_book.m_sides.set(stockKey, sidesOf(*quote));
    else
        m_book.m_sides.erase(stockKey);
    matchResting(stockKey);
    return m_book.m_events.empty() ? utils::KNError() : finishChange();
}

void CPaperBroker::ensureQuote(const std::string& stockKey) {
    if (m_book.m_sides.find(stockKey) != nullptr) return;
    const std::optional<CQuoteEntry> quote = m_quotes.quote(stockKey);
    if (!quote) return;
    m_book.m_sides.edit(stockKey) = sidesOf(*quote);
    matchResting(stockKey);
}

void CPaperBroker::matchResting(const std::string& stockKey) {
    for (const int id : m_book.resting(stockKey)) {
        const CPaperOrder* order = m_book.m_orders.find(id);
        if (order->isOpen()) match(m_book, m_book.m_orders.edit(id));
    }
}

utils::KNError CPaperBroker::finishChange() {
    const utils::KNError error = m_store.save(m_book, m_nDeliveredEvent);
    if (!error.isSuccess()) {
        m_book.rollBack();
        return error;
    }
    m_pending.insert(m_pending.end(), m_book.m_events.begin(), m_book.m_events.end());
    m_book.keep();
    deliverPending();
    return {};
}

void CPaperBroker::deliverEvents() {
    const std::lock_guard lock(m_mutex);
    deliverPending();
}

void CPaperBroker::deliverPending() {
    while (!m_pending.empty() && m_listener && m_listener(m_pending.front())) {
        m_nDeliveredEvent = m_pending.front().m_nNumber;
        m_pending.pop_front();
    }
}

bool CPaperBroker::hasTask(int taskId) const {
    const std::lock_guard lock(m_mutex);
    return m_book.m_tasks.find(taskId) != nullptr;
}

std::vector<CPaperTask> CPaperBroker::tasks() const {
    const std::lock_guard lock(m_mutex);
    return valuesOf(m_book.m_tasks);
}

std::vector<CPaperOrder> CPaperBroker::orders() const {
    const std::lock_guard lock(m_mutex);
    return valuesOf(m_book.m_orders);
}

std::vector<CPaperFill> CPaperBroker::fills() const {
    const std::lock_guard lock(m_mutex);
    return valuesOf(m_book.m_fills);
}

std::vector<CPaperFunds> CPaperBroker::funds() const {
    const std::lock_guard lock(m_mutex);
    return valuesOf(m_book.m_funds);
}

std::vector<CPaperPosition> CPaperBroker::positions() const {
    const std::lock_guard lock(m_mutex);
    return valuesOf(m_book.m_positions);
}

} // namespace desk
