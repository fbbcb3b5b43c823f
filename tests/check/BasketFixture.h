#pragma once

#include "tests/check/FamilyFixture.h"

/// The basket check on the fake host: two tradable stocks with prices 10 and 20, and all switches on.
class BasketFixture : public CheckFixture {
protected:
    BasketFixture() {
        addInstrument("600001", 10);
        addInstrument("600002", 20);
        host.switches.on.insert("mdl_order_compose_basket_buy_sell");
    }

    boost::shared_ptr<fake::CQuote> addInstrument(const std::string& code, double price) {
        host.addStock("SH", code, price, 100);
        host.types.types.insert({100003, "SH" + code});
        const auto quote = host.quotes.quotes.at(QString::fromStdString("SH" + code));
        quote->m_nDayCount = 1;
        quote->m_dLastPrice = price;
        return quote;
    }
    CStrategyBuilder strategy(TC::EPriceType priceType = TC::EPriceType::Latest) {
        return CStrategyBuilder().family(TC::EOrderStrategyTradeType::Basket).volume(1).set([&](auto& s) {
            s.setting(TC::ESettingSlot::StockBasket).m_ePriceType = priceType;
        });
    }
    static COrderBuilder basket(int number, std::initializer_list<std::pair<const char*, int>> rows) {
        COrderBuilder builder(number);
        for (const auto& [code, volume] : rows)
            builder.line(QString::fromLatin1(code), TC::kUnsetDouble, volume);
        return builder;
    }
    bool check(TC::COrderParam order, const TC::COrderStrategyParam& with) {
        codes.clear();
        weights.clear();
        return service.checkAndFillOrderCompose(order, with, codes, weights);
    }
    bool check(const TC::COrderParam& order) { return check(order, strategy()); }
    /// Hedge flag, position type, operation, user and key of each record as the host receives it: first in
    /// the call that sets the times, then in the call that adds the setting.
    std::vector<std::string> seenByHost(const TC::COrderParam& order) {
        std::vector<std::string> seen;
        const auto see = [&](const TC::CCodeOrderParam& record) {
            seen.push_back(std::to_string(static_cast<int>(record.m_eHedgeFlag)) + " " +
                           std::to_string(static_cast<int>(record.m_ePositionType)) + " " +
                           std::to_string(static_cast<int>(record.m_eOperationType)) + " " +
                           record.m_strUserId + " " + record.m_stock.m_strMarket + record.m_stock.m_strCode);
        };
        host.rules.onFixTimeRange = see;
        EXPECT_TRUE(check(
            order, strategy().set([](auto& s) { s.m_ePositionType = static_cast<TC::EPositionType>(3); })));
        for (const fake::CSettingCall& call : host.rules.settingCalls.all())
            see(call.record);
        return seen;
    }
    /// Account, operation, volume and code of every record.
    std::string records() const {
        std::string text;
        for (const TC::CCodeOrderParam& code : codes)
            text += code.m_account->getKey() + " " + std::to_string(static_cast<int>(code.m_eOperationType)) +
                    " " + std::to_string(code.m_nVolume) + " " + code.m_stock.m_strCode + ", ";
        return text;
    }

    std::vector<TC::CCodeOrderParam> codes;
    std::map<std::string, double> weights;
};
