#include "desk/host/DeskPortfolios.h"

#include "orderservice/records/Portfolio.h"

#include <boost/pointer_cast.hpp>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace desk {
namespace {

TEST(DeskPortfolios, PositionsStandInTheFoldersOrder) {
    std::vector<CPortfolioEntry::CRow> rows;
    for (int i = 0; i < 12; ++i)
        rows.push_back({"SH" + std::to_string(600012 - i), 100 * (i + 1)});
    const auto data = portfolioData({{12, "main", rows}, {3, "b", {}}});
    ASSERT_NE(data, nullptr);
    const auto portfolios = data->getMapData(knservice::kPortfolioTable);
    ASSERT_EQ(portfolios.size(), 2u);
    const auto main = boost::dynamic_pointer_cast<knservice::CPortfolio>(portfolios.at("12____main"));
    ASSERT_NE(main, nullptr);
    std::vector<CPortfolioEntry::CRow>::size_type place = 0;
    for (const auto& [key, record] : main->m_positions) {
        const auto position = boost::dynamic_pointer_cast<knservice::CPositionDetail>(record);
        ASSERT_NE(position, nullptr);
        EXPECT_EQ(position->m_strCode, rows[place].stockKey);
        EXPECT_EQ(position->m_nVolume, rows[place].volume);
        EXPECT_FALSE(position->m_bFlag);
        ++place;
    }
    EXPECT_EQ(place, rows.size());
    EXPECT_TRUE(data->getMapData(knservice::kPositionTable).empty());
}

TEST(DeskPortfolios, AFolderWithoutPortfoliosHasNoData) {
    EXPECT_EQ(portfolioData({}), nullptr);
}

} // namespace
} // namespace desk
