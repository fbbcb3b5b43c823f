#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/paper/PaperRecords.h"
#include "records/CommandParam.h"

#include <optional>
#include <string>

namespace desk {

/// All that a rule of acceptance may look at. Pointers that may be null say so.
struct CAcceptance {
    const TC::COrderComandParam& m_command;
    const TC::CCodeOrderParam& m_record;
    const CAccountEntry* m_account; ///< null: the desk has no such account
    const std::optional<CInstrumentEntry>& m_instrument;
    CMoney m_nAvailableCash;
    std::int64_t m_nAvailableVolume;
    const CPaperOrder& m_order;
};

/// The broker's rules of acceptance, one after the other: why the order is rejected, or an empty text.
///
/// Modelled are plain buys and sells of the stock family. A buy is a whole number of units. A sell may hold
/// an odd lot, but only all of it: volume modulo unit is 0 or equals available volume modulo unit. A limit
/// lies within the instrument's price limits, is positive and no finer than 0.0001. Funds cover limit times
/// volume; what is sold is available today. Fees and taxes are not modelled.
std::string rejectionReason(const CAcceptance& acceptance);

/// Whether orders of the price type carry their limit in the record: specified prices, levels of the book and
/// the latest price. Every other type takes what the book has.
bool isLimitPriceType(TC::EPriceType priceType);

/// Fills price, limit and market flag of the order from the record. A level or the latest price that came
/// without a number takes what the book has; a specified price must have one and is left at 0, which the
/// rules refuse.
void takePrice(const TC::CCodeOrderParam& record, CPaperOrder& order);

/// The unit in which the instrument is bought, at least 1: on the STAR market the one shown to the user.
int tradingUnit(const CInstrumentEntry& instrument);

} // namespace desk
