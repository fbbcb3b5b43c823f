#pragma once

#include "desk/config/DeskConfig.h"
#include "platform/ExchangeClient.h"

#include <map>

namespace desk {

/// The instruments of a desk folder. Any thread; fixed when it is made. The trading day is the machine's
/// date.
class CDeskExchangeClient : public TC::CExchangeClient {
public:
    explicit CDeskExchangeClient(const std::vector<CInstrumentEntry>& instruments);

    bool hasStock(const QString& stockKey) override { return m_details.count(stockKey) > 0; }
    TC::CInstrumentDetailPtr getCodeInfo(const QString& stockKey) override;
    std::string getMaxTradingDay() override;

private:
    std::map<QString, TC::CInstrumentDetailPtr> m_details;
};

} // namespace desk
