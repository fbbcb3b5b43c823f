#include "orderservice/socket/OrderCredit.h"

#include "tests/support/FakeClock.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using TC::COrderCredit;
using CTickets = std::vector<COrderCredit::CTicket>;

class OrderCredit : public testing::Test {
protected:
    static constexpr int kRoom = COrderCredit::kMostRoom;
    static constexpr int kShare = kRoom / 2;
    static constexpr int kTurn = kRoom / 4;

    COrderCredit::CAccountPtr open(const std::string& name) {
        return credit->open([this, name] { woken.push_back(name); });
    }
    /// Places orders of one line until the account has to wait. Returns the number of orders.
    int placeAll(const COrderCredit::CAccountPtr& account, CTickets& tickets, int most = 1000) {
        int count = 0;
        for (; count < most && credit->mayPlace(*account); ++count)
            tickets.push_back(credit->charge(account, 1));
        return count;
    }
    /// Fills all the room with two accounts that need no more.
    void fillRoom(CTickets& one, CTickets& other) {
        EXPECT_EQ(placeAll(open("one"), one, kShare) + placeAll(open("other"), other, kRoom - kShare), kRoom);
    }
    static void giveBack(CTickets& tickets, int count) {
        tickets.erase(tickets.begin(), tickets.begin() + count);
    }

    /// Processes this number of orders of one line. Each order takes this many seconds.
    void processOrders(int count, double seconds) {
        const auto account = open("processed");
        for (int i = 0; i < count; ++i) {
            const auto ticket = credit->charge(account, 1);
            clock.sleep(seconds);
        }
    }
    /// The total number of order lines that new accounts can put into the queue.
    int room() {
        CTickets tickets;
        int lines = 0;
        std::vector<COrderCredit::CAccountPtr> accounts;
        for (int i = 0; i < kRoom; ++i) {
            accounts.push_back(open("room"));
            lines += placeAll(accounts.back(), tickets, 1);
        }
        for (const auto& account : accounts)
            credit->close(*account);
        return lines;
    }

    CFakeClock clock;
    const std::shared_ptr<COrderCredit> credit = std::make_shared<COrderCredit>();
    std::vector<std::string> woken;
};

TEST_F(OrderCredit, AccountHasItsShareAndLeavesRoomToOthers) {
    const auto a = open("a"), b = open("b"), c = open("c");
    CTickets tickets;
    EXPECT_EQ(placeAll(a, tickets), kShare);
    EXPECT_EQ(placeAll(b, tickets), kRoom - kShare);
    EXPECT_EQ(placeAll(c, tickets), 0);
}

TEST_F(OrderCredit, AccountOverItsShareIsWokenForAWholeTurn) {
    const auto a = open("a");
    CTickets tickets;
    placeAll(a, tickets);
    giveBack(tickets, kTurn - 1);
    EXPECT_TRUE(woken.empty());
    EXPECT_FALSE(credit->mayPlace(*a));
    giveBack(tickets, 1);
    EXPECT_EQ(woken, std::vector<std::string>{"a"});
    EXPECT_EQ(placeAll(a, tickets), kTurn);
}

TEST_F(OrderCredit, WaitingAccountsTakeTurnsInTheirOrder) {
    const auto c = open("c"), d = open("d");
    CTickets ofA, ofB, ofC, ofD;
    fillRoom(ofA, ofB);
    EXPECT_EQ(placeAll(c, ofC), 0);
    EXPECT_EQ(placeAll(d, ofD), 0);
    giveBack(ofA, kTurn);
    // Two accounts wait, so c gets half a turn.
    EXPECT_EQ(woken, std::vector<std::string>{"c"});
    EXPECT_EQ(placeAll(c, ofC), kTurn / 2);
    giveBack(ofB, kTurn);
    EXPECT_EQ(woken, (std::vector<std::string>{"c", "d", "c"}));
}

TEST_F(OrderCredit, NobodyOvertakesThoseWhoWait) {
    const auto late = open("late"), later = open("later");
    CTickets ofA, ofB;
    fillRoom(ofA, ofB);
    EXPECT_FALSE(credit->mayPlace(*late));
    giveBack(ofA, 1); // room for one order, but not for a turn
    EXPECT_FALSE(credit->mayPlace(*later));
    EXPECT_TRUE(woken.empty());
}

TEST_F(OrderCredit, UnusedTurnGoesToTheNext) {
    const auto c = open("c"), d = open("d");
    CTickets ofA, ofB;
    fillRoom(ofA, ofB);
    EXPECT_FALSE(credit->mayPlace(*c));
    giveBack(ofB, kTurn);
    EXPECT_EQ(woken, std::vector<std::string>{"c"});
    EXPECT_FALSE(credit->mayPlace(*d));
    credit->endTurn(*c);
    EXPECT_EQ(woken, (std::vector<std::string>{"c", "d"}));
}

TEST_F(OrderCredit, TurnOfAnEndedAccountGoesToTheNext) {
    const auto c = open("c"), d = open("d");
    CTickets ofA, ofB;
    fillRoom(ofA, ofB);
    EXPECT_FALSE(credit->mayPlace(*c));
    giveBack(ofB, kTurn);
    EXPECT_FALSE(credit->mayPlace(*d));
    credit->close(*c);
    EXPECT_EQ(woken, (std::vector<std::string>{"c", "d"}));
}

TEST_F(OrderCredit, EndedAccountIsNotWoken) {
    auto a = open("a");
    CTickets tickets;
    placeAll(a, tickets);
    credit->close(*a);
    a.reset();
    tickets.clear(); // its room is returned nevertheless
    EXPECT_TRUE(woken.empty());
    const auto b = open("b"), c = open("c");
    EXPECT_EQ(placeAll(b, tickets) + placeAll(c, tickets), kRoom);
}

TEST_F(OrderCredit, LongOrderIsPlacedWholeAndNeedsRoomForItsLines) {
    const auto a = open("a"), b = open("b");
    ASSERT_TRUE(credit->mayPlace(*a));
    auto basket = credit->charge(a, 10 * kRoom);
    EXPECT_FALSE(credit->mayPlace(*a));
    EXPECT_FALSE(credit->mayPlace(*b));
    basket.reset();
    EXPECT_EQ(woken, (std::vector<std::string>{"b", "a"}));
}

TEST_F(OrderCredit, OrderWithoutLinesNeedsRoomForOne) {
    const auto a = open("a");
    CTickets tickets;
    for (int i = 0; i < kShare; ++i)
        tickets.push_back(credit->charge(a, 0));
    EXPECT_FALSE(credit->mayPlace(*a));
}

TEST_F(OrderCredit, AccountThatCannotBeWokenIsTriedAgain) {
    bool isFull = true;
    int wakes = 0;
    const auto a = credit->open([&] {
        if (isFull) throw std::bad_alloc();
        ++wakes;
    });
    CTickets tickets;
    placeAll(a, tickets);
    giveBack(tickets, kTurn);
    isFull = false;
    giveBack(tickets, 1);
    EXPECT_EQ(wakes, 1);
}

/// No ticket is left. So no ticket that ends can start the next try.
TEST_F(OrderCredit, LastAccountThatCannotBeWokenIsTriedAgainByTheListener) {
    bool isFull = true;
    int wakes = 0;
    const auto a = credit->open([&] {
        if (isFull) throw std::bad_alloc();
        ++wakes;
    });
    CTickets tickets;
    EXPECT_EQ(placeAll(a, tickets), kShare);
    EXPECT_FALSE(credit->hasWaiting()); // it waits for its own share
    tickets.clear();
    EXPECT_TRUE(credit->hasWaiting());
    credit->wakeWaiting();
    EXPECT_EQ(wakes, 0);
    isFull = false;
    credit->wakeWaiting();
    EXPECT_EQ(wakes, 1);
    EXPECT_FALSE(credit->hasWaiting());
    EXPECT_EQ(placeAll(a, tickets), kShare);
}

TEST_F(OrderCredit, RoomIsWhatTheServiceProcessesInAMoment) {
    processOrders(100, 0.0001);
    EXPECT_EQ(room(), kRoom);
    processOrders(100, 0.006);
    EXPECT_NEAR(room(), COrderCredit::kSeconds / 0.006, 1);
    processOrders(100, 2);
    EXPECT_EQ(room(), COrderCredit::kLeastRoom);
    processOrders(100, 0.0001);
    EXPECT_EQ(room(), kRoom);
}

TEST_F(OrderCredit, TimeWithoutOrdersIsNoWork) {
    processOrders(100, 0.0001);
    clock.sleep(3600);
    processOrders(1, 0.0001);
    EXPECT_EQ(room(), kRoom);
}

TEST_F(OrderCredit, OrdersThatWaitInTheQueueAreMeasuredOneByOne) {
    const auto a = open("a");
    for (int round = 0; round < 10; ++round) {
        CTickets tickets;
        for (int i = 0; i < 20; ++i)
            tickets.push_back(credit->charge(a, 1));
        for (int i = 0; i < 20; ++i) {
            clock.sleep(0.006);
            giveBack(tickets, 1);
        }
    }
    EXPECT_NEAR(room(), COrderCredit::kSeconds / 0.006, 1);
}

TEST_F(OrderCredit, RowsOfABasketAreMeasuredLikeOrders) {
    const auto a = open("a");
    for (int i = 0; i < 100; ++i) {
        const auto basket = credit->charge(a, 100);
        clock.sleep(0.6);
    }
    EXPECT_NEAR(room(), COrderCredit::kSeconds / 0.006, 1);
}

} // namespace
