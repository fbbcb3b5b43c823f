// The life of the service: refusals of the trading layer, the entry of the models, and the release.
#include "orderservice/platform/FormulaManager.h"
#include "tests/func/FuncServiceFixture.h"

#include <QCoreApplication>

#include <future>
#include <thread>
#include <utility>

namespace {

using namespace TC;

class OrderFuncRefusals : public FuncServiceFixture {};

// What the trading layer refuses.

knservice::COrderCommandPtr commandOf(const std::string& tradeKey) {
    const auto command = boost::make_shared<knservice::COrderCommand>();
    command->m_strTradeKey = tradeKey;
    return command;
}

TEST_F(OrderFuncRefusals, RefusedCommandReachesTheCaller) {
    service.init();
    emit host.trade.sigOrderCheckFailed(commandOf("a|b|7"), utils::KNError(3, "no money"));
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0].id, 7);
    EXPECT_EQ(failures[0].key, "b");
    EXPECT_EQ(failures[0].text, "no money");
    emit host.trade.sigOrderCheckFailed({}, utils::KNError(3, "null"));
    EXPECT_EQ(failures.size(), 1u);
}

TEST_F(OrderFuncRefusals, RefusalOnAnotherThreadIsQueued) {
    service.init();
    service.init(); // a second call must not double the reports
    std::thread([&] {
        emit host.trade.sigOrderCheckFailed(commandOf("a|b|7"), utils::KNError(3, "no money"));
    }).join();
    EXPECT_TRUE(failures.empty());
    QCoreApplication::processEvents();
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0].text, "no money");
}

TEST_F(OrderFuncRefusals, RefusalWithABadTradeKeyIsToldToTheUser) {
    service.init();
    EXPECT_NO_THROW(emit host.trade.sigOrderCheckFailed(commandOf("a|b|x"), utils::KNError(3, "no money")));
    EXPECT_TRUE(failures.empty());
    ASSERT_EQ(host.messageTexts().size(), 1u);
    EXPECT_TRUE(
        host.messageTexts()[0].startsWith(QStringLiteral("[接口单]　函数交易的拒单未能通知调用者: ")));
}

// Its life.

class CFormulas : public CFormulaManager {
public:
    void registerOrderCallBack(COrderCallback given) override {
        callback = std::move(given);
        ++calls;
    }
    COrderCallback callback;
    int calls = 0;
};

/// A host that has formula models.
class OrderFuncLife : public testing::Test {
protected:
    OrderFuncLife() {
        releaseHost(); // the fake host installs itself without models
        CHost services = host.services();
        services.formulaManager = &formulas;
        EXPECT_TRUE(installHost(services).isSuccess());
    }
    ~OrderFuncLife() override { COrderFuncService::release(); }

    CFakeHost host;
    CFormulas formulas;
};

TEST_F(OrderFuncLife, InitRegistersTheEntryOfTheModels) {
    COrderFuncService::initInstance(new COrderFuncService);
    COrderFuncService::instance()->init();
    COrderFuncService::instance()->loadFromConfig();
    ASSERT_EQ(formulas.calls, 1);
    formulas.callback("passorder", "{}");
    EXPECT_EQ(host.messageTexts(),
              (std::vector<QString>{QStringLiteral("[函数交易]　函数: passorder, 合约或篮子为空")}));
}

TEST_F(OrderFuncLife, ModelsCallNothingAfterTheRelease) {
    COrderFuncService::initInstance(new COrderFuncService);
    COrderFuncService::instance()->init();
    COrderFuncService::release();
    EXPECT_EQ(COrderFuncService::instance(), nullptr);
    formulas.callback("passorder", "{}");
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(OrderFuncLife, HostCannotBeReleasedBeforeTheService) {
    COrderFuncService::initInstance(new COrderFuncService);
    releaseHost();
    EXPECT_TRUE(isHostInstalled());
}

TEST_F(OrderFuncLife, ReleaseInsideACallbackIsRefused) {
    COrderFuncService::initInstance(new COrderFuncService);
    COrderFuncService::instance()->registOrderFailedCallback(
        [](const int&, const std::string&, const utils::KNError&) { COrderFuncService::release(); });
    COrderFuncService::instance()->parseOrder("passorder", "{}");
    EXPECT_NE(COrderFuncService::instance(), nullptr);
    EXPECT_EQ(host.messageTexts().back(),
              QStringLiteral("[函数交易]　不能在回调中关闭函数交易服务, 请在主线程调用!"));
}

TEST_F(OrderFuncLife, ReleaseWhileACallRunsIsRefused) {
    CFakeClock clock;
    COrderFuncService::initInstance(new COrderFuncService);
    COrderFuncService::instance()->init();
    std::promise<void> isInside, mayEnd;
    bool isFirst = true; // used on the model's thread only
    host.quotes.onRead = [&](const QString&, int) {
        if (!isFirst) return;
        isFirst = false;
        isInside.set_value();
        mayEnd.get_future().wait();
    };
    host.user.kind = 90;
    std::thread model([&] {
        formulas.callback("passorder", R"({"opType":23,"orderType":1101,"prType":5,"modelVolume":"100",
                                           "accountID":"A1","orderCode":"600000"})");
    });
    isInside.get_future().wait();
    COrderFuncService::release();
    EXPECT_NE(COrderFuncService::instance(), nullptr);
    EXPECT_EQ(host.messageTexts().back(), QStringLiteral("[函数交易]　函数仍在执行, 函数交易服务未关闭!"));
    mayEnd.set_value();
    model.join();
    COrderFuncService::release();
    EXPECT_EQ(COrderFuncService::instance(), nullptr);
}

TEST(OrderFuncWithoutModels, InitNeedsNoFormulaManager) {
    const CFakeHost host;
    COrderFuncService service;
    EXPECT_NO_THROW(service.init());
}

} // namespace
