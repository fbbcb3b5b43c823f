#pragma once

#include "orderservice/base/Fields.h"
#include "orderservice/records/OrderParam.h"

#include <QString>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace TC {

/// Where a plain order line comes from.
struct CLineOrigin {
    int m_nChannel = 0;       ///< the strategy that reads it
    bool m_bTableRow = false; ///< a row of a DBF table: price command first, no channel
    int m_nRowPosition = 0;   ///< position of the row in its table, counted from 1
};

/// The codes of the lines that were read last. A file names the same instruments again and again; its orders
/// then share one text, which saves memory and time for each of them. Not thread-safe.
class CRecentCodes {
public:
    /// The same result as codeOfField.
    const QString& codeOf(std::string_view field);

private:
    struct CEntry {
        std::string m_strField;
        QString m_code;
    };
    /// Each field has one possible place. A later field of the same place replaces the earlier one.
    std::array<CEntry, 64> m_entries;
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
