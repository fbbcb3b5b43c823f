#include "orderservice/kit/Operations.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace kit {
namespace {

using EOperation = TC::EOperationType;
using ESide = ETradeSide;
using EEffect = EOperationEffect;

constexpr COperation kOperations[] = {
    // Futures, options on futures and gold. A position is from today or from earlier days. The closing
    // operations differ in which of the two they close, or close first.
    {EOperation::OpenLong, ESide::Buy, EEffect::Open, EBooking::Own, "open long"},
    {EOperation::CloseLongEarlier, ESide::Sell, EEffect::Close, EBooking::Own, "close long of earlier days"},
    {EOperation::CloseLongToday, ESide::Sell, EEffect::Close, EBooking::Own, "close long of today"},
    {EOperation::OpenShort, ESide::Sell, EEffect::Open, EBooking::Own, "open short"},
    {EOperation::CloseShortEarlier, ESide::Buy, EEffect::Close, EBooking::Own, "close short of earlier days"},
    {EOperation::CloseShortToday, ESide::Buy, EEffect::Close, EBooking::Own, "close short of today"},
    {EOperation::CloseLongTodayFirst, ESide::Sell, EEffect::Close, EBooking::Own,
     "close long, today's first"},
    {EOperation::CloseLongEarlierFirst, ESide::Sell, EEffect::Close, EBooking::Own,
     "close long, earlier first"},
    {EOperation::CloseShortTodayFirst, ESide::Buy, EEffect::Close, EBooking::Own,
     "close short, today's first"},
    {EOperation::CloseShortEarlierFirst, ESide::Buy, EEffect::Close, EBooking::Own,
     "close short, earlier first"},
    {EOperation::CloseLongTodayFirstThenOpenShort, ESide::Sell, EEffect::CloseThenOpen, EBooking::Own,
     "close long, today's first, then open short"},
    {EOperation::CloseLongEarlierFirstThenOpenShort, ESide::Sell, EEffect::CloseThenOpen, EBooking::Own,
     "close long, earlier first, then open short"},
    {EOperation::CloseShortTodayFirstThenOpenLong, ESide::Buy, EEffect::CloseThenOpen, EBooking::Own,
     "close short, today's first, then open long"},
    {EOperation::CloseShortEarlierFirstThenOpenLong, ESide::Buy, EEffect::CloseThenOpen, EBooking::Own,
     "close short, earlier first, then open long"},
    {EOperation::ExerciseFutureOption, ESide::None, EEffect::Exercise, EBooking::Own, "exercise"},

    // Stocks, the connects and gold.
    {EOperation::Buy, ESide::Buy, EEffect::Trade, EBooking::Own, "buy"},
    {EOperation::Sell, ESide::Sell, EEffect::Trade, EBooking::Own, "sell"},
    {EOperation::BuyAtGivenPrice, ESide::Buy, EEffect::Trade, EBooking::Own, "buy at a given price"},

    // Margin trading.
    {EOperation::MarginBuy, ESide::Buy, EEffect::Trade, EBooking::BorrowedMoney, "buy on borrowed money"},
    {EOperation::ShortSell, ESide::Sell, EEffect::Trade, EBooking::BorrowedShares, "sell borrowed shares"},
    {EOperation::BuyToReturn, ESide::Buy, EEffect::Trade, EBooking::SharesReturned, "buy to return shares"},
    {EOperation::ReturnShares, ESide::None, EEffect::ReturnShares, EBooking::SharesReturned, "return shares"},
    {EOperation::SellToRepay, ESide::Sell, EEffect::Trade, EBooking::MoneyRepaid, "sell to repay money"},
    {EOperation::RepayMoney, ESide::None, EEffect::RepayMoney, EBooking::MoneyRepaid, "repay money"},
    {EOperation::EndMoneyContract, ESide::None, EEffect::EndContract, EBooking::ContractEnded,
     "end a contract of money"},
    {EOperation::EndShareContract, ESide::None, EEffect::EndContract, EBooking::ContractEnded,
     "end a contract of shares"},
    {EOperation::RepayMoneyContract, ESide::None, EEffect::RepayMoney, EBooking::MoneyRepaid,
     "repay money of a contract"},

    // Funds: subscribe and redeem, buy in and out, create and redeem.
    {EOperation::SubscribeFund, ESide::Buy, EEffect::Trade, EBooking::Own, "subscribe"},
    {EOperation::RedeemFund, ESide::Sell, EEffect::Trade, EBooking::Own, "redeem"},
    {EOperation::BuyFund, ESide::Buy, EEffect::Trade, EBooking::Own, "buy fund"},
    {EOperation::SellFund, ESide::Sell, EEffect::Trade, EBooking::Own, "sell fund"},
    {EOperation::CreateFund, ESide::Buy, EEffect::Trade, EBooking::Own, "create fund"},
    {EOperation::DissolveFund, ESide::Sell, EEffect::Trade, EBooking::Own, "dissolve fund"},

    // Options on stocks.
    {EOperation::OptionBuyOpen, ESide::Buy, EEffect::Open, EBooking::Own, "buy to open"},
    {EOperation::OptionSellClose, ESide::Sell, EEffect::Close, EBooking::Own, "sell to close"},
    {EOperation::OptionSellOpen, ESide::Sell, EEffect::Open, EBooking::Own, "sell to open"},
    {EOperation::OptionBuyClose, ESide::Buy, EEffect::Close, EBooking::Own, "buy to close"},
    {EOperation::OptionCoveredOpen, ESide::Sell, EEffect::Open, EBooking::Own, "sell to open, covered"},
    {EOperation::OptionCoveredClose, ESide::Buy, EEffect::Close, EBooking::Own, "buy to close, covered"},
    {EOperation::OptionExerciseCall, ESide::None, EEffect::Exercise, EBooking::Own, "exercise call"},
    {EOperation::OptionExercisePut, ESide::None, EEffect::Exercise, EBooking::Own, "exercise put"},
    {EOperation::OptionLock, ESide::None, EEffect::LockUnderlying, EBooking::Own, "lock shares"},
    {EOperation::OptionUnlock, ESide::None, EEffect::UnlockUnderlying, EBooking::Own, "unlock shares"},

    // The share-transfer market: pairs of buy and sell, one pair for each way of transfer.
    {EOperation::TransferBuy1, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {EOperation::TransferSell1, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {EOperation::TransferBuy2, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {EOperation::TransferSell2, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {EOperation::TransferBuy3, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {EOperation::TransferSell3, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {EOperation::TransferBuy4, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {EOperation::TransferSell4, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {EOperation::TransferBuy5, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {EOperation::TransferSell5, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {EOperation::TransferBuy6, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {EOperation::TransferSell6, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
    {EOperation::TransferBuy7, ESide::Buy, EEffect::Trade, EBooking::Own, "transfer buy"},
    {EOperation::TransferSell7, ESide::Sell, EEffect::Trade, EBooking::Own, "transfer sell"},
};

constexpr std::size_t kNumbers = 1044; ///< above the largest number of an operation

/// For each number of an operation its row, counted from 1, or 0. Hosts look for operations several times for
/// each order.
constexpr auto kRowOfNumber = [] {
    std::array<std::uint8_t, kNumbers> rows{};
    for (std::size_t i = 0; i < std::size(kOperations); ++i)
        rows[static_cast<std::size_t>(kOperations[i].m_eOperation)] = static_cast<std::uint8_t>(i + 1);
    return rows;
}();

} // namespace

const COperation* findOperation(TC::EOperationType operation) {
    const auto number = static_cast<std::size_t>(operation);
    return number < kRowOfNumber.size() && kRowOfNumber[number] != 0 ? &kOperations[kRowOfNumber[number] - 1]
                                                                     : nullptr;
}

} // namespace kit
