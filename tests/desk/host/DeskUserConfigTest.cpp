#include "desk/host/DeskUserConfig.h"

#include <gtest/gtest.h>

namespace desk {
namespace {

CAccountEntry account(const std::string& key, TC::EQDBrokerType broker, bool simple = false) {
    CAccountEntry entry;
    entry.key = key;
    entry.broker = broker;
    entry.simple = simple;
    return entry;
}

CDeskConfig makeConfig() {
    CDeskConfig config;
    config.user.name = "trader";
    config.user.kind = 3;
    config.user.rights = {8};
    config.user.orderService = false;
    config.user.tradeFramework = true;
    config.user.orderEncryption = true;
    config.user.maxStrategies = 4;
    config.user.maxSocketStrategies = 5;
    config.user.fileIntervalMs = 60;
    config.user.msgFlags = {{4, {true, false}}};
    config.accounts = {account("A1", TC::EQDBrokerType::Stock), account("A2", TC::EQDBrokerType::Stock, true),
                       account("C1", TC::EQDBrokerType::Credit)};
    config.groups = {{"main", TC::EQDBrokerType::Stock, {{"A2", 4}, {"A1", 6}}},
                     {"main", TC::EQDBrokerType::Credit, {{"C1", 1}}}};
    config.baskets.insert(QStringLiteral("蓝筹"), {});
    config.defaultSettings[TC::EDefaultSetting::Stock].m_strCmdLog = "r";
    TC::COrderStrategyParam strategy;
    strategy.m_nChannel = 3;
    config.strategies.insert(3, strategy);
    return config;
}

class DeskUserConfig : public testing::Test {
protected:
    /// Keys and ratios of the accounts, as "key*ratio ".
    std::string accountsOf(TC::EQDBrokerType broker, TC::ESelectedAccountType kind, const char* name,
                           bool simple = false) const {
        std::vector<TC::CAccountInfoPtr> accounts;
        std::vector<double> ratios;
        m_user.getAccountsWeights(broker, kind, QString::fromUtf8(name), accounts, ratios, simple);
        EXPECT_EQ(accounts.size(), ratios.size());
        std::string text;
        for (std::size_t i = 0; i < accounts.size() && i < ratios.size(); ++i) {
            text += accounts[i]->m_strKey + "*" + QString::number(ratios[i]).toStdString() + " ";
        }
        return text;
    }

    CDeskConfig m_config = makeConfig();
    CDeskUserConfig m_user{m_config};
};

constexpr auto kStock = TC::EQDBrokerType::Stock;
constexpr auto kCredit = TC::EQDBrokerType::Credit;
constexpr auto kGroup = TC::ESelectedAccountType::Group;
constexpr auto kAccount = TC::ESelectedAccountType::Account;

TEST_F(DeskUserConfig, AccountsAreListedInTheOrderOfTheFolder) {
    CDeskConfig config = makeConfig();
    config.accounts.insert(config.accounts.begin(), account("Z1", TC::EQDBrokerType::Stock));
    std::string keys;
    for (const TC::CAccountPtr& each : CDeskUserConfig(config).getAccounts())
        keys += each->key() + ' ';
    EXPECT_EQ(keys, "Z1 A1 A2 C1 ");
}

TEST_F(DeskUserConfig, AccountIsShownByItsDisplayIdOrByItsKey) {
    CDeskConfig config = makeConfig();
    config.accounts[0].displayId = "10001";
    const CDeskUserConfig user(config);
    EXPECT_EQ(displayIdOf(*user.getAccountData(QStringLiteral("A1"))->toInfo()), "10001");
    EXPECT_EQ(displayIdOf(*user.getAccountData(QStringLiteral("A2"))->toInfo()), "A2");
    TC::CAccountInfo other;
    other.m_strKey = "X";
    EXPECT_EQ(displayIdOf(other), "X");
}

TEST_F(DeskUserConfig, EachOfTheFirstSlotsHasItsDefaultSetting) {
    CDeskConfig config = makeConfig();
    const std::pair<TC::EDefaultSetting, const char*> remarks[] = {
        {TC::EDefaultSetting::Stock, "stock"},   {TC::EDefaultSetting::Future, "future"},
        {TC::EDefaultSetting::Basket, "basket"}, {TC::EDefaultSetting::Option, "option"},
        {TC::EDefaultSetting::Neeq, "neeq"},     {TC::EDefaultSetting::HGT, "hgt"},
        {TC::EDefaultSetting::Gold, "gold"}};
    for (const auto& [which, remark] : remarks)
        config.defaultSettings[which].m_strCmdLog = remark;
    std::string text;
    for (const TC::COrderSetting& setting : CDeskUserConfig(config).getDefaultOrderSettings())
        text += setting.m_strCmdLog + ' ';
    EXPECT_EQ(text, "stock future future future future future basket future stock option neeq hgt gold ");
}

TEST_F(DeskUserConfig, AnswersWhatTheFolderSays) {
    EXPECT_EQ(m_user.getUserName(), "trader");
    EXPECT_EQ(m_user.getUserKind(), 3);
    EXPECT_TRUE(m_user.hasUserAuth(TC::EUserAuth::FileOrders));
    EXPECT_FALSE(m_user.hasUserAuth(TC::EUserAuth::SignalOrders));
    EXPECT_FALSE(m_user.hasOrderService());
    EXPECT_TRUE(m_user.hasShowTradeFrameworkPermission());
    EXPECT_TRUE(m_user.hasOrderEncryptionService());
    EXPECT_EQ(m_user.getMaxOrderServerNum(), 4);
    EXPECT_EQ(m_user.getMaxOrderServerNumSocket(), 5);
    EXPECT_EQ(m_user.getMinFileServiceInterval(), 60);
    EXPECT_TRUE(m_user.getBaskets().contains(QStringLiteral("蓝筹")));
    EXPECT_EQ(m_user.getDefaultOrderSetting(TC::EDefaultSetting::Stock).m_strCmdLog, "r");
    EXPECT_EQ(m_user.getDefaultOrderSetting(TC::EDefaultSetting::Gold).m_strCmdLog, "");
}

TEST(DeskUserHints, AreTheBitsOfTheFolder) {
    CDeskConfig config;
    config.user.hintBits = 32 + 1024;
    const CDeskUserConfig user(config);
    for (const int bit : {1, 16, 32, 1024}) {
        EXPECT_EQ(user.testHintBeforeOrderFlag(bit), bit >= 32) << bit;
        EXPECT_FALSE(user.testGlobalOrderHint(bit)) << bit;
    }
}

TEST_F(DeskUserConfig, MessageFlagsAreOffUnlessTheFolderSets) {
    EXPECT_TRUE(m_user.getMsgFlags(TC::EMsgTypeDef::OrderFailure).m_bFirst);
    EXPECT_FALSE(m_user.getMsgFlags(TC::EMsgTypeDef::OrderFailure).m_bSecond);
    EXPECT_FALSE(m_user.getMsgFlags(TC::EMsgTypeDef::General).m_bFirst);
}

TEST_F(DeskUserConfig, AGroupIsFoundUnderItsBrokerType) {
    const TC::CAccountGroup* group = m_user.getAccountGroupConst(kStock, QStringLiteral("main"));
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->m_accounts, (std::vector<std::string>{"A2", "A1"}));
    EXPECT_EQ(group->m_eBrokerType, kStock);
    EXPECT_EQ(m_user.getAccountGroupConst(TC::EQDBrokerType::Gold, QStringLiteral("main")), nullptr);
    EXPECT_EQ(m_user.getAccountGroupConst(kStock, QStringLiteral("other")), nullptr);
}

TEST_F(DeskUserConfig, AccountsHaveTheWeightsOfTheirGroup) {
    EXPECT_EQ(accountsOf(kStock, kGroup, "main"), "A2*4 A1*6 ");
    EXPECT_EQ(accountsOf(kCredit, kGroup, "main"), "C1*1 ");
    EXPECT_EQ(accountsOf(kStock, kGroup, "other"), "");
}

TEST_F(DeskUserConfig, AnAccountByItselfHasTheWhole) {
    EXPECT_EQ(accountsOf(kStock, kAccount, "A1"), "A1*1 ");
    EXPECT_EQ(accountsOf(kStock, kAccount, "C1"), "") << "an account of another broker type";
    EXPECT_EQ(accountsOf(kStock, kAccount, "main"), "");
}

TEST_F(DeskUserConfig, AnOrderOfAGroupsStrategyMayNameOneAccount) {
    EXPECT_EQ(accountsOf(kStock, kGroup, "A1"), "A1*1 ");
    EXPECT_EQ(accountsOf(kStock, kGroup, "C1"), "");
}

TEST_F(DeskUserConfig, ATableRowNamesOnlySimpleAccounts) {
    EXPECT_EQ(accountsOf(kStock, kAccount, "A2", true), "A2*1 ");
    EXPECT_EQ(accountsOf(kStock, kAccount, "A1", true), "");
    EXPECT_EQ(accountsOf(kStock, kGroup, "A2", true), "A2*1 ");
    EXPECT_TRUE(m_user.hasAccount(QStringLiteral("A1")));
    EXPECT_FALSE(m_user.hasSimpleAccount(QStringLiteral("A1")));
    EXPECT_TRUE(m_user.hasSimpleAccount(QStringLiteral("A2")));
    EXPECT_FALSE(m_user.hasAccount(QStringLiteral("A9")));
    EXPECT_FALSE(m_user.hasSimpleAccount(QStringLiteral("A9")));
}

TEST_F(DeskUserConfig, AnAccountIsGivenByItsKey) {
    const TC::CAccountPtr account = m_user.getAccountData(QStringLiteral("C1"));
    ASSERT_TRUE(account);
    EXPECT_EQ(account->toInfo()->m_strKey, "C1");
    EXPECT_EQ(account->toInfo()->m_nBrokerType, static_cast<int>(kCredit));
    EXPECT_FALSE(m_user.getAccountData(QStringLiteral("C9")));
}

TEST_F(DeskUserConfig, SpecifiedPricesAndTheBooksAreValidAndNoOthers) {
    const auto isValid = [&](int type) {
        return m_user.isPriceTypeValid(static_cast<TC::EPriceType>(type), TC::EOperationType::Buy, kStock,
                                       "SH", "600000", TC::EOrderType::Plain);
    };
    for (const int type : {0, 5, 10, 11, 30, 39})
        EXPECT_TRUE(isValid(type)) << type;
    for (const int type : {-1, 12, 29, 40, 49})
        EXPECT_FALSE(isValid(type)) << type;
}

TEST_F(DeskUserConfig, TheStrategiesAreACopyThatTheOrderServiceMayChange) {
    m_user.getStrategyMap()->remove(3);
    EXPECT_TRUE(m_user.getStrategyMap()->isEmpty());
    EXPECT_TRUE(m_config.strategies.contains(3));
}

TEST_F(DeskUserConfig, TableLayoutsAreKeptByTheWindowOnly) {
    m_user.saveTableLayout(QStringLiteral("orders_confirm"), QStringLiteral("1"));
    EXPECT_EQ(m_user.getTableLayout(QStringLiteral("orders_confirm")), QString());
    std::map<QString, QString> kept;
    m_user.setTableLayouts({[&](const QString& id) { return kept[id]; },
                            [&](const QString& id, const QString& layout) { kept[id] = layout; }});
    m_user.saveTableLayout(QStringLiteral("orders_confirm"), QStringLiteral("2"));
    EXPECT_EQ(m_user.getTableLayout(QStringLiteral("orders_confirm")), QStringLiteral("2"));
    EXPECT_EQ(m_user.getTableLayout(QStringLiteral("another")), QString());
}

TEST_F(DeskUserConfig, TheUserIsLoggedIn) {
    CDeskUserManager manager(m_user);
    EXPECT_EQ(manager.getUserConfig(), &m_user);
}

} // namespace
} // namespace desk
