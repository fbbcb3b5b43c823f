#include "orderservice/check/CommandGuard.h"

#include "orderservice/base/Text.h"
#include "orderservice/check/Reports.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/records/OrderTypes.h"

#include <algorithm>
#include <cmath>

namespace TC {
namespace {

/// Whether the order is a trade at a price. Orders that return, end, exercise or lock something are not.
bool isTrade(int orderType) {
    return orderType != kOrderReturnShares && !isExerciseOrder(orderType) && !isContractEndOrder(orderType) &&
           !isStockLockOrder(orderType);
}

bool isMoneyRepayment(const CCodeOrderParam& record, const COrderParam& order) {
    return isRepayOrder(order.m_nOrderType) && isDirectRepay(record.m_eOperationType);
}

bool isCommandPriceGiven(double price) {
    return std::isfinite(price) && !isInvalidPrice(price) && !isZero(price);
}

bool isSaleOfAll(const COrderParam& order) {
    return order.m_bAll && order.m_nOrderType == kOrderBasketSell;
}

/// The start of each report of the guard: source, channel and order type.
QString reportHead(const COrderParam& order) {
    return utils::fillText(QStringLiteral("[%1]　通道号: %2, 下单类型: %3 (%4), "),
                           {orderStrategyText(order.m_eStrategyType), QString::number(order.m_nChannel),
                            orderStrategyOrderTypeToString(order.m_nOrderType),
                            QString::number(order.m_nOrderType)});
}

/// `outcome` is a text about the rest of the command: sent or not sent.
void report(const CCodeOrderParam& record, const COrderParam& order, const QString& reason,
            const QString& outcome) {
    const std::string account =
        record.m_account ? hostCall<&CAccountInfo::getKey>.on(*record.m_account) : std::string();
    const QString code = QString::fromStdString(record.m_stock.m_strMarket + record.m_stock.m_strCode);
    showCheckFailure(reportHead(order) +
                     utils::fillText(QStringLiteral("账号 [%1] 合约 [%2] %3, %4!"),
                                     {QString::fromStdString(account), code, reason, outcome}));
}

} // namespace

bool isCommandGuardOn() {
    return luawrapper::isOrderSwitchOn(kCommandGuardSwitch);
}

std::optional<QString> missingOf(const CCodeOrderParam& record, const COrderParam& order) {
    if (isMoneyRepayment(record, order)) {
        const bool hasAmount = isCommandPriceGiven(record.m_dQuantity) && record.m_dQuantity > 0;
        return hasAmount ? std::nullopt : std::make_optional(QStringLiteral("没有金额"));
    }
    const bool isNamed = !record.m_stock.m_strMarket.empty() && !record.m_stock.m_strCode.empty();
    const bool isContract = isContractEndOrder(order.m_nOrderType) && !record.m_strContractText.empty();
    if (!isNamed && !isContract) return QStringLiteral("没有市场和代码");
    const bool needsPrice = record.m_ePriceType == EPriceType::Specified && isTrade(order.m_nOrderType);
    if (needsPrice && !isCommandPriceGiven(record.m_dPrice)) return QStringLiteral("没有价格");
    if (record.m_nVolume < 1 || isUnset(record.m_nVolume)) return QStringLiteral("没有数量");
    return std::nullopt;
}

bool leaveOutUnsellable(std::vector<CCodeOrderParam>& records, const COrderParam& order) {
    if (!isSaleOfAll(order)) return true;
    const auto hasVolume = [](const CCodeOrderParam& record) { return record.m_nVolume != 0; };
    const auto leftOut = std::stable_partition(records.begin(), records.end(), hasVolume);
    if (leftOut == records.begin() && leftOut != records.end()) {
        showCheckFailure(reportHead(order) +
                         utils::fillText(QStringLiteral("全部持仓(%1条)没有可卖数量, 指令未发出!"),
                                         {QString::number(records.size())}));
        return false;
    }
    // The report of a left-out record says that the other records are sent. If they will be refused, only the
    // report of that refusal is shown.
    const bool isRestGood = std::none_of(records.begin(), leftOut, [&](const CCodeOrderParam& record) {
        return missingOf(record, order).has_value();
    });
    if (isRestGood) {
        std::for_each(leftOut, records.end(), [&](const CCodeOrderParam& record) {
            report(record, order, QStringLiteral("没有可卖数量"),
                   QStringLiteral("此合约未下单, 其余照常发出"));
        });
    }
    records.erase(leftOut, records.end());
    return true;
}

bool passesCommandGuard(const COrderComandParam& command, const COrderParam& order) {
    for (const CCodeOrderParam& record : command.m_codes) {
        const std::optional<QString> missing = missingOf(record, order);
        if (!missing) continue;
        const QString count = QString::number(command.m_codes.size());
        report(record, order, *missing, QStringLiteral("整个指令(%1条)未发出").arg(count));
        return false;
    }
    return true;
}

} // namespace TC
