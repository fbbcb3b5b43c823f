// The table when operations of the host fail: what the record itself says is shown, and nothing throws.
#include "orderservice/platform/Host.h"
#include "tests/ui/ConfirmFixture.h"

#include <QTableView>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace TC;

class CFailingRules : public fake::CRules {
public:
    bool isDirectRepay(EOperationType operation) override {
        if (fails) throw std::runtime_error("no rules");
        return CRules::isDirectRepay(operation);
    }
    bool isMarketPrice(EPriceType type) override {
        if (fails) throw std::runtime_error("no rules");
        return CRules::isMarketPrice(type);
    }
    bool fails = false;
};

class CFailingExchange : public fake::CExchange {
public:
    CInstrumentDetailPtr getCodeInfo(const QString& key) override {
        if (key == failing) throw std::runtime_error("no line");
        return CExchange::getCodeInfo(key);
    }
    QString failing;
};

class CFailingQuotes : public fake::CQuotes {
public:
    using CQuotes::CQuotes;
    boost::shared_ptr<CQuoteRequest> subscribe(const QString&, const CQuoteRequest::CCallback&,
                                               ESubscribeType) override {
        throw std::runtime_error("no line");
    }
};

class ConfirmTrouble : public testing::Test {
protected:
    void SetUp() override {
        CHost services = host.services();
        services.tradingRules = &rules;
        services.exchangeClient = &exchange;
        releaseHost();
        ASSERT_TRUE(installHost(services).isSuccess());
    }
    static void enterVolume(CConfirmTable& table, const char* text) {
        QAbstractItemModel* model = table.widget.table()->view()->model();
        model->setData(model->index(0, COrdersConfirmWidget::Volume), QString::fromLatin1(text),
                       Qt::EditRole);
    }

    CFakeHost host;
    CFailingRules rules;
    CFailingExchange exchange;
};

TEST_F(ConfirmTrouble, FailureInOneRowLeavesTheOthers) {
    exchange.failing = QStringLiteral("SH600001");
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100, "600001"), makeRecord(200)});
    EXPECT_EQ(table.cell(0, 2), QStringLiteral("600001"));
    EXPECT_EQ(table.cell(0, 4), QStringLiteral("买入"));
    EXPECT_EQ(table.cell(0, 5), QStringLiteral("100"));
    EXPECT_EQ(table.cell(0, 9), QStringLiteral("9.50"));
    EXPECT_EQ(table.cell(0, 10), QStringLiteral("-"));
    EXPECT_EQ(table.cell(1, 10), QStringLiteral("1900.00"));
}

TEST_F(ConfirmTrouble, AllRowsThatFailGiveOneReport) {
    exchange.failing = QStringLiteral("SH600001");
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100, "600001"), makeRecord(200), makeRecord(300, "600001")});
    EXPECT_EQ(host.messageTexts(),
              (std::vector<QString>{QStringLiteral("[接口单]　下单确认表有 2 行未能完整显示: "
                                                   "CExchangeClient::getCodeInfo: no line")}));
}

TEST_F(ConfirmTrouble, FailingQuotesLeaveTheRecordsOwnNumbers) {
    host.quotes.onRead = [](const QString&, int) { throw std::runtime_error("no line"); };
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100)});
    EXPECT_EQ(table.cell(0, 5), QStringLiteral("100"));
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("-"));
    EXPECT_EQ(table.cell(0, 10), QStringLiteral("950.00"));
    EXPECT_EQ(host.messageTexts().size(), 1u);
}

QString toolTip(const CConfirmTable& table, int row, int column) {
    return table.widget.table()->view()->model()->index(row, column).data(Qt::ToolTipRole).toString();
}

const QString kUnread = QStringLiteral("未能读取");

TEST_F(ConfirmTrouble, FailingRulesLeaveSpecifiedPrices) {
    rules.fails = true;
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100)});
    EXPECT_EQ(table.cell(0, 5), QStringLiteral("100"));
    EXPECT_EQ(table.cell(0, 9), QStringLiteral("9.50"));
    EXPECT_EQ(table.cell(0, 10), QStringLiteral("950.00"));
    EXPECT_EQ(toolTip(table, 0, 9), QString());
    EXPECT_EQ(host.messageTexts().size(), 1u);
}

TEST_F(ConfirmTrouble, PriceTypeThatMayBeAMarketOneShowsNoPrice) {
    rules.fails = true;
    CConfirmTable table;
    CCodeOrderParam bid = makeRecord(200);
    bid.m_ePriceType = EPriceType::Buy1;
    table.widget.setOrders({bid});
    EXPECT_EQ(table.cell(0, 5), QStringLiteral("200"));
    EXPECT_EQ(table.cell(0, 9), knPriceTypeToString(EPriceType::Buy1, "600000", false));
    for (const int column : {8, 10})
        EXPECT_EQ(table.cell(0, column), QStringLiteral("-")) << column;
    for (const int column : {8, 9, 10})
        EXPECT_EQ(toolTip(table, 0, column), kUnread) << column;
}

TEST_F(ConfirmTrouble, RowThatMayBeMoneyIsNotValued) {
    rules.fails = true;
    CCodeOrderParam repay = makeRecord(1234);
    repay.m_eOperationType = EOperationType::RepayMoney;
    repay.m_dQuantity = 1234.56;
    for (const EQdTraderType type : {EQdTraderType::Credit, EQdTraderType::Stock}) { // of the first order
        CConfirmTable table(type);
        table.widget.setOrders({repay});
        EXPECT_EQ(table.cell(0, 5), QStringLiteral("1234.56"));
        for (const int column : {7, 8, 9, 10}) {
            EXPECT_EQ(table.cell(0, column), QStringLiteral("-")) << column;
            EXPECT_EQ(toolTip(table, 0, column), kUnread) << column;
        }
        EXPECT_FALSE(table.widget.table()->view()->model()->index(0, 5).flags() & Qt::ItemIsEditable);
        EXPECT_EQ(table.sum(10), QStringLiteral("-"));
    }
    EXPECT_TRUE(host.quotes.subscribed.empty());
}

TEST_F(ConfirmTrouble, CellsThatCouldNotBeReadAreMarked) {
    exchange.failing = QStringLiteral("SH600001");
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100, "600001"), makeRecord(200)});
    EXPECT_EQ(toolTip(table, 0, 7), kUnread);
    EXPECT_EQ(toolTip(table, 0, 10), kUnread);
    EXPECT_EQ(toolTip(table, 0, 9), QString());
    for (const int column : {0, 4, 6, 7, 8, 9, 10, 11})
        EXPECT_EQ(toolTip(table, 1, column), QString()) << column;
}

TEST_F(ConfirmTrouble, QuoteThatCouldNotBeReadIsMarkedUntilOneComes) {
    host.quotes.onRead = [](const QString&, int) { throw std::runtime_error("no line"); };
    CCodeOrderParam latest = makeRecord(100);
    latest.m_ePriceType = EPriceType::Latest;
    latest.m_dPrice = kUnsetDouble;
    CConfirmTable table;
    table.widget.setOrders({latest});
    EXPECT_EQ(toolTip(table, 0, 8), kUnread);
    host.quotes.callbacks.at(QStringLiteral("SH600000"))(makeQuote(10));
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(0, 8), QStringLiteral("10.00"));
    EXPECT_EQ(toolTip(table, 0, 8), QString());
}

TEST_F(ConfirmTrouble, EditDoesNotThrowWhenTheHostFails) {
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100)});
    rules.fails = true;
    QTableView* view = table.widget.table()->view();
    const QModelIndex cell = view->model()->index(0, COrdersConfirmWidget::Volume);
    view->setCurrentIndex(cell);
    EXPECT_NO_THROW(view->edit(cell));
    EXPECT_NO_THROW(enterVolume(table, "500"));
    EXPECT_EQ(table.cell(0, 5), QStringLiteral("500"));
    EXPECT_TRUE(host.messageTexts().empty()) << "an edit does not ask whether the row is money";
}

TEST_F(ConfirmTrouble, FailedQuoteRequestsNameFiveCodes) {
    CFailingQuotes quotes(host.records);
    CHost services = host.services();
    services.quoteClient = &quotes;
    releaseHost();
    ASSERT_TRUE(installHost(services).isSuccess());
    std::vector<CCodeOrderParam> records;
    for (const char* code : {"600001", "600002", "600003", "600004", "600005", "600006"})
        records.push_back(makeRecord(100, code));
    CConfirmTable table;
    table.widget.setOrders(records);
    ASSERT_EQ(host.messageTexts().size(), 1u);
    EXPECT_TRUE(host.messageTexts()[0].startsWith(
        QStringLiteral("[接口单]　下单确认表未能请求 6 个代码的行情 (SH600001, SH600002, SH600003, SH600004, "
                       "SH600005): ")));
    EXPECT_TRUE(host.messageTexts()[0].endsWith(QStringLiteral("no line")));
}

TEST_F(ConfirmTrouble, HostIsAskedOnceForEachInstrument) {
    CConfirmTable table;
    table.widget.setOrders(std::vector<CCodeOrderParam>(50, makeRecord(100)));
    EXPECT_EQ(host.quotes.reads[QStringLiteral("SH600000")], 1);
}

} // namespace
