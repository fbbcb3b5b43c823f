#include "orderservice/platform/TradingRules.h"

#include "orderservice/contract/ContractFixture.h"
#include "orderservice/contract/Suites.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/Families.h"
#include "orderservice/records/OrderNumbers.h"
#include "orderservice/records/OrderTypes.h"

#include <boost/make_shared.hpp>

#include <atomic>
#include <cstddef>
#include <set>

void contract::linkTradingRulesSuites() {}

namespace {

using namespace TC;
using contract::EHostTrait;

class TradingRulesContract : public contract::CContractTest {};
CONTRACT_SUITE(TradingRulesContract);

class TradeParametersContract : public TradingRulesContract {};
CONTRACT_SUITE_WITH(TradeParametersContract, EHostTrait::TradeParameters);

class NoTradeParametersContract : public TradingRulesContract {};
CONTRACT_SUITE_WITHOUT(NoTradeParametersContract, EHostTrait::TradeParameters);

class SettingTextsContract : public TradingRulesContract {};
CONTRACT_SUITE_WITH(SettingTextsContract, EHostTrait::SettingTexts);

class NoSettingTextsContract : public TradingRulesContract {};
CONTRACT_SUITE_WITHOUT(NoSettingTextsContract, EHostTrait::SettingTexts);

class FutureRulesContract : public TradingRulesContract {};
CONTRACT_SUITE_WITH(FutureRulesContract, EHostTrait::Futures);

class CreditRulesContract : public TradingRulesContract {};
CONTRACT_SUITE_WITH(CreditRulesContract, EHostTrait::Credit);

/// A record with a value in every field.
COrderTradeParam usedTradeParam() {
    COrderTradeParam param;
    param.m_strRemark = "used";
    param.m_eOrderType = 77;
    param.m_strOrderSetting = QStringLiteral("used setting");
    param.m_strAccountKeyPart1 = QStringLiteral("used 1");
    param.m_strAccountKeyPart2 = QStringLiteral("used 2");
    param.m_nSettingKind = 77;
    param.m_strTradeText1 = "used text 1";
    param.m_strTradeText2 = "used text 2";
    param.m_strTradeText3 = "used text 3";
    return param;
}

void expectSame(const COrderTradeParam& a, const COrderTradeParam& b) {
    EXPECT_EQ(a.m_strRemark, b.m_strRemark);
    EXPECT_EQ(a.m_eOrderType, b.m_eOrderType);
    EXPECT_EQ(a.m_strOrderSetting, b.m_strOrderSetting);
    EXPECT_EQ(a.m_strAccountKeyPart1, b.m_strAccountKeyPart1);
    EXPECT_EQ(a.m_strAccountKeyPart2, b.m_strAccountKeyPart2);
    EXPECT_EQ(a.m_nSettingKind, b.m_nSettingKind);
    EXPECT_EQ(a.m_strTradeText1, b.m_strTradeText1);
    EXPECT_EQ(a.m_strTradeText2, b.m_strTradeText2);
    EXPECT_EQ(a.m_strTradeText3, b.m_strTradeText3);
}

TEST_P(TradingRulesContract, MarketAndCodeMakeTheKey) {
    EXPECT_EQ(qdStockKey(QString::fromStdString(world().market), QString::fromStdString(world().code)),
              world().stockKey);
}

TEST_P(TradingRulesContract, EveryFamilyHasItsKindOfAccount) {
    for (std::size_t i = 0; i < kFamilyCount; ++i) {
        EXPECT_EQ(orderStrategyTradeTypeToBrokerType(kFamilies[i].m_eTradeType), kFamilies[i].m_eBrokerType)
            << kFamilies[i].m_pszName;
    }
}

TEST_P(TradeParametersContract, TwoKeyPartsNameAnAccount) {
    const QString first = getAccountFromOrderParam(QStringLiteral("1"), QStringLiteral("2"));
    EXPECT_FALSE(first.isEmpty());
    EXPECT_NE(getAccountFromOrderParam(QStringLiteral("2"), QStringLiteral("2")), first);
    EXPECT_EQ(getAccountFromOrderParam(QStringLiteral("1"), QStringLiteral("2")), first);
}

TEST_P(TradeParametersContract, TextSetsEveryField) {
    COrderTradeParam fresh, used = usedTradeParam();
    ASSERT_TRUE(parserOrderTradeParam(world().tradeParam, fresh));
    ASSERT_TRUE(parserOrderTradeParam(world().tradeParam, used));
    EXPECT_EQ(fresh.m_strRemark, world().tradeParamRemark);
    expectSame(used, fresh);
}

TEST_P(TradeParametersContract, TextThatIsNotUnderstoodDoesNotChangeTheRecord) {
    COrderTradeParam used = usedTradeParam();
    EXPECT_FALSE(parserOrderTradeParam(world().unreadableTradeParam, used));
    expectSame(used, usedTradeParam());
}

TEST_P(TradingRulesContract, TradeParametersMayBeAnyBytes) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    COrderTradeParam used = usedTradeParam();
    bool understood = true;
    EXPECT_NO_THROW(understood = parserOrderTradeParam(bytes, used));
    if (!understood) expectSame(used, usedTradeParam());
}

TEST_P(SettingTextsContract, TextChangesOnlyTheFieldsThatItNames) {
    COrderSetting setting;
    setting.m_ePriceType = EPriceType::NoQuote;
    setting.m_strCmdLog = "kept";
    orderSettingFromString(setting, world().settingText);
    EXPECT_EQ(setting.m_ePriceType, world().settingPriceType);
    EXPECT_EQ(setting.m_strCmdLog, "kept");
}

TEST_P(NoTradeParametersContract, OrderWithTradeParametersHasNoAccount) {
    COrderTradeParam param;
    ASSERT_TRUE(parserOrderTradeParam("remark", param)) << "its orders would go out without them";
    ASSERT_FALSE(param.m_strAccountKeyPart1.isEmpty());
    ASSERT_FALSE(param.m_strAccountKeyPart2.isEmpty());
    const QString key = getAccountFromOrderParam(param.m_strAccountKeyPart1, param.m_strAccountKeyPart2);
    for (const auto kind : {ESelectedAccountType::Account, ESelectedAccountType::Group}) {
        std::vector<CAccountInfoPtr> accounts;
        std::vector<double> ratios;
        getUserConfig()->getAccountsWeights(world().broker, kind, key, accounts, ratios, false);
        EXPECT_TRUE(accounts.empty()) << key.toStdString();
    }
}

TEST_P(NoSettingTextsContract, SettingTextMakesThePriceTypeInvalid) {
    for (const EPriceType before : {EPriceType::Specified, EPriceType::Latest}) {
        COrderSetting setting;
        setting.m_ePriceType = before;
        orderSettingFromString(setting, QStringLiteral("price_type:6"));
        EXPECT_NE(setting.m_ePriceType, before);
        EXPECT_FALSE(getUserConfig()->isPriceTypeValid(setting.m_ePriceType, EOperationType::Buy,
                                                       world().broker, world().market, world().code,
                                                       setting.m_eOrderType));
    }
}

TEST_P(TradingRulesContract, EmptySettingTextChangesNothing) {
    COrderSetting setting;
    setting.m_ePriceType = EPriceType::NoQuote;
    setting.m_strCmdLog = "kept";
    orderSettingFromString(setting, QString());
    EXPECT_EQ(setting.m_ePriceType, EPriceType::NoQuote);
    EXPECT_EQ(setting.m_eOrderType, EOrderType::Plain);
    EXPECT_EQ(setting.m_strCmdLog, "kept");
}

TEST_P(TradingRulesContract, SettingIsCopiedIntoTheRecord) {
    COrderSetting setting;
    setting.m_ePriceType = EPriceType::Specified;
    CCodeOrderParam record;
    orderSettingToParam(setting, record, EOperationType::Buy, 100, 10.57, {});
    EXPECT_EQ(record.m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(record.m_dPrice, 10.57);
    EXPECT_EQ(record.m_eOrderType, EOrderType::Plain);
}

TEST_P(TradingRulesContract, CopyNeedsNeitherPriceNorQuote) {
    const COrderSetting setting;
    CCodeOrderParam record;
    EXPECT_NO_THROW(orderSettingToParam(setting, record, EOperationType::Sell, 100, kUnsetDouble, {}));
    EXPECT_EQ(record.m_ePriceType, EPriceType::Latest);
}

TEST_P(TradingRulesContract, TimeRangeLeavesTheOrderAlone) {
    CCodeOrderParam record;
    record.m_account = boost::make_shared<CAccountInfo>();
    record.m_nVolume = 300;
    record.m_dPrice = 10.5;
    record.m_eOperationType = EOperationType::Sell;
    const CAccountInfoPtr account = record.m_account;
    fixTimeRange(record);
    EXPECT_EQ(record.m_account, account);
    EXPECT_EQ(record.m_nVolume, 300);
    EXPECT_EQ(record.m_dPrice, 10.5);
    EXPECT_EQ(record.m_eOperationType, EOperationType::Sell);
}

TEST_P(TradingRulesContract, OnlyRecordsWithoutVolumeAreRemoved) {
    std::vector<CCodeOrderParam> records(4);
    records[0].m_nVolume = 300;
    records[1].m_nVolume = 0;
    records[2].m_nVolume = kUnsetInt; // an amount of money that does not fit an int
    records[2].m_dQuantity = 1e12;
    records[3].m_nVolume = 100;
    CCommonDataHelper::filterZeroStock(records);
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records[0].m_nVolume, 300);
    EXPECT_EQ(records[1].m_nVolume, kUnsetInt);
    EXPECT_EQ(records[2].m_nVolume, 100);
    std::vector<CCodeOrderParam> none;
    CCommonDataHelper::filterZeroStock(none);
    EXPECT_TRUE(none.empty());
}

TEST_P(TradingRulesContract, FrequencyModeLeavesTheOrderAlone) {
    std::vector<CCodeOrderParam> records(2);
    records[0].m_nVolume = 300;
    records[0].m_dPrice = 10.5;
    records[0].m_eOperationType = EOperationType::Sell;
    CCommonDataHelper::fillOverFreqOrderMode(records);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].m_nVolume, 300);
    EXPECT_EQ(records[0].m_dPrice, 10.5);
    EXPECT_EQ(records[0].m_eOperationType, EOperationType::Sell);
    std::vector<CCodeOrderParam> none;
    CCommonDataHelper::fillOverFreqOrderMode(none);
    EXPECT_TRUE(none.empty());
}

TEST_P(TradingRulesContract, BuyBuysAndSellDoesNot) {
    EXPECT_TRUE(isBuy(EOperationType::Buy));
    EXPECT_FALSE(isBuy(EOperationType::Sell));
    EXPECT_FALSE(isBuy(unsetEnum<EOperationType>()));
    EXPECT_FALSE(isDirectRepay(EOperationType::Buy));
}

TEST_P(FutureRulesContract, OnlyClosingOperationsClose) {
    constexpr int kOpenLong = 0;
    constexpr int kCloseLong = 1;
    EXPECT_FALSE(isClose(orderTypeToOperationType(kOpenLong)));
    EXPECT_TRUE(isClose(orderTypeToOperationType(kCloseLong)));
}

// If this is wrong, an order for an amount of money repays the strategy's volume instead.
TEST_P(CreditRulesContract, OnlyNumbersWithAnAmountRepayMoney) {
    int count = 0;
    for (std::size_t i = 0; i < kOrderNumberCount; ++i) {
        const COrderNumber& row = kOrderNumbers[i];
        if ((row.m_nFamilies & familyBit(EOrderStrategyTradeType::Credit)) == 0) continue;
        const bool hasAmount = row.m_eLineForm == EOrderLineForm::Amount;
        EXPECT_EQ(isDirectRepay(orderTypeToOperationType(row.m_nNumber)), hasAmount) << row.m_nNumber;
        count += hasAmount ? 1 : 0;
    }
    EXPECT_EQ(count, 2);
}

TEST_P(CreditRulesContract, OperationsHaveDifferentBookings) {
    std::set<EEntrustTypes> kinds;
    for (const int orderType : {23, 27, 28, 29, 31})
        kinds.insert(operationTypeToEntrustType(orderTypeToOperationType(orderType)));
    EXPECT_EQ(kinds.size(), 5u);
}

TEST_P(TradingRulesContract, SpecifiedAndLatestAreNotMarketPrices) {
    EXPECT_FALSE(knservice::isMarketPrice(EPriceType::Specified));
    EXPECT_FALSE(knservice::isMarketPrice(EPriceType::Latest));
}

TEST_P(TradingRulesContract, PlainOrderIsNotAnAlgorithm) {
    EXPECT_FALSE(knservice::DataHelper::isAlgoOrderType(EOrderType::Plain));
    EXPECT_FALSE(knservice::DataHelper::isAlgoOrderType(unsetEnum<EOrderType>()));
}

TEST_P(TradingRulesContract, SourcesFamiliesOrdersAndPricesHaveWords) {
    for (const int source : {0, 1, 2, 4}) {
        EXPECT_FALSE(orderStrategyTypeToOrderTitle(static_cast<EOrderStrategyType>(source)).isEmpty())
            << source;
        EXPECT_FALSE(orderStrategyTypeToString(static_cast<EOrderStrategyType>(source)).isEmpty()) << source;
    }
    for (std::size_t i = 0; i < kFamilyCount; ++i) {
        EXPECT_FALSE(orderStrategyTradeTypeToString(kFamilies[i].m_eTradeType).isEmpty())
            << kFamilies[i].m_pszName;
    }
    for (const int number : {0, 23, 24, 25, 26, 33, 34, 35, 36}) {
        EXPECT_FALSE(orderStrategyOrderTypeToString(number).isEmpty()) << number;
    }
    EXPECT_FALSE(knPriceTypeToString(EPriceType::Latest, world().code, true).isEmpty());
    EXPECT_FALSE(knPriceTypeToString(EPriceType::Specified, world().code, false).isEmpty());
}

TEST_P(TradingRulesContract, NumberWithoutANameIsNotAnError) {
    EXPECT_NO_THROW({
        orderStrategyTypeToOrderTitle(static_cast<EOrderStrategyType>(-1));
        orderStrategyTypeToString(static_cast<EOrderStrategyType>(99));
        orderStrategyTradeTypeToString(static_cast<EOrderStrategyTradeType>(99));
        orderStrategyOrderTypeToString(kUnsetInt);
        knPriceTypeToString(unsetEnum<EPriceType>(), "", true);
        orderStrategyTradeTypeToBrokerType(static_cast<EOrderStrategyTradeType>(99));
    });
}

TEST_P(TradingRulesContract, ManyThreadsMayAskAtOnce) {
    std::atomic<int> wrong{0};
    onManyThreads([&] {
        COrderTradeParam param;
        if (has(EHostTrait::TradeParameters) && !parserOrderTradeParam(world().tradeParam, param)) ++wrong;
        CCodeOrderParam record;
        orderSettingToParam(COrderSetting(), record, EOperationType::Buy, 100, 10.5, {});
        if (record.m_ePriceType != EPriceType::Latest) ++wrong;
        if (orderStrategyTypeToString(EOrderStrategyType::File).isEmpty()) ++wrong;
    });
    EXPECT_EQ(wrong.load(), 0);
}

} // namespace
