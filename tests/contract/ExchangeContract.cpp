#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/InstrumentTypes.h"

#include "orderservice/base/Unset.h"
#include "orderservice/contract/ContractFixture.h"
#include "orderservice/contract/Suites.h"

#include <QDate>

#include <atomic>
#include <vector>

void contract::linkExchangeSuites() {}

namespace {

using namespace TC;
using contract::EHostTrait;

class ExchangeContract : public contract::CContractTest {
protected:
    CExchangeClient& exchange() const { return CExchangeClient::instance(); }
    /// A list of the host and the instrument on it.
    struct CList {
        bool (CInstrumentDirectory::*isKnown)(const QString&);
        QString key;
        EHostTrait trait;
    };
    std::vector<CList> lists() const {
        return {{&CExchangeClient::hasFuture, world().futureKey, EHostTrait::Futures},
                {&CExchangeClient::hasOption, world().optionKey, EHostTrait::StockOptions},
                {&CExchangeClient::hasFutureOption, world().futureOptionKey, EHostTrait::FutureOptions},
                {&CExchangeClient::hasSkstock, world().sgtKey, EHostTrait::ShenzhenConnect},
                {&CExchangeClient::hasHkstock, world().hgtKey, EHostTrait::ShanghaiConnect},
                {&CExchangeClient::hasGold, world().goldKey, EHostTrait::Gold},
                {&CExchangeClient::hasNeeq, world().neeqKey, EHostTrait::ShareTransfer}};
    }
};
CONTRACT_SUITE(ExchangeContract);

TEST_P(ExchangeContract, KnownStockHasARecord) {
    EXPECT_TRUE(exchange().hasStock(world().stockKey));
    const CInstrumentDetailPtr detail = exchange().getCodeInfo(world().stockKey);
    ASSERT_NE(detail, nullptr);
    EXPECT_EQ(detail->m_strMarket, world().market);
    EXPECT_EQ(detail->m_strCode, world().code);
}

TEST_P(ExchangeContract, UnknownStockHasNoRecord) {
    for (const QString& key : {world().unknownStockKey, QString()}) {
        EXPECT_FALSE(exchange().hasStock(key)) << key.toStdString();
        EXPECT_EQ(exchange().getCodeInfo(key), nullptr) << key.toStdString();
    }
}

TEST_P(ExchangeContract, MarketHasAnInstrumentUnlessTheHostLacksIt) {
    const auto all = lists();
    for (std::size_t i = 0; i < all.size(); ++i)
        EXPECT_EQ(all[i].key.isEmpty(), !has(all[i].trait)) << "list " << i;
}

TEST_P(ExchangeContract, InstrumentIsOnlyOnItsOwnListAndHasARecord) {
    const auto all = lists();
    for (std::size_t own = 0; own < all.size(); ++own) {
        if (all[own].key.isEmpty()) continue;
        for (std::size_t i = 0; i < all.size(); ++i)
            EXPECT_EQ((exchange().*all[i].isKnown)(all[own].key), i == own) << own << " on list " << i;
        EXPECT_FALSE(exchange().hasStock(all[own].key)) << own;
        EXPECT_NE(exchange().getCodeInfo(all[own].key), nullptr) << own;
    }
}

TEST_P(ExchangeContract, UnknownKeyIsOnNoList) {
    for (const CList& list : lists()) {
        for (const QString& key : {world().unknownStockKey, world().stockKey, QString()})
            EXPECT_FALSE((exchange().*list.isKnown)(key)) << key.toStdString();
    }
}

TEST_P(ExchangeContract, TradingDayIsADate) {
    const QString day = QString::fromStdString(exchange().getMaxTradingDay());
    EXPECT_EQ(day.size(), 8);
    EXPECT_TRUE(QDate::fromString(day, QStringLiteral("yyyyMMdd")).isValid()) << day.toStdString();
}

TEST_P(ExchangeContract, ManyThreadsMayAskAtOnce) {
    std::atomic<int> wrong{0};
    onManyThreads([&] {
        if (!exchange().hasStock(world().stockKey) || !exchange().getCodeInfo(world().stockKey)) ++wrong;
        if (exchange().getMaxTradingDay().size() != 8) ++wrong;
        for (const CList& list : lists()) {
            const bool isKnown = (exchange().*list.isKnown)(list.key);
            if (isKnown == list.key.isEmpty()) ++wrong;
        }
        if (!knservice::StockTypeCenter::isTypedStock(knservice::kTypeTradableStock, world().market,
                                                      world().code)) {
            ++wrong;
        }
    });
    EXPECT_EQ(wrong.load(), 0);
}

class InstrumentTypesContract : public contract::CContractTest {};
CONTRACT_SUITE(InstrumentTypesContract);

TEST_P(InstrumentTypesContract, StockIsTradable) {
    using knservice::StockTypeCenter;
    EXPECT_TRUE(StockTypeCenter::isTypedStock(knservice::kTypeTradableStock, world().market, world().code));
    EXPECT_TRUE(knservice::isTypedStock(knservice::kTypeTradableStock, world().market, world().code, ""));
}

TEST_P(InstrumentTypesContract, UnknownInstrumentOrTypeIsNotTyped) {
    const std::string unknown = world().unknownStockKey.mid(2).toStdString();
    EXPECT_FALSE(knservice::isTypedStock(knservice::kTypeTradableStock, world().market, unknown, ""));
    EXPECT_FALSE(knservice::isTypedStock(knservice::kTypeTradableStock, "", "", ""));
    EXPECT_FALSE(knservice::isTypedStock(-12345, world().market, world().code, ""));
}

TEST_P(InstrumentTypesContract, UnitsAreAtLeastOne) {
    const std::string codes[] = {world().code, world().unknownStockKey.mid(2).toStdString(), ""};
    const EOperationType operations[] = {EOperationType::Buy, EOperationType::Sell,
                                         unsetEnum<EOperationType>()};
    for (const std::string& code : codes) {
        for (const EOperationType operation : operations) {
            EXPECT_GE(knservice::getTradeMinUnit(world().market, code, operation), 1) << code;
        }
        EXPECT_GE(knservice::getUiMinUnit(world().market, code, true), 1) << code;
        EXPECT_GE(knservice::getUiMinUnit(world().market, code, false), 1) << code;
    }
}

TEST_P(InstrumentTypesContract, AnotherThreadSeesTheSameUnit) {
    int seen = 0;
    onAnotherThread(
        [&] { seen = knservice::getTradeMinUnit(world().market, world().code, EOperationType::Buy); });
    EXPECT_EQ(seen, knservice::getTradeMinUnit(world().market, world().code, EOperationType::Buy));
}

} // namespace
