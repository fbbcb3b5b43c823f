#include "orderservice/kit/RecordJson.h"

#include "orderservice/kit/JsonValues.h"

#include <nlohmann/json.hpp>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace kit {
namespace {

std::string keysOf(const CJson& object) {
    std::string keys;
    for (const auto& [key, value] : object.items())
        keys += (keys.empty() ? "" : " ") + key;
    return keys;
}

TEST(RecordJson, CommandKeepsTheOrderOfItsFields) {
    TC::COrderComandParam command;
    command.m_codes.emplace_back();
    const CJson json = commandJson(command);
    EXPECT_EQ(keysOf(json),
              "trader_type hedge_type btn_type codes weights stop_loss_type union extra tag algo_param "
              "platform command_flag force_confirm strategy_type remark create_time");
    EXPECT_EQ(
        keysOf(json["codes"][0]),
        "account hedge_flag operation_type order_type position_type stock price_type price volume user_id "
        "entrust_type contract_text repay_text quantity_kind quantity sub_account_kind sub_account_id "
        "over_freq_mode");
}

TEST(RecordJson, CommandHasItsValues) {
    TC::CCodeOrderParam code;
    code.m_account = boost::make_shared<TC::CAccountInfo>();
    code.m_account->m_strKey = "A1";
    code.m_eOperationType = TC::EOperationType::Buy;
    code.m_stock = {"SH", "600000", "浦发银行", "P"};
    code.m_dPrice = 10.01;
    code.m_nVolume = 300;
    TC::COrderComandParam command;
    command.m_codes = {code};
    command.m_weights = {{"A1", 0.5}};
    const CJson json = commandJson(command);
    EXPECT_EQ(json["weights"].dump(), R"({"A1":0.5})");
    const CJson& row = json["codes"][0];
    EXPECT_EQ(row["account"], "A1");
    EXPECT_EQ(row["operation_type"], 18);
    EXPECT_EQ(row["stock"].dump(), R"({"market":"SH","code":"600000","name":"浦发银行","product_id":"P"})");
    EXPECT_EQ(row["price"], 10.01);
    EXPECT_EQ(row["volume"], 300);
}

TEST(RecordJson, ValueThatIsNotSetIsNull) {
    EXPECT_TRUE(enumValue(TC::unsetEnum<TC::EPriceType>()).is_null());
    EXPECT_TRUE(numberValue(TC::kUnsetInt).is_null());
    EXPECT_TRUE(numberValue(TC::kUnsetDouble).is_null());
    EXPECT_TRUE(numberValue(std::numeric_limits<double>::quiet_NaN()).is_null());
    EXPECT_TRUE(numberValue(std::numeric_limits<double>::infinity()).is_null());
    EXPECT_EQ(numberValue(0), 0);
    EXPECT_EQ(numberValue(0.0), 0.0);
    EXPECT_EQ(enumValue(TC::EPriceType::Specified), 11);
}

TEST(RecordJson, DocumentIsAnObject) {
    // {"a": 1} as a document: length, int32 field "a", value, end.
    EXPECT_EQ(documentValue(bson::BSONObj({12, 0, 0, 0, 0x10, 'a', 0, 1, 0, 0, 0, 0})).size(), 1U);
    EXPECT_EQ(documentValue({}).dump(), "{}");
}

TEST(RecordJson, IntakeKeepsTheOrderOfItsFields) {
    EXPECT_EQ(keysOf(intakeJson({})), "source channel strategy_type lines orders unread_params cut_short "
                                      "left_waiting cause rejected left_over "
                                      "kept_as ignored_lines first_ignored");
}

TEST(RecordJson, DoorSaysWhetherItsAddressIsLoopback) {
    TC::CDoorReport report;
    report.m_eEvent = TC::EDoorEvent::Stuck;
    report.m_strSource = QStringLiteral("127.0.0.1:15150");
    report.m_strPeer = QStringLiteral("127.0.0.1:40000");
    report.m_strCause = QStringLiteral("why");
    EXPECT_EQ(doorJson(report).dump(), R"({"event":"stuck","source":"127.0.0.1:15150","loopback":true,)"
                                       R"("peer":"127.0.0.1:40000","cause":"why"})");
    report.m_strSource = QStringLiteral("0.0.0.0:15150");
    EXPECT_EQ(doorJson(report)["loopback"], false);
}

TEST(RecordJson, CountsOfADiscardedFileAreNullIfUnknown) {
    TC::CDiscardReport report;
    report.m_nChannel = 3;
    report.m_strSource = QStringLiteral("/a.txt");
    report.m_nLines = 7;
    report.m_nBytes = 70;
    EXPECT_EQ(discardJson(report).dump(),
              R"({"source":"/a.txt","channel":3,"strategy_type":2,"lines":7,"bytes":70})");
    report.m_nLines = -1;
    report.m_nBytes = -1;
    EXPECT_TRUE(discardJson(report)["lines"].is_null());
    EXPECT_TRUE(discardJson(report)["bytes"].is_null());
}

TEST(RecordJson, IncidentNamesItsEvent) {
    TC::CIncidentReport report;
    report.m_eIncident = TC::EIncident::CancelNotDone;
    report.m_nTaskId = 7;
    report.m_strCause = QStringLiteral("why");
    EXPECT_EQ(incidentJson(report).dump(),
              R"({"event":"cancel_not_done","channel":null,"orders":0,"task":7,"cause":"why"})");
}

TEST(RecordJson, OrderHasItsNumbersAndItsText) {
    TC::COrderParam order;
    order.m_nChannel = 3;
    order.m_nOrderType = 23;
    const CJson json = orderJson(order);
    EXPECT_EQ(keysOf(json), "channel strategy_type order_type order");
    EXPECT_EQ(json["channel"], 3);
    EXPECT_EQ(json["order_type"], 23);
    EXPECT_EQ(json["order"], order.toQString().toStdString());
}

TEST(RecordJson, StrategyHasTheSettingOfItsFamilyAndNoPassword) {
    TC::COrderStrategyParam strategy;
    strategy.m_nChannel = 4;
    strategy.m_strPass = QStringLiteral("secret");
    strategy.m_eTradeType = TC::EOrderStrategyTradeType::Stock;
    strategy.setting(TC::ESettingSlot::Stock).m_ePriceType = TC::EPriceType::Specified;
    const CJson json = strategyJson(strategy);
    EXPECT_EQ(json["channel"], 4);
    EXPECT_EQ(json["setting"]["price_type"], 11);
    EXPECT_EQ(json.dump().find("secret"), std::string::npos);
    EXPECT_EQ(keysOf(json),
              "channel name status selected_account_type selected_account trade_type position_type "
              "strategy_type account_mode signal_source user code setting volume use_amount amount "
              "by_percent percent start_count hedge_basket hedge_param command_flag order_type");
}

TEST(RecordJson, TaskOperationHasItsUserAndTime) {
    EXPECT_EQ(taskOperationJson(TC::CTaskOpRecord{3, 100, "user", "remark"}).dump(),
              R"({"operation":3,"op_time":100,"user_name":"user","remark":"remark"})");
}

} // namespace
} // namespace kit
