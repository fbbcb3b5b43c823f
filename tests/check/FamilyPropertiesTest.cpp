// Properties of every split, position exchange and division of money, tested with random cases.
#include "orderservice/check/PositionExchange.h"
#include "orderservice/records/Portfolio.h"
#include "tests/check/BasketFixture.h"
#include "tests/check/FamilyChecks.h"
#include "tests/check/FamilyFixture.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <tuple>

namespace {

using namespace TC;

constexpr int kRounds = 400;

/// Random numbers. The sequence is the same in every run and with every standard library.
class CRandom {
public:
    explicit CRandom(unsigned seed) : m_engine(seed) {}
    int upTo(int most) { return static_cast<int>(m_engine() % (static_cast<unsigned>(most) + 1)); }
    bool oneIn(int count) { return upTo(count - 1) == 0; }
    template<typename T>
    const T& oneOf(const std::vector<T>& items) {
        return items[m_engine() % items.size()];
    }
    template<typename Items>
    void shuffle(Items& items) {
        for (int i = static_cast<int>(items.size()) - 1; i > 0; --i)
            std::swap(items[i], items[upTo(i)]);
    }

private:
    std::mt19937 m_engine;
};

QString codeOf(int index) {
    return QString::number(600100 + index);
}

COrderSingleParam makeRow(const QString& code, int volume) {
    COrderSingleParam row;
    row.m_strCode = code;
    row.m_nVolume = volume;
    return row;
}

int change(EOperationType operation, int volume) {
    return operation == EOperationType::Buy ? volume : -volume;
}

// Splits.

/// A family and one of its order numbers whose volume is split.
struct CSplitFamily {
    const char* name;
    EOrderStrategyTradeType family;
    int number;
};

void PrintTo(const CSplitFamily& split, std::ostream* out) {
    *out << split.name;
}

class SplitProperties : public CheckFixture, public testing::WithParamInterface<CSplitFamily> {
protected:
    SplitProperties() { families::addInstrument(host, tested(), tested().code, 10.5); }
    const families::CFamilyUnderTest& tested() const { return families::find(GetParam().family); }
    /// Adds a group of up to eight accounts with a new name. Some accounts have a share of zero.
    QString addGroup(CRandom& random, int round) {
        const EQDBrokerType broker = host.rules.orderStrategyTradeTypeToBrokerType(GetParam().family);
        std::vector<std::pair<std::string, double>> members;
        const int count = 1 + random.upTo(7);
        for (int i = 0; i < count; ++i) {
            members.emplace_back("R" + std::to_string(i), random.oneIn(4) ? 0.0 : random.upTo(1000) / 1000.0);
            host.user.addAccount(members.back().first, broker);
        }
        const std::string name = "random " + std::to_string(round);
        host.user.addGroup(broker, name, members);
        return QString::fromStdString(name);
    }
    bool check(const QString& group, int volume) {
        codes.clear();
        host.trade.splitCalls.clear();
        const COrderParam order =
            COrderBuilder(GetParam().number).line(QString::fromLatin1(tested().code), kUnsetDouble, volume);
        const COrderStrategyParam strategy =
            families::strategyOf(tested(), EPriceType::Latest).group(group).volume(1);
        return tested().check(service, order, strategy, codes, weights);
    }

    std::vector<CCodeOrderParam> codes;
    std::map<std::string, double> weights;
};

TEST_P(SplitProperties, WhatComesOutSumsToWhatWentIn) {
    CRandom random(11);
    for (int round = 0; round < kRounds; ++round) {
        const int volume = random.oneIn(10) ? 1 : 1 + random.upTo(2000000);
        ASSERT_TRUE(check(addGroup(random, round), volume)) << round;
        ASSERT_EQ(host.trade.splitCalls.size(), 1u) << round;
        EXPECT_EQ(host.trade.splitCalls[0].volume, volume) << round;
        long sum = 0;
        std::set<std::string> accounts;
        for (const CCodeOrderParam& code : codes) {
            EXPECT_GE(code.m_nVolume, 1) << round;
            EXPECT_TRUE(accounts.insert(code.m_account->getKey()).second) << round;
            sum += code.m_nVolume;
        }
        EXPECT_EQ(sum, volume) << round;
    }
}

TEST_P(SplitProperties, RecordsAreTheVolumesThatTheHostGave) {
    CRandom random(12);
    std::vector<int> given;
    host.trade.split = [&](const fake::CSplitCall& call, utils::KNError&) {
        given.clear();
        for (std::size_t i = 0; i < call.accounts.size(); ++i)
            given.push_back(random.oneIn(3) ? 0 : random.upTo(1000));
        return given;
    };
    for (int round = 0; round < kRounds; ++round) {
        ASSERT_TRUE(check(addGroup(random, round), 1 + random.upTo(9999))) << round;
        std::vector<std::pair<std::string, int>> expected, actual;
        for (std::size_t i = 0; i < given.size(); ++i) {
            if (given[i] > 0) expected.emplace_back("R" + std::to_string(i), given[i]);
        }
        for (const CCodeOrderParam& code : codes)
            actual.emplace_back(code.m_account->getKey(), code.m_nVolume);
        EXPECT_EQ(actual, expected) << round;
    }
}

// The share-transfer market does not split volumes. Amounts of money and single contracts of credit accounts
// are not split either.
INSTANTIATE_TEST_SUITE_P(Families, SplitProperties,
                         testing::Values(CSplitFamily{"Stock", EOrderStrategyTradeType::Stock, 23},
                                         CSplitFamily{"Future", EOrderStrategyTradeType::Future, 0},
                                         CSplitFamily{"FutureOption", EOrderStrategyTradeType::FutureOption,
                                                      0},
                                         CSplitFamily{"Option", EOrderStrategyTradeType::StockOption, 48},
                                         CSplitFamily{"Sgt", EOrderStrategyTradeType::SGT, 23},
                                         CSplitFamily{"Hgt", EOrderStrategyTradeType::HGT, 23},
                                         CSplitFamily{"Gold", EOrderStrategyTradeType::Gold, 0},
                                         CSplitFamily{"Credit", EOrderStrategyTradeType::Credit, 27},
                                         CSplitFamily{"CreditReturn", EOrderStrategyTradeType::Credit, 31},
                                         CSplitFamily{"Basket", EOrderStrategyTradeType::Basket, 25}),
                         [](const auto& tested) { return tested.param.name; });

// Position exchanges.

using CPositions = std::map<QString, int>;

QVector<CHeldVolume> heldOf(const CPositions& positions) {
    QVector<CHeldVolume> held;
    for (const auto& [code, volume] : positions) {
        if (volume > 0) held.push_back({code, volume});
    }
    return held;
}

CPositions applied(CPositions positions, const QVector<COrderSingleParam>& rows) {
    for (const COrderSingleParam& row : rows)
        positions[row.m_strCode] += change(static_cast<EOperationType>(row.m_eOperationType), row.m_nVolume);
    return positions;
}

using CRowKey = std::tuple<QString, int, int>;

std::multiset<CRowKey> contentOf(const QVector<COrderSingleParam>& rows) {
    std::multiset<CRowKey> content;
    for (const COrderSingleParam& row : rows)
        content.insert({row.m_strCode, row.m_nVolume, row.m_eOperationType});
    return content;
}

class PositionProperties : public CheckFixture {
protected:
    /// Positions in some of the first codes, and targets in some of these codes and in others.
    struct CCase {
        CPositions positions;
        QVector<COrderSingleParam> targets;
        int multiplier = 1;
    };
    static CCase makeCase(CRandom& random, bool hasRepeatedCodes) {
        CCase made;
        made.multiplier = 1 + random.upTo(4);
        for (int i = 0; i < 30; ++i) {
            if (random.oneIn(2)) made.positions[codeOf(i)] = 1 + random.upTo(5000);
        }
        for (int i = 5; i < 35; ++i) {
            const int times = hasRepeatedCodes ? random.upTo(3) : random.upTo(1);
            for (int repeat = 0; repeat < times; ++repeat)
                made.targets.push_back(makeRow(codeOf(i), random.oneIn(5) ? 0 : random.upTo(3000)));
        }
        random.shuffle(made.targets);
        return made;
    }
    static CPositions wantedOf(const CCase& made) {
        CPositions wanted;
        for (const COrderSingleParam& target : made.targets)
            wanted[target.m_strCode] += target.m_nVolume * made.multiplier;
        return wanted;
    }
    static int volumeIn(const CPositions& positions, const QString& code) {
        const auto found = positions.find(code);
        return found != positions.end() ? found->second : 0;
    }
    void hold(const CPositions& positions) {
        host.tasks.positions.clear();
        for (const auto& [code, volume] : positions)
            host.tasks.addPosition(account(), "SH", code.toStdString(), volume);
    }
    CAccountInfoPtr account() const { return host.user.accounts.at("A1"); }
};

TEST_F(PositionProperties, ItsOrdersLeadToTheTargetsAlsoOfRepeatedCodes) {
    CRandom random(21);
    for (int round = 0; round < kRounds; ++round) {
        const CCase made = makeCase(random, true);
        hold(made.positions);
        QVector<COrderSingleParam> rows = made.targets;
        service.exchangePositionStock(account(), rows, made.multiplier);
        const CPositions wanted = wantedOf(made);
        for (const auto& [code, volume] : applied(made.positions, rows))
            EXPECT_EQ(volume, volumeIn(wanted, code)) << round << " " << code.toStdString();
        for (const auto& [code, volume] : wanted) {
            EXPECT_EQ(volumeIn(applied(made.positions, rows), code), volume)
                << round << " " << code.toStdString();
        }
    }
}

TEST_F(PositionProperties, SalesNeverExceedWhatIsHeld) {
    CRandom random(22);
    for (int round = 0; round < kRounds; ++round) {
        const CCase made = makeCase(random, true);
        CPositions sold;
        for (const COrderSingleParam& row :
             positionDifferences(heldOf(made.positions), made.targets, made.multiplier)) {
            EXPECT_GE(row.m_nVolume, 0) << round;
            if (row.m_eOperationType == static_cast<int>(EOperationType::Sell))
                sold[row.m_strCode] += row.m_nVolume;
        }
        for (const auto& [code, volume] : sold)
            EXPECT_LE(volume, volumeIn(made.positions, code)) << round << " " << code.toStdString();
    }
}

TEST_F(PositionProperties, WhatIsReachedNeedsNoMoreOrders) {
    CRandom random(23);
    for (int round = 0; round < kRounds; ++round) {
        const CCase made = makeCase(random, false);
        const CPositions reached = applied(
            made.positions, positionDifferences(heldOf(made.positions), made.targets, made.multiplier));
        for (const COrderSingleParam& row :
             positionDifferences(heldOf(reached), made.targets, made.multiplier)) {
            EXPECT_EQ(row.m_nVolume, 0) << round << " " << row.m_strCode.toStdString();
        }
    }
}

TEST_F(PositionProperties, OrderOfTheListsChangesNoOrderOfDistinctCodes) {
    CRandom random(24);
    for (int round = 0; round < kRounds; ++round) {
        const CCase made = makeCase(random, false);
        QVector<CHeldVolume> held = heldOf(made.positions);
        QVector<COrderSingleParam> targets = made.targets;
        const auto before = contentOf(positionDifferences(held, targets, made.multiplier));
        random.shuffle(targets);
        random.shuffle(held);
        EXPECT_EQ(contentOf(positionDifferences(held, targets, made.multiplier)), before) << round;
    }
}

// Target lists in the complete check. Some of their instruments cannot be traded.

class TargetListProperties : public PositionProperties {
protected:
    TargetListProperties() {
        for (int i = 0; i < 35; ++i) {
            if (i % 9 == 3) continue; // the host does not know these codes
            host.addStock("SH", codeOf(i).toStdString(), 10 + i);
            host.types.types.insert({knservice::kBasketTypes[0], "SH" + codeOf(i).toStdString()});
            quote(i).m_nDayCount = 1;
            if (i % 9 == 4) quote(i).m_nDayCount = 0; // suspended
            if (i % 9 == 5) quote(i).all(0);
            if (i % 9 == 6) quote(i).all(kUnsetDouble);
            if (i % 9 == 7) host.quotes.quotes.erase(QStringLiteral("SH") + codeOf(i));
        }
    }
    fake::CQuote& quote(int index) { return *host.quotes.quotes.at(QStringLiteral("SH") + codeOf(index)); }
    static bool isTraded(const QString& code) {
        const int kind = (code.toInt() - codeOf(0).toInt()) % 9;
        return kind < 3 || kind > 7;
    }
};

TEST_F(TargetListProperties, WhatCanBeTradedEndsAtItsTargetAndNothingElseMoves) {
    CRandom random(25);
    const COrderStrategyParam strategy =
        CStrategyBuilder().family(EOrderStrategyTradeType::Basket).account(QStringLiteral("A1"));
    for (int round = 0; round < kRounds; ++round) {
        const CCase made = makeCase(random, true);
        if (made.targets.isEmpty()) continue;
        hold(made.positions);
        COrderParam order = COrderBuilder(35).set([&](auto& o) { o.m_orders = made.targets; });
        COrderStrategyParam multiplied = strategy;
        multiplied.m_nVolume = made.multiplier;
        std::vector<CCodeOrderParam> codes;
        std::map<std::string, double> weights;
        ASSERT_TRUE(service.checkAndFillOrderCompose(order, multiplied, codes, weights)) << round;
        CPositions reached = made.positions;
        for (const CCodeOrderParam& code : codes) {
            EXPECT_GE(code.m_nVolume, 1) << round;
            reached[QString::fromStdString(code.m_stock.m_strCode)] +=
                change(code.m_eOperationType, code.m_nVolume);
        }
        const CPositions wanted = wantedOf(made);
        for (const auto& [code, volume] : reached) {
            EXPECT_EQ(volume, isTraded(code) ? volumeIn(wanted, code) : volumeIn(made.positions, code))
                << round << " " << code.toStdString();
        }
        for (const auto& [code, volume] : wanted) {
            if (isTraded(code)) {
                EXPECT_EQ(volumeIn(reached, code), volume) << round << " " << code.toStdString();
            }
        }
    }
}

// Money by weight.

class WeightProperties : public CheckFixture {
protected:
    static constexpr int kCodes = 40;
    static constexpr int kKept = 7; ///< initial volume; rows that cannot be priced must keep it

    /// Replaces the instruments. Prices and units are random. Some prices are missing, negative or almost
    /// zero. Some instruments have no quote, and some codes are unknown to the host.
    void renewInstruments(CRandom& random) {
        host.exchange.stocks.clear();
        host.quotes.quotes.clear();
        for (int i = 0; i < kCodes; ++i) {
            if (random.oneIn(8)) continue;
            host.addStock("SH", codeOf(i).toStdString(), 10, random.oneOf<int>({1, 10, 100, 200}));
            double& last = host.quotes.quotes.at(keyOf(i))->m_dLastPrice;
            last = (1 + random.upTo(500000)) / 100.0;
            if (random.oneIn(12)) last = random.oneOf<double>({0.0, 1e-12, kUnsetDouble, -3.0});
            if (random.oneIn(12)) host.quotes.quotes.erase(keyOf(i));
        }
    }
    static QString keyOf(int index) { return QStringLiteral("SH") + codeOf(index); }
    /// Rows of random codes with random weights. A code may be repeated. No weight is negative.
    static QVector<COrderSingleParam> makeRows(CRandom& random) {
        QVector<COrderSingleParam> rows;
        const int count = 1 + random.upTo(60);
        for (int i = 0; i < count; ++i) {
            rows.push_back(makeRow(codeOf(random.upTo(kCodes - 1)), kKept));
            rows.back().m_dWeight = random.oneIn(6) ? 0.0 : random.upTo(10000) / 100.0;
        }
        return rows;
    }
    /// The latest price of a row, or 0 if nothing can be bought at this price.
    double priceOf(const COrderSingleParam& row) const {
        const auto found = host.quotes.quotes.find(QStringLiteral("SH") + row.m_strCode);
        if (found == host.quotes.quotes.end()) return 0;
        const double price = found->second->m_dLastPrice;
        return price > 1e-6 && price < kUnsetDouble ? price : 0;
    }
    int unitOf(const COrderSingleParam& row) const {
        return host.types.units.at("SH" + row.m_strCode.toStdString());
    }
};

TEST_F(WeightProperties, NoMoreThanTheAmountIsSpentAndUnitsStayWhole) {
    CRandom random(31);
    for (int round = 0; round < kRounds; ++round) {
        renewInstruments(random);
        QVector<COrderSingleParam> rows = makeRows(random);
        const double sum = std::accumulate(rows.begin(), rows.end(), 0.0,
                                           [](double all, const auto& row) { return all + row.m_dWeight; });
        const double amount = random.upTo(100000000) / 10.0;
        service.calcVolumnByWeight(rows, amount);
        double spent = 0;
        for (const COrderSingleParam& row : qAsConst(rows)) {
            const double price = priceOf(row);
            if (sum == 0 || price == 0) continue;
            EXPECT_GE(row.m_nVolume, 0) << round;
            EXPECT_EQ(row.m_nVolume % unitOf(row), 0) << round;
            // The money must not suffice for one more unit.
            EXPECT_GT((row.m_nVolume + unitOf(row)) * price, row.m_dWeight / sum * amount - 1e-6) << round;
            spent += row.m_nVolume * price;
        }
        EXPECT_LE(spent, amount * (1 + 1e-12)) << round;
    }
}

TEST_F(WeightProperties, RowsThatCannotBePricedAreLeftAlone) {
    CRandom random(32);
    int left = 0;
    for (int round = 0; round < kRounds; ++round) {
        renewInstruments(random);
        QVector<COrderSingleParam> rows = makeRows(random);
        rows.front().m_dWeight = 1;
        service.calcVolumnByWeight(rows, 1000000);
        for (const COrderSingleParam& row : qAsConst(rows)) {
            // With a weight of zero the volume is zero, unless the price is zero.
            if (priceOf(row) > 0 || row.m_dWeight == 0) continue;
            EXPECT_EQ(row.m_nVolume, kKept) << round << " " << row.m_strCode.toStdString();
            ++left;
        }
    }
    EXPECT_GT(left, kRounds);
}

class BasketMoneyProperties : public BasketFixture {
protected:
    double spent(const std::map<std::string, double>& prices) const {
        return std::accumulate(codes.begin(), codes.end(), 0.0, [&](double sum, const CCodeOrderParam& code) {
            return sum + code.m_nVolume * prices.at(code.m_stock.m_strCode);
        });
    }
};

TEST_F(BasketMoneyProperties, RowsThatShareMoneySpendNoMoreThanTheAmount) {
    CRandom random(7);
    int trading = 0;
    for (int round = 0; round < kRounds; ++round) {
        std::map<std::string, double> prices;
        COrderBuilder order(random.oneOf<int>({25, 26, 33}));
        const bool isWeighted = !random.oneIn(4);
        for (int row = random.upTo(6); row >= 0; --row) {
            const std::string code = std::to_string(600100 + random.upTo(5));
            if (prices.count(code) == 0) prices[code] = (random.upTo(5000) + 1) / 100.0;
            addInstrument(code, prices[code]);
            order.line(QString::fromStdString(code), kUnsetDouble, random.upTo(3)).set([&](COrderParam& o) {
                o.m_orders.back().m_dWeight = isWeighted ? random.upTo(9) : 0;
                o.m_orders.back().m_eOperationType = static_cast<int>(EOperationType::Buy);
            });
        }
        const double amount = random.upTo(200000) + 0.5;
        const auto with = strategy().set([&](auto& s) {
            s.m_bUseAmount = true;
            s.m_dAmount = amount;
        });
        ASSERT_TRUE(check(order, with)) << round;
        ASSERT_LE(spent(prices), amount * (1 + 1e-12)) << round;
        if (spent(prices) > amount / 2) ++trading;
    }
    EXPECT_GT(trading, kRounds / 4) << "most amounts buy something";
}

} // namespace
