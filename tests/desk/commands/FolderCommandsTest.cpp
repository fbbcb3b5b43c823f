#include "desk/commands/CheckFolder.h"
#include "desk/commands/DemoFiles.h"
#include "desk/commands/NewFolder.h"
#include "desk/commands/RunDesk.h"
#include "desk/config/ConfigLoader.h"
#include "desk/config/Words.h"
#include "tests/desk/config/ConfigFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <sstream>

namespace desk {
namespace {

class NewFolder : public testing::Test {
protected:
    int runIn(const std::string& name) { return runNew(m_folder.path(name), false, m_out, m_err); }

    CTempFolder m_folder;
    std::ostringstream m_out, m_err;
};

TEST_F(NewFolder, WritesTheDemoFilesThemselves) {
    EXPECT_EQ(runIn("desk"), 0);
    EXPECT_EQ(m_err.str(), "");
    ASSERT_FALSE(demoFiles().empty());
    for (const CDemoFile& file : demoFiles())
        EXPECT_EQ(m_folder.read("desk/" + file.name), file.text) << file.name;
}

TEST_F(NewFolder, WithConfirmationItDiffersOnlyInDeskToml) {
    ASSERT_EQ(runNew(m_folder.path("desk"), true, m_out, m_err), 0);
    for (const CDemoFile& file : demoFiles())
        EXPECT_EQ(m_folder.read("desk/" + file.name) == file.text, file.name != "desk.toml") << file.name;
    const CLoadedConfig loaded = loadDeskConfig(m_folder.path("desk"));
    EXPECT_TRUE(loaded.mistakes.empty());
    ASSERT_EQ(loaded.warnings.size(), 1u);
    EXPECT_EQ(loaded.warnings[0].message,
              "user: order_service is false and hint_bits is 1073, so orders must be confirmed; without a "
              "window the "
              "answer is confirm = \"decline\" under [desk]: none of them is sent");
    EXPECT_FALSE(loaded.config.user.orderService);
    EXPECT_EQ(loaded.config.user.hintBits, 1073);
    EXPECT_EQ(loaded.config.confirm, EConfirm::Decline);
}

TEST_F(NewFolder, FilesAreForTheirOwnerAlone) {
    ASSERT_EQ(runIn("desk"), 0);
    struct stat status {};
    ASSERT_EQ(::stat(m_folder.path("desk/strategies.toml").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(NewFolder, TakesAFolderThatIsEmpty) {
    std::filesystem::create_directory(m_folder.path("desk"));
    EXPECT_EQ(runIn("desk"), 0);
    EXPECT_TRUE(m_folder.exists("desk/desk.toml"));
}

TEST_F(NewFolder, RefusesAFolderWithAnythingInIt) {
    std::filesystem::create_directory(m_folder.path("desk"));
    m_folder.write("desk/mine.txt", "mine");
    EXPECT_EQ(runIn("desk"), 2);
    EXPECT_EQ(m_err.str(), m_folder.path("desk") + ": the folder exists and is not empty\n");
    EXPECT_EQ(m_out.str(), "");
    EXPECT_FALSE(m_folder.exists("desk/desk.toml"));
}

TEST_F(NewFolder, RefusesAFileInThePlaceOfTheFolder) {
    m_folder.write("desk", "");
    EXPECT_EQ(runIn("desk"), 2);
    EXPECT_EQ(m_err.str().rfind(m_folder.path("desk") + ": cannot be written: ", 0), 0U) << m_err.str();
}

/// The folder that `new` writes, loaded.
class DemoFolder : public NewFolder {
protected:
    void SetUp() override {
        ASSERT_EQ(runIn("desk"), 0);
        CLoadedConfig loaded = loadDeskConfig(m_folder.path("desk"));
        ASSERT_TRUE(loaded.mistakes.empty()) << loaded.mistakes[0].file << ": " << loaded.mistakes[0].message;
        m_config = std::move(loaded.config);
    }
    bool hasType(int type) const {
        return std::any_of(m_config.instruments.begin(), m_config.instruments.end(),
                           [&](const CInstrumentEntry& entry) { return entry.types.count(type) > 0; });
    }

    CDeskConfig m_config;
};

TEST_F(DemoFolder, PassesTheCheck) {
    std::ostringstream out;
    EXPECT_EQ(runCheck(m_folder.path("desk"), out), 0);
    EXPECT_EQ(out.str(), m_folder.path("desk") + ": good; 14 accounts, 16 strategies, 19 instruments\n");
}

TEST_F(DemoFolder, MayIssueCommandsFromFilesAndSignals) {
    EXPECT_EQ(m_config.user.kind, 100);
    EXPECT_TRUE(m_config.user.orderService);
    EXPECT_EQ(m_config.user.rights, (std::set<int>{7, 8}));
}

TEST_F(DemoFolder, ListensForThisMachineBehindALoginAndTheGuard) {
    for (const int channel : {5, 16}) {
        const TC::COrderStrategyParam socket = m_config.strategies.value(channel);
        EXPECT_EQ(socket.m_eStrategyType, TC::EOrderStrategyType::Signal);
        EXPECT_EQ(socket.m_strSignalSource, QStringLiteral("127.0.0.1:15150"));
        EXPECT_FALSE(socket.m_strUser.isEmpty());
        EXPECT_FALSE(socket.m_strPass.isEmpty());
        EXPECT_TRUE(socket.isRunning());
    }
    EXPECT_EQ(m_config.switches.count("mdl_order_socket_guard"), 1u);
    EXPECT_EQ(m_config.switches.count("mdl_order_command_guard"), 1u);
    EXPECT_EQ(m_config.switches.count("mdl_order_file_guard"), 1u);
    EXPECT_FALSE(m_config.allowRemoteSocket);
}

TEST_F(DemoFolder, StartsAFileStrategyOfEachKind) {
    using TC::COrderStrategyParam;
    const auto& strategies = m_config.strategies;
    const auto count = [&](auto&& is) { return std::count_if(strategies.begin(), strategies.end(), is); };
    EXPECT_EQ(count([](const COrderStrategyParam& s) {
                  return s.isRunning() && s.m_eStrategyType == TC::EOrderStrategyType::File;
              }),
              strategies.size() - 2);
    EXPECT_GE(count([](const COrderStrategyParam& s) {
                  return s.m_eSelectedAccountType == TC::ESelectedAccountType::Account;
              }),
              1);
    EXPECT_GE(count([](const COrderStrategyParam& s) { return s.m_bUseAmount; }), 1);
    for (const auto& [word, number] : familyWords()) {
        const auto family = static_cast<TC::EOrderStrategyTradeType>(number);
        if (family == TC::EOrderStrategyTradeType::FutureBasket) continue; // checked like a basket
        EXPECT_GE(count([&](const COrderStrategyParam& s) { return s.m_eTradeType == family; }), 1) << word;
    }
}

TEST_F(DemoFolder, HasInstrumentsOfEachTypeThatTheRulesAskFor) {
    EXPECT_TRUE(hasType(100028));
    EXPECT_TRUE(hasType(1172));
    EXPECT_TRUE(hasType(126));
    EXPECT_FALSE(TC::isInvalidPrice(m_config.quotes.at(0).buy.back().price)) << "a book ten levels deep";
    EXPECT_FALSE(m_config.quoteChanges.empty());
}

TEST_F(DemoFolder, OrderFilesLieInTheFolder) {
    EXPECT_TRUE(prepareOrderFiles(m_config).empty());
    for (const TC::COrderStrategyParam& strategy : qAsConst(m_config.strategies)) {
        if (!strategy.comesFromFile()) continue;
        const std::string path = strategy.m_strSignalSource.toStdString();
        EXPECT_TRUE(std::filesystem::is_regular_file(path)) << path;
        EXPECT_EQ(path.rfind(m_folder.path("desk/orders/"), 0), 0U) << path;
    }
}

TEST(CheckFolder, PrintsEveryMistakeByFileAndLine) {
    const test::CConfigFolder folder;
    folder.replace("quotes.csv", "SH600000,10,", "SH600000,ten,");
    std::filesystem::remove(folder.files().path("strategies.toml"));
    std::ostringstream out;
    EXPECT_EQ(runCheck(folder.path(), out), 2);
    EXPECT_EQ(out.str(), "quotes.csv:2: last is \"ten\"; expected a number\n"
                         "strategies.toml: cannot be read; a desk folder must have it\n" +
                             folder.path() + ": 2 mistakes\n");
}

TEST_F(DemoFolder, MarginsBeyondTheFundsAreReportedByCheckAndNotStarted) {
    std::string text = m_folder.read("desk/desk.toml");
    const std::string funds = "funds = 2000000.0";
    ASSERT_NE(text.find(funds), std::string::npos);
    m_folder.write("desk/desk.toml", text.replace(text.find(funds), funds.size(), "funds = 500000.0"));
    const std::string mistake =
        "positions.csv: account F1: its positions hold 568800.0000 as margin, more than "
        "its funds of 500000.0000\n";
    std::ostringstream checked, run;
    EXPECT_EQ(runCheck(m_folder.path("desk"), checked), 2);
    EXPECT_EQ(checked.str(), mistake + m_folder.path("desk") + ": 1 mistake\n");
    EXPECT_EQ(runDesk(m_folder.path("desk"), 0.0, run, [] { return true; }), 2);
    EXPECT_EQ(run.str(), mistake + m_folder.path("desk") + ": not started, because of the mistakes above\n");
    EXPECT_FALSE(m_folder.exists("desk/paper.db"));
    m_folder.write("desk/paper.db", "");
    EXPECT_EQ(runDesk(m_folder.path("desk"), 0.0, run, [] { return true; }), 2) << "it holds no account yet";
    EXPECT_EQ(m_folder.read("desk/paper.db"), "");
}

TEST_F(DemoFolder, AccountThatTheBooksHoldStartsWhateverTheFolderSaysOfItsFunds) {
    std::ostringstream out;
    ASSERT_EQ(runDesk(m_folder.path("desk"), 0.0, out, [] { return true; }), 0) << out.str();
    std::string text = m_folder.read("desk/desk.toml");
    const std::string funds = "funds = 2000000.0";
    ASSERT_NE(text.find(funds), std::string::npos);
    text.replace(text.find(funds), funds.size(), "funds = 500000.0");
    m_folder.write("desk/desk.toml", text);
    EXPECT_EQ(runDesk(m_folder.path("desk"), 0.0, out, [] { return true; }), 0) << out.str();
    EXPECT_EQ(runCheck(m_folder.path("desk"), out), 2) << "the folder alone would not do for a new account";

    m_folder.write("desk/desk.toml",
                   text + "\n[[account]]\nkey = \"F9\"\nbroker = \"future\"\nfunds = 1.0\n");
    m_folder.write("desk/positions.csv",
                   m_folder.read("desk/positions.csv") + "F9,CFIF2609,long,1,1,4000,\n");
    std::ostringstream refused;
    EXPECT_EQ(runDesk(m_folder.path("desk"), 0.0, refused, [] { return true; }), 2);
    EXPECT_NE(refused.str().find("positions.csv: account F9: its positions hold"), std::string::npos);
    EXPECT_EQ(refused.str().find("account F1"), std::string::npos) << refused.str();
}

TEST_F(DemoFolder, StoreThatCannotBeReadIsReportedWithItsName) {
    m_folder.write("desk/paper.db", "not a database, but longer than nothing");
    std::ostringstream out;
    EXPECT_EQ(runDesk(m_folder.path("desk"), 0.0, out, [] { return true; }), 1);
    EXPECT_NE(out.str().find("cannot use the paper broker's store"), std::string::npos) << out.str();
}

TEST(CheckFolder, FundsBeyondTheRangeAreAMistakeOfTheirOwnFile) {
    const test::CConfigFolder folder;
    folder.replace("desk.toml", "funds = 1000.0", "funds = 1e14");
    std::ostringstream out;
    EXPECT_EQ(runCheck(folder.path(), out), 2);
    EXPECT_EQ(out.str().rfind("desk.toml: account A1: funds are negative or out of range", 0), 0U)
        << out.str();
}

TEST(CheckFolder, ChangesNothingInTheFolder) {
    const test::CConfigFolder folder;
    std::ostringstream out;
    EXPECT_EQ(runCheck(folder.path(), out), 0);
    EXPECT_FALSE(folder.files().exists("orders"));
    EXPECT_FALSE(folder.files().exists("journal.jsonl"));
}

} // namespace
} // namespace desk
