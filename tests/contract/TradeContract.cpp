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
struct CAccountChoice {
    QString name;
    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
    boost::shared_ptr<utils::KNError> error = boost::make_shared<utils::KNError>();

    CAccountChoice(EQDBrokerType broker, ESelectedAccountType kind, const QString& which) : name(which) {
        getUserConfig()->getAccountsWeights(broker, kind, name, accounts, ratios, false);
    }
};

class TradeContract : public contract::CContractTest {
protected:
    TradeContract()
        : unit(knservice::getTradeMinUnit(world().market, world().code, EOperationType::Buy)),
          single(world().broker, ESelectedAccountType::Account, QString::fromStdString(world().account)) {}

    /// The single account and, if the host has groups, also the accounts of the group.
    std::vector<CAccountChoice> accountChoices() const {
        std::vector<CAccountChoice> result{single};
        if (has(EHostTrait::AccountGroups))
            result.emplace_back(world().broker, ESelectedAccountType::Group, world().group);
        return result;
    }
    std::vector<int> split(const CAccountChoice& choice, int volume, double price = 10.5) const {
        return split(choice, volume, price, world().market, world().code);
    }
    static std::vector<int> split(const CAccountChoice& choice, int volume, double price,
                                  const std::string& market, const std::string& code) {
        return CTradeClient::instance().splitEntrusts(
            volume, price, EPriceType::Specified, choice.accounts, choice.ratios, EPositionType{}, market,
            code, EOperationType::Buy, EHedge_Flag_Type::Speculation, choice.error);
    }
    static std::vector<double> splitMoney(const CAccountChoice& choice, double amount) {
        return CTradeClient::instance().splitMoney(amount, choice.accounts, choice.ratios, EPositionType{},
                                                   EOperationType::Buy, choice.error);
    }
    /// Whether each account has a share, no share is negative, and the shares add up to the volume.
    static bool isWhole(const CAccountChoice& choice, const std::vector<int>& volumes, int volume) {
        const bool negative = std::any_of(volumes.begin(), volumes.end(), [](int v) { return v < 0; });
        return !volumes.empty() && volumes.size() == choice.accounts.size() && !negative &&
               std::accumulate(volumes.begin(), volumes.end(), 0) == volume;
    }

    const int unit;
    const CAccountChoice single;
};
CONTRACT_SUITE(TradeContract);

class PositionContract : public contract::CContractTest {};
CONTRACT_SUITE_WITH(PositionContract, EHostTrait::Positions);

class NoPositionContract : public contract::CContractTest {};
CONTRACT_SUITE_WITHOUT(NoPositionContract, EHostTrait::Positions);

TEST_P(TradeContract, AccountsAreLoggedIn) {
    for (const CAccountChoice& choice : accountChoices()) {
        ASSERT_FALSE(choice.accounts.empty()) << choice.name.toStdString();
        for (const CAccountInfoPtr& account : choice.accounts) {
            EXPECT_EQ(CTradeClient::instance().getLoginStatus(account->getKey()),
                      EBROKER_LOGIN_STATUS::LoggedIn)
                << account->getKey();
        }
    }
}

TEST_P(TradeContract, PartsOfASplitAddUpToTheVolume) {
    for (const CAccountChoice& choice : accountChoices()) {
        for (const int units : {1, 2, 3, 7, 10, 101}) {
            const int volume = units * unit;
            EXPECT_TRUE(isWhole(choice, split(choice, volume), volume))
                << choice.name.toStdString() << volume;
            EXPECT_TRUE(choice.error->isSuccess()) << choice.error->errorMsg();
        }
    }
}

TEST_P(TradeContract, SplitNeedsNoPrice) {
    for (const CAccountChoice& choice : accountChoices()) {
        EXPECT_TRUE(isWhole(choice, split(choice, 10 * unit, kUnsetDouble), 10 * unit))
            << choice.name.toStdString();
        EXPECT_TRUE(choice.error->isSuccess()) << choice.error->errorMsg();
    }
}

TEST_P(TradeContract, SplitNeedsNoInstrument) {
    for (const CAccountChoice& choice : accountChoices())
        EXPECT_TRUE(isWhole(choice, split(choice, 10 * unit, 10.5, "", ""), 10 * unit))
            << choice.name.toStdString();
}

TEST_P(TradeContract, OneAccountGetsEverything) {
    EXPECT_EQ(split(single, 5 * unit), std::vector<int>{5 * unit});
}

TEST_P(TradeContract, UnsetVolumeFailsWithAText) {
    for (const CAccountChoice& choice : accountChoices()) {
        EXPECT_NE(split(choice, kUnsetInt).size(), choice.accounts.size()) << choice.name.toStdString();
        EXPECT_FALSE(choice.error->isSuccess());
        EXPECT_NE(choice.error->errorMsg(), "");
    }
}

TEST_P(TradeContract, PartsOfMoneyAddUpToTheAmount) {
    for (const CAccountChoice& choice : accountChoices()) {
        const std::vector<double> amounts = splitMoney(choice, 100000.01);
        ASSERT_EQ(amounts.size(), choice.accounts.size());
        EXPECT_NEAR(std::accumulate(amounts.begin(), amounts.end(), 0.0), 100000.01, 1e-6);
        EXPECT_TRUE(std::all_of(amounts.begin(), amounts.end(), [](double amount) { return amount >= 0; }));
        EXPECT_TRUE(choice.error->isSuccess()) << choice.error->errorMsg();
    }
}

TEST_P(TradeContract, UnsetAmountFailsWithAText) {
    for (const CAccountChoice& choice : accountChoices()) {
        EXPECT_NE(splitMoney(choice, kUnsetDouble).size(), choice.accounts.size())
            << choice.name.toStdString();
        EXPECT_FALSE(choice.error->isSuccess());
        EXPECT_NE(choice.error->errorMsg(), "");
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

TEST_P(PositionContract, UnknownTableAddsNothing) {
    constexpr int kNoTable = 1;
    const auto data = knservice::TraderCenter::instance().getDataCenter().getAccountData(world().holder);
    ASSERT_TRUE(data);
    std::vector<boost::shared_ptr<knservice::IData>> records;
    data->getVector(kNoTable, records);
    EXPECT_TRUE(records.empty());
    EXPECT_TRUE(data->getMapData(kNoTable).empty());
}

TEST_P(NoPositionContract, AccountHasNoPositions) {
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
    const std::vector<CAccountChoice> shared = accountChoices();
    onManyThreads([&] {
        for (CAccountChoice choice : shared) {
            choice.error = boost::make_shared<utils::KNError>();
            if (!isWhole(choice, split(choice, 10 * unit), 10 * unit)) ++wrong;
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

TEST_P(TradeContract, UnknownTaskIsNotFound) {
    EXPECT_TRUE(knservice::TraderCenter::instance().getTaskCenter().findTasks(world().unknownTask).empty());
    knservice::CTaskCenter* seen = nullptr;
    onAnotherThread([&] { seen = &knservice::TraderCenter::instance().getTaskCenter(); });
    EXPECT_EQ(seen, &knservice::TraderCenter::instance().getTaskCenter());
}

} // namespace
