// The commands that the guard lets pass, and its messages about the others.
#include "orderservice/check/CommandGuard.h"

#include "orderservice/check/CommandRequest.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/Switches.h"
#include "tests/check/CheckFixture.h"

#include <boost/make_shared.hpp>

#include <cmath>

namespace {

using namespace TC;

class CommandGuard : public CheckFixture {
protected:
    CommandGuard() { host.switches.on.insert(kCommandGuardSwitch); }

    /// A complete record.
    CCodeOrderParam record() {
        CCodeOrderParam good;
        good.m_account = host.user.accounts.at("A1");
        good.m_stock = {"SH", "600000", {}, {}};
        good.m_eOperationType = EOperationType::Buy;
        good.m_ePriceType = EPriceType::Specified;
        good.m_dPrice = 10.5;
        good.m_nVolume = 100;
        return good;
    }
    void send(const COrderParam& order, std::vector<CCodeOrderParam> records) {
        const auto command = boost::make_shared<COrderComandParam>();
        command->m_codes = std::move(records);
        sendCommand(command, sourceOf(order));
    }
    bool goesOut(const CCodeOrderParam& one, int number = 23) {
        const std::size_t before = host.commands().size();
        send(COrderBuilder(number), {one});
        return host.commands().size() > before;
    }
    static QString reported(const QString& what, int number) {
        return QStringLiteral("[文件单]　通道号: 3, 下单类型: 下单%1 (%1), %2").arg(number).arg(what);
    }
    static QString refused(const QString& reason, int number = 23, int records = 1) {
        return reported(
            QStringLiteral("账号 [A1] 合约 [SH600000] %1, 整个指令(%2条)未发出!").arg(reason).arg(records),
            number);
    }
    static COrderParam saleOfAll() {
        return COrderBuilder(26).set([](COrderParam& o) { o.m_bAll = true; });
    }
    CCodeOrderParam unsellable() {
        CCodeOrderParam none = record();
        none.m_nVolume = 0;
        return none;
    }
    void issue(const COrderParam& order, const std::vector<CCodeOrderParam>& records) {
        service.doOrderCommand(EQdTraderType::Basket, EQdHedgeType::None, EFtSpecBtnBarType::None, records,
                               {}, EQdStopLossType::None, true, {}, {}, {}, ETradePlatform::Plain, {}, false,
                               false, {}, order, CStrategyBuilder());
    }
};

TEST_F(CommandGuard, IsOffUnlessItsSwitchIsOn) {
    host.switches.on.clear();
    EXPECT_TRUE(goesOut(CCodeOrderParam()));
    EXPECT_TRUE(host.errorTexts().empty());
    host.switches.on.insert("mdl_order_command_guard");
    EXPECT_FALSE(goesOut(CCodeOrderParam()));
}

TEST_F(CommandGuard, EveryCommandPassesIt) {
    issue(COrderBuilder(23), {CCodeOrderParam()});
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(host.errorTexts().size(), 1u);
}

TEST_F(CommandGuard, GoodRecordsAndNoRecordsGoOut) {
    EXPECT_TRUE(goesOut(record()));
    send(COrderBuilder(66), {});
    EXPECT_EQ(host.commands().size(), 2u);
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(CommandGuard, MarketAndCodeAreNeeded) {
    for (const bool hasMarket : {false, true}) {
        CCodeOrderParam one = record();
        (hasMarket ? one.m_stock.m_strCode : one.m_stock.m_strMarket).clear();
        EXPECT_FALSE(goesOut(one));
        ASSERT_FALSE(host.errorTexts().empty());
        EXPECT_TRUE(
            host.errorTexts().back().endsWith(QStringLiteral("没有市场和代码, 整个指令(1条)未发出!")));
    }
}

TEST_F(CommandGuard, ASpecifiedPriceIsNeeded) {
    for (const double price : {kUnsetDouble, std::nan(""), HUGE_VAL, -HUGE_VAL, 0.0, 1e-6}) {
        host.orders.errors.clear();
        CCodeOrderParam one = record();
        one.m_dPrice = price;
        EXPECT_FALSE(goesOut(one)) << price;
        EXPECT_EQ(onlyError(), refused(QStringLiteral("没有价格"))) << price;
        one.m_ePriceType = EPriceType::Latest; // the price comes from the quote
        EXPECT_TRUE(goesOut(one)) << price;
    }
}

TEST_F(CommandGuard, AVolumeIsNeeded) {
    for (const int volume : {0, -1, -100, kUnsetInt}) {
        host.orders.errors.clear();
        CCodeOrderParam one = record();
        one.m_nVolume = volume;
        EXPECT_FALSE(goesOut(one)) << volume;
        EXPECT_EQ(onlyError(), refused(QStringLiteral("没有数量"))) << volume;
    }
}

TEST_F(CommandGuard, OneBadRecordRefusesTheOrderWithOneReport) {
    CCodeOrderParam bad = record();
    bad.m_nVolume = 0;
    send(COrderBuilder(25), {record(), bad, record(), bad});
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(onlyError(), refused(QStringLiteral("没有数量"), 25, 4));
}

TEST_F(CommandGuard, WhatIsNoTradeNeedsNoPrice) {
    CCodeOrderParam one = record();
    one.m_dPrice = kUnsetDouble;
    for (const int number : {30, 37, 38, 54, 55, 56, 57, 100})
        EXPECT_TRUE(goesOut(one, number)) << number;
    for (const int number : {0, 15, 23, 24, 25, 26, 27, 28, 29, 31, 34, 36, 48, 53, 86, 90})
        EXPECT_FALSE(goesOut(one, number)) << number;
}

TEST_F(CommandGuard, MoneyIsRepaidByItsAmount) {
    const int operation = 25;
    CCodeOrderParam money;
    money.m_account = host.user.accounts.at("A1");
    money.m_eOperationType = static_cast<EOperationType>(operation);
    money.m_ePriceType = EPriceType::Specified;
    money.m_nVolume = 0; // the amount without its fraction
    money.m_dQuantity = 0.5;
    host.rules.directRepays.clear();
    EXPECT_FALSE(goesOut(money, 32)); // the host says that this operation repays shares
    host.rules.directRepays = {operation};
    EXPECT_TRUE(goesOut(money, 32));
    money.m_nVolume = kUnsetInt;
    money.m_dQuantity = 1e10;
    EXPECT_TRUE(goesOut(money, 32));
    EXPECT_FALSE(goesOut(money, 23)); // number 23 is not a repayment
    for (const double amount : {0.0, -5.0, std::nan(""), HUGE_VAL, kUnsetDouble}) {
        money.m_dQuantity = amount;
        EXPECT_FALSE(goesOut(money, 32)) << amount;
        ASSERT_FALSE(host.errorTexts().empty());
        EXPECT_TRUE(host.errorTexts().back().contains(QStringLiteral("没有金额"))) << amount;
    }
}

TEST_F(CommandGuard, AContractNeedsItsNameOrAnInstrument) {
    CCodeOrderParam contract = record();
    contract.m_stock = {};
    EXPECT_FALSE(goesOut(contract, 37));
    contract.m_strContractText = "contract7";
    EXPECT_TRUE(goesOut(contract, 37));
    EXPECT_FALSE(goesOut(contract, 23));
    contract.m_nVolume = 0;
    EXPECT_FALSE(goesOut(contract, 37));
}

TEST_F(CommandGuard, ASaleOfAllLeavesOutWhatCannotBeSoldToday) {
    issue(saleOfAll(), {unsellable(), record(), unsellable()});
    ASSERT_EQ(host.commands().size(), 1u);
    ASSERT_EQ(host.commands()[0]->m_codes.size(), 1u);
    EXPECT_EQ(host.commands()[0]->m_codes[0].m_nVolume, 100);
    const QString leftOut =
        reported(QStringLiteral("账号 [A1] 合约 [SH600000] 没有可卖数量, 此合约未下单, 其余照常发出!"), 26);
    EXPECT_EQ(host.errorTexts(), std::vector<QString>(2, leftOut));
}

/// The text contains one group of parameters for each record, in the order of the records.
TEST_F(CommandGuard, TextOfAnAlgorithmIsMadeOfTheRecordsThatGoOut) {
    constexpr auto kAlgo = static_cast<EOrderType>(7);
    host.rules.algoPlatforms[kAlgo] = static_cast<ETradePlatform>(12);
    COrderParam order = saleOfAll();
    order.m_eOrderType = kAlgo;
    order.m_strOrderSetting = "s";
    issue(order, {unsellable(), record()});
    ASSERT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.commands()[0]->m_strAlgoParam, "algo 7 s x1");
    EXPECT_EQ(host.commands()[0]->m_codes.size(), 1u);
}

TEST_F(CommandGuard, ASaleOfAllThatCanSellNothingDoesNotGoOut) {
    issue(saleOfAll(), {unsellable(), unsellable()});
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(onlyError(), reported(QStringLiteral("全部持仓(2条)没有可卖数量, 指令未发出!"), 26));
}

TEST_F(CommandGuard, NoReportPromisesARestThatIsRefused) {
    CCodeOrderParam bad = record();
    bad.m_dPrice = kUnsetDouble;
    issue(saleOfAll(), {unsellable(), bad});
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(onlyError(), refused(QStringLiteral("没有价格"), 26));
}

/// Every exception of the host is turned into one that names the operation.
TEST_F(CommandGuard, AnAccountThatThrowsIsNamed) {
    struct CThrowing : CAccountInfo {
        std::string getKey() const override { throw 7; }
    };
    CCodeOrderParam bad = record();
    bad.m_account = boost::make_shared<CThrowing>();
    bad.m_nVolume = 0;
    try {
        goesOut(bad);
        FAIL() << "nothing was thrown";
    } catch (const CHostError& error) {
        EXPECT_TRUE(QString::fromUtf8(error.what()).startsWith(QStringLiteral("CAccountInfo::getKey: ")))
            << error.what();
    }
    EXPECT_TRUE(host.commands().empty());
}

TEST_F(CommandGuard, PropertiesOfAnOrderComeFromItsNumber) {
    const CCommandSource buy = sourceOf(COrderBuilder(23));
    EXPECT_EQ(buy.m_eStrategyType, EOrderStrategyType::File);
    EXPECT_EQ(buy.m_nChannel, 3);
    EXPECT_EQ(buy.m_nShownOrder, 23);
    EXPECT_TRUE(buy.m_bNeedsPrice);
    EXPECT_FALSE(buy.m_bContractEnd || buy.m_bRepayment || buy.m_bSaleOfAll);
    EXPECT_FALSE(sourceOf(COrderBuilder(30)).m_bNeedsPrice);
    EXPECT_TRUE(sourceOf(COrderBuilder(32)).m_bRepayment);
    EXPECT_TRUE(sourceOf(COrderBuilder(37)).m_bContractEnd);
    EXPECT_TRUE(sourceOf(saleOfAll()).m_bSaleOfAll);
    EXPECT_FALSE(sourceOf(COrderBuilder(26)).m_bSaleOfAll);
}

/// Outside orders a number may mean something else: 37 is not the end of a contract there.
TEST_F(CommandGuard, SourceThatIsNoOrderIsCheckedByItsProperties) {
    CCommandSource source;
    source.m_strReportHead = QStringLiteral("[函数交易]　函数: passorder, ");
    source.m_nShownOrder = 37;
    const auto command = boost::make_shared<COrderComandParam>();
    command->m_codes = {record()};
    command->m_codes[0].m_dPrice = kUnsetDouble;
    sendCommand(command, source);
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(onlyError(), QStringLiteral("[函数交易]　函数: passorder, 下单类型: 下单37 (37), "
                                          "账号 [A1] 合约 [SH600000] 没有价格, 整个指令(1条)未发出!"));
    source.m_bNeedsPrice = false;
    sendCommand(command, source);
    EXPECT_EQ(host.commands().size(), 1u);
}

TEST_F(CommandGuard, WithoutTheGuardASaleOfAllGoesOutWhole) {
    host.switches.on.clear();
    issue(saleOfAll(), {unsellable(), record()});
    issue(saleOfAll(), {unsellable()});
    ASSERT_EQ(host.commands().size(), 2u);
    EXPECT_EQ(host.commands()[0]->m_codes.size(), 2u);
    EXPECT_TRUE(host.errorTexts().empty());
}

} // namespace
