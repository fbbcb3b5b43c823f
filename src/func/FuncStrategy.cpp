#include "orderservice/func/FuncStrategy.h"

#include "orderservice/base/Bson.h"
#include "orderservice/func/FuncParser.h"
#include "orderservice/func/FuncTables.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/Instrument.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <vector>

namespace TC {
namespace {

constexpr char kUnknownOrderType[] = "无效的下单类型(ORDERTYPE)值!";
constexpr char kNoFuturesAccount[] = "套利期货账号为空!";
constexpr char kBadFuturesCode[] = "套利期货代码非法!";

/// The two kinds of a hedge leg that its document names.
constexpr int kHedgeKind = 1;
constexpr int kHedgeSubkind = 0;

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

void takeDefaultSettings(COrderStrategyParam& strategy) {
    const CUserConfig* const user = getUserConfig();
    if (user == nullptr) return;
    const auto settings = hostCall<&CUserConfig::getDefaultOrderSettings>.on(*user);
    for (std::size_t slot = 0; slot < settings.size(); ++slot)
        strategy.setting(static_cast<ESettingSlot>(slot)) = settings[slot];
}

void takeUnit(const CFuncOrderType& row, double volume, COrderStrategyParam& strategy) {
    strategy.m_eSelectedAccountType = row.m_eAccounts;
    strategy.m_bHedgeBasket = row.m_bHedge;
    strategy.m_bUseAmount = row.m_eUnit == EFuncUnit::Money;
    strategy.m_bByPercent = row.m_eUnit == EFuncUnit::Ratio;
    if (strategy.m_bUseAmount) strategy.m_dAmount = volume;
    if (strategy.m_bByPercent) strategy.m_dPercent = volume;
}

/// Accounts and codes of a hedge are pairs. If one of them is no pair, the strategy has no futures leg.
void takeHedge(const COrderFuncParam& param, COrderStrategyParam& strategy, std::string& error) {
    const QStringList accounts = text(param.m_strAccountID).split(QLatin1Char(','));
    const QStringList codes = text(param.m_strOrderCode).split(QLatin1Char(','));
    if (accounts.size() != 2 || codes.size() != 2) return;
    strategy.m_strSelectedAccount =
        text(translateAccountID(accounts[0].toStdString(), strategy.m_eTradeType));
    QString futuresAccount =
        text(translateAccountID(accounts[1].toStdString(), EOrderStrategyTradeType::Future));
    QString futuresCode = codes[1];
    CBasketHedgeParam hedge;
    fillHedgeParam(hedge, strategy, futuresAccount, futuresCode, param.m_dModelPrice, error);
    strategy.m_hedgeParam = hedge.toBson();
}

bson::BSONObj documentOf(const CInstrumentDetail& detail) {
    return bson::BSONObjBuilder()
        .append("m_strMarket", detail.m_strMarket)
        .append("m_strCode", detail.m_strCode)
        .append("m_strName", detail.m_strName)
        .append("m_strProductId", detail.m_strProductId)
        .obj();
}

bson::BSONObj documentOf(const COrderSetting& setting) {
    return bson::BSONObjBuilder()
        .append("m_ePriceType", static_cast<int>(setting.m_ePriceType))
        .append("m_eOrderType", static_cast<int>(setting.m_eOrderType))
        .append("m_bFirstLimitOn", setting.m_bFirstLimitOn)
        .append("m_dFirstLimit", setting.m_dFirstLimit)
        .append("m_bSecondLimitOn", setting.m_bSecondLimitOn)
        .append("m_dSecondLimit", setting.m_dSecondLimit)
        .append("m_strCmdLog", setting.m_strCmdLog)
        .obj();
}

CAccountInfoPtr firstAccount(const QString& name) {
    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
    if (const CUserConfig* user = getUserConfig())
        hostCall<&CUserConfig::getAccountsWeights>.on(
            *user, brokerTypeOfCall(EOrderStrategyTradeType::Future), ESelectedAccountType::Account, name,
            accounts, ratios, false);
    return accounts.empty() ? nullptr : accounts.front();
}

bool isLoggedIn(const std::string& key) {
    return hostCall<&CTradeClient::getLoginStatus>(key) == EBROKER_LOGIN_STATUS::LoggedIn;
}

const CAccountGroup* groupOf(const COrderStrategyParam& strategy) {
    const CUserConfig* const user = getUserConfig();
    if (user == nullptr) return nullptr;
    return hostCall<&CUserConfig::getAccountGroupConst>.on(*user, brokerTypeOfCall(strategy.m_eTradeType),
                                                           strategy.m_strSelectedAccount);
}

} // namespace

EQDBrokerType brokerTypeOfCall(EOrderStrategyTradeType tradeType) {
    if (static_cast<int>(tradeType) == kFunctionFutureBasket) return EQDBrokerType::Future;
    return orderStrategyTradeTypeToBrokerType(tradeType);
}

COrderStrategyParam getStrategy(const COrderFuncParam& param, std::string& error) {
    error.clear();
    COrderStrategyParam strategy;
    strategy.m_dAmount = 0;
    strategy.m_dPercent = 0;
    takeDefaultSettings(strategy);
    strategy.m_eTradeType = static_cast<EOrderStrategyTradeType>(param.m_nTradeType);
    strategy.m_strSelectedAccount = text(translateAccountID(param.m_strAccountID, strategy.m_eTradeType));
    strategy.m_nVolume = volumeOfCall(param.m_dModelVolume);
    const CFuncOrderType* const row = findFuncOrderType(param.m_nOrderType);
    if (row == nullptr) {
        strategy.m_eSelectedAccountType = unsetEnum<ESelectedAccountType>();
        error = kUnknownOrderType;
        return strategy;
    }
    takeUnit(*row, param.m_dModelVolume, strategy);
    if (strategy.m_bHedgeBasket) takeHedge(param, strategy, error);
    return strategy;
}

std::string translateAccountID(std::string id, EOrderStrategyTradeType tradeType) {
    const CUserConfig* const user = getUserConfig();
    if (user == nullptr) return id;
    const int broker = static_cast<int>(brokerTypeOfCall(tradeType));
    const QString wanted = text(id);
    for (const CAccountPtr& account : hostCall<&CUserConfig::getAccounts>.on(*user)) {
        const CAccountInfoPtr info = account ? hostCall<&CAccount::toInfo>.on(*account) : nullptr;
        if (info && info->m_nBrokerType == broker && accountDisplayIDQs(*info) == wanted)
            return hostCall<&CAccount::key>.on(*account);
    }
    return id;
}

void fillHedgeParam(CBasketHedgeParam& hedge, COrderStrategyParam& strategy, QString& futuresAccount,
                    QString& futuresCode, double ratio, std::string& error) {
    error.clear();
    bson::BSONObjBuilder document;
    document.append("m_nHedgeKind", kHedgeKind)
        .append("m_nHedgeSubkind", kHedgeSubkind)
        .append("m_strText", "");
    hedge.bsonValueFromObj(document.obj());
    const CAccountInfoPtr account = firstAccount(futuresAccount);
    if (!account) {
        error = kNoFuturesAccount;
        return;
    }
    document.append("m_strAccountKey", hostCall<&CAccountInfo::getKey>.on(*account));
    hedge.bsonValueFromObj(document.obj());
    const CInstrumentDetailPtr detail = hostCall<&CExchangeClient::getCodeInfo>(futuresCode);
    if (!detail) {
        error = kBadFuturesCode;
        return;
    }
    document.append("m_stock", documentOf(*detail))
        .append("m_eHedgeFlag", static_cast<int>(EHedge_Flag_Type::Speculation))
        .append("m_dRatio", ratio)
        .append("m_setting", documentOf(strategy.setting(ESettingSlot::Future)));
    hedge.bsonValueFromObj(document.obj());
}

bool checkAccount(const COrderStrategyParam& strategy) {
    const CUserConfig* const user = getUserConfig();
    if (user == nullptr) return false;
    switch (strategy.m_eSelectedAccountType) {
    case ESelectedAccountType::Group:
        return !strategy.m_strSelectedAccount.isEmpty() && groupOf(strategy) != nullptr;
    case ESelectedAccountType::Account:
        return hostCall<&CUserConfig::hasAccount>.on(*user, strategy.m_strSelectedAccount);
    }
    return false;
}

bool checkAccountStatus(const COrderStrategyParam& strategy) {
    switch (strategy.m_eSelectedAccountType) {
    case ESelectedAccountType::Group: {
        if (strategy.m_strSelectedAccount.isEmpty()) return true;
        const CAccountGroup* const group = groupOf(strategy);
        return group == nullptr ||
               std::all_of(group->m_accounts.begin(), group->m_accounts.end(), isLoggedIn);
    }
    case ESelectedAccountType::Account:
        return isLoggedIn(strategy.m_strSelectedAccount.toStdString());
    }
    return true;
}

} // namespace TC
