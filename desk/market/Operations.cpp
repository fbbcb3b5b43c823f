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
    {0, "open long", ESide::Buy, EEffect::Open, EBooking::Own},
    {1, "close long of earlier days", ESide::Sell, EEffect::Close, EBooking::Own},
    {2, "close long of today", ESide::Sell, EEffect::Close, EBooking::Own},
    {3, "open short", ESide::Sell, EEffect::Open, EBooking::Own},
    {4, "close short of earlier days", ESide::Buy, EEffect::Close, EBooking::Own},
    {5, "close short of today", ESide::Buy, EEffect::Close, EBooking::Own},
    {6, "close long, today's first", ESide::Sell, EEffect::Close, EBooking::Own},
    {7, "close long, earlier first", ESide::Sell, EEffect::Close, EBooking::Own},
    {8, "close short, today's first", ESide::Buy, EEffect::Close, EBooking::Own},
    {9, "close short, earlier first", ESide::Buy, EEffect::Close, EBooking::Own},
    {10, "close long, today's first, then open short", ESide::Sell, EEffect::CloseThenOpen, EBooking::Own},
    {11, "close long, earlier first, then open short", ESide::Sell, EEffect::CloseThenOpen, EBooking::Own},
    {12, "close short, today's first, then open long", ESide::Buy, EEffect::CloseThenOpen, EBooking::Own},
    {13, "close short, earlier first, then open long", ESide::Buy, EEffect::CloseThenOpen, EBooking::Own},
    {50, "exercise", ESide::None, EEffect::Exercise, EBooking::Own},

    // Stocks, the connects and gold.
    {18, "buy", ESide::Buy, EEffect::Trade, EBooking::Own},
    {19, "sell", ESide::Sell, EEffect::Trade, EBooking::Own},

    // Margin trading.
    {20, "buy on borrowed money", ESide::Buy, EEffect::Trade, EBooking::BorrowedMoney},
    {21, "sell borrowed shares", ESide::Sell, EEffect::Trade, EBooking::BorrowedShares},
    {22, "buy to return shares", ESide::Buy, EEffect::Trade, EBooking::SharesReturned},
    {23, "return shares", ESide::None, EEffect::ReturnShares, EBooking::SharesReturned},
    {24, "sell to repay money", ESide::Sell, EEffect::Trade, EBooking::MoneyRepaid},
    {25, "repay money", ESide::None, EEffect::RepayMoney, EBooking::MoneyRepaid},
    {55, "end a contract of money", ESide::None, EEffect::EndContract, EBooking::ContractEnded},
    {56, "end a contract of shares", ESide::None, EEffect::EndContract, EBooking::ContractEnded},
    {1021, "repay money of a contract", ESide::None, EEffect::RepayMoney, EBooking::MoneyRepaid},

    // Funds: subscribe and redeem, buy in and out, create and redeem.
    {26, "subscribe", ESide::Buy, EEffect::Trade, EBooking::Own},
    {27, "redeem", ESide::Sell, EEffect::Trade, EBooking::Own},
    {1025, "buy fund", ESide::Buy, EEffect::Trade, EBooking::Own},
    {1026, "sell fund", ESide::Sell, EEffect::Trade, EBooking::Own},
    {30, "create fund", ESide::Buy, EEffect::Trade, EBooking::Own},
    {31, "dissolve fund", ESide::Sell, EEffect::Trade, EBooking::Own},

    // Options on stocks.
    {32, "buy to open", ESide::Buy, EEffect::Open, EBooking::Own},
    {33, "sell to close", ESide::Sell, EEffect::Close, EBooking::Own},
    {34, "sell to open", ESide::Sell, EEffect::Open, EBooking::Own},
    {35, "buy to close", ESide::Buy, EEffect::Close, EBooking::Own},
    {36, "sell to open, covered", ESide::Sell, EEffect::Open, EBooking::Own},
    {37, "buy to close, covered", ESide::Buy, EEffect::Close, EBooking::Own},
    {38, "exercise call", ESide::None, EEffect::Exercise, EBooking::Own},
    {39, "exercise put", ESide::None, EEffect::Exercise, EBooking::Own},
    {40, "lock shares", ESide::None, EEffect::LockUnderlying, EBooking::Own},
    {41, "unlock shares", ESide::None, EEffect::UnlockUnderlying, EBooking::Own},

    // The share-transfer market: in pairs of buy and sell, one pair for each way of transfer.
    {42, "transfer buy", ESide::Buy, EEffect::Trade, EBooking::Own},
    {43, "transfer sell", ESide::Sell, EEffect::Trade, EBooking::Own},
    {44, "transfer buy", ESide::Buy, EEffect::Trade, EBooking::Own},
    {45, "transfer sell", ESide::Sell, EEffect::Trade, EBooking::Own},
    {46, "transfer buy", ESide::Buy, EEffect::Trade, EBooking::Own},
    {47, "transfer sell", ESide::Sell, EEffect::Trade, EBooking::Own},
    {48, "transfer buy", ESide::Buy, EEffect::Trade, EBooking::Own},
    {49, "transfer sell", ESide::Sell, EEffect::Trade, EBooking::Own},
    {1013, "transfer buy", ESide::Buy, EEffect::Trade, EBooking::Own},
    {1014, "transfer sell", ESide::Sell, EEffect::Trade, EBooking::Own},
    {1027, "transfer buy", ESide::Buy, EEffect::Trade, EBooking::Own},
    {1028, "transfer sell", ESide::Sell, EEffect::Trade, EBooking::Own},
    {1029, "transfer buy", ESide::Buy, EEffect::Trade, EBooking::Own},
    {1030, "transfer sell", ESide::Sell, EEffect::Trade, EBooking::Own},
};

} // namespace

const COperation* findOperation(TC::EOperationType operation) {
    const auto found =
        std::find_if(std::begin(kOperations), std::end(kOperations),
                     [&](const COperation& row) { return row.m_nNumber == static_cast<int>(operation); });
    return found != std::end(kOperations) ? found : nullptr;
}

} // namespace desk
