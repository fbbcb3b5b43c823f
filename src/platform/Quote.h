#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/Unset.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/records/Enums.h"

#include <QString>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

namespace TC {

/// Settings of automatic prices; the host defines them. The library always passes an empty pointer.
class CAutoPriceParam;

/// One quote. The host creates it and never changes it after it is shared. Prices are in currency units and
/// above 0; a price that does not exist is kUnsetDouble. The operations may be called from any thread, return
/// at once and do not throw. autoPrice is always empty.
class ORDERSERVICE_EXPORT CPriceData {
public:
    virtual ~CPriceData() = default;

    /// The quoted price of the price type. The library uses it to decide whether the quote is sufficient for
    /// the order.
    virtual double getOriginPrice(EPriceType priceType, EOperationType operation) const = 0;
    /// The price used to calculate volumes and funds. orderType is 0.
    virtual double getPriceForCalc(EPriceType priceType, EOperationType operation, int orderType,
                                   const boost::shared_ptr<CAutoPriceParam>& autoPrice) const = 0;
    /// The price that is put into the order. orderType is 0.
    virtual double getPriceForOrder(EPriceType priceType, EOperationType operation, int orderType,
                                    const boost::shared_ptr<CAutoPriceParam>& autoPrice) const = 0;

    double m_dLastPrice = kUnsetDouble;
    double m_dFallbackPrice = kUnsetDouble; ///< used if there is no price for calculation; function
                                            ///< trading takes it for the lower limit of the day
    double m_dUpperLimit = kUnsetDouble;    ///< the upper limit of the day
    double m_dPhase = 0;                    ///< number of the instrument's trading phase
    double m_dPhasePrice = kUnsetDouble;    ///< the price that is used in phase 22

    /// Figures of the day's trading. If all three are zero, the instrument is treated as suspended and is
    /// left out of baskets.
    double m_dDayFigure1 = 0;
    double m_dDayFigure2 = 0;
    int m_nDayCount = 0;
};

using CPriceDataPtr = boost::shared_ptr<const CPriceData>;

/// Kind of a quote subscription; 0 is the plain kind.
enum class ESubscribeType : int { Plain = 0 };

/// A running quote subscription. It ends when the last pointer to it is destroyed, on any thread.
class ORDERSERVICE_EXPORT CQuoteRequest {
public:
    virtual ~CQuoteRequest() = default;

    using CCallback = boost::function<void(const CPriceDataPtr&)>;

    /// Calls CQuoteClient::subscribe of the installed host. Any thread.
    static boost::shared_ptr<CQuoteRequest> makeRequest(const QString& stockKey, const CCallback& callback,
                                                        ESubscribeType type);
};

/// The client's quotes. Every operation may be called from any thread and does not throw.
class ORDERSERVICE_EXPORT CQuoteClient : public CHostService<CQuoteClient> {
public:
    static constexpr const char* kServiceName = "CQuoteClient";

    /// The latest quote of an instrument, or an empty pointer while there is none. Does not wait; the library
    /// repeats the call for up to two seconds.
    virtual CPriceDataPtr getStockPrice(const QString& stockKey) = 0;

    /// Starts a subscription. getStockPrice has quotes as long as the caller holds the request. Does not
    /// wait. The callback receives each quote on any thread of the host. It may be empty: only the
    /// confirmation passes one, for its market values. Never returns an empty pointer, even for an unknown
    /// instrument. The caller owns the request.
    virtual boost::shared_ptr<CQuoteRequest>
    subscribe(const QString& stockKey, const CQuoteRequest::CCallback& callback, ESubscribeType type) = 0;
};

} // namespace TC
