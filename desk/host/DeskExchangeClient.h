#pragma once

#include "desk/config/DeskConfig.h"
#include "orderservice/platform/ExchangeClient.h"

#include <map>
#include <vector>

namespace desk {

/// The instruments of a desk folder. Any thread; the content does not change. Each "has" function finds only
/// instruments of its own kind. A derivative is found by its plain code and by its key. The trading day is
/// the machine's date.
class CDeskExchangeClient : public TC::CExchangeClient {
public:
    explicit CDeskExchangeClient(const std::vector<CInstrumentEntry>& instruments);

    bool hasStock(const QString& key) override { return has(EInstrumentKind::Stock, key); }
    bool hasFuture(const QString& name) override { return has(EInstrumentKind::Future, name); }
    bool hasOption(const QString& name) override { return has(EInstrumentKind::StockOption, name); }
    bool hasFutureOption(const QString& name) override { return has(EInstrumentKind::FutureOption, name); }
    bool hasSkstock(const QString& key) override { return has(EInstrumentKind::Sgt, key); }
    bool hasHkstock(const QString& key) override { return has(EInstrumentKind::Hgt, key); }
    bool hasGold(const QString& key) override { return has(EInstrumentKind::Gold, key); }
    bool hasNeeq(const QString& key) override { return has(EInstrumentKind::Neeq, key); }
    TC::CInstrumentDetailPtr getCodeInfo(const QString& stockKey) override;
    std::string getMaxTradingDay() override;

    /// The instruments that accounts of this kind may have positions in. Several names of an instrument give
    /// several entries.
    std::vector<TC::CInstrumentDetailPtr> heldBy(TC::EQDBrokerType broker) const;

private:
    struct CKnown {
        EInstrumentKind kind;
        TC::CInstrumentDetailPtr detail;
    };
    bool has(EInstrumentKind kind, const QString& name) const;

    std::map<QString, CKnown> m_known; ///< by key and, for derivatives, by plain code
};

} // namespace desk
