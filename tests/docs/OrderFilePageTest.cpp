// Reads the examples of docs/order-file.md from the page itself.
#include "orderservice/intake/OrderFileParser.h"
#include "tests/docs/FamilyService.h"
#include "tests/docs/FencedBlocks.h"
#include "tests/docs/NumberTable.h"
#include "tests/docs/Pages.h"
#include "tests/intake/FakeLinePort.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace TC;

/// Records what the lines ask for, in their order.
class CPagePort : public CFakeLinePort {
public:
    CPagePort() {
        CBasketStockData row;
        row.m_strCode = QStringLiteral("600000");
        row.m_nVolume = 200;
        row.m_eOperationType = 19;
        row.m_dWeight = 0.5;
        baskets[QStringLiteral("蓝筹")].m_rows = {row};
    }
    void terminateTask(int taskId) override { log << "cancel_task " << taskId << '\n'; }
    void cancelOrders(std::vector<std::string>& fields) override {
        log << "cancel_orders";
        for (const std::string& field : fields)
            log << ' ' << field;
        log << '\n';
    }
    bool readTradeParam(const std::string& text, COrderTradeParam& param) override {
        const std::string key = "remark:";
        if (text.compare(0, key.size(), key) != 0) return false;
        param = COrderTradeParam();
        param.m_strRemark = text.substr(key.size());
        return true;
    }
    void showNote(const QString& text) override { log << "note " << text.toStdString() << '\n'; }

    std::ostringstream log;
};

std::string outcomeOf(const std::string& lines) {
    const COrderStrategyParam strategy;
    CPagePort port;
    COrderFileParser parser(strategy, 3, port);
    std::istringstream input(lines);
    try {
        for (std::string line; std::getline(input, line) && parser.takeLine(line);) {
        }
    } catch (const boost::bad_lexical_cast&) {
        // The file ends here. The orders before this line are kept.
    }
    for (const COrderParam& order : parser.takeOrders())
        port.log << order.toQString().toStdString() << '\n';
    return port.log.str();
}

std::vector<CNumberExample> fileExamples() {
    return readNumbers(kOrderFilePage, "## All numbers", "2");
}

TEST(OrderFilePage, EveryExampleGivesTheOrdersBelowIt) {
    const auto blocks = readFencedBlocks(kOrderFilePage);
    int examples = 0;
    for (std::size_t i = 0; i + 1 < blocks.size(); ++i) {
        if (blocks[i].info != "order-file") continue;
        ASSERT_EQ(blocks[i + 1].info, "orders") << "behind line " << blocks[i].line;
        EXPECT_EQ(outcomeOf(blocks[i].text), blocks[i + 1].text) << "line " << blocks[i].line;
        ++examples;
    }
    EXPECT_GE(examples, 11);
}

TEST(OrderFilePage, EveryLineWithoutEffectHasItsReason) {
    const std::vector<CTableRow> rows = readTable(kOrderFilePage, "## Lines without effect");
    for (const CTableRow& row : rows) {
        const COrderStrategyParam strategy;
        CPagePort port;
        COrderFileParser parser(strategy, 3, port);
        for (std::string line : codeSpans(row.at("Lines")))
            parser.takeLine(line);
        parser.takeOrders();
        const CIgnoredLines& ignored = parser.ignoredLines();
        EXPECT_EQ("line " + std::to_string(ignored.m_nFirst) + ": " + ignored.m_strFirstReason.toStdString(),
                  row.at("Reason"))
            << row.at("Lines");
    }
    EXPECT_EQ(rows.size(), 9u);
}

TEST(OrderFilePage, EveryNumberGivesItsOrder) {
    std::set<int> numbers;
    for (const CNumberExample& example : fileExamples()) {
        EXPECT_EQ(outcomeOf(example.lines), example.order) << example.lines;
        numbers.insert(example.number);
    }
    EXPECT_EQ(numbers, grammarNumbers());
}

TEST(OrderFilePage, EveryNumberGoesOutWhereThePageSaysSo) {
    const std::map<std::string, std::string> families = familyNumbers();
    CFamilyService run;
    int channel = 0;
    std::map<std::string, int> channels;
    for (const auto& [family, number] : families) {
        run.addStrategy(++channel, number, CFamilyService::wordsOf(family));
        channels[family] = channel;
    }
    for (const CNumberExample& example : fileExamples()) {
        const auto log = run.drop(channels.at(example.family), example.lines);
        const std::string command = findLine(log, "command ");
        EXPECT_EQ(!command.empty(), example.goesOut) << example.family << ": " << example.lines;
        EXPECT_EQ(findLine(log, "error ").empty(), example.goesOut)
            << example.family << ": " << example.lines;
    }
}

} // namespace
