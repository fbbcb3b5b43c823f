// The two-pass variant in the real service: from the order file over the service thread and the adapter to
// the question and the commands on the main thread.
#include "orderservice/service/OrderServiceAdapter.h"
#include "orderservice/variants/OrderServiceSplit.h"
#include "orderservice/variants/OrderServiceUnion.h"
#include "tests/service/ServiceFixture.h"
#include "tests/support/ScriptedConfirmer.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace TC;

class TwoPass : public ServiceFixture {
protected:
    void SetUp() override {
        ServiceFixture::SetUp();
        host.user.orderService = false;
        host.user.hints.insert(32);
        addFileStrategy(3);
        adapter = std::make_unique<COrderServiceAdapter>();
    }
    void TearDown() override {
        adapter.reset();
        ServiceFixture::TearDown();
        QCoreApplication::processEvents();
    }
    static COrderParam good() { return COrderBuilder(23).line(QStringLiteral("600000"), 10.5, 1000); }

    /// Returns when the service thread has processed its queue and the main thread has placed the batches.
    void settle() {
        QMetaObject::invokeMethod(
            &service(), [] {}, Qt::BlockingQueuedConnection);
        QCoreApplication::processEvents();
    }

    CScriptedConfirmer confirmer;
    std::unique_ptr<COrderServiceAdapter> adapter;
};

TEST_F(TwoPass, IsForUsersWithRight7Or8WhoHaveNoOrderService) {
    const std::set<EUserAuth> rights[] = {
        {EUserAuth::SignalOrders}, {EUserAuth::FileOrders}, {EUserAuth::SignalOrders, EUserAuth::FileOrders}};
    for (const auto& held : rights) {
        host.user.rights = held;
        service().loadFromConfig(false);
        EXPECT_NE(dynamic_cast<COrderServiceSplit*>(service().getOrderService()), nullptr);
        ServiceFixture::TearDown();
        ServiceFixture::SetUp();
    }
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(TwoPass, IsNotForUsersOfTheOrderService) {
    host.user.orderService = true;
    service().loadFromConfig(false);
    EXPECT_NE(dynamic_cast<COrderServiceUnion*>(service().getOrderService()), nullptr);
}

TEST_F(TwoPass, ConfirmedFileOrderIsSentOnTheMainThread) {
    std::vector<QThread*> threads;
    confirmer.onQuestion = [&] { threads.push_back(QThread::currentThread()); };
    host.orders.onCommand = [&](const COrderComandParamPtr&) { threads.push_back(QThread::currentThread()); };
    service().loadFromConfig(false);
    const std::size_t before = host.messageTexts().size();
    drop(3, "23,0,10.5,600000,1000\n");
    ASSERT_TRUE(host.waitForMessages(before + 1)); // the service's thread has begun the batch
    settle();
    ASSERT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(threads, std::vector<QThread*>(2, QCoreApplication::instance()->thread()));
    EXPECT_EQ(confirmer.questions.at(0).m_strTitle, QStringLiteral("文件单下达指令"));
    EXPECT_FALSE(host.commands()[0]->m_bUnion);
    EXPECT_EQ(host.commands()[0]->m_strTag, "");
}

TEST_F(TwoPass, DeclinedOrderIsNotSent) {
    confirmer.answer.m_eResult = EConfirmResult::Declined;
    service().loadFromConfig(false);
    service().placeOrders({good(), good()});
    settle();
    EXPECT_EQ(confirmer.questions.size(), 1u);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(TwoPass, BatchesThatFollowEachOtherAreAskedOneByOne) {
    bool isOpen = false;
    confirmer.onQuestion = [&] {
        EXPECT_FALSE(isOpen);
        isOpen = true;
        if (confirmer.questions.size() == 1) {
            service().placeorder(good());
            settle(); // the second batch reaches the main thread while the first question is open
        }
        isOpen = false;
    };
    service().loadFromConfig(false);
    service().placeorder(good());
    settle();
    settle();
    EXPECT_EQ(confirmer.questions.size(), 2u);
    EXPECT_EQ(host.commands().size(), 2u);
}

/// A batch of a table, which the user's settings do not confirm, comes while he is asked about a file.
TEST_F(TwoPass, BatchWithoutAQuestionIsSentWhileAnotherOneIsAsked) {
    host.user.addStrategy(CStrategyBuilder().channel(4).source(EOrderStrategyType::BatchPending));
    confirmer.onQuestion = [&] {
        service().placeorder(COrderBuilder(23)
                                 .channel(4)
                                 .source(EOrderStrategyType::BatchPending)
                                 .line(QStringLiteral("600000"), 10.5, 200));
        settle();
        EXPECT_EQ(host.commands().size(), 1u);
    };
    confirmer.answer.m_eResult = EConfirmResult::Declined;
    service().loadFromConfig(false);
    service().placeorder(good());
    settle();
    ASSERT_EQ(host.commands().size(), 1u);
    int volume = 0;
    for (const CCodeOrderParam& record : host.commands()[0]->m_codes)
        volume += record.m_nVolume;
    EXPECT_EQ(volume, 200);
}

/// Its orders must not be sent in the middle of those of another batch.
TEST_F(TwoPass, BatchWithoutAQuestionWaitsWhileAnotherOneIsSent) {
    host.user.hints.clear();
    host.orders.onCommand = [&](const COrderComandParamPtr&) {
        if (host.commands().size() != 1) return;
        service().placeorder(good());
        settle();
        EXPECT_EQ(host.commands().size(), 1u);
    };
    service().loadFromConfig(false);
    service().placeOrders({good(), good()});
    settle();
    settle();
    EXPECT_EQ(host.commands().size(), 3u);
}

TEST_F(TwoPass, OrderOfARemovedStrategyIsSentWhenItIsConfirmed) {
    confirmer.onQuestion = [this] { EXPECT_EQ(service().removeOrderStrategy(3), 0); };
    service().loadFromConfig(false);
    service().placeorder(good());
    settle();
    EXPECT_EQ(host.commands().size(), 1u);
}

TEST_F(TwoPass, QuestionOfAUserWhoLeavesSendsNothing) {
    confirmer.onQuestion = [this] {
        host.user.loggedIn = false;
        service().loadFromConfig(false);
    };
    service().loadFromConfig(false);
    service().placeorder(good());
    settle();
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(host.messageTexts().back(), QStringLiteral("[接口单]　通道号: 3, 用户已切换, 1条指令未执行!"));
}

TEST_F(TwoPass, QuestionOfAUserWhoLeavesIsWithdrawn) {
    confirmer.onQuestion = [this] {
        host.user.loggedIn = false;
        service().loadFromConfig(false);
        EXPECT_EQ(confirmer.withdrawn, 0); // the registry was locked
        QCoreApplication::processEvents();
        EXPECT_EQ(confirmer.withdrawn, 1);
    };
    service().loadFromConfig(false);
    service().placeorder(good());
    settle();
    EXPECT_EQ(confirmer.withdrawn, 1);
}

/// A change of the user while the first order is being checked.
class TwoPassOfAFormerUser : public TwoPass, public testing::WithParamInterface<bool> {};

TEST_P(TwoPassOfAFormerUser, SendsNothing) {
    if (!GetParam()) host.user.hints.clear(); // no question is due
    service().loadFromConfig(false);
    host.rules.onFill = [this](std::vector<CCodeOrderParam>&) {
        host.user.name = "another user with the same map";
        service().loadFromConfig(false);
    };
    service().placeOrders({good()});
    settle();
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(confirmer.questions.empty());
    EXPECT_EQ(host.messageTexts().back(),
              QStringLiteral("[文件单]　通道号: 3, 用户已退出或切换, 1条指令未执行!"));
    EXPECT_EQ(host.audit.incidents.back().m_eIncident, EIncident::OrdersDropped);
    EXPECT_EQ(host.audit.incidents.back().m_nOrders, 1);
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutAQuestion, TwoPassOfAFormerUser, testing::Bool());

TEST_F(TwoPass, DiscardedBacklogIsNotSentByItsSecondPass) {
    service().loadFromConfig(false);
    host.rules.onFill = [this](std::vector<CCodeOrderParam>&) { service().dropBacklog(); };
    service().placeOrders({good(), good()});
    settle();
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(confirmer.questions.empty());
    int unplaced = 0;
    for (const QVector<COrderParam>& orders : host.audit.unplaced)
        unplaced += orders.size();
    EXPECT_EQ(unplaced, 2) << "the checked one too";
}

TEST_F(TwoPass, DiscardedBacklogHasTheBatchesThatWaitForTheMainThread) {
    service().loadFromConfig(false);
    service().placeOrders({good()});
    QMetaObject::invokeMethod(
        &service(), [] {}, Qt::BlockingQueuedConnection); // the main thread has not run its event loop yet
    service().dropBacklog();
    settle();
    EXPECT_TRUE(host.commands().empty());
    ASSERT_EQ(host.audit.unplaced.size(), 1u);
    EXPECT_EQ(host.audit.unplaced[0].size(), 1);
}

TEST_F(TwoPass, BacklogThatIsDiscardedDuringShutdownIsNotSentAfterIt) {
    service().loadFromConfig(false);
    host.rules.onFill = [this, batches = 0](std::vector<CCodeOrderParam>&) mutable {
        if (++batches == 2) service().dropBacklog();
    };
    service().placeOrders({good()}); // is checked, and waits for the main thread
    service().placeOrders({good()});
    service().shutdown();
    QCoreApplication::processEvents();
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(host.audit.unplaced.size(), 2u);
}

TEST_F(TwoPass, BatchThatIsCheckedDuringShutdownIsSentByTheEventLoopAfterIt) {
    service().loadFromConfig(false);
    service().placeOrders({good()});
    service().shutdown();
    EXPECT_TRUE(host.commands().empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(confirmer.questions.size(), 1u);
    EXPECT_EQ(host.commands().size(), 1u);
}

TEST_F(TwoPass, StrategiesWithoutTheirRightAreNotLoaded) {
    host.user.rights = {EUserAuth::SignalOrders};
    service().loadFromConfig(false);
    EXPECT_TRUE(service().getStrategyMap().isEmpty());
}

} // namespace
