#include "orderservice/platform/Quote.h"

#include "orderservice/platform/HostCall.h"

namespace TC {

boost::shared_ptr<CQuoteRequest> CQuoteRequest::makeRequest(const QString& stockKey,
                                                            const CCallback& callback, ESubscribeType type) {
    return hostCall<&CQuoteClient::subscribe>(stockKey, callback, type);
}

} // namespace TC
