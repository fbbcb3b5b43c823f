#pragma once

#include "tests/desk/paper/PaperDesk.h"

#include <initializer_list>

namespace desk::test {

using EFamily = TC::EQdTraderType;

inline constexpr EFamily kFamiliesWithOrders[] = {
    EFamily::Stock,  EFamily::FutureSpeculation,
    EFamily::Basket, EFamily::Credit,
    EFamily::Gold,   EFamily::Option,
    EFamily::HGT,    EFamily::FutureOption,
    EFamily::SGT,
};

/// An instrument with a book of one price and a large volume, and an account that may trade it.
struct CFamilyRow {
    EFamily m_eFamily;
    const char* m_pszAccount;
    TC::EQDBrokerType m_eBroker;
    const char* m_pszMarket;
    const char* m_pszCode;
    EInstrumentKind m_eKind;
    int m_nMultiplier;
    double m_dMarginRate;
    double m_dPrice;
};

inline constexpr CFamilyRow kFamilyRows[] = {
    {EFamily::Stock, "ST", TC::EQDBrokerType::Stock, "SH", "600001", EInstrumentKind::Stock, 1, 1, 10},
    {EFamily::FutureSpeculation, "FU", TC::EQDBrokerType::Future, "SF", "rb2605", EInstrumentKind::Future, 10,
     0.1, 100},
    {EFamily::Basket, "BA", TC::EQDBrokerType::Stock, "SH", "600001", EInstrumentKind::Stock, 1, 1, 10},
    {EFamily::Credit, "CR", TC::EQDBrokerType::Credit, "SH", "600001", EInstrumentKind::Stock, 1, 1, 10},
    {EFamily::Gold, "GO", TC::EQDBrokerType::Gold, "SGE", "AuTD", EInstrumentKind::Gold, 100, 0.2, 5},
    {EFamily::Option, "OP", TC::EQDBrokerType::StockOption, "SHO", "10000001", EInstrumentKind::StockOption,
     1000, 0.5, 0.1},
    {EFamily::HGT, "HG", TC::EQDBrokerType::HGT, "HK", "00700", EInstrumentKind::Hgt, 1, 1, 10},
    {EFamily::FutureOption, "FO", TC::EQDBrokerType::FutureOption, "SFO", "rb2605C100",
     EInstrumentKind::FutureOption, 10, 0.5, 4},
    {EFamily::SGT, "SG", TC::EQDBrokerType::SGT, "SK", "00005", EInstrumentKind::Sgt, 1, 1, 10},
};

inline const CFamilyRow& rowOf(EFamily family) {
    for (const CFamilyRow& row : kFamilyRows) {
        if (row.m_eFamily == family) return row;
    }
    ADD_FAILURE() << "no row of family " << static_cast<int>(family);
    return kFamilyRows[0];
}

inline std::string keyOf(EFamily family) {
    return std::string(rowOf(family).m_pszMarket) + rowOf(family).m_pszCode;
}

/// A paper broker with an account and an instrument for every family. Every account has 100000 in cash and
/// nothing else. The credit account may owe 5000.
class FamilyDesk : public PaperDesk {
protected:
    static constexpr double kFunds = 100000;

    FamilyDesk() {
        for (const CFamilyRow& row : kFamilyRows) {
            CInstrumentEntry entry;
            entry.market = row.m_pszMarket;
            entry.code = row.m_pszCode;
            entry.kind = row.m_eKind;
            entry.multiplier = row.m_nMultiplier;
            entry.marginRate = row.m_dMarginRate;
            m_quotes.addInstrument(entry);
            offer(row.m_eFamily, row.m_dPrice);
        }
        openFamilies();
    }

    static std::vector<CAccountEntry> familyAccounts() {
        std::vector<CAccountEntry> accounts;
        for (const CFamilyRow& row : kFamilyRows) {
            CAccountEntry entry;
            entry.key = row.m_pszAccount;
            entry.broker = row.m_eBroker;
            entry.funds = kFunds;
            if (row.m_eFamily == EFamily::Credit) entry.creditLimit = 5000;
            accounts.push_back(entry);
        }
        return accounts;
    }

    /// Opens the desk's store again, as after a restart.
    void openFamilies(const std::vector<CAccountEntry>& accounts = familyAccounts()) {
        m_broker = std::make_unique<CPaperBroker>(m_quotes, nullptr);
        const utils::KNError error = m_broker->open(m_folder.path(), accounts, 0);
        ASSERT_TRUE(error.isSuccess()) << error.errorMsg();
    }

    /// Sets a book with the same price on both sides.
    void offer(EFamily family, double price, long long volume = 1'000'000) {
        m_quotes.setQuote(keyOf(family), {{price, volume}}, {{price, volume}});
        if (m_broker) {
            ASSERT_TRUE(m_broker->onQuote(keyOf(family)).isSuccess());
        }
    }

    static TC::CCodeOrderParam recordOf(EFamily family, int operation, int volume, double price) {
        const CFamilyRow& row = rowOf(family);
        TC::CCodeOrderParam code = record(static_cast<TC::EOperationType>(operation), volume, price);
        code.m_account = account(row.m_pszAccount);
        code.m_stock = {row.m_pszMarket, row.m_pszCode, "", ""};
        return code;
    }

    CPaperOrder orderOf(EFamily family, const TC::CCodeOrderParam& code) {
        TC::COrderComandParam command = stockCommand({code});
        command.m_eTraderType = family;
        if (family == EFamily::Basket) command.m_eHedgeType = TC::EQdHedgeType::Compose;
        placeCommand(command);
        return m_broker->orders().back();
    }
    CPaperOrder orderOf(EFamily family, int operation, int volume, double price) {
        return orderOf(family, recordOf(family, operation, volume, price));
    }
    CPaperOrder atMarket(EFamily family, int operation, int volume) {
        TC::CCodeOrderParam code = recordOf(family, operation, volume, TC::kUnsetDouble);
        code.m_ePriceType = kMarket;
        return orderOf(family, code);
    }
    /// The result of an order: its state, or the reason why it was rejected.
    static std::string outcome(const CPaperOrder& order) {
        return order.m_eStatus == EOrderStatus::Rejected ? order.m_strReason : statusWord(order.m_eStatus);
    }
    std::string outcomeOf(EFamily family, int operation, int volume, double price) {
        return outcome(orderOf(family, operation, volume, price));
    }

    CPaperFunds fundsOf(EFamily family) const { return funds(rowOf(family).m_pszAccount); }
    double cash(EFamily family) const { return fromMoney(fundsOf(family).m_nCash); }
    double frozen(EFamily family) const { return fromMoney(fundsOf(family).m_nFrozen); }
    double margin(EFamily family) const { return fromMoney(fundsOf(family).m_nMargin); }
    double available(EFamily family) const { return fromMoney(fundsOf(family).available()); }

    CPaperPosition positionOf(EFamily family, EPositionSide side = EPositionSide::Long) const {
        for (const CPaperPosition& each : m_broker->positions()) {
            if (each.m_strAccount == rowOf(family).m_pszAccount && each.m_strStock == keyOf(family) &&
                each.m_eSide == side) {
                return each;
            }
        }
        return {};
    }
    std::int64_t longOf(EFamily family) const { return positionOf(family).m_nVolume; }
    std::int64_t shortOf(EFamily family) const { return positionOf(family, EPositionSide::Short).m_nVolume; }

    void startDay(const std::string& day) { ASSERT_TRUE(m_broker->startTradingDay(day).isSuccess()); }
};

} // namespace desk::test
