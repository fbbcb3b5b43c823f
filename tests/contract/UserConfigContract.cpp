#include "orderservice/platform/UserConfig.h"

#include "orderservice/contract/ContractFixture.h"
#include "orderservice/contract/Suites.h"

#include <algorithm>
#include <atomic>

void contract::linkUserConfigSuites() {}

namespace {

using namespace TC;
using contract::EHostTrait;

class UserConfigContract : public contract::CContractTest {
protected:
    CUserConfig& user() const { return *getUserConfig(); }

    struct CFound {
        std::vector<CAccountInfoPtr> accounts;
        std::vector<double> ratios;
    };
    CFound find(ESelectedAccountType kind, const QString& name) const {
        CFound found;
        user().getAccountsWeights(world().broker, kind, name, found.accounts, found.ratios, false);
        return found;
    }
};
CONTRACT_SUITE(UserConfigContract);

class AccountGroupContract : public UserConfigContract {};
CONTRACT_SUITE_WITH(AccountGroupContract, EHostTrait::AccountGroups);

class NoAccountGroupContract : public UserConfigContract {};
CONTRACT_SUITE_WITHOUT(NoAccountGroupContract, EHostTrait::AccountGroups);

class NoCreditContract : public UserConfigContract {};
CONTRACT_SUITE_WITHOUT(NoCreditContract, EHostTrait::Credit);

class BasketContract : public UserConfigContract {};
CONTRACT_SUITE_WITH(BasketContract, EHostTrait::NamedBaskets);

class NoBasketContract : public UserConfigContract {};
CONTRACT_SUITE_WITHOUT(NoBasketContract, EHostTrait::NamedBaskets);

TEST_P(UserConfigContract, UserIsLoggedIn) {
    ASSERT_NE(getUserConfig(), nullptr);
    EXPECT_EQ(getUserConfig(), CUserManager::instance().getUserConfig());
    EXPECT_NE(user().getUserName(), "");
}

TEST_P(UserConfigContract, ConfigurationIsTheSameOnEveryThread) {
    CUserConfig* seen = nullptr;
    onAnotherThread([&] { seen = getUserConfig(); });
    EXPECT_EQ(seen, getUserConfig());
}

TEST_P(UserConfigContract, LimitsAreNotNegative) {
    EXPECT_GE(user().getMaxOrderServerNum(), 0);
    EXPECT_GE(user().getMaxOrderServerNumSocket(), 0);
    EXPECT_GE(user().getMinFileServiceInterval(), 0);
}

TEST_P(UserConfigContract, HintsAreTheSameAtEachCall) {
    for (const int bit : {1, 16, 32, 1024}) {
        EXPECT_EQ(user().testHintBeforeOrderFlag(bit), user().testHintBeforeOrderFlag(bit)) << bit;
        EXPECT_EQ(user().testGlobalOrderHint(bit), user().testGlobalOrderHint(bit)) << bit;
    }
}

TEST_P(AccountGroupContract, GroupIsFoundUnderItsNameAndBroker) {
    const CAccountGroup* group = user().getAccountGroupConst(world().broker, world().group);
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->m_strName, world().group.toStdString());
    EXPECT_EQ(group->m_eBrokerType, world().broker);
    EXPECT_EQ(group->m_accounts, world().groupAccounts);
    EXPECT_EQ(user().getAccountGroupConst(world().broker, world().group), group);
}

TEST_P(UserConfigContract, UnknownGroupIsNull) {
    EXPECT_EQ(user().getAccountGroupConst(world().broker, world().unknownName), nullptr);
    EXPECT_EQ(user().getAccountGroupConst(world().broker, QString()), nullptr);
}

TEST_P(AccountGroupContract, GroupIsUnknownUnderAnotherBroker) {
    EXPECT_EQ(user().getAccountGroupConst(static_cast<EQDBrokerType>(999), world().group), nullptr);
}

TEST_P(NoAccountGroupContract, AccountIsNotAGroup) {
    const QString name = QString::fromStdString(world().account);
    EXPECT_EQ(user().getAccountGroupConst(world().broker, name), nullptr);
    EXPECT_TRUE(find(ESelectedAccountType::Group, name).accounts.empty());
}

TEST_P(NoCreditContract, AccountDoesNotTradeOnCredit) {
    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
    user().getAccountsWeights(EQDBrokerType::Credit, ESelectedAccountType::Account,
                              QString::fromStdString(world().account), accounts, ratios, false);
    EXPECT_TRUE(accounts.empty());
}

TEST_P(AccountGroupContract, MembersAreAccounts) {
    ASSERT_GT(world().groupAccounts.size(), 1u);
    for (const std::string& key : world().groupAccounts) {
        EXPECT_TRUE(user().hasAccount(QString::fromStdString(key))) << key;
        const CFound alone = find(ESelectedAccountType::Account, QString::fromStdString(key));
        ASSERT_EQ(alone.accounts.size(), 1u) << key;
        EXPECT_EQ(alone.accounts[0]->getKey(), key);
    }
}

TEST_P(UserConfigContract, AccountIsKnownAndAnotherNameIsNot) {
    EXPECT_TRUE(user().hasAccount(QString::fromStdString(world().account)));
    EXPECT_FALSE(user().hasAccount(world().unknownName));
    EXPECT_FALSE(user().hasSimpleAccount(world().unknownName));
}

TEST_P(AccountGroupContract, GroupGivesItsAccountsAndOneRatioForEach) {
    const CFound found = find(ESelectedAccountType::Group, world().group);
    ASSERT_EQ(found.accounts.size(), world().groupAccounts.size());
    ASSERT_EQ(found.ratios.size(), found.accounts.size());
    for (std::size_t i = 0; i < found.accounts.size(); ++i) {
        ASSERT_NE(found.accounts[i], nullptr);
        EXPECT_EQ(found.accounts[i]->getKey(), world().groupAccounts[i]);
        EXPECT_EQ(found.accounts[i]->m_nBrokerType, static_cast<int>(world().broker));
        EXPECT_GT(found.ratios[i], 0.0);
    }
}

TEST_P(UserConfigContract, AccountAppendsOnlyItself) {
    const std::string& key = world().account;
    const CFound found = find(ESelectedAccountType::Account, QString::fromStdString(key));
    ASSERT_EQ(found.accounts.size(), 1u);
    ASSERT_EQ(found.ratios.size(), 1u);
    EXPECT_EQ(found.accounts[0]->getKey(), key);
    EXPECT_GT(found.ratios[0], 0.0);
}

TEST_P(UserConfigContract, AccountsAreAppended) {
    const QString account = QString::fromStdString(world().account);
    CFound found = find(ESelectedAccountType::Account, account);
    ASSERT_EQ(found.accounts.size(), 1u);
    const auto first = found.accounts.front();
    user().getAccountsWeights(world().broker, ESelectedAccountType::Account, account, found.accounts,
                              found.ratios, false);
    EXPECT_EQ(found.accounts.size(), 2u);
    EXPECT_EQ(found.ratios.size(), found.accounts.size());
    EXPECT_EQ(found.accounts.front(), first);
}

TEST_P(UserConfigContract, UnknownNamesAppendNothing) {
    for (const auto kind : {ESelectedAccountType::Group, ESelectedAccountType::Account}) {
        for (const QString& name : {world().unknownName, QString()}) {
            const CFound found = find(kind, name);
            EXPECT_TRUE(found.accounts.empty()) << name.toStdString();
            EXPECT_TRUE(found.ratios.empty()) << name.toStdString();
        }
    }
}

TEST_P(UserConfigContract, SpecifiedPriceMayBeUsedOnAStock) {
    EXPECT_TRUE(user().isPriceTypeValid(EPriceType::Specified, EOperationType::Buy, world().broker,
                                        world().market, world().code, EOrderType::Plain));
}

TEST_P(UserConfigContract, DefaultSettingsNameAPriceType) {
    for (const auto which :
         {EDefaultSetting::Stock, EDefaultSetting::Future, EDefaultSetting::Basket, EDefaultSetting::Option,
          EDefaultSetting::Neeq, EDefaultSetting::HGT, EDefaultSetting::Gold}) {
        EXPECT_FALSE(isUnset(user().getDefaultOrderSetting(which).m_ePriceType)) << static_cast<int>(which);
    }
}

TEST_P(BasketContract, BasketsAreACopy) {
    CBasketMap baskets = user().getBaskets();
    ASSERT_TRUE(baskets.contains(world().basket));
    const int rows = baskets[world().basket].m_rows.size();
    EXPECT_GT(rows, 0);
    baskets[world().basket].m_rows.clear();
    EXPECT_EQ(user().getBaskets()[world().basket].m_rows.size(), rows);
}

TEST_P(NoBasketContract, UserHasNoBaskets) {
    EXPECT_TRUE(user().getBaskets().isEmpty());
}

TEST_P(UserConfigContract, AccountHasItsKeyAndBrokerType) {
    const CAccountPtr account = user().getAccountData(QString::fromStdString(world().account));
    ASSERT_TRUE(account);
    ASSERT_TRUE(account->toInfo());
    EXPECT_EQ(account->toInfo()->getKey(), world().account);
    EXPECT_EQ(account->toInfo()->m_nBrokerType, static_cast<int>(world().broker));
    EXPECT_FALSE(user().getAccountData(world().unknownName));
}

TEST_P(UserConfigContract, UnknownAccountHasNoProductAndUnknownTableNoLayout) {
    EXPECT_EQ(user().getAccountProduct(world().unknownName).m_strName, QString());
    EXPECT_EQ(user().getAccountProduct(world().unknownName).m_strAccountName, QString());
    EXPECT_EQ(user().getTableLayout(QStringLiteral("no such table")), QString());
}

TEST_P(UserConfigContract, EveryCallReturnsTheSameStrategyMap) {
    COrderStrategyMap* map = user().getStrategyMap();
    ASSERT_NE(map, nullptr);
    constexpr int kFreeChannel = 900001;
    map->insert(kFreeChannel, COrderStrategyParam());
    COrderStrategyMap* seen = nullptr;
    onAnotherThread([&] { seen = getUserConfig()->getStrategyMap(); });
    EXPECT_EQ(seen, map);
    EXPECT_TRUE(seen->contains(kFreeChannel));
    map->remove(kFreeChannel);
    EXPECT_FALSE(user().getStrategyMap()->contains(kFreeChannel));
}

TEST_P(UserConfigContract, ManyThreadsMayAskAtOnce) {
    std::atomic<int> wrong{0};
    onManyThreads([&] {
        const CFound found = find(ESelectedAccountType::Account, QString::fromStdString(world().account));
        if (found.accounts.size() != 1) ++wrong;
        const bool hasGroup = user().getAccountGroupConst(world().broker, world().group) != nullptr;
        if (hasGroup != has(EHostTrait::AccountGroups)) ++wrong;
        if (user().getBaskets().contains(world().basket) != has(EHostTrait::NamedBaskets)) ++wrong;
        if (user().getUserName().empty()) ++wrong;
    });
    EXPECT_EQ(wrong.load(), 0);
}

} // namespace
