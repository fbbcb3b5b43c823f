// Each row of the table of docs/confirmation.md is one order and its cells.
#include "tests/docs/PageTable.h"
#include "tests/ui/ConfirmFixture.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;
using EColumn = COrdersConfirmWidget::EColumn;

double numberOr(const CTableRow& row, const char* column, double unset) {
    const std::string& text = row.at(column);
    return text == "-" ? unset : std::stod(text);
}

CCodeOrderParam recordOf(const CTableRow& row) {
    CCodeOrderParam record = makeRecord();
    record.m_eOperationType = static_cast<EOperationType>(std::stoi(row.at("Operation")));
    record.m_ePriceType = static_cast<EPriceType>(std::stoi(row.at("Price type")));
    record.m_nVolume = static_cast<int>(numberOr(row, "Volume", kUnsetInt));
    record.m_dQuantity = numberOr(row, "Quantity", kUnsetDouble);
    record.m_dPrice = numberOr(row, "Price", kUnsetDouble);
    return record;
}

void setUpHost(CFakeHost& host, const CTableRow& row) {
    const auto detail = boost::make_shared<CInstrumentDetail>();
    detail->m_strMarket = "SH";
    detail->m_strCode = "600000";
    detail->m_dMultiplier = numberOr(row, "Multiplier", kUnsetDouble);
    host.exchange.stocks[QStringLiteral("SH600000")] = detail;
    if (row.at("Instrument") == "unknown") host.exchange.stocks.clear();
    host.rules.directRepays.insert(1021);
    host.rules.marketPrices.insert(static_cast<EPriceType>(44));
    if (row.at("Instrument") == "par") host.types.types.insert({126, "SH600000"});
    host.quotes.quotes.clear();
    if (row.at("Quote") != "-") host.setPrice(QStringLiteral("SH600000"), std::stod(row.at("Quote")));
}

TEST(ConfirmCellsPage, EveryRowShowsTheCellsOfThePage) {
    const auto rows = readTable(std::string(SOURCE_DIR) + "/docs/confirmation.md",
                                "## What columns 4, 5, 8, 9 and 10 show");
    ASSERT_GT(rows.size(), 30u);
    for (const CTableRow& row : rows) {
        CFakeHost host;
        setUpHost(host, row);
        const CCodeOrderParam record = recordOf(row);
        CConfirmTable table(static_cast<EQdTraderType>(std::stoi(row.at("Trader type"))));
        table.widget.setOrders({record});
        const QString word = knPriceTypeToString(record.m_ePriceType, "600000", false);
        for (const int column : {4, 5, 8, 9, 10}) {
            const std::string& expected = row.at("Column " + std::to_string(column));
            EXPECT_EQ(table.cell(0, column).toStdString(), expected == "word" ? word.toStdString() : expected)
                << "trader type " << row.at("Trader type") << ", operation " << row.at("Operation")
                << ", price type " << row.at("Price type") << ", column " << column;
        }
    }
}

TEST(ConfirmCellsPage, EveryTraderTypeIsOnThePage) {
    std::set<std::string> types;
    for (const CTableRow& row : readTable(std::string(SOURCE_DIR) + "/docs/confirmation.md",
                                          "## What columns 4, 5, 8, 9 and 10 show"))
        types.insert(row.at("Trader type"));
    EXPECT_EQ(types, (std::set<std::string>{"1", "2", "4", "8", "16", "32", "128", "256", "1024", "16384"}));
}

} // namespace
