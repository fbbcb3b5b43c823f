// A folder with families other than stocks: kinds of instruments, and accounts and positions in them.
#include "desk/config/Kinds.h"
#include "orderservice/records/Families.h"
#include "tests/desk/config/ConfigFolder.h"
#include "tests/desk/config/Spoiled.h"

#include <gtest/gtest.h>

#include <ostream>

namespace desk {
namespace {

using Mistakes = std::vector<std::string>;

/// The small folder with a future, an option, a connect stock and gold.
class CFamilyFolder : public test::CConfigFolder {
public:
    CFamilyFolder() {
        replace(
            "desk.toml", "[[group]]",
            "[[account]]\nkey = \"F1\"\nbroker = \"future\"\nfunds = 1\n[[account]]\nkey = \"O1\"\nbroker = "
            "\"stock_option\"\nfunds = 1\n[[account]]\nkey = \"G1\"\nbroker = \"gold\"\nfunds = "
            "1\n[[group]]");
        replace("desk.toml", "broker = \"credit\"\n", "broker = \"credit\"\ncredit_limit = 500.5\n");
        replace("strategies.toml", "[[strategy]]\nchannel = 2",
                "[[strategy]]\nchannel = 3\nsource = \"file\"\npath = \"orders/f.txt\"\naccount = "
                "\"F1\"\nfamily = "
                "\"future\"\ncode = \"IF2609\"\n[[strategy]]\nchannel = 2");
        files().write("instruments.csv", "market,code,types,unit,kind,multiplier,margin_rate\n"
                                         "SH,600000,100028,100\n"
                                         "SZ,000001,100028,100,stock\n"
                                         "CF,IF2609,,1,future,300,0.12\n"
                                         "SHO,10005001,,1,stock_option,10000\n"
                                         "SGT,00001,,500\n"
                                         "GOLD,AU99,,1,gold,1000,0.1\n");
        files().write("quotes.csv", "instrument,last\nSH600000,10\nSZ000001,20\nIF2609,4000\n"
                                    "SHO10005001,0.5\nSGT00001,45\nGOLDAU99,520\n");
        files().write("quote_changes.csv", "after_seconds,instrument,last\n5,IF2609,4001\n");
        files().write("positions.csv", "account,instrument,side,volume,paid\n"
                                       "A1,SH600000,,500,\n"
                                       "F1,IF2609,long,2\n"
                                       "F1,CFIF2609,short,3\n"
                                       "O1,10005001,long,100\n"
                                       "G1,GOLDAU99,long,2,full\n"
                                       "G1,GOLDAU99,short,1,\n");
    }
};

TEST(FamilyFolder, KindsMultipliersAndMarginsArriveAndHaveDefaults) {
    const CFamilyFolder folder;
    ASSERT_EQ(folder.mistakes(), Mistakes{});
    const std::vector<CInstrumentEntry> entries = folder.load().config.instruments;
    ASSERT_EQ(entries.size(), 6U);
    EXPECT_EQ(entries[0].kind, EInstrumentKind::Stock);
    EXPECT_EQ(entries[0].multiplier, 1);
    EXPECT_EQ(entries[0].marginRate, 1.0);
    EXPECT_EQ(entries[2].kind, EInstrumentKind::Future);
    EXPECT_EQ(entries[2].multiplier, 300);
    EXPECT_EQ(entries[2].marginRate, 0.12);
    EXPECT_EQ(entries[3].marginRate, 1.0);
    EXPECT_EQ(entries[4].kind, EInstrumentKind::Sgt) << "the market tells the kind";
}

TEST(FamilyFolder, DerivativesMayBeNamedByPlainCodeAndAreStoredByKey) {
    const CDeskConfig config = CFamilyFolder().load().config;
    EXPECT_EQ(config.quotes.at(2).stockKey, "CFIF2609");
    EXPECT_EQ(config.quoteChanges.at(0).quote.stockKey, "CFIF2609");
    EXPECT_EQ(config.accounts.at(2).positions.at(0).stockKey, "CFIF2609");
}

TEST(FamilyFolder, AnAccountMayBeLongAndShortInOneInstrument) {
    const CDeskConfig config = CFamilyFolder().load().config;
    ASSERT_EQ(config.accounts.at(2).positions.size(), 2U);
    EXPECT_EQ(config.accounts[2].positions[0].side, EPositionSide::Long);
    EXPECT_EQ(config.accounts[2].positions[1].side, EPositionSide::Short);
    EXPECT_EQ(config.accounts[2].positions[1].volume, 3);
    EXPECT_EQ(config.accounts[0].positions.at(0).side, EPositionSide::Long) << "where it is left out";
}

TEST(FamilyFolder, GoldIsOnMarginUnlessTheFolderSaysThatItWasPaidInFull) {
    CFamilyFolder folder;
    EXPECT_TRUE(folder.load().config.accounts.at(4).positions.at(0).paidInFull);
    folder.replace("positions.csv", "long,2,full", "long,2,margin");
    EXPECT_FALSE(folder.load().config.accounts.at(4).positions.at(0).paidInFull);
    folder.replace("positions.csv", "long,2,margin", "long,2,");
    EXPECT_FALSE(folder.load().config.accounts.at(4).positions.at(0).paidInFull);
}

TEST(FamilyFolder, ACreditAccountHasItsLimit) {
    const CDeskConfig config = CFamilyFolder().load().config;
    EXPECT_EQ(config.accounts.at(0).creditLimit, 0);
    EXPECT_EQ(config.accounts.at(1).creditLimit, 500.5);
}

class FamilyMistake : public testing::TestWithParam<test::CSpoiled> {};

TEST_P(FamilyMistake, IsReportedWithFileAndLine) {
    const CFamilyFolder folder;
    folder.replace(GetParam().file, GetParam().what, GetParam().by);
    EXPECT_EQ(folder.mistakes(), Mistakes{GetParam().expected});
}

const test::CSpoiled kFamilyRows[] = {
    {"UnknownKind", "instruments.csv", ",100,stock", ",100,share",
     "instruments.csv:3: kind is \"share\"; expected one of future, future_option, gold, hgt, neeq, sgt, "
     "stock, "
     "stock_option"},
    {"KindOfAnotherMarket", "instruments.csv", ",100,stock", ",100,hgt",
     "instruments.csv:3: market is \"SZ\"; expected HGT for that kind"},
    {"MultiplierOfZero", "instruments.csv", "300,0.12", "0,0.12",
     "instruments.csv:4: multiplier must be at least 1"},
    {"MultiplierThatIsNoNumber", "instruments.csv", "300,0.12", "3OO,0.12",
     "instruments.csv:4: multiplier is \"3OO\"; expected a whole number"},
    {"MarginOfZero", "instruments.csv", "0.12", "0",
     "instruments.csv:4: margin_rate must be above 0 and at most 1"},
    {"MarginAboveTheWhole", "instruments.csv", "0.12", "12",
     "instruments.csv:4: margin_rate must be above 0 and at most 1"},
    {"PlainCodeTwice", "instruments.csv", "SGT,00001,,500\n", "SGT,00001,,500\nDC,IF2609,,1,future\n",
     "instruments.csv:7: instrument \"IF2609\" is defined on line 4 already"},
    {"PlainCodeOfAStock", "positions.csv", "A1,SH600000", "A1,600000",
     "positions.csv:2: instrument \"600000\" is unknown; expected market and code of a row in "
     "instruments.csv"},
    {"UnknownSide", "positions.csv", "IF2609,long", "IF2609,up",
     "positions.csv:3: side is \"up\"; expected one of long, short"},
    {"ShortStock", "positions.csv", "A1,SH600000,", "A1,SH600000,short",
     "positions.csv:2: side is short; only futures, options and gold can be short"},
    {"OneSideTwice", "positions.csv", "CFIF2609,short", "CFIF2609,long",
     "positions.csv:4: the position is defined twice"},
    {"FutureOnAStockAccount", "positions.csv", "F1,IF2609", "A1,IF2609",
     "positions.csv:3: account \"A1\" is of a broker type that does not hold instruments of kind future"},
    {"StockToLock", "positions.csv", "O1,10005001", "O1,SH600000",
     "positions.csv:5: account \"O1\" is of a broker type that does not hold instruments of kind stock"},
    {"PaidStock", "positions.csv", "A1,SH600000,,500,", "A1,SH600000,,500,full",
     "positions.csv:2: paid is only for long positions in gold"},
    {"PaidShort", "positions.csv", "G1,GOLDAU99,short,1,", "G1,GOLDAU99,short,1,margin",
     "positions.csv:7: paid is only for long positions in gold"},
    {"UnknownPayment", "positions.csv", "long,2,full", "long,2,cash",
     "positions.csv:6: paid is \"cash\"; expected one of full, margin"},
    {"NegativeLimit", "desk.toml", "500.5", "-500.5",
     "desk.toml:14: account: credit_limit must not be negative"},
    {"LimitOfAnotherKind", "desk.toml", "funds = 1000.0", "funds = 1000.0\ncredit_limit = 1",
     "desk.toml:10: account: credit_limit is for accounts of broker \"credit\" only"},
    {"BasketOfAFuture", "desk.toml", "market = \"SH\", code = \"600000\"",
     "market = \"CF\", code = \"IF2609\"",
     "desk.toml:36: basket.rows: instrument \"CFIF2609\" is unknown; expected market and code of a stock in "
     "instruments.csv"},
    {"AccountOfAnotherFamily", "strategies.toml", "\"F1\"", "\"O1\"",
     "strategies.toml:14: strategy: account \"O1\" is of a broker type that the family does not trade on"},
    {"CodeOfAnotherFamily", "strategies.toml", "\"IF2609\"", "\"10005001\"",
     "strategies.toml:16: strategy: code \"10005001\" is of a kind that the family does not trade"},
};

INSTANTIATE_TEST_SUITE_P(InAFolder, FamilyMistake, testing::ValuesIn(kFamilyRows), test::nameOf);

TEST(Kinds, EveryFamilyTradesSomethingAndItsAccountsHoldNothingElse) {
    for (std::size_t i = 0; i < TC::kFamilyCount; ++i) {
        const TC::EQDBrokerType broker = TC::kFamilies[i].m_eBrokerType;
        bool trades = false;
        for (int number = 0; number <= static_cast<int>(EInstrumentKind::Gold); ++number) {
            const auto kind = static_cast<EInstrumentKind>(number);
            trades = trades || tradesKind(broker, kind);
            EXPECT_TRUE(tradesKind(broker, kind) || !holdsKind(broker, kind))
                << TC::kFamilies[i].m_pszName << ' ' << number;
        }
        EXPECT_TRUE(trades) << TC::kFamilies[i].m_pszName;
    }
}

TEST(Kinds, StocksToLockAndSharesOfTheTransferMarketMayBeNamedButNotHeld) {
    EXPECT_TRUE(tradesKind(TC::EQDBrokerType::StockOption, EInstrumentKind::Stock));
    EXPECT_FALSE(holdsKind(TC::EQDBrokerType::StockOption, EInstrumentKind::Stock));
    EXPECT_TRUE(tradesKind(TC::EQDBrokerType::Neeq, EInstrumentKind::Neeq));
    EXPECT_FALSE(holdsKind(TC::EQDBrokerType::Neeq, EInstrumentKind::Neeq));
    EXPECT_FALSE(holdsKind(TC::EQDBrokerType::FutureOption, EInstrumentKind::Future));
}

} // namespace
} // namespace desk
