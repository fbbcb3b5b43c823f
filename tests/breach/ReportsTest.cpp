// If a channel of reports fails, the next one is used. The audit gets the orders that end without a
// message.
#include "orderservice/base/Thread.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "tests/breach/BreachRows.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

using namespace breach;

class BreachReports : public testing::Test {
protected:
    /// The incidents in the audit, as "event channel orders task".
    std::vector<std::string> incidents() {
        return road.host.records.snapshot([this] {
            std::vector<std::string> texts;
            for (const TC::CIncidentReport& report : road.host.audit.incidents)
                texts.push_back(std::to_string(static_cast<int>(report.m_eIncident)) + " " +
                                std::to_string(report.m_nChannel) + " " + std::to_string(report.m_nOrders) +
                                " " + std::to_string(report.m_nTaskId));
            return texts;
        });
    }

    const std::string unset = std::to_string(TC::kUnsetInt);
    CBreachRoad road;
};

TEST_F(BreachReports, APanelThatFailsLeavesTheReportToTheAudit) {
    road.host.breaches.arm("CMsgService::showMsg", [] { throw std::runtime_error("dark"); });
    TC::reportSafely(QStringLiteral("words"));
    ASSERT_EQ(road.host.audit.incidents.size(), 1u);
    EXPECT_EQ(road.host.audit.incidents[0].m_eIncident, TC::EIncident::HostFailed);
    EXPECT_EQ(road.host.audit.incidents[0].m_strCause, QStringLiteral("words (CMsgService::showMsg: dark)"));
}

/// By default an audit ignores the report, so the log must get it too.
TEST_F(BreachReports, APanelThatFailsLeavesTheReportToTheLogToo) {
    for (const bool isAuditBroken : {false, true}) {
        road.host.audit.onRecord = [&] {
            if (isAuditBroken) throw std::runtime_error("broken");
        };
        road.host.breaches.arm("CMsgService::showMsg", [] { throw std::runtime_error("dark"); });
        testing::internal::CaptureStderr();
        TC::reportSafely(QStringLiteral("words"));
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "order service: words (CMsgService::showMsg: dark)\n")
            << isAuditBroken;
    }
}

TEST_F(BreachReports, AnExceptionWithoutATextIsNamedAsSuch) {
    struct CSilent : std::exception {
        const char* what() const noexcept override { return nullptr; }
    };
    EXPECT_FALSE(TC::runGuarded(QStringLiteral("bad"), [] { throw CSilent(); }));
    EXPECT_EQ(road.host.reports(), std::vector<std::string>{"[接口单]　bad: an exception without a text"});
    road.load();
    road.host.breaches.arm("CTradeClient::cancelTask", [] { throw CSilent(); });
    road.cancel();
    EXPECT_TRUE(road.host.waitForReport("CTradeClient::cancelTask: an exception without a text"));
    EXPECT_EQ(TC::CHostError("CService::operation", nullptr).what(),
              std::string("CService::operation: an exception without a text"));
}

/// The refusal to end the service is itself a report.
TEST_F(BreachReports, AReportInsideAReportGoesToTheLog) {
    const utils::CLibraryCall call; // inside such a call the service refuses to end
    for (const bool isPanelDark : {false, true}) {
        std::atomic<int> calls{0};
        const auto end = [&] {
            if (++calls < 100) road.service().shutdown(); // the limit stops an endless recursion
        };
        road.host.breaches.arm("CMsgService::showMsg", [&] {
            if (isPanelDark) throw std::runtime_error("dark");
            end();
        });
        road.host.audit.onRecord = end;
        testing::internal::CaptureStderr();
        TC::reportSafely(QStringLiteral("words"));
        EXPECT_NE(testing::internal::GetCapturedStderr().find("不能在下单服务的线程或回调中关闭下单服务"),
                  std::string::npos);
        EXPECT_EQ(calls, 1);
        EXPECT_TRUE(road.host.waitForReport("words"));
        road.host.audit.onRecord = nullptr;
        road.host.breaches.disarm();
    }
}

TEST_F(BreachReports, APanelThatEndsTheServiceAtEachMessageStopsNoOrder) {
    road.load();
    road.host.breaches.arm("CMsgService::showMsg", [&] { road.service().shutdown(); });
    road.place(CBreachRoad::order(3));
    EXPECT_TRUE(road.waitForCommands(1));
}

TEST_F(BreachReports, FlagsThatCannotBeReadDoNotKeepTheReportBack) {
    road.host.breaches.arm("CUserConfig::getMsgFlags", [] { throw 1; });
    TC::reportSafely(QStringLiteral("words"));
    EXPECT_TRUE(road.host.waitForReport("words"));
}

TEST_F(BreachReports, GuardedBodyReportsWhatItThrew) {
    EXPECT_TRUE(TC::runGuarded(QStringLiteral("good"), [] {}));
    EXPECT_FALSE(TC::runGuarded(QStringLiteral("bad"), [] { throw std::runtime_error("broken"); }));
    EXPECT_FALSE(TC::runGuarded(QStringLiteral("odd"), [] { throw 1; }));
    EXPECT_EQ(road.host.reports(),
              (std::vector<std::string>{"[接口单]　bad: broken",
                                        "[接口单]　odd: an exception of an unknown type"}));
}

TEST_F(BreachReports, OrdersBeforeTheFirstLoadGoToTheAudit) {
    road.service().placeOrders({CBreachRoad::order(3), CBreachRoad::order(4)});
    road.service().placeOrders({});
    road.waitForService();
    EXPECT_EQ(incidents(), std::vector<std::string>{"0 3 2 " + unset});
}

TEST_F(BreachReports, TheRestOfABatchThatEndsGoesToTheAudit) {
    road.load();
    road.service().placeOrders(
        {CBreachRoad::order(3), CBreachRoad::order(99), CBreachRoad::order(11), CBreachRoad::order(3)});
    road.service().placeOrders({CBreachRoad::order(99)}); // a single order: only the message reports it
    road.waitForService();
    EXPECT_EQ(incidents(), std::vector<std::string>{"0 11 2 " + unset});
    EXPECT_EQ(road.commandCount(), 1u);
}

/// A refusal ends its batch even if an operation fails while the refusal is reported.
TEST_F(BreachReports, ARefusalThatCannotBeShownEndsItsBatch) {
    road.load();
    std::size_t batches = 0;
    for (const char* operation :
         {"CMsgService::showMsg", "CUserConfig::getMsgFlags", "CUserConfig::hasUserAuth"}) {
        for (const int refused : {99, 5}) { // 99: unknown channel; 5: stopped strategy
            bool hasFailed = false;
            road.host.breaches.arm(operation, [&] {
                if (!std::exchange(hasFailed, true)) throw std::runtime_error("dark");
            });
            road.service().placeOrders({CBreachRoad::order(refused), CBreachRoad::order(3)});
            road.waitForService();
            road.host.breaches.disarm();
            EXPECT_TRUE(hasFailed) << operation;
            EXPECT_EQ(road.commandCount(), 0u) << operation << ' ' << refused;
            const auto all = incidents();
            EXPECT_EQ(std::count(all.begin(), all.end(), "0 3 1 " + unset), ++batches) << operation;
        }
    }
}

TEST_F(BreachReports, OrdersOfAUserWhoMayNotIssueCommandsGoToTheAudit) {
    road.host.user.kind = 1;
    road.load();
    road.place(CBreachRoad::order(3));
    road.place(CBreachRoad::order(12, 25));
    road.waitForService();
    EXPECT_EQ(incidents(), (std::vector<std::string>{"0 3 1 " + unset, "0 12 1 " + unset}));
}

TEST_F(BreachReports, OrdersOfAUserWithoutAnyRightGoToTheAudit) {
    road.host.user.orderService = false;
    road.host.user.rights.clear();
    road.load();
    road.place(CBreachRoad::order(3));
    road.waitForService();
    EXPECT_EQ(incidents(), std::vector<std::string>{"0 3 1 " + unset});
}

TEST_F(BreachReports, CancelOfAnUnknownTaskByFileGoesToTheAudit) {
    road.host.tasks.hasOnlyNullTasks = true;
    road.load();
    road.drop("cancel 7\n");
    EXPECT_TRUE(road.host.waitForReport("there is no such task"));
    EXPECT_EQ(incidents(), std::vector<std::string>{"1 " + unset + " 0 7"});
}

/// A failure that repeats in every pass is reported once. After a good pass it is reported again.
TEST_F(BreachReports, APollingThatFailsIsToldOnce) {
    road.load();
    for (int times = 1; times <= 2; ++times) {
        std::atomic<int> looks{0};
        road.host.breaches.arm("CUserConfig::hasOrderEncryptionService", [&] {
            road.host.records.record([&] { ++looks; });
            throw std::runtime_error("broken");
        });
        EXPECT_TRUE(road.host.records.waitUntil([&] { return looks > 3; }));
        road.host.breaches.disarm();
        // The pass that reads the second file starts after the pass that reads the first file has ended.
        for (std::size_t file = 1; file <= 2; ++file) {
            const std::size_t before = road.commandCount();
            road.drop("23,0,10.5,600000,100\n");
            EXPECT_TRUE(road.waitForCommands(before + 1));
        }
        const auto reports = road.host.reports();
        EXPECT_EQ(std::count_if(reports.begin(), reports.end(),
                                [](const std::string& text) {
                                    return text.find("文件单轮询中断") != std::string::npos;
                                }),
                  times);
    }
}

} // namespace
