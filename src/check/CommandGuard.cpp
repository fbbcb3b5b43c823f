#include "check/CommandGuard.h"

#include "base/Text.h"
#include "check/Reports.h"
#include "platform/LuaModuleCtrl.h"
#include "platform/TradingRules.h"
#include "records/OrderTypes.h"

#include <algorithm>
#include <cmath>

namespace TC {
namespace {

/// Orders that are no trade at a price: they give back, end, exercise or lock something.
bool isTrade(int orderType) {
    constexpr int kReturnShares = 30;
    constexpr int kExerciseCall = 54, kExercisePut = 55, kExerciseFutureOption = 100;
    const bool isExercise =
        orderType == kExerciseCall || orderType == kExercisePut || orderType == kExerciseFutureOption;
    return orderType != kReturnShares && !isExercise && !isContractEndOrder(orderType) &&
           !isStockLockOrder(orderType);
}

bool isMoneyRepayment(const CCodeOrderParam& record, const COrderParam& order) {
    return isRepayOrder(order.m_nOrderType) && isDirectRepay(record.m_eOperationType);
}

bool isPriceGiven(double price) {
    return std::isfinite(price) && !isInvalidPrice(price) && !isZero(price);
}

/// Of what cannot be sold today there is a record of no volume.
bool isSaleOfAll(const COrderParam& order) {
    return order.m_bAll && order.m_nOrderType == kOrderBasketSell;
}

void report(const CCodeOrderParam& record, const COrderParam& order, const QString& reason) {
    const std::string account = record.m_account ? record.m_account->getKey() : std::string();
    showCheckFailure(utils::fillText(
        QStringLiteral("[%1]　通道号: %2, 下单类型: %3 (%4), 账号 [%5] 合约 [%6] %7, 指令未发出!"),
        {orderStrategyText(order.m_eStrategyType), QString::number(order.m_nChannel),
         orderStrategyOrderTypeToString(order.m_nOrderType), QString::number(order.m_nOrderType),
         QString::fromStdString(account),
         QString::fromStdString(record.m_stock.m_strMarket + record.m_stock.m_strCode), reason}));
}

} // namespace

bool isCommandGuardOn() {
    return luawrapper::isOrderSwitchOn(kCommandGuardSwitch);
}

std::optional<QString> missingOf(const CCodeOrderParam& record, const COrderParam& order) {
    if (isMoneyRepayment(record, order)) {
        const bool hasAmount = isPriceGiven(record.m_dQuantity) && record.m_dQuantity > 0;
        return hasAmount ? std::nullopt : std::make_optional(QStringLiteral("没有金额"));
    }
    const bool isNamed = !record.m_stock.m_strMarket.empty() && !record.m_stock.m_strCode.empty();
    const bool isContract = isContractEndOrder(order.m_nOrderType) && !record.m_strContractText.empty();
    if (!isNamed && !isContract) return QStringLiteral("没有市场和代码");
    const bool needsPrice = record.m_ePriceType == EPriceType::Specified && isTrade(order.m_nOrderType);
    if (needsPrice && !isPriceGiven(record.m_dPrice)) return QStringLiteral("没有价格");
    if (record.m_nVolume < 1 || isUnset(record.m_nVolume)) return QStringLiteral("没有数量");
    return std::nullopt;
}

bool passesCommandGuard(COrderComandParam& command, const COrderParam& order) {
    std::vector<CCodeOrderParam>& records = command.m_codes;
    const auto isLeftOut = [&](const CCodeOrderParam& record) {
        if (!isSaleOfAll(order) || record.m_nVolume != 0) return false;
        report(record, order, QStringLiteral("没有可卖数量"));
        return true;
    };
    records.erase(std::remove_if(records.begin(), records.end(), isLeftOut), records.end());
    for (const CCodeOrderParam& record : records) {
        const std::optional<QString> missing = missingOf(record, order);
        if (!missing) continue;
        report(record, order, *missing);
        return false;
    }
    return true;
}

} // namespace TC
