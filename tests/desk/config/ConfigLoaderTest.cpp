#include "desk/config/ConfigLoader.h"

#include "tests/desk/config/ConfigFolder.h"

#include <gtest/gtest.h>

namespace desk {
namespace {

using test::CConfigFolder;
using Mistakes = std::vector<std::string>;

TEST(ConfigLoader, AGoodFolderHasNoMistakes) {
    const CConfigFolder folder;
    EXPECT_EQ(folder.mistakes(), Mistakes{});
}

TEST(ConfigLoader, UserRightsAreWordsOrNumbers) {
    const CConfigFolder folder;
    const CUserEntry user = folder.load().config.user;
    EXPECT_EQ(user.name, "trader");
    EXPECT_EQ(user.kind, 100);
    EXPECT_EQ(user.rights, (std::set<int>{7, 8}));
}

TEST(ConfigLoader, UserKeysAllArrive) {
    const CConfigFolder folder;
    folder.replace("desk.toml", "kind = 100\n", R"(kind = 3
order_service = false
trade_framework = true
order_encryption = true
max_strategies = 5
max_socket_strategies = 6
file_interval_ms = 70
hint_bits = 9
messages = { "4" = [true, false] }
)");
    folder.replace("desk.toml", "[settings.stock]", R"([switches]
mdl_order_command_remark = true
mdl_order_pb_display = false
[desk]
accept_forced_confirm = true
confirm = "accept"
[settings.stock])");
    const CLoadedConfig loaded = folder.load();
    ASSERT_TRUE(loaded.mistakes.empty()) << loaded.mistakes[0].message;
    const CUserEntry& user = loaded.config.user;
    EXPECT_EQ(user.kind, 3);
    EXPECT_FALSE(user.orderService);
    EXPECT_EQ(loaded.config.confirm, EConfirm::Accept);
    EXPECT_TRUE(user.tradeFramework);
    EXPECT_TRUE(user.orderEncryption);
    EXPECT_EQ(user.maxStrategies, 5);
    EXPECT_EQ(user.maxSocketStrategies, 6);
    EXPECT_EQ(user.fileIntervalMs, 70);
    EXPECT_EQ(user.hintBits, 9);
    EXPECT_EQ(user.msgFlags.at(4), std::make_pair(true, false));
    EXPECT_EQ(loaded.config.switches,
              (std::set<std::string>{"mdl_order_command_guard", "mdl_order_command_remark",
                                     "mdl_order_confirm_guard", "mdl_order_confirm_read_only"}));
    EXPECT_TRUE(loaded.config.acceptForcedConfirm);
}

TEST(ConfigLoader, GuardsAreOnUnlessTheyAreTurnedOff) {
    const std::set<std::string> guard{"mdl_order_command_guard", "mdl_order_confirm_guard",
                                      "mdl_order_confirm_read_only"};
    const CConfigFolder folder;
    CLoadedConfig loaded = folder.load();
    ASSERT_TRUE(loaded.mistakes.empty()) << loaded.mistakes[0].message;
    EXPECT_EQ(loaded.config.switches, guard) << "without a table of switches";
    folder.replace("desk.toml", "[settings.stock]", "[switches]\n[settings.stock]");
    EXPECT_EQ(folder.load().config.switches, guard) << "with an empty table";
    folder.replace("desk.toml", "[switches]\n", "[switches]\nmdl_order_command_guard = true\n");
    loaded = folder.load();
    EXPECT_EQ(loaded.config.switches, guard);
    for (const CDiagnostic& warning : loaded.warnings)
        EXPECT_EQ(warning.message.find("mdl_order_command_guard"), std::string::npos) << warning.message;
    folder.replace("desk.toml", "mdl_order_command_guard = true",
                   "mdl_order_command_guard = false\nmdl_order_confirm_guard = false\n"
                   "mdl_order_confirm_read_only = false");
    EXPECT_EQ(folder.load().config.switches, std::set<std::string>());
}

TEST(ConfigLoader, PortfoliosKeepTheirRowsByKey) {
    const CConfigFolder folder;
    folder.replace("instruments.csv", "100028 1172", "100028 100003");
    folder.replace("desk.toml", "[[basket]]", R"([[portfolio]]
kind = 12
id = " my book"
rows = [{ market = "SZ", code = "000001", volume = 300 }]
[[portfolio]]
kind = 13
id = "main"
rows = [{ market = "SZ", code = "000001", volume = 1 }]
[[basket]])");
    const CLoadedConfig loaded = folder.load();
    ASSERT_TRUE(loaded.mistakes.empty()) << loaded.mistakes[0].message;
    ASSERT_EQ(loaded.config.portfolios.size(), 2U);
    const CPortfolioEntry& first = loaded.config.portfolios[0];
    EXPECT_EQ(first.kind, 12);
    EXPECT_EQ(first.id, " my book") << "a line keeps such blanks";
    ASSERT_EQ(first.rows.size(), 1U);
    EXPECT_EQ(first.rows[0].stockKey, "SZ000001");
    EXPECT_EQ(first.rows[0].volume, 300);
    EXPECT_EQ(loaded.config.portfolios[1].kind, 13);
}

/// An order needs a key of eight characters in capitals. A basket needs an instrument of certain types.
TEST(ConfigLoader, APortfolioRowThatNoOrderCouldSellIsAMistake) {
    for (const char* instrument : {"SZ,0000011,平原,100028 100003", "sz,000001,平原,100028 100003",
                                   "SZ,000001,平原,100003", "SZ,000001,平原,100028"}) {
        const std::string text = instrument;
        const std::string market = text.substr(0, 2), code = text.substr(3, text.find(',', 3) - 3);
        const CConfigFolder folder;
        folder.replace("instruments.csv", "SZ,000001,平原,100028 1172", text);
        folder.replace("quotes.csv", "SZ000001,", market + code + ",");
        folder.replace("quote_changes.csv", "SZ000001,", market + code + ",");
        folder.replace("desk.toml", "[[basket]]",
                       "[[portfolio]]\nkind = 12\nid = \"a\"\nrows = [{ market = \"" + market +
                           "\", code = \"" + code + "\", volume = 1 }]\n[[basket]]");
        ASSERT_EQ(folder.mistakes().size(), 1U) << instrument;
        EXPECT_NE(folder.mistakes()[0].find("cannot be sold from a portfolio"), std::string::npos)
            << instrument;
    }
}

/// In an order line the portfolio is between commas, after its kind. Blanks at its end are removed.
TEST(ConfigLoader, PortfoliosThatNoLineCanNameAreMistakes) {
    for (const char* id : {"", "a_b", "a,b", "a ", "a\\t", "a\\nb"}) {
        const CConfigFolder folder;
        folder.replace("instruments.csv", "100028 1172", "100028 100003");
        folder.replace("desk.toml", "[[basket]]",
                       "[[portfolio]]\nkind = 12\nid = \"" + std::string(id) +
                           "\"\nrows = [{ market = \"SZ\", code = \"000001\", volume = 1 }]\n[[basket]]");
        ASSERT_EQ(folder.mistakes().size(), 1U) << '[' << id << ']';
        EXPECT_NE(folder.mistakes()[0].find("without \"_\", \",\" and a blank at its end"), std::string::npos)
            << id;
    }
}

TEST(ConfigLoader, APortfolioOfOneKindAndIdIsDefinedOnce) {
    const CConfigFolder folder;
    folder.replace("instruments.csv", "100028 1172", "100028 100003");
    const std::string portfolio = "[[portfolio]]\nkind = 12\nid = \"a\"\nrows = [{ market = \"SZ\", "
                                  "code = \"000001\", volume = 1 }]\n";
    folder.replace("desk.toml", "[[basket]]", portfolio + portfolio + "[[basket]]");
    EXPECT_EQ(folder.mistakes(), Mistakes{"desk.toml:27: portfolio: portfolio 12_a is defined twice"});
}

TEST(ConfigLoader, APortfolioHasAKind) {
    const CConfigFolder folder;
    folder.replace("instruments.csv", "100028 1172", "100028 100003");
    folder.replace("desk.toml", "[[basket]]", R"([[portfolio]]
id = "a"
rows = [{ market = "SZ", code = "000001", volume = 1 }]
[[basket]])");
    EXPECT_EQ(
        folder.mistakes(),
        Mistakes{"desk.toml:22: portfolio: key \"kind\" is missing in the table that begins on line 21"});
}

/// The row would buy the SH instrument with the same code.
TEST(ConfigLoader, ABasketRowWhoseCodeMeansAnotherInstrumentIsAMistake) {
    const CConfigFolder folder;
    folder.replace("instruments.csv", "SZ,000001,平原", "SH,000001,同码,100028,100,22,18\nSZ,000001,平原");
    folder.replace("desk.toml", "market = \"SH\", code = \"600000\"", "market = \"SZ\", code = \"000001\"");
    folder.replace("quotes.csv", "SZ000001,20", "SH000001,20,19.99,100,,,20.01,200\nSZ000001,20");
    EXPECT_EQ(
        folder.mistakes(),
        Mistakes{"desk.toml:23: basket.rows: code \"000001\" means SH000001 in a basket, not SZ000001"});
}

TEST(ConfigLoader, ABasketRowOfAnotherMarketIsAMistake) {
    const struct {
        const char* code;
        const char* means;
    } rows[] = {{"830001", "nothing"}, {"000001", "SZ000001"}};
    for (const auto& row : rows) {
        const std::string code = row.code;
        const CConfigFolder folder;
        folder.replace("instruments.csv", "SZ,000001,平原",
                       "BJ," + code + ",北,100028,100,22,18\nSZ,000001,平原");
        folder.replace("quotes.csv", "SZ000001,20", "BJ" + code + ",20,19.99,100,,,20.01,200\nSZ000001,20");
        folder.replace("desk.toml", "market = \"SH\", code = \"600000\"",
                       "market = \"BJ\", code = \"" + code + "\"");
        EXPECT_EQ(folder.mistakes(), Mistakes{"desk.toml:23: basket.rows: code \"" + code + "\" means " +
                                              row.means + " in a basket, not BJ" + code});
    }
}

TEST(ConfigLoader, ABasketRowOfAStockThatTradesUnderItsKeyAloneIsAMistake) {
    const CConfigFolder folder;
    folder.replace("instruments.csv", "浦江,100028", "浦江,100003");
    EXPECT_EQ(folder.mistakes(),
              Mistakes{"desk.toml:23: basket.rows: code \"600000\" means nothing in a basket, not SH600000"});
}

TEST(ConfigLoader, AccountsHaveTheirFundsAndPositions) {
    const CConfigFolder folder;
    const CDeskConfig config = folder.load().config;
    ASSERT_EQ(config.accounts.size(), 2U);
    EXPECT_EQ(config.accounts[0].key, "A1");
    EXPECT_EQ(config.accounts[0].broker, TC::EQDBrokerType::Stock);
    EXPECT_EQ(config.accounts[0].funds, 1000.0);
    EXPECT_EQ(config.accounts[1].broker, TC::EQDBrokerType::Credit);
    ASSERT_EQ(config.accounts[0].positions.size(), 1U);
    const CPositionEntry& position = config.accounts[0].positions[0];
    EXPECT_EQ(position.stockKey, "SH600000");
    EXPECT_EQ(position.volume, 500);
    EXPECT_EQ(position.available, 300);
    EXPECT_EQ(position.cost, 9.5);
}

TEST(ConfigLoader, APositionWithoutAvailableCanBeSoldWhole) {
    const CConfigFolder folder;
    folder.replace("positions.csv", "500,300,", "500,,");
    EXPECT_EQ(folder.load().config.accounts.at(0).positions.at(0).available, 500);
}

TEST(ConfigLoader, GroupsAndBasketsKeepTheirNames) {
    const CConfigFolder folder;
    const CDeskConfig config = folder.load().config;
    ASSERT_EQ(config.groups.size(), 1U);
    EXPECT_EQ(config.groups[0].name, "main");
    EXPECT_EQ(config.groups[0].members.at(0).accountKey, "A1");
    EXPECT_EQ(config.groups[0].members.at(0).weight, 6);
    const TC::CBasketSetting basket = config.baskets.value(QStringLiteral("蓝筹"));
    ASSERT_EQ(basket.m_rows.size(), 1);
    EXPECT_EQ(basket.m_rows[0].m_strCode, QStringLiteral("600000"));
    EXPECT_EQ(basket.m_rows[0].m_nVolume, 100);
}

TEST(ConfigLoader, DefaultSettingsAreKeptByKind) {
    const CConfigFolder folder;
    const CDeskConfig config = folder.load().config;
    const TC::COrderSetting& setting = config.defaultSettings.at(TC::EDefaultSetting::Stock);
    EXPECT_EQ(setting.m_ePriceType, TC::EPriceType::Buy1);
    EXPECT_EQ(setting.m_strCmdLog, "早盘");
    EXPECT_FALSE(setting.m_bFirstLimitOn);
}

TEST(ConfigLoader, InstrumentsHaveTypesUnitsAndLimits) {
    const CConfigFolder folder;
    const CDeskConfig config = folder.load().config;
    ASSERT_EQ(config.instruments.size(), 2U);
    const CInstrumentEntry& instrument = config.instruments[1];
    EXPECT_EQ(instrument.key(), "SZ000001");
    EXPECT_EQ(instrument.name, "平原");
    EXPECT_EQ(instrument.types, (std::set<int>{1172, 100028}));
    EXPECT_EQ(instrument.unit, 100);
    EXPECT_EQ(instrument.uiUnit, 100) << "without a unit of its own the trading unit is shown";
    EXPECT_EQ(instrument.upperLimit, 22);
    EXPECT_EQ(instrument.lowerLimit, 18);
    EXPECT_TRUE(TC::isInvalidPrice(instrument.referencePrice));
}

TEST(ConfigLoader, AQuoteWithoutACellHasAnEmptyLevel) {
    const CConfigFolder folder;
    const CDeskConfig config = folder.load().config;
    ASSERT_EQ(config.quotes.size(), 2U);
    EXPECT_EQ(config.quotes[0].buy[1].price, 9.98);
    EXPECT_EQ(config.quotes[0].buy[1].volume, 300);
    EXPECT_TRUE(TC::isInvalidPrice(config.quotes[1].buy[1].price));
    EXPECT_TRUE(TC::isInvalidPrice(config.quotes[0].sell[9].price));
    EXPECT_TRUE(TC::isInvalidPrice(config.quotes[0].previousClose));
}

TEST(ConfigLoader, QuoteChangesAreSortedByTime) {
    const CConfigFolder folder;
    const CDeskConfig config = folder.load().config;
    ASSERT_EQ(config.quoteChanges.size(), 2U);
    EXPECT_EQ(config.quoteChanges[0].quote.stockKey, "SZ000001");
    EXPECT_EQ(config.quoteChanges[1].offsetSeconds, 5);
}

TEST(ConfigLoader, ChangesAndPositionsMayBeMissing) {
    const CConfigFolder folder;
    std::filesystem::remove(folder.files().path("quote_changes.csv"));
    std::filesystem::remove(folder.files().path("positions.csv"));
    EXPECT_EQ(folder.mistakes(), Mistakes{});
}

TEST(ConfigLoader, TheOtherFilesMayNot) {
    const CTempFolder empty;
    std::vector<std::string> files;
    for (const CDiagnostic& mistake : loadDeskConfig(empty.path()).mistakes)
        files.push_back(mistake.file);
    EXPECT_EQ(files,
              (std::vector<std::string>{"instruments.csv", "desk.toml", "quotes.csv", "strategies.toml"}));
}

TEST(ConfigLoader, AMissingFolderIsTheOnlyMistake) {
    const CTempFolder folder;
    const auto mistakes = loadDeskConfig(folder.path("none")).mistakes;
    ASSERT_EQ(mistakes.size(), 1U);
    EXPECT_EQ(mistakes[0].message, "is not a folder; make one with: orderdesk new " + folder.path("none"));
    EXPECT_EQ(loadDeskConfig("").mistakes.size(), 1U);
    EXPECT_EQ(loadDeskConfig(std::string(5000, 'x')).mistakes.size(), 1U) << "a name too long for any system";
}

TEST(ConfigLoader, MistakesOfAllFilesAreReportedTogether) {
    const CConfigFolder folder;
    folder.replace("desk.toml", "kind = 100", "kind = true");
    folder.replace("quotes.csv", "SH600000,10,", "SH600000,ten,");
    folder.replace("strategies.toml", "channel = 2", "channel = 1");
    EXPECT_EQ(folder.mistakes(),
              (Mistakes{"desk.toml:3: user: kind is true; expected a whole number of at least 0",
                        "quotes.csv:2: last is \"ten\"; expected a number",
                        "strategies.toml:11: strategy: channel 1 is defined twice"}));
}

TEST(ConfigLoader, AGroupWithoutAccountsIsReportedBesideAnotherMistakeInIt) {
    const CConfigFolder folder;
    folder.replace("desk.toml",
                   "name = \"main\"\nbroker = \"stock\"\nmembers = [{ account = \"A1\", weight = 6 }]",
                   "name = \"\"\nbroker = \"stock\"\nmembers = []");
    EXPECT_EQ(folder.mistakes(),
              (Mistakes{"desk.toml:17: group: name must not be empty",
                        "desk.toml:19: group: group \"\" has no accounts; expected at least one"}));
}

TEST(ConfigLoader, AGroupWhoseOnlyMemberIsAMistakeIsNotReportedAsEmpty) {
    const CConfigFolder folder;
    folder.replace("desk.toml", "members = [{ account = \"A1\", weight = 6 }]", "members = [{ weight = 2 }]");
    EXPECT_EQ(folder.mistakes(), (Mistakes{"desk.toml:19: group.members: key \"account\" is missing"}));
}

TEST(PrepareOrderFiles, MakesTheFilesOfRunningStrategiesOnly) {
    const CConfigFolder folder;
    EXPECT_TRUE(prepareOrderFiles(folder.load().config).empty());
    EXPECT_TRUE(folder.files().exists("orders/one.txt"));
    EXPECT_EQ(folder.files().read("orders/one.txt"), "");
    EXPECT_FALSE(folder.files().exists("orders/two.txt"));
}

TEST(PrepareOrderFiles, LeavesAFileThatIsThere) {
    const CConfigFolder folder;
    std::filesystem::create_directory(folder.files().path("orders"));
    folder.files().write("orders/one.txt", "23,0,10.00,600000,100\n");
    EXPECT_TRUE(prepareOrderFiles(folder.load().config).empty());
    EXPECT_EQ(folder.files().read("orders/one.txt"), "23,0,10.00,600000,100\n");
}

TEST(PrepareOrderFiles, TellsAFolderAtTheFilesPlace) {
    const CConfigFolder folder;
    std::filesystem::create_directories(folder.files().path("orders/one.txt"));
    EXPECT_EQ(prepareOrderFiles(folder.load().config),
              Mistakes{folder.files().path("orders/one.txt") +
                       ": is not a file; expected a place for an order file"});
}

TEST(PrepareOrderFiles, TellsWhatCannotBeMade) {
    const CConfigFolder folder;
    folder.files().write("orders", "a file where a folder should be");
    const auto problems = prepareOrderFiles(folder.load().config);
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].rfind(folder.files().path("orders/one.txt") + ": ", 0), 0U) << problems[0];
}

} // namespace
} // namespace desk
