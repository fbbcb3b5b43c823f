#include "desk/window/Feed.h"
#include "desk/window/TradeBoard.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

namespace {

using namespace desk;

CBrokerEvent orderEvent(int order, EOrderStatus status, int task = 1) {
    CBrokerEvent event;
    event.m_order.m_nId = order;
    event.m_order.m_nTask = task;
    event.m_order.m_strAccount = "A" + std::to_string(order % 2);
    event.m_order.m_eStatus = status;
    return event;
}

CBrokerEvent fillEvent(int fill, int order) {
    CBrokerEvent event = orderEvent(order, EOrderStatus::Filled);
    event.m_fill.m_nId = fill;
    return event;
}

TEST(WindowFeed, ABatchHasTheLatestStateOfAnOrder) {
    CWindowFeed feed;
    feed.addEvent(orderEvent(1, EOrderStatus::Working));
    feed.addEvent(orderEvent(2, EOrderStatus::Working));
    feed.addEvent(orderEvent(1, EOrderStatus::Filled));
    const CFeedBatch batch = feed.take();
    ASSERT_EQ(batch.m_orders.size(), 2U);
    EXPECT_EQ(batch.m_orders[0].m_nId, 1);
    EXPECT_EQ(batch.m_orders[0].m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(batch.m_nNewOrders, 2);
    EXPECT_TRUE(feed.take().m_orders.empty());
}

TEST(WindowFeed, AStateAfterABatchComesWithTheNextBatch) {
    CWindowFeed feed;
    for (int order = 1; order <= static_cast<int>(CWindowFeed::kBatch) + 5; ++order)
        feed.addEvent(orderEvent(order, EOrderStatus::Working));
    const CFeedBatch first = feed.take();
    EXPECT_EQ(first.m_orders.size(), CWindowFeed::kBatch);
    EXPECT_EQ(first.m_nWaitingTrades, 5U);
    feed.addEvent(orderEvent(1, EOrderStatus::Filled)); // is not waiting
    feed.addEvent(orderEvent(static_cast<int>(CWindowFeed::kBatch) + 1, EOrderStatus::Filled)); // is waiting
    const CFeedBatch second = feed.take();
    ASSERT_EQ(second.m_orders.size(), 6U);
    EXPECT_EQ(second.m_orders[0].m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(second.m_orders[5].m_nId, 1);
}

TEST(WindowFeed, OrdersAndFillsAreNeverDropped) {
    CWindowFeed feed;
    const int count = static_cast<int>(CWindowFeed::kMaxWaiting) + 100;
    for (int i = 1; i <= count; ++i) {
        feed.addEvent(orderEvent(i, EOrderStatus::Filled));
        feed.addEvent(fillEvent(i, i));
        feed.addMessage(CFeedMessage::EKind::Desk, false, QString::number(i));
    }
    int orders = 0;
    int fills = 0;
    std::vector<CFeedMessage> messages;
    for (CFeedBatch batch = feed.take(); !batch.m_orders.empty(); batch = feed.take()) {
        orders += static_cast<int>(batch.m_orders.size());
        fills += static_cast<int>(batch.m_fills.size());
        messages.insert(messages.end(), batch.m_messages.begin(), batch.m_messages.end());
    }
    EXPECT_EQ(orders, count);
    EXPECT_EQ(fills, count);
    ASSERT_EQ(messages.size(), CWindowFeed::kMaxWaiting); // the oldest were dropped
    EXPECT_EQ(messages.front().m_strText, "101");
}

TEST(WindowFeed, WritersOfSeveralThreadsLoseNothing) {
    CWindowFeed feed;
    std::vector<std::thread> writers;
    for (int writer = 0; writer < 4; ++writer)
        writers.emplace_back([&feed, writer] {
            for (int i = 1; i <= 500; ++i)
                feed.addEvent(orderEvent(writer * 500 + i, EOrderStatus::Working));
        });
    std::size_t orders = 0;
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (orders < 1000 && std::chrono::steady_clock::now() < end)
        orders += feed.take().m_orders.size();
    for (std::thread& writer : writers)
        writer.join();
    for (CFeedBatch batch = feed.take(); !batch.m_orders.empty(); batch = feed.take())
        orders += batch.m_orders.size();
    EXPECT_EQ(orders, 2000U);
}

TEST(WindowFeed, ACommandsRecordGivesItsTask) {
    CWindowFeed feed;
    feed.addJournalLines(
        "{\"kind\":\"command\",\"time\":\"2026-03-02T10:31:07.214\",\"seq\":7,\"task\":3,"
        "\"codes\":[{\"code\":\"600104\"}],\"remark\":\"a \\\"b\\\" 备\"}\n"
        "{\"kind\":\"command\",\"time\":\"x\",\"seq\":8,\"task\":null,\"remark\":\"declined\"}\n"
        "{\"kind\":\"order\",\"time\":\"x\",\"seq\":9,\"task\":4}\n");
    const CFeedBatch batch = feed.take();
    EXPECT_EQ(batch.m_journal.size(), 3U);
    ASSERT_EQ(batch.m_tasks.size(), 1U);
    EXPECT_EQ(batch.m_tasks[0].m_nId, 3);
    EXPECT_EQ(batch.m_tasks[0].m_nReference, 7);
    EXPECT_EQ(batch.m_tasks[0].m_strRemark, "a \"b\" 备");
    EXPECT_EQ(batch.m_tasks[0].m_strTime, "2026-03-02T10:31:07.214");
}

TEST(TradeBoard, CountsTheOrdersOfATaskByState) {
    CTradeBoard board;
    CFeedBatch batch;
    batch.m_orders = {orderEvent(1, EOrderStatus::Working).m_order,
                      orderEvent(2, EOrderStatus::Rejected).m_order};
    board.take(batch);
    EXPECT_EQ(board.waiting().size(), 1U);
    batch.m_orders = {orderEvent(1, EOrderStatus::Filled).m_order};
    const std::vector<CTaskState> tasks = board.take(batch);
    ASSERT_EQ(tasks.size(), 1U);
    EXPECT_EQ(tasks[0].m_nOrders, 2);
    EXPECT_EQ(tasks[0].m_nFilled, 1);
    EXPECT_EQ(tasks[0].m_nRejected, 1);
    EXPECT_EQ(tasks[0].m_nWaiting, 0);
    EXPECT_TRUE(board.waiting().empty());
}

TEST(TradeBoard, OnlyRejectionsOfThisRunAreNews) {
    CTradeBoard board;
    CFeedBatch batch;
    batch.m_orders = {orderEvent(1, EOrderStatus::Rejected).m_order};
    board.take(batch);
    EXPECT_EQ(board.unseenRejections(), 0);
    board.setStarted();
    batch.m_orders = {orderEvent(1, EOrderStatus::Rejected).m_order,
                      orderEvent(2, EOrderStatus::Rejected).m_order};
    board.take(batch);
    EXPECT_EQ(board.unseenRejections(), 1);
    board.markSeen();
    EXPECT_EQ(board.unseenRejections(), 0);
}

} // namespace
