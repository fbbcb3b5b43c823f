#pragma once

#include "desk/config/DeskConfig.h"
#include "orderservice/platform/Quote.h"

namespace desk {

/// A quote of the desk, for the order service. Immutable.
///
/// A price type that names a level gives the level's price; the latest type gives the last price. The price
/// is unset if the level is empty or if quotes do not have the price type. The price for calculations equals
/// the price for orders. If it is unset, the order service uses the fallback: the lower limit of the day.
///
/// The limits of the day are those of the instrument. Without a lower limit the fallback is kLowestPrice, so
/// that every price which the paper broker takes is within the limits. The desk has no trading phases.
///
/// The desk does not count the trades of the day. An instrument is reported as traded if its book has a
/// price. An instrument with an empty book is reported as suspended.
class CDeskPriceData : public TC::CPriceData {
public:
    /// The smallest price that the paper broker takes.
    static constexpr double kLowestPrice = 0.0001;

    explicit CDeskPriceData(const CQuoteEntry& quote, const CInstrumentEntry& instrument = {});

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
