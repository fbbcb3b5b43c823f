#include "tests/desk/config/ConfigFolder.h"
#include "tests/desk/config/Spoiled.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ostream>

namespace desk {
namespace {

class DeskMistake : public testing::TestWithParam<test::CSpoiled> {};

TEST_P(DeskMistake, IsReportedWithFileLineAndWhatWasExpected) {
    const test::CConfigFolder folder;
    folder.replace(GetParam().file, GetParam().what, GetParam().by);
    EXPECT_EQ(folder.mistakes(), std::vector<std::string>{GetParam().expected});
}

const test::CSpoiled kDeskRows[] = {
    {"UnknownTable", "desk.toml", "[settings.stock]", "[setings]\n[settings.stock]",
     "desk.toml:25: desk.toml: unknown key \"setings\"; expected one of account, basket, desk, group, "
     "portfolio, settings, socket, switches, user"},
    {"UnknownKey", "desk.toml", "[settings.stock]", "[desk]\nfoo = 1\n[settings.stock]",
     "desk.toml:26: desk: unknown key \"foo\"; expected one of accept_forced_confirm, confirm"},
    {"MissingKey", "desk.toml", "name = \"trader\"\n", "",
     "desk.toml:3: user: key \"name\" is missing in the table that begins on line 1"},
    {"TextForNumber", "desk.toml", "kind = 100", "kind = \"100\"",
     "desk.toml:3: user: kind is \"100\"; expected a whole number of at least 0"},
    {"NegativeKind", "desk.toml", "kind = 100", "kind = -1",
     "desk.toml:3: user: kind is -1; expected a whole number of at least 0"},
    {"HugeKind", "desk.toml", "kind = 100", "kind = 4294967396",
     "desk.toml:3: user: kind is 4294967396; expected a whole number of at least 0"},
    {"NumberForText", "desk.toml", "name = \"trader\"", "name = 7",
     "desk.toml:2: user: name is not a text; expected a text in quotes"},
    {"UnknownRight", "desk.toml", "\"file_orders\"", "\"files\"",
     "desk.toml:4: user: rights is \"files\"; expected one of \"file_orders\", \"signal_orders\", or a "
     "number"},
    {"NegativeRight", "desk.toml", ", 7]", ", -7]",
     "desk.toml:4: user: rights is -7; expected one of \"file_orders\", \"signal_orders\", or a number"},
    {"RightsAreNoList", "desk.toml", "[\"file_orders\", 7]", "7",
     "desk.toml:4: user: rights is 7; expected a list of rights"},
    {"MessageWithoutFlags", "desk.toml", "kind = 100", "kind = 100\nmessages = { \"4\" = true }",
     "desk.toml:4: user.messages: expected a message type's number and two flags, such as \"0\" = [true, "
     "false]"},
    {"SwitchIsNoFlag", "desk.toml", "[settings.stock]",
     "[switches]\nmdl_order_pb_display = 1\n[settings.stock]",
     "desk.toml:26: switches: mdl_order_pb_display is 1; expected true or false"},
    {"MessageWithoutNumber", "desk.toml", "kind = 100", "kind = 100\nmessages = { \"\" = [true, true] }",
     "desk.toml:4: user.messages: expected a message type's number and two flags, such as \"0\" = [true, "
     "false]"},
    {"MessageOfHugeNumber", "desk.toml", "kind = 100",
     "kind = 100\nmessages = { \"99999999999\" = [true, true] }",
     "desk.toml:4: user.messages: expected a message type's number and two flags, such as \"0\" = [true, "
     "false]"},
    {"MessageOfNegativeNumber", "desk.toml", "kind = 100", "kind = 100\nmessages = { \"-3\" = [true, true] }",
     "desk.toml:4: user.messages: expected a message type's number and two flags, such as \"0\" = [true, "
     "false]"},
    {"UnknownSwitch", "desk.toml", "[settings.stock]",
     "[switches]\nmdl_order_remark = true\n[settings.stock]",
     "desk.toml:26: switches: unknown key \"mdl_order_remark\"; expected one of mdl_order_command_guard, "
     "mdl_order_command_remark, "
     "mdl_order_compose_basket_buy_sell, mdl_order_compose_hedge, mdl_order_confirm_guard, "
     "mdl_order_confirm_read_only, mdl_order_credit_special_code, mdl_order_file_guard, "
     "mdl_order_market_if_touched, "
     "mdl_order_pb_display, "
     "mdl_order_service_force_confirm, "
     "mdl_order_socket_guard, "
     "mdl_order_split_orderNum, mdl_order_trigger_price"},
    {"ListExpected", "desk.toml", "[{ account = \"A1\", weight = 6 }]",
     "[{ account = \"A1\", weight = 6 }, \"C1\"]",
     "desk.toml:19: group: members is \"C1\"; expected a table"},
    {"TableExpected", "desk.toml", "[settings.stock]", "[settings]\nfuture = 1\n[settings.stock]",
     "desk.toml:26: settings: future is 1; expected a table"},
    {"UnknownPriceType", "desk.toml", "\"buy1\"", "\"buy11\"",
     "desk.toml:26: settings.stock: price_type is \"buy11\"; expected one of \"buy1\", \"buy10\", \"buy2\", "
     "\"buy3\", \"buy4\", "
     "\"buy5\", \"buy6\", \"buy7\", \"buy8\", \"buy9\", \"latest\", \"sell1\", \"sell10\", \"sell2\", "
     "\"sell3\", \"sell4\", \"sell5\", \"sell6\", \"sell7\", \"sell8\", \"sell9\", \"specified\", or a "
     "number"},
    {"BrokerByNumber", "desk.toml", "broker = \"credit\"", "broker = 3",
     "desk.toml:13: account: broker is 3; expected one of \"credit\", \"future\", \"future_option\", "
     "\"gold\", \"hgt\", "
     "\"neeq\", \"sgt\", \"stock\", \"stock_option\""},
    {"DuplicateAccount", "desk.toml", "\"C1\"", "\"A1\"",
     "desk.toml:12: account: account \"A1\" is defined twice"},
    {"EmptyAccountKey", "desk.toml", "\"C1\"", "\"\"", "desk.toml:12: account: key must not be empty"},
    {"NegativeFunds", "desk.toml", "1000.0", "-1.0", "desk.toml:9: account: funds must not be negative"},
    {"EndlessFunds", "desk.toml", "1000.0", "inf",
     "desk.toml:9: account: funds is inf; expected a finite number"},
    {"FundsThatAreNoNumber", "desk.toml", "1000.0", "nan",
     "desk.toml:9: account: funds is nan; expected a finite number"},
    {"DuplicateGroup", "desk.toml", "[[basket]]",
     "[[group]]\nname = \"main\"\nbroker = \"stock\"\nmembers = [{ account = \"A1\" }]\n[[basket]]",
     "desk.toml:22: group: group \"main\" is defined twice"},
    {"PortfolioWithoutRows", "desk.toml", "[[basket]]",
     "[[portfolio]]\nkind = 12\nid = \"a\"\nrows = []\n[[basket]]",
     "desk.toml:24: portfolio: there are no rows; expected at least one"},
    {"PortfolioThatNoBasketTakes", "desk.toml", "[[basket]]",
     "[[portfolio]]\nkind = 12\nid = \"a\"\nrows = [{ market = \"SZ\", code = \"000001\", volume = 1 }]\n"
     "[[basket]]",
     "desk.toml:24: portfolio.rows: instrument \"SZ000001\" cannot be sold from a portfolio; expected a key "
     "of "
     "eight characters, in capitals, and type 100028 with one of a basket's in instruments.csv"},
    {"PortfolioOfADividedKey", "desk.toml", "[[basket]]",
     "[[portfolio]]\nkind = 12\nid = \"a\"\nrows = [{ market = \"SH6\", code = \"00000\", volume = 1 }]\n"
     "[[basket]]",
     "desk.toml:24: portfolio.rows: instrument \"SH600000\" is unknown; expected market and code of a stock "
     "in "
     "instruments.csv"},
    {"PortfolioOfAnUnknownStock", "desk.toml", "[[basket]]",
     "[[portfolio]]\nkind = 12\nid = \"a\"\nrows = [{ market = \"SH\", code = \"999999\", volume = 1 "
     "}]\n[[basket]]",
     "desk.toml:24: portfolio.rows: instrument \"SH999999\" is unknown; expected market and code of a stock "
     "in instruments.csv"},
    {"GroupWithoutAccounts", "desk.toml", "[{ account = \"A1\", weight = 6 }]", "[]",
     "desk.toml:19: group: group \"main\" has no accounts; expected at least one"},
    {"UnknownMember", "desk.toml", "weight = 6 }]", "weight = 6 }, { account = \"A9\" }]",
     "desk.toml:19: group.members: account \"A9\" is unknown; expected the key of an [[account]]"},
    {"MemberTwice", "desk.toml", "weight = 6 }]", "weight = 6 }, { account = \"A1\" }]",
     "desk.toml:19: group.members: account \"A1\" is defined twice in the group"},
    {"MemberOfAnotherBroker", "desk.toml", "weight = 6 }]", "weight = 6 }, { account = \"C1\" }]",
     "desk.toml:19: group: account \"C1\" is of another broker type than the group \"main\""},
    {"WeightOfZero", "desk.toml", "weight = 6", "weight = 0",
     "desk.toml:19: group.members: weight must be above 0"},
    {"EndlessWeight", "desk.toml", "weight = 6", "weight = inf",
     "desk.toml:19: group.members: weight is inf; expected a finite number"},
    {"GroupWithoutName", "desk.toml", "[[basket]]",
     "[[group]]\nname = \"\"\nbroker = \"stock\"\nmembers = [{ account = \"A1\" }]\n[[basket]]",
     "desk.toml:22: group: name must not be empty"},
    {"BasketWithoutName", "desk.toml", "name = \"蓝筹\"", "name = \"\"",
     "desk.toml:22: basket: name must not be empty"},
    {"BasketWithNegativeWeight", "desk.toml", "weight = 1.0", "weight = -1.0",
     "desk.toml:23: basket.rows: weight must not be negative"},
    {"BasketPriceOfZero", "desk.toml", "weight = 1.0", "weight = 1.0, price = 0",
     "desk.toml:23: basket.rows: price must be above 0; leave it out if there is no price"},
    {"DuplicateBasket", "desk.toml", "[settings.stock]",
     "[[basket]]\nname = \"蓝筹\"\nrows = []\n[settings.stock]",
     "desk.toml:26: basket: basket \"蓝筹\" is defined twice"},
    {"BasketOfUnknownInstrument", "desk.toml", "code = \"600000\"", "code = \"600009\"",
     "desk.toml:23: basket.rows: instrument \"SH600009\" is unknown; expected market and code of a stock in "
     "instruments.csv"},
};
INSTANTIATE_TEST_SUITE_P(InDeskToml, DeskMistake, testing::ValuesIn(kDeskRows), test::nameOf);

const test::CSpoiled kStrategyRows[] = {
    {"UnknownKey", "strategies.toml", "running = true", "runing = true",
     "strategies.toml:8: strategy: unknown key \"runing\"; expected one of account, account_mode, "
     "amount, by_percent, channel, code, command_flag, family, first_limit, first_limit_on, further1, "
     "further2, "
     "group, hedge_basket, hedge_param, name, order_kind, order_type, pass, path, percent, position_type, "
     "price_type, "
     "remark, running, second_limit, second_limit_on, setting, source, use_amount, user, volume"},
    {"HedgeThatIsNoObject", "strategies.toml", "family = \"stock\"\nrunning",
     "family = \"stock\"\nhedge_param = \"[1]\"\nrunning",
     "strategies.toml:8: strategy: hedge_param: the text does not begin with {; expected a JSON object"},
    {"SlotThatIsNone", "strategies.toml", "family = \"stock\"\nrunning",
     "family = \"stock\"\nsetting = [{ slot = 16 }]\nrunning",
     "strategies.toml:8: strategy.setting: slot is 16; expected a slot's number, 0 to 15"},
    {"SettingOfTheFamilysOwnSlot", "strategies.toml", "family = \"stock\"\nrunning",
     "family = \"stock\"\nsetting = [{ slot = 0 }]\nrunning",
     "strategies.toml:8: strategy.setting: slot 0 is defined twice; the settings of the family's own slot "
     "are in [[strategy]]"},
    {"SettingWithoutSlot", "strategies.toml", "family = \"stock\"\nrunning",
     "family = \"stock\"\nsetting = [{ price_type = 4 }]\nrunning",
     "strategies.toml:8: strategy.setting: key \"slot\" is missing"},
    {"VolumeByPercent", "strategies.toml", "running = true", "percent = 0.5",
     "strategies.toml:8: strategy: volumes by a percent of the account are not traded; expected volume or "
     "amount"},
    {"Algorithm", "strategies.toml", "running = true", "order_type = 7",
     "strategies.toml:8: strategy: order_type is 7; the desk trades plain orders (0) only"},
    {"BareStockCode", "strategies.toml", "running = true", "code = \"600000\"",
     "strategies.toml:8: strategy: code \"600000\" has no market; expected \"SH600000\""},
    {"ChannelTwice", "strategies.toml", "channel = 2", "channel = 1",
     "strategies.toml:11: strategy: channel 1 is defined twice"},
    {"ChannelOfZero", "strategies.toml", "channel = 2", "channel = 0",
     "strategies.toml:11: strategy: channel is 0; expected a whole number of at least 1"},
    {"UnknownAccount", "strategies.toml", "\"A1\"", "\"A9\"",
     "strategies.toml:6: strategy: account \"A9\" is unknown; expected the key of an [[account]]"},
    {"AccountOfAnotherBroker", "strategies.toml", "\"A1\"", "\"C1\"",
     "strategies.toml:6: strategy: account \"C1\" is of a broker type that the family does not trade on"},
    {"UnknownGroup", "strategies.toml", "\"main\"", "\"other\"",
     "strategies.toml:14: strategy: group \"other\" is unknown among the groups that the family trades on"},
    {"GroupOfAnotherFamily", "strategies.toml", "group = \"main\"\nfamily = \"stock\"",
     "group = \"main\"\nfamily = \"future\"",
     "strategies.toml:14: strategy: group \"main\" is unknown among the groups that the family trades on"},
    {"AccountAndGroup", "strategies.toml", "group = \"main\"", "group = \"main\"\naccount = \"A1\"",
     "strategies.toml:15: strategy: expected either \"group\" or \"account\""},
    {"UnknownFamily", "strategies.toml", "group = \"main\"\nfamily = \"stock\"",
     "group = \"main\"\nfamily = \"stocks\"",
     "strategies.toml:15: strategy: family is \"stocks\"; expected one of \"basket\", \"credit\", "
     "\"future\", \"future_basket\", \"future_option\", "
     "\"gold\", \"hgt\", \"neeq\", \"sgt\", \"stock\", \"stock_option\""},
    {"UnknownSource", "strategies.toml", "channel = 2\nsource = \"file\"", "channel = 2\nsource = \"dbf\"",
     "strategies.toml:12: strategy: source is \"dbf\"; expected one of \"file\", \"interface\", \"signal\", "
     "\"table\""},
    {"NoPath", "strategies.toml", "path = \"orders/two.txt\"\n", "running = true\n",
     "strategies.toml:15: strategy: key \"path\" is missing in the table that begins on line 10: where the "
     "orders come from"},
    {"PathTwice", "strategies.toml", "orders/two.txt", "orders/../orders/./one.txt",
     "strategies.toml:13: strategy: path \"orders/../orders/./one.txt\" is the path of channel 1 too"},
    {"TablesPathTwice", "strategies.toml", "channel = 2\nsource = \"file\"\npath = \"orders/two.txt\"",
     "channel = 2\nsource = \"table\"\npath = \"orders/one.txt\"",
     "strategies.toml:13: strategy: path \"orders/one.txt\" is the path of channel 1 too"},
    {"PasswordWithoutQuotes", "strategies.toml", "running = true", "pass = 1234",
     "strategies.toml:8: strategy: pass is not a text; expected a text in quotes"},
    {"UnknownCode", "strategies.toml", "running = true", "code = \"600009\"",
     "strategies.toml:8: strategy: code \"600009\" is unknown; expected an instrument of instruments.csv, "
     "with its market unless it is a derivative"},
    {"AmountOfZero", "strategies.toml", "running = true", "amount = 0.0",
     "strategies.toml:8: strategy: amount must be above 0"},
    {"EndlessAmount", "strategies.toml", "running = true", "amount = inf",
     "strategies.toml:8: strategy: amount is inf; expected a finite number"},
    {"NoTables", "strategies.toml", "[[strategy]]\nchannel = 1\n", "[other]\nchannel = 1\n",
     "strategies.toml:1: strategies.toml: unknown key \"other\"; expected one of strategy"},
};
INSTANTIATE_TEST_SUITE_P(InStrategies, DeskMistake, testing::ValuesIn(kStrategyRows), test::nameOf);

const test::CSpoiled kTableRows[] = {
    {"NoMarket", "instruments.csv", "SZ,000001", ",SZ000001",
     "instruments.csv:3: expected a market and a code"},
    {"InstrumentTwice", "instruments.csv", "SH,600000,", "SZ,000001,甲,,100,,\nSH,600000,",
     "instruments.csv:4: instrument \"SZ000001\" is defined on line 2 already"},
    {"InstrumentWithoutQuote", "instruments.csv", "SZ,000001,", "SZ,000002,乙,,100,,\nSZ,000001,",
     "instruments.csv:3: instrument \"SZ000002\" has no quote; expected a row in quotes.csv"},
    {"BadType", "instruments.csv", "100028 1172", "100028;1172",
     "instruments.csv:3: types has \"100028;1172\"; expected numbers separated by blanks"},
    {"UnitOfZero", "instruments.csv", "100028 100003,100,11,9", "100028,0,11,9",
     "instruments.csv:2: units must be at least 1"},
    {"UnitThatIsNoNumber", "instruments.csv", "100028 100003,100,11,9", "100028,1O0,11,9",
     "instruments.csv:2: unit is \"1O0\"; expected a whole number"},
    {"LimitsTheWrongWayRound", "instruments.csv", "11,9", "9,11",
     "instruments.csv:2: lower_limit is above upper_limit"},
    {"LimitOfZero", "instruments.csv", "11,9", "11,0",
     "instruments.csv:2: lower_limit must be above 0; leave it empty if there is no price"},
    {"UnknownColumn", "instruments.csv", "lower_limit", "low_limit",
     "instruments.csv:1: unknown column \"low_limit\"; expected one of market, code, name, product, types, "
     "unit, ui_unit, upper_limit, lower_limit, reference_price, transfer_kind, kind, multiplier, "
     "margin_rate"},
    {"QuoteOfUnknownInstrument", "quotes.csv", "SH600000,", "SH600009,10,,,,,,\nSH600000,",
     "quotes.csv:2: instrument \"SH600009\" is unknown; expected market and code of a row in "
     "instruments.csv"},
    {"QuoteTwice", "quotes.csv", "SH600000,10,", "SH600000,10,,,,,,\nSH600000,10,",
     "quotes.csv:3: instrument \"SH600000\" has a quote on line 2 already"},
    {"PriceThatIsNoNumber", "quotes.csv", "9.99,100,9.98", "9.9.9,100,9.98",
     "quotes.csv:2: bid1 is \"9.9.9\"; expected a number"},
    {"EndlessPrice", "quotes.csv", "SH600000,10,", "SH600000,inf,",
     "quotes.csv:2: last is \"inf\"; expected a number"},
    {"PriceOfZero", "quotes.csv", "SH600000,10,", "SH600000,0,",
     "quotes.csv:2: last must be above 0; leave it empty if there is no price"},
    {"NegativeVolume", "quotes.csv", "9.99,100,9.98", "9.99,-100,9.98",
     "quotes.csv:2: bid1_volume must not be negative"},
    {"CrossedBook", "quotes.csv", "10.01,200", "9.99,200", "quotes.csv:2: ask1 is not above bid1"},
    {"BookOutOfOrder", "quotes.csv", "9.98,300", "10.00,300", "quotes.csv:2: bid1 is not above bid2"},
    {"ChangeBeforeTheStart", "quote_changes.csv", "5,SH600000", "-5,SH600000",
     "quote_changes.csv:2: after_seconds must not be negative"},
    {"ChangeOfUnknownInstrument", "quote_changes.csv", "SH600000", "SH600009",
     "quote_changes.csv:2: instrument \"SH600009\" is unknown; expected market and code of a row in "
     "instruments.csv"},
    {"PositionOfUnknownAccount", "positions.csv", "A1,", "A9,",
     "positions.csv:2: account \"A9\" is unknown; expected the key of an [[account]]"},
    {"PositionTwice", "positions.csv", "A1,SH600000", "A1,SH600000,100,,\nA1,SH600000",
     "positions.csv:3: the position is defined twice"},
    {"MoreAvailableThanThereIs", "positions.csv", "500,300", "300,500",
     "positions.csv:2: available is more than volume"},
    {"NegativeCost", "positions.csv", "9.5", "-9.5", "positions.csv:2: cost must not be negative"},
};
INSTANTIATE_TEST_SUITE_P(InTables, DeskMistake, testing::ValuesIn(kTableRows), test::nameOf);

TEST(DeskMistakes, MalformedTomlIsReportedWithItsLine) {
    const test::CConfigFolder folder;
    folder.replace("strategies.toml", "channel = 2", "channel = ");
    const auto mistakes = folder.mistakes();
    ASSERT_EQ(mistakes.size(), 1U);
    EXPECT_EQ(mistakes[0].rfind("strategies.toml:11: is not TOML: ", 0), 0U) << mistakes[0];
}

TEST(DeskMistakes, AFolderAtAFilesPlaceIsNoEmptyFile) {
    for (const char* file :
         {"desk.toml", "strategies.toml", "quotes.csv", "positions.csv", "quote_changes.csv"}) {
        const test::CConfigFolder folder;
        std::filesystem::remove(folder.files().path(file));
        std::filesystem::create_directory(folder.files().path(file));
        const auto reported = folder.mistakes();
        EXPECT_TRUE(std::any_of(reported.begin(), reported.end(), [&](const std::string& mistake) {
            return mistake.rfind(std::string(file) + ":0: cannot be read", 0) == 0;
        })) << file;
    }
}

TEST(DeskMistakes, FilesSavedAsGbkAreReported) {
    const test::CConfigFolder folder;
    folder.replace("instruments.csv", "浦江", "\xC6\xD6\xBD\xAD");
    EXPECT_EQ(folder.mistakes(),
              std::vector<std::string>{"instruments.csv:2: is not UTF-8; expected the table saved as UTF-8"});
    folder.replace("desk.toml", "早盘", "\xD4\xE7\xC5\xCC");
    EXPECT_EQ(folder.load().mistakes.at(1).file, "desk.toml");
    EXPECT_EQ(folder.load().mistakes.at(1).message.rfind("is not TOML: ", 0), 0U);
}

} // namespace
} // namespace desk
