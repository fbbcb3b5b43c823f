#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/paper/PaperBook.h"
#include "orderservice/records/CommandParam.h"

#include <optional>
#include <string>

namespace desk {

/// The order type of a record whose trade parameters were not understood. Such an order is rejected.
inline constexpr auto kUnreadTradeParams = static_cast<TC::EOrderType>(-2);

/// The platform of algorithm orders of function calls. Their commands have the algorithm's message in the
/// place of the trade key.
inline constexpr auto kAlgorithmPlatform = static_cast<TC::ETradePlatform>(11);

/// All inputs of an acceptance rule.
struct CAcceptance {
    const TC::COrderComandParam& m_command;
    const TC::CCodeOrderParam& m_record;
    const CAccountEntry* m_account; ///< null: the desk has no such account
    const std::optional<CInstrumentEntry>& m_instrument;
    const CPaperBook& m_book;
    const CPaperOrder& m_order; ///< takeTerms and planClosing have filled it
};

/// Applies the broker's acceptance rules in order. Returns why the order is rejected, or an empty text.
///
/// The product family must be in the table of PaperFamilies and must have the operation. Account and
/// instrument must be of the kinds that the family uses. An order that opens a position must be a whole
/// number of trading units. An order that closes a position or returns shares may contain an odd lot, but
/// only the whole odd lot: its volume modulo the unit is 0 or equals the closable volume modulo the unit. A
/// limit must be positive, within the instrument's price limits and no finer than 0.0001. The money and
/// credit that the order needs must be available; they are counted at its limit, or at the book's prices if
/// that amount is larger. The volume that it closes must be available today. The debt that it repays must
/// exist. If the account's position was opened with a multiplier that differs from the instrument's present
/// one, the order is rejected. Fees, taxes and interest are not modelled.
std::string rejectionReason(const CAcceptance& acceptance);

/// Whether orders of this price type carry their limit in the record: specified prices, levels of the book
/// and the latest price. An order of any other type trades at the prices in the book.
bool isLimitPriceType(TC::EPriceType priceType);

/// Fills price type, limit and market flag of the order from the record. If the record's limit is not a valid
/// price, the limit is 0, which the rules reject. An operation that does not trade has no limit.
void takePrice(const TC::CCodeOrderParam& record, CPaperOrder& order);

/// Fills the order's multiplier and, if the order opens a position on margin, its margin rate.
void takeTerms(const CInstrumentEntry& instrument, CPaperOrder& order);

/// The instrument's margin rate in millionths.
int marginRateOf(const CInstrumentEntry& instrument);

/// The trading unit in which the instrument is bought, at least 1. On the STAR market it is the unit shown to
/// the user.
int tradingUnit(const CInstrumentEntry& instrument);

} // namespace desk
