// Orders of every product family, from the order files to the books of the paper broker.
#include "desk/paper/PaperBook.h"
#include "desk/paper/PaperStore.h"
#include "tests/desk/commands/RunningFolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <sstream>

namespace desk {
namespace {

struct CFamilyOrders {
    const char* name;
    int traderType; ///< trader type of the family's commands
    const char* file;
    const char* lines;
    std::set<std::string> accounts; ///< no orders of other families use them
    int commands;
    int orders; ///< number of orders at the broker
    /// The fills, and the changes in the accounts' books.
    const char* changes;
};

/// No two families trade on the same side of the same instrument. So the files may be read in any order.
const CFamilyOrders kRows[] = {
    {"Stock",
     1,
     "group",
     "23,0,11.02,600101,1000\n24,0,10.95,600101,300\n",
     {"A1", "A2"},
     2,
     4,
     "A1 operation 18 SH600101 600 at 11.01\n"
     "A2 operation 18 SH600101 400 at 11.01\n"
     "A1 operation 19 SH600101 200 at 10.99\n"
     "A2 operation 19 SH600101 100 at 10.99\n"
     "A1 cash -4408\n"
     "A1 long SH600101 +400\n"
     "A2 cash -3305\n"
     "A2 long SH600101 +300\n"},
    {"Futures",
     2,
     "future",
     "0,0,4000.4,IF2609,3\n1,0,3999.6,IF2609,3\n",
     {"F1", "F2"},
     2,
     4,
     "F1 operation 0 CFIF2609 2 at 4000.2\n"
     "F2 operation 0 CFIF2609 1 at 4000.2\n"
     "F1 operation 1 CFIF2609 2 at 3999.8\n"
     "F2 operation 1 CFIF2609 1 at 3999.8\n"
     "F1 cash +19840\n"
     "F1 margin +2409.6\n"
     "F2 cash +7920\n"
     "F2 margin +964.8\n"},
    {"BasketBought",
     4,
     "basket",
     "25,0\n600102\t200\n002203\t300\n",
     {"B1"},
     1,
     2,
     "B1 operation 18 SH600102 200 at 20.01\n"
     "B1 operation 18 SZ002203 300 at 6.01\n"
     "B1 cash -5805\n"
     "B1 long SH600102 +200\n"
     "B1 long SZ002203 +300\n"},
    {"BasketSold",
     4,
     "sell_out",
     "26,0\n000201\t300\n",
     {"B2"},
     1,
     1,
     "B2 operation 19 SZ000201 300 at 14.99\n"
     "B2 cash +4497\n"
     "B2 long SZ000201 -300\n"},
    {"Credit",
     8,
     "credit",
     "27,0,5.02,600103,1000\n32,0,4000\n28,0,7.98,600104,500\n29,0,8.01,600104,200\n",
     {"C1"},
     4,
     4,

     "C1 operation 20 SH600103 1000 at 5.01\n"
     "C1 operation 21 SH600104 500 at 7.99\n"
     "C1 operation 22 SH600104 200 at 8.01\n"
     "C1 cash -1607\n"
     "C1 long SH600103 +1000\n"
     "C1 margin +2397\n"
     "C1 owes SH600104 +300\n"
     "C1 owes money +1010\n"},
    {"Gold",
     16,
     "gold",
     "0,0,520.02,AU99,1\n",
     {"G1"},
     1,
     1,
     "G1 operation 0 GOLDAU99 1 at 520.01\n"
     "G1 long GOLDAU99 +1\n"
     "G1 margin +52001\n"},
    {"StockOption",
     32,
     "option",
     "48,0,0.5002,10005001,3\n50,0,0.4998,10005001,1\n",
     {"O1"},
     2,
     2,
     "O1 operation 32 SHO10005001 3 at 0.5001\n"
     "O1 operation 34 SHO10005001 1 at 0.4999\n"
     "O1 cash -10004\n"
     "O1 long SHO10005001 +3\n"
     "O1 margin +999.8\n"
     "O1 short SHO10005001 +1\n"},
    {"Hgt",
     128,
     "hgt",
     "23,0,380.4,00700,200\n",
     {"H1"},
     1,
     1,
     "H1 operation 18 HGT00700 200 at 380.2\n"
     "H1 cash -76040\n"
     "H1 long HGT00700 +200\n"},
    {"ShareTransfer", 256, "neeq", "66,0,3.01,430001,1000\n", {"N1"}, 1, 0, ""},
    {"FutureOption",
     1024,
     "future_option",
     "0,0,80.4,IO2609-C-4000,2\n3,0,79.6,IO2609-C-4000,1\n",
     {"P1"},
     2,
     2,

     "P1 operation 0 CFIO2609-C-4000 2 at 80.2\n"
     "P1 operation 3 CFIO2609-C-4000 1 at 79.8\n"
     "P1 cash -8060\n"
     "P1 long CFIO2609-C-4000 +2\n"
     "P1 margin +1197\n"
     "P1 short CFIO2609-C-4000 +1\n"},
    {"Sgt",
     16384,
     "sgt",
     "23,0,45.05,00001,500\n",
     {"S1"},
     1,
     1,
     "S1 operation 18 SGT00001 500 at 45.05\n"
     "S1 cash -22525\n"
     "S1 long SGT00001 +500\n"},
};

int commandsOf(int traderType) {
    int count = 0;
    for (const CFamilyOrders& row : kRows)
        count += row.traderType == traderType ? row.commands : 0;
    return count;
}

/// The assets and debts of the accounts. Each value has a name.
using CBooks = std::map<std::string, double>;

CBooks booksOf(const CPaperBook& book) {
    CBooks books;
    for (const auto& [account, funds] : book.m_funds.values()) {
        books[account + " cash"] = fromMoney(funds.m_nCash);
        books[account + " margin"] = fromMoney(funds.m_nMargin);
        books[account + " frozen"] = fromMoney(funds.m_nFrozen);
    }
    for (const auto& [key, position] : book.m_positions.values()) {
        const std::string side = position.m_eSide == EPositionSide::Long ? " long " : " short ";
        books[position.m_strAccount + side + position.m_strStock] = static_cast<double>(position.m_nVolume);
    }
    for (const auto& [key, debt] : book.m_debts.values()) {
        const std::string what = debt.m_strStock.empty() ? "money" : debt.m_strStock;
        books[debt.m_strAccount + " owes " + what] =
            debt.m_strStock.empty() ? fromMoney(debt.m_nAmount) : static_cast<double>(debt.m_nVolume);
    }
    return books;
}

std::string changeOf(double before, double after) {
    std::ostringstream out;
    out.precision(12);
    out << std::showpos << std::round((after - before) * 1e4) / 1e4;
    return out.str();
}

class FamilyTrades : public CRunningFolder {
protected:
    void SetUp() override {
        CRunningFolder::SetUp();
        // With changing quotes, the fills would depend on the speed of the machine.
        std::filesystem::remove(folder.path("desk/quote_changes.csv"));
        folder.write("desk/positions.csv", "account,instrument,side,volume,available,cost\n"
                                           "A1,SH600101,,5000,5000,10.20\n"
                                           "A2,SH600101,,3000,3000,10.40\n"
                                           "B2,SZ000201,,800,800,14.50\n"
                                           "F1,IF2609,long,4,4,3950\n"
                                           "F2,IF2609,long,2,2,3960\n");
    }
    void readBook(CPaperBook& book) const {
        CPaperStore store;
        std::vector<CBrokerEvent> events;
        const utils::KNError opened = store.open(folder.path("desk"), book, events);
        EXPECT_TRUE(opened.isSuccess()) << opened.errorMsg();
    }
    int count(const std::string& text) const {
        const std::string lines = journal();
        int found = 0;
        for (std::size_t at = lines.find(text); at != std::string::npos; at = lines.find(text, at + 1))
            ++found;
        return found;
    }
    bool isDone() const {
        int commands = 0, orders = 0;
        for (const CFamilyOrders& row : kRows) {
            commands += row.commands;
            orders += row.orders;
        }
        return count("\"kind\":\"command\"") == commands && count("\"status\":\"filled\"") == orders;
    }
    /// Writes all order files and returns when every order is filled.
    int trade() {
        return run({[this] { return has("\"action\":\"start\",\"channel\":14"); },
                    [this] {
                        for (const CFamilyOrders& row : kRows)
                            folder.handOver(std::string("desk/orders/") + row.file + ".txt", row.lines);
                        return true;
                    },
                    [this] { return isDone(); }});
    }
    static std::string fillsOf(const CPaperBook& book, const std::set<std::string>& accounts) {
        std::ostringstream out;
        for (const auto& [id, fill] : book.m_fills.values()) {
            const CPaperOrder& order = *book.m_orders.find(fill.m_nOrder);
            if (accounts.count(order.m_strAccount) == 0) continue;
            out << order.m_strAccount << " operation " << static_cast<int>(order.m_eOperation) << ' '
                << order.m_strStock << ' ' << fill.m_nVolume << " at " << fromMoney(fill.m_nPrice) << '\n';
        }
        return out.str();
    }
    static std::string changesOf(const CBooks& before, const CBooks& after,
                                 const std::set<std::string>& accounts) {
        std::string text;
        for (const auto& [what, value] : after) {
            if (accounts.count(what.substr(0, what.find(' '))) == 0) continue;
            const auto old = before.find(what);
            const std::string change = changeOf(old != before.end() ? old->second : 0.0, value);
            if (change != "+0") text += what + " " + change + "\n";
        }
        return text;
    }
};

TEST_F(FamilyTrades, OrdersOfEveryFamilyReachTheBooks) {
    ASSERT_EQ(run({[this] { return has("\"action\":\"start\",\"channel\":14"); }}), 0);
    CPaperBook firstBook;
    readBook(firstBook);
    const CBooks before = booksOf(firstBook);
    EXPECT_EQ(trade(), 0);
    EXPECT_TRUE(isDone()) << journal();
    EXPECT_FALSE(has("\"status\":\"rejected\"")) << journal();
    EXPECT_FALSE(has("\"kind\":\"trade_error\"")) << journal();
    CPaperBook book;
    readBook(book);
    const CBooks after = booksOf(book);
    for (const CFamilyOrders& row : kRows) {
        EXPECT_EQ(count("\"trader_type\":" + std::to_string(row.traderType) + ","),
                  commandsOf(row.traderType))
            << row.name;
        EXPECT_EQ(fillsOf(book, row.accounts) + changesOf(before, after, row.accounts), row.changes)
            << row.name;
    }
}

/// A share-transfer order ends as a task without an instrument.
TEST_F(FamilyTrades, AShareTransferOrderIsATaskWithoutOrders) {
    const int code = run({[this] { return has("\"action\":\"start\",\"channel\":14"); },
                          [this] {
                              folder.handOver("desk/orders/neeq.txt", "66,0,3.01,430001,1000\n");
                              return true;
                          },
                          [this] { return has("\"kind\":\"command\""); }});
    EXPECT_EQ(code, 0);
    CPaperBook book;
    readBook(book);
    ASSERT_EQ(book.m_tasks.values().size(), 1u);
    EXPECT_EQ(book.m_tasks.values().begin()->second.m_nOrders, 0);
    EXPECT_TRUE(book.m_orders.values().empty());
}

/// An order must follow its trade parameters. It must not go out at once when they name an algorithm, nor on
/// another account or at another price.
TEST_F(FamilyTrades, OrdersGoOutAsTheirParametersSayOrAreRejected) {
    const std::map<std::string, std::string> files = {
        {"group", "23,0,11.02,600101,100\norderParam=account:A2\n"},
        {"single", "23,0,,600102,100\norderParam=order_type:7\n23,0,,600102,200\n"
                   "orderParam=setting:price_type:sel1\n23,0,,600102,300\norderParam=acount:A1;sub:-\n"},
        {"basket", "25,0\n600102\t200\norderParam=order_type:20\n"},
        {"credit", "27,0,11.02,600101,1000\norderParam=remark:a;foo:b\n"},
        {"future", "0,0,4000.4,IF2609,3\norderParam=order_type:22\n"},
        {"gold", "0,0,521,AU99,1\norderParam=order_type:23\n"}};
    const int code =
        run({[this] { return has("\"action\":\"start\",\"channel\":14"); },
             [&] {
                 for (const auto& [name, lines] : files)
                     folder.handOver("desk/orders/" + name + ".txt", lines);
                 return true;
             },
             [this] { return count("\"status\":\"rejected\"") >= 8 && has("\"kind\":\"fill\""); }});
    EXPECT_EQ(code, 0);
    EXPECT_EQ(count("\"status\":\"rejected\""), 8);
    for (const char* type : {"7", "20", "22", "23"})
        EXPECT_TRUE(has(std::string("order type ") + type + " is not modelled")) << type;
    EXPECT_EQ(count("the trade parameters are not understood"), 3);
    CPaperBook book;
    readBook(book);
    for (const auto& [id, order] : book.m_orders.values()) {
        EXPECT_TRUE(order.m_eStatus == EOrderStatus::Rejected || order.m_strAccount == "A2") << id;
    }
    EXPECT_EQ(count("\"kind\":\"fill\""), 1);
}

/// Both markets have this code of six digits. The order must sell the instrument of the portfolio.
TEST_F(FamilyTrades, APortfolioSellsItsOwnInstrument) {
    change("desk/instruments.csv", "SZ,000202,",
           "SH,000202,同码,STOCK,100028 100003,100,100,33.00,27.00,30.00\nSZ,000202,");
    change("desk/quotes.csv", "SZ000202,", "SH000202,30\nSZ000202,");
    change("desk/desk.toml", "rows = [{ market = \"SH\", code = \"600102\"",
           "rows = [{ market = \"SZ\", code = \"000202\"");
    ASSERT_FALSE(HasFatalFailure());
    const int code =
        run({[this] { return has("\"action\":\"start\",\"channel\":16"); },
             [this] {
                 CTestSocket client(socketPort);
                 client.readLine();
                 for (const char* line : {"user demo", "pass change-me", "placeorder 36,16,12_main"})
                     EXPECT_EQ(client.ask(line), "+OK\r\n") << line;
                 return true;
             },
             [this] { return has("\"kind\":\"order\""); }});
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("\"stock\":\"SZ000202\"")) << journal();
    EXPECT_FALSE(has("\"stock\":\"SH000202\"")) << journal();
}

TEST_F(FamilyTrades, AHedgedBasketShowsItsLegAndIsRejectedForIt) {
    change("desk/desk.toml", "mdl_order_command_remark",
           "mdl_order_compose_hedge = true\nmdl_order_command_remark");
    change("desk/strategies.toml", "path = \"orders/basket.txt\"\n",
           "path = \"orders/basket.txt\"\nhedge_basket = true\nhedge_param = '{\"contract\": \"IF2609\"}'\n");
    ASSERT_FALSE(HasFatalFailure());
    const int code = run({[this] { return has("\"action\":\"start\",\"channel\":14"); },
                          [this] {
                              folder.handOver("desk/orders/basket.txt", "25,0\n600102\t200\n");
                              return true;
                          },
                          [this] { return has("\"status\":\"rejected\""); }});
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(has("\"extra\":{\"contract\":\"IF2609\",\"m_nPriceKind\":3}")) << journal();
    EXPECT_TRUE(has("hedge commands are not modelled"));
    EXPECT_FALSE(has("\"status\":\"filled\""));
}

} // namespace
} // namespace desk
