#pragma once

#include "platform/Quote.h"

#include <boost/make_shared.hpp>

namespace kit {

/// A quote whose prices go out as they are quoted. The host answers getOriginPrice, and sets the figures of
/// the day: while all three are zero, baskets take the instrument for suspended.
class CPriceDataBase : public TC::CPriceData {
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

/// Quotes that are there without being asked for: a subscription does nothing, and its call-back is never
/// called. A host whose quotes must be subscribed to overrides subscribe; if it forgets, orders that need a
/// quote are refused.
///
/// The host answers getStockPrice. Any thread, like CQuoteClient.
class CQuoteClientBase : public TC::CQuoteClient {
public:
    boost::shared_ptr<TC::CQuoteRequest> subscribe(const QString&, const TC::CQuoteRequest::CCallback&,
                                                   TC::ESubscribeType) override {
        return boost::make_shared<TC::CQuoteRequest>();
    }
};

} // namespace kit
