#include "desk/host/DeskExchangeClient.h"

#include "base/Clock.h"

#include <boost/make_shared.hpp>

namespace desk {

CDeskExchangeClient::CDeskExchangeClient(const std::vector<CInstrumentEntry>& instruments) {
    for (const CInstrumentEntry& entry : instruments) {
        const auto detail = boost::make_shared<TC::CInstrumentDetail>();
        detail->m_strMarket = entry.market;
        detail->m_strCode = entry.code;
        detail->m_strName = entry.name;
        detail->m_strProductId = entry.productId;
        detail->m_dReferencePrice = entry.referencePrice;
        detail->m_tradeInfo.m_nTransferKind = entry.transferKind;
        m_details[QString::fromStdString(entry.key())] = detail;
    }
}

TC::CInstrumentDetailPtr CDeskExchangeClient::getCodeInfo(const QString& stockKey) {
    const auto found = m_details.find(stockKey);
    return found != m_details.end() ? found->second : TC::CInstrumentDetailPtr();
}

std::string CDeskExchangeClient::getMaxTradingDay() {
    return utils::currentDateTime().toString(QStringLiteral("yyyyMMdd")).toStdString();
}

} // namespace desk
