#include "orderservice/ui/QuoteRows.h"

#include "orderservice/base/Unset.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/ui/OrderCells.h"

#include <cmath>
#include <utility>

namespace TC {
namespace {

const char* const kNotUpdated = "最新市值未更新";

bool isUsable(const CPriceDataPtr& price) {
    return price && std::isfinite(price->m_dLastPrice) && !isInvalidPrice(price->m_dLastPrice) &&
           price->m_dLastPrice >= kPriceTolerance;
}

} // namespace

void CQuoteRows::setOrders(const std::vector<CCodeOrderParam>& orders,
                           const std::vector<CInstrument>& instruments) {
    std::vector<CCodeOrderParam> newOrders = orders;
    std::vector<CRow> rows(orders.size());
    CQuotedMap quoted;
    for (std::size_t row = 0; row < orders.size(); ++row) {
        const CInstrument& instrument = instruments.at(row);
        if (instrument.m_strKey.isEmpty()) continue;
        CQuoted& entry = quoted[instrument.m_strKey];
        // A contract and another order may name the same instrument. If one rule is unknown, no value is
        // shown.
        const bool isKnown = entry.m_rows.empty() || entry.m_moneyRule;
        entry.m_moneyRule = isKnown ? instrument.m_moneyRule : std::nullopt;
        entry.m_rows.push_back(static_cast<int>(row));
    }
    // The earlier records and quotes are destroyed at the end of this function, after the lock.
    const std::lock_guard lock(m_mutex);
    m_orders.swap(newOrders);
    m_quoted.swap(quoted);
    m_quoteRows.swap(rows);
    for (CRow& row : m_quoteRows)
        row.m_quoted = m_quoted.end();
    for (auto entry = m_quoted.begin(); entry != m_quoted.end(); ++entry) {
        for (const int row : entry->second.m_rows)
            m_quoteRows[static_cast<std::size_t>(row)].m_quoted = entry;
    }
}

std::vector<CCodeOrderParam> CQuoteRows::orders() const {
    const std::lock_guard lock(m_mutex);
    return m_orders;
}

CCodeOrderParam CQuoteRows::order(int row) const {
    const std::lock_guard lock(m_mutex);
    return m_orders.at(static_cast<std::size_t>(row));
}

void CQuoteRows::setVolume(int row, int volume) {
    const std::lock_guard lock(m_mutex);
    CCodeOrderParam& order = m_orders.at(static_cast<std::size_t>(row));
    order.m_nVolume = volume;
    if (!isInvalidPrice(order.m_dQuantity)) order.m_dQuantity = volume;
    setValue(row);
}

void CQuoteRows::setMoney(int row, double money) {
    const std::lock_guard lock(m_mutex);
    CCodeOrderParam& order = m_orders.at(static_cast<std::size_t>(row));
    order.m_dQuantity = money;
    order.m_nVolume = money < kUnsetInt ? static_cast<int>(money) : kUnsetInt;
}

std::vector<QString> CQuoteRows::keys() const {
    const std::lock_guard lock(m_mutex);
    std::vector<QString> keys;
    for (const auto& [key, quoted] : m_quoted)
        keys.push_back(key);
    return keys;
}

CPriceDataPtr CQuoteRows::quote(int row) const {
    const std::lock_guard lock(m_mutex);
    const auto quoted = m_quoteRows.at(static_cast<std::size_t>(row)).m_quoted;
    return quoted != m_quoted.end() ? quoted->second.m_price : CPriceDataPtr();
}

void CQuoteRows::setQuote(const QString& key, const CPriceDataPtr& price) noexcept {
    runGuarded(QString::fromUtf8(kNotUpdated), [&] { update(key, price, false); });
}

void CQuoteRows::setKnownQuote(const QString& key, const CPriceDataPtr& price) noexcept {
    runGuarded(QString::fromUtf8(kNotUpdated), [&] { update(key, price, true); });
}

void CQuoteRows::update(const QString& key, const CPriceDataPtr& price, bool isKnown) {
    if (!isUsable(price)) return;
    CPriceDataPtr earlier; // destroyed after the lock
    const std::lock_guard lock(m_mutex);
    const auto found = m_quoted.find(key);
    if (found == m_quoted.end() || (isKnown && found->second.m_price)) return;
    earlier = std::exchange(found->second.m_price, price);
    for (const int row : found->second.m_rows)
        setValue(row);
}

/// Works out the market value of a row from the quote of its instrument. The lock must be held.
void CQuoteRows::setValue(int number) {
    CRow& row = m_quoteRows[static_cast<std::size_t>(number)];
    if (row.m_quoted == m_quoted.end() || !row.m_quoted->second.m_price) return;
    const CQuoted& quoted = row.m_quoted->second;
    const std::optional<double> volume = quantityOf(m_orders[static_cast<std::size_t>(number)]);
    if (!volume || !quoted.m_moneyRule) return;
    row.m_value.m_dMarketValue = quoted.m_moneyRule->money(*volume, quoted.m_price->m_dLastPrice);
    row.m_value.m_bValid = true;
}

std::vector<CQuoteRows::CValue> CQuoteRows::values() const {
    const std::lock_guard lock(m_mutex);
    std::vector<CValue> values;
    values.reserve(m_quoteRows.size());
    for (const CRow& row : m_quoteRows)
        values.push_back(row.m_value);
    return values;
}

} // namespace TC
