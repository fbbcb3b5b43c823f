#pragma once

#include "desk/market/QuoteSource.h"
#include "orderservice/platform/Quote.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace desk {

/// The desk's quotes. Any thread. All quotes are available from the start; a subscription tells of changes.
class CDeskQuoteClient : public TC::CQuoteClient {
public:
    /// The source must outlive the client.
    explicit CDeskQuoteClient(const IQuoteSource& source) : m_source(source) {}

    TC::CPriceDataPtr getStockPrice(const QString& stockKey) override;
    boost::shared_ptr<TC::CQuoteRequest> subscribe(const QString& stockKey,
                                                   const TC::CQuoteRequest::CCallback& callback,
                                                   TC::ESubscribeType type) override;

    /// Calls the callbacks of an instrument whose quote has changed, on the calling thread and without a
    /// lock.
    void publish(const std::string& stockKey);

private:
    /// The callbacks of the running subscriptions, by the key of the instrument. A request may outlive the
    /// client.
    struct CCallbacks {
        std::mutex m_mutex;
        std::multimap<std::string, TC::CQuoteRequest::CCallback> m_byKey;
    };
    class CRequest;

    const IQuoteSource& m_source;
    const std::shared_ptr<CCallbacks> m_callbacks = std::make_shared<CCallbacks>();
};

} // namespace desk
