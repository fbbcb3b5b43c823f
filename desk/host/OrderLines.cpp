#include "desk/host/OrderLines.h"

#include "orderservice/base/Clock.h"
#include "orderservice/kit/Operations.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace desk {
namespace {

/// An amount without the zeros at its end: 11.02 instead of 11.0200.
std::string shortMoney(CMoney money) {
    std::string text = moneyText(money);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
}

/// The average price of the fills.
std::string filledPrice(const CPaperOrder& order) {
    const CMoney units = static_cast<CMoney>(order.m_nFilled) * std::max(order.m_nMultiplier, 1);
    return shortMoney((order.m_nFilledAmount + units / 2) / units);
}

std::string priceOf(const CPaperOrder& order, const kit::COperation* operation) {
    if (operation != nullptr && operation->m_eSide == kit::ETradeSide::None) return {};
    return order.m_bMarket ? " at market" : " @ " + shortMoney(order.m_nPrice);
}

std::string operationOf(const CPaperOrder& order, const kit::COperation* operation) {
    return operation != nullptr ? std::string(operation->m_pszWord)
                                : "operation " + std::to_string(static_cast<int>(order.m_eOperation));
}

std::string filledPart(const CPaperOrder& order) {
    return std::to_string(order.m_nFilled) + " filled at " + filledPrice(order);
}

std::string stateOf(const CPaperOrder& order) {
    switch (order.m_eStatus) {
    case EOrderStatus::Working:
        return "waits";
    case EOrderStatus::PartFilled:
        return filledPart(order) + ", " + std::to_string(order.rest()) + " wait";
    case EOrderStatus::Filled:
        // Orders that only move money or shares have no price.
        if (order.m_nFilled == 0 || order.m_nFilledAmount == 0) return "done";
        return "filled at " + filledPrice(order);
    case EOrderStatus::Cancelled:
        return "CANCELLED: " + order.m_strReason + (order.m_nFilled > 0 ? "; " + filledPart(order) : "");
    case EOrderStatus::Rejected:
        break;
    }
    return "REJECTED: " + order.m_strReason;
}

ESeverity severityOf(bool isRejected) {
    return isRejected ? ESeverity::Warning : ESeverity::Note;
}

/// The reason without its numbers, which differ from order to order.
std::string withoutNumbers(std::string reason) {
    const auto isNumber = [](char c) { return (c >= '0' && c <= '9') || c == '.'; };
    reason.erase(std::remove_if(reason.begin(), reason.end(), isNumber), reason.end());
    return reason;
}

} // namespace

std::string orderLine(const CPaperOrder& order) {
    const kit::COperation* operation = kit::findOperation(order.m_eOperation);
    std::string line = "order " + std::to_string(order.m_nId) + " of task " + std::to_string(order.m_nTask) +
                       ": " + (order.m_strAccount.empty() ? "no account" : order.m_strAccount) + ' ' +
                       operationOf(order, operation) + ' ' + std::to_string(order.m_nVolume);
    if (!order.m_strStock.empty()) line += ' ' + order.m_strStock;
    return line + priceOf(order, operation) + ": " + stateOf(order);
}

void COrderLines::take(const CBrokerEvent& event) {
    // The order event that follows the fills has their sum.
    if (event.isFill()) return;
    const std::lock_guard lock(m_mutex);
    const auto changed = m_changed.find(event.m_order.m_nId);
    if (changed != m_changed.end()) {
        changed->second = event.m_order;
    } else if (m_limit.pass()) {
        m_changed.emplace(event.m_order.m_nId, event.m_order);
    } else {
        count(event.m_order, m_unshown);
    }
}

void COrderLines::count(const CPaperOrder& order, CUnshown& unshown) {
    switch (order.m_eStatus) {
    case EOrderStatus::Working:
        ++unshown.m_nAccepted;
        break;
    case EOrderStatus::PartFilled:
        ++unshown.m_nPartFilled;
        break;
    case EOrderStatus::Filled:
        ++unshown.m_nFilled;
        break;
    case EOrderStatus::Cancelled:
        ++unshown.m_nCancelled;
        break;
    case EOrderStatus::Rejected:
        ++unshown.m_nRejected;
        countReason(order.m_strReason, unshown);
        break;
    }
}

void COrderLines::countReason(const std::string& reason, CUnshown& unshown) {
    CReason& counted = unshown.m_reasons[withoutNumbers(reason)];
    if (++counted.m_nOrders == 1) counted.m_strFirst = reason;
}

void COrderLines::show() {
    write(false);
}

void COrderLines::finish() {
    write(true);
}

void COrderLines::write(bool isSecondOver) {
    std::map<int, CPaperOrder> changed;
    CUnshown unshown;
    {
        const std::lock_guard lock(m_mutex);
        changed.swap(m_changed);
        const double now = utils::getTime();
        if (isSecondOver || m_limit.isOver(now)) {
            std::swap(unshown, m_unshown);
            (void)m_limit.takeLeftOut(); // m_unshown has its own counts
            m_limit.begin(now);
        }
    }
    for (const auto& [id, order] : changed)
        m_sink.writeLine(orderLine(order), severityOf(order.m_eStatus == EOrderStatus::Rejected));
    if (!unshown.isEmpty()) m_sink.writeLine(text(unshown), severityOf(unshown.m_nRejected > 0));
}

/// The most frequent reasons.
std::string COrderLines::reasonsText(const CUnshown& unshown) {
    constexpr std::size_t kMostReasons = 3;
    std::vector<CReason> reasons;
    for (const auto& [kind, reason] : unshown.m_reasons)
        reasons.push_back(reason);
    std::stable_sort(reasons.begin(), reasons.end(),
                     [](const CReason& a, const CReason& b) { return a.m_nOrders > b.m_nOrders; });
    std::string text;
    for (std::size_t i = 0; i < reasons.size() && i < kMostReasons; ++i)
        text += (i == 0 ? "" : "; ") + std::to_string(reasons[i].m_nOrders) + " like \"" +
                reasons[i].m_strFirst + '"';
    return text + (reasons.size() > kMostReasons ? "; and others" : "");
}

std::string COrderLines::text(const CUnshown& unshown) {
    std::string numbers;
    const auto add = [&](int number, const char* word) {
        if (number != 0) numbers += (numbers.empty() ? "" : ", ") + std::to_string(number) + ' ' + word;
    };
    add(unshown.m_nAccepted, "accepted");
    add(unshown.m_nPartFilled, "partly filled");
    add(unshown.m_nFilled, "filled");
    add(unshown.m_nCancelled, "CANCELLED");
    add(unshown.m_nRejected, "REJECTED");
    if (!unshown.m_reasons.empty()) numbers += " (" + reasonsText(unshown) + ')';
    return "more orders: " + numbers + "; the journal has each of them";
}

} // namespace desk
