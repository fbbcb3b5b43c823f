#include "orderservice/socket/SocketListeners.h"

#include "orderservice/base/Log.h"
#include "orderservice/base/Thread.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/socket/OrderCredit.h"
#include "orderservice/socket/OrderSocketServerWrapper.h"

#include <boost/make_shared.hpp>

#include <QStringList>

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <utility>

namespace TC {
namespace {

constexpr const char* kStartFailed = "启动socket服务失败（可能因为端口被占用或其它原因）";

void reportDoor(EDoorEvent event, const QString& source, const QString& cause = {}) {
    CDoorReport report;
    report.m_eEvent = event;
    report.m_strSource = source;
    report.m_strCause = cause;
    reportToAudit(report);
}

void logFailure(const void* object, const char* function, const char* text) noexcept {
    try {
        if (!utils::CLogCenter::logEnabled()) return;
        utils::CLogCenter::log(utils::ELogLevel::Error, utils::kStdFileLogger, object, function, text);
    } catch (...) {
        // A failed log must not end a listener or a destructor.
    }
}

/// The listener's thread. An exception of the event loop is logged, and the loop continues.
void serve(COrderSocketServerWrapper& wrapper) {
    const utils::CLibraryCall call;
    utils::setThreadName("orderSocketWrapper");
    for (bool isDone = false; !isDone;) {
        try {
            wrapper.run();
            isDone = true;
        } catch (...) {
            logFailure(&wrapper, "TC::COrderSocketServerWrapper::run", "the event loop failed and goes on");
        }
    }
}

/// Splits "ip:port" into its two parts. False if the text has another form.
bool splitSource(const QString& source, std::string& ip, unsigned short& port) {
    const QStringList parts = source.split(QLatin1Char(':'));
    if (parts.size() != 2) return false;
    bool isNumber = false;
    port = static_cast<unsigned short>(parts[1].toInt(&isNumber, 10));
    ip = parts[0].toStdString();
    // The port is checked because a text that is not a number would become 0, and the system would then
    // choose a port. Such a listener runs, but no client can find it. So the strategy is refused. A number
    // above 65535 is still narrowed to 16 bits.
    return isNumber && port != 0;
}

/// Returns a note if the port number was narrowed; otherwise an empty text.
QString openingNote(const QString& source, unsigned short port) {
    const QString asEntered = source.section(QLatin1Char(':'), 1);
    return asEntered.toInt() == port ? QString() : QStringLiteral("listens on port %1").arg(port);
}

} // namespace

CSocketListeners::CSocketListeners(IOrderGate& gate, IStrategyRegistry& registry)
    : m_gate(gate), m_registry(registry), m_credit(std::make_shared<COrderCredit>()) {}

CSocketListeners::~CSocketListeners() {
    closeAll();
    joinAll();
}

bool CSocketListeners::join(const COrderStrategyParam& strategy, QString& error) {
    QString reason;
    try {
        if (m_socketServers.contains(strategy.m_strSignalSource)) {
            share(strategy, reason);
        } else {
            open(strategy, reason);
        }
    } catch (const CHostError&) {
        reportFailure(strategy.m_strSignalSource);
        reason = QString::fromUtf8(kStartFailed);
    } catch (...) {
        reason = QString::fromUtf8(kStartFailed);
    }
    if (!reason.isEmpty()) error = reason;
    return reason.isEmpty();
}

void CSocketListeners::share(const COrderStrategyParam& strategy, QString& error) {
    const QString& source = strategy.m_strSignalSource;
    CFutrueSocketServerParam& param = m_socketParams[source];
    if (param.m_strUser != strategy.m_strUser || param.m_strPass != strategy.m_strPass) {
        error = source + QStringLiteral("已绑定一个正在监听的口服务, 请将用户名和密码设置成统一的配置后再试");
        return;
    }
    QSet<int>& ids = m_socketServers[source]->server()->strategyIds();
    if (ids.contains(strategy.m_nChannel)) return; // started again without a stop: it is already counted
    ids.insert(strategy.m_nChannel);
    ++param.m_nRefCount;
}

void CSocketListeners::open(const COrderStrategyParam& strategy, QString& error) {
    const QString& source = strategy.m_strSignalSource;
    std::string ip;
    unsigned short port = 0;
    if (!splitSource(source, ip, port)) {
        error = QStringLiteral("IP与端口格式不正确");
        return;
    }
    auto wrapper = boost::make_shared<COrderSocketServerWrapper>(ip, port, strategy.m_strUser.toStdString(),
                                                                 strategy.m_strPass.toStdString(), m_gate,
                                                                 m_registry, source, m_credit);
    wrapper->server()->strategyIds().insert(strategy.m_nChannel);
    wrapper->server()->start(false);
    joinFinished();
    CFutrueSocketServerParam param;
    param.m_strUser = strategy.m_strUser;
    param.m_strPass = strategy.m_strPass;
    param.m_nRefCount = 1;
    m_socketParams.insert(source, param);
    m_socketServers.insert(source, wrapper);
    try {
        startThread(wrapper);
    } catch (...) {
        m_socketServers.remove(source);
        m_socketParams.remove(source);
        throw;
    }
    reportDoor(EDoorEvent::Opened, source, openingNote(source, port));
}

/// Must be the last step of a start: a thread whose listener is not on the list could not be stopped.
void CSocketListeners::startThread(boost::shared_ptr<COrderSocketServerWrapper> wrapper) {
    const auto isDone = std::make_shared<std::atomic<bool>>(false);
    m_threads.reserve(m_threads.size() + 1);
    m_threads.push_back({std::thread([wrapper, isDone]() mutable {
                             serve(*wrapper);
                             wrapper.reset();
                             *isDone = true;
                         }),
                         isDone});
}

bool CSocketListeners::leave(const COrderStrategyParam& strategy, QString& error) {
    try {
        const auto wrapper = m_socketServers.value(strategy.m_strSignalSource);
        if (!wrapper || !wrapper->server()->strategyIds().contains(strategy.m_nChannel)) return true;
        CFutrueSocketServerParam& param = m_socketParams[strategy.m_strSignalSource];
        if (param.m_nRefCount == 1) {
            close(strategy.m_strSignalSource);
        } else {
            wrapper->server()->strategyIds().remove(strategy.m_nChannel);
            --param.m_nRefCount;
        }
        return true;
    } catch (...) {
        error = QStringLiteral("停止socket服务失败");
        return false;
    }
}

/// A listener that fails to stop stays on the list, so that it can be stopped later.
void CSocketListeners::close(QString source) {
    const auto wrapper = m_socketServers.value(source);
    if (!wrapper) return;
    stopListener(*wrapper);
    m_socketServers.remove(source);
    reportDoor(EDoorEvent::Closed, source);
}

void CSocketListeners::stopListener(COrderSocketServerWrapper& wrapper) {
    wrapper.stop();
}

/// Joins the threads that have ended. Does not wait for the others.
void CSocketListeners::joinFinished() {
    const auto isRunning = [](CListenerThread& listener) {
        if (!*listener.isDone) return true;
        listener.thread.join();
        return false;
    };
    m_threads.erase(std::stable_partition(m_threads.begin(), m_threads.end(), isRunning), m_threads.end());
}

/// A listener that does not stop stays on the list. The others are still closed.
void CSocketListeners::closeAll() {
    const QStringList sources = m_socketServers.keys();
    for (const QString& source : sources) {
        try {
            close(source);
        } catch (...) {
            logFailure(this, "TC::CSocketListeners::closeAll", "a listener does not stop");
        }
    }
}

void CSocketListeners::joinAll() {
    for (CListenerThread& listener : m_threads)
        listener.thread.join();
    m_threads.clear();
}

} // namespace TC
