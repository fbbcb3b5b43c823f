#include "orderservice/check/Reports.h"

#include "orderservice/base/Text.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/OrderClient.h"
#include "orderservice/platform/UserConfig.h"

namespace TC {
namespace {

/// The number of the user right for a source kind is the number of the kind plus this offset.
constexpr int kRightOffset = 6;

bool hasRightTo(EOrderStrategyType type) {
    const CUserConfig* user = getUserConfig();
    return user != nullptr && hostCall<&CUserConfig::hasUserAuth>.on(
                                  *user, static_cast<EUserAuth>(static_cast<int>(type) + kRightOffset));
}

} // namespace

QString orderStrategyText(EOrderStrategyType type) {
    switch (type) {
    case EOrderStrategyType::File:
        return hasRightTo(type) ? QStringLiteral("文件单") : QStringLiteral("接口单");
    case EOrderStrategyType::Signal:
        return hasRightTo(type) ? QStringLiteral("信号单") : QStringLiteral("接口单");
    case EOrderStrategyType::BatchPending:
        return QStringLiteral("批量埋单");
    default:
        return QStringLiteral("接口单");
    }
}

QString safeOrderStrategyText(EOrderStrategyType type) noexcept {
    try {
        return orderStrategyText(type);
    } catch (...) {
        return QStringLiteral("接口单");
    }
}

void reportOrderFailure(EOrderStrategyType type, int channel) noexcept {
    const QString text =
        utils::fillText(QStringLiteral("[%1]　通道号: %2, 下单异常: %3"),
                        {safeOrderStrategyText(type), QString::number(channel), exceptionText()});
    try {
        showCheckFailure(text);
    } catch (...) {
        reportSafely(text);
    }
}

void reportNotExecuted(const COrderParam& first, int orders, const QString& reason, const QString& cause) {
    reportSafely(utils::fillText(QStringLiteral("[%1]　通道号: %2, %3, %4条指令未执行!"),
                                 {safeOrderStrategyText(first.m_eStrategyType),
                                  QString::number(first.m_nChannel), reason, QString::number(orders)}));
    reportOrdersDropped(first.m_nChannel, orders, cause);
}

void showCheckFailure(const QString& text) {
    hostCall<&COrderClient::showTradeError>(text, QStringLiteral("参数错误"));
}

} // namespace TC
