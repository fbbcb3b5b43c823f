#include "desk/host/DeskIntakeAudit.h"
#include "desk/host/DeskMsgService.h"
#include "desk/host/DeskUserConfig.h"
#include "desk/host/FolderLock.h"
#include "desk/host/JournalGuard.h"
#include "desk/host/PaperOrderClient.h"
#include "desk/host/PaperTradeClient.h"
#include "desk/host/PaperTraderCenter.h"

#include "desk/journal/JournalEvents.h"
#include "orderservice/gates/IntakePause.h"
#include "tests/desk/paper/PaperHost.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <sstream>

using namespace desk;
using namespace desk::test;

TEST_F(PaperHost, CommandIsJournalledBeforeItsOrders) {
    CPaperOrderClient client(m_journal, *m_broker, m_sink, false);
    client.orderCommands(command({buy(200, 10.00)}));
    EXPECT_EQ(kinds(), (CTexts{"started", "command", "order", "fill", "order"}));
    const CJson order = record(4);
    EXPECT_EQ(order["command"], 2) << "the order names its command";
    EXPECT_EQ(record(1)["task"], 1) << "the command names the task of its orders";
    EXPECT_EQ(order["task"], 1);
    EXPECT_EQ(order["event"], 3);
    EXPECT_EQ(order["status"], "filled");
    EXPECT_EQ(order["price"], 10.0);
    EXPECT_EQ(record(3)["volume"], 200);
    EXPECT_EQ(m_shown.str(), "");
}

TEST_F(PaperHost, TasksOfCommandsAreThoseOfTheirOrdersWhateverWasRefusedBetween) {
    CPaperOrderClient client(m_journal, *m_broker, m_sink, false);
    client.orderCommands(command({buy(100, 9.50)}));
    {
        // The journal is much smaller than this limit, so only the broker's log meets it.
        const CFullDisk disk(std::filesystem::file_size(m_folder.file("paper.db-wal")));
        client.orderCommands(command({buy(100, 9.60)}));
    }
    client.orderCommands(command({buy(100, 9.70)}));
    EXPECT_EQ(kinds(), (CTexts{"started", "command", "order", "command", "trade_error", "command", "order"}));
    EXPECT_EQ(record(1)["task"], 1);
    EXPECT_EQ(record(3)["task"], 2);
    EXPECT_EQ(record(4)["command"], record(3)["seq"]) << "the error names the command that failed";
    const auto text = record(4)["text"].get<std::string>();
    EXPECT_EQ(text.find("task 2 was not carried out: the paper broker's store failed: "), 0u) << text;
    EXPECT_EQ(m_shown.str(), "command refused: " + text + '\n');
    EXPECT_EQ(record(5)["task"], 3) << "a number is never given to two commands";
    EXPECT_EQ(record(6)["task"], 3);
    EXPECT_FALSE(m_broker->hasTask(2));
}

TEST_F(PaperHost, TaskOfARecordedCommandIsNotGivenAgainAfterACrash) {
    std::int64_t seq = 0;
    const int recorded = m_broker->reserveTask();
    ASSERT_TRUE(m_journal.append(commandRecord({}, recorded), &seq).isSuccess());
    CJournal journal; // as if the process was killed before it stored the command
    ASSERT_TRUE(journal.open(m_folder.path()).isSuccess());
    CPaperBroker broker(m_quotes, {});
    ASSERT_TRUE(broker.open(m_folder.path(), deskAccounts(), journal.lastBrokerEvent(), {journal.lastTask()})
                    .isSuccess());
    CPaperOrderClient(journal, broker, m_sink, false).orderCommands(command({buy(100, 9.50)}));
    ASSERT_EQ(broker.tasks().size(), 1U);
    EXPECT_EQ(broker.tasks().front().m_nId, recorded + 1);
}

TEST_F(PaperHost, CommandWithoutCodesIsTakenAndNullIsIgnored) {
    CPaperOrderClient client(m_journal, *m_broker, m_sink, false);
    client.orderCommands(command({}));
    client.orderCommands({});
    EXPECT_EQ(kinds(), (CTexts{"started", "command"}));
    EXPECT_EQ(m_broker->tasks().size(), 1u);
}

TEST_F(PaperHost, CommandThatTheJournalRefusesIsNotExecutedAndIsReported) {
    CPaperOrderClient client(m_journal, *m_broker, m_sink, false);
    failJournal();
    client.orderCommands(command({buy(200, 10.00)}));
    EXPECT_TRUE(m_broker->tasks().empty());
    EXPECT_NE(m_shown.str().find("command refused: it cannot be recorded: cannot write journal"),
              std::string::npos);
}

TEST_F(PaperHost, CommandToBeConfirmedIsDeclinedUnlessTheDeskTakesSuch) {
    const TC::COrderComandParamPtr forced = command({buy(200, 10.00)});
    forced->m_bForceConfirm = true;
    CPaperOrderClient(m_journal, *m_broker, m_sink, false).orderCommands(forced);
    EXPECT_TRUE(m_broker->tasks().empty());
    EXPECT_EQ(kinds(), (CTexts{"started", "command", "trade_error"}));
    EXPECT_EQ(record(2)["command"], 2);
    EXPECT_EQ(record(2)["text"], "it must be confirmed, but the desk cannot ask anybody");
    EXPECT_TRUE(record(1)["task"].is_null()) << "what was declined has no task";
    EXPECT_EQ(m_shown.str(), "command refused: it must be confirmed, but the desk cannot ask anybody\n");

    CPaperOrderClient(m_journal, *m_broker, m_sink, true).orderCommands(forced);
    EXPECT_EQ(m_broker->tasks().size(), 1u);
}

TEST_F(PaperHost, HaltedClientRecordsAndDeclinesCommands) {
    CPaperOrderClient client(m_journal, *m_broker, m_sink, false);
    client.setHalted(true);
    client.finishPassing();
    client.orderCommands(command({buy(200, 10.00)}));
    EXPECT_TRUE(m_broker->tasks().empty());
    EXPECT_EQ(kinds(), (CTexts{"started", "command", "trade_error"}));
    EXPECT_TRUE(record(1)["task"].is_null());
    EXPECT_EQ(record(2)["text"], "the desk is halted");

    client.setHalted(false);
    client.orderCommands(command({buy(200, 10.00)}));
    EXPECT_EQ(m_broker->tasks().size(), 1u);
}

TEST_F(PaperHost, TradeErrorIsJournalledAndShown) {
    CPaperOrderClient(m_journal, *m_broker, m_sink, false)
        .showTradeError(QStringLiteral("无法下单"), QStringLiteral("错误"));
    EXPECT_EQ(record(1)["kind"], "trade_error");
    EXPECT_EQ(record(1)["text"], "无法下单");
    EXPECT_EQ(m_shown.str(), "错误: 无法下单\n");
}

TEST_F(PaperHost, LoginStatusIsTheConfigurations) {
    CPaperTradeClient client(m_journal, *m_broker, m_quotes, m_sink, deskAccounts());
    EXPECT_EQ(client.getLoginStatus("A1"), TC::EBROKER_LOGIN_STATUS::LoggedIn);
    EXPECT_EQ(static_cast<int>(client.getLoginStatus("X1")), 2);
    EXPECT_EQ(static_cast<int>(client.getLoginStatus("nobody")), -1);
}

TEST_F(PaperHost, VolumesAreSplitInTheInstrumentsUnit) {
    CPaperTradeClient client(m_journal, *m_broker, m_quotes, m_sink, deskAccounts());
    const auto split = [&](int volume, const std::vector<double>& ratios, const std::string& code,
                           const boost::shared_ptr<utils::KNError>& error) {
        return client.splitEntrusts(volume, TC::kUnsetDouble, TC::EPriceType::Specified,
                                    {account("A1"), account("A2")}, ratios, {}, code.empty() ? "" : "SH",
                                    code, TC::EOperationType::Buy, TC::EHedge_Flag_Type::Speculation, error);
    };
    const auto error = boost::make_shared<utils::KNError>();
    EXPECT_EQ(split(300, {1, 1}, "600000", error), (std::vector<int>{200, 100}));
    EXPECT_EQ(split(300, {1, 1}, "", error), (std::vector<int>{150, 150}));
    EXPECT_TRUE(error->isSuccess());
    EXPECT_TRUE(split(300, {1}, "600000", error).empty());
    EXPECT_EQ(error->errorMsg(), "the number of weights differs from the number of accounts");
    EXPECT_TRUE(split(TC::kUnsetInt, {1, 1}, "600000", error).empty());
    EXPECT_EQ(error->errorMsg(), "没有数量");
    EXPECT_TRUE(split(-1, {1, 1}, "600000", nullptr).empty());
}

TEST_F(PaperHost, CancelTaskIsJournalledCarriedOutAndAnswered) {
    CPaperTradeClient client(m_journal, *m_broker, m_quotes, m_sink, deskAccounts());
    const int task = place({buy(100, 9.50)});
    std::vector<int> answers;
    const auto answer = [&](const utils::KNError& error) { answers.push_back(error.errorId()); };
    client.cancelTask(task, TC::kTaskOpCancel, "", "撤单", "20260105", answer, 0);
    client.cancelTask(99, TC::kTaskOpCancel, "", "撤单", "20260105", answer, 0);
    client.cancelTask(99, TC::kTaskOpCancel, "", "撤单", "20260105", {}, 0);
    EXPECT_EQ(answers, (std::vector<int>{0, kPaperBadRequest}));
    EXPECT_EQ(kinds(), (CTexts{"started", "order", "cancel_task", "order", "cancel_task", "incident",
                               "cancel_task", "incident"}));
    EXPECT_EQ(order(1).m_strReason, "撤单");
}

TEST_F(PaperHost, CancelIsCarriedOutAlsoWhereTheJournalRefuses) {
    CPaperTradeClient client(m_journal, *m_broker, m_quotes, m_sink, deskAccounts());
    const int task = place({buy(100, 9.50)});
    failJournal();
    client.cancelTask(task, TC::kTaskOpCancel, "", "撤单", "20260105", {}, 0);
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Cancelled);
}

TEST_F(PaperHost, CancelByOrderAnswersBySignal) {
    CPaperTradeClient client(m_journal, *m_broker, m_quotes, m_sink, deskAccounts());
    place({buy(100, 9.50)});
    CTexts answers;
    QObject::connect(
        &client, &TC::CTradeClient::sigCancelOrder, &client,
        [&](const knservice::COrderInfoPtr& info, bool success, const std::string& message) {
            answers.push_back(info->getKey() + (success ? " ok" : " " + message));
        },
        Qt::DirectConnection);
    client.cancelOrders({"cancel_order", "A1", "1"});
    client.cancelOrders({"cancel_order", "A1", "7"});
    client.cancelOrders({"cancel_order", "A1", "1\r"});
    EXPECT_EQ(answers, (CTexts{"A1 1 ok", "A1 7 cancel_order A1 7: account A1 has no order 7",
                               "A1 1\r cancel_order A1 1: order 1 does not wait: cancelled"}));
    EXPECT_EQ(m_shown.str(), "") << "the order service hands the reason to the audit";
    EXPECT_EQ(kinds(),
              (CTexts{"started", "order", "cancel_orders", "order", "cancel_orders", "cancel_orders"}));
}

TEST_F(PaperHost, TasksOfTheCentreEndTheirOrders) {
    const CDeskUserConfig user{CDeskConfig()};
    const CDeskExchangeClient exchange({});
    const CPaperAccounts accounts(*m_broker, m_quotes, exchange, user);
    CPaperTraderCenter center(m_journal, *m_broker, m_sink, accounts);
    const int task = place({buy(100, 9.50)});
    EXPECT_TRUE(center.getTaskCenter().findTasks(task + 1).empty());
    const auto tasks = center.getTaskCenter().findTasks(task);
    ASSERT_EQ(tasks.size(), 1u);
    tasks[0]->operate({99, 0, "user", "?"});
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Working);
    EXPECT_EQ(m_shown.str(), "cancel of task 1 not done: task operation 99 is not modelled\n");
    tasks[0]->operate({TC::kTaskOpTerminate, 100, "user", "user终止任务"});
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Cancelled);
    EXPECT_EQ(kinds(), (CTexts{"started", "order", "cancel_task", "incident", "cancel_task", "order"}));
}

TEST_F(PaperHost, IncidentsAreJournalledAndShown) {
    CDeskIntakeAudit audit(m_journal, m_sink);
    TC::CIncidentReport report;
    report.m_eIncident = TC::EIncident::OrdersDropped;
    report.m_nChannel = 3;
    report.m_nOrders = 2;
    report.m_strCause = QStringLiteral("why");
    audit.recordIncident(report);
    report.m_eIncident = TC::EIncident::OrdersInterrupted;
    audit.recordIncident(report);
    report = {};
    report.m_eIncident = TC::EIncident::CancelNotDone;
    report.m_nTaskId = 7;
    report.m_strCause = QStringLiteral("there is no such task");
    audit.recordIncident(report);
    report.m_nTaskId = TC::kUnsetInt;
    report.m_strCause = QStringLiteral("cancel_order A1 7: account A1 has no order 7");
    audit.recordIncident(report);
    report = {};
    report.m_strCause = QStringLiteral("broken");
    audit.recordIncident(report);
    EXPECT_EQ(kinds(), (CTexts{"started", "incident", "incident", "incident", "incident", "incident"}));
    EXPECT_EQ(m_shown.str(), "channel 3: 2 orders not sent: why\n"
                             "channel 3: 2 orders interrupted, some may have been sent: why\n"
                             "cancel of task 7 not done: there is no such task\n"
                             "cancel not done: cancel_order A1 7: account A1 has no order 7\n"
                             "a message could not be shown: broken\n");
}

TEST_F(PaperHost, RowsAndStrategiesLeftOutAreJournalledAndShown) {
    CDeskIntakeAudit audit(m_journal, m_sink);
    TC::CIncidentReport report;
    report.m_eIncident = TC::EIncident::RowsLeftOut;
    report.m_nChannel = 3;
    report.m_nRows = 2;
    report.m_strCode = QStringLiteral("600009");
    report.m_strCause = QStringLiteral("why");
    audit.recordIncident(report);
    report.m_eIncident = TC::EIncident::StrategyNotLoaded;
    audit.recordIncident(report);
    report.m_eIncident = TC::EIncident::StrategyNotStarted;
    audit.recordIncident(report);
    EXPECT_EQ(kinds(), (CTexts{"started", "incident", "incident", "incident"}));
    EXPECT_EQ(m_shown.str(), "channel 3: 2 rows of a basket left out; the first is 600009: why\n"
                             "channel 3: the strategy is not loaded: why\n"
                             "channel 3: the strategy does not run: why\n");
}

TEST_F(PaperHost, MessagesAndIntakeAreJournalled) {
    CDeskMsgService messages(m_journal, m_sink);
    messages.showMsg(QStringLiteral("启动"), TC::EMsgTypeDef::General, TC::MsgLevel::Note, true, false, {});
    TC::CIntakeReport report;
    report.m_strSource = QStringLiteral("a.txt");
    CDeskIntakeAudit audit(m_journal, m_sink);
    audit.recordIntake(report);
    report.m_bCutShort = true;
    report.m_strCause = QStringLiteral("line 3");
    audit.recordIntake(report);
    EXPECT_EQ(kinds(), (CTexts{"started", "message", "intake", "intake"}));
    EXPECT_EQ(m_shown.str(),
              "启动\na.txt gave no order: the file is empty\n"
              "a.txt gave no order from 0 lines; it was cut short at line 3; the lines after that "
              "are lost\n");
}

TEST_F(PaperHost, FateOfAFileIsShown) {
    CDeskIntakeAudit audit(m_journal, m_sink, QStringLiteral("/desk/rejected"));
    EXPECT_EQ(audit.rejectedFolder(), QStringLiteral("/desk/rejected"));
    EXPECT_EQ(CDeskIntakeAudit(m_journal, m_sink).rejectedFolder(), QString());

    TC::CIntakeReport report;
    report.m_strSource = QStringLiteral("a.txt");
    report.m_bLeftWaiting = true;
    report.m_strCause = QStringLiteral("why");
    audit.recordIntake(report);
    report.m_bLeftWaiting = false;
    report.m_bLeftOver = true;
    audit.recordIntake(report);
    report = {};
    report.m_strSource = QStringLiteral("b.txt");
    report.m_bRejected = true;
    report.m_strCause = QStringLiteral("line 1: a zero byte");
    report.m_strKeptAs = QStringLiteral("rejected/b.txt.1");
    audit.recordIntake(report);
    report.m_strKeptAs.clear();
    audit.recordIntake(report);
    report.m_bRejected = false;
    report.m_bCutShort = true;
    report.m_strKeptAs = QStringLiteral("rejected/b.txt.2");
    audit.recordIntake(report);
    EXPECT_EQ(
        m_shown.str(),
        "a.txt waits unread: why\n"
        "a.txt was moved away unread: why\n"
        "b.txt was refused whole: line 1: a zero byte; the file is kept as rejected/b.txt.1\n"
        "b.txt was refused whole: line 1: a zero byte; the file was deleted\n"
        "b.txt gave no order from 0 lines; it was cut short at line 1: a zero byte; the file is kept as "
        "rejected/b.txt.2\n");
}

TEST_F(PaperHost, OrderFilesWaitWhileTheJournalCannotBeWritten) {
    CJournalGuard guard(m_journal, m_sink, [this] { m_broker->deliverEvents(); });
    guard.poll();
    EXPECT_FALSE(TC::CIntakePause::isPaused());
    failJournal();
    {
        const CFullDisk disk(journalSize());
        guard.poll();
        guard.poll();
    }
    EXPECT_TRUE(guard.isPausing());
    EXPECT_TRUE(TC::CIntakePause::isPaused());
    EXPECT_EQ(m_shown.str().find("ERROR: cannot write journal"), 0u);
    EXPECT_EQ(m_shown.str().rfind("ERROR"), 0u) << "reported once";

    guard.poll();
    EXPECT_FALSE(guard.isPausing());
    EXPECT_FALSE(TC::CIntakePause::isPaused());
    EXPECT_NE(m_shown.str().find("The journal works again"), std::string::npos);
}

TEST_F(PaperHost, JournalsFileIsLookedAtOnceASecond) {
    CJournalGuard guard(m_journal, m_sink, {});
    guard.poll();
    std::filesystem::remove(m_folder.file(kJournalFileName));
    m_clock.m_dNow = 0.9;
    guard.poll();
    EXPECT_EQ(m_shown.str(), "");
    m_clock.m_dNow = 1.0;
    guard.poll();
    EXPECT_EQ(m_shown.str().find("WARNING: journal "), 0u) << m_shown.str();
    EXPECT_EQ(kinds(), CTexts{"continued"});
    EXPECT_FALSE(guard.isPausing());
}

TEST_F(PaperHost, FillsWhileTheJournalCannotBeWrittenReachItLater) {
    CJournalGuard guard(m_journal, m_sink, [this] { m_broker->deliverEvents(); });
    place({buy(100, 9.50)});
    failJournal();
    m_quotes.setQuote(kStock, {}, {{9.50, 100}});
    ASSERT_TRUE(m_broker->onQuote(kStock).isSuccess());
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(kinds(), (CTexts{"started", "order"}));
    guard.poll();
    EXPECT_EQ(kinds(), (CTexts{"started", "order", "resumed", "fill", "order"}));
}

TEST_F(PaperHost, JournalOfAnEarlierRunTellsWhichEventsAreMissing) {
    place({buy(100, 9.50)});
    failJournal();
    ASSERT_TRUE(m_broker->cancelTask(1, "").isSuccess());
    m_broker.reset();

    CJournal journal;
    ASSERT_TRUE(journal.open(m_folder.path()).isSuccess());
    CPaperBroker broker(m_quotes, [&](const std::vector<CBrokerEvent>& events) {
        return journalBrokerEvents(journal, events);
    });
    ASSERT_TRUE(broker.open(m_folder.path(), deskAccounts(), journal.lastBrokerEvent()).isSuccess());
    EXPECT_EQ(kinds(), (CTexts{"started", "order", "started", "order"}));
    EXPECT_EQ(record(3)["status"], "cancelled");
}

TEST(FolderLock, FileSystemWithoutLocksIsReportedWithARemedy) {
    for (const int reason : {ENOLCK, EBADF, EOPNOTSUPP, ENOSYS, EINVAL})
        EXPECT_EQ(lockFailureText(reason),
                  "this file system cannot lock the folder; put the desk folder on a local disk");
    EXPECT_EQ(lockFailureText(EACCES), "Permission denied");
}

TEST(FolderLock, FolderIsHeldByOneProcessAtATime) {
    const CDeskFolder folder;
    int ready[2];
    int done[2];
    ASSERT_EQ(::pipe(ready), 0);
    ASSERT_EQ(::pipe(done), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        CFolderLock lock;
        char answer = lock.acquire(folder.path()).isSuccess() ? 'y' : 'n';
        const bool reported = ::write(ready[1], &answer, 1) == 1;
        const bool ended = ::read(done[0], &answer, 1) == 1;
        ::_exit(reported && ended ? 0 : 1);
    }
    char answer = 0;
    ASSERT_EQ(::read(ready[0], &answer, 1), 1);
    ASSERT_EQ(answer, 'y');
    CFolderLock lock;
    const utils::KNError error = lock.acquire(folder.path());
    EXPECT_EQ(error.errorMsg(), "cannot use desk folder " + folder.path() + ": it is in use by process " +
                                    std::to_string(child));
    ASSERT_EQ(::write(done[1], "x", 1), 1);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(lock.acquire(folder.path()).isSuccess()) << "the lock goes with its process";
    for (const int descriptor : {ready[0], ready[1], done[0], done[1]})
        ::close(descriptor);
}

TEST(FolderLock, RemovingTheFileLetsNobodyIn) {
    const CDeskFolder folder;
    CFolderLock first, second;
    ASSERT_TRUE(first.acquire(folder.path()).isSuccess());
    std::filesystem::remove(folder.file(".lock"));
    EXPECT_EQ(second.acquire(folder.path()).errorMsg(),
              "cannot use desk folder " + folder.path() + ": it is in use by another process");
}

TEST(FolderLock, DeskThatLocksOnlyTheFileIsKeptOutAndKeepsOut) {
    const CDeskFolder folder;
    const int descriptor = ::open(folder.file(".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(::flock(descriptor, LOCK_EX | LOCK_NB), 0);
    CFolderLock lock;
    EXPECT_FALSE(lock.acquire(folder.path()).isSuccess());
    ::flock(descriptor, LOCK_UN);
    EXPECT_TRUE(lock.acquire(folder.path()).isSuccess());
    EXPECT_NE(::flock(descriptor, LOCK_EX | LOCK_NB), 0);
    ::close(descriptor);
}

TEST(FolderLock, FolderThatIsNotThereIsAnError) {
    CFolderLock lock;
    EXPECT_FALSE(lock.acquire("/nonexistent-desk-folder").isSuccess());
}
