#pragma once

#include "orderservice/platform/Calculator.h"
#include "orderservice/platform/DataCenter.h"
#include "orderservice/platform/FormulaManager.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/Portfolio.h"
#include "tests/breach/Breaches.h"

#include <cfloat>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// The accounts of the host that breaks its contract, and its formula manager.
namespace breach {

class CAccountInfo : public TC::CAccountInfo {
public:
    explicit CAccountInfo(const CBreaches& breaches) : m_breaches(breaches) {}
    std::string getKey() const override {
        m_breaches("CAccountInfo::getKey");
        return m_strKey;
    }
    BREACHABLE(TC::CAccountInfo, CAccountInfo, std::string, keyWith, (const std::string& text), const, (text))
private:
    const CBreaches& m_breaches;
};

class CAccount : public TC::CAccount {
public:
    CAccount(const CBreaches& breaches, TC::CAccountInfoPtr info)
        : m_breaches(breaches), m_info(std::move(info)) {}
    TC::CAccountInfoPtr toInfo() const override {
        m_breaches("CAccount::toInfo");
        return m_info;
    }
    std::string key() const override {
        m_breaches("CAccount::key");
        return m_info->m_strKey;
    }

private:
    const CBreaches& m_breaches;
    const TC::CAccountInfoPtr m_info;
};

/// What function trading reads of an account.
struct CFuncRecords {
    TC::CAccountInfoPtr info;
    knservice::CAccountDetailPtr detail;
    std::vector<boost::shared_ptr<knservice::IData>> orders;
    std::map<std::string, boost::shared_ptr<knservice::IData>> fees;
};

class CAccountData : public knservice::CAccountData {
public:
    using CRecordMap = std::map<std::string, boost::shared_ptr<knservice::IData>>;

    /// `records` must outlive the object.
    CAccountData(const CBreaches& breaches, knservice::CPositionStaticsPtr position,
                 const CFuncRecords& records)
        : m_breaches(breaches), m_position(std::move(position)), m_records(records) {}
    CRecordMap getMapData(int) override { return {}; }
    void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override {
        m_breaches("CAccountData::getVector");
        if (table == knservice::kOrderTable)
            out.insert(out.end(), m_records.orders.begin(), m_records.orders.end());
        else
            out.push_back(m_position);
    }
    knservice::CAccountDetailPtr getAccountDetail() override {
        m_breaches("CAccountData::getAccountDetail");
        return m_records.detail;
    }
    TC::CAccountInfoPtr getAccountInfo() override {
        m_breaches("CAccountData::getAccountInfo");
        return m_records.info;
    }
    const CRecordMap& getMapDataRef(int) override {
        m_breaches("CAccountData::getMapDataRef");
        return m_records.fees;
    }
    double getUsableVolume(const std::string&, const std::string&, TC::EOperationType, TC::EHedge_Flag_Type,
                           double) override {
        m_breaches("CAccountData::getUsableVolume");
        return DBL_MAX;
    }

protected:
    void lock() override { m_breaches("CAccountData::lock"); }
    void unlock() override { m_breaches("CAccountData::unlock"); }

private:
    const CBreaches& m_breaches;
    const knservice::CPositionStaticsPtr m_position;
    const CFuncRecords& m_records;
};

class CCalculator : public knservice::ICalculator {
public:
    explicit CCalculator(const CBreaches& breaches) : m_breaches(breaches) {}
    std::int64_t getVolumeLimit(const TC::CAccountInfo&, const std::string&, const std::string&,
                                TC::EOperationType, TC::EHedge_Flag_Type, double, int&, int&,
                                std::int64_t count, bool, int) override {
        m_breaches("ICalculator::getVolumeLimit");
        return count;
    }

private:
    const CBreaches& m_breaches;
};

class CFormulas : public TC::CFormulaManager {
public:
    explicit CFormulas(const CBreaches& breaches) : m_breaches(breaches) {}
    void registerOrderCallBack(COrderCallback given) override {
        callback = std::move(given);
        m_breaches("CFormulaManager::registerOrderCallBack");
    }

    COrderCallback callback;

private:
    const CBreaches& m_breaches;
};

} // namespace breach
