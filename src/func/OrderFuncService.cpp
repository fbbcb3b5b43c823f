#include "orderservice/func/OrderFuncService.h"

#include "orderservice/base/Text.h"
#include "orderservice/base/Thread.h"
#include "orderservice/func/FuncCancel.h"
#include "orderservice/func/FuncLog.h"
#include "orderservice/func/FuncParser.h"
#include "orderservice/func/FuncReports.h"
#include "orderservice/func/FuncStrategy.h"
#include "orderservice/func/FuncTables.h"
#include "orderservice/func/OrderRoutines.h"
#include "orderservice/platform/FormulaManager.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradingRules.h"

#include <boost/algorithm/string/case_conv.hpp>

#include <iterator>
#include <locale>
#include <utility>

Q_DECLARE_METATYPE(knservice::COrderCommandPtr)
Q_DECLARE_METATYPE(utils::KNError)

namespace TC {
namespace {

constexpr char kCancel[] = "cancel";
constexpr char kPassOrder[] = "passorder";
constexpr char kSmartPassOrder[] = "SMARTALGOPYPASSORDER";

constexpr char kEntryName[] = "TC::COrderFuncService::doParserOrder"; ///< for the log

constexpr char kFailed[] = "[函数交易]　函数: %1, %2";
constexpr char kBadAccount[] = "[函数交易]　函数: %1, 账号组或账号非法或不存在!";
constexpr char kNotLoggedIn[] = "[函数交易]　函数: %1, 存在未登陆的账号, 不能下单!";
constexpr char kBadTradeType[] = "[函数交易]　函数: %1, 交易类型错误";
constexpr char kAnnouncement[] = "[函数交易]　函数: %1, 交易类型: %2, 下单类型: %3";

/// Only this name may be written in any case.
bool isSmart(const std::string& func) {
    return boost::algorithm::to_upper_copy(func, std::locale::classic()) == kSmartPassOrder;
}

/// The number that names the operation in the announcement.
int shownOperation(const COrderFuncParam& param) {
    constexpr int kBuyAgain = 33;
    constexpr int kSellAgain = 34;
    constexpr int kFirstOption = 50;
    constexpr int kLastOption = 59;
    const bool isBasket = isComposeOrderType(param.m_nOrderType);
    if (param.m_nOpType == kBuyAgain) return isBasket ? 25 : 23;
    if (param.m_nOpType == kSellAgain) return isBasket ? 26 : 24;
    const bool isOption = param.m_nOpType >= kFirstOption && param.m_nOpType <= kLastOption;
    return isOption ? param.m_nOpType - 2 : param.m_nOpType;
}

void announce(const COrderFuncParam& param, EOrderStrategyTradeType tradeType) {
    sendMsg(utils::fillText(QString::fromUtf8(kAnnouncement),
                            {param.m_strFuncName, orderStrategyTradeTypeToString(tradeType),
                             orderStrategyOrderTypeToString(shownOperation(param))}),
            utils::ELogLevel::Info);
}

using CRoutine = void (*)(const COrderFuncParam&, const COrderStrategyParam&, const CFuncReporter&,
                          const std::string&);

/// Calls a routine that knows no algorithms.
template<void (*kRoutine)(const COrderFuncParam&, const COrderStrategyParam&, const CFuncReporter&)>
void runPlain(const COrderFuncParam& param, const COrderStrategyParam& strategy,
              const CFuncReporter& reporter, const std::string&) {
    kRoutine(param, strategy, reporter);
}

/// The routines of one trade type.
struct CRoutes {
    CRoutine m_pfnSingle; ///< null: there is none
    CRoutine m_pfnBasket; ///< for the order types of baskets
};

constexpr CRoutine kStock = orderStock;
constexpr CRoutine kBasket = runPlain<orderCompose>;

/// By trade type.
constexpr CRoutes kRoutes[] = {
    {kStock, kStock},                               // 0 stocks
    {runPlain<orderSpec>, runPlain<orderSpec>},     // 1 futures
    {kBasket, kBasket},                             // 2 baskets of stocks
    {runPlain<orderCredit>, kBasket},               // 3 margin trading
    {runPlain<orderOption>, runPlain<orderOption>}, // 4 options on stocks
    {nullptr, nullptr},                             // 5
    {kBasket, kBasket},                             // 6
    {nullptr, nullptr},                             // 7
    {kBasket, kBasket},                             // 8 baskets of futures
    {kStock, kBasket},                              // 9 Shenzhen connect
    {kStock, kBasket},                              // 10 Shanghai connect
};

CRoutine routineOf(const COrderFuncParam& param, EOrderStrategyTradeType tradeType) {
    const auto number = static_cast<int>(tradeType);
    if (number < 0 || number >= static_cast<int>(std::size(kRoutes))) return nullptr;
    const CRoutes& routes = kRoutes[number];
    return isComposeOrderType(param.m_nOrderType) ? routes.m_pfnBasket : routes.m_pfnSingle;
}

} // namespace

struct COrderFuncService::CEntry {
    COrderFuncService& service;
};

COrderFuncService::COrderFuncService() : m_entry(std::make_shared<CEntry>(CEntry{*this})) {
    qRegisterMetaType<knservice::COrderCommandPtr>("knservice::COrderCommandPtr");
    qRegisterMetaType<utils::KNError>("utils::KNError");
}

COrderFuncService::~COrderFuncService() {
    disconnect();
}

void COrderFuncService::release() {
    if (instance() != nullptr && utils::CLibraryCall::isInProgress())
        return reportSafely(QStringLiteral("[函数交易]　不能在回调中关闭函数交易服务, 请在主线程调用!"));
    utils::CManualSingletonT<COrderFuncService>::release();
}

void COrderFuncService::init() {
    const utils::CLibraryCall call;
    if (CFormulaManager::isInstalled()) {
        // The formula manager may keep the call-back for longer than this service lives.
        const std::weak_ptr<CEntry> entry = m_entry;
        hostCall<&CFormulaManager::registerOrderCallBack>([entry](std::string func, std::string param) {
            if (const std::shared_ptr<CEntry> alive = entry.lock())
                alive->service.onParamCallBack(std::move(func), std::move(param));
        });
    }
    connect(&CTradeClient::instance(), &CTradeClient::sigOrderCheckFailed, this,
            &COrderFuncService::slotOrderCheckFaild);
}

void COrderFuncService::loadFromConfig() {}

void COrderFuncService::parseOrder(const std::string& func, const std::string& param) {
    doParserOrder(func, param, {});
}

void COrderFuncService::onParamCallBack(std::string func, std::string param) {
    doParserOrder(func, param, {});
}

void COrderFuncService::doParserOrder(const std::string& func, const std::string& param,
                                      const std::string& algoParam) {
    const utils::CLibraryCall call;
    try {
        logFuncLine(utils::ELogLevel::Info, kEntryName, "func:" + func + ", strParam:" + param);
        if (func == kCancel)
            doCancelOrder(func, param);
        else if (func == kPassOrder)
            place(func, param, {});
        else if (isSmart(func))
            place(func, param, algoParam);
    } catch (const CHostError&) {
        reportFailure(
            utils::fillText(QStringLiteral("函数交易 %1 因主机异常而中止"), {QString::fromStdString(func)}));
        throw;
    }
}

/// The strategy of the call; false after a report.
bool COrderFuncService::prepare(COrderFuncParam& funcParam, const std::string& text,
                                COrderStrategyParam& strategy) {
    std::string error;
    TC::parserParam(funcParam, text, error);
    if (error.empty()) strategy = TC::getStrategy(funcParam, error);
    if (!error.empty()) {
        logFuncLine(utils::ELogLevel::Error, kEntryName,
                    "func:" + funcParam.m_strFuncName.toStdString() + ", error reasion:" + error);
        return fail(funcParam, QString::fromUtf8(kFailed), QString::fromStdString(error));
    }
    if (!TC::checkAccount(strategy)) return fail(funcParam, QString::fromUtf8(kBadAccount));
    return TC::checkAccountStatus(strategy) || fail(funcParam, QString::fromUtf8(kNotLoggedIn));
}

void COrderFuncService::place(const std::string& func, const std::string& param,
                              const std::string& algoParam) {
    COrderFuncParam funcParam;
    funcParam.m_strFuncName = QString::fromStdString(func);
    COrderStrategyParam strategy;
    if (!prepare(funcParam, param, strategy)) return;
    announce(funcParam, strategy.m_eTradeType);
    const CRoutine routine = routineOf(funcParam, strategy.m_eTradeType);
    if (routine == nullptr) {
        fail(funcParam, QString::fromUtf8(kBadTradeType));
        return;
    }
    routine(funcParam, strategy, reporterOf(funcParam), algoParam);
}

bool COrderFuncService::fail(const COrderFuncParam& funcParam, const QString& pattern,
                             const QString& detail) {
    reporterOf(funcParam).reportPlainly(utils::fillText(pattern, {funcParam.m_strFuncName, detail}));
    return false;
}

CFuncReporter COrderFuncService::reporterOf(const COrderFuncParam& param) const {
    return {param.m_strTradeKey, m_orderFailedCallback};
}

void COrderFuncService::registOrderFailedCallback(COrderFailedCallback callback) {
    m_orderFailedCallback.clear();
    m_orderFailedCallback = std::move(callback);
}

void COrderFuncService::orderCheckFaild(const std::string& tradeKey, const utils::KNError& error) {
    const utils::CLibraryCall call;
    TC::orderCheckFaild(tradeKey, error, m_orderFailedCallback);
}

void COrderFuncService::slotOrderCheckFaild(const knservice::COrderCommandPtr& command,
                                            const utils::KNError& error) {
    if (!command) return;
    runGuarded(QStringLiteral("函数交易的拒单未能通知调用者"),
               [&] { orderCheckFaild(command->m_strTradeKey, error); });
}

} // namespace TC
