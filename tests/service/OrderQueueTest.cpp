#include "orderservice/service/OrderQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace {

using TC::COrderQueue;

/// A queue for a running thread. The thread ends with the test.
class OrderQueue : public testing::Test {
protected:
    void SetUp() override {
        queue = std::make_unique<COrderQueue>(receiver, thread);
        thread.start();
    }
    void TearDown() override {
        thread.quit();
        thread.wait();
    }

    /// Closes the queue and returns when all accepted calls have run.
    void closeAndWait() {
        std::promise<void> processed;
        queue->close([&] { processed.set_value(); });
        processed.get_future().wait();
    }

    QObject receiver;
    QThread thread;
    std::unique_ptr<COrderQueue> queue;
    std::vector<int> ran; ///< written on the thread; read it only after the thread has finished its calls
};

TEST_F(OrderQueue, CallsRunOnTheReceiversThreadInTheOrderOfThePosts) {
    bool isOnThread = true;
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(queue->post([this, i, &isOnThread] {
            ran.push_back(i);
            isOnThread = isOnThread && QThread::currentThread() == &thread;
        }));
    }
    closeAndWait();
    ASSERT_EQ(ran.size(), 100u);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(ran[static_cast<std::size_t>(i)], i);
    EXPECT_TRUE(isOnThread);
}

TEST_F(OrderQueue, NothingIsQueuedBehindTheEndMarker) {
    EXPECT_FALSE(queue->isRefusing());
    std::promise<void> goOn;
    EXPECT_TRUE(queue->post([&] {
        goOn.get_future().wait();
        ran.push_back(1);
    }));
    std::promise<void> processed;
    queue->close([&] { processed.set_value(); });
    EXPECT_TRUE(queue->isRefusing());
    EXPECT_FALSE(queue->post([this] { ran.push_back(2); }));
    goOn.set_value();
    processed.get_future().wait();
    EXPECT_EQ(ran, std::vector<int>{1});
}

TEST_F(OrderQueue, CallsOfTheReceiversOwnThreadRunAtOnceAlsoBehindTheEndMarker) {
    std::promise<void> closed;
    EXPECT_TRUE(queue->post([&] {
        closed.get_future().wait();
        EXPECT_FALSE(queue->isRefusing());
        EXPECT_TRUE(queue->post([this] { ran.push_back(1); }));
        ran.push_back(2);
    }));
    std::promise<void> processed;
    queue->close([&] { processed.set_value(); });
    closed.set_value();
    processed.get_future().wait();
    EXPECT_EQ(ran, (std::vector<int>{1, 2}));
}

/// Many threads post calls while the queue is closed. All accepted calls must run before the end marker.
TEST_F(OrderQueue, EveryCallIsEitherProcessedBeforeTheEndOrRefused) {
    std::atomic<int> accepted{0};
    std::promise<void> isBusy;
    std::vector<std::thread> producers;
    for (int i = 0; i < 4; ++i) {
        producers.emplace_back([&, i] {
            for (int n = 0; n < 500; ++n) {
                if (queue->post([this, n] { ran.push_back(n); })) ++accepted;
                if (i == 0 && n == 100) isBusy.set_value();
            }
        });
    }
    isBusy.get_future().wait();
    std::promise<std::size_t> atTheEnd;
    queue->close([&] { atTheEnd.set_value(ran.size()); });
    for (std::thread& producer : producers)
        producer.join();
    EXPECT_EQ(atTheEnd.get_future().get(), static_cast<std::size_t>(accepted));
}

TEST_F(OrderQueue, CallsArePostedWhileAnotherRuns) {
    std::promise<void> posted;
    EXPECT_TRUE(queue->post([&] { posted.get_future().wait(); }));
    EXPECT_TRUE(queue->post([this] { ran.push_back(1); }));
    posted.set_value();
    closeAndWait();
    EXPECT_EQ(ran, std::vector<int>{1});
}

} // namespace
