#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/DataCenter.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kit {

/// An account's data with a single table, such as knservice::kPositionTable. Its records do not change. All
/// other tables are empty. Any thread.
class ORDERSERVICE_EXPORT CTableData : public knservice::CAccountData {
public:
    using CRecords = std::map<std::string, boost::shared_ptr<knservice::IData>>;

    CTableData(int table, CRecords records) : m_nTable(table), m_records(std::move(records)) {}

    CRecords getMapData(int table) override { return table == m_nTable ? m_records : CRecords{}; }

    void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override {
        for (const auto& [key, record] : getMapData(table))
            out.push_back(record);
    }

private:
    const int m_nTable;
    const CRecords m_records;
};

} // namespace kit
