#include "orderservice/func/FuncCancel.h"

#include "orderservice/base/Bson.h"
#include "orderservice/base/Text.h"
#include "orderservice/func/FuncLog.h"
#include "orderservice/func/FuncReports.h"
#include "orderservice/func/FuncTables.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TraderCenter.h"

#include <QString>

#include <exception>
#include <vector>

namespace TC {
namespace {

using knservice::CAccountData;
using knservice::CDataCenter;
using knservice::COrderDetail;
using knservice::COrderDetailPtr;

constexpr char kCancelName[] = "TC::COrderFuncService::doCancelOrder"; ///< for the log

struct CCancel {
    std::string m_strAccount;
    std::string m_strAccountType;
    std::string m_strOrder; ///< empty: all open orders
};

CCancel readCancel(const std::string& param) {
    const bson::BSONObj object = bson::fromjson(param);
    CCancel cancel;
    bson::readField(object, "accountId", cancel.m_strAccount);
    bson::readField(object, "accountType", cancel.m_strAccountType);
    bson::readField(object, "orderId", cancel.m_strOrder);
    return cancel;
}

bool isOpenStatus(int status) {
    constexpr int kLastOpen = 52;
    constexpr int kAlsoOpen = 55;
    return (status >= 1 && status <= kLastOpen) || status == kAlsoOpen;
}

/// The orders of the account in the host's order, without null pointers.
std::vector<COrderDetailPtr> ordersOf(const CCancel& cancel) {
    CDataCenter& center = hostCall<&knservice::TraderCenter::getDataCenter>();
    const std::string key = hostCall<&CDataCenter::getAccountKey>.on(
        center, cancel.m_strAccount, tranAccountType(cancel.m_strAccountType));
    const auto data = hostCall<&CDataCenter::getAccountData>.on(center, key);
    if (!data || !hostCall<&CAccountData::getAccountInfo>.on(*data)) return {};
    std::vector<boost::shared_ptr<knservice::IData>> records;
    hostCall<&CAccountData::getVector>.on(*data, knservice::kOrderTable, records);
    std::vector<COrderDetailPtr> orders;
    for (const auto& record : records) {
        if (auto order = boost::dynamic_pointer_cast<knservice::COrderDetail>(record))
            orders.push_back(order);
    }
    return orders;
}

std::vector<COrderDetailPtr> chosenOrders(const CCancel& cancel) {
    std::vector<COrderDetailPtr> chosen;
    for (const COrderDetailPtr& order : ordersOf(cancel)) {
        const bool isWanted = cancel.m_strOrder.empty() ? isOpenStatus(order->m_nStatus)
                                                        : order->m_strOrderSysID == cancel.m_strOrder;
        if (!isWanted) continue;
        chosen.push_back(order);
        if (!cancel.m_strOrder.empty()) break;
    }
    return chosen;
}

void reportCancel(const std::string& func, const CCancel& cancel, const COrderDetail& order) {
    logFuncLine(utils::ELogLevel::Info, kCancelName,
                {"func:", func, ",find cancel order, accountId:", cancel.m_strAccount,
                 ",accountType:", cancel.m_strAccountType, ",orderSysID:", order.m_strOrderSysID});
    sendMsg(utils::fillText(QStringLiteral("[函数交易]　函数: %1, 资金账号: %2, 账号类型: %3, 合同编号: %4"),
                            {QString::fromStdString(func), QString::fromStdString(cancel.m_strAccount),
                             QString::fromStdString(cancel.m_strAccountType),
                             QString::fromStdString(order.m_strOrderSysID)}),
            utils::ELogLevel::Info);
}

/// An order that the host cannot cancel, or a message that it cannot show, must not keep the other orders
/// open. So the error is kept for the end.
void cancelOne(const std::string& func, const CCancel& cancel, const COrderDetailPtr& order,
               std::exception_ptr& firstError) {
    try {
        hostCall<&CTradeClient::cancelOrder>(order);
        reportCancel(func, cancel, *order);
    } catch (const CHostError&) {
        if (!firstError) firstError = std::current_exception();
    }
}

} // namespace

void doCancelOrder(const std::string& func, const std::string& param) {
    const CCancel cancel = readCancel(param);
    const std::vector<COrderDetailPtr> orders = chosenOrders(cancel);
    if (orders.empty()) {
        logFuncLine(utils::ELogLevel::Warn, kCancelName,
                    {"func:", func, ",can not find cancel order,accountId:", cancel.m_strAccount,
                     ",accountType:", cancel.m_strAccountType, ", orderSysID:", cancel.m_strOrder});
        return;
    }
    std::exception_ptr firstError;
    for (const COrderDetailPtr& order : orders)
        cancelOne(func, cancel, order, firstError);
    if (firstError) std::rethrow_exception(firstError);
}

} // namespace TC
