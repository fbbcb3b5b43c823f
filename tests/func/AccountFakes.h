#pragma once

#include "orderservice/platform/Calculator.h"
#include "orderservice/platform/DataCenter.h"

#include <boost/make_shared.hpp>

#include <cfloat>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <string>
#include <vector>

/// The data of one account that function trading reads.
class CFakeFuncAccount : public knservice::CAccountData {
public:
    explicit CFakeFuncAccount(TC::CAccountInfoPtr info) : m_info(std::move(info)) {}
    std::map<std::string, boost::shared_ptr<knservice::IData>> getMapData(int) override { return {}; }
    void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override {
        if (table == 542) out.insert(out.end(), m_orders.begin(), m_orders.end()); // not the library's name
    }
    knservice::CAccountDetailPtr getAccountDetail() override { return m_detail; }
    TC::CAccountInfoPtr getAccountInfo() override { return m_info; }
    const std::map<std::string, boost::shared_ptr<knservice::IData>>& getMapDataRef(int table) override {
        if (!m_bLocked) m_bReadUnlocked = true;
        return table == 555 ? m_fees
                            : knservice::CAccountData::getMapDataRef(table); // not the library's name
    }
    double getUsableVolume(const std::string& market, const std::string& code, TC::EOperationType op,
                           TC::EHedge_Flag_Type hedge, double price) override {
        const std::lock_guard lock(m_callsMutex);
        m_calls.push_back(market + code + " op " + std::to_string(static_cast<int>(op)) + " hedge " +
                          std::to_string(static_cast<int>(hedge)) + " at " + std::to_string(price));
        return m_dUsable;
    }

    TC::CAccountInfoPtr m_info;
    knservice::CAccountDetailPtr m_detail;
    std::map<std::string, boost::shared_ptr<knservice::IData>> m_fees;
    std::vector<boost::shared_ptr<knservice::IData>> m_orders;
    double m_dUsable = 0;
    std::vector<std::string> m_calls; ///< of getUsableVolume
    bool m_bReadUnlocked = false;

protected:
    void lock() override { m_bLocked = true; }
    void unlock() override { m_bLocked = false; }

private:
    std::mutex m_callsMutex;
    bool m_bLocked = false;
};

class CFakeCalculator : public knservice::ICalculator {
public:
    std::int64_t getVolumeLimit(const TC::CAccountInfo& account, const std::string& market,
                                const std::string& code, TC::EOperationType op, TC::EHedge_Flag_Type hedge,
                                double price, int& first, int& second, std::int64_t count, bool isPart,
                                int subKind) override {
        m_calls.push_back(account.m_strKey + " " + market + code + " op " +
                          std::to_string(static_cast<int>(op)) + " hedge " +
                          std::to_string(static_cast<int>(hedge)) + " at " + std::to_string(price) +
                          " kinds " + std::to_string(first) + " " + std::to_string(second) + " of " +
                          std::to_string(count) + (isPart ? " part " : " whole ") + std::to_string(subKind));
        first = second = 0;
        return m_nLimit;
    }

    std::int64_t m_nLimit = std::numeric_limits<std::int64_t>::max();
    std::vector<std::string> m_calls;
};
