#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/Quote.h"

#include <boost/make_shared.hpp>

namespace kit {

/// A quote whose prices are used for orders without change. The host implements getOriginPrice and sets the
/// three figures of the day. While all three are zero, baskets treat the instrument as suspended.
class ORDERSERVICE_EXPORT CPriceDataBase : public TC::CPriceData {
public:
    double getPriceForCalc(TC::EPriceType priceType, TC::EOperationType operation, int,
                           const boost::shared_ptr<TC::CAutoPriceParam>&) const override {
        return getOriginPrice(priceType, operation);
    }
    double getPriceForOrder(TC::EPriceType priceType, TC::EOperationType operation, int,
                            const boost::shared_ptr<TC::CAutoPriceParam>&) const override {
        return getOriginPrice(priceType, operation);
    }
};

/// Quotes that are available without a subscription: subscribe does nothing, and its call-back is never
/// called. So the market values of a confirmation do not change while it is open. A host whose quotes need a
/// subscription overrides subscribe. If it does not, orders that need a quote are refused.
///
/// The host implements getStockPrice. Any thread, like CQuoteClient.
class ORDERSERVICE_EXPORT CQuoteClientBase : public TC::CQuoteClient {
public:
    boost::shared_ptr<TC::CQuoteRequest> subscribe(const QString&, const TC::CQuoteRequest::CCallback&,
                                                   TC::ESubscribeType) override {
        return boost::make_shared<TC::CQuoteRequest>();
    }
};

} // namespace kit
