#include "desk/host/OrderLines.h"
#include "tests/support/FakeClock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace desk {
namespace {

CPaperOrder orderOf(int id, EOrderStatus status, int filled = 0, const std::string& reason = {}) {
    CPaperOrder order;
    order.m_nId = id;
    order.m_nTask = 9;
    order.m_strAccount = "A1";
    order.m_strStock = "SH600101";
    order.m_nPrice = 11 * kMoneyPerUnit + 200;
    order.m_nVolume = 1000;
    order.m_nFilled = filled;
    order.m_nFilledAmount = filled * (11 * kMoneyPerUnit + 100);
    order.m_eStatus = status;
    order.m_strReason = reason;
    return order;
}

class OrderLines : public testing::Test {
protected:
    void take(const CPaperOrder& order) {
        CBrokerEvent event;
        event.m_order = order;
        m_lines.take(event);
    }
    /// The lines since the last call.
    std::string shown() {
        m_lines.show();
        std::string text = m_out.str();
        m_out.str({});
        return text;
    }

    CFakeClock m_clock;
    std::ostringstream m_out;
    CTextSink m_sink{m_out};
    COrderLines m_lines{m_sink};
};

TEST_F(OrderLines, RejectedOrdersAreWarnings) {
    std::vector<ESeverity> severities;
    m_sink.setListener(
        [&](const EFloodLine*, ESeverity severity, const std::string&) { severities.push_back(severity); });
    for (int id = 1; id <= COrderLines::kOrdersPerSecond - 1; ++id)
        take(orderOf(id, EOrderStatus::Working));
    take(orderOf(1000, EOrderStatus::Rejected, 0, "no money"));
    take(orderOf(1001, EOrderStatus::Rejected, 0, "no money")); // has no line of its own
    m_clock.sleep(1);
    m_lines.show();
    ASSERT_EQ(severities.size(), static_cast<std::size_t>(COrderLines::kOrdersPerSecond) + 1);
    EXPECT_EQ(severities.front(), ESeverity::Note);
    EXPECT_EQ(severities[severities.size() - 2], ESeverity::Warning);
    EXPECT_EQ(severities.back(), ESeverity::Warning) << "the line with the numbers";
}

TEST(OrderLine, SaysWhatHappenedToTheOrder) {
    const std::string head = "order 15 of task 9: A1 buy 1000 SH600101 @ 11.02: ";
    EXPECT_EQ(orderLine(orderOf(15, EOrderStatus::Working)), head + "waits");
    EXPECT_EQ(orderLine(orderOf(15, EOrderStatus::PartFilled, 300)), head + "300 filled at 11.01, 700 wait");
    EXPECT_EQ(orderLine(orderOf(15, EOrderStatus::Filled, 1000)), head + "filled at 11.01");
    EXPECT_EQ(orderLine(orderOf(15, EOrderStatus::Cancelled, 0, "why")), head + "CANCELLED: why");
    EXPECT_EQ(orderLine(orderOf(15, EOrderStatus::Cancelled, 300, "why")),
              head + "CANCELLED: why; 300 filled at 11.01");
    EXPECT_EQ(orderLine(orderOf(15, EOrderStatus::Rejected, 0, "why")), head + "REJECTED: why");
}

TEST(OrderLine, PriceOfAFillIsThatOfOneUnit) {
    CPaperOrder order = orderOf(15, EOrderStatus::Filled, 2);
    order.m_nVolume = 2;
    order.m_nMultiplier = 300;
    order.m_nFilledAmount = 600 * (4000 * kMoneyPerUnit);
    order.m_bMarket = true;
    order.m_nPrice = 0;
    EXPECT_EQ(orderLine(order), "order 15 of task 9: A1 buy 2 SH600101 at market: filled at 4000");
}

TEST(OrderLine, OrderThatOnlyMovesMoneyHasNoPrice) {
    CPaperOrder order = orderOf(15, EOrderStatus::Filled);
    order.m_eOperation = TC::EOperationType::RepayMoney;
    order.m_nVolume = 0;
    order.m_strStock.clear();
    EXPECT_EQ(orderLine(order), "order 15 of task 9: A1 repay money 0: done");
}

TEST(OrderLine, OrderWithoutAKnownAccountAndOperationIsNamed) {
    CPaperOrder order = orderOf(15, EOrderStatus::Rejected, 0, "the order has no account");
    order.m_strAccount.clear();
    order.m_eOperation = static_cast<TC::EOperationType>(9999);
    EXPECT_EQ(orderLine(order),
              "order 15 of task 9: no account operation 9999 1000 SH600101 @ 11.02: REJECTED: the order has "
              "no account");
}

TEST_F(OrderLines, EachOrderHasOneLineWithItsLatestState) {
    take(orderOf(1, EOrderStatus::Working));
    take(orderOf(1, EOrderStatus::Filled, 1000));
    take(orderOf(2, EOrderStatus::Rejected, 0, "why"));
    EXPECT_EQ(shown(), "order 1 of task 9: A1 buy 1000 SH600101 @ 11.02: filled at 11.01\n"
                       "order 2 of task 9: A1 buy 1000 SH600101 @ 11.02: REJECTED: why\n");
    EXPECT_EQ(shown(), "");
}

TEST_F(OrderLines, FillIsPartOfItsOrdersLine) {
    CBrokerEvent fill;
    fill.m_order = orderOf(1, EOrderStatus::PartFilled, 300);
    fill.m_fill.m_nId = 1;
    m_lines.take(fill);
    EXPECT_EQ(shown(), "");
}

TEST_F(OrderLines, FloodIsCountedWithTheMostFrequentReasons) {
    for (int id = 1; id <= COrderLines::kOrdersPerSecond; ++id)
        take(orderOf(id, EOrderStatus::Working));
    const int first = COrderLines::kOrdersPerSecond + 1;
    for (int id = first; id < first + 300; ++id) {
        take(orderOf(id, EOrderStatus::Working));
        take(orderOf(id, EOrderStatus::Filled, 1000));
    }
    take(orderOf(1000, EOrderStatus::PartFilled, 100));
    take(orderOf(1000, EOrderStatus::Cancelled, 100, "the trading day ended"));
    for (int volume = 1; volume <= 20; ++volume)
        take(orderOf(1000 + volume, EOrderStatus::Rejected, 0,
                     "volume " + std::to_string(volume) + " is not a multiple of 100"));
    take(orderOf(1100, EOrderStatus::Rejected, 0, "a"));
    take(orderOf(1101, EOrderStatus::Rejected, 0, "b"));
    take(orderOf(1102, EOrderStatus::Rejected, 0, "c"));
    const std::string text = shown();
    // The first call of show ends the first second.
    EXPECT_NE(
        text.find("\nmore orders: 300 accepted, 1 partly filled, 300 filled, 1 CANCELLED, 23 REJECTED "
                  "(20 like \"volume 1 is not a multiple of 100\"; 1 like \"a\"; 1 like \"b\"; and others); "
                  "the journal has each of them\n"),
        std::string::npos)
        << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), COrderLines::kOrdersPerSecond + 1);
}

TEST_F(OrderLines, CountsAreShownOnceASecond) {
    EXPECT_EQ(shown(), "");
    for (int id = 1; id <= COrderLines::kOrdersPerSecond + 1; ++id)
        take(orderOf(id, EOrderStatus::Working));
    EXPECT_EQ(shown().find("more orders"), std::string::npos);
    take(orderOf(1, EOrderStatus::Filled, 1000));
    EXPECT_EQ(shown(), "");
    m_clock.sleep(1);
    EXPECT_EQ(shown(), "more orders: 1 accepted, 1 filled; the journal has each of them\n");
    take(orderOf(2, EOrderStatus::Filled, 1000));
    EXPECT_EQ(shown(), "order 2 of task 9: A1 buy 1000 SH600101 @ 11.02: filled at 11.01\n");
}

TEST_F(OrderLines, OrderThatIsOnlyPartlyFilledIsCountedToo) {
    EXPECT_EQ(shown(), "");
    for (int id = 1; id <= COrderLines::kOrdersPerSecond; ++id)
        take(orderOf(id, EOrderStatus::Working));
    take(orderOf(1000, EOrderStatus::PartFilled, 100));
    shown();
    m_clock.sleep(1);
    EXPECT_EQ(shown(), "more orders: 1 partly filled; the journal has each of them\n");
}

TEST_F(OrderLines, EndShowsTheCountsAtOnce) {
    EXPECT_EQ(shown(), "");
    for (int id = 1; id <= COrderLines::kOrdersPerSecond + 1; ++id)
        take(orderOf(id, EOrderStatus::Working));
    m_lines.finish();
    EXPECT_NE(m_out.str().find("more orders: 1 accepted"), std::string::npos);
}

} // namespace
} // namespace desk
