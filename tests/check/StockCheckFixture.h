#pragma once

#include "tests/check/CheckFixture.h"

/// Sends orders through the check of the stock family.
class StockCheckFixture : public CheckFixture {
protected:
    bool check(const TC::COrderParam& order, const TC::COrderStrategyParam& strategy = CStrategyBuilder()) {
        return service.checkAndFillOrderStock(order, strategy, codes, weights);
    }
    /// The volume that the split received.
    int splitVolume() const { return host.trade.splitCalls.at(0).volume; }
    boost::shared_ptr<fake::CQuote> quote() { return host.quotes.quotes.at(QStringLiteral("SH600000")); }
    static CStrategyBuilder latestPrice() { return CStrategyBuilder().price(TC::EPriceType::Latest); }

    const QString kCode = QStringLiteral("600000"); ///< trades on SH at 10.5
    std::vector<TC::CCodeOrderParam> codes;
    std::map<std::string, double> weights;
};
