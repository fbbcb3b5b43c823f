#include "desk/host/DeskExchangeClient.h"

#include "desk/config/Kinds.h"
#include "orderservice/base/Clock.h"

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
        detail->m_dMultiplier = entry.multiplier;
        detail->m_tradeInfo.m_nTransferKind = entry.transferKind;
        for (const std::string& name : entry.names())
            m_known[QString::fromStdString(name)] = {entry.kind, detail};
    }
}

bool CDeskExchangeClient::has(EInstrumentKind kind, const QString& name) const {
    const auto found = m_known.find(name);
    return found != m_known.end() && found->second.kind == kind;
}

TC::CInstrumentDetailPtr CDeskExchangeClient::getCodeInfo(const QString& stockKey) {
    const auto found = m_known.find(stockKey);
    return found != m_known.end() ? found->second.detail : TC::CInstrumentDetailPtr();
}

std::vector<TC::CInstrumentDetailPtr> CDeskExchangeClient::heldBy(TC::EQDBrokerType broker) const {
    std::vector<TC::CInstrumentDetailPtr> details;
    for (const auto& [name, known] : m_known) {
        if (holdsKind(broker, known.kind)) details.push_back(known.detail);
    }
    return details;
}

std::string CDeskExchangeClient::getMaxTradingDay() {
    return utils::currentDateTime().toString(QStringLiteral("yyyyMMdd")).toStdString();
}

} // namespace desk
