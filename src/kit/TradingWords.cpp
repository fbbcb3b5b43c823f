#include "orderservice/kit/TradingWords.h"

#include "orderservice/base/FindRow.h"
#include "orderservice/records/OrderNumbers.h"

#include <QStringView>

#include <cstddef>
#include <string_view>

namespace kit {
namespace {

/// A number and its word. The word is UTF-16, because it becomes a QString several times for each order.
struct CWord {
    int number;
    std::u16string_view word;
};

constexpr CWord kSourceWords[] = {{0, u"接口单"}, {1, u"信号单"}, {2, u"文件单"}, {4, u"批量埋单"}};
constexpr CWord kFamilyWords[] = {{0, u"股票"},     {1, u"期货"},     {2, u"组合"},     {3, u"信用"},
                                  {4, u"股票期权"}, {5, u"期货期权"}, {6, u"期货组合"}, {9, u"深港通"},
                                  {10, u"沪港通"},  {11, u"股转"},    {12, u"黄金"}};
constexpr CWord kOrderWords[] = {
    {0, u"开多"},      {1, u"平昨多"},    {2, u"平今多"},    {3, u"开空"},      {4, u"平昨空"},
    {5, u"平今空"},    {23, u"买入"},     {24, u"卖出"},     {25, u"组合买入"}, {26, u"组合卖出"},
    {27, u"融资买入"}, {28, u"融券卖出"}, {29, u"买券还券"}, {30, u"现券还券"}, {31, u"卖券还款"},
    {32, u"直接还款"}, {33, u"组合买卖"}, {34, u"组合调仓"}, {35, u"列表调仓"}, {48, u"买入开仓"},
    {49, u"卖出平仓"}, {50, u"卖出开仓"}, {51, u"买入平仓"}, {52, u"备兑开仓"}, {53, u"备兑平仓"},
    {54, u"认购行权"}, {55, u"认沽行权"}, {56, u"锁定"},     {57, u"解锁"},     {100, u"行权"}};
/// The general word of a family's orders. It is used for orders that have no word of their own, followed by
/// the number.
struct CFamilyOrderWord {
    TC::EOrderStrategyTradeType family;
    const char* word;
};

constexpr const char* kGeneralOrderWord = "指令";
constexpr const char* kFundWord = "基金指令";
constexpr CFamilyOrderWord kFamilyOrderWords[] = {{TC::EOrderStrategyTradeType::Future, "期货指令"},
                                                  {TC::EOrderStrategyTradeType::Credit, "信用指令"},
                                                  {TC::EOrderStrategyTradeType::StockOption, "期权指令"},
                                                  {TC::EOrderStrategyTradeType::Neeq, "股转指令"}};

constexpr CWord kPriceWords[] = {
    {0, u"卖五价"},  {1, u"卖四价"},  {2, u"卖三价"},  {3, u"卖二价"},  {4, u"卖一价"},  {5, u"最新价"},
    {6, u"买一价"},  {7, u"买二价"},  {8, u"买三价"},  {9, u"买四价"},  {10, u"买五价"}, {11, u"指定价"},
    {30, u"卖六价"}, {31, u"卖七价"}, {32, u"卖八价"}, {33, u"卖九价"}, {34, u"卖十价"}, {35, u"买六价"},
    {36, u"买七价"}, {37, u"买八价"}, {38, u"买九价"}, {39, u"买十价"}};

template<std::size_t N>
const CWord* findWord(const CWord (&words)[N], int number) {
    return utils::findRow(words, [&](const CWord& row) { return row.number == number; });
}

QString textOf(const CWord& row) {
    return QStringView(row.word.data(), static_cast<qsizetype>(row.word.size())).toString();
}

/// The general word followed by the number.
QString numberedWord(const char* general, int number) {
    return QString::fromUtf8(general) + QString::number(number);
}

/// The word of the number. If it has none, the general word followed by the number.
template<std::size_t N>
QString wordOf(const CWord (&words)[N], int number, const char* general) {
    const CWord* found = findWord(words, number);
    return found != nullptr ? textOf(*found) : numberedWord(general, number);
}

/// The general word of a number. Several families accept the numbers of funds.
const char* generalWordOf(const TC::COrderNumber* number) {
    if (number == nullptr) return kGeneralOrderWord;
    if (number->has(TC::kFlagFund)) return kFundWord;
    const CFamilyOrderWord* found = utils::findRow(kFamilyOrderWords, [&](const CFamilyOrderWord& row) {
        return (number->m_nFamilies & TC::familyBit(row.family)) != 0;
    });
    return found != nullptr ? found->word : kGeneralOrderWord;
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
    return found != nullptr ? textOf(*found)
                            : numberedWord(generalWordOf(TC::findOrderNumber(orderType)), orderType);
}

QString priceWord(TC::EPriceType type) {
    return wordOf(kPriceWords, static_cast<int>(type), "价格类型");
}

} // namespace kit
