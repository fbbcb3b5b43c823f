#include "check/Reports.h"

#include "platform/OrderClient.h"
#include "platform/UserConfig.h"

namespace TC {
namespace {

/// The right to a source kind has the kind's number plus this.
constexpr int kRightOffset = 6;

bool hasRightTo(EOrderStrategyType type) {
    const CUserConfig* user = getUserConfig();
    return user != nullptr &&
           user->hasUserAuth(static_cast<EUserAuth>(static_cast<int>(type) + kRightOffset));
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

void showCheckFailure(const QString& text) {
    COrderClient::instance().showTradeError(text, QStringLiteral("参数错误"));
}

} // namespace TC
