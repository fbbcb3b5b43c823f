#include "desk/config/StrategyFile.h"

#include "desk/config/StrategyCompare.h"
#include "orderservice/records/Families.h"
#include "tests/desk/config/ConfigFolder.h"
#include "tests/support/CommaLocale.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <boost/make_shared.hpp>

namespace desk {
namespace {

using test::CConfigFolder;

constexpr const char* kFull = R"([[strategy]]
channel = 7
name = "全部"
source = "file"
path = "orders/full.txt"
user = "u"
pass = "p\"q"
group = "main"
family = "stock"
code = "SH600000"
volume = 300
amount = 12345.6789
price_type = "sell3"
order_type = 0
position_type = 2
hedge_param = '{"lots": 2}'
remark = ""
running = true
)";

bool save(const CConfigFolder& folder, const TC::COrderStrategyMap& strategies) {
    return CStrategyFile(folder.path(), folder.load().config).save(strategies).isSuccess();
}

TC::COrderStrategyParam onlyStrategy(const CConfigFolder& folder) {
    const CLoadedConfig loaded = folder.load();
    EXPECT_TRUE(loaded.mistakes.empty()) << loaded.mistakes.at(0).message;
    EXPECT_EQ(loaded.config.strategies.size(), 1);
    return loaded.config.strategies.isEmpty() ? TC::COrderStrategyParam{} : loaded.config.strategies.first();
}

void expectFull(const CConfigFolder& folder, const TC::COrderStrategyParam& strategy) {
    EXPECT_EQ(strategy.m_nChannel, 7);
    EXPECT_EQ(strategy.m_strName, QStringLiteral("全部"));
    EXPECT_EQ(strategy.m_eStrategyType, TC::EOrderStrategyType::File);
    EXPECT_EQ(strategy.m_strSignalSource.toStdString(), folder.files().path("orders/full.txt"));
    EXPECT_EQ(strategy.m_strUser, QStringLiteral("u"));
    EXPECT_EQ(strategy.m_strPass, QStringLiteral("p\"q"));
    EXPECT_EQ(strategy.m_eSelectedAccountType, TC::ESelectedAccountType::Group);
    EXPECT_EQ(strategy.m_strSelectedAccount, QStringLiteral("main"));
    EXPECT_EQ(strategy.m_eTradeType, TC::EOrderStrategyTradeType::Stock);
    EXPECT_EQ(strategy.m_strCode, QStringLiteral("SH600000"));
    EXPECT_EQ(strategy.m_nVolume, 300);
    EXPECT_TRUE(strategy.m_bUseAmount);
    EXPECT_EQ(strategy.m_dAmount, 12345.6789);
    EXPECT_EQ(strategy.m_stockSetting.m_ePriceType, TC::EPriceType::Sell3);
    EXPECT_EQ(strategy.m_eOrderType, TC::EOrderType::Plain);
    EXPECT_EQ(static_cast<int>(strategy.m_ePositionType), 2);
    EXPECT_EQ(strategy.m_hedgeParam, bson::fromjson(R"({"lots": 2})"));
    EXPECT_EQ(strategy.m_stockSetting.m_strCmdLog, "") << "an empty remark stands above the default's";
    EXPECT_TRUE(strategy.isRunning());
}

TEST(StrategyFile, EveryKeyIsRead) {
    const CConfigFolder folder;
    folder.files().write("strategies.toml", kFull);
    folder.setSecret("strategies.toml", true);
    expectFull(folder, onlyStrategy(folder));
}

TEST(StrategyFile, EveryKeySurvivesSavingAndReading) {
    const CConfigFolder folder;
    folder.files().write("strategies.toml", kFull);
    folder.setSecret("strategies.toml", true);
    ASSERT_TRUE(save(folder, folder.load().config.strategies));
    expectFull(folder, onlyStrategy(folder));
}

TEST(StrategyFile, StoppedStrategyMayBeUnfinished) {
    const CConfigFolder folder;
    TC::COrderStrategyParam added;
    added.m_nChannel = 4;
    added.m_strName = QStringLiteral("策略4");
    TC::COrderStrategyMap strategies;
    strategies.insert(4, added);
    ASSERT_TRUE(save(folder, strategies));
    EXPECT_EQ(onlyStrategy(folder).m_nChannel, 4);
}

/// A strategy in which every field that the desk trades with differs from a new strategy.
TC::COrderStrategyParam strategyOfEveryField(const CConfigFolder& folder) {
    TC::COrderStrategyParam strategy;
    strategy.m_nStatus = TC::COrderStrategyParam::kRunning;
    strategy.m_nChannel = 12;
    strategy.m_strName = QStringLiteral("名\"字\\\n\t'");
    strategy.m_eSelectedAccountType = TC::ESelectedAccountType::Account;
    strategy.m_strSelectedAccount = QStringLiteral("C1");
    strategy.m_eTradeType = TC::EOrderStrategyTradeType::Credit;
    strategy.m_ePositionType = static_cast<TC::EPositionType>(3);
    strategy.m_eStrategyType = TC::EOrderStrategyType::BatchPending;
    strategy.m_nAccountMode = TC::COrderStrategyParam::kTableMode;
    strategy.m_strSignalSource = QString::fromStdString(folder.files().path("tables/all.dbf"));
    strategy.m_strUser = QStringLiteral("user");
    strategy.m_strPass = QStringLiteral("p\"q\\r 密");
    strategy.m_strCode = QStringLiteral("SZ000001");
    strategy.m_nVolume = 700;
    strategy.m_nFurther1 = 2;
    strategy.m_nFurther2 = 0;
    strategy.m_bUseAmount = true;
    strategy.m_dAmount = 12345.678901234567;
    strategy.m_dPercent = 0.1;
    strategy.m_bHedgeBasket = true;
    strategy.m_hedgeParam = bson::fromjson(R"({"contract": "IF2609", "lots": 2, "ratio": 0.5})");
    strategy.m_bCommandFlag = true;
    strategy.m_eOrderType = TC::EOrderType::Plain;
    for (int number = 0; number < TC::kSettingSlots; ++number) {
        TC::COrderSetting& setting = strategy.setting(static_cast<TC::ESettingSlot>(number));
        setting.m_ePriceType = static_cast<TC::EPriceType>(30 + number);
        setting.m_eOrderType = static_cast<TC::EOrderType>(1 + number);
        setting.m_dFirstLimit = 1.25 + number;
        setting.m_dSecondLimit = -2.5 - number;
        setting.m_bFirstLimitOn = true;
        setting.m_bSecondLimitOn = true;
        setting.m_strCmdLog = "备注 " + std::to_string(number);
    }
    return strategy;
}

/// The reason why the strategy cannot be saved. Empty if it was saved and read back.
std::string keep(const CConfigFolder& folder, const TC::COrderStrategyParam& strategy) {
    const CStrategyFile file(folder.path(), folder.load().config);
    const std::string reason = file.whyNotKept(strategy, {});
    if (!reason.empty()) return reason;
    EXPECT_TRUE(file.save({{strategy.m_nChannel, strategy}}).isSuccess());
    const TC::COrderStrategyParam again = onlyStrategy(folder);
    EXPECT_EQ(again.isRunning(), strategy.isRunning());
    const char* different = firstDifference(again, strategy);
    return different == nullptr ? "" : different;
}

TEST(StrategyFile, EveryFieldSurvivesSavingAndReading) {
    const CConfigFolder folder;
    EXPECT_EQ(keep(folder, strategyOfEveryField(folder)), "");
}

/// If the user's defaults set a field that the strategy does not set, the file must say that it is not set.
TEST(StrategyFile, FieldsThatNobodySetSurviveToo) {
    const CConfigFolder folder;
    folder.replace("desk.toml", "price_type = \"buy1\"",
                   "price_type = \"buy1\"\nfirst_limit = 1.5\nsecond_limit = 2.5");
    TC::COrderStrategyParam strategy;
    strategy.m_nChannel = 1;
    strategy.m_strName = QStringLiteral("n");
    strategy.m_nVolume = strategy.m_nFurther1 = strategy.m_nFurther2 = TC::kUnsetInt;
    strategy.m_ePositionType = TC::unsetEnum<TC::EPositionType>();
    for (int number = 0; number < TC::kSettingSlots; ++number) {
        TC::COrderSetting& setting = strategy.setting(static_cast<TC::ESettingSlot>(number));
        setting.m_ePriceType = TC::unsetEnum<TC::EPriceType>();
        setting.m_eOrderType = TC::unsetEnum<TC::EOrderType>();
    }
    EXPECT_EQ(keep(folder, strategy), "");
}

TEST(StrategyFile, NumbersAndTheirSwitchesAreKeptApart) {
    const CConfigFolder folder;
    TC::COrderStrategyParam strategy;
    strategy.m_nChannel = 1;
    strategy.m_strName = QStringLiteral("n");
    strategy.m_dAmount = 500;
    strategy.m_dPercent = 0;
    strategy.m_stockSetting.m_dFirstLimit = 9;
    strategy.m_stockSetting.m_bSecondLimitOn = true;
    EXPECT_EQ(keep(folder, strategy), "");
    strategy.m_dAmount = TC::kUnsetDouble;
    strategy.m_bUseAmount = true;
    EXPECT_EQ(keep(folder, strategy), "");
}

TEST(StrategyFile, SettingsOfFurtherSlotsAreWrittenWhereTheyDifferFromTheDefaults) {
    const CConfigFolder folder;
    TC::COrderStrategyMap strategies = folder.load().config.strategies;
    ASSERT_TRUE(save(folder, strategies));
    EXPECT_EQ(folder.files().read("strategies.toml").find("strategy.setting"), std::string::npos);
    strategies[2].setting(TC::ESettingSlot::Gold).m_dFirstLimit = 4;
    ASSERT_TRUE(save(folder, strategies));
    EXPECT_NE(folder.files().read("strategies.toml").find("[[strategy.setting]]"), std::string::npos);
    EXPECT_EQ(folder.load().config.strategies[2].setting(TC::ESettingSlot::Gold).m_dFirstLimit, 4);
    EXPECT_TRUE(isSame(folder.load().config.strategies[1].setting(TC::ESettingSlot::Gold), {}));
}

class CHostsSetting : public TC::CAlgorithmOrderSetting {};

TEST(StrategyFile, WhatCannotBeKeptIsNamed) {
    const CConfigFolder folder;
    const TC::COrderStrategyParam good = folder.load().config.strategies[1];
    ASSERT_EQ(keep(folder, good), "");
    const auto refusal = [&](auto&& spoil) {
        TC::COrderStrategyParam strategy = good;
        spoil(strategy);
        return keep(folder, strategy);
    };
    EXPECT_EQ(refusal([](auto& s) { s.m_algoSetting = boost::make_shared<CHostsSetting>(); }),
              "it has an algorithm setting, which the file cannot hold");
    EXPECT_EQ(refusal([](auto& s) {
                  s.m_hedgeParam = bson::BSONObjBuilder().append("lots", std::int64_t{2}).obj();
              }),
              "hedge_param would be read back as something else");
    EXPECT_EQ(refusal([](auto& s) { s.m_nVolume = -5; }),
              "strategy: volume is -5; expected a whole number of at least 0");
    EXPECT_EQ(refusal([](auto& s) { s.m_strSignalSource = QStringLiteral("elsewhere.txt"); }),
              "path would be read back as something else");
    EXPECT_EQ(refusal([](auto& s) { s.m_strCode = QStringLiteral("600009"); }),
              "strategy: code \"600009\" is unknown; expected an instrument of instruments.csv, "
              "with its market unless it is a derivative");
}

TEST(StrategyFile, APathThatAnotherStrategyHasIsNotKept) {
    const CConfigFolder folder;
    TC::COrderStrategyMap strategies = folder.load().config.strategies;
    const CStrategyFile file(folder.path(), folder.load().config);
    EXPECT_EQ(file.whyNotKept(strategies[2], strategies), "");
    strategies[2].m_strSignalSource = strategies[1].m_strSignalSource;
    EXPECT_EQ(file.whyNotKept(strategies[2], strategies),
              "strategy: path \"orders/one.txt\" is the path of channel 1 too");
}

/// Saves and reads every source and family that the service can hold.
TEST(StrategyFile, WhatTheServiceCanHoldIsReadAgain) {
    const CConfigFolder folder;
    TC::COrderStrategyMap strategies;
    const auto add = [&](TC::EOrderStrategyType source, TC::EOrderStrategyTradeType family) {
        TC::COrderStrategyParam added;
        added.m_nChannel = static_cast<int>(strategies.size()) + 1;
        added.m_strName = QString::number(added.m_nChannel);
        added.m_eStrategyType = source;
        added.m_eTradeType = family;
        added.m_nVolume = TC::kUnsetInt;
        added.m_ePositionType = TC::unsetEnum<TC::EPositionType>();
        strategies.insert(added.m_nChannel, added);
    };
    for (const auto source : {TC::EOrderStrategyType::Interface, TC::EOrderStrategyType::Signal,
                              TC::EOrderStrategyType::File, TC::EOrderStrategyType::BatchPending})
        add(source, TC::EOrderStrategyTradeType::Stock);
    for (std::size_t i = 0; i < TC::kFamilyCount; ++i)
        add(TC::EOrderStrategyType::File, TC::kFamilies[i].m_eTradeType);
    ASSERT_TRUE(save(folder, strategies));
    EXPECT_EQ(folder.mistakes(), std::vector<std::string>{});
    const TC::COrderStrategyMap again = folder.load().config.strategies;
    ASSERT_EQ(again.size(), strategies.size());
    for (const TC::COrderStrategyParam& strategy : strategies) {
        EXPECT_EQ(again[strategy.m_nChannel].m_eStrategyType, strategy.m_eStrategyType);
        EXPECT_EQ(again[strategy.m_nChannel].m_eTradeType, strategy.m_eTradeType);
    }
}

TEST(StrategyFile, ATablesPathIsRelativeToo) {
    const CConfigFolder folder;
    folder.replace("strategies.toml", "channel = 2\nsource = \"file\"", "channel = 2\nsource = \"table\"");
    const TC::COrderStrategyMap strategies = folder.load().config.strategies;
    EXPECT_EQ(strategies[2].m_strSignalSource.toStdString(), folder.files().path("orders/two.txt"));
    ASSERT_TRUE(save(folder, strategies));
    EXPECT_EQ(folder.files().read("strategies.toml").find(folder.path()), std::string::npos);
}

TEST(StrategyFile, ADraftThatIsOpenToOthersIsNotWrittenInto) {
    const CConfigFolder folder;
    folder.files().write("strategies.toml.new", "left behind");
    std::filesystem::permissions(folder.files().path("strategies.toml.new"), std::filesystem::perms::all);
    ASSERT_TRUE(save(folder, folder.load().config.strategies));
    EXPECT_EQ(std::filesystem::status(folder.files().path("strategies.toml")).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST(StrategyFile, KeysLeftOutComeFromTheUsersDefaults) {
    const CConfigFolder folder;
    const TC::COrderStrategyMap strategies = folder.load().config.strategies;
    const TC::COrderStrategyParam& second = strategies[2];
    EXPECT_EQ(second.m_strName, QStringLiteral("策略2"));
    EXPECT_EQ(second.m_stockSetting.m_ePriceType, TC::EPriceType::Buy1);
    EXPECT_EQ(second.m_stockSetting.m_strCmdLog, "早盘");
    EXPECT_EQ(second.m_nVolume, 1);
    EXPECT_FALSE(second.m_bUseAmount);
    EXPECT_TRUE(TC::isUnset(second.m_eOrderType));
    EXPECT_FALSE(second.isRunning());
    EXPECT_EQ(strategies[1].m_eSelectedAccountType, TC::ESelectedAccountType::Account);
    EXPECT_EQ(strategies[1].m_strSelectedAccount, QStringLiteral("A1"));
}

TEST(StrategyFile, UnsetOrderKindAndAmountStayUnsetWhenSaved) {
    const CConfigFolder folder;
    ASSERT_TRUE(save(folder, folder.load().config.strategies));
    const CLoadedConfig again = folder.load();
    ASSERT_TRUE(again.mistakes.empty());
    ASSERT_EQ(again.config.strategies.size(), 2);
    EXPECT_TRUE(TC::isUnset(again.config.strategies[2].m_eOrderType));
    EXPECT_FALSE(again.config.strategies[2].m_bUseAmount);
    EXPECT_EQ(again.config.strategies[2].m_stockSetting.m_strCmdLog, "早盘");
    EXPECT_EQ(again.config.strategies[1].m_strSelectedAccount, QStringLiteral("A1"));
    EXPECT_FALSE(again.config.strategies[2].isRunning());
}

TEST(StrategyFile, AFamilysKeysGoToItsOwnSlot) {
    const CConfigFolder folder;
    folder.replace("strategies.toml", "group = \"main\"\nfamily = \"stock\"",
                   "group = \"main\"\nfamily = \"basket\"\nprice_type = 4\nremark = \"r\"");
    ASSERT_TRUE(save(folder, folder.load().config.strategies));
    const TC::COrderStrategyParam strategy = folder.load().config.strategies[2];
    EXPECT_EQ(strategy.setting(TC::ESettingSlot::StockBasket).m_ePriceType, TC::EPriceType::Sell1);
    EXPECT_EQ(strategy.setting(TC::ESettingSlot::StockBasket).m_strCmdLog, "r");
    EXPECT_EQ(strategy.m_stockSetting.m_ePriceType, TC::EPriceType::Buy1);
}

TEST(StrategyFile, PathsBelowTheFolderAreWrittenRelativeToIt) {
    const CConfigFolder folder;
    folder.replace("strategies.toml", "orders/two.txt", "/elsewhere/two.txt");
    for (const std::string& name : {folder.path(), folder.path() + "/"}) {
        ASSERT_TRUE(
            CStrategyFile(name, folder.load().config).save(folder.load().config.strategies).isSuccess());
        const std::string text = folder.files().read("strategies.toml");
        EXPECT_NE(text.find("orders/one.txt"), std::string::npos);
        EXPECT_NE(text.find("/elsewhere/two.txt"), std::string::npos);
        EXPECT_EQ(text.find(folder.path()), std::string::npos) << text;
    }
}

/// Changes channel 2 of the base folder to an order socket with the login keys.
void listenOn(const CConfigFolder& folder, const std::string& address,
              const std::string& login = "user = \"u\"\npass = \"p\"\n") {
    folder.replace("strategies.toml", "channel = 2\nsource = \"file\"\npath = \"orders/two.txt\"\n",
                   "channel = 2\nsource = \"signal\"\npath = \"" + address + "\"\n" + login);
    folder.setSecret("strategies.toml", true);
}

TEST(StrategyFile, ASocketsAddressIsNoPath) {
    const CConfigFolder folder;
    listenOn(folder, "127.0.0.1:9000");
    EXPECT_EQ(folder.load().config.strategies[2].m_strSignalSource, QStringLiteral("127.0.0.1:9000"));
    ASSERT_TRUE(save(folder, folder.load().config.strategies));
    EXPECT_EQ(folder.load().config.strategies[2].m_strSignalSource, QStringLiteral("127.0.0.1:9000"));
}

TEST(StrategyFile, ASocketWithoutAPortIsAMistake) {
    for (const std::string address : {"127.0.0.1", "127.0.0.1:65536"}) {
        const CConfigFolder folder;
        listenOn(folder, address);
        EXPECT_EQ(folder.mistakes(),
                  std::vector<std::string>{"strategies.toml:13: strategy: path \"" + address +
                                           "\" is not an address; expected \"ip:port\" with a port of 1 to "
                                           "65535"});
    }
}

TEST(StrategyFile, ASocketWithoutALoginIsAMistake) {
    const auto missing = [](int line, const char* key) {
        return "strategies.toml:" + std::to_string(line) + ": strategy: key \"" + key +
               "\" is missing in the table that begins on line 10; a strategy of source \"signal\" needs a "
               "login";
    };
    const auto empty = [](int line, const char* key) {
        return "strategies.toml:" + std::to_string(line) + ": strategy: key \"" + key +
               "\" is missing or empty; a strategy of source \"signal\" needs a login";
    };
    const std::pair<const char*, std::vector<std::string>> rows[] = {
        {"", {missing(15, "user"), missing(15, "pass")}},
        {"user = \"u\"\n", {missing(16, "pass")}},
        {"pass = \"p\"\n", {missing(16, "user")}},
        {"user = \"u\"\npass = \"\"\n", {empty(15, "pass")}},
        {"user = \"\"\npass = \"p\"\nrunning = true\n", {empty(14, "user")}},
        {"user = 1\npass = \"p\"\n",
         {"strategies.toml:14: strategy: user is not a text; expected a text in quotes"}},
    };
    for (const auto& [login, mistakes] : rows) {
        const CConfigFolder folder;
        listenOn(folder, "127.0.0.1:9000", login);
        EXPECT_EQ(folder.mistakes(), mistakes) << login;
    }
}

TEST(StrategyFile, AnUnfinishedSocketNeedsNoLoginYet) {
    const CConfigFolder folder;
    folder.replace("strategies.toml", "channel = 2\nsource = \"file\"\npath = \"orders/two.txt\"\n",
                   "channel = 2\nsource = \"signal\"\n");
    EXPECT_EQ(folder.mistakes(), std::vector<std::string>{});
}

TEST(StrategyFile, ASocketForOtherMachinesIsAMistake) {
    for (const std::string address : {"0.0.0.0:15150", "10.0.0.7:15150", "128.0.0.1:15150", "localhost:15150",
                                      "127.1:15150", "127.0.0.1.example.org:15150"}) {
        const CConfigFolder folder;
        listenOn(folder, address);
        EXPECT_EQ(folder.mistakes(), std::vector<std::string>{
                                         "strategies.toml:13: strategy: path \"" + address +
                                         "\" is open to other machines; expected an address of "
                                         "127.0.0.0/8, or allow_remote = true under [socket] in desk.toml"});
    }
}

TEST(StrategyFile, ASocketForThisMachineIsNoMistake) {
    for (const char* address : {"127.0.0.1:15150", "127.255.3.4:1"}) {
        const CConfigFolder folder;
        listenOn(folder, address);
        EXPECT_EQ(folder.mistakes(), std::vector<std::string>{}) << address;
    }
}

TEST(StrategyFile, ASocketForOtherMachinesMayBeAllowed) {
    const CConfigFolder folder;
    listenOn(folder, "0.0.0.0:15150");
    folder.replace("desk.toml", "[settings.stock]", "[socket]\nallow_remote = true\n\n[settings.stock]");
    EXPECT_EQ(folder.mistakes(), std::vector<std::string>{});
}

TEST(StrategyFile, AnyRightOfOthersToAPasswordIsAMistake) {
    using std::filesystem::perms;
    const CConfigFolder folder;
    folder.setSecret("strategies.toml", false);
    EXPECT_EQ(folder.mistakes(), std::vector<std::string>{});
    folder.replace("strategies.toml", "path = \"orders/two.txt\"",
                   "path = \"orders/two.txt\"\npass = \"secret\"");
    for (const perms right : {perms::group_read, perms::group_write, perms::group_exec, perms::others_read,
                              perms::others_write, perms::others_exec}) {
        std::filesystem::permissions(folder.files().path("strategies.toml"),
                                     perms::owner_read | perms::owner_write | right);
        EXPECT_EQ(
            folder.mistakes(),
            std::vector<std::string>{"strategies.toml:0: contains a password, but other users have access to "
                                     "it; expected a file for its owner alone: chmod 600 strategies.toml"})
            << static_cast<unsigned>(right);
    }
    folder.setSecret("strategies.toml", true);
    EXPECT_EQ(folder.mistakes(), std::vector<std::string>{});
}

TEST(StrategyFile, NumbersAreWrittenTheSameWhateverTheLocale) {
    const CConfigFolder folder;
    folder.files().write("strategies.toml", kFull);
    folder.setSecret("strategies.toml", true);
    folder.replace("strategies.toml", "volume = 300", "volume = 1234500");
    const TC::COrderStrategyMap strategies = folder.load().config.strategies;
    ASSERT_TRUE(save(folder, strategies));
    const std::string text = folder.files().read("strategies.toml");
    const CCommaLocale comma;
    ASSERT_TRUE(save(folder, strategies));
    EXPECT_EQ(folder.files().read("strategies.toml"), text);
    const TC::COrderStrategyParam again = onlyStrategy(folder);
    EXPECT_EQ(again.m_nVolume, 1234500);
    EXPECT_EQ(again.m_dAmount, 12345.6789);
}

TEST(StrategyFile, NoStrategiesAreAFileToo) {
    const CConfigFolder folder;
    ASSERT_TRUE(save(folder, {}));
    const CLoadedConfig loaded = folder.load();
    EXPECT_TRUE(loaded.mistakes.empty());
    EXPECT_TRUE(loaded.config.strategies.isEmpty());
}

TEST(StrategyFile, SavedForItsOwnerAloneAndWithoutADraftLeft) {
    const CConfigFolder folder;
    ASSERT_TRUE(save(folder, folder.load().config.strategies));
    struct stat status {};
    ASSERT_EQ(::stat(folder.files().path("strategies.toml").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    EXPECT_FALSE(folder.files().exists("strategies.toml.new"));
}

TEST(StrategyFile, AFailedSaveNamesTheFileAndLeavesNothingBehind) {
    const CConfigFolder folder;
    const CDeskConfig config = folder.load().config;
    // A folder at this path cannot be opened as a file, and no file can replace it.
    std::filesystem::remove(folder.files().path("strategies.toml"));
    std::filesystem::create_directory(folder.files().path("strategies.toml"));
    const utils::KNError saved = CStrategyFile(folder.path(), config).save(config.strategies);
    EXPECT_FALSE(saved.isSuccess());
    EXPECT_EQ(saved.errorMsg().rfind(folder.files().path("strategies.toml") + ": ", 0), 0U)
        << saved.errorMsg();
    EXPECT_FALSE(folder.files().exists("strategies.toml.new"));
    EXPECT_FALSE(CStrategyFile(folder.files().path("none"), config).save(config.strategies).isSuccess());
}

} // namespace
} // namespace desk
