#pragma once

#include "orderservice/platform/Quote.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/ui/MoneyRule.h"

#include <QString>

#include <map>
#include <mutex>
#include <optional>
#include <vector>

namespace TC {

/// The records of the confirmation table with their market values. Quote call-backs change the values on a
/// thread of the host, and the table reads them on the main thread. Call-backs hold a shared pointer to this
/// object, so one that comes after the table is gone is safe. It never calls the host, and it destroys no
/// object of the host while its lock is held. Any thread, unless an operation says otherwise.
class CQuoteRows {
public:
    /// The instrument of a row.
    struct CInstrument {
        QString m_strKey;                      ///< empty: the row has no market value
        std::optional<CMoneyRule> m_moneyRule; ///< not set: the row has no market value
    };
    struct CValue {
        double m_dMarketValue = 0; ///< currency units
        bool m_bValid = false;
    };

    /// Replaces the records. `instruments` has one entry for each record. No row has a quote then. Main
    /// thread.
    void setOrders(const std::vector<CCodeOrderParam>& orders, const std::vector<CInstrument>& instruments);
    std::vector<CCodeOrderParam> orders() const;
    CCodeOrderParam order(int row) const;
    /// Replaces the volume of a row, and works its market value out again from the last price.
    void setVolume(int row, int volume);
    /// The same for an amount of money to repay, which has no market value.
    void setMoney(int row, double money);

    /// The instruments of the rows, each once.
    std::vector<QString> keys() const;
    /// The last valid quote of the row's instrument, or null.
    CPriceDataPtr quote(int row) const;

    /// A new quote of the instrument. An empty or invalid quote changes nothing. Does not throw.
    void setQuote(const QString& key, const CPriceDataPtr& price) noexcept;
    /// The same for a quote that was known before the request. It does not replace a quote.
    void setKnownQuote(const QString& key, const CPriceDataPtr& price) noexcept;

    std::vector<CValue> values() const;

private:
    struct CQuoted {
        std::optional<CMoneyRule> m_moneyRule;
        std::vector<int> m_rows;
        CPriceDataPtr m_price; ///< the last valid quote
    };
    using CQuotedMap = std::map<QString, CQuoted>;
    struct CRow {
        CQuotedMap::iterator m_quoted; ///< the end of the map: the row has no instrument
        CValue m_value;
    };

    void update(const QString& key, const CPriceDataPtr& price, bool isKnown);
    void setValue(int number);

    mutable std::recursive_mutex m_mutex; ///< not Qt's: thread sanitizers do not know that one
    std::vector<CCodeOrderParam> m_orders;
    std::vector<CRow> m_quoteRows;
    CQuotedMap m_quoted;
};

} // namespace TC
