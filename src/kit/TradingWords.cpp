#include "orderservice/kit/TradingWords.h"

#include "orderservice/base/FindRow.h"
#include "orderservice/records/OrderNumbers.h"

#include <cstddef>

namespace kit {
namespace {

/// A number and its word. The word is stored as QString, because it is needed several times for each order.
struct CWord {
    int number;
    QString word;
};

const CWord kSourceWords[] = {{0, "接口单"}, {1, "信号单"}, {2, "文件单"}, {4, "批量埋单"}};
const CWord kFamilyWords[] = {{0, "股票"},     {1, "期货"},     {2, "组合"},     {3, "信用"},
                              {4, "股票期权"}, {5, "期货期权"}, {6, "期货组合"}, {9, "深港通"},
                              {10, "沪港通"},  {11, "股转"},    {12, "黄金"}};
const CWord kOrderWords[] = {
    {0, "开多"},      {1, "平昨多"},    {2, "平今多"},    {3, "开空"},      {4, "平昨空"},
    {5, "平今空"},    {23, "买入"},     {24, "卖出"},     {25, "组合买入"}, {26, "组合卖出"},
    {27, "融资买入"}, {28, "融券卖出"}, {29, "买券还券"}, {30, "现券还券"}, {31, "卖券还款"},
    {32, "直接还款"}, {33, "组合买卖"}, {34, "组合调仓"}, {35, "列表调仓"}, {48, "买入开仓"},
    {49, "卖出平仓"}, {50, "卖出开仓"}, {51, "买入平仓"}, {52, "备兑开仓"}, {53, "备兑平仓"},
    {54, "认购行权"}, {55, "认沽行权"}, {56, "锁定"},     {57, "解锁"},     {100, "行权"}};
/// The general word of a family's orders. It is used for orders that have no word of their own, followed by
/// the number.
struct CFamilyWord {
    TC::EOrderStrategyTradeType family;
    const char* word;
};

constexpr const char* kOrderWord = "指令";
constexpr const char* kFundWord = "基金指令";
constexpr CFamilyWord kFamilyOrderWords[] = {{TC::EOrderStrategyTradeType::Future, "期货指令"},
                                             {TC::EOrderStrategyTradeType::Credit, "信用指令"},
                                             {TC::EOrderStrategyTradeType::StockOption, "期权指令"},
                                             {TC::EOrderStrategyTradeType::Neeq, "股转指令"}};

const CWord kPriceWords[] = {{0, "卖五价"},  {1, "卖四价"},  {2, "卖三价"},  {3, "卖二价"},  {4, "卖一价"},
                             {5, "最新价"},  {6, "买一价"},  {7, "买二价"},  {8, "买三价"},  {9, "买四价"},
                             {10, "买五价"}, {11, "指定价"}, {30, "卖六价"}, {31, "卖七价"}, {32, "卖八价"},
                             {33, "卖九价"}, {34, "卖十价"}, {35, "买六价"}, {36, "买七价"}, {37, "买八价"},
                             {38, "买九价"}, {39, "买十价"}};

template<std::size_t N>
const CWord* findWord(const CWord (&words)[N], int number) {
    return utils::findRow(words, [&](const CWord& row) { return row.number == number; });
}

/// The word of a number that has none of its own.
QString numberedWord(const char* general, int number) {
    return QString::fromUtf8(general) + QString::number(number);
}

template<std::size_t N>
QString wordOf(const CWord (&words)[N], int number, const char* general) {
    const CWord* found = findWord(words, number);
    return found != nullptr ? found->word : numberedWord(general, number);
}

/// The general word of a number. Several families accept the numbers of funds.
const char* generalWordOf(const TC::COrderNumber* number) {
    if (number == nullptr) return kOrderWord;
    if (number->has(TC::kFlagFund)) return kFundWord;
    const CFamilyWord* found = utils::findRow(kFamilyOrderWords, [&](const CFamilyWord& row) {
        return (number->m_nFamilies & TC::familyBit(row.family)) != 0;
    });
    return found != nullptr ? found->word : kOrderWord;
}

} // namespace

QString sourceWord(TC::EOrderStrategyType type) {
    return wordOf(kSourceWords, static_cast<int>(type), "来源");
}

QString familyWord(TC::EOrderStrategyTradeType type) {
    return wordOf(kFamilyWords, static_cast<int>(type), "品种");
}

QString orderWord(int orderType) {
    const CWord* found = findWord(kOrderWords, orderType);
    return found != nullptr ? found->word
                            : numberedWord(generalWordOf(TC::findOrderNumber(orderType)), orderType);
}

QString priceWord(TC::EPriceType type) {
    return wordOf(kPriceWords, static_cast<int>(type), "价格类型");
}

} // namespace kit
