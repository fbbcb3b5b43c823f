// Places one order through the order service and waits for the resulting command. Then orders by a function
// call, as a model does.
#include "MinimalHost.h"

#include <orderservice/func/OrderFuncService.h>
#include <orderservice/service/OrderService.h>
#include <orderservice/service/OrderServiceAdapter.h>

#include <QCoreApplication>

#include <iostream>
#include <string>

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

/// Buys by a function call. When the call returns, the host has the command or the reason of the failure.
bool buyByFunction(const minimal::COrders& orders) {
    TC::COrderFuncService& functions = *TC::COrderFuncService::instance();
    functions.registOrderFailedCallback([](const int&, const std::string& key, const utils::KNError& error) {
        std::cerr << "the call " << key << " failed: " << error.errorMsg() << std::endl;
    });
    const int before = orders.commands;
    functions.doParserOrder("passorder",
                            R"({"opType": 23, "orderType": 1101, "prType": 11, "modelPrice": "10.5",
                                "modelVolume": "200", "accountID": "A1", "orderCode": "600000",
                                "strategyName": "example", "tradeKey": "free|first|1"})",
                            "");
    return orders.commands == before + 1;
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
    TC::COrderFuncService::initInstance(new TC::COrderFuncService);
    TC::COrderFuncService::instance()->init();
    TC::COrderService& service = *TC::COrderService::instance();
    service.loadFromConfig(true);

    bool ordered = false;
    const int channel = startStrategy(service);
    if (channel > 0) {
        service.placeorder(buyOrder(channel));
        ordered = host.orders.ordered.get_future().get();
    }
    const bool isCalled = buyByFunction(host.orders);

    TC::COrderFuncService::release();
    service.shutdown();
    TC::COrderServiceAdapter::release();
    TC::COrderService::release();
    TC::releaseHost();
    return ordered && isCalled ? 0 : 1;
}
