#include "orderservice/check/Volumes.h"

#include "tests/check/CheckFixture.h"

#include <cmath>

namespace {

using namespace TC;

class WeightedVolumes : public CheckFixture {
protected:
    WeightedVolumes() {
        host.addStock("SH", "600001", 10, 100);
        host.addStock("SH", "600002", 20, 100);
        setLast("SH600001", 10);
        setLast("SH600002", 20);
    }
    void setLast(const char* key, double price) {
        host.quotes.quotes.at(QString::fromLatin1(key))->m_dLastPrice = price;
    }
    static COrderSingleParam row(const char* code, double weight) {
        COrderSingleParam line;
        line.m_strCode = QString::fromLatin1(code);
        line.m_dWeight = weight;
        line.m_nVolume = 7;
        return line;
    }
    std::vector<int> volumes(QVector<COrderSingleParam> rows, double amount) {
        service.calcVolumnByWeight(rows, amount);
        std::vector<int> result;
        for (const COrderSingleParam& line : rows)
            result.push_back(line.m_nVolume);
        return result;
    }
};

TEST_F(WeightedVolumes, AmountIsSharedByWeight) {
    EXPECT_EQ(volumes({row("600001", 1), row("600002", 3)}, 1e6), (std::vector<int>{25000, 37500}));
    EXPECT_EQ(volumes({row("600001", 1), row("SH600002", 3)}, 1e6), (std::vector<int>{25000, 37500}));
}

TEST_F(WeightedVolumes, SharesFallToWholeUnits) {
    EXPECT_EQ(volumes({row("600001", 1)}, 12345), std::vector<int>{1200});
    EXPECT_EQ(volumes({row("600001", 1)}, 999), std::vector<int>{0});
}

TEST_F(WeightedVolumes, NoWeightAtAllGivesZeroAndReadsNoQuote) {
    EXPECT_EQ(volumes({row("600001", 0), row("nobody", 0)}, 1e6), (std::vector<int>{0, 0}));
    EXPECT_EQ(volumes({row("600001", kUnsetDouble)}, 1e6), std::vector<int>{0});
    EXPECT_TRUE(host.quotes.reads.empty());
}

TEST_F(WeightedVolumes, RowsThatCannotBePricedKeepTheirVolumeSilently) {
    setLast("SH600002", kUnsetDouble);
    EXPECT_EQ(volumes({row("600001", 1), row("nobody", 1), row("600002", 2)}, 1e6),
              (std::vector<int>{25000, 7, 7}));
    setLast("SH600002", -1);
    EXPECT_EQ(volumes({row("600002", 1)}, 1e6), std::vector<int>{7});
    EXPECT_TRUE(host.errorTexts().empty());
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(WeightedVolumes, ShareThatIsNoNumberOfSharesIsNone) {
    EXPECT_EQ(volumes({row("600001", 1)}, kUnsetDouble), std::vector<int>{7});
    EXPECT_EQ(volumes({row("600001", 1)}, 3e11), std::vector<int>{7});
    EXPECT_EQ(volumes({row("600001", std::nan(""))}, 1e6), std::vector<int>{7});
    setLast("SH600001", 0);
    EXPECT_EQ(volumes({row("600001", 1)}, 1e6), std::vector<int>{7});
}

TEST_F(WeightedVolumes, WeightsOfAHundredThousandthInAllAreNone) {
    EXPECT_EQ(volumes({row("600001", 4e-6), row("600002", 6e-6)}, 1e6), (std::vector<int>{0, 0}));
    EXPECT_EQ(volumes({row("600001", -1e-6)}, 1e6), std::vector<int>{0});
    EXPECT_EQ(volumes({row("600001", 1.0 / 65536)}, 1e6), std::vector<int>{100000}); // weight 1.5e-5
}

TEST_F(WeightedVolumes, WithoutAPriceAboveZeroTheVolumeIsKept) {
    for (const double price :
         {0.0, -0.0, -1e-300, -5e-6, -1e-5, -2e-5, -10.0, std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        setLast("SH600001", price);
        EXPECT_EQ(volumes({row("600001", 1)}, 1000), std::vector<int>{7}) << price;
    }
    setLast("SH600001", 1e-5);
    EXPECT_EQ(volumes({row("600001", 1)}, 1000),
              std::vector<int>{99999900}); // in double, 1000 / 1e-5 is slightly less than 1e8
}

TEST_F(WeightedVolumes, WeightsThatAreNotFiniteLeaveEveryRow) {
    for (const double weight : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        EXPECT_EQ(volumes({row("600001", weight), row("600002", 1)}, 1e6), (std::vector<int>{7, 7}))
            << weight;
    }
}

TEST_F(WeightedVolumes, AmountIsMultipliedBeforeItIsDivided) {
    setLast("SH600001", 1);
    setLast("SH600002", 1);
    // If 1 were divided by 49 first, rounding errors would make the first share too small for its unit.
    EXPECT_EQ(volumes({row("600001", 1), row("600002", 48)}, 4900), (std::vector<int>{100, 4800}));
}

TEST_F(WeightedVolumes, CodesAreLookedUpByMarketAndCodeWithNothingBetween) {
    host.rules.keySeparator = QStringLiteral(".");
    EXPECT_EQ(volumes({row("600001", 1)}, 1e6), std::vector<int>{100000});
    EXPECT_EQ(host.quotes.reads.count(QStringLiteral("SH600001")), 1u);
}

TEST_F(WeightedVolumes, SharesBeyondAnIntKeepTheirVolume) {
    setLast("SH600001", 1);
    EXPECT_EQ(volumes({row("600001", 1)}, 2147483600.0), std::vector<int>{2147483600});
    EXPECT_EQ(volumes({row("600001", 1)}, 2147483650.0), std::vector<int>{2147483600}); // rounded first
    EXPECT_EQ(volumes({row("600001", 1)}, 2147483699.0), std::vector<int>{2147483600});
    EXPECT_EQ(volumes({row("600001", 1)}, 2147483700.0), std::vector<int>{7});
    EXPECT_EQ(volumes({row("600001", -1), row("600002", 2)}, 2147483700.0)[0], 7);
    EXPECT_EQ(volumes({row("600001", 1)}, 1e300), std::vector<int>{7});
}

TEST_F(WeightedVolumes, StarMarketUsesTheUnitThatIsShown) {
    host.types.types.insert({1172, "SH600001"});
    host.types.uiUnits["SH600001"] = 1;
    EXPECT_EQ(volumes({row("600001", 1)}, 12345), std::vector<int>{1234});
}

} // namespace
