#include "tests/check/FamilyFixture.h"

#include <cmath>
#include <limits>

namespace {

using namespace TC;

class CreditCheck : public FamilyFixture {
protected:
    inline static const QString kCode = QStringLiteral("600000");

    CreditCheck()
        : FamilyFixture(EOrderStrategyTradeType::Credit, &COrderServiceBase::checkAndFillOrderCredit) {}

    /// Gives each kind of price a different value, and lets the operation of number 32 repay money.
    boost::shared_ptr<fake::CQuote> quoteInParts() {
        const auto quote = addQuote(QStringLiteral("SH600000"), 10);
        quote->otherCalc = 11;
        quote->otherOrder = 12;
        return quote;
    }
    void repayMoney() { host.rules.directRepays = {static_cast<int>(orderTypeToOperationType(32))}; }
    std::vector<double> moneyAmounts() const {
        std::vector<double> amounts;
        for (const fake::CMoneySplitCall& call : host.trade.moneySplits)
            amounts.push_back(call.amount);
        return amounts;
    }
    static COrderParam money(double amount) {
        return COrderBuilder(32).line(QStringLiteral("600000"), 5).set([=](auto& o) {
            o.m_orders[0].m_dAmount = amount;
        });
    }
};

TEST_F(CreditCheck, TakesItsNumbers) {
    EXPECT_EQ(acceptedNumbers(kCode), numbers({{23, 24}, {27, 32}, {37, 39}}));
}

TEST_F(CreditCheck, SeveralLinesHaveTheTextOfTheNumber) {
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 1, 1).line(kCode, 1, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单指令不合法!"));
}

// Trades.

TEST_F(CreditCheck, TradeHasItsEntrustType) {
    for (const int number : {23, 24, 27, 28}) {
        ASSERT_TRUE(check(COrderBuilder(number).line(kCode, 10.5, 1000))) << number;
        ASSERT_EQ(codes.size(), 2u) << number;
        EXPECT_EQ(static_cast<int>(codes[0].m_eEntrustType),
                  static_cast<int>(codes[0].m_eOperationType) + 500);
        EXPECT_TRUE(isUnset(codes[0].m_nQuantityKind));
    }
}

TEST_F(CreditCheck, SplitOfATradeLearnsNoInstrument) {
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 1000)));
    EXPECT_EQ(host.trade.splitCalls[0].market, "");
    EXPECT_EQ(host.trade.splitCalls[0].code, "");
    EXPECT_EQ(codes[0].m_stock.m_strCode, "600000");
}

TEST_F(CreditCheck, AmountIsRoundedToTheUnitAndParPricesDoNotExist) {
    host.types.types.insert({126, "SH600000"});
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5), strategy().amount(100000)));
    EXPECT_EQ(splitVolume(), 9500);
}

TEST_F(CreditCheck, SettingOfATradeIsTakenAnew) {
    const EOrderType algo = static_cast<EOrderType>(7);
    host.rules.algoPlatforms[algo] = ETradePlatform::Plain;
    COrderSetting seen;
    host.rules.onSetting = [&](const COrderSetting& setting) { seen = setting; };
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100).set([&](auto& o) {
        o.m_strOrderSetting = "text";
        o.m_eOrderType = algo;
        o.m_orders[0].m_ePriceType = EPriceType::Latest;
    })));
    EXPECT_FALSE(host.rules.settingTexts.empty());
    EXPECT_NE(seen.m_eOrderType, algo);
    EXPECT_EQ(seen.m_ePriceType, EPriceType::Specified); // the line's price type is ignored
}

TEST_F(CreditCheck, TextOfATradeOverridesThePriceType) {
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100).set([](auto& o) {
        o.m_strOrderSetting = "price=5";
        o.m_orders[0].m_ePriceType = EPriceType::Buy1;
    })));
    EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Latest);
    EXPECT_EQ(host.rules.settingTexts, (std::vector<QString>(2, QStringLiteral("price=5"))));
}

TEST_F(CreditCheck, UnusablePriceNamesTheCodeAlsoWhereItIsEmpty) {
    host.user.invalidPriceTypes = {EPriceType::Latest};
    EXPECT_FALSE(check(COrderBuilder(23), priced(EPriceType::Latest)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　证券 [] 价5()无效, 无法下单!"));
    host.orders.errors.clear();
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 1, 1), priced(EPriceType::Latest)));
    EXPECT_EQ(onlyError(),
              QStringLiteral("[文件单]　证券 [SH600000] 价5()无效, 无法下单!")); // empty parentheses
}

TEST_F(CreditCheck, QuotedPricesOfATradeAreWaitedFor) {
    host.quotes.quotes.clear();
    EXPECT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_TRUE(clock.sleeps().empty());
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 10.5, 100), priced(EPriceType::Latest)));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
}

TEST_F(CreditCheck, TradeIsSplitAtTheCalculationPriceAndGoesOutAtTheOrderPrice) {
    const auto quote = quoteInParts();
    ASSERT_TRUE(check(COrderBuilder(27).line(kCode, 1, 100), priced(EPriceType::Latest)));
    EXPECT_EQ(host.trade.splitCalls.at(0).price, 11);
    EXPECT_EQ(host.trade.splitCalls.at(0).operation, orderTypeToOperationType(27));
    EXPECT_EQ(codes.at(0).m_dPrice, 12);
    for (const fake::CPriceCall& call : quote->calls.all()) {
        EXPECT_EQ(call.number, 0);
        EXPECT_EQ(call.operation, orderTypeToOperationType(27));
    }
}

TEST_F(CreditCheck, AmountFallsToTheUnitOfTheInstrument) {
    host.types.units["SH600000"] = 300;
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10), strategy().amount(10000)));
    EXPECT_EQ(splitVolume(), 900);
    host.types.types.insert({1172, "SH600000"});
    host.types.uiUnits["SH600000"] = 7;
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10), strategy().amount(10000)));
    EXPECT_EQ(splitVolume(), 994);
}

TEST_F(CreditCheck, CodesAreLookedUpByMarketAndCodeWithNothingBetween) {
    host.rules.keySeparator = QStringLiteral(".");
    EXPECT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_TRUE(check(COrderBuilder(37).line(kCode, 10.5, 100)));
    EXPECT_TRUE(check(COrderBuilder(29).line(kCode, 10.5, 100)));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>(3, QStringLiteral("SH600000")));
    EXPECT_EQ(host.quotes.reads.size(), 1u);
    host.exchange.stocks = {{QStringLiteral("SH.600000"), boost::make_shared<CInstrumentDetail>()}};
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
}

TEST_F(CreditCheck, AccountThatIsMissingGetsNoRecord) {
    host.user.nullAccount = true;
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{1, 2, 3}; };
    host.trade.moneyOverride = {};
    repayMoney();
    for (const int number : {23, 29, 32}) {
        ASSERT_TRUE(check(COrderBuilder(number).line(kCode, 10.5, 6))) << number;
        EXPECT_EQ(codes.size(), 2u) << number;
    }
    host.trade.moneyOverride = {1, 2, 3};
    ASSERT_TRUE(check(money(6)));
    EXPECT_EQ(codes.size(), 2u);
}

TEST_F(CreditCheck, UnknownCodeIsRefusedButForRepaymentsOfMoney) {
    for (const int number : {23, 29, 30, 31, 37, 39}) {
        EXPECT_FALSE(check(COrderBuilder(number).line(QStringLiteral("nobody"), 1, 1))) << number;
        EXPECT_EQ(lastError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [nobody] 不合法!"));
    }
    EXPECT_TRUE(check(COrderBuilder(32).line(QStringLiteral("nobody"), 1, 1)));
    EXPECT_EQ(host.quotes.subscribed.back(), QStringLiteral("nobody"));
}

// Repayments.

TEST_F(CreditCheck, DirectRepaymentSplitsMoney) {
    const int operation = static_cast<int>(orderTypeToOperationType(32));
    host.rules.directRepays = {operation};
    ASSERT_TRUE(check(COrderBuilder(32).line(QString(), 5).set([](auto& o) {
        o.m_orders[0].m_dAmount = 1000.5;
        o.m_strTradeText3 = "repay";
    })));
    EXPECT_EQ(moneyAmounts(), std::vector<double>{1000.5});
    ASSERT_EQ(codes.size(), 2u);
    EXPECT_DOUBLE_EQ(codes[0].m_dQuantity, 600.3);
    EXPECT_EQ(codes[0].m_nVolume, 600);
    EXPECT_EQ(codes[0].m_nQuantityKind, 48);
    EXPECT_EQ(codes[0].m_strRepayText, "repay");
    EXPECT_EQ(static_cast<int>(codes[0].m_eEntrustType), operation + 500);
    EXPECT_EQ(codes[0].m_dPrice, 5); // the calculation price
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(CreditCheck, SplitOfMoneyLearnsAccountsPositionAndOperation) {
    repayMoney();
    ASSERT_TRUE(check(money(1000),
                      strategy().set([](auto& s) { s.m_ePositionType = static_cast<EPositionType>(3); })));
    ASSERT_EQ(host.trade.moneySplits.size(), 1u);
    const fake::CMoneySplitCall& call = host.trade.moneySplits[0];
    EXPECT_EQ(call.accounts, (std::vector<std::string>{"A1", "A2"}));
    EXPECT_EQ(call.ratios, (std::vector<double>{0.6, 0.4}));
    EXPECT_EQ(static_cast<int>(call.positionType), 3);
    EXPECT_EQ(static_cast<int>(call.operation), 25);
}

TEST_F(CreditCheck, HostStampsRepaymentsWithTheWholePartOfTheirValue) {
    repayMoney();
    host.rules.onFixTimeRange = [](CCodeOrderParam& record) { record.m_nOverFreqMode = 8; };
    for (const int number : {29, 32}) {
        ASSERT_TRUE(check(COrderBuilder(number).line(kCode, 5, 1001).set([](auto& o) {
            o.m_orders[0].m_dAmount = 1001.5;
        })));
        ASSERT_EQ(codes.size(), 2u) << number;
        const auto calls = host.rules.settingCalls.all();
        EXPECT_EQ(calls.at(calls.size() - 2).volume, number == 32 ? 600 : 601) << number;
        EXPECT_EQ(calls.back().volume, 400) << number;
        EXPECT_EQ(calls.back().operation, orderTypeToOperationType(number));
        for (const CCodeOrderParam& record : codes)
            EXPECT_EQ(record.m_nOverFreqMode, 8) << number;
    }
}

TEST_F(CreditCheck, DirectRepaymentFallsBackToTheStrategy) {
    host.rules.directRepays = {static_cast<int>(orderTypeToOperationType(32))};
    ASSERT_TRUE(check(COrderBuilder(32).line(QString(), 5, 9), strategy().amount(700)));
    ASSERT_TRUE(check(COrderBuilder(32).line(QString(), 5, 9), strategy().volume(30)));
    EXPECT_EQ(moneyAmounts(), (std::vector<double>{700, 30}));
}

TEST_F(CreditCheck, OtherRepaymentsSplitVolumes) {
    ASSERT_TRUE(check(COrderBuilder(29).line(kCode, 10.5, 1000)));
    EXPECT_EQ(splitVolume(), 1000);
    EXPECT_EQ(host.trade.splitCalls[0].code, "");
    ASSERT_EQ(codes.size(), 2u);
    EXPECT_EQ(codes[0].m_nVolume, 600);
    EXPECT_EQ(codes[0].m_dQuantity, 600);
    ASSERT_TRUE(check(COrderBuilder(29).line(kCode, 10.5), strategy().amount(55.9)));
    EXPECT_EQ(splitVolume(), 55);
}

TEST_F(CreditCheck, RepaymentOfNothingDropsTheAccountSilently) {
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{0, 5}; };
    ASSERT_TRUE(check(COrderBuilder(29).line(kCode, 0, 5))); // a price of zero is not refused either
    ASSERT_EQ(codes.size(), 1u);
    EXPECT_EQ(codes[0].m_account->getKey(), "A2");
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(CreditCheck, RepaymentKeepsItsOperationWhateverTheHostWrites) {
    host.rules.onFixTimeRange = [](CCodeOrderParam& record) {
        record.m_eOperationType = EOperationType::Buy;
    };
    ASSERT_TRUE(check(COrderBuilder(29).line(kCode, 5, 100)));
    ASSERT_FALSE(codes.empty());
    EXPECT_EQ(codes[0].m_eOperationType, orderTypeToOperationType(29));
}

/// Repayments have no test of the price, so "nan" from a file could reach the split and the record.
TEST_F(CreditCheck, RepaymentAtAPriceThatIsNoNumberHasNone) {
    for (const double price : {std::nan(""), HUGE_VAL}) {
        codes.clear();
        ASSERT_TRUE(check(COrderBuilder(29).line(kCode, price, 100)));
        ASSERT_FALSE(codes.empty());
        EXPECT_EQ(codes[0].m_dPrice, kUnsetDouble);
        EXPECT_EQ(host.trade.splitCalls.back().price, kUnsetDouble);
    }
}

TEST_F(CreditCheck, FailedSplitsAreReported) {
    host.rules.directRepays = {static_cast<int>(orderTypeToOperationType(32))};
    host.trade.moneyOverride = {1};
    EXPECT_FALSE(check(COrderBuilder(32).line(QString(), 5)));
    EXPECT_EQ(lastError(), QStringLiteral("[文件单]　分单失败: 没有金额"));
    host.trade.split = [](const fake::CSplitCall&, utils::KNError& error) {
        error = utils::KNError(1, "why");
        return std::vector<int>{};
    };
    EXPECT_FALSE(check(COrderBuilder(29).line(kCode, 5, 5)));
    EXPECT_EQ(lastError(), QStringLiteral("[文件单]　分单失败: why"));
}

TEST_F(CreditCheck, RepaymentsCarryTheCalculationPrice) {
    quoteInParts();
    repayMoney();
    for (const int number : {29, 32}) {
        ASSERT_TRUE(check(COrderBuilder(number).line(kCode, 1, 100), priced(EPriceType::Latest)));
        EXPECT_EQ(codes.at(0).m_dPrice, 11) << number;
        EXPECT_EQ(codes.at(0).m_stock.m_strCode, "600000") << number;
        EXPECT_EQ(host.rules.settingCalls.all().back().price, 12) << number;
    }
    EXPECT_EQ(host.trade.splitCalls.at(0).price, 11);
    EXPECT_EQ(host.trade.splitCalls.at(0).priceType, EPriceType::Latest);
}

TEST_F(CreditCheck, RepaymentsNeitherWaitForQuotesNorTestPrices) {
    host.quotes.quotes.clear();
    host.user.invalidPriceTypes = {EPriceType::Latest};
    repayMoney();
    for (const int number : {29, 30, 31, 32, 39}) {
        ASSERT_TRUE(check(COrderBuilder(number).line(kCode, 1, 100), priced(EPriceType::Latest))) << number;
        EXPECT_EQ(codes.size(), 2u) << number;
        EXPECT_EQ(codes.at(0).m_dPrice, kUnsetDouble) << number;
    }
    EXPECT_TRUE(clock.sleeps().empty());
    EXPECT_TRUE(host.errorTexts().empty());
    EXPECT_TRUE(host.user.priceTypeCalls.all().empty());
}

TEST_F(CreditCheck, SettingOfARepaymentTakesTheOrdersKindAndTheLinesPriceType) {
    const auto order = [](int kind) {
        return COrderBuilder(29).line(kCode, 1, 100).set([=](auto& o) {
            o.m_strOrderSetting = "text";
            o.m_eOrderType = static_cast<EOrderType>(kind);
            o.m_orders[0].m_ePriceType = EPriceType::Latest;
        });
    };
    host.rules.algoPlatforms[static_cast<EOrderType>(7)] = ETradePlatform::Plain;
    ASSERT_TRUE(check(order(4)));
    EXPECT_EQ(static_cast<int>(codes.at(0).m_eOrderType), 4);
    EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Latest);
    EXPECT_EQ(host.rules.settingTexts.size(), 1u);
    ASSERT_TRUE(check(order(7)));
    EXPECT_EQ(static_cast<int>(codes.at(0).m_eOrderType), 7);
    EXPECT_EQ(host.rules.settingTexts.size(), 1u); // the text of an algorithm is not read
}

TEST_F(CreditCheck, AmountThatIsNoNumberIsRefusedByTheSplit) {
    repayMoney();
    for (const double amount :
         {std::nan(""), std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
        host.orders.errors.clear();
        EXPECT_FALSE(check(money(amount), strategy().amount(700))) << amount;
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　分单失败: 没有金额")) << amount;
        EXPECT_TRUE(codes.empty());
    }
}

TEST_F(CreditCheck, AmountOfTheStrategyThatIsNoNumberIsRefusedByTheSplit) {
    repayMoney();
    for (const double amount : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        host.orders.errors.clear();
        EXPECT_FALSE(check(COrderBuilder(32).line(QString(), 5), strategy().amount(amount))) << amount;
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　分单失败: 没有金额")) << amount;
        EXPECT_EQ(host.trade.moneySplits.back().amount, kUnsetDouble) << amount;
    }
}

TEST_F(CreditCheck, PartsOfMoneyMustBeNumbersOfTheAmountsSign) {
    repayMoney();
    for (const double part : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        host.orders.errors.clear();
        host.trade.moneyOverride = {10, part};
        EXPECT_FALSE(check(money(1000))) << part;
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　分单失败: 没有金额")) << part;
        EXPECT_TRUE(codes.empty()) << part;
    }
    host.trade.moneyOverride = {10, -1010};
    EXPECT_FALSE(check(money(-1000)));
    EXPECT_TRUE(codes.empty());
}

TEST_F(CreditCheck, BadPartsOfMoneyHaveAReasonThoughTheHostGivesNone) {
    repayMoney();
    host.trade.moneyOverrideFails = false;
    const std::vector<std::vector<double>> splits{{10, std::nan("")}, {HUGE_VAL, 10}, {10, -1010}};
    for (const std::vector<double>& parts : splits) {
        host.orders.errors.clear();
        host.trade.moneyOverride = parts;
        EXPECT_FALSE(check(money(parts.back() < 0 ? -1000 : 1000)));
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　分单失败: 金额无效"));
        EXPECT_TRUE(codes.empty());
    }
}

TEST_F(CreditCheck, PartsOfAVolumeBelowZeroAreRefused) {
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{3, -8}; };
    ASSERT_TRUE(check(COrderBuilder(29).line(kCode, 5, -5)));
    EXPECT_TRUE(codes.empty());
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 5, -5)));
    EXPECT_TRUE(codes.empty());
}

TEST_F(CreditCheck, EveryRouteReadsTheQuoteAtItsBeginning) {
    for (const int number : {29, 32, 37, 38}) {
        host.quotes.reads.clear();
        ASSERT_TRUE(check(COrderBuilder(number).line(kCode, 5, 100))) << number;
        EXPECT_EQ(host.quotes.reads[QStringLiteral("SH600000")], 1) << number;
    }
    host.quotes.reads.clear();
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 5, 100)));
    EXPECT_EQ(host.quotes.reads[QStringLiteral("SH600000")], 2);
}

TEST_F(CreditCheck, ContractNeedsAVolumeThatIsNotBelowZero) {
    EXPECT_FALSE(check(COrderBuilder(37).line(kCode, 1, 5), strategy().volume(-1)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单参数不合法!"));
    EXPECT_TRUE(codes.empty());
}

TEST_F(CreditCheck, ReferencePriceThatIsNoNumberIsNone) {
    const auto detail = boost::make_shared<CInstrumentDetail>();
    detail->m_dReferencePrice = HUGE_VAL;
    host.exchange.others[QStringLiteral("SH600000")] = detail;
    ASSERT_TRUE(check(COrderBuilder(37).line(kCode, 1, 5)));
    EXPECT_EQ(codes.at(0).m_dPrice, kUnsetDouble);
}

TEST_F(CreditCheck, MoneyBeyondAnIntHasAQuantityAndNoVolume) {
    repayMoney();
    ASSERT_TRUE(check(money(1e10)));
    EXPECT_DOUBLE_EQ(codes.at(0).m_dQuantity, 6e9);
    EXPECT_EQ(codes.at(0).m_nVolume, kUnsetInt);
}

TEST_F(CreditCheck, MoneyBelowOneIsRepaid) {
    repayMoney();
    ASSERT_TRUE(check(money(1.5)));
    ASSERT_EQ(codes.size(), 2u);
    EXPECT_DOUBLE_EQ(codes[0].m_dQuantity, 0.9);
    EXPECT_DOUBLE_EQ(codes[1].m_dQuantity, 0.6);
    for (const CCodeOrderParam& record : codes)
        EXPECT_EQ(record.m_nVolume, 0);
}

TEST_F(CreditCheck, OnlyTheRepaymentOfMoneyTakesAnAmountOfTheLine) {
    ASSERT_TRUE(check(COrderBuilder(29).line(kCode, 1).set([](auto& o) { o.m_orders[0].m_dAmount = 900; }),
                      strategy().volume(30)));
    EXPECT_EQ(splitVolume(), 30);
    EXPECT_TRUE(host.trade.moneySplits.empty());
}

// A single contract.

TEST_F(CreditCheck, ContractEndsOnTheAccountThatTheOrderNames) {
    host.user.accounts["A1/x"] = host.user.accounts.at("A2");
    host.user.accounts["A1/x"]->m_nBrokerType = static_cast<int>(EQDBrokerType::Credit);
    ASSERT_TRUE(check(COrderBuilder(37).line(kCode, 1, 5).set([](auto& o) {
        o.m_strAccountKeyPart1 = QStringLiteral("A1");
        o.m_strAccountKeyPart2 = QStringLiteral("x");
        o.m_strTradeText1 = "contract";
    }),
                      strategy().account(QStringLiteral("A1/x")).volume(300)));
    ASSERT_EQ(codes.size(), 1u);
    EXPECT_EQ(codes[0].m_account->getKey(), "A2");
    EXPECT_EQ(codes[0].m_nVolume, 300);
    EXPECT_EQ(codes[0].m_strContractText, "contract");
    EXPECT_EQ(codes[0].m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(codes[0].m_stock.m_strCode, "600000");
    EXPECT_TRUE(host.trade.splitCalls.empty());
}

TEST_F(CreditCheck, ContractHasTheReferencePrice) {
    const auto detail = boost::make_shared<CInstrumentDetail>();
    detail->m_dReferencePrice = 9.87;
    host.exchange.others[QStringLiteral("SH600000")] = detail;
    for (const int number : {37, 38}) {
        ASSERT_TRUE(check(COrderBuilder(number).line(kCode, 1, 5), priced(EPriceType::Latest)));
        EXPECT_EQ(codes.at(0).m_dPrice, 9.87) << number;
        EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Specified) << number;
    }
    EXPECT_TRUE(host.rules.settingCalls.all().empty());
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(CreditCheck, ContractOnAnUnknownInstrumentHasNoPrice) {
    ASSERT_TRUE(check(COrderBuilder(37).line(QString(), 1, 5), strategy().code(QStringLiteral("none"))));
    EXPECT_EQ(codes.at(0).m_dPrice, kUnsetDouble);
    EXPECT_TRUE(isUnset(codes.at(0).m_ePriceType));
    EXPECT_EQ(codes.at(0).m_stock.m_strCode, "");
}

TEST_F(CreditCheck, ContractWithoutAnAccountOfItsOwnHasNone) {
    ASSERT_TRUE(check(COrderBuilder(38).line(kCode, 1, 5)));
    ASSERT_EQ(codes.size(), 1u);
    EXPECT_EQ(codes[0].m_account, nullptr);
}

} // namespace
