#pragma once

#include "desk/market/QuoteSource.h"
#include "orderservice/platform/InstrumentTypes.h"

namespace desk {

/// Types and units of the folder's instruments. Any thread. An unknown instrument has no type and a unit of
/// 1.
class CDeskInstrumentTypes : public knservice::CInstrumentTypes {
public:
    /// The source must outlive the object.
    explicit CDeskInstrumentTypes(const IQuoteSource& source) : m_source(source) {}

    bool isTypedStock(int type, const std::string& market, const std::string& code) override;
    int getTradeMinUnit(const std::string& market, const std::string& code,
                        TC::EOperationType operation) override;
    int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade) override;

private:
    const IQuoteSource& m_source;
};

} // namespace desk
