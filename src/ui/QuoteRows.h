#pragma once

#include "orderservice/platform/Quote.h"
#include "orderservice/records/CommandParam.h"

#include <QMutex>
#include <QString>

#include <map>
#include <vector>

namespace TC {

/// The records of the confirmation table with their market values. Quote call-backs change the values on a
/// thread of the host, and the table reads them on the main thread. Call-backs hold a shared pointer to this
/// object, so one that comes after the table is gone is safe. Any thread, unless an operation says otherwise.
class CQuoteRows {
public:
    struct CValue {
        double m_dMarketValue = 0; ///< currency units
        bool m_bValid = false;
    };

    /// Replaces the records. No row has a market value then. Main thread.
    void setOrders(const std::vector<CCodeOrderParam>& orders);
    std::vector<CCodeOrderParam> orders() const;
    CCodeOrderParam order(int row) const;
    /// Replaces the volume of a row, and works its market value out again from its last price.
    void setVolume(int row, int volume);
    /// The same for an amount of money to repay, which has no market value.
    void setMoney(int row, double money);

    /// The instruments of the rows, each once. Rows that repay money have none. Main thread.
    std::vector<QString> keys() const;

    /// A new quote of the instrument. An empty or invalid quote changes nothing. Does not throw.
    void setQuote(const QString& key, const CPriceDataPtr& price) noexcept;
    /// The same for a quote that was known before the request. Rows that have a value already keep it.
    void setKnownQuote(const QString& key, const CPriceDataPtr& price) noexcept;

    std::vector<CValue> values() const;

private:
    struct CRow {
        int m_nRow = 0;
        CPriceDataPtr m_price; ///< the last valid quote
        CValue m_value;
        double m_dUnitValue = 0; ///< market value of one share or lot
    };

    void update(const QString& key, const CPriceDataPtr& price, bool isKnown);
    double unitValueOf(const QString& key, double price) const;

    mutable QMutex m_mutex{QMutex::Recursive};
    std::vector<CCodeOrderParam> m_orders;
    std::vector<CRow> m_quoteRows;
    std::map<QString, std::vector<int>> m_rowsOf; ///< by instrument
};

} // namespace TC
