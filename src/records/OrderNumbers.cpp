#include "orderservice/records/OrderNumbers.h"

#include "orderservice/base/Unset.h"

#include <array>
#include <cstddef>
#include <iterator>

namespace TC {
namespace {

using Op = EOperationType;
using Line = EOrderLineForm;
using Sock = ESocketForm;
using Family = EOrderStrategyTradeType;

constexpr auto kNoOperation = unsetEnum<EOperationType>();
constexpr auto kRowsOwn = kNoOperation; // each row of the order names its operation
constexpr auto kNoFamily = unsetEnum<Family>();

constexpr unsigned kStock = familyBit(Family::Stock);
constexpr unsigned kBaskets = familyBit(Family::Basket) | familyBit(Family::FutureBasket);
constexpr unsigned kCredit = familyBit(Family::Credit);
constexpr unsigned kStockOption = familyBit(Family::StockOption);
constexpr unsigned kFutureOption = familyBit(Family::FutureOption);
constexpr unsigned kFutures = familyBit(Family::Future) | kFutureOption;
constexpr unsigned kNeeq = familyBit(Family::Neeq);
constexpr unsigned kGold = familyBit(Family::Gold);
/// The families that use 23 to buy and 24 to sell.
constexpr unsigned kShares =
    kStock | kCredit | familyBit(Family::SGT) | familyBit(Family::HGT) | kNeeq | kGold;

} // namespace

// 14 has the same operation as 0, and 15 has the same operation as 3. The share-transfer market accepts 80 to
// 85, but they have no operation.
constexpr COrderNumber kOrderNumbers[] = {
    {0, Op::OpenLong, Line::Future, Sock::Future, kNoFamily, kFutures | kGold, 0},
    {1, Op::CloseLongEarlier, Line::Future, Sock::Future, kNoFamily, kFutures | kGold, 0},
    {2, Op::CloseLongToday, Line::Future, Sock::Future, kNoFamily, kFutures, 0},
    {3, Op::OpenShort, Line::Future, Sock::Future, kNoFamily, kFutures | kGold, 0},
    {4, Op::CloseShortEarlier, Line::Future, Sock::Future, kNoFamily, kFutures | kGold, 0},
    {5, Op::CloseShortToday, Line::Future, Sock::Future, kNoFamily, kFutures, 0},
    {6, Op::CloseLongTodayFirst, Line::Future, Sock::Future, kNoFamily, kFutures, kFlagCloseFirst},
    {7, Op::CloseLongEarlierFirst, Line::Future, Sock::Future, kNoFamily, kFutures, kFlagCloseFirst},
    {8, Op::CloseShortTodayFirst, Line::Future, Sock::Future, kNoFamily, kFutures, kFlagCloseFirst},
    {9, Op::CloseShortEarlierFirst, Line::Future, Sock::Future, kNoFamily, kFutures, kFlagCloseFirst},
    {10, Op::CloseLongTodayFirstThenOpenShort, Line::Future, Sock::Future, kNoFamily, kFutures,
     kFlagOpenOrClose},
    {11, Op::CloseLongEarlierFirstThenOpenShort, Line::Future, Sock::Future, kNoFamily, kFutures,
     kFlagOpenOrClose},
    {12, Op::CloseShortTodayFirstThenOpenLong, Line::Future, Sock::Future, kNoFamily, kFutures,
     kFlagOpenOrClose},
    {13, Op::CloseShortEarlierFirstThenOpenLong, Line::Future, Sock::Future, kNoFamily, kFutures,
     kFlagOpenOrClose},
    {14, Op::OpenLong, Line::Future, Sock::Future, kNoFamily, kFutures, kFlagOpenOrClose},
    {15, Op::OpenShort, Line::Future, Sock::Future, kNoFamily, kFutures, kFlagOpenOrClose},
    {23, Op::Buy, Line::General, Sock::Plain, Family::Stock, kShares, 0},
    {24, Op::Sell, Line::General, Sock::Plain, Family::Stock, kShares, 0},
    {25, Op::Buy, Line::None, Sock::Basket, kNoFamily, kBaskets, kFlagBasketHeader},
    {26, Op::Sell, Line::None, Sock::Basket, kNoFamily, kBaskets, kFlagBasketHeader},
    {27, Op::MarginBuy, Line::General, Sock::Plain, Family::Credit, kCredit, 0},
    {28, Op::ShortSell, Line::General, Sock::Plain, Family::Credit, kCredit, 0},
    {29, Op::BuyToReturn, Line::General, Sock::Plain, Family::Credit, kCredit, kFlagRepay},
    {30, Op::ReturnShares, Line::General, Sock::Plain, Family::Credit, kCredit, kFlagRepay},
    {31, Op::SellToRepay, Line::General, Sock::Plain, Family::Credit, kCredit, kFlagRepay},
    {32, Op::RepayMoney, Line::Amount, Sock::Plain, kNoFamily, kCredit, kFlagRepay},
    {33, kRowsOwn, Line::None, Sock::Basket, kNoFamily, kBaskets, kFlagBasketHeader},
    {34, kRowsOwn, Line::Whole, Sock::Basket, kNoFamily, kBaskets, kFlagTarget},
    {35, kRowsOwn, Line::None, Sock::Basket, kNoFamily, kBaskets, kFlagTarget},
    {36, Op::Sell, Line::None, Sock::Position, kNoFamily, kBaskets, 0},
    {37, Op::EndMoneyContract, Line::General, Sock::Plain, Family::Credit, kCredit, kFlagContractEnd},
    {38, Op::EndShareContract, Line::General, Sock::Plain, Family::Credit, kCredit, kFlagContractEnd},
    {39, Op::RepayMoneyContract, Line::Amount, Sock::Plain, kNoFamily, kCredit, kFlagRepay},
    {48, Op::OptionBuyOpen, Line::Option, Sock::Reversed, Family::StockOption, kStockOption, 0},
    {49, Op::OptionSellClose, Line::Option, Sock::Reversed, Family::StockOption, kStockOption, 0},
    {50, Op::OptionSellOpen, Line::Option, Sock::Reversed, Family::StockOption, kStockOption, 0},
    {51, Op::OptionBuyClose, Line::Option, Sock::Reversed, Family::StockOption, kStockOption, 0},
    {52, Op::OptionCoveredOpen, Line::Option, Sock::Reversed, Family::StockOption, kStockOption, 0},
    {53, Op::OptionCoveredClose, Line::Option, Sock::Reversed, Family::StockOption, kStockOption, 0},
    {54, Op::OptionExerciseCall, Line::Option, Sock::Reversed, Family::StockOption, kStockOption,
     kFlagExercise},
    {55, Op::OptionExercisePut, Line::Option, Sock::Reversed, Family::StockOption, kStockOption,
     kFlagExercise},
    {56, Op::OptionLock, Line::Option, Sock::Reversed, Family::StockOption, kStockOption,
     kFlagStockLock | kFlagMayLackFields},
    {57, Op::OptionUnlock, Line::Option, Sock::Reversed, Family::StockOption, kStockOption,
     kFlagStockLock | kFlagMayLackFields},
    {66, Op::TransferBuy1, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {67, Op::TransferSell1, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {68, Op::TransferBuy2, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {69, Op::TransferSell2, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {70, Op::TransferBuy3, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {71, Op::TransferSell3, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {72, Op::TransferBuy6, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {73, Op::TransferSell6, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {74, Op::TransferBuy4, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {75, Op::TransferSell4, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {76, Op::TransferBuy5, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {77, Op::TransferSell5, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {78, Op::TransferBuy7, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {79, Op::TransferSell7, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {80, kNoOperation, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {81, kNoOperation, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {82, kNoOperation, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {83, kNoOperation, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {84, kNoOperation, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {85, kNoOperation, Line::General, Sock::Plain, Family::Neeq, kNeeq, 0},
    {86, Op::SubscribeFund, Line::General, Sock::Plain, Family::Stock, kStock | kNeeq, kFlagFund},
    {87, Op::RedeemFund, Line::General, Sock::Plain, Family::Stock, kStock | kNeeq, kFlagFund},
    {88, Op::BuyFund, Line::General, Sock::Plain, Family::Stock, kStock | kNeeq, kFlagFund},
    {89, Op::SellFund, Line::General, Sock::Plain, Family::Stock, kStock | kNeeq, kFlagFund},
    {90, Op::CreateFund, Line::General, Sock::Plain, Family::Stock, kStock | kNeeq,
     kFlagFund | kFlagFixedPriceFund},
    {91, Op::DissolveFund, Line::General, Sock::Plain, Family::Stock, kStock | kNeeq,
     kFlagFund | kFlagFixedPriceFund},
    {92, Op::Buy, Line::General, Sock::Plain, Family::Stock, kStock, kFlagFund},
    {100, Op::ExerciseFutureOption, Line::None, Sock::Nothing, kNoFamily, kFutureOption, kFlagExercise},
    {110, kNoOperation, Line::None, Sock::Nothing, kNoFamily, kBaskets, 0},
    {111, kNoOperation, Line::None, Sock::Nothing, kNoFamily, kBaskets, 0},
    {112, kNoOperation, Line::None, Sock::Nothing, kNoFamily, kBaskets, 0},
    {113, kNoOperation, Line::None, Sock::Nothing, kNoFamily, kBaskets, 0},
    {114, kNoOperation, Line::None, Sock::Nothing, kNoFamily, kBaskets, 0},
    {115, kNoOperation, Line::None, Sock::Nothing, kNoFamily, kBaskets, 0},
    {116, kNoOperation, Line::None, Sock::Nothing, kNoFamily, kBaskets, 0},
    {117, kNoOperation, Line::None, Sock::Nothing, kNoFamily, kBaskets, 0},
    {118, kNoOperation, Line::None, Sock::Nothing, kNoFamily, kBaskets, 0},
    {119, kNoOperation, Line::None, Sock::Nothing, kNoFamily, kBaskets, 0},
};
const std::size_t kOrderNumberCount = std::size(kOrderNumbers);

namespace {

constexpr std::size_t kNumberEnd = static_cast<std::size_t>(std::rbegin(kOrderNumbers)->m_nNumber) + 1;

/// The row of each number up to the last one in the table; null if it has none. Every order looks up its
/// number several times.
constexpr std::array<const COrderNumber*, kNumberEnd> makeRows() {
    std::array<const COrderNumber*, kNumberEnd> rows{};
    for (const COrderNumber& row : kOrderNumbers)
        rows[static_cast<std::size_t>(row.m_nNumber)] = &row;
    return rows;
}

constexpr std::array<const COrderNumber*, kNumberEnd> kRows = makeRows();

} // namespace

const COrderNumber* findOrderNumber(int orderType) {
    const auto number = static_cast<std::size_t>(orderType); // a negative number becomes a very large one
    return number < kRows.size() ? kRows[number] : nullptr;
}

ESocketForm socketFormOf(int orderType) {
    if (const COrderNumber* row = findOrderNumber(orderType)) return row->m_eSocketForm;
    constexpr int kLastBasket = 92;
    const bool isGap = (orderType >= 40 && orderType <= 47) || (orderType >= 58 && orderType <= 65);
    return isGap || orderType > kLastBasket ? ESocketForm::Nothing : ESocketForm::Basket;
}

} // namespace TC
