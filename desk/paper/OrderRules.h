#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/paper/PaperBook.h"
#include "records/CommandParam.h"

#include <optional>
#include <string>

namespace desk {

/// The order kind of a record whose trade parameters were not understood: such an order is rejected.
inline constexpr auto kUnreadTradeParams = static_cast<TC::EOrderType>(-2);

/// All that a rule of acceptance may look at. Pointers that may be null say so.
struct CAcceptance {
    const TC::COrderComandParam& m_command;
    const TC::CCodeOrderParam& m_record;
    const CAccountEntry* m_account; ///< null: the desk has no such account
    const std::optional<CInstrumentEntry>& m_instrument;
    const CPaperBook& m_book;
    const CPaperOrder& m_order; ///< its terms are taken and its closing is planned
};

/// The broker's rules of acceptance, one after the other: why the order is rejected, or an empty text.
///
/// The family must be one of PaperFamilies.h and must have the operation; account and instrument must be of
/// the family's kinds. A buy is a whole number of units, and so is everything else that opens. What closes a
/// position, or returns shares, may hold an odd lot, but only all of it: volume modulo unit is 0 or equals
/// what could be closed modulo unit. A limit lies within the instrument's price limits, is positive and no
/// finer than 0.0001. What the order takes of money and credit must be available, at its limit or at the
/// book's prices where those take more. What it closes must be there today. What it repays must be owed. A
/// position that was opened with another multiplier than the instrument has now is left alone.
/// Fees, taxes and interest are not modelled.
std::string rejectionReason(const CAcceptance& acceptance);

/// Whether orders of the price type carry their limit in the record: specified prices, levels of the book and
/// the latest price. Every other type takes what the book has.
bool isLimitPriceType(TC::EPriceType priceType);

/// Fills price, limit and market flag of the order from the record. A limit that came without a number is
/// left at 0, which the rules refuse. An operation that does not trade has no limit.
void takePrice(const TC::CCodeOrderParam& record, CPaperOrder& order);

/// Fills what the order's money is counted by from the instrument.
void takeTerms(const CInstrumentEntry& instrument, CPaperOrder& order);

/// The instrument's margin rate in millionths.
int marginRateOf(const CInstrumentEntry& instrument);

/// The unit in which the instrument is bought, at least 1: on the STAR market the one shown to the user.
int tradingUnit(const CInstrumentEntry& instrument);

} // namespace desk
