// The first pass of the two-pass variant: which orders it emits, and the messages for the others.
#include "tests/variants/BatchFakes.h"
#include "tests/variants/SplitFixture.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace TC;

const QString kStockAnnouncement =
    QStringLiteral("[文件单]　通道号: 3, 通道类型: 品种0, 下单类型: 下单23, 策略类型: 来源2");

class SplitFirstPass : public SplitFixture {
protected:
    /// The host removes all records of the orders that follow.
    void removeRecords() {
        host.rules.isZeroStock = [](const CCodeOrderParam&) { return true; };
    }
};

TEST_F(SplitFirstPass, CheckedOrderIsEmittedWithItsRecordsAndTheCallersMap) {
    const CChecked checked = check({stock().set([](auto& o) { o.m_strRemark = "备注"; })});
    ASSERT_EQ(checked.size(), 1);
    EXPECT_EQ(checked[0].m_nChannel, 3);
    EXPECT_EQ(checked[0].m_strRemark, "备注");
    EXPECT_EQ(checked[0].m_codes.size(), 2u);
    EXPECT_EQ(checked[0].m_codes[0].m_nVolume, 600);
    EXPECT_EQ(checked[0].m_weights, (std::map<std::string, double>{{"A1", 0.6}, {"A2", 0.4}}));
    EXPECT_EQ(maps, std::vector<const COrderStrategyMap*>{&strategies});
    EXPECT_EQ(host.messageTexts(), std::vector<QString>{kStockAnnouncement});
    EXPECT_TRUE(host.commands().empty());
}

TEST_F(SplitFirstPass, EmptyBatchAndMissingMapDoNothing) {
    service.placeOrders({}, &strategies);
    service.placeOrders({stock()}, nullptr);
    EXPECT_TRUE(batches.empty());
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(SplitFirstPass, UnknownChannelDropsThatOrderOnly) {
    EXPECT_EQ(check({stock(), stock().channel(9), stock()}).size(), 2);
    EXPECT_EQ(
        host.messageTexts(),
        (std::vector<QString>{kStockAnnouncement, QStringLiteral("[文件单]　通道号: 9, 找不到对应的策略!"),
                              kStockAnnouncement}));
}

TEST_F(SplitFirstPass, FailedFrameCheckDropsThatOrderOnly) {
    strategies.insert(4, CStrategyBuilder().channel(4).stopped());
    EXPECT_EQ(check({stock().channel(4), stock()}).size(), 1);
    EXPECT_EQ(
        host.messageTexts(),
        (std::vector<QString>{QStringLiteral("[文件单]　通道号: 4, 对应的策略未启动!"), kStockAnnouncement}));
}

TEST_F(SplitFirstPass, FailedFamilyCheckDropsThatOrderOnly) {
    EXPECT_EQ(check({COrderBuilder(23).line(QStringLiteral("999999"), 10.5, 100), stock()}).size(), 1);
    EXPECT_EQ(host.errorTexts(),
              std::vector<QString>{QStringLiteral("[文件单]　通道号: 3, 下单代码 [999999] 不合法!")});
}

TEST_F(SplitFirstPass, TradeTypeWithoutAFamilyDropsThatOrderOnly) {
    strategies.insert(4, CStrategyBuilder().channel(4));
    for (const int family : {7, 8, 13, -1}) {
        strategies[3] = CStrategyBuilder()
                            .family(static_cast<EOrderStrategyTradeType>(family))
                            .account(QStringLiteral("A1"));
        host.messages.messages.clear();
        const CChecked checked = check({stock(), stock().channel(4)});
        ASSERT_EQ(checked.size(), 1) << family;
        EXPECT_EQ(checked[0].m_nChannel, 4) << family;
        EXPECT_EQ(host.messageTexts().at(1), QStringLiteral("[文件单]　通道号: 3, 交易类型错误!")) << family;
    }
}

TEST_F(SplitFirstPass, OrderNeverLeavesTheFamilyOfItsStrategy) {
    strategies[3] = CStrategyBuilder().source(EOrderStrategyType::BatchPending);
    const CChecked checked = check({stock().source(EOrderStrategyType::BatchPending).set([](auto& o) {
        o.m_nTradeTypeOverride = static_cast<int>(EOrderStrategyTradeType::Credit);
    })});
    ASSERT_EQ(checked.size(), 1);
    EXPECT_TRUE(isUnset(checked[0].m_codes.at(0).m_eEntrustType)); // a credit order has one
}

TEST_F(SplitFirstPass, NoLegalOrderGivesNoSignal) {
    check({stock().channel(9), stock().channel(8)});
    EXPECT_TRUE(batches.empty());
    EXPECT_EQ(host.messageTexts().size(), 2u);
}

TEST_F(SplitFirstPass, CheckWithoutRecordsGivesTheFirstMessage) {
    host.user.msgFlags = {{EMsgTypeDef::OrderFailure, {true, false}}, {EMsgTypeDef::General, {false, true}}};
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{0, 0}; };
    EXPECT_TRUE(check({stock()}).isEmpty());
    ASSERT_EQ(host.messages.messages.size(), 2u);
    const fake::CMessage& message = host.messages.messages[1];
    EXPECT_EQ(message.text, QStringLiteral("指令生成失败,未选择账号或所选账号下单量为0"));
    EXPECT_EQ(static_cast<int>(message.type), 4);
    EXPECT_EQ(static_cast<int>(message.level), 1);
    EXPECT_TRUE(message.flag1);
    EXPECT_FALSE(message.flag2);
    EXPECT_EQ(message.extra, QString());
    EXPECT_TRUE(host.rules.recordCalls.empty());
}

TEST_F(SplitFirstPass, RecordsWithoutVolumeGiveTheSecondMessageWithTheFlagsOfGeneralMessages) {
    host.user.msgFlags = {{EMsgTypeDef::OrderFailure, {true, false}}, {EMsgTypeDef::General, {false, true}}};
    removeRecords();
    EXPECT_TRUE(check({stock()}).isEmpty());
    ASSERT_EQ(host.messages.messages.size(), 2u);
    const fake::CMessage& message = host.messages.messages[1];
    EXPECT_EQ(message.text, QStringLiteral("下单失败，未选择账号或所选账号下单量为0"));
    EXPECT_EQ(static_cast<int>(message.type), 4);
    EXPECT_EQ(static_cast<int>(message.level), 1);
    EXPECT_FALSE(message.flag1);
    EXPECT_TRUE(message.flag2);
    EXPECT_EQ(message.extra, QString());
}

TEST_F(SplitFirstPass, FrequencyModeIsFilledAfterTheFilterAlsoOfAnEmptyList) {
    host.rules.onFill = [](std::vector<CCodeOrderParam>& records) {
        for (CCodeOrderParam& record : records)
            record.m_nOverFreqMode = 5;
    };
    const CChecked checked = check({stock()});
    for (const CCodeOrderParam& record : checked.at(0).m_codes)
        EXPECT_EQ(record.m_nOverFreqMode, 5);
    removeRecords();
    check({stock()});
    EXPECT_EQ(host.rules.recordCalls, (std::vector<std::string>{"filter 2", "fill 2", "filter 2", "fill 0"}));
}

TEST_F(SplitFirstPass, OnlyRecordsWithAVolumeAreEmitted) {
    host.rules.isZeroStock = [](const CCodeOrderParam& record) { return record.m_account->getKey() == "A1"; };
    const CChecked checked = check({stock()});
    ASSERT_EQ(checked.size(), 1);
    ASSERT_EQ(checked[0].m_codes.size(), 1u);
    EXPECT_EQ(checked[0].m_codes[0].m_account->getKey(), "A2");
    EXPECT_EQ(checked[0].m_weights.size(), 2u);
}

TEST_F(SplitFirstPass, OrderOfTheShareTransferMarketHasNoRecords) {
    strategies[3] = strategyOf(EOrderStrategyTradeType::Neeq);
    EXPECT_TRUE(check({COrderBuilder(66).line(QStringLiteral("430001"), 10.5, 1000)}).isEmpty());
    EXPECT_EQ(host.messageTexts().back(), QStringLiteral("指令生成失败,未选择账号或所选账号下单量为0"));
}

TEST_F(SplitFirstPass, ManyOrdersStayInTheirOrder) {
    constexpr int kOrders = 5000;
    QVector<COrderParam> orders;
    for (int i = 0; i < kOrders; ++i)
        orders.push_back(stock().set([i](auto& o) { o.m_strRemark = std::to_string(i); }));
    const CChecked checked = check(orders);
    ASSERT_EQ(batches.size(), 1u);
    ASSERT_EQ(checked.size(), kOrders);
    for (int i = 0; i < kOrders; ++i)
        ASSERT_EQ(checked[i].m_strRemark, std::to_string(i));
}

TEST_F(SplitFirstPass, OrderOfManyAccountsIsOneOrder) {
    constexpr int kAccounts = 200;
    std::vector<std::pair<std::string, double>> members;
    for (int i = 0; i < kAccounts; ++i) {
        host.user.addAccount("B" + std::to_string(i));
        members.emplace_back("B" + std::to_string(i), 1.0 / kAccounts);
    }
    host.user.addGroup(EQDBrokerType::Stock, "many", members);
    strategies[3] = CStrategyBuilder().group(QStringLiteral("many"));
    const CChecked checked = check({COrderBuilder(23).line(QStringLiteral("600000"), 10.5, 200 * 100)});
    ASSERT_EQ(checked.size(), 1);
    EXPECT_EQ(checked[0].m_codes.size(), static_cast<std::size_t>(kAccounts));
    EXPECT_EQ(checked[0].m_weights.size(), static_cast<std::size_t>(kAccounts));
}

TEST_F(SplitFirstPass, OrderThatThrowsIsReportedAndDroppedAlone) {
    int filled = 0;
    host.rules.onFill = [&](std::vector<CCodeOrderParam>&) {
        if (++filled == 1) throw std::runtime_error("broken");
    };
    EXPECT_EQ(check({stock(), stock()}).size(), 1);
    ASSERT_EQ(host.errorTexts().size(), 1u);
    EXPECT_TRUE(
        host.errorTexts()[0].contains(QStringLiteral("CTradingRules::fillOverFreqOrderMode: broken")));
}

class SplitBatch : public SplitFirstPass {
protected:
    CBatchResult processBatch(const QVector<COrderParam>& orders) {
        return service.processBatch(orders, source, owner);
    }

    CAskedSource source{strategies};
    CCountingOwner owner;
};

TEST_F(SplitBatch, EveryOrderAsksForItsStrategyAndTheMapHasThoseOfTheCheckedOrders) {
    strategies.insert(4, CStrategyBuilder().channel(4));
    strategies.insert(5, CStrategyBuilder().channel(5).stopped());
    const CBatchResult result =
        processBatch({stock(), stock().channel(4), stock().channel(5), stock().channel(9), stock()});
    EXPECT_EQ(result.m_eEnd, EBatchEnd::Processed);
    EXPECT_EQ(result.m_nBegun, 5);
    EXPECT_EQ(source.asked, (std::vector<int>{3, 4, 5, 9, 3}));
    ASSERT_EQ(batches.size(), 1u);
    EXPECT_EQ(batches[0].size(), 3);
    EXPECT_EQ(lastMap.keys(), (QList<int>{3, 4}));
}

TEST_F(SplitBatch, MapHasTheLatestStrategyOfAChannel) {
    source.onAsked = [this] { strategies[3].m_bCommandFlag = source.asked.size() > 1; };
    processBatch({stock(), stock()});
    EXPECT_TRUE(lastMap.value(3).m_bCommandFlag);
}

TEST_F(SplitBatch, StrategyThatStopsTakesNoFurtherOrder) {
    source.onAsked = [this] {
        if (source.asked.size() == 2) strategies[3].m_nStatus = COrderStrategyParam::kStopped;
    };
    EXPECT_EQ(processBatch({stock(), stock(), stock()}).m_nBegun, 3);
    ASSERT_EQ(batches.size(), 1u);
    EXPECT_EQ(batches[0].size(), 1);
}

TEST_F(SplitBatch, OrdersBeforeTheOwnersEndAreEmitted) {
    owner.allowed = 2;
    const CBatchResult result = processBatch({stock(), stock(), stock(), stock()});
    EXPECT_EQ(result.m_eEnd, EBatchEnd::StoppedByOwner);
    EXPECT_EQ(result.m_nBegun, 2);
    ASSERT_EQ(batches.size(), 1u);
    EXPECT_EQ(batches[0].size(), 2);
    EXPECT_TRUE(host.audit.incidents.empty()); // the owner reports the others
}

TEST_F(SplitBatch, OwnerThatAllowsNothingGivesNoSignal) {
    owner.allowed = 0;
    EXPECT_EQ(processBatch({stock()}).m_nBegun, 0);
    EXPECT_TRUE(batches.empty());
}

TEST_F(SplitBatch, SourceThatThrowsDropsThatOrderOnly) {
    source.onAsked = [this] {
        if (source.asked.size() == 1) throw std::runtime_error("no memory");
    };
    const CBatchResult result = processBatch({stock(), stock()});
    EXPECT_EQ(result.m_eEnd, EBatchEnd::Processed);
    EXPECT_EQ(result.m_nBegun, 2);
    ASSERT_EQ(batches.size(), 1u);
    EXPECT_EQ(batches[0].size(), 1);
    EXPECT_EQ(host.errorTexts().size(), 1u);
}

TEST_F(SplitBatch, EmptyBatchIsProcessed) {
    const CBatchResult result = processBatch({});
    EXPECT_EQ(result.m_eEnd, EBatchEnd::Processed);
    EXPECT_EQ(result.m_nBegun, 0);
    EXPECT_TRUE(batches.empty());
}

class SplitFilter : public SplitFixture {
protected:
    SplitFilter() {
        strategies = strategiesOfTypes({EOrderStrategyType::File, EOrderStrategyType::Signal,
                                        EOrderStrategyType::Interface, EOrderStrategyType::File,
                                        EOrderStrategyType::BatchPending, EOrderStrategyType::Signal});
    }
    QList<int> kept() {
        service.filterStrategies(&strategies);
        return strategies.keys();
    }
};

TEST_F(SplitFilter, FilesAndSignalsHaveTheirOwnLimits) {
    host.user.maxStrategies = 1;
    EXPECT_EQ(kept(), (QList<int>{1, 2, 3, 5, 6}));
    host.user.maxSocketStrategies = 1;
    EXPECT_EQ(kept(), (QList<int>{1, 2, 3, 5}));
}

TEST_F(SplitFilter, NoLimitIsReachedWithFewerStrategies) {
    EXPECT_EQ(kept().size(), 6);
}

TEST_F(SplitFilter, UserWithoutRight8HasNoFileStrategy) {
    host.user.rights.erase(EUserAuth::FileOrders);
    EXPECT_EQ(kept(), (QList<int>{2, 3, 5, 6}));
}

TEST_F(SplitFilter, UserWithoutRight7HasNoSignalStrategy) {
    host.user.rights.erase(EUserAuth::SignalOrders);
    EXPECT_EQ(kept(), (QList<int>{1, 3, 4, 5}));
}

TEST_F(SplitFilter, LimitsOfZeroKeepOtherStrategiesOnly) {
    host.user.maxStrategies = 0;
    host.user.maxSocketStrategies = 0;
    EXPECT_EQ(kept(), (QList<int>{3, 5}));
}

TEST_F(SplitFilter, NullMapIsLeftAlone) {
    service.filterStrategies(nullptr);
    EXPECT_EQ(strategies.size(), 6);
}

} // namespace
