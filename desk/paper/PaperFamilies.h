#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/paper/PaperRecords.h"
#include "orderservice/kit/Operations.h"
#include "orderservice/records/Enums.h"

#include <cstdint>
#include <optional>

/// What the paper broker models of each product family, as tables.
namespace desk {

/// How a position is paid when an operation opens or closes it.
enum class EPayment : int {
    Full,    ///< the buyer pays, the seller gets the money
    Margin,  ///< both sides hold a margin; the gain is booked at closing
    Premium, ///< like Full, but the seller also holds a margin
};

/// One product family.
struct CPaperFamily {
    TC::EQdTraderType m_eType;
    EInstrumentKind m_eInstrumentKind;
    const char* m_pszInstrumentKind;
    EPayment m_ePayment;      ///< for opening and closing; plain buys and sells are always paid in full
    const char* m_pszBrokers; ///< the kinds of accounts, for messages

    /// Whether the family trades on accounts of this kind (records/Families.h).
    bool accepts(TC::EQDBrokerType broker) const;
};

/// The family, or null if it is not modelled. Any thread.
const CPaperFamily* findPaperFamily(TC::EQdTraderType type);

/// Whether accounts of this kind may trade instruments of this kind in any family.
bool canTrade(TC::EQDBrokerType broker, EInstrumentKind kind);

/// How a position in instruments of this kind is paid, unless it was bought by a plain buy. Empty if such a
/// position cannot exist: instruments that are paid in full have no short side.
std::optional<EPayment> paymentOf(EInstrumentKind kind, EPositionSide side);
/// Whether such a position may be paid in full (by a plain buy) or opened on margin.
bool canBePaidEitherWay(EInstrumentKind kind, EPositionSide side);

/// The money paid for a position that was worth `cost` when it was opened. Negative if money was received.
CMoney paidFor(EPayment payment, CMoney cost);

/// Which part of a position an operation closes.
enum class EClosing : int {
    None,
    Earlier, ///< only the volume that was opened before today
    Today,   ///< only the volume that was opened today
    EarlierFirst,
    TodayFirst,
};

/// How the broker handles an operation in a family.
struct COperationRule {
    TC::EOperationType m_eOperation;
    int m_nFamilies; ///< bits of TC::EQdTraderType
    EClosing m_eClosing;
    const char* m_pszRefusal; ///< why it is not modelled; null if it is modelled
};

/// Returns the rule of an operation in a family, or null if the family does not have the operation. Any
/// thread.
const COperationRule* findOperationRule(TC::EOperationType operation, TC::EQdTraderType family);

/// The family in which the operation closes positions in instruments of this kind, or null. For derivatives
/// and gold there is at most one such family.
const CPaperFamily* findClosingFamily(EInstrumentKind kind, TC::EOperationType operation);

/// The first family in which accounts of this kind trade instruments of this kind by this operation, or null
/// if the broker models none. Families that share all three treat the operation alike.
const CPaperFamily* findTradingFamily(TC::EQDBrokerType broker, EInstrumentKind kind,
                                      TC::EOperationType operation);

/// Whether any family has the operation.
bool isOperationOfAnyFamily(TC::EOperationType operation);

/// What the tables say about the order's operation. An unknown operation has no side and no effect.
const kit::COperation& operationOf(const CPaperOrder& order);
EClosing closingOf(const CPaperOrder& order);
EPayment paymentOf(const CPaperOrder& order);

/// The worth of a volume of the order at a price, or empty if it is beyond kMaxMoney.
std::optional<CMoney> worthOf(const CPaperOrder& order, CMoney price, std::int64_t volume);

/// Whether the order is carried out without trading.
bool isDirect(const CPaperOrder& order);
/// Whether the order only moves money, so that it needs neither instrument nor volume.
bool isMoneyOnly(const CPaperOrder& order);
/// Whether the order only closes and never opens.
bool closesOnly(const CPaperOrder& order);
/// Whether the order pays to close: it buys back options that were sold.
bool paysForClosing(const CPaperOrder& order);
/// Whether the order returns borrowed shares to the broker.
bool returnsShares(const CPaperOrder& order);
/// Whether the order changes the shares that the account owes: it borrows or returns them.
bool movesOwedShares(const CPaperOrder& order);
/// Whether the broker lends the money or the shares that the order trades.
bool takesCredit(const CPaperOrder& order);

/// The position side that a buy or a sell opens, and the side that it closes.
inline EPositionSide openedSide(const CPaperOrder& order) {
    return order.isBuy() ? EPositionSide::Long : EPositionSide::Short;
}
inline EPositionSide closedSide(const CPaperOrder& order) {
    return order.isBuy() ? EPositionSide::Short : EPositionSide::Long;
}

} // namespace desk
