#pragma once

#include "desk/config/DeskConfig.h"
#include "orderservice/platform/Quote.h"

namespace desk {

/// A quote of the desk, for the order service. Immutable.
///
/// A price type that names a level gives the level's price; the latest type gives the last price. The price
/// is unset if the level is empty or if quotes do not have the price type. The price for calculations equals
/// the price for orders. If it is unset, the order service uses the fallback: the previous close, or, if that
/// is missing too, the last price.
///
/// The desk does not count the trades of the day. An instrument is reported as traded if its book has a
/// price. An instrument with an empty book is reported as suspended.
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
