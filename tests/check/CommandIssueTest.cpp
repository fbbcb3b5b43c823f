#include "tests/check/CheckFixture.h"

#include <boost/make_shared.hpp>

namespace {

using namespace TC;

constexpr auto kAlgo = static_cast<EOrderType>(7);

class CommandIssue : public CheckFixture {
protected:
    CommandIssue() { host.rules.algoPlatforms[kAlgo] = static_cast<ETradePlatform>(12); }

    COrderComandParamPtr issue(const COrderParam& order, const COrderStrategyParam& strategy) {
        service.doOrderCommand(EQdTraderType::Stock, EQdHedgeType::Compose, EFtSpecBtnBarType::CloseFirst,
                               codes, {{"A1", 0.5}}, EQdStopLossType::None, true, {}, extra, "tag",
                               static_cast<ETradePlatform>(3), "given", true, true, "argument", order,
                               strategy);
        EXPECT_EQ(host.commands().size(), 1u);
        return host.commands().at(0);
    }

    std::vector<CCodeOrderParam> codes{2};
    bson::BSONObj extra;
};

TEST_F(CommandIssue, CommandCarriesWhatItIsGiven) {
    const COrderParam order = COrderBuilder(23).set([](COrderParam& o) { o.m_strRemark = "order's own"; });
    const auto command = issue(order, CStrategyBuilder());
    EXPECT_EQ(command->m_eTraderType, EQdTraderType::Stock);
    EXPECT_EQ(command->m_eHedgeType, EQdHedgeType::Compose);
    EXPECT_EQ(command->m_eBtnType, EFtSpecBtnBarType::CloseFirst);
    EXPECT_EQ(command->m_codes.size(), 2u);
    EXPECT_EQ(command->m_weights, (std::map<std::string, double>{{"A1", 0.5}}));
    EXPECT_EQ(command->m_eStopLossType, EQdStopLossType::None);
    EXPECT_TRUE(command->m_bUnion);
    EXPECT_TRUE(command->m_extra.isEmpty());
    EXPECT_EQ(command->m_strTag, "tag");
    EXPECT_EQ(command->m_ePlatform, static_cast<ETradePlatform>(3));
    EXPECT_EQ(command->m_strAlgoParam, "given");
    EXPECT_TRUE(command->m_bCommandFlag);
    EXPECT_TRUE(command->m_bForceConfirm);
    EXPECT_EQ(command->m_eStrategyType, EOrderStrategyType::File);
    EXPECT_EQ(command->m_strRemark, "order's own");
    EXPECT_EQ(command->m_strCreateTime, "2026-01-05 09:30:00:000");
}

TEST_F(CommandIssue, SourceComesFromTheStrategy) {
    const auto command = issue(COrderBuilder(23), CStrategyBuilder().source(EOrderStrategyType::Signal));
    EXPECT_EQ(command->m_eStrategyType, EOrderStrategyType::Signal);
}

TEST_F(CommandIssue, CommandSharesTheExtraDocument) {
    extra = bson::BSONObj(std::vector<std::uint8_t>{12, 0, 0, 0, 0x10, 'a', 0, 7, 0, 0, 0, 0});
    const auto command = issue(COrderBuilder(23), CStrategyBuilder());
    EXPECT_EQ(command->m_extra, extra);
    EXPECT_FALSE(command->m_extra.isEmpty());
}

TEST_F(CommandIssue, CommandIsStampedToTheMillisecond) {
    clock.sleep(0.25);
    EXPECT_EQ(issue(COrderBuilder(23), CStrategyBuilder())->m_strCreateTime, "2026-01-05 09:30:00:250");
}

TEST_F(CommandIssue, CommandIsStampedWithTheClocksLocalTime) {
    // Eight hours ahead of UTC, whatever the time zone of the machine is.
    class CShanghaiClock : public CFakeClock {
        QDateTime currentDateTime() override {
            QDateTime now = CFakeClock::currentDateTime();
            now.setOffsetFromUtc(8 * 3600);
            return now;
        }
    };
    CShanghaiClock shanghai;
    EXPECT_EQ(issue(COrderBuilder(23), CStrategyBuilder())->m_strCreateTime, "2026-01-05 09:30:00:000");
}

TEST_F(CommandIssue, AlgorithmOrderOverridesPlatformTextAndTheCopiesKind) {
    const COrderParam order = COrderBuilder(23).set([](COrderParam& o) {
        o.m_eOrderType = kAlgo;
        o.m_strOrderSetting = "s";
    });
    const auto command = issue(order, CStrategyBuilder());
    EXPECT_EQ(command->m_ePlatform, static_cast<ETradePlatform>(12));
    EXPECT_EQ(command->m_strAlgoParam, "algo 7 s x2");
    for (const CCodeOrderParam& code : command->m_codes)
        EXPECT_EQ(code.m_eOrderType, kAlgo);
    for (const CCodeOrderParam& code : codes)
        EXPECT_TRUE(isUnset(code.m_eOrderType));
}

TEST_F(CommandIssue, AlgorithmTextIsFormedForTheStampedRecords) {
    const COrderParam order = COrderBuilder(23).set([](COrderParam& o) {
        o.m_eOrderType = kAlgo;
        o.m_strOrderSetting = "s";
    });
    issue(order, CStrategyBuilder());
    const auto asked = host.algorithms.codesCalls.all();
    ASSERT_EQ(asked.size(), 1u);
    ASSERT_EQ(asked[0].size(), 2u);
    for (const CCodeOrderParam& code : asked[0])
        EXPECT_EQ(code.m_eOrderType, kAlgo);
}

TEST_F(CommandIssue, AlgorithmOrderWithoutTextReplacesTheGivenOneByNothing) {
    const auto command =
        issue(COrderBuilder(23), CStrategyBuilder().set([](auto& s) { s.m_eOrderType = kAlgo; }));
    EXPECT_EQ(command->m_strAlgoParam, "");
}

TEST_F(CommandIssue, KindOfTheStrategyAloneMakesAnAlgorithmCommandToo) {
    const auto command =
        issue(COrderBuilder(23), CStrategyBuilder().set([](auto& s) { s.m_eOrderType = kAlgo; }));
    EXPECT_EQ(command->m_ePlatform, static_cast<ETradePlatform>(12));
    for (const CCodeOrderParam& code : command->m_codes)
        EXPECT_EQ(code.m_eOrderType, kAlgo);
}

TEST_F(CommandIssue, AlgorithmTextOfAPlainOrderIsEmpty) {
    const COrderParam order = COrderBuilder(23).set([](COrderParam& o) { o.m_strOrderSetting = "s"; });
    EXPECT_EQ(service.get3rdAlgoParam(order, codes, CStrategyBuilder()), "");
}

TEST_F(CommandIssue, FinalAlgorithmTextPassesUnchanged) {
    host.algorithms.unreadable.insert("raw");
    COrderParam order = COrderBuilder(23).set([](COrderParam& o) {
        o.m_eOrderType = kAlgo;
        o.m_strOrderSetting = "raw";
        o.m_nSettingKind = 1;
    });
    EXPECT_EQ(service.get3rdAlgoParam(order, codes, CStrategyBuilder()), "raw");
    order.m_nSettingKind = 0;
    EXPECT_EQ(service.get3rdAlgoParam(order, codes, CStrategyBuilder()), "");
}

TEST_F(CommandIssue, AlgorithmParserFillsASettingThatIsThere) {
    bool isThere = false;
    host.algorithms.onRead = [&](const CAlgorithmOrderSettingPtr& setting) { isThere = setting != nullptr; };
    const COrderParam order = COrderBuilder(23).set([](COrderParam& o) {
        o.m_eOrderType = kAlgo;
        o.m_strOrderSetting = "s";
    });
    EXPECT_EQ(service.get3rdAlgoParam(order, codes, CStrategyBuilder()), "algo 7 s x2");
    EXPECT_TRUE(isThere);
}

TEST_F(CommandIssue, StrategysAlgorithmSettingReplacesTheOrders) {
    const auto setting = boost::make_shared<fake::CAlgorithms::CSetting>();
    setting->text = "strategy's";
    const COrderStrategyParam strategy = CStrategyBuilder().set([&](auto& s) {
        s.m_eOrderType = kAlgo;
        s.m_algoSetting = setting;
    });
    EXPECT_EQ(service.get3rdAlgoParam(COrderBuilder(23), codes, strategy), "algo 7 strategy's x2");
    const COrderParam order = COrderBuilder(23).set([](COrderParam& o) { o.m_strOrderSetting = "order's"; });
    EXPECT_EQ(service.get3rdAlgoParam(order, codes, strategy), "algo 7 order's x2");
}

TEST_F(CommandIssue, SavingStoresNothing) {
    service.saveOrderCommand({});
    service.saveOrderCommand(boost::make_shared<COrderComandParam>());
    EXPECT_TRUE(host.commands().empty());
}

TEST_F(CommandIssue, TitleFollowsTheUsersKindWhereTheSwitchIsOn) {
    const QString plain = QStringLiteral("下达指令");
    const std::map<int, QString> titles{{100, QStringLiteral("下达投资建议")},
                                        {101, QStringLiteral("下达投资决策")},
                                        {200, QStringLiteral("下达投资决策")},
                                        {102, QStringLiteral("下达投资决策")},
                                        {90, plain}};
    for (const auto& [kind, title] : titles) {
        host.user.kind = kind;
        host.switches.on.erase("mdl_order_pb_display");
        EXPECT_EQ(service.getTitle(), plain) << kind;
        host.switches.on.insert("mdl_order_pb_display");
        EXPECT_EQ(service.getTitle(), title) << kind;
    }
}

TEST_F(CommandIssue, DefaultRemarkFollowsTheFamily) {
    struct CRow {
        int family, slot, traderType;
    };
    const std::vector<CRow> rows{{0, 0, 1},      {1, 1, 2},     {2, 6, 4},       {3, 8, 8},   {4, 9, 32},
                                 {9, 15, 16384}, {10, 11, 128}, {11, 10, 16384}, {12, 12, 16}};
    for (const CRow& row : rows) {
        const COrderStrategyParam strategy = CStrategyBuilder().set([&](auto& s) {
            s.m_eTradeType = static_cast<EOrderStrategyTradeType>(row.family);
            for (int i = 0; i < kSettingSlots; ++i) {
                s.setting(static_cast<ESettingSlot>(i)).m_strCmdLog = "slot " + std::to_string(i);
            }
        });
        EQdTraderType traderType{};
        EXPECT_EQ(service.getCmdLog(strategy, traderType), "slot " + std::to_string(row.slot)) << row.family;
        EXPECT_EQ(static_cast<int>(traderType), row.traderType) << row.family;
    }
}

TEST_F(CommandIssue, FamiliesWithoutARowHaveNoDefaultRemark) {
    for (const int family : {5, 6, 7, 8, 13}) {
        const COrderStrategyParam strategy = CStrategyBuilder().set([&](auto& s) {
            s.m_eTradeType = static_cast<EOrderStrategyTradeType>(family);
            for (int i = 0; i < kSettingSlots; ++i)
                s.setting(static_cast<ESettingSlot>(i)).m_strCmdLog = "text";
        });
        auto traderType = static_cast<EQdTraderType>(77);
        EXPECT_EQ(service.getCmdLog(strategy, traderType), "") << family;
        EXPECT_EQ(static_cast<int>(traderType), 77) << family;
    }
}

TEST_F(CommandIssue, OnlySomeKindsOfUserMayCommand) {
    for (const int kind : {90, 91, 101, 100, 80, 92}) {
        host.user.kind = kind;
        EXPECT_TRUE(isCmdUser()) << kind;
    }
    for (const int kind : {0, 81, 93, 102, 200}) {
        host.user.kind = kind;
        EXPECT_FALSE(isCmdUser()) << kind;
    }
    host.user.kind = 100;
    host.user.loggedIn = false;
    EXPECT_FALSE(isCmdUser());
}

} // namespace
