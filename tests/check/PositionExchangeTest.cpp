#include "orderservice/check/PositionExchange.h"

#include "orderservice/records/Portfolio.h"
#include "tests/check/CheckFixture.h"

#include <boost/make_shared.hpp>

#include <map>
#include <random>

namespace {

using namespace TC;

COrderSingleParam target(const QString& code, int volume) {
    COrderSingleParam row;
    row.m_strCode = code;
    row.m_nVolume = volume;
    return row;
}

std::string textOf(const QVector<COrderSingleParam>& rows) {
    std::string text;
    for (const COrderSingleParam& row : rows) {
        text += (row.m_eOperationType == 18   ? "buy "
                 : row.m_eOperationType == 19 ? "sell "
                                              : "target ") +
                std::to_string(row.m_nVolume) + " " + row.m_strCode.toStdString() + ", ";
    }
    return text;
}

class PositionExchange : public CheckFixture {
protected:
    std::string exchange(QVector<COrderSingleParam> rows, int multiplier = 1) {
        service.exchangePositionStock(host.user.accounts.at("A1"), rows, multiplier);
        return textOf(rows);
    }
    void hold(const std::string& code, int volume) {
        host.tasks.addPosition(host.user.accounts.at("A1"), "SH", code, volume);
    }
};

TEST_F(PositionExchange, WithoutTargetsEverythingIsSold) {
    hold("600001", 500);
    hold("600000", 300);
    EXPECT_EQ(exchange({}), "sell 500 600001, sell 300 600000, ");
}

TEST_F(PositionExchange, DifferencesComeInPositionOrderAndPurchasesByCode) {
    hold("c", 1000);
    hold("a", 100);
    hold("e", 50);
    EXPECT_EQ(exchange({target("d", 5), target("a", 300), target("c", 300), target("b", 7), target("e", 50)}),
              "sell 700 c, buy 200 a, buy 7 b, buy 5 d, ");
}

TEST_F(PositionExchange, TargetsAreMultiplied) {
    hold("a", 1000);
    EXPECT_EQ(exchange({target("a", 300), target("b", 10)}, 2), "sell 400 a, buy 20 b, ");
}

TEST_F(PositionExchange, TargetWithoutAVolumeCountsAsItsNumber) {
    hold("a", 1000);
    EXPECT_EQ(exchange({target("a", kUnsetInt), target("b", kUnsetInt)}),
              "buy 2147482647 a, buy 2147483647 b, ");
}

TEST_F(PositionExchange, TargetThatIsNoIntGivesARowWithoutAVolume) {
    hold("a", 1000);
    const std::string none = std::to_string(kUnsetInt);
    EXPECT_EQ(exchange({target("a", 2000000), target("b", 2000000)}, 2000),
              "buy " + none + " a, buy " + none + " b, ");
    EXPECT_EQ(exchange({target("a", 2000000)}, -2000), "sell " + none + " a, ");
}

TEST_F(PositionExchange, PositionsOfOtherBrokersAreNotSeen) {
    host.user.addAccount("C1", EQDBrokerType::Credit);
    const auto position = boost::make_shared<knservice::CPositionStatics>();
    position->m_account = host.user.accounts.at("C1");
    position->m_strCode = "a";
    position->m_nPositionVolume = 100;
    host.tasks.positions["A1"] = {position, nullptr, boost::make_shared<knservice::CPositionStatics>()};
    EXPECT_EQ(exchange({target("a", 300)}), "buy 300 a, ");
}

TEST_F(PositionExchange, TargetOfNothingThatIsNotHeldStaysARow) {
    EXPECT_EQ(textOf(positionDifferences({}, {target("a", 0)}, 1)), "buy 0 a, ");
}

TEST_F(PositionExchange, DataIsHeldStillWhileItIsRead) {
    hold("a", 1000);
    exchange({target("a", 300)});
    EXPECT_FALSE(host.tasks.readUnlocked);
    EXPECT_EQ(host.tasks.liveLocks, 0);
}

TEST_F(PositionExchange, MissingAccountLeavesTheRows) {
    QVector<COrderSingleParam> rows{target("a", 3)};
    service.exchangePositionStock({}, rows, 1);
    EXPECT_EQ(textOf(rows), "target 3 a, ");
}

TEST_F(PositionExchange, PositionsOfLessThanOneDoNotCount) {
    hold("a", 0);
    hold("b", -1);
    hold("c", 1);
    EXPECT_EQ(exchange({}), "sell 1 c, ");
    EXPECT_EQ(exchange({target("b", 30)}), "sell 1 c, buy 30 b, ");
}

TEST_F(PositionExchange, AccountWithoutDataLeavesTheRows) {
    EXPECT_EQ(exchange({target("b", 7), target("a", 3)}), "target 7 b, target 3 a, ");
}

TEST_F(PositionExchange, SecondTargetOfACodeIsAPurchase) {
    hold("a", 100);
    EXPECT_EQ(exchange({target("a", 100), target("a", 30)}), "buy 30 a, ");
}

TEST_F(PositionExchange, SecondPositionOfACodeIsSoldWhole) {
    hold("a", 100);
    hold("a", 50);
    EXPECT_EQ(exchange({target("a", 100)}), "sell 50 a, ");
    EXPECT_EQ(exchange({target("a", 300)}), "buy 200 a, sell 50 a, ");
}

TEST_F(PositionExchange, ItsOrdersLeadToTheTarget) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        std::map<QString, int> position, wanted;
        QVector<CHeldVolume> held;
        QVector<COrderSingleParam> targets;
        for (int i = 0; i < 20; ++i) {
            const QString code = QString::number(600000 + i);
            if (random() % 2)
                held.push_back({code, position[code] = static_cast<int>(random() % 9 + 1) * 100});
            if (random() % 2)
                targets.push_back(target(code, wanted[code] = static_cast<int>(random() % 9) * 50));
        }
        const int multiplier = static_cast<int>(random() % 3 + 1);
        for (const COrderSingleParam& row : positionDifferences(held, targets, multiplier))
            position[row.m_strCode] += row.m_eOperationType == 18 ? row.m_nVolume : -row.m_nVolume;
        for (const auto& [code, volume] : position) {
            const auto found = wanted.find(code);
            EXPECT_EQ(volume, found != wanted.end() ? found->second * multiplier : 0) << code.toStdString();
        }
    }
}

} // namespace
