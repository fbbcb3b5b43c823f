#pragma once

#include "orderservice/base/Fields.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/RecentCodes.h"

#include <cstddef>

namespace TC {

/// Where a plain order line comes from.
struct CLineOrigin {
    int m_nChannel = 0;       ///< the strategy that reads it
    bool m_bTableRow = false; ///< a row of a DBF table: price command first, no channel
    int m_nRowPosition = 0;   ///< position of the row in its table, counted from 1
};

/// Reads the fields of a plain order line into a new record; the caller passes at least two fields. Throws
/// boost::bad_lexical_cast if a number cannot be read or a required field is empty; the record may then be
/// filled in part. Order number 34, a whole basket, gets no order line here.
void parsePlainOrder(const CFields& fields, const CLineOrigin& source, CRecentCodes& codes,
                     COrderParam& order);

/// Index of the first field after the order number and, in a file line, the channel.
std::size_t firstOrderField(const CLineOrigin& source);

/// Reads a row of a basket or list file; the caller passes at least two fields. A row of a list is a buy.
/// Throws boost::bad_lexical_cast if a number cannot be read.
void readBasketRow(const CFields& fields, COrderSingleParam& row);
void readListRow(const CFields& fields, COrderSingleParam& row);

} // namespace TC
