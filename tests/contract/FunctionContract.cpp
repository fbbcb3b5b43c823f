// What function trading asks: accounts, their figures, volumes and orders.
#include "orderservice/platform/Quote.h"
#include "orderservice/platform/TimeService.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TraderCenter.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"

#include "orderservice/contract/ContractFixture.h"
#include "orderservice/contract/Suites.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/records/Families.h"
#include "orderservice/records/Portfolio.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <set>
#include <utility>

void contract::linkFunctionSuites() {}

namespace {

using namespace TC;
using contract::EHostTrait;
using knservice::CAccountData;

class FunctionQuestionContract : public contract::CContractTest {
protected:
    static knservice::CDataCenter& center() { return knservice::TraderCenter::instance().getDataCenter(); }
    boost::shared_ptr<CAccountData> data() const { return center().getAccountData(world().account); }
    double price() const { return CQuoteClient::instance().getStockPrice(world().stockKey)->m_dLastPrice; }
    /// 0 if the host has no data of the account.
    double usable(EOperationType operation, double atPrice) const {
        const auto account = data();
        if (!account) return 0;
        return account->getUsableVolume(world().market, world().code, operation,
                                        EHedge_Flag_Type::Speculation, atPrice);
    }
    static std::vector<boost::shared_ptr<knservice::IData>> tableOf(CAccountData& account, int table) {
        const CAccountData::Lock lock(account);
        std::vector<boost::shared_ptr<knservice::IData>> records;
        account.getVector(table, records);
        return records;
    }
};
CONTRACT_SUITE(FunctionQuestionContract);

class FunctionTradingContract : public FunctionQuestionContract {};
CONTRACT_SUITE_WITH(FunctionTradingContract, EHostTrait::FunctionTrading);

class SaleContract : public FunctionQuestionContract {};
CONTRACT_SUITE_WITH(SaleContract, EHostTrait::Positions);

class NoFunctionTradingContract : public FunctionQuestionContract {};
CONTRACT_SUITE_WITHOUT(NoFunctionTradingContract, EHostTrait::FunctionTrading);

// A call names an account by this text. If two accounts had the same one, it would trade on the first.
TEST_P(FunctionQuestionContract, ListedAccountsAreKnownByDifferentTexts) {
    std::set<std::pair<int, QString>> texts;
    for (const CAccountPtr& account : getUserConfig()->getAccounts()) {
        ASSERT_TRUE(account);
        ASSERT_TRUE(account->toInfo());
        EXPECT_EQ(account->key(), account->toInfo()->getKey());
        EXPECT_TRUE(getUserConfig()->hasAccount(QString::fromStdString(account->key()))) << account->key();
        const QString text = accountDisplayIDQs(*account->toInfo());
        EXPECT_FALSE(text.isEmpty()) << account->key();
        EXPECT_TRUE(texts.emplace(account->toInfo()->m_nBrokerType, text).second) << text.toStdString();
    }
}

TEST_P(FunctionQuestionContract, DefaultSettingsOfTheFamiliesNameAPriceType) {
    const auto settings = getUserConfig()->getDefaultOrderSettings();
    for (std::size_t i = 0; i < kFamilyCount; ++i) {
        const auto slot = static_cast<std::size_t>(kFamilies[i].m_eSlot);
        if (slot < settings.size()) {
            EXPECT_FALSE(isUnset(settings[slot].m_ePriceType)) << kFamilies[i].m_pszName;
        }
    }
}

TEST_P(FunctionQuestionContract, LastPriceIsWithinTheLimitsOfTheDay) {
    const CPriceDataPtr quote = CQuoteClient::instance().getStockPrice(world().stockKey);
    ASSERT_TRUE(quote);
    if (!isInvalidPrice(quote->m_dFallbackPrice)) {
        EXPECT_LE(quote->m_dFallbackPrice, quote->m_dLastPrice);
    }
    if (!isInvalidPrice(quote->m_dUpperLimit)) {
        EXPECT_GE(quote->m_dUpperLimit, quote->m_dLastPrice);
    }
}

TEST_P(FunctionQuestionContract, MillisecondsAreThoseOfTheTime) {
    constexpr std::int64_t kThousand = 1000;
    const std::int64_t before = CTimeService::instance().currentTime();
    const std::int64_t now = CTimeService::instance().currentMilliseconds();
    const std::int64_t after = CTimeService::instance().currentTime();
    EXPECT_GE(now, before * kThousand);
    EXPECT_LT(now, (after + 1) * kThousand);
}

TEST_P(FunctionQuestionContract, UnknownAccountHasNoKey) {
    const int broker = static_cast<int>(world().broker);
    EXPECT_EQ(center().getAccountKey(world().unknownName.toStdString(), broker), "");
    EXPECT_EQ(center().getAccountKey(world().account, -1), "");
    EXPECT_EQ(center().getAccountKey("", broker), "");
}

TEST_P(FunctionQuestionContract, UsableVolumeIsANumberWhateverIsAsked) {
    constexpr int kLastOperation = 60;
    for (int number = -1; number <= kLastOperation; ++number) {
        for (const double atPrice : {kUnsetDouble, 0.0, -1.0, price()}) {
            EXPECT_FALSE(std::isnan(usable(static_cast<EOperationType>(number), atPrice))) << number;
        }
    }
}

TEST_P(FunctionTradingContract, AccountIsListedAndFoundByTheTextThatTheUserSees) {
    bool isListed = false;
    for (const CAccountPtr& account : getUserConfig()->getAccounts()) {
        if (account->key() != world().account) continue;
        isListed = true;
        const std::string text = accountDisplayIDQs(*account->toInfo()).toStdString();
        EXPECT_EQ(center().getAccountKey(text, static_cast<int>(world().broker)), world().account);
    }
    EXPECT_TRUE(isListed);
}

TEST_P(FunctionTradingContract, DataNameTheirAccountAndItsAssets) {
    ASSERT_TRUE(data());
    const CAccountInfoPtr info = data()->getAccountInfo();
    ASSERT_TRUE(info);
    EXPECT_EQ(info->getKey(), world().account);
    EXPECT_EQ(info->m_nBrokerType, static_cast<int>(world().broker));
    const knservice::CAccountDetailPtr detail = data()->getAccountDetail();
    ASSERT_TRUE(detail);
    for (const double figure : {detail->m_dAssetForRatio, detail->m_dAssetCheck, detail->m_dBasketAsset})
        EXPECT_TRUE(std::isfinite(figure) && !isInvalidPrice(figure)) << figure;
}

TEST_P(FunctionTradingContract, PurchaseIsLimitedByMoney) {
    ASSERT_TRUE(data());
    const double can = usable(EOperationType::Buy, price());
    EXPECT_GE(can, knservice::getTradeMinUnit(world().market, world().code, EOperationType::Buy));
    EXPECT_LE(usable(EOperationType::Buy, 2 * price()), can);
    const double expensive = usable(EOperationType::Buy, 1e9);
    EXPECT_TRUE(expensive < can || can == kUnsetDouble) << "no account can buy as many at any price";
}

TEST_P(FunctionTradingContract, UnknownInstrumentCannotBeTraded) {
    ASSERT_TRUE(data());
    for (const EOperationType operation : {EOperationType::Buy, EOperationType::Sell}) {
        EXPECT_LE(data()->getUsableVolume(world().market, "no such code", operation,
                                          EHedge_Flag_Type::Speculation, 1),
                  0);
    }
}

TEST_P(SaleContract, SaleIsLimitedByThePosition) {
    const auto holder = center().getAccountData(world().holder);
    ASSERT_TRUE(holder);
    for (const auto& record : tableOf(*holder, knservice::kPositionTable)) {
        const auto position = boost::dynamic_pointer_cast<knservice::CPositionStatics>(record);
        ASSERT_TRUE(position);
        EXPECT_LE(holder->getUsableVolume(position->m_strMarket, position->m_strCode, EOperationType::Sell,
                                          EHedge_Flag_Type::Speculation, 1),
                  static_cast<double>(position->m_nAvailableVolume));
    }
}

TEST_P(FunctionTradingContract, OrdersHaveDifferentNumbersAndMayBeCancelled) {
    ASSERT_TRUE(data());
    std::set<std::string> numbers;
    for (const auto& record : tableOf(*data(), knservice::kOrderTable)) {
        const auto order = boost::dynamic_pointer_cast<knservice::COrderDetail>(record);
        ASSERT_TRUE(order);
        EXPECT_FALSE(order->m_strOrderSysID.empty());
        EXPECT_TRUE(numbers.insert(order->m_strOrderSysID).second) << order->m_strOrderSysID;
        EXPECT_NO_THROW(CTradeClient::instance().cancelOrder(order));
    }
}

TEST_P(FunctionTradingContract, CancelOfAnUnknownOrderReturns) {
    onAnotherThread([] {
        const auto order = boost::make_shared<knservice::COrderDetail>();
        order->m_strOrderSysID = "no such order";
        EXPECT_NO_THROW(CTradeClient::instance().cancelOrder(order));
    });
}

TEST_P(FunctionTradingContract, FeesAreKeyedByAccountAndInstrument) {
    const auto account = data();
    ASSERT_TRUE(account);
    const CAccountInfoPtr info = account->getAccountInfo();
    ASSERT_TRUE(info);
    const CAccountData::Lock lock(*account);
    for (const auto& [key, record] : account->getMapDataRef(knservice::kFeeTable)) {
        const auto fee = boost::dynamic_pointer_cast<knservice::CInstrumentFee>(record);
        ASSERT_TRUE(fee && fee->m_instrument) << key;
        EXPECT_EQ(key, knservice::CInstrumentFee::genKey(*fee->m_instrument, *info));
    }
}

TEST_P(FunctionTradingContract, CalculatorIsMissingOrLimitsWithinTheCount) {
    ASSERT_TRUE(data());
    const CAccountInfoPtr info = data()->getAccountInfo();
    ASSERT_TRUE(info);
    knservice::ICalculator* const calculator = knservice::TraderCenter::instance().getCalculator();
    for (const std::int64_t count : {std::int64_t{100}, std::numeric_limits<std::int64_t>::max()}) {
        int first = kQuantityKindPlain;
        int second = kQuantityKindPlain;
        const std::int64_t limit =
            calculator == nullptr
                ? count
                : calculator->getVolumeLimit(*info, world().market, world().code, EOperationType::Buy,
                                             EHedge_Flag_Type::Speculation, price(), first, second, count,
                                             false, -1);
        EXPECT_GE(limit, 0);
        EXPECT_LE(limit, count);
    }
}

TEST_P(FunctionTradingContract, ManyThreadsMayAskAtOnce) {
    const double can = usable(EOperationType::Buy, price());
    std::atomic<int> wrong{0};
    onManyThreads([&] {
        const auto account = data();
        if (!account || usable(EOperationType::Buy, price()) != can) ++wrong;
        if (account && !account->getAccountDetail()) ++wrong;
        if (account && tableOf(*account, knservice::kOrderTable).size() !=
                           tableOf(*account, knservice::kOrderTable).size())
            ++wrong;
    });
    EXPECT_EQ(wrong.load(), 0);
}

// Function calls must be refused, not sent without a test of what the account can trade.
TEST_P(NoFunctionTradingContract, AccountCanTradeNothing) {
    for (const EOperationType operation : {EOperationType::Buy, EOperationType::Sell})
        EXPECT_LE(usable(operation, price()), 0);
}

} // namespace
