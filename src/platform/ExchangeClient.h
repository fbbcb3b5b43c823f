#pragma once

#include "platform/HostService.h"
#include "records/Instrument.h"

#include <QObject>
#include <QString>

#include <string>

namespace TC {

/// The client's instruments and trading days. Every operation may be called from any thread and answers at
/// once.
class CExchangeClient : public QObject, public CHostService<CExchangeClient> {
    Q_OBJECT
public:
    static constexpr const char* kServiceName = "CExchangeClient";

    /// Whether the full instrument key (market and code joined by qdStockKey) exists.
    virtual bool hasStock(const QString& stockKey) = 0;
    /// Whether the code or key is a known instrument of the market. A host without the market need not
    /// answer.
    virtual bool hasFuture(const QString&) { return false; }
    virtual bool hasOption(const QString&) { return false; }
    virtual bool hasFutureOption(const QString&) { return false; }
    virtual bool hasSkstock(const QString&) { return false; } ///< Shenzhen-Hong Kong connect
    virtual bool hasHkstock(const QString&) { return false; } ///< Shanghai-Hong Kong connect
    virtual bool hasGold(const QString&) { return false; }
    virtual bool hasNeeq(const QString&) { return false; } ///< share-transfer market
    /// The instrument's record, or an empty pointer where the key is unknown.
    virtual CInstrumentDetailPtr getCodeInfo(const QString& stockKey) = 0;
    /// The latest trading day as text, "yyyyMMdd".
    virtual std::string getMaxTradingDay() = 0;

signals:
    /// A new trading day has begun. The host may emit it on any thread and registers std::string.
    void sigNewTradingDate(std::string date);
};

} // namespace TC
