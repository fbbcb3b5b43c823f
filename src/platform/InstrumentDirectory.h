#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Instrument.h"

#include <QString>

namespace TC {

class CExchangeClient;

/// The client's instruments, by market and by key. A part of CExchangeClient, whose comment says when the
/// operations are called.
class ORDERSERVICE_EXPORT CInstrumentDirectory {
public:
    using CService = CExchangeClient; ///< reports show these operations under its name

    /// Whether a stock with this full key exists (market and code joined by qdStockKey). If it exists,
    /// getCodeInfo must know it too.
    virtual bool hasStock(const QString& stockKey) = 0;
    /// Whether the code or key is a known instrument of the market. The default is no, for a host without the
    /// market.
    virtual bool hasFuture(const QString&) { return false; }
    virtual bool hasOption(const QString&) { return false; }
    virtual bool hasFutureOption(const QString&) { return false; }
    virtual bool hasSkstock(const QString&) { return false; } ///< Shenzhen-Hong Kong connect
    virtual bool hasHkstock(const QString&) { return false; } ///< Shanghai-Hong Kong connect
    virtual bool hasGold(const QString&) { return false; }
    virtual bool hasNeeq(const QString&) { return false; } ///< share-transfer market
    /// The instrument's record, or an empty pointer if the key is unknown. It is shared and never changes.
    /// Its market and code are copied into the commands, so neither may be empty.
    virtual CInstrumentDetailPtr getCodeInfo(const QString& stockKey) = 0;

protected:
    virtual ~CInstrumentDirectory() = default;
};

} // namespace TC
