#include "platform/TradeClient.h"
#include "platform/TraderCenter.h"

#include "platform/ExchangeClient.h"
#include "platform/InstrumentTypes.h"
#include "platform/TradingRules.h"
#include "platform/UserConfig.h"
#include "records/Portfolio.h"
#include "tests/contract/ContractFixture.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <atomic>
#include <numeric>

namespace {

using namespace TC;

class TradeContract : public CContractTest {
protected:
    TradeContract() {
        getUserConfig()->getAccountsWeights(world().broker, ESelectedAccountType::Group, world().group,
                                            accounts, ratios, false);
        unit = knservice::getTradeMinUnit(world().market, world().code, EOperationType::Buy);
    }

    std::vector<int> split(int volume, double price, const boost::shared_ptr<utils::KNError>& failure) const {
        return CTradeClient::instance().splitEntrusts(
            volume, price, EPriceType::Specified, accounts, ratios, EPositionType{}, world().market,
            world().code, EOperationType::Buy, EHedge_Flag_Type::Speculation, failure);
    }
    /// Whether each account has its share, none below nothing, and all of it is given out.
    bool isWhole(const std::vector<int>& volumes, int volume) const {
        const bool negative = std::any_of(volumes.begin(), volumes.end(), [](int v) { return v < 0; });
        return volumes.size() == accounts.size() && !negative &&
               std::accumulate(volumes.begin(), volumes.end(), 0) == volume;
    }

    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
    int unit = 0;
    boost::shared_ptr<utils::KNError> error = boost::make_shared<utils::KNError>();
};
CONTRACT_SUITE(TradeContract);

TEST_P(TradeContract, AccountsOfTheGroupAreLoggedIn) {
    for (const std::string& key : world().groupAccounts) {
        EXPECT_EQ(CTradeClient::instance().getLoginStatus(key), EBROKER_LOGIN_STATUS::LoggedIn) << key;
    }
}

TEST_P(TradeContract, SplitGivesOutTheWholeVolume) {
    for (const int units : {1, 2, 3, 7, 10, 101}) {
        const int volume = units * unit;
        EXPECT_TRUE(isWhole(split(volume, 10.5, error), volume)) << volume;
        EXPECT_TRUE(error->isSuccess()) << error->errorMsg();
    }
}

TEST_P(TradeContract, SplitNeedsNoPrice) {
    EXPECT_TRUE(isWhole(split(10 * unit, kUnsetDouble, error), 10 * unit));
    EXPECT_TRUE(error->isSuccess()) << error->errorMsg();
}

TEST_P(TradeContract, SplitNeedsNoInstrument) {
    const std::vector<int> volumes = CTradeClient::instance().splitEntrusts(
        10 * unit, 10.5, EPriceType::Specified, accounts, ratios, EPositionType{}, "", "",
        EOperationType::Buy, EHedge_Flag_Type::Speculation, error);
    EXPECT_TRUE(isWhole(volumes, 10 * unit));
}

TEST_P(TradeContract, OneAccountGetsEverything) {
    accounts.resize(1);
    ratios.resize(1);
    EXPECT_EQ(split(5 * unit, 10.5, error), std::vector<int>{5 * unit});
}

TEST_P(TradeContract, UnsetVolumeFailsWithAText) {
    const std::vector<int> volumes = split(kUnsetInt, 10.5, error);
    EXPECT_NE(volumes.size(), accounts.size());
    EXPECT_FALSE(error->isSuccess());
    EXPECT_NE(error->errorMsg(), "");
}

TEST_P(TradeContract, MoneyIsGivenOutWhole) {
    const std::vector<double> amounts = CTradeClient::instance().splitMoney(
        100000.01, accounts, ratios, EPositionType{}, EOperationType::Buy, error);
    ASSERT_EQ(amounts.size(), accounts.size());
    EXPECT_NEAR(std::accumulate(amounts.begin(), amounts.end(), 0.0), 100000.01, 1e-6);
    EXPECT_TRUE(std::all_of(amounts.begin(), amounts.end(), [](double amount) { return amount >= 0; }));
    EXPECT_TRUE(error->isSuccess()) << error->errorMsg();
}

TEST_P(TradeContract, MissingMoneyFailsWithAText) {
    const std::vector<double> amounts = CTradeClient::instance().splitMoney(
        kUnsetDouble, accounts, ratios, EPositionType{}, EOperationType::Buy, error);
    EXPECT_NE(amounts.size(), accounts.size());
    EXPECT_FALSE(error->isSuccess());
    EXPECT_NE(error->errorMsg(), "");
}

TEST_P(TradeContract, PositionsBelongToTheirAccount) {
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

TEST_P(TradeContract, TableThatIsNotKeptAddsNothing) {
    constexpr int kNoTable = 1;
    const auto data = knservice::TraderCenter::instance().getDataCenter().getAccountData(world().holder);
    ASSERT_TRUE(data);
    std::vector<boost::shared_ptr<knservice::IData>> records;
    data->getVector(kNoTable, records);
    EXPECT_TRUE(records.empty());
    EXPECT_TRUE(data->getMapData(kNoTable).empty());
}

TEST_P(TradeContract, UnknownAccountHasNoData) {
    auto& center = knservice::TraderCenter::instance().getDataCenter();
    EXPECT_FALSE(center.getAccountData(world().unknownName.toStdString()));
}

TEST_P(TradeContract, ManyThreadsMaySplitAtOnce) {
    std::atomic<int> wrong{0};
    onManyThreads([&] {
        const auto own = boost::make_shared<utils::KNError>();
        if (!isWhole(split(10 * unit, 10.5, own), 10 * unit)) ++wrong;
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
