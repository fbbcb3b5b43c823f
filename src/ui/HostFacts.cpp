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

namespace {

/// Whether only contracts have this operation. A batch may have orders of several kinds, and its trader type
/// is that of the first one.
bool isContractOperation(EOperationType operation) {
    const auto isWithin = [operation](EOperationType first, EOperationType last) {
        return operation >= first && operation <= last;
    };
    return isWithin(EOperationType::OpenLong, EOperationType::CloseShortEarlierFirstThenOpenLong) ||
           isWithin(EOperationType::OptionBuyOpen, EOperationType::OptionUnlock) ||
           operation == EOperationType::ExerciseFutureOption;
}

} // namespace

CInstrumentFacts& CHostFacts::factsOf(const CCodeOrderParam& record) {
    const CStockInfo& stock = record.m_stock;
    const auto [place, isNew] = m_instruments.try_emplace({stock.m_strMarket, stock.m_strCode});
    CInstrumentFacts& facts = place->second;
    if (isNew && !stock.m_strCode.empty()) {
        facts.m_bFailed = !isRead([&] {
            facts.m_strKey = qdStockKey(QString::fromStdString(stock.m_strMarket),
                                        QString::fromStdString(stock.m_strCode));
            const CInstrumentDetailPtr detail = hostCall<&CExchangeClient::getCodeInfo>(facts.m_strKey);
            const double multiplier = detail ? detail->m_dMultiplier : kUnsetDouble;
            if (std::isfinite(multiplier) && !isInvalidPrice(multiplier) && multiplier > 0)
                facts.m_multiplier = multiplier;
            facts.m_bParPriced = stock.m_strMarket == "SH" &&
                                 knservice::StockTypeCenter::isTypedStock(knservice::kTypeParPriced,
                                                                          stock.m_strMarket, stock.m_strCode);
        });
    }
    return facts;
}

std::optional<CMoneyRule> CHostFacts::moneyRule(const CCodeOrderParam& record) {
    const CInstrumentFacts& facts = instrument(record);
    if (facts.m_bFailed || facts.m_strKey.isEmpty()) return std::nullopt;
    const bool isContract = isFutureLike(m_eTraderType) || m_eTraderType == EQdTraderType::Option ||
                            isContractOperation(record.m_eOperationType);
    if (!facts.m_multiplier && isContract && !facts.m_bParPriced) return std::nullopt;
    return CMoneyRule{facts.m_multiplier.value_or(1), facts.m_bParPriced};
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
            facts.m_bQuoteFailed = true;
    }
    m_bRowFailed = m_bRowFailed || facts.m_bFailed || facts.m_bQuoteFailed;
    return facts.m_quote;
}

const CAccountFacts& CHostFacts::account(const CCodeOrderParam& record) {
    const std::string key = record.m_account ? record.m_account->getKey() : std::string();
    const auto [place, isNew] = m_accounts.try_emplace(key);
    CAccountFacts& facts = place->second;
    if (isNew && !key.empty()) {
        facts.m_bProductFailed = !isRead([&] {
            const CUserConfig* user = getUserConfig();
            if (user != nullptr)
                facts.m_product =
                    hostCall<&CUserConfig::getAccountProduct>.on(*user, QString::fromStdString(key));
        });
        facts.m_bDataFailed = !isRead([&] {
            knservice::CDataCenter& centre = hostCall<&knservice::TraderCenter::getDataCenter>();
            facts.m_data = hostCall<&knservice::CDataCenter::getAccountData>.on(centre, key);
        });
    }
    m_bRowFailed = m_bRowFailed || facts.m_bProductFailed || facts.m_bDataFailed;
    return facts;
}

std::optional<bool> CHostFacts::repaysMoney(const CCodeOrderParam& record) {
    const EOperationType operation = record.m_eOperationType;
    if (isUnset(operation)) return false;
    const auto [place, isNew] = m_repayments.try_emplace(operation);
    std::optional<bool>& answer = place->second;
    if (isNew) (void)isRead([&] { answer = isDirectRepay(operation); });
    if (answer) return answer;
    m_bRowFailed = true;
    // An amount of money is in m_dQuantity, where other records have their volume or nothing.
    const bool hasOtherQuantity =
        !isInvalidPrice(record.m_dQuantity) && record.m_dQuantity != record.m_nVolume;
    return m_eTraderType == EQdTraderType::Credit || hasOtherQuantity ? std::nullopt : std::optional(false);
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
