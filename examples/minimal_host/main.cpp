// Places one order through the order service and waits for the resulting command.
#include "MinimalHost.h"

#include <orderservice/service/OrderService.h>
#include <orderservice/service/OrderServiceAdapter.h>

#include <QCoreApplication>

#include <iostream>

namespace {

/// Starts a strategy that takes orders by a call, not from a file. Returns its channel, or -1 on failure.
int startStrategy(TC::COrderService& service) {
    const int channel = service.addOrderStrategy(TC::EOrderStrategyType::Interface);
    TC::COrderStrategyParam strategy = service.getStrategyMap().value(channel);
    strategy.m_eSelectedAccountType = TC::ESelectedAccountType::Account;
    strategy.m_strSelectedAccount = minimal::kAccount;
    strategy.m_strSignalSource = QStringLiteral("call"); // must not be empty
    strategy.m_strCode = minimal::kStockKey;             // for orders that name no code
    QString error;
    if (service.updateOrderStrategy(channel, strategy) != 0 ||
        service.startOrderStrategy(channel, error, true) != 0) {
        std::cerr << "the strategy does not start: " << error.toStdString() << std::endl;
        return -1;
    }
    return channel;
}

TC::COrderParam buyOrder(int channel) {
    constexpr int kStockBuy = 23;
    TC::COrderSingleParam line;
    line.m_strCode = minimal::kStockKey;
    line.m_nVolume = 300;
    line.m_dPrice = minimal::kPrice;
    TC::COrderParam order;
    order.m_nOrderType = kStockBuy;
    order.m_nChannel = channel;
    order.m_eStrategyType = TC::EOrderStrategyType::Interface;
    order.m_orders.push_back(line);
    return order;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    minimal::CMinimalHost host(std::cout);
    const utils::KNError installed = TC::installHost(host.services());
    if (!installed.isSuccess()) {
        std::cerr << installed.errorMsg() << std::endl;
        return 1;
    }
    TC::COrderService::initInstance(new TC::COrderService);
    TC::COrderServiceAdapter::initInstance(new TC::COrderServiceAdapter);
    TC::COrderService& service = *TC::COrderService::instance();
    service.loadFromConfig(true);

    bool ordered = false;
    const int channel = startStrategy(service);
    if (channel > 0) {
        service.placeorder(buyOrder(channel));
        ordered = host.orders.ordered.get_future().get();
    }

    service.shutdown();
    TC::COrderServiceAdapter::release();
    TC::COrderService::release();
    TC::releaseHost();
    return ordered ? 0 : 1;
}
