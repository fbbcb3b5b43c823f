#pragma once

#include "tests/check/CheckFixture.h"

#include <boost/make_shared.hpp>

/// The check of one family on the fake host. The group "G" with the accounts A1 (0.6) and A2 (0.4) also
/// exists under the family's broker type.
class FamilyFixture : public CheckFixture {
protected:
    using CCheck = bool (TC::COrderServiceBase::*)(TC::COrderParam, TC::COrderStrategyParam,
                                                   std::vector<TC::CCodeOrderParam>&,
                                                   std::map<std::string, double>&) const;

    FamilyFixture(TC::EOrderStrategyTradeType family, CCheck operation)
        : m_eFamily(family), m_check(operation) {
        host.user.addGroup(host.rules.orderStrategyTradeTypeToBrokerType(family), "G",
                           {{"A1", 0.6}, {"A2", 0.4}});
    }

    CStrategyBuilder strategy() {
        return CStrategyBuilder().family(m_eFamily).set([&](auto& s) {
            s.setting(TC::findFamily(m_eFamily)->m_eSlot).m_ePriceType = TC::EPriceType::Specified;
        });
    }
    CStrategyBuilder priced(TC::EPriceType type) {
        return strategy().set(
            [&](auto& s) { s.setting(TC::findFamily(m_eFamily)->m_eSlot).m_ePriceType = type; });
    }
    bool check(const TC::COrderParam& order, const TC::COrderStrategyParam& with) {
        codes.clear();
        weights.clear();
        return (service.*m_check)(order, with, codes, weights);
    }
    bool check(const TC::COrderParam& order) { return check(order, strategy()); }
    QString lastError() const {
        const auto texts = host.errorTexts();
        return texts.empty() ? QString() : texts.back();
    }
    boost::shared_ptr<fake::CQuote> addQuote(const QString& key, double price) {
        const auto quote = boost::make_shared<fake::CQuote>();
        quote->all(price);
        host.quotes.quotes[key] = quote;
        return quote;
    }
    int splitVolume() const { return host.trade.splitCalls.back().volume; }
    /// The numbers from -1 to 130 that the check does not refuse as an invalid number.
    std::vector<int> acceptedNumbers(const QString& code) {
        std::vector<int> accepted;
        for (int number = -1; number <= 130; ++number) {
            check(COrderBuilder(number).line(code, 10.5, 100));
            if (!lastError().endsWith(QStringLiteral("下单指令不合法!"))) accepted.push_back(number);
            host.orders.errors.clear();
        }
        return accepted;
    }

    std::vector<TC::CCodeOrderParam> codes;
    std::map<std::string, double> weights;

private:
    const TC::EOrderStrategyTradeType m_eFamily;
    const CCheck m_check;
};

inline std::vector<int> numbers(std::initializer_list<std::pair<int, int>> runs) {
    std::vector<int> result;
    for (const auto& [first, last] : runs) {
        for (int number = first; number <= last; ++number)
            result.push_back(number);
    }
    return result;
}
