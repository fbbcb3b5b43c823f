// makeCommand, which makes every command: the fields of the command for a given request.
#include "orderservice/check/CommandRequest.h"

#include "tests/check/CheckFixture.h"

#include <QString>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace TC;

constexpr auto kAlgorithm = static_cast<EOrderType>(7);

/// A request in which every field differs from its default.
CCommandRequest fullRequest(ECommandForm form) {
    CCommandRequest request;
    request.m_eTraderType = EQdTraderType::Credit;
    request.m_eHedgeType = EQdHedgeType::Hedge;
    request.m_eBtnType = EFtSpecBtnBarType::CloseFirst;
    request.m_codes = std::vector<CCodeOrderParam>(2);
    request.m_weights = {{"A1", 0.5}};
    request.m_eStopLossType = static_cast<EQdStopLossType>(6);
    request.m_bUnion = true;
    request.m_extra = bson::BSONObj(std::vector<std::uint8_t>{12, 0, 0, 0, 0x10, 'a', 0, 7, 0, 0, 0, 0});
    request.m_strTag = "tag";
    request.m_ePlatform = static_cast<ETradePlatform>(3);
    request.m_strAlgoParam = "given";
    request.m_bCommandFlag = true;
    request.m_bForceConfirm = true;
    request.m_eForm = form;
    return request;
}

class CommandRequest : public CheckFixture {
protected:
    CommandRequest() { host.rules.algoPlatforms[kAlgorithm] = static_cast<ETradePlatform>(12); }

    static COrderBuilder order() {
        return COrderBuilder(23).set([](COrderParam& o) { o.m_strRemark = "order's own"; });
    }
    /// The strategy has another source than the order.
    static CStrategyBuilder strategy() { return CStrategyBuilder().source(EOrderStrategyType::Signal); }
    static COrderParam algorithmOrder() {
        return order().set([](COrderParam& o) {
            o.m_eOrderType = kAlgorithm;
            o.m_strOrderSetting = "s";
        });
    }
    /// Sells all positions. Its records have no volume.
    static COrderParam saleOfAll() {
        return COrderBuilder(26).set([](COrderParam& o) { o.m_bAll = true; });
    }
    static CCommandRequest unsellable(ECommandForm form) {
        CCommandRequest request = fullRequest(form);
        for (CCodeOrderParam& record : request.m_codes)
            record.m_nVolume = 0;
        return request;
    }
    /// The fields that are the same in both forms.
    static void expectCommonFields(const COrderComandParam& command) {
        EXPECT_EQ(command.m_eTraderType, EQdTraderType::Credit);
        EXPECT_EQ(command.m_eHedgeType, EQdHedgeType::Hedge);
        EXPECT_EQ(command.m_eBtnType, EFtSpecBtnBarType::CloseFirst);
        EXPECT_EQ(command.m_codes.size(), 2u);
        EXPECT_EQ(command.m_weights, (std::map<std::string, double>{{"A1", 0.5}}));
        EXPECT_EQ(command.m_eStopLossType, static_cast<EQdStopLossType>(6));
        EXPECT_TRUE(command.m_bUnion);
        EXPECT_FALSE(command.m_extra.isEmpty());
        EXPECT_TRUE(command.m_bCommandFlag);
        EXPECT_TRUE(command.m_bForceConfirm);
        EXPECT_EQ(command.m_strRemark, "order's own");
    }
};

TEST_F(CommandRequest, FullCommandHasEveryFieldOfTheRequest) {
    const auto command = makeCommand(fullRequest(ECommandForm::Full), order(), strategy());
    ASSERT_TRUE(command);
    expectCommonFields(*command);
    EXPECT_EQ(command->m_strTag, "tag");
    EXPECT_EQ(command->m_ePlatform, static_cast<ETradePlatform>(3));
    EXPECT_EQ(command->m_strAlgoParam, "given");
    EXPECT_EQ(command->m_eStrategyType, EOrderStrategyType::Signal);
    EXPECT_EQ(command->m_strCreateTime, "2026-01-05 09:30:00:000");
}

TEST_F(CommandRequest, BareCommandHasNoTimeTagPlatformAndAlgorithmText) {
    const auto command = makeCommand(fullRequest(ECommandForm::Bare), order(), strategy());
    ASSERT_TRUE(command);
    expectCommonFields(*command);
    EXPECT_EQ(command->m_strTag, "");
    EXPECT_EQ(command->m_ePlatform, ETradePlatform::Plain);
    EXPECT_EQ(command->m_strAlgoParam, "");
    EXPECT_EQ(command->m_eStrategyType, EOrderStrategyType::File);
    EXPECT_EQ(command->m_strCreateTime, "");
}

TEST_F(CommandRequest, DefaultsAreThoseOfACommandWithoutExtras) {
    const auto command = makeCommand({}, order(), strategy());
    ASSERT_TRUE(command);
    const COrderComandParam plain;
    EXPECT_EQ(command->m_eTraderType, plain.m_eTraderType);
    EXPECT_EQ(command->m_eHedgeType, plain.m_eHedgeType);
    EXPECT_EQ(command->m_eBtnType, plain.m_eBtnType);
    EXPECT_EQ(command->m_eStopLossType, plain.m_eStopLossType);
    EXPECT_EQ(command->m_ePlatform, plain.m_ePlatform);
    EXPECT_FALSE(command->m_bUnion);
    EXPECT_FALSE(command->m_bCommandFlag);
    EXPECT_FALSE(command->m_bForceConfirm);
    EXPECT_TRUE(command->m_codes.empty());
    EXPECT_EQ(command->m_strCreateTime, "2026-01-05 09:30:00:000");
}

TEST_F(CommandRequest, RecordsAreMovedToTheCommand) {
    for (const ECommandForm form : {ECommandForm::Full, ECommandForm::Bare}) {
        CCommandRequest request = fullRequest(form);
        const CCodeOrderParam* records = request.m_codes.data();
        const auto command = makeCommand(std::move(request), order(), strategy());
        EXPECT_EQ(command->m_codes.data(), records);
    }
}

TEST_F(CommandRequest, AlgorithmReplacesPlatformAndTextOfAFullCommand) {
    const auto command = makeCommand(fullRequest(ECommandForm::Full), algorithmOrder(), strategy());
    EXPECT_EQ(command->m_ePlatform, static_cast<ETradePlatform>(12));
    EXPECT_EQ(command->m_strAlgoParam, "algo 7 s x2");
    for (const CCodeOrderParam& record : command->m_codes)
        EXPECT_EQ(record.m_eOrderType, kAlgorithm);
}

TEST_F(CommandRequest, AlgorithmWithoutATextReplacesTheTextByAnEmptyOne) {
    const auto kept = strategy().set([](auto& s) { s.m_eOrderType = kAlgorithm; });
    EXPECT_EQ(makeCommand(fullRequest(ECommandForm::Full), order(), kept)->m_strAlgoParam, "");
}

TEST_F(CommandRequest, BareCommandIgnoresTheAlgorithm) {
    const auto command = makeCommand(fullRequest(ECommandForm::Bare), algorithmOrder(), strategy());
    EXPECT_EQ(command->m_ePlatform, ETradePlatform::Plain);
    EXPECT_EQ(command->m_strAlgoParam, "");
    for (const CCodeOrderParam& record : command->m_codes)
        EXPECT_TRUE(isUnset(record.m_eOrderType));
}

TEST_F(CommandRequest, MakingACommandSendsNothing) {
    makeCommand(fullRequest(ECommandForm::Full), order(), strategy());
    makeCommand(fullRequest(ECommandForm::Bare), order(), strategy());
    EXPECT_TRUE(host.commands().empty());
}

TEST_F(CommandRequest, GuardThatLeavesNothingGivesNoFullCommand) {
    host.switches.on.insert("mdl_order_command_guard");
    EXPECT_FALSE(makeCommand(unsellable(ECommandForm::Full), saleOfAll(), strategy()));
    EXPECT_EQ(host.errorTexts().size(), 1u);
    issueCommand(unsellable(ECommandForm::Full), saleOfAll(), strategy());
    EXPECT_TRUE(host.commands().empty());
}

TEST_F(CommandRequest, GuardLeavesNoRecordOutOfABareCommand) {
    host.switches.on.insert("mdl_order_command_guard");
    const auto command = makeCommand(unsellable(ECommandForm::Bare), saleOfAll(), strategy());
    ASSERT_TRUE(command);
    EXPECT_EQ(command->m_codes.size(), 2u);
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(CommandRequest, GuardIsAskedBeforeABareCommandIsSent) {
    issueCommand(fullRequest(ECommandForm::Bare), order(), strategy());
    EXPECT_EQ(host.commands().size(), 1u);
    host.switches.on.insert("mdl_order_command_guard");
    issueCommand(fullRequest(ECommandForm::Bare), order(), strategy());
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.errorTexts().size(), 1u);
}

} // namespace
