#include "desk/paper/PaperBroker.h"

#include "tests/desk/paper/PaperDesk.h"

#include <thread>

using namespace desk;
using namespace desk::test;

namespace {

class PaperBroker : public PaperDesk {};

std::string eventText(const CBrokerEvent& event) {
    if (event.isFill()) return "fill " + std::to_string(event.m_fill.m_nVolume);
    return statusWord(event.m_order.m_eStatus) + (" " + std::to_string(event.m_order.m_nFilled));
}

} // namespace

TEST_F(PaperBroker, BuyTakesTheLevelsWithinItsLimitAndTheRestWaits) {
    const CPaperOrder order = placed(buy(1000, 10.01));
    EXPECT_EQ(order.m_eStatus, EOrderStatus::PartFilled);
    EXPECT_EQ(order.m_nFilled, 600);
    EXPECT_EQ(fills(), (CTexts{"1: 200 @ 100000", "1: 400 @ 100100"}));
    EXPECT_EQ(funds().m_nCash, toMoney(100000 - 2000 - 4004).value());
    EXPECT_EQ(funds().m_nFrozen, toMoney(400 * 10.01).value());
    EXPECT_EQ(order.m_nFrozen, funds().m_nFrozen);
    EXPECT_EQ(position().m_nVolume, 1850);
    EXPECT_EQ(position().m_nSellable, 1050) << "what is bought today is sold tomorrow";
    EXPECT_EQ(position().m_nCost, toMoney(1250 * 8.0 + 2000 + 4004).value());
}

TEST_F(PaperBroker, SellTakesTheBidsWithinItsLimitAndItsMoneyIsThereAtOnce) {
    const CPaperOrder order = placed(sell(800, 9.98));
    EXPECT_EQ(order.m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(fills(), (CTexts{"1: 300 @ 99900", "1: 500 @ 99800"}));
    EXPECT_EQ(order.m_nFilledAmount, toMoney(2997 + 4990).value());
    EXPECT_EQ(funds().available(), toMoney(100000 + 2997 + 4990).value());
    EXPECT_EQ(position().m_nVolume, 450);
    EXPECT_EQ(position().available(), 250);
    EXPECT_EQ(position().m_nCost, toMoney(450 * 8.0).value());
}

TEST_F(PaperBroker, OrderBesideTheBookWaitsWithItsMoneyOrVolumeFrozen) {
    EXPECT_EQ(placed(buy(100, 9.99)).m_eStatus, EOrderStatus::Working);
    EXPECT_EQ(placed(sell(100, 10.00)).m_eStatus, EOrderStatus::Working);
    EXPECT_TRUE(fills().empty());
    EXPECT_EQ(funds().m_nFrozen, toMoney(999).value());
    EXPECT_EQ(position().m_nFrozen, 100);
}

TEST_F(PaperBroker, DisplayedVolumeIsOfferedOnceForEachQuote) {
    place({buy(200, 10.00)});
    EXPECT_EQ(placed(buy(200, 10.00)).m_eStatus, EOrderStatus::Working) << "the first order took it all";
    ASSERT_TRUE(m_broker->onQuote(kStock).isSuccess());
    EXPECT_EQ(order(2).m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(placed(buy(200, 10.00)).m_eStatus, EOrderStatus::Working);
}

TEST_F(PaperBroker, NewQuoteServesWaitingOrdersInTheOrderTheyCame) {
    place({buy(300, 9.50), buy(300, 9.60)});
    place({buy(300, 9.50)});
    m_quotes.setQuote(kStock, {}, {{9.45, 400}, {9.50, 250}});
    ASSERT_TRUE(m_broker->onQuote(kStock).isSuccess());
    EXPECT_EQ(fills(), (CTexts{"1: 300 @ 94500", "2: 100 @ 94500", "2: 200 @ 95000", "3: 50 @ 95000"}));
    EXPECT_EQ(order(2).m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(order(3).m_eStatus, EOrderStatus::PartFilled);
    EXPECT_EQ(funds().m_nFrozen, order(3).m_nFrozen) << "what a better price saved is free again";
}

TEST_F(PaperBroker, QuoteOfAnotherInstrumentMovesNothing) {
    place({buy(100, 9.50)});
    const std::size_t before = m_events.size();
    ASSERT_TRUE(m_broker->onQuote("SZ000001").isSuccess());
    EXPECT_EQ(m_events.size(), before);
}

TEST_F(PaperBroker, WaitingOrdersComeBeforeTheOrderThatBringsTheFirstQuote) {
    m_quotes.dropQuote(kStock);
    place({buy(200, 10.00)});
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Working) << "without a quote an order with a limit waits";
    m_quotes.setQuote(kStock, {}, {{10.00, 300}});
    place({buy(200, 10.00)});
    EXPECT_EQ(fills(), (CTexts{"1: 200 @ 100000", "2: 100 @ 100000"}));
}

TEST_F(PaperBroker, MarketOrderTakesWhatTheBookHasAndTheRestIsCancelled) {
    const CPaperOrder bought = placed(buy(2000, TC::kUnsetDouble, kMarket));
    EXPECT_EQ(bought.m_eStatus, EOrderStatus::Cancelled);
    EXPECT_EQ(bought.m_strReason, "the book offers no more volume");
    EXPECT_EQ(bought.m_nFilled, 1600);
    EXPECT_EQ(funds().m_nFrozen, 0);
    const CPaperOrder sold = placed(sell(1000, TC::kUnsetDouble, kMarket));
    EXPECT_EQ(sold.m_nFilled, 800);
    EXPECT_EQ(position().m_nFrozen, 0);
    EXPECT_EQ(position().available(), 250);
}

TEST_F(PaperBroker, MarketOrderWithoutAQuoteIsCancelled) {
    m_quotes.dropQuote(kStock);
    const CPaperOrder order = placed(buy(100, TC::kUnsetDouble, kMarket));
    EXPECT_EQ(order.m_eStatus, EOrderStatus::Cancelled);
    EXPECT_EQ(order.m_strReason, "there is no quote");
}

TEST_F(PaperBroker, MarketBuyMustHaveTheMoneyForAllThatItWouldTake) {
    TC::CCodeOrderParam code = buy(100, TC::kUnsetDouble, kMarket);
    code.m_account = account("A2");
    EXPECT_EQ(rejection(code), "not enough funds for what the book has");
}

TEST_F(PaperBroker, OrdersOfACommandShareOnlyItsTask) {
    const int task = place({buy(150, 10.00), buy(100, 10.00), sell(100, 9.99)});
    const std::vector<CPaperOrder> orders = m_broker->orders();
    ASSERT_EQ(orders.size(), 3u);
    for (const CPaperOrder& each : orders)
        EXPECT_EQ(each.m_nTask, task);
    EXPECT_EQ(orders[0].m_eStatus, EOrderStatus::Rejected);
    EXPECT_EQ(orders[1].m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(orders[2].m_eStatus, EOrderStatus::Filled);
}

TEST_F(PaperBroker, CommandWithoutCodesIsATaskWithoutOrders) {
    TC::COrderComandParam command = stockCommand({});
    command.m_strRemark = "备注";
    const int task = placeCommand(command);
    EXPECT_TRUE(m_broker->hasTask(task));
    ASSERT_EQ(m_broker->tasks().size(), 1u);
    EXPECT_EQ(m_broker->tasks()[0].m_strRemark, "备注");
    EXPECT_EQ(m_broker->tasks()[0].m_nOrders, 0);
    EXPECT_TRUE(m_broker->orders().empty());
}

TEST_F(PaperBroker, EventsHaveEveryStepInOrderAndAreNumbered) {
    ASSERT_TRUE(placeNow(*m_broker, stockCommand({buy(800, 10.01), buy(10, 10.01)}), 77).m_error.isSuccess());
    CTexts texts;
    std::int64_t number = 0;
    for (const CBrokerEvent& event : m_events) {
        texts.push_back(eventText(event));
        EXPECT_EQ(event.m_nNumber, ++number);
        EXPECT_EQ(event.m_nReference, 77);
        EXPECT_EQ(event.m_order.m_strTime, "2026-01-05T09:30:00.123");
    }
    EXPECT_EQ(texts, (CTexts{"working 0", "fill 200", "fill 400", "part_filled 600", "rejected 0"}));
}

TEST_F(PaperBroker, CancellingATaskEndsItsWaitingOrdersAndFreesWhatTheyHeld) {
    const int task = place({buy(100, 9.50), sell(100, 10.50), buy(100, 10.00), sell(400, 9.99)});
    ASSERT_TRUE(m_broker->cancelTask(task, "终止任务").isSuccess());
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Cancelled);
    EXPECT_EQ(order(1).m_strReason, "终止任务");
    EXPECT_EQ(order(2).m_eStatus, EOrderStatus::Cancelled);
    EXPECT_EQ(order(3).m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(order(4).m_eStatus, EOrderStatus::Cancelled);
    EXPECT_EQ(order(4).m_nFilled, 300);
    EXPECT_EQ(funds().m_nFrozen, 0);
    EXPECT_EQ(position().m_nFrozen, 0);
    EXPECT_EQ(position().available(), 750);
}

TEST_F(PaperBroker, CancelledOrdersDoNotTradeAnyMore) {
    const int task = place({buy(100, 9.50)});
    ASSERT_TRUE(m_broker->cancelTask(task, "").isSuccess());
    m_quotes.setQuote(kStock, {}, {{9.50, 100}});
    ASSERT_TRUE(m_broker->onQuote(kStock).isSuccess());
    EXPECT_TRUE(fills().empty());
}

TEST_F(PaperBroker, CancellingWhatDoesNotWaitFails) {
    EXPECT_EQ(m_broker->cancelTask(9, "").errorMsg(), "task 9 is unknown");
    const int task = place({buy(100, 10.00)});
    EXPECT_EQ(m_broker->cancelTask(task, "").errorId(), kPaperNothingOpen);
}

TEST_F(PaperBroker, CancelByOrderNamesAccountAndOrder) {
    place({buy(100, 9.50), buy(100, 9.50)});
    ASSERT_TRUE(m_broker->cancelOrders({"cancel_order", "A1", "2\r"}, "by a line").isSuccess());
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Working);
    EXPECT_EQ(order(2).m_eStatus, EOrderStatus::Cancelled);
    EXPECT_EQ(order(2).m_strReason, "by a line");
}

TEST_F(PaperBroker, CancelByOrderFailsWithTheReason) {
    place({buy(100, 9.50), buy(100, 10.00)});
    const auto failure = [this](const std::vector<std::string>& words) {
        return m_broker->cancelOrders(words, {}).errorMsg();
    };
    const std::string usage = "cancel_order takes an account key and an order id";
    EXPECT_EQ(failure({"cancel_order", "A1"}), usage);
    EXPECT_EQ(failure({"cancel_order", "A1", "x"}), usage);
    EXPECT_EQ(failure({"cancel_order", "", "1"}), usage);
    EXPECT_EQ(failure({"cancel_order", "A1", "1", "2"}), usage);
    EXPECT_EQ(failure({"cancel_order", "A2", "1"}), "account A2 has no order 1");
    EXPECT_EQ(failure({"cancel_order", "A1", "9"}), "account A1 has no order 9");
    EXPECT_EQ(failure({"cancel_order", "A1", "2"}), "order 2 does not wait: filled");
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Working);
}

TEST_F(PaperBroker, NewTradingDayEndsOrdersAndMakesPurchasesSellable) {
    ASSERT_TRUE(m_broker->startTradingDay("20260105").isSuccess());
    EXPECT_EQ(position().m_nSellable, 1050) << "the accounts came as they stand on this day";
    place({buy(200, 10.00), buy(100, 9.50), sell(100, 10.50)});
    ASSERT_TRUE(m_broker->startTradingDay("20260105").isSuccess());
    ASSERT_TRUE(m_broker->startTradingDay("20260102").isSuccess());
    EXPECT_EQ(order(2).m_eStatus, EOrderStatus::Working);

    ASSERT_TRUE(m_broker->startTradingDay("20260106").isSuccess());
    EXPECT_EQ(order(2).m_strReason, "the trading day ended");
    EXPECT_EQ(order(3).m_eStatus, EOrderStatus::Cancelled);
    EXPECT_EQ(position().available(), 1450);
    EXPECT_EQ(funds().m_nFrozen, 0);
}

TEST_F(PaperBroker, MoneyAndSharesAddUpWhateverIsTraded) {
    for (int round = 0; round < 30; ++round) {
        place({buy(100 * (1 + round % 4), 9.97 + 0.01 * (round % 6)), sell(100, 9.96 + 0.01 * (round % 5))});
        if (round % 3 == 0) {
            ASSERT_TRUE(m_broker->onQuote(kStock).isSuccess());
        }
    }
    CMoney cash = toMoney(100000).value();
    std::int64_t volume = 1250;
    CMoney frozen = 0;
    std::int64_t frozenVolume = 0;
    for (const CPaperOrder& each : m_broker->orders()) {
        cash += each.isBuy() ? -each.m_nFilledAmount : each.m_nFilledAmount;
        volume += each.isBuy() ? each.m_nFilled : -each.m_nFilled;
        if (!each.isOpen()) continue;
        (each.isBuy() ? frozen : frozenVolume) += each.isBuy() ? each.m_nPrice * each.rest() : each.rest();
    }
    EXPECT_FALSE(fills().empty());
    EXPECT_EQ(funds().m_nCash, cash);
    EXPECT_EQ(funds().m_nFrozen, frozen);
    EXPECT_EQ(position().m_nVolume, volume);
    EXPECT_EQ(position().m_nFrozen, frozenVolume);
}

TEST_F(PaperBroker, CommandsOfSeveralThreadsAreTakenOneByOne) {
    constexpr int kThreads = 4;
    constexpr int kCommands = 10;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([this] {
            for (int n = 0; n < kCommands; ++n) {
                const int task = placeCommand(stockCommand({buy(100, 9.50)}));
                EXPECT_TRUE(m_broker->cancelTask(task, "").isSuccess());
                EXPECT_TRUE(m_broker->onQuote(kStock).isSuccess());
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(m_broker->tasks().size(), static_cast<std::size_t>(kThreads * kCommands));
    EXPECT_EQ(m_events.size(), static_cast<std::size_t>(2 * kThreads * kCommands));
    EXPECT_EQ(funds().m_nFrozen, 0);
}
