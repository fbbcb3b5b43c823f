#include "orderservice/ui/QuoteRows.h"

#include "orderservice/base/Unset.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/ui/OrderCells.h"

#include <QMutexLocker>

#include <cmath>
#include <optional>
#include <utility>

namespace TC {
namespace {

bool isUsable(const CPriceDataPtr& price) {
    return price && std::isfinite(price->m_dLastPrice) && !isInvalidPrice(price->m_dLastPrice) &&
           price->m_dLastPrice >= kPriceTolerance;
}

} // namespace

void CQuoteRows::setOrders(const std::vector<CCodeOrderParam>& orders) {
    // The host is asked before the lock is taken: it may hold a lock of its own while it calls back.
    std::map<QString, std::vector<int>> rowsOf;
    for (std::size_t row = 0; row < orders.size(); ++row) {
        const QString key = repaysMoney(orders[row]) ? QString() : stockKeyOf(orders[row]);
        if (!key.isEmpty()) rowsOf[key].push_back(static_cast<int>(row));
    }
    const QMutexLocker lock(&m_mutex);
    m_orders = orders;
    m_rowsOf = std::move(rowsOf);
    m_quoteRows.assign(orders.size(), CRow{});
    for (std::size_t row = 0; row < orders.size(); ++row)
        m_quoteRows[row].m_nRow = static_cast<int>(row);
}

std::vector<CCodeOrderParam> CQuoteRows::orders() const {
    const QMutexLocker lock(&m_mutex);
    return m_orders;
}

CCodeOrderParam CQuoteRows::order(int row) const {
    const QMutexLocker lock(&m_mutex);
    return m_orders.at(static_cast<std::size_t>(row));
}

void CQuoteRows::setVolume(int row, int volume) {
    const QMutexLocker lock(&m_mutex);
    CCodeOrderParam& order = m_orders.at(static_cast<std::size_t>(row));
    order.m_nVolume = volume;
    if (!isInvalidPrice(order.m_dQuantity)) order.m_dQuantity = volume;
    CRow& record = m_quoteRows.at(static_cast<std::size_t>(row));
    if (record.m_value.m_bValid) record.m_value.m_dMarketValue = volume * record.m_dUnitValue;
}

void CQuoteRows::setMoney(int row, double money) {
    const QMutexLocker lock(&m_mutex);
    CCodeOrderParam& order = m_orders.at(static_cast<std::size_t>(row));
    order.m_dQuantity = money;
    order.m_nVolume = money < kUnsetInt ? static_cast<int>(money) : kUnsetInt;
}

std::vector<QString> CQuoteRows::keys() const {
    const QMutexLocker lock(&m_mutex);
    std::vector<QString> keys;
    for (const auto& [key, rows] : m_rowsOf)
        keys.push_back(key);
    return keys;
}

void CQuoteRows::setQuote(const QString& key, const CPriceDataPtr& price) noexcept {
    runGuarded(QStringLiteral("最新市值未更新"), [&] { update(key, price, false); });
}

void CQuoteRows::setKnownQuote(const QString& key, const CPriceDataPtr& price) noexcept {
    runGuarded(QStringLiteral("最新市值未更新"), [&] { update(key, price, true); });
}

void CQuoteRows::update(const QString& key, const CPriceDataPtr& price, bool isKnown) {
    if (!isUsable(price)) return;
    const double unit = unitValueOf(key, price->m_dLastPrice); // asks the host, so it needs no lock
    const QMutexLocker lock(&m_mutex);
    const auto found = m_rowsOf.find(key);
    if (found == m_rowsOf.end()) return;
    for (const int number : found->second) {
        CRow& row = m_quoteRows[static_cast<std::size_t>(number)];
        const std::optional<double> volume = quantityOf(m_orders[static_cast<std::size_t>(number)]);
        if (!volume || (isKnown && row.m_value.m_bValid)) continue;
        row.m_price = price;
        row.m_dUnitValue = unit;
        row.m_value = {*volume * unit, true};
    }
}

double CQuoteRows::unitValueOf(const QString& key, double price) const {
    CStockInfo stock;
    {
        const QMutexLocker lock(&m_mutex);
        const auto found = m_rowsOf.find(key);
        if (found == m_rowsOf.end()) return 0;
        stock = m_orders[static_cast<std::size_t>(found->second.front())].m_stock;
    }
    return moneyRuleOf(hostCall<&CExchangeClient::getCodeInfo>(key), stock).money(1, price);
}

std::vector<CQuoteRows::CValue> CQuoteRows::values() const {
    const QMutexLocker lock(&m_mutex);
    std::vector<CValue> values;
    values.reserve(m_quoteRows.size());
    for (const CRow& row : m_quoteRows)
        values.push_back(row.m_value);
    return values;
}

} // namespace TC
