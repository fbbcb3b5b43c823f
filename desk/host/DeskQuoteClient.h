#pragma once

#include "desk/market/QuoteSource.h"
#include "orderservice/platform/Quote.h"

namespace desk {

/// The desk's quotes. Any thread. All quotes are available from the start, so a subscription has nothing to
/// do and its callback is never called.
class CDeskQuoteClient : public TC::CQuoteClient {
public:
    /// The source must outlive the client.
    explicit CDeskQuoteClient(const IQuoteSource& source) : m_source(source) {}

    TC::CPriceDataPtr getStockPrice(const QString& stockKey) override;
    boost::shared_ptr<TC::CQuoteRequest> subscribe(const QString& stockKey,
                                                   const TC::CQuoteRequest::CCallback& callback,
                                                   TC::ESubscribeType type) override;

private:
    const IQuoteSource& m_source;
};

} // namespace desk
