#include "orderservice/ui/TradeWords.h"

#include "orderservice/base/Unset.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/ui/BatchTraderType.h"

namespace TC {
namespace {

using EOperation = EOperationType;

struct CTradeWord {
    EOperationType m_eOperation;
    const char* m_pszWord;
};

constexpr CTradeWord kTradeWords[] = {
    {EOperation::OpenLong, "开多"},
    {EOperation::CloseLongEarlier, "平昨多"},
    {EOperation::CloseLongToday, "平今多"},
    {EOperation::OpenShort, "开空"},
    {EOperation::CloseShortEarlier, "平昨空"},
    {EOperation::CloseShortToday, "平今空"},
    {EOperation::CloseLongTodayFirst, "平多, 优先平今"},
    {EOperation::CloseLongEarlierFirst, "平多, 优先平昨"},
    {EOperation::CloseShortTodayFirst, "平空, 优先平今"},
    {EOperation::CloseShortEarlierFirst, "平空, 优先平昨"},
    {EOperation::CloseLongTodayFirstThenOpenShort, "平多开空, 优先平今"},
    {EOperation::CloseLongEarlierFirstThenOpenShort, "平多开空, 优先平昨"},
    {EOperation::CloseShortTodayFirstThenOpenLong, "平空开多, 优先平今"},
    {EOperation::CloseShortEarlierFirstThenOpenLong, "平空开多, 优先平昨"},
    {EOperation::ExerciseFutureOption, "行权"},
    {EOperation::Buy, "买入"},
    {EOperation::Sell, "卖出"},
    {EOperation::MarginBuy, "融资买入"},
    {EOperation::ShortSell, "融券卖出"},
    {EOperation::BuyToReturn, "买券还券"},
    {EOperation::ReturnShares, "现券还券"},
    {EOperation::SellToRepay, "卖券还款"},
    {EOperation::RepayMoney, "直接还款"},
    {EOperation::EndMoneyContract, "了结融资合约"},
    {EOperation::EndShareContract, "了结融券合约"},
    {EOperation::RepayMoneyContract, "按合约还款"},
    {EOperation::SubscribeFund, "基金申购"},
    {EOperation::RedeemFund, "基金赎回"},
    {EOperation::CreateFund, "ETF申购"},
    {EOperation::DissolveFund, "ETF赎回"},
    {EOperation::BuyFund, "基金买入"},
    {EOperation::SellFund, "基金卖出"},
    {EOperation::OptionBuyOpen, "买入开仓"},
    {EOperation::OptionSellClose, "卖出平仓"},
    {EOperation::OptionSellOpen, "卖出开仓"},
    {EOperation::OptionBuyClose, "买入平仓"},
    {EOperation::OptionCoveredOpen, "备兑开仓"},
    {EOperation::OptionCoveredClose, "备兑平仓"},
    {EOperation::OptionExerciseCall, "认购行权"},
    {EOperation::OptionExercisePut, "认沽行权"},
    {EOperation::OptionLock, "锁定"},
    {EOperation::OptionUnlock, "解锁"},
    {EOperation::TransferBuy1, "买入"},
    {EOperation::TransferSell1, "卖出"},
    {EOperation::TransferBuy2, "买入"},
    {EOperation::TransferSell2, "卖出"},
    {EOperation::TransferBuy3, "买入"},
    {EOperation::TransferSell3, "卖出"},
    {EOperation::TransferBuy4, "买入"},
    {EOperation::TransferSell4, "卖出"},
    {EOperation::TransferBuy5, "买入"},
    {EOperation::TransferSell5, "卖出"},
    {EOperation::TransferBuy6, "买入"},
    {EOperation::TransferSell6, "卖出"},
    {EOperation::TransferBuy7, "买入"},
    {EOperation::TransferSell7, "卖出"},
};

/// On a credit account, plain buying and selling uses the shares of the collateral.
constexpr CTradeWord kCreditWords[] = {{EOperation::Buy, "担保品买入"}, {EOperation::Sell, "担保品卖出"}};

template<std::size_t N>
const char* findWord(const CTradeWord (&words)[N], EOperationType operation) {
    for (const CTradeWord& row : words) {
        if (row.m_eOperation == operation) return row.m_pszWord;
    }
    return nullptr;
}

const char* contractWord(bool isBuying, bool isLongSide) {
    if (isLongSide) return isBuying ? "开多" : "平多";
    return isBuying ? "平空" : "开空";
}

} // namespace

QString tradeWord(EOperationType operation, EQdTraderType traderType) {
    if (isUnset(operation)) return QStringLiteral("-");
    const char* word = traderType == EQdTraderType::Credit ? findWord(kCreditWords, operation) : nullptr;
    if (word == nullptr) word = findWord(kTradeWords, operation);
    if (word == nullptr && isFutureLike(traderType)) word = contractWord(isBuy(operation), isLong(operation));
    if (word == nullptr) word = isBuy(operation) ? "买入" : "卖出";
    return QString::fromUtf8(word);
}

} // namespace TC
