#include "orderservice/func/FuncReports.h"

#include "orderservice/base/StrictNumber.h"
#include "orderservice/func/FuncLog.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/UserConfig.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <vector>

namespace TC {

void sendMsg(const QString& text, utils::ELogLevel level) {
    CMsgFlags flags;
    if (const CUserConfig* user = getUserConfig())
        flags = hostCall<&CUserConfig::getMsgFlags>.on(*user, EMsgTypeDef::Function);
    hostCall<&CMsgService::showMsg>(text, EMsgTypeDef::Function, MsgLevel::Note, flags.m_bFirst,
                                    flags.m_bSecond, QString());
    if (utils::CLogCenter::logEnabled())
        logFuncLine(level, "TC::COrderFuncService::sendMsg",
                    {"[COrderFuncService::sendMsg]", text.toStdString()});
}

utils::KNError str2KNError(const std::string& text) {
    return text.empty() ? utils::KNError() : utils::KNError(-1, text);
}

CTradeKey readTradeKey(const std::string& tradeKey) {
    constexpr std::size_t kParts = 3;
    std::vector<std::string> parts;
    boost::split(parts, tradeKey, boost::is_any_of("|"));
    if (parts.size() != kParts) return {};
    return {utils::strictInt(parts[2]), parts[1]};
}

namespace {

/// Counts the call-backs that run on this thread, one inside the other.
class CDepth {
public:
    CDepth() { ++count(); }
    ~CDepth() { --count(); }
    CDepth(const CDepth&) = delete;
    CDepth& operator=(const CDepth&) = delete;

    static int& count() {
        thread_local int depth = 0;
        return depth;
    }
};

} // namespace

void orderCheckFaild(const std::string& tradeKey, const utils::KNError& error,
                     const COrderFailedCallback& callback) {
    constexpr int kDeepest = 8;
    const CTradeKey key = readTradeKey(tradeKey);
    if (!callback) return;
    // A call-back that repeats a call that always fails would never end.
    if (CDepth::count() >= kDeepest)
        return reportSafely(
            QStringLiteral("[接口单]　函数交易下单失败的回调层数过多, 本次失败未通知调用者!"));
    const CDepth depth;
    const COrderFailedCallback running = callback; // the call-back may register another one
    runGuarded(QStringLiteral("函数交易下单失败的回调异常"),
               [&] { running(key.m_nId, key.m_strKey, error); });
}

} // namespace TC
