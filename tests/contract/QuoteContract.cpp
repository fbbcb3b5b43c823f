#include "orderservice/platform/Quote.h"

#include "orderservice/contract/ContractFixture.h"
#include "orderservice/contract/Suites.h"

#include <atomic>

void contract::linkQuoteSuites() {}

namespace {

using namespace TC;
using contract::EHostTrait;

class QuoteContract : public contract::CContractTest {
protected:
    CPriceDataPtr quote() const { return CQuoteClient::instance().getStockPrice(world().stockKey); }
};
CONTRACT_SUITE(QuoteContract);

bool isPrice(double price) {
    return !isInvalidPrice(price) && price > 0.0;
}

TEST_P(QuoteContract, KnownStockHasALatestPriceOfEachKind) {
    const CPriceDataPtr data = quote();
    ASSERT_NE(data, nullptr);
    EXPECT_TRUE(isPrice(data->m_dLastPrice));
    EXPECT_TRUE(isPrice(data->getOriginPrice(EPriceType::Latest, EOperationType::Buy)));
    EXPECT_TRUE(isPrice(data->getPriceForCalc(EPriceType::Latest, EOperationType::Buy, 0, {})));
    EXPECT_TRUE(isPrice(data->getPriceForOrder(EPriceType::Latest, EOperationType::Buy, 0, {})));
}

TEST_P(QuoteContract, PriceIsUnsetOrAboveZero) {
    const CPriceDataPtr data = quote();
    ASSERT_NE(data, nullptr);
    for (int type = 0; type <= 50; ++type) {
        const double price =
            data->getPriceForOrder(static_cast<EPriceType>(type), EOperationType::Sell, 0, {});
        EXPECT_TRUE(isInvalidPrice(price) || price > 0.0) << type;
    }
}

TEST_P(QuoteContract, UnknownStockHasNoQuote) {
    EXPECT_EQ(CQuoteClient::instance().getStockPrice(world().unknownStockKey), nullptr);
    EXPECT_EQ(CQuoteClient::instance().getStockPrice(QString()), nullptr);
}

TEST_P(QuoteContract, SubscriptionIsNeverEmpty) {
    const auto callback = [](const CPriceDataPtr&) {};
    for (const QString& key : {world().stockKey, world().unknownStockKey, QString()}) {
        EXPECT_NE(CQuoteClient::instance().subscribe(key, {}, ESubscribeType::Plain), nullptr)
            << key.toStdString();
        EXPECT_NE(CQuoteRequest::makeRequest(key, callback, ESubscribeType::Plain), nullptr)
            << key.toStdString();
    }
}

TEST_P(QuoteContract, SubscriptionMayEndOnAnotherThread) {
    auto request = CQuoteRequest::makeRequest(world().stockKey, {}, ESubscribeType::Plain);
    ASSERT_NE(request, nullptr);
    onAnotherThread([&] { request.reset(); });
    EXPECT_NE(quote(), nullptr);
}

TEST_P(QuoteContract, QuoteDoesNotChangeAfterTheSubscriptionEnds) {
    const CPriceDataPtr data = quote();
    ASSERT_NE(data, nullptr);
    const double price = data->m_dLastPrice;
    CQuoteRequest::makeRequest(world().stockKey, {}, ESubscribeType::Plain).reset();
    EXPECT_EQ(data->m_dLastPrice, price);
}

TEST_P(QuoteContract, ManyThreadsMayAskAtOnce) {
    std::atomic<int> wrong{0};
    onManyThreads([&] {
        const auto request = CQuoteRequest::makeRequest(world().stockKey, {}, ESubscribeType::Plain);
        if (!request || !quote()) ++wrong;
    });
    EXPECT_EQ(wrong.load(), 0);
}

} // namespace
