#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/platform/InstrumentDirectory.h"

#include <QObject>

#include <string>

namespace TC {

/// The client's instruments and trading days. Every operation may be called from any thread, returns at once
/// and does not throw.
///
/// The operations on instruments are in the base class CInstrumentDirectory.
class ORDERSERVICE_EXPORT CExchangeClient : public QObject,
                                            public CHostService<CExchangeClient>,
                                            public CInstrumentDirectory {
    Q_OBJECT
public:
    static constexpr const char* kServiceName = "CExchangeClient";

    /// The latest trading day, "yyyyMMdd".
    virtual std::string getMaxTradingDay() = 0;

signals:
    /// A new trading day has begun, "yyyyMMdd". The host may emit it on any thread.
    void sigNewTradingDate(std::string date);
};

} // namespace TC
