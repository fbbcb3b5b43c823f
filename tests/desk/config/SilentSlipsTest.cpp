// Mistakes that the check cannot detect, each with the reason.
#include "tests/desk/config/SingleMistakes.h"

namespace desk::test {
namespace {

constexpr const char* kForPeople = "a word for people, free to choose";
constexpr const char* kSound =
    "another value that is as good; nothing else in the folder says which is meant";

const std::vector<CSlip> kSilentSlips = {
    {"UserName", "desk.toml", "name = \"demo\"", "name = \"dmeo\"", "", kForPeople},
    {"DisplayId", "desk.toml", "display_id = \"10003\"", "display_id = \"10009\"", "", kForPeople},
    {"StrategyName", "strategies.toml", "name = \"single\"", "name = \"group\"", "", kForPeople},
    {"InstrumentName", "instruments.csv", "江河重工", "海港能源", "", kForPeople},
    {"NoVolumeButAnAmount", "strategies.toml", "amount = 50000.0", "amount = 50000.0\nvolume = 0", "",
     "the volume follows from the amount"},
    {"BasketTimesOne", "strategies.toml", "family = \"basket\"\n",
     "family = \"basket\"\ncode = \"SH600102\"\n", "",
     "the volume is how many times the basket is traded, not shares"},
    {"Funds", "desk.toml", "funds = 200000.0", "funds = 20000000.0", "", kSound},
    {"Weight", "desk.toml", "weight = 6", "weight = 60", "", kSound},
    {"BasketVolume", "desk.toml", "code = \"600104\", volume = 200", "code = \"600104\", volume = 300", "",
     kSound},
    {"Account", "strategies.toml", "account = \"A3\"", "account = \"A2\"", "", kSound},
    {"Code", "strategies.toml", "code = \"SH600102\"", "code = \"SH600103\"", "", kSound},
    {"Volume", "strategies.toml", "volume = 200\n", "volume = 300\n", "", kSound},
    {"PriceType", "strategies.toml", "volume = 200\nprice_type = \"latest\"",
     "volume = 200\nprice_type = \"sell1\"", "", kSound},
    {"Port", "strategies.toml", "path = \"127.0.0.1:15150\"", "path = \"127.0.0.1:15151\"", "", kSound},
    {"Unit", "instruments.csv", "100028 100003,100,100,16.50", "100028 100003,10,10,16.50", "", kSound},
    {"PreviousClose", "quotes.csv", "SH600101,11,11,", "SH600101,11,15,", "",
     "the close of the day before may lie outside today's limits"},
    {"Cost", "positions.csv", "19.50", "195.0", "", kSound},
};

TEST(SingleMistakes, ThatCheckCannotFindHaveAReason) {
    const std::vector<std::string> silent = expectReported(kSilentSlips);
    EXPECT_EQ(silent.size(), kSilentSlips.size());
    for (const CSlip& slip : kSilentSlips)
        EXPECT_STRNE(slip.reason, "") << slip.name;
}

TEST(SingleMistakes, TheDemoFolderHasNoneAndNoWarnings) {
    EXPECT_EQ(checkOf({"", "desk.toml", "[user]", "[user]", ""}), std::vector<std::string>{});
}

TEST(SingleMistakes, AFolderWithoutARunningStrategyIsWarnedOf) {
    const CTempFolder folder;
    std::ostringstream out;
    ASSERT_EQ(runNew(folder.path("desk"), false, out, out), 0);
    std::string strategies = folder.read("desk/strategies.toml");
    for (std::size_t at = 0; (at = strategies.find("running = true", at)) != std::string::npos;)
        strategies.replace(at, 14, "running = false");
    folder.write("desk/strategies.toml", strategies);
    std::ostringstream printed;
    EXPECT_EQ(runCheck(folder.path("desk"), printed), 0);
    EXPECT_EQ(linesOf(printed.str()).front(),
              "strategies.toml: warning: no strategy runs; expected running = true in one");
}

TEST(SingleMistakes, LimitsCountByKindIfTheyAreSplit) {
    const std::vector<std::string> reported =
        checkOf({"", "desk.toml",
                 "max_socket_strategies = 5                  # of order sockets; used only with "
                 "mdl_order_split_orderNum\nfile_interval_ms = 50                      # milliseconds "
                 "between two checks for order files\n\n[switches]                                 # "
                 "deployment switches that are on\n",
                 "max_socket_strategies = 1\n[switches]\nmdl_order_split_orderNum = true\n", ""});
    EXPECT_EQ(reported,
              std::vector<std::string>{"desk.toml:11: warning: max_socket_strategies under [user] is 1, "
                                       "but the limit is for 2 strategies; those with the highest channels "
                                       "are not loaded"});
}

} // namespace
} // namespace desk::test
