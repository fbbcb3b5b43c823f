#include "desk/host/DeskPortfolios.h"

#include "records/Portfolio.h"

#include <boost/make_shared.hpp>

#include <cstdio>
#include <map>
#include <string>

namespace desk {
namespace {

class CPortfolioData : public knservice::CAccountData {
public:
    explicit CPortfolioData(const std::vector<CPortfolioEntry>& portfolios) {
        for (const CPortfolioEntry& entry : portfolios)
            m_portfolios[knservice::portfolioKey(entry.kind, entry.id)] = portfolioOf(entry);
    }

    std::map<std::string, boost::shared_ptr<knservice::IData>> getMapData(int table) override {
        return table == knservice::kPortfolioTable ? m_portfolios : decltype(m_portfolios){};
    }

    void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override {
        for (const auto& [key, portfolio] : getMapData(table))
            out.push_back(portfolio);
    }

private:
    /// The places of the rows are the keys, so that the first row is the first position.
    static std::string keyOf(std::size_t place) {
        char text[16];
        std::snprintf(text, sizeof text, "%08zu", place);
        return text;
    }

    static boost::shared_ptr<knservice::CPortfolio> portfolioOf(const CPortfolioEntry& entry) {
        auto portfolio = boost::make_shared<knservice::CPortfolio>();
        for (const CPortfolioEntry::CRow& row : entry.rows) {
            const auto position = boost::make_shared<knservice::CPositionDetail>();
            position->m_strCode = row.stockKey; // a code alone could mean another market's instrument
            position->m_nVolume = row.volume;
            portfolio->m_positions[keyOf(portfolio->m_positions.size())] = position;
        }
        return portfolio;
    }

    std::map<std::string, boost::shared_ptr<knservice::IData>> m_portfolios;
};

} // namespace

boost::shared_ptr<knservice::CAccountData> portfolioData(const std::vector<CPortfolioEntry>& portfolios) {
    return portfolios.empty() ? nullptr : boost::make_shared<CPortfolioData>(portfolios);
}

} // namespace desk
