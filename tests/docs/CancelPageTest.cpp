// Cancels orders as the pages describe: finds the number in the described place, runs the desk, and checks
// the cancelled orders.
#include "tests/desk/commands/RunningFolder.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <map>
#include <regex>

namespace desk {
namespace {

using CRecord = nlohmann::json;

/// A key in one kind of journal line.
struct CPlaceInJournal {
    std::string key;
    std::string kind;
};

/// The page's text as one line, because sentences continue over line breaks.
std::string pageText(const std::string& name) {
    std::ifstream page(std::string(SOURCE_DIR) + "/docs/" + name);
    std::string text;
    for (std::string line; std::getline(page, line);)
        text += line + ' ';
    return text;
}

/// Finds the first sentence after `lead` with "`WORD` is" or "it is". Returns the place that follows: "the
/// `key` of the `kind` line".
CPlaceInJournal placeOnPage(const std::string& page, const std::string& lead) {
    const std::string text = pageText(page);
    const std::size_t begin = text.find(lead);
    EXPECT_NE(begin, std::string::npos) << page << ": " << lead;
    if (begin == std::string::npos) return {};
    static const std::regex kPlace("is the `([a-z_]+)` of the `([a-z_]+)` line");
    std::smatch found;
    const std::string rest = text.substr(begin);
    EXPECT_TRUE(std::regex_search(rest, found, kPlace)) << page << ": " << lead;
    return found.empty() ? CPlaceInJournal() : CPlaceInJournal{found[1], found[2]};
}

class CancelPage : public CRunningFolder {
protected:
    std::vector<CRecord> records(const std::string& kind) const {
        std::vector<CRecord> found;
        std::istringstream lines(journal());
        for (std::string line; std::getline(lines, line);) {
            const CRecord record = CRecord::parse(line, nullptr, false);
            if (record.is_object() && record["kind"] == kind) found.push_back(record);
        }
        return found;
    }

    /// The number of the order with this price, read from the place that the page names.
    std::string numberFor(double price, const CPlaceInJournal& place) const {
        for (const CRecord& record : records(place.kind)) {
            const CRecord& order = record.contains("codes") ? record["codes"].at(0) : record;
            if (order["price"] == price) return record.at(place.key).dump();
        }
        ADD_FAILURE() << "no " << place.kind << " with the price " << price;
        return {};
    }

    /// The last state of each order. The key is the order's price.
    std::map<double, std::string> states() const {
        std::map<double, std::string> states;
        for (const CRecord& record : records("order"))
            states[record["price"]] = record["status"];
        return states;
    }
    bool isAnyCancelled() const { return has("\"status\":\"cancelled\""); }

    /// Places three orders of one account. All of them wait.
    bool placeThree() const {
        folder.handOver("desk/orders/single.txt", "23,0,7.20,600104,100\n23,0,7.30,600104,100\n"
                                                  "23,0,7.40,600104,100\n");
        return true;
    }
    bool areThreeWaiting() const { return states().size() == 3; }

    void SetUp() override {
        CRunningFolder::SetUp();
        // The orders contain different prices, so that the price identifies the order.
        change("desk/strategies.toml", "volume = 200\nprice_type = \"latest\"",
               "volume = 200\nprice_type = \"specified\"");
    }

    void expectOnlyTheSecondIsCancelled() const {
        EXPECT_EQ(states(),
                  (std::map<double, std::string>{{7.20, "working"}, {7.30, "cancelled"}, {7.40, "working"}}));
    }
};

TEST_F(CancelPage, OrderSocketCancelsTheTaskThatItsPageNames) {
    const CPlaceInJournal place = placeOnPage("socket-protocol.md", "    cancel TASK");
    EXPECT_EQ(run({
                  [this] { return has("\"action\":\"start\",\"channel\":16"); },
                  [this] { return placeThree(); },
                  [this] { return areThreeWaiting(); },
                  [&] {
                      CTestSocket client(socketPort);
                      client.readLine();
                      client.ask("user demo");
                      client.ask("pass change-me");
                      return client.ask("cancel " + numberFor(7.30, place)) == "+OK\r\n";
                  },
                  [this] { return isAnyCancelled(); },
              }),
              0);
    expectOnlyTheSecondIsCancelled();
}

TEST_F(CancelPage, OrderFileCancelsTheTaskThatItsPageNames) {
    const CPlaceInJournal place = placeOnPage("desk-reference.md", "`cancel TASK` ends");
    EXPECT_EQ(run({
                  [this] { return has("\"action\":\"start\",\"channel\":16"); },
                  [this] { return placeThree(); },
                  [this] { return areThreeWaiting(); },
                  [&] {
                      folder.handOver("desk/orders/single.txt", "cancel " + numberFor(7.30, place) + "\n");
                      return true;
                  },
                  [this] { return isAnyCancelled(); },
              }),
              0);
    expectOnlyTheSecondIsCancelled();
}

TEST_F(CancelPage, OrderFileCancelsTheOrderThatItsPageNames) {
    const CPlaceInJournal place = placeOnPage("desk-reference.md", "`cancel_order ACCOUNT ORDER` ends");
    EXPECT_EQ(run({
                  [this] { return has("\"action\":\"start\",\"channel\":16"); },
                  [this] { return placeThree(); },
                  [this] { return areThreeWaiting(); },
                  [&] {
                      folder.handOver("desk/orders/single.txt",
                                      "cancel_order A3 " + numberFor(7.30, place) + "\n");
                      return true;
                  },
                  [this] { return isAnyCancelled(); },
              }),
              0);
    expectOnlyTheSecondIsCancelled();
}

} // namespace
} // namespace desk
