#pragma once

#include "orderservice/platform/Quote.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"

#include <QString>

#include <optional>

namespace TC {

class CHostFacts;

/// The volume in shares or lots, or the amount of money to repay. m_dQuantity is used if it is set.
std::optional<double> quantityOf(const CCodeOrderParam& record);

/// The cells of a record that need the host's answers. A number that is not set is shown as "-".
struct COrderCells {
    QString m_strAccount; ///< name of the account in its product, otherwise its key
    QString m_strProduct;
    QString m_strTradeType;
    std::optional<double> m_volume; ///< shares or lots, or money in currency units
    bool m_bMoney = false;          ///< m_volume is money
    std::optional<double> m_available;
    std::optional<double> m_basePrice;
    std::optional<double> m_price;
    QString m_strPriceWord; ///< shown if m_price is not set; empty if there is no word
    std::optional<double> m_amount;
    bool m_bNeedsQuote = false; ///< m_basePrice is not set because there is no quote
};

/// docs/confirmation.md has the rules as a table. `quote` may be empty. A failure of the host leaves its
/// cells empty, and the others are filled. Main thread.
COrderCells cellsOf(const CCodeOrderParam& record, EQdTraderType traderType, CHostFacts& host,
                    const CPriceDataPtr& quote);

} // namespace TC
