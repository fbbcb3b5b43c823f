// The minimal host with the real service: what its user sees when answers of the kit refuse orders.
#include "examples/minimal_host/MinimalHost.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/service/OrderService.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <sstream>
#include <stdexcept>

namespace {

using namespace TC;

/// Counts the commands and refusals, so that a test can wait for them.
class CCountedOrders : public COrderClient {
public:
    void orderCommands(const COrderComandParamPtr& command) override {
        const std::lock_guard lock(m_mutex);
        commands.push_back(command);
        m_changed.notify_all();
    }
    void showTradeError(const QString& text, const QString&) override {
        const std::lock_guard lock(m_mutex);
        refusals.push_back(text);
        m_changed.notify_all();
    }
    bool waitFor(std::size_t count) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(60),
                                  [&] { return commands.size() + refusals.size() >= count; });
    }

    std::vector<COrderComandParamPtr> commands;
    std::vector<QString> refusals;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
};

class KitOrders : public testing::Test {
protected:
    void SetUp() override {
        CHost services = host.services();
        services.orderClient = &orders;
        ASSERT_TRUE(installHost(services).isSuccess());
        COrderStrategyParam strategy;
        strategy.m_nChannel = 1;
        strategy.m_nStatus = COrderStrategyParam::kRunning;
        strategy.m_eSelectedAccountType = ESelectedAccountType::Account;
        strategy.m_strSelectedAccount = minimal::kAccount;
        strategy.m_strSignalSource = QString::fromStdString(folder.path("orders.txt"));
        strategy.m_strCode = minimal::kStockKey;
        strategy.m_stockSetting = host.user.getDefaultOrderSetting(EDefaultSetting::Stock);
        host.user.getStrategyMap()->insert(1, strategy);
        folder.write("orders.txt", "");
        COrderService::initInstance(new COrderService);
        COrderService::instance()->loadFromConfig(false);
    }
    void TearDown() override {
        end();
        releaseHost();
    }
    /// Ends the service. After that all messages have been shown.
    void end() {
        if (COrderService::instance() != nullptr) COrderService::instance()->shutdown();
        COrderService::release();
    }
    void drop(const std::string& lines) { folder.handOver("orders.txt", lines); }

    CTempFolder folder;
    std::ostringstream screen;
    minimal::CMinimalHost host{screen};
    CCountedOrders orders;
};

TEST_F(KitOrders, OrderWithAPriceBecomesACommand) {
    drop("23,1,10.5,SH600000,300\n");
    ASSERT_TRUE(orders.waitFor(1));
    end();
    ASSERT_EQ(orders.commands.size(), 1u);
    ASSERT_EQ(orders.commands[0]->m_codes.size(), 1u);
    const CCodeOrderParam& record = orders.commands[0]->m_codes[0];
    EXPECT_EQ(record.m_account->getKey(), "A1");
    EXPECT_EQ(record.m_stock.m_strMarket + record.m_stock.m_strCode, "SH600000");
    EXPECT_EQ(record.m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(record.m_dPrice, 10.5);
    EXPECT_EQ(record.m_nVolume, 300);
}

TEST_F(KitOrders, OrderWithoutAPriceIsRefused) {
    drop("23,1,0,SH600000,300\n");
    ASSERT_TRUE(orders.waitFor(1));
    end();
    EXPECT_TRUE(orders.commands.empty());
    EXPECT_EQ(orders.refusals.size(), 1u);
}

TEST_F(KitOrders, OrderWithTradeParametersIsRefusedAndTheReasonIsShown) {
    drop("23,1,10.5,SH600000,300\norderParam=account:A2\n");
    ASSERT_TRUE(orders.waitFor(1));
    end();
    EXPECT_TRUE(orders.commands.empty()) << "it must not go out on the strategy's account";
    ASSERT_EQ(orders.refusals.size(), 1u);
    EXPECT_TRUE(orders.refusals[0].contains(QStringLiteral("指定账号不可用")))
        << orders.refusals[0].toStdString();
    EXPECT_NE(screen.str().find("不支持交易参数(orderParam)"), std::string::npos) << screen.str();
}

TEST_F(KitOrders, FileThatIsCutShortIsShown) {
    drop("23,1,10.5,SH600000,300\n23,1,ten,SH600000,300\n23,1,10.5,SH600000,300\n");
    ASSERT_TRUE(orders.waitFor(1));
    end();
    EXPECT_EQ(orders.commands.size(), 1u) << "the orders before the bad line go on";
    EXPECT_NE(screen.str().find("读取中断"), std::string::npos) << screen.str();
    EXPECT_NE(screen.str().find("line 2"), std::string::npos) << screen.str();
}

TEST_F(KitOrders, UnknownStockIsRefused) {
    drop("23,1,10.5,SH600001,300\n");
    ASSERT_TRUE(orders.waitFor(1));
    end();
    EXPECT_TRUE(orders.commands.empty());
    ASSERT_EQ(orders.refusals.size(), 1u);
    EXPECT_TRUE(orders.refusals[0].contains(QStringLiteral("不合法"))) << orders.refusals[0].toStdString();
}

TEST(KitDoors, ChangedPortStuckDoorAndRefusedConnectionAreShown) {
    std::ostringstream screen;
    minimal::CMinimalHost host(screen);
    ASSERT_TRUE(installHost(host.services()).isSuccess());
    CDoorReport report;
    report.m_strSource = QStringLiteral("127.0.0.1:9000");
    report.m_strPeer = QStringLiteral("10.0.0.7:1234");
    for (const EDoorEvent event : {EDoorEvent::Opened, EDoorEvent::Closed}) {
        report.m_eEvent = event;
        reportToAudit(report);
    }
    EXPECT_EQ(screen.str(), "");
    report.m_eEvent = EDoorEvent::Opened;
    report.m_strCause = QStringLiteral("it listens on port 9000");
    reportToAudit(report);
    EXPECT_NE(screen.str().find("127.0.0.1:9000 端口已改变: it listens on port 9000"), std::string::npos)
        << screen.str();
    report.m_strCause = QStringLiteral("too many");
    report.m_eEvent = EDoorEvent::Stuck;
    reportToAudit(report);
    EXPECT_NE(screen.str().find("127.0.0.1:9000 已停止服务"), std::string::npos) << screen.str();
    report.m_eEvent = EDoorEvent::Refused;
    reportToAudit(report);
    EXPECT_NE(screen.str().find("127.0.0.1:9000 拒绝连接 10.0.0.7:1234: too many"), std::string::npos)
        << screen.str();
    releaseHost();
}

/// The output of the minimal host's audit, tested without the service.
class KitAudit : public testing::Test {
protected:
    KitAudit() { EXPECT_TRUE(installHost(host.services()).isSuccess()); }
    ~KitAudit() override { releaseHost(); }

    bool shows(const char* text) const { return screen.str().find(text) != std::string::npos; }

    std::ostringstream screen;
    minimal::CMinimalHost host{screen};
};

TEST_F(KitAudit, RefusedFileAndLinesWithoutEffectAreShown) {
    CIntakeReport report;
    report.m_strSource = QStringLiteral("/orders/a.txt");
    report.m_strCause = QStringLiteral("line 3: a zero byte");
    report.m_strKeptAs = QStringLiteral("/orders/a.txt.rejected");
    reportToAudit(report);
    EXPECT_EQ(screen.str(), "");
    report.m_bRejected = true;
    reportToAudit(report);
    EXPECT_TRUE(
        shows("/orders/a.txt 已拒绝, 其内容未执行: line 3: a zero byte; 文件保存为 [/orders/a.txt.rejected]"))
        << screen.str();
    report.m_strKeptAs.clear();
    reportToAudit(report);
    EXPECT_TRUE(shows("line 3: a zero byte; 文件已删除")) << screen.str();
    CIntakeReport ignored;
    ignored.m_nIgnoredLines = 2;
    ignored.m_strFirstIgnored = QStringLiteral("line 1: too few fields");
    reportToAudit(ignored);
    EXPECT_TRUE(shows("有2行未生效, 首行为 line 1: too few fields")) << screen.str();
}

TEST_F(KitAudit, FileOfAnEarlierRunIsShownAsPossiblyTraded) {
    CIntakeReport report;
    report.m_strSource = QStringLiteral("/orders/a.txt.tmp");
    report.m_bLeftOver = true;
    reportToAudit(report);
    EXPECT_TRUE(shows("/orders/a.txt.tmp 为遗留文件, 本次未读取, 其指令可能已执行")) << screen.str();
    EXPECT_FALSE(shows("未执行")) << screen.str();
}

TEST_F(KitAudit, FileThatIsDeletedUnreadIsShown) {
    CDiscardReport report;
    report.m_strSource = QStringLiteral("/orders/a.txt");
    report.m_nLines = 7;
    reportToAudit(report);
    EXPECT_TRUE(shows("/orders/a.txt 未读取即删除, 共7行")) << screen.str();
    report.m_nLines = -1;
    reportToAudit(report);
    EXPECT_TRUE(shows("/orders/a.txt 未读取即删除, 行数未知")) << screen.str();
}

TEST_F(KitAudit, UnplacedOrdersAreShownByChannel) {
    QVector<COrderParam> orders(3);
    orders[0].m_nChannel = orders[2].m_nChannel = 4;
    orders[1].m_nChannel = 9;
    reportUnplaced(orders);
    EXPECT_TRUE(shows("通道号: 4, 2条指令未执行!")) << screen.str();
    EXPECT_TRUE(shows("通道号: 9, 1条指令未执行!")) << screen.str();
}

TEST_F(KitAudit, DroppedOrdersAndFailedCancelsAreShown) {
    reportOrdersDropped(5, 2, QStringLiteral("no user is loaded"));
    EXPECT_TRUE(shows("通道号: 5, 2条指令未执行: no user is loaded")) << screen.str();
    CIncidentReport interrupted;
    interrupted.m_eIncident = EIncident::OrdersInterrupted;
    interrupted.m_nChannel = 5;
    interrupted.m_nOrders = 2;
    interrupted.m_strCause = QStringLiteral("no dialog");
    reportToAudit(interrupted);
    EXPECT_TRUE(shows("通道号: 5, 2条指令可能只执行了一部分: no dialog")) << screen.str();
    CIncidentReport cancel;
    cancel.m_eIncident = EIncident::CancelNotDone;
    cancel.m_nTaskId = 12;
    cancel.m_strCause = QStringLiteral("no such task");
    reportToAudit(cancel);
    EXPECT_TRUE(shows("任务 12 未撤销: no such task")) << screen.str();
    cancel.m_nTaskId = kUnsetInt; // now the cancel of an order
    reportToAudit(cancel);
    EXPECT_TRUE(shows("撤单未成功: no such task")) << screen.str();
}

TEST_F(KitAudit, LeftOutRowsAndStrategiesAreShown) {
    CIncidentReport report;
    report.m_eIncident = EIncident::RowsLeftOut;
    report.m_nChannel = 5;
    report.m_nRows = 2;
    report.m_strCode = QStringLiteral("600009");
    report.m_strCause = QStringLiteral("why");
    reportToAudit(report);
    EXPECT_TRUE(shows("通道号: 5, 组合中2行未下单, 首行 [600009]: why")) << screen.str();
    report.m_eIncident = EIncident::StrategyNotLoaded;
    reportToAudit(report);
    EXPECT_TRUE(shows("通道号: 5, 策略未加载: why")) << screen.str();
    report.m_eIncident = EIncident::StrategyNotStarted;
    reportToAudit(report);
    EXPECT_TRUE(shows("通道号: 5, 策略未启动: why")) << screen.str();
}

class CBrokenPanel : public CMsgService {
public:
    void showMsg(const QString&, EMsgTypeDef, MsgLevel, bool, bool, const QString&) override {
        throw std::runtime_error("dark");
    }
};

/// The kit's audit shows its reports only on the panel.
TEST(KitPanel, ReportIsLoggedIfThePanelThrows) {
    std::ostringstream screen;
    minimal::CMinimalHost host(screen);
    CBrokenPanel panel;
    CHost services = host.services();
    services.msgService = &panel;
    ASSERT_TRUE(installHost(services).isSuccess());
    testing::internal::CaptureStderr();
    reportSafely(QStringLiteral("words"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "order service: words (CMsgService::showMsg: dark)\n");
    releaseHost();
}

} // namespace
