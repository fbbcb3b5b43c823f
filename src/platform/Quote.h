#pragma once

#include "base/Unset.h"
#include "platform/HostService.h"
#include "records/Enums.h"

#include <QString>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

namespace TC {

/// Settings of automatic prices; the host's. This system always passes an empty pointer.
class CAutoPriceParam;

/// One quote. The host makes it and never changes it once it is shared. Prices are in currency units; a price
/// that does not exist is kUnsetDouble.
class CPriceData {
public:
    virtual ~CPriceData() = default;

    /// The price of the type as quoted.
    virtual double getOriginPrice(EPriceType priceType, EOperationType operation) const = 0;
    /// The price to work out volumes and funds with.
    virtual double getPriceForCalc(EPriceType priceType, EOperationType operation, int orderType,
                                   const boost::shared_ptr<CAutoPriceParam>& autoPrice) const = 0;
    /// The price to put on the order.
    virtual double getPriceForOrder(EPriceType priceType, EOperationType operation, int orderType,
                                    const boost::shared_ptr<CAutoPriceParam>& autoPrice) const = 0;

    double m_dLastPrice = kUnsetDouble;
    double m_dFallbackPrice = kUnsetDouble; ///< stands in where no price for calculation exists

    /// Figures of the day's trading. All three at zero: the instrument does not trade.
    double m_dDayFigure1 = 0;
    double m_dDayFigure2 = 0;
    int m_nDayCount = 0;
};

using CPriceDataPtr = boost::shared_ptr<const CPriceData>;

/// Kind of a quote subscription; 0 is the plain one.
enum class ESubscribeType : int { Plain = 0 };

/// A running quote subscription, which ends when the last pointer to it goes.
class CQuoteRequest {
public:
    virtual ~CQuoteRequest() = default;

    using CCallback = boost::function<void(const CPriceDataPtr&)>;

    /// CQuoteClient::subscribe of the installed host.
    static boost::shared_ptr<CQuoteRequest> makeRequest(const QString& stockKey, const CCallback& callback,
                                                        ESubscribeType type);
};

/// The client's quotes. Any thread.
class CQuoteClient : public CHostService<CQuoteClient> {
public:
    static constexpr const char* kServiceName = "CQuoteClient";

    /// The latest quote of an instrument, or an empty pointer while there is none. Does not wait.
    virtual CPriceDataPtr getStockPrice(const QString& stockKey) = 0;

    /// Starts a subscription, so that quotes begin to come and go on coming while the request is held. The
    /// call-back may be empty. Does not wait. Never an empty pointer, also for an unknown instrument.
    virtual boost::shared_ptr<CQuoteRequest>
    subscribe(const QString& stockKey, const CQuoteRequest::CCallback& callback, ESubscribeType type) = 0;
};

} // namespace TC
