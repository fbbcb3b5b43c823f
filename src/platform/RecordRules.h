#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/CommandParam.h"

#include <vector>

namespace TC {

class CTradingRules;

/// What the trading layer changes in the records of a checked order before the user sees them. A part of
/// CTradingRules, whose comment says when the operations are called. Only the two-pass variant calls them,
/// once for each order that passed its check.
class ORDERSERVICE_EXPORT CRecordRules {
public:
    using CService = CTradingRules; ///< reports show these operations under its name

    /// Removes the records without a volume. The others stay in their order. A record whose m_dQuantity is
    /// above zero has a volume, also if m_nVolume is 0. If no record is left, the order is refused.
    virtual void filterZeroStock(std::vector<CCodeOrderParam>& records) = 0;
    /// Fills m_nOverFreqMode of the records, if the trading layer needs it. Called after filterZeroStock,
    /// also with an empty list. Must not add or remove records.
    virtual void fillOverFreqOrderMode(std::vector<CCodeOrderParam>& records) = 0;

protected:
    virtual ~CRecordRules() = default;
};

} // namespace TC
