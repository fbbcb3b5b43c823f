#include "desk/host/DeskPortfolios.h"

#include "orderservice/kit/TableData.h"
#include "orderservice/records/Portfolio.h"

#include <boost/make_shared.hpp>

#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>

namespace desk {
namespace {

/// A position's key is its row number, so that the first row is the first position.
std::string keyOf(std::size_t place) {
    char text[16];
    std::snprintf(text, sizeof text, "%08zu", place);
    return text;
}

boost::shared_ptr<knservice::CPortfolio> portfolioOf(const CPortfolioEntry& entry) {
    auto portfolio = boost::make_shared<knservice::CPortfolio>();
    for (const CPortfolioEntry::CRow& row : entry.rows) {
        const auto position = boost::make_shared<knservice::CPositionDetail>();
        position->m_strCode = row.stockKey; // the code alone may also exist in another market
        position->m_nVolume = row.volume;
        portfolio->m_positions[keyOf(portfolio->m_positions.size())] = position;
    }
    return portfolio;
}

} // namespace

boost::shared_ptr<knservice::CAccountData> portfolioData(const std::vector<CPortfolioEntry>& portfolios) {
    if (portfolios.empty()) return nullptr;
    kit::CTableData::CRecords records;
    for (const CPortfolioEntry& entry : portfolios)
        records[knservice::portfolioKey(entry.kind, entry.id)] = portfolioOf(entry);
    return boost::make_shared<kit::CTableData>(knservice::kPortfolioTable, std::move(records));
}

} // namespace desk
