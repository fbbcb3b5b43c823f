#include "orderservice/func/FuncTables.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>

namespace TC {
namespace {

struct COperationRow {
    int m_nFirst;
    int m_nLast;
    EFuncFamily m_eFamily;        ///< with an order type of single instruments
    EFuncFamily m_eComposeFamily; ///< with an order type of baskets
};

constexpr COperationRow kOperations[] = {
    {0, 15, EFuncFamily::Future, EFuncFamily::Future},
    {23, 24, EFuncFamily::Stock, EFuncFamily::Stock},
    {25, 26, EFuncFamily::StockBasket, EFuncFamily::StockBasket},
    {27, 29, EFuncFamily::Credit, EFuncFamily::CreditBasket},
    {30, 30, EFuncFamily::Credit, EFuncFamily::None},
    {31, 31, EFuncFamily::Credit, EFuncFamily::CreditBasket},
    {32, 32, EFuncFamily::Credit, EFuncFamily::None},
    {33, 34, EFuncFamily::Credit, EFuncFamily::CreditBasket},
    {40, 40, EFuncFamily::FutureBasket, EFuncFamily::FutureBasket},
    {43, 43, EFuncFamily::FutureBasket, EFuncFamily::FutureBasket},
    {46, 49, EFuncFamily::FutureBasket, EFuncFamily::FutureBasket},
    {50, 59, EFuncFamily::StockOption, EFuncFamily::StockOption},
};

constexpr auto kAccount = ESelectedAccountType::Account;
constexpr auto kGroup = ESelectedAccountType::Group;

constexpr CFuncOrderType kOrderTypes[] = {
    {11, kAccount, EFuncUnit::Volume, false},   {1101, kAccount, EFuncUnit::Volume, false},
    {21, kAccount, EFuncUnit::Volume, false},   {12, kGroup, EFuncUnit::Volume, false},
    {1201, kGroup, EFuncUnit::Volume, false},   {22, kGroup, EFuncUnit::Volume, false},
    {1102, kAccount, EFuncUnit::Money, false},  {1113, kAccount, EFuncUnit::Ratio, false},
    {1123, kAccount, EFuncUnit::Ratio, false},  {1202, kGroup, EFuncUnit::Money, false},
    {1213, kGroup, EFuncUnit::Ratio, false},    {1223, kGroup, EFuncUnit::Ratio, false},
    {2101, kAccount, EFuncUnit::Volume, false}, {2102, kAccount, EFuncUnit::Money, false},
    {2103, kAccount, EFuncUnit::Ratio, false},  {2201, kGroup, EFuncUnit::Volume, false},
    {2202, kGroup, EFuncUnit::Money, false},    {2203, kGroup, EFuncUnit::Ratio, false},
    {2331, kAccount, EFuncUnit::Volume, true},  {2332, kAccount, EFuncUnit::Money, true},
    {2333, kAccount, EFuncUnit::Ratio, true},
};

struct CAccountWord {
    const char* m_pszWord;
    int m_nBrokerType;
};

constexpr CAccountWord kAccountWords[] = {
    {"FUTURE", 1},        {"STOCK", 2},
    {"CREDIT", 3},        {"GOLD", 4},
    {"FUTURE_OPTION", 5}, {"STOCK_OPTION", 6},
    {"HUGANGTONG", 7},    {"NEW3BOARD", 10},
    {"SHENGANGTONG", 11}, {"OUTTER_FUTURE", 1001},
    {"IB", 1002},         {"NS_TRUSTBANK", 15001},
    {"INTERBANK", 15002},
};

template<std::size_t N>
bool isOneOf(int value, const int (&list)[N]) {
    return std::find(std::begin(list), std::end(list), value) != std::end(list);
}

std::string upperCase(std::string text) {
    for (char& letter : text)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    return text;
}

} // namespace

EFuncFamily funcFamilyOf(int opType, int orderType) {
    for (const COperationRow& row : kOperations) {
        if (opType >= row.m_nFirst && opType <= row.m_nLast)
            return isComposeOrderType(orderType) ? row.m_eComposeFamily : row.m_eFamily;
    }
    return EFuncFamily::None;
}

bool isComposeOrderType(int orderType) {
    return orderType == 22 || (orderType >= 2000 && orderType <= 2999);
}

const CFuncOrderType* findFuncOrderType(int orderType) {
    const auto found = std::find_if(std::begin(kOrderTypes), std::end(kOrderTypes),
                                    [&](const CFuncOrderType& row) { return row.m_nNumber == orderType; });
    return found == std::end(kOrderTypes) ? nullptr : &*found;
}

bool isRatioOrderType(int orderType) {
    const CFuncOrderType* const row = findFuncOrderType(orderType);
    return row != nullptr && row->m_eUnit == EFuncUnit::Ratio;
}

bool isOrderTypeOfSecurities(int orderType) {
    return isOneOf(orderType, {1202, 2103, 2203});
}

bool isHedgeOrderType(int orderType) {
    const CFuncOrderType* const row = findFuncOrderType(orderType);
    return row != nullptr && row->m_bHedge;
}

bool isVolumeInLine(int orderType) {
    return isOneOf(orderType, {11, 12, 1101, 1201});
}

bool isMoneyOfSingle(int orderType) {
    return isOneOf(orderType, {1102, 1202});
}

bool isCreditOrderType(int orderType) {
    return isOneOf(orderType, {11, 12, 1101, 1102, 1201, 1202});
}

bool isHedgeableOperation(int opType) {
    return isOneOf(opType, {25, 26, 27, 28, 29, 31, 33, 34});
}

bool isFuturesMarket(const std::string& market) {
    static constexpr const char* kMarkets[] = {"DF", "DCE", "ZF", "CZCE", "SF", "SHFE", "IF", "CFFEX", "INE"};
    return std::find(std::begin(kMarkets), std::end(kMarkets), market) != std::end(kMarkets);
}

int tranAccountType(const std::string& text) {
    const std::string word = upperCase(text);
    for (const CAccountWord& row : kAccountWords) {
        if (word == row.m_pszWord) return row.m_nBrokerType;
    }
    return -1;
}

int shownNumber(int opType, int orderType) {
    constexpr int kBuyAgain = 33;
    constexpr int kSellAgain = 34;
    const bool isBasket = isComposeOrderType(orderType);
    if (opType == kBuyAgain) return isBasket ? 25 : 23;
    if (opType == kSellAgain) return isBasket ? 26 : 24;
    return opType;
}

} // namespace TC
