// What function trading asks of the paper host: cancels of single orders, refusals and limits.
#include "desk/host/DeskUserConfig.h"
#include "desk/host/PaperAccounts.h"
#include "desk/host/PaperOrderClient.h"
#include "desk/host/PaperTradeClient.h"
#include "desk/host/PaperTraderCenter.h"
#include "tests/desk/paper/PaperHost.h"

#include <QCoreApplication>

#include <thread>

using namespace desk;
using namespace desk::test;

namespace {

class FunctionCommands : public PaperHost {};

/// The refusals that callers of function trading are told, as "trade key: text".
class CheckFailures : public PaperHost {
protected:
    CheckFailures() {
        m_client.setCheckFailed([this](const std::string& tradeKey, const utils::KNError& error) {
            EXPECT_EQ(error.errorId(), -1);
            m_failures.push_back(tradeKey + ": " + error.errorMsg());
        });
    }
    TC::COrderComandParamPtr call(std::vector<TC::CCodeOrderParam> codes) const {
        const TC::COrderComandParamPtr made = command(std::move(codes));
        made->m_bFuncOrder = true;
        made->m_strAlgoParam = "free|key|7";
        return made;
    }

    CPaperOrderClient m_client{m_journal, *m_broker, m_sink, false};
    CTexts m_failures;
};

} // namespace

TEST_F(FunctionCommands, OrderOfAnOrderListIsCancelledByItsNumber) {
    place({buy(100, 9.50), buy(100, 9.51)});
    CPaperTradeClient client(m_journal, *m_broker, m_quotes, m_sink, deskAccounts());
    CTexts answers;
    QObject::connect(
        &client, &TC::CTradeClient::sigCancelOrder, &client,
        [&](const knservice::COrderInfoPtr& info, bool success, const std::string& message) {
            answers.push_back(info->getKey() + ' ' + (success ? "ok" : message));
        },
        Qt::DirectConnection);
    const auto detail = boost::make_shared<CPaperOrderDetail>(order(2));
    client.cancelOrder(detail);
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Working);
    EXPECT_EQ(order(2).m_eStatus, EOrderStatus::Cancelled);
    EXPECT_EQ(order(2).m_strReason, "cancelled by a function call");
    client.cancelOrder(detail);
    const auto foreign = boost::make_shared<knservice::COrderDetail>();
    foreign->m_strOrderSysID = "1";
    client.cancelOrder(foreign);
    client.cancelOrder(nullptr);
    EXPECT_EQ(answers, (CTexts{"A1 2 ok", "A1 2 cancel_order A1 2: order 2 does not wait: cancelled",
                               " 1 cancel_order  1: cancel_order takes an account key and an order id"}));
    EXPECT_EQ(kinds(), (CTexts{"started", "order", "order", "cancel_orders", "order", "cancel_orders",
                               "cancel_orders"}));
    EXPECT_EQ(record(3)["words"], (CTexts{"cancel_order", "A1", "2"}));
}

TEST_F(CheckFailures, RejectedOrdersAreToldOnceForTheirCommand) {
    m_client.orderCommands(call({buy(100, 9.50)}));
    EXPECT_TRUE(m_failures.empty());
    m_client.orderCommands(call({buy(150, 9.50)}));
    m_client.orderCommands(call({buy(100, 9.50), buy(100, 12), sell(170, 9.50)}));
    m_client.orderCommands(call({buy(100, 9.50), buy(100, 12)}));
    const std::string tooHigh = " was rejected: price 12.0000 is above the limit 11.0000";
    EXPECT_EQ(m_failures, (CTexts{"free|key|7: order 2 was rejected: volume 150 is not a multiple of 100",
                                  "free|key|7: order 4" + tooHigh + "; 2 of 3 orders were rejected",
                                  "free|key|7: order 7" + tooHigh}));
}

TEST_F(CheckFailures, RejectedOrdersOfSeveralQueuedCommandsAreTold) {
    m_broker->startWorker();
    for (int i = 0; i < 20; ++i)
        m_client.orderCommands(call({buy(150, 9.50)}));
    m_broker->stopWorker();
    EXPECT_EQ(m_failures.size(), 20U);
}

TEST_F(CheckFailures, RefusedCommandsAreTold) {
    const TC::COrderComandParamPtr forced = call({buy(100, 9.50)});
    forced->m_bForceConfirm = true;
    m_client.orderCommands(forced);
    m_client.setHalted(true);
    m_client.orderCommands(call({buy(100, 9.50)}));
    m_client.setHalted(false);
    {
        const CFullDisk disk(std::filesystem::file_size(m_folder.file("paper.db-wal")));
        m_client.orderCommands(call({buy(100, 9.60)}));
    }
    failJournal();
    m_client.orderCommands(call({buy(100, 9.50)}));
    ASSERT_EQ(m_failures.size(), 4U);
    EXPECT_EQ(m_failures[0],
              "free|key|7: command refused: it must be confirmed, but the desk cannot ask anybody");
    EXPECT_EQ(m_failures[1], "free|key|7: command refused: the desk is halted");
    EXPECT_NE(m_failures[2].find("free|key|7: command refused: task 1 was not carried out: "),
              std::string::npos)
        << m_failures[2];
    EXPECT_NE(m_failures[3].find("command refused: it cannot be recorded: "), std::string::npos)
        << m_failures[3];
}

TEST_F(CheckFailures, OtherCommandsAreNotTold) {
    const TC::COrderComandParamPtr plain = call({buy(150, 9.50)});
    plain->m_bFuncOrder = false;
    m_client.orderCommands(plain);
    m_client.setHalted(true);
    m_client.orderCommands(plain);
    EXPECT_TRUE(m_failures.empty());
}

TEST_F(CheckFailures, MessageOfAnAlgorithmIsNoTradeKey) {
    const TC::COrderComandParamPtr algorithm = call({buy(150, 9.50)});
    algorithm->m_ePlatform = static_cast<TC::ETradePlatform>(11);
    m_client.orderCommands(algorithm);
    ASSERT_EQ(m_failures.size(), 1U);
    EXPECT_EQ(m_failures[0].find(": "), 0U) << m_failures[0];
}

TEST_F(CheckFailures, SignalComesFromTheEventLoopOfTheTradeClient) {
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    const QCoreApplication app(argc, argv);
    CPaperTradeClient trade(m_journal, *m_broker, m_quotes, m_sink, deskAccounts());
    CTexts received;
    QObject::connect(
        &trade, &TC::CTradeClient::sigOrderCheckFailed, &trade,
        [&](const knservice::COrderCommandPtr& refused, const utils::KNError& error) {
            received.push_back(refused->m_strTradeKey + ": " + error.errorMsg());
        },
        Qt::DirectConnection);
    std::thread([&] { trade.reportCheckFailed("a|b|1", {-1, "why"}); }).join();
    EXPECT_TRUE(received.empty()) << "the caller may hold locks";
    QCoreApplication::sendPostedEvents(&trade);
    EXPECT_EQ(received, CTexts{"a|b|1: why"});
}

TEST_F(FunctionCommands, LimitOfTheCalculatorIsTheUsableVolume) {
    const CDeskUserConfig user{CDeskConfig()};
    const CDeskExchangeClient exchange({});
    const CPaperAccounts accounts(*m_broker, m_quotes, exchange, user);
    CPaperTraderCenter center(m_journal, *m_broker, m_sink, accounts);
    const auto limit = [&](std::int64_t count) {
        int first = 48;
        int second = 48;
        return center.getCalculator()->getVolumeLimit(*account("A1"), "SH", "600000", TC::EOperationType::Buy,
                                                      TC::EHedge_Flag_Type::Speculation, 10, first, second,
                                                      count, false, -1);
    };
    EXPECT_EQ(limit(1'000'000), 10000);
    EXPECT_EQ(limit(300), 300);
}
