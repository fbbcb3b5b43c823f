#pragma once

#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBroker.h"

#include "tests/desk/journal/DeskFolder.h"

#include <boost/make_shared.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace desk::test {

using CLevels = std::vector<std::pair<double, long long>>;

/// Instruments and quotes that a test sets.
class CScriptedQuotes : public IQuoteSource {
public:
    void addInstrument(CInstrumentEntry entry) { m_instruments[entry.key()] = std::move(entry); }
    void setQuote(const std::string& stockKey, const CLevels& buy, const CLevels& sell) {
        CQuoteEntry& quote = m_quotes[stockKey] = {};
        quote.stockKey = stockKey;
        for (std::size_t i = 0; i < buy.size(); ++i)
            quote.buy.at(i) = {buy[i].first, buy[i].second};
        for (std::size_t i = 0; i < sell.size(); ++i)
            quote.sell.at(i) = {sell[i].first, sell[i].second};
    }
    void setWhole(const CQuoteEntry& quote) { m_quotes[quote.stockKey] = quote; }
    void dropQuote(const std::string& stockKey) { m_quotes.erase(stockKey); }

    std::optional<CInstrumentEntry> instrument(const std::string& stockKey) const override {
        const auto found = m_instruments.find(stockKey);
        return found != m_instruments.end() ? std::optional(found->second) : std::nullopt;
    }
    std::optional<CQuoteEntry> quote(const std::string& stockKey) const override {
        const auto found = m_quotes.find(stockKey);
        return found != m_quotes.end() ? std::optional(found->second) : std::nullopt;
    }

private:
    std::map<std::string, CInstrumentEntry> m_instruments;
    std::map<std::string, CQuoteEntry> m_quotes;
};

inline TC::CAccountInfoPtr account(const std::string& key) {
    auto info = boost::make_shared<TC::CAccountInfo>();
    info->m_strKey = key;
    return info;
}

/// A record for A1 on SH600000. If `price` is unset, the record has no price.
inline TC::CCodeOrderParam record(TC::EOperationType operation, int volume, double price,
                                  TC::EPriceType priceType = TC::EPriceType::Specified) {
    TC::CCodeOrderParam code;
    code.m_account = account("A1");
    code.m_eOperationType = operation;
    code.m_stock = {"SH", "600000", "浦发银行", ""};
    code.m_ePriceType = priceType;
    code.m_dPrice = price;
    code.m_nVolume = volume;
    return code;
}

inline TC::CCodeOrderParam buy(int volume, double price, TC::EPriceType type = TC::EPriceType::Specified) {
    return record(TC::EOperationType::Buy, volume, price, type);
}

inline TC::CCodeOrderParam sell(int volume, double price, TC::EPriceType type = TC::EPriceType::Specified) {
    return record(TC::EOperationType::Sell, volume, price, type);
}

inline TC::COrderComandParam stockCommand(std::vector<TC::CCodeOrderParam> codes) {
    TC::COrderComandParam command;
    command.m_eTraderType = TC::EQdTraderType::Stock;
    command.m_codes = std::move(codes);
    return command;
}

inline std::vector<CAccountEntry> deskAccounts() {
    CAccountEntry first;
    first.key = "A1";
    first.funds = 100000;
    first.positions = {{"SH600000", EPositionSide::Long, 1250, 1050, 8.0}};
    CAccountEntry second;
    second.key = "A2";
    second.funds = 500;
    CAccountEntry future;
    future.key = "F1";
    future.broker = TC::EQDBrokerType::Future;
    future.funds = 100000;
    CAccountEntry away;
    away.key = "X1";
    away.loginStatus = 2;
    return {first, second, future, away};
}

struct CPlaced {
    utils::KNError m_error;
    int m_nTask = 0; ///< 0 if the command was refused
};

/// Queues a command, and waits until the broker has stored or refused it.
inline CPlaced placeNow(CPaperBroker& broker, const TC::COrderComandParam& command,
                        std::int64_t reference = 0) {
    CPlaced placed;
    CQueuedCommand queued;
    queued.m_command = boost::make_shared<TC::COrderComandParam>(command);
    queued.m_nReference = reference;
    queued.m_nTask = placed.m_nTask = broker.reserveTask();
    queued.m_onRefused = [&](const utils::KNError& error) { placed = {error, 0}; };
    broker.queueCommand(std::move(queued));
    broker.finishQueued();
    return placed;
}

constexpr TC::EPriceType kMarket = TC::EPriceType::NoQuote;
inline const std::string kStock = "SH600000";

/// A paper broker in a new folder. Its book has 9.99 x 300 and 9.98 x 500 to buy, and 10.00 x 200, 10.01 x
/// 400 and 10.05 x 1000 to sell.
class PaperDesk : public testing::Test {
protected:
    PaperDesk() {
        CInstrumentEntry entry;
        entry.market = "SH";
        entry.code = "600000";
        entry.unit = 100;
        entry.upperLimit = 11;
        entry.lowerLimit = 9;
        m_quotes.addInstrument(entry);
        m_quotes.setQuote(kStock, {{9.99, 300}, {9.98, 500}}, {{10.00, 200}, {10.01, 400}, {10.05, 1000}});
        open();
    }

    void open(std::int64_t lastEventTaken = 0) {
        m_broker = std::make_unique<CPaperBroker>(m_quotes, [this](const std::vector<CBrokerEvent>& events) {
            if (!m_bTakeEvents) return std::size_t{0};
            m_events.insert(m_events.end(), events.begin(), events.end());
            return events.size();
        });
        const utils::KNError error = m_broker->open(m_folder.path(), deskAccounts(), lastEventTaken);
        ASSERT_TRUE(error.isSuccess()) << error.errorMsg();
    }
    void reopen(std::int64_t lastEventTaken = 0) {
        m_broker.reset();
        open(lastEventTaken);
    }

    int place(const std::vector<TC::CCodeOrderParam>& codes) { return placeCommand(stockCommand(codes)); }
    int placeCommand(const TC::COrderComandParam& command) {
        const CPlaced placed = placeNow(*m_broker, command);
        EXPECT_TRUE(placed.m_error.isSuccess()) << placed.m_error.errorMsg();
        return placed.m_nTask;
    }
    /// Places one record and returns the resulting order.
    CPaperOrder placed(const TC::CCodeOrderParam& code) {
        place({code});
        return m_broker->orders().back();
    }
    std::string rejection(const TC::CCodeOrderParam& code) {
        const CPaperOrder order = placed(code);
        return order.m_eStatus == EOrderStatus::Rejected ? order.m_strReason : std::string("accepted");
    }
    CPaperOrder order(int id) const { return m_broker->orders().at(static_cast<std::size_t>(id - 1)); }
    CPaperFunds funds(const std::string& key = "A1") const {
        for (const CPaperFunds& entry : m_broker->funds()) {
            if (entry.m_strAccount == key) return entry;
        }
        return {};
    }
    CPaperPosition position() const { return m_broker->positions().at(0); }
    /// The fills as "order: volume @ price".
    std::vector<std::string> fills() const {
        std::vector<std::string> texts;
        for (const CPaperFill& fill : m_broker->fills()) {
            texts.push_back(std::to_string(fill.m_nOrder) + ": " + std::to_string(fill.m_nVolume) + " @ " +
                            std::to_string(fill.m_nPrice));
        }
        return texts;
    }

    using CTexts = std::vector<std::string>;

    CStillClock m_clock;
    CDeskFolder m_folder;
    CScriptedQuotes m_quotes;
    bool m_bTakeEvents = true;
    std::vector<CBrokerEvent> m_events;
    std::unique_ptr<CPaperBroker> m_broker;
};

} // namespace desk::test
