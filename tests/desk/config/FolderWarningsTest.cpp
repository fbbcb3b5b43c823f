// Settings that are allowed, but lose or change orders, have no effect, or open the desk to others.
#include "tests/desk/config/SingleMistakes.h"

#include <array>

namespace desk::test {
namespace {

const std::vector<CSlip> kWarnedSlips = {
    {"Messages", "desk.toml", "file_interval_ms = 50", "messages = { \"0\" = [true, false] } #",
     "desk.toml:12: warning: user: messages has no effect on the desk"},
    {"Framework", "desk.toml", "file_interval_ms = 50", "trade_framework = true #",
     "desk.toml:12: warning: user: the desk has no trade framework; it only shows a message about that"},
    {"PositionType", "strategies.toml", "volume = 200\n", "volume = 200\nposition_type = 9\n",
     "strategies.toml:26: warning: strategy: position_type has no effect on the desk"},
    {"Further", "strategies.toml", "volume = 200\n", "volume = 200\nfurther1 = 9\nfurther2 = 9\n",
     "strategies.toml:26: warning: strategy: further1 has no effect on the desk\n"
     "strategies.toml:27: warning: strategy: further2 has no effect on the desk"},
    {"BasketPrice", "desk.toml", "code = \"300301\", volume = 100",
     "code = \"300301\", price = 3.0, volume = 100",
     "desk.toml:162: warning: basket.rows: price has no effect: named baskets have no prices"},
    {"SocketGuardOff", "desk.toml", "mdl_order_socket_guard = true", "mdl_order_socket_guard = false",
     "desk.toml:22: warning: switches: mdl_order_socket_guard is off: clients have no limits for "
     "connections, "
     "line lengths, logins and orders"},
    {"FileGuardOff", "desk.toml", "mdl_order_file_guard = true", "mdl_order_file_guard = false",
     "desk.toml:18: warning: switches: mdl_order_file_guard is off: a part of a damaged or "
     "incomplete order file is carried out, and the file is deleted"},
    {"FileGuardLeftOut", "desk.toml", "mdl_order_file_guard = true", "#",
     "desk.toml:14: warning: switches: mdl_order_file_guard is off: "},
    {"RemoteAllowed", "desk.toml", "allow_remote = false", "allow_remote = true",
     "desk.toml:27: warning: socket: other machines may connect to the order sockets; logins and orders are "
     "not encrypted"},
    {"PbDisplay", "desk.toml", "mdl_order_command_remark = true", "mdl_order_pb_display = true",
     "desk.toml:15: warning: switches: mdl_order_pb_display has no effect on the desk"},
    {"DisplayIdOfAnotherAccount", "desk.toml", "display_id = \"10003\"", "display_id = \"10001\"",
     "desk.toml:48: warning: account: function calls for \"10001\" trade on the account \"A1\", not on "
     "\"A3\""},
    {"DisplayIdIsAKey", "desk.toml",
     "display_id = \"10002\"\nbroker = \"stock\"\nfunds = 600000.0\n\n[[account]]\nkey = \"A3\"\ndisplay_id "
     "= \"10003\"",
     "broker = \"stock\"\nfunds = 600000.0\n\n[[account]]\nkey = \"A3\"\ndisplay_id = \"A2\"",
     "desk.toml:47: warning: account: function calls for \"A2\" trade on the account \"A2\", not on \"A3\""},
    {"BasketAll", "desk.toml", "name = \"weighted\"", "name = \"All\"",
     "desk.toml:153: warning: basket: order 26 with the name \"all\" sells all positions, not this basket"},
    {"BasketBlank", "desk.toml", "name = \"weighted\"", "name = \"by weight\"",
     "desk.toml:153: warning: basket: an order file cannot name a basket with a blank or a comma in its "
     "name"},
    {"BasketComma", "desk.toml", "name = \"weighted\"", "name = \"a,b\"",
     "desk.toml:153: warning: basket: an order file cannot name a basket with a blank or a comma in its "
     "name"},
    {"BasketRowWithoutWeight", "desk.toml", "code = \"600103\", volume = 100, weight = 2.0",
     "code = \"600103\", volume = 100",
     "desk.toml:154: warning: basket: some rows have no weight; order 34 with an amount sells what is held "
     "of "
     "them"},
    {"BasketRowOfNothing", "desk.toml", "code = \"300301\", volume = 100, weight = 1.0", "code = \"300301\"",
     "desk.toml:162: warning: basket.rows: instrument \"SZ300301\" has neither a volume nor a weight; the "
     "row "
     "is left out"},
};

TEST(FolderWarnings, NameEachDangerousSetting) {
    EXPECT_EQ(expectReported(kWarnedSlips), std::vector<std::string>{});
}

/// The demo folder with several changes. Each is a file, a text and its replacement.
std::vector<std::string> checkWith(const std::vector<std::array<const char*, 3>>& changes) {
    const CTempFolder folder;
    std::ostringstream out;
    EXPECT_EQ(runNew(folder.path("desk"), false, out, out), 0);
    for (const auto& [file, what, by] : changes) {
        const std::string path = std::string("desk/") + file;
        std::string text = folder.read(path);
        const std::size_t place = text.find(what);
        EXPECT_NE(place, std::string::npos) << what;
        if (place == std::string::npos) continue;
        folder.write(path, text.replace(place, std::string(what).size(), by));
    }
    std::ostringstream printed;
    EXPECT_EQ(runCheck(folder.path("desk"), printed), 0) << printed.str();
    std::vector<std::string> lines = linesOf(printed.str());
    lines.pop_back();
    return lines;
}

using CLines = std::vector<std::string>;

TEST(FolderWarnings, RemarkThatDoesNotReachTheCommands) {
    EXPECT_EQ(checkWith({{"desk.toml", "mdl_order_command_remark = true", "mdl_order_command_remark = false"},
                         {"strategies.toml", "volume = 200\n", "volume = 200\nremark = \"early\"\n"}}),
              CLines{"desk.toml: warning: switches: mdl_order_command_remark is off: the remarks of the "
                     "settings do not reach the commands"});
}

TEST(FolderWarnings, ConfirmationsThatNobodyGives) {
    EXPECT_EQ(
        checkWith({{"desk.toml", "order_service = true ", "order_service = false\nhint_bits = 16 #"},
                   {"desk.toml", "accept_forced_confirm = false", "confirm = \"accept\""}}),
        CLines{"desk.toml:9: warning: user: order_service is false and hint_bits is 16, so orders must be "
               "confirmed; without a window the answer is confirm = \"accept\" under [desk]: they are "
               "sent, and nobody is asked"});
}

TEST(FolderWarnings, NoConfirmationIsNeededWithoutItsBits) {
    EXPECT_EQ(checkWith({{"desk.toml", "order_service = true ", "order_service = false\nhint_bits = 1 #"}}),
              CLines{});
}

TEST(FolderWarnings, SourceWithoutItsRight) {
    EXPECT_EQ(
        checkWith({{"desk.toml", "order_service = true ", "order_service = false\nhint_bits = 0 #"},
                   {"desk.toml", "\"signal_orders\", ", ""}}),
        CLines{"desk.toml: warning: user: order_service is false and rights has no \"signal_orders\", so 2 "
               "strategies of this source are not loaded"});
}

TEST(FolderWarnings, CodeOnBothMarkets) {
    EXPECT_EQ(
        checkWith({{"instruments.csv", "SZ,000201,", "SH,300301,x,STOCK,100028,100,100,,,40.00\nSZ,000201,"},
                   {"quotes.csv", "SH600102,20", "SH300301,40,40\nSH600102,20"},
                   {"desk.toml", "name = \"growth\"\nrows = [{ market = \"SZ\", code = \"300301\"",
                    "name = \"growth\"\nrows = [{ market = \"SZ\", code = \"300302\""}}),
        CLines{"instruments.csv:14: warning: code 300301 is on SH too: an order's line with the bare code "
               "means SH300301"});
}

TEST(FolderWarnings, CreditGroupOfSeveralAccounts) {
    EXPECT_EQ(
        checkWith({{"desk.toml", "[[group]]",
                    "[[account]]\nkey = \"C2\"\nbroker = \"credit\"\nfunds = 1.0\n[[group]]\nname = "
                    "\"lent\"\nbroker = \"credit\"\nmembers = [{ account = \"C1\" }, { account = \"C2\" "
                    "}]\n[[group]]"},
                   {"strategies.toml", "account = \"C1\"", "group = \"lent\""}}),
        CLines{"strategies.toml: warning: channel 7: group \"lent\" has several credit accounts: volumes "
               "are not divided in whole units, and parts that are not multiples of the unit are "
               "rejected"});
}

TEST(FolderWarnings, BasketStockWithoutABook) {
    EXPECT_EQ(
        checkWith({{"quotes.csv", "SZ300301,40,40,39.99", "SZ300301,40,40\n#"}}),
        CLines{"quotes.csv: warning: the book of SZ300301 is empty at the start: baskets leave the stock "
               "out, and portfolios do not sell it"});
}

TEST(FolderWarnings, KeysThatOrderLinesCannotName) {
    EXPECT_EQ(checkWith({{"desk.toml", "[[group]]",
                          "[[account]]\nkey = \"A 9\"\nbroker = \"stock\"\nfunds = 1.0\n[[group]]"},
                         {"desk.toml", "id = \"main\"", "id = \"主\""}})
                  .size(),
              2u);
}

} // namespace
} // namespace desk::test
