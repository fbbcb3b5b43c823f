// Baskets by function: what is sent, the volumes by each unit, and the rows that are left out.
#include "tests/func/ComposeFixture.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace TC;

class OrderCompose : public ComposeFixture {};

TEST_F(OrderCompose, SendsOneCommand) {
    const CLogCapture log;
    utils::CLogCenter::setLogEnabled(true);
    order();
    expectReports({}, {}, {});
    const auto command = onlyCommand();
    EXPECT_EQ(command->m_eTraderType, EQdTraderType::Basket);
    EXPECT_EQ(static_cast<int>(command->m_eTraderType), 4);
    EXPECT_EQ(command->m_eHedgeType, EQdHedgeType::Compose);
    EXPECT_EQ(command->m_eBtnType, EFtSpecBtnBarType::None);
    EXPECT_TRUE(command->m_bUnion);
    EXPECT_TRUE(command->m_bFuncOrder);
    EXPECT_FALSE(command->m_bForceConfirm);
    EXPECT_FALSE(command->m_bCommandFlag);
    EXPECT_EQ(static_cast<int>(command->m_eStrategyType), 3);
    EXPECT_EQ(command->m_strAlgoParam, "x|key|7");
    EXPECT_EQ(command->m_strStrategyName, "grid");
    EXPECT_EQ(command->m_strRemark, "remark");
    EXPECT_EQ(command->m_strOrderCode, "b");
    EXPECT_EQ(command->m_strModelName, "model");
    EXPECT_TRUE(command->m_weights.empty());
    ASSERT_EQ(command->m_codes.size(), 2u);
    const CCodeOrderParam& record = command->m_codes[1];
    EXPECT_EQ(record.m_account->getKey(), "A1");
    EXPECT_EQ(record.m_nVolume, 300);
    EXPECT_EQ(record.m_eOperationType, EOperationType::Buy);
    EXPECT_EQ(record.m_stock.m_strMarket, "SZ");
    EXPECT_EQ(record.m_stock.m_strName, "name of 000001");
    EXPECT_EQ(record.m_strUserId, "tester");
    EXPECT_EQ(static_cast<int>(record.m_eHedgeFlag), 49);
    EXPECT_EQ(record.m_dPrice, kUnsetDouble);
    EXPECT_NE(log.lines().back().text.find("placeCommands: [orderservice] basket compose."),
              std::string::npos);
}

TEST_F(OrderCompose, SettingAndVolumeReachTheHost) {
    order();
    const auto calls = host.rules.settingCalls.all();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[1].volume, 300);
    EXPECT_EQ(calls[1].price, kUnsetDouble);
    EXPECT_EQ(calls[1].setting.m_ePriceType, EPriceType::Latest);
    EXPECT_EQ(static_cast<int>(calls[1].record.m_eHedgeFlag), 49); // set before the host's stamp
    EXPECT_EQ(calls[1].record.m_stock.m_strCode, "000001");
}

TEST_F(OrderCompose, RemarkAndPriceTypeOfTheSettingIfTheCallHasNone) {
    host.user.defaults[EDefaultSetting::Basket].m_strCmdLog = "log of the setting";
    host.user.defaults[EDefaultSetting::Basket].m_ePriceType = EPriceType::Buy1;
    order({{"note", "\"\""}, {"prType", "-1"}});
    EXPECT_EQ(onlyCommand()->m_strRemark, "log of the setting");
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_ePriceType, EPriceType::Buy1);
}

TEST_F(OrderCompose, VolumesAreRoundedToLots) {
    EXPECT_EQ(volumesOf({{"modelVolume", "\"3\""}}), (CVolumes{300, 400})); // 450 falls to 400
}

TEST_F(OrderCompose, SaleOfEverythingIsNotRounded) {
    host.user.addGroup(EQDBrokerType::Stock, "G3", {{"A1", 1}, {"A2", 1}});
    accounts["A1"]->m_dUsable = 450;
    accounts["A2"]->m_dUsable = 1000;
    rows().removeFirst();
    // The first account sells all it has; then the volume is rounded, for the accounts after it too.
    EXPECT_EQ(
        volumesOf(
            {{"opType", "26"}, {"orderType", "2201"}, {"accountID", "\"G3\""}, {"modelVolume", "\"3\""}}),
        (CVolumes{450, 400}));
}

TEST_F(OrderCompose, RoundedVolumeIsThatOfTheNextAccounts) {
    accounts["A1"]->m_dUsable = 1000;
    accounts["A2"]->m_dUsable = 450;
    rows().removeFirst();
    EXPECT_EQ(
        volumesOf(
            {{"opType", "26"}, {"orderType", "2201"}, {"accountID", "\"G\""}, {"modelVolume", "\"3\""}}),
        (CVolumes{400, 400})); // although the second account could sell 450
}

TEST_F(OrderCompose, NegativeVolumesLeaveTheRowOut) {
    EXPECT_EQ(volumesOf({{"modelVolume", "\"-1\""}}), CVolumes{});
    EXPECT_EQ(leftOut(), "2 SH600000: the volume is below zero");
}

TEST_F(OrderCompose, VolumesBeyondAnIntGiveNoRecord) {
    EXPECT_EQ(volumesOf({{"modelVolume", "\"2147483646\""}}), CVolumes{});
    EXPECT_EQ(leftOut(), "2 SH600000: the volume is larger than an order can be");
    host.audit.incidents.clear();
    EXPECT_EQ(volumesOf({{"orderType", "2201"}, {"accountID", "\"G\""}, {"modelVolume", "\"2147483646\""}}),
              CVolumes{});
    EXPECT_EQ(leftOut(), "2 SH600000: the volume is larger than an order can be"); // rows, not accounts
    host.audit.incidents.clear();
    for (CBasketStockData& row : rows())
        row.m_nVolume = 1; // whole lots of this volume would fit an int
    EXPECT_EQ(volumesOf({{"modelVolume", "\"2147483646\""}}), CVolumes{});
    EXPECT_EQ(leftOut(), "2 SH600000: the volume is larger than an order can be");
}

TEST_F(OrderCompose, RowsWithoutVolumeAreLeftOutUnlessMoneyIsShared) {
    rows()[0].m_nVolume = 0;
    EXPECT_EQ(volumesOf(), CVolumes{300});
    EXPECT_EQ(leftOut(), "1 SH600000: the volume is below 1");
    EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"40000\""}}), (CVolumes{1000, 3000}));
}

TEST_F(OrderCompose, MoneyIsSharedByWeight) {
    EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"41999\""}}), (CVolumes{1000, 3100}));
    rows()[0].m_dWeight = rows()[1].m_dWeight = 0;
    EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"40000\""}}), (CVolumes{2000, 2000}));
    EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"-40000\""}}), CVolumes{});
}

TEST_F(OrderCompose, WeightsCountForSomeOperationsOnly) {
    for (const char* opType : {"25", "26", "27", "28", "29", "31", "33", "34"}) {
        EXPECT_EQ(volumesOf({{"opType", opType}, {"orderType", "2102"}, {"modelVolume", "\"40000\""}}),
                  (CVolumes{1000, 3000}))
            << opType;
    }
    defaults["opType"] = "25";
    // Without a table row the money is shared equally. The parser makes no such basket; the routine is asked
    // directly.
    call(orderCompose, {{"orderType", "2102"}, {"modelVolume", "\"40000\""}});
    param.m_nOpType = 36;
    forget();
    callParsed(orderCompose);
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_nVolume, 2000);
}

TEST_F(OrderCompose, MoneyOfInstrumentsAtParIsDividedBy100) {
    host.types.types.insert({knservice::kTypeParPriced, "SH600000"});
    host.types.types.insert({100017, "SZ000001"});
    EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"40000\""}}), (CVolumes{100, 300}));
    rows()[0].m_dWeight = rows()[1].m_dWeight = 0;
    EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"40000\""}}), (CVolumes{200, 200}));
}

TEST_F(OrderCompose, RatioIsAShareOfTheAssetsByWeight) {
    EXPECT_EQ(volumesOf({{"orderType", "2203"}, {"accountID", "\"G\""}, {"modelVolume", "\"0.4\""}}),
              (CVolumes{1000, 500, 3000, 1500}));
    rows()[0].m_dWeight = rows()[1].m_dWeight = 0;
    EXPECT_EQ(volumesOf({{"orderType", "2103"}, {"modelVolume", "\"0.4\""}}), (CVolumes{2000, 2000}));
}

TEST_F(OrderCompose, AccountsWithoutAssetsGetNothingByRatio) {
    accounts["A1"]->m_detail.reset();
    EXPECT_EQ(volumesOf({{"orderType", "2203"}, {"accountID", "\"G\""}, {"modelVolume", "\"0.4\""}}),
              (CVolumes{0, 500, 0, 1500}));
    setAssets("A1", kUnsetDouble);
    EXPECT_EQ(volumesOf({{"orderType", "2103"}, {"modelVolume", "\"0.4\""}}), (CVolumes{0, 0}));
    setAssets("A1", 100000);
    host.trade.loginStatus["A1"] = 2;
    EXPECT_EQ(volumesOf({{"orderType", "2103"}, {"modelVolume", "\"0.4\""}}), (CVolumes{0, 0}));
}

TEST_F(OrderCompose, FuturesByVolumeMoneyAndRatio) {
    addFutures();
    EXPECT_EQ(volumesOf(), (CVolumes{2, 2}));
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_eOperationType, EOperationType::OpenLong);
    EXPECT_EQ(
        volumesOf({{"orderType", "2202"}, {"accountID", "\"futures\""}, {"modelVolume", "\"3700000\""}}),
        (CVolumes{3, 3, 3, 3}));
    EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"-3700000\""}}), CVolumes{});
    accounts["F1"]->m_dUsable = 10;
    call(orderCompose, {});
    param.m_nOrderType = 2103; // by text only with a futures leg: 2333
    param.m_dModelVolume = 0.5;
    forget();
    callParsed(orderCompose);
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_nVolume, 5);
}

TEST_F(OrderCompose, MoneyBeyondAnIntIsNotRoundedIntoAnOrder) {
    addFutures();
    for (const char* key : {"CFFEXIF2609", "CFFEXIF2612"})
        host.types.units[key] = 10;
    EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"1e300\""}}), CVolumes{});
    EXPECT_EQ(leftOut(), "2 CFFEXIF2609: the volume is larger than an order can be");
}

TEST_F(OrderCompose, AccountsWithoutAFeeRecordGetNoContractsForMoney) {
    addFutures();
    accounts["F1"]->m_fees.clear();
    EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"3700000\""}}), (CVolumes{0, 0}));
}

TEST_F(OrderCompose, OperationsByNumber) {
    const std::vector<std::pair<int, int>> stocks = {{25, 18}, {26, 19}, {27, 20}, {28, 21},
                                                     {29, 22}, {31, 24}, {33, 18}, {34, 19}};
    for (const auto& [opType, operation] : stocks) {
        volumesOf({{"opType", std::to_string(opType)}});
        EXPECT_EQ(static_cast<int>(onlyCommand()->m_codes.at(0).m_eOperationType), operation) << opType;
    }
    addFutures();
    const std::vector<std::pair<int, int>> futures = {{40, 0}, {43, 3}, {46, 6}, {47, 7}, {48, 8}, {49, 9}};
    for (const auto& [opType, operation] : futures) {
        volumesOf({{"opType", std::to_string(opType)}});
        EXPECT_EQ(static_cast<int>(onlyCommand()->m_codes.at(0).m_eOperationType), operation) << opType;
    }
}

TEST_F(OrderCompose, RowsHaveTheirOwnOperationIfTheNumberHasNone) {
    rows()[1].m_eOperationType = 19;
    call(orderCompose, {});
    param.m_nOpType = 35;
    forget();
    callParsed(orderCompose);
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_eOperationType, EOperationType::Buy);
    EXPECT_EQ(onlyCommand()->m_codes.at(1).m_eOperationType, EOperationType::Sell);
}

TEST_F(OrderCompose, AccountsOfMarginTradingIfThereAreNoOthers) {
    host.user.addGroup(EQDBrokerType::Credit, "credit", {{"A2", 1}});
    call(orderCompose, {});
    forget();
    strategy.m_eSelectedAccountType = ESelectedAccountType::Group;
    strategy.m_strSelectedAccount = QStringLiteral("credit");
    orderCompose(param, strategy, CFuncReporter(param.m_strTradeKey, {}));
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_account->getKey(), "A2");
    const auto calls = host.user.accountsCalls.all();
    ASSERT_GE(calls.size(), 2u);
    EXPECT_EQ(calls[calls.size() - 2].broker, EQDBrokerType::Stock);
    EXPECT_EQ(calls.back().broker, EQDBrokerType::Credit);
}

TEST_F(OrderCompose, UnknownRowsAreLeftOutWithoutAMessage) {
    rows()[0].m_strCode = QStringLiteral("999999");
    EXPECT_EQ(volumesOf(), CVolumes{300});
    expectReports({}, {}, {});
    EXPECT_EQ(leftOut(), "1 SH999999: the code is not a stock that can be traded");
    EXPECT_EQ(host.audit.incidents[0].m_nChannel, kUnsetInt);
}

TEST_F(OrderCompose, SuspendedRowsAreLeftOutWithoutAMessage) {
    host.quotes.quotes[QStringLiteral("SH600000")]->m_dDayFigure1 = 0;
    EXPECT_EQ(volumesOf(), CVolumes{300});
    expectReports({}, {}, {});
    EXPECT_EQ(leftOut(), "1 SH600000: the instrument is suspended: its quote has no figures of today");
}

TEST_F(OrderCompose, BasketsOfStocksHaveOnlyTheirTypes) {
    for (const int type : {100003, 100016, 100004, 100024, knservice::kTypeParPriced}) {
        host.types.types.erase({100003, "SH600000"});
        host.types.types.insert({type, "SH600000"});
        EXPECT_EQ(volumesOf(), (CVolumes{200, 300})) << type;
        host.types.types.erase({type, "SH600000"});
    }
    host.types.types.insert({100013, "SH600000"});
    host.types.types.insert({100017, "SH600000"}); // of SZ only
    EXPECT_EQ(volumesOf(), CVolumes{300});
    EXPECT_EQ(leftOut(), "1 SH600000: a basket cannot have an instrument of this type");
    EXPECT_EQ(volumesOf({{"opType", "27"}}), (CVolumes{200, 300})); // margin trading has no such limit
}

TEST_F(OrderCompose, BasketsOfFuturesHaveOnlyFuturesMarkets) {
    addFutures();
    const auto other =
        boost::make_shared<CInstrumentDetail>(*host.exchange.others[QStringLiteral("CFFEXIF2609")]);
    other->m_strMarket = "GFEX";
    host.exchange.others[QStringLiteral("CFFEXIF2609")] = other;
    EXPECT_EQ(volumesOf(), CVolumes{2});
    EXPECT_EQ(leftOut(), "1 GFEXIF2609: a basket cannot have an instrument of this type");
    host.exchange.lists.clear();
    host.audit.incidents.clear();
    EXPECT_EQ(volumesOf(), CVolumes{});
    EXPECT_EQ(leftOut(), "2 CFFEXIF2609: the code is not a future that can be traded");
}

TEST_F(OrderCompose, RowWithoutAQuoteIsReportedAndHasVolumeZero) {
    host.quotes.quotes.erase(QStringLiteral("SH600000"));
    order();
    const QString text = QStringLiteral(
        "[函数交易]　函数: [passorder] 组合交易中, 证券 [SH600000] 价5(600000)无效, 修改下单量为0!");
    expectReports({text}, {text}, {text});
    ASSERT_EQ(onlyCommand()->m_codes.size(), 2u);
    EXPECT_EQ(onlyCommand()->m_codes[0].m_nVolume, 0);
    EXPECT_EQ(onlyCommand()->m_codes[1].m_nVolume, 300);
    EXPECT_EQ(host.quotes.reads[QStringLiteral("SH600000")], 3);
    EXPECT_EQ(host.quotes.reads[QStringLiteral("SZ000001")], 1);
}

TEST_F(OrderCompose, QuotesOfAllRowsAreRequestedBeforeTheFirstWait) {
    std::vector<QString> requested;
    host.quotes.onRead = [&](const QString&, int) {
        if (requested.empty()) requested = host.quotes.subscribed;
        EXPECT_EQ(host.quotes.liveSubscriptions, 2);
    };
    order();
    EXPECT_EQ(requested, (std::vector<QString>{QStringLiteral("SH600000"), QStringLiteral("SZ000001")}));
    EXPECT_EQ(host.quotes.liveSubscriptions, 0);
}

TEST_F(OrderCompose, RowWithAPriceOfZeroHasVolumeZero) {
    host.quotes.quotes[QStringLiteral("SH600000")]->origin[EPriceType::Latest] = 0;
    order();
    EXPECT_EQ(failures.size(), 1u);
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_nVolume, 0);
}

TEST_F(OrderCompose, ListOfVolumesOutlivesABadPrice) {
    host.quotes.quotes[QStringLiteral("SH600000")]->origin[EPriceType::Latest] = 0;
    order({{"orderType", "2103"}, {"modelVolume", "\"0.4\""}});
    EXPECT_EQ(failures.size(), 1u);
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_nVolume, 1000);
}

TEST_F(OrderCompose, PriceTypeWithoutQuoteNeedsOnlyAQuoteObject) {
    host.quotes.quotes[QStringLiteral("SH600000")]->origin[EPriceType::NoQuote] = kUnsetDouble;
    EXPECT_EQ(volumesOf({{"prType", "12"}}), (CVolumes{200, 300}));
    EXPECT_TRUE(failures.empty());
}

TEST_F(OrderCompose, MissingCalculationPriceIsTheLowerLimit) {
    host.quotes.quotes[QStringLiteral("SH600000")]->calc[EPriceType::Latest] = kUnsetDouble;
    // 9000 at the limit of 9, and 30000 at 10.
    EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"36000\""}}), (CVolumes{1000, 2700}));
    // Usable volume is asked at the latest price then.
    EXPECT_NE(accounts["A1"]->m_calls.at(0).find("at 10.0"), std::string::npos);
}

TEST_F(OrderCompose, ModelPriceOfTheSettingEndsTheCall) {
    host.user.defaults[EDefaultSetting::Basket].m_ePriceType = EPriceType::Specified;
    order({{"prType", "-1"}});
    EXPECT_TRUE(host.commands().empty());
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0].text, "[函数交易] 函数: passorder,[b]不能以[1.79769e+308]为指定价报单!");
}

TEST_F(OrderCompose, FirstPriceMustNotBeOnTheOtherSide) {
    for (const int type : {7, 8, 9, 10}) {
        forget();
        order({{"prType", std::to_string(type)}});
        expectFull(QStringLiteral("[函数交易]　函数: passorder, 组合交易买入不允许报买二到买五的价格!"));
        EXPECT_EQ(volumesOf({{"opType", "26"}, {"prType", std::to_string(type)}}).size(), 2u);
    }
    for (const int type : {0, 1, 2, 3}) {
        forget();
        order({{"opType", "26"}, {"prType", std::to_string(type)}});
        expectFull(QStringLiteral("[函数交易]　函数: passorder, 组合交易卖出不允许报卖二到卖五的价格!"));
        EXPECT_EQ(volumesOf({{"prType", std::to_string(type)}}).size(), 2u);
    }
    for (const int type : {4, 5, 6})
        EXPECT_EQ(volumesOf({{"opType", "26"}, {"prType", std::to_string(type)}}).size(), 2u);
}

} // namespace
