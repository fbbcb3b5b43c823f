#include "desk/host/DeskQuoteClient.h"

#include "desk/market/DeskPriceData.h"

#include <boost/make_shared.hpp>

#include <utility>
#include <vector>

namespace desk {

/// Ends the subscription when it is destroyed.
class CDeskQuoteClient::CRequest final : public TC::CQuoteRequest {
public:
    CRequest(std::shared_ptr<CCallbacks> callbacks, const std::string& key, const CCallback& callback)
        : m_callbacks(std::move(callbacks)) {
        const std::lock_guard lock(m_callbacks->m_mutex);
        m_own = m_callbacks->m_byKey.emplace(key, callback);
    }
    ~CRequest() override {
        std::multimap<std::string, CCallback>::node_type own; // destroyed after the unlock
        const std::lock_guard lock(m_callbacks->m_mutex);
        own = m_callbacks->m_byKey.extract(m_own);
    }
    CRequest(const CRequest&) = delete;
    CRequest& operator=(const CRequest&) = delete;

private:
    const std::shared_ptr<CCallbacks> m_callbacks;
    std::multimap<std::string, CCallback>::iterator m_own;
};

TC::CPriceDataPtr CDeskQuoteClient::getStockPrice(const QString& stockKey) {
    const auto quote = m_source.quote(stockKey.toStdString());
    if (!quote) return nullptr;
    const auto instrument = m_source.instrument(stockKey.toStdString());
    return boost::make_shared<CDeskPriceData>(*quote, instrument.value_or(CInstrumentEntry()));
}

boost::shared_ptr<TC::CQuoteRequest> CDeskQuoteClient::subscribe(const QString& stockKey,
                                                                 const TC::CQuoteRequest::CCallback& callback,
                                                                 TC::ESubscribeType) {
    if (!callback) return boost::make_shared<TC::CQuoteRequest>();
    const std::string name = stockKey.toStdString();
    const auto quote = m_source.quote(name); // a derivative may be named by its plain code
    return boost::make_shared<CRequest>(m_callbacks, quote ? quote->stockKey : name, callback);
}

void CDeskQuoteClient::publish(const std::string& stockKey) {
    std::vector<TC::CQuoteRequest::CCallback> callbacks;
    {
        const std::lock_guard lock(m_callbacks->m_mutex);
        const auto [begin, end] = m_callbacks->m_byKey.equal_range(stockKey);
        for (auto each = begin; each != end; ++each)
            callbacks.push_back(each->second);
    }
    if (callbacks.empty()) return;
    const TC::CPriceDataPtr price = getStockPrice(QString::fromStdString(stockKey));
    for (const TC::CQuoteRequest::CCallback& callback : callbacks)
        callback(price);
}

} // namespace desk
