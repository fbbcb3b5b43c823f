#include "desk/host/DeskQuoteClient.h"

#include "desk/market/DeskPriceData.h"

#include <boost/make_shared.hpp>

namespace desk {

TC::CPriceDataPtr CDeskQuoteClient::getStockPrice(const QString& stockKey) {
    const auto quote = m_source.quote(stockKey.toStdString());
    return quote ? TC::CPriceDataPtr(boost::make_shared<CDeskPriceData>(*quote)) : TC::CPriceDataPtr();
}

boost::shared_ptr<TC::CQuoteRequest>
CDeskQuoteClient::subscribe(const QString&, const TC::CQuoteRequest::CCallback&, TC::ESubscribeType) {
    return boost::make_shared<TC::CQuoteRequest>();
}

} // namespace desk
