#include "bench/BenchHost.h"

#include "orderservice/service/OrderService.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
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

CBenchServices::CBenchServices(int intervalMs) {
    m_user.interval = intervalMs;
    TC::CHost host = m_host.services();
    host.userManager = &m_user;
    host.orderClient = &m_orders;
    host.msgService = &m_messages;
    if (!TC::installHost(host).isSuccess()) std::abort();
}

CBenchServices::~CBenchServices() {
    TC::releaseHost();
}

CBenchHost::CBenchHost(int strategies, int intervalMs, const std::string& folder)
    : m_strFolder(folder), m_services(intervalMs) {
    for (int i = 1; i <= strategies; ++i) {
        m_services.strategies().insert(i, stockStrategy(i, path(i)));
        std::ofstream(path(i)).put('\n'); // a strategy starts only if its file exists
    }
    TC::COrderService::initInstance(new TC::COrderService);
    TC::COrderService::instance()->loadFromConfig(false);
}

CBenchHost::~CBenchHost() {
    TC::COrderService::instance()->shutdown();
    TC::COrderService::release();
}

std::string CBenchHost::path(int strategy) const {
    return m_strFolder + "/" + std::to_string(strategy) + ".txt";
}

void CBenchHost::dropOrders(int count) {
    dropStockLines(path(1), count);
}

TC::COrderStrategyParam stockStrategy(int channel, const std::string& path) {
    TC::COrderStrategyParam strategy;
    strategy.m_nChannel = channel;
    strategy.m_nStatus = TC::COrderStrategyParam::kRunning;
    strategy.m_eSelectedAccountType = TC::ESelectedAccountType::Account;
    strategy.m_strSelectedAccount = minimal::kAccount;
    strategy.m_strSignalSource = QString::fromStdString(path);
    strategy.m_strCode = minimal::kStockKey;
    return strategy;
}

void dropStockLines(const std::string& path, int count) {
    const std::string draft = path + ".draft";
    std::ofstream(draft, std::ios::binary) << stockLines(count);
    std::rename(draft.c_str(), path.c_str());
}

std::string stockLines(int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i)
        bytes += "23,0,10.5,SH600000,100\n";
    return bytes;
}

std::size_t splitLines(std::FILE* stream) {
    char line[2048];
    std::size_t lines = 0;
    while (std::fgets(line, sizeof line, stream) != nullptr) {
        char* rest = nullptr;
        long type = std::strtol(strtok_r(line, ",", &rest), nullptr, 10);
        long channel = std::strtol(strtok_r(nullptr, ",", &rest), nullptr, 10);
        double price = std::strtod(strtok_r(nullptr, ",", &rest), nullptr);
        char* code = strtok_r(nullptr, ",", &rest);
        long volume = std::strtol(strtok_r(nullptr, ",", &rest), nullptr, 10);
        benchmark::DoNotOptimize(type);
        benchmark::DoNotOptimize(channel);
        benchmark::DoNotOptimize(price);
        benchmark::DoNotOptimize(code);
        benchmark::DoNotOptimize(volume);
        ++lines;
    }
    return lines;
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
