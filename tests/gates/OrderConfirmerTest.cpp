#include "orderservice/gates/OrderConfirmer.h"

#include "orderservice/gates/IntakePause.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace TC;

/// Accepts each question after it has run an action. Remembers the titles.
class CScriptedConfirmer final : public IOrderConfirmer {
public:
    CConfirmAnswer confirm(const CConfirmQuestion& question) override {
        EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
        EXPECT_TRUE(isConfirmationOpen());
        m_titles.push_back(question.m_strTitle.toStdString());
        if (const auto action = std::exchange(m_action, nullptr)) action();
        CConfirmAnswer answer;
        answer.m_eResult = EConfirmResult::Accepted;
        answer.m_remarks = question.m_remarks;
        return answer;
    }

    void withdraw() override { ++m_nWithdrawn; }

    std::vector<std::string> m_titles;
    int m_nWithdrawn = 0;
    std::function<void()> m_action; ///< called once, while the question is open
};

CConfirmQuestion questionOf(const char* title) {
    CConfirmQuestion question;
    question.m_strTitle = QString::fromUtf8(title);
    question.m_remarks = {{4, "four"}};
    return question;
}

class OrderConfirmer : public testing::Test {
protected:
    OrderConfirmer() { setOrderConfirmer(&m_confirmer); }
    ~OrderConfirmer() override {
        setOrderConfirmer(nullptr);
        QCoreApplication::processEvents();
    }
    /// Runs on a thread of its own while the main thread runs its event loop.
    static void runBesideTheEventLoop(const std::function<void()>& run) {
        std::atomic<bool> isDone{false};
        std::thread thread([&] {
            run();
            isDone = true;
        });
        while (!isDone)
            QCoreApplication::processEvents();
        thread.join();
    }
    /// Asks on a thread of its own while the main thread runs its event loop.
    static CConfirmAnswer askOnAThread(const char* title) {
        CConfirmAnswer answer;
        runBesideTheEventLoop([&] { answer = askForConfirmation(questionOf(title)); });
        return answer;
    }

    CScriptedConfirmer m_confirmer;
};

TEST_F(OrderConfirmer, OnlyAnOpenQuestionIsWithdrawn) {
    EXPECT_EQ(openConfirmation(), 0);
    withdrawConfirmation(0);
    {
        const CConfirmationHold hold;
        EXPECT_EQ(openConfirmation(), 0);
    }
    int first = 0;
    m_confirmer.m_action = [&] {
        first = openConfirmation();
        std::thread([] { EXPECT_EQ(openConfirmation(), 0); }).join(); // not on the main thread
        withdrawConfirmation(first);
        EXPECT_EQ(m_confirmer.m_nWithdrawn, 1);
    };
    askForConfirmation(questionOf("batch"));
    EXPECT_NE(first, 0);
    m_confirmer.m_action = [&] { withdrawConfirmation(first); }; // another question is open now
    askForConfirmation(questionOf("next batch"));
    withdrawConfirmation(first);
    EXPECT_EQ(m_confirmer.m_nWithdrawn, 1);
}

TEST_F(OrderConfirmer, AnswersTheMainThread) {
    const CConfirmAnswer answer = askForConfirmation(questionOf("one"));
    EXPECT_EQ(answer.m_eResult, EConfirmResult::Accepted);
    EXPECT_EQ(answer.m_remarks.at(4), "four");
    EXPECT_FALSE(isConfirmationOpen());
}

TEST_F(OrderConfirmer, NobodyIsAskedIfThereIsNone) {
    setOrderConfirmer(nullptr);
    const CConfirmAnswer answer = askForConfirmation(questionOf("one"));
    EXPECT_EQ(answer.m_eResult, EConfirmResult::NotAsked);
    EXPECT_EQ(answer.m_strReason, QStringLiteral("没有确认窗口"));
}

TEST_F(OrderConfirmer, QuestionInsideAQuestionIsNotAsked) {
    CConfirmAnswer inner;
    m_confirmer.m_action = [&] { inner = askForConfirmation(questionOf("inner")); };
    askForConfirmation(questionOf("outer"));
    EXPECT_EQ(inner.m_eResult, EConfirmResult::NotAsked);
    EXPECT_EQ(inner.m_strReason, QStringLiteral("另一批指令正在确认"));
    EXPECT_EQ(m_confirmer.m_titles, std::vector<std::string>{"outer"});
}

TEST_F(OrderConfirmer, ExceptionReachesTheCallerAndEndsTheQuestion) {
    m_confirmer.m_action = [] { throw std::runtime_error("no window"); };
    EXPECT_THROW(askForConfirmation(questionOf("one")), std::runtime_error);
    EXPECT_FALSE(isConfirmationOpen());
    EXPECT_EQ(askForConfirmation(questionOf("two")).m_eResult, EConfirmResult::Accepted);
}

TEST_F(OrderConfirmer, QuestionOfAThreadIsAskedOnTheMainThread) {
    const CConfirmAnswer answer = askOnAThread("thread");
    EXPECT_EQ(answer.m_eResult, EConfirmResult::Accepted);
    EXPECT_EQ(answer.m_remarks.at(4), "four");
}

TEST_F(OrderConfirmer, ExceptionReachesTheThreadThatAsked) {
    m_confirmer.m_action = [] { throw std::runtime_error("no window"); };
    bool isThrown = false;
    runBesideTheEventLoop([&] {
        try {
            askForConfirmation(questionOf("thread"));
        } catch (const std::runtime_error&) {
            isThrown = true;
        }
    });
    EXPECT_TRUE(isThrown);
}

TEST_F(OrderConfirmer, QuestionOfAThreadWaitsForTheOpenQuestion) {
    std::thread thread;
    std::future<CConfirmAnswer> answer;
    m_confirmer.m_action = [&] {
        std::promise<CConfirmAnswer> promise;
        answer = promise.get_future();
        std::promise<void> begun;
        thread = std::thread([&begun, promise = std::move(promise)]() mutable {
            begun.set_value();
            promise.set_value(askForConfirmation(questionOf("second")));
        });
        begun.get_future().wait();
        QCoreApplication::processEvents(); // the loop of the dialog
        EXPECT_EQ(m_confirmer.m_titles, std::vector<std::string>{"first"});
    };
    askForConfirmation(questionOf("first"));
    while (answer.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    thread.join();
    EXPECT_EQ(answer.get().m_eResult, EConfirmResult::Accepted);
    EXPECT_EQ(m_confirmer.m_titles, (std::vector<std::string>{"first", "second"}));
}

TEST_F(OrderConfirmer, StopAnswersTheThreadsThatWaitAndThoseThatAskLater) {
    std::thread thread;
    CConfirmAnswer waiting;
    m_confirmer.m_action = [&] {
        std::promise<void> begun;
        thread = std::thread([&] {
            begun.set_value();
            waiting = askForConfirmation(questionOf("waiting"));
        });
        begun.get_future().wait();
        const CConfirmationStop stop(QStringLiteral("end"));
        thread.join(); // would never return without the stop
    };
    askForConfirmation(questionOf("first"));
    EXPECT_EQ(waiting.m_eResult, EConfirmResult::NotAsked);
    EXPECT_EQ(waiting.m_strReason, QStringLiteral("end"));
    EXPECT_EQ(askOnAThread("after the stop").m_eResult, EConfirmResult::Accepted);
}

TEST_F(OrderConfirmer, ActionsRunInOrderAfterTheQuestionAndFromTheEventLoop) {
    std::vector<int> ran;
    m_confirmer.m_action = [&] {
        whenNoConfirmationIsOpen([&] { ran.push_back(1); });
        whenNoConfirmationIsOpen([&] { ran.push_back(2); });
        QCoreApplication::processEvents();
        EXPECT_TRUE(ran.empty());
    };
    askForConfirmation(questionOf("one"));
    EXPECT_TRUE(ran.empty()) << "the commands of the answered batch come first";
    QCoreApplication::processEvents();
    EXPECT_EQ(ran, (std::vector<int>{1, 2}));
}

TEST_F(OrderConfirmer, ActionThatOpensAQuestionLetsTheNextOnesWait) {
    std::vector<std::string> events;
    whenNoConfirmationIsOpen([&] {
        m_confirmer.m_action = [&] {
            QCoreApplication::processEvents();
            events.push_back("answered");
        };
        askForConfirmation(questionOf("one"));
    });
    whenNoConfirmationIsOpen([&] { events.push_back("next"); });
    QCoreApplication::processEvents();
    EXPECT_EQ(events, (std::vector<std::string>{"answered", "next"}));
}

TEST(ConfirmationPause, IsOneFlagThatPausesTheIntake) {
    EXPECT_FALSE(CIntakePause::isPaused());
    setConfirmationPause(true);
    setConfirmationPause(true);
    EXPECT_TRUE(CIntakePause::isPaused());
    EXPECT_TRUE(isConfirmationPauseSet());
    setConfirmationPause(false);
    EXPECT_FALSE(CIntakePause::isPaused()) << "it is set and cleared, not counted";
    EXPECT_FALSE(isConfirmationPauseSet());
}

TEST(ConfirmationPause, DoesNotEndTheHostsPause) {
    const CIntakePause pause;
    setConfirmationPause(true);
    setConfirmationPause(false);
    EXPECT_TRUE(CIntakePause::isPaused());
}

TEST_F(OrderConfirmer, HoldLetsQuestionsOfOtherThreadsAndActionsWait) {
    std::future<CConfirmAnswer> answer;
    bool isCalled = false;
    {
        const CConfirmationHold hold;
        EXPECT_TRUE(isConfirmationOpen());
        answer = std::async(std::launch::async, [] { return askForConfirmation(questionOf("one")); });
        runBesideTheEventLoop([&] { whenNoConfirmationIsOpen([&] { isCalled = true; }); });
        QCoreApplication::processEvents();
        EXPECT_TRUE(m_confirmer.m_titles.empty());
        EXPECT_FALSE(isCalled);
    }
    EXPECT_FALSE(isConfirmationOpen());
    while (answer.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        QCoreApplication::processEvents();
    EXPECT_TRUE(isCalled);
    EXPECT_EQ(answer.get().m_eResult, EConfirmResult::Accepted);
}

TEST_F(OrderConfirmer, HoldInsideAQuestionDoesNotEndIt) {
    m_confirmer.m_action = [] {
        { const CConfirmationHold hold; }
        EXPECT_TRUE(isConfirmationOpen());
    };
    (void)askForConfirmation(questionOf("one"));
    EXPECT_FALSE(isConfirmationOpen());
}

} // namespace
