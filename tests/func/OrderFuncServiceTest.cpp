// The entry of function trading: names, the sequence of a call, its routine, and how failures travel back.
#include "orderservice/base/Bson.h"
#include "orderservice/func/FuncRoutes.h"
#include "orderservice/platform/HostCall.h"
#include "tests/func/FuncServiceFixture.h"
#include "tests/support/LogCapture.h"

#include <boost/lexical_cast.hpp>

#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using namespace TC;

class OrderFuncService : public FuncServiceFixture {};

TEST_F(OrderFuncService, PassorderSendsAnOrderAndAnnouncesIt) {
    pass();
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_nVolume, 300);
    const QString text = QStringLiteral("[函数交易]　函数: passorder, 交易类型: 品种0, 下单类型: 下单23");
    expectReports({text}, {}, {});
    const fake::CMessage& message = host.messages.messages.at(0);
    EXPECT_EQ(static_cast<int>(message.type), 6);
    EXPECT_EQ(static_cast<int>(message.level), 1);
    EXPECT_EQ(message.extra, QString());
}

TEST_F(OrderFuncService, MessagesHaveTheFlagsOfTheirType) {
    host.user.msgFlags[EMsgTypeDef::Function] = {true, false};
    pass();
    EXPECT_TRUE(host.messages.messages.at(0).flag1);
    EXPECT_FALSE(host.messages.messages.at(0).flag2);
}

TEST_F(OrderFuncService, OtherNamesAreIgnoredWithoutAMessage) {
    for (const char* name : {"PASSORDER", "CANCEL", "Passorder", "passorder ", "", "order"})
        service.doParserOrder(name, textOf(), {});
    EXPECT_TRUE(host.commands().empty());
    expectReports({}, {}, {});
}

TEST_F(OrderFuncService, EveryCallIsLogged) {
    const CLogCapture log;
    utils::CLogCenter::setLogEnabled(true);
    service.doParserOrder("other", "{\"a\":1}", {});
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_NE(log.lines()[0].text.find("func:other, strParam:{\"a\":1}"), std::string::npos);
    EXPECT_EQ(log.lines()[0].level, 20000);
    EXPECT_EQ(log.lines()[0].logger, "KNStdFile");
}

TEST_F(OrderFuncService, LogIsUtf8AlsoIfTheTextIsNot) {
    const CLogCapture log;
    utils::CLogCenter::setLogEnabled(true);
    service.doParserOrder("other", "\xb9\xba", {}); // GBK
    EXPECT_NE(log.lines().at(0).text.find("购"), std::string::npos);
}

TEST_F(OrderFuncService, OnlyTheSmartNameMayHaveAnyCase) {
    for (const char* name : {"SMARTALGOPYPASSORDER", "smartalgopypassorder", "SmartAlgoPyPassOrder"}) {
        forget();
        service.doParserOrder(name, textOf(), R"({"m_strategyType":"twap"})");
        EXPECT_EQ(static_cast<int>(onlyCommand()->m_ePlatform), 11) << name;
        EXPECT_EQ(static_cast<int>(onlyCommand()->m_codes.at(0).m_eOrderType), 13) << name;
    }
}

TEST_F(OrderFuncService, PassorderTakesNoAlgorithm) {
    service.doParserOrder("passorder", textOf(), R"({"m_strategyType":"twap"})");
    EXPECT_EQ(onlyCommand()->m_ePlatform, ETradePlatform::Plain);
    EXPECT_EQ(onlyCommand()->m_strAlgoParam, "x|key|7");
}

TEST_F(OrderFuncService, ParseOrderAndTheModelsEntryPassNoAlgorithm) {
    service.parseOrder("SMARTALGOPYPASSORDER", textOf());
    service.onParamCallBack("SMARTALGOPYPASSORDER", textOf());
    ASSERT_EQ(host.commands().size(), 2u);
    for (const auto& command : host.commands())
        EXPECT_EQ(command->m_ePlatform, ETradePlatform::Plain);
}

TEST_F(OrderFuncService, CancelGoesToTheCancel) {
    EXPECT_NO_THROW(service.doParserOrder("cancel", "{}", {}));
    EXPECT_THROW(service.doParserOrder("cancel", "{", {}), bson::CError);
    EXPECT_THROW(service.doParserOrder("cancel", R"({"orderId":7})", {}), bson::CError);
    expectReports({}, {}, {});
}

TEST_F(OrderFuncService, FailuresOfTheTextAreReportedPlainly) {
    const CLogCapture log;
    utils::CLogCenter::setLogEnabled(true);
    pass({{"orderCode", "\"\""}});
    expectPlain(QStringLiteral("[函数交易]　函数: passorder, 合约或篮子为空"));
    EXPECT_EQ(host.messages.messages.at(0).level, MsgLevel::Note);
    bool isLogged = false;
    for (const CLogLine& line : log.lines()) {
        if (line.level == 40000)
            isLogged = line.text.find("func:passorder, error reasion:合约或篮子为空") != std::string::npos;
    }
    EXPECT_TRUE(isLogged);
}

TEST_F(OrderFuncService, FailuresNameTheFunctionAsItWasGiven) {
    service.doParserOrder("smartAlgoPyPassOrder", "{", {});
    expectReports({QStringLiteral("[函数交易]　函数: smartAlgoPyPassOrder, parserParam error")}, {},
                  {QStringLiteral("[函数交易]　函数: smartAlgoPyPassOrder, parserParam error")});
    EXPECT_EQ(failures.at(0).id, -1); // the trade key was not read
    EXPECT_EQ(failures.at(0).key, "");
}

/// One change of a call, and the failure that it causes.
struct CFailureRow {
    const char* m_pszName;
    std::map<std::string, std::string> m_changes;
    const char* m_pszText; ///< behind the function's name
};

class OrderFuncFailures : public FuncServiceFixture, public testing::WithParamInterface<CFailureRow> {};

TEST_P(OrderFuncFailures, IsReportedPlainly) {
    host.user.baskets[QStringLiteral("basket")] = {};
    pass(GetParam().m_changes);
    expectPlain(QStringLiteral("[函数交易]　函数: passorder, ") + QString::fromUtf8(GetParam().m_pszText));
}

std::vector<CFailureRow> failureRows() {
    return {
        {"EmptyCode", {{"orderCode", "\"\""}}, "合约或篮子为空"},
        {"RatioAboveOne",
         {{"orderType", "1113"}, {"modelVolume", "\"1.5\""}},
         "输入的比例值不对,须 0 ~ 1 间数值!"},
        {"SecuritiesOnly", {{"opType", "3"}, {"orderType", "1202"}}, "不支持的期货下单类型(orderType)!"},
        {"HedgeRatio",
         {{"orderType", "2331"}, {"modelPrice", "\"2.1\""}},
         "输入的套利比例不对,须 0 ~ 2 间数值!"},
        {"Zero", {{"modelVolume", "\"0\""}}, "下单数量/金额/比例为0"},
        {"MoneyForFutures", {{"opType", "3"}, {"orderType", "1102"}}, "期货投机不支持以金额方式下单"},
        {"CreditOrderType",
         {{"opType", "27"}, {"orderType", "1113"}, {"modelVolume", "\"1\""}},
         "融资融券不支持的下单类型"},
        {"Contract", {{"opType", "27"}, {"orderCode", "\"600000,1001\""}}, "不支持指定合约编号的操作类型"},
        {"BasketPrice", {{"opType", "25"}, {"orderType", "2101"}}, "组合交易不支持指定价!"},
        {"BasketOrderType", {{"opType", "25"}, {"prType", "5"}}, "操作类型opType和下单类型orderType不对应！"},
        {"NoBasket", {{"opType", "25"}, {"orderType", "2101"}, {"prType", "5"}}, " 指定的篮子不存在"},
        {"OrderType", {{"orderType", "13"}}, "无效的下单类型(ORDERTYPE)值!"},
        {"Account", {{"accountID", "\"nobody\""}}, "账号组或账号非法或不存在!"},
        {"Group", {{"orderType", "1201"}, {"accountID", "\"nobody\""}}, "账号组或账号非法或不存在!"},
        {"NoGroup", {{"orderType", "1201"}, {"accountID", "\"\""}}, "账号组或账号非法或不存在!"},
    };
}

INSTANTIATE_TEST_SUITE_P(Rows, OrderFuncFailures, testing::ValuesIn(failureRows()),
                         [](const auto& row) { return std::string(row.param.m_pszName); });

TEST_F(OrderFuncService, AccountsMustBeLoggedIn) {
    host.trade.loginStatus["A1"] = 3;
    pass();
    expectPlain(QStringLiteral("[函数交易]　函数: passorder, 存在未登陆的账号, 不能下单!"));
}

TEST_F(OrderFuncService, OneAccountOfAGroupThatIsNotLoggedInEndsTheCall) {
    host.trade.loginStatus["A2"] = 3;
    pass({{"orderType", "1201"}, {"accountID", "\"G\""}});
    expectPlain(QStringLiteral("[函数交易]　函数: passorder, 存在未登陆的账号, 不能下单!"));
}

TEST_F(OrderFuncService, OperationWithoutAFamilyFailsAtItsEmptyCode) {
    pass({{"opType", "19"}}); // the stock routine gets no line
    EXPECT_TRUE(host.commands().empty());
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0].text, "[函数交易]　函数: passorder,　证券 [] 价11() 无效, 无法下单!");
}

/// The routines have traders of their own, so the trader of the command names the routine.
struct CRouteRow {
    int opType, orderType, shown;
    EQdTraderType trader;
};

class OrderFuncRoutes : public FuncServiceFixture, public testing::WithParamInterface<CRouteRow> {
protected:
    OrderFuncRoutes() {
        for (const auto broker : {EQDBrokerType::Future, EQDBrokerType::Credit, EQDBrokerType::StockOption}) {
            const std::string key = "B" + std::to_string(static_cast<int>(broker));
            host.user.addAccount(key, broker);
            addData(key);
        }
        for (const char* code : {"HGT12345", "SGT12345"}) {
            const QString key = QString::fromUtf8(code);
            host.exchange.addOther(key.left(3).toLower().toStdString(), key);
            addQuote(key, 10.5, 9, 11);
        }
        host.exchange.addOther("future", QStringLiteral("IF2609"));
        host.exchange.addOther("option", QStringLiteral("10001234"));
        for (const char* key : {"IF2609", "10001234"})
            addQuote(QString::fromUtf8(key), 10.5, 9, 11);
        CBasketSetting basket;
        basket.m_rows.append({QStringLiteral("SH"), QStringLiteral("600000"), {}, 1, 100, 18, 0});
        host.user.baskets[QStringLiteral("basket")] = basket;
    }
};

TEST_P(OrderFuncRoutes, ByTradeTypeAndOrderType) {
    const CRouteRow& row = GetParam();
    const bool isBasket = row.orderType >= 2000;
    const bool isFuture = row.opType < 16;
    const bool isOption = row.opType >= 50;
    std::string code = isBasket ? "basket" : isFuture ? "IF2609" : isOption ? "10001234" : "600000";
    if (row.trader == EQdTraderType::HGT) code = "HGT12345";
    if (row.trader == EQdTraderType::SGT) code = "SGT12345";
    // The account's kind does not matter to the fake host.
    pass({{"opType", std::to_string(row.opType)},
          {"orderType", std::to_string(row.orderType)},
          {"prType", isBasket ? "5" : "11"},
          {"orderCode", '"' + code + '"'}});
    EXPECT_EQ(onlyCommand()->m_eTraderType, row.trader);
    const QString shown = QStringLiteral("下单类型: 下单%1").arg(row.shown);
    ASSERT_FALSE(host.messageTexts().empty());
    EXPECT_TRUE(host.messageTexts()[0].endsWith(shown)) << host.messageTexts()[0].toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Rows, OrderFuncRoutes,
    testing::Values(
        CRouteRow{23, 1101, 23, EQdTraderType::Stock}, CRouteRow{24, 1101, 24, EQdTraderType::Stock},
        CRouteRow{23, 11, 23, EQdTraderType::HGT}, CRouteRow{23, 11, 23, EQdTraderType::SGT},
        CRouteRow{0, 1101, 0, EQdTraderType::FutureSpeculation},
        CRouteRow{14, 1101, 14, EQdTraderType::FutureSpeculation},
        CRouteRow{15, 1101, 15, EQdTraderType::FutureSpeculation},
        CRouteRow{25, 2101, 25, EQdTraderType::Basket}, CRouteRow{26, 2101, 26, EQdTraderType::Basket},
        CRouteRow{27, 1101, 27, EQdTraderType::Credit}, CRouteRow{33, 1101, 23, EQdTraderType::Credit},
        CRouteRow{34, 1101, 24, EQdTraderType::Credit}, CRouteRow{27, 2101, 27, EQdTraderType::Basket},
        CRouteRow{33, 2101, 25, EQdTraderType::Basket}, CRouteRow{34, 2101, 26, EQdTraderType::Basket},
        CRouteRow{50, 1101, 48, EQdTraderType::Option}, CRouteRow{57, 1101, 55, EQdTraderType::Option},
        CRouteRow{40, 2101, 40, EQdTraderType::Basket}),
    [](const auto& row) {
        return "Op" + std::to_string(row.param.opType) + "Type" + std::to_string(row.param.orderType) +
               "Trader" + std::to_string(static_cast<int>(row.param.trader));
    });

TEST_F(OrderFuncService, BasketOfAConnectIsABasket) {
    CBasketSetting basket;
    basket.m_rows.append({QStringLiteral("HGT"), QStringLiteral("12345"), {}, 1, 100, 18, 0});
    host.user.baskets[QStringLiteral("connect")] = basket;
    pass({{"opType", "25"}, {"orderType", "2101"}, {"prType", "5"}, {"orderCode", "\"connect\""}});
    EXPECT_EQ(onlyCommand()->m_eTraderType, EQdTraderType::Basket);
}

TEST_F(OrderFuncService, TradeKeyOfThreePartsNamesTheCall) {
    const utils::KNError error(5, "text");
    const auto keyOf = [&](const std::string& tradeKey) {
        failures.clear();
        service.orderCheckFaild(tradeKey, error);
        EXPECT_EQ(failures.at(0).text, "text");
        return failures.at(0).key + "/" + std::to_string(failures.at(0).id);
    };
    EXPECT_EQ(keyOf("a|b|7"), "b/7");
    EXPECT_EQ(keyOf("a|b|-2147483648"), "b/-2147483648");
    EXPECT_EQ(keyOf("a||+3"), "/3");
    EXPECT_EQ(keyOf("a|b"), "/-1");
    EXPECT_EQ(keyOf("a|b|7|"), "/-1");
    EXPECT_EQ(keyOf(""), "/-1");
    EXPECT_THROW(service.orderCheckFaild("a|b|x", error), boost::bad_lexical_cast);
    EXPECT_THROW(service.orderCheckFaild("a|b|2147483648", error), boost::bad_lexical_cast);
    EXPECT_THROW(service.orderCheckFaild("a|b|", error), boost::bad_lexical_cast);
}

TEST_F(OrderFuncService, BadThirdPartEndsTheCallAfterTheUserHasBeenTold) {
    EXPECT_THROW(pass({{"tradeKey", "\"a|b|x\""}, {"orderCode", "\"999999\""}}), boost::bad_lexical_cast);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(
        host.errorTexts(),
        (std::vector<QString>{QStringLiteral("[函数交易]　函数: passorder, 下单代码 [999999] 不合法!")}));
}

TEST_F(OrderFuncService, GoodCallDoesNotReadItsTradeKey) {
    pass({{"tradeKey", "\"a|b|x\""}});
    EXPECT_EQ(onlyCommand()->m_strAlgoParam, "a|b|x");
}

TEST_F(OrderFuncService, FailuresAreShownAlsoWithoutACallback) {
    service.registOrderFailedCallback({});
    pass({{"orderCode", "\"\""}});
    EXPECT_EQ(host.messageTexts(),
              (std::vector<QString>{QStringLiteral("[函数交易]　函数: passorder, 合约或篮子为空")}));
}

TEST_F(OrderFuncService, LaterCallbackReplacesTheEarlierOne) {
    int calls = 0;
    service.registOrderFailedCallback(
        [&](const int&, const std::string&, const utils::KNError&) { ++calls; });
    pass({{"orderCode", "\"\""}});
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(failures.empty());
}

TEST_F(OrderFuncService, CallbackThatThrowsDoesNotEndTheCall) {
    service.registOrderFailedCallback([](const int&, const std::string&, const utils::KNError&) {
        throw std::runtime_error("broken model");
    });
    accounts["A2"]->m_dUsable = 0;
    host.user.groupRatios[{EQDBrokerType::Stock, "G"}] = {1, 1};
    const auto detail = boost::make_shared<knservice::CAccountDetail>();
    detail->m_dAssetForRatio = detail->m_dAssetCheck = 100000;
    accounts["A1"]->m_detail = detail;
    accounts["A2"]->m_detail = detail;
    // The second account is left out with a report, and the first one still trades.
    pass({{"orderType", "1213"}, {"accountID", "\"G\""}, {"modelVolume", "\"0.5\""}});
    EXPECT_EQ(onlyCommand()->m_codes.size(), 1u);
    bool isTold = false;
    for (const QString& text : host.messageTexts())
        isTold = isTold || text.contains(QStringLiteral("broken model"));
    EXPECT_TRUE(isTold);
}

TEST_F(OrderFuncService, CallbackMayOrderItself) {
    service.registOrderFailedCallback(
        [this](const int&, const std::string&, const utils::KNError&) { pass(); });
    pass({{"orderCode", "\"\""}});
    EXPECT_EQ(onlyCommand()->m_codes.size(), 1u);
}

TEST_F(OrderFuncService, CallbackThatRepeatsAFailingCallComesToAnEnd) {
    int calls = 0;
    service.registOrderFailedCallback([&](const int&, const std::string&, const utils::KNError&) {
        ++calls;
        pass({{"orderCode", "\"\""}});
    });
    pass({{"orderCode", "\"\""}});
    EXPECT_EQ(calls, 8);
    EXPECT_EQ(host.messageTexts().back(),
              QStringLiteral("[接口单]　函数交易下单失败的回调层数过多, 本次失败未通知调用者!"));
    pass({{"orderCode", "\"\""}}); // the next failure is told again
    EXPECT_EQ(calls, 16);
}

TEST_F(OrderFuncService, CallbackMayRemoveItself) {
    const auto text = std::make_shared<std::string>("alive");
    std::string read;
    service.registOrderFailedCallback(
        [this, &read, text](const int&, const std::string&, const utils::KNError&) {
            service.registOrderFailedCallback({});
            read = *text;
        });
    pass({{"orderCode", "\"\""}});
    EXPECT_EQ(read, "alive");
    EXPECT_EQ(text.use_count(), 1); // the service keeps nothing of it
}

TEST_F(OrderFuncService, ExceptionOfTheHostIsReportedAndReachesTheCaller) {
    host.orders.onCommand = [](const COrderComandParamPtr&) { throw std::runtime_error("no line"); };
    EXPECT_THROW(pass(), CHostError);
    const std::vector<QString> texts = host.messageTexts();
    ASSERT_FALSE(texts.empty());
    EXPECT_TRUE(texts.back().startsWith(
        QStringLiteral("[接口单]　函数交易 passorder 因主机异常而中断, 请核对委托: ")));
    EXPECT_TRUE(texts.back().contains(QStringLiteral("no line")));
}

TEST_F(OrderFuncService, FailedCallLeavesTheServiceAsItWas) {
    pass({{"orderCode", "\"\""}});
    forget();
    failures.clear();
    pass();
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_nVolume, 300);
    EXPECT_TRUE(failures.empty());
}

TEST_F(OrderFuncService, TradeTypesWithoutARoutineAreReportedPlainly) {
    for (const int type : {5, 7, 11, -1}) {
        forget();
        failures.clear();
        COrderFuncParam funcParam;
        funcParam.m_strFuncName = QStringLiteral("passorder");
        funcParam.m_strTradeKey = "x|key|7";
        COrderStrategyParam of;
        of.m_eTradeType = static_cast<EOrderStrategyTradeType>(type);
        const COrderFailedCallback callback = [this](const int& id, const std::string& key,
                                                     const utils::KNError& error) {
            failures.push_back({id, key, error.errorMsg()});
        };
        routeCall(funcParam, of, CFuncReporter(funcParam.m_strTradeKey, callback), {});
        expectPlain(QStringLiteral("[函数交易]　函数: passorder, 交易类型错误"));
    }
}

} // namespace
