#include "desk/host/PaperTradeClient.h"

#include "desk/market/Market.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <sstream>

namespace desk {
namespace {

class PaperTradeClient : public testing::Test {
protected:
    /// The money of each account, or the text of the error.
    std::string splitMoney(double amount, const std::vector<double>& ratios) {
        const std::vector<TC::CAccountInfoPtr> accounts(2, boost::make_shared<TC::CAccountInfo>());
        const auto error = boost::make_shared<utils::KNError>();
        std::ostringstream text;
        for (const double part : m_client.splitMoney(amount, accounts, ratios, TC::EPositionType{},
                                                     static_cast<TC::EOperationType>(25), error))
            text << part << ' ';
        return text.str() + error->errorMsg();
    }

    const CMarket m_market{{}, {}, {}};
    CJournal m_journal;
    CPaperBroker m_broker{m_market, [](const CBrokerEvent&) { return true; }};
    std::ostringstream m_shown;
    CTextSink m_sink{m_shown};
    CPaperTradeClient m_client{m_journal, m_broker, m_market, m_sink, {}};
};

TEST_F(PaperTradeClient, MoneyIsDividedByWeight) {
    EXPECT_EQ(splitMoney(100.01, {1, 3}), "25 75.01 ");
}

TEST_F(PaperTradeClient, MoneyThatCannotBeDividedIsReported) {
    EXPECT_EQ(splitMoney(-1, {1, 3}), "金额为负数");
    EXPECT_EQ(splitMoney(100, {1}), "the number of weights differs from the number of accounts");
}

TEST_F(PaperTradeClient, CancelOfAnUnknownTaskIsReportedOnTheScreen) {
    m_client.cancelTask(7, 5, {}, "remark", "20260105", {}, 0);
    EXPECT_EQ(m_shown.str(), "cancel of task 7 not done: task 7 is unknown\n");
}

} // namespace
} // namespace desk
