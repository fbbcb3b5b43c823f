#include "check/CheckFrame.h"

#include "base/Clock.h"
#include "base/Text.h"
#include "check/Reports.h"
#include "platform/ExchangeClient.h"
#include "platform/TradeClient.h"
#include "platform/TradingRules.h"

#include <boost/make_shared.hpp>

#include <cmath>
#include <limits>

namespace TC {
namespace {

constexpr int kQuoteRetries = 2;
constexpr double kQuoteRetrySeconds = 1.0;

/// Takes what the order's line says about its instrument; the line has a code.
void takeLine(CCheckRun& run, const COrderSingleParam& line) {
    run.code = line.m_strCode;
    if (!isUnset(line.m_nOverFreqMode)) run.record.m_nOverFreqMode = line.m_nOverFreqMode;
    if (!isUnset(line.m_ePriceType)) run.setting.m_ePriceType = line.m_ePriceType;
}

/// An algorithm order keeps its text for the command's parameter text, unless the family reads every text.
bool isSettingTextRead(ESettingText rule, EOrderType orderType) {
    return rule == ESettingText::Always || !knservice::DataHelper::isAlgoOrderType(orderType);
}

bool isQuoteUsable(const CCheckRun& run) {
    if (!run.priceData) return false;
    const EPriceType priceType = run.setting.m_ePriceType;
    return priceType == EPriceType::NoQuote ||
           !isInvalidPrice(run.priceData->getOriginPrice(priceType, run.op));
}

QString sourceHead(const CCheckRun& run) {
    return QStringLiteral("[") + orderStrategyText(run.order.m_eStrategyType) + QStringLiteral("]　");
}

CCodeOrderParam makeRecord(const CCheckRun& run, const CAccountInfoPtr& account, int volume) {
    CCodeOrderParam record = run.record;
    orderSettingToParam(run.setting, record, run.op, volume, run.orderPrice, run.priceData);
    fixTimeRange(record);
    record.m_account = account;
    record.m_nVolume = volume;
    record.m_eHedgeFlag = EHedge_Flag_Type::Speculation;
    record.m_ePositionType = run.strategy.m_ePositionType;
    record.m_stock = run.stock();
    if (run.family.m_pfnFinishRecord != nullptr) run.family.m_pfnFinishRecord(run, volume, record);
    return record;
}

} // namespace

bool failCheck(const CCheckRun& run, const QString& pattern, const QString& argument) {
    showCheckFailure(utils::fillText(pattern, {orderStrategyText(run.order.m_eStrategyType),
                                               QString::number(run.strategy.m_nChannel), argument}));
    return false;
}

QString preparedAccountKey(const COrderParam& order, const COrderStrategyParam& strategy) {
    if (strategy.m_nAccountMode != COrderStrategyParam::kTableMode) return strategy.m_strSelectedAccount;
    return order.m_orders.isEmpty() ? QString() : order.m_orders.first().m_strAccount;
}

int truncateToInt(double value) {
    const double whole = std::trunc(value);
    const bool fits = whole >= std::numeric_limits<int>::min() && whole <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(whole) : kUnsetInt;
}

bool checkOrderNumber(const CCheckRun& run) {
    const CFamily* family = findFamily(run.family.m_eTradeType);
    if (family != nullptr && family->accepts(run.order.m_nOrderType)) return true;
    return failCheck(run, QStringLiteral("[%1]　通道号: %2, 下单指令不合法!"));
}

bool checkLineCount(const CCheckRun& run) {
    if (run.order.m_orders.size() <= 1) return true;
    const char* report = run.family.m_pszTooManyLines;
    return failCheck(run, QString::fromUtf8(report != nullptr ? report : kTooManyLines));
}

bool resolveAccounts(CCheckRun& run) {
    QString accountKey = preparedAccountKey(run.order, run.strategy);
    return run.service.checkAccountKey(run.order, run.strategy, accountKey, run.accounts, run.ratios,
                                       run.weights, true);
}

void takeSetting(CCheckRun& run) {
    const COrderParam& order = run.order;
    run.op = orderTypeToOperationType(order.m_nOrderType);
    run.setting = run.strategy.setting(findFamily(run.family.m_eTradeType)->m_eSlot);
    if (order.m_strOrderSetting.empty()) return;
    const ESettingText rule = run.family.m_eSettingText;
    if (rule == ESettingText::OrderKindThenPlain) run.setting.m_eOrderType = order.m_eOrderType;
    if (!isSettingTextRead(rule, order.m_eOrderType)) return;
    orderSettingFromString(run.setting, QString::fromStdString(order.m_strOrderSetting));
}

bool resolveCode(CCheckRun& run) {
    run.code = run.strategy.m_strCode;
    const COrderSingleParam* line = run.line();
    if (line == nullptr || line->m_strCode.isEmpty()) return true;
    takeLine(run, *line);
    return run.family.m_pfnResolveCode == nullptr || run.family.m_pfnResolveCode(run);
}

void loadInstrument(CCheckRun& run) {
    run.quoteRequest = run.service.prepareCode(run.code, run.accounts);
    if (const CInstrumentDetailPtr detail = CExchangeClient::instance().getCodeInfo(run.code)) {
        run.record.m_stock = {detail->m_strMarket, detail->m_strCode, detail->m_strName,
                              detail->m_strProductId};
    }
    run.record.m_eOperationType = run.op;
    if (const CUserConfig* user = getUserConfig()) run.record.m_strUserId = user->getUserName();
}

void waitForQuote(CCheckRun& run) {
    auto& quotes = CQuoteClient::instance();
    run.priceData = quotes.getStockPrice(run.code);
    if (run.setting.m_ePriceType == EPriceType::Specified) return;
    for (int retry = 0; retry < kQuoteRetries && !isQuoteUsable(run); ++retry) {
        utils::sleep(kQuoteRetrySeconds);
        run.priceData = quotes.getStockPrice(run.code);
    }
}

void takePrices(CCheckRun& run) {
    if (run.setting.m_ePriceType == EPriceType::Specified) {
        const COrderSingleParam* line = run.line();
        run.calcPrice = run.orderPrice = line != nullptr ? line->m_dPrice : kUnsetDouble;
    } else if (run.priceData) {
        run.calcPrice = run.priceData->getPriceForCalc(run.setting.m_ePriceType, run.op, 0, {});
        run.orderPrice = run.priceData->getPriceForOrder(run.setting.m_ePriceType, run.op, 0, {});
    }
}

void takeVolume(CCheckRun& run) {
    const COrderSingleParam* line = run.line();
    if (line != nullptr && !isUnset(line->m_nVolume)) {
        run.volume = line->m_nVolume;
    } else if (run.strategy.m_bUseAmount && run.family.m_pfnVolumeOfAmount != nullptr) {
        run.volume = run.family.m_pfnVolumeOfAmount(run);
    } else {
        run.volume = run.strategy.m_nVolume;
    }
}

bool splitOverAccounts(CCheckRun& run) {
    if (isInvalidPrice(run.calcPrice) && run.priceData) run.calcPrice = run.priceData->m_dFallbackPrice;
    const auto error = boost::make_shared<utils::KNError>();
    run.volumes = CTradeClient::instance().splitEntrusts(
        run.volume, run.calcPrice, run.setting.m_ePriceType, run.accounts, run.ratios,
        run.strategy.m_ePositionType, run.stock().m_strMarket, run.stock().m_strCode, run.op,
        EHedge_Flag_Type::Speculation, error);
    if (run.volumes.size() == run.accounts.size()) return true;
    showCheckFailure(sourceHead(run) + QStringLiteral("分单失败: ") +
                     QString::fromStdString(error->errorMsg()));
    return false;
}

bool buildRecords(CCheckRun& run) {
    for (std::size_t i = 0; i < run.accounts.size(); ++i) {
        if (run.volumes[i] < 1 || !run.accounts[i]) continue;
        CCodeOrderParam record = makeRecord(run, run.accounts[i], run.volumes[i]);
        if (record.m_ePriceType == EPriceType::Specified && isZero(record.m_dPrice)) {
            showCheckFailure(sourceHead(run) + QStringLiteral("不能以0为模型价报单!"));
            return false;
        }
        run.codes.push_back(std::move(record));
    }
    return true;
}

bool runFamilyCheck(CCheckRun& run) {
    if (!checkOrderNumber(run) || !checkLineCount(run) || !resolveAccounts(run)) return false;
    takeSetting(run);
    if (!resolveCode(run)) return false;
    loadInstrument(run);
    waitForQuote(run);
    if (run.family.m_pfnCheckPrice != nullptr && !run.family.m_pfnCheckPrice(run)) return false;
    takePrices(run);
    takeVolume(run);
    return splitOverAccounts(run) && buildRecords(run);
}

} // namespace TC
