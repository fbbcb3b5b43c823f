#include "desk/journal/JournalEvents.h"

#include "orderservice/kit/RecordJson.h"

#include <nlohmann/json.hpp>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

using namespace desk;

namespace {

TC::COrderComandParam fullCommand() {
    TC::CCodeOrderParam code;
    code.m_account = boost::make_shared<TC::CAccountInfo>();
    code.m_account->m_strKey = "A1";
    code.m_eOperationType = TC::EOperationType::Buy;
    code.m_eOrderType = TC::EOrderType::Plain;
    code.m_ePositionType = static_cast<TC::EPositionType>(2);
    code.m_stock = {"SH", "600000", "浦发银行", "P"};
    code.m_ePriceType = TC::EPriceType::Specified;
    code.m_dPrice = 10.01;
    code.m_nVolume = 300;
    code.m_strUserId = "user";
    code.m_eEntrustType = static_cast<TC::EEntrustTypes>(3);
    code.m_strContractText = "contract";
    code.m_strRepayText = "repay";
    code.m_nQuantityKind = 48;
    code.m_dQuantity = 300.5;
    code.m_nSubAccountKind = 4;
    code.m_strSubAccountId = "sub";
    code.m_nOverFreqMode = 5;
    TC::COrderComandParam command;
    command.m_eTraderType = TC::EQdTraderType::Stock;
    command.m_codes = {code};
    command.m_weights = {{"A1", 0.5}};
    command.m_bUnion = true;
    command.m_strTag = "tag";
    command.m_strAlgoParam = "algo";
    command.m_bCommandFlag = true;
    command.m_bForceConfirm = true;
    command.m_eStrategyType = TC::EOrderStrategyType::File;
    command.m_strRemark = "备注";
    command.m_strCreateTime = "2026-01-05 09:30:00:000";
    return command;
}

std::string textOf(const CJournalRecord& record) {
    return '{' + record.m_strFields + '}';
}

CJson objectOf(const CJournalRecord& record) {
    return CJson::parse(textOf(record));
}

} // namespace

TEST(JournalEvents, IncidentNamesItsEventAndLeavesOutWhatItIsNotAbout) {
    TC::CIncidentReport report;
    report.m_eIncident = TC::EIncident::OrdersDropped;
    report.m_nChannel = 3;
    report.m_nOrders = 2;
    report.m_strCause = QStringLiteral("why");
    EXPECT_EQ(incidentFields(report).dump(),
              R"({"event":"orders_dropped","channel":3,"orders":2,"task":null,"cause":"why"})");
    report.m_eIncident = TC::EIncident::OrdersInterrupted;
    EXPECT_EQ(incidentFields(report)["event"], "orders_interrupted");
    report = {};
    report.m_eIncident = TC::EIncident::CancelNotDone;
    report.m_nTaskId = 7;
    EXPECT_EQ(incidentFields(report).dump(),
              R"({"event":"cancel_not_done","channel":null,"orders":0,"task":7,"cause":""})");
    EXPECT_EQ(incidentFields({})["event"], "host_failed");
    report.m_eIncident = TC::EIncident::StrategyNotStarted;
    EXPECT_EQ(incidentFields(report)["event"], "strategy_not_started");
}

TEST(JournalEvents, RowsLeftOutHaveTheirNumberAndTheFirstCode) {
    TC::CIncidentReport report;
    report.m_eIncident = TC::EIncident::RowsLeftOut;
    report.m_nChannel = 3;
    report.m_nRows = 2;
    report.m_strCode = QStringLiteral("600009");
    report.m_strCause = QStringLiteral("why");
    EXPECT_EQ(incidentFields(report).dump(),
              R"({"event":"rows_left_out","channel":3,"orders":0,"task":null,"rows":2,"code":"600009",)"
              R"("cause":"why"})");
    report.m_eIncident = TC::EIncident::StrategyNotLoaded;
    EXPECT_EQ(incidentFields(report).dump(),
              R"({"event":"strategy_not_loaded","channel":3,"orders":0,"task":null,"cause":"why"})");
    report.m_eIncident = TC::EIncident::StrategyNotStarted;
    EXPECT_EQ(incidentFields(report)["event"], "strategy_not_started");
}

TEST(JournalEvents, CommandCarriesEveryFieldUnderItsName) {
    EXPECT_EQ(
        textOf(commandRecord(fullCommand(), 7)),
        R"({"task":7,"trader_type":1,"hedge_type":0,"btn_type":0,"codes":[{"account":"A1","hedge_flag":49,)"
        R"("operation_type":18,"order_type":0,"position_type":2,"stock":{"market":"SH","code":"600000",)"
        R"("name":"浦发银行","product_id":"P"},"price_type":11,"price":10.01,"volume":300,"user_id":"user",)"
        R"("entrust_type":3,"contract_text":"contract","repay_text":"repay","quantity_kind":48,"quantity":300.5,)"
        R"("sub_account_kind":4,"sub_account_id":"sub","over_freq_mode":5}],"weights":{"A1":0.5},)"
        R"("stop_loss_type":0,"union":true,"extra":{},"tag":"tag","algo_param":"algo","platform":0,)"
        R"("command_flag":true,"force_confirm":true,"strategy_type":2,"remark":"备注",)"
        R"("create_time":"2026-01-05 09:30:00:000"})");
}

TEST(JournalEvents, CommandsAndIntakeAreThoseOfTheKit) {
    TC::COrderComandParam command = fullCommand();
    command.m_codes.emplace_back();
    command.m_weights["停\"牌"] = 1.0 / 3;
    command.m_extra = bson::BSONObj({12, 0, 0, 0, 0x10, 'a', 0, 1, 0, 0, 0, 0});
    EXPECT_EQ(textOf(commandRecord(command, 7)),
              R"({"task":7,)" + kit::commandJson(command).dump().substr(1));
    EXPECT_EQ(textOf(commandRecord({}, {})), R"({"task":null,)" + kit::commandJson({}).dump().substr(1));
    TC::CIntakeReport report;
    EXPECT_EQ(textOf(intakeRecord(report)), kit::intakeJson(report).dump());
    report.m_bLeftWaiting = report.m_bLeftOver = true;
    report.m_strCause = QStringLiteral("\"停牌\"");
    EXPECT_EQ(textOf(intakeRecord(report)), kit::intakeJson(report).dump());
}

TEST(JournalEvents, RecordOfACommandKnowsItsTask) {
    EXPECT_EQ(commandRecord({}, 7).m_strKind, "command");
    EXPECT_EQ(commandRecord({}, 7).m_numbers.m_task, 7);
    EXPECT_FALSE(commandRecord({}, {}).m_numbers.m_task.has_value());
    EXPECT_EQ(intakeRecord({}).m_strKind, "intake");
}

TEST(JournalEvents, WhatNobodySetInACommandIsNull) {
    TC::COrderComandParam command;
    command.m_codes.emplace_back();
    const CJson fields = objectOf(commandRecord(command, {}));
    EXPECT_TRUE(fields["trader_type"].is_null());
    EXPECT_TRUE(fields["strategy_type"].is_null());
    const CJson& code = fields["codes"][0];
    for (const char* key :
         {"account", "operation_type", "order_type", "position_type", "price_type", "price", "volume",
          "entrust_type", "quantity_kind", "quantity", "sub_account_kind", "over_freq_mode"}) {
        EXPECT_TRUE(code.contains(key) && code[key].is_null()) << key;
    }
}

TEST(JournalEvents, CommandThatWasRefusedHasNoTask) {
    const CJson fields = objectOf(commandRecord({}, {}));
    EXPECT_TRUE(fields.contains("task") && fields["task"].is_null());
}

TEST(JournalEvents, CommandWithoutCodesHasAnEmptyList) {
    EXPECT_EQ(objectOf(commandRecord({}, {}))["codes"].dump(), "[]");
}

TEST(JournalEvents, ExtraOfACommandIsAnObject) {
    TC::COrderComandParam command;
    // {"a": 1} as a document: length, int32 field "a", value, end.
    command.m_extra = bson::BSONObj({12, 0, 0, 0, 0x10, 'a', 0, 1, 0, 0, 0, 0});
    const CJson extra = objectOf(commandRecord(command, {}))["extra"];
    ASSERT_TRUE(extra.is_object()) << extra.dump();
    EXPECT_TRUE(extra.contains("a"));
}

TEST(JournalEvents, UnsetNumberIsNull) {
    TC::COrderComandParam command;
    command.m_codes.emplace_back().m_dPrice = std::numeric_limits<double>::quiet_NaN();
    EXPECT_NE(textOf(commandRecord(command, {})).find("\"price\":null"), std::string::npos);
}

TEST(JournalEvents, IntakeNamesSourceChannelLinesOrdersAndFate) {
    TC::CIntakeReport report;
    report.m_nChannel = 3;
    report.m_strSource = QStringLiteral("/orders/a.txt");
    report.m_nLines = 7;
    report.m_nOrders = 5;
    report.m_nUnreadTradeParams = 2;
    report.m_bCutShort = true;
    report.m_strCause = QStringLiteral("line 7: bad");
    report.m_bRejected = true;
    report.m_strKeptAs = QStringLiteral("/rejected/a.txt");
    report.m_nIgnoredLines = 1;
    report.m_strFirstIgnored = QStringLiteral("line 2: short");
    EXPECT_EQ(
        textOf(intakeRecord(report)),
        R"({"source":"/orders/a.txt","channel":3,"strategy_type":2,"lines":7,)"
        R"("orders":5,"unread_params":2,"cut_short":true,"left_waiting":false,"cause":"line 7: bad",)"
        R"("rejected":true,"left_over":false,"kept_as":"/rejected/a.txt","ignored_lines":1,"first_ignored":"line 2: short"})");
}

TEST(JournalEvents, DoorNamesEventSourcePeerAndCause) {
    TC::CDoorReport report;
    report.m_eEvent = TC::EDoorEvent::Refused;
    report.m_strSource = QStringLiteral("127.0.0.1:15150");
    report.m_strPeer = QStringLiteral("127.0.0.1:40000");
    report.m_strCause = QStringLiteral("Line Too Long");
    EXPECT_EQ(doorFields(report).dump(), R"({"event":"refused","source":"127.0.0.1:15150","loopback":true,)"
                                         R"("peer":"127.0.0.1:40000","cause":"Line Too Long"})");
}

TEST(JournalEvents, EveryEventOfADoorHasItsWord) {
    const std::pair<TC::EDoorEvent, const char*> words[] = {{TC::EDoorEvent::Opened, "opened"},
                                                            {TC::EDoorEvent::Closed, "closed"},
                                                            {TC::EDoorEvent::Stuck, "stuck"},
                                                            {TC::EDoorEvent::Refused, "refused"}};
    for (const auto& [event, word] : words) {
        TC::CDoorReport report;
        report.m_eEvent = event;
        EXPECT_EQ(doorFields(report)["event"], word);
    }
}

TEST(JournalEvents, DoorToOtherMachinesIsNoLoopback) {
    TC::CDoorReport report;
    const std::pair<const char*, bool> sources[] = {{"127.0.0.1:1", true},
                                                    {"127.9.9.9:1", true},
                                                    {"0.0.0.0:1", false},
                                                    {"10.0.0.7:127", false},
                                                    {"127.evil.example:1", false}};
    for (const auto& [source, isLoopback] : sources) {
        report.m_strSource = QString::fromLatin1(source);
        EXPECT_EQ(doorFields(report)["loopback"], isLoopback) << source;
    }
}

TEST(JournalEvents, MessageAndTradeErrorCarryTheirTexts) {
    EXPECT_EQ(textOf(messageRecord(QStringLiteral("无法下单"), TC::EMsgTypeDef::OrderFailure,
                                   TC::MsgLevel::Warning)),
              R"({"text":"无法下单","type":4,"level":2})");
    EXPECT_EQ(tradeErrorFields(QStringLiteral("x"), QStringLiteral("t")).dump(),
              R"({"text":"x","title":"t"})");
    EXPECT_EQ(tradeErrorFields(QStringLiteral("x"), QStringLiteral("t"), 9).dump(),
              R"({"text":"x","title":"t","command":9})");
}

TEST(JournalEvents, StrategyNamesTheActionAndKeepsThePasswordOut) {
    TC::COrderStrategyParam strategy;
    strategy.m_nChannel = 4;
    strategy.m_strName = QStringLiteral("s");
    strategy.m_strPass = QStringLiteral("secret");
    strategy.m_strSignalSource = QStringLiteral("/a.txt");
    const CJson fields = strategyFields("start", strategy);
    EXPECT_EQ(fields["action"], "start");
    EXPECT_EQ(fields["channel"], 4);
    EXPECT_EQ(fields["signal_source"], "/a.txt");
    EXPECT_TRUE(fields["amount"].is_null());
    EXPECT_EQ(fields["setting"]["price_type"], 5);
    EXPECT_EQ(fields.dump().find("secret"), std::string::npos);
}

TEST(JournalEvents, CancelsHaveAllTheirFields) {
    EXPECT_EQ(cancelTaskFields(7, 5, "text", "remark", "20260105").dump(),
              R"({"task":7,"operation":5,"text":"text","remark":"remark","trading_day":"20260105"})");
    EXPECT_EQ(cancelTaskFields(7, TC::CTaskOpRecord{3, 100, "user", "remark"}).dump(),
              R"({"task":7,"operation":3,"op_time":100,"user_name":"user","remark":"remark"})");
    EXPECT_EQ(cancelOrdersFields({"cancel_order", "A1", "5"}).dump(),
              R"({"words":["cancel_order","A1","5"]})");
}
