#pragma once

#include "desk/config/DeskConfig.h"
#include "platform/Quote.h"

namespace desk {

/// A quote of the desk as the order road asks for it. Immutable.
///
/// A level's price type gives the level's price, the latest type the last price. A level that is empty, and
/// every type that no quote has, is unset. The price for calculations is the one for orders; where there is
/// none the road takes the fallback, which is the previous close or, without one, the last price.
///
/// The desk counts no trades of the day. An instrument is shown as traded while its book has a price; one
/// with an empty book is suspended.
class CDeskPriceData : public TC::CPriceData {
public:
    explicit CDeskPriceData(const CQuoteEntry& quote);

    double getOriginPrice(TC::EPriceType type, TC::EOperationType) const override { return priceOf(type); }
    double getPriceForCalc(TC::EPriceType type, TC::EOperationType, int,
                           const boost::shared_ptr<TC::CAutoPriceParam>&) const override {
        return priceOf(type);
    }
    double getPriceForOrder(TC::EPriceType type, TC::EOperationType, int,
                            const boost::shared_ptr<TC::CAutoPriceParam>&) const override {
        return priceOf(type);
    }

private:
    double priceOf(TC::EPriceType type) const;

    CQuoteEntry m_quote;
};

} // namespace desk
