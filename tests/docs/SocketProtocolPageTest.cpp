// Replays the conversations of docs/socket-protocol.md with a real listener, and reads its order lines.
#include "orderservice/base/Text.h"
#include "orderservice/records/Portfolio.h"
#include "orderservice/socket/FailedLogins.h"
#include "orderservice/socket/OrderCommandParser.h"
#include "orderservice/socket/OrderCredit.h"
#include "orderservice/socket/SocketGuard.h"
#include "tests/docs/FamilyService.h"
#include "tests/docs/FencedBlocks.h"
#include "tests/docs/NumberTable.h"
#include "tests/socket/SocketFixture.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <boost/make_shared.hpp>

#include <fstream>
#include <map>
#include <sstream>

namespace {

using namespace TC;

constexpr const char* kSocketPage = "/docs/socket-protocol.md";
constexpr const char* kServerCloses = "S closes";

std::string dropPrefix(const std::string& text, const std::string& prefix) {
    if (text.compare(0, prefix.size(), prefix) != 0)
        throw std::runtime_error("expected \"" + prefix + "\": " + text);
    return text.substr(prefix.size());
}

class SocketProtocolPage : public SocketFixture {
protected:
    void SetUp() override {
        addBasket();
        addPortfolio();
        registry.strategies.insert(3, CStrategyBuilder());
        registry.strategies.insert(4, CStrategyBuilder().channel(4).set([](auto& strategy) {
            strategy.setting(ESettingSlot::StockBasket).m_ePriceType = EPriceType::Specified;
        }));
    }

    static std::vector<CFencedBlock> blocks() {
        return readFencedBlocks(std::string(SOURCE_DIR) + kSocketPage);
    }

    /// Starts a listener of the kind that the page names at the head of the conversation.
    void startFor(const std::string& words) {
        const std::map<std::string, std::function<void()>> kinds{
            {"conversation", [this] { start(); }},
            {"conversation no-login", [this] { start("", ""); }},
            {"conversation guard",
             [this] {
                 guard();
                 start();
             }},
        };
        kinds.at(words)();
    }

    /// Sends the client's lines and returns the resulting conversation, as bytes on the wire.
    std::string talk(const std::string& conversation) {
        CTestSocket client(m_nPort);
        std::istringstream lines(conversation);
        std::string went;
        for (std::string line; std::getline(lines, line);) {
            if (line == kServerCloses) {
                went += client.isClosedByServer() ? line : "S goes on";
            } else if (line.compare(0, 3, "C: ") == 0) {
                client.send(line.substr(3) + "\r\n");
                went += line;
            } else {
                dropPrefix(line, "S: ");
                // If the guard delays the reply, time must pass until the reply arrives.
                while (!client.waitForData(std::chrono::milliseconds(1)))
                    passTime(0.1);
                went += "S: " + dropLineEnd(client.readLine());
            }
            went += '\n';
        }
        return went;
    }

    /// The result of a line: the order or the refusal.
    std::string outcomeOf(const std::string& line) {
        std::string argument = dropPrefix(line, "placeorder");
        argument.erase(0, argument.find_first_not_of(' '));
        COrderParam order;
        CRecentCodes codes;
        std::string error;
        try {
            if (parseSocketOrder(argument, registry, codes, order, error))
                return order.toQString().toStdString();
        } catch (const boost::bad_lexical_cast&) {
            // Refused, like a line with too few fields.
        }
        return "-ERR Bad Param" + error;
    }

private:
    /// The reply without its CR LF. A reply with another ending is marked.
    static std::string dropLineEnd(const std::string& reply) {
        const std::size_t end = reply.find("\r\n");
        return end + 2 == reply.size() ? reply.substr(0, end) : reply + "(not ended by one CR LF)";
    }

    void addBasket() {
        CBasketStockData row;
        row.m_strCode = QStringLiteral("600000");
        row.m_nVolume = 200;
        row.m_eOperationType = 19;
        row.m_dWeight = 0.5;
        host.user.baskets[QStringLiteral("蓝筹")].m_rows = {row};
    }

    void addPortfolio() {
        const auto position = boost::make_shared<knservice::CPositionDetail>();
        position->m_strCode = "600000";
        position->m_nVolume = 700;
        const auto portfolio = boost::make_shared<knservice::CPortfolio>();
        portfolio->m_positions["first"] = position;
        host.tasks.tables[knservice::kPortfolioTable]["12____main"] = portfolio;
    }
};

TEST_F(SocketProtocolPage, EveryConversationGoesAsWritten) {
    int conversations = 0;
    for (const CFencedBlock& block : blocks()) {
        if (block.info.compare(0, 12, "conversation") != 0) continue;
        ASSERT_NO_THROW(startFor(block.info)) << "line " << block.line;
        const std::string conversation = utils::safeUtf82Gbk(block.text);
        EXPECT_EQ(talk(conversation), conversation) << "line " << block.line;
        stop();
        host.switches.on.clear();
        ++conversations;
    }
    EXPECT_GE(conversations, 4);
}

TEST_F(SocketProtocolPage, EveryLineGivesTheOrderBelowIt) {
    const auto all = blocks();
    int examples = 0;
    for (std::size_t i = 0; i + 1 < all.size(); ++i) {
        if (all[i].info != "socket-line") continue;
        ASSERT_EQ(all[i + 1].info, "order") << "behind line " << all[i].line;
        std::istringstream lines(all[i].text);
        std::string outcomes;
        for (std::string line; std::getline(lines, line); ++examples)
            outcomes += outcomeOf(line) + "\n";
        EXPECT_EQ(outcomes, all[i + 1].text) << "line " << all[i].line;
    }
    EXPECT_GE(examples, 40);
}

std::vector<CNumberExample> socketExamples() {
    return readNumbers(std::string(SOURCE_DIR) + kSocketPage, "### All numbers", "1");
}

TEST_F(SocketProtocolPage, EveryNumberGivesItsOrder) {
    std::set<int> numbers;
    for (const CNumberExample& example : socketExamples()) {
        const std::string line = example.lines.substr(0, example.lines.size() - 1);
        EXPECT_EQ(outcomeOf("placeorder " + line) + "\n", example.order) << line;
        numbers.insert(example.number);
    }
    EXPECT_EQ(numbers, grammarNumbers());
}

/// Sends the examples of one family to a new service. The channel of the lines is a strategy of this family.
void expectNumbersOf(const std::string& family, const std::string& number) {
    CFamilyService run;
    run.addStrategy(3, number, "socket " + CFamilyService::wordsOf(family));
    for (const CNumberExample& example : socketExamples()) {
        if (example.family != family) continue;
        const std::string line = example.lines.substr(0, example.lines.size() - 1);
        const auto log = run.send(3, "placeorder " + line);
        EXPECT_EQ(!findLine(log, "command ").empty(), example.goesOut) << family << ": " << line;
        EXPECT_EQ(findLine(log, "error ").empty(), example.goesOut) << family << ": " << line;
    }
}

TEST(SocketProtocolNumbers, GoOutWhereThePageSaysSo) {
    for (const auto& [family, number] : familyNumbers())
        expectNumbersOf(family, number);
}

/// The page as one line, because its line breaks have no meaning.
std::string readText(const std::string& path) {
    std::ifstream page(SOURCE_DIR + path);
    std::string text;
    for (std::string word; page >> word;)
        text += word + ' ';
    return text;
}

/// A number as a page writes it.
template<typename Number>
std::string figure(Number number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

void expectTexts(const std::string& path, const std::vector<std::string>& texts) {
    const std::string page = readText(path);
    for (const std::string& text : texts)
        EXPECT_NE(page.find(text), std::string::npos) << path << ": " << text;
}

TEST(SocketProtocolFigures, ArePrintedOnThePageAsTheyAre) {
    constexpr int room = COrderCredit::kMostRoom;
    constexpr int share = room / 2;
    constexpr double quoteSeconds = 2;
    const std::string delayed = figure(CFailedLogins::kMaxDelayed);
    ASSERT_EQ(CSocketGuard::kMaxFailedLogins, 10);
    ASSERT_EQ(CFailedLogins::kFree, 3);
    expectTexts(
        kSocketPage,
        {"of more than " + figure(CSocketGuard::kMaxLine) + " bytes with CR LF",
         "if " + figure(CSocketGuard::kMaxConnections) + " connections are open",
         "instead of the tenth failed reply in a row",
         "if " + delayed + " connections of one address already",
         figure(CSocketGuard::kLoginSeconds) + " seconds after connecting",
         "At most " + figure(CSocketGuard::kMaxEnding) + " closed connections",
         "If more than " + figure(CSocketGuard::kMaxEnding) + " wait",
         "After three failed logins from one address",
         "after " + figure(CFailedLogins::kFirstDelay) + " seconds, then 1, 2 and at most " +
             figure(CFailedLogins::kLastDelay) + ".",
         "take up to " + figure(CFailedLogins::kLastDelay) + " seconds",
         "At most " + delayed + " connections of an address wait",
         "about " + figure(CFailedLogins::kMaxDelayed / CFailedLogins::kLastDelay) + " passwords a second",
         "If all " + delayed + " places are taken",
         "At most " + figure(room) + " orders and cancels of the other connections",
         "at most " + figure(share) + " of any one connection",
         "So " + figure(room) + " orders of others without a quote delay your order or cancel by " +
             figure(room * quoteSeconds) + " seconds"});
}

TEST(SocketProtocolFigures, ArePrintedOnTheDesksPageAsTheyAre) {
    expectTexts(
        "/docs/desk-reference.md",
        {"| open connections of a listener | " + figure(CSocketGuard::kMaxConnections) + ", and " +
             figure(CSocketGuard::kMaxEnding) + " more",
         "| length of a line | " + figure(CSocketGuard::kMaxLine) + " bytes",
         "| failed logins of a connection in a row | " + figure(CSocketGuard::kMaxFailedLogins) + " |",
         figure(CFailedLogins::kFirstDelay) + " to " + figure(CFailedLogins::kLastDelay) + " seconds, for " +
             figure(CFailedLogins::kMaxDelayed) + " connections at once",
         "| time until the login | " + figure(CSocketGuard::kLoginSeconds) + " seconds |",
         "in " + figure(COrderCredit::kSeconds * 1000) + " milliseconds, " +
             figure(COrderCredit::kLeastRoom) + " to " + figure(COrderCredit::kMostRoom) +
             " order rows in all"});
}

/// The greeting must have the length that the page states.
TEST_F(SocketProtocolPage, GreetingHas47Bytes) {
    start();
    CTestSocket client(m_nPort);
    EXPECT_EQ(client.readLine().size(), 47u);
}

} // namespace
