#pragma once

#include "orderservice/base/Unset.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderParam.h"

#include <QString>

namespace TC {

/// The properties of an order, or of another request, that the last check of its command needs. A request
/// that is not an order can fill the record itself. Order numbers may mean something else there, so the check
/// uses only the flags.
struct CCommandSource {
    /// The start of reports, such as "[source]　name, ". If it is empty, a report begins with the kind of
    /// source and the channel (the next two members).
    QString m_strReportHead;
    EOrderStrategyType m_eStrategyType = unsetEnum<EOrderStrategyType>();
    int m_nChannel = kUnsetInt;
    int m_nShownOrder = kUnsetInt; ///< order-type number that is named in reports
    bool m_bNeedsPrice = true;     ///< a trade: at the specified price type its records need a price
    bool m_bContractEnd = false;   ///< records that name a contract need no instrument
    bool m_bRepayment = false;     ///< records that repay money need an amount, and nothing else
    bool m_bSaleOfAll = false;     ///< records without a volume are left out
};

/// The record of an order. Pure.
CCommandSource sourceOf(const COrderParam& order);

} // namespace TC
