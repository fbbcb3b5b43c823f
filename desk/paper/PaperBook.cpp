#include "desk/paper/PaperBook.h"

#include "orderservice/base/Clock.h"

namespace desk {
namespace {

std::vector<CBookLevel> levelsOf(const std::array<CQuoteLevel, CQuoteEntry::kDepth>& levels) {
    std::vector<CBookLevel> usable;
    for (const CQuoteLevel& level : levels) {
        const std::optional<CMoney> price = toMoney(level.price);
        if (price && *price > 0 && level.volume > 0) usable.push_back({*price, level.volume});
    }
    return usable;
}

} // namespace

CBookSides sidesOf(const CQuoteEntry& quote) {
    return {levelsOf(quote.buy), levelsOf(quote.sell)};
}

CPaperTask& CPaperBook::newTask(int id, std::int64_t reference, const std::string& remark) {
    CPaperTask& task = m_tasks.edit(id);
    task.m_nId = id;
    task.m_nReference = reference;
    task.m_strRemark = remark;
    task.m_strTime = utils::currentTimeText();
    return task;
}

CPaperOrder& CPaperBook::newOrder(int task) {
    const int id = ++m_counters.m_nLastOrder;
    CPaperOrder& order = m_orders.edit(id);
    order.m_nId = id;
    order.m_nTask = task;
    return order;
}

CPaperPosition& CPaperBook::editPosition(const CPaperOrder& order, EPositionSide side) {
    CPaperPosition& position = m_positions.edit({order.m_strAccount, order.m_strStock, side});
    position.m_strAccount = order.m_strAccount;
    position.m_strStock = order.m_strStock;
    position.m_eSide = side;
    return position;
}

CPaperDebt& CPaperBook::editDebt(const std::string& account, const std::string& stock) {
    CPaperDebt& debt = m_debts.edit({account, stock});
    debt.m_strAccount = account;
    debt.m_strStock = stock;
    return debt;
}

CBrokerEvent& CPaperBook::newEvent(const CPaperOrder& order) {
    CBrokerEvent& event = m_events.emplace_back();
    event.m_nNumber = ++m_counters.m_nLastEvent;
    event.m_order = order;
    if (const CPaperTask* task = m_tasks.find(order.m_nTask)) event.m_nReference = task->m_nReference;
    return event;
}

void CPaperBook::addFill(const CPaperOrder& order, CMoney price, int volume) {
    const int id = ++m_counters.m_nLastFill;
    CPaperFill& fill = m_fills.edit(id);
    fill = {id, order.m_nId, price, volume, utils::currentTimeText()};
    CBrokerEvent& event = newEvent(order);
    event.m_fill = fill;
    event.m_order.m_strTime = fill.m_strTime;
}

void CPaperBook::announce(CPaperOrder& order) {
    order.m_strTime = utils::currentTimeText();
    newEvent(order);
}

void CPaperBook::addResting(const CPaperOrder& order) {
    if (order.isOpen()) m_resting[order.m_strStock].insert(order.m_nId);
}

std::vector<int> CPaperBook::resting(const std::string& stockKey) const {
    const auto found = m_resting.find(stockKey);
    if (found == m_resting.end()) return {};
    return {found->second.begin(), found->second.end()};
}

std::vector<int> CPaperBook::ordersOfTask(int task) const {
    const auto found = m_taskOrders.find(task);
    return found != m_taskOrders.end() ? found->second : std::vector<int>();
}

void CPaperBook::keep() {
    m_orders.visitChanged([this](const CPaperOrder* before, const CPaperOrder& order) {
        if (before == nullptr) m_taskOrders[order.m_nTask].push_back(order.m_nId);
        if (order.isOpen())
            m_resting[order.m_strStock].insert(order.m_nId);
        else
            m_resting[order.m_strStock].erase(
                order.m_nId); // a later command of the change may have filled it
    });
    m_funds.keep();
    m_positions.keep();
    m_debts.keep();
    m_tasks.keep();
    m_orders.keep();
    m_fills.keep();
    m_sides.keep();
    m_events.clear();
    m_kept = m_counters;
}

void CPaperBook::rollBack() {
    m_orders.visitChanged([this](const CPaperOrder* before, const CPaperOrder& order) {
        if (before == nullptr) m_resting[order.m_strStock].erase(order.m_nId);
    });
    m_funds.rollBack();
    m_positions.rollBack();
    m_debts.rollBack();
    m_tasks.rollBack();
    m_orders.rollBack();
    m_fills.rollBack();
    m_sides.rollBack();
    m_events.clear();
    m_counters = m_kept;
}

} // namespace desk
