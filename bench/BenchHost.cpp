#include "bench/BenchHost.h"

#include "orderservice/service/OrderService.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace bench {

void CCountingOrders::orderCommands(const TC::COrderComandParamPtr&) {
    count(false);
}

void CCountingOrders::showTradeError(const QString&, const QString&) {
    count(true);
}

void CCountingOrders::count(bool refused) {
    std::unique_lock lock(m_mutex);
    if (m_bHold) {
        m_bHeld = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return !m_bHold; });
    }
    ++m_nArrived;
    if (refused) ++m_nRefused;
    if (m_nArrived == m_nAwaited) m_changed.notify_all();
}

void CCountingOrders::hold() {
    const std::lock_guard lock(m_mutex);
    m_bHold = true;
}

void CCountingOrders::release() {
    const std::lock_guard lock(m_mutex);
    m_bHold = m_bHeld = false;
    m_changed.notify_all();
}

void CCountingOrders::waitFor(int count) {
    std::unique_lock lock(m_mutex);
    m_nAwaited = count;
    m_changed.wait(lock, [&] { return m_nArrived >= count; });
}

void CCountingOrders::waitUntilHeld() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_bHeld; });
}

void CCountingOrders::reset() {
    const std::lock_guard lock(m_mutex);
    m_nArrived = m_nRefused = m_nAwaited = 0;
}

int CCountingOrders::refusals() {
    const std::lock_guard lock(m_mutex);
    return m_nRefused;
}

CBenchHost::CBenchHost(int strategies, int intervalMs, const std::string& folder) : m_strFolder(folder) {
    m_user.interval = intervalMs;
    for (int i = 1; i <= strategies; ++i) {
        TC::COrderStrategyParam strategy;
        strategy.m_nChannel = i;
        strategy.m_nStatus = TC::COrderStrategyParam::kRunning;
        strategy.m_eSelectedAccountType = TC::ESelectedAccountType::Account;
        strategy.m_strSelectedAccount = minimal::kAccount;
        strategy.m_strSignalSource = QString::fromStdString(path(i));
        strategy.m_strCode = minimal::kStockKey;
        m_user.getStrategyMap()->insert(i, strategy);
        std::ofstream(path(i)).put('\n'); // a strategy starts only if its file exists
    }
    TC::CHost host = m_host.services();
    host.userManager = &m_user;
    host.orderClient = &m_orders;
    host.msgService = &m_messages;
    if (!TC::installHost(host).isSuccess()) std::abort();
    TC::COrderService::initInstance(new TC::COrderService);
    TC::COrderService::instance()->loadFromConfig(false);
}

CBenchHost::~CBenchHost() {
    TC::COrderService::instance()->shutdown();
    TC::COrderService::release();
    TC::releaseHost();
}

std::string CBenchHost::path(int strategy) const {
    return m_strFolder + "/" + std::to_string(strategy) + ".txt";
}

void CBenchHost::dropOrders(int count) {
    const std::string draft = path(1) + ".draft";
    std::ofstream(draft, std::ios::binary) << stockLines(count);
    std::rename(draft.c_str(), path(1).c_str());
}

std::string stockLines(int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i)
        bytes += "23,0,10.5,SH600000,100\n";
    return bytes;
}

std::string makeFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "order-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) std::abort();
    return pattern;
}

void removeFolder(const std::string& folder) {
    std::filesystem::remove_all(folder);
}

} // namespace bench
