#pragma once

#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"

#include <string>

/// Makes a strategy in one line: `CStrategyBuilder().channel(3).volume(300)`. The default is a running stock
/// strategy on channel 3 with order files, for the group "G". Its price comes from the order.
class CStrategyBuilder {
public:
    explicit CStrategyBuilder(const TC::COrderStrategyParam& strategy) : m_strategy(strategy) {}
    CStrategyBuilder() {
        m_strategy.m_nChannel = 3;
        m_strategy.m_nStatus = TC::COrderStrategyParam::kRunning;
        m_strategy.m_strName = QStringLiteral("策略3");
        m_strategy.m_strSelectedAccount = QStringLiteral("G");
        m_strategy.m_strSignalSource = QStringLiteral("orders.txt");
        m_strategy.m_nVolume = 1000;
        m_strategy.m_stockSetting.m_ePriceType = TC::EPriceType::Specified;
    }
    CStrategyBuilder& channel(int channel) {
        m_strategy.m_nChannel = channel;
        m_strategy.m_strName = QStringLiteral("策略%1").arg(channel);
        return *this;
    }
    CStrategyBuilder& stopped() {
        return set([](auto& s) { s.m_nStatus = TC::COrderStrategyParam::kStopped; });
    }
    CStrategyBuilder& source(TC::EOrderStrategyType type) {
        return set([&](auto& s) { s.m_eStrategyType = type; });
    }
    CStrategyBuilder& family(TC::EOrderStrategyTradeType type) {
        return set([&](auto& s) { s.m_eTradeType = type; });
    }
    CStrategyBuilder& file(const std::string& path) {
        return set([&](auto& s) { s.m_strSignalSource = QString::fromStdString(path); });
    }
    CStrategyBuilder& code(const QString& code) {
        return set([&](auto& s) { s.m_strCode = code; });
    }
    CStrategyBuilder& volume(int volume) {
        return set([&](auto& s) { s.m_nVolume = volume; });
    }
    CStrategyBuilder& amount(double amount) {
        return set([&](auto& s) {
            s.m_bUseAmount = true;
            s.m_dAmount = amount;
        });
    }
    CStrategyBuilder& price(TC::EPriceType type) {
        return set([&](auto& s) { s.m_stockSetting.m_ePriceType = type; });
    }
    CStrategyBuilder& group(const QString& name) { return accounts(TC::ESelectedAccountType::Group, name); }
    CStrategyBuilder& account(const QString& name) {
        return accounts(TC::ESelectedAccountType::Account, name);
    }
    CStrategyBuilder& tableMode() {
        return set([](auto& s) { s.m_nAccountMode = TC::COrderStrategyParam::kTableMode; });
    }
    template<typename Change>
    CStrategyBuilder& set(const Change& change) {
        change(m_strategy);
        return *this;
    }
    operator TC::COrderStrategyParam() const { return m_strategy; }

private:
    CStrategyBuilder& accounts(TC::ESelectedAccountType kind, const QString& name) {
        return set([&](auto& s) {
            s.m_eSelectedAccountType = kind;
            s.m_strSelectedAccount = name;
        });
    }

    TC::COrderStrategyParam m_strategy;
};

/// Makes an order in one line: `COrderBuilder(23).line("600000", 10.5, 100)`. The default is a file order for
/// channel 3.
class COrderBuilder {
public:
    explicit COrderBuilder(int orderType) {
        m_order.m_nOrderType = orderType;
        m_order.m_nChannel = 3;
        m_order.m_eStrategyType = TC::EOrderStrategyType::File;
    }
    COrderBuilder& channel(int channel) {
        return set([&](auto& o) { o.m_nChannel = channel; });
    }
    COrderBuilder& source(TC::EOrderStrategyType type) {
        return set([&](auto& o) { o.m_eStrategyType = type; });
    }
    COrderBuilder& line(const QString& code, double price = TC::kUnsetDouble, int volume = TC::kUnsetInt) {
        TC::COrderSingleParam line;
        line.m_strCode = code;
        line.m_dPrice = price;
        line.m_nVolume = volume;
        m_order.m_orders.push_back(line);
        return *this;
    }
    template<typename Change>
    COrderBuilder& set(const Change& change) {
        change(m_order);
        return *this;
    }
    operator TC::COrderParam() const { return m_order; }

private:
    TC::COrderParam m_order;
};
