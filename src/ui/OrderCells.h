#pragma once

#include "orderservice/platform/Quote.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/Instrument.h"

#include <QString>

#include <optional>

namespace TC {

/// The key under which the host knows the record's instrument, or an empty text if it has no instrument.
QString stockKeyOf(const CCodeOrderParam& record);

/// Whether the record repays an amount of money, which is in m_dQuantity.
bool repaysMoney(const CCodeOrderParam& record);

/// The volume in shares or lots, or the amount of money to repay. m_dQuantity is used if it is set.
std::optional<double> quantityOf(const CCodeOrderParam& record);

/// Money for one unit of volume and of price: the contract multiplier. For an instrument with a fixed price
/// of 100 the price is not used.
struct CMoneyRule {
    double m_dMultiplier = 1;
    bool m_bParPriced = false;

    double money(double volume, double price) const {
        return m_bParPriced ? volume * kParPrice : volume * price * m_dMultiplier;
    }
    static constexpr double kParPrice = 100;
};

/// The rule of an instrument. Any thread. `detail` may be empty.
CMoneyRule moneyRuleOf(const CInstrumentDetailPtr& detail, const CStockInfo& stock);

/// The cells of a record that the host's answers decide. A number that is not set is shown as "-".
struct COrderCells {
    QString m_strTradeType;
    std::optional<double> m_volume; ///< shares or lots, or money in currency units
    bool m_bMoney = false;          ///< m_volume is money
    std::optional<double> m_basePrice;
    std::optional<double> m_price;
    QString m_strPriceWord; ///< shown if m_price is not set; empty if there is no word
    std::optional<double> m_amount;
};

/// docs/confirmation.md has the rules as a table. `quote` and `detail` may be empty. Main thread.
COrderCells cellsOf(const CCodeOrderParam& record, EQdTraderType traderType, const CPriceDataPtr& quote,
                    const CInstrumentDetailPtr& detail);

} // namespace TC
