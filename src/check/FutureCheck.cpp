// Futures, and options on futures: opening and closing contracts of one instrument.
#include "orderservice/check/CheckFrame.h"
#include "orderservice/check/Reports.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradingRules.h"

#include <cmath>

namespace TC {
namespace {

void takeLimits(const COrderSingleParam& line, COrderSetting& setting) {
    if (line.m_bHasFirstLimit) {
        setting.m_dFirstLimit = finiteOrUnset(line.m_dFirstLimit);
        setting.m_bFirstLimitOn = !isInvalidPrice(setting.m_dFirstLimit);
    }
    if (line.m_bHasSecondLimit) {
        setting.m_dSecondLimit = finiteOrUnset(line.m_dSecondLimit);
        setting.m_bSecondLimitOn = !isInvalidPrice(setting.m_dSecondLimit);
    }
}

template<auto kIsKnown>
bool checkCode(const CCheckRun& run) {
    if (hostCall<kIsKnown>(run.code)) return true;
    // The text shows the channel in both places and never the code. It stays so because users know this
    // message.
    return failCheck(run, QStringLiteral("[%1]　通道号: %2, 下单代码 [%2] 不合法!"));
}

/// Futures always need a quote: without a quote even an order with a specified price is refused. The user's
/// list of allowed price types is not checked.
bool checkFuturePrice(const CCheckRun& run) {
    const EPriceType priceType = run.setting.m_ePriceType;
    const bool isNoNumber =
        priceType == EPriceType::Specified && run.line() != nullptr && !std::isfinite(run.line()->m_dPrice);
    if (isQuoteUsable(run.priceData, priceType, run.op) && !isNoNumber) return true;
    return failPrice(run, QStringLiteral("[%1]　合约 [%2] %3无效, 无法下单!"), run.stock().m_strCode);
}

/// If the first account has nothing to close, the report says so, instead of reporting a failed split.
bool checkVolumes(const CCheckRun& run) {
    const bool hasVolume = !run.volumes.empty() && run.volumes.front() > 0;
    if (hasVolume || !isClose(run.op)) return true;
    showCheckFailure(QStringLiteral("平仓仓位不足"));
    return false;
}

constexpr CFamilyCheck futureCheck(EOrderStrategyTradeType tradeType, ESettingText settingText,
                                   bool (*checkCode)(const CCheckRun&)) {
    CFamilyCheck family{tradeType};
    family.m_eSettingText = settingText;
    family.m_eQuoteWait = EQuoteWait::AlsoSpecified;
    family.m_pfnLineIntoSetting = takeLimits;
    family.m_pfnCheckCode = checkCode;
    family.m_pfnCheckPrice = checkFuturePrice;
    family.m_pfnVolumeOfAmount = nullptr;
    family.m_pfnCheckVolumes = checkVolumes;
    return family;
}

constexpr CFamilyCheck kFutureCheck = futureCheck(EOrderStrategyTradeType::Future, ESettingText::PlainOnly,
                                                  checkCode<&CExchangeClient::hasFuture>);
constexpr CFamilyCheck kFutureOptionCheck =
    futureCheck(EOrderStrategyTradeType::FutureOption, ESettingText::Always,
                checkCode<&CExchangeClient::hasFutureOption>);

} // namespace

bool checkFuture(const COrderParam& order, const COrderStrategyParam& strategy,
                 std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights) {
    return runFamilyCheck(kFutureCheck, order, strategy, codes, weights);
}

bool checkFutureOption(const COrderParam& order, const COrderStrategyParam& strategy,
                       std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights) {
    return runFamilyCheck(kFutureOptionCheck, order, strategy, codes, weights);
}

} // namespace TC
