#pragma once

#include "base/Fields.h"
#include "records/OrderParam.h"

namespace TC {

/// A channel of 0 stands for the strategy that reads the file.
bool isUniversal(int channel);

/// Where a plain order line comes from.
struct CLineOrigin {
    int m_nChannel = 0;       ///< the strategy that reads it
    bool m_bTableRow = false; ///< a row of a DBF table: price command first, no channel
    int m_nRowPosition = 0;   ///< position of the row in its table, counted from 1
};

/// Reads the fields of a plain order line; there are at least two. Pure. Throws boost::bad_lexical_cast where
/// a number cannot be read or a required field is empty. The form of number 34 gives no order line here.
COrderParam parsePlainOrder(const CFields& fields, const CLineOrigin& source);

/// Index of the first field behind order number and channel.
std::size_t firstOrderField(const CLineOrigin& source);

/// A row of a basket or list file, see parseBasketRow and parseListRow of the line parser.
void readBasketRow(const CFields& fields, COrderSingleParam& row);
void readListRow(const CFields& fields, COrderSingleParam& row);

} // namespace TC
