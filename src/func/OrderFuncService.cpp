#include "orderservice/func/OrderFuncService.h"

#include "orderservice/base/Text.h"
#include "orderservice/base/Thread.h"
#include "orderservice/func/FuncCancel.h"
#include "orderservice/func/FuncLog.h"
#include "orderservice/func/FuncParser.h"
#include "orderservice/func/FuncReports.h"
#include "orderservice/func/FuncRoutes.h"
#include "orderservice/func/FuncStrategy.h"
#include "orderservice/func/FuncTables.h"
#include "orderservice/platform/FormulaManager.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradingRules.h"

#include <boost/algorithm/string/case_conv.hpp>

#include <locale>
#include <mutex>
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
constexpr char kAnnouncement[] = "[函数交易]　函数: %1, 交易类型: %2, 下单类型: %3";

/// Only this name may be written in any case.
bool isSmart(const std::string& func) {
    return boost::algorithm::to_upper_copy(func, std::locale::classic()) == kSmartPassOrder;
}

/// The number that names the operation in the announcement.
int announcedNumber(const COrderFuncParam& param) {
    constexpr int kFirstOption = 50;
    constexpr int kLastOption = 59;
    const int number = shownNumber(param.m_nOpType, param.m_nOrderType);
    return number >= kFirstOption && number <= kLastOption ? number - 2 : number;
}

void announce(const COrderFuncParam& param, EOrderStrategyTradeType tradeType) {
    sendMsg(utils::fillText(QString::fromUtf8(kAnnouncement),
                            {param.m_strFuncName, orderStrategyTradeTypeToString(tradeType),
                             orderStrategyOrderTypeToString(announcedNumber(param))}),
            utils::ELogLevel::Info);
}

} // namespace

/// Counts the calls that run. The formula manager's call-back and the running calls keep it alive.
class COrderFuncService::CEntry {
public:
    /// Begins a call. Returns false if the service is released.
    bool enter() {
        const std::lock_guard lock(m_mutex);
        if (!m_bOpen) return false;
        ++m_nRunning;
        return true;
    }
    void leave() {
        const std::lock_guard lock(m_mutex);
        --m_nRunning;
    }
    /// No call begins afterwards. Returns false, and closes nothing, while a call runs.
    bool close() {
        const std::lock_guard lock(m_mutex);
        if (m_nRunning > 0) return false;
        m_bOpen = false;
        return true;
    }

private:
    std::mutex m_mutex;
    bool m_bOpen = true;
    int m_nRunning = 0;
};

/// A call that runs on the calling thread.
class COrderFuncService::CRunningCall {
public:
    explicit CRunningCall(std::shared_ptr<CEntry> entry)
        : m_entry(std::move(entry)), m_bEntered(m_entry != nullptr && m_entry->enter()) {}
    ~CRunningCall() {
        if (m_bEntered) m_entry->leave();
    }
    CRunningCall(const CRunningCall&) = delete;
    CRunningCall& operator=(const CRunningCall&) = delete;

    /// False: the service is released.
    explicit operator bool() const { return m_bEntered; }

private:
    const std::shared_ptr<CEntry> m_entry;
    const bool m_bEntered;
    const utils::CLibraryCall m_call;
};

COrderFuncService::COrderFuncService() : m_entry(std::make_shared<CEntry>()) {
    qRegisterMetaType<knservice::COrderCommandPtr>("knservice::COrderCommandPtr");
    qRegisterMetaType<utils::KNError>("utils::KNError");
}

COrderFuncService::~COrderFuncService() {
    (void)m_entry->close();
}

void COrderFuncService::release() {
    if (instance() == nullptr) return;
    if (utils::CLibraryCall::isInProgress())
        return reportSafely(QStringLiteral("[函数交易]　不能在回调中关闭函数交易服务, 请在主线程调用!"));
    if (!instance()->m_entry->close())
        return reportSafely(QStringLiteral("[函数交易]　函数仍在执行, 函数交易服务未关闭!"));
    utils::CManualSingletonT<COrderFuncService>::release();
}

void COrderFuncService::init() {
    const utils::CLibraryCall call;
    if (CFormulaManager::isInstalled()) {
        // The formula manager may keep the call-back for longer than this service lives.
        hostCall<&CFormulaManager::registerOrderCallBack>(
            [this, entry = m_entry](std::string func, std::string param) {
                if (const CRunningCall running(entry); running)
                    onParamCallBack(std::move(func), std::move(param));
            });
    }
    connect(&CTradeClient::instance(), &CTradeClient::sigOrderCheckFailed, this,
            &COrderFuncService::slotOrderCheckFaild, Qt::UniqueConnection);
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
    const CRunningCall running(m_entry);
    try {
        logFuncLine(utils::ELogLevel::Info, kEntryName, {"func:", func, ", strParam:", param});
        if (func == kCancel)
            doCancelOrder(func, param);
        else if (func == kPassOrder)
            place(func, param, {});
        else if (isSmart(func))
            place(func, param, algoParam);
    } catch (const CHostError&) {
        reportFailure(utils::fillText(QStringLiteral("函数交易 %1 因主机异常而中断, 请核对委托"),
                                      {QString::fromStdString(func)}));
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
                    {"func:", funcParam.m_strFuncName.toStdString(), ", error reasion:", error});
        return failPlainly(funcParam, QString::fromUtf8(kFailed), QString::fromStdString(error));
    }
    if (!TC::checkAccount(strategy)) return failPlainly(funcParam, QString::fromUtf8(kBadAccount));
    return TC::checkAccountStatus(strategy) || failPlainly(funcParam, QString::fromUtf8(kNotLoggedIn));
}

void COrderFuncService::place(const std::string& func, const std::string& param,
                              const std::string& algoParam) {
    COrderFuncParam funcParam;
    funcParam.m_strFuncName = QString::fromStdString(func);
    COrderStrategyParam strategy;
    if (!prepare(funcParam, param, strategy)) return;
    announce(funcParam, strategy.m_eTradeType);
    routeCall(funcParam, strategy, reporterOf(funcParam), algoParam);
}

bool COrderFuncService::failPlainly(const COrderFuncParam& funcParam, const QString& pattern,
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
