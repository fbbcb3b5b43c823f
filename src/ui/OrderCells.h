#pragma once

#include "orderservice/platform/Quote.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"

#include <QString>

#include <optional>
#include <set>

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
    /// Whether m_volume is money. Not set if the host has failed to say so.
    std::optional<bool> m_bMoney = false;
    std::optional<double> m_available;
    std::optional<double> m_basePrice;
    std::optional<double> m_price;
    QString m_strPriceWord; ///< shown if m_price is not set; empty if there is no word
    std::optional<double> m_amount;
    bool m_bNeedsQuote = false; ///< m_basePrice is not set, and a later quote may have it
    std::set<int> m_unread;     ///< columns of COrdersConfirmWidget that the host has failed to answer for
};

/// docs/confirmation.md has the rules as a table. `quote` may be empty. A failure of the host leaves its
/// cells empty, and the others are filled. Main thread.
COrderCells cellsOf(const CCodeOrderParam& record, EQdTraderType traderType, CHostFacts& host,
                    const CPriceDataPtr& quote);
/// The same without account, product, trade type and available volume.
COrderCells numbersOf(const CCodeOrderParam& record, CHostFacts& host, const CPriceDataPtr& quote);

} // namespace TC
