#include "orderservice/kit/TradingRulesBase.h"

#include "orderservice/base/Unset.h"
#include "orderservice/kit/TradingWords.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/records/Families.h"

#include <algorithm>

namespace kit {
namespace {

/// The text for both parts of an account key. No account has this key.
const QString& keyPartOfNoAccount() {
    static const QString part = QStringLiteral("?");
    return part;
}

bool hasVolume(const TC::CCodeOrderParam& record) {
    const bool hasQuantity = !TC::isInvalidPrice(record.m_dQuantity) && record.m_dQuantity > 0;
    return record.m_nVolume != 0 || hasQuantity;
}

} // namespace

TC::EQDBrokerType
CTradingRulesBase::orderStrategyTradeTypeToBrokerType(TC::EOrderStrategyTradeType tradeType) {
    const TC::CFamily* family = TC::findFamily(tradeType);
    return family != nullptr ? family->m_eBrokerType : TC::EQDBrokerType::Stock;
}

bool CTradingRulesBase::parserOrderTradeParam(const std::string&, TC::COrderTradeParam& param) {
    param = {};
    param.m_strAccountKeyPart1 = keyPartOfNoAccount();
    param.m_strAccountKeyPart2 = keyPartOfNoAccount();
    TC::showServiceMsg(QStringLiteral("[文件单]　此客户端不支持交易参数(orderParam), 其指令将被拒绝!"));
    return true;
}

void CTradingRulesBase::orderSettingFromString(TC::COrderSetting& setting, const QString& text) {
    if (!text.isEmpty()) setting.m_ePriceType = TC::unsetEnum<TC::EPriceType>();
}

void CTradingRulesBase::orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                                            TC::EOperationType, int, double price, const TC::CPriceDataPtr&) {
    record.m_ePriceType = setting.m_ePriceType;
    record.m_eOrderType = TC::isUnset(setting.m_eOrderType) ? TC::EOrderType::Plain : setting.m_eOrderType;
    record.m_dPrice = price;
}

bool CTradingRulesBase::isDirectRepay(TC::EOperationType operation) {
    return operation == TC::EOperationType::RepayMoney || operation == TC::EOperationType::RepayMoneyContract;
}

TC::EEntrustTypes CTradingRulesBase::operationTypeToEntrustType(TC::EOperationType) {
    return TC::unsetEnum<TC::EEntrustTypes>();
}

void CTradingRulesBase::filterZeroStock(std::vector<TC::CCodeOrderParam>& records) {
    const auto isEmpty = [](const TC::CCodeOrderParam& record) { return !hasVolume(record); };
    records.erase(std::remove_if(records.begin(), records.end(), isEmpty), records.end());
}

QString CTradingRulesBase::orderStrategyTypeToOrderTitle(TC::EOrderStrategyType type) {
    return QStringLiteral("[") + orderStrategyTypeToString(type) + QStringLiteral("]");
}

QString CTradingRulesBase::orderStrategyTypeToString(TC::EOrderStrategyType type) {
    return sourceWord(type);
}

QString CTradingRulesBase::orderStrategyOrderTypeToString(int orderType) {
    return orderWord(orderType);
}

QString CTradingRulesBase::orderStrategyTradeTypeToString(TC::EOrderStrategyTradeType tradeType) {
    return familyWord(tradeType);
}

QString CTradingRulesBase::knPriceTypeToString(TC::EPriceType priceType, const std::string&, bool) {
    return priceWord(priceType);
}

} // namespace kit
