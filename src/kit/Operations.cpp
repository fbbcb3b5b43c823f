#include "orderservice/kit/Operations.h"

#include <algorithm>
#include <iterator>

namespace kit {
namespace {

using ESide = ETradeSide;
using EEffect = EOperationEffect;

constexpr COperation kOperations[] = {
    // Futures, options on futures and gold. A position is from today or from earlier days. The closing
    // operations differ in which of the two they close, or close first.
    {0, ESide::Buy, EEffect::Open, EBooking::Own, "open long"},
    {1, ESide::Sell, EEffect::Close, EBooking::Own, "close long of earlier days"},
    {2, ESide::Sell, EEffect::Close, EBooking::Own, "close long of today"},
    {3, ESide::Sell, EEffect::Open, EBooking::Own, "open short"},
    {4, ESide::Buy, EEffect::Close, EBooking::Own, "close short of earlier days"},
    {5, ESide::Buy, EEffect::Close, EBooking::Own, "close short of today"},
    {6, ESide::Sell, EEffect::Close, EBooking::Own, "close long, today's first"},
    {7, ESide::Sell, EEffect::Close, EBooking::Own, "close long, earlier first"},
    {8, ESide::Buy, EEffect::Close, EBooking::Own, "close short, today's first"},
    {9, ESide::Buy, EEffect::Close, EBooking::Own, "close short, earlier first"},
    {10, ESide::Sell, EEffect::CloseThenOpen, EBooking::Own, "close long, today's first, then open short"},
    {11, ESide::Sell, EEffect::CloseThenOpen, EBooking::Own, "close long, earlier first, then open short"},
    {12, ESide::Buy, EEffect::CloseThenOpen, EBooking::Own, "close short, today's first, then open long"},
    {13, ESide::Buy, EEffect::CloseThenOpen, EBooking::Own, "close short, earlier first, then open long"},
    {50, ESide::None, EEffect::Exercise, EBooking::Own, "exercise"},

    // Stocks, the connects and gold.
    {18, ESide::Buy, EEffect::Trade, EBooking::Own, "buy"},
    {19, ESide::Sell, EEffect::Trade, EBooking::Own, "sell"},

    // Margin trading.
    {20, ESide::Buy, EEffect::Trade, EBooking::BorrowedMoney, "buy on borrowed money"},
    {21, ESide::Sell, EEffect::Trade, EBooking::BorrowedShares, "sell borrowed shares"},
    {22, ESide::Buy, EEffect::Trade, EBooking::SharesReturned, "buy to return shares"},
    {23, ESide::None, EEffect::ReturnShares, EBooking::SharesReturned, "return shares"},
    {24, ESide::Sell, EEffect::Trade, EBooking::MoneyRepaid, "sell to repay money"},
    {25, ESide::None, EEffect::RepayMoney, EBooking::MoneyRepaid, "repay money"},
    {55, ESide::None, EEffect::EndContract, EBooking::ContractEnded, "end a contract of money"},
    {56, ESide::None, EEffect::EndContract, EBooking::ContractEnded, "end a contract of shares"},
    {1021, ESide::None, EEffect::RepayMoney, EBooking::MoneyRepaid, "repay money of a contract"},

    // Funds: subscribe and redeem, buy in and out, create and redeem.
    {26, ESide::Buy, EEffect::Trade, EBooking::Own, "subscribe"},
    {27, ESide::Sell, EEffect::Trade, EBooking::Own, "redeem"},
    {1025, ESide::Buy, EEffect::Trade, EBooking::Own, "buy fund"},
    {1026, ESide::Sell, EEffect::Trade, EBooking::Own, "sell fund"},
    {30, ESide::Buy, EEffect::Trade, EBooking::Own, "create fund"},
    {31, ESide::Sell, EEffect::Trade, EBooking::Own, "dissolve fund"},

    // Options on stocks.
    {32, ESide::Buy, EEffect::Open, EBooking::Own, "buy to open"},
    {33, ESide::Sell, EEffect::Close, EBooking::Own, "sell to close"},
    {34, ESide::Sell, EEffect::Open, EBooking::Own, "sell to open"},
    {35, ESide::Buy, EEffect::Close, EBooking::Own, "buy to close"},
    {36, ESide::Sell, EEffect::Open, EBooking::Own, "sell to open, covered"},
    {37, ESide::Buy, EEffect::Close, EBooking::Own, "buy to close, covered"},
    {38, ESide::None, EEffect::Exercise, EBooking::Own, "exercise call"},
    {39, ESide::None, EEffect::Exercise, EBooking::Own, "exercise put"},
    {40, ESide::None, EEffect::LockUnderlying, EBooking::Own, "lock shares"},
    {41, ESide::None, EEffect::UnlockUnderlying, EBooking::Own, "unlock shares"},

    // The share-transfer market: pairs of buy and sell, one pair for each way of transfer.
    {42, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {43, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {44, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {45, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {46, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {47, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {48, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {49, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {1013, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {1014, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {1027, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {1028, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {1029, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {1030, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
};

} // namespace

const COperation* findOperation(TC::EOperationType operation) {
    const auto found =
        std::find_if(std::begin(kOperations), std::end(kOperations),
                     [&](const COperation& row) { return row.m_nNumber == static_cast<int>(operation); });
    return found != std::end(kOperations) ? found : nullptr;
}

} // namespace kit
