#include "tests/support/FakeTrading.h"

#include "tests/support/Describe.h"

#include <boost/make_shared.hpp>

#include <chrono>
#include <cmath>
#include <numeric>

namespace fake {

bool CRecords::waitUntil(const std::function<bool()>& condition) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::seconds(30), condition);
}

void COrders::orderCommands(const TC::COrderComandParamPtr& command) {
    if (onCommand) onCommand(command);
    m_records.record([&] {
        commands.push_back(command);
        m_records.log.push_back(describe(*command));
    });
}

void COrders::showTradeError(const QString& text, const QString& title) {
    m_records.record([&] {
        errors.push_back({text, title});
        m_records.log.push_back("error " + title.toStdString() + ": " + text.toStdString());
    });
}

TC::EBROKER_LOGIN_STATUS CTrade::getLoginStatus(const std::string& key) {
    const auto found = loginStatus.find(key);
    return static_cast<TC::EBROKER_LOGIN_STATUS>(found != loginStatus.end() ? found->second : 0);
}

namespace {

std::vector<std::string> keysOf(const std::vector<TC::CAccountInfoPtr>& accounts) {
    std::vector<std::string> keys;
    for (const auto& account : accounts)
        keys.push_back(account ? account->getKey() : std::string());
    return keys;
}

std::vector<int> splitByRatio(int volume, const std::vector<double>& ratios, std::size_t accounts) {
    const double sum = std::accumulate(ratios.begin(), ratios.end(), 0.0);
    std::vector<int> volumes(accounts, 0);
    for (std::size_t i = 0; i < accounts && i < ratios.size() && sum > 0; ++i) {
        volumes[i] = static_cast<int>(std::floor(volume * ratios[i] / sum + 1e-9));
    }
    if (accounts > 0) volumes[0] += volume - std::accumulate(volumes.begin(), volumes.end(), 0);
    return volumes;
}

} // namespace

std::vector<int> CTrade::splitEntrusts(int volume, double price, TC::EPriceType priceType,
                                       const std::vector<TC::CAccountInfoPtr>& accounts,
                                       const std::vector<double>& ratios, TC::EPositionType positionType,
                                       const std::string& market, const std::string& code,
                                       TC::EOperationType operation, TC::EHedge_Flag_Type hedge,
                                       const boost::shared_ptr<utils::KNError>& error) {
    const CSplitCall call{volume,       price,  priceType, keysOf(accounts), ratios,
                          positionType, market, code,      operation,        hedge};
    m_records.record([&] { splitCalls.push_back(call); });
    if (split) return split(call, *error);
    if (volume == TC::kUnsetInt) {
        *error = utils::KNError(1, "没有数量");
        return {};
    }
    return splitByRatio(volume, ratios, accounts.size());
}

std::vector<double> CTrade::splitMoney(double amount, const std::vector<TC::CAccountInfoPtr>& accounts,
                                       const std::vector<double>& ratios, TC::EPositionType positionType,
                                       TC::EOperationType operation,
                                       const boost::shared_ptr<utils::KNError>& error) {
    m_records.record([&] {
        moneySplits.push_back({amount, keysOf(accounts), ratios, positionType, operation});
    });
    if (!moneyOverride.empty() || TC::isInvalidPrice(amount)) {
        if (moneyOverrideFails || moneyOverride.empty()) *error = utils::KNError(1, "没有金额");
        return moneyOverride;
    }
    std::vector<double> values;
    for (const double ratio : ratios)
        values.push_back(amount * ratio);
    return values;
}

void CTrade::cancelTask(int taskId, int operation, const std::string& text, const std::string& remark,
                        const std::string& tradingDay, const CCancelCallback& callback, int flag) {
    m_records.record([&] {
        cancelled.push_back({taskId, operation, text, remark, tradingDay, !callback.empty(), flag});
        m_records.log.push_back("cancel task " + std::to_string(taskId) + " operation " +
                                std::to_string(operation) + ": " + remark);
    });
}

namespace {

class CFakeTask : public knservice::CTask {
public:
    CFakeTask(CTasks& tasks, int taskId) : m_tasks(tasks), m_nTaskId(taskId) {}
    void operate(const TC::CTaskOpRecord& record) override { m_tasks.addOperation(m_nTaskId, record); }

private:
    CTasks& m_tasks;
    int m_nTaskId;
};

/// The positions of one account.
class CFakeAccountData : public knservice::CAccountData {
public:
    CFakeAccountData(const std::vector<boost::shared_ptr<knservice::IData>>& positions, int canOrder,
                     std::atomic<int>& liveLocks, bool& isReadUnlocked)
        : m_positions(positions), m_nCanOrder(canOrder), m_liveLocks(liveLocks),
          m_isReadUnlocked(isReadUnlocked) {}
    int getCanOrderVolume(const TC::CCodeOrderParam&) override { return m_nCanOrder; }
    std::map<std::string, boost::shared_ptr<knservice::IData>> getMapData(int) override { return {}; }
    void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override {
        if (m_liveLocks == 0) m_isReadUnlocked = true;
        constexpr int kPositions = 547; // a literal on purpose: not the library's constant
        if (table != kPositions) return;
        out.insert(out.end(), m_positions.begin(), m_positions.end());
    }

protected:
    void lock() override { ++m_liveLocks; }
    void unlock() override { --m_liveLocks; }

private:
    std::vector<boost::shared_ptr<knservice::IData>> m_positions;
    const int m_nCanOrder;
    std::atomic<int>& m_liveLocks;
    bool& m_isReadUnlocked;
};

} // namespace

boost::shared_ptr<knservice::CAccountData> CTasks::getAccountData(const std::string& key) {
    if (const auto given = accountData.find(key); given != accountData.end()) return given->second;
    const auto found = positions.find(key);
    const auto volume = canOrder.find(key);
    if (found == positions.end() && volume == canOrder.end()) return nullptr;
    return boost::make_shared<CFakeAccountData>(
        found != positions.end() ? found->second : std::vector<boost::shared_ptr<knservice::IData>>{},
        volume != canOrder.end() ? volume->second : TC::kUnsetInt, liveLocks, readUnlocked);
}

void CTasks::getVector(int, std::vector<boost::shared_ptr<knservice::IData>>&) {}

knservice::CPositionStaticsPtr CTasks::addPosition(const TC::CAccountInfoPtr& account,
                                                   const std::string& market, const std::string& code,
                                                   int volume) {
    const auto position = boost::make_shared<knservice::CPositionStatics>();
    position->m_account = account;
    position->m_strMarket = market;
    position->m_strCode = code;
    position->m_strName = "name of " + code;
    position->m_nPositionVolume = volume;
    position->m_nAvailableVolume = volume;
    positions[account->getKey()].push_back(position);
    return position;
}

boost::shared_ptr<knservice::CAccountData> CTasks::getGlobalAccountData() {
    // The deleter does nothing: the fake outlives every holder of its data.
    return hasGlobalData ? boost::shared_ptr<knservice::CAccountData>(this, [](auto*) {}) : nullptr;
}

std::map<std::string, boost::shared_ptr<knservice::IData>> CTasks::getMapData(int table) {
    const auto found = tables.find(table);
    return found != tables.end() ? found->second
                                 : std::map<std::string, boost::shared_ptr<knservice::IData>>();
}

std::vector<boost::shared_ptr<knservice::CTask>> CTasks::findTasks(int taskId) {
    std::vector<boost::shared_ptr<knservice::CTask>> found;
    const auto count = tasks.find(taskId);
    for (int i = 0; count != tasks.end() && i < count->second; ++i) {
        found.push_back(boost::make_shared<CFakeTask>(*this, taskId));
    }
    return found;
}

void CTasks::addOperation(int taskId, const TC::CTaskOpRecord& record) {
    m_records.record([&] {
        operations.emplace_back(taskId, record);
        m_records.log.push_back("task " + std::to_string(taskId) + ": " + record.m_strRemark);
    });
}

void CFramework::switchTradingDate(const std::string& date) {
    m_records.record([&] { dates.push_back(date); });
}

} // namespace fake
