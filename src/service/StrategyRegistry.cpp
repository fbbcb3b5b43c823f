#include "orderservice/service/StrategyRegistry.h"

#include "orderservice/base/FileCount.h"
#include "orderservice/base/Text.h"
#include "orderservice/check/AccountLookup.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/socket/SocketListeners.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace TC {
namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = -1;

/// Whether the accounts that the strategy names are logged in. True if there are no accounts.
bool areAccountsLoggedIn(const CUserConfig& user, const COrderStrategyParam& strategy) {
    const auto isLoggedIn = [](const std::string& key) {
        return hostCall<&CTradeClient::getLoginStatus>(key) == EBROKER_LOGIN_STATUS::LoggedIn;
    };
    switch (strategy.m_eSelectedAccountType) {
    case ESelectedAccountType::Account:
        return isLoggedIn(strategy.m_strSelectedAccount.toStdString());
    case ESelectedAccountType::Group: {
        const CAccountGroup* group = findAccountGroup(user, strategy);
        return group == nullptr ||
               std::all_of(group->m_accounts.begin(), group->m_accounts.end(), isLoggedIn);
    }
    }
    return true;
}

/// Whether the strategy should name an instrument but does not. Credit strategies need no code. For families
/// that are not listed, such as baskets, this is always true, even if the strategy has a code.
bool lacksCode(const COrderStrategyParam& strategy) {
    switch (strategy.m_eTradeType) {
    case EOrderStrategyTradeType::Credit:
        return false;
    case EOrderStrategyTradeType::Stock:
    case EOrderStrategyTradeType::Future:
    case EOrderStrategyTradeType::StockOption:
    case EOrderStrategyTradeType::FutureOption:
    case EOrderStrategyTradeType::SGT:
    case EOrderStrategyTradeType::HGT:
    case EOrderStrategyTradeType::Neeq:
    case EOrderStrategyTradeType::Gold:
        return strategy.m_strCode.isEmpty();
    default:
        return true;
    }
}

/// Reports to the audit a strategy that should run after the load but does not. The user gets no message
/// about it.
void reportNotRunning(EIncident incident, int channel, const QString& cause) {
    CIncidentReport report;
    report.m_eIncident = incident;
    report.m_nChannel = channel;
    report.m_strCause = cause;
    reportToAudit(report);
}

QString notThere(int id) {
    return QStringLiteral("策略%1不存在").arg(id);
}

bool isRegularFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Reports to the audit a file that will be deleted unread. An empty file is not reported, since nothing is
/// lost with it.
void reportDiscard(const COrderStrategyParam& strategy, const std::string& path) {
    const auto count = utils::countFile(path);
    if (count && count->bytes == 0) return;
    CDiscardReport report;
    report.m_eStrategyType = strategy.m_eStrategyType;
    report.m_nChannel = strategy.m_nChannel;
    report.m_strSource = strategy.m_strSignalSource;
    report.m_nLines = count ? count->lines : -1;
    report.m_nBytes = count ? count->bytes : -1;
    reportToAudit(report);
}

/// Orders that are in the file when the strategy starts are old, so the file is deleted unread.
bool dropWaitingFile(const COrderStrategyParam& strategy, QString& error) {
    const std::string path = utils::toPathBytes(strategy.m_strSignalSource);
    if (!isRegularFile(path)) {
        error = QStringLiteral("信号来源必须为文件");
        return false;
    }
    reportDiscard(strategy, path);
    if (::unlink(path.c_str()) != 0 && isRegularFile(path)) {
        error = QStringLiteral("信号来源文件无法删除");
        return false;
    }
    return true;
}

/// Copies the user's default settings into the slots. False if no user is logged in.
bool fillDefaults(COrderStrategyParam& strategy) {
    const CUserConfig* user = getUserConfig();
    if (user == nullptr) return false;
    for (int slot = 0; slot < kSettingSlots; ++slot) {
        const auto which = defaultForSlot(static_cast<ESettingSlot>(slot));
        if (which == EDefaultSetting::None) continue;
        strategy.setting(static_cast<ESettingSlot>(slot)) =
            hostCall<&CUserConfig::getDefaultOrderSetting>.on(*user, which);
    }
    return true;
}

/// The start of the messages about a strategy. It is made before the host learns of the change, because the
/// host may then remove the strategy. The argument is a copy, because the host may also remove the strategy
/// during this function. If the host fails, the title is missing: the change is already done.
QString messageHead(COrderStrategyParam strategy) {
    QString title;
    runGuarded(QStringLiteral("策略标题未知"),
               [&] { title = orderStrategyTypeToOrderTitle(strategy.m_eStrategyType); });
    return title + QStringLiteral("　") + strategy.m_strName;
}

} // namespace

void CStrategyRegistry::setGuard(CGuard guard) {
    const std::lock_guard lock(m_mutex);
    m_guard = std::move(guard);
}

/// If the guard throws, the change or start is refused and reported. The report is needed because a start in
/// loadFromConfig shows no error.
QString CStrategyRegistry::whyRefused(const COrderStrategyParam& strategy) {
    const CGuard guard = m_guard; // a copy: the guard may set another guard
    if (!guard) return {};
    try {
        return guard(strategy, copy());
    } catch (...) {
        reportFailure(QStringLiteral("策略%1: setStrategyGuard").arg(strategy.m_nChannel));
        return QStringLiteral("setStrategyGuard: ") + exceptionText();
    }
}

void CStrategyRegistry::bind(COrderStrategyMap* strategies) {
    const std::lock_guard lock(m_mutex);
    // Socket clients of one user must not stay logged in under the next user.
    if (m_pStrategies != nullptr && m_pStrategies != strategies) m_listeners.closeAll();
    CShared discarded; // declared before the lock, so that it is destroyed after the unlock
    const std::lock_guard dataLock(m_dataMutex);
    ++m_nRevision;
    // The host may have changed the map since the last bind, also if it is the same map.
    discarded.swap(m_shared);
    m_pStrategies = strategies;
}

void CStrategyRegistry::closeDoors() {
    const std::lock_guard lock(m_mutex);
    m_bClosing = true;
    m_listeners.closeAll();
}

bool CStrategyRegistry::isBound() const {
    const std::lock_guard lock(m_dataMutex);
    return m_pStrategies != nullptr;
}

void CStrategyRegistry::filter(const std::function<void(COrderStrategyMap*)>& filter) {
    const std::lock_guard lock(m_mutex);
    COrderStrategyMap kept = copy();
    const QList<int> channels = kept.keys(); // without strategies that the host adds during the filter
    filter(&kept);
    for (const int channel : channels) {
        if (kept.contains(channel)) continue;
        m_leftOut[m_pStrategies].insert(channel);
        leaveListener(channel);
        change(channel, [&] {
            if (m_pStrategies != nullptr) m_pStrategies->remove(channel);
        });
        reportNotRunning(EIncident::StrategyNotLoaded, channel,
                         QStringLiteral("over the limit of strategies"));
    }
}

/// Returns the smallest id that is free. The id of a strategy that was filtered out is not free: the user's
/// configuration still has that strategy, and a new one with its id would overwrite it.
int CStrategyRegistry::nextId() const {
    const auto leftOut = m_leftOut.find(m_pStrategies);
    const auto isTaken = [&](int id) {
        return m_pStrategies->contains(id) || (leftOut != m_leftOut.end() && leftOut->second.count(id) > 0);
    };
    int id = 1;
    while (isTaken(id))
        ++id;
    return id;
}

int CStrategyRegistry::add(EOrderStrategyType type) {
    const std::lock_guard lock(m_mutex);
    COrderStrategyParam strategy;
    bool hasUser = false;
    runGuarded(QStringLiteral("策略未新增"), [&] { hasUser = fillDefaults(strategy); });
    if (!hasUser || m_pStrategies == nullptr) return kFailure;
    strategy.m_nChannel = nextId();
    strategy.m_strName = QStringLiteral("策略%1").arg(strategy.m_nChannel);
    strategy.m_eStrategyType = type;
    change(strategy.m_nChannel, [&] { m_pStrategies->insert(strategy.m_nChannel, strategy); });
    return strategy.m_nChannel;
}

int CStrategyRegistry::update(const COrderStrategyParam& param) {
    const std::lock_guard lock(m_mutex);
    if (!isStopped(param.m_nChannel)) return kFailure;
    if (const QString reason = whyRefused(param); !reason.isEmpty()) {
        reportSafely(messageHead(param) + QStringLiteral(": 修改失败! ") + reason);
        return kFailure;
    }
    if (!isStopped(param.m_nChannel)) return kFailure; // the guard may have removed or started the strategy
    change(param.m_nChannel, [&] {
        COrderStrategyParam& stored = (*m_pStrategies)[param.m_nChannel];
        stored = param;
        stored.m_nStartCount = 0;
        // Only start, which checks the strategy, may set it to running.
        stored.m_nStatus = COrderStrategyParam::kStopped;
    });
    return kSuccess;
}

bool CStrategyRegistry::isStopped(int id) {
    const COrderStrategyPtr strategy = strategyOf(id);
    return strategy && !strategy->isRunning();
}

int CStrategyRegistry::remove(int id) {
    const std::lock_guard lock(m_mutex);
    int count = 0;
    change(id, [&] { count = m_pStrategies != nullptr ? m_pStrategies->remove(id) : 0; });
    if (count > 0) m_leftOut[m_pStrategies].erase(id);
    return count > 0 ? kSuccess : kFailure;
}

COrderStrategyParam* CStrategyRegistry::find(int id) {
    const std::lock_guard lock(m_mutex);
    const std::lock_guard dataLock(m_dataMutex); // the look-up moves the records if the host copied the map
    if (m_pStrategies == nullptr) return nullptr;
    const auto found = m_pStrategies->find(id);
    return found != m_pStrategies->end() ? &found.value() : nullptr;
}

COrderStrategyParam* CStrategyRegistry::findWritable(int id) {
    const std::lock_guard lock(m_mutex);
    COrderStrategyParam* strategy = find(id);
    if (strategy == nullptr) return nullptr;
    CShared::node_type discarded; // declared before the lock, so that it is destroyed after the unlock
    const std::lock_guard dataLock(m_dataMutex);
    m_writable.insert(id);
    discarded = m_shared.extract(id);
    return strategy;
}

int CStrategyRegistry::start(int id, QString& error, bool showMsg) {
    const std::lock_guard lock(m_mutex);
    // Not the record in the map: any service of the host may remove that.
    const COrderStrategyPtr asked = strategyOf(id);
    if (asked == nullptr) {
        error = notThere(id);
        return kFailure;
    }
    if (m_bClosing) {
        error = QStringLiteral("下单服务已关闭");
        return kFailure;
    }
    if (!startGuarded(*asked, error)) return kFailure;
    COrderStrategyParam* strategy = find(id);
    if (strategy == nullptr) return kSuccess;
    change(id, [&] { strategy->m_nStatus = COrderStrategyParam::kRunning; });
    const QString head = messageHead(*strategy);
    m_onStatus(hasRunning());
    if (showMsg && !asked->isRunning()) reportSafely(head + QStringLiteral(": 启动成功!"));
    return kSuccess;
}

/// If a service of the host throws, the start fails.
bool CStrategyRegistry::startGuarded(const COrderStrategyParam& strategy, QString& error) {
    try {
        return startChecked(strategy, error);
    } catch (...) {
        error = QStringLiteral("启动异常: ") + exceptionText();
        reportFailure(QStringLiteral("策略%1未启动").arg(strategy.m_nChannel));
        return false;
    }
}

/// The tests of a start, in their required order. A strategy that is already running only needs its accounts.
bool CStrategyRegistry::startChecked(const COrderStrategyParam& strategy, QString& error) {
    const CUserConfig* user = getUserConfig();
    if (user == nullptr || !hasSelectedAccounts(*user, strategy, EAccountLookup::ByAccount)) {
        error = QStringLiteral("选择的账号组或账号不存在");
        return false;
    }
    if (!areAccountsLoggedIn(*user, strategy)) {
        error = QStringLiteral("选择的账号登录失败");
        return false;
    }
    // The two texts about an empty code are only notes: the start continues.
    if (lacksCode(strategy)) error = QStringLiteral("代码不能为空");
    if (strategy.isRunning()) return true;
    if (lacksCode(strategy) && strategy.m_eTradeType == EOrderStrategyTradeType::Future)
        error = QStringLiteral("合约代码为空");
    if (strategy.m_strSignalSource.isEmpty()) {
        error = QStringLiteral("信号来源为空");
        return false;
    }
    if (const QString reason = whyRefused(strategy); !reason.isEmpty()) {
        error = reason;
        return false;
    }
    if (strategyOf(strategy.m_nChannel) == nullptr) {
        error = notThere(strategy.m_nChannel);
        return false;
    }
    return openSource(*user, strategy, error);
}

bool CStrategyRegistry::openSource(const CUserConfig& user, const COrderStrategyParam& strategy,
                                   QString& error) {
    if (strategy.comesFromFile() && strategy.m_nAccountMode != 0) {
        error = QStringLiteral("此版本尚不支持DBF委托表");
        return false;
    }
    if (strategy.m_eStrategyType == EOrderStrategyType::Signal) return m_listeners.join(strategy, error);
    if (!strategy.comesFromFile()) return true;
    if (hostCall<&CUserConfig::hasOrderEncryptionService>.on(user)) {
        error = QStringLiteral("此版本尚不支持加密的文件单");
        return false;
    }
    // Only strategies of the type File need an existing file at their start.
    return strategy.m_eStrategyType != EOrderStrategyType::File || dropWaitingFile(strategy, error);
}

int CStrategyRegistry::stop(int id, QString& error) {
    const std::lock_guard lock(m_mutex);
    const COrderStrategyPtr asked = strategyOf(id); // the host may remove the record in the map
    if (asked == nullptr || !asked->isRunning()) {
        m_onStatus(hasRunning());
        return kSuccess;
    }
    const bool isSignal = asked->m_eStrategyType == EOrderStrategyType::Signal;
    if (isSignal && !m_listeners.leave(*asked, error)) return kFailure;
    COrderStrategyParam* strategy = find(id);
    if (strategy == nullptr) return kSuccess;
    change(id, [&] {
        strategy->m_nStatus = COrderStrategyParam::kStopped;
        strategy->m_nStartCount = 0;
    });
    const QString head = messageHead(*strategy);
    m_onStatus(hasRunning());
    reportSafely(head + QStringLiteral(": 停止运行!"));
    return kSuccess;
}

void CStrategyRegistry::restartRemembered(bool showMsg) {
    const std::lock_guard lock(m_mutex);
    if (m_pStrategies == nullptr) return;
    const QList<int> channels = m_pStrategies->keys();
    for (const int channel : channels) {
        COrderStrategyParam* strategy = find(channel);
        if (strategy == nullptr || !strategy->isRunning()) continue;
        change(channel, [&] { strategy->m_nStatus = COrderStrategyParam::kStopped; });
        QString error;
        if (start(channel, error, showMsg) == kSuccess) continue;
        // A signal strategy may already be listening. If it must not run, its listener must not stay open.
        leaveListener(channel);
        reportNotRunning(EIncident::StrategyNotStarted, channel, error);
    }
}

void CStrategyRegistry::leaveListener(int id) {
    const COrderStrategyPtr strategy = strategyOf(id); // the host may remove the record in the map
    QString dropped;
    if (strategy != nullptr && strategy->m_eStrategyType == EOrderStrategyType::Signal)
        (void)m_listeners.leave(*strategy, dropped);
}

COrderStrategyMap CStrategyRegistry::copy() {
    const std::lock_guard lock(m_mutex);
    if (m_pStrategies == nullptr) return {};
    // Detached now, because the host's map must not share its data with the copy. Otherwise the next change
    // of the host's map would move the records that getStrategy returned pointers to.
    COrderStrategyMap result = *m_pStrategies;
    result.detach();
    return result;
}

COrderStrategyPtr CStrategyRegistry::strategyOf(int id) {
    const std::lock_guard lock(m_dataMutex);
    const auto shared = m_shared.find(id);
    if (shared != m_shared.end()) return shared->second;
    if (m_pStrategies == nullptr) return nullptr;
    const auto found = m_pStrategies->constFind(id);
    if (found == m_pStrategies->constEnd()) return nullptr;
    auto copy = std::make_shared<const COrderStrategyParam>(*found);
    if (m_writable.count(id) == 0) m_shared.emplace(id, copy);
    return copy;
}

bool CStrategyRegistry::hasRunning() const {
    const std::lock_guard lock(m_dataMutex);
    return m_pStrategies != nullptr &&
           std::any_of(m_pStrategies->cbegin(), m_pStrategies->cend(),
                       [](const COrderStrategyParam& strategy) { return strategy.isRunning(); });
}

QString CStrategyRegistry::statusBarTip() {
    const std::lock_guard lock(m_mutex);
    if (!hasRunning()) return QStringLiteral("没有正在运行的策略");
    QStringList lines;
    for (const COrderStrategyParam& strategy : qAsConst(*m_pStrategies)) {
        if (strategy.isRunning()) lines << strategy.m_strName + QStringLiteral("正在运行");
    }
    return lines.join(QStringLiteral("\n"));
}

void CStrategyRegistry::visit(const std::function<void(int, const COrderStrategyParam&)>& visitor) {
    const std::lock_guard lock(m_mutex);
    if (m_pStrategies == nullptr) return;
    // Not the records in the map: the visitor can cause calls to the host, which may remove them.
    const QList<int> channels = m_pStrategies->keys();
    for (const int channel : channels) {
        if (const COrderStrategyPtr strategy = strategyOf(channel)) visitor(channel, *strategy);
    }
}

} // namespace TC
