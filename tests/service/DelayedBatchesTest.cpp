// Checked orders that come while the user is asked about another batch: they wait for his answer, or are
// reported.
#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/service/LegalBatches.h"
#include "orderservice/service/OrderServiceAdapter.h"
#include "tests/service/ServiceFixture.h"

#include <QCoreApplication>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace TC;

using CLog = std::vector<std::string>;

/// A variant that asks about each batch and writes down what it did.
class CAskingVariant final : public COrderServiceBase {
public:
    explicit CAskingVariant(CLog& log) : m_log(log) {}
    void filterStrategies(COrderStrategyMap*) override {}
    void placeOrders(QVector<COrderParam>, const COrderStrategyMap*) override {}
    void placeLegalOrders(QVector<orderParamForOrderService> orders,
                          const COrderStrategyMap* strategies) override {
        CConfirmQuestion question;
        question.m_strTitle = QString::number(orders.first().m_nChannel);
        const CConfirmAnswer answer = askForConfirmation(question);
        const bool isAccepted = answer.m_eResult == EConfirmResult::Accepted;
        m_log.push_back((isAccepted ? "placed " : "not asked ") + question.m_strTitle.toStdString() + " by " +
                        std::to_string(strategies->first().m_nVolume));
    }

private:
    CLog& m_log;
};

/// Runs the event loop while a question is open, as a dialog does.
class CDialog final : public IOrderConfirmer {
public:
    explicit CDialog(CLog& log) : m_log(log) {}
    CConfirmAnswer confirm(const CConfirmQuestion& question) override {
        m_log.push_back("asked " + question.m_strTitle.toStdString());
        std::exchange(m_onQuestion, [] {})();
        QCoreApplication::processEvents();
        CConfirmAnswer answer;
        answer.m_eResult = EConfirmResult::Accepted;
        return answer;
    }
    std::function<void()> m_onQuestion = [] {}; ///< called once

private:
    CLog& m_log;
};

class DelayedBatches : public ServiceFixture {
protected:
    void SetUp() override {
        ServiceFixture::SetUp();
        m_variant = std::make_unique<CAskingVariant>(m_log);
        forwardLegalOrders(*m_variant, service());
        m_adapter = std::make_unique<COrderServiceAdapter>();
        setOrderConfirmer(&m_dialog);
    }
    void TearDown() override {
        setOrderConfirmer(nullptr);
        m_adapter.reset();
        ServiceFixture::TearDown();
        QCoreApplication::processEvents();
        EXPECT_EQ(CLegalBatches::instance().size(), 0u) << "a batch was not released";
    }
    static QVector<orderParamForOrderService> ordersOf(int channel) {
        orderParamForOrderService order(COrderBuilder(23).line(QStringLiteral("600000"), 10.5, 100));
        order.m_nChannel = channel;
        return {order};
    }
    static COrderStrategyMap strategiesOf(int volume) {
        COrderStrategyMap strategies;
        strategies.insert(3, CStrategyBuilder().volume(volume));
        return strategies;
    }
    /// Emits a batch whose map ends with the call.
    void emitBatch(int channel) {
        const COrderStrategyMap strategies = strategiesOf(channel * 10);
        emit m_variant->sigPlaceLegalOrders(ordersOf(channel), &strategies);
    }
    /// The label is that of file orders only while their user is logged in.
    void expectDropped(const QString& reason, const QString& auditCause,
                       const QString& label = QStringLiteral("[文件单]")) {
        EXPECT_EQ(host.messageTexts(), std::vector<QString>{label + QStringLiteral("　通道号: 2, ") + reason +
                                                            QStringLiteral(", 1条指令未执行!")});
        ASSERT_EQ(host.audit.incidents.size(), 1u);
        EXPECT_EQ(host.audit.incidents[0].m_eIncident, EIncident::OrdersDropped);
        EXPECT_EQ(host.audit.incidents[0].m_nChannel, 2);
        EXPECT_EQ(host.audit.incidents[0].m_strCause, auditCause);
    }

    CLog m_log;
    CDialog m_dialog{m_log};
    std::unique_ptr<CAskingVariant> m_variant;
    std::unique_ptr<COrderServiceAdapter> m_adapter;
};

TEST_F(DelayedBatches, AreAskedOneAfterTheOtherInTheirOrder) {
    m_dialog.m_onQuestion = [this] {
        emitBatch(2);
        emitBatch(3);
        QCoreApplication::processEvents();
        m_dialog.m_onQuestion = [this] { emitBatch(4); }; // while 2 is asked, before 3 was
    };
    emitBatch(1);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_log, (CLog{"asked 1", "placed 1 by 10", "asked 2", "placed 2 by 20", "asked 3",
                           "placed 3 by 30", "asked 4", "placed 4 by 40"}));
    EXPECT_TRUE(host.audit.incidents.empty());
}

TEST_F(DelayedBatches, BatchFromTheServicesThreadWaitsToo) {
    m_dialog.m_onQuestion = [this] {
        std::thread([this] { emitBatch(2); }).join();
        QCoreApplication::processEvents();
        EXPECT_EQ(m_log, CLog{"asked 1"});
    };
    emitBatch(1);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_log, (CLog{"asked 1", "placed 1 by 10", "asked 2", "placed 2 by 20"}));
}

TEST_F(DelayedBatches, AreReportedWhenTheAdapterEnds) {
    m_dialog.m_onQuestion = [this] {
        emitBatch(2);
        QCoreApplication::processEvents();
        m_adapter.reset();
    };
    emitBatch(1);
    QCoreApplication::processEvents();
    expectDropped(QStringLiteral("主线程已停止接收待确认指令"),
                  QStringLiteral("the adapter was deleted before it received the checked orders"));
    EXPECT_EQ(m_log, (CLog{"asked 1", "placed 1 by 10"}));
}

TEST_F(DelayedBatches, AreReportedWhenTheUserLeaves) {
    service().loadFromConfig(false);
    m_dialog.m_onQuestion = [this] {
        emitBatch(2);
        QCoreApplication::processEvents();
        host.user.loggedIn = false;
        service().loadFromConfig(false);
    };
    emitBatch(1);
    QCoreApplication::processEvents();
    expectDropped(QStringLiteral("用户已退出或切换"),
                  QStringLiteral("their user left before the checked orders were placed"),
                  QStringLiteral("[接口单]"));
}

TEST_F(DelayedBatches, StayWhenTheSameUserIsLoadedAgain) {
    service().loadFromConfig(false);
    m_dialog.m_onQuestion = [this] {
        emitBatch(2);
        QCoreApplication::processEvents();
        service().loadFromConfig(false);
    };
    emitBatch(1);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_log.back(), "placed 2 by 20");
    EXPECT_TRUE(host.audit.incidents.empty());
}

TEST_F(DelayedBatches, BatchThatWaitsForTheMainThreadIsReportedWhenTheUserLeaves) {
    service().loadFromConfig(false);
    std::thread([this] { emitBatch(2); }).join(); // the main thread has not run its event loop yet
    host.user.loggedIn = false;
    service().loadFromConfig(false);
    QCoreApplication::processEvents();
    expectDropped(QStringLiteral("用户已退出或切换"),
                  QStringLiteral("their user left before the checked orders were placed"),
                  QStringLiteral("[接口单]"));
    EXPECT_TRUE(m_log.empty());
}

TEST_F(DelayedBatches, AreReportedIfTheirVariantEnds) {
    auto second = std::make_unique<CAskingVariant>(m_log);
    forwardLegalOrders(*second, service());
    const COrderStrategyMap strategies = strategiesOf(10);
    m_dialog.m_onQuestion = [this] {
        emitBatch(2);
        QCoreApplication::processEvents();
        m_variant.reset();
    };
    emit second->sigPlaceLegalOrders(ordersOf(1), &strategies);
    QCoreApplication::processEvents();
    expectDropped(QStringLiteral("下单服务已关闭"),
                  QStringLiteral("the order service was deleted before the checked orders were placed"));
}

TEST_F(DelayedBatches, ShutdownDoesNotWaitForTheServicesThreadThatAsks) {
    CConfirmAnswer answer;
    QMetaObject::invokeMethod(
        &service(), [&] { answer = askForConfirmation({}); }, Qt::QueuedConnection);
    service().shutdown(); // the main thread cannot ask, because it waits here
    EXPECT_EQ(answer.m_eResult, EConfirmResult::NotAsked);
    EXPECT_EQ(answer.m_strReason, QStringLiteral("下单服务正在关闭"));
    EXPECT_TRUE(m_log.empty());
}

} // namespace
