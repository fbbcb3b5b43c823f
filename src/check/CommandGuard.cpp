#include "orderservice/check/CommandGuard.h"

#include "orderservice/base/Text.h"
#include "orderservice/check/Reports.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TradingRules.h"

#include <algorithm>
#include <cmath>

namespace TC {
namespace {

bool isCommandPriceGiven(double price) {
    return std::isfinite(price) && !isInvalidPrice(price) && !isZero(price);
}

QString reportHead(const CCommandSource& source) {
    const QString head = !source.m_strReportHead.isEmpty()
                             ? source.m_strReportHead
                             : utils::fillText(QStringLiteral("[%1]　通道号: %2, "),
                                               {orderStrategyText(source.m_eStrategyType),
                                                QString::number(source.m_nChannel)});
    return head + utils::fillText(QStringLiteral("下单类型: %1 (%2), "),
                                  {orderStrategyOrderTypeToString(source.m_nShownOrder),
                                   QString::number(source.m_nShownOrder)});
}

/// `outcome` is a text about the rest of the command: sent or not sent.
void report(const CCodeOrderParam& record, const CCommandSource& source, const QString& reason,
            const QString& outcome) {
    const std::string account =
        record.m_account ? hostCall<&CAccountInfo::getKey>.on(*record.m_account) : std::string();
    const QString code = QString::fromStdString(record.m_stock.m_strMarket + record.m_stock.m_strCode);
    showCheckFailure(reportHead(source) +
                     utils::fillText(QStringLiteral("账号 [%1] 合约 [%2] %3, %4!"),
                                     {QString::fromStdString(account), code, reason, outcome}));
}

} // namespace

bool isCommandGuardOn() {
    return luawrapper::isOrderSwitchOn(kCommandGuardSwitch);
}

std::optional<QString> missingOf(const CCodeOrderParam& record, const CCommandSource& source) {
    if (source.m_bRepayment && isDirectRepay(record.m_eOperationType)) {
        const bool hasAmount = isCommandPriceGiven(record.m_dQuantity) && record.m_dQuantity > 0;
        return hasAmount ? std::nullopt : std::make_optional(QStringLiteral("没有金额"));
    }
    const bool isNamed = !record.m_stock.m_strMarket.empty() && !record.m_stock.m_strCode.empty();
    const bool isContract = source.m_bContractEnd && !record.m_strContractText.empty();
    if (!isNamed && !isContract) return QStringLiteral("没有市场和代码");
    const bool needsPrice = source.m_bNeedsPrice && record.m_ePriceType == EPriceType::Specified;
    if (needsPrice && !isCommandPriceGiven(record.m_dPrice)) return QStringLiteral("没有价格");
    if (record.m_nVolume < 1 || isUnset(record.m_nVolume)) return QStringLiteral("没有数量");
    return std::nullopt;
}

bool leaveOutUnsellable(std::vector<CCodeOrderParam>& records, const CCommandSource& source) {
    if (!source.m_bSaleOfAll) return true;
    const auto hasVolume = [](const CCodeOrderParam& record) { return record.m_nVolume != 0; };
    const auto leftOut = std::stable_partition(records.begin(), records.end(), hasVolume);
    if (leftOut == records.begin() && leftOut != records.end()) {
        showCheckFailure(reportHead(source) +
                         utils::fillText(QStringLiteral("全部持仓(%1条)没有可卖数量, 指令未发出!"),
                                         {QString::number(records.size())}));
        return false;
    }
    // The report of a left-out record says that the other records are sent. If they will be refused, only the
    // report of that refusal is shown.
    const bool isRestGood = std::none_of(records.begin(), leftOut, [&](const CCodeOrderParam& record) {
        return missingOf(record, source).has_value();
    });
    if (isRestGood) {
        std::for_each(leftOut, records.end(), [&](const CCodeOrderParam& record) {
            report(record, source, QStringLiteral("没有可卖数量"),
                   QStringLiteral("此合约未下单, 其余照常发出"));
        });
    }
    records.erase(leftOut, records.end());
    return true;
}

bool passesCommandGuard(const COrderComandParam& command, const CCommandSource& source) {
    for (const CCodeOrderParam& record : command.m_codes) {
        const std::optional<QString> missing = missingOf(record, source);
        if (!missing) continue;
        const QString count = QString::number(command.m_codes.size());
        report(record, source, *missing, QStringLiteral("整个指令(%1条)未发出").arg(count));
        return false;
    }
    return true;
}

} // namespace TC
