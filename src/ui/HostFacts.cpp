#include "orderservice/ui/HostFacts.h"

#include "orderservice/base/Unset.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/TraderCenter.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/ui/BatchTraderType.h"

#include <cmath>
#include <utility>

namespace TC {

std::optional<CMoneyRule> moneyRuleOf(const CInstrumentDetailPtr& detail, const CStockInfo& stock,
                                      EQdTraderType traderType) {
    CMoneyRule rule;
    rule.m_bParPriced = stock.m_strMarket == "SH" &&
                        knservice::StockTypeCenter::isTypedStock(knservice::kTypeParPriced, stock.m_strMarket,
                                                                 stock.m_strCode);
    const double multiplier = detail ? detail->m_dMultiplier : kUnsetDouble;
    const bool isKnown = std::isfinite(multiplier) && !isInvalidPrice(multiplier) && multiplier > 0;
    const bool isContract = isFutureLike(traderType) || traderType == EQdTraderType::Option;
    if (!isKnown && isContract && !rule.m_bParPriced) return std::nullopt;
    if (isKnown) rule.m_dMultiplier = multiplier;
    return rule;
}

CInstrumentFacts& CHostFacts::factsOf(const CCodeOrderParam& record) {
    const CStockInfo& stock = record.m_stock;
    const auto [place, isNew] = m_instruments.try_emplace({stock.m_strMarket, stock.m_strCode});
    CInstrumentFacts& facts = place->second;
    if (isNew && !stock.m_strCode.empty()) {
        facts.m_bFailed = !isRead([&] {
            facts.m_strKey = qdStockKey(QString::fromStdString(stock.m_strMarket),
                                        QString::fromStdString(stock.m_strCode));
            facts.m_moneyRule =
                moneyRuleOf(hostCall<&CExchangeClient::getCodeInfo>(facts.m_strKey), stock, m_eTraderType);
        });
    }
    return facts;
}

const CInstrumentFacts& CHostFacts::instrument(const CCodeOrderParam& record) {
    const CInstrumentFacts& facts = factsOf(record);
    m_bRowFailed = m_bRowFailed || facts.m_bFailed;
    return facts;
}

CPriceDataPtr CHostFacts::quote(const CCodeOrderParam& record) {
    CInstrumentFacts& facts = factsOf(record);
    if (!facts.m_strKey.isEmpty() && !std::exchange(facts.m_bQuoteRead, true)) {
        if (!isRead([&] { facts.m_quote = hostCall<&CQuoteClient::getStockPrice>(facts.m_strKey); }))
            facts.m_bFailed = true;
    }
    m_bRowFailed = m_bRowFailed || facts.m_bFailed;
    return facts.m_quote;
}

const CAccountFacts& CHostFacts::account(const CCodeOrderParam& record) {
    const std::string key = record.m_account ? record.m_account->getKey() : std::string();
    const auto [place, isNew] = m_accounts.try_emplace(key);
    CAccountFacts& facts = place->second;
    if (isNew && !key.empty()) {
        const bool hasProduct = isRead([&] {
            const CUserConfig* user = getUserConfig();
            if (user != nullptr)
                facts.m_product =
                    hostCall<&CUserConfig::getAccountProduct>.on(*user, QString::fromStdString(key));
        });
        const bool hasData = isRead([&] {
            knservice::CDataCenter& centre = hostCall<&knservice::TraderCenter::getDataCenter>();
            facts.m_data = hostCall<&knservice::CDataCenter::getAccountData>.on(centre, key);
        });
        facts.m_bFailed = !hasProduct || !hasData;
    }
    m_bRowFailed = m_bRowFailed || facts.m_bFailed;
    return facts;
}

bool CHostFacts::repaysMoney(const CCodeOrderParam& record) {
    const EOperationType operation = record.m_eOperationType;
    if (isUnset(operation)) return false;
    const auto [place, isNew] = m_repayments.try_emplace(operation);
    std::optional<bool>& answer = place->second;
    if (isNew) (void)isRead([&] { answer = isDirectRepay(operation); });
    m_bRowFailed = m_bRowFailed || !answer;
    return answer.value_or(false);
}

void CHostFacts::endRow() {
    if (std::exchange(m_bRowFailed, false)) ++m_nFailedRows;
}

void CHostFacts::keepFailure() noexcept {
    if (m_strCause.isEmpty()) m_strCause = exceptionText();
}

void CHostFacts::report() const noexcept {
    if (m_nFailedRows == 0) return;
    runGuarded(QStringLiteral("下单确认表未能完整显示"), [this] {
        reportSafely(QStringLiteral("[接口单]　下单确认表有 %1 行未能完整显示: ").arg(m_nFailedRows) +
                     m_strCause);
    });
}

} // namespace TC
