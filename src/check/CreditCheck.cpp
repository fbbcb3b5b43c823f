// Margin trading and securities lending: trades, repayments, and the end of a single contract.
#include "orderservice/check/CheckFrame.h"
#include "orderservice/check/CodeLookup.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/OrderTypes.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace TC {
namespace {

bool resolveCreditCode(CCheckRun& run) {
    const bool isFound = resolveStockCode(run.code, EKeyJoin::Plain);
    // A repayment of money needs no instrument, so its code is used unchanged.
    return isFound || run.order.m_nOrderType == kOrderCreditAmount || failCode(run);
}

bool checkCreditPrice(const CCheckRun& run) {
    return checkPriceType(run) || failPrice(run, QString::fromUtf8(kBadStockPrice), {});
}

int creditVolumeOfAmount(const CCheckRun& run) {
    return roundToUnit(run, volumeOfAmount(run));
}

void finishRecord(const CCheckRun& run, int, CCodeOrderParam& record) {
    record.m_eEntrustType = operationTypeToEntrustType(run.op);
}

constexpr CFamilyCheck creditCheck(ESettingText settingText) {
    CFamilyCheck family{EOrderStrategyTradeType::Credit};
    family.m_pszTooManyLines = kBadOrderNumber;
    family.m_eSettingText = settingText;
    family.m_eSplitInstrument = ESplitInstrument::Unnamed;
    family.m_pfnResolveCode = resolveCreditCode;
    family.m_pfnCheckPrice = checkCreditPrice;
    family.m_pfnVolumeOfAmount = creditVolumeOfAmount;
    family.m_pfnFinishRecord = finishRecord;
    return family;
}

constexpr CFamilyCheck kTradeCheck = creditCheck(ESettingText::Always);
constexpr CFamilyCheck kOtherCheck = creditCheck(ESettingText::OrderKindThenPlain);

/// The amount of money or the number of shares to repay: from the order's line if it is set there, otherwise
/// from the strategy.
double repaymentOf(const CCheckRun& run, bool isDirect) {
    const COrderSingleParam* line = run.line();
    if (line != nullptr && isDirect && !isInvalidPrice(line->m_dAmount))
        return finiteOrUnset(line->m_dAmount);
    if (line != nullptr && !isDirect && !isUnset(line->m_nVolume)) return line->m_nVolume;
    return run.strategy.m_bUseAmount ? finiteOrUnset(run.strategy.m_dAmount) : run.strategy.m_nVolume;
}

CCodeOrderParam makeRepayment(const CCheckRun& run, const CAccountInfoPtr& account, double value) {
    CCodeOrderParam record = makeRecord(run, run.op, account, truncateToInt(value));
    record.m_eOperationType = run.op;
    record.m_strRepayText = run.order.m_strTradeText3;
    record.m_nQuantityKind = kQuantityKindPlain;
    record.m_dQuantity = value;
    record.m_dPrice = run.calcPrice;
    return record;
}

/// Whether the parts that the host returned can be repaid; if not, reports a failed split. For a quantity
/// below zero no part may be above zero.
bool checkParts(const CCheckRun& run, double quantity, const std::vector<double>& values,
                const utils::KNError& error) {
    const auto isGood = [&](double value) { return std::isfinite(value) && (quantity >= 0 || value <= 0); };
    if (std::all_of(values.begin(), values.end(), isGood)) return true;
    // If the host returns such parts without an error, it gives no reason, so the report needs its own text.
    return failSplit(run, error.isSuccess() ? utils::KNError(1, "金额无效") : error);
}

bool repay(CCheckRun& run) {
    const bool isDirect = isDirectRepay(run.op);
    const double quantity = repaymentOf(run, isDirect);
    takePrices(run);
    std::vector<double> values;
    auto error = boost::make_shared<utils::KNError>();
    if (isDirect) {
        values = hostCall<&CTradeClient::splitMoney>(quantity, run.accounts, run.ratios,
                                                     run.strategy.m_ePositionType, run.op, error);
    } else {
        run.volume = truncateToInt(quantity);
        error = splitVolumes(run, run.op);
        values.assign(run.volumes.begin(), run.volumes.end());
    }
    if (!checkSplitCount(run, values.size(), *error) || !checkParts(run, quantity, values, *error))
        return false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (values[i] > 0.0 && run.accounts[i])
            run.codes.push_back(makeRepayment(run, run.accounts[i], values[i]));
    }
    return true;
}

/// Ends one contract on the account that the order names. It does not wait for a quote, split a volume or
/// check the price.
bool endContract(CCheckRun& run) {
    // Other orders fail in the split if their volume is below zero. There is no split here, so the volume is
    // checked before it reaches the host.
    if (run.strategy.m_nVolume < 0) return failCheck(run, QString::fromUtf8(kBadParams));
    CCodeOrderParam record;
    const QString key =
        getAccountFromOrderParam(run.order.m_strAccountKeyPart1, run.order.m_strAccountKeyPart2);
    const CUserConfig* user = getUserConfig();
    const CAccountPtr account =
        user != nullptr ? hostCall<&CUserConfig::getAccountData>.on(*user, key) : nullptr;
    if (account) record.m_account = hostCall<&CAccount::toInfo>.on(*account);
    record.m_eOperationType = run.op;
    record.m_nVolume = run.strategy.m_nVolume;
    record.m_strContractText = run.order.m_strTradeText1;
    record.m_stock = run.stock();
    record.m_eHedgeFlag = EHedge_Flag_Type::Speculation;
    if (run.detail) {
        record.m_dPrice = finiteOrUnset(run.detail->m_dReferencePrice);
        record.m_ePriceType = EPriceType::Specified;
    }
    run.codes.push_back(std::move(record));
    return true;
}

} // namespace

bool checkCredit(const COrderParam& order, const COrderStrategyParam& strategy,
                 std::vector<CCodeOrderParam>& codes, std::map<std::string, double>& weights) {
    const bool isTrade = !isRepayOrder(order.m_nOrderType) && !isContractEndOrder(order.m_nOrderType);
    CCheckRun run{{}, isTrade ? kTradeCheck : kOtherCheck, order, strategy, codes, weights};
    if (!beginCheck(run)) return false;
    // All kinds of credit orders read the quote once here. Trades read it again and wait for it.
    run.priceData = hostCall<&CQuoteClient::getStockPrice>(run.code);
    if (isTrade) {
        // Takes the strategy's setting again: for trades the price type of the line is ignored.
        takeSetting(run);
        return finishCheck(run);
    }
    return isContractEndOrder(order.m_nOrderType) ? endContract(run) : repay(run);
}

} // namespace TC
