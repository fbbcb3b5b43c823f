#include "service/StrategyRegistry.h"

#include "base/Text.h"
#include "check/AccountLookup.h"
#include "platform/MsgService.h"
#include "platform/TradeClient.h"
#include "platform/TradingRules.h"
#include "platform/UserConfig.h"
#include "socket/SocketListeners.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace TC {
namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = -1;

/// Whether the accounts that the strategy names are logged in. Without accounts there is nothing to refuse
/// here.
bool areAccountsLoggedIn(const CUserConfig& user, const COrderStrategyParam& strategy) {
    auto& trade = CTradeClient::instance();
    const auto isLoggedIn = [&](const std::string& key) {
        return trade.getLoginStatus(key) == EBROKER_LOGIN_STATUS::LoggedIn;
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

/// Whether the strategy should name an instrument and does not. Credit may leave it open; baskets are asked
/// like all others, and whatever code theirs has does not count.
bool lacksCode(const COrderStrategyParam& strategy) {
    switch (strategy.m_eTradeType) {
    case EOrderStrategyTradeType::Credit:
        return false;
    case EOrderStrategyTradeType::Basket:
    case EOrderStrategyTradeType::FutureBasket:
        return true;
    default:
        return strategy.m_strCode.isEmpty();
    }
}

bool isRegularFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Orders that lie at the path when the strategy starts are old: the file goes unread.
bool dropWaitingFile(const COrderStrategyParam& strategy, QString& error) {
    const std::string path = utils::toPathBytes(strategy.m_strSignalSource);
    if (!isRegularFile(path)) {
        error = QStringLiteral("信号来源必须为文件");
        return false;
    }
    if (::unlink(path.c_str()) != 0 && isRegularFile(path)) {
        error = QStringLiteral("信号来源文件无法删除");
        return false;
    }
    return true;
}

/// The head of the messages about a strategy. Made before the host hears of the change: it may remove the
/// strategy there and then.
QString messageHead(const COrderStrategyParam& strategy) {
    return orderStrategyTypeToOrderTitle(strategy.m_eStrategyType) + QStringLiteral("　") +
           strategy.m_strName;
}

} // namespace

void CStrategyRegistry::setGuard(CGuard guard) {
    const std::lock_guard lock(m_mutex);
    m_guard = std::move(guard);
}

QString CStrategyRegistry::whyRefused(const COrderStrategyParam& strategy) {
    return m_guard ? m_guard(strategy, copy()) : QString();
}

void CStrategyRegistry::bind(COrderStrategyMap* strategies) {
    const std::lock_guard lock(m_mutex);
    // Nobody stays logged in from one user to the next.
    if (m_pStrategies != nullptr && m_pStrategies != strategies) m_listeners.closeAll();
    change([&] { m_pStrategies = strategies; });
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
    filter(&kept);
    const QList<int> channels = m_pStrategies->keys();
    for (const int channel : channels) {
        if (kept.contains(channel)) continue;
        leaveListener(*find(channel));
        change([&] { m_pStrategies->remove(channel); });
    }
}

int CStrategyRegistry::nextId() const {
    int id = 1;
    for (auto it = m_pStrategies->keyBegin(); it != m_pStrategies->keyEnd(); ++it) {
        if (*it == id) ++id;
    }
    return id;
}

int CStrategyRegistry::add(EOrderStrategyType type) {
    const std::lock_guard lock(m_mutex);
    const CUserConfig* user = getUserConfig();
    if (m_pStrategies == nullptr || user == nullptr) return kFailure;
    COrderStrategyParam strategy;
    strategy.m_nChannel = nextId();
    strategy.m_strName = QStringLiteral("策略%1").arg(strategy.m_nChannel);
    strategy.m_eStrategyType = type;
    for (int slot = 0; slot < kSettingSlots; ++slot) {
        const auto which = defaultForSlot(static_cast<ESettingSlot>(slot));
        if (which == EDefaultSetting::None) continue;
        strategy.setting(static_cast<ESettingSlot>(slot)) = user->getDefaultOrderSetting(which);
    }
    change([&] { m_pStrategies->insert(strategy.m_nChannel, strategy); });
    return strategy.m_nChannel;
}

int CStrategyRegistry::update(const COrderStrategyParam& param) {
    const std::lock_guard lock(m_mutex);
    COrderStrategyParam* stored = find(param.m_nChannel);
    if (stored == nullptr || stored->isRunning()) return kFailure;
    if (const QString reason = whyRefused(param); !reason.isEmpty()) {
        showServiceMsg(messageHead(param) + QStringLiteral(": 修改失败! ") + reason);
        return kFailure;
    }
    change([&] {
        *stored = param;
        stored->m_nStartCount = 0;
        // Only a start, with its checks, makes a strategy run.
        stored->m_nStatus = COrderStrategyParam::kStopped;
    });
    return kSuccess;
}

int CStrategyRegistry::remove(int id) {
    const std::lock_guard lock(m_mutex);
    int count = 0;
    change([&] { count = m_pStrategies != nullptr ? m_pStrategies->remove(id) : 0; });
    return count > 0 ? kSuccess : kFailure;
}

COrderStrategyParam* CStrategyRegistry::find(int id) {
    const std::lock_guard lock(m_mutex);
    if (m_pStrategies == nullptr) return nullptr;
    const auto found = m_pStrategies->find(id);
    return found != m_pStrategies->end() ? &found.value() : nullptr;
}

int CStrategyRegistry::start(int id, QString& error, bool showMsg) {
    const std::lock_guard lock(m_mutex);
    COrderStrategyParam* strategy = find(id);
    if (strategy == nullptr) {
        error = QStringLiteral("策略%1不存在").arg(id);
        return kFailure;
    }
    if (m_bClosing) {
        error = QStringLiteral("下单服务已关闭");
        return kFailure;
    }
    const bool wasRunning = strategy->isRunning();
    if (!startChecked(*strategy, error)) return kFailure;
    // The host has heard of the source by now and may have removed the strategy.
    strategy = find(id);
    if (strategy == nullptr) return kSuccess;
    change([&] { strategy->m_nStatus = COrderStrategyParam::kRunning; });
    const QString head = messageHead(*strategy);
    m_onStatus(hasRunning());
    if (showMsg && !wasRunning) showServiceMsg(head + QStringLiteral(": 启动成功!"));
    return kSuccess;
}

/// The tests of a start, in their order; a strategy that runs already passes once its accounts do.
bool CStrategyRegistry::startChecked(COrderStrategyParam& strategy, QString& error) {
    const CUserConfig* user = getUserConfig();
    if (user == nullptr || !hasSelectedAccounts(*user, strategy, EAccountLookup::ByAccount)) {
        error = QStringLiteral("选择的账号组或账号不存在");
        return false;
    }
    if (!areAccountsLoggedIn(*user, strategy)) {
        error = QStringLiteral("选择的账号登录失败");
        return false;
    }
    // Both texts on an empty code are notes: the start goes on.
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
    if (user.hasOrderEncryptionService()) {
        error = QStringLiteral("此版本尚不支持加密的文件单");
        return false;
    }
    // Only file strategies insist on a file at their start.
    return strategy.m_eStrategyType != EOrderStrategyType::File || dropWaitingFile(strategy, error);
}

int CStrategyRegistry::stop(int id, QString& error) {
    const std::lock_guard lock(m_mutex);
    COrderStrategyParam* strategy = find(id);
    if (strategy == nullptr || !strategy->isRunning()) {
        m_onStatus(hasRunning());
        return kSuccess;
    }
    const bool isSignal = strategy->m_eStrategyType == EOrderStrategyType::Signal;
    if (isSignal && !m_listeners.leave(*strategy, error)) return kFailure;
    strategy = find(id);
    if (strategy == nullptr) return kSuccess;
    change([&] {
        strategy->m_nStatus = COrderStrategyParam::kStopped;
        strategy->m_nStartCount = 0;
    });
    const QString head = messageHead(*strategy);
    m_onStatus(hasRunning());
    showServiceMsg(head + QStringLiteral(": 停止运行!"));
    return kSuccess;
}

void CStrategyRegistry::restartRemembered(bool showMsg) {
    const std::lock_guard lock(m_mutex);
    if (m_pStrategies == nullptr) return;
    const QList<int> channels = m_pStrategies->keys();
    for (const int channel : channels) {
        COrderStrategyParam* strategy = find(channel);
        if (strategy == nullptr || !strategy->isRunning()) continue;
        change([&] { strategy->m_nStatus = COrderStrategyParam::kStopped; });
        QString dropped;
        if (start(channel, dropped, showMsg) == kSuccess) continue;
        // One that listened before and may not go on must not be left with an open door.
        if (const COrderStrategyParam* failed = find(channel)) leaveListener(*failed);
    }
}

void CStrategyRegistry::leaveListener(const COrderStrategyParam& strategy) {
    QString dropped;
    if (strategy.m_eStrategyType == EOrderStrategyType::Signal) (void)m_listeners.leave(strategy, dropped);
}

COrderStrategyMap CStrategyRegistry::copy() {
    const std::lock_guard lock(m_mutex);
    if (m_pStrategies == nullptr) return {};
    // Detached at once: the host's map must stay unshared, or its next change would move the records that
    // getStrategy has given out.
    COrderStrategyMap result = *m_pStrategies;
    result.detach();
    return result;
}

std::optional<COrderStrategyParam> CStrategyRegistry::copyOne(int id) const {
    const std::lock_guard lock(m_dataMutex);
    if (m_pStrategies == nullptr) return std::nullopt;
    const auto found = m_pStrategies->constFind(id);
    return found != m_pStrategies->constEnd() ? std::optional<COrderStrategyParam>(*found) : std::nullopt;
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
    // By copies: what a visitor brings about can reach the host, which may remove strategies.
    const QList<int> channels = m_pStrategies->keys();
    for (const int channel : channels) {
        if (const auto strategy = copyOne(channel)) visitor(channel, *strategy);
    }
}

} // namespace TC
