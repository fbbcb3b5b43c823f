#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/market/Operations.h"
#include "desk/paper/PaperRecords.h"
#include "records/Enums.h"

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

/// Whether any family has the operation.
bool isOperationOfAnyFamily(TC::EOperationType operation);

/// What an accepted order does, from the tables.
const COperation& operationOf(const CPaperOrder& order);
EClosing closingOf(const CPaperOrder& order);
EPayment paymentOf(const CPaperOrder& order);

/// The side on which a buy or a sell opens, and the one on which it closes.
inline EPositionSide openedSide(const CPaperOrder& order) {
    return order.isBuy() ? EPositionSide::Long : EPositionSide::Short;
}
inline EPositionSide closedSide(const CPaperOrder& order) {
    return order.isBuy() ? EPositionSide::Short : EPositionSide::Long;
}

} // namespace desk
