// The numbers and words of function trading.
#include "orderservice/func/FuncTables.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace TC;

constexpr int kSingle = 1101;
constexpr int kCompose = 2101;

TEST(FuncTables, OnlyTwentyTwoAndTheTwoThousandsTradeBaskets) {
    for (int number = -3000; number <= 30000; ++number)
        EXPECT_EQ(isComposeOrderType(number), number == 22 || (number >= 2000 && number < 3000)) << number;
}

/// The numbers of a family, with an order type of single instruments and with one of baskets.
std::set<int> numbersOf(EFuncFamily family, int orderType) {
    std::set<int> numbers;
    for (int number = -10; number <= 2000; ++number) {
        if (funcFamilyOf(number, orderType) == family) numbers.insert(number);
    }
    return numbers;
}

using CNumbers = std::set<int>;

TEST(FuncTables, FamiliesOfOperationsOnSingleInstruments) {
    EXPECT_EQ(numbersOf(EFuncFamily::Future, kSingle),
              (CNumbers{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
    EXPECT_EQ(numbersOf(EFuncFamily::Stock, kSingle), (CNumbers{23, 24}));
    EXPECT_EQ(numbersOf(EFuncFamily::StockBasket, kSingle), (CNumbers{25, 26}));
    EXPECT_EQ(numbersOf(EFuncFamily::Credit, kSingle), (CNumbers{27, 28, 29, 30, 31, 32, 33, 34}));
    EXPECT_EQ(numbersOf(EFuncFamily::CreditBasket, kSingle), CNumbers{});
    EXPECT_EQ(numbersOf(EFuncFamily::FutureBasket, kSingle), (CNumbers{40, 43, 46, 47, 48, 49}));
    EXPECT_EQ(numbersOf(EFuncFamily::StockOption, kSingle),
              (CNumbers{50, 51, 52, 53, 54, 55, 56, 57, 58, 59}));
}

TEST(FuncTables, BasketsChangeOnlyTheFamiliesOfCredit) {
    EXPECT_EQ(numbersOf(EFuncFamily::Credit, kCompose), CNumbers{});
    EXPECT_EQ(numbersOf(EFuncFamily::CreditBasket, kCompose), (CNumbers{27, 28, 29, 31, 33, 34}));
    EXPECT_EQ(funcFamilyOf(30, kCompose), EFuncFamily::None);
    EXPECT_EQ(funcFamilyOf(32, kCompose), EFuncFamily::None);
    for (const EFuncFamily family : {EFuncFamily::Future, EFuncFamily::Stock, EFuncFamily::StockBasket,
                                     EFuncFamily::FutureBasket, EFuncFamily::StockOption})
        EXPECT_EQ(numbersOf(family, kCompose), numbersOf(family, kSingle));
}

/// "A" or "G" for one account or a group, "v", "m" or "r" for the unit, "h" for a futures leg.
std::string describe(const CFuncOrderType& row) {
    static const std::map<EFuncUnit, std::string> kUnits = {
        {EFuncUnit::Volume, "v"}, {EFuncUnit::Money, "m"}, {EFuncUnit::Ratio, "r"}};
    return (row.m_eAccounts == ESelectedAccountType::Account ? "A" : "G") + kUnits.at(row.m_eUnit) +
           (row.m_bHedge ? "h" : "");
}

TEST(FuncTables, OrderTypesSelectAccountsAndUnit) {
    const std::map<int, std::string> expected = {
        {11, "Av"},   {1101, "Av"}, {21, "Av"},   {12, "Gv"},   {1201, "Gv"},  {22, "Gv"},    {1102, "Am"},
        {1113, "Ar"}, {1123, "Ar"}, {1202, "Gm"}, {1213, "Gr"}, {1223, "Gr"},  {2101, "Av"},  {2102, "Am"},
        {2103, "Ar"}, {2201, "Gv"}, {2202, "Gm"}, {2203, "Gr"}, {2331, "Avh"}, {2332, "Amh"}, {2333, "Arh"}};
    std::map<int, std::string> found;
    for (int number = -10; number <= 3000; ++number) {
        if (const CFuncOrderType* row = findFuncOrderType(number)) found[number] = describe(*row);
    }
    EXPECT_EQ(found, expected);
}

TEST(FuncTables, SetsOfOrderTypes) {
    CNumbers ratio, securities, hedge, inLine, money, credit, hedgeable;
    for (int number = -10; number <= 3000; ++number) {
        if (isRatioOrderType(number)) ratio.insert(number);
        if (isOrderTypeOfSecurities(number)) securities.insert(number);
        if (isHedgeOrderType(number)) hedge.insert(number);
        if (isVolumeInLine(number)) inLine.insert(number);
        if (isMoneyOfSingle(number)) money.insert(number);
        if (isCreditOrderType(number)) credit.insert(number);
        if (isHedgeableOperation(number)) hedgeable.insert(number);
    }
    EXPECT_EQ(ratio, (CNumbers{1113, 1123, 1213, 1223, 2103, 2203, 2333}));
    EXPECT_EQ(securities, (CNumbers{1202, 2103, 2203}));
    EXPECT_EQ(hedge, (CNumbers{2331, 2332, 2333}));
    EXPECT_EQ(inLine, (CNumbers{11, 12, 1101, 1201}));
    EXPECT_EQ(money, (CNumbers{1102, 1202}));
    EXPECT_EQ(credit, (CNumbers{11, 12, 1101, 1102, 1201, 1202}));
    EXPECT_EQ(hedgeable, (CNumbers{25, 26, 27, 28, 29, 31, 33, 34}));
}

TEST(FuncTables, AccountTypesOfACancel) {
    const std::map<std::string, int> expected = {{"FUTURE", 1},
                                                 {"STOCK", 2},
                                                 {"CREDIT", 3},
                                                 {"GOLD", 4},
                                                 {"FUTURE_OPTION", 5},
                                                 {"STOCK_OPTION", 6},
                                                 {"HUGANGTONG", 7},
                                                 {"NEW3BOARD", 10},
                                                 {"SHENGANGTONG", 11},
                                                 {"OUTTER_FUTURE", 1001},
                                                 {"IB", 1002},
                                                 {"NS_TRUSTBANK", 15001},
                                                 {"INTERBANK", 15002},
                                                 {"stock", 2},
                                                 {"Future_Option", 5},
                                                 {"", -1},
                                                 {"STOCKS", -1},
                                                 {" STOCK", -1},
                                                 {"\xE8\x82\xA1\xE7\xA5\xA8", -1}};
    for (const auto& [word, number] : expected)
        EXPECT_EQ(tranAccountType(word), number) << word;
}

} // namespace
