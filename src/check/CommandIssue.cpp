#include "orderservice/check/OrderServiceBase.h"

#include "orderservice/base/Unset.h"
#include "orderservice/check/CommandRequest.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/Families.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace TC {
namespace {

/// The kinds of user that may send commands, the kind whose commands are proposals, and the kinds whose
/// commands are decisions.
constexpr int kCommandUserKinds[] = {90, 91, 101, 100, 80, 92};
constexpr int kProposingUserKind = 100;
constexpr int kDecidingUserKinds[] = {101, 200, 102};

template<std::size_t N>
bool isInList(int value, const int (&list)[N]) {
    return std::find(std::begin(list), std::end(list), value) != std::end(list);
}

} // namespace

bool isCmdUser() {
    const CUserConfig* user = getUserConfig();
    return user != nullptr && isInList(hostCall<&CUserConfig::getUserKind>.on(*user), kCommandUserKinds);
}

void COrderServiceBase::doOrderCommand(EQdTraderType traderType, EQdHedgeType hedgeType,
                                       EFtSpecBtnBarType btnType, const std::vector<CCodeOrderParam>& codes,
                                       std::map<std::string, double> weights, EQdStopLossType stopLossType,
                                       bool unionCommand, CCommandCallback, bson::BSONObj extra,
                                       std::string tag, ETradePlatform platform, std::string algoParam,
                                       bool commandFlag, bool forceConfirm, std::string,
                                       const COrderParam& order, const COrderStrategyParam& strategy) const {
    CCommandRequest request;
    request.m_eTraderType = traderType;
    request.m_eHedgeType = hedgeType;
    request.m_eBtnType = btnType;
    request.m_codes = codes;
    request.m_weights = std::move(weights);
    request.m_eStopLossType = stopLossType;
    request.m_bUnion = unionCommand;
    request.m_extra = std::move(extra);
    request.m_strTag = std::move(tag);
    request.m_ePlatform = platform;
    request.m_strAlgoParam = std::move(algoParam);
    request.m_bCommandFlag = commandFlag;
    request.m_bForceConfirm = forceConfirm;
    issueCommand(std::move(request), order, strategy);
}

std::string COrderServiceBase::get3rdAlgoParam(const COrderParam& order,
                                               const std::vector<CCodeOrderParam>& codes,
                                               const COrderStrategyParam& strategy) const {
    return algoParamOf(order, codes, strategy);
}

void COrderServiceBase::saveOrderCommand(COrderComandParamPtr) const {}

QString COrderServiceBase::getTitle() const {
    const CUserConfig* user = getUserConfig();
    if (user != nullptr && luawrapper::isOrderSwitchOn(kPbDisplaySwitch)) {
        const int kind = hostCall<&CUserConfig::getUserKind>.on(*user);
        if (kind == kProposingUserKind) return QStringLiteral("下达投资建议");
        if (isInList(kind, kDecidingUserKinds)) return QStringLiteral("下达投资决策");
    }
    return QStringLiteral("下达指令");
}

std::string COrderServiceBase::getCmdLog(const COrderStrategyParam& strategy,
                                         EQdTraderType& traderType) const {
    const CFamily* family = findFamily(strategy.m_eTradeType);
    if (family == nullptr || isUnset(family->m_eRemarkTraderType)) return {};
    traderType = family->m_eRemarkTraderType;
    return settingOfFamily(strategy).m_strCmdLog;
}

} // namespace TC
