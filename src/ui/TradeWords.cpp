#include "orderservice/ui/TradeWords.h"

#include "orderservice/base/Unset.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/ui/BatchTraderType.h"

namespace TC {
namespace {

struct CTradeWord {
    EOperationType m_eOperation;
    const char* m_pszWord;
};

constexpr CTradeWord kTradeWords[] = {
    {EOperationType::OpenLong, "开多"},
    {EOperationType::CloseLongEarlier, "平昨多"},
    {EOperationType::CloseLongToday, "平今多"},
    {EOperationType::OpenShort, "开空"},
    {EOperationType::CloseShortEarlier, "平昨空"},
    {EOperationType::CloseShortToday, "平今空"},
    {EOperationType::CloseLongTodayFirst, "平多, 优先平今"},
    {EOperationType::CloseLongEarlierFirst, "平多, 优先平昨"},
    {EOperationType::CloseShortTodayFirst, "平空, 优先平今"},
    {EOperationType::CloseShortEarlierFirst, "平空, 优先平昨"},
    {EOperationType::CloseLongTodayFirstThenOpenShort, "平多开空, 优先平今"},
    {EOperationType::CloseLongEarlierFirstThenOpenShort, "平多开空, 优先平昨"},
    {EOperationType::CloseShortTodayFirstThenOpenLong, "平空开多, 优先平今"},
    {EOperationType::CloseShortEarlierFirstThenOpenLong, "平空开多, 优先平昨"},
    {EOperationType::ExerciseFutureOption, "行权"},
    {EOperationType::Buy, "买入"},
    {EOperationType::Sell, "卖出"},
    {EOperationType::MarginBuy, "融资买入"},
    {EOperationType::ShortSell, "融券卖出"},
    {EOperationType::BuyToReturn, "买券还券"},
    {EOperationType::ReturnShares, "现券还券"},
    {EOperationType::SellToRepay, "卖券还款"},
    {EOperationType::RepayMoney, "直接还款"},
    {EOperationType::EndMoneyContract, "了结融资合约"},
    {EOperationType::EndShareContract, "了结融券合约"},
    {EOperationType::RepayMoneyContract, "按合约还款"},
    {EOperationType::SubscribeFund, "基金申购"},
    {EOperationType::RedeemFund, "基金赎回"},
    {EOperationType::CreateFund, "ETF申购"},
    {EOperationType::DissolveFund, "ETF赎回"},
    {EOperationType::BuyFund, "基金买入"},
    {EOperationType::SellFund, "基金卖出"},
    {EOperationType::OptionBuyOpen, "买入开仓"},
    {EOperationType::OptionSellClose, "卖出平仓"},
    {EOperationType::OptionSellOpen, "卖出开仓"},
    {EOperationType::OptionBuyClose, "买入平仓"},
    {EOperationType::OptionCoveredOpen, "备兑开仓"},
    {EOperationType::OptionCoveredClose, "备兑平仓"},
    {EOperationType::OptionExerciseCall, "认购行权"},
    {EOperationType::OptionExercisePut, "认沽行权"},
    {EOperationType::OptionLock, "锁定"},
    {EOperationType::OptionUnlock, "解锁"},
    {EOperationType::TransferBuy1, "买入"},
    {EOperationType::TransferSell1, "卖出"},
    {EOperationType::TransferBuy2, "买入"},
    {EOperationType::TransferSell2, "卖出"},
    {EOperationType::TransferBuy3, "买入"},
    {EOperationType::TransferSell3, "卖出"},
    {EOperationType::TransferBuy4, "买入"},
    {EOperationType::TransferSell4, "卖出"},
    {EOperationType::TransferBuy5, "买入"},
    {EOperationType::TransferSell5, "卖出"},
    {EOperationType::TransferBuy6, "买入"},
    {EOperationType::TransferSell6, "卖出"},
    {EOperationType::TransferBuy7, "买入"},
    {EOperationType::TransferSell7, "卖出"},
};

/// On a credit account, 18 and 19 trade without borrowing.
constexpr CTradeWord kCreditWords[] = {{EOperationType::Buy, "担保品买入"},
                                       {EOperationType::Sell, "担保品卖出"}};

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
