#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/paper/PaperRecords.h"
#include "kit/Operations.h"
#include "records/Enums.h"

#include <cstdint>
#include <optional>

/// What the paper broker models of each product family, as tables.
namespace desk {

/// How a position that an operation opens or closes is paid.
enum class EPayment : int {
    Full,    ///< the buyer pays, the seller gets the money
    Margin,  ///< both hold a part of the money; the gain is booked at closing
    Premium, ///< as Full, and the seller holds a part of the money too
};

/// One product family.
struct CPaperFamily {
    TC::EQdTraderType m_eType;
    EInstrumentKind m_eInstrumentKind;
    const char* m_pszInstrumentKind;
    EPayment m_ePayment; ///< of what opens and closes; plain buys and sells are always paid in full
    TC::EQDBrokerType m_brokers[2];
    const char* m_pszBrokers;

    bool accepts(TC::EQDBrokerType broker) const { return broker == m_brokers[0] || broker == m_brokers[1]; }
};

/// The family, or null where it is not modelled. Any thread.
const CPaperFamily* findPaperFamily(TC::EQdTraderType type);

/// Whether accounts of that kind may trade instruments of that kind in any family.
bool canTrade(TC::EQDBrokerType broker, EInstrumentKind kind);

/// How a position in instruments of a kind is paid, unless it was bought plainly. Empty where there is none:
/// what is paid in full has no short side.
std::optional<EPayment> paymentOf(EInstrumentKind kind, EPositionSide side);
/// Whether plain buys pay such a position in full, and others open it on margin.
bool canBePaidEitherWay(EInstrumentKind kind, EPositionSide side);

/// What was paid for a position that was worth `cost` when it was opened; below 0: what was got.
CMoney paidFor(EPayment payment, CMoney cost);

/// Which part of a position an operation closes.
enum class EClosing : int {
    None,
    Earlier, ///< only what is older than today
    Today,   ///< only what was opened today
    EarlierFirst,
    TodayFirst,
};

/// What the broker makes of an operation in a family.
struct COperationRule {
    int m_nFirst; ///< TC::EOperationType numbers, first and last
    int m_nLast;
    int m_nFamilies; ///< bits of TC::EQdTraderType
    EClosing m_eClosing;
    const char* m_pszRefusal; ///< why it is not modelled; null: it is
};

/// The rule of an operation in a family, or null where there is none. Any thread.
const COperationRule* findOperationRule(TC::EOperationType operation, TC::EQdTraderType family);

/// The family that closes positions in instruments of the kind by the operation, or null. Of derivatives and
/// gold there is one at most.
const CPaperFamily* findClosingFamily(EInstrumentKind kind, TC::EOperationType operation);

/// Whether any family has the operation.
bool isOperationOfAnyFamily(TC::EOperationType operation);

/// What an order does, from the tables.
const kit::COperation& operationOf(const CPaperOrder& order);
EClosing closingOf(const CPaperOrder& order);
EPayment paymentOf(const CPaperOrder& order);

/// What a volume of the order is worth at a price, or empty beyond kMaxMoney.
std::optional<CMoney> worthOf(const CPaperOrder& order, CMoney price, std::int64_t volume);

/// Whether the order is carried out without trading.
bool isDirect(const CPaperOrder& order);
/// Whether it moves money alone, and so needs neither instrument nor volume.
bool isMoneyOnly(const CPaperOrder& order);
/// Whether it only closes what is there.
bool closesOnly(const CPaperOrder& order);
/// Whether what it closes costs it money: options that were sold are bought back.
bool paysForClosing(const CPaperOrder& order);
/// Whether shares go back to the broker.
bool returnsShares(const CPaperOrder& order);
/// Whether it lends shares or gives them back.
bool movesOwedShares(const CPaperOrder& order);
/// Whether the broker lends what it trades: money or shares.
bool takesCredit(const CPaperOrder& order);

/// The side on which a buy or a sell opens, and the one on which it closes.
inline EPositionSide openedSide(const CPaperOrder& order) {
    return order.isBuy() ? EPositionSide::Long : EPositionSide::Short;
}
inline EPositionSide closedSide(const CPaperOrder& order) {
    return order.isBuy() ? EPositionSide::Short : EPositionSide::Long;
}

} // namespace desk
