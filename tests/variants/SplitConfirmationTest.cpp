// The second pass of the two-pass variant: when the user is asked, what the question says, and what happens
// to a batch that is not confirmed.
#include "tests/variants/SplitFixture.h"

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace TC;

class SplitConfirmation : public SplitFixture {
protected:
    void source(EOrderStrategyType type) {
        strategies[3] = CStrategyBuilder().source(type);
        m_eSource = type;
    }
    COrderParam order(const std::string& remark = {}) const {
        return stock().source(m_eSource).set([&](auto& o) { o.m_strRemark = remark; });
    }
    /// What a batch of two orders gives that was not confirmed, for this reason.
    void expectReported(const QString& reason) {
        EXPECT_TRUE(host.commands().empty());
        EXPECT_TRUE(host.errorTexts().empty());
        EXPECT_EQ(host.messageTexts().back(),
                  QStringLiteral("[接口单]　通道号: 3, ") + reason + QStringLiteral(", 2条指令未执行!"));
        expectAudit(QStringLiteral("the batch was not confirmed: ") + reason);
    }
    void expectAudit(const QString& cause) {
        ASSERT_EQ(host.audit.incidents.size(), 1u);
        EXPECT_EQ(host.audit.incidents[0].m_eIncident, EIncident::OrdersDropped);
        EXPECT_EQ(host.audit.incidents[0].m_nChannel, 3);
        EXPECT_EQ(host.audit.incidents[0].m_nOrders, 2);
        EXPECT_EQ(host.audit.incidents[0].m_strCause, cause);
    }

private:
    EOrderStrategyType m_eSource = EOrderStrategyType::File;
};

TEST_F(SplitConfirmation, EmptyBatchAndMissingMapDoNothing) {
    service.placeLegalOrders({}, &strategies);
    service.placeLegalOrders(check({order()}), nullptr);
    EXPECT_TRUE(confirmer.questions.empty());
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(host.audit.incidents.empty());
}

TEST_F(SplitConfirmation, FirstOrderWithoutAStrategyDropsTheBatch) {
    const CChecked checked = check({order(), order()});
    host.messages.messages.clear();
    service.placeLegalOrders(checked, &lastMap);
    EXPECT_EQ(host.commands().size(), 2u);
    host.orders.commands.clear();
    const COrderStrategyMap none;
    service.placeLegalOrders(checked, &none);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(confirmer.questions.empty());
    EXPECT_EQ(host.messageTexts(),
              std::vector<QString>{QStringLiteral("[文件单]　通道号: 3, 找不到对应的策略!")});
    expectAudit(QStringLiteral("the first order of the batch has no strategy"));
}

struct CSourceCase {
    const char* name;
    EOrderStrategyType type;
    int bit;
    const char* title;
};

class SplitHint : public SplitConfirmation, public testing::WithParamInterface<CSourceCase> {};

TEST_P(SplitHint, ClearBitsSendWithoutAQuestion) {
    for (const int bit : {1, 16, 32, 1024}) {
        if (bit == GetParam().bit) continue;
        host.user.hints.insert(bit);
        host.user.globalHints.insert(bit);
    }
    source(GetParam().type);
    place({order()});
    EXPECT_TRUE(confirmer.questions.empty());
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.user.globalHintCalls.all(), std::vector<int>{GetParam().bit});
}

TEST_P(SplitHint, BitOfTheTradeSettingsAsksAndTheGlobalOneIsNotRead) {
    host.user.hints.insert(GetParam().bit);
    source(GetParam().type);
    place({order()});
    ASSERT_EQ(confirmer.questions.size(), 1u);
    EXPECT_EQ(confirmer.questions[0].m_strTitle, QString::fromUtf8(GetParam().title));
    EXPECT_TRUE(host.user.globalHintCalls.all().empty());
    EXPECT_EQ(host.commands().size(), 1u);
}

TEST_P(SplitHint, GlobalBitAsksToo) {
    host.user.globalHints.insert(GetParam().bit);
    source(GetParam().type);
    place({order()});
    EXPECT_EQ(confirmer.questions.size(), 1u);
    EXPECT_EQ(host.commands().size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Sources, SplitHint,
    testing::Values(CSourceCase{"File", EOrderStrategyType::File, 32, "文件单下达指令"},
                    CSourceCase{"Signal", EOrderStrategyType::Signal, 16, "信号单下达指令"},
                    CSourceCase{"BatchPending", EOrderStrategyType::BatchPending, 1024, "预埋单下达指令"}),
    [](const auto& row) { return row.param.name; });

TEST_F(SplitConfirmation, OtherSourcesAlwaysAskUnderThePlainTitle) {
    for (const int type : {0, 3, 5}) {
        confirmer.questions.clear();
        source(static_cast<EOrderStrategyType>(type));
        place({order()});
        ASSERT_EQ(confirmer.questions.size(), 1u) << type;
        EXPECT_EQ(confirmer.questions[0].m_strTitle, QStringLiteral("下达指令")) << type;
    }
    EXPECT_TRUE(host.user.globalHintCalls.all().empty());
}

TEST_F(SplitConfirmation, TitleUsesTheWordsOfTheUsersKind) {
    host.switches.on.insert("mdl_order_pb_display");
    source(EOrderStrategyType::Interface);
    for (const auto& [kind, title] :
         {std::pair{100, "下达投资建议"}, {101, "下达投资决策"}, {90, "下达指令"}}) {
        confirmer.questions.clear();
        host.user.kind = kind;
        place({order()});
        EXPECT_EQ(confirmer.questions.at(0).m_strTitle, QString::fromUtf8(title)) << kind;
    }
}

TEST_F(SplitConfirmation, OrderIsOneRowWithTheRecordOfItsLastAccount) {
    source(EOrderStrategyType::Interface);
    place({order("甲"), order(), order("丙")});
    ASSERT_EQ(confirmer.questions.size(), 1u);
    const CConfirmQuestion& question = confirmer.questions[0];
    EXPECT_EQ(question.m_eTraderType, EQdTraderType::Stock);
    ASSERT_EQ(question.m_rows.size(), 3u);
    for (const auto& [index, row] : question.m_rows) {
        EXPECT_EQ(row.m_account->getKey(), "A2") << index;
        EXPECT_EQ(row.m_nVolume, 400) << index;
    }
    EXPECT_EQ(question.m_remarks, (std::map<int, std::string>{{0, "甲"}, {1, ""}, {2, "丙"}}));
}

TEST_F(SplitConfirmation, CommandKeepsTheOrdersOwnRemark) {
    source(EOrderStrategyType::Interface);
    confirmer.answer.m_remarks = {{0, "another"}, {1, "text"}};
    place({order("甲"), order("乙")});
    ASSERT_EQ(host.commands().size(), 2u);
    EXPECT_EQ(host.commands()[0]->m_strRemark, "甲");
    EXPECT_EQ(host.commands()[1]->m_strRemark, "乙");
}

TEST_F(SplitConfirmation, DeclinedBatchIsDroppedWithoutAWordToTheUser) {
    source(EOrderStrategyType::Interface);
    confirmer.answer.m_eResult = EConfirmResult::Declined;
    const CChecked checked = check({order(), order()});
    host.messages.messages.clear();
    service.placeLegalOrders(checked, &strategies);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(host.messageTexts().empty());
    EXPECT_TRUE(host.errorTexts().empty());
    expectAudit(QStringLiteral("the batch was declined"));
}

TEST_F(SplitConfirmation, BatchThatNobodyCouldConfirmIsReported) {
    source(EOrderStrategyType::Interface);
    confirmer.answer.m_eResult = EConfirmResult::NotAsked;
    confirmer.answer.m_strReason = QStringLiteral("窗口已关闭");
    place({order(), order()});
    expectReported(QStringLiteral("窗口已关闭"));
}

TEST_F(SplitConfirmation, BatchWithoutAConfirmerIsReported) {
    source(EOrderStrategyType::Interface);
    setOrderConfirmer(nullptr);
    place({order(), order()});
    expectReported(QStringLiteral("没有确认窗口"));
}

TEST_F(SplitConfirmation, ConfirmerThatThrowsConfirmsNothing) {
    source(EOrderStrategyType::Interface);
    confirmer.onQuestion = [] { throw std::runtime_error("broken window"); };
    place({order(), order()});
    expectReported(QStringLiteral("确认失败: broken window"));
    EXPECT_FALSE(isConfirmationOpen());
}

TEST_F(SplitConfirmation, AnotherUserCannotConfirm) {
    source(EOrderStrategyType::Interface);
    confirmer.onQuestion = [this] { host.user.loggedIn = false; };
    place({order(), order()});
    expectReported(QStringLiteral("用户已切换"));
}

/// A host may use one object for all users.
TEST_F(SplitConfirmation, AnotherUserOfTheSameObjectCannotConfirm) {
    source(EOrderStrategyType::Interface);
    confirmer.onQuestion = [this] { host.user.name = "another"; };
    place({order(), order()});
    expectReported(QStringLiteral("用户已切换"));
}

TEST_F(SplitConfirmation, UserWhoMaySendNothingIsAskedAndGetsNoWord) {
    source(EOrderStrategyType::Interface);
    host.user.kind = 5;
    const CChecked checked = check({order(), order()});
    host.messages.messages.clear();
    service.placeLegalOrders(checked, &strategies);
    EXPECT_EQ(confirmer.questions.size(), 1u);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(host.messageTexts().empty());
    expectAudit(QStringLiteral("this kind of user may not issue commands"));
}

TEST_F(SplitConfirmation, WithoutAUserNobodyIsAskedAndNothingIsSent) {
    source(EOrderStrategyType::Interface);
    const CChecked checked = check({order(), order()});
    host.user.loggedIn = false;
    service.placeLegalOrders(checked, &strategies);
    EXPECT_TRUE(confirmer.questions.empty());
    EXPECT_TRUE(host.commands().empty());
    expectAudit(QStringLiteral("this kind of user may not issue commands"));
}

TEST_F(SplitConfirmation, StrategyThatIsRemovedMeanwhileStillSendsTheConfirmedBatch) {
    source(EOrderStrategyType::Interface);
    const CChecked checked = check({order(), order()});
    const COrderStrategyMap kept = lastMap;
    confirmer.onQuestion = [this] { strategies.clear(); };
    service.placeLegalOrders(checked, &kept);
    EXPECT_EQ(host.commands().size(), 2u);
}

/// A receiver of the host may call the second pass while a question is open.
TEST_F(SplitConfirmation, SecondBatchDuringAQuestionIsReportedAndTheFirstIsSent) {
    source(EOrderStrategyType::Interface);
    const CChecked checked = check({order(), order()});
    confirmer.onQuestion = [&] { service.placeLegalOrders(checked, &strategies); };
    service.placeLegalOrders(checked, &strategies);
    EXPECT_EQ(confirmer.questions.size(), 1u);
    EXPECT_EQ(host.commands().size(), 2u);
    EXPECT_EQ(host.messageTexts().back(),
              QStringLiteral("[接口单]　通道号: 3, 另一批指令正在确认, 2条指令未执行!"));
    expectAudit(QStringLiteral("the batch was not confirmed: 另一批指令正在确认"));
}

TEST_F(SplitConfirmation, ManyOrdersAreOneQuestion) {
    constexpr int kOrders = 5000;
    source(EOrderStrategyType::Interface);
    place(QVector<COrderParam>(kOrders, order()));
    ASSERT_EQ(confirmer.questions.size(), 1u);
    EXPECT_EQ(confirmer.questions[0].m_rows.size(), static_cast<std::size_t>(kOrders));
    EXPECT_EQ(host.commands().size(), static_cast<std::size_t>(kOrders));
}

TEST_F(SplitConfirmation, FirstStrategyDecidesForTheWholeBatch) {
    strategies.insert(4, CStrategyBuilder().channel(4).source(EOrderStrategyType::Interface));
    const COrderParam other = stock().channel(4).source(EOrderStrategyType::Interface);
    place({order(), other});
    EXPECT_TRUE(confirmer.questions.empty());
    EXPECT_EQ(host.commands().size(), 2u);
    place({other, order()});
    EXPECT_EQ(confirmer.questions.size(), 1u);
    EXPECT_EQ(host.commands().size(), 4u);
}

TEST_F(SplitConfirmation, OrderThatThrowsIsDroppedAlone) {
    int sent = 0;
    host.orders.onCommand = [&](const COrderComandParamPtr&) {
        if (++sent == 1) throw std::runtime_error("no line");
    };
    place({order("甲"), order("乙")});
    ASSERT_EQ(host.commands().size(), 1u);
    ASSERT_EQ(host.errorTexts().size(), 1u);
    EXPECT_TRUE(host.errorTexts()[0].contains(QStringLiteral("COrderClient::orderCommands: no line")));
    EXPECT_EQ(host.commands().back()->m_strRemark, "乙");
}

} // namespace
