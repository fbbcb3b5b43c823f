#include "desk/config/Kinds.h"
#include "desk/paper/PaperFamilies.h"
#include "desk/paper/Settlement.h"
#include "orderservice/kit/Operations.h"

#include "tests/desk/paper/FamilyDesk.h"

#include <algorithm>
#include <iterator>
#include <set>

using namespace desk;
using namespace desk::test;

namespace {

class FamilyRules : public FamilyDesk {};

/// The supported operations of a family, and the operations that are refused with their own reason.
struct COperations {
    EFamily m_eFamily;
    std::set<int> m_modelled;
    std::map<int, std::string> m_refused;
};

const std::string kNoContract = "single credit contracts are not modelled";
const std::string kNoExercise = "exercise is not modelled";
const std::string kNoCover = "covered options are not modelled";
const std::string kNoLock = "locking of stocks is not modelled";

const COperations kOperations[] = {
    {EFamily::Stock, {18, 19, 1043}, {}},
    {EFamily::FutureSpeculation, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}, {}},
    {EFamily::Basket, {18, 19}, {}},
    {EFamily::Credit,
     {18, 19, 20, 21, 22, 23, 24, 25},
     {{55, kNoContract}, {56, kNoContract}, {1021, kNoContract}}},
    {EFamily::Gold, {0, 1, 3, 4, 18, 19}, {}},
    {EFamily::Option,
     {32, 33, 34, 35},
     {{36, kNoCover}, {37, kNoCover}, {38, kNoExercise}, {39, kNoExercise}, {40, kNoLock}, {41, kNoLock}}},
    {EFamily::HGT, {18, 19, 1043}, {}},
    {EFamily::FutureOption, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}, {{50, kNoExercise}}},
    {EFamily::SGT, {18, 19, 1043}, {}},
};

std::string foreignReason(int operation, EFamily family) {
    const bool isKnown = isOperationOfAnyFamily(static_cast<TC::EOperationType>(operation));
    const std::string name = "operation " + std::to_string(operation);
    if (!isKnown) return name + " is not modelled";
    return name + " does not belong to product family " + std::to_string(static_cast<int>(family));
}

/// The operation that opens a position in the family.
int openingOf(EFamily family) {
    for (const int operation : {18, 0, 32}) {
        if (findOperationRule(static_cast<TC::EOperationType>(operation), family) != nullptr)
            return operation;
    }
    return -1;
}

} // namespace

TEST_F(FamilyRules, EveryOperationIsModelledOrRefusedWithItsReason) {
    constexpr int kLastOperation = 1044;
    for (const COperations& row : kOperations) {
        for (int operation = -1; operation <= kLastOperation; ++operation) {
            const auto type = static_cast<TC::EOperationType>(operation);
            const COperationRule* rule = findOperationRule(type, row.m_eFamily);
            const bool isModelled = rule != nullptr && rule->m_pszRefusal == nullptr;
            ASSERT_EQ(isModelled, row.m_modelled.count(operation) != 0)
                << operation << " of family " << static_cast<int>(row.m_eFamily);
            if (isModelled) {
                EXPECT_NE(kit::findOperation(type), nullptr) << operation;
            }
        }
    }
}

TEST_F(FamilyRules, WhatIsModelledCanBeBookedAndWhatIsNotCannot) {
    for (const COperations& row : kOperations) {
        for (const int operation : row.m_modelled)
            EXPECT_TRUE(canSettle(*kit::findOperation(static_cast<TC::EOperationType>(operation))))
                << operation;
    }
    for (const int operation : {38, 39, 40, 41, 50, 55, 56})
        EXPECT_FALSE(canSettle(*kit::findOperation(static_cast<TC::EOperationType>(operation)))) << operation;
    CPaperOrder unknown;
    unknown.m_eOperation = static_cast<TC::EOperationType>(-1);
    EXPECT_FALSE(canSettle(operationOf(unknown)));
}

TEST_F(FamilyRules, FolderAndBrokerAgreeOnWhatAccountsHold) {
    constexpr TC::EQDBrokerType kBrokers[] = {
        TC::EQDBrokerType::Stock,       TC::EQDBrokerType::Credit,       TC::EQDBrokerType::Future,
        TC::EQDBrokerType::StockOption, TC::EQDBrokerType::FutureOption, TC::EQDBrokerType::SGT,
        TC::EQDBrokerType::HGT,         TC::EQDBrokerType::Neeq,         TC::EQDBrokerType::Gold};
    for (int number = 0; number <= static_cast<int>(EInstrumentKind::Gold); ++number) {
        const auto kind = static_cast<EInstrumentKind>(number);
        for (const TC::EQDBrokerType broker : kBrokers) {
            const bool isTraded = std::any_of(
                std::begin(kFamiliesWithOrders), std::end(kFamiliesWithOrders), [&](EFamily family) {
                    const CPaperFamily* row = findPaperFamily(family);
                    return row->m_eInstrumentKind == kind && row->accepts(broker);
                });
            EXPECT_EQ(holdsKind(broker, kind), isTraded) << number << ' ' << int(broker);
            EXPECT_EQ(canTrade(broker, kind), isTraded) << number << ' ' << int(broker);
        }
        EXPECT_EQ(canBeShort(kind), paymentOf(kind, EPositionSide::Short).has_value()) << number;
        EXPECT_EQ(canBePaidEitherWay(kind, EPositionSide::Long), kind == EInstrumentKind::Gold) << number;
        EXPECT_FALSE(canBePaidEitherWay(kind, EPositionSide::Short)) << number;
    }
}

TEST_F(FamilyRules, OrdersOfOtherOperationsAreRejected) {
    for (const COperations& row : kOperations) {
        for (const int operation :
             {-1, 0, 14, 18, 20, 26, 33, 36, 37, 38, 39, 40, 41, 42, 50, 55, 56, 1021, 1043}) {
            if (row.m_modelled.count(operation) != 0) continue;
            const auto refused = row.m_refused.find(operation);
            EXPECT_EQ(outcomeOf(row.m_eFamily, operation, 1, 10),
                      refused != row.m_refused.end() ? refused->second
                                                     : foreignReason(operation, row.m_eFamily));
        }
    }
    for (const CPaperFunds& each : m_broker->funds())
        EXPECT_EQ(each.m_nFrozen, 0) << each.m_strAccount;
}

TEST_F(FamilyRules, EveryFamilyTakesItsOwnAccountsAndInstrumentsOnly) {
    const std::map<EFamily, std::pair<std::string, std::string>> kinds = {
        {EFamily::Stock, {"stock account", "stock"}},
        {EFamily::FutureSpeculation, {"futures account", "future"}},
        {EFamily::Basket, {"stock or credit account", "stock"}},
        {EFamily::Credit, {"credit account", "stock"}},
        {EFamily::Gold, {"gold account", "gold contract"}},
        {EFamily::Option, {"stock option account", "stock option"}},
        {EFamily::HGT, {"account of the Shanghai connect", "stock of the Shanghai connect"}},
        {EFamily::FutureOption, {"futures option account", "futures option"}},
        {EFamily::SGT, {"account of the Shenzhen connect", "stock of the Shenzhen connect"}},
    };
    for (const EFamily family : kFamiliesWithOrders) {
        const CPaperFamily* known = findPaperFamily(family);
        ASSERT_NE(known, nullptr);
        const int operation = openingOf(family);
        for (const CFamilyRow& other : kFamilyRows) {
            SCOPED_TRACE(std::string(known->m_pszBrokers) + " and " + other.m_pszAccount);
            TC::CCodeOrderParam code = recordOf(family, operation, 1, rowOf(family).m_dPrice);
            code.m_account = account(other.m_pszAccount);
            const std::string foreign =
                std::string(other.m_pszAccount) + " is not a " + kinds.at(family).first;
            EXPECT_EQ(outcome(orderOf(family, code)), known->accepts(other.m_eBroker) ? "filled" : foreign);

            code.m_account = account(rowOf(family).m_pszAccount);
            code.m_stock = {other.m_pszMarket, other.m_pszCode, "", ""};
            code.m_dPrice = other.m_dPrice;
            const std::string wrong = keyOf(other.m_eFamily) + " is not a " + kinds.at(family).second;
            EXPECT_EQ(outcome(orderOf(family, code)),
                      other.m_eKind == known->m_eInstrumentKind ? "filled" : wrong);
        }
    }
}

TEST_F(FamilyRules, PlainFamiliesTradeAsStocksDo) {
    for (const EFamily family : {EFamily::Stock, EFamily::Basket, EFamily::HGT, EFamily::SGT}) {
        SCOPED_TRACE(static_cast<int>(family));
        EXPECT_EQ(outcomeOf(family, 18, 200, 10), "filled");
        EXPECT_EQ(cash(family), kFunds - 2000);
        EXPECT_EQ(margin(family), 0);
        EXPECT_EQ(outcomeOf(family, 19, 200, 10), "not enough to sell: 200 ordered, 0 available today");
    }
}

TEST_F(FamilyRules, PurchaseAtAGivenPriceTradesAsAPurchase) {
    for (const EFamily family : {EFamily::Stock, EFamily::HGT, EFamily::SGT}) {
        SCOPED_TRACE(static_cast<int>(family));
        TC::CCodeOrderParam code = recordOf(family, 1043, 200, 10);
        code.m_ePriceType = TC::EPriceType::SpecifiedByRow;
        EXPECT_EQ(outcome(orderOf(family, code)), "filled");
        EXPECT_EQ(cash(family), kFunds - 2000);
        EXPECT_EQ(longOf(family), 200);
        code.m_dPrice = 9;
        EXPECT_EQ(outcome(orderOf(family, code)), "working");
        EXPECT_EQ(frozen(family), 1800);
    }
}

TEST_F(FamilyRules, HedgeCommandsAreRefusedButForOptionsWhoseMarkMeansNothing) {
    for (const EFamily family : kFamiliesWithOrders) {
        const bool isOption = family == EFamily::Option;
        TC::COrderComandParam command = stockCommand({recordOf(family, openingOf(family), 1, 1)});
        command.m_eTraderType = family;
        command.m_eHedgeType = TC::EQdHedgeType::Hedge;
        placeCommand(command);
        EXPECT_EQ(outcome(m_broker->orders().back()),
                  isOption ? "filled" : "hedge commands are not modelled");
    }
}

TEST_F(FamilyRules, ShareTransferCommandsAreTasksWithoutOrders) {
    TC::COrderComandParam command = stockCommand({});
    command.m_eTraderType = EFamily::Neeq;
    EXPECT_TRUE(m_broker->hasTask(placeCommand(command)));
    EXPECT_TRUE(m_broker->orders().empty());
}

TEST_F(FamilyRules, LotsOfDerivativesComeInUnitsAndMayCloseTheOddLot) {
    CInstrumentEntry entry = *m_quotes.instrument(keyOf(EFamily::FutureSpeculation));
    entry.unit = 5;
    m_quotes.addInstrument(entry);
    const EFamily f = EFamily::FutureSpeculation;
    EXPECT_EQ(outcomeOf(f, 0, 3, 100), "volume 3 is not a multiple of 5");
    offer(f, 100, 7);
    EXPECT_EQ(outcomeOf(f, 0, 10, 100), "part_filled");
    offer(f, 101);
    EXPECT_EQ(outcomeOf(f, 2, 3, 100), "volume 3 is not a multiple of 5 and does not close the odd lot");
    EXPECT_EQ(outcomeOf(f, 2, 2, 100), "filled");
    EXPECT_EQ(outcomeOf(f, 10, 2, 100), "volume 2 is not a multiple of 5") << "it might open";
}

TEST_F(FamilyRules, AmountBeyondAnyAccountIsRejected) {
    EXPECT_EQ(outcomeOf(EFamily::FutureSpeculation, 0, 2147483646, 1e9), "the amount is too large");
    EXPECT_EQ(outcomeOf(EFamily::FutureSpeculation, 3, 2147483646, 1e9), "the amount is too large");
}
