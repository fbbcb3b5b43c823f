#include "orderservice/platform/TradeClient.h"

#include <stdexcept>

namespace TC {

void CTradeClient::cancelOrder(const boost::shared_ptr<knservice::COrderDetail>&) {
    throw std::logic_error("this client cannot cancel single orders");
}

} // namespace TC
