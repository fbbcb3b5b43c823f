#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TraderCenter.h"

#include "orderservice/contract/ContractFixture.h"
#include "orderservice/contract/Suites.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/Portfolio.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <atomic>
#include <numeric>

void contract::linkTradeSuites() {}

namespace {

using namespace TC;
using contract::EHostTrait;

/// The accounts over which a volume or an amount is divided.
struct CWay {
    QString name;
    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
    boost::shared_ptr<utils::KNError> error = boost::make_shared<utils::KNError>();

    CWay(EQDBrokerType broker, ESelectedAccountType kind, const QString& which) : name(which) {
        getUserConfig()->getAccountsWeights(broker, kind, name, accounts, ratios, false);
    }
};

class TradeContract : public contract::CContractTest {
protected:
    TradeContract()
        : unit(knservice::getTradeMinUnit(world().market, world().code, EOperationType::Buy)),
          alone(world().broker, ESelectedAccountType::Account, QString::fromStdString(world().account)) {}

    /// The account alone and, if the host has groups, also the accounts of the group.
    std::vector<CWay> ways() const {
        std::vector<CWay> result{alone};
        if (has(EHostTrait::AccountGroups))
            result.emplace_back(world().broker, ESelectedAccountType::Group, world().group);
        return result;
    }
    std::vector<int> split(const CWay& way, int volume, double price = 10.5) const {
        return split(way, volume, price, world().market, world().code);
    }
    static std::vector<int> split(const CWay& way, int volume, double price, const std::string& market,
                                  const std::string& code) {
        return CTradeClient::instance().splitEntrusts(
            volume, price, EPriceType::Specified, way.accounts, way.ratios, EPositionType{}, market, code,
            EOperationType::Buy, EHedge_Flag_Type::Speculation, way.error);
    }
    static std::vector<double> splitMoney(const CWay& way, double amount) {
        return CTradeClient::instance().splitMoney(amount, way.accounts, way.ratios, EPositionType{},
                                                   EOperationType::Buy, way.error);
    }
    /// Whether each account has a share, no share is negative, and the shares add up to the volume.
    static bool isWhole(const CWay& way, const std::vector<int>& volumes, int volume) {
        const bool negative = std::any_of(volumes.begin(), volumes.end(), [](int v) { return v < 0; });
        return !volumes.empty() && volumes.size() == way.accounts.size() && !negative &&
               std::accumulate(volumes.begin(), volumes.end(), 0) == volume;
    }

    const int unit;
    const CWay alone;
};
CONTRACT_SUITE(TradeContract);

class PositionContract : public contract::CContractTest {};
CONTRACT_SUITE_WITH(PositionContract, EHostTrait::Positions);

class NoPositionContract : public contract::CContractTest {};
CONTRACT_SUITE_WITHOUT(NoPositionContract, EHostTrait::Positions);

TEST_P(TradeContract, AccountsAreLoggedIn) {
    for (const CWay& way : ways()) {
        ASSERT_FALSE(way.accounts.empty()) << way.name.toStdString();
        for (const CAccountInfoPtr& account : way.accounts) {
            EXPECT_EQ(CTradeClient::instance().getLoginStatus(account->getKey()),
                      EBROKER_LOGIN_STATUS::LoggedIn)
                << account->getKey();
        }
    }
}

TEST_P(TradeContract, SplitGivesOutTheWholeVolume) {
    for (const CWay& way : ways()) {
        for (const int units : {1, 2, 3, 7, 10, 101}) {
            const int volume = units * unit;
            EXPECT_TRUE(isWhole(way, split(way, volume), volume)) << way.name.toStdString() << volume;
            EXPECT_TRUE(way.error->isSuccess()) << way.error->errorMsg();
        }
    }
}

TEST_P(TradeContract, SplitNeedsNoPrice) {
    for (const CWay& way : ways()) {
        EXPECT_TRUE(isWhole(way, split(way, 10 * unit, kUnsetDouble), 10 * unit)) << way.name.toStdString();
        EXPECT_TRUE(way.error->isSuccess()) << way.error->errorMsg();
    }
}

TEST_P(TradeContract, SplitNeedsNoInstrument) {
    for (const CWay& way : ways())
        EXPECT_TRUE(isWhole(way, split(way, 10 * unit, 10.5, "", ""), 10 * unit)) << way.name.toStdString();
}

TEST_P(TradeContract, OneAccountGetsEverything) {
    EXPECT_EQ(split(alone, 5 * unit), std::vector<int>{5 * unit});
}

TEST_P(TradeContract, UnsetVolumeFailsWithAText) {
    for (const CWay& way : ways()) {
        EXPECT_NE(split(way, kUnsetInt).size(), way.accounts.size()) << way.name.toStdString();
        EXPECT_FALSE(way.error->isSuccess());
        EXPECT_NE(way.error->errorMsg(), "");
    }
}

TEST_P(TradeContract, MoneyIsGivenOutWhole) {
    for (const CWay& way : ways()) {
        const std::vector<double> amounts = splitMoney(way, 100000.01);
        ASSERT_EQ(amounts.size(), way.accounts.size());
        EXPECT_NEAR(std::accumulate(amounts.begin(), amounts.end(), 0.0), 100000.01, 1e-6);
        EXPECT_TRUE(std::all_of(amounts.begin(), amounts.end(), [](double amount) { return amount >= 0; }));
        EXPECT_TRUE(way.error->isSuccess()) << way.error->errorMsg();
    }
}

TEST_P(TradeContract, MissingMoneyFailsWithAText) {
    for (const CWay& way : ways()) {
        EXPECT_NE(splitMoney(way, kUnsetDouble).size(), way.accounts.size()) << way.name.toStdString();
        EXPECT_FALSE(way.error->isSuccess());
        EXPECT_NE(way.error->errorMsg(), "");
    }
}

TEST_P(PositionContract, PositionsBelongToTheirAccount) {
    const std::string& key = world().holder;
    const auto data = knservice::TraderCenter::instance().getDataCenter().getAccountData(key);
    ASSERT_TRUE(data);
    const knservice::CAccountData::Lock lock(*data);
    std::vector<boost::shared_ptr<knservice::IData>> records;
    data->getVector(knservice::kPositionTable, records);
    ASSERT_FALSE(records.empty());
    for (const auto& record : records) {
        const auto position = boost::dynamic_pointer_cast<knservice::CPositionStatics>(record);
        ASSERT_TRUE(position);
        ASSERT_TRUE(position->m_account);
        EXPECT_EQ(position->m_account->getKey(), key);
        EXPECT_GT(position->m_nPositionVolume, 0);
        EXPECT_LE(position->m_nAvailableVolume, position->m_nPositionVolume);
        EXPECT_TRUE(CExchangeClient::instance().getCodeInfo(qdStockKey(
            QString::fromStdString(position->m_strMarket), QString::fromStdString(position->m_strCode))));
    }
}

TEST_P(PositionContract, TableThatIsNotKeptAddsNothing) {
    constexpr int kNoTable = 1;
    const auto data = knservice::TraderCenter::instance().getDataCenter().getAccountData(world().holder);
    ASSERT_TRUE(data);
    std::vector<boost::shared_ptr<knservice::IData>> records;
    data->getVector(kNoTable, records);
    EXPECT_TRUE(records.empty());
    EXPECT_TRUE(data->getMapData(kNoTable).empty());
}

TEST_P(NoPositionContract, AccountHoldsNothing) {
    const auto data = knservice::TraderCenter::instance().getDataCenter().getAccountData(world().account);
    std::vector<boost::shared_ptr<knservice::IData>> records;
    if (data) data->getVector(knservice::kPositionTable, records);
    EXPECT_TRUE(records.empty());
}

TEST_P(TradeContract, UnknownAccountHasNoData) {
    auto& center = knservice::TraderCenter::instance().getDataCenter();
    EXPECT_FALSE(center.getAccountData(world().unknownName.toStdString()));
}

TEST_P(TradeContract, ManyThreadsMaySplitAtOnce) {
    std::atomic<int> wrong{0};
    const std::vector<CWay> shared = ways();
    onManyThreads([&] {
        for (CWay way : shared) {
            way.error = boost::make_shared<utils::KNError>();
            if (!isWhole(way, split(way, 10 * unit), 10 * unit)) ++wrong;
        }
    });
    EXPECT_EQ(wrong.load(), 0);
}

TEST_P(TradeContract, CancelOfAnUnknownTaskReturnsWithOrWithoutACallback) {
    const std::string day = CExchangeClient::instance().getMaxTradingDay();
    onAnotherThread([&] {
        EXPECT_NO_THROW(
            CTradeClient::instance().cancelTask(world().unknownTask, kTaskOpCancel, "", "撤单", day, {}, 0));
        EXPECT_NO_THROW(CTradeClient::instance().cancelTask(
            world().unknownTask, kTaskOpCancel, "", "撤单", day, [](const utils::KNError&) {}, 0));
    });
}

TEST_P(TradeContract, UnknownTaskIsFoundNowhere) {
    EXPECT_TRUE(knservice::TraderCenter::instance().getTaskCenter().findTasks(world().unknownTask).empty());
    knservice::CTaskCenter* seen = nullptr;
    onAnotherThread([&] { seen = &knservice::TraderCenter::instance().getTaskCenter(); });
    EXPECT_EQ(seen, &knservice::TraderCenter::instance().getTaskCenter());
}

} // namespace
