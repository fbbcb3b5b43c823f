#include "desk/market/Operations.h"

#include <algorithm>
#include <iterator>

namespace desk {
namespace {

using ESide = ETradeSide;
using EEffect = EOperationEffect;

constexpr COperation kOperations[] = {
    // Futures, options on futures and gold. A position is of today or of earlier days; the operations that
    // close differ in which of them goes, or goes first.
    {0, ESide::Buy, EEffect::Open, EBooking::Own},            // long
    {1, ESide::Sell, EEffect::Close, EBooking::Own},          // long, of earlier days
    {2, ESide::Sell, EEffect::Close, EBooking::Own},          // long, of today
    {3, ESide::Sell, EEffect::Open, EBooking::Own},           // short
    {4, ESide::Buy, EEffect::Close, EBooking::Own},           // short, of earlier days
    {5, ESide::Buy, EEffect::Close, EBooking::Own},           // short, of today
    {6, ESide::Sell, EEffect::Close, EBooking::Own},          // long, today's first
    {7, ESide::Sell, EEffect::Close, EBooking::Own},          // long, earlier first
    {8, ESide::Buy, EEffect::Close, EBooking::Own},           // short, today's first
    {9, ESide::Buy, EEffect::Close, EBooking::Own},           // short, earlier first
    {10, ESide::Sell, EEffect::CloseThenOpen, EBooking::Own}, // long, today's first; then opens short
    {11, ESide::Sell, EEffect::CloseThenOpen, EBooking::Own}, // long, earlier first; then opens short
    {12, ESide::Buy, EEffect::CloseThenOpen, EBooking::Own},  // short, today's first; then opens long
    {13, ESide::Buy, EEffect::CloseThenOpen, EBooking::Own},  // short, earlier first; then opens long
    {50, ESide::None, EEffect::Exercise, EBooking::Own},

    // Stocks, the connects and gold.
    {18, ESide::Buy, EEffect::Trade, EBooking::Own},
    {19, ESide::Sell, EEffect::Trade, EBooking::Own},

    // Margin trading.
    {20, ESide::Buy, EEffect::Trade, EBooking::BorrowedMoney},
    {21, ESide::Sell, EEffect::Trade, EBooking::BorrowedShares},
    {22, ESide::Buy, EEffect::Trade, EBooking::SharesReturned},
    {23, ESide::None, EEffect::ReturnShares, EBooking::SharesReturned},
    {24, ESide::Sell, EEffect::Trade, EBooking::MoneyRepaid},
    {25, ESide::None, EEffect::RepayMoney, EBooking::MoneyRepaid},
    {55, ESide::None, EEffect::EndContract, EBooking::ContractEnded}, // of borrowed money
    {56, ESide::None, EEffect::EndContract, EBooking::ContractEnded}, // of borrowed shares
    {1021, ESide::None, EEffect::RepayMoney, EBooking::MoneyRepaid},

    // Funds: subscribe and redeem, buy in and out, create and redeem.
    {26, ESide::Buy, EEffect::Trade, EBooking::Own},
    {27, ESide::Sell, EEffect::Trade, EBooking::Own},
    {1025, ESide::Buy, EEffect::Trade, EBooking::Own},
    {1026, ESide::Sell, EEffect::Trade, EBooking::Own},
    {30, ESide::Buy, EEffect::Trade, EBooking::Own},
    {31, ESide::Sell, EEffect::Trade, EBooking::Own},

    // Options on stocks.
    {32, ESide::Buy, EEffect::Open, EBooking::Own},
    {33, ESide::Sell, EEffect::Close, EBooking::Own},
    {34, ESide::Sell, EEffect::Open, EBooking::Own},
    {35, ESide::Buy, EEffect::Close, EBooking::Own},
    {36, ESide::Sell, EEffect::Open, EBooking::Own},     // covered by locked stock
    {37, ESide::Buy, EEffect::Close, EBooking::Own},     // covered by locked stock
    {38, ESide::None, EEffect::Exercise, EBooking::Own}, // call
    {39, ESide::None, EEffect::Exercise, EBooking::Own}, // put
    {40, ESide::None, EEffect::LockUnderlying, EBooking::Own},
    {41, ESide::None, EEffect::UnlockUnderlying, EBooking::Own},

    // The share-transfer market: in pairs of buy and sell, one pair for each way of transfer.
    {42, ESide::Buy, EEffect::Trade, EBooking::Own},
    {43, ESide::Sell, EEffect::Trade, EBooking::Own},
    {44, ESide::Buy, EEffect::Trade, EBooking::Own},
    {45, ESide::Sell, EEffect::Trade, EBooking::Own},
    {46, ESide::Buy, EEffect::Trade, EBooking::Own},
    {47, ESide::Sell, EEffect::Trade, EBooking::Own},
    {48, ESide::Buy, EEffect::Trade, EBooking::Own},
    {49, ESide::Sell, EEffect::Trade, EBooking::Own},
    {1013, ESide::Buy, EEffect::Trade, EBooking::Own},
    {1014, ESide::Sell, EEffect::Trade, EBooking::Own},
    {1027, ESide::Buy, EEffect::Trade, EBooking::Own},
    {1028, ESide::Sell, EEffect::Trade, EBooking::Own},
    {1029, ESide::Buy, EEffect::Trade, EBooking::Own},
    {1030, ESide::Sell, EEffect::Trade, EBooking::Own},
};

} // namespace

const COperation* findOperation(TC::EOperationType operation) {
    const auto found =
        std::find_if(std::begin(kOperations), std::end(kOperations),
                     [&](const COperation& row) { return row.m_nNumber == static_cast<int>(operation); });
    return found != std::end(kOperations) ? found : nullptr;
}

} // namespace desk
