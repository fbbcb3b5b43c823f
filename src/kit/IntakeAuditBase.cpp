#include "orderservice/kit/IntakeAuditBase.h"

#include "orderservice/base/Text.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"

#include <initializer_list>
#include <map>

namespace kit {
namespace {

void warn(TC::EOrderStrategyType source, const QString& pattern, std::initializer_list<QString> arguments) {
    TC::CMsgFlags flags;
    if (const TC::CUserConfig* user = TC::getUserConfig())
        flags = user->getMsgFlags(TC::EMsgTypeDef::General);
    const QString text = TC::orderStrategyTypeToOrderTitle(source) + QStringLiteral("　") +
                         utils::fillText(pattern, arguments);
    TC::CMsgService::instance().showMsg(text, TC::EMsgTypeDef::General, TC::MsgLevel::Warning, flags.m_bFirst,
                                        flags.m_bSecond, QString());
}

QString keptFileText(const TC::CIntakeReport& report) {
    if (report.m_strKeptAs.isEmpty()) return QStringLiteral("文件已删除");
    return utils::fillText(QStringLiteral("文件保存为 [%1]"), {report.m_strKeptAs});
}

} // namespace

void CIntakeAuditBase::recordIntake(const TC::CIntakeReport& report) {
    if (report.m_bLeftWaiting) {
        warn(report.m_eStrategyType, QStringLiteral("%1 未读取, 仍在等待: %2"),
             {report.m_strSource, report.m_strCause});
    }
    if (report.m_bCutShort) {
        warn(report.m_eStrategyType, QStringLiteral("%1 读取中断, 其后内容未执行: %2"),
             {report.m_strSource, report.m_strCause});
    }
    if (report.m_bRejected) {
        warn(report.m_eStrategyType, QStringLiteral("%1 已拒绝, 其内容未执行: %2; %3"),
             {report.m_strSource, report.m_strCause, keptFileText(report)});
    }
    if (report.m_bLeftOver) {
        warn(report.m_eStrategyType, QStringLiteral("%1 为遗留文件, 本次未读取, 其指令可能已执行: %2; %3"),
             {report.m_strSource, report.m_strCause, keptFileText(report)});
    }
    if (report.m_nIgnoredLines != 0) {
        warn(report.m_eStrategyType, QStringLiteral("%1 有%2行未生效, 首行为 %3"),
             {report.m_strSource, QString::number(report.m_nIgnoredLines), report.m_strFirstIgnored});
    }
    if (report.m_nUnreadTradeParams != 0) {
        warn(report.m_eStrategyType, QStringLiteral("%1 有%2行交易参数无法识别, 其指令未带这些参数!"),
             {report.m_strSource, QString::number(report.m_nUnreadTradeParams)});
    }
}

void CIntakeAuditBase::recordDoor(const TC::CDoorReport& report) {
    const auto source = TC::EOrderStrategyType::Signal;
    if (report.m_eEvent == TC::EDoorEvent::Opened && !report.m_strCause.isEmpty())
        warn(source, QStringLiteral("%1 端口已改变: %2"), {report.m_strSource, report.m_strCause});
    if (report.m_eEvent == TC::EDoorEvent::Stuck) {
        warn(source, QStringLiteral("%1 已停止服务: %2, 请重新启动策略"),
             {report.m_strSource, report.m_strCause});
    }
    if (report.m_eEvent == TC::EDoorEvent::Refused) {
        warn(source, QStringLiteral("%1 拒绝连接 %2: %3"),
             {report.m_strSource, report.m_strPeer, report.m_strCause});
    }
}

void CIntakeAuditBase::recordDiscard(const TC::CDiscardReport& report) {
    const QString lines = report.m_nLines < 0
                              ? QStringLiteral("行数未知")
                              : utils::fillText(QStringLiteral("共%1行"), {QString::number(report.m_nLines)});
    warn(report.m_eStrategyType, QStringLiteral("%1 未读取即删除, %2"), {report.m_strSource, lines});
}

void CIntakeAuditBase::recordUnplaced(const QVector<TC::COrderParam>& orders) {
    std::map<int, int> ordersOf;
    for (const TC::COrderParam& order : orders)
        ++ordersOf[order.m_nChannel];
    for (const auto& [channel, count] : ordersOf) {
        warn(orders.first().m_eStrategyType, QStringLiteral("通道号: %1, %2条指令未执行!"),
             {QString::number(channel), QString::number(count)});
    }
}

void CIntakeAuditBase::recordIncident(const TC::CIncidentReport& report) {
    const auto source = TC::EOrderStrategyType::Interface;
    switch (report.m_eIncident) {
    case TC::EIncident::OrdersDropped:
        return warn(
            source, QStringLiteral("通道号: %1, %2条指令未执行: %3"),
            {QString::number(report.m_nChannel), QString::number(report.m_nOrders), report.m_strCause});
    case TC::EIncident::OrdersInterrupted:
        return warn(
            source, QStringLiteral("通道号: %1, %2条指令可能只执行了一部分: %3"),
            {QString::number(report.m_nChannel), QString::number(report.m_nOrders), report.m_strCause});
    case TC::EIncident::CancelNotDone:
        if (report.m_nTaskId == TC::kUnsetInt)
            return warn(source, QStringLiteral("撤单未成功: %1"), {report.m_strCause});
        return warn(source, QStringLiteral("任务 %1 未撤销: %2"),
                    {QString::number(report.m_nTaskId), report.m_strCause});
    case TC::EIncident::HostFailed:
        return; // the message panel has just failed; the failure is in the log
    case TC::EIncident::RowsLeftOut:
        return warn(source, QStringLiteral("通道号: %1, 组合中%2行未下单, 首行 [%3]: %4"),
                    {QString::number(report.m_nChannel), QString::number(report.m_nRows), report.m_strCode,
                     report.m_strCause});
    case TC::EIncident::StrategyNotLoaded:
        return warn(source, QStringLiteral("通道号: %1, 策略未加载: %2"),
                    {QString::number(report.m_nChannel), report.m_strCause});
    case TC::EIncident::StrategyNotStarted:
        return warn(source, QStringLiteral("通道号: %1, 策略未启动: %2"),
                    {QString::number(report.m_nChannel), report.m_strCause});
    }
}

} // namespace kit
