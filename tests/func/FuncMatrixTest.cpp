// Every operation with every order type: each call ends in one command of the right trader, or in the failure
// that the rules below give. The rules are written down a second time here, as a reader of the page would.
#include "tests/func/FuncServiceFixture.h"

#include <initializer_list>
#include <optional>

namespace {

using namespace TC;

constexpr int kOrderTypes[] = {11,   12,   21,   22,   1101, 1102, 1113, 1123, 1201, 1202, 1213, 1223,
                               2101, 2102, 2103, 2201, 2202, 2203, 2331, 2332, 2333, 13,   2104, 0};

bool isOneOf(int number, std::initializer_list<int> numbers) {
    for (const int other : numbers) {
        if (number == other) return true;
    }
    return false;
}

bool isBasketType(int orderType) {
    return orderType == 22 || (orderType >= 2000 && orderType < 3000);
}

bool isBasketCall(int opType, int orderType) {
    if (isOneOf(opType, {25, 26, 40, 43, 46, 47, 48, 49})) return true;
    return isOneOf(opType, {27, 28, 29, 31, 33, 34}) && isBasketType(orderType);
}

/// What a call ends in: a failure, or a command of the trader.
struct CExpected {
    const char* failure = nullptr; ///< behind the function's name
    EQdTraderType trader = EQdTraderType::Stock;
};

constexpr char kNoLine[] = ",　证券 [] 价5() 无效, 无法下单!"; ///< the text without the name's comma

/// The failure of a basket's order type, if it has one.
const char* basketFailure(int orderType) {
    return isOneOf(orderType, {21, 22}) || orderType >= 2000 ? nullptr
                                                             : ", 操作类型opType和下单类型orderType不对应！";
}

/// The failure of the parameter text, if it has one.
const char* textFailure(int opType, int orderType) {
    const bool isSecurities = opType >= 23 && opType <= 34;
    if (isOneOf(orderType, {1202, 2103, 2203}) && !isSecurities) return ", 不支持的期货下单类型(orderType)!";
    if (opType >= 0 && opType <= 15 && orderType == 1102) return ", 期货投机不支持以金额方式下单";
    if (isBasketCall(opType, orderType)) return basketFailure(orderType);
    const bool isCredit = opType >= 27 && opType <= 34 && !isBasketType(orderType);
    if (isCredit && !isOneOf(orderType, {11, 12, 1101, 1102, 1201, 1202}))
        return ", 融资融券不支持的下单类型";
    return nullptr;
}

CExpected expectedOf(int opType, int orderType) {
    if (const char* failure = textFailure(opType, orderType)) return {failure};
    if (isOneOf(orderType, {13, 2104, 0})) return {", 无效的下单类型(ORDERTYPE)值!"};
    if (isBasketCall(opType, orderType)) return {nullptr, EQdTraderType::Basket};
    if (opType >= 0 && opType <= 15) return {nullptr, EQdTraderType::FutureSpeculation};
    if (opType == 23 || opType == 24) return {nullptr, EQdTraderType::Stock};
    if (opType >= 27 && opType <= 34 && !isBasketType(orderType)) return {nullptr, EQdTraderType::Credit};
    if (opType >= 50 && opType <= 59) return {nullptr, EQdTraderType::Option};
    return {kNoLine};
}

class FuncMatrix : public FuncServiceFixture, public testing::WithParamInterface<int> {
protected:
    FuncMatrix() {
        addFutureAccount("F1");
        for (const char* key : {"A1", "F1"}) { // the fake host's groups are by kind of broker
            const auto assets = boost::make_shared<knservice::CAccountDetail>();
            assets->m_dAssetForRatio = assets->m_dAssetCheck = assets->m_dBasketAsset = 1e6;
            accounts.at(key)->m_detail = assets;
            accounts.at(key)->m_dUsable = 1e6;
        }
        for (const auto broker :
             {EQDBrokerType::Stock, EQDBrokerType::Future, EQDBrokerType::Credit, EQDBrokerType::StockOption})
            host.user.addGroup(broker, "all", {{"A1", 1}});
        addInstrument("future", "IF2609");
        addInstrument("option", "10001234");
        const bool isFutures = GetParam() >= 40;
        CBasketSetting basket;
        basket.m_rows.append({isFutures ? QStringLiteral("CFFEX") : QStringLiteral("SH"),
                              isFutures ? QStringLiteral("IF2612") : QStringLiteral("600000"),
                              {},
                              1,
                              100,
                              18,
                              0});
        addInstrument("future", "CFFEXIF2612");
        host.user.baskets[QStringLiteral("basket")] = basket;
        host.user.baskets[QStringLiteral("basket,IF2609")] = basket;
    }
    void addInstrument(const char* list, const char* key) {
        host.exchange.addOther(list, QString::fromUtf8(key));
        addQuote(QString::fromUtf8(key), 10, 9, 11);
    }
    std::string codeOf(int orderType) const {
        const int opType = GetParam();
        if (isBasketCall(opType, orderType)) return orderType / 10 == 233 ? "basket,IF2609" : "basket";
        const bool isLock = opType == 58 || opType == 59; // of shares
        if (opType >= 50 && !isLock) return "10001234";
        return opType >= 0 && opType <= 15 ? "IF2609" : "600000";
    }
    void callWith(int orderType) {
        forget();
        failures.clear();
        const int digits = orderType < 100 ? orderType % 10 - 1 : orderType / 100 % 10 - 1;
        const bool isGroup = digits == 1;
        const bool isRatio = isOneOf(orderType, {1113, 1123, 1213, 1223, 2103, 2203, 2333});
        const bool isPair = codeOf(orderType).find(',') != std::string::npos;
        pass({{"opType", std::to_string(GetParam())},
              {"orderType", std::to_string(orderType)},
              {"prType", "5"},
              {"modelPrice", "\"0.9\""},
              {"modelVolume", isRatio ? "\"0.5\"" : "\"3000\""},
              {"accountID", isPair    ? "\"A1,F1\""
                            : isGroup ? "\"all\""
                                      : "\"A1\""},
              {"orderCode", '"' + codeOf(orderType) + '"'}});
    }
};

TEST_P(FuncMatrix, EndsInTheCommandOrFailureOfItsNumbers) {
    for (const int orderType : kOrderTypes) {
        const CExpected expected = expectedOf(GetParam(), orderType);
        callWith(orderType);
        SCOPED_TRACE(orderType);
        if (expected.failure != nullptr) {
            EXPECT_TRUE(host.commands().empty());
            ASSERT_EQ(failures.size(), 1u);
            EXPECT_EQ(failures[0].text, std::string("[函数交易]　函数: passorder") + expected.failure);
            continue;
        }
        // An account may be left out with a report, but the command goes out.
        ASSERT_EQ(host.commands().size(), 1u) << (failures.empty() ? "" : failures[0].text);
        EXPECT_EQ(host.commands()[0]->m_eTraderType, expected.trader);
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, FuncMatrix, testing::Range(-1, 62),
                         [](const auto& row) { return "Op" + std::to_string(row.param + 1) + "Less1"; });

} // namespace
