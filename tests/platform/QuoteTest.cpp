#include "orderservice/platform/Quote.h"

#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

TEST(Quote, RequestIsASubscriptionOfTheInstalledHost) {
    CFakeHost host;
    auto request = CQuoteRequest::makeRequest(QStringLiteral("SH600000"), {}, ESubscribeType::Plain);
    ASSERT_NE(request, nullptr);
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("SH600000")});
    EXPECT_EQ(host.quotes.liveSubscriptions.load(), 1);
    auto second = request;
    request.reset();
    EXPECT_EQ(host.quotes.liveSubscriptions.load(), 1);
    second.reset();
    EXPECT_EQ(host.quotes.liveSubscriptions.load(), 0);
}

TEST(Quote, NewQuoteHasNoPrices) {
    const fake::CQuote quote;
    EXPECT_TRUE(isInvalidPrice(quote.m_dLastPrice));
    EXPECT_TRUE(isInvalidPrice(quote.m_dFallbackPrice));
}

} // namespace
