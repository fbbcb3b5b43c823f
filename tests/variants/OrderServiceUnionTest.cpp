#include "orderservice/variants/OrderServiceUnion.h"

#include "tests/support/Builders.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"
#include "tests/support/LogCapture.h"
#include "tests/variants/BatchFakes.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using namespace TC;

const QString kAnnouncement =
    QStringLiteral("[文件单]　通道号: 3, 通道类型: 品种0, 下单类型: 下单23, 策略类型: 来源2");

class OrderServiceUnion : public testing::Test {
protected:
    OrderServiceUnion() { strategies.insert(3, CStrategyBuilder()); }

    static COrderParam good() { return COrderBuilder(23).line(QStringLiteral("600000"), 10.5, 100); }

    CFakeClock clock;
    CFakeHost host;
    COrderServiceUnion service;
    COrderStrategyMap strategies;
};

TEST_F(OrderServiceUnion, StockOrderBecomesACommand) {
    service.placeOrders({good()}, &strategies);
    ASSERT_EQ(host.commands().size(), 1u);
    const COrderComandParam& command = *host.commands()[0];
    EXPECT_EQ(command.m_eTraderType, EQdTraderType::Stock);
    EXPECT_EQ(command.m_eHedgeType, EQdHedgeType::None);
    EXPECT_EQ(command.m_eBtnType, EFtSpecBtnBarType::None);
    EXPECT_EQ(command.m_eStopLossType, EQdStopLossType::None);
    EXPECT_TRUE(command.m_bUnion);
    EXPECT_TRUE(command.m_extra.isEmpty());
    EXPECT_EQ(command.m_strTag, "3");
    EXPECT_EQ(command.m_ePlatform, ETradePlatform::Plain);
    EXPECT_EQ(command.m_strAlgoParam, "");
    EXPECT_FALSE(command.m_bCommandFlag);
    EXPECT_FALSE(command.m_bForceConfirm);
    EXPECT_EQ(command.m_strCreateTime, "2026-01-05 09:30:00:000");
    EXPECT_EQ(command.m_codes.size(), 2u);
    EXPECT_EQ(command.m_weights.size(), 2u);
    EXPECT_EQ(host.messageTexts(), std::vector<QString>{kAnnouncement});
}

TEST_F(OrderServiceUnion, CommandFlagOfTheStrategyDoesNotReachStockCommands) {
    strategies[3].m_bCommandFlag = true;
    service.placeOrders({good()}, &strategies);
    EXPECT_FALSE(host.commands().at(0)->m_bCommandFlag);
}

TEST_F(OrderServiceUnion, ForcedConfirmationTravelsInTheCommand) {
    host.switches.on.insert("mdl_order_service_force_confirm");
    service.placeOrders({good()}, &strategies);
    EXPECT_TRUE(host.commands().at(0)->m_bForceConfirm);
}

TEST_F(OrderServiceUnion, EmptyBatchAndMissingMapDoNothing) {
    service.placeOrders({}, &strategies);
    service.placeOrders({good()}, nullptr);
    EXPECT_TRUE(host.messageTexts().empty());
    EXPECT_TRUE(host.commands().empty());
}

TEST_F(OrderServiceUnion, UnknownChannelEndsTheBatch) {
    service.placeOrders({good(), COrderBuilder(23).channel(9), good()}, &strategies);
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(
        host.messageTexts(),
        (std::vector<QString>{kAnnouncement, QStringLiteral("[文件单]　通道号: 9, 找不到对应的策略!")}));
}

TEST_F(OrderServiceUnion, FailedFrameCheckEndsTheBatch) {
    strategies.insert(4, CStrategyBuilder().channel(4).stopped());
    service.placeOrders({good(), COrderBuilder(23).channel(4), good()}, &strategies);
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.messageTexts().back(), QStringLiteral("[文件单]　通道号: 4, 对应的策略未启动!"));
}

TEST_F(OrderServiceUnion, FailedFamilyCheckDropsThatOrderOnly) {
    service.placeOrders({good(), COrderBuilder(23).line(QStringLiteral("999999"), 10.5, 100), good()},
                        &strategies);
    EXPECT_EQ(host.commands().size(), 2u);
    EXPECT_EQ(host.errorTexts(),
              std::vector<QString>{QStringLiteral("[文件单]　通道号: 3, 下单代码 [999999] 不合法!")});
    EXPECT_EQ(host.messageTexts().size(), 3u);
}

TEST_F(OrderServiceUnion, EmptyResultOfACheckGoesOutAsACommandWithoutCodes) {
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{0, 0}; };
    service.placeOrders({good()}, &strategies);
    ASSERT_EQ(host.commands().size(), 1u);
    EXPECT_TRUE(host.commands()[0]->m_codes.empty());
}

TEST_F(OrderServiceUnion, OtherKindsOfUserGetNoCommandAndNoMessage) {
    host.user.kind = 5;
    service.placeOrders({good()}, &strategies);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(host.errorTexts().empty());
    EXPECT_EQ(host.messageTexts(), std::vector<QString>{kAnnouncement});
}

TEST_F(OrderServiceUnion, TradeTypeWithoutAFamilyIsReportedAndTheBatchGoesOn) {
    for (const int family : {7, 8, 13, -1}) {
        strategies[3] = CStrategyBuilder()
                            .family(static_cast<EOrderStrategyTradeType>(family))
                            .account(QStringLiteral("A1"));
        strategies[4] = CStrategyBuilder().channel(4);
        host.messages.messages.clear();
        host.orders.commands.clear();
        service.placeOrders({good(), COrderBuilder(23).channel(4).line(QStringLiteral("600000"), 1, 100)},
                            &strategies);
        EXPECT_EQ(host.messageTexts().at(1), QStringLiteral("[文件单]　通道号: 3, 交易类型错误!")) << family;
        EXPECT_EQ(host.commands().size(), 1u) << family;
    }
}

TEST_F(OrderServiceUnion, OnlyBatchPendingOrdersLeaveTheStrategysFamily) {
    host.exchange.addOther("future", QStringLiteral("IF2609"));
    host.quotes.quotes[QStringLiteral("IF2609")] = host.quotes.quotes.at(QStringLiteral("SH600000"));
    const auto overridden = [](EOrderStrategyType source) {
        return COrderBuilder(0)
            .source(source)
            .line(QStringLiteral("IF2609"), 10.5, 100)
            .set([](COrderParam& o) { o.m_nTradeTypeOverride = 1; });
    };
    strategies[3].setting(ESettingSlot::Future).m_ePriceType = EPriceType::Specified;
    service.placeOrders({overridden(EOrderStrategyType::File)}, &strategies);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(host.errorTexts(), // stocks do not take the number of a futures order
              std::vector<QString>{QStringLiteral("[文件单]　通道号: 3, 下单指令不合法!")});
    strategies[3].m_eStrategyType = EOrderStrategyType::BatchPending;
    service.placeOrders({overridden(EOrderStrategyType::BatchPending)}, &strategies);
    ASSERT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.commands()[0]->m_eTraderType, EQdTraderType::FutureSpeculation);
    EXPECT_EQ(host.commands()[0]->m_codes.size(), 2u);
    EXPECT_EQ(host.messageTexts().back(), // the family of the strategy, not of the order
              QStringLiteral("[批量埋单]　通道号: 3, 通道类型: 品种0, 下单类型: 下单0, 策略类型: 来源4"));
}

TEST_F(OrderServiceUnion, BatchPendingOrderWithoutAFamilyStaysInTheStrategys) {
    strategies[3].m_eStrategyType = EOrderStrategyType::BatchPending;
    COrderParam order = good();
    order.m_eStrategyType = EOrderStrategyType::BatchPending;
    service.placeOrders({order}, &strategies);
    ASSERT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.commands()[0]->m_eTraderType, EQdTraderType::Stock);
    EXPECT_EQ(host.messageTexts().size(), 1u);
}

TEST_F(OrderServiceUnion, BatchPendingOrderOfNoFamilyIsReportedThoughTheStrategyHasOne) {
    strategies[3].m_eStrategyType = EOrderStrategyType::BatchPending;
    for (const int family : {7, 8, 13}) {
        COrderParam order = good();
        order.m_eStrategyType = EOrderStrategyType::BatchPending;
        order.m_nTradeTypeOverride = family;
        service.placeOrders({order}, &strategies);
        EXPECT_EQ(host.messageTexts().back(), QStringLiteral("[批量埋单]　通道号: 3, 交易类型错误!"))
            << family;
    }
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(host.messageTexts().size(), 6u); // each follows its announcement
}

TEST_F(OrderServiceUnion, DroppedOrdersAreLoggedToo) {
    const CLogCapture capture;
    utils::CLogCenter::setLogEnabled(true);
    strategies.insert(4, CStrategyBuilder().channel(4).stopped());
    for (const int channel : {9, 4}) {
        const COrderParam order = COrderBuilder(23).channel(channel);
        const std::size_t before = capture.lines().size();
        service.placeOrders({order}, &strategies);
        ASSERT_EQ(capture.lines().size(), before + 1) << channel;
        EXPECT_NE(capture.lines().back().text.find("param = " + order.toQString().toStdString()),
                  std::string::npos)
            << channel;
    }
}

TEST_F(OrderServiceUnion, OrdersAndCommandsAreLoggedWhereLoggingIsOn) {
    const CLogCapture capture;
    service.placeOrders({good()}, &strategies);
    EXPECT_TRUE(capture.lines().empty());
    utils::CLogCenter::setLogEnabled(true);
    service.placeOrders({good()}, &strategies);
    ASSERT_EQ(capture.lines().size(), 2u);
    const std::string address =
        "[" + std::to_string(static_cast<long long>(reinterpret_cast<std::intptr_t>(&service))) + "] ";
    EXPECT_EQ(capture.lines()[0].text,
              address + "[TC::COrderServiceUnion::placeOrders] param = " + good().toQString().toStdString());
    EXPECT_EQ(capture.lines()[1].text,
              address + "[TC::COrderServiceUnion::orderStock] placeCommands: [orderservice] "
                        "stock speculation.");
    for (const CLogLine& line : capture.lines()) {
        EXPECT_EQ(line.level, 20000);
        EXPECT_EQ(line.logger, "KNStdFile");
    }
}

class Batch : public OrderServiceUnion {
protected:
    CBatchResult processBatch(const QVector<COrderParam>& orders) {
        return service.processBatch(orders, source, owner);
    }
    static COrderParam unknown() { return COrderBuilder(23).channel(9); }

    CAskedSource source{strategies};
    CCountingOwner owner;
};

TEST_F(Batch, EveryOrderAsksForItsStrategy) {
    std::vector<std::size_t> askedBefore;
    host.orders.onCommand = [&](const COrderComandParamPtr&) { askedBefore.push_back(source.asked.size()); };
    const CBatchResult result = processBatch({good(), good(), good()});
    EXPECT_EQ(result.m_eEnd, EBatchEnd::Processed);
    EXPECT_EQ(result.m_nBegun, 3);
    EXPECT_EQ(source.asked, (std::vector<int>{3, 3, 3}));
    EXPECT_EQ(askedBefore, (std::vector<std::size_t>{1, 2, 3}));
}

TEST_F(Batch, StrategyThatStopsTakesNoFurtherOrder) {
    host.orders.onCommand = [this](const COrderComandParamPtr&) {
        strategies[3].m_nStatus = COrderStrategyParam::kStopped;
    };
    const CBatchResult result = processBatch({good(), good(), good()});
    EXPECT_EQ(result.m_eEnd, EBatchEnd::EndedByRule);
    EXPECT_EQ(result.m_nBegun, 2);
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.messageTexts().back(), QStringLiteral("[文件单]　通道号: 3, 对应的策略未启动!"));
}

TEST_F(Batch, StrategyLivesUntilItsOrderEnds) {
    host.orders.onCommand = [this](const COrderComandParamPtr&) {
        strategies.clear();
        EXPECT_FALSE(source.last.expired());
    };
    EXPECT_EQ(processBatch({good()}).m_eEnd, EBatchEnd::Processed);
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_TRUE(source.last.expired());
}

TEST_F(Batch, OwnerCutsTheBatchBeforeAnOrder) {
    owner.allowed = 2;
    const CBatchResult result = processBatch({good(), good(), good(), good()});
    EXPECT_EQ(result.m_eEnd, EBatchEnd::StoppedByOwner);
    EXPECT_EQ(result.m_nBegun, 2);
    EXPECT_EQ(host.commands().size(), 2u);
    EXPECT_EQ(source.asked.size(), 2u);
    EXPECT_TRUE(host.audit.incidents.empty()); // the owner reports the others
}

TEST_F(Batch, MissingStrategyEndsTheBatchAndTheRestIsReported) {
    const CBatchResult result = processBatch({good(), unknown(), good(), good()});
    EXPECT_EQ(result.m_eEnd, EBatchEnd::EndedByRule);
    EXPECT_EQ(result.m_nBegun, 2);
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(
        host.messageTexts(),
        (std::vector<QString>{kAnnouncement, QStringLiteral("[文件单]　通道号: 9, 找不到对应的策略!")}));
    ASSERT_EQ(host.audit.incidents.size(), 1u);
    EXPECT_EQ(host.audit.incidents[0].m_nOrders, 2);
}

TEST_F(Batch, SourceThatThrowsDropsThatOrderOnly) {
    source.onAsked = [this] {
        if (source.asked.size() == 1) throw std::runtime_error("no memory");
    };
    const CBatchResult result = processBatch({good(), good()});
    EXPECT_EQ(result.m_eEnd, EBatchEnd::Processed);
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.errorTexts().size(), 1u);
}

/// So if the batch is cut, exactly the orders after the failed one are reported.
TEST_F(Batch, OrderThatFailsIsBegunToo) {
    source.onAsked = [this] {
        if (source.asked.size() == 1) throw std::runtime_error("no memory");
    };
    owner.allowed = 2;
    EXPECT_EQ(processBatch({good(), good(), good()}).m_nBegun, 2);
}

TEST_F(Batch, BatchMayBeginInsideAnOrder) {
    bool isNested = false;
    host.orders.onCommand = [&](const COrderComandParamPtr&) {
        if (std::exchange(isNested, true)) return;
        EXPECT_EQ(processBatch({unknown(), good()}).m_nBegun, 1);
    };
    EXPECT_EQ(processBatch({good(), good()}).m_nBegun, 2);
    EXPECT_EQ(host.commands().size(), 2u);
    EXPECT_EQ(source.asked, (std::vector<int>{3, 9, 3}));
}

class Filter : public OrderServiceUnion {
protected:
    Filter() {
        strategies = strategiesOfTypes({EOrderStrategyType::File, EOrderStrategyType::Signal,
                                        EOrderStrategyType::Signal, EOrderStrategyType::File,
                                        EOrderStrategyType::BatchPending, EOrderStrategyType::File});
    }
    QList<int> kept() {
        service.filterStrategies(&strategies);
        return strategies.keys();
    }
};

TEST_F(Filter, CommonLimitCountsEveryStrategy) {
    host.user.maxStrategies = 2;
    EXPECT_EQ(kept(), (QList<int>{1, 2}));
}

TEST_F(Filter, SplitLimitsCountFilesAndSignalsApart) {
    host.switches.on.insert("mdl_order_split_orderNum");
    host.user.maxStrategies = 2;
    host.user.maxSocketStrategies = 1;
    EXPECT_EQ(kept(), (QList<int>{1, 2, 4, 5}));
}

TEST_F(Filter, SplitLimitsNeitherCountNorEraseOtherStrategies) {
    host.switches.on.insert("mdl_order_split_orderNum");
    strategies[1].m_eStrategyType = EOrderStrategyType::Interface;
    strategies[3].m_eStrategyType = EOrderStrategyType::Interface;
    host.user.maxStrategies = 1;
    host.user.maxSocketStrategies = 1;
    EXPECT_EQ(kept(), (QList<int>{1, 2, 3, 4, 5}));
}

TEST_F(Filter, NoLimitIsReachedWithFewerStrategies) {
    EXPECT_EQ(kept().size(), 6);
}

TEST_F(Filter, NullMapIsLeftAlone) {
    service.filterStrategies(nullptr);
    EXPECT_EQ(strategies.size(), 6);
}

} // namespace
