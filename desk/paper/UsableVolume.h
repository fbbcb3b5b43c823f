#pragma once

#include "desk/config/DeskConfig.h"
#include "desk/paper/PaperBook.h"
#include "orderservice/records/Enums.h"

namespace desk {

/// What an account would like to trade.
struct CVolumeQuestion {
    const CAccountEntry& m_account;
    const CInstrumentEntry& m_instrument;
    TC::EOperationType m_eOperation;
    double m_dPrice; ///< of the order, in currency units; may be unset
    /// What the instrument's quote offers, or null without a quote.
    const CBookSides* m_pSides;
};

/// The largest volume, in shares or lots, that one order at this price may have now. The rules about
/// positions, debts, credit, money and trading units (CoverRules.h) decide, so the broker accepts an order of
/// this volume and rejects a larger one. For a repayment of money it is the amount in currency units that can
/// be repaid. 0 if the account cannot trade the instrument by this operation, or if the operation needs money
/// or credit and the price is not above 0.
///
/// Does not test the login of the account, the price limits and the price step.
double usableVolume(const CPaperBook& book, const CVolumeQuestion& question);

} // namespace desk
