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
        return run.host.records.snapshot([this] {
            std::vector<std::string> texts;
            for (const TC::CIncidentReport& report : run.host.audit.incidents)
                texts.push_back(std::to_string(static_cast<int>(report.m_eIncident)) + " " +
                                std::to_string(report.m_nChannel) + " " + std::to_string(report.m_nOrders) +
                                " " + std::to_string(report.m_nTaskId));
            return texts;
        });
    }

    const std::string unset = std::to_string(TC::kUnsetInt);
    CBreachRun run;
};

TEST_F(BreachReports, APanelThatFailsLeavesTheReportToTheAudit) {
    run.host.breaches.arm("CMsgService::showMsg", [] { throw std::runtime_error("dark"); });
    TC::reportSafely(QStringLiteral("words"));
    ASSERT_EQ(run.host.audit.incidents.size(), 1u);
    EXPECT_EQ(run.host.audit.incidents[0].m_eIncident, TC::EIncident::HostFailed);
    EXPECT_EQ(run.host.audit.incidents[0].m_strCause, QStringLiteral("words (CMsgService::showMsg: dark)"));
}

/// By default an audit ignores the report, so the log must get it too.
TEST_F(BreachReports, APanelThatFailsLeavesTheReportToTheLogToo) {
    for (const bool isAuditBroken : {false, true}) {
        run.host.audit.onRecord = [&] {
            if (isAuditBroken) throw std::runtime_error("broken");
        };
        run.host.breaches.arm("CMsgService::showMsg", [] { throw std::runtime_error("dark"); });
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
    EXPECT_EQ(run.host.reports(), std::vector<std::string>{"[接口单]　bad: an exception without a text"});
    run.load();
    run.host.breaches.arm("CTradeClient::cancelTask", [] { throw CSilent(); });
    run.cancel();
    EXPECT_TRUE(run.host.waitForReport("CTradeClient::cancelTask: an exception without a text"));
    EXPECT_EQ(TC::CHostError("CService::operation", nullptr).what(),
              std::string("CService::operation: an exception without a text"));
}

/// The refusal to end the service is itself a report.
TEST_F(BreachReports, AReportInsideAReportGoesToTheLog) {
    const utils::CLibraryCall call; // inside such a call the service refuses to end
    for (const bool isPanelDark : {false, true}) {
        std::atomic<int> calls{0};
        const auto end = [&] {
            if (++calls < 100) run.service().shutdown(); // the limit stops an endless recursion
        };
        run.host.breaches.arm("CMsgService::showMsg", [&] {
            if (isPanelDark) throw std::runtime_error("dark");
            end();
        });
        run.host.audit.onRecord = end;
        testing::internal::CaptureStderr();
        TC::reportSafely(QStringLiteral("words"));
        EXPECT_NE(testing::internal::GetCapturedStderr().find("不能在下单服务的线程或回调中关闭下单服务"),
                  std::string::npos);
        EXPECT_EQ(calls, 1);
        EXPECT_TRUE(run.host.waitForReport("words"));
        run.host.audit.onRecord = nullptr;
        run.host.breaches.disarm();
    }
}

TEST_F(BreachReports, APanelThatEndsTheServiceAtEachMessageStopsNoOrder) {
    run.load();
    run.host.breaches.arm("CMsgService::showMsg", [&] { run.service().shutdown(); });
    run.place(CBreachRun::order(3));
    EXPECT_TRUE(run.waitForCommands(1));
}

TEST_F(BreachReports, FlagsThatCannotBeReadDoNotKeepTheReportBack) {
    run.host.breaches.arm("CUserConfig::getMsgFlags", [] { throw 1; });
    TC::reportSafely(QStringLiteral("words"));
    EXPECT_TRUE(run.host.waitForReport("words"));
}

TEST_F(BreachReports, GuardedBodyReportsWhatItThrew) {
    EXPECT_TRUE(TC::runGuarded(QStringLiteral("good"), [] {}));
    EXPECT_FALSE(TC::runGuarded(QStringLiteral("bad"), [] { throw std::runtime_error("broken"); }));
    EXPECT_FALSE(TC::runGuarded(QStringLiteral("odd"), [] { throw 1; }));
    EXPECT_EQ(run.host.reports(),
              (std::vector<std::string>{"[接口单]　bad: broken",
                                        "[接口单]　odd: an exception of an unknown type"}));
}

TEST_F(BreachReports, OrdersBeforeTheFirstLoadGoToTheAudit) {
    run.service().placeOrders({CBreachRun::order(3), CBreachRun::order(4)});
    run.service().placeOrders({});
    run.waitForService();
    EXPECT_EQ(incidents(), std::vector<std::string>{"0 3 2 " + unset});
}

TEST_F(BreachReports, TheRestOfABatchThatEndsGoesToTheAudit) {
    run.load();
    run.service().placeOrders(
        {CBreachRun::order(3), CBreachRun::order(99), CBreachRun::order(11), CBreachRun::order(3)});
    run.service().placeOrders({CBreachRun::order(99)}); // a single order: only the message reports it
    run.waitForService();
    EXPECT_EQ(incidents(), std::vector<std::string>{"0 11 2 " + unset});
    EXPECT_EQ(run.commandCount(), 1u);
}

/// A refusal ends its batch even if an operation fails while the refusal is reported.
TEST_F(BreachReports, ARefusalThatCannotBeShownEndsItsBatch) {
    run.load();
    std::size_t batches = 0;
    for (const char* operation :
         {"CMsgService::showMsg", "CUserConfig::getMsgFlags", "CUserConfig::hasUserAuth"}) {
        for (const int refused : {99, 5}) { // 99: unknown channel; 5: stopped strategy
            bool hasFailed = false;
            run.host.breaches.arm(operation, [&] {
                if (!std::exchange(hasFailed, true)) throw std::runtime_error("dark");
            });
            run.service().placeOrders({CBreachRun::order(refused), CBreachRun::order(3)});
            run.waitForService();
            run.host.breaches.disarm();
            EXPECT_TRUE(hasFailed) << operation;
            EXPECT_EQ(run.commandCount(), 0u) << operation << ' ' << refused;
            const auto all = incidents();
            EXPECT_EQ(std::count(all.begin(), all.end(), "0 3 1 " + unset), ++batches) << operation;
        }
    }
}

TEST_F(BreachReports, OrdersOfAUserWhoMayNotIssueCommandsGoToTheAudit) {
    run.host.user.kind = 1;
    run.load();
    run.place(CBreachRun::order(3));
    run.place(CBreachRun::order(12, 25));
    run.waitForService();
    EXPECT_EQ(incidents(), (std::vector<std::string>{"0 3 1 " + unset, "0 12 1 " + unset}));
}

TEST_F(BreachReports, OrdersOfAUserWithoutAnyRightGoToTheAudit) {
    run.host.user.orderService = false;
    run.host.user.rights.clear();
    run.load();
    run.place(CBreachRun::order(3));
    run.waitForService();
    EXPECT_EQ(incidents(), std::vector<std::string>{"0 3 1 " + unset});
}

TEST_F(BreachReports, CancelOfAnUnknownTaskByFileGoesToTheAudit) {
    run.host.tasks.hasOnlyNullTasks = true;
    run.load();
    run.drop("cancel 7\n");
    EXPECT_TRUE(run.host.waitForReport("there is no such task"));
    const std::string cancelNotDone = std::to_string(static_cast<int>(TC::EIncident::CancelNotDone));
    EXPECT_EQ(incidents(), std::vector<std::string>{cancelNotDone + " " + unset + " 0 7"});
}

/// A failure that repeats in every pass is reported once. After a good pass it is reported again.
TEST_F(BreachReports, APollingThatFailsIsReportedOnce) {
    run.load();
    for (int times = 1; times <= 2; ++times) {
        std::atomic<int> looks{0};
        run.host.breaches.arm("CUserConfig::hasOrderEncryptionService", [&] {
            run.host.records.record([&] { ++looks; });
            throw std::runtime_error("broken");
        });
        EXPECT_TRUE(run.host.records.waitUntil([&] { return looks > 3; }));
        run.host.breaches.disarm();
        // The pass that reads the second file starts after the pass that reads the first file has ended.
        for (std::size_t file = 1; file <= 2; ++file) {
            const std::size_t before = run.commandCount();
            run.drop("23,0,10.5,600000,100\n");
            EXPECT_TRUE(run.waitForCommands(before + 1));
        }
        const auto reports = run.host.reports();
        EXPECT_EQ(std::count_if(reports.begin(), reports.end(),
                                [](const std::string& text) {
                                    return text.find("文件单轮询中断") != std::string::npos;
                                }),
                  times);
    }
}

} // namespace
