#include "tests/shared/SingletonPlugin.h"

#include "orderservice/base/Bson.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/records/Portfolio.h"
#include "orderservice/service/OrderService.h"

const void* serviceInLibrary() {
    return TC::COrderService::instance();
}

const void* tradeClientInLibrary() {
    return &TC::CTradeClient::instance();
}

const void* messagesInLibrary() {
    return &TC::CMsgService::instance();
}

bool catchesHostError() {
    try {
        try {
            throw 1;
        } catch (...) {
            TC::throwHostError("operation");
        }
    } catch (const TC::CHostError&) {
        return true;
    } catch (...) {
        return false;
    }
}

bool catchesJsonError() {
    try {
        (void)bson::fromjson("no JSON");
        return false;
    } catch (const bson::CJsonError&) {
        return true;
    } catch (...) {
        return false;
    }
}

bool connectsToService() {
    TC::COrderService* service = TC::COrderService::instance();
    const QMetaObject::Connection connection =
        QObject::connect(service, &TC::COrderService::sigSetStatus, service, [](bool) {});
    const bool isConnected = static_cast<bool>(connection);
    QObject::disconnect(connection);
    return isConnected;
}

bool castsRecord(const void* data) {
    return dynamic_cast<const knservice::CPositionDetail*>(static_cast<const knservice::IData*>(data)) !=
           nullptr;
}
